// What a scenario finds in its global scope. Evaluates to a function that puts it there and gives the function that runs a
// scenario.
(function (bench) {
    "use strict";

    const host = bench.host;

    // Operations of the facade and the policy whose first argument is a tag, which reads better by its name.
    const tagged = ["setStreamVolume", "getStreamVolume", "initTrackStepVolume", "setOutputSource", "setOutputFrontSource", "setInputDestination"];

    // Operations of the policy whose first argument is a number with a name: which of the enumerators of AudioPolicy are meant, and
    // what of their names is shown.
    const volumeType = /^(?!Status|Channel)(.+)/;
    const named = new Map([["updateAudioStatus", /^Status(.+)/], ["updateAudioChannel", /^Channel(.+)/], ["setVolume", volumeType],
        ["getVolume", volumeType], ["_getAllChannelsFromCurrentType", volumeType]]);

    // What a scenario does to the car and the platform. The other members of Platform only look.
    const platformEvents = ["setReverseGear", "setHomeUiType", "setCallDuration", "reset", "setActiveSource", "setAlternativeCount",
        "setCalibrationGains", "setDownlinkDelay", "setMicrophoneTest", "fail", "failOnce", "failFactory", "clearFaults"];

    function isList(value) {
        return Array.isArray(value) || (typeof value === "object" && value !== null && "length" in value && typeof value.length === "number");
    }

    // A value as it would stand in a script.
    function show(value) {
        if (typeof value === "string")
            return JSON.stringify(value);
        if (typeof value === "function")
            return "function";
        if (typeof value !== "object" || value === null)
            return Object.is(value, -0) ? "-0" : String(value);
        if (isList(value))
            return "[" + Array.prototype.map.call(value, show).join(", ") + "]";
        return "{" + Object.keys(value).map(key => key + ": " + show(value[key])).join(", ") + "}";
    }

    function equal(a, b) {
        if (Object.is(a, b) || a === b)
            return true;
        if (typeof a !== "object" || typeof b !== "object" || a === null || b === null)
            return false;
        if (isList(a) || isList(b)) {
            return isList(a) && isList(b) && a.length === b.length && Array.prototype.every.call(a, (element, i) => equal(element, b[i]));
        }
        const keys = Object.keys(a);
        return keys.length === Object.keys(b).length && keys.every(key => Object.prototype.hasOwnProperty.call(b, key) && equal(a[key], b[key]));
    }

    // The innermost line of the scenario on a stack, 0 for none.
    function scenarioLine(stack) {
        for (const frame of String(stack).split("\n")) {
            const match = /@file:(?:\/\/(?=\/))?(.*):(\d+)$/.exec(frame);
            if (match && (match[1] === bench.file || decodeURI(match[1]) === bench.file))
                return Number(match[2]);
        }
        return 0;
    }

    function callerLine() {
        return scenarioLine(new Error().stack);
    }

    function known(name, value, key) {
        if (value === undefined && typeof key !== "symbol")
            throw new ReferenceError(name + " has no function or property " + key);
        return value;
    }

    function member(name, object, enumerators, key) {
        return key in enumerators ? enumerators[key] : known(name, object[key], key);
    }

    function argumentTexts(operation, given) {
        const texts = given.map(show);
        if (tagged.includes(operation)) {
            const tags = bench.AudioControl.enumerators;
            const tag = ["Main", "Second", "Alternative", "Uplink", "Input0", "Input1", "Input2", "MainIm"].find(key => tags[key] === given[0]);
            if (tag)
                texts[0] = tag;
        }
        const pattern = named.get(operation);
        if (pattern) {
            const numbers = bench.AudioPolicy.enumerators;
            const key = Object.keys(numbers).find(key => pattern.test(key) && numbers[key] === given[0]);
            if (key)
                texts[0] = pattern.exec(key)[1];
        }
        return texts.join(", ");
    }

    // Calls a function as a request of the scenario: it and what it causes stand in the timeline.
    function request(text, call) {
        host.beginRequest(text);
        let result;
        try {
            result = call();
        } catch (error) {
            host.endRequest("throws " + error.message);
            throw error;
        }
        host.endRequest(result === undefined ? "" : show(result));
        return result;
    }

    // An object whose functions are requests, and whose unknown members are errors instead of undefined.
    function observed(name, object, enumerators, isRequest) {
        return new Proxy({}, {
            get(target, key) {
                const value = member(name, object, enumerators, key);
                if (typeof value !== "function")
                    return value;
                const called = function (...given) {
                    const call = () => value(...given);
                    return isRequest(key) ? request(name + "." + key + "(" + argumentTexts(key, given) + ")", call) : call();
                };
                called.connect = (...receiver) => value.connect(...receiver);
                called.disconnect = (...receiver) => value.disconnect(...receiver);
                return called;
            },
            set(target, key, value) {
                member(name, object, enumerators, key);
                throw new TypeError(name + "." + key + " cannot be set");
            },
            has(target, key) {
                return key in enumerators || object[key] !== undefined;
            },
        });
    }

    function singleton(name, isRequest) {
        const pair = bench[name];
        return observed(name, pair.object, pair.enumerators, isRequest);
    }

    // The object as it is, for good; members that it does not have are errors, to read or to set.
    function guarded(name, object) {
        return new Proxy(Object.freeze(object), {
            get: (target, key) => known(name, target[key], key),
            set(target, key, value) {
                known(name, target[key], key);
                if (!Reflect.set(target, key, value))
                    throw new TypeError(name + "." + key + " cannot be set");
                return true;
            },
        });
    }

    // A client of audio focus: new AudioFocus({clientId: "music", streamType: 3, durationHint: AudioFocus.Gain}).
    // Its changes lists all it was told.
    function AudioFocus(properties) {
        const client = host.makeFocusClient();
        for (const key of Object.keys(properties || {})) {
            if (!["clientId", "streamType", "durationHint", "onFocusChanged"].includes(key))
                throw new ReferenceError("AudioFocus has no property " + key);
            if (key !== "onFocusChanged")
                client[key] = properties[key];
        }
        const changes = [];
        const changeNames = {"-3": "LossTransientCanDuck", "-2": "LossTransient", "-1": "Loss", "1": "Gain"};
        client.focusChanged.connect(change => {
            changes.push(change);
            host.note(client.clientId + " is told " + (changeNames[change] || change));
            if (properties && properties.onFocusChanged)
                properties.onFocusChanged(change);
        });
        const requested = (text, call) => request(client.clientId + text, () => {
            const result = call();
            host.deliverFocusChanges();
            return result;
        });
        return guarded("AudioFocus", {
            get clientId() { return client.clientId; },
            get streamType() { return client.streamType; },
            get durationHint() { return client.durationHint; },
            set durationHint(hint) { client.durationHint = hint; },
            get held() { return client.held; },
            changes,
            request: () => requested(" requests focus", () => client.request()),
            release: () => requested(" releases focus", () => client.release()),
        });
    }
    Object.assign(AudioFocus, bench.focusEnumerators);

    // expect(actual).toBe(wanted); each of them also behind .not. A failure is noted, and the scenario goes on.
    function expect(actual) {
        const line = callerLine();
        const matchers = negated => {
            const check = (holds, wanted) => {
                host.check(holds !== negated, line, "expected " + (negated ? "not " : "") + wanted + ", got " + show(actual));
            };
            return {
                toBe: wanted => check(Object.is(actual, wanted) || actual === wanted, show(wanted)),
                toEqual: wanted => check(equal(actual, wanted), show(wanted)),
                toBeCloseTo: (wanted, within = 0.005) => check(Math.abs(actual - wanted) <= within, show(wanted) + " within " + within),
                toContain: wanted => {
                    const holds = typeof actual === "string" ? actual.includes(wanted)
                        : isList(actual) && Array.prototype.some.call(actual, element => equal(element, wanted));
                    check(holds, "something with " + show(wanted));
                },
            };
        };
        const known = Object.assign(matchers(false), {not: matchers(true)});
        return new Proxy(known, {
            get(target, key) {
                if (!(key in target))
                    throw new ReferenceError("expect() has no function " + String(key));
                return target[key];
            },
        });
    }

    const always = () => true;
    const never = () => false;
    Object.assign(bench.global, {
        AudioControl: singleton("AudioControl", always),
        AudioPolicy: singleton("AudioPolicy", always),
        AudioSettings: singleton("AudioSettings", never),
        Platform: singleton("Platform", key => platformEvents.includes(key)),
        AudioFocus: guarded("AudioFocus", AudioFocus),
        expect,
        say: text => host.say(String(text)),
        wait: milliseconds => host.wait(milliseconds),
        now: () => host.now(),
        powerOn: () => request("powerOn()", () => host.powerOn()),
        powerOff: () => request("powerOff()", () => host.powerOff()),
        eraseSettings: () => request("eraseSettings()", () => host.eraseSettings()),
    });

    return function (scenario) {
        try {
            scenario();
            return null;
        } catch (error) {
            if (!(error instanceof Error))
                return {text: "thrown: " + show(error), line: 0};
            // Where calling a function that does not exist fails with an error of its own, the engine wraps that into another.
            const wrapped = /^TypeError: Property '.*' of object (\w*Error: .*) is not a function$/.exec(String(error));
            return {text: wrapped ? wrapped[1] : String(error), line: scenarioLine(error.stack)};
        }
    };
})

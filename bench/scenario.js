// What a scenario finds in its global scope. Evaluates to a function that puts it there and gives what runs a scenario.
(function (bench) {
    "use strict";

    const host = bench.host;

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

    // Where a "throw" of the scenario came last: what is thrown need not be an Error, which has a stack.
    let thrownStack = "";

    function atThrow() {
        thrownStack = new Error().stack;
    }

    // What a handler of a signal threw, and where. Qt would drop it: it is thrown again by the call that the signal came in.
    let handlerFailure = null;

    function guardedHandler(handler) {
        return function (...given) {
            try {
                handler.apply(this, given);
            } catch (error) {
                if (!handlerFailure)
                    handlerFailure = {error, thrownStack};
            }
        };
    }

    function throwHandlerFailure() {
        if (!handlerFailure)
            return;
        const failure = handlerFailure;
        handlerFailure = null;
        thrownStack = failure.thrownStack;
        throw failure.error;
    }

    function afterHandlers(call) {
        const result = call();
        throwHandlerFailure();
        return result;
    }

    // The same guarded handler for the same handler, so that it can be disconnected.
    const guardedHandlers = new WeakMap();

    function guardedReceiver(receiver) {
        const handler = receiver[receiver.length - 1];
        if (typeof handler !== "function")
            return receiver;
        if (!guardedHandlers.has(handler))
            guardedHandlers.set(handler, guardedHandler(handler));
        return [...receiver.slice(0, -1), guardedHandlers.get(handler)];
    }

    function listed(words) {
        return words.length < 2 ? words.join() : words.slice(0, -1).join(", ") + " and " + words[words.length - 1];
    }

    // Throws where a function is called with fewer arguments than it needs, or with more than it looks at.
    function requireCount(name, parameters, minimum, given) {
        const signature = name + "(" + parameters.join(", ") + ")";
        const missing = parameters.slice(given.length, minimum);
        if (missing.length > 0)
            throw new TypeError(signature + ": " + listed(missing) + (missing.length === 1 ? " is missing" : " are missing"));
        const taken = parameters.length === 0 ? "no argument" : parameters.length === 1 ? "one argument" : parameters.length + " arguments";
        if (given.length > parameters.length)
            throw new TypeError(signature + " takes " + taken + ", not " + given.length);
    }

    function counted(name, parameters, call) {
        return (...given) => {
            requireCount(name, parameters, parameters.length, given);
            return call(...given);
        };
    }

    function known(name, value, key) {
        if (value === undefined && typeof key !== "symbol")
            throw new ReferenceError(name + " has no function or property " + key);
        return value;
    }

    function member(name, object, enumerators, key) {
        return key in enumerators ? enumerators[key] : known(name, object[key], key);
    }

    // Numbers that have a name read better by it: tags, statuses, channels and volume types.
    function argumentTexts(operation, given) {
        return given.map((value, i) => {
            const names = bench.numberNames[operation.enumerations[i]] || {};
            return typeof value === "number" && names[value] || show(value);
        }).join(", ");
    }

    // The same as they would stand in a script.
    function argumentScripts(operation, given) {
        return given.map((value, i) => {
            const names = bench.enumeratorTexts[operation.enumerations[i]] || {};
            return typeof value === "number" && names[value] || show(value);
        }).join(", ");
    }

    // How deep it is in what a recording has as one line.
    let recordedDepth = 0;

    // Tells a recording what line does the same as this call; not where it is part of another such line.
    function recorded(line, call) {
        const begun = host.now();
        ++recordedDepth;
        let result;
        try {
            result = call();
        } finally {
            --recordedDepth;
            if (recordedDepth === 0)
                host.record(line, begun, result === undefined ? "" : show(result));
        }
        return result;
    }

    // Calls a function as a request of the scenario: it and what it causes stand in the timeline.
    function request(text, call, line = text + ";") {
        return recorded(line, () => shown(text, call));
    }

    function shown(text, call) {
        host.beginRequest(text);
        let result;
        try {
            result = afterHandlers(call);
        } catch (error) {
            host.endRequest("throws " + (error instanceof Error ? error.message : show(error)));
            throw error;
        }
        host.endRequest(result === undefined ? "" : show(result));
        return result;
    }

    // An object whose functions are requests, and whose unknown members are errors instead of undefined.
    function observed(name, {object, enumerators, operations}) {
        // The engine's own functions, such as toString(), count as the object's others do.
        const other = {parameters: null, enumerations: [], acts: Object.values(operations).every(operation => operation.acts)};
        return new Proxy({}, {
            get(target, key) {
                const value = member(name, object, enumerators, key);
                if (typeof value !== "function")
                    return value;
                const operation = Object.prototype.hasOwnProperty.call(operations, key) ? operations[key] : other;
                const called = function (...given) {
                    const call = () => {
                        if (operation.parameters)
                            requireCount(name + "." + key, operation.parameters, operation.parameters.length, given);
                        return value(...given);
                    };
                    if (!operation.acts)
                        return afterHandlers(call);
                    const beginning = name + "." + key + "(";
                    return request(beginning + argumentTexts(operation, given) + ")", call, beginning + argumentScripts(operation, given) + ");");
                };
                called.connect = (...receiver) => value.connect(...guardedReceiver(receiver));
                called.disconnect = (...receiver) => value.disconnect(...guardedReceiver(receiver));
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
        const variable = host.variableFor(client.clientId);
        recorded("var " + variable + " = new AudioFocus(" + show({
            clientId: client.clientId, streamType: client.streamType, durationHint: client.durationHint,
        }) + ");", () => undefined);
        const changes = [];
        const changeNames = {"-3": "LossTransientCanDuck", "-2": "LossTransient", "-1": "Loss", "1": "Gain"};
        client.focusChanged.connect(guardedHandler(change => {
            changes.push(change);
            host.note(client.clientId + " is told " + (changeNames[change] || change));
            if (properties && properties.onFocusChanged)
                properties.onFocusChanged(change);
        }));
        const requested = (text, name, call) => request(client.clientId + text, () => {
            const result = call();
            host.deliverFocusChanges();
            return result;
        }, variable + "." + name + "();");
        return guarded("AudioFocus", {
            get clientId() { return client.clientId; },
            get streamType() { return client.streamType; },
            get durationHint() { return client.durationHint; },
            set durationHint(hint) { recorded(variable + ".durationHint = " + show(hint) + ";", () => { client.durationHint = hint; }); },
            get held() { return client.held; },
            changes,
            request: counted("AudioFocus.request", [], () => requested(" requests focus", "request", () => client.request())),
            release: counted("AudioFocus.release", [], () => requested(" releases focus", "release", () => client.release())),
        });
    }
    Object.assign(AudioFocus, bench.focusEnumerators);

    // How loud it was. All others together are what a source is measured against where none is named.
    function above(...given) {
        requireCount("Sound.above", ["source", "other"], 1, given);
        const wrong = given.findIndex(name => typeof name !== "string" || name === "");
        if (wrong >= 0)
            throw new TypeError("Sound.above() takes names of sources, not " + (given[wrong] === "" ? "an empty one" : show(given[wrong])));
        return bench.sound.above(given[0], given[1] || "");
    }

    // What a matcher cannot work with is an error: it would hold always, or never.
    function requireCloseness(actual, wanted, within) {
        if (typeof actual !== "number")
            throw new TypeError("toBeCloseTo() compares numbers, not " + show(actual));
        if (typeof wanted !== "number" || !Number.isFinite(wanted))
            throw new TypeError("toBeCloseTo() needs a finite number to compare with, not " + show(wanted));
        if (typeof within !== "number" || !Number.isFinite(within) || within < 0)
            throw new TypeError("toBeCloseTo() needs a distance from 0, not " + show(within));
    }

    function requireOrder(name, actual, wanted) {
        if (typeof actual !== "number" || Number.isNaN(actual))
            throw new TypeError(name + "() compares numbers, not " + show(actual));
        if (typeof wanted !== "number" || !Number.isFinite(wanted))
            throw new TypeError(name + "() needs a finite number to compare with, not " + show(wanted));
    }

    function requireContainer(actual, wanted) {
        if (typeof actual !== "string" && !isList(actual))
            throw new TypeError("toContain() looks into a text or a list, not " + show(actual));
        if (typeof actual === "string" && (typeof wanted !== "string" || wanted === ""))
            throw new TypeError("toContain() looks for a text in a text, not for " + (wanted === "" ? "an empty one" : show(wanted)));
    }

    // expect(actual).toBe(wanted); each of them also behind .not. A failure is noted, and the scenario goes on. So is an expectation
    // without a matcher, at the end of the scenario.
    function expect(...given) {
        requireCount("expect", ["actual"], 1, given);
        const actual = given[0];
        const expectation = host.beginExpectation(new Error().stack);
        const matchers = negated => {
            const check = (holds, wanted) => {
                host.check(expectation, holds !== negated, "expected " + (negated ? "not " : "") + wanted + ", got " + show(actual));
            };
            const matcher = (name, parameters, minimum, look) => (...values) => {
                requireCount(name, parameters, minimum, values);
                look(...values);
            };
            return {
                toBe: matcher("toBe", ["value"], 1, wanted => {
                    const holds = Object.is(actual, wanted) || actual === wanted;
                    const another = !holds && equal(actual, wanted) ? ", another one: toEqual() compares what is in it" : "";
                    host.check(expectation, holds !== negated, "expected " + (negated ? "not " : "") + show(wanted) + ", got " + show(actual) + another);
                }),
                toEqual: matcher("toEqual", ["value"], 1, wanted => check(equal(actual, wanted), show(wanted))),
                toBeCloseTo: matcher("toBeCloseTo", ["value", "within"], 1, (wanted, within = 0.005) => {
                    requireCloseness(actual, wanted, within);
                    check(Math.abs(actual - wanted) <= within, show(wanted) + " within " + within);
                }),
                toBeGreaterThan: matcher("toBeGreaterThan", ["value"], 1, wanted => {
                    requireOrder("toBeGreaterThan", actual, wanted);
                    check(actual > wanted, "more than " + wanted);
                }),
                toBeLessThan: matcher("toBeLessThan", ["value"], 1, wanted => {
                    requireOrder("toBeLessThan", actual, wanted);
                    check(actual < wanted, "less than " + wanted);
                }),
                toContain: matcher("toContain", ["value"], 1, wanted => {
                    requireContainer(actual, wanted);
                    const holds = typeof actual === "string" ? actual.includes(wanted)
                        : Array.prototype.some.call(actual, element => equal(element, wanted));
                    check(holds, "something with " + show(wanted));
                }),
            };
        };
        // Members are noted as they are read: one that is never called checks nothing.
        const observedMatchers = known => new Proxy(known, {
            get(target, key) {
                host.readMatcher(expectation, String(key));
                if (!(key in target))
                    throw new ReferenceError("expect() has no function " + String(key));
                return target[key];
            },
        });
        return observedMatchers(Object.assign(matchers(false), {not: observedMatchers(matchers(true))}));
    }

    Object.assign(bench.global, {
        AudioControl: observed("AudioControl", bench.AudioControl),
        AudioPolicy: observed("AudioPolicy", bench.AudioPolicy),
        AudioSettings: observed("AudioSettings", bench.AudioSettings),
        Platform: observed("Platform", bench.Platform),
        AudioFocus: guarded("AudioFocus", AudioFocus),
        Sound: guarded("Sound", {above}),
        expect,
        say: counted("say", ["text"], text => recorded("say(" + show(String(text)) + ");", () => host.say(String(text)))),
        wait: counted("wait", ["milliseconds"], milliseconds => afterHandlers(() => host.wait(milliseconds))),
        now: counted("now", [], () => host.now()),
        powerOn: counted("powerOn", [], () => request("powerOn()", () => host.powerOn())),
        powerOff: counted("powerOff", [], () => request("powerOff()", () => host.powerOff())),
        eraseSettings: counted("eraseSettings", [], () => request("eraseSettings()", () => host.eraseSettings())),
        cutPowerWhileSaving: counted("cutPowerWhileSaving", ["byte", "line"], (byte, line) => request(
            "cutPowerWhileSaving(" + show(byte) + ", " + show(line) + ")", () => host.cutPowerWhileSaving(byte, String(line)))),
        writeSettings: counted("writeSettings", ["text"], text => {
            const count = String(text).length;
            return request("writeSettings(" + count + " characters)", () => host.writeSettings(String(text)), "writeSettings(" + show(String(text)) + ");");
        }),
    });

    function failure(error) {
        if (!(error instanceof Error))
            return {text: "thrown: " + show(error), stack: thrownStack};
        // Where calling a function that does not exist fails with an error of its own, the engine wraps that into another.
        const wrapped = /^TypeError: Property '.*' of object (\w*Error: .*) is not a function$/.exec(String(error));
        return {text: wrapped ? wrapped[1] : String(error), stack: String(error.stack)};
    }

    // Under another name it works in the global scope.
    const globalEval = eval;

    return {
        atThrow,

        // Runs the scenario. Gives what ended it: null, or a text and the stack.
        run(scenario) {
            try {
                scenario();
                throwHandlerFailure();
                return null;
            } catch (error) {
                return failure(error);
            }
        },

        // Runs a line where what it declares with "var" stays for the next ones. Gives what it is worth, or what ended it as run() does.
        perform(line) {
            try {
                const result = afterHandlers(() => globalEval(line));
                return {result: result === undefined ? "" : show(result)};
            } catch (error) {
                return failure(error);
            }
        },
    };
})

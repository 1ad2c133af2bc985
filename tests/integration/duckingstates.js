// Finds how the states of a CarPlay duck follow each other, by trying each request in each of them: prints a line of JSON for each change, of which
// diagrams.py makes the diagram in docs/policy.md.

const begin = {
    Idle: [],
    Ducked: [duck],
    Alert: [duck, () => wait(1000)],
    Waiting: [duck, reportAnother],
    Unducking: [duck, unduck],
};
const requests = {
    "cpDuckAudio": duck,
    "reverse gear in": () => AudioPolicy.onRecvBackCar(true),
    "cpUnduckAudio": unduck,
    "reverse gear out": () => AudioPolicy.onRecvBackCar(false),
    "updateAudioStatus, the current one": () => AudioPolicy.updateAudioStatus(AudioPolicy.status),
    "updateAudioStatus, another one": reportAnother,
};
const times = [500, 1000];

function duck() {
    AudioPolicy.cpDuckAudio(0, 20);
}

function unduck() {
    AudioPolicy.cpUnduckAudio(0);
}

function reportAnother() {
    AudioPolicy.updateAudioStatus(AudioPolicy.StatusCarPlaySpeech);
}

// What is there after these steps on a unit just switched on: what holds, and the state, by what comes when nothing else is asked.
function after(steps) {
    powerOn();
    steps.forEach(step => step());
    const before = {ducked: Platform.isDucked(), status: AudioPolicy.status};
    wait(2000);
    const later = {ducked: Platform.isDucked(), status: AudioPolicy.status};
    unduck();
    wait(500);
    powerOff();
    if (later.status === AudioPolicy.StatusCarPlayRestore)
        before.state = before.status === later.status ? "Idle" : "Unducking";
    else if (!before.ducked)
        before.state = "Idle";
    else if (later.status === AudioPolicy.StatusCarPlayDuck)
        before.state = before.status === later.status ? "Alert" : "Ducked";
    else
        before.state = "Waiting";
    return before;
}

// Whether the time of that timer begins anew with the request, a while after the state began.
function beginsAnew(steps, request, time) {
    const late = steps.concat(() => wait(400), request);
    return after(late.concat(() => wait(time - 1))).state === after(late).state && after(late.concat(() => wait(time))).state !== after(late).state;
}

function tell(from, to, cause, effects) {
    console.log(JSON.stringify({from: from.state, to: to.state, cause, effects}));
}

function effects(from, to) {
    const list = [];
    if (from.status !== to.status && (to.status === AudioPolicy.StatusCarPlayDuck || to.status === AudioPolicy.StatusCarPlayRestore))
        list.push("status " + to.status);
    if (from.ducked !== to.ducked)
        list.push(to.ducked ? "ducking on" : "ducking off");
    return list;
}

for (const name in begin) {
    const steps = begin[name];
    const from = after(steps);
    expect(from.state).toBe(name);
    for (const cause in requests) {
        const request = requests[cause];
        const to = after(steps.concat(request));
        if (to.state !== from.state) {
            tell(from, to, cause, effects(from, to));
            continue;
        }
        for (const time of times) {
            const runsOut = after(steps.concat(() => wait(time))).state !== from.state && after(steps.concat(() => wait(time - 1))).state === from.state;
            if (runsOut && beginsAnew(steps, request, time))
                tell(from, to, cause, ["the " + time + " ms begin anew"]);
        }
    }
    for (const time of times) {
        const to = after(steps.concat(() => wait(time)));
        if (to.state !== from.state && after(steps.concat(() => wait(time - 1))).state === from.state)
            tell(from, to, time + " ms", effects(from, to));
    }
}

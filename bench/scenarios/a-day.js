// A day of a car: to work in the morning, to the shops at noon, home in the evening, a short trip at night; parked in between.
//
// tools/flash-wear plays it and counts what it writes to the unit's flash.

const second = 1000, minute = 60 * second, hour = 60 * minute;

// Saved with every step, as the driver turns.
function turn(steps) {
    for (let step = 0; step < Math.abs(steps); ++step) {
        AudioPolicy.updateCurrentAudioVolume(steps > 0);
        wait(200);
    }
    wait(second);
}

// A prompt of Android Auto: nothing of it is stored.
function prompt() {
    AudioPolicy.aaDuckAudio(0, 0);
    wait(4 * second);
    AudioPolicy.aaUnduckAudio(0);
}

function drive(minutes, prompts) {
    for (let number = 0; number < prompts; ++number) {
        wait(minutes * minute / prompts - 4 * second);
        prompt();
    }
}

function call(seconds, steps) {
    AudioPolicy.updateAudioChannel(AudioPolicy.ChannelBtRingtone);
    AudioPolicy.updateAudioStatus(AudioPolicy.StatusBtRing);
    wait(5 * second);
    AudioPolicy.updateAudioChannel(AudioPolicy.ChannelBtPhone);
    AudioPolicy.updateAudioStatus(AudioPolicy.StatusBtTelephony);
    turn(steps);
    wait(seconds * second);
    AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);
    AudioPolicy.updateAudioStatus(AudioPolicy.StatusNone);
}

function start() {
    powerOn();
    wait(3 * second);
    AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);
}

function park(until) {
    Platform.setReverseGear(true);
    wait(10 * second);
    Platform.setReverseGear(false);
    wait(10 * second);
    powerOff();
    wait(until - now());
}

say("Seven o'clock: a unit that its driver has set to his liking");
eraseSettings();
powerOn();
[12, 15, 18, 10, 14, 14].forEach((volume, type) => AudioPolicy.setVolume(type, volume, true));
AudioPolicy.setEqType(3);
powerOff();
wait(7 * hour - now());

say("To work, three quarters of an hour: the music turned up, ten prompts, a call that is turned up, too");
start();
turn(3);
drive(25, 6);
call(180, 2);
drive(20, 4);
turn(-1);
expect([0, 2].map(type => AudioSettings.getVolume(type))).toEqual([14, 20]);
park(12 * hour);

say("To the shops at noon: a curve of his own, drawn band by band, and loudness on for today");
start();
[[0, 2], [1, 2], [2, 1], [14, 1], [15, 2], [15, 3]].forEach(([band, value]) => {
    AudioPolicy.adjustCustomEq(value, band);
    wait(second);
});
AudioPolicy.setLoudNess(true);
drive(15, 3);
expect(AudioPolicy.customCurve[15]).toBe(6);
park(17 * hour);

say("Home in the evening, in a jam: louder for a favourite song and back, two calls, eleven prompts");
start();
turn(4);
wait(4 * minute);
turn(-4);
drive(30, 6);
call(600, -1);
drive(20, 5);
call(120, 0);
park(21 * hour);

say("A short trip at night, quietly");
start();
turn(-5);
drive(10, 2);
park(24 * hour);

say("Midnight. Each volume is where the driver left it");
start();
expect(AudioPolicy.volumes).toEqual([9, 15, 19, 10, 14, 14]);
expect(AudioPolicy.equalizerType).toBe(7);

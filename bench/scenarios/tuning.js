// Tuning the sound of the car: equalizer, fade and balance, delays, filters.

const leftFront = 1, rightFront = 2, leftRear = 4, rightRear = 8;

function gains() {
    return [leftFront, rightFront, leftRear, rightRear].map(channel => Platform.channelGain(channel));
}

say("A preset: its first eight gains, against the platform's own frequency codes");
AudioControl.setEqMode(0);
expect(Platform.lastEqParameter()).toEqual({
    channel: 0xFFFF,
    frequency: [10, 18, 26, 35, 44, 52, 58, 33],
    gain: [4.8, 4.3, 3.8, 3.4, 3, 2.7, 2.5, 0.5],
    type: [3, 3, 3, 3, 3, 3, 3, 3],
});
expect(AudioControl.getEqGain(0)).toEqual([4, 4, 3, 3, 3, 2, 2, 0, -4, -3, 0, 1, 2, 2, 3, 3]);

say("There is no preset 7: nothing is sent, and its list is empty");
Platform.clearJournal();
AudioControl.setEqMode(7);
expect(Platform.journal()).toEqual([]);
expect(AudioControl.getEqGain(7)).toEqual([]);

say("A custom curve of sixteen bands");
const curve = [6, 5.5, 5, 4, 3, 2, 1, 0, -1, -2, -1, 0, 1, 2, 3, 3.5];
AudioControl.setEqGain(curve);
expect(Platform.lastExtEqParameter().gain.slice(0, 16)).toEqual(curve);
expect(Platform.lastExtEqParameter().frequency.slice(0, 16)).toEqual(AudioControl.getEqInitValue());
expect(Platform.equalizerGain(leftFront, 1)).toBe(5.5);

say("12 dB is the most a band can have; one band beyond it refuses the whole curve");
AudioControl.setEqGain(curve.map(() => 12));
expect(Platform.equalizerGain(leftFront, 0)).toBe(12);
AudioControl.setEqGain(curve.slice(0, 15).concat(12.5));
expect(Platform.equalizerGain(leftFront, 0)).toBe(12);
AudioControl.setEqGain(curve.slice(0, 15).concat(NaN));
expect(Platform.equalizerGain(leftFront, 0)).toBe(12);

say("Ten bands: the other six are parked at 20 kHz without gain");
AudioControl.setEqGain10([1, 2, 3, 4, 5, 6, 7, 8, 9, 10]);
expect(Platform.lastExtEqParameter().gain.slice(0, 16)).toEqual([1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 0, 0, 0, 0, 0, 0]);
expect(Platform.lastExtEqParameter().frequency.slice(8, 12)).toEqual([8000, 16000, 20000, 20000]);

say("Loudness on");
AudioControl.setLoudnessSwitch(true);
expect(Platform.isLoudnessOn()).toBe(true);

say("In the middle of the car all four loudspeakers have their full level");
AudioControl.setFadeBalance(0, 0);
expect(gains()).toEqual([100, 100, 100, 100]);

say("Five steps to the left: the right side is lowered to 67 percent");
AudioControl.setFadeBalance(0, 5);
expect(gains()).toEqual([100, 67, 100, 67]);

say("Five to the right, three to the front: both losses add up at the left rear");
AudioControl.setFadeBalance(3, -5);
// 67 percent for balance; fade takes 100 - 80 = 20 more from the rear.
expect(gains()).toEqual([67, 100, 47, 80]);

say("The far corner: only the right rear loudspeaker is left");
AudioControl.setFadeBalance(-15, -15);
expect(gains()).toEqual([0, 0, 0, 100]);

say("A step further is refused, and so is half a step");
AudioControl.setFadeBalance(-16, 0);
expect(gains()).toEqual([0, 0, 0, 100]);
let refused = "";
try {
    AudioControl.setFadeBalance(0.5, 0);
} catch (error) {
    refused = error.message;
}
expect(refused).toContain("fade must be a whole number");

say("Heard at the left front: volume times channel gain");
AudioControl.setMasterVolume(100);
AudioControl.setStreamVolume(AudioControl.Main, "S+DiscPlayer_APP", 74);
AudioControl.setFadeBalance(0, -5);
expect(Platform.effectiveGain("main", "S+DiscPlayer", leftFront)).toBeCloseTo(0.5 * 0.67, 0.0001);
expect(Platform.effectiveGain("main", "S+DiscPlayer", rightFront)).toBeCloseTo(0.5, 0.0001);

say("Delays for six outputs at once, then one of them alone");
AudioControl.setSpeakerDelay([0, 1.5, 2.5, 4, 0, 0]);
expect([1, 2, 4, 8, 16, 32].map(channel => Platform.speakerDelay(channel))).toEqual([0, 1.5, 2.5, 4, 0, 0]);
AudioControl.setSpeakerDealy(AudioControl.RightFront, 2);
expect(Platform.speakerDelay(rightFront)).toBe(2);
say("Five delays are not six: nothing happens");
AudioControl.setSpeakerDelay([9, 9, 9, 9, 9]);
expect(Platform.speakerDelay(leftFront)).toBe(0);

say("A filter on one output; its flag travels inverted, and a kind that does not exist becomes 0 and takes value 4 with it");
AudioControl.setFilter(AudioControl.LeftRear, {value1: 80, flag: 1, kind: 1, value2: 12, value3: 3, value4: 7});
expect(Platform.filter(leftRear)).toEqual({channel: 4, value1: 80, notFlag: 0, value2: 12, kind: 1, value3: 3, value4: 7});
AudioControl.setFilter(AudioControl.LeftRear, {value1: 80, flag: 0, kind: 2, value2: 12, value3: 3, value4: 7});
expect(Platform.filter(leftRear)).toEqual({channel: 4, value1: 80, notFlag: 1, value2: 12, kind: 0, value3: 3, value4: 0});

say("Stereo and DPS processing");
AudioControl.setStereoEnable(true);
AudioControl.setDpsEnable(true);
AudioControl.setDpsUserGain(2.5);
expect([Platform.isStereoEnabled(), Platform.isDpsEnabled(), Platform.dpsUserGain()]).toEqual([true, true, 2.5]);

// Everything the user sets is there again after the power was cut; what is by design not stored is not.
//
// Inside one process the control facade lives on: it does not send the master step again, which it has sent already.

say("A unit without settings; the user sets everything");
eraseSettings();
powerOn();
[11, 12, 13, 14, 15, 16].forEach((volume, type) => AudioPolicy.setVolume(type, volume, true));
AudioPolicy.setMicInputValue(40);
AudioPolicy.setLoudNess(true);
AudioPolicy.setEqType(3);
expect(AudioSettings.eqType()).toBe(3);

say("A custom curve: it is stored in twice the steps that the user sees, and becomes the equalizer's type");
AudioPolicy.adjustCustomEq(3, 0);
AudioPolicy.adjustCustomEq(-6, 15);
expect(AudioPolicy.equalizerType).toBe(7);
expect(AudioPolicy.customCurve).toEqual([6, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, -12]);

say("Each microphone has a gain and a delay of its own");
AudioPolicy.setMicAnalogGain(9.75, 9.75);
AudioPolicy.setHandsfreeDelay(120);
AudioPolicy.setMicLeftRightSwitch(false);
AudioPolicy.setMicAnalogGain(21, 21);
AudioPolicy.setHandsfreeDelay(80);

say("A volume for this evening only is not saved");
AudioPolicy.setVolume(AudioPolicy.Media, 20, false);
wait(500);
expect(Platform.trackVolume("main", "S+FilePlayer")).toBe(80);

say("The power is cut. The chip forgets all it knew");
powerOff();
Platform.reset();
expect(Platform.trackVolume("main", "S+FilePlayer")).toBe(0);

say("And back on");
powerOn();
expect(AudioPolicy.volumes).toEqual([11, 12, 13, 14, 15, 16]);
expect(Platform.trackVolume("main", "S+FilePlayer")).toBe(44);
// 12 steps of 25 are 48; the alternative track, telephony, ringtones and speech are boosted by 1.5.
expect(Platform.alternativeVolume()).toBe(72);
expect(Platform.trackVolume("main", "S+BtPcmPhone")).toBe(78);
expect(Platform.trackVolume("main", "S+BtRingtone")).toBe(84);
expect(Platform.trackVolume("main", "S+CarPlaySpeech")).toBe(90);

say("The custom curve sounds again");
expect(AudioPolicy.equalizerType).toBe(7);
expect(AudioPolicy.customCurve).toEqual([6, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, -12]);
expect(Platform.lastExtEqParameter().gain.slice(0, 16)).toEqual([6, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, -12]);

say("So does the arm microphone, which is given to the platform inverted: its gain of 21 dB is one analogue stage");
expect(AudioPolicy.micTypeIsDefault()).toBe(false);
expect(Platform.isMicLeftRightSwapped()).toBe(true);
expect(Platform.micVolume()).toBe(40);
expect(Platform.micAnalogGain()).toEqual([21, 21]);
expect(Platform.micOpGain()).toEqual([21, 21]);
expect(Platform.micPgaGain()).toEqual([0, 0]);
expect(Platform.handsfreeDelay()).toBe(80);

say("The other microphone's settings are there as well; its gain has lost the fraction, as always on reading");
AudioPolicy.setMicLeftRightSwitch(true);
expect(Platform.micAnalogGain()).toEqual([9, 9]);
expect(Platform.handsfreeDelay()).toBe(120);

say("Loudness is the exception: every start switches it off, in the settings too");
expect(Platform.isLoudnessOn()).toBe(false);
expect(AudioSettings.loudNess()).toBe(false);

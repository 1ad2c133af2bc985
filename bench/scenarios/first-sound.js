// The first sound: an application uses the control facade alone, before any audio policy.
//
// Names come in pairs: applications say "S+FilePlayer_APP", the platform "S+FilePlayer". A track volume runs from 0 to 148.

say("Switch on: the step volumes of the main track are loaded, counted in 25 steps");
AudioControl.setStepRange(25);
AudioControl.initTrackStepVolume(AudioControl.Main, {"S+DiscPlayer_APP": 20, "S+AuxIn_APP": 10});
// Step 20 of 25 is worth 100 * 20 / 25 = 80. The auxiliary input is a quiet source: its 40 is boosted by 1.5.
expect(Platform.trackVolume("main", "S+DiscPlayer")).toBe(80);
expect(Platform.trackVolume("main", "S+AuxIn")).toBe(60);

say("The file player stands for a group of two sources");
AudioControl.initTrackStepVolume(AudioControl.Main, {"S+FilePlayer_APP": 10});
expect(Platform.trackVolume("main", "S+FilePlayer")).toBe(40);
expect(Platform.trackVolume("main", "S+AndroidAuto")).toBe(40);

say("The file player plays, at 80");
AudioControl.setStreamVolume(AudioControl.Main, "S+FilePlayer_APP", 80);
AudioControl.setOutputSource(AudioControl.Main, "S+FilePlayer_APP");
expect(Platform.trackVolume("main", "S+FilePlayer")).toBe(80);
expect(Platform.activeSource("main")).toBe("S+FilePlayer");
// A stream volume goes to that one source; the group is for steps.
expect(Platform.trackVolume("main", "S+AndroidAuto")).toBe(40);

say("A ringtone is boosted: 40 becomes 60, and 100 is held at the platform's 148");
AudioControl.setStreamVolume(AudioControl.Main, "S+BtRingtone_APP", 40);
expect(AudioControl.getStreamVolume(AudioControl.Main, "S+BtRingtone_APP")).toBe(60);
AudioControl.setStreamVolume(AudioControl.Main, "S+BtRingtone_APP", 100);
expect(AudioControl.getStreamVolume(AudioControl.Main, "S+BtRingtone_APP")).toBe(148);

say("149 is more than the platform takes: nothing is sent");
Platform.clearJournal();
AudioControl.setStreamVolume(AudioControl.Main, "S+FilePlayer_APP", 149);
expect(Platform.journal().length).toBe(0);
expect(Platform.trackVolume("main", "S+FilePlayer")).toBe(80);

say("Nor is anything for a name that is not in the table; the AirPlay one begins with a small s");
AudioControl.setStreamVolume(AudioControl.Main, "S+AirPlayMedia_APP", 50);
expect(Platform.journal().length).toBe(0);
AudioControl.setStreamVolume(AudioControl.Main, "s+AirPlayMedia_APP", 50);
expect(Platform.trackVolume("main", "S+AirPlayMedia")).toBe(50);

say("The master volume is held at 100, whatever is asked for: loudness is set per track");
expect(AudioControl.setMasterVolume(30)).toBe(0);
expect(AudioControl.getMasterVolume()).toBe(100);
expect(AudioControl.setMasterVolume(101)).toBe(-1);
expect(Platform.masterVolume()).toBe(100);

say("At the left front loudspeaker: 80 of 148, at full master volume");
expect(Platform.effectiveGain("main", "S+FilePlayer", 1)).toBeCloseTo(80 / 148, 0.0001);

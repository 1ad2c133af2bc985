// A unit fresh from the factory is switched on.

say("No settings are stored; the unit starts");
eraseSettings();
powerOn();
expect(AudioPolicy.status).toBe(AudioPolicy.StatusNone);
expect(AudioPolicy.channel).toBe(AudioPolicy.ChannelNone);
expect(AudioPolicy.volumes).toEqual([20, 20, 20, 20, 20, 15]);
expect(AudioPolicy.equalizerType).toBe(6);

say("Media volume 20 of 25 reaches each media source as 80; the auxiliary input is boosted by 1.5");
expect(Platform.masterVolume()).toBe(100);
expect(Platform.trackVolume("main", "S+FilePlayer")).toBe(80);
expect(Platform.trackVolume("main", "S+AndroidAuto")).toBe(80);
expect(Platform.trackVolume("main", "S+AuxIn")).toBe(120);
expect(Platform.trackVolume("main", "S+BtRingtone")).toBe(120);
// The alternative track has the prompts' volume: step 20 of 25 is 80, boosted.
expect(Platform.alternativeVolume()).toBe(120);

say("The equalizer has the stored type, loudness is off, the microphone is the original one");
expect(Platform.equalizerGain(1, 0)).toBe(2);
expect(Platform.equalizerGain(1, 15)).toBe(2);
expect(Platform.isLoudnessOn()).toBe(false);
expect(Platform.micVolume()).toBe(12);
expect(Platform.isMicLeftRightSwapped()).toBe(false);

say("After 500 ms the volumes of types with several sources are written once more: media, and ringtones");
Platform.clearJournal();
wait(499);
expect(Platform.journal()).toEqual([]);
wait(1);
// Ten media channels, the four channel numbers without a source (they count as media) and two of ringtones and alerts.
// Telephony was pending too: the list drops every second entry.
expect(Platform.journal().length).toBe(16);
expect(Platform.journal()).toContain('Volume.setTrackVolume("main", "S+FilePlayer", 80) -> 0');
expect(Platform.journal()).toContain('Volume.setTrackVolume("main", "S+BtRingtone", 120) -> 0');
expect(Platform.journal()).not.toContain('Volume.setTrackVolume("main", "S+BtPcmPhone", 120) -> 0');

say("Channel 0 is no channel yet: it is routed, and the equalizer left alone");
Platform.clearJournal();
AudioPolicy.updateAudioChannel(AudioPolicy.ChannelNone);
expect(Platform.journal()).toEqual(['Source.setOutputSource("main", "S+none") -> 0']);
wait(2000);
expect(Platform.journal().length).toBe(1);

say("The first real channel: the equalizer is set, and again 2000 ms later, when the source has settled");
AudioPolicy.updateAudioChannel(AudioPolicy.ChannelDiscPlayer);
expect(Platform.activeSource("main")).toBe("S+DiscPlayer");
Platform.clearJournal();
wait(1999);
expect(Platform.journal()).toEqual([]);
wait(1);
expect(Platform.journal().length).toBe(1);
expect(Platform.journal()[0]).toContain("App.setExtEqParameter(");

say("Later channels set the equalizer at once where the source resets it: 3, 5, 10 and 17");
Platform.clearJournal();
AudioPolicy.updateAudioChannel(AudioPolicy.ChannelBtAudio);
expect(Platform.journal().length).toBe(1);
AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);
expect(Platform.journal().length).toBe(3);
expect(Platform.journal()[2]).toContain("App.setExtEqParameter(");

say("The same unit with home screen 7 starts louder");
powerOff();
eraseSettings();
Platform.setHomeUiType(7);
powerOn();
expect(AudioPolicy.volumes).toEqual([25, 25, 25, 25, 25, 25]);
expect(Platform.trackVolume("main", "S+FilePlayer")).toBe(100);
powerOff();

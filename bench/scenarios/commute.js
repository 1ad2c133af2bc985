// A drive home: music, the volume keys, a navigation prompt, a telephone call, and into the garage in reverse.
//
// Volumes run from 0 to 25 and reach the platform as volume * 4; telephony and ringtones are boosted there by 1.5.
//
// docs/explain.md asks this drive's log why the telephone was so quiet: play commute --log-to commute.log, then explain commute.log.

function media() {
    return Platform.trackVolume("main", "S+FilePlayer");
}

say("The ignition is switched on, and the driver has a favourite volume for everything");
powerOn();
AudioPolicy.setVolume(AudioPolicy.Media, 12, true);
AudioPolicy.setVolume(AudioPolicy.Prompt, 15, true);
AudioPolicy.setVolume(AudioPolicy.Telephony, 18, true);
AudioPolicy.setVolume(AudioPolicy.Ring, 10, true);
wait(1000);

say("The file player begins to play");
AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);
expect(Platform.activeSource("main")).toBe("S+FilePlayer");
expect(media()).toBe(48);
wait(5000);

say("A good song: two steps up. All media sources follow, and 500 ms later they are written once more");
const shown = [];
AudioPolicy.zelvolumeChanged.connect((mute, volume, type) => shown.push([mute, volume, type]));
AudioPolicy.updateCurrentAudioVolume(true);
AudioPolicy.updateCurrentAudioVolume(true);
expect(shown).toEqual([[false, 13, AudioPolicy.Media], [false, 14, AudioPolicy.Media]]);
expect(media()).toBe(56);
expect(Platform.trackVolume("main", "S+DiscPlayer")).toBe(56);
wait(60000);

say("Android Auto: turn left. The music is ducked to 60 percent while the prompt has its own volume");
AudioPolicy.aaDuckAudio(0, 0);
expect(Platform.isDucked()).toBe(true);
expect(Platform.duckingGain()).toBe(60);
expect(Platform.trackVolume("main", "S+AndroidAuto")).toBe(60);
expect(Platform.effectiveMainVolume()).toBe(33);
expect(AudioPolicy.status).toBe(AudioPolicy.StatusNone);
wait(3000);
AudioPolicy.aaUnduckAudio(0);
expect(Platform.isDucked()).toBe(false);
expect(Platform.trackVolume("main", "S+AndroidAuto")).toBe(56);
expect(Platform.effectiveMainVolume()).toBe(56);
wait(120000);

say("The telephone rings. The volume keys work the ringtone now");
AudioPolicy.updateAudioChannel(AudioPolicy.ChannelBtRingtone);
AudioPolicy.updateAudioStatus(AudioPolicy.StatusBtRing);
expect(Platform.activeSource("main")).toBe("S+BtRingtone");
expect(Platform.trackVolume("main", "S+BtRingtone")).toBe(60);
AudioPolicy.updateCurrentAudioVolume(true);
// 11 * 4 = 44, boosted
expect(Platform.trackVolume("main", "S+BtRingtone")).toBe(66);
expect(media()).toBe(56);
wait(4000);

say("The driver takes the call, and turns it down one step");
AudioPolicy.updateAudioChannel(AudioPolicy.ChannelBtPhone);
AudioPolicy.updateAudioStatus(AudioPolicy.StatusBtTelephony);
// 18 * 4 = 72, boosted
expect(Platform.trackVolume("main", "S+BtPcmPhone")).toBe(108);
AudioPolicy.updateCurrentAudioVolume(false);
// 17 * 4 = 68, boosted
expect(Platform.trackVolume("main", "S+BtPcmPhone")).toBe(102);
expect(AudioPolicy.volumes.slice(0, 4)).toEqual([14, 15, 17, 11]);
wait(180000);

say("Hang-up: the music is back where it was");
AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);
AudioPolicy.updateAudioStatus(AudioPolicy.StatusNone);
expect(Platform.activeSource("main")).toBe("S+FilePlayer");
expect(media()).toBe(56);
wait(120000);

say("Reverse gear: the music is ducked at once, and after a second it has the prompts' volume too");
Platform.setReverseGear(true);
expect(Platform.effectiveMainVolume()).toBe(33);
wait(999);
expect(AudioPolicy.status).toBe(AudioPolicy.StatusNone);
wait(1);
expect(AudioPolicy.status).toBe(AudioPolicy.StatusCarPlayDuck);
// 15 * 4 = 60, of which 60 percent
expect(media()).toBe(60);
expect(Platform.effectiveMainVolume()).toBe(36);
wait(8000);

say("In the garage, out of reverse: half a second later all is restored");
Platform.setReverseGear(false);
wait(499);
expect(Platform.isDucked()).toBe(true);
wait(1);
expect(Platform.isDucked()).toBe(false);
expect(AudioPolicy.status).toBe(AudioPolicy.StatusCarPlayRestore);
expect(media()).toBe(56);

say("Ignition off. What the keys changed is stored");
powerOff();
expect([0, 1, 2, 3].map(type => AudioSettings.getVolume(type))).toEqual([14, 15, 17, 11]);

// CarPlay prompts: ducks and unducks that come too early and too late, and the two timers that make the best of them.
//
// A prompt ducks the music at once. Only after 1000 ms it also gets the prompts' volume (status 10), and only when 500 ms have
// passed after its end is everything restored (status 11).

function media() {
    return Platform.trackVolume("main", "S+CarPlayMedia");
}

say("The telephone is plugged in and plays");
powerOn();
AudioPolicy.setVolume(AudioPolicy.Media, 16, true);
AudioPolicy.setVolume(AudioPolicy.Prompt, 10, true);
AudioPolicy.setVolume(AudioPolicy.Telephony, 15, true);
AudioPolicy.setCPConnected(true);
AudioPolicy.updateAudioChannel(AudioPolicy.ChannelCarPlayMedia);
wait(3000);
expect(AudioPolicy.getCPConnected()).toBe(true);
expect(Platform.activeSource("main")).toBe("S+CarPlayMedia");
expect(media()).toBe(64);

say("A short prompt of 900 ms never comes to status 10");
AudioPolicy.cpDuckAudio(0, 20);
// The gain is 60 whatever level the telephone asks for.
expect(Platform.duckingGain()).toBe(60);
expect(Platform.isDucked()).toBe(true);
wait(900);
AudioPolicy.cpUnduckAudio(0);
wait(499);
expect(AudioPolicy.status).toBe(AudioPolicy.StatusNone);
expect(Platform.isDucked()).toBe(true);
wait(1);
expect(AudioPolicy.status).toBe(AudioPolicy.StatusCarPlayRestore);
expect(Platform.isDucked()).toBe(false);
expect(media()).toBe(64);
wait(10000);
expect(AudioPolicy.status).toBe(AudioPolicy.StatusCarPlayRestore);

say("A long prompt has its volume after one second");
AudioPolicy.cpDuckAudio(0, 20);
wait(999);
expect(AudioPolicy.status).toBe(AudioPolicy.StatusCarPlayRestore);
expect(media()).toBe(64);
wait(1);
expect(AudioPolicy.status).toBe(AudioPolicy.StatusCarPlayDuck);
// 10 * 4 = 40, of which 60 percent
expect(media()).toBe(40);
expect(Platform.effectiveMainVolume()).toBe(24);
wait(2000);
AudioPolicy.cpUnduckAudio(0);
wait(500);
expect(AudioPolicy.status).toBe(AudioPolicy.StatusCarPlayRestore);
expect(media()).toBe(64);

say("The next prompt comes 300 ms after the last one's end: the music stays ducked in between");
AudioPolicy.cpDuckAudio(0, 20);
wait(1500);
AudioPolicy.cpUnduckAudio(0);
wait(300);
AudioPolicy.cpDuckAudio(0, 20);
wait(200);
expect(Platform.isDucked()).toBe(true);
expect(AudioPolicy.status).toBe(AudioPolicy.StatusCarPlayDuck);
wait(5000);
expect(Platform.isDucked()).toBe(true);
AudioPolicy.cpUnduckAudio(0);
wait(500);
expect(Platform.isDucked()).toBe(false);
expect(media()).toBe(64);

say("An unduck without a duck restores what was never lowered");
AudioPolicy.cpUnduckAudio(0);
wait(500);
expect(Platform.isDucked()).toBe(false);
expect(media()).toBe(64);

say("Status 10 without a duck comes from keys pressed on the telephone: no volume is written");
Platform.clearJournal();
AudioPolicy.updateAudioStatus(AudioPolicy.StatusCarPlayDuck);
expect(AudioPolicy.status).toBe(AudioPolicy.StatusCarPlayDuck);
expect(Platform.journal()).toEqual([]);

say("Another status within the second takes the place of status 10");
AudioPolicy.updateAudioStatus(AudioPolicy.StatusCarPlayRestore);
AudioPolicy.cpDuckAudio(0, 20);
wait(500);
AudioPolicy.updateAudioStatus(AudioPolicy.StatusCarPlaySpeech);
wait(5000);
expect(AudioPolicy.status).toBe(AudioPolicy.StatusCarPlaySpeech);
expect(media()).toBe(64);
AudioPolicy.cpUnduckAudio(0);
wait(500);

say("A prompt that ends during a CarPlay call restores the music's volume, not the call's");
AudioPolicy.updateAudioChannel(AudioPolicy.ChannelCarPlayTelephony);
AudioPolicy.updateAudioStatus(AudioPolicy.StatusCarPlayTelephony);
// 15 * 4 = 60, boosted by 1.5
expect(Platform.trackVolume("main", "S+CarPlayTelephony")).toBe(90);
AudioPolicy.cpDuckAudio(0, 20);
AudioPolicy.cpUnduckAudio(0);
Platform.clearJournal();
wait(500);
expect(AudioPolicy.status).toBe(AudioPolicy.StatusCarPlayRestore);
expect(Platform.journal()).toEqual(['Volume.setTrackVolume("main", "S+CarPlayMedia", 64) -> 0', "Volume.setDuckingMode(0) -> 0"]);
expect(Platform.trackVolume("main", "S+CarPlayTelephony")).toBe(90);

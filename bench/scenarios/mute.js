// Mute: for a time, plainly, and by one key.

function muted() {
    return [Platform.isMuted("main"), Platform.isMuted("alternative")];
}

powerOn();
wait(1000);

say("Ten times 50 ms of silence, prompts included");
AudioPolicy.setAudioMute(true, 10);
expect(muted()).toEqual([true, true]);
expect(AudioPolicy.isAttOn()).toBe(true);
wait(499);
expect(muted()).toEqual([true, true]);
wait(1);
expect(muted()).toEqual([false, false]);
expect(AudioPolicy.muted).toBe(false);

say("A second timed mute begins its time anew");
AudioPolicy.setAudioMute(true, 10);
wait(300);
AudioPolicy.setAudioMute(true, 10);
wait(499);
expect(AudioPolicy.muted).toBe(true);
wait(1);
expect(AudioPolicy.muted).toBe(false);

say("A count of 0 lasts until the event loop's next turn");
AudioPolicy.setAudioMute(true, 0);
expect(AudioPolicy.muted).toBe(true);
wait(0);
expect(AudioPolicy.muted).toBe(false);

say("A negative count unmutes, although it says mute");
AudioPolicy.setMute(true);
AudioPolicy.setAudioMute(true, -1);
expect(AudioPolicy.muted).toBe(false);

say("A count too large for any timer mutes for the longest time there is, not for a negative one");
AudioPolicy.setAudioMute(true, 100000000);
wait(600000);
expect(AudioPolicy.muted).toBe(true);
AudioPolicy.deMute();
expect(AudioPolicy.muted).toBe(false);

say("Trap: an unmute leaves the timer running, so it also ends a later mute that has no time of its own");
AudioPolicy.setAudioMute(true, 20);
wait(200);
AudioPolicy.setAudioMute(false, 0);
expect(AudioPolicy.muted).toBe(false);
wait(300);
AudioPolicy.setMute(true);
wait(499);
expect(AudioPolicy.muted).toBe(true);
wait(1);
expect(AudioPolicy.muted).toBe(false);

say("The mute key: silent, audible");
AudioPolicy.triggerAtt();
expect(AudioPolicy.muted).toBe(true);
AudioPolicy.triggerAtt();
expect(AudioPolicy.muted).toBe(false);

say("The same state again does not reach the platform");
AudioPolicy.setMute(true);
Platform.clearJournal();
AudioPolicy.setMute(true);
expect(Platform.journal()).toEqual([]);

say("While muted nothing is heard, whatever the volume");
AudioPolicy.updateAudioChannel(AudioPolicy.ChannelDiscPlayer);
AudioPolicy.setVolume(AudioPolicy.Media, 25, false);
expect(Platform.trackVolume("main", "S+DiscPlayer")).toBe(100);
expect(Platform.effectiveGain("main", "S+DiscPlayer", 1)).toBe(0);
AudioPolicy.setMute(false);
expect(Platform.effectiveGain("main", "S+DiscPlayer", 1)).toBeCloseTo(100 / 148, 0.0001);

say("A platform that refuses: the library counts as muted all the same");
Platform.failOnce("Volume.muteTrack", 5, 1);
AudioPolicy.setMute(true);
expect(AudioPolicy.isAttOn()).toBe(true);
expect(muted()).toEqual([false, true]);
AudioPolicy.setMute(false);

say("The rear seats are muted apart from all that");
AudioControl.muteBackEarphone(true);
expect(Platform.isMuted("second")).toBe(true);
expect(muted()).toEqual([false, false]);
AudioControl.setBackEarphone(true);
expect(Platform.isMuted("second")).toBe(false);

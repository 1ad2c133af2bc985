// A timed mute, and what its timer does to a later mute.

powerOn();
AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);
wait(1000);

say("Twenty times 50 ms");
AudioPolicy.setAudioMute(true, 20);
wait(999);
expect(AudioPolicy.muted).toBe(true);
wait(1);
expect(AudioPolicy.muted).toBe(false);
wait(1000);

say("Muted for good, then unmuted");
AudioPolicy.setMute(true);
wait(2000);
expect(AudioPolicy.muted).toBe(true);
AudioPolicy.setMute(false);
wait(1000);

say("Trap: forty times 50 ms, unmuted after one second, muted for good half a second later: the first mute's timer unmutes");
AudioPolicy.setAudioMute(true, 40);
wait(1000);
AudioPolicy.setMute(false);
wait(500);
AudioPolicy.setMute(true);
wait(499);
expect(AudioPolicy.muted).toBe(true);
wait(1);
expect(AudioPolicy.muted).toBe(false);
wait(1000);

say("The drive ends");

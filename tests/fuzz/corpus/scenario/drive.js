powerOn();
AudioPolicy.setVolume(AudioPolicy.Media, 12, true);
AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);
wait(500);
expect(Platform.trackVolume("main", "S+FilePlayer")).toBe(48);
powerOff();
writeSettings("[Volume]\n0=7\n");
powerOn();
expect(AudioPolicy.getVolume(AudioPolicy.Media)).not.toBe(12);

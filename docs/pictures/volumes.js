// The same stored volume is louder for a boosted source, and ends at 148 there.

function sent(source) {
    return Platform.trackVolume("main", source);
}

powerOn();

for (const volume of [5, 10, 15, 20, 25]) {
    const boosted = Math.min(148, volume * 6);
    say("All volumes at " + volume + ": media reach the platform as " + volume * 4 + ", a call, boosted, as " + boosted);
    AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);
    AudioPolicy.updateAudioStatus(AudioPolicy.StatusNone);
    AudioPolicy.setVolume(AudioPolicy.Media, volume, true);
    AudioPolicy.setVolume(AudioPolicy.Telephony, volume, true);
    wait(2000);
    expect(sent("S+FilePlayer")).toBe(volume * 4);
    AudioPolicy.updateAudioChannel(AudioPolicy.ChannelBtPhone);
    AudioPolicy.updateAudioStatus(AudioPolicy.StatusBtTelephony);
    wait(2000);
    expect(sent("S+BtPcmPhone")).toBe(boosted);
}

say("The drive ends");

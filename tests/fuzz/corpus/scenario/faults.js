Platform.failOnce("Volume.muteTrack", 5, 1);
try {
    AudioControl.setStreamVolume(AudioControl.Main, "S+FilePlayer_APP", 80);
    expect(Platform.problems()).toEqual([]);
    Platform.setCallDuration(5);
    AudioControl.setFadeBalance(-15, 15);
} finally {
    say(String(now()));
}

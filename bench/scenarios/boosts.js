// Boosts: speech, calls and ringing get half as much again, held at 148, so that they stand above music of the same volume.
//
// Sound.above() lets FFmpeg and espeak-ng make sound of what was played, and measures it: the Debian packages ffmpeg and espeak-ng.

// Speech of CarPlay with this volume. Gives how far it stood above the music, in LU.
function speech(volume) {
    AudioPolicy.setVolume(AudioPolicy.Speech, volume, true);
    AudioPolicy.updateAudioStatus(AudioPolicy.StatusCarPlaySpeech);
    wait(6000);
    const distance = Sound.above("S+CarPlaySpeech", "S+FilePlayer");
    AudioPolicy.updateAudioStatus(AudioPolicy.StatusNone);
    wait(2000);
    return distance;
}

// What a source is sent.
function sent(source) {
    return Platform.trackVolume("main", source);
}

say("The file player plays at 12, which the platform is sent as 48");
powerOn();
AudioPolicy.setVolume(AudioPolicy.Media, 12, true);
AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);
wait(5000);
expect(sent("S+FilePlayer")).toBe(48);

say("Speech at 8 is sent as 48, too: 32 and half as much again");
const even = speech(8);
expect(sent("S+CarPlaySpeech")).toBe(48);

say("Speech at 12, like the music, is sent as 72. It stands 3.5 LU higher");
expect(speech(12)).toBeCloseTo(even + 20 * Math.log10(72 / 48), 0.2);
expect(sent("S+CarPlaySpeech")).toBe(72);

say("At 24 it is 144, and at 25 it is held at 148 instead of 150: the last step is hardly one");
const nearlyAll = speech(24);
expect(sent("S+CarPlaySpeech")).toBe(144);
expect(nearlyAll).toBeCloseTo(even + 20 * Math.log10(144 / 48), 0.2);
const all = speech(25);
expect(sent("S+CarPlaySpeech")).toBe(148);
expect(all).toBeCloseTo(even + 20 * Math.log10(148 / 48), 0.2);
expect(all - nearlyAll).toBeLessThan(0.5);
expect(all).toBeGreaterThan(6);

say("The music at 25 is sent as 100, without a boost: even speech at its highest does not stand 6 LU above it");
AudioPolicy.setVolume(AudioPolicy.Media, 25, true);
wait(1000);
expect(sent("S+FilePlayer")).toBe(100);
const overLoudMusic = speech(25);
expect(overLoudMusic).toBeCloseTo(even + 20 * Math.log10(148 / 100), 0.2);
expect(overLoudMusic).toBeLessThan(6);

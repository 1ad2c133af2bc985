// Prompts over the music: easy to understand from 6 to 12 LU above it. Quieter ones get lost, louder ones startle.
//
// Sound.above() lets FFmpeg and espeak-ng make sound of what was played, and measures it: the Debian packages ffmpeg and espeak-ng.

// A prompt of Android Auto. Gives how far it stood above the music, in LU.
function prompt() {
    AudioPolicy.aaDuckAudio(0, 0);
    wait(6000);
    AudioPolicy.aaUnduckAudio(0);
    const distance = Sound.above("S+AndroidAuto", "S+FilePlayer");
    wait(10000);
    return distance;
}

say("Music and prompts have the same volume. Ducked to 60 percent the music stands back, and prompts are boosted");
powerOn();
AudioPolicy.setVolume(AudioPolicy.Media, 12, true);
AudioPolicy.setVolume(AudioPolicy.Prompt, 12, true);
AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);
wait(10000);
const same = prompt();
expect(same).toBeGreaterThan(6);
expect(same).toBeLessThan(12);

say("On the motorway the music is turned up, and the prompts get lost in it");
AudioPolicy.setVolume(AudioPolicy.Media, 20, true);
wait(10000);
const louderMusic = prompt();
// 12 * 4 = 48 became 80
expect(louderMusic).toBeCloseTo(same - 4.4, 0.2);
expect(louderMusic).toBeLessThan(6);

say("The prompts are turned up, too");
AudioPolicy.setVolume(AudioPolicy.Prompt, 20, true);
const louderPrompt = prompt();
expect(louderPrompt).toBeCloseTo(same, 0.2);

say("In town the music is turned down, and the next prompt startles");
AudioPolicy.setVolume(AudioPolicy.Media, 8, true);
wait(10000);
expect(prompt()).toBeGreaterThan(12);

say("CarPlay gives the music the volume of the prompts a second later: it is as far away as ever, whatever was chosen for it");
AudioPolicy.cpDuckAudio(0, 20);
wait(6000);
expect(Sound.above("S+CarPlaySpeech", "S+FilePlayer")).toBeGreaterThan(6);
expect(Sound.above("S+CarPlaySpeech")).toBe(Sound.above("S+CarPlaySpeech", "S+FilePlayer"));
AudioPolicy.cpUnduckAudio(0);
wait(500);
expect(Platform.trackVolume("main", "S+FilePlayer")).toBe(32);

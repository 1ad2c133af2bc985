// Prompts of Android Auto and of CarPlay over music of each.

function main(source) {
    return Platform.trackVolume("main", source);
}

powerOn();
AudioPolicy.setVolume(AudioPolicy.Media, 16, true);
AudioPolicy.setVolume(AudioPolicy.Prompt, 10, true);

say("Android Auto: ducked with the prompts' volume, and restored, at once");
AudioPolicy.updateAudioChannel(AudioPolicy.ChannelAndroidAuto);
wait(1000);
AudioPolicy.aaDuckAudio(0, 0);
expect(Platform.isDucked()).toBe(true);
expect(main("S+AndroidAuto")).toBe(40);
wait(2000);
AudioPolicy.aaUnduckAudio(0);
expect(Platform.isDucked()).toBe(false);
expect(main("S+AndroidAuto")).toBe(64);
wait(1000);

say("CarPlay, a long prompt: ducked at once, the prompts' volume after 1000 ms, restored 500 ms after its end");
AudioPolicy.updateAudioChannel(AudioPolicy.ChannelCarPlayMedia);
wait(1000);
AudioPolicy.cpDuckAudio(0, 0);
expect(Platform.isDucked()).toBe(true);
wait(999);
expect(main("S+CarPlayMedia")).toBe(64);
wait(1);
expect(main("S+CarPlayMedia")).toBe(40);
wait(1500);
AudioPolicy.cpUnduckAudio(0);
wait(499);
expect(Platform.isDucked()).toBe(true);
wait(1);
expect(Platform.isDucked()).toBe(false);
expect(main("S+CarPlayMedia")).toBe(64);
wait(1000);

say("A prompt of 800 ms: never the prompts' volume");
AudioPolicy.cpDuckAudio(0, 0);
wait(800);
AudioPolicy.cpUnduckAudio(0);
wait(500);
expect(main("S+CarPlayMedia")).toBe(64);
wait(1000);

say("Two prompts 300 ms apart: not restored in between");
AudioPolicy.cpDuckAudio(0, 0);
wait(1500);
AudioPolicy.cpUnduckAudio(0);
wait(300);
AudioPolicy.cpDuckAudio(0, 0);
wait(1500);
expect(Platform.isDucked()).toBe(true);
AudioPolicy.cpUnduckAudio(0);
wait(500);
expect(Platform.isDucked()).toBe(false);
wait(1000);

say("Reverse gear: the same way");
Platform.setReverseGear(true);
wait(2000);
expect(main("S+CarPlayMedia")).toBe(40);
Platform.setReverseGear(false);
wait(500);
expect(main("S+CarPlayMedia")).toBe(64);
wait(1000);

say("The drive ends");

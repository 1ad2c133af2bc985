// The volume keys: steps of what plays, volume groups, and the alternative track.
//
// The facade keeps a step for each source, from 0 to the step range, and sends the platform value 100 * step / range.

const media = "S+FilePlayer_APP";

say("Thirty steps; the file player stands at 15, the disc player has no step yet");
AudioControl.setStepRange(30);
AudioControl.initTrackStepVolume(AudioControl.Main, {[media]: 15});
expect(Platform.trackVolume("main", "S+FilePlayer")).toBe(50);
expect(Platform.trackVolume("main", "S+AndroidAuto")).toBe(50);

say("Android Auto plays: it belongs to the file player's group, so that is what is stepped");
AudioControl.setOutputSource(AudioControl.Main, "S+AndroidAuto_APP");
expect(AudioControl.changeMainTrackStepVolume(true)).toEqual({result: 0, name: media, step: 16});
// 100 * 16 / 30 = 53, for both.
expect(Platform.trackVolume("main", "S+AndroidAuto")).toBe(53);
expect(Platform.trackVolume("main", "S+FilePlayer")).toBe(53);

say("The file player plays: the same step, and it comes first");
AudioControl.setOutputSource(AudioControl.Main, media);
Platform.clearJournal();
expect(AudioControl.changeMainTrackStepVolume(false)).toEqual({result: 0, name: media, step: 15});
expect(Platform.journal()).toEqual([
    'Source.getActiveSource("main") -> "S+FilePlayer"',
    'Volume.setTrackVolume("main", "S+FilePlayer", 50) -> 0',
    'Volume.setTrackVolume("main", "S+AndroidAuto", 50) -> 0',
]);

say("Up to the top, and not further");
for (let step = 16; step <= 30; ++step)
    AudioControl.changeMainTrackStepVolume(true);
expect(Platform.trackVolume("main", "S+FilePlayer")).toBe(100);
expect(AudioControl.changeMainTrackStepVolume(true)).toEqual({result: 1, name: media, step: 30});
expect(Platform.trackVolume("main", "S+FilePlayer")).toBe(100);

say("A source without a step starts in the middle");
AudioControl.setOutputSource(AudioControl.Main, "S+DiscPlayer_APP");
expect(AudioControl.getCurMainTrackStepVolumeInfo().result).toBe(-1);
expect(AudioControl.changeMainTrackStepVolume(true)).toEqual({result: 0, name: "S+DiscPlayer_APP", step: 16});
expect(AudioControl.getCurMainTrackStepVolumeInfo()).toEqual({result: 0, name: "S+DiscPlayer_APP", step: 16});
// A step sends no boost and touches no other source.
expect(Platform.trackVolume("main", "S+DiscPlayer")).toBe(53);
expect(Platform.trackVolume("main", "S+FilePlayer")).toBe(100);

say("Nothing plays: the file player stands in for it");
AudioControl.setOutputSource("main", "S+none");
expect(AudioControl.changeMainTrackStepVolume(false)).toEqual({result: 0, name: media, step: 29});
// 100 * 29 / 30 = 96
expect(Platform.trackVolume("main", "S+FilePlayer")).toBe(96);

say("A platform that refuses leaves the step where it was");
Platform.failOnce("Volume.setTrackVolume", 7, 1);
expect(AudioControl.changeMainTrackStepVolume(false).result).toBe(7);
expect(AudioControl.getCurMainTrackStepVolumeInfo().step).toBe(29);

say("The alternative track has one volume for all its sources; its caller keeps the step");
expect(AudioControl.changeAlterStepVolume(true, 14)).toEqual({result: 0, step: 15});
expect(Platform.alternativeVolume()).toBe(50);
expect(AudioControl.changeAlterStepVolume(true, 30).result).toBe(1);
expect(Platform.alternativeVolume()).toBe(50);

say("Set outright, it is boosted and held at 148; the result is -1 all the same");
expect(AudioControl.setAlterVolume(60, false)).toBe(-1);
expect(Platform.alternativeVolume()).toBe(90);
expect(AudioControl.setAlterVolume(100, true)).toBe(-1);
expect(Platform.alternativeVolume()).toBe(148);
expect(Platform.trackVolume("main", "hicar_voice_callmodemspeaker10")).toBe(148);

say("The master step: the same step again does not reach the platform");
expect(AudioControl.setMasterStepVolume(20)).toBe(0);
expect(AudioControl.getMasterStepVolume()).toBe(20);
Platform.clearJournal();
expect(AudioControl.setMasterStepVolume(20)).not.toBe(0);
expect(Platform.journal()).toEqual([]);

// What the player tells the unit, and what the driver has to hear then.

say("The player starts, a step louder than yesterday");
const player = new AudioFocus({clientId: "player", durationHint: AudioFocus.Gain});
expect(player.request()).toBe(true);
AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);
AudioPolicy.updateCurrentAudioVolume(true);
expect(Platform.activeSource("main")).toBe("S+FilePlayer");
expect(Platform.effectiveMainVolume()).toBe(84);
wait(5000);

say("Reverse gear: quieter at once, although nobody asked the player");
Platform.setReverseGear(true);
expect(Platform.isDucked()).toBe(true);
expect(player.changes).toEqual([]);
wait(3000);
Platform.setReverseGear(false);
wait(500);
expect(Platform.effectiveMainVolume()).toBe(84);

say("The navigation speaks: the player may go on, quietly");
const navigation = new AudioFocus({clientId: "navigation", durationHint: AudioFocus.GainTransientMayDuck});
expect(navigation.request()).toBe(true);
expect(player.changes).toEqual([AudioFocus.LossTransientCanDuck]);
wait(2000);
navigation.release();
expect(player.changes.slice(1)).toEqual([AudioFocus.Gain]);

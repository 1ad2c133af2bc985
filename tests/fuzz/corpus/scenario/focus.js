const music = new AudioFocus({clientId: "music", durationHint: AudioFocus.Gain});
const call = new AudioFocus({clientId: "IN_VOICE_COMM_FOCUS_ID", durationHint: AudioFocus.GainTransientExclusive});
expect(music.request()).toBe(true);
expect(call.request()).toBe(true);
expect(music.request()).toBe(false);
expect(music.changes).toEqual([AudioFocus.LossTransient]);
call.release();

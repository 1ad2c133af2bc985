// Audio focus among the applications of one process: who may sound, and who is told to be quiet.

const music = new AudioFocus({clientId: "music", durationHint: AudioFocus.Gain});
const prompt = new AudioFocus({clientId: "navigation", durationHint: AudioFocus.GainTransientMayDuck});
const call = new AudioFocus({clientId: "telephone", durationHint: AudioFocus.GainTransient});
const radio = new AudioFocus({clientId: "radio", durationHint: AudioFocus.Gain});
const voice = new AudioFocus({clientId: "IN_VOICE_COMM_FOCUS_ID", durationHint: AudioFocus.GainTransientExclusive});

say("Music asks for focus and has it. The answer is the grant: it is told nothing more");
expect(music.request()).toBe(true);
expect(music.held).toBe(true);
expect(music.changes).toEqual([]);

say("A prompt that may duck: the music goes on, quieter");
expect(prompt.request()).toBe(true);
expect(music.changes).toEqual([AudioFocus.LossTransientCanDuck]);
expect(music.held).toBe(false);
wait(3000);
prompt.release();
expect(music.changes.slice(1)).toEqual([AudioFocus.Gain]);
expect(music.held).toBe(true);

say("A call: the music pauses. A prompt during the call ducks the call, and tells the music nothing new");
expect(call.request()).toBe(true);
expect(music.changes.slice(2)).toEqual([AudioFocus.LossTransient]);
expect(prompt.request()).toBe(true);
expect(call.changes).toEqual([AudioFocus.LossTransientCanDuck]);
expect(music.changes.length).toBe(3);
prompt.release();
expect(call.changes.slice(1)).toEqual([AudioFocus.Gain]);
call.release();
expect(music.changes.slice(3)).toEqual([AudioFocus.Gain]);

say("Voice communication: nobody may take focus from it, not even the music that was there before");
expect(voice.request()).toBe(true);
expect(music.changes.slice(4)).toEqual([AudioFocus.LossTransient]);
expect(radio.request()).toBe(false);
expect(music.request()).toBe(false);
expect(prompt.request()).toBe(false);
expect(voice.changes).toEqual([]);
voice.release();
expect(music.changes.slice(5)).toEqual([AudioFocus.Gain]);

say("The radio takes over for good: a loss that does not soften, until the radio gives focus back");
expect(radio.request()).toBe(true);
expect(music.changes.slice(6)).toEqual([AudioFocus.Loss]);
prompt.request();
expect(music.changes.length).toBe(7);
expect(radio.changes).toEqual([AudioFocus.LossTransientCanDuck]);
prompt.release();
radio.release();
expect(music.changes.slice(7)).toEqual([AudioFocus.Gain]);

say("A podcast cannot be understood when ducked: its handler gives focus up, from inside the notification");
const podcast = new AudioFocus({
    clientId: "podcast",
    durationHint: AudioFocus.Gain,
    onFocusChanged: change => {
        if (change === AudioFocus.LossTransientCanDuck)
            podcast.release();
    },
});
expect(podcast.request()).toBe(true);
prompt.request();
expect(podcast.changes).toEqual([AudioFocus.LossTransientCanDuck]);
prompt.release();
expect(podcast.changes.length).toBe(1);
expect(music.held).toBe(true);

say("A hint that does not exist is denied");
radio.durationHint = 5;
expect(radio.request()).toBe(false);
expect(music.held).toBe(true);

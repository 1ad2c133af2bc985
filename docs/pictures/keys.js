// Three steps up in different situations: which volume they move.

function volumes() {
    return [0, 1, 2, 3, 4, 5].map(type => AudioPolicy.getVolume(type));
}

// Three steps, which move the volume of this type and no other; without a type none.
function keysMove(type) {
    const expected = volumes();
    if (type !== undefined)
        expected[type] += 3;
    for (let step = 0; step < 3; ++step) {
        wait(1000);
        AudioPolicy.updateCurrentAudioVolume(true);
    }
    wait(1000);
    expect(volumes()).toEqual(expected);
}

powerOn();
for (let type = 0; type < 6; ++type)
    AudioPolicy.setVolume(type, 10, true);

say("The file player plays: its media volume");
AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);
keysMove(AudioPolicy.Media);

say("It rings: the ring's volume, whatever plays");
AudioPolicy.updateAudioStatus(AudioPolicy.StatusBtRing);
keysMove(AudioPolicy.Ring);

say("The call: the telephone's");
AudioPolicy.updateAudioStatus(AudioPolicy.StatusBtTelephony);
keysMove(AudioPolicy.Telephony);

say("The call is over: the media volume again");
AudioPolicy.updateAudioStatus(AudioPolicy.StatusNone);
keysMove(AudioPolicy.Media);

say("A channel of telephony without its status: nothing");
AudioPolicy.updateAudioChannel(AudioPolicy.ChannelBtPhone);
keysMove();

say("HiCar: its call's volume, which no source of this unit has");
AudioPolicy.updateAudioChannel(AudioPolicy.ChannelHiCar);
keysMove(AudioPolicy.HiCarCall);

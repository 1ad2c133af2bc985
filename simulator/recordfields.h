#ifndef RECORDFIELDS_H
#define RECORDFIELDS_H

#include <qzaudio/audioplatformrecords.h>

// The fields of the platform's records, each once: the journal's texts and values and the scripts' objects come from here.
//
// visitFields(record, visit) calls visit(name, field) for each field in the order of its declaration; an array comes as the
// C array that it is, the bands of the extended equalizer record as an array of records. Names that begin with "reserved" are
// those of fields that nobody should fill.

namespace simulator
{

template<typename Visit>
void visitFields(const audio::audio_eq_parameter_t &record, Visit &&visit)
{
    visit("channel", record.channel);
    visit("frequency", record.frequency);
    visit("gain", record.gain);
    visit("type", record.type);
}

template<typename Visit>
void visitFields(const audio::audio_ext_eq_band_t &record, Visit &&visit)
{
    visit("type", record.type);
    visit("frequency", record.frequency);
    visit("reserved0", record.reserved0);
    visit("gain", record.gain);
    visit("q", record.q);
    visit("reserved1", record.reserved1);
}

template<typename Visit>
void visitFields(const audio::audio_ext_eq_parameter_t &record, Visit &&visit)
{
    visit("channel", record.channel);
    visit("band", record.band);
}

template<typename Visit>
void visitFields(const audio::audio_loudness_t &record, Visit &&visit)
{
    visit("on", record.on);
    visit("onAgain", record.onAgain);
    visit("level", record.level);
}

template<typename Visit>
void visitFields(const audio::audio_channel_gain_t &record, Visit &&visit)
{
    visit("channel", record.channel);
    visit("gain", record.gain);
    visit("reserved", record.reserved);
}

template<typename Visit>
void visitFields(const audio::audio_filter_t &record, Visit &&visit)
{
    visit("channel", record.channel);
    visit("value1", record.value1);
    visit("notFlag", record.notFlag);
    visit("value2", record.value2);
    visit("kind", record.kind);
    visit("value3", record.value3);
    visit("value4", record.value4);
}

} // namespace simulator

#endif

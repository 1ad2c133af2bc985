#ifndef CHIPVALUES_H
#define CHIPVALUES_H

#include "tracks.h"
#include "valuetext.h"

#include <QtCore/QMap>
#include <QtCore/QPair>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <array>
#include <optional>

// The values that the chip's state is made of, with the names that its table and its signal give them, and how these two show them.

namespace simulator
{

/// A single value.
template<typename Value>
struct ChipValue
{
    const char *group;
    const char *name;
    Value value = {};
};

/// One value per track, or per track and source; none until it is set.
template<typename Key, typename Value>
struct ChipMap
{
    const char *group;
    QMap<Key, Value> values = {};
};

/// One value per output channel, or for the first ones of them.
template<typename Value, std::size_t count = outputChannels.size()>
struct ChipRow
{
    const char *group;
    std::array<Value, count> values = {};
};

/// What makes the equalizer's curve: the record that was set last, and the last one of the other form.
struct EqualizerRecords
{
    enum class Form : int { None, Short, Extended };
    Form form = Form::None;
    audio::audio_eq_parameter_t shortRecord = {};
    audio::audio_ext_eq_parameter_t extendedRecord = {};

    /// Mask of the outputs that have the curve.
    quint32 channels() const { return form == Form::Extended ? extendedRecord.channel : shortRecord.channel; }
    int bandCount() const;
    /// dB, 0 for a band that is not there or not in use.
    float bandGain(int band) const;
};

inline QString itemName(const QString &track)
{
    return track;
}

inline QString itemName(const QPair<QString, QString> &trackAndSource)
{
    return trackAndSource.first + QLatin1Char(' ') + trackAndSource.second;
}

/// Gains of the curve in dB, one per band.
QVariant shown(const EqualizerRecords &records);

inline QVariant shown(const audio::audio_loudness_t &loudness)
{
    return loudness.on != 0;
}

template<typename Value>
QVariant shown(const Value &value)
{
    return toVariant(value);
}

template<typename Value>
QVariant shown(const std::optional<Value> &value)
{
    return value ? shown(*value) : QVariant();
}

template<typename Value, std::size_t count>
QVariant shown(const std::array<Value, count> &values)
{
    QVariantList list;
    for (const Value &value : values)
        list += shown(value);
    return list;
}

inline bool isSame(const EqualizerRecords &one, const EqualizerRecords &other)
{
    return recordBytes(one) == recordBytes(other);
}

inline bool isSame(const audio::audio_loudness_t &one, const audio::audio_loudness_t &other)
{
    return recordBytes(one) == recordBytes(other);
}

inline bool isSame(const audio::audio_filter_t &one, const audio::audio_filter_t &other)
{
    return recordBytes(one) == recordBytes(other);
}

template<typename Value>
bool isSame(const Value &one, const Value &other)
{
    return one == other;
}

template<typename Value>
bool isSame(const std::optional<Value> &one, const std::optional<Value> &other)
{
    return one.has_value() == other.has_value() && (!one || isSame(*one, *other));
}

} // namespace simulator

#endif

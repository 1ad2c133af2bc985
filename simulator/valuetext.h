#ifndef VALUETEXT_H
#define VALUETEXT_H

#include <qzaudio/audioplatformrecords.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QVariantMap>

// How values look in the journal; the format is described in journal.h.

namespace simulator
{

/// In double quotes, with quotes, backslashes and control characters escaped; null for a null string.
QString quotedText(const QString &text);

/// The fewest digits that read back the same.
QString floatText(float value);

QString recordText(const audio::audio_channel_gain_t &record);
QString recordText(const audio::audio_loudness_t &record);
QString recordText(const audio::audio_filter_t &record);
QString recordText(const audio::audio_eq_parameter_t &record);
QString recordText(const audio::audio_ext_eq_parameter_t &record);

/// As it lies in memory; the platform's records have no padding.
template<typename Record>
QByteArray recordBytes(const Record &record)
{
    return {reinterpret_cast<const char *>(&record), static_cast<int>(sizeof record)};
}

/// The fields by name, all of them.
QVariantMap recordFields(const audio::audio_channel_gain_t &record);
QVariantMap recordFields(const audio::audio_loudness_t &record);
QVariantMap recordFields(const audio::audio_filter_t &record);
QVariantMap recordFields(const audio::audio_eq_parameter_t &record);
QVariantMap recordFields(const audio::audio_ext_eq_parameter_t &record);

} // namespace simulator

#endif

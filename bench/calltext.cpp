#include "calltext.h"

#include "journalentry.h"

#include <qzaudio/audioplatformrecords.h>

#include <cstring>

namespace
{

constexpr int usedBands = 16;

QString gainsText(const float *gains, int count)
{
    QString text = QStringLiteral("gains");
    for (int i = 0; i < count; ++i) {
        constexpr int digits = 6;
        text += QLatin1Char(' ') + QString::number(double(gains[i]), 'g', digits);
    }
    return text + QStringLiteral(" dB");
}

/// The gains of an equalizer record; empty for any other call.
QString equalizerText(const simulator::JournalEntry &entry)
{
    if (entry.operation == QLatin1String("setEqParameter") && entry.record.size() == int(sizeof(audio::audio_eq_parameter_t))) {
        audio::audio_eq_parameter_t record = {};
        std::memcpy(&record, entry.record.constData(), sizeof record);
        return gainsText(record.gain, int(std::size(record.gain)));
    }
    if (entry.operation == QLatin1String("setExtEqParameter") && entry.record.size() == int(sizeof(audio::audio_ext_eq_parameter_t))) {
        audio::audio_ext_eq_parameter_t record = {};
        std::memcpy(&record, entry.record.constData(), sizeof record);
        float gains[usedBands] = {};
        for (int i = 0; i < usedBands; ++i)
            gains[i] = record.band[i].gain;
        return gainsText(gains, usedBands);
    }
    return {};
}

} // namespace

QString callText(const simulator::JournalEntry &entry)
{
    simulator::JournalEntry shown = entry;
    const QString equalizer = equalizerText(entry);
    if (!equalizer.isEmpty())
        shown.argumentTexts = QStringList(equalizer);
    return entry.note.isEmpty() ? shown.call() : shown.call() + QStringLiteral(" (") + entry.note + QLatin1Char(')');
}

#include "equalizercurves.h"

#include "audiochip.h"

#include <QtCore/QRegularExpression>

#include <algorithm>
#include <cmath>
#include <iterator>

using EqualizerResponse::Band;
using EqualizerResponse::Bands;

namespace EqualizerCurves
{

namespace
{

constexpr Band sixteenBands[bandCount] = {
    {50, 1.0, 0},
    {80, 1.0, 0},
    {125, 1.0, 0},
    {200, 1.5, 0},
    {315, 1.5, 0},
    {500, 1.5, 0},
    {630, 1.5, 0},
    {800, 2.0, 0},
    {1000, 2.0, 0},
    {2000, 2.0, 0},
    {3100, 2.0, 0},
    {4000, 2.0, 0},
    {5000, 2.0, 0},
    {6300, 1.0, 0},
    {16000, 1.0, 0},
    {20000, 1.0, 0},
};

struct ShortBand
{
    quint16 code; ///< of the platform
    quint16 frequency; ///< Hz
};

constexpr ShortBand shortBands[] = {
    {10, 50},
    {18, 200},
    {26, 400},
    {35, 1000},
    {44, 3000},
    {52, 7000},
    {58, 15000},
    {33, 800},
};

// clang-format off
constexpr double modeGains[modeCount][std::size(shortBands)] = {
    { 4.8,  4.3,  3.8, 3.4, 3.0, 2.7, 2.5, 0.5},
    { 7.0,  5.5,  4.0, 3.5, 3.0, 2.0, 1.5, 0.5},
    { 5.0,  4.5,  3.0, 1.0, 2.0, 4.0, 5.0, 0.0},
    { 6.0,  5.0,  4.0, 0.0, 0.0, 0.0, 3.0, 4.0},
    {-3.0, -2.0,  0.0, 3.0, 4.0, 5.0, 5.5, 5.5},
    {-4.0, -5.0, -5.0, 3.0, 4.0, 6.0, 6.0, 5.0},
    { 0.0,  0.0,  0.0, 0.0, 0.0, 0.0, 0.0, 0.0},
};

constexpr Gains presetGains[presetCount] = {
    { 4.8,  4.3,  3.8, 3.4, 3.0, 2.7, 2.5, 0.5, -4.0, -3.0, 0.0, 1.1, 2.2,  2.7,  3.2,  3.8},
    { 5.0,  5.5,  4.0, 3.5, 3.0, 2.0, 1.5, 0.5,  0.0,  0.5, 2.0, 3.0, 5.0,  4.0,  6.0,  5.0},
    { 5.0,  4.5,  3.0, 1.0, 2.0, 4.0, 5.0, 0.0, -2.0, -2.0, 3.0, 4.0, 5.0,  5.5,  5.5,  2.0},
    { 6.0,  5.0,  4.0, 0.0, 0.0, 0.0, 3.0, 4.0,  4.0,  2.0, 0.0, 0.0, 5.0,  5.0,  5.0,  5.0},
    {-3.0, -2.0,  0.0, 3.0, 4.0, 5.0, 5.5, 5.5,  5.5,  4.0, 3.0, 3.0, 0.0, -3.0,  5.0,  4.0},
    {-4.0, -5.0, -5.0, 3.0, 4.0, 6.0, 6.0, 5.0,  5.0,  5.5, 2.0, 1.0, 0.0,  0.0, -4.0, -5.0},
    { 2.0,  2.0,  2.0, 2.0, 2.0, 2.0, 2.0, 2.0,  2.0,  2.0, 2.0, 2.0, 2.0,  2.0,  2.0,  2.0},
    { 0.0,  0.0,  0.0, 0.0, 0.0, 0.0, 0.0, 0.0,  0.0,  0.0, 0.0, 0.0, 0.0,  0.0,  0.0,  0.0},
};
// clang-format on

/// No code is also the frequency of a band in Hz.
double frequencyOf(quint16 codeOrFrequency)
{
    const auto *const found
        = std::find_if(std::begin(shortBands), std::end(shortBands), [codeOrFrequency](const ShortBand &band) { return band.code == codeOrFrequency; });
    return found == std::end(shortBands) ? codeOrFrequency : found->frequency;
}

double qOfNearest(double frequency)
{
    const auto distance = [frequency](const Band &band) { return std::abs(std::log(band.frequency / frequency)); };
    const auto *const nearest = std::min_element(
        std::begin(sixteenBands), std::end(sixteenBands), [distance](const Band &one, const Band &other) { return distance(one) < distance(other); });
    return nearest->q;
}

} // namespace

double loudnessLevel(double frequency)
{
    return EqualizerResponse::level(EqualizerResponse::Shelf::Low, {loudnessFrequency, loudnessQ, loudnessRise}, frequency);
}

Bands ofGains(const Gains &gains)
{
    Bands bands;
    for (std::size_t band = 0; band < gains.size(); ++band)
        bands.append({sixteenBands[band].frequency, sixteenBands[band].q, gains.at(band)});
    return bands;
}

Bands ofMode(int mode)
{
    Bands bands;
    if (mode < 0 || mode >= modeCount)
        return bands;
    for (std::size_t band = 0; band < std::size(shortBands); ++band)
        bands.append({double(shortBands[band].frequency), qOfNearest(shortBands[band].frequency), modeGains[mode][band]});
    return bands;
}

Gains gainsOfPreset(int type)
{
    // As the library has it, an unknown type sounds like the first.
    return presetGains[type < 0 || type >= presetCount ? 0 : type];
}

QStringList names()
{
    QStringList all;
    for (int type = 0; type < customPreset; ++type)
        all.append(QStringLiteral("preset%1").arg(type));
    for (int mode = 0; mode < modeCount; ++mode)
        all.append(QStringLiteral("mode%1").arg(mode));
    return all;
}

std::optional<Bands> named(const QString &name)
{
    if (!names().contains(name))
        return {};
    const int number = name.rightRef(1).toInt();
    return name.startsWith(QLatin1String("mode")) ? ofMode(number) : ofGains(gainsOfPreset(number));
}

std::optional<Gains> gainsFromText(const QString &text, QString &problem)
{
    static const QRegularExpression separator(QStringLiteral("\\s*,\\s*|\\s+"));
    const QStringList words = text.trimmed().split(separator);
    if (words.size() != bandCount) {
        problem = QStringLiteral("a curve has %1 gains, not %2").arg(bandCount).arg(words.size());
        return {};
    }
    Gains gains;
    auto gain = gains.begin();
    for (const QString &word : words) {
        bool isNumber = false;
        *gain = word.toDouble(&isNumber);
        if (!isNumber || !(std::abs(*gain) <= highestGain)) {
            problem = QStringLiteral("a gain is a number from -%1 to %1, not \"%2\"").arg(highestGain).arg(word);
            return {};
        }
        ++gain;
    }
    return gains;
}

Bands ofRecord(const audio::audio_ext_eq_parameter_t &record)
{
    Bands bands;
    for (std::size_t i = 0; i < std::size(record.band); ++i) {
        const audio::audio_ext_eq_band_t &band = record.band[i];
        const double gain = simulator::decimal(band.gain);
        if (band.type == 0)
            continue;
        if (band.frequency != 0)
            bands.append({double(band.frequency), simulator::decimal(band.q), gain});
        else if (i < std::size(sixteenBands))
            bands.append({sixteenBands[i].frequency, sixteenBands[i].q, gain});
    }
    return bands;
}

Bands ofRecord(const audio::audio_eq_parameter_t &record)
{
    Bands bands;
    for (std::size_t band = 0; band < std::size(record.frequency); ++band) {
        if (record.type[band] != 0 && record.frequency[band] != 0) {
            const double frequency = frequencyOf(record.frequency[band]);
            bands.append({frequency, qOfNearest(frequency), simulator::decimal(record.gain[band])});
        }
    }
    return bands;
}

Bands ofChip(const simulator::AudioChip &chip, quint32 channel)
{
    const simulator::EqualizerRecords records = chip.equalizerRecords();
    if ((records.channels() & channel) == 0)
        return {};
    switch (records.form) {
    case simulator::EqualizerRecords::Form::None:
        break;
    case simulator::EqualizerRecords::Form::Short:
        return ofRecord(records.shortRecord);
    case simulator::EqualizerRecords::Form::Extended:
        return ofRecord(records.extendedRecord);
    }
    return {};
}

} // namespace EqualizerCurves

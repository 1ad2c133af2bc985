#include "tonemodel.h"

#include "equalizercurves.h"
#include "policynames.h"

#include <QtCore/QVariantMap>

#include <algorithm>
#include <cmath>

using EqualizerResponse::Bands;

namespace
{

constexpr int stepOfPolicy = 2; // dB, of adjustCustomEq()

/// Those that are sent are floats, and the curves they are compared with are not.
bool isNear(double one, double other)
{
    constexpr double tolerance = 0.001;
    return std::abs(one - other) < tolerance;
}

bool isCurve(const QVariantList &bands, const Bands &curve)
{
    const auto isBand = [](const QVariant &value, const EqualizerResponse::Band &band) {
        const QVariantMap map = value.toMap();
        return isNear(map.value(QStringLiteral("frequency")).toDouble(), band.frequency) && isNear(map.value(QStringLiteral("q")).toDouble(), band.q)
            && isNear(map.value(QStringLiteral("gain")).toDouble(), band.gain);
    };
    return std::equal(bands.cbegin(), bands.cend(), curve.cbegin(), curve.cend(), isBand);
}

/// Remaining ms of the policy's timer that a repeated gain waits for.
int repeatLeftOf(const QVariantList &timers)
{
    const auto *const timer = std::find_if(std::begin(policynames::timers), std::end(policynames::timers), [](const policynames::Timer &candidate) {
        return qstrcmp(candidate.name, "customEqTimer") == 0;
    });
    Q_ASSERT(timer != std::end(policynames::timers));
    for (const QVariant &value : timers) {
        const QVariantMap running = value.toMap();
        if (running.value(QStringLiteral("purpose")).toString() == QLatin1String(timer->purpose))
            return std::max(running.value(QStringLiteral("left")).toInt(), 0);
    }
    return 0;
}

/// The centres of the sixteen bands, in Hz and from 1000 on in kHz.
QStringList bandFrequencies(const QString &hertz, const QString &kilohertz)
{
    constexpr double thousand = 1000;
    QStringList texts;
    const Bands bands = EqualizerCurves::ofGains();
    for (const EqualizerResponse::Band &band : bands)
        texts.append(band.frequency < thousand ? QString::number(band.frequency) + hertz : QString::number(band.frequency / thousand) + kilohertz);
    return texts;
}

} // namespace

bool ToneModel::isCustomRefused() const
{
    return std::any_of(
        m_customGains.cbegin(), m_customGains.cend(), [](const QVariant &gain) { return std::abs(gain.toDouble()) > EqualizerCurves::highestGain; });
}

QStringList ToneModel::typeTexts() const
{
    QStringList texts;
    for (int type = 0; type < EqualizerCurves::customPreset; ++type)
        texts.append(tr("Preset %1").arg(type));
    texts.append(tr("Custom (%1)").arg(EqualizerCurves::customPreset));
    return texts;
}

QStringList ToneModel::modeTexts() const
{
    QStringList texts;
    for (int mode = 0; mode < EqualizerCurves::modeCount; ++mode)
        texts.append(tr("Mode %1").arg(mode));
    return texts;
}

QVariantList ToneModel::namedCurves() const
{
    QVariantList curves;
    const QStringList names = EqualizerCurves::names();
    for (const QString &name : names) {
        const QString text = name.startsWith(QLatin1String("mode")) ? tr("mode %1 of the facade") : tr("preset %1 of the store");
        curves.append(QVariantMap{{QStringLiteral("name"), name}, {QStringLiteral("text"), text.arg(name.right(1))}});
    }
    return curves;
}

QStringList ToneModel::bandTexts() const
{
    return bandFrequencies(QString(), QStringLiteral("k"));
}

QStringList ToneModel::bandNames() const
{
    return bandFrequencies(QStringLiteral(" Hz"), QStringLiteral(" kHz"));
}

int ToneModel::highestGain() const
{
    return int(EqualizerCurves::highestGain);
}

int ToneModel::gainStep() const
{
    return stepOfPolicy;
}

QString ToneModel::typeLine(int type) const
{
    return QStringLiteral("AudioPolicy.setEqType(%1);").arg(type);
}

QString ToneModel::modeLine(int mode) const
{
    return QStringLiteral("AudioControl.setEqMode(%1);").arg(mode);
}

QString ToneModel::loudnessLine(bool on) const
{
    return QStringLiteral("AudioPolicy.setLoudNess(%1);").arg(on ? QLatin1String("true") : QLatin1String("false"));
}

QString ToneModel::gainLine(int band, double gain) const
{
    const double possible = std::clamp(gain, -EqualizerCurves::highestGain, EqualizerCurves::highestGain);
    return QStringLiteral("AudioPolicy.adjustCustomEq(%1, %2);").arg(std::lround(possible / stepOfPolicy)).arg(band);
}

QString ToneModel::typeExpectation(int type) const
{
    return QStringLiteral("expect(AudioPolicy.eqType()).toBe(%1);").arg(type);
}

QString ToneModel::loudnessExpectation(bool on) const
{
    return QStringLiteral("expect(Platform.isLoudnessOn()).toBe(%1);").arg(on ? QLatin1String("true") : QLatin1String("false"));
}

QString ToneModel::gainExpectation(int band, int gain) const
{
    return QStringLiteral("expect(AudioPolicy.customEq(%1)).toBe(%2);").arg(band).arg(gain);
}

void ToneModel::update(const QVariantMap &snapshot)
{
    const QVariantMap tone = snapshot.value(QStringLiteral("tone")).toMap();
    const int type = tone.value(QStringLiteral("equalizerType"), -1).toInt();
    const bool isTypeOther = type != m_type;
    m_type = type;
    const QVariantList custom = tone.value(QStringLiteral("customCurve")).toList();
    const bool isCustomOther = custom != m_customGains;
    m_customGains = custom;
    const QVariantList bands = tone.value(QStringLiteral("bands")).toList();
    const bool areBandsOther = bands != m_bands;
    m_bands = bands;
    const QString curveText = textOfCurve();
    const bool isTextOther = curveText != m_curveText;
    m_curveText = curveText;
    const bool loudness = tone.value(QStringLiteral("loudness")).toBool();
    const bool isLoudnessOther = loudness != m_loudness;
    m_loudness = loudness;
    const int repeatLeft = repeatLeftOf(snapshot.value(QStringLiteral("drive")).toMap().value(QStringLiteral("timers")).toList());
    const bool isRepeatOther = repeatLeft != m_repeatLeft;
    m_repeatLeft = repeatLeft;

    if (isTypeOther)
        Q_EMIT equalizerTypeChanged();
    if (isCustomOther)
        Q_EMIT customGainsChanged();
    if (areBandsOther)
        Q_EMIT bandsChanged();
    if (isTextOther)
        Q_EMIT curveTextChanged();
    if (isLoudnessOther)
        Q_EMIT loudnessChanged();
    if (isRepeatOther)
        Q_EMIT repeatLeftChanged();
}

QString ToneModel::textOfCurve() const
{
    if (m_bands.isEmpty())
        return tr("no curve yet");
    EqualizerCurves::Gains custom = {};
    if (std::size_t(m_customGains.size()) == custom.size()) {
        std::transform(m_customGains.cbegin(), m_customGains.cend(), custom.begin(), [](const QVariant &gain) { return gain.toDouble(); });
        if (m_type == EqualizerCurves::customPreset && isCurve(m_bands, EqualizerCurves::ofGains(custom)))
            return tr("the custom curve");
    }
    const QStringList names = EqualizerCurves::names();
    const QVariantList named = namedCurves();
    for (int i = 0; i < names.size(); ++i) {
        if (isCurve(m_bands, *EqualizerCurves::named(names.at(i))))
            return named.at(i).toMap().value(QStringLiteral("text")).toString();
    }
    return tr("a curve of its own");
}

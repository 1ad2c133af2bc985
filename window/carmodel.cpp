#include "carmodel.h"

#include "heard.h"
#include "plot/fadeplot.h"
#include "policytext.h"

#include <QtCore/QStringList>
#include <QtCore/QVariantMap>

#include <algorithm>
#include <cmath>

namespace
{

constexpr double fullGain = 100; // percent

/// AudioControl's names of the outputs, in the order of their bits.
constexpr const char *channels[] = {"LeftFront", "RightFront", "LeftRear", "RightRear", "FifthOutput", "SixthOutput"};

/// As the platform names an output.
int bitOf(int output)
{
    return 1 << output;
}

QString gainText(int gain)
{
    if (gain <= 0)
        return CarModel::tr("silent");
    constexpr double decibelPerTenfold = 20;
    return CarModel::tr("%1 %, %2 dB").arg(gain).arg(decibelPerTenfold * std::log10(gain / fullGain), 0, 'f', 1);
}

/// 0 for what nobody hears in a car, 1 for the loudest.
double loudnessOf(double level)
{
    constexpr double lowest = -60; // dB
    return std::isnan(level) ? 0 : std::clamp(1 - level / lowest, 0.0, 1.0);
}

QVariantMap outputOf(const QVariantMap &loudspeaker)
{
    const double level = loudspeaker.value(QStringLiteral("level"), qQNaN()).toDouble();
    const int gain = loudspeaker.value(QStringLiteral("gain")).toInt();
    return {
        {QStringLiteral("name"), loudspeaker.value(QStringLiteral("name"))},
        {QStringLiteral("gain"), gain},
        {QStringLiteral("gainText"), gainText(gain)},
        {QStringLiteral("level"), level},
        {QStringLiteral("levelText"), Heard::levelText(level)},
        {QStringLiteral("loudness"), loudnessOf(level)},
        {QStringLiteral("delay"), loudspeaker.value(QStringLiteral("delay")).toDouble()},
        {QStringLiteral("filter"), loudspeaker.value(QStringLiteral("filter")).toString()},
    };
}

QVariantMap sourceOf(const QVariantMap &playing)
{
    const double level = playing.value(QStringLiteral("level"), qQNaN()).toDouble();
    const QString source = playing.value(QStringLiteral("source")).toString();
    return {
        {QStringLiteral("track"), playing.value(QStringLiteral("track"))},
        {QStringLiteral("source"), source},
        {QStringLiteral("text"), sourceText(source)},
        {QStringLiteral("level"), level},
        {QStringLiteral("levelText"), Heard::levelText(level)},
        {QStringLiteral("muted"), playing.value(QStringLiteral("muted")).toBool()},
    };
}

template<typename Read>
QVariantList listOf(const QVariant &maps, const Read &read)
{
    QVariantList list;
    const QVariantList all = maps.toList();
    for (const QVariant &map : all)
        list.append(read(map.toMap()));
    return list;
}

} // namespace

QString CarModel::mainSource() const
{
    for (const QVariant &source : m_sources) {
        const QVariantMap map = source.toMap();
        if (map.value(QStringLiteral("track")) == QLatin1String("main"))
            return map.value(QStringLiteral("source")).toString();
    }
    return {};
}

int CarModel::highestStep() const
{
    return FadePlot::highestStep;
}

QString CarModel::textOfPlace(int fade, int balance) const
{
    QStringList parts;
    if (fade != 0)
        parts.append(fade > 0 ? tr("front %1").arg(fade) : tr("rear %1").arg(-fade));
    if (balance != 0)
        parts.append(balance > 0 ? tr("left %1").arg(balance) : tr("right %1").arg(-balance));
    return parts.isEmpty() ? tr("in the middle") : parts.join(QStringLiteral(", "));
}

QString CarModel::placeLine(int fade, int balance) const
{
    const auto step = [](int wanted) { return std::clamp(wanted, -FadePlot::highestStep, FadePlot::highestStep); };
    return QStringLiteral("AudioControl.setFadeBalance(%1, %2);").arg(step(fade)).arg(step(balance));
}

QString CarModel::delayLine(int output, double delay) const
{
    if (output < 0 || output >= int(std::size(channels)))
        return {};
    return QStringLiteral("AudioControl.setSpeakerDealy(AudioControl.%1, %2);").arg(QLatin1String(channels[output])).arg(delay);
}

QString CarModel::frontOnlyLine(bool frontOnly) const
{
    const QString source = mainSource();
    if (source.isEmpty())
        return {};
    return QStringLiteral("AudioControl.setOutputFrontSource(\"main\", \"%1\", %2);").arg(source, frontOnly ? QLatin1String("true") : QLatin1String("false"));
}

QString CarModel::gainExpectation(int output, int gain) const
{
    return QStringLiteral("expect(Platform.channelGain(%1)).toBe(%2);").arg(bitOf(output)).arg(gain);
}

QString CarModel::delayExpectation(int output, double delay) const
{
    return QStringLiteral("expect(Platform.speakerDelay(%1)).toBe(%2);").arg(bitOf(output)).arg(delay);
}

QString CarModel::frontRearExpectation(int mode) const
{
    return QStringLiteral("expect(Platform.frontRearMode()).toBe(%1);").arg(mode);
}

void CarModel::update(const QVariantMap &snapshot)
{
    const QVariantMap car = snapshot.value(QStringLiteral("car")).toMap();
    const QVariantList outputs = listOf(car.value(QStringLiteral("loudspeakers")), &outputOf);
    const bool areOutputsOther = outputs != m_outputs;
    m_outputs = outputs;
    const int fade = car.value(QStringLiteral("fade")).toInt();
    const int balance = car.value(QStringLiteral("balance")).toInt();
    const bool isPlaceOther = fade != m_fade || balance != m_balance;
    m_fade = fade;
    m_balance = balance;
    const int mode = car.value(QStringLiteral("frontRearMode"), -1).toInt();
    const bool isModeOther = mode != m_frontRearMode;
    m_frontRearMode = mode;
    const int master = car.value(QStringLiteral("masterVolume"), -1).toInt();
    const bool isMasterOther = master != m_masterVolume;
    m_masterVolume = master;
    const QVariantList sources = listOf(car.value(QStringLiteral("sources")), &sourceOf);
    const bool areSourcesOther = sources != m_sources;
    m_sources = sources;

    if (areOutputsOther)
        Q_EMIT outputsChanged();
    if (isPlaceOther)
        Q_EMIT placeChanged();
    if (isModeOther)
        Q_EMIT frontRearModeChanged();
    if (isMasterOther)
        Q_EMIT masterVolumeChanged();
    if (areSourcesOther)
        Q_EMIT sourcesChanged();
}

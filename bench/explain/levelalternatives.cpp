#include "levelalternatives.h"

#include "facaderules.h"
#include "heard.h"
#include "policyrules.h"
#include "policytext.h"

#include "platform.h"

#include <qzaudio/audiotypes.h>

#include <QtCore/QStringList>

#include <algorithm>
#include <cmath>

using simulator::AudioChip;
using Otherwise = LevelChain::Otherwise;

namespace
{

const QLatin1String mainTrack("main");
const QLatin1String alternativeTrack("alternative");

AudioChip &chip()
{
    return *simulator::Platform::instance()->chip();
}

/// Puts back at its end what can be otherwise.
class Trial
{
public:
    Trial(const QString &track, const QString &source)
        : m_track(track)
        , m_source(source)
        , m_volume(chip().trackVolume(track, source))
        , m_isMuted(chip().isMuted(track))
        , m_duckingMode(chip().duckingMode())
        , m_duckingGain(chip().duckingGain())
    {
    }

    ~Trial()
    {
        chip().setDuckingTargetGain(static_cast<unsigned char>(m_duckingGain));
        chip().setDuckingMode(m_duckingMode);
        chip().setMute(m_track, m_isMuted);
        setVolume(m_volume);
    }

    void setVolume(int volume)
    {
        if (chip().trackVolume(m_track, m_source) != volume)
            chip().setTrackVolume(m_track, m_source, static_cast<unsigned char>(volume));
    }
    void unmute() { chip().setMute(m_track, false); }
    static void unduck() { chip().setDuckingMode(0); }
    static void duck()
    {
        chip().setDuckingTargetGain(PolicyRules::duckedGain);
        chip().setDuckingMode(1);
    }

private:
    Q_DISABLE_COPY(Trial)

    const QString m_track;
    const QString m_source;
    const int m_volume;
    const bool m_isMuted;
    const unsigned int m_duckingMode;
    const int m_duckingGain;
};

/// " (3.8 dB less)"; empty where one of them is silence, or not known.
QString differenceText(double level, const std::optional<double> &usual)
{
    if (!usual || !std::isfinite(level) || !std::isfinite(*usual))
        return {};
    const double difference = level - *usual;
    constexpr double shown = 0.05;
    if (std::abs(difference) < shown)
        return QStringLiteral(" (no difference)");
    return QStringLiteral(" (%1 dB %2)").arg(std::abs(difference), 0, 'f', 1).arg(difference > 0 ? QLatin1String("more") : QLatin1String("less"));
}

} // namespace

LevelAlternatives::LevelAlternatives(const LevelOrigins &origins, const QString &track, const QString &source, const std::optional<double> &level)
    : m_origins(origins)
    , m_track(track)
    , m_source(source)
    , m_level(level)
    , m_volume(origins.volume(track, source))
{
}

QVector<Otherwise> LevelAlternatives::all() const
{
    QVector<Otherwise> all;
    addWithoutMute(all);
    addWithoutDuck(all);
    addStatuses(all);
    addSteps(all);
    addRefusal(all);
    return all;
}

int LevelAlternatives::type() const
{
    if (m_volume.sent)
        return m_volume.sent->type;
    return m_track == alternativeTrack ? int(ZelAudioTypePrompt) : PolicyRules::typeOfSource(m_source);
}

int LevelAlternatives::sentFor(int stored) const
{
    return FacadeRules::sentTo(m_track, m_source, FacadeRules::platformVolume(stored));
}

Otherwise LevelAlternatives::asItIs(const QString &what, const QString &of) const
{
    const double level = Heard::levelOf(m_track, m_source);
    return {what, of + Heard::levelText(level) + differenceText(level, m_level), level};
}

Otherwise LevelAlternatives::withVolume(const QString &what, const QString &of, int volume) const
{
    Trial trial(m_track, m_source);
    trial.setVolume(volume);
    return asItIs(what, QStringLiteral("%1%2 of %3, ").arg(of).arg(volume).arg(FacadeRules::highestVolume));
}

void LevelAlternatives::addWithoutMute(QVector<Otherwise> &all) const
{
    if (!m_level || !chip().isMuted(m_track))
        return;
    Trial trial(m_track, m_source);
    trial.unmute();
    all.append(asItIs(QStringLiteral("without the mute")));
}

void LevelAlternatives::addWithoutDuck(QVector<Otherwise> &all) const
{
    if (!m_level || m_track != mainTrack || !chip().isDucked())
        return;
    Trial trial(m_track, m_source);
    Trial::unduck();
    // The end of a duck also brings back the volume that its status changed.
    const bool isOfDuck = m_volume.sent && PolicyRules::isOfDuck(m_volume.sent->status);
    const auto media = m_origins.stored(ZelAudioTypeMedia);
    if (isOfDuck && media) {
        trial.setVolume(sentFor(media->volume));
        all.append(asItIs(QStringLiteral("without the duck"), QStringLiteral("%1 of media makes %2, ").arg(media->volume).arg(sentFor(media->volume))));
        return;
    }
    all.append(asItIs(QStringLiteral("without the duck")));
}

/// One status for each other volume type that one of them gives to this source: rather a named one, rather one of the source's own.
void LevelAlternatives::addStatuses(QVector<Otherwise> &all) const
{
    if (m_track != mainTrack)
        return;
    const bool isOfChannel = m_origins.channel() != LevelOrigins::none && PolicyRules::sourceInChannel(m_origins.channel()) == m_source;
    struct Preference
    {
        bool isNamed;
        bool isOwn;
    };
    constexpr Preference preferences[] = {{true, true}, {true, false}, {false, true}, {false, false}};
    QVector<int> types{type()};
    for (const Preference &preference : preferences) {
        for (int status = 0; status <= PolicyRules::highestStatus; ++status) {
            const QString source = PolicyRules::sourceOfStatus(status);
            const bool isApplied = preference.isOwn ? source == m_source : source.isEmpty() && isOfChannel;
            const int other = PolicyRules::typeOfStatus(status);
            if (!isApplied || PolicyRules::isNamed(status) != preference.isNamed || types.contains(other))
                continue;
            types.append(other);
            all.append(inStatus(status, other));
        }
    }
}

Otherwise LevelAlternatives::inStatus(int status, int type) const
{
    const bool isDuck = PolicyRules::isOfDuck(status);
    const QString what = (isDuck ? QStringLiteral("ducked, in status ") : QStringLiteral("in status ")) + statusText(status);
    const auto stored = m_origins.stored(type);
    if (!stored)
        return {what, QStringLiteral("unknown, as the stored volume of %1 is").arg(PolicyRules::typeText(type)), {}};
    Trial trial(m_track, m_source);
    if (isDuck && !chip().isDucked())
        Trial::duck();
    return withVolume(what, QStringLiteral("%1 of %2 makes ").arg(stored->volume).arg(PolicyRules::typeText(type)), sentFor(stored->volume));
}

void LevelAlternatives::addSteps(QVector<Otherwise> &all) const
{
    const auto stored = m_volume.sent ? m_volume.sent->stored : m_origins.stored(type());
    if (!stored)
        return;
    for (const int step : {1, -1}) {
        const qint64 volume = qint64(stored->volume) + step;
        if (volume < 0 || volume > PolicyRules::highestVolume)
            continue;
        const QString what = step > 0 ? QStringLiteral("one step up") : QStringLiteral("one step down");
        all.append(withVolume(what, QStringLiteral("%1 of %2 makes ").arg(volume).arg(PolicyRules::typeText(type())), sentFor(int(volume))));
    }
}

void LevelAlternatives::addRefusal(QVector<Otherwise> &all) const
{
    if (m_volume.refused && m_volume.isRefusedLast) {
        const QString what = QStringLiteral("if the platform had not refused line %1").arg(m_volume.refused->place.line);
        if (m_volume.refused->volume == LevelOrigins::none)
            all.append({what, QStringLiteral("unknown, as the log does not say what it refused"), {}});
        else
            all.append(withVolume(what, {}, m_volume.refused->volume));
        return;
    }
    if (!m_volume.sent)
        return;
    const QString what = QStringLiteral("if the platform had refused line %1").arg(m_volume.sent->place.line);
    if (m_volume.before)
        all.append(withVolume(what, QStringLiteral("still "), m_volume.before->volume));
    else if (m_origins.hasStarted())
        all.append(withVolume(what, QStringLiteral("still "), 0));
    else
        all.append({what, QStringLiteral("unknown, as the log does not say the volume before"), {}});
}

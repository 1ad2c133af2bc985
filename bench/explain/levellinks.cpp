#include "levellinks.h"

#include "console.h"
#include "facaderules.h"
#include "heard.h"
#include "policyrules.h"
#include "policytext.h"

#include "platform.h"
#include "valuetext.h"

#include <qzaudio/audiotypes.h>

#include <QtCore/QJsonArray>
#include <QtCore/QStringList>

using simulator::AudioChip;
using Link = LevelChain::Link;
using Value = LevelOrigins::Value;

namespace
{

const QLatin1String mainTrack("main");
const QLatin1String alternativeTrack("alternative");
const QLatin1String noSource("S+none");

const QLatin1String hasNoStart("the log has no start of the audio");
const QLatin1String settingsSettle("the unit's settings file would settle it: --settings FILE");

const AudioChip &chip()
{
    return *simulator::Platform::instance()->chip();
}

QString onOff(bool isOn)
{
    return isOn ? QStringLiteral("on") : QStringLiteral("off");
}

QString refusalText(const Value &value)
{
    return value.refusal ? QStringLiteral("; another one since then refused with %1, %2").arg(value.refusal->code).arg(value.refusal->place.toText())
                         : QString();
}

int typeOf(const LevelOrigins::Volume &volume, const QString &track, const QString &source)
{
    if (volume.sent)
        return volume.sent->type;
    return track == alternativeTrack ? int(ZelAudioTypePrompt) : PolicyRules::typeOfSource(source);
}

QString volumeText(int volume)
{
    return QStringLiteral("%1 of %2").arg(volume).arg(FacadeRules::highestVolume);
}

} // namespace

LevelLinks::LevelLinks(const LevelOrigins &origins, const QString &track, const QString &source)
    : m_origins(origins)
    , m_track(track)
    , m_source(source)
    , m_volume(origins.volume(track, source))
    , m_type(typeOf(m_volume, track, source))
{
}

QString LevelLinks::named(const QString &source)
{
    const QString shown = Console::printable(source);
    const QString name = sourceText(source);
    return name == source ? shown : QStringLiteral("%1, %2").arg(name, shown);
}

QVector<Link> LevelLinks::all() const
{
    QVector<Link> links{storedLink()};
    if (stored())
        links += {factorLink(), boostLink()};
    return links
        + QVector<Link>{sentLink(), refusedLink(), masterLink(), playingLink(), duckLink(), muteLink(), loudspeakersLink(), equalizerLink(), loudnessLink()};
}

/// That the volume was made of, or would be.
std::optional<LevelOrigins::Stored> LevelLinks::stored() const
{
    return m_volume.sent ? m_volume.sent->stored : m_origins.stored(m_type);
}

Link LevelLinks::storedLink() const
{
    Link link;
    link.what = QStringLiteral("stored volume");
    const auto known = stored();
    const QString type = PolicyRules::typeText(m_type);
    if (m_type == LevelOrigins::none) {
        link.text = m_volume.sent ? QStringLiteral("none: the volume was given as it is") : QStringLiteral("none: the policy has no volume for this source");
        return link;
    }
    if (!known) {
        link.isKnown = false;
        const QLatin1String reason = m_origins.hasStarted() ? QLatin1String("the log does not say it") : hasNoStart;
        link.text = QStringLiteral("unknown, of %1: %2 (%3)").arg(type, reason, settingsSettle);
        return link;
    }
    link.value = known->volume;
    link.place = known->place;
    link.isKnown = known->place.isKnown();
    link.text = QStringLiteral("%1 of %2").arg(known->volume).arg(type);
    if (!known->remark.isEmpty())
        link.text += QStringLiteral(", ") + known->remark;
    const auto now = m_origins.stored(m_type);
    if (now && now->volume != known->volume)
        link.text += QStringLiteral(", which by now is %1: %2").arg(now->volume).arg(now->place.toText());
    return link;
}

Link LevelLinks::factorLink() const
{
    Link link;
    const int volume = stored()->volume;
    const qint64 product = qint64(volume) * FacadeRules::volumeFactor;
    const int lower = FacadeRules::platformVolume(volume);
    link.what = QStringLiteral("times %1").arg(FacadeRules::volumeFactor);
    link.value = lower;
    link.text = QString::number(product);
    if (product != lower)
        link.text += QStringLiteral(", of which the lower eight bits are %1").arg(lower);
    return link;
}

Link LevelLinks::boostLink() const
{
    Link link;
    const int given = FacadeRules::platformVolume(stored()->volume);
    const int sent = FacadeRules::sentTo(m_track, m_source, given);
    const bool isBoosted = FacadeRules::isBoosted(m_track, m_source);
    link.what = QStringLiteral("boosted");
    link.value = isBoosted;
    link.text = isBoosted ? QStringLiteral("x 1.5 = %1").arg(sent) : QStringLiteral("no");
    return link;
}

Link LevelLinks::sentLink() const
{
    Link link;
    link.what = QStringLiteral("sent volume");
    const auto from = stored();
    const int expected = from ? FacadeRules::sentTo(m_track, m_source, FacadeRules::platformVolume(from->volume)) : LevelOrigins::none;
    if (m_volume.sent) {
        const int volume = m_volume.sent->volume;
        link.value = volume;
        link.place = m_volume.sent->place;
        link.text = volumeText(volume);
        if (from && volume != expected)
            link.text += QStringLiteral(", though %1 was to be expected: another release of the library?").arg(expected);
        return link;
    }
    link.isKnown = false;
    link.text = QStringLiteral("unknown: the log has none for it");
    if (from) {
        link.value = expected;
        link.text += QStringLiteral("; taken for %1, which the stored one makes").arg(volumeText(expected));
    }
    return link;
}

Link LevelLinks::refusedLink() const
{
    Link link;
    link.what = QStringLiteral("refused");
    link.text = QStringLiteral("nothing");
    if (!m_volume.refused)
        return link;
    const int volume = m_volume.refused->volume;
    link.value = m_volume.code;
    link.place = m_volume.refused->place;
    link.text = volume == LevelOrigins::none ? QStringLiteral("a volume that the log does not say, with %1").arg(m_volume.code)
                                             : QStringLiteral("%1 with %2").arg(volume).arg(m_volume.code);
    if (!m_volume.isRefusedLast)
        link.text += QStringLiteral(", and accepted since");
    return link;
}

Link LevelLinks::chipLink(const char *what, const QString &text, const QJsonValue &value, const Value &origin) const
{
    Link link;
    link.what = QString::fromLatin1(what);
    link.place = origin.place;
    if (origin.place.isKnown() && !origin.isWhole) {
        link.isKnown = false;
        link.text = QStringLiteral("unknown: the log does not say what it was set to; before that %1").arg(text) + refusalText(origin);
        return link;
    }
    link.value = value;
    link.isKnown = origin.place.isKnown() || m_origins.hasStarted();
    if (origin.place.isKnown())
        link.text = text;
    else if (m_origins.hasStarted())
        link.text = text + QStringLiteral(", as after switching on");
    else
        link.text = QStringLiteral("unknown: %1; taken for %2").arg(hasNoStart, text);
    link.text += refusalText(origin);
    return link;
}

Link LevelLinks::masterLink() const
{
    return chipLink("master volume", QStringLiteral("%1 percent").arg(chip().masterVolume()), chip().masterVolume(), m_origins.master());
}

Link LevelLinks::playingLink() const
{
    const QString active = chip().activeSource(m_track);
    const Value origin = m_origins.playing(m_track);
    Link link;
    link.what = QStringLiteral("playing");
    link.place = origin.place;
    if (active.isNull() && !m_origins.hasStarted()) {
        link.isKnown = false;
        link.text = QStringLiteral("unknown: %1, and does not say what plays on track %2").arg(hasNoStart, m_track);
        return link;
    }
    const bool isPlaying = active == m_source;
    link.value = isPlaying;
    link.text = isPlaying                        ? QStringLiteral("yes, on track %1").arg(m_track)
        : active.isEmpty() || active == noSource ? QStringLiteral("no: nothing plays on track %1").arg(m_track)
                                                 : QStringLiteral("no: track %1 plays %2").arg(m_track, named(active));
    link.text += refusalText(origin);
    return link;
}

Link LevelLinks::duckLink() const
{
    if (m_track != mainTrack) {
        Link link;
        link.what = QStringLiteral("duck");
        link.text = QStringLiteral("none on track %1").arg(m_track);
        return link;
    }
    const bool isDucked = chip().isDucked();
    const QString text = isDucked ? QStringLiteral("on, to %1 percent").arg(chip().duckingGain()) : onOff(false);
    Link link = chipLink("duck", text, isDucked ? QJsonValue(chip().duckingGain()) : QJsonValue(false), m_origins.duckingMode());
    if (isDucked)
        link.text += refusalText(m_origins.duckingGain());
    return link;
}

Link LevelLinks::muteLink() const
{
    const bool isMuted = chip().isMuted(m_track);
    return chipLink("mute", onOff(isMuted), isMuted, m_origins.mute(m_track));
}

Link LevelLinks::loudspeakersLink() const
{
    QStringList percents;
    QJsonArray values;
    for (std::size_t i = 0; i < simulator::gainChannelCount; ++i) {
        const int gain = chip().channelGain(simulator::outputChannels[i].bit);
        percents.append(QString::number(gain));
        values.append(gain);
    }
    QString text = percents.join(QStringLiteral(" / ")) + QStringLiteral(" percent");
    if (const auto position = m_origins.position())
        text += QStringLiteral(" from fade %1, balance %2").arg(position->fade).arg(position->balance);
    return chipLink("loudspeakers", text, values, m_origins.loudspeakers());
}

Link LevelLinks::equalizerLink() const
{
    const int type = m_origins.equalizerType();
    const bool hasType = type != LevelOrigins::none;
    const Value &origin = m_origins.equalizer();
    if (!origin.place.isKnown() && !m_origins.hasStarted()) {
        Link link;
        link.what = QStringLiteral("equalizer");
        link.isKnown = false;
        link.value = hasType ? QJsonValue(type) : QJsonValue();
        link.text = hasType ? QStringLiteral("type %1, %2").arg(QString::number(type), m_origins.equalizerRemark())
                            : QStringLiteral("unknown: %1 (%2)").arg(hasNoStart, settingsSettle);
        return link;
    }
    constexpr int bands = 16;
    QStringList gains;
    for (int band = 0; band < bands; ++band)
        gains.append(simulator::floatText(float(chip().equalizerGain(Heard::driversEar, band))));
    const bool isFlat = gains.count(gains.constFirst()) == bands;
    const QString text = isFlat ? QStringLiteral("%1 dB in all bands").arg(gains.constFirst()) : gains.join(QLatin1Char(' ')) + QStringLiteral(" dB");
    const bool isOfCall = hasType && origin.place.isKnown();
    return chipLink("equalizer", isOfCall ? QStringLiteral("type %1: %2").arg(type).arg(text) : text, isOfCall ? QJsonValue(type) : QJsonValue(), origin);
}

Link LevelLinks::loudnessLink() const
{
    return chipLink("loudness", onOff(chip().isLoudnessOn()), chip().isLoudnessOn(), m_origins.loudness());
}

QString LevelLinks::outcome(const std::optional<double> &level) const
{
    if (!level)
        return QStringLiteral("unknown, as its volume is");
    const QString text = Heard::levelText(*level);
    const Link playing = playingLink();
    const QString measure = QStringLiteral("against full scale at the front left, without the equalizer");
    if (playing.isKnown && !playing.value.toBool())
        return QStringLiteral("not heard, as it does not play; it would be %1 %2").arg(text, measure);
    return playing.isKnown ? QStringLiteral("%1 %2").arg(text, measure) : QStringLiteral("%1 %2, if it plays").arg(text, measure);
}

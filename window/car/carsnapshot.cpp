#include "carsnapshot.h"

#include "audiopolicyinspector.h"
#include "equalizercurves.h"
#include "explain/policyrules.h"
#include "focusstack.h"
#include "heard.h"
#include "policytext.h"
#include "qmlaudiofocus.h"
#include "scenarioengine.h"
#include "settingsfile.h"
#include "timelineevent.h"

#include "platform.h"
#include "virtualclock.h"

#include <qzaudio/audiocontrol.h>
#include <qzaudio/audiomanager.h>

#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QTimer>

#include <sys/stat.h>

using simulator::AudioChip;
using simulator::Platform;

namespace
{

template<typename Container>
QVariantList list(const Container &values)
{
    QVariantList elements;
    for (const auto &value : values)
        elements.append(value);
    return elements;
}

QString valueText(const QVariant &value)
{
    if (value.type() == QVariant::List) {
        QStringList texts;
        const QVariantList elements = value.toList();
        for (const QVariant &element : elements)
            texts.append(valueText(element));
        return texts.join(QStringLiteral(", "));
    }
    if (value.type() == QVariant::Map) {
        QStringList texts;
        const QVariantMap fields = value.toMap();
        for (auto field = fields.cbegin(); field != fields.cend(); ++field)
            texts.append(field.key() + QLatin1Char(' ') + valueText(field.value()));
        return texts.join(QStringLiteral(", "));
    }
    return value.toString();
}

QString filterText(const AudioChip &chip, quint32 channel)
{
    const auto filter = chip.filter(channel);
    if (!filter)
        return {};
    const auto items = chip.stateTable();
    for (const simulator::StateItem &item : items) {
        const bool isMeant = item.group == QLatin1String("filter")
            && std::any_of(simulator::outputChannels.cbegin(), simulator::outputChannels.cend(), [&item, channel](const simulator::OutputChannel &output) {
                                 return output.bit == channel && item.name == QLatin1String(output.name);
                             });
        if (isMeant)
            return valueText(item.value);
    }
    return {};
}

/// Why the volume keys work on what they work on, or on nothing.
QString keyReason(int status, int channel)
{
    const int type = PolicyRules::typeOfKeys(status, channel);
    if (type == PolicyRules::none)
        return QStringLiteral("neither the status nor the channel has a volume that the keys change");
    if (type != PolicyRules::typeOfKeys(0, channel))
        return QStringLiteral("the status is %1: %2").arg(statusText(status), statusMeaning(status));
    return QStringLiteral("no status takes the keys, and the channel is one of media");
}

} // namespace

CarSnapshot::CarSnapshot(ScenarioEngine &scripts)
    : m_scripts(scripts)
{
}

QVariantMap CarSnapshot::changedSections(qint64 now)
{
    const simulator::VirtualClock *const clock = simulator::VirtualClock::installed();
    const qint64 next = clock ? clock->nextDeadline() : -1;
    const QVariantMap sections{
        {QStringLiteral("time"), QVariantMap{{QStringLiteral("now"), now}, {QStringLiteral("next"), next < 0 ? -1 : next - clock->now() + now}}},
        {QStringLiteral("drive"), drive()},
        {QStringLiteral("car"), car()},
        {QStringLiteral("tone"), tone()},
        {QStringLiteral("focus"), focus()},
        {QStringLiteral("platform"), platform()},
        {QStringLiteral("settings"), settings()},
        {QStringLiteral("microphone"), microphone()},
    };
    QVariantMap changed;
    for (auto section = sections.cbegin(); section != sections.cend(); ++section) {
        if (m_given.value(section.key()) != section.value())
            changed.insert(section.key(), section.value());
    }
    m_given = sections;
    return changed;
}

void CarSnapshot::follow(const TimelineEvent &event)
{
    static const QRegularExpression fading(QStringLiteral(R"(^AudioControl\.setFadeBalance\((-?\d+), (-?\d+)\))"));
    const QRegularExpressionMatch match = fading.match(event.text);
    if (event.kind == TimelineEvent::Kind::Request && match.hasMatch()) {
        m_fade = match.captured(1).toInt();
        m_balance = match.captured(2).toInt();
    }
    for (const TimelineEvent &caused : event.caused) {
        if (caused.kind == TimelineEvent::Kind::Request)
            follow(caused);
    }
    lookAtFile(event);
}

void CarSnapshot::follow(const simulator::JournalEntry &entry)
{
    Count &count = m_counts[simulator::objectKindName(entry.kind) + QLatin1Char('.') + entry.operation];
    ++count.calls;
    count.refused += entry.note.isEmpty() ? 0 : 1;
}

void CarSnapshot::lookAtFile(const TimelineEvent &event)
{
    struct stat file = {};
    static const QByteArray path = QFile::encodeName(SettingsFile::path());
    if (stat(path.constData(), &file) != 0
        || (file.st_ino == m_inode && file.st_mtim.tv_sec == m_modified.tv_sec && file.st_mtim.tv_nsec == m_modified.tv_nsec))
        return;
    m_inode = file.st_ino;
    m_modified = file.st_mtim;
    ++m_writes;
    m_lastWrite = event.time;
    m_lastCause = event.text;
}

QVariantMap CarSnapshot::drive() const
{
    HeadUnit &unit = m_scripts.unit();
    const AudioChip *const chip = Platform::instance()->chip();
    const Heard heard = Heard::now();
    QVariantMap drive{
        {QStringLiteral("on"), unit.isOn()},
        {QStringLiteral("reverseGear"), Platform::instance()->reverseGear()},
        {QStringLiteral("homeUiType"), Platform::instance()->homeUiType()},
        {QStringLiteral("ducked"), chip->isDucked()},
        {QStringLiteral("duckGain"), chip->duckingGain()},
        {QStringLiteral("heard"), heard.toText(heard)},
    };
    if (!unit.isOn())
        return drive;
    const AudioPolicyInspector policy(*unit.manager());
    QVariantList timers;
    int muteLeft = -1;
    const auto inspected = policy.timers();
    for (const AudioPolicyInspector::Timer &timer : inspected) {
        if (!timer.timer->isActive())
            continue;
        const int left = timer.timer->remainingTime();
        timers.append(QVariantMap{{QStringLiteral("purpose"), QString(timer.purpose)}, {QStringLiteral("left"), left}});
        // The first one is that of the timed mute.
        if (timer.timer == inspected.first().timer)
            muteLeft = left;
    }
    drive.insert(QStringLiteral("status"), policy.status());
    drive.insert(QStringLiteral("channel"), policy.channel());
    drive.insert(QStringLiteral("volumes"), list(policy.volumes()));
    drive.insert(QStringLiteral("muted"), audio::AudioControl::getInstance()->isMute());
    drive.insert(QStringLiteral("muteLeft"), muteLeft);
    drive.insert(QStringLiteral("keyType"), PolicyRules::typeOfKeys(policy.status(), policy.channel()));
    drive.insert(QStringLiteral("keyReason"), keyReason(policy.status(), policy.channel()));
    drive.insert(QStringLiteral("timers"), timers);
    return drive;
}

QVariantMap CarSnapshot::car() const
{
    const AudioChip *const chip = Platform::instance()->chip();
    const QString mainTrack = QStringLiteral("main");
    const QString playing = chip->activeSource(mainTrack);
    constexpr double decibelPerTenfold = 20;
    QVariantList loudspeakers;
    for (const simulator::OutputChannel &output : simulator::outputChannels) {
        loudspeakers.append(QVariantMap{
            {QStringLiteral("name"), QString::fromLatin1(output.name)},
            {QStringLiteral("bit"), output.bit},
            {QStringLiteral("gain"), chip->channelGain(output.bit)},
            {QStringLiteral("level"), decibelPerTenfold * std::log10(chip->effectiveGain(mainTrack, playing, output.bit))},
            {QStringLiteral("delay"), chip->speakerDelay(output.bit)},
            {QStringLiteral("filter"), filterText(*chip, output.bit)},
        });
    }
    QVariantList sources;
    const Heard heard = Heard::now();
    for (const Heard::Sound &sound : heard.sounds) {
        sources.append(QVariantMap{
            {QStringLiteral("track"), sound.track},
            {QStringLiteral("source"), sound.source},
            {QStringLiteral("volume"), chip->trackVolume(sound.track, sound.source)},
            {QStringLiteral("level"), sound.level},
            {QStringLiteral("muted"), sound.isMuted},
        });
    }
    return {
        {QStringLiteral("loudspeakers"), loudspeakers},
        {QStringLiteral("fade"), m_fade},
        {QStringLiteral("balance"), m_balance},
        {QStringLiteral("frontRearMode"), chip->frontRearMode()},
        {QStringLiteral("masterVolume"), chip->masterVolume()},
        {QStringLiteral("sources"), sources},
    };
}

QVariantMap CarSnapshot::tone() const
{
    const AudioChip *const chip = Platform::instance()->chip();
    QVariantList bands;
    const EqualizerResponse::Bands curve = EqualizerCurves::ofChip(*chip, Heard::driversEar);
    for (const EqualizerResponse::Band &band : curve) {
        bands.append(QVariantMap{{QStringLiteral("frequency"), band.frequency}, {QStringLiteral("q"), band.q}, {QStringLiteral("gain"), band.gain}});
    }
    QVariantMap tone{{QStringLiteral("bands"), bands}, {QStringLiteral("loudness"), chip->isLoudnessOn()}};
    if (m_scripts.unit().isOn()) {
        const AudioPolicyInspector policy(*m_scripts.unit().manager());
        tone.insert(QStringLiteral("equalizerType"), policy.equalizerType());
        tone.insert(QStringLiteral("customCurve"), list(policy.customCurve()));
    }
    return tone;
}

QVariantMap CarSnapshot::focus() const
{
    QVariantList clients;
    for (const ScenarioHost::FocusClient &each : m_scripts.host().focusClients()) {
        clients.append(QVariantMap{
            {QStringLiteral("clientId"), each.client->clientId()},
            {QStringLiteral("hint"), each.client->durationHint()},
            {QStringLiteral("streamType"), each.client->streamType()},
            {QStringLiteral("held"), each.client->held()},
            {QStringLiteral("changes"), list(each.changes)},
            {QStringLiteral("variable"), each.variable},
        });
    }
    const FocusInspector::Stack stack = FocusInspector::stackOf(*AudioManager::instance());
    return {{QStringLiteral("clients"), clients}, {QStringLiteral("stack"), FocusStack::entriesOf(stack)}};
}

QVariantMap CarSnapshot::platform() const
{
    const Platform *const unit = Platform::instance();
    QVariantList books;
    for (const simulator::ObjectKind kind : simulator::allObjectKinds) {
        books.append(QVariantMap{
            {QStringLiteral("kind"), QString(simulator::objectKindName(kind))},
            {QStringLiteral("alive"), unit->books()->alive(kind)},
            {QStringLiteral("made"), unit->books()->made(kind)},
        });
    }
    QVariantList state;
    const auto items = unit->chip()->stateTable();
    for (const simulator::StateItem &item : items) {
        state.append(QVariantMap{{QStringLiteral("group"), item.group}, {QStringLiteral("name"), item.name}, {QStringLiteral("value"), valueText(item.value)}});
    }
    QVariantMap counts;
    for (auto count = m_counts.cbegin(); count != m_counts.cend(); ++count)
        counts.insert(count.key(), QVariantMap{{QStringLiteral("calls"), count->calls}, {QStringLiteral("refused"), count->refused}});
    return {
        {QStringLiteral("faults"), unit->faults()->pending()},
        {QStringLiteral("books"), books},
        {QStringLiteral("living"), unit->books()->living()},
        {QStringLiteral("problems"), unit->books()->problems()},
        {QStringLiteral("callDuration"), unit->callDuration()},
        {QStringLiteral("state"), state},
        {QStringLiteral("counts"), counts},
    };
}

QVariantMap CarSnapshot::settings() const
{
    return {{QStringLiteral("writes"), m_writes}, {QStringLiteral("lastWrite"), m_lastWrite}, {QStringLiteral("lastCause"), m_lastCause}};
}

QVariantMap CarSnapshot::microphone()
{
    const AudioChip *const chip = Platform::instance()->chip();
    return {
        {QStringLiteral("volume"), chip->micVolume()},
        {QStringLiteral("pga"), list(chip->micPgaGain())},
        {QStringLiteral("op"), list(chip->micOpGain())},
        {QStringLiteral("analog"), list(chip->micAnalogGain())},
        {QStringLiteral("calibration"), int(chip->calibration())},
        {QStringLiteral("calibrationGains"), list(chip->calibrationGains())},
        {QStringLiteral("swapped"), chip->isMicLeftRightSwapped()},
        {QStringLiteral("aecQuality"), chip->aecQuality()},
        {QStringLiteral("handsfreeDelay"), chip->handsfreeDelay()},
        {QStringLiteral("downlinkStarted"), chip->isDownlinkEstimationStarted()},
        {QStringLiteral("downlinkDelay"), chip->downlinkDelay()},
        {QStringLiteral("test"), list(chip->microphoneTest())},
    };
}

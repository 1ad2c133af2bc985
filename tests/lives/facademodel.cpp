#include "facademodel.h"

#include <QtCore/QSet>
#include <QtCore/QStringList>

#include <array>
#include <cstdlib>

namespace lives
{

using audio::AudioControl;
using simulator::JournalEntry;
using simulator::ObjectKind;

namespace
{

constexpr int loudest = 148;
constexpr char phone[] = "S+BtPcmPhone";
constexpr char phoneAgain[] = "S+BtPcmPhone_APP";
constexpr char filePlayer[] = "S+FilePlayer_APP";

struct Boost
{
    static const QSet<QString> &sources()
    {
        static const QSet<QString> names = {QStringLiteral("S+CarPlayTelephony"),
                                            QStringLiteral("S+BtPhone"),
                                            QStringLiteral("S+CarPlayAlert"),
                                            QStringLiteral("S+BtRingtone"),
                                            QStringLiteral("S+AuxIn"),
                                            QStringLiteral("S+CarPlaySpeech"),
                                            QStringLiteral("S+BtPcmPhone")};
        return names;
    }
};

/// What is set together: the first one's steps stand for both.
const QStringList &group()
{
    static const QStringList members = {QStringLiteral("S+AndroidAuto"), QStringLiteral("S+FilePlayer")};
    return members;
}

bool isGroup(const QString &source)
{
    return source == QLatin1String("S+FilePlayer");
}

} // namespace

QString FacadeModel::platformSource(const QString &name)
{
    // Most are the platform's with "_APP" behind.
    static const QSet<QString> regular = {QStringLiteral("S+FilePlayer_APP"),
                                          QStringLiteral("S+DiscPlayer_APP"),
                                          QStringLiteral("S+BtRingtone_APP"),
                                          QStringLiteral("S+BtPcmPhone_APP"),
                                          QStringLiteral("S+AuxIn_APP"),
                                          QStringLiteral("S+Mic_APP"),
                                          QStringLiteral("S+GPS_APP"),
                                          QStringLiteral("S+CarPlayMedia_APP"),
                                          QStringLiteral("S+CarPlayAlert_APP"),
                                          QStringLiteral("S+CarPlayTelephony_APP"),
                                          QStringLiteral("S+CarPlaySpeech_APP"),
                                          QStringLiteral("S+CarPlayDefault_APP"),
                                          QStringLiteral("S+AndroidAuto_APP"),
                                          QStringLiteral("S+IPod_APP"),
                                          QStringLiteral("S+CarLife_APP"),
                                          QStringLiteral("S+IosMirror_APP"),
                                          QStringLiteral("S+WebLink_APP"),
                                          QStringLiteral("S+none_APP")};
    static const QSet<QString> same = {QStringLiteral("BT_AUDIO_Track"), QStringLiteral("BT_MIC_Record"), QLatin1String(phone)};
    constexpr int suffix = 4;
    if (regular.contains(name))
        return name.chopped(suffix);
    if (same.contains(name))
        return name;
    return name == QLatin1String("s+AirPlayMedia_APP") ? QStringLiteral("S+AirPlayMedia") : QString();
}

QString FacadeModel::applicationSource(const QString &source) const
{
    if (source == QLatin1String(phone))
        return m_phoneName.isNull() ? QString::fromLatin1(phone) : m_phoneName;
    if (source == QLatin1String("S+AirPlayMedia"))
        return QStringLiteral("s+AirPlayMedia_APP");
    QString regular = source + QLatin1String("_APP");
    if (platformSource(regular) == source && !source.isEmpty())
        return regular;
    return platformSource(source) == source ? source : QString();
}

void FacadeModel::learnNames(const QVariantList &answer)
{
    for (const QVariant &value : answer) {
        const QString name = value.toString();
        if (name == QLatin1String(phone) || name == QLatin1String(phoneAgain))
            m_phoneName = name;
    }
}

QString FacadeModel::trackOf(Tag tag)
{
    constexpr std::array<const char *, 8> names = {"main", "second", "alternative", "uplink", "input0", "input1", "input2", "main_im"};
    const int number = tag;
    return number < 0 || number >= static_cast<int>(names.size()) ? QString() : QString::fromLatin1(names[static_cast<std::size_t>(number)]);
}

bool FacadeModel::isBoosted(const QString &source)
{
    return Boost::sources().contains(source);
}

int FacadeModel::boosted(const QString &source, int volume)
{
    return isBoosted(source) ? qMin(volume * 3 / 2 & 0xFF, loudest) : volume;
}

void FacadeModel::beThere()
{
    if (m_isThere)
        return;
    m_isThere = true;
    m_hasVolume = m_calls.create(ObjectKind::Volume);
    m_hasApp = m_calls.create(ObjectKind::App);
}

// Volumes -------------------------------------------------------------------------------------------------------------------

void FacadeModel::setStreamVolume(Tag tag, const char *name, int volume)
{
    const QString source = platformSource(QLatin1String(name));
    const QString track = trackOf(tag);
    if (volume > loudest || source.isEmpty() || track.isEmpty())
        return;
    once(ObjectKind::Volume, "setTrackVolume", track, source, boosted(source, volume));
}

quint8 FacadeModel::getStreamVolume(Tag tag, const char *name)
{
    const QString source = platformSource(QLatin1String(name));
    const QString track = trackOf(tag);
    if (source.isEmpty() || track.isEmpty() || !m_calls.create(ObjectKind::Volume))
        return 0;
    const JournalEntry &entry = m_calls.expect(ObjectKind::Volume, "getTrackVolume", {simulator::valueText(track), simulator::valueText(source)});
    const int written = entry.outputs.value(0).toInt();
    m_calls.destroy(ObjectKind::Volume);
    return static_cast<quint8>(written);
}

int FacadeModel::setMasterVolume(int volume)
{
    constexpr int full = 100;
    return volume > full || onVolume("setMasterVolume", full) != 0 ? -1 : 0;
}

quint8 FacadeModel::getMasterVolume()
{
    if (!m_hasVolume)
        return 0;
    return static_cast<quint8>(m_calls.expect(ObjectKind::Volume, "getMasterVolume", {QStringLiteral("0")}).outputs.value(0).toInt());
}

void FacadeModel::initTrackStepVolume(Tag tag, const QHash<QString, quint8> &volumes)
{
    if (!m_calls.create(ObjectKind::Volume))
        return;
    const QString track = tag == AudioControl::Second ? QStringLiteral("second") : QStringLiteral("main");
    QMap<QString, int> expected; // by platform source; their order is free
    QMap<QString, int> &steps = tag == AudioControl::Second ? m_secondSteps : m_mainSteps;
    for (auto volume = volumes.cbegin(); volume != volumes.cend(); ++volume) {
        const int step = qMin<int>(volume.value(), m_stepRange);
        steps.insert(volume.key(), step);
        const QString source = platformSource(volume.key());
        if (!source.isEmpty())
            expected.insert(volume.key(), boosted(source, stepValue(step)));
    }
    const auto send = [&](const QString &source, int value) { m_calls.call(ObjectKind::Volume, "setTrackVolume", track, source, value); };
    while (!expected.isEmpty()) {
        const JournalEntry *const entry = m_calls.peek();
        const QString source = entry ? entry->arguments.value(1).toString() : QString();
        const JournalEntry *const after = m_calls.peek(1);
        const bool isOfGroup = source == group().first() && after && isGroup(after->arguments.value(1).toString());
        if (isOfGroup && expected.contains(QLatin1String(filePlayer))) {
            const int value = expected.take(QLatin1String(filePlayer));
            for (const QString &member : group())
                send(member, value);
            continue;
        }
        auto found = expected.begin();
        while (found != expected.end() && platformSource(found.key()) != source)
            ++found;
        if (found == expected.end()) {
            const QStringList sources = expected.keys();
            fail(QStringLiteral("step volumes of %1 were to reach the platform").arg(sources.join(QLatin1String(", "))));
        }
        send(source, found.value());
        expected.erase(found);
    }
    m_calls.destroy(ObjectKind::Volume);
}

// Steps ---------------------------------------------------------------------------------------------------------------------

int FacadeModel::getCurMainTrackStepVolumeInfo(QString &name, quint8 &step)
{
    if (!m_calls.create(ObjectKind::Source))
        return -1;
    const JournalEntry entry = m_calls.expect(ObjectKind::Source, "getActiveSource", {QStringLiteral("\"main\"")});
    m_calls.destroy(ObjectKind::Source);
    if (entry.result.type() != QVariant::String)
        return -1;
    name = applicationSource(entry.result.toString());
    if (name.isEmpty() || name == QLatin1String("S+none_APP"))
        name = QLatin1String(filePlayer);
    if (!m_mainSteps.contains(name))
        return -1;
    step = static_cast<quint8>(m_mainSteps.value(name));
    return 0;
}

int FacadeModel::changeMainTrackStepVolume(bool up, QString &name, quint8 &step)
{
    if (!m_calls.create(ObjectKind::Source))
        return -1;
    QString active = m_calls.expect(ObjectKind::Source, "getActiveSource", {QStringLiteral("\"main\"")}).result.toString();
    const auto done = [this](int result) {
        m_calls.destroy(ObjectKind::Source);
        return result;
    };
    if (active.isEmpty())
        return done(-1);
    if (active == QLatin1String("S+none"))
        active = platformSource(QLatin1String(filePlayer));
    const bool isInGroup = group().contains(active);
    name = isInGroup ? QString::fromLatin1(filePlayer) : applicationSource(active);
    const int current = m_mainSteps.value(name, m_stepRange / 2);
    step = static_cast<quint8>(current);
    if (up ? current >= m_stepRange : current == 0)
        return done(1);
    const int wanted = up ? current + 1 : current - 1;
    if (!m_calls.create(ObjectKind::Volume))
        return done(-1);
    const int result = m_calls.call(ObjectKind::Volume, "setTrackVolume", "main", active, stepValue(wanted));
    if (result == 0) {
        m_mainSteps.insert(name, wanted);
        step = static_cast<quint8>(wanted);
        for (const QString &member : group()) {
            if (isInGroup && member != active)
                m_calls.call(ObjectKind::Volume, "setTrackVolume", "main", member, stepValue(wanted));
        }
    }
    m_calls.destroy(ObjectKind::Volume);
    return done(result);
}

int FacadeModel::getActivedAlterNumber()
{
    return once(ObjectKind::Source, "queryAlterNumber", "alternative");
}

int FacadeModel::changeAlterStepVolume(bool up, int current, quint8 &out)
{
    if (up ? current >= m_stepRange : current == 0)
        return 1;
    const int wanted = up ? current + 1 : current - 1;
    const int result = once(ObjectKind::Volume, "setAlterTrackVolume", stepValue(wanted));
    if (result == 0)
        out = static_cast<quint8>(wanted);
    return result;
}

int FacadeModel::setAlterVolume(int volume, bool hicarCall)
{
    constexpr int full = 100;
    if (volume > full || !m_calls.create(ObjectKind::Volume))
        return -1;
    const int value = qMin(volume * 3 / 2, loudest);
    if (hicarCall)
        m_calls.call(ObjectKind::Volume, "setTrackVolume", "main", "hicar_voice_callmodemspeaker10", value);
    m_calls.call(ObjectKind::Volume, "setAlterTrackVolume", value);
    m_calls.destroy(ObjectKind::Volume);
    return -1;
}

int FacadeModel::setMasterStepVolume(int step)
{
    if (m_isMasterStepSet && (step == m_masterStep || step > m_stepRange))
        return -1;
    m_isMasterStepSet = true;
    const int result = setMasterVolume(stepValue(step));
    if (result == 0)
        m_masterStep = step;
    return result;
}

// Mute ----------------------------------------------------------------------------------------------------------------------

void FacadeModel::muteTrack(const char *track, bool mute)
{
    onVolume(mute ? "muteTrack" : "unmuteTrack", track, 0);
}

void FacadeModel::setMute(bool mute)
{
    if (mute == m_isMuted)
        return;
    m_isMuted = mute;
    muteTrack("main", mute);
    muteTrack("alternative", mute);
}

// Place and routing ---------------------------------------------------------------------------------------------------------

void FacadeModel::setFadeBalance(int fade, int balance)
{
    constexpr int furthest = 15;
    if (std::abs(fade) > furthest || std::abs(balance) > furthest)
        return;
    const auto loss = [](int steps) { return 100 - (100 * (furthest - std::abs(steps)) + 7) / furthest; };
    for (const int bit : {1, 2, 4, 8}) {
        const bool isLeft = bit == 1 || bit == 4;
        const bool isFront = bit <= 2;
        // The sound moves to the left and to the front.
        int gain = 100 - ((isLeft ? balance < 0 : balance > 0) ? loss(balance) : 0);
        gain = qMax(0, gain - ((isFront ? fade < 0 : fade > 0) ? loss(fade) : 0));
        const audio::audio_channel_gain_t record = {static_cast<quint32>(bit), static_cast<quint8>(gain), {}};
        if (m_hasVolume)
            m_calls.callWithRecord(ObjectKind::Volume, "setFadeBalance", record);
    }
}

void FacadeModel::setOutputSource(const char *track, const char *source)
{
    once(ObjectKind::Source, "setOutputSource", track, source);
}

void FacadeModel::setOutputSource(Tag tag, const char *source)
{
    if (!trackOf(tag).isEmpty())
        setOutputSource(trackOf(tag).toLatin1().constData(), platformSource(QLatin1String(source)).toLatin1().constData());
}

void FacadeModel::setOutputFrontSource(const char *track, const char *source, bool frontOnly)
{
    const bool hasSource = m_calls.create(ObjectKind::Source);
    const bool hasMixer = m_calls.create(ObjectKind::Mixer);
    if (hasSource)
        m_calls.call(ObjectKind::Source, "setOutputSource", track, source);
    if (hasSource && hasMixer) {
        m_calls.call(ObjectKind::Source, "setOutputChannelMask", frontOnly ? 3 : 15);
        m_calls.call(ObjectKind::Mixer, "setFrontRearMode", frontOnly ? 0 : 1);
    }
    if (hasMixer)
        m_calls.destroy(ObjectKind::Mixer);
    if (hasSource)
        m_calls.destroy(ObjectKind::Source);
}

void FacadeModel::setOutputFrontSource(Tag tag, const char *source, bool frontOnly)
{
    if (!trackOf(tag).isEmpty())
        setOutputFrontSource(trackOf(tag).toLatin1().constData(), platformSource(QLatin1String(source)).toLatin1().constData(), frontOnly);
}

void FacadeModel::setInputDestination(const char *track, const char *destination)
{
    const bool hasSource = m_calls.create(ObjectKind::Source);
    const bool hasVolume = m_calls.create(ObjectKind::Volume);
    if (hasSource)
        m_calls.call(ObjectKind::Source, "setInputDestination", track, destination);
    // In any order.
    const bool isVolumeFirst = m_calls.peek() && m_calls.peek()->kind == ObjectKind::Volume;
    for (const ObjectKind kind : {isVolumeFirst ? ObjectKind::Volume : ObjectKind::Source, isVolumeFirst ? ObjectKind::Source : ObjectKind::Volume}) {
        if (kind == ObjectKind::Volume ? hasVolume : hasSource)
            m_calls.destroy(kind);
    }
}

void FacadeModel::setInputDestination(Tag tag, const char *destination)
{
    if (!trackOf(tag).isEmpty())
        setInputDestination(trackOf(tag).toLatin1().constData(), platformSource(QLatin1String(destination)).toLatin1().constData());
}

void FacadeModel::setAuxinChannel(AudioControl::AudioInChannel channel)
{
    const int pin = channel;
    once(ObjectKind::Source, "setInputSelectPin", 1, pin < 0 || pin > 5 ? 0 : pin);
}

AudioControl::AudioInChannel FacadeModel::getAuxinChannel()
{
    int pin = 0;
    if (m_calls.create(ObjectKind::Source)) {
        const JournalEntry &entry = m_calls.expect(ObjectKind::Source, "getInputSelectPin", {QStringLiteral("1")});
        if (entry.result.toInt() == 0)
            pin = entry.outputs.value(0).toInt();
        m_calls.destroy(ObjectKind::Source);
    }
    return static_cast<AudioControl::AudioInChannel>(pin);
}

void FacadeModel::setI2SINChannel(AudioControl::AudioInChannel /*channel*/)
{
    once(ObjectKind::Source, "setInputSelectPin", 2, 5);
}

void FacadeModel::setMainAudioDunkingMode(unsigned int mode)
{
    once(ObjectKind::Volume, "setDuckingMode", mode);
}

void FacadeModel::setMainAudioDunkingTargetGain(int gain)
{
    once(ObjectKind::Volume, "setDuckingTargetGain", gain);
}

} // namespace lives

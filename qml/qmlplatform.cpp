#include "qmlplatform.h"

#include "platformarguments.h"

#include "platform.h"
#include "recordfields.h"
#include "tracks.h"

#include <algorithm>

using simulator::AudioChip;
using simulator::Books;
using simulator::Faults;
using simulator::Journal;
using simulator::Platform;

PlatformState::PlatformState(QObject *parent)
    : QObject(parent)
{
    Platform *const platform = Platform::instance();
    connect(platform, &Platform::reverseGearChanged, this, &PlatformState::reverseGearChanged);
    connect(platform, &Platform::homeUiTypeChanged, this, &PlatformState::homeUiTypeChanged);
    const auto table = platform->chip()->stateTable();
    for (const simulator::StateItem &item : table)
        learn(item.group, item.name, item.value);
    connect(platform->chip(), &AudioChip::changed, this, &PlatformState::learn);
    connect(platform->chip(), &AudioChip::changed, this, &PlatformState::stateChanged);
    connect(platform->chip(), &AudioChip::wasReset, this, &PlatformState::compareState);
    connect(platform->journal(), &Journal::appended, this, [this](const simulator::JournalEntry &entry) { Q_EMIT called(entry.call()); });
    // Last, so that what the others brought is there when bindings look.
    connect(platform->chip(), &AudioChip::changed, this, &PlatformState::liveChanged);
    connect(platform->chip(), &AudioChip::wasReset, this, &PlatformState::liveChanged);
    connect(platform->journal(), &Journal::appended, this, &PlatformState::liveChanged);
    connect(platform->journal(), &Journal::cleared, this, &PlatformState::liveChanged);
    connect(platform->faults(), &Faults::changed, this, &PlatformState::liveChanged);
    connect(platform->books(), &Books::changed, this, &PlatformState::liveChanged);
    connect(platform->books(), &Books::problemFound, this, &PlatformState::liveChanged);
}

bool PlatformState::reverseGear() const
{
    return Platform::instance()->reverseGear();
}

int PlatformState::homeUiType() const
{
    return Platform::instance()->homeUiType();
}

QObject *PlatformState::live()
{
    return this;
}

void PlatformState::learn(const QString &group, const QString &name, const QVariant &value)
{
    if (value.isValid())
        m_known.insert({group, name}, value);
    else
        m_known.remove({group, name});
    const int blank = name.indexOf(QLatin1Char(' ')); // "main S+FilePlayer", of the volumes
    QString source;
    if (group == QLatin1String("volume") && simulator::isTrack(name.left(blank)))
        source = name.mid(blank + 1);
    else if (group == QLatin1String("active source") || group == QLatin1String("output source") || group == QLatin1String("input destination"))
        source = value.toString();
    if (!source.isEmpty())
        m_sources.insert(source);
}

void PlatformState::compareState()
{
    const auto before = m_known;
    m_known.clear();
    const auto table = Platform::instance()->chip()->stateTable();
    for (const simulator::StateItem &item : table)
        learn(item.group, item.name, item.value);
    const auto after = m_known;
    for (auto item = after.cbegin(); item != after.cend(); ++item) {
        if (before.value(item.key()) != item.value())
            Q_EMIT stateChanged(item.key().first, item.key().second, item.value());
    }
    for (auto item = before.cbegin(); item != before.cend(); ++item) {
        if (!after.contains(item.key()))
            Q_EMIT stateChanged(item.key().first, item.key().second, QVariant());
    }
}

template<>
Platform &scriptTarget<Platform>(QObject & /*callee*/)
{
    return *Platform::instance();
}
template<>
AudioChip &scriptTarget<AudioChip>(QObject & /*callee*/)
{
    return *Platform::instance()->chip();
}
template<>
Journal &scriptTarget<Journal>(QObject & /*callee*/)
{
    return *Platform::instance()->journal();
}
template<>
Faults &scriptTarget<Faults>(QObject & /*callee*/)
{
    return *Platform::instance()->faults();
}
template<>
Books &scriptTarget<Books>(QObject & /*callee*/)
{
    return *Platform::instance()->books();
}
/// Where an operation throws by itself.
template<>
QmlPlatform &scriptTarget<QmlPlatform>(QObject &callee)
{
    return static_cast<QmlPlatform &>(callee);
}

namespace
{

// Records and other values of the simulator as objects ---------------------------------------------------------------------

/// Of an array of records each field is a list. Nobody is to look at reserved fields.
template<typename Field>
void addField(QVariantMap &object, const char *name, const Field &field)
{
    if (QByteArray(name).startsWith("reserved"))
        return;
    if constexpr (std::is_class_v<std::remove_all_extents_t<Field>>) {
        QVariantMap lists;
        for (const auto &record : field) {
            QVariantMap one;
            simulator::visitFields(record, [&one](const char *part, const auto &value) { addField(one, part, value); });
            for (auto value = one.cbegin(); value != one.cend(); ++value)
                lists.insert(value.key(), lists.value(value.key()).toList() << value.value());
        }
        object.insert(lists);
    } else {
        object.insert(QLatin1String(name), ScriptValues::toScript(field));
    }
}

template<typename Record>
QVariantMap toObject(const Record &record)
{
    QVariantMap object;
    simulator::visitFields(record, [&object](const char *name, const auto &field) { addField(object, name, field); });
    return object;
}

QVariantMap lastEqParameter(AudioChip &chip)
{
    return toObject(chip.lastEqParameter());
}

QVariantMap lastExtEqParameter(AudioChip &chip)
{
    return toObject(chip.lastExtEqParameter());
}

QVariantMap filter(AudioChip &chip, quint32 channel)
{
    const auto record = chip.filter(channel);
    return record ? toObject(*record) : QVariantMap();
}

QVariantMap effectiveSound(AudioChip &chip, const QString &track, const QString &source, quint32 channel, int band)
{
    const simulator::Sound sound = chip.effectiveSound(track, source, channel, band);
    return {{QStringLiteral("gain"), sound.gain}, {QStringLiteral("equalizer"), sound.equalizer}, {QStringLiteral("delay"), sound.delay}};
}

QVariantList state(AudioChip &chip)
{
    QVariantList items;
    const auto table = chip.stateTable();
    for (const simulator::StateItem &item : table)
        items.append(QVariantMap{{QStringLiteral("group"), item.group}, {QStringLiteral("name"), item.name}, {QStringLiteral("value"), item.value}});
    return items;
}

QStringList journal(Journal &journal)
{
    return journal.calls();
}

// What refuses by itself ---------------------------------------------------------------------------------------------------

void setMicrophoneTest(QmlPlatform &platform, const QList<quint16> &values)
{
    std::array<quint16, 8> readings = {};
    if (values.size() != int(readings.size())) {
        throwScriptError(&platform, QJSValue::RangeError, QStringLiteral("values must be eight numbers, not %1").arg(values.size()));
        return;
    }
    std::copy(values.cbegin(), values.cend(), readings.begin());
    Platform::instance()->chip()->setMicrophoneTest(readings);
}

void fail(QmlPlatform &platform, const QString &operation, int code)
{
    if (!Platform::instance()->faults()->fail(operation, code))
        throwScriptError(&platform, QJSValue::RangeError, QStringLiteral("there is no operation %1 to fail with code %2").arg(operation).arg(code));
}

void failOnce(QmlPlatform &platform, const QString &operation, int code, int n)
{
    if (!Platform::instance()->faults()->fail(operation, code, n)) {
        throwScriptError(
            &platform, QJSValue::RangeError, QStringLiteral("there is no call %1 of an operation %2 to fail with code %3").arg(n).arg(operation).arg(code));
    }
}

void failAfterWriting(QmlPlatform &platform, const QString &operation, int code)
{
    if (!Platform::instance()->faults()->failAfterWriting(operation, code)) {
        throwScriptError(
            &platform, QJSValue::RangeError, QStringLiteral("there is no operation %1 that writes something, to fail with code %2").arg(operation).arg(code));
    }
}

void throwKindError(QmlPlatform &platform, const QString &kind)
{
    throwScriptError(&platform, QJSValue::RangeError, QStringLiteral("kind must be App, Mixer, Source or Volume, not %1").arg(kind));
}

void failFactory(QmlPlatform &platform, const QString &kind)
{
    if (!Platform::instance()->faults()->failFactory(kind))
        throwKindError(platform, kind);
}

int objects(QmlPlatform &platform, const QString &kind, int (Books::*count)(simulator::ObjectKind) const)
{
    const auto *const found = std::find_if(simulator::allObjectKinds.cbegin(), simulator::allObjectKinds.cend(), [&kind](simulator::ObjectKind candidate) {
        return kind == simulator::objectKindName(candidate);
    });
    if (found != simulator::allObjectKinds.cend())
        return (Platform::instance()->books()->*count)(*found);
    throwKindError(platform, kind);
    return 0;
}

int alive(QmlPlatform &platform, const QString &kind)
{
    return objects(platform, kind, &Books::alive);
}

int made(QmlPlatform &platform, const QString &kind)
{
    return objects(platform, kind, &Books::made);
}

bool checkNames(QObject &callee, const ScriptOperation &operation, const QJSValue *given)
{
    // Whoever sets a source may name any: it is known from then on.
    PlatformArguments arguments(&callee, static_cast<QmlPlatform &>(callee).sourcesInUse());
    for (const ScriptInput &input : operation.inputs) {
        if (operation.kind == ScriptKind::Looks || input.name == "track")
            arguments.check({input.name.constData(), *given});
        ++given;
    }
    return !arguments.failed();
}

constexpr ScriptRow operations[] = {
    {"the car"},
    {SCRIPT_CALL(Platform, setReverseGear), "engaged", "reverse gear, as the MCU service reports it"},
    {SCRIPT_CALL(Platform, setHomeUiType), "type", "the home screen; 7 has volume defaults of its own, from the next start on"},
    {SCRIPT_CALL(Platform, setCallDuration), "milliseconds", "the time that each call on the platform takes"},
    {SCRIPT_CALL(Platform, reset), "", "everything as at the start, books and faults too"},
    {"what is heard"},
    {SCRIPT_CALL(AudioChip, effectiveGain), "track, source, channel", "the level at a loudspeaker, 0 to 1, without equalizer", ScriptKind::Looks},
    {"effectiveSound",
     scriptCall<&effectiveSound>,
     "track, source, channel, band",
     "the level, 0 to 1, a band's equalizer in dB and the delay: {gain, equalizer, delay}",
     ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, effectiveGainDb), "track, source, channel, band", "level and equalizer in dB", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, effectiveMainVolume), "", "the volume of what plays on the main track, lowered by ducking; 0 when muted", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, equalizerGain), "channel, band", "a band of the curve set last, in dB", ScriptKind::Looks},
    {"volumes"},
    {SCRIPT_CALL(AudioChip, masterVolume), "", "the master volume, 0 to 100", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, trackVolume), "track, source", "the volume of a source, 0 to 148", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, alternativeVolume), "", "the volume set for all of the alternative track", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, isMuted), "track", "whether a track is muted", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, duckingMode), "", "the ducking mode; 0 is off", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, duckingGain), "", "the gain that ducking lowers the main track to", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, isDucked), "", "whether the ducking mode is not 0", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, channelGain), "channel", "a channel's gain in percent", ScriptKind::Looks},
    {"routing"},
    {SCRIPT_CALL(AudioChip, activeSource), "track", "what plays on a track", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, setActiveSource), "track, source", "as when a player starts or stops by itself"},
    {SCRIPT_CALL(AudioChip, outputSource), "track", "what was routed to a track last", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, outputChannelMask), "track", "the loudspeakers of a track, as channel bits", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, frontRearMode), "", "0 front only, 1 front and rear", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, inputDestination), "track", "where an input track goes", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, inputSelectPin), "input", "the pin of an input, 1 or 2", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, alternativeCount), "track", "how many streams play on a track, as the platform counts them", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, setAlternativeCount), "count", "what the platform counts from now on"},
    {"processing"},
    {"lastEqParameter", scriptCall<&lastEqParameter>, "", "the short equalizer record set last", ScriptKind::Looks},
    {"lastExtEqParameter", scriptCall<&lastExtEqParameter>, "", "the extended equalizer record set last", ScriptKind::Looks},
    {"filter", scriptCall<&filter>, "channel", "the filter of a channel; {} where none was set", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, isLoudnessOn), "", "whether loudness is on", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, speakerDelay), "channel", "the delay of a channel", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, isDpsEnabled), "", "whether DPS is on", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, dpsUserGain), "", "the gain of DPS", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, isStereoEnabled), "", "whether stereo processing is on", ScriptKind::Looks},
    {"microphone"},
    {SCRIPT_CALL(AudioChip, micVolume), "", "the microphone's volume", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, micPgaGain), "", "the programmable gains", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, micOpGain), "", "the amplifier stages", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, micAnalogGain), "", "the analogue gains", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, calibration), "", "0 never started, 1 running, 2 applied", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, calibrationGains), "", "what a calibration finds", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, setCalibrationGains), "first, second", "what the next calibrations find"},
    {SCRIPT_CALL(AudioChip, downlinkDelay), "", "what the estimation finds", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, setDownlinkDelay), "delay", "what the next estimations find"},
    {SCRIPT_CALL(AudioChip, handsfreeDelay), "", "the delay for the echo cancelling", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, isMicLeftRightSwapped), "", "whether left and right input are swapped", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, aecQuality), "", "the quality of echo cancelling, 0 to 2", ScriptKind::Looks},
    {SCRIPT_CALL(AudioChip, microphoneTest), "", "what the self-test reads", ScriptKind::Looks},
    {"setMicrophoneTest", scriptCall<&setMicrophoneTest>, "values", "what the self-test reads from now on: eight numbers, 0 to 65535"},
    {"all of it"},
    {"state", scriptCall<&state>, "", "the whole state: [{group, name, value}, …]", ScriptKind::Looks},
    {"journal"},
    {"journal", scriptCall<&journal>, "", R"(every call so far: 'Volume.setTrackVolume("main", "S+FilePlayer", 80) -> 0')", ScriptKind::Looks},
    {"journalText", scriptCall<&Journal::toText>, "", "the same with times, objects, creates and destroys", ScriptKind::Looks},
    {"clearJournal", scriptCall<&Journal::clear>, "", "forgets the calls so far", ScriptKind::Looks},
    {"faults"},
    {"fail", scriptCall<&fail>, "operation, code", "each call of an operation, \"Volume.setTrackVolume\", fails with a code from now on"},
    {"failOnce", scriptCall<&failOnce>, "operation, code, n", "only the n-th call from now fails"},
    {"failAfterWriting",
     scriptCall<&failAfterWriting>,
     "operation, code",
     "each call of an operation that writes to its arguments, \"Volume.getTrackVolume\", does so and fails all the same"},
    {"failFactory", scriptCall<&failFactory>, "kind", R"(each "App", "Mixer", "Source" or "Volume" that is asked for is null)"},
    {"pendingFaults", scriptCall<&Faults::pending>, "", "the faults that are set", ScriptKind::Looks},
    {"clearFaults", scriptCall<&Faults::clear>, "", "no more faults"},
    {"books"},
    {"alive", scriptCall<&alive>, "kind", "how many objects of a kind, \"Volume\", exist now", ScriptKind::Looks},
    {"made", scriptCall<&made>, "kind", "how many objects of a kind were made", ScriptKind::Looks},
    {SCRIPT_CALL(Books, problems), "", "double destroys and uses after destroy, in words", ScriptKind::Looks},
};

} // namespace

const ScriptType &QmlPlatform::scriptType()
{
    static const ScriptType type("Platform", operations, {}, &checkNames);
    return type;
}

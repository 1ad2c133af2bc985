#include "qmlplatform.h"

#include "platformarguments.h"
#include "scriptcall.h"
#include "scriptvalues.h"

#include "platform.h"
#include "tracks.h"

#include <QtCore/QMap>
#include <QtCore/QPair>

#include <algorithm>

using simulator::AudioChip;
using simulator::Platform;

namespace
{

AudioChip *chip()
{
    return Platform::instance()->chip();
}

template<typename Result, typename... Parameters>
Result callChip(const QObject *callee, Result (AudioChip::*operation)(Parameters...), const ScriptArgument (&arguments)[sizeof...(Parameters)])
{
    return callFromScript(callee, &chip, operation, arguments);
}

/// By group and name.
QMap<QPair<QString, QString>, QVariant> stateByName()
{
    QMap<QPair<QString, QString>, QVariant> values;
    const auto table = chip()->stateTable();
    for (const simulator::StateItem &item : table)
        values.insert({item.group, item.name}, item.value);
    return values;
}

template<typename Values>
QVariantList toArray(const Values &values)
{
    QVariantList list;
    for (const auto value : values)
        list.append(QVariant::fromValue(double(value)));
    return list;
}

QVariantList decimals(const float *values, int count)
{
    QVariantList list;
    std::for_each(values, values + count, [&list](float value) { list.append(ScriptValues::decimal(value)); });
    return list;
}

template<typename Number, std::size_t count>
QVariantList numbers(const Number (&values)[count])
{
    QVariantList list;
    for (const Number value : values)
        list.append(int(value));
    return list;
}

} // namespace

template<typename Result, typename... Parameters>
Result QmlPlatform::askChip(Result (AudioChip::*operation)(Parameters...) const, const ScriptArgument (&arguments)[sizeof...(Parameters)])
{
    PlatformArguments checked(this, m_sourcesInUse);
    for (const ScriptArgument &argument : arguments)
        checked.check(argument);
    return checked.failed() ? Result() : callFromScript(this, &chip, operation, arguments);
}

QmlPlatform::QmlPlatform(QObject *parent)
    : QObject(parent)
{
    Platform *const platform = Platform::instance();
    connect(platform, &Platform::reverseGearChanged, this, &QmlPlatform::reverseGearChanged);
    connect(platform, &Platform::homeUiTypeChanged, this, &QmlPlatform::homeUiTypeChanged);
    const auto table = platform->chip()->stateTable();
    for (const simulator::StateItem &item : table)
        learnSource(item.group, item.name, item.value);
    connect(platform->chip(), &AudioChip::changed, this, &QmlPlatform::learnSource);
    connect(platform->chip(), &AudioChip::changed, this, &QmlPlatform::stateChanged);
    connect(platform->journal(), &simulator::Journal::appended, this, [this](const simulator::JournalEntry &entry) { Q_EMIT called(entry.call()); });
    // Last, so that what the others brought is there when bindings look.
    connect(platform->chip(), &AudioChip::changed, this, &QmlPlatform::liveChanged);
    connect(platform->chip(), &AudioChip::wasReset, this, &QmlPlatform::liveChanged);
    connect(platform->journal(), &simulator::Journal::appended, this, &QmlPlatform::liveChanged);
    connect(platform->journal(), &simulator::Journal::cleared, this, &QmlPlatform::liveChanged);
    connect(platform->faults(), &simulator::Faults::changed, this, &QmlPlatform::liveChanged);
    connect(platform->books(), &simulator::Books::changed, this, &QmlPlatform::liveChanged);
    connect(platform->books(), &simulator::Books::problemFound, this, &QmlPlatform::liveChanged);
}

QObject *QmlPlatform::live()
{
    return this;
}

void QmlPlatform::learnSource(const QString &group, const QString &name, const QVariant &value)
{
    const int blank = name.indexOf(QLatin1Char(' ')); // "main S+FilePlayer", of the volumes
    QString source;
    if (group == QLatin1String("volume") && simulator::isTrack(name.left(blank)))
        source = name.mid(blank + 1);
    else if (group == QLatin1String("active source") || group == QLatin1String("output source") || group == QLatin1String("input destination"))
        source = value.toString();
    if (!source.isEmpty())
        m_sourcesInUse.insert(source);
}

// The car -------------------------------------------------------------------------------------------------------------------

bool QmlPlatform::reverseGear() const
{
    return Platform::instance()->reverseGear();
}

int QmlPlatform::homeUiType() const
{
    return Platform::instance()->homeUiType();
}

void QmlPlatform::setReverseGear(const QJSValue &engaged)
{
    callFromScript(this, &Platform::instance, &Platform::setReverseGear, {{"engaged", engaged}});
}

void QmlPlatform::setHomeUiType(const QJSValue &type)
{
    callFromScript(this, &Platform::instance, &Platform::setHomeUiType, {{"type", type}});
}

void QmlPlatform::setCallDuration(const QJSValue &milliseconds)
{
    callFromScript(this, &Platform::instance, &Platform::setCallDuration, {{"milliseconds", milliseconds}});
}

void QmlPlatform::reset()
{
    const auto before = stateByName();
    Platform::instance()->reset();
    // The chip tells only that all of it may be different.
    const auto after = stateByName();
    for (auto item = after.cbegin(); item != after.cend(); ++item) {
        if (before.value(item.key()) != item.value())
            Q_EMIT stateChanged(item.key().first, item.key().second, item.value());
    }
    for (auto item = before.cbegin(); item != before.cend(); ++item) {
        if (!after.contains(item.key()))
            Q_EMIT stateChanged(item.key().first, item.key().second, QVariant());
    }
    Q_EMIT liveChanged();
}

// What can be heard ---------------------------------------------------------------------------------------------------------

double QmlPlatform::effectiveGain(const QJSValue &track, const QJSValue &source, const QJSValue &channel)
{
    return askChip(&AudioChip::effectiveGain, {{"track", track}, {"source", source}, {"channel", channel}});
}

QVariantMap QmlPlatform::effectiveSound(const QJSValue &track, const QJSValue &source, const QJSValue &channel, const QJSValue &band)
{
    const simulator::Sound sound = askChip(&AudioChip::effectiveSound, {{"track", track}, {"source", source}, {"channel", channel}, {"band", band}});
    return {{QStringLiteral("gain"), sound.gain},
            {QStringLiteral("equalizer"), ScriptValues::decimal(float(sound.equalizer))},
            {QStringLiteral("delay"), ScriptValues::decimal(float(sound.delay))}};
}

double QmlPlatform::effectiveGainDb(const QJSValue &track, const QJSValue &source, const QJSValue &channel, const QJSValue &band)
{
    return askChip(&AudioChip::effectiveGainDb, {{"track", track}, {"source", source}, {"channel", channel}, {"band", band}});
}

int QmlPlatform::effectiveMainVolume()
{
    return chip()->effectiveMainVolume();
}

double QmlPlatform::equalizerGain(const QJSValue &channel, const QJSValue &band)
{
    // The chip keeps floats.
    return ScriptValues::decimal(float(askChip(&AudioChip::equalizerGain, {{"channel", channel}, {"band", band}})));
}

// Volumes -------------------------------------------------------------------------------------------------------------------

int QmlPlatform::masterVolume()
{
    return chip()->masterVolume();
}

int QmlPlatform::trackVolume(const QJSValue &track, const QJSValue &source)
{
    return askChip(&AudioChip::trackVolume, {{"track", track}, {"source", source}});
}

int QmlPlatform::alternativeVolume()
{
    return chip()->alternativeVolume();
}

bool QmlPlatform::isMuted(const QJSValue &track)
{
    return askChip(&AudioChip::isMuted, {{"track", track}});
}

double QmlPlatform::duckingMode()
{
    return chip()->duckingMode();
}

int QmlPlatform::duckingGain()
{
    return chip()->duckingGain();
}

bool QmlPlatform::isDucked()
{
    return chip()->isDucked();
}

int QmlPlatform::channelGain(const QJSValue &channel)
{
    return askChip(&AudioChip::channelGain, {{"channel", channel}});
}

// Routing -------------------------------------------------------------------------------------------------------------------

QString QmlPlatform::activeSource(const QJSValue &track)
{
    return askChip(&AudioChip::activeSource, {{"track", track}});
}

bool QmlPlatform::setActiveSource(const QJSValue &track, const QJSValue &source)
{
    // The source may be any: a name is known from then on.
    PlatformArguments arguments(this, m_sourcesInUse);
    arguments.check({"track", track});
    return !arguments.failed() && callChip(this, &AudioChip::setActiveSource, {{"track", track}, {"source", source}});
}

QString QmlPlatform::outputSource(const QJSValue &track)
{
    return askChip(&AudioChip::outputSource, {{"track", track}});
}

int QmlPlatform::outputChannelMask(const QJSValue &track)
{
    return int(askChip(&AudioChip::outputChannelMask, {{"track", track}}));
}

int QmlPlatform::frontRearMode()
{
    return chip()->frontRearMode();
}

QString QmlPlatform::inputDestination(const QJSValue &track)
{
    return askChip(&AudioChip::inputDestination, {{"track", track}});
}

int QmlPlatform::inputSelectPin(const QJSValue &input)
{
    return askChip(&AudioChip::inputSelectPin, {{"input", input}});
}

int QmlPlatform::alternativeCount(const QJSValue &track)
{
    return askChip(&AudioChip::alternativeCount, {{"track", track}});
}

void QmlPlatform::setAlternativeCount(const QJSValue &count)
{
    callChip(this, &AudioChip::setAlternativeCount, {{"count", count}});
}

// Sound processing ----------------------------------------------------------------------------------------------------------

QVariantMap QmlPlatform::lastEqParameter()
{
    const audio::audio_eq_parameter_t record = chip()->lastEqParameter();
    return {{QStringLiteral("channel"), record.channel},
            {QStringLiteral("frequency"), numbers(record.frequency)},
            {QStringLiteral("gain"), decimals(record.gain, int(std::size(record.gain)))},
            {QStringLiteral("type"), numbers(record.type)}};
}

QVariantMap QmlPlatform::lastExtEqParameter()
{
    const audio::audio_ext_eq_parameter_t record = chip()->lastExtEqParameter();
    QVariantList frequencies;
    QVariantList gains;
    QVariantList qualities;
    QVariantList types;
    for (const audio::audio_ext_eq_band_t &band : record.band) {
        frequencies.append(int(band.frequency));
        gains.append(ScriptValues::decimal(band.gain));
        qualities.append(ScriptValues::decimal(band.q));
        types.append(band.type);
    }
    return {{QStringLiteral("channel"), record.channel},
            {QStringLiteral("frequency"), frequencies},
            {QStringLiteral("gain"), gains},
            {QStringLiteral("q"), qualities},
            {QStringLiteral("type"), types}};
}

bool QmlPlatform::isLoudnessOn()
{
    return chip()->isLoudnessOn();
}

QVariantMap QmlPlatform::filter(const QJSValue &channel)
{
    const auto record = askChip(&AudioChip::filter, {{"channel", channel}});
    if (!record)
        return {};
    return {{QStringLiteral("channel"), record->channel},
            {QStringLiteral("value1"), int(record->value1)},
            {QStringLiteral("notFlag"), int(record->notFlag)},
            {QStringLiteral("value2"), int(record->value2)},
            {QStringLiteral("kind"), int(record->kind)},
            {QStringLiteral("value3"), int(record->value3)},
            {QStringLiteral("value4"), int(record->value4)}};
}

double QmlPlatform::speakerDelay(const QJSValue &channel)
{
    return ScriptValues::decimal(float(askChip(&AudioChip::speakerDelay, {{"channel", channel}})));
}

bool QmlPlatform::isDpsEnabled()
{
    return chip()->isDpsEnabled();
}

double QmlPlatform::dpsUserGain()
{
    return ScriptValues::decimal(float(chip()->dpsUserGain()));
}

bool QmlPlatform::isStereoEnabled()
{
    return chip()->isStereoEnabled();
}

// Microphone and voice ------------------------------------------------------------------------------------------------------

double QmlPlatform::micVolume()
{
    return chip()->micVolume();
}

QVariantList QmlPlatform::micPgaGain()
{
    return toArray(chip()->micPgaGain());
}

QVariantList QmlPlatform::micOpGain()
{
    return toArray(chip()->micOpGain());
}

QVariantList QmlPlatform::micAnalogGain()
{
    return toArray(chip()->micAnalogGain());
}

int QmlPlatform::calibration()
{
    return static_cast<int>(chip()->calibration());
}

QVariantList QmlPlatform::calibrationGains()
{
    return toArray(chip()->calibrationGains());
}

void QmlPlatform::setCalibrationGains(const QJSValue &first, const QJSValue &second)
{
    callChip(this, &AudioChip::setCalibrationGains, {{"first", first}, {"second", second}});
}

int QmlPlatform::downlinkDelay()
{
    return chip()->downlinkDelay();
}

void QmlPlatform::setDownlinkDelay(const QJSValue &delay)
{
    callChip(this, &AudioChip::setDownlinkDelay, {{"delay", delay}});
}

int QmlPlatform::handsfreeDelay()
{
    return chip()->handsfreeDelay();
}

bool QmlPlatform::isMicLeftRightSwapped()
{
    return chip()->isMicLeftRightSwapped();
}

int QmlPlatform::aecQuality()
{
    return chip()->aecQuality();
}

QVariantList QmlPlatform::microphoneTest()
{
    return toArray(chip()->microphoneTest());
}

void QmlPlatform::setMicrophoneTest(const QJSValue &values)
{
    std::array<quint16, 8> readings = {};
    ScriptArguments arguments(this);
    const auto given = ScriptCall::read<QList<quint16>>(arguments, {"values", values});
    if (arguments.failed())
        return;
    if (given.size() != int(readings.size())) {
        throwScriptError(this, QJSValue::RangeError, QStringLiteral("values must be eight numbers, not %1").arg(given.size()));
        return;
    }
    std::copy(given.cbegin(), given.cend(), readings.begin());
    chip()->setMicrophoneTest(readings);
}

QVariantList QmlPlatform::state()
{
    QVariantList items;
    const auto table = chip()->stateTable();
    for (const simulator::StateItem &item : table)
        items.append(QVariantMap{{QStringLiteral("group"), item.group}, {QStringLiteral("name"), item.name}, {QStringLiteral("value"), item.value}});
    return items;
}

// Journal -------------------------------------------------------------------------------------------------------------------

QStringList QmlPlatform::journal()
{
    return Platform::instance()->journal()->calls();
}

QString QmlPlatform::journalText()
{
    return Platform::instance()->journal()->toText();
}

void QmlPlatform::clearJournal()
{
    Platform::instance()->journal()->clear();
}

// Faults --------------------------------------------------------------------------------------------------------------------

void QmlPlatform::fail(const QJSValue &operation, const QJSValue &code)
{
    ScriptArguments arguments(this);
    const auto name = ScriptCall::read<QString>(arguments, {"operation", operation});
    const auto result = ScriptCall::read<int>(arguments, {"code", code});
    if (!arguments.failed() && !Platform::instance()->faults()->fail(name, result))
        throwScriptError(this, QJSValue::RangeError, QStringLiteral("there is no operation %1 to fail with code %2").arg(name).arg(result));
}

void QmlPlatform::failOnce(const QJSValue &operation, const QJSValue &code, const QJSValue &n)
{
    ScriptArguments arguments(this);
    const auto name = ScriptCall::read<QString>(arguments, {"operation", operation});
    const auto result = ScriptCall::read<int>(arguments, {"code", code});
    const auto call = ScriptCall::read<int>(arguments, {"n", n});
    if (!arguments.failed() && !Platform::instance()->faults()->fail(name, result, call)) {
        throwScriptError(
            this, QJSValue::RangeError, QStringLiteral("there is no call %1 of an operation %2 to fail with code %3").arg(call).arg(name).arg(result));
    }
}

void QmlPlatform::failFactory(const QJSValue &kind)
{
    ScriptArguments arguments(this);
    const auto name = ScriptCall::read<QString>(arguments, {"kind", kind});
    if (!arguments.failed() && !Platform::instance()->faults()->failFactory(name))
        throwScriptError(this, QJSValue::RangeError, QStringLiteral("kind must be App, Mixer, Source or Volume, not %1").arg(name));
}

QStringList QmlPlatform::pendingFaults()
{
    return Platform::instance()->faults()->pending();
}

void QmlPlatform::clearFaults()
{
    Platform::instance()->faults()->clear();
}

// Books ---------------------------------------------------------------------------------------------------------------------

int QmlPlatform::objects(const QJSValue &kind, bool alive)
{
    ScriptArguments arguments(this);
    const auto name = ScriptCall::read<QString>(arguments, {"kind", kind});
    if (arguments.failed())
        return 0;
    const auto *const found = std::find_if(simulator::allObjectKinds.cbegin(), simulator::allObjectKinds.cend(), [&name](simulator::ObjectKind candidate) {
        return name == simulator::objectKindName(candidate);
    });
    if (found == simulator::allObjectKinds.cend()) {
        throwScriptError(this, QJSValue::RangeError, QStringLiteral("kind must be App, Mixer, Source or Volume, not %1").arg(name));
        return 0;
    }
    const simulator::Books *const books = Platform::instance()->books();
    return alive ? books->alive(*found) : books->made(*found);
}

int QmlPlatform::alive(const QJSValue &kind)
{
    return objects(kind, true);
}

int QmlPlatform::made(const QJSValue &kind)
{
    return objects(kind, false);
}

QStringList QmlPlatform::problems()
{
    return Platform::instance()->books()->problems();
}

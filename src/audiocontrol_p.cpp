#include "audiocontrol_p.h"

#include "audiocontroltables.h"
#include "logging.h"
#include "lowbyte.h"
#include "platformobject.h"

#include <QtCore/QtGlobal>

#include <algorithm>

namespace audio
{

using logging::logOutcome;
using logging::message;
using SPAudioSetting::App;
using SPAudioSetting::Source;
using SPAudioSetting::Volume;

namespace
{

const char *platformTrack(AudioControl::AudioTag tag)
{
    return tables::trackNames[tag == AudioControl::Second ? AudioControl::Second : AudioControl::Main].track;
}

/// What plays on the tag's track; null when the platform cannot tell.
QString activeSource(const PlatformObject<Source> &source, AudioControl::AudioTag tag)
{
    return QString::fromLocal8Bit(source->getActiveSource(platformTrack(tag)));
}

int fillShortRecord(audio_eq_parameter_t &parameter, quint16 tables::ShortBand::*frequency)
{
    parameter.channel = tables::allOutputs;
    for (std::size_t band = 0; band < tables::shortBandCount; ++band) {
        parameter.frequency[band] = tables::shortBands[band].*frequency;
        parameter.type[band] = tables::usedBandType;
    }
    return 0;
}

int fillExtendedRecord(audio_ext_eq_parameter_t &parameter, const tables::ExtendedBand (&bands)[tables::sentBandCount])
{
    parameter.channel = tables::allOutputs;
    for (std::size_t i = 0; i < tables::sentBandCount; ++i) {
        audio_ext_eq_band_t &band = parameter.band[i];
        band.type = tables::usedBandType;
        band.frequency = bands[i].hertz;
        band.q = bands[i].q;
        std::fill(std::begin(band.reserved1), std::end(band.reserved1), 0U);
    }
    return 0;
}

/// Hands a short record to the long-lived App. The two callers differ in the heading of the listed frequencies only.
int sendShortRecord(App *app, audio_eq_parameter_t &parameter, const char *heading, const logging::CodeLocation &at)
{
    const int result = callPlatform(app, &App::setEqParameter, parameter);
    logOutcome(at, result, message("set eq channel", parameter.channel), message("set eq error", result));
    if (result != 0)
        return -1;
    if (logging::isDebugEnabled()) {
        logging::logInfo(at, heading);
        for (const quint16 frequency : parameter.frequency)
            logging::logInfo(at, frequency);
    }
    return 0;
}

/// Hands an extended record to an App of its own.
int sendExtendedRecord(audio_ext_eq_parameter_t &parameter, const logging::CodeLocation &at)
{
    int result = 0;
    {
        const PlatformObject<App> app(at, "Create App failed.");
        if (!app)
            return 0; // meant so: the caller is not told
        result = app->setExtEqParameter(parameter);
    }
    logOutcome(at, result, message("set eq channel", parameter.channel), message("set eq error", result));
    return result == 0 ? 0 : -1;
}

/// Whether an enumeration argument lies in 0..highest. Compared unsigned, so a negative one does not.
bool isInRange(int value, unsigned int highest)
{
    return static_cast<unsigned int>(value) <= highest;
}

} // namespace

AudioControlPrivate::AudioControlPrivate()
    : volume(SPAudioSetting::createVolume())
    , app(SPAudioSetting::createApp())
{
    initQtSpMap();
}

AudioControlPrivate::~AudioControlPrivate()
{
    if (volume)
        SPAudioSetting::destroy(volume);
    volume = nullptr;
    // Meant so: the App object stays with the process.
}

// Names ---------------------------------------------------------------------------------------------------------------------

void AudioControlPrivate::initQtSpMap()
{
    for (const tables::SourceName &row : tables::sourceNames)
        qtToSpNames.insert(QString::fromLatin1(row.qtName), QString::fromLatin1(row.spName));
    for (const tables::TrackName &row : tables::trackNames)
        tagNames.insert(row.tag, QString::fromLatin1(row.track));
    for (const auto &member : tables::groupMembers)
        groupList.append(QString::fromLatin1(member));
    groups.insert(QString::fromLatin1(tables::groupName), groupList);
}

void AudioControlPrivate::trackNameFromQtToSp(const QString &qtName, QString &spName)
{
    spName = qtToSpNames.value(qtName);
}

void AudioControlPrivate::trackNameFromSpToQt(const QString &spName, QString &qtName)
{
    qtName = qtToSpNames.key(spName);
}

void AudioControlPrivate::tagNameFromQtToSp(AudioControl::AudioTag tag, QString &name)
{
    name = tagNames.value(tag);
}

// Volume --------------------------------------------------------------------------------------------------------------------

quint8 AudioControlPrivate::increaseVolume(QString spName, quint8 value)
{
    const QByteArray name = spName.toUtf8();
    return tables::isBoosted({name.constData(), static_cast<std::size_t>(name.size())}) ? boosted(value) : value;
}

quint8 AudioControlPrivate::boosted(quint8 value)
{
    // Through an unsigned int, which holds every product: a direct conversion to 8 bits is undefined beyond 255. The low 8 bits
    // are meant: 171 and more wrap round before they are held.
    const auto product = static_cast<unsigned int>(value * tables::boostFactor);
    return static_cast<quint8>(qMin<int>(static_cast<quint8>(product), tables::highestTrackVolume));
}

int AudioControlPrivate::platformValueOfStep(int step) const
{
    return stepRange == 0 ? 0 : 100 * step / stepRange;
}

QHash<QString, quint8> &AudioControlPrivate::stepVolumes(AudioControl::AudioTag tag)
{
    return tag == AudioControl::Second ? secondStepVolumes : mainStepVolumes;
}

void AudioControlPrivate::initTracksVolumes(AudioControl::AudioTag tag, const QHash<QString, quint8> &volumes)
{
    const PlatformObject<Volume> platform(QZAUDIO_HERE, "create volume err");
    if (!platform)
        return;
    const QStringList groupKeys = groups.keys();
    const char *track = platformTrack(tag);
    for (auto entry = volumes.constBegin(); entry != volumes.constEnd(); ++entry) {
        const QString &key = entry.key();
        quint8 step = entry.value();
        if (step > stepRange) {
            facadeError() << key << "'s value" << step << " is more than stepRange,set to max " << stepRange;
            step = stepRange;
        }
        stepVolumes(tag).insert(key, step);
        QString source;
        trackNameFromQtToSp(key, source);
        if (source.isEmpty()) {
            facadeError() << "get sp track name failed." << key;
            continue;
        }
        const quint8 value = increaseVolume(source, lowByte(platformValueOfStep(step)));
        const QStringList targets = groupKeys.contains(source) ? groups.value(source) : QStringList{source};
        for (const QString &target : targets) {
            const int result = platform->setTrackVolume(track, target.toLocal8Bit().constData(), value);
            const logging::CodeLocation here = QZAUDIO_HERE;
            // Meant so: the failure's line number stands twice.
            logOutcome(here, result, message("set stream", track, target, step, value), message(here.line, "set stream", track, target, step, value, result));
        }
    }
}

int AudioControlPrivate::getCurTrackVolumeInfo(AudioControl::AudioTag tag, QString &name, quint8 &step)
{
    const PlatformObject<Source> source;
    if (!source)
        return -1;
    const QString active = activeSource(source, tag);
    if (active.isNull()) {
        facadeError() << "get getOutPutSource failed.";
        return -1;
    }
    trackNameFromSpToQt(active, name);
    if (name.isEmpty() || name == QLatin1String("S+none_APP"))
        name = curMainTrack;
    const QHash<QString, quint8> &steps = stepVolumes(tag);
    const auto entry = steps.constFind(name);
    if (entry == steps.constEnd()) {
        facadeError() << name << "isn't in the audio list.plz check";
        return -1;
    }
    step = entry.value();
    return 0;
}

/// The key of the group that a platform source belongs to, or the source itself. members receives the list last looked at.
QString AudioControlPrivate::groupOf(const QString &source, QStringList &members)
{
    const QStringList keys = groups.keys();
    for (int i = 0; i < keys.size(); i += 2) { // meant so: every second key
        members = groups.value(keys.at(i));
        if (members.contains(source)) {
            facadeInfo() << "Find group " << keys.at(i) << "for" << source;
            return keys.at(i);
        }
    }
    return source;
}

int AudioControlPrivate::changeCurTrackVolume(AudioControl::AudioTag tag, bool up, QString &name, quint8 &step)
{
    const PlatformObject<Source> source(QZAUDIO_HERE, "Create audio source failed.");
    if (!source)
        return -1;
    QString active = activeSource(source, tag);
    if (active.isEmpty()) {
        facadeError() << "get cur source name failed.";
        return -1;
    }
    if (active == QLatin1String("S+none")) {
        name = curMainTrack;
        trackNameFromQtToSp(name, active);
    } else {
        trackNameFromSpToQt(active, name);
    }
    QStringList members;
    const QString group = groupOf(active, members);
    if (group != active) {
        trackNameFromSpToQt(group, name);
        facadeNote() << "Will change the group volume of " << name;
    }

    QHash<QString, quint8> &steps = stepVolumes(tag);
    const quint8 current = steps.value(name, static_cast<quint8>(stepRange >> 1));
    step = current;
    if (up ? current >= stepRange : current == 0)
        return 1;
    const int next = up ? current + 1 : current - 1;

    const PlatformObject<Volume> platform(QZAUDIO_HERE, "Create volume failed.");
    if (!platform)
        return -1;
    const char *track = platformTrack(tag);
    const int value = platformValueOfStep(next);
    const int result = platform->setTrackVolume(track, active.toLocal8Bit().constData(), lowByte(value));
    if (result != 0) {
        facadeError() << "setTrackVolume failed." << result;
        return result;
    }
    step = lowByte(next);
    steps.insert(name, step);
    facadeInfo() << track << name << "changed to " << step << value;
    // The whole group follows what plays, and a member that fails does not stop the others.
    if (members.removeOne(active)) {
        for (const QString &member : qAsConst(members))
            platform->setTrackVolume(track, member.toLocal8Bit().constData(), lowByte(value));
    }
    return 0;
}

int AudioControlPrivate::getAlterNumber(QString &track)
{
    const PlatformObject<Source> source(QZAUDIO_HERE, "Create audio source failed.");
    if (!source)
        return -1;
    return source->queryAlterNumber(track.toLocal8Bit().constData());
}

int AudioControlPrivate::changeAlterVolume(bool up, quint8 cur, quint8 &out)
{
    if (up ? cur >= stepRange : cur == 0)
        return 1;
    const int next = up ? cur + 1 : cur - 1;
    const PlatformObject<Volume> platform(QZAUDIO_HERE, "Create volume failed.");
    if (!platform)
        return -1;
    const int value = platformValueOfStep(next);
    const int result = platform->setAlterTrackVolume(lowByte(value));
    if (result == 0)
        out = lowByte(next);
    return logOutcome(QZAUDIO_HERE, result, message("changed to ", out, value), message("setAlterVolume failed.", result));
}

// Mute ----------------------------------------------------------------------------------------------------------------------

void AudioControlPrivate::muteAudio(const char *track, bool on)
{
    facadeInfo() << "set id:" << track << "to mute state:" << on;
    const int result = callPlatform(volume, on ? &Volume::muteTrack : &Volume::unmuteTrack, track, 0);
    if (result != 0)
        facadeError() << "set back earphone error" << result; // meant so, for every track
}

// Equalizer and loudness ----------------------------------------------------------------------------------------------------

int AudioControlPrivate::initEqSystemVal(audio_eq_parameter_t &parameter)
{
    return fillShortRecord(parameter, &tables::ShortBand::indexCode);
}

int AudioControlPrivate::initEqValue(audio_eq_parameter_t &parameter)
{
    return fillShortRecord(parameter, &tables::ShortBand::hertz);
}

int AudioControlPrivate::initEqSystemVal16(audio_ext_eq_parameter_t &parameter)
{
    std::for_each(std::begin(parameter.band) + tables::sentBandCount, std::end(parameter.band), [](audio_ext_eq_band_t &band) { band.type = 0; });
    return fillExtendedRecord(parameter, tables::sixteenBands);
}

int AudioControlPrivate::initEqSystemVal10(audio_ext_eq_parameter_t &parameter)
{
    return fillExtendedRecord(parameter, tables::tenBands);
}

int AudioControlPrivate::initEqValue16(audio_ext_eq_parameter_t &parameter)
{
    return fillExtendedRecord(parameter, tables::sixteenBands);
}

int AudioControlPrivate::setEqGain(audio_eq_parameter_t &parameter)
{
    return sendShortRecord(app, parameter, "Fc:", QZAUDIO_HERE);
}

int AudioControlPrivate::setEqValue(audio_eq_parameter_t &parameter)
{
    return sendShortRecord(app, parameter, "EqFrequency:", QZAUDIO_HERE);
}

int AudioControlPrivate::setEqGain16(audio_ext_eq_parameter_t &parameter)
{
    return sendExtendedRecord(parameter, QZAUDIO_HERE);
}

int AudioControlPrivate::setEqValue16(audio_ext_eq_parameter_t &parameter)
{
    return sendExtendedRecord(parameter, QZAUDIO_HERE);
}

void AudioControlPrivate::setLoudness(bool on)
{
    audio_loudness_t loudness = {};
    loudness.on = on ? 1 : 0;
    loudness.onAgain = loudness.on;
    loudness.level = tables::loudnessLevel;
    const int result = callPlatform(app, &App::setLoudness, &loudness);
    facadeInfo() << "setLoudness";
    if (result != 0)
        facadeError() << "set Loudness error" << result;
}

// Fade and balance ----------------------------------------------------------------------------------------------------------

void AudioControlPrivate::setFadeBalance(int fade, int balance)
{
    facadeInfo() << "setFadeBalance" << balance << fade;
    // In 64 bits: INT_MIN has no absolute value in 32.
    const auto fadeSteps = qAbs<qint64>(fade);
    const auto balanceSteps = qAbs<qint64>(balance);
    if (balanceSteps > tables::highestPosition || fadeSteps > tables::highestPosition) {
        facadeError() << "input fade" << fade << "balance" << balance << "err";
        return;
    }
    const auto percent = [](qint64 steps) { return static_cast<int>((100 * (tables::highestPosition - steps) + 7) / tables::highestPosition); };
    const int gainX = percent(balanceSteps);
    const int gainY = percent(fadeSteps);
    facadeInfo() << "gainX" << gainX << "gainY" << gainY;

    const int gains[] = {
        getGainVal(balance, fade, gainX, gainY),
        getGainVal(-balance, fade, gainX, gainY),
        getGainVal(balance, -fade, gainX, gainY),
        getGainVal(-balance, -fade, gainX, gainY),
    };
    static_assert(std::size(gains) == std::size(tables::loudspeakers), "one gain for each loudspeaker");
    for (std::size_t i = 0; i < std::size(gains); ++i) {
        audio_channel_gain_t record = {};
        record.channel = tables::loudspeakers[i].channel;
        record.gain = lowByte(gains[i]);
        const int result = callPlatform(volume, &Volume::setFadeBalance, &record);
        if (result != 0)
            facadeError() << tables::loudspeakers[i].failure << result;
    }
    if (!logging::isDebugEnabled())
        return;
    for (std::size_t i = 0; i < std::size(gains); ++i)
        facadeInfo() << tables::loudspeakers[i].logName << tables::loudspeakers[i].channel << gains[i];
}

int AudioControlPrivate::getGainVal(int a, int b, int gainX, int gainY)
{
    const int side = a <= 0 ? 100 : gainX;
    if (b >= 0)
        return side;
    // Fade and balance add up: what both take away is lost, down to silence.
    return qMax(0, side - (100 - gainY));
}

// Numbers -------------------------------------------------------------------------------------------------------------------

quint32 AudioControlPrivate::getSPAudioChannel(AudioControl::AudioOutChannel channel)
{
    return isInRange(channel, AudioControl::SixthOutput) ? 1U << static_cast<unsigned int>(channel) : tables::allOutputs;
}

audio_input_select_pin_e AudioControlPrivate::getSPAudioADCSelectPin(AudioControl::AudioInChannel channel)
{
    if (isInRange(channel, tables::highestInputPin))
        return static_cast<audio_input_select_pin_e>(channel);
    facadeError() << "getSPAudioADCSelectPin" << channel << "err,use default";
    return static_cast<audio_input_select_pin_e>(0);
}

AudioControl::AudioInChannel AudioControlPrivate::getAudioInChannel(audio_input_select_pin_e pin)
{
    if (isInRange(pin, tables::highestInputPin))
        return static_cast<AudioControl::AudioInChannel>(pin);
    facadeError() << "getAudioInChannel" << pin << "err,use default";
    return static_cast<AudioControl::AudioInChannel>(0);
}

audio_aec_quality_e AudioControlPrivate::getSPAudioAECQuality(AudioControl::AudioQuality quality)
{
    if (isInRange(quality, tables::highestEchoCancellingQuality))
        return static_cast<audio_aec_quality_e>(quality);
    constexpr int middle = 1;
    facadeError() << "getSPAudioAECQuality" << quality << "err,use default" << middle;
    return static_cast<audio_aec_quality_e>(middle);
}

} // namespace audio

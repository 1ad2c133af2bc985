#include <qzaudio/audiocontrol.h>

#include "audiocontrol_p.h"
#include "audiocontroltables.h"
#include "logging.h"
#include "lowbyte.h"
#include "platformobject.h"

namespace audio
{

using logging::logOutcome;
using logging::message;
using SPAudioSetting::App;
using SPAudioSetting::Mixer;
using SPAudioSetting::Source;
using SPAudioSetting::Volume;

namespace
{

// Meant so, for every kind of object.
constexpr const char *notMade = "Create audio source failed.";

/// The platform is never handed a null name.
const char *orEmpty(const char *name)
{
    return name ? name : "";
}

/// Copies one gain to each band. False, with an error line, at the first gain outside -12..12 dB; NaN counts as outside.
template<typename Gain>
bool fillGains(const QList<Gain> &gains, audio_ext_eq_parameter_t &parameter, const logging::CodeLocation &at)
{
    audio_ext_eq_band_t *band = &parameter.band[0];
    for (const Gain value : gains) {
        const auto gain = static_cast<float>(value);
        if (!(gain >= -tables::highestGain && gain <= tables::highestGain)) {
            logging::logError(at, "input gain val err", value);
            return false;
        }
        band->gain = gain;
        ++band;
    }
    return true;
}

/// Tells whether a list has the right number of gains. The line names 16 also where ten are wanted: meant so.
bool hasCount(int count, int wanted, const logging::CodeLocation &at)
{
    if (count != wanted)
        logging::logError(at, "input frequency count err", count, "!=", tables::sentBandCount);
    return count == wanted;
}

/// The platform's names of a tag and of a Qt-side name, found in the tables without a copy.
class PlatformNames
{
public:
    PlatformNames(AudioControl::AudioTag tag, const char *qtName)
        : m_tag(tag)
        , m_qtName(qtName)
        , m_track(tables::trackOf(tag))
        , m_source(tables::sourceOf(withoutByteOrderMark(orEmpty(qtName))))
    {
    }

    /// Logs both names, the second in its role.
    void log(const char *role, const logging::CodeLocation &at) const
    {
        if (!logging::isDebugEnabled())
            return;
        logging::logTrace(at, static_cast<int>(m_tag), quotedTrack(), "tag");
        logging::logTrace(at, m_qtName, quotedSource(), role);
    }

    /// For operations that pass on a name that is not known, as an empty one: logs both, and an error for a tag without a track.
    bool areRoutable(const char *role, const logging::CodeLocation &at) const
    {
        log(role, at);
        if (!m_track)
            logging::logError(at, "get spTag string error.");
        return m_track;
    }

    bool areKnown() const { return m_track && m_source; }

    /// Empty for a tag that there is not.
    const char *track() const { return m_track ? m_track->track.text() : ""; }
    /// Empty for a name that there is not.
    const char *source() const { return m_source ? m_source->spName.text() : ""; }
    /// As they stand in log lines.
    QLatin1String quotedTrack() const { return QLatin1String(track()); }
    QLatin1String quotedSource() const { return QLatin1String(source()); }

    bool isBoosted() const { return m_source && tables::isBoosted(m_source); }

private:
    /// Nothing that QString::fromUtf8() would drop.
    static std::string_view withoutByteOrderMark(std::string_view text)
    {
        constexpr std::string_view mark = "\xef\xbb\xbf";
        return text.substr(0, mark.size()) == mark ? text.substr(mark.size()) : text;
    }

    AudioControl::AudioTag m_tag;
    const char *m_qtName;
    const tables::TrackName *m_track;
    const tables::SourceName *m_source;
};

} // namespace

AudioControl *AudioControl::adCtrl = nullptr;

AudioControl *AudioControl::getInstance()
{
    if (!adCtrl)
        adCtrl = new AudioControl(nullptr);
    return adCtrl;
}

AudioControl::AudioControl(QObject *parent)
    : QObject(parent)
    , d(new AudioControlPrivate)
{
    d->q = this;
}

AudioControl::~AudioControl()
{
    delete d;
}

// Small state ---------------------------------------------------------------------------------------------------------------

void AudioControl::setStepRange(quint8 range)
{
    d->stepRange = range;
}

quint8 AudioControl::getStepRang()
{
    return d->stepRange;
}

void AudioControl::setAlterMode(bool on)
{
    alterMode = on;
}

bool AudioControl::getAlterMode()
{
    return alterMode;
}

quint8 AudioControl::getMasterStepVolume()
{
    return d->masterStepVolume;
}

quint8 AudioControl::getAlterStepVolume()
{
    return d->alterStepVolume;
}

bool AudioControl::isMute()
{
    return d->mute;
}

void AudioControl::setProfileMode(int)
{
}

// Stream and master volume --------------------------------------------------------------------------------------------------

void AudioControl::setStreamVolume(AudioTag tag, const char *name, quint8 volume)
{
    if (volume > tables::highestTrackVolume) {
        facadeError() << "input volume val more than " << tables::highestTrackVolume;
        return;
    }
    const PlatformNames names(tag, name);
    names.log("src", QZAUDIO_HERE);
    if (!names.areKnown())
        return;
    const PlatformObject<Volume> platform(QZAUDIO_HERE, "create volume ", name, " err");
    if (!platform)
        return;
    const quint8 value = names.isBoosted() ? AudioControlPrivate::boosted(volume) : volume;
    const int result = platform->setTrackVolume(names.track(), names.source(), value);
    logOutcome(QZAUDIO_HERE, result, message("set stream", name, value), message("set stream", name, "err", result));
}

quint8 AudioControl::getStreamVolume(AudioTag tag, const char *name)
{
    const PlatformNames names(tag, name);
    if (!names.areKnown())
        return 0;
    const PlatformObject<Volume> platform(QZAUDIO_HERE, "create volume ", names.quotedTrack(), names.quotedSource(), "err");
    if (!platform)
        return 0;
    quint8 value = 0;
    const int result = platform->getTrackVolume(names.track(), names.source(), &value);
    const QLatin1String track = names.quotedTrack();
    const QLatin1String source = names.quotedSource();
    logOutcome(QZAUDIO_HERE, result, message("get stream", track, source, value), message("get stream", track, source, "err", result));
    return value;
}

int AudioControl::setMasterVolume(quint8 volume)
{
    constexpr quint8 fullScale = tables::highestMasterVolume;
    if (volume > fullScale) {
        facadeError() << "input volume val more than " << fullScale;
        return -1;
    }
    // Meant so: the master volume is held at full scale, loudness is set per track.
    const int result = callPlatform(d->volume, &Volume::setMasterVolume, fullScale);
    logOutcome(QZAUDIO_HERE, result, message("set master volume", fullScale), message("set master volume err", result));
    return result == 0 ? 0 : -1;
}

quint8 AudioControl::getMasterVolume()
{
    quint8 value = 0;
    const int result = callPlatform(d->volume, &Volume::getMasterVolume, &value, 0);
    logOutcome(QZAUDIO_HERE, result, message("get master volume", value), message("get master volume err", result));
    return value;
}

void AudioControl::initTrackStepVolume(AudioTag tag, const QHash<QString, quint8> &volumes)
{
    d->initTracksVolumes(tag, volumes);
}

// Step volume ---------------------------------------------------------------------------------------------------------------

int AudioControl::getCurMainTrackStepVolumeInfo(QString &name, quint8 &step)
{
    return d->getCurTrackVolumeInfo(Main, name, step);
}

int AudioControl::changeMainTrackStepVolume(bool up, QString &name, quint8 &step)
{
    return d->changeCurTrackVolume(Main, up, name, step);
}

int AudioControl::getActivedAlterNumber()
{
    QString track;
    d->tagNameFromQtToSp(Alternative, track);
    return d->getAlterNumber(track);
}

int AudioControl::changeAlterStepVolume(bool up, quint8 cur, quint8 &out)
{
    return d->changeAlterVolume(up, cur, out);
}

int AudioControl::setAlterVolume(quint8 volume, bool hicarCall)
{
    constexpr int highest = 100;
    if (volume > highest) {
        facadeError() << "input volume val more than " << highest;
        return -1;
    }
    const PlatformObject<Volume> platform(QZAUDIO_HERE, "Create volume failed.");
    if (!platform)
        return -1;
    const quint8 value = AudioControlPrivate::boosted(volume);
    if (hicarCall)
        platform->setTrackVolume("main", "hicar_voice_callmodemspeaker10", value);
    const int result = platform->setAlterTrackVolume(value);
    logOutcome(QZAUDIO_HERE, result, message("set alter volume", value), message("set alter volume err", result));
    return -1; // meant so, on success too
}

int AudioControl::setAlterStepVolume(quint8 step, bool hicarCall)
{
    const int result = setAlterVolume(lowByte(d->platformValueOfStep(step)), hicarCall);
    if (result == 0 && hicarCall) // meant so: never the case
        d->alterStepVolume = step;
    return result;
}

int AudioControl::setMasterStepVolume(quint8 step)
{
    if (d->masterStepInited && (step == d->masterStepVolume || step > d->stepRange)) {
        facadeInfo() << "[Warning]input volume " << step << "cur volume" << d->masterStepVolume << "StepVolCnt " << d->stepRange;
        return -1;
    }
    d->masterStepInited = true;
    const int result = setMasterVolume(lowByte(d->platformValueOfStep(step)));
    if (result == 0)
        d->masterStepVolume = step;
    return result;
}

// Mute ----------------------------------------------------------------------------------------------------------------------

void AudioControl::setMute(bool mute)
{
    if (mute == d->mute)
        return;
    d->mute = mute;
    d->muteAudio("main", mute);
    d->muteAudio("alternative", mute);
}

void AudioControl::setBackEarphone(bool on)
{
    d->muteAudio("second", !on);
}

void AudioControl::muteBackEarphone(bool mute)
{
    d->muteAudio("second", mute);
}

// Equalizer and loudness ----------------------------------------------------------------------------------------------------

void AudioControl::setEqMode(EqMode mode)
{
    if (static_cast<unsigned int>(mode) >= std::size(tables::equalizerModes)) {
        facadeError() << "input eq mode error" << mode;
        return;
    }
    audio_eq_parameter_t parameter = {};
    d->initEqSystemVal(parameter);
    // The short record takes the first eight of the sixteen gains.
    for (std::size_t band = 0; band < tables::shortBandCount; ++band)
        parameter.gain[band] = tables::equalizerModes[mode][band];
    d->setEqGain(parameter);
}

QList<int> AudioControl::getEqGain(EqMode mode)
{
    QList<int> gains;
    if (static_cast<unsigned int>(mode) < std::size(tables::equalizerModes)) {
        for (const float gain : tables::equalizerModes[mode])
            gains.append(static_cast<int>(gain));
    }
    facadeInfo() << mode << "eq val is:" << gains;
    return gains;
}

QList<int> AudioControl::getSubGain(SubMode mode)
{
    QList<int> gains;
    if (static_cast<unsigned int>(mode) < std::size(tables::subwooferModes)) {
        for (const int gain : tables::subwooferModes[mode])
            gains.append(gain);
    }
    return gains;
}

void AudioControl::setEqGain(const QList<float> &gains)
{
    audio_ext_eq_parameter_t parameter = {};
    if (!hasCount(gains.size(), tables::sentBandCount, QZAUDIO_HERE))
        return;
    d->initEqSystemVal16(parameter);
    if (fillGains(gains, parameter, QZAUDIO_HERE))
        d->setEqGain16(parameter);
}

void AudioControl::setEqGain10(const QList<int> &gains)
{
    audio_ext_eq_parameter_t parameter = {};
    if (!hasCount(gains.size(), tables::freeBandCount, QZAUDIO_HERE))
        return;
    d->initEqSystemVal10(parameter);
    if (!fillGains(gains, parameter, QZAUDIO_HERE))
        return;
    for (int band = tables::freeBandCount; band < tables::sentBandCount; ++band)
        parameter.band[band].gain = 0.0F;
    d->setEqGain16(parameter);
}

void AudioControl::setEqValue(const QList<int> &gains)
{
    audio_ext_eq_parameter_t parameter = {};
    if (!hasCount(gains.size(), tables::sentBandCount, QZAUDIO_HERE))
        return;
    d->initEqValue16(parameter);
    if (fillGains(gains, parameter, QZAUDIO_HERE))
        d->setEqValue16(parameter);
}

void AudioControl::getEqInitValue(QList<int> &out)
{
    audio_ext_eq_parameter_t parameter = {};
    d->initEqValue16(parameter);
    for (int band = 0; band < tables::sentBandCount; ++band)
        out.append(parameter.band[band].frequency);
    for (const int frequency : qAsConst(out))
        facadeInfo() << "list=" << frequency;
}

void AudioControl::setLoudnessSwitch(bool on)
{
    d->setLoudness(on);
}

// Fade and balance ----------------------------------------------------------------------------------------------------------

void AudioControl::setFadeBalance(int fade, int balance)
{
    // Negated in unsigned arithmetic, where INT_MIN, refused further down, is no overflow.
    d->setFadeBalance(fade, static_cast<int>(0U - static_cast<unsigned int>(balance)));
}

// Routing and inputs --------------------------------------------------------------------------------------------------------

void AudioControl::setOutputSource(const char *track, const char *source)
{
    facadeInfo() << "set audio stream output source" << track << source;
    traceDebug() << track << "tag";
    traceDebug() << source << "src";
    const int result = callPlatform(PlatformObject<Source>(), &Source::setOutputSource, orEmpty(track), orEmpty(source));
    // Meant so: these texts speak of the front seat for every stream.
    logOutcome(QZAUDIO_HERE, result, message("Set Front seat audio stream success."), message("Set Front seat audio stream error", result));
    if (result != 0)
        traceDebug() << "setoutput failed";
}

void AudioControl::setOutputSource(AudioTag tag, const char *source)
{
    const PlatformNames names(tag, source);
    if (names.areRoutable("src", QZAUDIO_HERE))
        setOutputSource(names.track(), names.source());
}

void AudioControl::setOutputFrontSource(const char *track, const char *source, bool frontOnly)
{
    facadeInfo() << "set Front audio stream output source" << track << source;
    int sourceResult = 0;
    int maskResult = 0;
    int modeResult = -1;
    {
        const PlatformObject<Source> platformSource;
        const PlatformObject<Mixer> mixer;
        if (platformSource)
            sourceResult = platformSource->setOutputSource(orEmpty(track), orEmpty(source));
        if (platformSource && mixer) {
            facadeInfo() << (frontOnly ? "set front channels" : "set front and rear channels");
            maskResult = platformSource->setOutputChannelMask(frontOnly ? tables::frontPairMask : tables::allPairsMask);
            modeResult = mixer->setFrontRearMode(frontOnly ? tables::frontOnlyMode : tables::frontAndRearMode);
        }
    }
    const int firstFailure = sourceResult != 0 ? sourceResult : maskResult != 0 ? maskResult : modeResult;
    logOutcome(QZAUDIO_HERE,
               firstFailure,
               message("Set Front seat audio stream success,", sourceResult, maskResult, modeResult),
               message("Set Front seat audio stream error,", sourceResult, maskResult, modeResult));
}

void AudioControl::setOutputFrontSource(AudioTag tag, const char *source, bool frontOnly)
{
    const PlatformNames names(tag, source);
    if (names.areRoutable("src", QZAUDIO_HERE))
        setOutputFrontSource(names.track(), names.source(), frontOnly);
}

void AudioControl::setInputDestination(const char *track, const char *destination)
{
    facadeInfo() << "set audio stream input source" << track << destination;
    int result = -1;
    {
        const PlatformObject<Source> source;
        const PlatformObject<Volume> volume; // meant so: only made and destroyed
        if (source) {
            result = source->setInputDestination(orEmpty(track), orEmpty(destination));
            traceDebug() << track << "tag";
            traceDebug() << destination << "dest";
            traceDebug() << result << "return";
        }
    }
    logOutcome(QZAUDIO_HERE, result, message("Set audio stream input source success."), message("Set audio stream input source error.", result));
}

void AudioControl::setInputDestination(AudioTag tag, const char *destination)
{
    const PlatformNames names(tag, destination);
    if (names.areRoutable("dest", QZAUDIO_HERE))
        setInputDestination(names.track(), names.source());
}

void AudioControl::setAuxinChannel(AudioInChannel channel)
{
    const int pin = d->getSPAudioADCSelectPin(channel);
    facadeInfo() << "set setAuxinChannel " << channel << pin;
    const int result = callPlatform(PlatformObject<Source>(), &Source::setInputSelectPin, tables::auxiliaryInputPort, pin);
    logOutcome(QZAUDIO_HERE, result, message("set auxin pin success", pin), message("Set auxin pin error", result));
}

AudioControl::AudioInChannel AudioControl::getAuxinChannel()
{
    facadeInfo() << "get AuxinChannel ";
    unsigned char pin = 0;
    const int result = callPlatform(PlatformObject<Source>(), &Source::getInputSelectPin, tables::auxiliaryInputPort, &pin);
    logOutcome(QZAUDIO_HERE, result, message("get auxin pin success", pin), message("get auxin pin error", result));
    return result == 0 ? d->getAudioInChannel(static_cast<audio_input_select_pin_e>(pin)) : static_cast<AudioInChannel>(0);
}

void AudioControl::setI2SINChannel(AudioInChannel)
{
    constexpr int pin = tables::i2sInputPin; // meant so, whatever the argument
    const int result = callPlatform(PlatformObject<Source>(), &Source::setInputSelectPin, tables::i2sInputPort, pin);
    logOutcome(QZAUDIO_HERE, result, message("set I2SIN success", pin), message("Set I2SIN pin error", result));
}

void AudioControl::setMainAudioDunkingMode(unsigned int mode)
{
    facadeInfo() << "setMainAudioDunkingMode" << mode;
    const int result = callPlatform(PlatformObject<Volume>(), &Volume::setDuckingMode, mode);
    logOutcome(QZAUDIO_HERE, result, message("Set Front seat audio stream success."), message("Set Front seat audio stream error", result));
}

void AudioControl::setMainAudioDunkingTargetGain(unsigned char gain)
{
    facadeInfo() << "setMainAudioDunkingMode" << gain; // meant so: the mode's text
    const int result = callPlatform(PlatformObject<Volume>(), &Volume::setDuckingTargetGain, gain);
    logOutcome(QZAUDIO_HERE, result, message("Set Front seat audio stream success."), message("Set Front seat audio stream error", result));
}

// Microphone and voice ------------------------------------------------------------------------------------------------------

void AudioControl::setMicroPhoneVolume(int volume)
{
    if (volume < 0 || volume > tables::highestMicrophoneVolume) {
        facadeError() << "input data error:" << volume;
        return;
    }
    const auto value = static_cast<float>(volume);
    const int result = callPlatform(d->volume, &Volume::setMicVolume, value);
    logOutcome(QZAUDIO_HERE, result, message("Set micro phone volume success. data:", value), message("Set micro phone volume error", result));
}

int AudioControl::getMicAnalogGain(float *first, float *second)
{
    return callPlatform(PlatformObject<Volume>(QZAUDIO_HERE, notMade), &Volume::getMicAnalogGain, first, second);
}

int AudioControl::setMicAnalogGain(float first, float second)
{
    facadeInfo() << first << second;
    return callPlatform(PlatformObject<Volume>(QZAUDIO_HERE, notMade), &Volume::setMicAnalogGain, first, second);
}

int AudioControl::setMicOpAndPga(float op, float pga)
{
    const PlatformObject<Volume> volume(QZAUDIO_HERE, notMade);
    if (!volume)
        return -1;
    volume->setMicOpGain(0, op, op);
    volume->setMicPgaGain(0, pga, pga);
    return -1; // meant so, on success too
}

int AudioControl::startMicGainCalibration()
{
    const PlatformObject<Volume> volume(QZAUDIO_HERE, notMade);
    if (!volume)
        return -1;
    facadeInfo() << "startMicGainCalibration";
    return volume->startMicGainCalibration();
}

int AudioControl::setMicGainCalibration()
{
    const PlatformObject<Volume> volume(QZAUDIO_HERE, notMade);
    if (!volume)
        return -1;
    facadeInfo() << "setMicGainCalibration";
    return volume->setMicGainCalibration();
}

int AudioControl::getMicCalibrationGain(int *first, int *second)
{
    const PlatformObject<Volume> volume(QZAUDIO_HERE, notMade);
    if (!volume)
        return -1;
    int gains[2] = {};
    const int result = volume->getMicCalibrationGain(&gains[0], &gains[1]);
    *first = gains[0];
    *second = gains[1];
    return result;
}

void AudioControl::setDownlinkDelayEstimation()
{
    const PlatformObject<App> app(QZAUDIO_HERE, notMade);
    if (!app)
        return;
    facadeInfo() << "setDownlinkDelayEstimation";
    app->startDownlinkDelayEstimation();
}

int AudioControl::getDownlinkDelayEstimation(short *delay)
{
    const PlatformObject<App> app(QZAUDIO_HERE, notMade);
    if (!app)
        return -1;
    facadeInfo() << "getDownlinkDelayEstimation";
    return app->getDownlinkDelayEstimation(delay);
}

int AudioControl::setHandsfreeDelay(int delay)
{
    const PlatformObject<Source> source(QZAUDIO_HERE, notMade);
    if (!source)
        return -1;
    facadeInfo() << "set setHandsfreeDelay" << delay;
    const int result = source->setHandsfreeDelay(delay);
    return logOutcome(QZAUDIO_HERE, result, message("setHandsfreeDelaysuccess."), message("setHandsfreeDelay error", result)); // spelled so
}

void AudioControl::setAECQuality(AudioQuality quality)
{
    const audio_aec_quality_e platformQuality = d->getSPAudioAECQuality(quality);
    facadeInfo() << "Set AEC Quality to" << platformQuality;
    const int result = callPlatform(d->app, &App::setAecQuality, platformQuality);
    logOutcome(QZAUDIO_HERE, result, message("Set AEC Quality successful."), message("Set AEC Quality successful error", result)); // both meant so
}

void AudioControl::getMicrophoneTest(QList<int> &out)
{
    unsigned short values[tables::microphoneTestCount] = {};
    const int result = callPlatform(d->app, &App::getMicrophoneTest, &values[0], tables::microphoneTestCount);
    if (result != 0) {
        facadeError() << "get microphone test error.ret:" << result;
        return;
    }
    out.clear();
    for (const unsigned short value : values)
        out.append(value);
}

void AudioControl::setMicLeftRightSwitch(bool swap)
{
    const PlatformObject<Source> source(QZAUDIO_HERE, notMade);
    if (!source)
        return;
    const int result = source->setMicLeftRightSwitch(swap);
    logOutcome(QZAUDIO_HERE, result, message("ADC left right switch success"), message("ADC left right switch failed.ret:", result));
}

// Output processing ---------------------------------------------------------------------------------------------------------

void AudioControl::setDpsEnable(bool enable)
{
    const int result = callPlatform(d->app, enable ? &App::enableDps : &App::disableDps);
    logOutcome(QZAUDIO_HERE, result, message("Set Dps successful."), message("Set Dps error.ret:", result, "enable:", enable));
}

void AudioControl::setStereoEnable(bool enable)
{
    const int result = callPlatform(d->app, enable ? &App::enableStereo : &App::disableStereo);
    logOutcome(QZAUDIO_HERE, result, message("Set Stereo successful."), message("Set Stereo error.ret:", result, "enable:", enable));
}

void AudioControl::setDpsUserGain(float gain)
{
    const int result = callPlatform(d->app, &App::setDpsUserGain, gain);
    logOutcome(QZAUDIO_HERE, result, message("Set dps user gain successful."), message("Set dps user gain error.ret:", result));
}

void AudioControl::setFilter(AudioOutChannel channel, const AudioFilter_t &filter)
{
    const bool kindIsKnown = filter.kind <= 1;
    audio_filter_t record = {};
    record.channel = d->getSPAudioChannel(channel);
    record.value1 = filter.value1;
    record.notFlag = filter.flag == 0 ? 1 : 0;
    record.value2 = filter.value2;
    record.kind = kindIsKnown ? static_cast<quint16>(filter.kind) : quint16(0);
    record.value3 = filter.value3;
    record.value4 = kindIsKnown ? filter.value4 : quint16(0);
    const int result = callPlatform(d->app, &App::setFilter, &record);
    logOutcome(QZAUDIO_HERE, result, message("Set filter successful."), message("Set filter error.ret:", result));
}

void AudioControl::setSpeakerDelay(QList<float> delays)
{
    if (delays.size() != tables::speakerDelayCount)
        return;
    int results = 0;
    for (int i = 0; i < tables::speakerDelayCount; ++i)
        results |= callPlatform(d->app, &App::setSpeakerDelay, 1 << i, delays.at(i));
    if (results != 0)
        facadeError() << "set speaker delay error.ret:" << results;
}

void AudioControl::setSpeakerDealy(AudioOutChannel channel, float delay)
{
    const int result = callPlatform(d->app, &App::setSpeakerDelay, static_cast<int>(d->getSPAudioChannel(channel)), delay);
    if (result != 0)
        facadeError() << "set speaker delay error.ret:" << result;
}

} // namespace audio

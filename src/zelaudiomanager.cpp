#include <qzaudio/zelaudiomanager.h>

#include "logging.h"
#include "lowbyte.h"
#include "situationtables.h"
#include "zelaudiomanagertables.h"

#include <mcuservice.h>
#include <qzaudio/audiodatabase.h>

#include <QtCore/QAbstractEventDispatcher>

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

using audio::AudioControl;
using audio::lowByte;

namespace
{

/// Process-wide, not of one manager: the first channel after power-on has been reported.
bool firstChannelSeen = false;

ZelAudioManager *theManager = nullptr;

/// Runs when the library is unloaded, after all destructors of the program's statics, and costs nothing when it is loaded.
[[gnu::destructor]] void deleteManager()
{
    delete std::exchange(theManager, nullptr);
}

/// A stored volume on the platform's scale: times four, of which an unsigned byte is sent.
int platformVolume(int volume)
{
    return static_cast<int>(static_cast<unsigned int>(volume) * tables::platformVolumeFactor);
}

/// The channels whose volume is of a type, in ascending order.
class ChannelsOfType
{
public:
    explicit ChannelsOfType(ZelAudioType type)
    {
        for (int number = 0; number <= situations::highestChannel; ++number) {
            const auto channel = static_cast<AudioChannel>(number);
            if (situations::typeOf(channel) == type)
                m_channels[m_count++] = channel;
        }
    }

    std::size_t size() const { return m_count; }
    const AudioChannel *begin() const { return &m_channels[0]; }
    const AudioChannel *end() const { return begin() + m_count; }

private:
    AudioChannel m_channels[situations::highestChannel + 1];
    std::size_t m_count = 0;
};

/// Whole part of a gain. Through 64 bits, which hold every gain there is: a direct conversion beyond an int is undefined and
/// differs between x86 and Arm.
int wholeGain(float gain)
{
    return static_cast<int>(static_cast<qint64>(gain));
}

} // namespace

// Life cycle ----------------------------------------------------------------------------------------------------------------

ZelAudioManager *ZelAudioManager::instance()
{
    static ZelAudioManager *const manager = theManager = new ZelAudioManager;
    return manager;
}

ZelAudioManager::ZelAudioManager(QObject *parent)
    : QObject(parent)
    , control(AudioControl::getInstance())
{
    traceDebug();
    if (!QAbstractEventDispatcher::instance())
        traceCritical() << "no event loop on this thread: timers will not run";
    control->setStepRange(tables::highestVolume);
    _init();
    control->setMasterStepVolume(tables::highestVolume);
    const float gain = dataBase->getAutoMicGain();
    control->setMicAnalogGain(gain, gain);
    float stage = 0;
    int remainder = 0;
    getMicAnalogOpAndPga(stage, remainder);
    control->setMicOpAndPga(stage, static_cast<float>(remainder));
    for (const ZelAudioType type : tables::volumeTypesPushedAtStart)
        _handleChannelVolumeChanged(type, dataBase->getVolume(type));
}

ZelAudioManager::~ZelAudioManager() = default;

void ZelAudioManager::_init()
{
    traceDebug();
    currentStatus = AudioStatusNone;
    currentChannel = AudioChannelNone;
    dataBase = new audio::AudioDataBase(this);
    QHash<QString, quint8> stepVolumes;
    dataBase->getGroupDefaultData(stepVolumes);
    control->initTrackStepVolume(AudioControl::Main, stepVolumes);

    muteTimer.setSingleShot(true);
    muteTimer.setTimerType(Qt::PreciseTimer);
    connect(&muteTimer, &QTimer::timeout, this, &ZelAudioManager::deMute);
    customEqTimer.setSingleShot(true); // its timeout is connected to nothing: only whether it runs is read
    customEqTimer.setInterval(tables::customEqualizerRepeatMs);
    firstEqTimer.setSingleShot(true);
    firstEqTimer.setInterval(tables::firstEqualizerMs);
    connect(&firstEqTimer, &QTimer::timeout, this, &ZelAudioManager::onFirstSetEqType);
    delayVolumeTimer.setSingleShot(true);
    connect(&delayVolumeTimer, &QTimer::timeout, this, &ZelAudioManager::_delaysetVolume);
    cpAlertTimer.setSingleShot(true);
    cpAlertTimer.setInterval(tables::carPlayAlertMs);
    connect(&cpAlertTimer, &QTimer::timeout, this, &ZelAudioManager::_handleNotComeCpAlte);
    cpUnduckTimer.setSingleShot(true);
    cpUnduckTimer.setInterval(tables::carPlayUnduckMs);
    connect(&cpUnduckTimer, &QTimer::timeout, this, &ZelAudioManager::_delayCpTruelyUnduck);
    connect(zelmcu::ZEL_McuService::instance(), &zelmcu::ZEL_McuService::mcuBackCarSetMute, this, &ZelAudioManager::onRecvBackCar);

    setMicInputValue(dataBase->micInputValue());
    setLoudNess(false);
    setEqType(tables::storedEqualizerType);
    setMicLeftRightSwitch(micTypeIsDefault());
}

// Status, channel and volume ------------------------------------------------------------------------------------------------

void ZelAudioManager::updateAudioStatus(AudioStatus status)
{
    traceDebug() << status;
    cpAlertTimer.stop();
    if (status == currentStatus)
        return;
    currentStatus = status;
    _handleVolumeTypeChanged(status);
}

void ZelAudioManager::_handleVolumeTypeChanged(AudioStatus status)
{
    traceDebug() << "_handleVolumeTypeChanged status:" << status;
    if (status == AudioStatusCarPlayDuck && !cpDucking) {
        traceDebug() << "Click the key on the dial-up keyboard from the mobile phone and send message";
        return;
    }
    AudioChannel channel = currentChannel;
    const situations::Status *const row = situations::rowOf(status);
    const int volume = platformVolume(dataBase->getVolume(row ? row->type : ZelAudioTypeMedia));
    if (channel == AudioChannelCarPlayTelephony && status == AudioStatusCarPlayRestore) {
        traceDebug() << "Navi end when cp taking";
        channel = AudioChannelCarPlayMedia;
    }
    const char *name = situations::noSource;
    if (row && row->source.view() != situations::noSource) {
        name = row->source;
    } else {
        if (channel == AudioChannelNone) {
            traceDebug() << "Use the main sound channel temporarily";
            channel = AudioChannelAuxIn;
        }
        name = situations::sourceOf(channel);
    }
    const AudioControl::AudioTag tag = row ? row->tag : AudioControl::Main;
    control->setStreamVolume(tag, name, lowByte(volume));
    traceDebug() << "Auto adjust volume when audio status changed" << tag << QLatin1String(name) << volume;
}

void ZelAudioManager::updateAudioChannel(AudioChannel channel)
{
    traceDebug() << "Update Audio Channel" << channel;
    currentChannel = channel;
    control->setOutputSource(AudioControl::Main, situations::sourceOf(channel));
    if (!firstChannelSeen) {
        if (channel != AudioChannelNone) {
            firstChannelSeen = true;
            setEqType(tables::storedEqualizerType);
            firstEqTimer.start();
        }
        return;
    }
    const situations::Channel *const row = situations::rowOf(channel);
    if (row && row->resetsEqualizer) {
        traceDebug() << "reset eq";
        setEqType(tables::storedEqualizerType);
    }
}

int ZelAudioManager::currentAudioChannel()
{
    traceDebug() << currentChannel;
    return currentChannel;
}

void ZelAudioManager::setVolume(ZelAudioType type, int volume, bool save)
{
    traceDebug() << type << volume << save << currentStatus;
    _handleChannelVolumeChanged(type, volume);
    dataBase->setVolume(type, volume, save);
}

int ZelAudioManager::getVolume(ZelAudioType type)
{
    traceDebug();
    return dataBase->getVolume(type);
}

void ZelAudioManager::saveVolume()
{
    traceDebug();
    dataBase->savevolume();
}

void ZelAudioManager::_handleChannelVolumeChanged(ZelAudioType type, int volume)
{
    traceDebug() << type << volume;
    if (type == ZelAudioTypeHiCarCall || type == ZelAudioTypePrompt) {
        control->setAlterStepVolume(lowByte(volume), type == ZelAudioTypeHiCarCall);
        return;
    }
    const ChannelsOfType channels(type);
    const AudioControl::AudioTag tag = currentTag();
    for (const AudioChannel channel : channels)
        control->setStreamVolume(tag, situations::sourceOf(channel), lowByte(platformVolume(volume)));
    if (channels.size() <= 1)
        return;
    if (!pendingVolumeTypes.contains(type))
        pendingVolumeTypes.append(type);
    delayVolumeTimer.start(tables::deferredVolumeMs);
}

void ZelAudioManager::_delaysetVolume()
{
    traceDebug();
    // Meant so: the first element goes while the index moves on, so of three pending types the second is dropped and the third
    // stays for the next run.
    for (int i = 0; i < pendingVolumeTypes.size(); ++i) {
        const ZelAudioType type = pendingVolumeTypes.at(i);
        const int volume = platformVolume(dataBase->getVolume(type));
        for (const AudioChannel channel : ChannelsOfType(type)) {
            const char *const source = situations::sourceOf(channel);
            traceDebug() << QLatin1String(source) << channel << volume;
            control->setStreamVolume(currentTag(), source, lowByte(volume));
        }
        pendingVolumeTypes.removeFirst();
    }
}

void ZelAudioManager::_getAllChannelsFromCurrentType(QList<AudioChannel> &channels, ZelAudioType type)
{
    traceDebug();
    channels.clear();
    for (const AudioChannel channel : ChannelsOfType(type))
        channels.append(channel);
}

AudioControl::AudioTag ZelAudioManager::currentTag()
{
    const situations::Status *const row = situations::rowOf(currentStatus);
    return row ? row->tag : AudioControl::Main;
}

void ZelAudioManager::updateCurrentAudioVolume(bool up)
{
    traceDebug() << up;
    const situations::Status *const row = situations::rowOf(currentStatus);
    ZelAudioType type = row ? row->keyType : situations::asTheChannelSays;
    if (type == situations::asTheChannelSays) {
        type = situations::typeOf(currentChannel);
        if (type != ZelAudioTypeMedia)
            return;
    }
    if (currentChannel == situations::hiCarChannel)
        type = ZelAudioTypeHiCarCall;
    // In 64 bits: a number edited into the file may be the largest there is.
    const qint64 wanted = qint64(getVolume(type)) + (up ? 1 : -1);
    const int volume = static_cast<int>(qBound<qint64>(0, wanted, tables::highestVolume));
    traceDebug() << type << volume;
    setVolume(type, volume, true);
    Q_EMIT zelvolumeChanged(wanted < 1, volume, type);
}

void ZelAudioManager::setVolResponse(VolResponseState state, bool on)
{
    traceDebug() << state << on;
}

// Ducking and phone projection ----------------------------------------------------------------------------------------------

void ZelAudioManager::duck(int level)
{
    const auto doubledVolume = static_cast<int>(static_cast<unsigned int>(dataBase->getVolume(ZelAudioTypeMedia)) * 2U);
    traceDebug() << level << doubledVolume;
    control->setMainAudioDunkingMode(tables::duckingOn);
    control->setAlterMode(true);
    control->setMainAudioDunkingTargetGain(tables::duckedGain); // meant so, whatever the level
}

void ZelAudioManager::unDuck()
{
    traceDebug();
    control->setMainAudioDunkingMode(tables::duckingOff);
    control->setAlterMode(false);
}

void ZelAudioManager::aaDuckAudio(int, int)
{
    traceDebug() << "AA duck";
    duck(tables::projectionDuckLevel);
    _handleVolumeTypeChanged(AudioStatusAndroidAutoDuck); // applied without becoming the current status
}

void ZelAudioManager::aaUnduckAudio(int)
{
    traceDebug() << "AA unduck";
    _handleVolumeTypeChanged(AudioStatusAndroidAutoRestore);
    unDuck();
}

void ZelAudioManager::clDuckAudio(int, int)
{
    traceDebug() << "CL duck";
    duck(tables::projectionDuckLevel);
    _handleVolumeTypeChanged(AudioStatusCarLifeDuck);
}

void ZelAudioManager::clUnduckAudio(int)
{
    traceDebug() << "AA unduck"; // this very text
    _handleVolumeTypeChanged(AudioStatusCarLifeRestore);
    unDuck();
}

void ZelAudioManager::cpDuckAudio(int, int level)
{
    traceDebug();
    cpDucking = true;
    duck(level);
    cpAlertTimer.start();
}

void ZelAudioManager::cpUnduckAudio(int)
{
    traceDebug() << currentStatus;
    cpAlertTimer.stop();
    cpDucking = false;
    cpUnduckTimer.start();
}

void ZelAudioManager::_handleNotComeCpAlte()
{
    traceDebug();
    updateAudioStatus(AudioStatusCarPlayDuck);
}

void ZelAudioManager::_delayCpTruelyUnduck()
{
    traceDebug();
    if (cpDucking)
        return; // a new duck came within the 500 ms
    updateAudioStatus(AudioStatusCarPlayRestore);
    unDuck();
}

void ZelAudioManager::setCPConnected(bool connected)
{
    traceDebug() << connected;
    cpConnected = connected;
}

bool ZelAudioManager::getCPConnected()
{
    traceDebug();
    return cpConnected;
}

void ZelAudioManager::updateCPAAStatus(CPAAStatus status)
{
    traceDebug() << status;
}

void ZelAudioManager::setCpPhone(bool on)
{
    traceDebug() << on;
}

void ZelAudioManager::onCarplayAlertStart()
{
}

void ZelAudioManager::onCarplayAlertStop()
{
}

// Mute, attenuation and reverse gear ----------------------------------------------------------------------------------------

void ZelAudioManager::setAudioMute(bool mute, int count)
{
    traceDebug() << "Set audio mute" << mute;
    if (mute && count >= 0) {
        control->setMute(true);
        const qint64 duration = qint64(count) * tables::muteUnitMs;
        muteTimer.start(static_cast<int>(qMin<qint64>(duration, std::numeric_limits<int>::max())));
    } else if (isAttOn()) {
        control->setMute(false); // a running timer keeps running
    }
}

void ZelAudioManager::deMute()
{
    traceDebug() << "Set audio demute";
    control->setMute(false);
}

void ZelAudioManager::setMute(bool mute)
{
    traceDebug() << mute;
    control->setMute(mute);
}

bool ZelAudioManager::isAttOn()
{
    traceDebug();
    return control->isMute();
}

void ZelAudioManager::triggerAtt()
{
    traceDebug();
    control->setMute(!isAttOn());
}

void ZelAudioManager::onRecvBackCar(bool on)
{
    traceDebug() << on;
    if (on)
        cpDuckAudio(0, 0);
    else
        cpUnduckAudio(0);
}

void ZelAudioManager::setHCconnect(bool on)
{
    traceDebug() << on;
    hcConnected = on;
    const ZelAudioType type = on ? ZelAudioTypeHiCarCall : ZelAudioTypePrompt;
    control->setAlterStepVolume(lowByte(dataBase->getVolume(type)), on);
}

// Equalizer -----------------------------------------------------------------------------------------------------------------

const EqBaseData *ZelAudioManager::getEqBaseData()
{
    traceDebug();
    return dataBase->getEqBaseData();
}

int ZelAudioManager::customEq(int band)
{
    traceDebug();
    return dataBase->getCustomEQ(band);
}

int ZelAudioManager::eqType()
{
    traceDebug();
    return dataBase->eqType();
}

void ZelAudioManager::insertList(QList<float> &list, int type)
{
    traceDebug();
    const EqBaseData &preset = dataBase->getEqBaseData()[dataBase->getCurrentIndexInDefault(type)];
    for (int band = 0; band < static_cast<int>(std::size(preset.gains)); ++band)
        list.append(type == tables::customEqualizerType ? static_cast<float>(customEq(band)) : preset.gains[band]);
}

void ZelAudioManager::setEqType(int type)
{
    if (type == tables::storedEqualizerType)
        type = eqType();
    traceDebug() << "xxxxxxx" << type; // this very text
    QList<float> gains;
    insertList(gains, type);
    traceDebug() << gains;
    control->setEqGain(gains);
    dataBase->setEqType(type);
}

void ZelAudioManager::eqTypePrev()
{
    traceDebug();
    setEqType(dataBase->getNextEqType(false));
}

void ZelAudioManager::eqTypeNext()
{
    traceDebug();
    setEqType(dataBase->getNextEqType(true));
}

void ZelAudioManager::onFirstSetEqType()
{
    traceDebug();
    setEqType(tables::storedEqualizerType);
}

void ZelAudioManager::adjustCustomEq(int value, int band)
{
    traceDebug() << value << band;
    QList<float> gains;
    insertList(gains, tables::customEqualizerType);
    // Doubled in unsigned arithmetic, where the largest numbers wrap round instead of overflowing.
    const auto gain = static_cast<float>(static_cast<int>(static_cast<unsigned int>(value) * 2U));
    const bool bandExists = band >= 0 && band < gains.size();
    if (customEqTimer.isActive() && bandExists && gains.at(band) == gain)
        return;
    dataBase->setEqType(tables::customEqualizerType);
    gains.replace(band, gain); // a band that does not exist stops the process here
    traceDebug() << gains;
    control->setEqGain(gains);
    dataBase->setCustomEQ(value, band);
    customEqTimer.start();
}

bool ZelAudioManager::loudNess()
{
    traceDebug();
    return dataBase->loudNess();
}

void ZelAudioManager::setLoudNess(bool on)
{
    traceDebug() << on;
    control->setLoudnessSwitch(on);
    dataBase->setLoudNess(on);
}

// Microphone ----------------------------------------------------------------------------------------------------------------

int ZelAudioManager::micInputValue()
{
    traceDebug();
    return dataBase->micInputValue();
}

void ZelAudioManager::setMicInputValue(int value)
{
    traceDebug() << value;
    control->setMicroPhoneVolume(value);
    dataBase->setMicInputValue(value);
}

bool ZelAudioManager::micTypeIsDefault()
{
    traceDebug();
    return dataBase->micType();
}

void ZelAudioManager::setMicLeftRightSwitch(bool sw)
{
    traceDebug() << "set Mic switch:" << sw;
    control->setMicLeftRightSwitch(!sw); // meant so
    dataBase->setmicType(sw);
    const float gain = dataBase->getAutoMicGain();
    control->setMicAnalogGain(gain, gain);
    control->setHandsfreeDelay(dataBase->getHandsfreeDelay());
}

float ZelAudioManager::getMicAnalogGain()
{
    traceDebug();
    return dataBase->getAutoMicGain();
}

int ZelAudioManager::getMicAnalogGain(float *left, float *right)
{
    const int result = control->getMicAnalogGain(left, right);
    traceDebug() << "lgain:" << *left << "rgain:" << *right;
    return result;
}

int ZelAudioManager::setMicAnalogGain(float left, float right)
{
    traceDebug() << left << right;
    const int result = control->setMicAnalogGain(left, right);
    dataBase->setAutoMicGain(left);
    return result;
}

void ZelAudioManager::getMicAnalogOpAndPga(float &op, int &pga)
{
    traceDebug();
    const float gain = getMicAnalogGain();
    constexpr float highestStage = tables::microphoneStages[std::size(tables::microphoneStages) - 1];
    if (gain <= 0) {
        op = 0;
        pga = wholeGain(gain);
        return;
    }
    if (gain >= highestStage) {
        op = highestStage;
        pga = wholeGain(gain - highestStage);
        return;
    }
    std::size_t next = 1;
    while (tables::microphoneStages[next] < gain)
        ++next;
    const float above = tables::microphoneStages[next];
    const float below = tables::microphoneStages[next - 1];
    op = above == gain || gain - below > tables::largestProgrammableGain ? above : below;
    pga = wholeGain(gain - op); // negative below the chosen stage
}

int ZelAudioManager::startMicGainCalibration()
{
    traceDebug();
    return control->startMicGainCalibration();
}

int ZelAudioManager::setMicGainCalibration()
{
    traceDebug();
    return control->setMicGainCalibration();
}

float ZelAudioManager::getMicCalibrationGain(int *first)
{
    int second = 0;
    control->getMicCalibrationGain(first, &second);
    traceDebug() << *first << second;
    return static_cast<float>(second);
}

int ZelAudioManager::setHandsfreeDelay(int delay)
{
    traceDebug() << delay;
    const int result = control->setHandsfreeDelay(delay);
    dataBase->setHandsfreeDelay(delay);
    return result;
}

void ZelAudioManager::setDownlinkDelayEstimation()
{
    traceDebug();
    control->setDownlinkDelayEstimation();
}

int ZelAudioManager::getDownlinkDelayEstimation(short *delay)
{
    traceDebug();
    return control->getDownlinkDelayEstimation(delay);
}

void ZelAudioManager::setInputDestination(AudioControl::AudioTag tag, const char *name)
{
    traceDebug() << tag << name;
    control->setInputDestination(tag, name);
    const float gain = dataBase->getAutoMicGain();
    control->setMicAnalogGain(gain, gain); // the facade's: the store keeps what it has
}

#include "managermodel.h"

#include "wrapping.h"

#include <cmath>

namespace lives
{

namespace
{

constexpr int storedType = 100;
constexpr int customType = 7;
constexpr int highestVolume = 25;

QList<AudioChannel> channelsOf(int type)
{
    QList<AudioChannel> channels;
    for (int channel = 0; channel < 20; ++channel) {
        if (situation::typeOfChannel(channel) == type)
            channels.append(static_cast<AudioChannel>(channel));
    }
    return channels;
}

} // namespace

ManagerModel::ManagerModel(FacadeModel &control, FileModel &file, Process &process)
    : m_control(control)
    , m_process(process)
    , m_store(file)
{
    m_control.beThere();
    m_control.setStepRange(highestVolume);
    m_store.start(process.homeUiType);
    QHash<QString, uchar> volumes;
    m_store.getGroupDefaultData(volumes);
    m_control.initTrackStepVolume(audio::AudioControl::Main, volumes);
    setMicInputValue(m_store.micInputValue());
    setLoudNess(false);
    setEqType(storedType);
    setMicLeftRightSwitch(micTypeIsDefault());
    m_control.setMasterStepVolume(highestVolume);
    const float gain = m_store.getAutoMicGain();
    m_control.setMicAnalogGain(gain, gain);
    float op = 0;
    int pga = 0;
    getMicAnalogOpAndPga(op, pga);
    m_control.setMicOpAndPga(op, static_cast<float>(pga));
    for (int type = 0; type < 5; ++type)
        applyVolume(type, m_store.getVolume(type));
}

// Time ----------------------------------------------------------------------------------------------------------------------

void ManagerModel::start(Timer timer, int milliseconds)
{
    m_timers[timer] = {m_process.now + milliseconds, ++m_process.timersStarted};
}

void ManagerModel::advance(qint64 milliseconds)
{
    const qint64 end = m_process.now + milliseconds;
    for (;;) {
        int next = TimerCount;
        for (int timer = 0; timer < TimerCount; ++timer) {
            const TimerModel &candidate = m_timers[static_cast<std::size_t>(timer)];
            if (!candidate.isActive() || candidate.due > end)
                continue;
            const TimerModel *const best = next == TimerCount ? nullptr : &m_timers[static_cast<std::size_t>(next)];
            if (!best || candidate.due < best->due || (candidate.due == best->due && candidate.order < best->order))
                next = timer;
        }
        if (next == TimerCount)
            break;
        m_process.now = m_timers[static_cast<std::size_t>(next)].due;
        m_timers[static_cast<std::size_t>(next)].stop();
        run(static_cast<Timer>(next));
    }
    m_process.now = end;
}

void ManagerModel::run(Timer timer)
{
    switch (timer) {
    case Mute:
        deMute();
        break;
    case DelayVolume:
        applyPendingVolumes();
        break;
    case FirstEq:
        setEqType(storedType);
        break;
    case CpAlert:
        updateAudioStatus(static_cast<AudioStatus>(10));
        break;
    case CpUnduck:
        if (!m_cpDucking) {
            updateAudioStatus(static_cast<AudioStatus>(11));
            unDuck(CarPlay);
        }
        break;
    case CustomEq:
    case TimerCount:
        break;
    }
}

// Status, channel and volume ------------------------------------------------------------------------------------------------

void ManagerModel::updateAudioStatus(AudioStatus status)
{
    m_timers[CpAlert].stop();
    if (status == m_status)
        return;
    m_status = status;
    applyStatus(status);
}

void ManagerModel::applyStatus(int status)
{
    if (status == 10 && !m_cpDucking)
        return;
    int channel = m_channel == 7 && status == 11 ? 5 : m_channel;
    QString source = situation::sourceOfStatus(status);
    if (source == QLatin1String("S+none_APP")) {
        if (channel == 0)
            channel = 15;
        source = situation::sourceOfChannel(channel);
    }
    m_applied.append({status, m_control.trackVolumeCount()});
    m_control.setStreamVolume(audio::AudioControl::Main, source.toLatin1().constData(), times(m_store.getVolume(situation::typeOfStatus(status)), 4) & 252);
}

void ManagerModel::updateAudioChannel(AudioChannel channel)
{
    m_channel = channel;
    m_control.setOutputSource(audio::AudioControl::Main, situation::sourceOfChannel(channel).toLatin1().constData());
    if (!m_process.isFirstChannelSeen) {
        if (channel == 0)
            return;
        m_process.isFirstChannelSeen = true;
        setEqType(storedType);
        start(FirstEq, 2000);
    } else if (m_channel == 3 || m_channel == 5 || m_channel == 10 || m_channel == 17) {
        setEqType(storedType);
    }
}

void ManagerModel::setVolume(ZelAudioType type, int volume, bool save)
{
    applyVolume(type, volume);
    m_store.setVolume(type, volume, save);
}

void ManagerModel::applyVolume(int type, int volume)
{
    if (type == 5 || type == 1) {
        m_control.setAlterStepVolume(volume & 0xFF, type == 5);
        return;
    }
    const auto channels = channelsOf(type);
    for (const AudioChannel channel : channels)
        m_control.setStreamVolume(audio::AudioControl::Main, situation::sourceOfChannel(channel).toLatin1().constData(), times(volume, 4) & 0xFF);
    if (channels.size() <= 1)
        return;
    if (!m_pendingTypes.contains(type))
        m_pendingTypes.append(type);
    start(DelayVolume, 500);
}

void ManagerModel::applyPendingVolumes()
{
    // The first one goes while the place moves on: with three types the second is dropped and the third stays.
    for (int place = 0; place < m_pendingTypes.size(); ++place) {
        const int type = m_pendingTypes.at(place);
        const auto channels = channelsOf(type);
        for (const AudioChannel channel : channels) {
            m_control.setStreamVolume(
                audio::AudioControl::Main, situation::sourceOfChannel(channel).toLatin1().constData(), times(m_store.getVolume(type), 4) & 252);
        }
        m_pendingTypes.removeFirst();
    }
}

void ManagerModel::_getAllChannelsFromCurrentType(QList<AudioChannel> &channels, ZelAudioType type)
{
    channels = channelsOf(type);
}

void ManagerModel::updateCurrentAudioVolume(bool up)
{
    int type = 0;
    switch (m_status) {
    case 10:
    case 14:
    case 18:
        type = 1;
        break;
    case 2:
    case 3:
    case 6:
        type = 2;
        break;
    case 1:
    case 5:
        type = 3;
        break;
    default:
        if (situation::typeOfChannel(m_channel) != 0)
            return;
    }
    if (m_channel == 18)
        type = 5;
    const qint64 wanted = qint64(m_store.getVolume(type)) + (up ? 1 : -1);
    const int volume = static_cast<int>(qBound<qint64>(0, wanted, highestVolume));
    setVolume(static_cast<ZelAudioType>(type), volume, true);
    m_news.append({wanted < 1, volume, type});
}

// Ducking, mute and reverse gear --------------------------------------------------------------------------------------------

void ManagerModel::duck(int /*level*/, DuckClaim claim)
{
    m_duckClaims |= claim;
    m_isUnduckedByAnother = false;
    m_control.setMainAudioDunkingMode(1);
    m_control.setAlterMode(true);
    m_control.setMainAudioDunkingTargetGain(60);
}

void ManagerModel::unDuck(DuckClaim claim)
{
    m_duckClaims &= ~claim;
    m_isUnduckedByAnother = true;
    m_control.setMainAudioDunkingMode(0);
    m_control.setAlterMode(false);
}

void ManagerModel::aaDuckAudio(int /*first*/, int /*second*/)
{
    duck(40, AndroidAuto);
    applyStatus(14);
}

void ManagerModel::aaUnduckAudio(int /*value*/)
{
    applyStatus(15);
    unDuck(AndroidAuto);
}

void ManagerModel::clDuckAudio(int /*first*/, int /*second*/)
{
    duck(40, CarLife);
    applyStatus(18);
}

void ManagerModel::clUnduckAudio(int /*value*/)
{
    applyStatus(19);
    unDuck(CarLife);
}

void ManagerModel::cpDuckAudio(int /*value*/, int level)
{
    m_cpDucking = true;
    duck(level, CarPlay);
    start(CpAlert, 1000);
}

void ManagerModel::cpUnduckAudio(int /*value*/)
{
    m_timers[CpAlert].stop();
    m_cpDucking = false;
    start(CpUnduck, 500);
}

void ManagerModel::setAudioMute(bool mute, int count)
{
    if (mute && count >= 0) {
        m_control.setMute(true);
        start(Mute, count * 50);
    } else if (isAttOn()) {
        m_control.setMute(false);
    }
}

void ManagerModel::onRecvBackCar(bool on)
{
    if (on)
        cpDuckAudio(0, 0);
    else
        cpUnduckAudio(0);
}

void ManagerModel::setHCconnect(bool on)
{
    m_control.setAlterStepVolume(m_store.getVolume(on ? 5 : 1) & 0xFF, on);
}

// Equalizer and microphone --------------------------------------------------------------------------------------------------

void ManagerModel::sendCurve(int type)
{
    QList<float> gains;
    for (int band = 0; band < 16; ++band) {
        const auto curve = static_cast<std::size_t>(StoreModel::getCurrentIndexInDefault(type));
        gains.append(type == customType ? static_cast<float>(m_store.getCustomEQ(band)) : situation::curves[curve][static_cast<std::size_t>(band)]);
    }
    m_control.setEqGain(gains);
}

void ManagerModel::setEqType(int type)
{
    if (type == storedType)
        type = m_store.eqType();
    sendCurve(type);
    m_store.setEqType(type);
}

void ManagerModel::adjustCustomEq(int value, int band)
{
    if (m_timers[CustomEq].isActive() && m_store.getCustomEQ(band) == times(value, 2))
        return;
    m_store.setEqType(customType);
    m_store.setCustomEQ(value, band);
    sendCurve(customType);
    start(CustomEq, 500);
}

void ManagerModel::setLoudNess(bool on)
{
    m_control.setLoudnessSwitch(on);
    m_store.setLoudNess(on);
}

void ManagerModel::setMicInputValue(int value)
{
    m_control.setMicroPhoneVolume(value);
    m_store.setMicInputValue(value);
}

void ManagerModel::setMicLeftRightSwitch(bool sw)
{
    m_control.setMicLeftRightSwitch(!sw);
    m_store.setmicType(sw);
    const float gain = m_store.getAutoMicGain();
    m_control.setMicAnalogGain(gain, gain);
    m_control.setHandsfreeDelay(m_store.getHandsfreeDelay());
}

int ManagerModel::setMicAnalogGain(float left, float right)
{
    const int result = m_control.setMicAnalogGain(left, right);
    m_store.setAutoMicGain(left);
    return result;
}

void ManagerModel::getMicAnalogOpAndPga(float &op, int &pga) const
{
    constexpr std::array<float, 7> stages = {0, 9, 12, 21, 27.5F, 30, 40};
    const float gain = m_store.getAutoMicGain();
    op = gain <= 0 ? 0 : 40;
    if (gain > 0 && gain < stages.back()) {
        std::size_t above = 1;
        while (stages[above] < gain)
            ++above;
        const bool isFarFromBelow = gain - stages[above - 1] > 6;
        op = isFarFromBelow || stages[above] == gain ? stages[above] : stages[above - 1];
    }
    pga = static_cast<int>(gain - op);
}

float ManagerModel::getMicCalibrationGain(int *first)
{
    int second = 0;
    m_control.getMicCalibrationGain(first, &second);
    return static_cast<float>(second);
}

int ManagerModel::setHandsfreeDelay(int delay)
{
    const int result = m_control.setHandsfreeDelay(delay);
    m_store.setHandsfreeDelay(delay);
    return result;
}

void ManagerModel::setInputDestination(Tag tag, const char *name)
{
    m_control.setInputDestination(tag, name);
    const float gain = m_store.getAutoMicGain();
    m_control.setMicAnalogGain(gain, gain);
}

} // namespace lives

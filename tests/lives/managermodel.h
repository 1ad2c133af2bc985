#ifndef MANAGERMODEL_H
#define MANAGERMODEL_H

#include "facademodel.h"
#include "storemodel.h"

#include <qzaudio/audiotypes.h>
#include <qzaudio/zelaudiomanager.h>

namespace lives
{

/// A timer that runs once.
struct TimerModel
{
    qint64 due = -1; ///< -1: does not run
    quint64 order = 0; ///< of its start among all

    bool isActive() const { return due >= 0; }
    void stop() { due = -1; }
};

/// The policy manager told again: its operations are called as the manager's are.
class ManagerModel
{
public:
    using Tag = FacadeModel::Tag;
    enum Timer { Mute, DelayVolume, CustomEq, FirstEq, CpAlert, CpUnduck, TimerCount };

    struct VolumeNews
    {
        bool mute;
        int volume;
        int type;

        friend bool operator==(const VolumeNews &a, const VolumeNews &b) { return a.mute == b.mute && a.volume == b.volume && a.type == b.type; }
    };

    /// A status whose volume was applied.
    struct Applied
    {
        int status;
        int place; ///< among the volumes that the operation set on the platform
    };

    enum DuckClaim { Plain = 1, AndroidAuto = 2, CarLife = 4, CarPlay = 8 };

    /// What outlives a manager, since the process does.
    struct Process
    {
        qint64 now = 0; ///< ms
        quint64 timersStarted = 0;
        bool isFirstChannelSeen = false;
        int homeUiType = 0;
    };

    /// Starts up.
    ManagerModel(FacadeModel &control, FileModel &file, Process &process);

    /// Lets time pass; timers run at their moments.
    void advance(qint64 milliseconds);

    void updateAudioStatus(AudioStatus status);
    void updateAudioChannel(AudioChannel channel);
    int currentAudioChannel() const { return m_channel; }
    void setVolume(ZelAudioType type, int volume, bool save);
    int getVolume(ZelAudioType type) const { return m_store.getVolume(type); }
    void saveVolume() { m_store.savevolume(); }
    void updateCurrentAudioVolume(bool up);
    void setVolResponse(VolResponseState /*state*/, bool /*on*/) { }
    static void _getAllChannelsFromCurrentType(QList<AudioChannel> &channels, ZelAudioType type);

    void duck(int level, DuckClaim claim = Plain);
    void unDuck(DuckClaim claim = Plain);
    void aaDuckAudio(int first, int second);
    void aaUnduckAudio(int value);
    void clDuckAudio(int first, int second);
    void clUnduckAudio(int value);
    void cpDuckAudio(int value, int level);
    void cpUnduckAudio(int value);
    void setCPConnected(bool connected) { m_cpConnected = connected; }
    bool getCPConnected() const { return m_cpConnected; }
    void updateCPAAStatus(CPAAStatus /*status*/) { }
    void setCpPhone(bool /*on*/) { }
    void onCarplayAlertStart() { }
    void onCarplayAlertStop() { }

    void setAudioMute(bool mute, int count);
    void deMute() { m_control.setMute(false); }
    void setMute(bool mute) { m_control.setMute(mute); }
    bool isAttOn() const { return m_control.isMute(); }
    void triggerAtt() { m_control.setMute(!isAttOn()); }
    void onRecvBackCar(bool on);
    void setHCconnect(bool on);

    int customEq(int band) const { return m_store.getCustomEQ(band); }
    int eqType() const { return m_store.eqType(); }
    void setEqType(int type);
    void eqTypePrev() { setEqType(m_store.getNextEqType(false)); }
    void eqTypeNext() { setEqType(m_store.getNextEqType(true)); }
    void adjustCustomEq(int value, int band);
    bool loudNess() const { return m_store.loudNess(); }
    void setLoudNess(bool on);

    int micInputValue() const { return m_store.micInputValue(); }
    void setMicInputValue(int value);
    bool micTypeIsDefault() const { return m_store.micType(); }
    void setMicLeftRightSwitch(bool sw);
    float getMicAnalogGain() const { return m_store.getAutoMicGain(); }
    int getMicAnalogGain(float *left, float *right) { return m_control.getMicAnalogGain(left, right); }
    int setMicAnalogGain(float left, float right);
    void getMicAnalogOpAndPga(float &op, int &pga) const;
    int startMicGainCalibration() { return m_control.startMicGainCalibration(); }
    int setMicGainCalibration() { return m_control.setMicGainCalibration(); }
    float getMicCalibrationGain(int *first);
    int setHandsfreeDelay(int delay);
    void setDownlinkDelayEstimation() { m_control.setDownlinkDelayEstimation(); }
    int getDownlinkDelayEstimation(short *delay) { return m_control.getDownlinkDelayEstimation(delay); }
    void setInputDestination(Tag tag, const char *name);

    int status() const { return m_status; }
    const StoreModel &store() const { return m_store; }
    const std::array<TimerModel, TimerCount> &timers() const { return m_timers; }
    QVector<VolumeNews> takeNews() { return std::exchange(m_news, {}); }
    /// Since the last time, in order.
    QVector<Applied> takeApplied() { return std::exchange(m_applied, {}); }
    /// Who has ducked and not unducked yet.
    int duckClaims() const { return m_duckClaims; }
    /// While somebody else still wanted it ducked.
    bool isUnduckedByAnother() const { return m_isUnduckedByAnother; }

private:
    void start(Timer timer, int milliseconds);
    void run(Timer timer);
    void applyStatus(int status);
    void applyVolume(int type, int volume);
    void applyPendingVolumes();
    void sendCurve(int type);

    FacadeModel &m_control;
    Process &m_process;
    StoreModel m_store;
    int m_status = 0;
    int m_channel = 0;
    std::array<TimerModel, TimerCount> m_timers;
    QList<int> m_pendingTypes;
    bool m_cpDucking = false;
    bool m_cpConnected = false;
    QVector<VolumeNews> m_news;
    QVector<Applied> m_applied;
    int m_duckClaims = 0;
    bool m_isUnduckedByAnother = false;
};

} // namespace lives

#endif

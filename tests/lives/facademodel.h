#ifndef FACADEMODEL_H
#define FACADEMODEL_H

#include "callreader.h"

#include <qzaudio/audiocontrol.h>

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QVariantList>

namespace lives
{

/**
 * What the control facade gives and asks of the platform, told again in few words.
 *
 * Its operations are called as the facade's are. Each reads the calls that it expects; what the platform answered comes from there.
 */
class FacadeModel
{
public:
    using Tag = audio::AudioControl::AudioTag;

    explicit FacadeModel(CallReader &calls)
        : m_calls(calls)
    {
    }

    /// Made on first use, as the facade is.
    void beThere();
    bool isThere() const { return m_isThere; }
    bool hasVolume() const { return m_hasVolume; }
    bool hasApp() const { return m_hasApp; }
    /// That the operation has set so far.
    int trackVolumeCount() const { return m_calls.trackVolumes().size(); }
    /// Two applications' names stand for one of the platform's, and callers must not depend on which comes back: the one that came.
    void learnNames(const QVariantList &answer);

    void setStepRange(int range) { m_stepRange = range; }
    quint8 getStepRang() const { return static_cast<quint8>(m_stepRange); }
    void setAlterMode(bool on) { m_alterMode = on; }
    bool getAlterMode() const { return m_alterMode; }
    quint8 getMasterStepVolume() const { return static_cast<quint8>(m_masterStep); }
    static quint8 getAlterStepVolume() { return 0; }
    bool isMute() const { return m_isMuted; }
    static void setProfileMode(int /*mode*/) { }

    void setStreamVolume(Tag tag, const char *name, int volume);
    quint8 getStreamVolume(Tag tag, const char *name);
    int setMasterVolume(int volume);
    quint8 getMasterVolume();
    void initTrackStepVolume(Tag tag, const QHash<QString, quint8> &volumes);

    int getCurMainTrackStepVolumeInfo(QString &name, quint8 &step);
    int changeMainTrackStepVolume(bool up, QString &name, quint8 &step);
    int getActivedAlterNumber();
    int changeAlterStepVolume(bool up, int current, quint8 &out);
    int setAlterVolume(int volume, bool hicarCall);
    int setAlterStepVolume(int step, bool hicarCall) { return setAlterVolume(stepValue(step), hicarCall); }
    int setMasterStepVolume(int step);

    void setMute(bool mute);
    void setBackEarphone(bool on) { muteTrack("second", !on); }
    void muteBackEarphone(bool mute) { muteTrack("second", mute); }

    void setEqMode(audio::AudioControl::EqMode mode);
    static QList<int> getEqGain(audio::AudioControl::EqMode mode);
    static QList<int> getSubGain(audio::AudioControl::SubMode mode);
    void setEqGain(const QList<float> &gains);
    void setEqGain10(const QList<int> &gains);
    void setEqValue(const QList<int> &gains);
    static void getEqInitValue(QList<int> &out);
    void setLoudnessSwitch(bool on);

    void setFadeBalance(int fade, int balance);

    void setOutputSource(const char *track, const char *source);
    void setOutputSource(Tag tag, const char *source);
    void setOutputFrontSource(const char *track, const char *source, bool frontOnly);
    void setOutputFrontSource(Tag tag, const char *source, bool frontOnly);
    void setInputDestination(const char *track, const char *destination);
    void setInputDestination(Tag tag, const char *destination);
    void setAuxinChannel(audio::AudioControl::AudioInChannel channel);
    audio::AudioControl::AudioInChannel getAuxinChannel();
    void setI2SINChannel(audio::AudioControl::AudioInChannel channel);
    void setMainAudioDunkingMode(unsigned int mode);
    void setMainAudioDunkingTargetGain(int gain);

    void setMicroPhoneVolume(int volume);
    int getMicAnalogGain(float *first, float *second);
    int setMicAnalogGain(float first, float second);
    int setMicOpAndPga(float op, float pga);
    int startMicGainCalibration();
    int setMicGainCalibration();
    int getMicCalibrationGain(int *first, int *second);
    void setDownlinkDelayEstimation();
    int getDownlinkDelayEstimation(short *delay);
    int setHandsfreeDelay(int delay);
    void setAECQuality(audio::AudioControl::AudioQuality quality);
    void getMicrophoneTest(QList<int> &out);
    void setMicLeftRightSwitch(bool swap);

    void setDpsEnable(bool enable);
    void setStereoEnable(bool enable);
    void setDpsUserGain(float gain);
    void setFilter(audio::AudioControl::AudioOutChannel channel, const audio::AudioControl::AudioFilter_t &filter);
    void setSpeakerDelay(const QList<float> &delays);
    void setSpeakerDealy(audio::AudioControl::AudioOutChannel channel, float delay);

    /// "" where the platform has no such source.
    static QString platformSource(const QString &name);
    static bool isBoosted(const QString &source);

private:
    static QString trackOf(Tag tag);
    static int boosted(const QString &source, int volume);
    int stepValue(int step) const { return m_stepRange == 0 ? 0 : 100 * step / m_stepRange & 0xFF; }
    QString applicationSource(const QString &source) const;
    void muteTrack(const char *track, bool mute);
    void sendBands(const QList<float> &gains, const struct BandTable &bands);
    void sendSpeakerDelay(int bit, float delay);

    /// On an object that is made for it: -1 where there is none.
    template<typename... Values>
    int once(simulator::ObjectKind kind, const char *operation, const Values &...values)
    {
        if (!m_calls.create(kind))
            return -1;
        const int result = m_calls.call(kind, operation, values...);
        m_calls.destroy(kind);
        return result;
    }
    /// On an object that lives as long as the facade.
    template<typename... Values>
    int onVolume(const char *operation, const Values &...values)
    {
        return m_hasVolume ? m_calls.call(simulator::ObjectKind::Volume, operation, values...) : -1;
    }
    template<typename... Values>
    int onApp(const char *operation, const Values &...values)
    {
        return m_hasApp ? m_calls.call(simulator::ObjectKind::App, operation, values...) : -1;
    }

    CallReader &m_calls;
    bool m_isThere = false;
    bool m_hasVolume = false;
    bool m_hasApp = false;
    bool m_isMuted = false;
    bool m_alterMode = true;
    bool m_isMasterStepSet = false;
    int m_masterStep = 0;
    int m_stepRange = 100;
    QMap<QString, int> m_mainSteps;
    QMap<QString, int> m_secondSteps;
    QString m_phoneName;
};

} // namespace lives

#endif

#ifndef AUDIOCONTROL_P_H
#define AUDIOCONTROL_P_H

#include "privateexport.h"

#include <qzaudio/audiocontrol.h>
#include <spaudiosetting.h>

#include <QtCore/QStringList>

namespace audio
{

/// State and inner operations of AudioControl. Same thread rule: one thread, no lock.
class QZAUDIO_PRIVATE_EXPORT AudioControlPrivate
{
public:
    AudioControlPrivate();
    ~AudioControlPrivate();

    // Names: an unknown one becomes the empty string.
    void initQtSpMap();
    void trackNameFromQtToSp(const QString &qtName, QString &spName);
    /// The first key in the hash's order whose value matches: two keys share "S+BtPcmPhone", so do not depend on which.
    void trackNameFromSpToQt(const QString &spName, QString &qtName);
    void tagNameFromQtToSp(AudioControl::AudioTag tag, QString &name);

    // Volume
    /// Boosts the boosted sources, others unchanged.
    quint8 increaseVolume(QString spName, quint8 value);
    /// Low 8 bits of value × 1.5, held at 148.
    static quint8 boosted(quint8 value);
    void initTracksVolumes(AudioControl::AudioTag tag, const QHash<QString, quint8> &volumes);
    int getCurTrackVolumeInfo(AudioControl::AudioTag tag, QString &name, quint8 &step);
    int changeCurTrackVolume(AudioControl::AudioTag tag, bool up, QString &name, quint8 &step);
    int getAlterNumber(QString &track);
    int changeAlterVolume(bool up, quint8 cur, quint8 &out);
    /// What a step is worth: 100 × step / stepRange, whole; 0 for a range of 0. The platform is sent its low 8 bits.
    int platformValueOfStep(int step) const;

    void muteAudio(const char *track, bool on);

    // Equalizer. The initialisers leave the gains to the caller and give 0; records must come in zeroed.
    int initEqSystemVal(audio_eq_parameter_t &parameter);
    int initEqValue(audio_eq_parameter_t &parameter);
    int initEqSystemVal16(audio_ext_eq_parameter_t &parameter);
    int initEqSystemVal10(audio_ext_eq_parameter_t &parameter);
    int initEqValue16(audio_ext_eq_parameter_t &parameter);
    int setEqGain(audio_eq_parameter_t &parameter);
    int setEqValue(audio_eq_parameter_t &parameter);
    int setEqGain16(audio_ext_eq_parameter_t &parameter);
    int setEqValue16(audio_ext_eq_parameter_t &parameter);
    void setLoudness(bool on);

    // Fade and balance; here a positive balance lowers the left side, the opposite of the public operation.
    void setFadeBalance(int fade, int balance);
    int getGainVal(int a, int b, int gainX, int gainY);

    // Numbers of the public enumerations to those of the platform and back
    quint32 getSPAudioChannel(AudioControl::AudioOutChannel channel);
    audio_input_select_pin_e getSPAudioADCSelectPin(AudioControl::AudioInChannel channel);
    AudioControl::AudioInChannel getAudioInChannel(audio_input_select_pin_e pin);
    audio_aec_quality_e getSPAudioAECQuality(AudioControl::AudioQuality quality);

    AudioControl *q = nullptr; ///< set by the owner
    SPAudioSetting::Volume *volume = nullptr; ///< kept for life; may be null
    SPAudioSetting::App *app = nullptr; ///< kept for life and never destroyed; may be null
    bool mute = false;
    bool masterStepInited = false;
    quint8 masterStepVolume = 0;
    quint8 alterStepVolume = 0;
    quint8 stepRange = 100;
    QString curMainTrack = QStringLiteral("S+FilePlayer_APP");
    QStringList groupList;
    QHash<QString, quint8> mainStepVolumes; ///< Qt-side name to step
    QHash<QString, quint8> secondStepVolumes; ///< Qt-side name to step
    QHash<QString, QString> qtToSpNames;
    QHash<AudioControl::AudioTag, QString> tagNames;
    QHash<QString, QStringList> groups; ///< platform source name of a group to its members

private:
    Q_DISABLE_COPY(AudioControlPrivate)

    QHash<QString, quint8> &stepVolumes(AudioControl::AudioTag tag);
    QString groupOf(const QString &source, QStringList &members);
};

} // namespace audio

#endif

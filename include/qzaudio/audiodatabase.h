#ifndef QZAUDIO_AUDIODATABASE_H
#define QZAUDIO_AUDIODATABASE_H

#include <qzaudio/audiotypes.h>
#include <qzaudio/export.h>

#include <QtCore/QHash>
#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVariant>

namespace audio
{

/**
 * The settings store and the fixed status and channel tables.
 *
 * Settings live in the INI file "/media/flash/nvm/audioData.db". Every save() rewrites the file at once, safely against power
 * cuts, against every error of the flash, and against other processes that use this library or QSettings; getters answer from memory,
 * except getAutoMicGain() and getHandsfreeDelay(), which read the file each time.
 *
 * A save blocks for as long as the flash needs, and while another process writes: at most one second, and not again for one that hangs.
 * Reading waits for nobody. Failures reach no caller but clear()'s. A value that could not be written is what this process reads from then on;
 * it goes with the process's next save of any key, or with the end of a store, unless another process has written its key since. The log says
 * at critical level why, and what waits, once for each reason; and "file not exists!!!" when no file is left behind.
 *
 * Whatever is in the file, it ends no process and makes none large. Lines that cannot be read are left out; before the next save replaces it,
 * such a file is kept as "/media/flash/nvm/audioData.db.damaged". More than 1 MB is not read.
 *
 * No index reaches memory outside its array: outside the range it reads as 0 and changes no value in memory.
 *
 * Threads: no member is locked. Use the object from its owner's thread.
 */
class QZAUDIO_EXPORT AudioDataBase : public QObject
{
    Q_OBJECT

public:
    /// Reads all settings, and cleans up behind writers that died. The home screen's type decides the volume defaults: 25 for type 7, else 20
    /// and, for type 5, 15.
    explicit AudioDataBase(QObject *parent = nullptr);
    /// Tries for the last time to write what waits; a line at critical level names what is lost.
    ~AudioDataBase() override;

    /**
     * The stored value of GROUP/KEY as the file has it now, or the default when file or key is missing.
     *
     * A value of this process that waits to be written is what it gives, unless another process has written the key since. Where the file
     * cannot be read it gives the default, with a line at critical level.
     */
    QVariant data(QString group, QString key, QVariant defaultValue);
    /// Writes GROUP/KEY to the file at once. Logs "file not exists!!!" at critical level when no file is there afterwards.
    void save(QString group, QString key, QVariant value);
    /**
     * Removes the file; false, with "fail!!!" at critical level, when that fails.
     *
     * Only the file: values in memory stay, but nothing waits to be written any more. It waits for no writer, who may put the file there again.
     */
    bool clear();

    /// Volume in memory, usually 0 to 25. The type is folded by the signed remainder of 6; a negative remainder reads as 0.
    int getVolume(ZelAudioType type);
    /// Sets the volume in memory and, when @p save is true, in the file. Neither type nor value is checked for the file.
    void setVolume(ZelAudioType type, int value, bool save);
    /// Writes all six volumes.
    void savevolume();

    /// Equalizer type, usually 0 to 7; 7 is the custom curve.
    int eqType();
    /// Sets the type in memory and in the file. Not checked.
    void setEqType(int type);
    /// Whether loudness is on.
    bool loudNess();
    /// Sets it in memory and in the file. The loudspeakers hear nothing of it: ZelAudioManager::setLoudNess() switches them, too.
    void setLoudNess(bool on);
    /// True for the original microphone, false for the arm one. Decides which keys the gain and delay below use.
    bool micType();
    /// Sets it in memory and in the file. The lower-case m is the operation's name.
    void setmicType(bool original);
    /// Microphone input volume, 0 to 91.
    int micInputValue();
    /// Sets it in memory and in the file. Not checked.
    void setMicInputValue(int value);

    /// The custom curve's band 0 to 15 as stored: twice what setCustomEQ() was given, on purpose.
    int getCustomEQ(int index);
    /// Stores value × 2 for the band, on purpose. A band outside 0..15 does nothing. Mind the order of the arguments.
    void setCustomEQ(int value, int index);

    /// Stores the gain of the current microphone type, in dB.
    void setAutoMicGain(float gain);
    /// Reads it from the file, without its fraction (3.7 gives 3.0); a stored text that is no whole number gives 0.
    float getAutoMicGain();
    /// Stores the hands-free delay of the current microphone type, in the platform's unit.
    void setHandsfreeDelay(int delay);
    /// Reads it from the file.
    int getHandsfreeDelay();

    /// The first of eight equalizer presets, owned by the store.
    const EqBaseData *getEqBaseData();
    /// Index of the preset of the current equalizer type; 0 when there is none.
    int getCurrentIndexInItem();
    /// Index of the preset of @p type; 0 when there is none.
    int getCurrentIndexInDefault(int type);
    /// The type of the next preset up or down, round the end. Changes nothing.
    int getNextEqType(bool up);

    /// What a status means; {0, 0} for a number that is none.
    ZelAudioInfo getAudioStatusInfo(AudioStatus status);
    /// The source name of a status; "S+none_APP" for a number that is none.
    QString getStatusToSpName(AudioStatus status);
    /// What a channel is; {0, "S+none_APP"} for a channel without an entry.
    ZelAudioAChannelInfo getChannelInfo(AudioChannel channel);
    /// Replaces @p out by the current volume of every stream, narrowed to its low 8 bits.
    void getGroupDefaultData(QHash<QString, uchar> &out);

private:
    Q_DISABLE_COPY(AudioDataBase)

    void _initMaps();
    void _initVolume();
    QString autoMicGainKey() const;
    QString handsfreeDelayKey() const;

    // Three fields carry "stored" because an operation has the plain name.
    EqBaseData eqBase[8] = {};
    qint32 volumes[6] = {};
    qint32 storedMicInputValue = 0;
    bool storedMicType = true;
    bool loudness = true;
    qint32 storedEqType = 0;
    qint32 customEq[16] = {}; // as stored, twice what setCustomEQ() was given
    float autoMicGain = 0;
    qint32 handsfreeDelay = 0;
    QMap<AudioChannel, ZelAudioAChannelInfo> channelInfo;
    QMap<AudioStatus, QString> statusSpName;
    QMap<AudioStatus, ZelAudioInfo> statusInfo;
};

} // namespace audio

#endif

#ifndef VOLUMESOURCE_H
#define VOLUMESOURCE_H

#include <qzaudio/audiodatabase.h>

#include <QtCore/QDateTime>
#include <QtCore/QFileSystemWatcher>
#include <QtCore/QObject>

class ZelAudioManager;

/**
 * The media volume and the mute, as ZelAudioManager has them.
 *
 * The manager is made by the first question, because making it starts up the audio: a process that only deals with focus
 * should leave the platform alone. From then on changed() comes, also when another process stores a new volume. A mute by
 * another process is noticed with the next question or the next change of the volume: the platform has no signal for it.
 *
 * Threads: use the object from the thread that made it, which must run a Qt event loop.
 */
class VolumeSource : public QObject
{
    Q_OBJECT

public:
    explicit VolumeSource(QObject *parent = nullptr);

    /// 0 to 25.
    int level();
    bool isMuted();

Q_SIGNALS:
    void changed(bool isMuted, int level);

private:
    Q_DISABLE_COPY(VolumeSource)

    ZelAudioManager *start();
    void onVolumeKey(bool, int volume, int volumeType);
    void onFolderChanged();
    void update(int level);

    ZelAudioManager *m_manager = nullptr; // not owned
    audio::AudioDataBase *m_store = nullptr; // a child
    QFileSystemWatcher m_folder;
    QDateTime m_fileTime;
    int m_level = 0;
    bool m_isMuted = false;
};

#endif

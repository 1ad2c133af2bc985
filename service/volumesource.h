#ifndef VOLUMESOURCE_H
#define VOLUMESOURCE_H

#include <qzaudio/audiodatabase.h>

#include <QtCore/QByteArray>
#include <QtCore/QFileSystemWatcher>
#include <QtCore/QObject>

class ZelAudioManager;

/**
 * The media volume and the mute, as a ZelAudioManager of its own has them, the only one of this process.
 *
 * The manager is made by the first question, because making it starts up the audio (volumes, equalizer, microphone; settings
 * are written): a process that only deals with focus leaves the platform alone. From then on changed() comes for each new
 * media volume in the settings file, whichever process stored it.
 *
 * The mute reaches no further than this process: each manager has a flag of its own, the platform has no question for it, and
 * nothing is stored. changed() does not come for it.
 *
 * Every member but the constructor may wait for other processes that use the settings file.
 *
 * Threads: use the object from its own thread, which must run a Qt event loop, and destroy it there, too.
 */
class VolumeSource : public QObject
{
    Q_OBJECT

public:
    explicit VolumeSource(QObject *parent = nullptr);

    /// 0 to 25.
    int level();
    bool isMuted();
    /// Both by a signal.
    void answer();

Q_SIGNALS:
    void answered(bool isMuted, int level);
    /// The level is another one.
    void changed(bool isMuted, int level);

private:
    Q_DISABLE_COPY(VolumeSource)

    void start();
    void onFolderChanged();

    ZelAudioManager *m_manager = nullptr; // a child
    audio::AudioDataBase *m_store = nullptr; // a child
    QFileSystemWatcher m_folder;
    QByteArray m_stamp; // of the settings file
    int m_level = 0;
};

#endif

#include "volumesource.h"

#include <qzaudio/zelaudiomanager.h>
#include <settingsfile.h>

VolumeSource::VolumeSource(QObject *parent)
    : QObject(parent)
    , m_folder(this) // so that it moves to another thread with this object
{
    connect(&m_folder, &QFileSystemWatcher::directoryChanged, this, &VolumeSource::onFolderChanged);
}

int VolumeSource::level()
{
    start();
    return m_level;
}

bool VolumeSource::isMuted()
{
    start();
    return m_manager->isAttOn();
}

void VolumeSource::answer()
{
    const bool isMuted = this->isMuted();
    Q_EMIT answered(isMuted, level());
}

void VolumeSource::start()
{
    if (m_manager)
        return;
    // Not instance(): that one is destroyed when the process ends, by a thread that may not stop its timers.
    m_manager = new ZelAudioManager(this);
    m_level = m_manager->getVolume(ZelAudioTypeMedia);

    // Whoever stores a volume, this process's manager or another one's, puts a new file in the old one's place: the folder is
    // what to watch. The manager has made it by now.
    m_store = new audio::AudioDataBase(this);
    m_stamp = SettingsFile::stamp();
    m_folder.addPath(SettingsFile::folder());
}

void VolumeSource::onFolderChanged()
{
    const QByteArray stamp = SettingsFile::stamp();
    if (stamp == m_stamp)
        return; // a lock file or a temporary file came or went
    m_stamp = stamp;
    const int stored = m_store->data(QStringLiteral("Volume"), QString::number(ZelAudioTypeMedia), m_level).toInt();
    if (stored == m_level)
        return;
    m_level = stored;
    Q_EMIT changed(isMuted(), m_level);
}

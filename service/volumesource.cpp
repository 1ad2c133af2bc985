#include "volumesource.h"

#include <qzaudio/zelaudiomanager.h>

#include <QtCore/QFileInfo>

namespace
{

QFileInfo settingsFile()
{
    return QFileInfo(QStringLiteral("/media/flash/nvm/audioData.db"));
}

} // namespace

VolumeSource::VolumeSource(QObject *parent)
    : QObject(parent)
{
    connect(&m_folder, &QFileSystemWatcher::directoryChanged, this, &VolumeSource::onFolderChanged);
}

int VolumeSource::level()
{
    start();
    update(m_level);
    return m_level;
}

bool VolumeSource::isMuted()
{
    start();
    update(m_level);
    return m_isMuted;
}

ZelAudioManager *VolumeSource::start()
{
    if (m_manager)
        return m_manager;
    m_manager = ZelAudioManager::instance();
    m_level = m_manager->getVolume(ZelAudioTypeMedia);
    m_isMuted = m_manager->isAttOn();
    connect(m_manager, &ZelAudioManager::zelvolumeChanged, this, &VolumeSource::onVolumeKey);

    // The manager knows what it stored itself; what other processes store stands in the file. Each save puts a new file in
    // its place, so the folder is what to watch. The manager has made it by now.
    m_store = new audio::AudioDataBase(this);
    m_fileTime = settingsFile().lastModified();
    m_folder.addPath(settingsFile().path());
    return m_manager;
}

void VolumeSource::onVolumeKey(bool, int volume, int volumeType)
{
    update(volumeType == ZelAudioTypeMedia ? volume : m_level);
}

void VolumeSource::onFolderChanged()
{
    const QDateTime time = settingsFile().lastModified();
    if (time == m_fileTime)
        return; // a lock file or a temporary file came or went
    m_fileTime = time;
    update(m_store->data(QStringLiteral("Volume"), QString::number(ZelAudioTypeMedia), m_level).toInt());
}

void VolumeSource::update(int level)
{
    const bool isMuted = m_manager->isAttOn();
    if (level == m_level && isMuted == m_isMuted)
        return;
    m_level = level;
    m_isMuted = isMuted;
    Q_EMIT changed(isMuted, level);
}

#include "settingsfile.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <sys/stat.h>
#include <unistd.h>

QString SettingsFile::path()
{
    return QStringLiteral("/media/flash/nvm/audioData.db");
}

bool SettingsFile::canBeSaved()
{
    return access(QFile::encodeName(QFileInfo(path()).path()).constData(), W_OK | X_OK) == 0;
}

QByteArray SettingsFile::stamp(const QString &file)
{
    struct stat status = {};
    if (stat(QFile::encodeName(file).constData(), &status) != 0)
        return {};
    return QByteArray::number(quint64(status.st_ino)) + ' ' + QByteArray::number(qint64(status.st_size)) + ' '
        + QByteArray::number(qint64(status.st_mtim.tv_sec)) + '.' + QByteArray::number(qint64(status.st_mtim.tv_nsec));
}

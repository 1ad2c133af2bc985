#include "settingsfile.h"

#include <QtCore/QFile>

#include <sys/stat.h>

QString SettingsFile::path()
{
    return QStringLiteral("/media/flash/nvm/audioData.db");
}

QByteArray SettingsFile::stamp(const QString &file)
{
    struct stat status = {};
    if (stat(QFile::encodeName(file).constData(), &status) != 0)
        return {};
    return QByteArray::number(quint64(status.st_ino)) + ' ' + QByteArray::number(qint64(status.st_size)) + ' '
        + QByteArray::number(qint64(status.st_mtim.tv_sec)) + '.' + QByteArray::number(qint64(status.st_mtim.tv_nsec));
}

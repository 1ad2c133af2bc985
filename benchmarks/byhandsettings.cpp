#include "byhandsettings.h"

#include <settingsfile.h>

#include <QtCore/QSettings>

#include <fcntl.h>
#include <unistd.h>

QVariant byhand::readSetting(const QString &path, const QVariant &defaultValue)
{
    return QSettings(SettingsFile::path(), QSettings::IniFormat).value(path, defaultValue);
}

void byhand::saveSetting(const QString &path, const QVariant &value)
{
    {
        QSettings settings(SettingsFile::path(), QSettings::IniFormat);
        settings.setValue(path, value);
        settings.sync();
    }
    const int folder = ::open(QFile::encodeName(SettingsFile::folder()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ::fsync(folder);
    ::close(folder);
}

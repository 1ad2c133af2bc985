#ifndef BYHANDSETTINGS_H
#define BYHANDSETTINGS_H

#include <QtCore/QString>
#include <QtCore/QVariant>

/// The settings file with a QSettings of its own for each access: no value is older than the call, and a saved one is on the flash.
namespace byhand
{

QVariant readSetting(const QString &path, const QVariant &defaultValue);
/// Synchronizes the folder, too, without which the new file's name may not outlive a power cut.
void saveSetting(const QString &path, const QVariant &value);

} // namespace byhand

#endif

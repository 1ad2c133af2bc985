#ifndef SETTINGSFILE_H
#define SETTINGSFILE_H

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// The settings file as seen from outside the store that writes it.
namespace SettingsFile
{
/// The one place on the unit's flash; see audio::AudioDataBase.
QString path();

/// Whether its folder is there and may be written to. The store makes the folder where it can.
bool canBeSaved();

/**
 * Tells two states of a file apart: another text after each rewrite, "" while there is no file.
 *
 * A rewrite puts a new file in the old one's place, so it shows even when size and time stay the same.
 */
QByteArray stamp(const QString &file = path());
} // namespace SettingsFile

#endif

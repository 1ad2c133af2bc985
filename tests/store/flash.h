#ifndef FLASH_H
#define FLASH_H

#include <QtCore/QByteArray>
#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>

/// The flash partition that the test has for itself, looked at without the library and without QSettings.
namespace flash
{

QString folder();
QString settingsFile();

/// Removes everything from the folder, folders too; makes the folder where it is missing.
void clean();

/// Names of everything in the folder, sorted.
QStringList names();

/// Of the settings file, or of another one in the folder. A missing file reads as empty.
QByteArray content(const QString &name = QStringLiteral("audioData.db"));
/// Each content gets a time stamp of its own, about an hour ago: who compares stamps of what the library writes and what stands
/// here never takes the one for the other, however fast a test is.
void setContent(const QByteArray &content, const QString &name = QStringLiteral("audioData.db"));

/// Lines of an INI file by "GROUP/KEY", the values as they stand there. A line that is neither a group nor KEY=VALUE comes under "?".
using Entries = QMap<QByteArray, QByteArray>;
Entries parse(const QByteArray &content);
Entries entries();

/// A file with a value for every key that the store knows, each a different one from its default, and three keys that it does not know.
QByteArray fullSettings();

} // namespace flash

#endif

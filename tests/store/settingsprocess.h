#pragma once

#include <QtCore/QProcess>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <memory>

/// Starts the program settingsclient: another process that uses the settings store, or stands in its way. See settingsclient.cpp.
namespace settingsprocess
{

/// Words of the command line, the emulator's first where there is one.
QStringList commandLine(const QStringList &arguments);
bool isEmulated();

struct Outcome
{
    int exitCode = -1; ///< -1 where it did not end by itself
    QString output;
    QString errors;
    qint64 milliseconds = 0;
};

/// @p wrapper is a command that the program is started by, for example in a mount namespace of its own.
Outcome run(const QStringList &arguments, const QStringList &wrapper = {});

/// Returns when the process has written its first line; killed with the returned object.
std::unique_ptr<QProcess> start(const QStringList &arguments);

/// What a fresh process finds: "TYPE TEXT" of one value, "default" where the key is missing.
QString storedValue(const QString &group, const QString &key);

} // namespace settingsprocess

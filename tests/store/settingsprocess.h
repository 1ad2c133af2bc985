#ifndef SETTINGSPROCESS_H
#define SETTINGSPROCESS_H

#include <program.h>

#include <memory>

/// Starts the program settingsclient: another process that uses the settings store, or stands in its way. See settingsclient.cpp.
namespace settingsprocess
{

QStringList commandLine(const QStringList &arguments);

/// Why "nobody" cannot run it; empty where that user can.
QString whyNobodyCannotRun();

/// @p wrapper is a command that the program is started by, for example in a mount namespace of its own.
program::Run run(const QStringList &arguments, const QStringList &wrapper = {});

/// Returns when the process has written its first line; killed with the returned object.
std::unique_ptr<QProcess> start(const QStringList &arguments);

/// What a fresh process finds: "TYPE TEXT" of one value, "default" where the key is missing.
QString storedValue(const QString &group, const QString &key);

} // namespace settingsprocess

#endif

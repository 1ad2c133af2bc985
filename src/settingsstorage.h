#ifndef SETTINGSSTORAGE_H
#define SETTINGSSTORAGE_H

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

namespace audio
{

/**
 * The stored settings as this process sees them: the file, and over it what could not be written yet.
 *
 * A value that could not be written waits. It goes with this process's next save of any key, unless somebody else has written its key
 * since: then it gives way. Reading never writes, and never waits.
 *
 * Each operation adds to @p complaints what has to be told at critical level: each cause once, until it is gone.
 *
 * Threads: all operations may be called from any thread.
 */
namespace settingsstorage
{

/// The path is SettingsText::path().
QVariant value(const QString &path, const QVariant &defaultValue, QStringList &complaints);
/// False where the file is as it was, which may be missing.
bool save(const QString &path, const QVariant &value, QStringList &complaints);
/// The start of a store, which is the moment to clean up behind dead writers and to keep a damaged file beside.
void start(QStringList &complaints);
/// The last try to write what waits.
void finish(QStringList &complaints);
/// Nothing waits any more: the file was removed on purpose.
void forgetWaiting();

} // namespace settingsstorage

} // namespace audio

#endif

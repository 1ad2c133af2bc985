#include "settingsstorage.h"

#include "flashfile.h"
#include "settingslock.h"
#include "settingstext.h"

#include <QtCore/QFile>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>

#include <algorithm>
#include <optional>
#include <vector>

namespace audio
{

namespace
{

constexpr int mostTries = 3; // of a save that somebody else overtakes after 30 seconds of standstill

struct WaitingValue
{
    QString path;
    QVariant value;
    std::optional<QByteArray> before; ///< as the file had it then; nothing where it could not be read
};

/// What the process has to remember. The mutex is never held while anything waits.
struct Memory
{
    QMutex mutex;
    QByteArray lastBytes; // of the file
    SettingsText lastText; // of these bytes
    std::vector<WaitingValue> waiting;
    QString toldOfReading;
    QString toldOfWriting;
    QString toldOfDamage;
};

Memory &memory()
{
    static auto *const instance = new Memory; // for ever: stores save until the very end of the process
    return *instance;
}

QString namesOf(const std::vector<WaitingValue> &values)
{
    QStringList names;
    for (const WaitingValue &value : values)
        names.append(value.path);
    return names.join(QLatin1Char(' '));
}

/// Once, until another cause comes or all is well again (an empty text).
void tell(QString &told, const QString &cause, const QString &more, QStringList &complaints)
{
    if (told != cause && !cause.isEmpty())
        complaints.append(cause + more);
    told = cause;
}

/// Nobody else has written it since.
bool isStillWaiting(const WaitingValue &waiting, const SettingsText &text)
{
    return !waiting.before || *waiting.before == text.rawValue(waiting.path);
}

flashfile::Content readAndTell(QStringList &complaints)
{
    flashfile::Content content = flashfile::read();
    const QString cause = content.failure.isEmpty() ? QString() : QLatin1String("cannot be read: ") + content.failure;
    const QMutexLocker locker(&memory().mutex);
    tell(memory().toldOfReading, cause, QStringLiteral("; defaults count"), complaints);
    return content;
}

void remember(const QByteArray &bytes, const SettingsText &text)
{
    Memory &process = memory();
    const QMutexLocker locker(&process.mutex);
    process.lastBytes = bytes;
    process.lastText = text;
}

/// Most often the file is what it was the last time.
SettingsText textOf(const flashfile::Content &content)
{
    Memory &process = memory();
    {
        const QMutexLocker locker(&process.mutex);
        if (process.lastBytes == content.bytes)
            return process.lastText;
    }
    SettingsText text(content.bytes);
    remember(content.bytes, text);
    return text;
}

bool isDamaged(const flashfile::Content &content, const SettingsText &text)
{
    return content.isTooLarge || text.damagedLines() > 0;
}

/// The damaged file is kept before anything else takes its name.
Failure keepDamaged(const flashfile::Content &content, const SettingsText &text, const SettingsLock &lock, QStringList &complaints)
{
    if (!isDamaged(content, text))
        return {};
    const Failure failure = flashfile::keepDamaged(content, lock.temporaryPath());
    const QString what
        = content.isTooLarge ? QStringLiteral("more than %1 bytes").arg(SettingsFile::largestSize) : QStringLiteral("%1 lines").arg(text.damagedLines());
    const QString where
        = failure.isEmpty() ? QLatin1String("kept as ") + QFile::decodeName(flashfile::damagedPath()) : QLatin1String("cannot be kept: ") + failure;
    const QString cause = QStringLiteral("is damaged, %1; %2").arg(what, where);
    const QMutexLocker locker(&memory().mutex);
    tell(memory().toldOfDamage, cause, QString(), complaints);
    return failure.isEmpty() ? Failure() : QLatin1String("the damaged file ") + where;
}

void wait(const QString &path, const QVariant &value, const std::optional<QByteArray> &before, const Failure &failure, QStringList &complaints)
{
    Memory &process = memory();
    const QMutexLocker locker(&process.mutex);
    if (!path.isEmpty()) {
        const auto known
            = std::find_if(process.waiting.begin(), process.waiting.end(), [&path](const WaitingValue &candidate) { return candidate.path == path; });
        if (known != process.waiting.end())
            process.waiting.erase(known);
        process.waiting.push_back({path, value, before});
    }
    tell(process.toldOfWriting, QLatin1String("cannot be written: ") + failure, QLatin1String("; waiting: ") + namesOf(process.waiting), complaints);
}

/// Gives what waited and may be written; the rest gives way.
std::vector<WaitingValue> takeWaiting(const QString &path, const SettingsText &text, QStringList &complaints)
{
    Memory &process = memory();
    const QMutexLocker locker(&process.mutex);
    std::vector<WaitingValue> overtaken;
    std::vector<WaitingValue> taken;
    for (const WaitingValue &waiting : process.waiting) {
        if (waiting.path != path)
            (isStillWaiting(waiting, text) ? taken : overtaken).push_back(waiting);
    }
    if (!overtaken.empty())
        complaints.append(QLatin1String("has newer values of another process; given up: ") + namesOf(overtaken));
    process.waiting = taken;
    return taken;
}

void tellSuccess(const std::vector<WaitingValue> &written, const Failure &failure, QStringList &complaints)
{
    Memory &process = memory();
    const QMutexLocker locker(&process.mutex);
    for (const WaitingValue &value : written) {
        const auto isWritten = [&value](const WaitingValue &candidate) { return candidate.path == value.path && candidate.value == value.value; };
        process.waiting.erase(std::remove_if(process.waiting.begin(), process.waiting.end(), isWritten), process.waiting.end());
    }
    const QString cause = failure.isEmpty() ? QString() : QLatin1String("may not outlive a power cut: ") + failure;
    if (cause.isEmpty() && !written.empty())
        complaints.append(QLatin1String("is written again, with what waited: ") + namesOf(written));
    tell(process.toldOfWriting, cause, QString(), complaints);
    process.toldOfDamage.clear(); // the file that was damaged is replaced
}

bool isAnythingWaiting()
{
    const QMutexLocker locker(&memory().mutex);
    return !memory().waiting.empty();
}

struct Attempt
{
    Failure failure;
    bool isDone = false;
    bool isOvertaken = false;
    std::optional<SettingsText> found; ///< in the file; nothing where it could not be read
};

/// An empty path writes only what waits.
Attempt tryToWrite(const QString &path, const QVariant &value, QStringList &complaints)
{
    Attempt attempt;
    const SettingsLock lock(SettingsLock::Waiting::Allowed);
    const flashfile::Content content = readAndTell(complaints);
    SettingsText text = textOf(content);
    if (content.failure.isEmpty())
        attempt.found = text;
    attempt.failure = lock.failure();
    if (attempt.failure.isEmpty())
        attempt.failure = content.failure; // what cannot be read must not be replaced
    if (attempt.failure.isEmpty())
        attempt.failure = keepDamaged(content, text, lock, complaints);
    if (!attempt.failure.isEmpty())
        return attempt;
    const std::vector<WaitingValue> waiting = takeWaiting(path, text, complaints);
    if (path.isEmpty() && waiting.empty())
        return attempt;
    for (const WaitingValue &other : waiting)
        text.setValue(other.path, other.value);
    if (!path.isEmpty())
        text.setValue(path, value);
    const flashfile::Replacement replacement
        = flashfile::replace(SettingsFile::nativePath, text.bytes(), content, lock.temporaryPath(), [&lock] { return lock.isHeld(); });
    attempt.isDone = replacement.isDone;
    attempt.isOvertaken = replacement.isOvertaken;
    if (replacement.isDone && text.readsBack())
        remember(text.bytes(), text);
    if (replacement.isDone)
        tellSuccess(waiting, replacement.failure, complaints);
    else
        attempt.failure = replacement.isOvertaken ? QStringLiteral("somebody else took the lock") : replacement.failure;
    return attempt;
}

bool write(const QString &path, const QVariant &value, QStringList &complaints)
{
    Attempt attempt = tryToWrite(path, value, complaints);
    for (int tries = 1; attempt.isOvertaken && tries < mostTries; ++tries)
        attempt = tryToWrite(path, value, complaints);
    if (!attempt.failure.isEmpty())
        wait(path, value, attempt.found ? std::make_optional(attempt.found->rawValue(path)) : std::nullopt, attempt.failure, complaints);
    return attempt.isDone;
}

} // namespace

QVariant settingsstorage::value(const QString &path, const QVariant &defaultValue, QStringList &complaints)
{
    const flashfile::Content content = readAndTell(complaints);
    const SettingsText text = textOf(content);
    {
        const QMutexLocker locker(&memory().mutex);
        for (const WaitingValue &waiting : memory().waiting) {
            if (waiting.path == path && (!content.failure.isEmpty() || isStillWaiting(waiting, text)))
                return waiting.value;
        }
    }
    return text.value(path, defaultValue);
}

bool settingsstorage::save(const QString &path, const QVariant &value, QStringList &complaints)
{
    return write(path, value, complaints);
}

void settingsstorage::start(QStringList &complaints)
{
    const flashfile::Content content = readAndTell(complaints);
    if (!SettingsLock::hasLeftovers() && !isDamaged(content, textOf(content)))
        return;
    const SettingsLock lock(SettingsLock::Waiting::None);
    if (!lock.failure().isEmpty())
        return; // who holds it cleans up
    lock.sweepLeftovers();
    const flashfile::Content current = flashfile::read(); // by now nobody else's to change
    keepDamaged(current, textOf(current), lock, complaints);
}

void settingsstorage::finish(QStringList &complaints)
{
    if (!isAnythingWaiting())
        return;
    write({}, {}, complaints);
    const QMutexLocker locker(&memory().mutex);
    if (!memory().waiting.empty())
        complaints.append(QLatin1String("was never written with: ") + namesOf(memory().waiting));
}

void settingsstorage::forgetWaiting()
{
    const QMutexLocker locker(&memory().mutex);
    memory().waiting.clear();
}

} // namespace audio

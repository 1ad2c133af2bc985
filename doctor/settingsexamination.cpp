#include "settingsexamination.h"

#include "../src/settingstext.h"
#include "childprocess.h"
#include "lockholder.h"

#include <settingsfile.h>

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QList>

#include <algorithm>
#include <unistd.h>

namespace
{

constexpr qint64 msPerSecond = 1000;
constexpr qint64 longestSaveS = SettingsFile::longestWaitMs / msPerSecond; // others are refused then
constexpr qint64 longestHoldingS = SettingsFile::staleLockMs / msPerSecond;

bool isSetting(const QByteArray &line)
{
    return line.contains('=') && !line.startsWith(';');
}

constexpr char hasDamage[] = " damage";

/// As the library reads it. In a process of its own: a file system may keep its reader waiting for ever.
void readSettings(const QString &path, const ChildProcess::Tell &tell)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    const audio::SettingsText text(file.read(SettingsFile::largestSize));
    const QList<QByteArray> lines = text.bytes().split('\n');
    tell(QByteArray::number(static_cast<int>(std::count_if(lines.cbegin(), lines.cend(), isSetting))));
    if (text.damagedLines() > 0)
        tell(hasDamage);
}

class Examination
{
public:
    explicit Examination(int patienceMs)
        : m_patienceMs(patienceMs)
    {
    }

    Findings findings()
    {
        lookAtFile();
        lookAtLock();
        lookAtLeftovers();
        return m_findings;
    }

private:
    void add(Finding::Grade grade, const char *subject, const QString &text, const QJsonObject &facts = {})
    {
        m_findings.append({Finding::Area::Settings, grade, QLatin1String(subject), text, facts});
    }

    void lookAtFile()
    {
        const QFileInfo file(SettingsFile::path());
        const QJsonObject facts{{QStringLiteral("file"), file.filePath()}, {QStringLiteral("bytes"), static_cast<double>(file.size())}};
        if (::access(SettingsFile::nativeFolder, X_OK) != 0)
            add(Finding::Grade::Note, "file", QStringLiteral("there is none that this user can reach: all settings have their defaults"), facts);
        else if (!file.exists())
            add(Finding::Grade::Note, "file", QStringLiteral("there is none yet: all settings have their defaults"), facts);
        else if (!file.isFile()) // a pipe would be waited for
            add(Finding::Grade::Wrong, "file", QStringLiteral("%1 is no file").arg(file.filePath()), facts);
        else if (!file.isReadable())
            add(Finding::Grade::Wrong, "file", QStringLiteral("%1 may not be read by this user").arg(file.filePath()), facts);
        else if (file.size() > SettingsFile::largestSize)
            add(Finding::Grade::Wrong,
                "file",
                QStringLiteral("%1 has %2 bytes: taken for damaged, the first %3 count").arg(file.filePath()).arg(file.size()).arg(SettingsFile::largestSize),
                facts);
        else
            lookAtContent(file, facts);
    }

    void lookAtContent(const QFileInfo &file, QJsonObject facts)
    {
        const QString path = file.filePath();
        const ChildProcess::Outcome outcome = ChildProcess::run([&path](const ChildProcess::Tell &tell) { readSettings(path, tell); }, m_patienceMs);
        const int count = outcome.told.split(' ').first().toInt();
        if (!outcome.isWhole || outcome.told.isEmpty()) {
            add(Finding::Grade::Wrong, "file", QStringLiteral("%1 cannot be read").arg(path), facts);
            return;
        }
        facts.insert(QStringLiteral("settings"), count);
        if (outcome.told.endsWith(hasDamage))
            add(Finding::Grade::Wrong, "file", QStringLiteral("%1 has lines that are no settings").arg(path), facts);
        else
            add(Finding::Grade::Good, "file", QStringLiteral("%1 has %2 settings in %3 bytes").arg(path).arg(count).arg(file.size()), facts);
    }

    void lookAtLock()
    {
        const QFileInfo lock(SettingsFile::path() + QStringLiteral(".lock"));
        if (!lock.exists())
            return;
        const LockHolder holder = LockHolder::of(lock.filePath());
        const qint64 seconds = lock.lastModified().secsTo(QDateTime::currentDateTime());
        const QJsonObject facts{{QStringLiteral("file"), lock.filePath()},
                                {QStringLiteral("owner"), lock.owner()},
                                {QStringLiteral("process"), holder.process},
                                {QStringLiteral("program"), holder.program},
                                {QStringLiteral("seconds"), static_cast<double>(seconds)}};
        if (holder.process != 0)
            lookAtHeldLock(lock, holder, seconds, facts);
        else if (!holder.isKnown)
            add(Finding::Grade::Note, "lock", QStringLiteral("%1 is there, and the kernel does not tell who holds it").arg(lock.filePath()), facts);
        else if (lock.isReadable() || qAbs(seconds) > longestHoldingS)
            add(Finding::Grade::Note, "lock", QStringLiteral("%1 is of a dead process; the next save removes it").arg(lock.filePath()), facts);
        else
            // Who may not open it cannot see that nobody holds it.
            add(Finding::Grade::Wrong,
                "lock",
                QStringLiteral("%1 is of a dead process of %2, and this user may not open it: saves are refused until it is %3 s old")
                    .arg(lock.filePath(), lock.owner())
                    .arg(longestHoldingS),
                facts);
    }

    void lookAtHeldLock(const QFileInfo &lock, const LockHolder &holder, qint64 seconds, const QJsonObject &facts)
    {
        const QString who = QStringLiteral("process %1 (%2, lock file of %3)")
                                .arg(QString::number(holder.process), holder.program.isEmpty() ? QStringLiteral("?") : holder.program, lock.owner());
        // Nobody holds a lock in the future, but where the clock was set.
        if (qAbs(seconds) > longestHoldingS)
            add(Finding::Grade::Wrong,
                "lock",
                QStringLiteral("%1 hangs in a save, for %2 s: the next one takes the lock away").arg(who).arg(qAbs(seconds)),
                facts);
        else if (seconds > longestSaveS)
            add(Finding::Grade::Wrong,
                "lock",
                QStringLiteral("%1 has been saving for %2 s: others wait a second and are refused").arg(who).arg(seconds),
                facts);
        else
            add(Finding::Grade::Note, "lock", who + QStringLiteral(" is saving"), facts);
    }

    void lookAtLeftovers()
    {
        const QDir folder(SettingsFile::folder());
        const QString name = QFileInfo(SettingsFile::path()).fileName();
        const QStringList parts = folder.entryList({name + QStringLiteral(".new-*"), name + QStringLiteral(".lock.rmlock")}, QDir::Files);
        if (!parts.isEmpty()) {
            add(Finding::Grade::Note,
                "leftovers",
                QStringLiteral("%1: of a save that goes on or did not end; a later one removes it").arg(parts.join(QStringLiteral(", "))),
                {{QStringLiteral("files"), parts.join(QLatin1Char(' '))}});
        }
        const QFileInfo damaged(SettingsFile::path() + QStringLiteral(".damaged"));
        if (damaged.exists()) {
            add(Finding::Grade::Note,
                "damaged",
                QStringLiteral("%1, of %2: a settings file with lines that could not be read; look at it, then remove it")
                    .arg(damaged.filePath(), damaged.lastModified().toString(Qt::ISODate)),
                {{QStringLiteral("file"), damaged.filePath()}});
        }
    }

    int m_patienceMs;
    Findings m_findings;
};

} // namespace

Findings examineSettings(int patienceMs)
{
    return Examination(patienceMs).findings();
}

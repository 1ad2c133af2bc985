#include "settingsexamination.h"

#include "childprocess.h"
#include "lockholder.h"

#include <settingsfile.h>

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QList>
#include <QtCore/QRegularExpression>
#include <QtCore/QSettings>

#include <algorithm>
#include <unistd.h>

namespace
{

constexpr qint64 largest = qint64(1024) * 1024; // the store reads no more
constexpr qint64 longestSaveS = 1; // so long others wait; then they are refused
constexpr qint64 longestHoldingS = 30; // then the lock of a process that hangs is taken away

/// Whether a line stands by itself: QSettings takes what is left open for a value that goes on in the next line, the store leaves it out.
bool isWhole(const QByteArray &line)
{
    bool isQuoted = false;
    int position = 0;
    for (; position < line.size() && (isQuoted || line.at(position) != ';'); ++position) {
        const char letter = line.at(position);
        if (letter == '\\')
            ++position;
        else if (letter == '"')
            isQuoted = !isQuoted;
    }
    return !isQuoted && position <= line.size();
}

/// Whether each object in a line is of a type that has one size, as QSettings writes it; an object of another type may be larger than any memory.
bool isOfFixedSize(const QByteArray &line)
{
    static const QRegularExpression another(QStringLiteral("@Variant\\((?!\\\\0\\\\0\\\\0\\\\(a|x([1-6ef]|1[03-9a]|8[1-7])(?![0-9a-f])))"));
    return !line.contains('@') || !another.match(QString::fromLatin1(line)).hasMatch();
}

/// As the store sees it, which leaves each other line out.
bool areSettings(QByteArray content)
{
    const QList<QByteArray> lines = content.replace('\r', '\n').split('\n');
    // Behind the last end there may have been more of a line.
    const QByteArray rest = lines.last().trimmed();
    return (rest.isEmpty() || rest.startsWith(';'))
        && std::all_of(lines.cbegin(), lines.cend(), [](const QByteArray &line) { return isWhole(line) && isOfFixedSize(line); });
}

constexpr char hasDamage[] = " damage";

/// In the process of its own: QSettings makes whatever object a value describes.
void readSettings(const QString &file, const ChildProcess::Tell &tell)
{
    const QSettings settings(file, QSettings::IniFormat);
    tell(QByteArray::number(settings.allKeys().size()));
    if (settings.status() != QSettings::NoError)
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
        else if (file.size() > largest)
            add(Finding::Grade::Wrong,
                "file",
                QStringLiteral("%1 has %2 bytes: taken for damaged, the first %3 count").arg(file.filePath()).arg(file.size()).arg(largest),
                facts);
        else
            lookAtContent(file, facts);
    }

    void lookAtContent(const QFileInfo &info, QJsonObject facts)
    {
        QFile file(info.filePath());
        const bool isOpen = file.open(QIODevice::ReadOnly);
        const ChildProcess::Outcome outcome = ChildProcess::run([&info](const ChildProcess::Tell &tell) { readSettings(info.filePath(), tell); }, m_patienceMs);
        const int count = outcome.told.split(' ').first().toInt();
        if (outcome.isWhole)
            facts.insert(QStringLiteral("settings"), count);
        if (!outcome.isWhole || outcome.told.endsWith(hasDamage) || !isOpen || !areSettings(file.read(largest)))
            add(Finding::Grade::Wrong, "file", QStringLiteral("%1 has lines that are no settings").arg(info.filePath()), facts);
        else
            add(Finding::Grade::Good, "file", QStringLiteral("%1 has %2 settings in %3 bytes").arg(info.filePath()).arg(count).arg(info.size()), facts);
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

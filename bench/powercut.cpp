#include "powercut.h"

#include "boundprocess.h"
#include "exitstatus.h"
#include "settingsfile.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QRegularExpression>

#include <algorithm>
#include <array>
#include <climits>
#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/inotify.h>
#include <sys/resource.h>
#include <unistd.h>

namespace
{

constexpr int patienceMs = 20000;

// A text that no pipe takes whole: the unit waits for its reader in the middle of it, with the start-up done and the line still to come.
constexpr int holdingSize = 1024 * 1024;
constexpr char holdingCharacter = '_';

/// A unit whose death leaves no core file behind.
class UnitProcess : public BoundProcess
{
protected:
    void setupChildProcess() override
    {
        BoundProcess::setupChildProcess();
        const rlimit none = {0, 0};
        setrlimit(RLIMIT_CORE, &none);
    }
};

QByteArray scenarioOf(const QString &line)
{
    return QStringLiteral("powerOn();\nsay(\"%1\".repeat(%2));\n%3\n").arg(QLatin1Char(holdingCharacter)).arg(holdingSize).arg(line).toUtf8();
}

/// The settings file as it was, so that a start-up's saves can be taken back.
class KeptSettings
{
public:
    KeptSettings()
        : m_wasThere(QFile::exists(SettingsFile::path()))
        , m_bytes(read())
    {
    }

    bool restore() const
    {
        QFile file(SettingsFile::path());
        if (!m_wasThere)
            return !file.exists() || file.remove();
        return read() == m_bytes || (file.open(QIODevice::WriteOnly) && file.write(m_bytes) == m_bytes.size() && file.flush());
    }

private:
    static QByteArray read()
    {
        QFile file(SettingsFile::path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    const bool m_wasThere;
    const QByteArray m_bytes;
};

/// Holds the lock of the settings file, as somebody does who saves, and tells when somebody else comes to it.
class HeldLock
{
public:
    HeldLock()
        : m_file(open(path().constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR))
        , m_watcher(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        m_isHeld = m_file >= 0 && flock(m_file, LOCK_EX | LOCK_NB) == 0 && inotify_add_watch(m_watcher, path().constData(), IN_OPEN) >= 0;
    }
    ~HeldLock()
    {
        if (m_file >= 0) {
            unlink(path().constData());
            close(m_file);
        }
        close(m_watcher);
    }

    bool isHeld() const { return m_isHeld; }
    bool isWaitedFor() const
    {
        std::array<char, sizeof(inotify_event) + NAME_MAX + 1> events = {};
        return read(m_watcher, events.data(), events.size()) > 0;
    }

private:
    Q_DISABLE_COPY(HeldLock)

    static QByteArray path() { return QByteArray(SettingsFile::nativePath) + ".lock"; }

    const int m_file;
    const int m_watcher;
    bool m_isHeld = false;
};

/// Waits until the unit comes to the lock, or ends without a save.
void waitUntilSaving(QProcess &unit, const HeldLock &lock, const QDeadlineTimer &deadline)
{
    constexpr int lookPeriod = 2; // ms; the unit waits a second for the lock
    while (!lock.isWaitedFor() && !deadline.hasExpired() && unit.state() != QProcess::NotRunning)
        unit.waitForFinished(lookPeriod);
}

/// Reads until the unit is held; false where it ends before. @param output receives what was read
bool waitUntilHeld(QProcess &unit, const QDeadlineTimer &deadline, QByteArray &output)
{
    constexpr int row = 64; // that no other output has
    while (unit.waitForReadyRead(int(deadline.remainingTime()))) {
        output += unit.readAllStandardOutput();
        if (output.contains(QByteArray(row, holdingCharacter)))
            return true;
    }
    return false;
}

/// What the bench says at its end; else what it complains of, or @p otherwise.
QString problemOf(QProcess &unit, const QByteArray &output, const QString &otherwise)
{
    const QByteArray whole = output + unit.readAllStandardOutput();
    const QByteArray lastLine = whole.trimmed().split('\n').last();
    QString error = QJsonDocument::fromJson(lastLine).object().value(QLatin1String("error")).toString();
    if (!error.isEmpty())
        return error;
    const QString complaint = QString::fromUtf8(unit.readAllStandardError().trimmed().split('\n').last());
    return complaint.isEmpty() ? otherwise : complaint;
}

/// Of a save that has not put it in place.
bool isTemporary(const QString &name)
{
    static const QRegularExpression form(QStringLiteral("\\AaudioData\\.db\\.new-[0-9]+\\z"));
    return form.match(name).hasMatch();
}

QString meaningOf(const QString &name)
{
    const QString settings = QFileInfo(SettingsFile::path()).fileName();
    if (name == settings)
        return QStringLiteral("the settings");
    if (name == settings + QLatin1String(".lock"))
        return QStringLiteral("lock of a save");
    if (name == settings + QLatin1String(".lock.rmlock"))
        return QStringLiteral("lock of a lock's removal");
    if (name == settings + QLatin1String(".damaged"))
        return QStringLiteral("damaged settings, kept");
    if (isTemporary(name))
        return QStringLiteral("new settings, not in place yet");
    return QStringLiteral("unknown to the library");
}

/// A save's file is called after a number that is another one each time.
QString shownName(const QString &name)
{
    return name.section(QLatin1Char('-'), 0, 0);
}

} // namespace

QString PowerCut::Outcome::toText(qint64 byte) const
{
    QStringList texts;
    for (const File &file : files)
        texts.append(QStringLiteral("%1 (%2 bytes)").arg(shownName(file.name)).arg(file.size));
    return (isCut ? QStringLiteral("cut at byte %1; left: ").arg(byte) : QStringLiteral("not cut, the save was done; left: "))
        + (texts.isEmpty() ? QStringLiteral("nothing") : texts.join(QStringLiteral(", ")));
}

std::optional<PowerCut::Outcome> PowerCut::whileSaving(qint64 byte, const QString &line, QString &problem, const QString &program)
{
    if (byte < 0) {
        problem = QStringLiteral("there is no byte %1").arg(byte);
        return {};
    }
    const KeptSettings before;
    UnitProcess unit;
    const auto fail = [&unit, &problem](const QString &why) -> std::optional<Outcome> {
        unit.kill();
        unit.waitForFinished();
        problem = why;
        return {};
    };
    const QDeadlineTimer deadline(patienceMs);
    const QString bench = QStringLiteral("/qzaudio-bench");
    unit.start(program.isEmpty() ? QCoreApplication::applicationDirPath() + bench : program,
               {QStringLiteral("play"), QStringLiteral("--in-process"), QStringLiteral("--json"), QStringLiteral("-")});
    unit.write(scenarioOf(line));
    unit.closeWriteChannel();
    QByteArray output;
    if (!waitUntilHeld(unit, deadline, output)) {
        const bool isStarted = unit.error() != QProcess::FailedToStart;
        return fail(isStarted ? problemOf(unit, output, QStringLiteral("the unit does not start up"))
                              : QStringLiteral("%1: %2").arg(unit.program(), unit.errorString()));
    }
    if (!before.restore())
        return fail(QStringLiteral("the flash cannot be prepared: ") + qt_error_string(errno));
    {
        // Not before it is at the lock: to the kernel the memory of a script's engine is a file, too.
        const HeldLock lock;
        if (!lock.isHeld())
            return fail(QStringLiteral("the lock of the settings cannot be held: ") + qt_error_string(errno));
        waitUntilSaving(unit, lock, deadline);
        const rlimit limit = {static_cast<rlim_t>(byte), static_cast<rlim_t>(byte)};
        if (unit.state() != QProcess::NotRunning && prlimit(pid_t(unit.processId()), RLIMIT_FSIZE, &limit, nullptr) != 0)
            return fail(QStringLiteral("the unit cannot be stopped: ") + qt_error_string(errno));
    }
    if (unit.state() != QProcess::NotRunning && !unit.waitForFinished(int(deadline.remainingTime())))
        return fail(QStringLiteral("the unit does not come to an end"));
    Outcome outcome;
    // Beyond the first save it may also end for its engine's memory.
    const bool isEndedByLimit = unit.exitStatus() == QProcess::CrashExit && unit.exitCode() == SIGXFSZ;
    if (!isEndedByLimit && (unit.exitStatus() == QProcess::CrashExit || unit.exitCode() != Success))
        return fail(problemOf(unit, output, QStringLiteral("the unit ended by itself")));
    outcome.files = filesIn(SettingsFile::folder());
    outcome.isCut = std::any_of(outcome.files.cbegin(), outcome.files.cend(), [](const File &file) { return isTemporary(file.name); });
    return outcome;
}

QVector<PowerCut::File> PowerCut::filesIn(const QString &folder)
{
    QVector<File> files;
    const auto entries = QDir(folder).entryInfoList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
    for (const QFileInfo &entry : entries)
        files.append({entry.fileName(), entry.size(), meaningOf(entry.fileName())});
    return files;
}

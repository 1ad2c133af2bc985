#include "flashexamination.h"

#include "childprocess.h"
#include "mount.h"

#include <settingsfile.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QFileInfo>

#include <cerrno>
#include <cmath>
#include <cstring>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace
{

// A save writes the next version beside the file: room for both, and for what others have there.
constexpr qint64 roomOfASave = qint64(64) * 1024;
constexpr double slowMs = 1000; // as long as other processes wait for a save
constexpr double nsPerMs = 1e6;

QString userName()
{
    const passwd *const entry = ::getpwuid(::geteuid());
    return entry ? QString::fromLocal8Bit(entry->pw_name) : QString::number(::geteuid());
}

QString errorText(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

/// The folder itself, or what stands nearest to it: the first save makes the rest.
QString nearestFolder()
{
    QString path = SettingsFile::folder();
    while (!QFileInfo::exists(path))
        path = QFileInfo(path).path();
    return path;
}

bool mayWriteInto(const QString &folder)
{
    return ::access(QFile::encodeName(folder).constData(), W_OK | X_OK) == 0;
}

/// In the process of its own: a save's steps, each told before it is done.
void writeAsASave(const QByteArray &first, const QByteArray &last, const ChildProcess::Tell &tell)
{
    const QByteArray content(4096, 'q');
    int file = -1;
    int folder = -1;
    const auto isDone = [&tell](const char *step, const auto &act) {
        tell(QByteArray(step) + '\n');
        if (act())
            return true;
        tell(QByteArray("failed ") + QByteArray::number(errno) + '\n');
        return false;
    };
    const bool isWhole = isDone("open", [&] { return (file = ::open(first.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR)) >= 0; })
        && isDone("write", [&] { return ::write(file, content.constData(), static_cast<std::size_t>(content.size())) == content.size(); })
        && isDone("fsync", [&] { return ::fsync(file) == 0; }) && isDone("rename", [&] { return ::rename(first.constData(), last.constData()) == 0; })
        && isDone("open of the folder", [&] { return (folder = ::open(SettingsFile::nativeFolder, O_RDONLY | O_DIRECTORY | O_CLOEXEC)) >= 0; })
        && isDone("fsync of the folder", [&] { return ::fsync(folder) == 0; });
    Q_UNUSED(isWhole)
}

class Examination
{
public:
    Examination(bool mayWrite, int patienceMs)
        : m_mayWrite(mayWrite)
        , m_patienceMs(patienceMs)
        , m_folder(nearestFolder())
        , m_mount(Mount::of(m_folder))
    {
    }

    Findings findings()
    {
        if (!lookAtFolder())
            return m_findings;
        const bool isWritable = lookAtRights();
        lookAtMount();
        lookAtRoom();
        if (!isWritable)
            add(Finding::Grade::Note, "sync", QStringLiteral("not tried: nothing can be written there"));
        else if (m_folder != SettingsFile::folder())
            add(Finding::Grade::Note, "sync", QStringLiteral("not tried: the folder is not there"));
        else if (!m_mayWrite)
            add(Finding::Grade::Note, "sync", QStringLiteral("not tried; --write-test writes a file there and waits for the flash"));
        else
            write();
        return m_findings;
    }

private:
    void add(Finding::Grade grade, const char *subject, const QString &text, const QJsonObject &facts = {})
    {
        m_findings.append({Finding::Area::Flash, grade, QLatin1String(subject), text, facts});
    }

    /// False where there can be none.
    bool lookAtFolder()
    {
        const QString wanted = SettingsFile::folder();
        const QJsonObject facts{{QStringLiteral("folder"), wanted}, {QStringLiteral("nearest"), m_folder}};
        struct stat64 status = {};
        if (::stat64(SettingsFile::nativeFolder, &status) != 0 && errno == EACCES)
            add(Finding::Grade::Wrong, "folder", QStringLiteral("user %1 may not enter %2").arg(userName(), m_folder), facts);
        else if (!QFileInfo(m_folder).isDir())
            add(Finding::Grade::Wrong, "folder", QStringLiteral("%1 is no folder").arg(m_folder), facts);
        else if (m_folder == wanted)
            add(Finding::Grade::Good, "folder", QStringLiteral("%1 is there").arg(wanted), facts);
        else if (mayWriteInto(m_folder))
            add(Finding::Grade::Note, "folder", QStringLiteral("%1 is not there; the first save makes it in %2").arg(wanted, m_folder), facts);
        else
            add(Finding::Grade::Wrong, "folder", QStringLiteral("%1 is not there, and user %2 may not make it in %3").arg(wanted, userName(), m_folder), facts);
        return m_findings.constLast().grade != Finding::Grade::Wrong;
    }

    bool lookAtRights()
    {
        const bool isWritable = mayWriteInto(m_folder);
        struct stat64 status = {};
        const bool isSticky = ::stat64(QFile::encodeName(m_folder).constData(), &status) == 0 && (status.st_mode & S_ISVTX) != 0;
        const QJsonObject facts{{QStringLiteral("user"), userName()}, {QStringLiteral("writable"), isWritable}, {QStringLiteral("sticky"), isSticky}};
        const QString folder = m_folder == SettingsFile::folder() ? QStringLiteral("there") : QStringLiteral("into ") + m_folder;
        if (!isWritable && m_mount.isReadOnly())
            add(Finding::Grade::Wrong, "writable", QStringLiteral("%1 is mounted read-only").arg(m_mount.point), facts);
        else if (!isWritable)
            add(Finding::Grade::Wrong, "writable", QStringLiteral("user %1 may not write %2").arg(userName(), folder), facts);
        else if (isSticky)
            add(Finding::Grade::Note,
                "writable",
                QStringLiteral("user %1 may write %2, but the folder has the sticky bit: only a file's owner can replace it").arg(userName(), folder),
                facts);
        else
            add(Finding::Grade::Good, "writable", QStringLiteral("user %1 may write %2").arg(userName(), folder), facts);
        return isWritable;
    }

    void lookAtMount()
    {
        const QJsonObject facts{{QStringLiteral("fileSystem"), m_mount.type},
                                {QStringLiteral("device"), m_mount.device},
                                {QStringLiteral("mountPoint"), m_mount.point},
                                {QStringLiteral("options"), m_mount.options}};
        const QString told = QStringLiteral("%1 of %2, mounted at %3").arg(m_mount.type, m_mount.device, m_mount.point);
        if (m_mount.point.isEmpty())
            add(Finding::Grade::Note, "lasting", QStringLiteral("the kernel does not tell what is mounted there"), facts);
        else if (m_mount.isVolatile())
            add(Finding::Grade::Wrong, "lasting", told + QStringLiteral(": in memory, gone with the power"), facts);
        else if (m_mount.type == QLatin1String("overlay"))
            add(Finding::Grade::Note, "lasting", told + QStringLiteral(": lasts as long as its upper folder"), facts);
        else if (m_mount.point == QLatin1String("/"))
            add(Finding::Grade::Note, "lasting", told + QStringLiteral(": no partition of its own is mounted here"), facts);
        else
            add(Finding::Grade::Good, "lasting", told, facts);
    }

    void lookAtRoom()
    {
        struct statvfs64 status = {};
        if (::statvfs64(QFile::encodeName(m_folder).constData(), &status) != 0) {
            add(Finding::Grade::Wrong, "room", errorText(errno));
            return;
        }
        const auto bytes = static_cast<qint64>(status.f_bavail) * static_cast<qint64>(status.f_frsize);
        const auto files = static_cast<qint64>(status.f_favail);
        // A file system without inodes of its own says that it has none at all.
        const bool hasFiles = status.f_files == 0 || files > 0;
        constexpr qint64 kilobyte = 1024;
        constexpr qint64 many = 10 * kilobyte; // kB
        const qint64 kilobytes = bytes / kilobyte;
        const QString told = kilobytes < many ? QStringLiteral("%1 kB are free").arg(kilobytes) : QStringLiteral("%1 MB are free").arg(kilobytes / kilobyte);
        const QJsonObject facts{{QStringLiteral("freeBytes"), static_cast<double>(bytes)}, {QStringLiteral("freeFiles"), static_cast<double>(files)}};
        if (!hasFiles)
            add(Finding::Grade::Wrong, "room", QStringLiteral("there is room for no further file"), facts);
        else if (bytes < roomOfASave)
            add(Finding::Grade::Wrong, "room", told + QStringLiteral(", and saves want %1 kB").arg(roomOfASave / kilobyte), facts);
        else
            add(Finding::Grade::Good, "room", told, facts);
    }

    /// As a save does it: write, synchronize, rename, synchronize the folder.
    void write()
    {
        const QByteArray last = QByteArray(SettingsFile::nativeFolder) + "/qzaudio-doctor-" + QByteArray::number(::getpid());
        const QByteArray first = last + ".new";
        QElapsedTimer clock;
        clock.start();
        const ChildProcess::Outcome outcome = ChildProcess::run([&](const ChildProcess::Tell &tell) { writeAsASave(first, last, tell); }, m_patienceMs);
        const double ms = static_cast<double>(clock.nsecsElapsed()) / nsPerMs;
        // A flash that hung once may do it again.
        ChildProcess::run(
            [&](const ChildProcess::Tell &) {
                ::unlink(first.constData());
                ::unlink(last.constData());
            },
            m_patienceMs);

        const QList<QByteArray> lines = outcome.told.trimmed().split('\n');
        const QByteArray failed = "failed ";
        const bool hasFailed = lines.last().startsWith(failed);
        const QString step = QString::fromLatin1(lines.value(lines.size() - (hasFailed ? 2 : 1)));
        const QJsonObject facts{{QStringLiteral("ms"), ms}, {QStringLiteral("lastStep"), step}};
        if (!outcome.isWhole)
            add(Finding::Grade::Wrong, "sync", QStringLiteral("%1 %2").arg(step, outcome.ending), facts);
        else if (hasFailed)
            add(Finding::Grade::Wrong, "sync", QStringLiteral("%1: %2").arg(step, errorText(lines.last().mid(failed.size()).toInt())), facts);
        else if (ms > slowMs)
            add(Finding::Grade::Note, "sync", QStringLiteral("a save takes %1 ms, longer than other processes wait for it").arg(std::ceil(ms)), facts);
        else
            add(Finding::Grade::Good, "sync", QStringLiteral("written, synchronized and replaced within %1 ms").arg(std::ceil(ms)), facts);
    }

    bool m_mayWrite;
    int m_patienceMs;
    QString m_folder;
    Mount m_mount;
    Findings m_findings;
};

} // namespace

Findings examineFlash(bool mayWrite, int patienceMs)
{
    return Examination(mayWrite, patienceMs).findings();
}

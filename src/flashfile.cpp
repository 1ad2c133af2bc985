#include "flashfile.h"

#include "filedescriptor.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <algorithm>

#include <fcntl.h>
#include <unistd.h>

namespace audio
{

namespace
{

qint64 millisecondsOf(const timespec &time)
{
    return qint64(time.tv_sec) * 1000 + time.tv_nsec / 1000000;
}

timespec timeOf(qint64 milliseconds)
{
    return {static_cast<time_t>(milliseconds / 1000), static_cast<long>(milliseconds % 1000 * 1000000)};
}

Failure writeAll(int file, const QByteArray &bytes)
{
    for (int written = 0; written < bytes.size();) {
        const ssize_t count = untilNotInterrupted([&] { return ::write(file, bytes.constData() + written, static_cast<size_t>(bytes.size() - written)); });
        if (count < 0)
            return failureOf("write");
        written += static_cast<int>(count);
    }
    return {};
}

Failure compare(int file, const QByteArray &bytes)
{
    QByteArray found(bytes.size() + 1, Qt::Uninitialized); // one more than there should be
    int size = 0;
    do {
        const ssize_t count = untilNotInterrupted([&] { return ::pread(file, found.data() + size, static_cast<size_t>(found.size() - size), size); });
        if (count < 0)
            return failureOf("pread");
        if (count == 0)
            break;
        size += static_cast<int>(count);
    } while (size < bytes.size()); // behind which it ends, or that one more would have come along
    found.truncate(size);
    return found == bytes ? Failure() : QStringLiteral("what was written reads back otherwise");
}

Failure takeOver(int file, const flashfile::Content &old)
{
    struct stat64 status = {};
    if (::fstat64(file, &status) != 0)
        return failureOf("fstat");
    constexpr mode_t permissions = 0777;
    if ((status.st_mode & permissions) != (old.status.st_mode & permissions) && ::fchmod(file, old.status.st_mode & permissions) != 0)
        return failureOf("fchmod");
    const qint64 oldTime = millisecondsOf(old.status.st_mtim);
    if (millisecondsOf(status.st_mtim) <= oldTime) {
        const timespec times[] = {timeOf(oldTime + 1), timeOf(oldTime + 1)};
        if (::futimens(file, &times[0]) != 0)
            return failureOf("futimens");
    }
    return {};
}

/// The complete file, on the flash, under its temporary name.
Failure prepare(const QByteArray &path, const QByteArray &bytes, const flashfile::Content &old)
{
    constexpr mode_t mode = 0666; // of which the process's mask takes its part
    const auto create
        = [&path] { return untilNotInterrupted([&path] { return ::open(path.constData(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode); }); };
    FileDescriptor file(create());
    if (!file.isOpen() && errno == EEXIST && ::unlink(path.constData()) == 0)
        file = FileDescriptor(create());
    if (!file.isOpen())
        return failureOf("open");
    Failure failure = writeAll(file.number(), bytes);
    if (failure.isEmpty() && old.exists)
        failure = takeOver(file.number(), old);
    if (failure.isEmpty() && untilNotInterrupted([&] { return ::fsync(file.number()); }) != 0)
        failure = failureOf("fsync");
    if (failure.isEmpty())
        failure = compare(file.number(), bytes);
    if (!file.close() && failure.isEmpty())
        failure = failureOf("close");
    return failure;
}

/// So that the new name is on the flash, too.
Failure synchronizeFolder(const QByteArray &path)
{
    const QByteArray folder = path.left(path.lastIndexOf('/'));
    const FileDescriptor directory(untilNotInterrupted([&] { return ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (!directory.isOpen())
        return failureOf("open the folder");
    // Some file systems cannot synchronize a folder, and say so.
    if (untilNotInterrupted([&] { return ::fsync(directory.number()); }) != 0 && errno != EINVAL)
        return failureOf("fsync the folder");
    return {};
}

/// The settings file is the damaged file as well, until it is replaced.
Failure giveSecondName(const QByteArray &temporaryPath)
{
    if (::link(SettingsFile::nativePath, temporaryPath.constData()) != 0)
        return failureOf("link");
    if (::rename(temporaryPath.constData(), flashfile::damagedPath().constData()) == 0)
        return synchronizeFolder(flashfile::damagedPath());
    Failure failure = failureOf("rename");
    ::unlink(temporaryPath.constData());
    return failure;
}

/// The file itself, where an integrator put a link to another partition.
QByteArray withoutLinks(const QByteArray &path)
{
    constexpr int mostLinks = 8;
    QByteArray target = path;
    struct stat64 status = {};
    for (int link = 0; link < mostLinks && ::lstat64(target.constData(), &status) == 0 && S_ISLNK(status.st_mode); ++link)
        target = QFile::encodeName(QFileInfo(QFile::decodeName(target)).symLinkTarget());
    return target;
}

/// Without waiting: somebody may have put a pipe there.
FileDescriptor openToRead(const char *path, int moreFlags)
{
    return FileDescriptor(untilNotInterrupted([&] { return ::open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | moreFlags); }));
}

} // namespace

Failure failureOf(const char *systemCall)
{
    const int error = errno;
    return QString::fromLatin1(systemCall) + QLatin1String(": ") + qt_error_string(error);
}

QByteArray flashfile::damagedPath()
{
    return QByteArray(SettingsFile::nativePath) + ".damaged";
}

flashfile::Content flashfile::read(const char *path)
{
    Content content;
    FileDescriptor file = openToRead(path, O_NOFOLLOW);
    content.mayBeLink = !file.isOpen() && errno == ELOOP;
    if (content.mayBeLink)
        file = openToRead(path, 0);
    if (!file.isOpen()) {
        if (errno != ENOENT)
            content.failure = failureOf("open");
        return content;
    }
    if (::fstat64(file.number(), &content.status) != 0) {
        content.failure = failureOf("fstat");
        return content;
    }
    if (!S_ISREG(content.status.st_mode)) {
        content.failure = QStringLiteral("it is no regular file");
        return content;
    }
    content.isTooLarge = content.status.st_size > SettingsFile::largestSize;
    const int expected = static_cast<int>(std::min<qint64>(content.status.st_size, SettingsFile::largestSize));
    content.bytes = QByteArray(expected, Qt::Uninitialized);
    int size = 0;
    while (size < expected) {
        const ssize_t count = untilNotInterrupted([&] { return ::read(file.number(), content.bytes.data() + size, static_cast<size_t>(expected - size)); });
        if (count < 0) {
            content.failure = failureOf("read");
            return content;
        }
        if (count == 0)
            break; // somebody made it shorter meanwhile
        size += static_cast<int>(count);
    }
    content.bytes.truncate(size);
    content.exists = true;
    return content;
}

flashfile::Replacement
flashfile::replace(const char *path, const QByteArray &bytes, const Content &old, const QByteArray &temporaryPath, const std::function<bool()> &mayReplace)
{
    Replacement replacement;
    const QByteArray target = old.mayBeLink ? withoutLinks(path) : QByteArray(path);
    if (old.exists && ::access(target.constData(), W_OK) != 0) {
        replacement.failure = failureOf("access"); // the folder would allow it, but somebody does not want it
        return replacement;
    }
    replacement.failure = prepare(temporaryPath, bytes, old);
    replacement.isOvertaken = replacement.failure.isEmpty() && !mayReplace();
    if (replacement.failure.isEmpty() && !replacement.isOvertaken && ::rename(temporaryPath.constData(), target.constData()) != 0)
        replacement.failure = failureOf("rename");
    replacement.isDone = replacement.failure.isEmpty() && !replacement.isOvertaken;
    if (replacement.isDone)
        replacement.failure = synchronizeFolder(target);
    else
        ::unlink(temporaryPath.constData()); // where it is not there any more, all the better
    return replacement;
}

Failure flashfile::keepDamaged(const Content &damaged, const QByteArray &temporaryPath)
{
    const QByteArray path = damagedPath();
    const Content kept = read(path.constData());
    if (kept.exists && kept.status.st_size == damaged.status.st_size && kept.bytes == damaged.bytes)
        return {};
    const auto copy = [&] { return replace(path.constData(), damaged.bytes, {}, temporaryPath, [] { return true; }).failure; };
    const auto link = [&] { return giveSecondName(temporaryPath); };
    // Of a large file only the beginning was read. For the others a second name is the second choice, though it needs no room: who edits
    // the one file in its place edits the other.
    const Failure failure = damaged.isTooLarge ? link() : copy();
    return failure.isEmpty() || (damaged.isTooLarge ? copy() : link()).isEmpty() ? Failure() : failure;
}

} // namespace audio

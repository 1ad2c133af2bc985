#include "lockholder.h"

#include "mount.h"

#include <QtCore/QFile>

#include <sys/stat.h>

LockHolder LockHolder::of(const QString &file)
{
    struct stat64 status = {};
    QFile list(QStringLiteral("/proc/locks"));
    if (::stat64(QFile::encodeName(file).constData(), &status) != 0 || !list.open(QIODevice::ReadOnly))
        return {};
    LockHolder holder;
    holder.isKnown = true;
    // 1: FLOCK  ADVISORY  WRITE 1234 08:01:5678 0 EOF
    constexpr int placeOfKind = 1;
    constexpr int placeOfProcess = 4;
    constexpr int placeOfFile = 5;
    const Mount mount = Mount::of(file);
    const QByteArray wanted
        = QStringLiteral("%1:%2:%3").arg(mount.major, 2, 16, QLatin1Char('0')).arg(mount.minor, 2, 16, QLatin1Char('0')).arg(quint64(status.st_ino)).toLatin1();
    const QList<QByteArray> lines = list.readAll().split('\n');
    for (const QByteArray &line : lines) {
        const QList<QByteArray> words = line.simplified().split(' ');
        if (words.size() <= placeOfFile || words.at(placeOfKind) != "FLOCK" || words.at(placeOfFile) != wanted)
            continue;
        holder.process = words.at(placeOfProcess).toInt();
        QFile name(QStringLiteral("/proc/%1/comm").arg(holder.process));
        if (name.open(QIODevice::ReadOnly))
            holder.program = QString::fromLocal8Bit(name.readAll().trimmed());
        break;
    }
    return holder;
}

#include "mount.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QStringList>

namespace
{

/// The kernel writes a space as \040.
QString unescaped(const QByteArray &text)
{
    QByteArray plain;
    for (int i = 0; i < text.size(); ++i) {
        bool isNumber = false;
        const int code = text.at(i) == '\\' ? text.mid(i + 1, 3).toInt(&isNumber, 8) : 0;
        plain.append(isNumber ? static_cast<char>(code) : text.at(i));
        i += isNumber ? 3 : 0;
    }
    return QFile::decodeName(plain);
}

bool isBelow(const QString &path, const QString &point)
{
    return path == point || point == QLatin1String("/") || path.startsWith(point + QLatin1Char('/'));
}

} // namespace

Mount Mount::of(const QString &path)
{
    const QString wanted = QFileInfo(path).canonicalFilePath();
    Mount found;
    QFile list(QStringLiteral("/proc/self/mountinfo"));
    if (!list.open(QIODevice::ReadOnly))
        return found;
    // 36 35 98:0 /mnt1 /mnt2 rw,noatime master:1 - ext3 /dev/root rw,errors=continue
    const QList<QByteArray> lines = list.readAll().split('\n');
    for (const QByteArray &line : lines) {
        const int dash = line.indexOf(" - ");
        const QList<QByteArray> before = line.left(dash).split(' ');
        const QList<QByteArray> behind = line.mid(dash + 3).split(' ');
        if (dash < 0 || before.size() < 6 || behind.size() < 3)
            continue;
        const QString point = unescaped(before.at(4));
        // Of two at one place the later one lies above the other.
        if (!isBelow(wanted, point) || point.size() < found.point.size())
            continue;
        const QList<QByteArray> device = before.at(2).split(':');
        found = {point,
                 QString::fromLatin1(behind.at(0)),
                 unescaped(behind.at(1)),
                 QString::fromLatin1(before.at(5) + ',' + behind.at(2)),
                 device.first().toInt(),
                 device.last().toInt()};
    }
    return found;
}

bool Mount::isReadOnly() const
{
    return options.split(QLatin1Char(',')).contains(QLatin1String("ro"));
}

bool Mount::isVolatile() const
{
    return type == QLatin1String("tmpfs") || type == QLatin1String("ramfs") || type == QLatin1String("devtmpfs");
}

#include "focusadvice.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>

namespace
{

constexpr char daemonName[] = "qzaudio-focusd";

/// The build folder that the program runs from; nothing where it is installed.
QString buildFolder()
{
    const QString parent = QFileInfo(QCoreApplication::applicationDirPath()).path();
    return QFileInfo::exists(parent + QStringLiteral("/CMakeCache.txt")) ? parent : QString();
}

/// As it is typed here: short where it stands below the current folder.
QString typed(const QString &path)
{
    const QString relative = QDir::current().relativeFilePath(path);
    QString shorter = relative.startsWith(QStringLiteral("../")) ? path : relative;
    static const QRegularExpression special(QStringLiteral("[^A-Za-z0-9_./+-]"));
    if (!shorter.contains(special))
        return shorter;
    return QLatin1Char('\'') + shorter.replace(QLatin1Char('\''), QStringLiteral("'\\''")) + QLatin1Char('\'');
}

} // namespace

QString FocusAdvice::withoutBus()
{
    if (buildFolder().isEmpty())
        return QStringLiteral("Start it with one: dbus-run-session -- qzaudio-bench focus ACTION");
    return QStringLiteral("Start it with one: dbus-run-session -- COMMAND, or all at once: ./run focus");
}

QString FocusAdvice::withoutService(const QString &options)
{
    const QString folder = buildFolder();
    const QString daemon = QLatin1String(daemonName);
    const QString arguments = options.isEmpty() ? QString() : QLatin1Char(' ') + options;
    if (folder.isEmpty())
        return QStringLiteral("Start it: %1%2 &").arg(daemon, arguments);
    const QString built = folder + QStringLiteral("/bin/") + daemon;
    if (QFileInfo::exists(built))
        return QStringLiteral("Start it: %1%2 &").arg(typed(built), arguments);
    return QStringLiteral("Build it: ninja -C %1 %2").arg(typed(folder), daemon);
}

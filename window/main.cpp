// qzaudio-desk: the window. What its command line takes, startoptions.h says; the car that it shows is a process of its own.

#include "desk.h"
#include "exitstatus.h"
#include "interruption.h"
#include "startoptions.h"
#include "windowtypes.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QLockFile>
#include <QtCore/QUrl>
#include <QtGui/QIcon>
#include <QtGui/QOpenGLContext>
#include <QtQml/QQmlApplicationEngine>
#include <QtQuick/QQuickWindow>
#include <QtQuickControls2/QQuickStyle>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <unistd.h>

namespace
{

void say(std::FILE *stream, const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
    std::fflush(stream);
}

int refuse(const QString &problem)
{
    say(stderr, QStringLiteral("qzaudio-desk: %1\n").arg(problem));
    return UsageError;
}

/// While there is no window yet: Qt ends the process by a crash where it finds no display. What it says before is of no more use.
void handleStartMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtFatalMsg)
        ::_exit(refuse(QStringLiteral("no window can be opened on this display (DISPLAY, WAYLAND_DISPLAY or QT_QPA_PLATFORM say which)")));
    if (!QString::fromLatin1(context.category).startsWith(QLatin1String("qt.qpa")))
        say(stderr, text + QLatin1Char('\n'));
}

bool hasDisplay()
{
    constexpr const char *names[] = {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"};
    return std::any_of(std::cbegin(names), std::cend(names), [](const char *name) { return !qEnvironmentVariableIsEmpty(name); });
}

/// Qt ends the process, too, where there is a display but no OpenGL; its own renderer is quick enough for this window.
void renderWhereverItRuns()
{
    QOpenGLContext context;
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND") && !context.create())
        QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
}

/// The installed manual; empty where there is none.
QString manual()
{
    const QFileInfo file(QApplication::applicationDirPath() + QStringLiteral("/" QZAUDIO_WAY_TO_DOCUMENTS "/docs/window.md"));
    return file.exists() ? file.canonicalFilePath() : QString();
}

int show(const StartOptions &options)
{
    // Held as long as the window is open, and left to nobody by a crash: Qt looks whether its process is still there.
    QLockFile lock(QDir::tempPath() + QStringLiteral("/qzaudio-desk-%1.lock").arg(::getuid()));
    lock.setStaleLockTime(0);
    const bool isOnlyOne = lock.tryLock(0) || lock.error() != QLockFile::LockFailedError;

    const Interruption interruption;
    Desk desk;
    QObject::connect(&interruption, &Interruption::interrupted, &desk, [&desk] {
        // A car that was switched on and nothing else is nothing to keep.
        if (desk.recording()->count() > 1)
            desk.leaveUnsavedBehind();
        QApplication::quit();
    });
    registerWindowTypes(desk);
    QQmlApplicationEngine engine;
    engine.setInitialProperties({
        {QStringLiteral("look"), options.look},
        {QStringLiteral("manual"), manual()},
        {QStringLiteral("notice"), isOnlyOne ? QString() : QObject::tr("Another window is open: each has its own car and flash")},
    });
    engine.load(QUrl(QStringLiteral("qrc:/window/Main.qml")));
    if (engine.rootObjects().isEmpty())
        return Failed;
    QObject *const window = engine.rootObjects().constFirst();
    if (!options.room.isEmpty()) {
        QVariant room;
        QMetaObject::invokeMethod(window, "roomNamed", Q_RETURN_ARG(QVariant, room), Q_ARG(QVariant, options.room));
        if (room.toInt() < 0)
            return refuse(QStringLiteral("there is no room called \"%1\"").arg(options.room));
        window->setProperty("room", room);
    }
    if (!options.file.endsWith(QLatin1String(".js")))
        desk.startAnew();
    if (!options.file.isEmpty())
        QMetaObject::invokeMethod(window, "openFile", Q_ARG(QVariant, QUrl::fromLocalFile(options.file)));
    const int status = QApplication::exec();
    constexpr int bySignal = 128; // as shells report it
    return Interruption::received() ? bySignal + Interruption::received() : status;
}

} // namespace

int main(int argc, char **argv)
{
    StartOptions options;
    {
        // What is no window's business is done without a display.
        const QCoreApplication application(argc, argv);
        options = StartOptions::parse(QCoreApplication::arguments());
        if (!options.problem.isEmpty())
            return refuse(options.problem + QStringLiteral(" (see --help)"));
        if (options.wantsVersion) {
            say(stdout, QStringLiteral("qzaudio-desk " QZAUDIO_VERSION "\n"));
            return Success;
        }
        if (options.wantsHelp) {
            say(stdout, StartOptions::helpText());
            return Success;
        }
    }
    if (!hasDisplay())
        return refuse(QStringLiteral("there is no display: neither DISPLAY nor WAYLAND_DISPLAY is set"));

    QApplication::setOrganizationName(QStringLiteral("qzaudio"));
    QApplication::setApplicationName(QStringLiteral("qzaudio-desk"));
    QApplication::setDesktopFileName(QStringLiteral("qzaudio-desk"));
    qInstallMessageHandler(&handleStartMessage);
    const QApplication application(argc, argv);
    qInstallMessageHandler(nullptr);
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("qzaudio-desk")));
    renderWhereverItRuns();
    QQuickStyle::setStyle(QStringLiteral("Fusion"));
    return show(options);
}

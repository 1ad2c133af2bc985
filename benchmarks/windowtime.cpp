// How long the desk window takes to show itself, how long its thread is away for a frame, and how much memory an hour's recording takes.
// Prints a JSON object. benchmarks/report starts it on a display that nobody sees, without OpenGL: on the slowest way to draw.

#include "desk.h"
#include "windowtypes.h"

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QLoggingCategory>
#include <QtCore/QRegularExpression>
#include <QtCore/QStandardPaths>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtQml/QQmlApplicationEngine>
#include <QtQuick/QQuickWindow>
#include <QtQuickControls2/QQuickStyle>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <unistd.h>
#include <vector>

namespace
{

constexpr int roomCount = 8;
constexpr double nanosecondsPerMillisecond = 1e6;

double milliseconds(clockid_t clock)
{
    timespec time = {};
    clock_gettime(clock, &time);
    return double(time.tv_sec) * 1000 + double(time.tv_nsec) / nanosecondsPerMillisecond;
}

/// ms since this process was started by whoever did.
double age()
{
    QFile file(QStringLiteral("/proc/self/stat"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray stat = file.readAll();
    constexpr int startTime = 19; // fields behind the program's name
    const double ticks = stat.mid(stat.lastIndexOf(')') + 2).split(' ').value(startTime).toDouble();
    return milliseconds(CLOCK_BOOTTIME) - ticks * 1000 / double(sysconf(_SC_CLK_TCK));
}

/// MB that are in memory
double resident()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    constexpr double megabyte = 1e6;
    return file.readAll().split(' ').value(1).toDouble() * double(sysconf(_SC_PAGESIZE)) / megabyte;
}

void spend(int time)
{
    QEventLoop loop;
    QTimer::singleShot(time, &loop, &QEventLoop::quit);
    loop.exec();
}

/// What the scene graph tells of each frame: how long the window's own part took, arranging items and taking over what is new of them.
namespace Frames
{

QtMessageHandler previous = nullptr;
int longest = 0; // ms

void take(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    static const QRegularExpression frame(QStringLiteral("^Frame rendered .*polish=(\\d+), sync=(\\d+),"));
    if (qstrcmp(context.category, "qt.scenegraph.time.renderloop") != 0) {
        previous(type, context, message);
        return;
    }
    const QRegularExpressionMatch match = frame.match(message);
    if (match.hasMatch())
        longest = std::max(longest, match.captured(1).toInt() + match.captured(2).toInt());
}

void listen()
{
    QLoggingCategory::setFilterRules(QStringLiteral("qt.scenegraph.time.renderloop=true"));
    previous = qInstallMessageHandler(&take);
}

} // namespace Frames

/// How long the window's thread is away each time it has something to do, in ms of its own processor time: what others do meanwhile on the
/// machine does not count. Events, what they change, and the scene that follows from it are in it. Painting that scene is not: without OpenGL
/// the thread does that, too.
class Stretches : public QObject
{
public:
    Stretches(const QAbstractEventDispatcher &dispatcher, const QQuickWindow &window)
    {
        connect(
            &window, &QQuickWindow::beforeRendering, this, [this] { m_paintingSince = milliseconds(CLOCK_THREAD_CPUTIME_ID); }, Qt::DirectConnection);
        connect(
            &window, &QQuickWindow::afterRendering, this, [this] { m_last += milliseconds(CLOCK_THREAD_CPUTIME_ID) - m_paintingSince; }, Qt::DirectConnection);
        connect(&dispatcher, &QAbstractEventDispatcher::aboutToBlock, this, [this] {
            const double now = milliseconds(CLOCK_THREAD_CPUTIME_ID);
            m_all.push_back(now - m_last);
            m_last = now;
        });
    }

    void forget() { m_all.clear(); }
    int over(double limit) const
    {
        return int(std::count_if(m_all.begin(), m_all.end(), [limit](double stretch) { return stretch > limit; }));
    }
    double longest() const { return m_all.empty() ? 0 : *std::max_element(m_all.begin(), m_all.end()); }

private:
    double m_last = 0;
    double m_paintingSince = 0;
    std::vector<double> m_all;
};

/// A drive of the given seconds with 50 calls of the platform in each of them, each of which makes and destroys an object, too.
QByteArray busyScenario(int seconds)
{
    return "powerOn();\nAudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);\n"
           "for (let i = 0; i < "
        + QByteArray::number(seconds * 50) + "; ++i) {\n    AudioControl.setMasterVolume(i % 100);\n    wait(20);\n}\n";
}

/// An hour's recording, with something done each half second.
QByteArray longRecording()
{
    QByteArray text = "// A drive recorded with qzaudio-desk.\n\npowerOn();\n";
    constexpr int steps = 7200;
    for (int i = 0; i < steps; ++i) {
        text += "wait(500);\nAudioPolicy.setVolume(AudioPolicy.Media, " + QByteArray::number(i % 26) + ", true);\n";
    }
    return text;
}

QUrl write(const QTemporaryDir &folder, const char *name, const QByteArray &text)
{
    QFile file(folder.filePath(QString::fromLatin1(name)));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("%s cannot be written", qPrintable(file.fileName()));
    return QUrl::fromLocalFile(file.fileName());
}

} // namespace

int main(int argc, char **argv)
{
    QStandardPaths::setTestModeEnabled(true);
    const QApplication application(argc, argv);
    QQuickStyle::setStyle(QStringLiteral("Fusion"));
    Desk desk;
    registerWindowTypes(desk);
    QQmlApplicationEngine engine;
    engine.load(QUrl(QStringLiteral("qrc:/window/Main.qml")));
    auto *const window = engine.rootObjects().isEmpty() ? nullptr : qobject_cast<QQuickWindow *>(engine.rootObjects().first());
    if (!window)
        return 1;
    desk.startAnew();
    QEventLoop firstFrame;
    QObject::connect(window, &QQuickWindow::frameSwapped, &firstFrame, &QEventLoop::quit);
    firstFrame.exec();
    QJsonObject result{{QStringLiteral("start"), age()}};

    const QTemporaryDir folder;
    Frames::listen();
    window->setProperty("recordingShown", true);
    Stretches stretches(*QAbstractEventDispatcher::instance(), *window);
    QJsonObject longest;
    QJsonObject frames;
    QJsonObject over;
    constexpr int carSeconds = 600;
    desk.open(write(folder, "busy.js", busyScenario(carSeconds)));
    desk.setSpeed(10);
    for (int room = 0; room < roomCount; ++room) {
        window->setProperty("room", room);
        constexpr int arriving = 1500; // ms for a room that is made when it is first looked at
        spend(arriving);
        stretches.forget();
        Frames::longest = 0;
        constexpr int looking = 4000; // ms
        spend(looking);
        const QString name = QString::number(room);
        longest.insert(name, stretches.longest());
        frames.insert(name, Frames::longest);
        constexpr double limit = 8; // ms
        over.insert(name, stretches.over(limit));
    }
    result.insert(QStringLiteral("longest"), longest);
    result.insert(QStringLiteral("frames"), frames);
    result.insert(QStringLiteral("over"), over);
    result.insert(QStringLiteral("driven"), desk.now());
    if (desk.now() <= 0 || desk.scenario().isEmpty())
        return 1;

    desk.open(write(folder, "hour.js", longRecording()));
    constexpr double hour = 3600000; // ms
    desk.goTo(hour);
    QElapsedTimer elapsed;
    elapsed.start();
    constexpr int patience = 120000; // ms
    while ((desk.now() < hour || desk.isReplaying()) && elapsed.elapsed() < patience)
        spend(100);
    if (desk.now() < hour)
        return 1;
    result.insert(QStringLiteral("replay"), double(elapsed.elapsed()));
    result.insert(QStringLiteral("resident"), resident());
    std::puts(QJsonDocument(result).toJson(QJsonDocument::Compact).constData());
    return 0;
}

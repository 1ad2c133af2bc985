#include "scenariowatch.h"

#include "scenariostack.h"

#include <QtCore/QFile>
#include <QtQml/QJSEngine>

#include <memory>
#include <unistd.h>

// What the engine offers to debuggers of native programs, without a header; to be freed with delete[]. Weak: without it there are no lines.
extern "C" __attribute__((weak)) char *qt_v4StackTraceForEngine(void *engine);

namespace
{

using namespace std::chrono_literals;

constexpr auto period = 20ms;
constexpr auto patience = 1000ms; // for a script that was told to end

constexpr qint64 bytesPerMegabyte = 1024LL * 1024;
constexpr qint64 bytesPerGigabyte = 1024 * bytesPerMegabyte;

/// What the process has in memory, without what is only reserved.
qint64 memoryInUse()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return 0;
    constexpr int longest = 256;
    return file.read(longest).split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}

QString amount(double number, const char *unit)
{
    constexpr int digits = 4;
    return QString::number(number, 'g', digits) + QLatin1Char(' ') + QLatin1String(unit);
}

QString sizeText(qint64 bytes)
{
    if (bytes >= bytesPerGigabyte)
        return amount(double(bytes) / double(bytesPerGigabyte), "GB");
    return amount(double(bytes) / double(bytesPerMegabyte), "MB");
}

QString timeText(qint64 milliseconds)
{
    constexpr double millisecondsPerSecond = 1000;
    return amount(double(milliseconds) / millisecondsPerSecond, "s");
}

} // namespace

ScenarioWatch::ScenarioWatch(QJSEngine &watchedEngine, const ScenarioLimits &watchedLimits, Stuck whenStuck)
    : engine(watchedEngine)
    , milliseconds(watchedLimits.milliseconds)
    , bytes(watchedLimits.bytes)
    , stuck(std::move(whenStuck))
{
    if (milliseconds > 0 || bytes > 0)
        thread = std::thread(&ScenarioWatch::watch, this);
}

ScenarioWatch::~ScenarioWatch()
{
    stop();
}

void ScenarioWatch::stop()
{
    if (!thread.joinable())
        return;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        stopped = true;
    }
    stopping.notify_one();
    thread.join();
    engine.setInterrupted(false);
}

bool ScenarioWatch::waitForStop(std::chrono::milliseconds time)
{
    std::unique_lock<std::mutex> lock(mutex);
    return stopping.wait_for(lock, time, [this] { return stopped; });
}

void ScenarioWatch::watch()
{
    while (!waitForStop(period)) {
        reached = excess();
        if (!reached.isEmpty()) {
            end();
            return;
        }
    }
}

QString ScenarioWatch::excess() const
{
    if (milliseconds > 0 && std::chrono::steady_clock::now() - start >= std::chrono::milliseconds(milliseconds))
        return QStringLiteral("did not end within ") + timeText(milliseconds);
    if (bytes > 0 && memoryInUse() > bytes)
        return QStringLiteral("needs more than %1 of memory").arg(sizeText(bytes));
    return {};
}

QVector<ScenarioResult::Frame> ScenarioWatch::place(QJSEngine &engine)
{
    if (!qt_v4StackTraceForEngine)
        return {};
    const std::unique_ptr<char[]> stack(qt_v4StackTraceForEngine(engine.handle()));
    return ScenarioStack::shortened(ScenarioStack::fromDebugger(QString::fromUtf8(stack.get())));
}

void ScenarioWatch::end()
{
    const bool held = hold.take();
    if (held)
        frames = place(engine);
    engine.setInterrupted(true);
    if (held)
        hold.release();
    if (!endsInTime() && stuck && hold.take())
        stuck(*this);
}

/// False where the script goes on, or takes much more memory, since it is inside a function of the engine that is not interrupted.
bool ScenarioWatch::endsInTime()
{
    constexpr auto step = 5ms;
    const qint64 tooMuch = bytes + bytes / 4;
    for (auto waited = 0ms; waited < patience; waited += step) {
        if (waitForStop(step))
            return true;
        if (bytes > 0 && memoryInUse() > tooMuch)
            return false;
    }
    return false;
}

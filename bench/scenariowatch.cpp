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
    : m_engine(watchedEngine)
    , m_milliseconds(watchedLimits.milliseconds)
    , m_bytes(watchedLimits.bytes)
    , m_stuck(std::move(whenStuck))
{
    if (m_milliseconds > 0 || m_bytes > 0)
        m_thread = std::thread(&ScenarioWatch::watch, this);
}

ScenarioWatch::~ScenarioWatch()
{
    stop();
}

void ScenarioWatch::stop()
{
    if (!m_thread.joinable())
        return;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stopped = true;
    }
    m_stopping.notify_one();
    m_thread.join();
    m_engine.setInterrupted(false);
}

bool ScenarioWatch::waitForStop(std::chrono::milliseconds time)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_stopping.wait_for(lock, time, [this] { return m_stopped; });
}

void ScenarioWatch::watch()
{
    while (!waitForStop(period)) {
        m_reached = excess();
        if (!m_reached.isEmpty()) {
            end();
            return;
        }
    }
}

QString ScenarioWatch::excess() const
{
    if (m_milliseconds > 0 && std::chrono::steady_clock::now() - m_start >= std::chrono::milliseconds(m_milliseconds))
        return QStringLiteral("did not end within ") + timeText(m_milliseconds);
    if (m_bytes > 0 && memoryInUse() > m_bytes)
        return QStringLiteral("needs more than %1 of memory").arg(sizeText(m_bytes));
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
    const bool held = m_hold.take();
    if (held)
        m_frames = place(m_engine);
    m_engine.setInterrupted(true);
    if (held)
        m_hold.release();
    if (!endsInTime() && m_stuck && m_hold.take())
        m_stuck(*this);
}

/// False where the script goes on, or takes much more memory, since it is inside a function of the engine that is not interrupted.
bool ScenarioWatch::endsInTime()
{
    constexpr auto step = 5ms;
    const qint64 tooMuch = m_bytes + m_bytes / 4;
    for (auto waited = 0ms; waited < patience; waited += step) {
        if (waitForStop(step))
            return true;
        if (m_bytes > 0 && memoryInUse() > tooMuch)
            return false;
    }
    return false;
}

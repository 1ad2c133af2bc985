#include "car.h"

#include "messages.h"
#include "scenariosource.h"
#include "scenariostack.h"

#include "platform.h"
#include "virtualclock.h"

#include <QtCore/QRegularExpression>

#include <algorithm>
#include <limits>
#include <utility>

using simulator::VirtualClock;
using namespace std::chrono_literals;

namespace
{

constexpr auto tick = 10ms; // between two looks at how far real time has come
constexpr qint64 publishPeriod = 33; // ms of real time
constexpr qint64 stepPeriod = 100; // the same
constexpr qint64 longestPart = 60LL * 60 * 1000; // ms of the car between two looks at whether it should stop

QString text(const QVariantMap &map, const char *key)
{
    return map.value(QLatin1String(key)).toString();
}

} // namespace

Car::Car(Mailbox &requests, const Files &files, const Teller &tells)
    : m_requests(requests)
    , m_tell(tells)
    , m_log(files.log)
    , m_logRecorder(m_timeline, false, &m_log)
    , m_sound(m_timeline)
    , m_scripts(m_timeline, m_result, files.isMeasured ? &m_measuredSound.emplace(m_timeline) : nullptr)
    , m_news(m_timeline)
    , m_snapshot(m_scripts)
{
    m_log.open();
    m_sound.writeTo(files.sound);
    m_scripts.host().setPassing([this](qint64 milliseconds) { pass(milliseconds); });
    QObject::connect(&m_scripts.host(), &ScenarioHost::recorded, &m_ear, [this](const QString &line, qint64 begun, const QString &outcome) {
        if (!m_scenario.isEmpty())
            recordStep(begun, line, outcome, false, false);
        else
            ++m_requestsOfLine;
    });
    QObject::connect(&m_timeline, &Timeline::happened, &m_ear, [this](const TimelineEvent &event) {
        m_snapshot.follow(event);
        m_isChanged = true;
    });
    QObject::connect(&m_timeline, &Timeline::checked, &m_ear, [this](const ScenarioResult::Check &check) {
        if (!m_scenario.isEmpty())
            recordStep(
                now(), QStringLiteral("// %1: %2").arg(check.passed ? QStringLiteral("held") : QStringLiteral("did not hold"), check.text), {}, false, false);
    });
    QObject::connect(simulator::Platform::instance()->journal(), &simulator::Journal::appended, &m_ear, [this](const simulator::JournalEntry &entry) {
        m_snapshot.follow(entry);
    });
    m_real.start();
    m_published.start();
    m_stepsSince.start();
}

Car::~Car()
{
    m_log.close();
}

void Car::interrupt(quint64 upTo)
{
    const std::lock_guard<std::mutex> lock(m_interrupting);
    m_interruptedUpTo = upTo;
    m_scripts.engine().setInterrupted(true);
}

void Car::allowScript()
{
    const std::lock_guard<std::mutex> lock(m_interrupting);
    m_scripts.engine().setInterrupted(isInterrupted());
}

void Car::run()
{
    while (!m_requests.isAtEnd()) {
        const bool standsStill = m_speed == 0 && !m_isChanged && m_news.isEmpty();
        takeRequests(standsStill ? 1000ms : tick);
        driveTo(reachable());
        publish();
    }
}

qint64 Car::reachable() const
{
    if (m_isFast)
        return std::numeric_limits<qint64>::max();
    if (m_fastUntil > now())
        return m_fastUntil;
    return m_speed == 0 ? now() : m_anchor + qint64(double(m_real.elapsed()) * m_speed);
}

void Car::setSpeed(double speed)
{
    m_speed = speed;
    m_fastUntil = -1;
    m_anchor = now();
    m_real.restart();
}

void Car::takeRequests(std::chrono::milliseconds patience)
{
    const quint64 outer = m_request;
    for (std::optional<Mailbox::Request> request = m_requests.take(patience); request; request = m_requests.take(0ms)) {
        // What comes while a script waits does not make that a younger one.
        m_request = m_isInLine ? outer : request->number;
        doRequest(request->content);
    }
}

void Car::doRequest(const QVariantMap &request)
{
    const QString what = text(request, "do");
    if (what == QLatin1String("start")) {
        start(request);
    } else if (what == QLatin1String("play")) {
        play(request);
    } else if (what == QLatin1String("perform")) {
        // What a scenario does is its own; who wants something else takes over first.
        if (!m_isInLine) {
            m_upcoming.clear();
            perform(text(request, "line"), false);
            publish(true);
        }
    } else if (what == QLatin1String("speed")) {
        setSpeed(request.value(QStringLiteral("value")).toDouble());
    } else if (what == QLatin1String("step")) {
        setSpeed(0);
        const qint64 next = VirtualClock::installed()->nextDeadline();
        const qint64 offset = VirtualClock::installed()->now() - now();
        const qint64 step = m_upcoming.empty() ? std::numeric_limits<qint64>::max() : m_upcoming.front().time;
        m_fastUntil = next < 0 ? (m_upcoming.empty() ? -1 : step) : std::min(next - offset, step);
    } else if (what == QLatin1String("redo")) {
        redo();
    } else if (what == QLatin1String("takeOver") && !m_isInLine) {
        // Nothing ran that was to end. Handlers of signals may run later.
        m_scripts.engine().setInterrupted(false);
    }
    m_isChanged = true;
}

void Car::start(const QVariantMap &request)
{
    m_upcoming.clear();
    const QVariantList steps = request.value(QStringLiteral("steps")).toList();
    for (const QVariant &each : steps) {
        const QVariantMap step = each.toMap();
        m_upcoming.push_back({step.value(QStringLiteral("time")).toLongLong(), text(step, "line")});
    }
    m_isFast = true;
    for (int done = request.value(QStringLiteral("done")).toInt(); done > 0 && !m_upcoming.empty() && !isInterrupted(); --done)
        redo();
    const qint64 time = request.value(QStringLiteral("time")).toLongLong();
    while (now() < time && !isInterrupted()) {
        VirtualClock::installed()->advance(std::min(time - now(), longestPart));
        publish();
    }
    arrive();
    setSpeed(request.value(QStringLiteral("speed")).toDouble());
}

void Car::arrive()
{
    m_isFast = false;
    m_fastUntil = -1;
    publish(true);
    m_tell({{QStringLiteral("tell"), QStringLiteral("state")}, {QStringLiteral("arrived"), true}});
}

void Car::redo()
{
    // A line that waits is not over yet.
    if (m_upcoming.empty() || m_isInLine)
        return;
    const Step step = m_upcoming.front();
    m_upcoming.pop_front();
    if (step.time > now())
        VirtualClock::installed()->advance(step.time - now());
    perform(step.line, true);
    if (!m_isFast)
        setSpeed(m_speed);
}

void Car::perform(const QString &line, bool isExpected)
{
    static const QRegularExpression variable(QStringLiteral(R"(^\s*(?:var|const|let)\s+(\w+)\s*=\s*new AudioFocus\()"));
    allowScript();
    const qint64 time = now();
    const int clients = m_scripts.host().focusClients().size();
    m_requestsOfLine = 0;
    m_isInLine = true;
    // A line that waits would never end where time stands still.
    const bool wasFast = m_isFast;
    m_isFast = m_isFast || m_speed == 0;
    m_scripts.host().setProgramLines({line});
    const QJSValue outcome = m_scripts.perform(line);
    m_isInLine = false;
    m_isFast = wasFast;
    m_scripts.engine().setInterrupted(false);
    const QRegularExpressionMatch made = variable.match(line);
    // A name that the host thought up exists in recordings of scenarios only.
    if (m_scripts.host().focusClients().size() > clients)
        m_scripts.host().nameLastClient(made.captured(1));

    QString error = outcome.isError() ? QStringLiteral("stopped") : text(outcome.toVariant().toMap(), "text");
    const QString result = error.isEmpty() ? text(outcome.toVariant().toMap(), "result") : QString();
    // What threw and did nothing before is a slip of the pen. What did something has to be done again when it is replayed.
    if (error.isEmpty() || isExpected)
        recordStep(time, line, error.isEmpty() ? result : error, !error.isEmpty(), isExpected);
    else if (m_requestsOfLine > 0)
        recordStep(time, QStringLiteral("try { %1 } catch (error) { say(String(error)); }").arg(line), error, true, false);
    tellSteps();
    m_tell({{QStringLiteral("tell"), QStringLiteral("performed")},
            {QStringLiteral("line"), line},
            {QStringLiteral("result"), result},
            {QStringLiteral("error"), error}});
    m_isChanged = true;
}

void Car::recordStep(qint64 time, const QString &line, const QString &outcome, bool isFailed, bool isExpected)
{
    m_steps.append(QVariantMap{{QStringLiteral("time"), time},
                               {QStringLiteral("line"), line},
                               {QStringLiteral("outcome"), outcome},
                               {QStringLiteral("failed"), isFailed},
                               {QStringLiteral("expected"), isExpected}});
    // A few are told as they come. A scenario that does hundreds in a second is told in portions that an eye can follow.
    constexpr int fewSteps = 10;
    if (++m_stepsAtOnce <= fewSteps)
        tellList("steps", "steps", std::exchange(m_steps, {}));
    else if (m_stepsSince.elapsed() >= stepPeriod)
        tellSteps();
}

void Car::play(const QVariantMap &request)
{
    const ScenarioSource source(text(request, "text"));
    const QString file = text(request, "file");
    QJSEngine &engine = m_scripts.engine();
    allowScript();
    m_scripts.host().setProgramLines(source.lines());
    m_fastUntil = request.value(QStringLiteral("time")).toLongLong();
    m_speed = request.value(QStringLiteral("speed")).toDouble();
    if (m_fastUntil <= now())
        setSpeed(m_speed);

    QVariantMap told{{QStringLiteral("tell"), QStringLiteral("scenario")}, {QStringLiteral("file"), file}, {QStringLiteral("ended"), false}};
    m_tell(told);
    m_scenario = file;
    m_isInLine = true;
    const QJSValue scenario = engine.evaluate(QStringLiteral("(function(){") + source.text() + QStringLiteral("\n})"), file);
    const QJSValue thrown = scenario.isError() ? scenario : m_scripts.run(scenario);
    m_isInLine = false;
    engine.setInterrupted(false);
    m_scenario.clear();

    if (thrown.isError()) {
        told.insert(QStringLiteral("error"), isInterrupted() ? QString() : thrown.toString());
        told.insert(QStringLiteral("line"), isInterrupted() ? 0 : thrown.property(QStringLiteral("lineNumber")).toInt());
    } else if (!thrown.isNull()) {
        told.insert(QStringLiteral("error"), thrown.property(QStringLiteral("text")).toString());
        told.insert(QStringLiteral("line"), ScenarioStack::line(ScenarioStack::fromError(thrown.property(QStringLiteral("stack")).toString())));
    }
    told.insert(QStringLiteral("ended"), true);
    told.insert(QStringLiteral("failed"), m_result.failures());
    told.insert(QStringLiteral("passed"), m_result.checks.size() - m_result.failures());
    publish(true);
    m_tell(told);
    if (m_fastUntil > now()) {
        // It ended before the moment that was asked for.
        driveTo(m_fastUntil);
        arrive();
    }
    setSpeed(m_speed);
}

void Car::driveTo(qint64 time)
{
    const bool isOnTheWay = m_fastUntil >= 0;
    while (!m_upcoming.empty() && m_upcoming.front().time <= time && (m_speed > 0 || isOnTheWay))
        redo();
    // Its line may have taken longer.
    if (time > now()) {
        VirtualClock::installed()->advance(time - now());
        m_isChanged = true;
    }
    if (isOnTheWay && now() >= m_fastUntil)
        setSpeed(m_speed);
}

void Car::pass(qint64 milliseconds)
{
    const qint64 end = now() + milliseconds;
    bool isFirst = true;
    for (;;) {
        takeRequests(0ms);
        if (isInterrupted() || m_requests.isAtEnd())
            return;
        const qint64 target = std::min({end, reachable(), now() + longestPart});
        const bool wasOnTheWay = m_fastUntil > now();
        if (isFirst || target > now()) {
            VirtualClock::installed()->advance(target - now());
            m_isChanged = true;
        }
        isFirst = false;
        if (wasOnTheWay && now() >= m_fastUntil)
            arrive();
        if (wasOnTheWay && m_fastUntil < 0)
            setSpeed(m_speed);
        if (now() >= end)
            return;
        publish();
        if (target < end && reachable() <= now())
            takeRequests(tick);
    }
}

void Car::tellList(const char *what, const char *name, const QVariantList &list)
{
    for (int i = 0; i < list.size(); i += Messages::mostRows)
        m_tell({{QStringLiteral("tell"), QString::fromLatin1(what)}, {QString::fromLatin1(name), list.mid(i, Messages::mostRows)}});
}

void Car::tellSteps()
{
    tellList("steps", "steps", std::exchange(m_steps, {}));
    m_stepsSince.restart();
    m_stepsAtOnce = 0;
}

void Car::publish(bool isUrgent)
{
    if (!isUrgent && m_published.elapsed() < publishPeriod)
        return;
    m_published.restart();
    m_log.flush();
    if (isUrgent || m_stepsSince.elapsed() >= stepPeriod)
        tellSteps();
    if (!m_news.isEmpty()) {
        tellList("journal", "rows", m_news.takeRows());
        tellList("happened", "entries", m_news.takeEntries());
        m_isChanged = true;
    }
    if (!m_isChanged)
        return;
    m_isChanged = false;
    QVariantMap state = m_snapshot.changedSections(now());
    if (state.isEmpty())
        return;
    state.insert(QStringLiteral("tell"), QStringLiteral("state"));
    m_tell(state);
}

#include "scenariohost.h"

#include "headunit.h"
#include "powercut.h"
#include "qmlaudiofocus.h"
#include "scenariostack.h"
#include "scriptcall.h"
#include "scriptnames.h"
#include "settingsfile.h"
#include "timeline.h"

#include "virtualclock.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QTimer>
#include <QtQml/QJSEngine>
#include <QtQml/QQmlEngine>
#include <QtQml/qqml.h>

#include <algorithm>
#include <cmath>
#include <utility>

ScenarioHost::ScenarioHost(Timeline &shownIn, HeadUnit &drivenUnit, ScenarioResult &collected, QObject *parent)
    : QObject(parent)
    , m_timeline(shownIn)
    , m_unit(drivenUnit)
    , m_result(collected)
{
}

void ScenarioHost::setProgramLines(const QStringList &lines)
{
    m_lines = lines;
}

void ScenarioHost::setPassing(const std::function<void(qint64)> &passing)
{
    m_passing = passing;
}

void ScenarioHost::nameLastClient(const QString &variable)
{
    m_focusClients.last().variable = variable;
}

void ScenarioHost::say(const QString &text)
{
    m_timeline.heading(text);
}

void ScenarioHost::beginRequest(const QString &request)
{
    m_timeline.beginRequest(request);
}

void ScenarioHost::endRequest(const QString &requestResult)
{
    m_timeline.endRequest(requestResult);
}

void ScenarioHost::record(const QString &line, double begun, const QString &outcome)
{
    Q_EMIT recorded(line, qint64(begun), outcome);
}

void ScenarioHost::note(const QString &text)
{
    m_timeline.note(text);
}

int ScenarioHost::beginExpectation(const QString &stack)
{
    m_expectations.append({ScenarioStack::line(ScenarioStack::fromError(stack)), stack, {}, false});
    return m_expectations.size() - 1;
}

void ScenarioHost::readMatcher(int expectation, const QString &name)
{
    m_expectations[expectation].matcher = name;
}

void ScenarioHost::check(int expectation, bool passed, const QString &cause)
{
    m_expectations[expectation].checked = true;
    addCheck(expectation, passed, cause);
}

void ScenarioHost::addCheck(int expectation, bool passed, const QString &cause)
{
    const Expectation &expected = m_expectations.at(expectation);
    QString text = m_lines.value(expected.line - 1).trimmed();
    if (text.endsWith(QLatin1Char(';')))
        text.chop(1);
    // Checks stand in the order in which their expectations were reached.
    const auto behind = std::upper_bound(m_expectationOfCheck.cbegin(), m_expectationOfCheck.cend(), expectation);
    const int index = int(behind - m_expectationOfCheck.cbegin());
    m_expectationOfCheck.insert(index, expectation);
    ScenarioResult::Check check{expected.line, text, passed, {}, {}};
    if (!passed) {
        check.cause = cause;
        check.stack = ScenarioStack::shortened(ScenarioStack::fromError(expected.stack));
    }
    m_result.checks.insert(index, check);
    m_timeline.check(check);
}

void ScenarioHost::finishExpectations(bool endedByError, const QVector<ScenarioResult::Frame> &stack)
{
    for (int i = 0; i < m_expectations.size(); ++i) {
        const Expectation &expected = m_expectations.at(i);
        if (expected.checked)
            continue;
        if (endedByError && isUnderWay(i, stack))
            continue;
        if (expected.matcher.isEmpty())
            addCheck(i, false, QStringLiteral("nothing is checked: expect() needs a matcher, such as .toBe(value)"));
        else if (expected.matcher == QLatin1String("not"))
            addCheck(i, false, QStringLiteral("nothing is checked: .not needs a matcher, such as .not.toBe(value)"));
        else
            addCheck(i, false, QStringLiteral("nothing is checked: .%1 is not called").arg(expected.matcher));
    }
}

/// Whether an error came between expect() and its matcher: the engine looks at the matcher's arguments first.
bool ScenarioHost::isUnderWay(int expectation, const QVector<ScenarioResult::Frame> &errorStack) const
{
    const int line = m_expectations.at(expectation).line;
    const bool isLast = expectation + 1 == m_expectations.size();
    if (isLast && !m_lines.value(line - 1).trimmed().endsWith(QLatin1Char(';')))
        return true; // the statement may go on in the next line
    return std::any_of(errorStack.cbegin(), errorStack.cend(), [line](const ScenarioResult::Frame &frame) { return frame.line == line; });
}

bool ScenarioHost::isInterrupted() const
{
    const QJSEngine *const engine = qjsEngine(this);
    return engine && engine->isInterrupted();
}

void ScenarioHost::wait(double milliseconds)
{
    // A week of driving; also what a QTimer's int holds.
    constexpr double longest = 7.0 * 24 * 60 * 60 * 1000;
    if (!(milliseconds >= 0 && milliseconds <= longest) || std::trunc(milliseconds) != milliseconds) {
        throwScriptError(
            this, QJSValue::RangeError, QStringLiteral("wait() takes whole milliseconds from 0 to %1, not %2").arg(longest, 0, 'f', 0).arg(milliseconds));
        return;
    }
    if (m_passing) {
        m_passing(qint64(milliseconds));
        return;
    }
    if (simulator::VirtualClock *const clock = simulator::VirtualClock::installed()) {
        // In parts, so that a week of timers can be ended by a limit.
        constexpr qint64 longestPart = 60LL * 60 * 1000;
        auto left = qint64(milliseconds);
        do {
            const qint64 part = std::min(left, longestPart);
            clock->advance(part);
            left -= part;
        } while (left > 0 && !isInterrupted());
        return;
    }
    QEventLoop loop;
    constexpr int lookPeriod = 50;
    QTimer look;
    connect(&look, &QTimer::timeout, &loop, [this, &loop] {
        if (isInterrupted())
            loop.quit();
    });
    look.start(lookPeriod);
    QTimer::singleShot(int(milliseconds), Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

double ScenarioHost::now()
{
    return double(m_timeline.now());
}

void ScenarioHost::powerOn()
{
    m_unit.manager();
}

void ScenarioHost::powerOff()
{
    m_unit.switchOff();
}

bool ScenarioHost::requireOff(const QString &purpose)
{
    if (m_unit.isOn())
        throwScriptError(this, QJSValue::GenericError, QStringLiteral("switch the unit off before ") + purpose);
    return !m_unit.isOn();
}

void ScenarioHost::eraseSettings()
{
    if (!requireOff(QStringLiteral("erasing its settings")))
        return;
    const QString file = SettingsFile::path();
    if (QFile::exists(file) && !QFile::remove(file))
        throwScriptError(this, QJSValue::GenericError, QStringLiteral("%1 cannot be removed").arg(file));
}

void ScenarioHost::writeSettings(const QString &text)
{
    if (!requireOff(QStringLiteral("writing its settings")))
        return;
    QFile file(SettingsFile::path());
    const QByteArray bytes = text.toUtf8();
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size() || !file.flush())
        throwScriptError(this, QJSValue::GenericError, QStringLiteral("%1 cannot be written: %2").arg(file.fileName(), file.errorString()));
}

QString ScenarioHost::cutPowerWhileSaving(double byte, const QString &line)
{
    constexpr double most = 1e9;
    if (!(byte >= 0 && byte <= most) || std::trunc(byte) != byte) {
        throwScriptError(this, QJSValue::RangeError, QStringLiteral("cutPowerWhileSaving() takes a byte from 0, not %1").arg(byte));
        return {};
    }
    if (!requireOff(QStringLiteral("taking the power from one that saves")))
        return {};
    QString problem;
    const auto outcome = PowerCut::whileSaving(qint64(byte), line, problem);
    if (!outcome) {
        throwScriptError(this, QJSValue::GenericError, problem);
        return {};
    }
    return outcome->toText(qint64(byte));
}

bool ScenarioHost::isOn()
{
    return m_unit.isOn();
}

QObject *ScenarioHost::makeFocusClient()
{
    auto *const client = new QmlAudioFocus(this);
    QQmlEngine::setObjectOwnership(client, QQmlEngine::CppOwnership);
    const int index = m_focusClients.size();
    m_focusClients.append({client, {}, {}});
    connect(client, &QmlAudioFocus::focusChanged, this, [this, index](int change) { m_focusClients[index].changes.append(change); });
    return client;
}

QString ScenarioHost::variableFor(const QString &clientId)
{
    QString wanted;
    for (const QChar character : clientId) {
        if (character == QLatin1Char('_') || (character.unicode() < 128 && character.isLetterOrNumber())) // NOLINT(cppcoreguidelines-avoid-magic-numbers)
            wanted += character;
    }
    if (wanted.isEmpty() || wanted.at(0).isDigit())
        wanted.prepend(QStringLiteral("client"));
    const auto isTaken = [this](const QString &name) {
        return scriptnames::isTaken(name)
            || std::any_of(m_focusClients.cbegin(), m_focusClients.cend(), [&name](const FocusClient &other) { return other.variable == name; });
    };
    QString variable = wanted;
    for (int number = 2; isTaken(variable); ++number)
        variable = wanted + QString::number(number);
    nameLastClient(variable);
    return variable;
}

void ScenarioHost::deliverFocusChanges()
{
    for (const FocusClient &known : std::as_const(m_focusClients))
        QCoreApplication::sendPostedEvents(known.client, QEvent::MetaCall);
}

#include "playsummary.h"

#include "console.h"
#include "viewtext.h"

#include <algorithm>

using Console::Style;

namespace
{

QString counted(int count, const char *what)
{
    return QStringLiteral("%1 %2%3").arg(QString::number(count), QLatin1String(what), count == 1 ? QString() : QStringLiteral("s"));
}

QString secondsText(qint64 milliseconds)
{
    constexpr double millisecondsPerSecond = 1000;
    return QString::number(double(milliseconds) / millisecondsPerSecond, 'f', 3) + QStringLiteral(" s");
}

QString failureLine(const QString &file, int line, const QString &what, const QVector<ScenarioResult::Frame> &stack)
{
    QString text = file;
    // Without a line there is none to be blamed.
    if (line > 0)
        text += QStringLiteral(":%1").arg(line);
    text += QStringLiteral(": ") + what + QLatin1Char('\n');
    for (int i = 1; i < stack.size(); ++i) {
        const QString called = ViewText::calledFunction(stack, i);
        if (stack.at(i).line == 0)
            text += QStringLiteral("  ") + stack.at(i).function + QLatin1Char('\n');
        else
            text += QStringLiteral("  %1:%2: which called %3\n").arg(file, QString::number(stack.at(i).line), called);
    }
    return text;
}

} // namespace

bool PlaySummary::isPassed(const ScenarioRun::Outcome &outcome, bool isStrict)
{
    return outcome.problem.isEmpty() && !outcome.isInterrupted && outcome.result.succeeded() && !(isStrict && outcome.result.checks.isEmpty());
}

QString PlaySummary::toText(const ScenarioRun::Outcome &outcome, bool isStrict)
{
    const ScenarioResult &result = outcome.result;
    const QString failed = Console::styled(Style::Bad, QStringLiteral("Failed"));
    if (!outcome.problem.isEmpty())
        return QStringLiteral("%1: %2: %3.\n").arg(failed, result.file, outcome.problem);

    const QString time = secondsText(result.duration);
    const QString checks = counted(result.checks.size(), "expectation");
    if (result.succeeded() && result.checks.isEmpty()) {
        const QString verdict = isStrict ? failed : Console::styled(Style::Good, QStringLiteral("Passed"));
        return QStringLiteral("%1: %2: played in %3, but expects nothing, so nothing was checked.\n").arg(verdict, result.file, time);
    }
    if (result.succeeded() && !outcome.isInterrupted)
        return Console::styled(Style::Good, QStringLiteral("Passed")) + QStringLiteral(": %1: %2 held in %3.\n").arg(result.file, checks, time);

    QString text;
    for (const ScenarioResult::Check &check : result.checks) {
        if (!check.passed)
            text += failureLine(result.file, check.line, check.cause, check.stack);
    }
    if (outcome.isInterrupted) {
        return text + Console::styled(Style::Bad, QStringLiteral("Interrupted"))
            + QStringLiteral(": %1: %2 of %3 failed until then.\n").arg(result.file, QString::number(result.failures()), checks);
    }
    if (!result.error.isEmpty())
        text += failureLine(result.file, result.errorLine, result.error, result.errorStack);
    const QString stopped = result.error.isEmpty() ? QString() : QStringLiteral("; stopped by an error");
    return text + failed + QStringLiteral(": %1: %2 of %3 failed in %4%5.\n").arg(result.file, QString::number(result.failures()), checks, time, stopped);
}

QString PlaySummary::toText(const QVector<ScenarioRun::Outcome> &outcomes, int planned, bool isStrict)
{
    int passed = 0;
    int expectations = 0;
    int failures = 0;
    bool isInterrupted = false;
    for (const ScenarioRun::Outcome &outcome : outcomes) {
        passed += isPassed(outcome, isStrict) ? 1 : 0;
        expectations += outcome.result.checks.size();
        failures += outcome.result.failures();
        isInterrupted = isInterrupted || outcome.isInterrupted;
    }
    const bool allPassed = passed == planned;
    const QString verdict = isInterrupted ? QStringLiteral("Interrupted") : allPassed ? QStringLiteral("Passed") : QStringLiteral("Failed");
    const QString checks = counted(expectations, "expectation");
    QString text = QLatin1Char('\n') + Console::styled(allPassed ? Style::Good : Style::Bad, verdict);
    if (allPassed)
        return text + QStringLiteral(": all of %1, %2 held.\n").arg(counted(planned, "run"), checks);
    text += QStringLiteral(": %1 of %2 passed, %3 of %4 failed").arg(QString::number(passed), counted(planned, "run"), QString::number(failures), checks);
    if (outcomes.size() < planned)
        text += QStringLiteral(", %1 not played").arg(planned - outcomes.size());
    return text + QStringLiteral(".\n");
}

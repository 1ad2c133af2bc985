#include "viewtext.h"

#include "console.h"

QString ViewText::time(qint64 milliseconds)
{
    constexpr int millisecondsPerSecond = 1000;
    constexpr int secondsPerMinute = 60;
    const qint64 seconds = milliseconds / millisecondsPerSecond;
    const QString text = QStringLiteral("%1:%2.%3")
                             .arg(seconds / secondsPerMinute)
                             .arg(seconds % secondsPerMinute, 2, 10, QLatin1Char('0'))
                             .arg(milliseconds % millisecondsPerSecond, 3, 10, QLatin1Char('0'));
    constexpr int gap = 2;
    return text.rightJustified(column - gap) + QString(gap, QLatin1Char(' '));
}

QString ViewText::paragraph(const QString &text, int hanging)
{
    return Console::wrapped(text, column, hanging).mid(column);
}

QString ViewText::timer(const QString &name)
{
    return name.isEmpty() ? QStringLiteral("timer") : QStringLiteral("timer: ") + name;
}

QString ViewText::failure(const ScenarioResult::Check &check)
{
    return QStringLiteral("FAILED: line %1: %2: %3%4").arg(QString::number(check.line), check.text, check.cause, way(check.stack));
}

QString ViewText::way(const QVector<ScenarioResult::Frame> &stack)
{
    QString text;
    for (int i = 1; i < stack.size(); ++i) {
        if (stack.at(i).line == 0)
            text += QStringLiteral(", ") + stack.at(i).function;
        else
            text += QStringLiteral(", in %1 called from line %2").arg(calledFunction(stack, i)).arg(stack.at(i).line);
    }
    return text;
}

QString ViewText::calledFunction(const QVector<ScenarioResult::Frame> &stack, int caller)
{
    const ScenarioResult::Frame &called = stack.at(caller - 1);
    if (called.line == 0)
        return QStringLiteral("them");
    return called.function.isEmpty() ? QStringLiteral("a function") : called.function + QStringLiteral("()");
}

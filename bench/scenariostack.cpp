#include "scenariostack.h"

#include <QtCore/QLocale>
#include <QtCore/QRegularExpression>

namespace
{

/// Only the outermost place is outside any function; other functions without a name are given one.
ScenarioStack::Frames named(ScenarioStack::Frames frames)
{
    for (int i = 0; i + 1 < frames.size(); ++i) {
        if (frames[i].function.isEmpty())
            frames[i].function = QStringLiteral("(anonymous)");
    }
    return frames;
}

} // namespace

ScenarioStack::Frames ScenarioStack::fromError(const QString &stack)
{
    // The bench's own functions are in "qrc:", those that were made from texts at run time in "eval code" or nowhere.
    static const QRegularExpression form(QStringLiteral("^([^@]*)@file:(?!qrc:).*:(\\d+)$"));
    Frames frames;
    const QVector<QStringRef> lines = stack.splitRef(QLatin1Char('\n'));
    for (const QStringRef &line : lines) {
        const QRegularExpressionMatch match = form.match(line);
        // A function that was not yet running when the stack was full has line 0.
        if (match.hasMatch() && match.capturedRef(2) != QLatin1String("0"))
            frames.append({match.captured(1), match.capturedRef(2).toInt()});
    }
    return named(frames);
}

ScenarioStack::Frames ScenarioStack::fromDebugger(const QString &stack)
{
    static const QRegularExpression form(QStringLiteral("func=\"(.*?)\",file=\"(.*?)\",fullname=\".*?\",line=\"(\\d+)\""));
    Frames frames;
    QRegularExpressionMatchIterator matches = form.globalMatch(stack);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        const QStringRef file = match.capturedRef(2);
        const bool outside = file.isEmpty() || file == QLatin1String("eval code") || file.startsWith(QLatin1String("qrc:"));
        if (!outside && match.capturedRef(3) != QLatin1String("0"))
            frames.append({match.captured(1), match.capturedRef(3).toInt()});
    }
    return named(frames);
}

int ScenarioStack::line(const Frames &frames)
{
    return frames.isEmpty() ? 0 : frames.first().line;
}

ScenarioStack::Frames ScenarioStack::shortened(const Frames &frames)
{
    constexpr int inner = 8;
    constexpr int outer = 4;
    const int leftOut = frames.size() - inner - outer;
    if (leftOut <= 1)
        return frames;
    Frames result = frames.mid(0, inner);
    result.append({QStringLiteral("\u2026 %1 more").arg(QLocale(QLocale::English).toString(leftOut)), 0});
    return result + frames.mid(frames.size() - outer);
}

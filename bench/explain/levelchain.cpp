#include "levelchain.h"

#include "console.h"
#include "heard.h"
#include "levelalternatives.h"
#include "levellinks.h"
#include "levelorigins.h"
#include "policytext.h"

#include <QtCore/QJsonArray>

#include <cmath>

using Console::Style;

namespace
{

QString row(const QString &label, const QString &text, Style style = Style::Plain)
{
    constexpr int column = 16;
    return label.leftJustified(column) + Console::styled(style, Console::wrapped(text, column, column).mid(column)) + QLatin1Char('\n');
}

/// JSON has no infinity: silence is null, as is what is not known.
QJsonValue levelValue(const std::optional<double> &level)
{
    return level && std::isfinite(*level) ? QJsonValue(*level) : QJsonValue();
}

} // namespace

LevelChain LevelChain::of(const LevelOrigins &origins, const QString &track, const QString &source, const QString &at)
{
    LevelChain chain;
    chain.source = source;
    chain.track = track;
    chain.at = at;
    if (origins.take(track, source))
        chain.level = Heard::levelOf(track, source);
    const LevelLinks links(origins, track, source);
    chain.links = links.all();
    chain.outcome = links.outcome(chain.level);
    chain.otherwise = LevelAlternatives(origins, track, source, chain.level).all();
    return chain;
}

QString LevelChain::toText() const
{
    QString title = QStringLiteral("%1 on track %2").arg(LevelLinks::named(source), track);
    if (!at.isEmpty())
        title += QStringLiteral(", at ") + at;
    QString text = Console::styled(Style::Heading, Console::wrapped(title, 0, 2)) + QLatin1Char('\n');
    for (const Link &link : links) {
        const QString place = link.place.toText();
        text += row(link.what, place.isEmpty() ? link.text : QStringLiteral("%1 (%2)").arg(link.text, place), link.isKnown ? Style::Plain : Style::Faint);
    }
    text += row(QStringLiteral("so"), outcome, Style::Good);
    for (const Otherwise &one : otherwise)
        text += Console::wrapped(one.what + QStringLiteral(": ") + one.text, 2, 4) + QLatin1Char('\n');
    return text;
}

QJsonObject LevelChain::toJson() const
{
    QJsonArray allLinks;
    for (const Link &link : links) {
        allLinks.append(QJsonObject{
            {QStringLiteral("what"), link.what},
            {QStringLiteral("value"), link.value},
            {QStringLiteral("line"), link.place.isKnown() ? QJsonValue(qint64(link.place.line)) : QJsonValue()},
            {QStringLiteral("at"), link.place.isKnown() ? QJsonValue(LogTime::toText(link.place.moment)) : QJsonValue()},
            {QStringLiteral("cause"), link.place.isKnown() ? QJsonValue(link.place.cause) : QJsonValue()},
            {QStringLiteral("text"), link.text},
            {QStringLiteral("known"), link.isKnown},
        });
    }
    QJsonArray others;
    for (const Otherwise &one : otherwise) {
        others.append(QJsonObject{
            {QStringLiteral("what"), one.what},
            {QStringLiteral("text"), one.text},
            {QStringLiteral("level"), levelValue(one.level)},
            {QStringLiteral("known"), one.level.has_value()},
        });
    }
    return {
        {QStringLiteral("source"), source},
        {QStringLiteral("name"), sourceText(source)},
        {QStringLiteral("track"), track},
        {QStringLiteral("at"), at},
        {QStringLiteral("level"), levelValue(level)},
        {QStringLiteral("known"), level.has_value()},
        {QStringLiteral("text"), outcome},
        {QStringLiteral("links"), allLinks},
        {QStringLiteral("otherwise"), others},
    };
}

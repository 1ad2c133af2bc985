#include "jsonview.h"

#include "console.h"
#include "heard.h"
#include "policytext.h"
#include "timelineevent.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <cmath>
#include <utility>

namespace
{

constexpr std::pair<TimelineEvent::Kind, const char *> kindNames[] = {
    {TimelineEvent::Kind::Heading, "heading"},
    {TimelineEvent::Kind::Note, "note"},
    {TimelineEvent::Kind::Request, "request"},
    {TimelineEvent::Kind::Timer, "timer"},
    {TimelineEvent::Kind::Call, "call"},
    {TimelineEvent::Kind::Status, "status"},
    {TimelineEvent::Kind::Check, "check"},
    {TimelineEvent::Kind::Log, "log"},
};

QString kindName(TimelineEvent::Kind kind)
{
    for (const auto &[candidate, name] : kindNames) {
        if (candidate == kind)
            return QLatin1String(name);
    }
    return {};
}

/// JSON has no infinity: null for silence, and no member where the level is not known.
QJsonValue levelOf(const Heard::Sound &sound)
{
    if (std::isnan(sound.level))
        return QJsonValue::Undefined;
    return std::isfinite(sound.level) ? QJsonValue(sound.level) : QJsonValue();
}

QJsonArray soundsOf(const Heard &heard)
{
    QJsonArray sounds;
    for (const Heard::Sound &sound : heard.sounds) {
        sounds.append(QJsonObject{
            {QStringLiteral("track"), sound.track},
            {QStringLiteral("source"), sound.source},
            {QStringLiteral("name"), sourceText(sound.source)},
            {QStringLiteral("level"), levelOf(sound)},
            {QStringLiteral("muted"), sound.isMuted},
            {QStringLiteral("duckedTo"), sound.duckedTo > 0 ? QJsonValue(sound.duckedTo) : QJsonValue()},
        });
    }
    return sounds;
}

} // namespace

JsonView::JsonView(const QString &played)
    : m_scenario(played)
{
}

void JsonView::show(const TimelineEvent &event, const Heard &heard, bool isNew)
{
    Console::out(QString::fromUtf8(line(wholeObject(object(event)))));
    if (!isNew)
        return;
    Console::out(QString::fromUtf8(line(wholeObject({
        {QStringLiteral("time"), event.time},
        {QStringLiteral("event"), QStringLiteral("heard")},
        {QStringLiteral("text"), heard.toText(heard)},
        {QStringLiteral("sounds"), soundsOf(heard)},
    }))));
}

QJsonObject JsonView::origin() const
{
    return {{QStringLiteral("scenario"), m_scenario}};
}

QJsonObject JsonView::wholeObject(const QJsonObject &object) const
{
    QJsonObject whole = origin();
    for (auto field = object.constBegin(); field != object.constEnd(); ++field)
        whole.insert(field.key(), field.value());
    return whole;
}

QByteArray JsonView::line(const QJsonObject &object)
{
    return Console::harmlessJson(QJsonDocument(object).toJson(QJsonDocument::Compact)) + '\n';
}

QJsonObject JsonView::object(const TimelineEvent &event)
{
    QJsonObject result{
        {QStringLiteral("time"), event.time},
        {QStringLiteral("event"), kindName(event.kind)},
        {QStringLiteral("text"), event.text},
    };
    if (!event.result.isEmpty())
        result.insert(QStringLiteral("result"), event.result);
    if (event.kind == TimelineEvent::Kind::Check) {
        result.insert(QStringLiteral("line"), event.check.line);
        result.insert(QStringLiteral("passed"), event.check.passed);
        if (!event.check.passed)
            result.insert(QStringLiteral("cause"), event.check.cause);
    }
    if (event.isStartUp)
        result.insert(QStringLiteral("startUp"), true);
    QJsonArray caused;
    for (const TimelineEvent &each : event.caused)
        caused.append(object(each));
    if (!caused.isEmpty())
        result.insert(QStringLiteral("caused"), caused);
    return result;
}

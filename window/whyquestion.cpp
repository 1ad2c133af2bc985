#include "whyquestion.h"

#include "exitstatus.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

namespace
{

constexpr int delay = 60; // ms

QVariantList linksOf(const QJsonArray &links)
{
    QVariantList rows;
    for (const QJsonValue &each : links) {
        const QJsonObject link = each.toObject();
        QString place;
        if (!link.value(QLatin1String("line")).isNull())
            place = WhyQuestion::tr("line %1, %2, %3")
                        .arg(link.value(QLatin1String("line")).toInt())
                        .arg(link.value(QLatin1String("at")).toString(), link.value(QLatin1String("cause")).toString());
        rows.append(QVariantMap{
            {QStringLiteral("what"), link.value(QLatin1String("what")).toString()},
            {QStringLiteral("text"), link.value(QLatin1String("text")).toString()},
            {QStringLiteral("place"), place},
            {QStringLiteral("known"), link.value(QLatin1String("known")).toBool()},
        });
    }
    return rows;
}

} // namespace

WhyQuestion::WhyQuestion(QObject *parent)
    : QObject(parent)
{
    m_delay.setSingleShot(true);
    m_delay.setInterval(delay);
    connect(&m_delay, &QTimer::timeout, this, &WhyQuestion::start);
    connect(&m_query, &BenchQuery::answered, this, &WhyQuestion::take);
}

void WhyQuestion::ask(const QString &log, const QString &source, double time)
{
    constexpr double millisecondsPerSecond = 1000;
    m_arguments = QStringList{QStringLiteral("explain"),
                              QStringLiteral("--json"),
                              QStringLiteral("--why"),
                              source,
                              QStringLiteral("--at"),
                              QStringLiteral("+%1ms").arg(qRound64(time * millisecondsPerSecond)),
                              QStringLiteral("--"),
                              log};
    if (!m_delay.isActive())
        m_delay.start();
}

void WhyQuestion::start()
{
    m_query.ask(m_arguments);
    Q_EMIT changed();
}

void WhyQuestion::clear(const QString &problem)
{
    m_delay.stop();
    m_query.cancel();
    m_answer.clear();
    m_problem = problem;
    Q_EMIT changed();
}

void WhyQuestion::take(int status, const QByteArray &output, const QString &said)
{
    const QJsonObject answer = QJsonDocument::fromJson(output).object();
    m_answer.clear();
    m_problem = status == Success && !answer.isEmpty() ? QString() : said;
    if (m_problem.isEmpty()) {
        m_answer = {
            {QStringLiteral("name"), answer.value(QLatin1String("name")).toString()},
            {QStringLiteral("at"), answer.value(QLatin1String("at")).toString()},
            {QStringLiteral("outcome"), answer.value(QLatin1String("text")).toString()},
            {QStringLiteral("links"), linksOf(answer.value(QLatin1String("links")).toArray())},
            {QStringLiteral("otherwise"), answer.value(QLatin1String("otherwise")).toArray().toVariantList()},
        };
    }
    Q_EMIT changed();
}

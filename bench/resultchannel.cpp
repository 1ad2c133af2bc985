#include "resultchannel.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <sys/mman.h>
#include <unistd.h>

namespace
{

// Members of the lines.
QString startMember()
{
    return QStringLiteral("started");
}

QString checkMember()
{
    return QStringLiteral("check");
}

QString endMember()
{
    return QStringLiteral("end");
}

QJsonArray toJson(const QVector<ScenarioResult::Frame> &stack)
{
    QJsonArray array;
    for (const ScenarioResult::Frame &frame : stack)
        array.append(QJsonObject{{QStringLiteral("function"), frame.function}, {QStringLiteral("line"), frame.line}});
    return array;
}

QVector<ScenarioResult::Frame> stackOf(const QJsonValue &json)
{
    QVector<ScenarioResult::Frame> stack;
    const QJsonArray array = json.toArray();
    for (const QJsonValue &frame : array)
        stack.append({frame[QStringLiteral("function")].toString(), frame[QStringLiteral("line")].toInt()});
    return stack;
}

QJsonObject toJson(const ScenarioResult::Check &check)
{
    return {
        {QStringLiteral("line"), check.line},
        {QStringLiteral("text"), check.text},
        {QStringLiteral("passed"), check.passed},
        {QStringLiteral("cause"), check.cause},
        {QStringLiteral("stack"), toJson(check.stack)},
    };
}

ScenarioResult::Check checkOf(const QJsonValue &json)
{
    return {json[QStringLiteral("line")].toInt(),
            json[QStringLiteral("text")].toString(),
            json[QStringLiteral("passed")].toBool(),
            json[QStringLiteral("cause")].toString(),
            stackOf(json[QStringLiteral("stack")])};
}

} // namespace

ResultChannel::ResultChannel()
    : m_file(memfd_create("results", 0))
{
}

ResultChannel::ResultChannel(int inherited)
    : m_file(inherited)
{
}

ResultChannel::~ResultChannel()
{
    if (m_file >= 0)
        close(m_file);
}

int ResultChannel::descriptor() const
{
    return m_file;
}

void ResultChannel::writeStart()
{
    write(QJsonDocument(QJsonObject{{startMember(), true}}).toJson(QJsonDocument::Compact));
}

void ResultChannel::writeCheck(const ScenarioResult::Check &check)
{
    write(QJsonDocument(QJsonObject{{checkMember(), toJson(check)}}).toJson(QJsonDocument::Compact));
}

void ResultChannel::writeEnd(const ScenarioResult &result)
{
    QJsonArray checks;
    for (const ScenarioResult::Check &check : result.checks)
        checks.append(toJson(check));
    const QJsonObject object{
        {QStringLiteral("checks"), checks},
        {QStringLiteral("error"), result.error},
        {QStringLiteral("errorLine"), result.errorLine},
        {QStringLiteral("errorStack"), toJson(result.errorStack)},
        {QStringLiteral("duration"), result.duration},
    };
    write(QJsonDocument(QJsonObject{{endMember(), object}}).toJson(QJsonDocument::Compact));
}

void ResultChannel::write(const QByteArray &line)
{
    QFile output;
    if (output.open(m_file, QIODevice::WriteOnly | QIODevice::Unbuffered))
        output.write(line + '\n');
}

ResultChannel::Received ResultChannel::read() const
{
    Received received;
    QFile input;
    if (lseek(m_file, 0, SEEK_SET) != 0 || !input.open(m_file, QIODevice::ReadOnly))
        return received;
    ScenarioResult &result = received.result;
    const QList<QByteArray> lines = input.readAll().split('\n');
    for (const QByteArray &line : lines) {
        const QJsonObject object = QJsonDocument::fromJson(line).object();
        const QJsonValue check = object.value(checkMember());
        const QJsonValue end = object.value(endMember());
        if (object.contains(startMember())) {
            received.hasStarted = true;
        } else if (check.isObject()) {
            result.checks.append(checkOf(check));
        } else if (end.isObject()) {
            received.hasEnded = true;
            // All again, in the order of the scenario: some are found only at its end.
            result.checks.clear();
            const QJsonArray checks = end[QStringLiteral("checks")].toArray();
            for (const QJsonValue &each : checks)
                result.checks.append(checkOf(each));
            result.error = end[QStringLiteral("error")].toString();
            result.errorLine = end[QStringLiteral("errorLine")].toInt();
            result.errorStack = stackOf(end[QStringLiteral("errorStack")]);
            result.duration = qint64(end[QStringLiteral("duration")].toDouble());
        }
    }
    return received;
}

#include "junitreport.h"

#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>
#include <QtCore/QXmlStreamWriter>

namespace
{

constexpr double millisecondsPerSecond = 1000;

/// XML has no place for most control characters, not even escaped.
QString printable(const QString &text)
{
    QString result = text;
    for (QChar &character : result) {
        if (character < QLatin1Char(' ') && character != QLatin1Char('\t') && character != QLatin1Char('\n'))
            character = QLatin1Char('?');
    }
    return result;
}

} // namespace

JUnitReport::JUnitReport(const ScenarioResult &reported)
    : result(reported)
{
}

QByteArray JUnitReport::toXml() const
{
    const QString suite = QFileInfo(result.file).completeBaseName();
    const bool broken = !result.error.isEmpty();
    const QString tests = QString::number(result.checks.size() + (broken ? 1 : 0));
    const QString failures = QString::number(result.failures());
    const QString errors = QString::number(broken ? 1 : 0);

    QByteArray xml;
    QXmlStreamWriter writer(&xml);
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeStartElement(QStringLiteral("testsuites"));
    writer.writeAttribute(QStringLiteral("tests"), tests);
    writer.writeAttribute(QStringLiteral("failures"), failures);
    writer.writeAttribute(QStringLiteral("errors"), errors);
    writer.writeStartElement(QStringLiteral("testsuite"));
    writer.writeAttribute(QStringLiteral("name"), suite);
    writer.writeAttribute(QStringLiteral("tests"), tests);
    writer.writeAttribute(QStringLiteral("failures"), failures);
    writer.writeAttribute(QStringLiteral("errors"), errors);
    writer.writeAttribute(QStringLiteral("time"), QString::number(double(result.duration) / millisecondsPerSecond, 'f', 3));

    const auto startCase = [&](const QString &name, int line) {
        writer.writeStartElement(QStringLiteral("testcase"));
        writer.writeAttribute(QStringLiteral("classname"), suite);
        writer.writeAttribute(QStringLiteral("name"), printable(name));
        writer.writeAttribute(QStringLiteral("file"), result.file);
        writer.writeAttribute(QStringLiteral("line"), QString::number(line));
    };
    for (const ScenarioResult::Check &check : result.checks) {
        startCase(QStringLiteral("line %1: %2").arg(QString::number(check.line), check.text), check.line);
        if (!check.passed) {
            writer.writeStartElement(QStringLiteral("failure"));
            writer.writeAttribute(QStringLiteral("message"), printable(check.cause));
            writer.writeCharacters(QStringLiteral("%1:%2: %3").arg(result.file, QString::number(check.line), printable(check.cause)));
            writer.writeEndElement();
        }
        writer.writeEndElement();
    }
    if (broken) {
        startCase(QStringLiteral("plays to its end"), result.errorLine);
        writer.writeStartElement(QStringLiteral("error"));
        writer.writeAttribute(QStringLiteral("message"), printable(result.error));
        writer.writeCharacters(QStringLiteral("%1:%2: %3").arg(result.file, QString::number(result.errorLine), printable(result.error)));
        writer.writeEndElement();
        writer.writeEndElement();
    }
    writer.writeEndDocument();
    return xml;
}

bool JUnitReport::write(const QString &file, QString &error) const
{
    QSaveFile output(file);
    const QByteArray xml = toXml();
    if (output.open(QIODevice::WriteOnly) && output.write(xml) == xml.size() && output.commit())
        return true;
    error = output.errorString();
    return false;
}

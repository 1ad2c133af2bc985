#include "junitreport.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>
#include <QtCore/QXmlStreamWriter>

#include <unistd.h>

namespace
{

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

/// JUnit's times are seconds.
QString seconds(qint64 milliseconds)
{
    constexpr double millisecondsPerSecond = 1000;
    return QString::number(double(milliseconds) / millisecondsPerSecond, 'f', 3);
}

/// The case in which a run fails as a whole, empty where it did not.
QString brokenBy(const ScenarioRun::Outcome &outcome, bool isStrict)
{
    if (!outcome.problem.isEmpty())
        return outcome.problem;
    if (!outcome.result.error.isEmpty())
        return outcome.result.error;
    return isStrict && outcome.result.checks.isEmpty() ? QStringLiteral("the scenario expects nothing") : QString();
}

struct Counts
{
    int tests = 0;
    int failures = 0;
    int errors = 0;
    qint64 milliseconds = 0;

    void add(const Counts &other)
    {
        tests += other.tests;
        failures += other.failures;
        errors += other.errors;
        milliseconds += other.milliseconds;
    }

    void write(QXmlStreamWriter &writer) const
    {
        writer.writeAttribute(QStringLiteral("tests"), QString::number(tests));
        writer.writeAttribute(QStringLiteral("failures"), QString::number(failures));
        writer.writeAttribute(QStringLiteral("errors"), QString::number(errors));
        writer.writeAttribute(QStringLiteral("time"), seconds(milliseconds));
    }
};

Counts countsOf(const ScenarioRun::Outcome &outcome, bool isStrict)
{
    const int errors = brokenBy(outcome, isStrict).isEmpty() ? 0 : 1;
    return {outcome.result.checks.size() + errors, outcome.result.failures(), errors, outcome.milliseconds};
}

void writeProperty(QXmlStreamWriter &writer, const QString &name, const QString &value)
{
    writer.writeEmptyElement(QStringLiteral("property"));
    writer.writeAttribute(QStringLiteral("name"), name);
    writer.writeAttribute(QStringLiteral("value"), value);
}

void writeSuite(QXmlStreamWriter &writer, const ScenarioRun::Outcome &outcome, bool isStrict)
{
    const ScenarioResult &result = outcome.result;
    const QString suite = QFileInfo(result.file).completeBaseName();
    writer.writeStartElement(QStringLiteral("testsuite"));
    writer.writeAttribute(QStringLiteral("name"), suite);
    countsOf(outcome, isStrict).write(writer);
    writer.writeStartElement(QStringLiteral("properties"));
    writeProperty(writer, QStringLiteral("virtual time"), seconds(result.duration));
    writer.writeEndElement();

    const auto startCase = [&](const QString &name, int line) {
        writer.writeStartElement(QStringLiteral("testcase"));
        writer.writeAttribute(QStringLiteral("classname"), suite);
        writer.writeAttribute(QStringLiteral("name"), printable(name));
        writer.writeAttribute(QStringLiteral("file"), result.file);
        writer.writeAttribute(QStringLiteral("line"), QString::number(line));
    };
    const auto complain = [&](const QString &element, int line, const QString &cause) {
        writer.writeStartElement(element);
        writer.writeAttribute(QStringLiteral("message"), printable(cause));
        writer.writeCharacters(QStringLiteral("%1:%2: %3").arg(result.file, QString::number(line), printable(cause)));
        writer.writeEndElement();
    };
    for (const ScenarioResult::Check &check : result.checks) {
        startCase(QStringLiteral("line %1: %2").arg(QString::number(check.line), check.text), check.line);
        if (!check.passed)
            complain(QStringLiteral("failure"), check.line, check.cause);
        writer.writeEndElement();
    }
    const QString broken = brokenBy(outcome, isStrict);
    if (!broken.isEmpty()) {
        startCase(QStringLiteral("plays to its end"), result.errorLine);
        complain(QStringLiteral("error"), result.errorLine, broken);
        writer.writeEndElement();
    }
    writer.writeEndElement();
}

} // namespace

JUnitReport::JUnitReport(const QVector<ScenarioRun::Outcome> &reported, bool strict)
    : m_outcomes(reported)
    , m_isStrict(strict)
{
}

QByteArray JUnitReport::toXml() const
{
    Counts all;
    for (const ScenarioRun::Outcome &outcome : m_outcomes)
        all.add(countsOf(outcome, m_isStrict));

    QByteArray xml;
    QXmlStreamWriter writer(&xml);
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeStartElement(QStringLiteral("testsuites"));
    all.write(writer);
    for (const ScenarioRun::Outcome &outcome : m_outcomes)
        writeSuite(writer, outcome, m_isStrict);
    writer.writeEndDocument();
    return xml;
}

bool JUnitReport::write(const QString &file, QString &error) const
{
    const QByteArray xml = toXml();
    const auto writeTo = [&xml, &error](QFileDevice &output) {
        // The system tells of a full disk when the bytes are really written.
        if (output.write(xml) == xml.size() && output.flush())
            return true;
        error = output.errorString();
        return false;
    };
    if (file == QLatin1String("-")) {
        QFile output;
        return output.open(STDOUT_FILENO, QIODevice::WriteOnly | QIODevice::Unbuffered) && writeTo(output);
    }
    // A device or a pipe is there already, and must not be replaced by a file.
    if (QFileInfo::exists(file) && !QFileInfo(file).isFile()) {
        QFile output(file);
        if (!output.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
            error = output.errorString();
            return false;
        }
        return writeTo(output);
    }
    QSaveFile output(file);
    if (output.open(QIODevice::WriteOnly) && writeTo(output) && output.commit())
        return true;
    error = output.errorString();
    return false;
}

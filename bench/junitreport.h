#ifndef JUNITREPORT_H
#define JUNITREPORT_H

#include "scenarioresult.h"

#include <QtCore/QByteArray>

/**
 * A scenario's result as the JUnit XML that CI servers read: one suite, one test case for each expect(), and one more, in error,
 * where a script error ended the scenario.
 */
class JUnitReport
{
public:
    explicit JUnitReport(const ScenarioResult &reported);

    QByteArray toXml() const;

    /// False when the file cannot be written; @p error then says why.
    bool write(const QString &file, QString &error) const;

private:
    const ScenarioResult &result;
};

#endif

#ifndef JUNITREPORT_H
#define JUNITREPORT_H

#include "scenariorun.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QVector>

/// Results in the XML that CI servers read: a suite for each run, in which each expectation is a test case, and so is playing to the end.
class JUnitReport
{
public:
    /// @param strict a scenario that expects nothing has failed
    JUnitReport(const QVector<ScenarioRun::Outcome> &reported, bool strict);

    QByteArray toXml() const;

    /**
     * Writes it: beside the file first, so that a file is there whole or as it was. To the standard output for "-".
     *
     * @param error receives why it could not be written
     */
    bool write(const QString &file, QString &error) const;

private:
    const QVector<ScenarioRun::Outcome> m_outcomes;
    const bool m_isStrict;
};

#endif

#ifndef SCENARIOSTEP_H
#define SCENARIOSTEP_H

#include "loggedrequest.h"

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

/// A request of a scenario, or a wait in which timers run out: what the platform is to refuse before it, and what it has then been sent.
class ScenarioStep
{
public:
    /// The calls that it makes, in their order.
    void add(const QVector<LoggedCall> &calls);

    /// Orders the refusals of the log.
    QStringList faults() const { return m_faults; }
    /// Expects what the platform was sent and took.
    QStringList expectations() const;

private:
    struct Expectation
    {
        QString looked; ///< "Platform.trackVolume(\"main\", %1)"; with a place for the source
        QString source;
        QString value;
        bool isList;
    };

    void expect(const LoggedCall &call);
    void expect(const QString &looked, const QString &value, const QString &source = {}, bool isList = false);

    QHash<QString, int> m_counts; // of calls, by operation
    QStringList m_faults;
    QVector<Expectation> m_expectations;
};

#endif

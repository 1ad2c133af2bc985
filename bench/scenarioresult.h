#ifndef SCENARIORESULT_H
#define SCENARIORESULT_H

#include <QtCore/QString>
#include <QtCore/QVector>

/// How a scenario went.
struct ScenarioResult
{
    /// A place in the scenario that was being run.
    struct Frame
    {
        QString function; ///< empty outside any function
        int line = 0; ///< from 1; 0 for calls that are left out of a long list, told by the function: "\u2026 1,215 more"
    };

    /// One expect() that was reached.
    struct Check
    {
        int line = 0; ///< in the scenario's file, from 1
        QString text; ///< the scenario's own line
        bool passed = false;
        QString cause; ///< "expected 148, got 120"; empty when passed
        QVector<Frame> stack; ///< how the scenario came here, innermost first; empty when passed
    };

    QString file; ///< as given on the command line
    QVector<Check> checks;
    QString error; ///< what ended the scenario before its end; empty when nothing did
    int errorLine = 0; ///< where, 0 when unknown
    QVector<Frame> errorStack; ///< how the scenario came there, innermost first
    qint64 duration = 0; ///< ms on the scenario's clock

    int failures() const;
    bool succeeded() const;
};

#endif

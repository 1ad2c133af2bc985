#ifndef LOGGEDREQUEST_H
#define LOGGEDREQUEST_H

#include "logframe.h"
#include "logline.h"

#include "objectkind.h"

#include <QtCore/QString>
#include <QtCore/QVector>

/// A call on the platform, as far as the log says what it was.
struct LoggedCall
{
    simulator::ObjectKind kind = simulator::ObjectKind::Volume;
    QString operation; ///< "setTrackVolume"
    /// In order: an int, double, bool or QString, for an equalizer a QVariantList of its gains; an invalid one where the log does not say it.
    QVector<QVariant> arguments;
    int result = 0; ///< 0 also where the library does not say it
    QVector<QVariant> outputs; ///< what the platform answered
    qint64 time = 0; ///< ms of the timeline
    quint64 line = 0; ///< in the log, of the line that tells of it

    bool isRefused() const { return result != 0; }
    /// Whether all that it was given is known.
    bool isWhole() const;
};

/// Something that the unit was asked for, or that a timer began: with the lines that it left and the calls that it made.
struct LoggedRequest
{
    /// A line of it, with those that it caused.
    struct Line
    {
        LogLine line;
        quint64 number = 0; ///< in the log
        qint64 time = 0; ///< ms of the timeline
        int parent = none; ///< index of the line that caused it
        QString text; ///< as the library wrote it; of errors, and of the first line
    };
    static constexpr int none = -1;

    /// What happened, in the order in which it is told: either is an index.
    struct Event
    {
        int call = none;
        int line = none; ///< an error of the library's own
    };

    QVector<Line> lines; ///< the first one began it
    QVector<LoggedCall> calls;
    QVector<Event> events;
    LogTime::Moment moment; ///< when it began, by the log's clock
    qint64 process = LogFrame::unknown; ///< its number, or its thread's
    QString program;
    int statusBefore = none; ///< the policy's, where it is known
    int statusAfter = none;
    /// The timer that began it, as in policynames::timers; empty where something else did.
    QString timer;

    const LogLine &first() const { return lines.constFirst().line; }
    qint64 time() const { return lines.constFirst().time; }
};

Q_DECLARE_TYPEINFO(LoggedCall, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(LoggedRequest::Line, Q_MOVABLE_TYPE);
Q_DECLARE_TYPEINFO(LoggedRequest::Event, Q_MOVABLE_TYPE);

#endif

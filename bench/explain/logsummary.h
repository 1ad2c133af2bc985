#ifndef LOGSUMMARY_H
#define LOGSUMMARY_H

#include "loggedrequest.h"

#include <QtCore/QMap>
#include <QtCore/QString>

/// What a log comes to: how the unit was used, and what went wrong.
class LogSummary
{
public:
    void add(const LoggedRequest &request);
    /// The log ends at this time, ms of the timeline.
    void finish(qint64 time);

    QString toText() const;

private:
    struct Range
    {
        int least = 0;
        int most = 0;
        int last = 0;
        int count = 0;

        void add(int value);
    };

    void addLine(const LoggedRequest::Line &line);
    void holdStatus(int status, qint64 time);

    QMap<int, Range> m_volumes; // by volume type
    QMap<int, qint64> m_statuses; // ms that each held
    QMap<QString, QMap<int, int>> m_refusals; // by operation and code
    int m_status = LoggedRequest::none;
    qint64 m_statusSince = 0;
    int m_keysUp = 0;
    int m_keysDown = 0;
    int m_saves = 0;
    int m_blockedSaves = 0;
    int m_requests = 0;
    int m_starts = 0;
};

#endif

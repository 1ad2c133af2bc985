#ifndef LOGSUMMARY_H
#define LOGSUMMARY_H

#include "logfilter.h"
#include "logstory.h"

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>

/// What a log comes to: how the unit was used, and what went wrong.
class LogSummary : public LogStoryListener
{
public:
    /// @param wanted of which only the limits count
    LogSummary(const LogClock &clock, const LogFilter::Wanted &wanted);

    void request(const LoggedRequest &request) override;
    void note(qint64 time, quint64 line, const QString &text) override;
    void focus(const FocusChange &change) override;
    void heading(qint64 time, quint64 line, const QString &text) override;
    void reboot() override;

    /// The log has ended.
    void finish();

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

    struct Focus
    {
        int losses = 0;
        int returns = 0;
    };

    void addLine(const LoggedRequest::Line &line);
    void holdStatus(int status, qint64 time);

    const LogClock &m_clock;
    LogFilter::Wanted m_wanted;
    qint64 m_now = 0; // ms of the timeline
    QMap<int, Range> m_volumes; // by volume type
    QMap<int, qint64> m_statuses; // ms that each held
    QMap<QString, QMap<int, int>> m_refusals; // by operation and code
    QMap<QString, Focus> m_focus; // by client
    QStringList m_focusInTheEnd;
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

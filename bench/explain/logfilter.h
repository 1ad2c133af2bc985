#ifndef LOGFILTER_H
#define LOGFILTER_H

#include "heard.h"
#include "logclock.h"
#include "toldvolumes.h"
#include "timelineview.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>

/// A time that a user gives: "12:03:07", "2026-11-22 12:03:07", "+12s" from the log's first line.
class LogLimit
{
public:
    /// Empty where the text is no time.
    static std::optional<LogLimit> read(const QString &text);

    /// ms of the timeline at which it begins; empty where the log's clock has no such times.
    std::optional<qint64> in(const LogClock &clock) const;
    /// The last ms of it: "12:03:07" is all of that second, "12:03" of that minute.
    std::optional<qint64> endIn(const LogClock &clock) const;

private:
    qint64 m_offset = 0;
    qint64 m_length = 0; // ms, less one
    LogTime::Moment m_moment; // None for an offset
};

/// What of a log's timeline is shown.
class LogFilter : public TimelineView
{
public:
    struct Wanted
    {
        std::optional<LogLimit> from;
        std::optional<LogLimit> to;
        QStringList areas; ///< of areaNames(); empty for all
        QString source; ///< the platform's name or that of applications; empty for all
        bool tellsRefusals = false; ///< as notes, for a view that shows no calls

        /// Whether the time, ms of the timeline, lies between the limits.
        bool isInTime(qint64 time, const LogClock &clock) const;
    };

    /// @param shownBy outlives the filter
    LogFilter(TimelineView &shownBy, const LogClock &clock, const Wanted &wanted);

    static QStringList areaNames();

    void show(const TimelineEvent &event, const Heard &ofChip, bool isNew) override;
    void finish(qint64 time) override;

private:
    bool isWanted(const TimelineEvent &event) const;
    bool isOfArea(const TimelineEvent &event) const;
    bool isOfSource(const TimelineEvent &event) const;

    TimelineView &m_view;
    const LogClock &m_clock;
    Wanted m_wanted;
    ToldVolumes m_told;
    Heard m_before; // what was heard before that which is shown first
    bool m_hasBegun = false;
};

#endif

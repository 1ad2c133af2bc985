#ifndef TIMELINEPLOT_H
#define TIMELINEPLOT_H

#include "driveheading.h"
#include "figure.h"

#include "explain/logfilter.h"
#include "explain/loggedunit.h"
#include "explain/logstory.h"
#include "timeline.h"

#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QPair>

/**
 * A drive as a picture: what held when, and how loud each source was at the driver's ear (Heard).
 *
 * Listens to the drive's log, whose platform calls are made once more on the simulated platform; levels are those of its chip at each change.
 * Needs a VirtualClock.
 */
class TimelinePlot : public LogStoryListener
{
public:
    /// Changes that a picture can hold.
    static constexpr int mostChanges = 5000;

    struct Settings
    {
        QString title;
        LogFilter::Wanted wanted; ///< of which only the limits count
        QVector<DriveHeading> headings; ///< of its parts; where there are none, what the log's reader says of them
        qint64 longestStill = 5000; ///< ms in which nothing changes that are drawn to scale: more is left out; 0 for all
        int mostChanges = TimelinePlot::mostChanges; ///< what comes after them is left out, and the picture says so
    };

    /// @param clock outlives this
    TimelinePlot(const Settings &chosen, const LogClock &clock);

    void request(const LoggedRequest &request) override;
    void note(qint64 time, quint64 line, const QString &text) override;
    void focus(const FocusChange &change) override;
    void heading(qint64 time, quint64 line, const QString &text) override;
    void reboot() override;

    /// The log has ended.
    Figure finish();

    /// Headings that a picture lists.
    static constexpr int mostHeadings = 30;
    /// Sources of which a picture can hold the levels.
    static constexpr int mostSources = 8;

private:
    enum Lane {
        Status,
        Channel,
        Focus,
        Ducking,
        Mute,
        Keys,
        Gear,
    };
    static constexpr int laneCount = Gear + 1;

    /// What holds in a lane, until something else does.
    struct State
    {
        QString label; ///< empty for nothing
        qint64 since = 0;
    };

    struct Level
    {
        qint64 time;
        double level; ///< dB; minus infinity where nothing is heard
    };

    using SourceKey = QPair<QString, QString>; ///< track and source

    /// The time as far as the picture has it; empty outside of it.
    std::optional<qint64> shownTime(qint64 time);
    void set(Lane lane, qint64 time, const QString &label);
    void addHeading(qint64 time, const QString &text);
    void addMoment(Lane lane, qint64 time, const QString &label);
    void addSpan(Lane lane, qint64 from, qint64 to, const QString &label);
    void lookAtChip();
    static double lastOf(const QVector<Level> &levels);
    void addLevel(const SourceKey &key, qint64 time, double level);
    QVector<qint64> changeTimes() const;
    Figure::Axis timeAxis(const QVector<qint64> &times);
    double placeOf(qint64 time) const;
    Figure::Charts levels(const Figure::Axis &axis) const;
    Figure::Lanes lanes(const Figure::Axis &axis) const;
    Figure::Lane parts() const;
    Figure::List listOfHeadings() const;

    const Settings m_settings;
    const LogClock &m_clock;
    Timeline m_timeline;
    LoggedUnit m_unit;
    QObject m_ear; // what the chip's changes are told to
    State m_states[laneCount];
    QVector<Figure::Span> m_spans[laneCount]; // in ms
    QVector<DriveHeading> m_headings; // one more than there is room for shows that there were more
    QMap<SourceKey, QVector<Level>> m_levels;
    QVector<SourceKey> m_sources; // in the order in which they were heard first
    QMap<qint64, double> m_places; // of the times at which something changes, s from the left
    qint64 m_begin = 0;
    qint64 m_end = 0;
    int m_changes = 0;
    bool m_hasMoreSources = false;
};

#endif

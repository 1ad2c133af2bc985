#ifndef TIMESCALE_H
#define TIMESCALE_H

#include <QtCore/QString>
#include <QtCore/QVector>

/// The part of a drive that is shown, and where its times stand. Times are seconds from the drive's beginning, places pixels from the left.
class TimeScale
{
public:
    double from() const { return m_from; }
    double to() const { return m_to; }
    double width() const { return m_width; }
    double duration() const { return m_duration; }
    bool isWhole() const { return m_from <= 0 && m_to >= m_duration; }

    void setWidth(double pixels);
    /// Goes on to show all of it where it did.
    void setDuration(double seconds);
    void fit();
    /// Shows so many times as much, what stands at a place stays there.
    void zoom(double factor, double place);
    void scroll(double pixels);
    /// Scrolls as far as needed.
    void show(double time);

    double placeOf(double time) const;
    double timeAt(double place) const;
    double secondsPerPixel() const;

    struct Tick
    {
        double time;
        double place;
        QString label;
    };
    /// @param origin what time the beginning is said to be
    QVector<Tick> ticks(double origin) const;

    /// "1:05", "1:05.25", "1:02:03"
    static QString text(double seconds);

private:
    void hold();

    double m_from = 0;
    double m_to = 1;
    double m_duration = 1;
    double m_width = 1;
};

#endif

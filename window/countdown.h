#ifndef COUNTDOWN_H
#define COUNTDOWN_H

#include <QtCore/QtGlobal>

/// Time that runs out, of which only what is left of it is told now and then.
class Countdown
{
public:
    /// @param left ms; -1 where none runs
    void setLeft(qint64 left)
    {
        // More than before is a start, of this one or of another.
        if (left > m_left)
            m_total = left;
        m_left = left;
    }

    qint64 left() const { return m_left; }
    /// Of the time since it was seen first, from 1 down to 0; 0 where none runs.
    double share() const { return m_left > 0 ? double(m_left) / double(m_total) : 0; }

private:
    qint64 m_left = -1;
    qint64 m_total = 0;
};

#endif

#ifndef PROGRESSBAR_H
#define PROGRESSBAR_H

#include <QtCore/QtGlobal>

/// How far something has come, on the standard error where that is a terminal. It is gone afterwards.
class ProgressBar
{
public:
    /// @param whole in any unit
    explicit ProgressBar(qint64 whole);
    ~ProgressBar();

    void show(qint64 done);

private:
    Q_DISABLE_COPY(ProgressBar)

    const qint64 m_whole;
    const bool m_isSeen;
    int m_shown = -1; // percent
};

#endif

#ifndef REPLAYCOMPARISON_H
#define REPLAYCOMPARISON_H

#include "replaycall.h"

#include <QtCore/QDataStream>
#include <QtCore/QIODevice>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <deque>
#include <optional>

/// The first call in which a replayed log differs from the log.
struct ReplayDifference
{
    quint64 number = 0; ///< of the call, from 1
    std::optional<ExpectedCall> logged; ///< empty where the unit made none
    std::optional<ReplayCall> replayed; ///< empty where the replay made none
    quint64 nextLine = 0; ///< in the log, of the call before which one was made that it has not

    /// Which of the likely ones it is.
    QString cause() const;
};

/**
 * Compares the calls of a log with those of its replay, in constant memory.
 *
 * Calls that leave no line are passed over, and so are those behind the log's last: it may end inside a request.
 */
class ReplayComparison
{
public:
    /// @param logged ExpectedCalls @param played what "play --json" told; calls before the log's beginning do not count
    ReplayComparison(QIODevice &logged, QIODevice &played);

    std::optional<ReplayDifference> find();
    /// Calls that were compared.
    quint64 count() const { return m_count; }

private:
    std::optional<ExpectedCall> takeExpected();
    const ExpectedCall *nextExpected();
    std::optional<ReplayCall> takePlayed();
    const ReplayCall *nextPlayed();
    void readPlayed();
    std::optional<ReplayDifference> compare(const ExpectedCall &expected);
    std::optional<ReplayDifference> compareSteps(const ExpectedCall &first);
    ReplayDifference difference(const ExpectedCall &expected, const ReplayCall &played);

    QDataStream m_logged;
    QIODevice &m_played;
    std::optional<ExpectedCall> m_nextExpected;
    std::deque<ReplayCall> m_read; // played, and not compared yet
    bool m_hasBegun = false;
    quint64 m_count = 0;
};

#endif

#ifndef LOGPROCESS_H
#define LOGPROCESS_H

#include "callreading.h"
#include "loggedrequest.h"

#include <optional>
#include <string>

/**
 * One process that wrote a log: puts its lines together to requests.
 *
 * A request ends where a line comes that cannot be part of it, so the last one stays open until finish().
 */
class LogProcess
{
public:
    /// What a line is in a request's course.
    enum class Course {
        Continues,
        Begins, ///< another request; the one before it, if any, has ended
        Restarts, ///< the same, and the manager was there before
        Repeats, ///< the line before it again, and is left out
    };

    /**
     * @param time in ms of the timeline
     * @param ended receives the requests that end before this line: mostly none or one, two where the last line of one was another
     */
    Course add(const LogLine &line, const LogFrame &frame, qint64 time, QVector<LoggedRequest> &ended);
    /// Ends what is open.
    void finish(QVector<LoggedRequest> &ended);
    bool isOpen() const { return m_request.has_value(); }
    /// Whether the line that came last is of another thread than the audio manager's lines before it.
    bool isOfSecondThread() const { return m_isOfSecondThread; }
    /// When the last line of it came.
    qint64 lastTime() const { return m_lastTime; }

private:
    using Id = LogLines::Id;

    struct Open
    {
        int line; ///< index in the request
        int position; ///< in the lines that the operation writes
    };

    bool isRepeated(const LogLine &line, const LogFrame &frame);
    bool accept(const LogLine &line, qint64 time);
    bool isPlausible(int index, const LogLine &line, qint64 time) const;
    int countOf(int index) const;
    void begin(const LogLine &line, const LogFrame &frame, qint64 time);
    void append(const LogLine &line, const LogFrame &frame, qint64 time, int parent);
    std::optional<LoggedRequest> takeQuestion();
    void learn(const LogLine &line);
    void learnThread(const LogLine &line);
    static QString textOf(const LogFrame &frame);

    std::optional<LoggedRequest> m_request;
    QVector<Open> m_open; // the innermost last
    CallReading m_calls;
    LogTime::Moment m_questionMoment; // of the line by which a key asks for the volume
    QString m_questionText;
    qint64 m_lastTime = 0;
    std::string m_lastText;
    LogTime::Moment m_lastMoment;
    bool m_lastIsFollowed = false; // by another line, always
    bool m_isDoubled = false; // each line of the log stands twice
    qint64 m_thread = LogLine::unknown; // the manager's
    bool m_isOfSecondThread = false;
    int m_status = LoggedRequest::none;
    int m_equalizerType = LoggedRequest::none;
    bool m_isStarted = false;
    bool m_channelSeen = false;
    bool m_isFirstChannel = false; // the one reported last is
    bool m_muteTimerMayRun = true;
    bool m_isCarPlayDucking = false;
};

#endif

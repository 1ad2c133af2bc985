#ifndef LOGSTORY_H
#define LOGSTORY_H

#include "logclock.h"
#include "logfocus.h"
#include "logframes.h"
#include "logprocess.h"
#include "logsource.h"

#include <QtCore/QHash>
#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QVector>

/// What a log tells, in order. Times are ms of the timeline.
class LogStoryListener
{
public:
    virtual ~LogStoryListener() = default;

    virtual void request(const LoggedRequest &request) = 0;
    /// What was noticed in the log that is no request: a line that is cut.
    virtual void note(qint64 time, quint64 line, const QString &text) = 0;
    /// Something happened to focus. A note, for whoever does not want to know it closer.
    virtual void focus(const FocusChange &change);
    /// Another part of the log: where it begins, where the unit starts again, what comes after a pause.
    virtual void heading(qint64 time, quint64 line, const QString &text) = 0;
    /// The unit was without power.
    virtual void reboot() = 0;

protected:
    LogStoryListener() = default;
    Q_DISABLE_COPY(LogStoryListener)
};

/**
 * Reads a log from its beginning to its end, in constant memory: what its lines mean, put together to requests, of each process apart.
 *
 * Nothing in a log ends it before its end. What is odd is told as a note, of each kind the first few.
 */
class LogStory
{
public:
    /// @param clock receives the log's time
    LogStory(LogFrames &frames, LogClock &clock, LogStoryListener &listener);

    /// A line of the log.
    void add(std::string_view line, quint64 number, bool wasCut);
    void addNotes(const std::vector<LogSource::Note> &notes);
    /// The log has ended, or does not go on for now: what is open ends.
    void pause();
    void finish();

    /// Lines of the library that were understood.
    quint64 understood() const { return m_understood; }

private:
    enum class Oddity {
        Cut,
        NotUnderstood,
        UnknownForm,
        NotUtf8,
        Repeated,
        SecondThread,
    };

    struct Note
    {
        qint64 time;
        quint64 line;
        QString text;
        std::optional<FocusChange> focus; ///< instead of a text
    };

    /// Who wrote the log, or one of them.
    struct Writer
    {
        LogProcess process;
        quint64 lastUnderstood = 0; ///< of the lines the last one that was of it
    };

    void addFrame(const LogFrame &frame);
    void addLine(const LogLine &line, const LogFrame &frame, const LogClock::Reading &reading);
    void addToProcess(const LogLine &line, const LogFrame &frame, const LogClock::Reading &reading);
    void tellFocus(const LogLine &line, const LogFrame &frame, qint64 time);
    void noteFocus(const QVector<FocusChange> &changes);
    void tellBeginning(const LogLine &line, const LogFrame &frame, LogProcess::Course course, const LogClock::Reading &reading);
    qint64 keyOf(const LogLine &line, const LogFrame &frame);
    Writer &writerOf(qint64 key);
    void endOthers(qint64 key);
    void end(LogProcess &process);
    void odd(Oddity oddity, quint64 line, const QString &text = {});
    void note(quint64 line, const QString &text);
    void tell(const QVector<LoggedRequest> &ended);
    void tellNotes();
    bool isOpen() const;

    LogFrames &m_frames;
    LogClock &m_clock;
    LogStoryListener &m_listener;
    QHash<qint64, Writer> m_writers; // by number of the process, else of the thread
    qint64 m_lastKey = LogFrame::unknown;
    Writer *m_lastWriter = nullptr; // the one that was asked for last, and its key
    qint64 m_lastWriterKey = LogFrame::unknown;
    LogFocus m_focus;
    QVector<Note> m_notes; // that wait until the request ends in which they came
    QMap<Oddity, quint64> m_oddities;
    quint64 m_understood = 0;
    bool m_hasBegun = false;
    bool m_hasStarted = false; // a manager
    quint64 m_lastLine = 0;
};

#endif

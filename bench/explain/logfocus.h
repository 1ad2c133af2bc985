#ifndef LOGFOCUS_H
#define LOGFOCUS_H

#include "logframe.h"
#include "logline.h"

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <optional>

/// Something that happened to audio focus.
struct FocusChange
{
    enum class Kind {
        Lost,
        Regained,
        Other,
        InTheEnd, ///< who has it where the log ends, or who is without it
    };

    Kind kind = Kind::Other;
    QString client; ///< of Lost and Regained
    QString text; ///< for people
    qint64 time = 0; ///< ms of the timeline
    quint64 line = 0; ///< in the log; 0 where no line says it
    LogTime::Moment moment; ///< the same by the log's clock
    qint64 process = LogFrame::unknown;
    QString program;
};

/**
 * Who has focus, by the lines of the library and of the focus daemon; of each process apart, since each has a stack of its own.
 *
 * A request that is granted leaves no line. Who made it shows by the loss that whoever had focus is told; who that was, only later: by what the
 * next change says of them, by a daemon that names a call, or by an older request of theirs that is taken off the stack first.
 */
class LogFocus
{
public:
    static bool isOfFocus(LogLines::Id id);

    /// @return what is to be told of a line of focus; empty where another line says the same
    std::optional<FocusChange> add(const LogLine &line, const LogFrame &frame, qint64 time);

    /// The log or the unit's run ends: who did not give focus back, and who waits for it. All of it is then forgotten.
    QVector<FocusChange> finish(qint64 time);
    /// The same for the process of this number, or of this thread.
    QVector<FocusChange> finish(qint64 process, qint64 time);

private:
    struct Holder
    {
        std::optional<QString> client; ///< empty where it is not known
        QString since;
        QString from; ///< whom it was taken from, in quotes; empty for nobody
        qint64 time = 0;
    };

    struct Waiting
    {
        QString client;
        QString loss;
        QString since;
    };

    struct Stack
    {
        std::optional<Holder> holder; ///< empty where nothing is known of them
        QVector<Waiting> waiting;
        std::optional<QString> removed; ///< client that the line before took off
        qint64 lastTime = 0;
        bool isDumped = false; ///< by the line before
        QString writer;
        FocusChange origin; ///< where it is, without an event
    };

    Stack &stackOf(const LogLine &line, const LogFrame &frame);
    static void lose(Stack &stack, FocusChange &change, const QString &loss, const QString &when);
    static void regain(Stack &stack, FocusChange &change, const QString &when);
    static void beginCall(Stack &stack, FocusChange &change, const QString &when);
    static void endCall(Stack &stack);
    static void dump(Stack &stack, const QString &client, const QString &when);
    static void forget(Stack &stack, const QString &client);
    QVector<FocusChange> endOf(const Stack &stack, qint64 time) const;
    QString told(const QString &text, const Stack &stack) const;

    QHash<qint64, Stack> m_stacks; // by number of the process, else of the thread
    qint64 m_lastKey = LogFrame::unknown;
    bool m_areSeveral = false; // processes, so that each has to be named
};

#endif

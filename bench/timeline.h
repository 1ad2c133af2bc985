#ifndef TIMELINE_H
#define TIMELINE_H

#include "console.h"

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVector>

namespace simulator
{
struct JournalEntry;
}

/**
 * What happened, for people to read from top to bottom: each request with its time, indented under it the platform calls that it
 * caused, and what timers caused under headings of their own.
 *
 * Platform calls come from the simulated platform's journal. Objects' creations and releases are left out, except a creation
 * that failed.
 */
class Timeline : public QObject
{
    Q_OBJECT

public:
    explicit Timeline(QObject *parent = nullptr);

    /// ms on the scenario's clock, which starts with the timeline.
    qint64 now() const;

    /// What the script says to its reader.
    void heading(const QString &text);
    /// A request begins: what comes until its end is caused by it. Requests may be nested.
    void beginRequest(const QString &request);
    /// @param result empty where the request has none
    void endRequest(const QString &result);
    /// What the script was told, outside any request of its own.
    void note(const QString &text);
    void check(bool passed, const QString &text, const QString &cause);
    /// A log line of the library.
    void log(const QString &line);
    /// Prints the requests in progress, when the process is about to stop inside one.
    void showUnfinished();

private:
    Q_DISABLE_COPY(Timeline)

    struct Request
    {
        qint64 time = 0;
        QString text;
        QString caused; // lines, ready to print
    };

    void addEntry(Console::Style style, const QString &text, const QString &margin);
    void addCall(const simulator::JournalEntry &entry);
    /// Adds lines to the request in progress, or prints them under a heading for timers.
    void addCaused(const QString &lines);
    void print(const QString &lines);

    qint64 start;
    QVector<Request> requests; // those in progress, the innermost last
    qint64 timerHeading = -1; // time of the heading that caused lines are being printed under; -1 for none
};

#endif

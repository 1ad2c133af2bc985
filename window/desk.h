#ifndef DESK_H
#define DESK_H

#include "recording.h"

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QUrl>
#include <QtCore/QVariantList>
#include <QtCore/QVariantMap>

#include <memory>

struct DeskPrivate;

/**
 * The desk that the simulated car stands on: sends it requests, knows what it is like, lets its time run and records what is done.
 *
 * The car lives in a process of its own (CarProcess) and nothing here waits for it: requests return at once, and what became of them is
 * told by signals. A car that is slow, stuck or gone leaves the window as it is.
 */
class Desk : public QObject
{
    Q_OBJECT
    /// ms of the car's clock, from 0 at its start.
    Q_PROPERTY(double now READ now NOTIFY nowChanged)
    /// ms of the car's clock at which the next timer runs out; -1 where none runs.
    Q_PROPERTY(double nextTimer READ nextTimer NOTIFY nowChanged)
    /// Seconds of the car in a second: 1, 10, or 0 while its time stands still.
    Q_PROPERTY(double speed READ speed WRITE setSpeed NOTIFY speedChanged)
    /// Whether the car is on its way to an earlier moment, or makes a recording's steps once more.
    Q_PROPERTY(bool replaying READ isReplaying NOTIFY replayingChanged)
    /// Name of the scenario that drives the car; empty while it is driven by hand.
    Q_PROPERTY(QString scenario READ scenario NOTIFY scenarioChanged)
    /// What was done so far, and what is to come after a step back.
    Q_PROPERTY(Recording *recording READ recording CONSTANT)
    /// What went wrong last, for people; empty for nothing. Setting it to empty takes note of it.
    Q_PROPERTY(QString message READ message WRITE setMessage NOTIFY messageChanged)
    /// Folder with the car's flash: its settings file is audioData.db in it. Readable and writable by the window.
    Q_PROPERTY(QString flash READ flash CONSTANT)
    /// A recording that a window left behind when it ended without being asked to; empty for none.
    Q_PROPERTY(QString leftBehind READ leftBehind NOTIFY leftBehindChanged)

public:
    explicit Desk(QObject *parent = nullptr);
    ~Desk() override;

    double now() const;
    double nextTimer() const;
    double speed() const;
    void setSpeed(double speed);
    bool isReplaying() const;
    QString scenario() const;
    Recording *recording() const;
    QString message() const;
    void setMessage(const QString &message);
    QString flash() const;
    QString leftBehind() const;

    /// The car as it was last told to be: one map for each room, see docs/window.md. Empty until the car has answered once.
    Q_INVOKABLE QVariantMap snapshot() const;
    /// Everything that happened since the car's start, in order: maps of {time, kind, text, result, cause, calls}.
    QVariantList happenings() const;
    /// Rows of the platform's journal since the car's start: maps of {time, object, operation, call, cause, note, refused}.
    QVariantList journal() const;
    /// File with the library's log of this drive, complete up to now().
    QString logFile() const;
    /// File with what the drive sounds like, lines of SoundTrack, complete up to now().
    QString soundFile() const;

    /// Lets the car do what a line of a scenario says, now, and records it: "AudioPolicy.setMute(true);"
    Q_INVOKABLE void perform(const QString &line);
    /// Time moves to the moment when the next timer runs out, and stands still then.
    Q_INVOKABLE void stepToNextTimer();
    /// The car is as it was at this time, which stands still then: everything is done once more from the start.
    Q_INVOKABLE void goTo(double milliseconds);
    /// The car is as it was before the last step; the step is kept for redo().
    Q_INVOKABLE void undo();
    Q_INVOKABLE void redo();
    /// A new car, and an empty recording.
    Q_INVOKABLE void startAnew();

    /// Opens a recording, or any other scenario, which then drives the car. Time stands still at its start.
    Q_INVOKABLE void open(const QUrl &file);
    /// Saves the recording as a scenario. @return whether it is there; message tells why not
    Q_INVOKABLE bool save(const QUrl &file);
    /// Ends the scenario where it is. What it did is the recording from now on.
    Q_INVOKABLE void takeOver();
    /// Names of the scenarios that come with the bench.
    Q_INVOKABLE QStringList bundledScenarios() const;
    Q_INVOKABLE void openBundled(const QString &name);
    /// Opens what leftBehind names, or forgets it.
    Q_INVOKABLE void recover();
    Q_INVOKABLE void dismissLeftBehind();
    /// Nobody can be asked any more: what is not saved is offered by the next window.
    void leaveUnsavedBehind();

Q_SIGNALS:
    void nowChanged();
    void speedChanged();
    void replayingChanged();
    void scenarioChanged();
    void messageChanged();
    void leftBehindChanged();
    /// The car is another one, or as it was earlier: journal() and happenings() begin anew.
    void restarted();
    /// At most 30 times a second.
    void snapshotChanged();
    /// New rows at the end of journal().
    void journalGrew(const QVariantList &rows);
    /// New entries at the end of happenings().
    void happened(const QVariantList &entries);
    /// A line that was performed has an outcome: its result as text, or what it threw.
    void performed(const QString &line, const QString &result, const QString &error);

private:
    Q_DISABLE_COPY(Desk)

    friend struct DeskPrivate;
    const std::unique_ptr<DeskPrivate> d;
};

#endif

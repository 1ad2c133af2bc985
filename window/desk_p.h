#ifndef DESK_P_H
#define DESK_P_H

#include "carprocess.h"
#include "desk.h"
#include "recordingbackup.h"

#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>

/// State of the desk, and what it makes of all that the car tells.
struct DeskPrivate
{
    explicit DeskPrivate(Desk *desk);

    Desk *const q;
    const QTemporaryDir folder;
    CarProcess car;
    Recording recording;
    RecordingBackup backup;
    QString leftBehind;

    QVariantMap snapshot;
    QVariantList happenings;
    QVariantList journal;
    double speed = 1;
    bool isReplaying = false;
    QString problem;
    QString scenario; // that drives
    QString scenarioFile; // called so in messages
    QString scenarioText; // empty where the car is driven by hand
    QTimer stopTimer;

    void setSpeed(double wanted)
    {
        if (speed == wanted)
            return;
        speed = wanted;
        Q_EMIT q->speedChanged();
    }
    void setReplaying(bool replaying)
    {
        if (isReplaying == replaying)
            return;
        isReplaying = replaying;
        Q_EMIT q->replayingChanged();
    }
    void setScenario(const QString &name)
    {
        if (scenario == name)
            return;
        scenario = name;
        Q_EMIT q->scenarioChanged();
    }
    void send(const char *what, QVariantMap message = {})
    {
        message.insert(QStringLiteral("do"), QString::fromLatin1(what));
        car.send(message);
    }

    void startCar(bool isMeasured)
    {
        snapshot.clear();
        happenings.clear();
        journal.clear();
        stopTimer.stop();
        car.startAnew(isMeasured);
        Q_EMIT q->restarted();
    }
    /// A car that was driven so far by hand. The rest of the recording is to come.
    void replay(int doneCount, qint64 time, double speedThen);
    /// The same of a scenario that drives.
    void playScenario(qint64 time, double speedThen);
    void openText(const QString &file, const QString &program);

    void take(const QVariantMap &message);
    void takeState(const QVariantMap &message);
    void takeSteps(const QVariantList &steps);
    void takeScenario(const QVariantMap &message);
    void lose(const QString &why);
};

#endif

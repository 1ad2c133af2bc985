#ifndef POLICYTIMERS_H
#define POLICYTIMERS_H

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QString>
#include <QtCore/QVector>

class QTimer;
class ZelAudioManager;

/**
 * Tells which of a policy manager's timers runs out, and what status it brought.
 *
 * Watch a manager before anything else connects to its timers: what a timer causes then lies between runsOut() and hasRun(), and what
 * others do about it comes later. Managers may come and go; the thread is that of the manager.
 */
class PolicyTimers : public QObject
{
    Q_OBJECT

public:
    explicit PolicyTimers(QObject *parent = nullptr);

    /// Watches this manager from now on, and no other. The one that is watched already, or null, changes nothing.
    void watch(ZelAudioManager *manager);

Q_SIGNALS:
    /// A timer has run out, for a purpose such as "unmute after the timed mute"; nothing of what it causes has happened yet.
    void runsOut(const QString &purpose);
    /// The timer that has just run changed the status, without a request.
    void statusChanged(int before, int now);
    /// What the timer caused has happened, its change of the status was told.
    void hasRun(const QString &purpose);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    Q_DISABLE_COPY(PolicyTimers)

    struct Entry
    {
        QString purpose;
        QTimer *timer;
        int statusBefore; // when it last ran out
    };

    void finish(int index);

    QPointer<ZelAudioManager> m_known;
    QVector<Entry> m_entries;
    QVector<int> m_running; // indexes of entries: a slot may let time pass, so that one timer runs out inside another
};

#endif

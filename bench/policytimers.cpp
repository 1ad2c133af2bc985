#include "policytimers.h"

#include "audiopolicyinspector.h"

#include <qzaudio/zelaudiomanager.h>

#include <QtCore/QEvent>
#include <QtCore/QTimer>

#include <algorithm>

PolicyTimers::PolicyTimers(QObject *parent)
    : QObject(parent)
{
}

void PolicyTimers::watch(ZelAudioManager *manager)
{
    if (!manager || manager == known)
        return;
    if (known) {
        for (const Entry &entry : qAsConst(entries)) {
            entry.timer->removeEventFilter(this);
            entry.timer->disconnect(this);
        }
    }
    known = manager;
    entries.clear();
    running.clear();
    const auto timers = AudioPolicyInspector(*manager).timers();
    for (const AudioPolicyInspector::Timer &timer : timers) {
        const int index = entries.size();
        entries.append({timer.purpose, timer.timer, 0});
        // The event comes before the manager's slots run. They were connected first, so that the signal arrives here after them.
        timer.timer->installEventFilter(this);
        connect(timer.timer, &QTimer::timeout, this, [this, index] { finish(index); });
    }
}

bool PolicyTimers::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Timer) {
        const auto entry = std::find_if(entries.begin(), entries.end(), [watched](const Entry &candidate) { return candidate.timer == watched; });
        if (entry != entries.end()) {
            entry->statusBefore = AudioPolicyInspector(*known).status();
            running.append(int(entry - entries.begin()));
            Q_EMIT runsOut(entry->purpose);
        }
    }
    return QObject::eventFilter(watched, event);
}

void PolicyTimers::finish(int index)
{
    const Entry entry = entries.at(index);
    const int now = AudioPolicyInspector(*known).status();
    if (now != entry.statusBefore)
        Q_EMIT statusChanged(entry.statusBefore, now);
    running.removeOne(index);
    Q_EMIT hasRun(entry.purpose);
}

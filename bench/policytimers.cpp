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
    if (!manager || manager == m_known)
        return;
    if (m_known) {
        for (const Entry &entry : qAsConst(m_entries)) {
            entry.timer->removeEventFilter(this);
            entry.timer->disconnect(this);
        }
    }
    m_known = manager;
    m_entries.clear();
    m_running.clear();
    const auto timers = AudioPolicyInspector(*manager).timers();
    for (const AudioPolicyInspector::Timer &timer : timers) {
        const int index = m_entries.size();
        m_entries.append({timer.purpose, timer.timer, 0});
        // The event comes before the manager's slots run. They were connected first, so that the signal arrives here after them.
        timer.timer->installEventFilter(this);
        connect(timer.timer, &QTimer::timeout, this, [this, index] { finish(index); });
    }
}

bool PolicyTimers::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Timer) {
        const auto entry = std::find_if(m_entries.begin(), m_entries.end(), [watched](const Entry &candidate) { return candidate.timer == watched; });
        if (entry != m_entries.end()) {
            entry->statusBefore = AudioPolicyInspector(*m_known).status();
            m_running.append(int(entry - m_entries.begin()));
            Q_EMIT runsOut(entry->purpose);
        }
    }
    return QObject::eventFilter(watched, event);
}

void PolicyTimers::finish(int index)
{
    const Entry entry = m_entries.at(index);
    const int now = AudioPolicyInspector(*m_known).status();
    if (now != entry.statusBefore)
        Q_EMIT statusChanged(entry.statusBefore, now);
    m_running.removeOne(index);
    Q_EMIT hasRun(entry.purpose);
}

#include "loggedunit.h"

#include "console.h"
#include "platformcall.h"
#include "requesttext.h"
#include "timeline.h"

#include "platform.h"
#include "virtualclock.h"

using simulator::Platform;
using simulator::VirtualClock;

LoggedUnit::LoggedUnit(Timeline &toldTo)
    : m_timeline(toldTo)
{
    // The library knows no other one, and a log may begin after its start sent it.
    constexpr unsigned char fullScale = 100;
    Platform::instance()->chip()->setMasterVolume(fullScale);
}

void LoggedUnit::apply(const LoggedRequest &request)
{
    advanceTo(request.time());
    const bool isTimer = !request.timer.isEmpty();
    const bool isStart = request.first().id() == LogLines::Id::ManagerStarts;
    if (isTimer)
        m_timeline.beginTimer(timerPurpose(request.timer));
    else
        m_timeline.beginRequest(requestText(request));
    m_timeline.setStartingUp(isStart);
    for (const LoggedRequest::Event &event : request.events) {
        if (event.call != LoggedRequest::none)
            applyCall(request.calls.at(event.call));
        else
            m_timeline.log(Console::printable(request.lines.at(event.line).text));
    }
    m_timeline.setStartingUp(false);
    if (isTimer) {
        if (request.statusBefore != request.statusAfter)
            m_timeline.statusBecomes(request.statusAfter);
        m_timeline.endTimer();
    } else {
        m_timeline.endRequest({});
    }
    // All that is to be kept of it is in the timeline's view.
    Platform::instance()->journal()->clear();
}

void LoggedUnit::applyCall(const LoggedCall &call)
{
    advanceTo(call.time);
    simulator::JournalEntry entry = PlatformCall::make(call);
    entry.time = Platform::instance()->now();
    // An object that exists: one that does not is a creation that failed.
    entry.number = 1;
    Platform::instance()->journal()->append(entry);
}

void LoggedUnit::note(qint64 time, const QString &text)
{
    advanceTo(time);
    m_timeline.note(text);
}

void LoggedUnit::heading(qint64 time, const QString &text)
{
    advanceTo(time);
    m_timeline.heading(text);
}

void LoggedUnit::restart()
{
    Platform::instance()->chip()->reset();
}

void LoggedUnit::advanceTo(qint64 time)
{
    const qint64 ahead = time - m_timeline.now();
    if (ahead > 0)
        VirtualClock::installed()->block(ahead);
}

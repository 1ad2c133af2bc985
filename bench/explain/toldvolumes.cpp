#include "toldvolumes.h"

#include "timelineevent.h"

#include <cmath>
#include <limits>

void ToldVolumes::add(const TimelineEvent &event)
{
    // A start sends the volume of every source.
    m_areAllTold = m_areAllTold || event.isStartUp;
    if (m_areAllTold)
        return;
    const simulator::JournalEntry &call = event.call;
    if (event.kind == TimelineEvent::Kind::Call && call.result.toInt() == 0) {
        m_isAlternativeTrackTold = m_isAlternativeTrackTold || call.operation == QLatin1String("setAlterTrackVolume");
        if (call.operation == QLatin1String("setTrackVolume"))
            m_told.insert({call.arguments.value(0).toString(), call.arguments.value(1).toString()});
    }
    for (const TimelineEvent &caused : event.caused)
        add(caused);
}

Heard ToldVolumes::withoutUntold(Heard heard) const
{
    if (m_areAllTold)
        return heard;
    for (Heard::Sound &sound : heard.sounds) {
        const bool isTold = m_told.contains({sound.track, sound.source}) || (m_isAlternativeTrackTold && sound.track == QLatin1String("alternative"));
        if (!isTold)
            sound.level = std::numeric_limits<double>::quiet_NaN();
    }
    return heard;
}

#include "replaytimes.h"

#include "facaderules.h"

#include <qzaudio/audiotypes.h>

#include <algorithm>

using LogLines::Id;

namespace
{

// The library's own, ms.
constexpr int delayedVolumesInterval = 500;
constexpr int firstEqualizerInterval = 2000;
constexpr int carPlayAlertInterval = 1000;
constexpr int carPlayUnduckInterval = 500;

/// ms that a timer's line may come after its time: whole seconds, and a unit that is busy. What is later never comes.
constexpr qint64 longestDelay = 1500;

bool has(const LoggedRequest &request, Id id)
{
    return std::any_of(request.lines.cbegin(), request.lines.cend(), [id](const LoggedRequest::Line &line) { return line.line.id() == id; });
}

/// Whether volumes of the type are written again later.
bool isWrittenAgain(int type)
{
    return type != ZelAudioTypePrompt && type != ZelAudioTypeHiCarCall && FacadeRules::channelsOfType(type) > 1;
}

} // namespace

std::optional<ReplayTimes::Timer> ReplayTimes::timerOf(const LoggedRequest &request)
{
    switch (request.first().id()) {
    case Id::DelaySetVolume:
        return DelayedVolumes;
    case Id::OnFirstSetEqType:
        return FirstEqualizer;
    case Id::HandleNotComeCpAlte:
        return CarPlayAlert;
    case Id::DelayCpTruelyUnduck:
        return CarPlayUnduck;
    default:
        return {};
    }
}

bool ReplayTimes::isAwaited(const LoggedRequest &request) const
{
    const auto timer = timerOf(request);
    return timer && m_due[*timer];
}

qint64 ReplayTimes::next(const LoggedRequest &request)
{
    qint64 time = m_beginning + request.time();
    const auto timer = timerOf(request);
    if (request.first().id() == Id::ManagerStarts) {
        std::fill(std::begin(m_due), std::end(m_due), std::nullopt);
    } else if (timer && m_due[*timer]) {
        time = *m_due[*timer];
        m_due[*timer].reset();
    } else {
        const qint64 told = time;
        for (std::optional<qint64> &due : m_due) {
            if (!due || *due > told)
                continue;
            if (told - *due > longestDelay)
                due.reset();
            else
                time = std::min(time, *due - 1);
        }
    }
    advanceTo(time);
    learn(request);
    return m_now;
}

void ReplayTimes::learn(const LoggedRequest &request)
{
    for (const LoggedRequest::Line &line : request.lines) {
        switch (line.line.id()) {
        case Id::HandleChannelVolumeChanged:
            if (isWrittenAgain(line.line.number(0)))
                start(DelayedVolumes, delayedVolumesInterval);
            break;
        case Id::UpdateAudioChannel:
            if (has(request, Id::EqType) && !has(request, Id::EqualizerReset))
                start(FirstEqualizer, firstEqualizerInterval);
            break;
        case Id::UpdateAudioStatus:
            m_due[CarPlayAlert].reset();
            break;
        case Id::CpDuckAudio:
            start(CarPlayAlert, carPlayAlertInterval);
            break;
        case Id::CpUnduckAudio:
            m_due[CarPlayAlert].reset();
            start(CarPlayUnduck, carPlayUnduckInterval);
            break;
        default:
            break;
        }
    }
}

#include "facaderules.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace
{

constexpr const char *boostedSources[] = {
    "S+CarPlayTelephony",
    "S+BtPhone",
    "S+CarPlayAlert",
    "S+BtRingtone",
    "S+AuxIn",
    "S+CarPlaySpeech",
    "S+BtPcmPhone",
};

constexpr const char *groupMembers[] = {"S+AndroidAuto", "S+FilePlayer"};

constexpr double microphoneStageTable[] = {0, 9, 12, 21, 27.5, 30, 40}; // dB, ascending
constexpr double largestProgrammableGain = 6;

constexpr int byteMask = 0xFF;

template<std::size_t count>
bool contains(const char *const (&names)[count], const QString &name)
{
    return std::any_of(std::begin(names), std::end(names), [&name](const char *one) { return name == QLatin1String(one); });
}

} // namespace

int FacadeRules::sentVolume(const QString &source, int volume)
{
    return contains(boostedSources, source) ? sentAlternativeVolume(volume) : volume;
}

int FacadeRules::sentTo(const QString &track, const QString &source, int volume)
{
    return isBoosted(track, source) ? sentAlternativeVolume(volume) : volume;
}

bool FacadeRules::isBoosted(const QString &track, const QString &source)
{
    return track == QLatin1String("alternative") || source == QLatin1String(&hiCarCallSource[0]) || contains(boostedSources, source);
}

int FacadeRules::platformVolume(int volume)
{
    return int(unsigned(volume) * unsigned(volumeFactor) & unsigned(byteMask));
}

int FacadeRules::sentAlternativeVolume(int volume)
{
    constexpr double boost = 1.5;
    return std::min(int(volume * boost) & byteMask, highestVolume);
}

QString FacadeRules::platformSource(const QString &name)
{
    if (name.startsWith(QLatin1String("s+")))
        return platformSource(QLatin1Char('S') + name.mid(1));
    const QString ending = QStringLiteral("_APP");
    return name.endsWith(ending) ? name.chopped(ending.size()) : name;
}

QStringList FacadeRules::othersOfGroup(const QString &source)
{
    QStringList others;
    if (!contains(groupMembers, source))
        return others;
    for (const char *const member : groupMembers) {
        if (source != QLatin1String(member))
            others.append(QLatin1String(member));
    }
    return others;
}

int FacadeRules::channelsOfType(int type)
{
    constexpr int channels[] = {14, 1, 2, 2, 1, 1}; // the alternative track is one for prompts and the HiCar call
    return type >= 0 && std::size_t(type) < std::size(channels) ? channels[type] : 0;
}

FacadeRules::MicrophoneStages FacadeRules::microphoneStages(double given)
{
    // A log may say anything; of what no amplifier can do only the sign counts.
    constexpr double limit = 1000;
    const double gain = given > -limit && given < limit ? given : std::signbit(given) ? -limit : limit;
    if (gain <= 0)
        return {0, int(gain)};
    std::size_t stage = 0;
    while (stage + 1 < std::size(microphoneStageTable) && microphoneStageTable[stage + 1] <= gain)
        ++stage;
    const bool isTooFarAbove = gain - microphoneStageTable[stage] > largestProgrammableGain;
    if (isTooFarAbove && stage + 1 < std::size(microphoneStageTable))
        ++stage;
    return {microphoneStageTable[stage], int(gain - microphoneStageTable[stage])};
}

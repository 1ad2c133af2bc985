#ifndef TRACKS_H
#define TRACKS_H

#include <QtCore/QString>

#include <algorithm>
#include <array>

namespace simulator
{

/// The tracks that the chip has.
constexpr std::array<const char *, 8> trackNames = {"main", "second", "alternative", "uplink", "input0", "input1", "input2", "main_im"};

inline bool isTrack(const QString &name)
{
    return std::any_of(trackNames.cbegin(), trackNames.cend(), [&name](const char *track) { return name == QLatin1String(track); });
}

/// Output channels by bit. The last two have no gain in fade and balance.
struct OutputChannel
{
    quint32 bit;
    const char *name;
    bool hasGain;
};

constexpr std::array<OutputChannel, 6> outputChannels = {{
    {1, "left front", true},
    {2, "right front", true},
    {4, "left rear", true},
    {8, "right rear", true},
    {16, "fifth output", false},
    {32, "sixth output", false},
}};

constexpr quint32 allOutputBits = 0x3F; ///< the six channels
constexpr quint32 everyOutput = 0xFFFF; ///< how callers address all of them

} // namespace simulator

#endif

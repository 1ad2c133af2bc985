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

/// Output channels by bit.
struct OutputChannel
{
    quint32 bit;
    const char *name;
};

constexpr std::array<OutputChannel, 6> outputChannels = {{
    {1, "left front"},
    {2, "right front"},
    {4, "left rear"},
    {8, "right rear"},
    {16, "fifth output"},
    {32, "sixth output"},
}};

constexpr std::size_t gainChannelCount = 4; ///< the first ones: those that have a gain in fade and balance

constexpr quint32 allOutputBits = 0x3F; ///< the six channels
constexpr quint32 everyOutput = 0xFFFF; ///< how callers address all of them

} // namespace simulator

#endif

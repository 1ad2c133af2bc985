#ifndef STREAMTAGS_H
#define STREAMTAGS_H

#include <limits>

/// Every tag with its track.
struct TaggedTrack
{
    int tag;
    const char *track;
};
inline constexpr TaggedTrack taggedTracks[] = {
    {0, "main"},
    {1, "second"},
    {2, "alternative"},
    {3, "uplink"},
    {4, "input0"},
    {5, "input1"},
    {6, "input2"},
    {7, "main_im"},
};

/// Numbers that are no tag.
struct NoTag
{
    const char *name;
    int tag;
};
inline constexpr NoTag noTags[] = {
    {"tag 8 has no track", 8},
    {"tag -1 has no track", -1},
    {"the lowest int as tag", std::numeric_limits<int>::min()},
    {"the highest int as tag", std::numeric_limits<int>::max()},
};

#endif

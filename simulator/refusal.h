#ifndef REFUSAL_H
#define REFUSAL_H

#include <QtCore/QLatin1String>

namespace simulator
{

/**
 * Result codes of the simulated chip.
 *
 * They keep clear of 1 and -1, which the control facade gives results of its own.
 */
enum Refusal : int {
    Accepted = 0,
    UnknownTrack = 101,
    EmptyName = 102,
    VolumeOutOfRange = 103, ///< a track volume above 148, a master volume above 100, a microphone volume outside 0..91
    GainOutOfRange = 104, ///< a channel gain above 100
    UnknownChannel = 105, ///< bits that name no output, or more than one where one is wanted
    UnknownInput = 106, ///< an input other than 1 (auxiliary) and 2 (I2S)
    PinOutOfRange = 107, ///< outside 0..5
    ModeOutOfRange = 108, ///< a front/rear mode other than 0 and 1
    QualityOutOfRange = 109, ///< outside 0..2
    NotFinite = 110, ///< NaN or an infinity
    NullPointer = 111, ///< a record or result pointer that is null
    KindOutOfRange = 112, ///< a filter kind other than 0 and 1
    CountOutOfRange = 113, ///< more or fewer microphone test values than 1..8
    DelayOutOfRange = 114, ///< a negative loudspeaker delay
    ObjectDestroyed = 120, ///< a call through a pointer whose object was destroyed
};

struct RefusalInfo
{
    Refusal code;
    const char *text;
};

constexpr RefusalInfo refusalTable[] = {
    {UnknownTrack, "unknown track"},
    {EmptyName, "empty name"},
    {VolumeOutOfRange, "volume out of range"},
    {GainOutOfRange, "gain out of range"},
    {UnknownChannel, "unknown channel"},
    {UnknownInput, "unknown input"},
    {PinOutOfRange, "pin out of range"},
    {ModeOutOfRange, "mode out of range"},
    {QualityOutOfRange, "quality out of range"},
    {NotFinite, "not a finite number"},
    {NullPointer, "null pointer"},
    {KindOutOfRange, "filter kind out of range"},
    {CountOutOfRange, "count out of range"},
    {DelayOutOfRange, "delay out of range"},
    {ObjectDestroyed, "the object is destroyed"},
};

/// The words that the journal's note gives for a code, empty for a code that the chip does not use.
constexpr QLatin1String refusalText(int code)
{
    for (const RefusalInfo &info : refusalTable) {
        if (info.code == code)
            return QLatin1String(info.text);
    }
    return QLatin1String("");
}

} // namespace simulator

#endif

#ifndef OPERATIONS_H
#define OPERATIONS_H

#include "objectkind.h"

#include <QtCore/QString>

namespace simulator
{

/// Every operation of the platform's objects. The names are unique across the four kinds.
enum class Operation : int {
    SetDuckingMode,
    SetDuckingTargetGain,
    SetMasterVolume,
    GetMasterVolume,
    SetFadeBalance,
    SetTrackVolume,
    GetTrackVolume,
    MuteTrack,
    UnmuteTrack,
    SetMicVolume,
    SetMicPgaGain,
    SetMicOpGain,
    SetMicAnalogGain,
    GetMicAnalogGain,
    SetAlterTrackVolume,
    StartMicGainCalibration,
    SetMicGainCalibration,
    GetMicCalibrationGain,

    SetOutputSource,
    GetActiveSource,
    SetInputDestination,
    SetInputSelectPin,
    GetInputSelectPin,
    SetMicLeftRightSwitch,
    SetOutputChannelMask,
    QueryAlterNumber,
    SetHandsfreeDelay,

    SetFrontRearMode,

    SetFilter,
    SetLoudness,
    SetEqParameter,
    GetMicrophoneTest,
    EnableDps,
    DisableDps,
    EnableStereo,
    DisableStereo,
    SetDpsUserGain,
    SetSpeakerDelay,
    SetAecQuality,
    SetExtEqParameter,
    StartDownlinkDelayEstimation,
    GetDownlinkDelayEstimation,
};

struct OperationInfo
{
    Operation operation;
    ObjectKind kind;
    const char *name;
};

/// All operations, in the order of the enumeration.
constexpr OperationInfo operationTable[] = {
    {Operation::SetDuckingMode, ObjectKind::Volume, "setDuckingMode"},
    {Operation::SetDuckingTargetGain, ObjectKind::Volume, "setDuckingTargetGain"},
    {Operation::SetMasterVolume, ObjectKind::Volume, "setMasterVolume"},
    {Operation::GetMasterVolume, ObjectKind::Volume, "getMasterVolume"},
    {Operation::SetFadeBalance, ObjectKind::Volume, "setFadeBalance"},
    {Operation::SetTrackVolume, ObjectKind::Volume, "setTrackVolume"},
    {Operation::GetTrackVolume, ObjectKind::Volume, "getTrackVolume"},
    {Operation::MuteTrack, ObjectKind::Volume, "muteTrack"},
    {Operation::UnmuteTrack, ObjectKind::Volume, "unmuteTrack"},
    {Operation::SetMicVolume, ObjectKind::Volume, "setMicVolume"},
    {Operation::SetMicPgaGain, ObjectKind::Volume, "setMicPgaGain"},
    {Operation::SetMicOpGain, ObjectKind::Volume, "setMicOpGain"},
    {Operation::SetMicAnalogGain, ObjectKind::Volume, "setMicAnalogGain"},
    {Operation::GetMicAnalogGain, ObjectKind::Volume, "getMicAnalogGain"},
    {Operation::SetAlterTrackVolume, ObjectKind::Volume, "setAlterTrackVolume"},
    {Operation::StartMicGainCalibration, ObjectKind::Volume, "startMicGainCalibration"},
    {Operation::SetMicGainCalibration, ObjectKind::Volume, "setMicGainCalibration"},
    {Operation::GetMicCalibrationGain, ObjectKind::Volume, "getMicCalibrationGain"},

    {Operation::SetOutputSource, ObjectKind::Source, "setOutputSource"},
    {Operation::GetActiveSource, ObjectKind::Source, "getActiveSource"},
    {Operation::SetInputDestination, ObjectKind::Source, "setInputDestination"},
    {Operation::SetInputSelectPin, ObjectKind::Source, "setInputSelectPin"},
    {Operation::GetInputSelectPin, ObjectKind::Source, "getInputSelectPin"},
    {Operation::SetMicLeftRightSwitch, ObjectKind::Source, "setMicLeftRightSwitch"},
    {Operation::SetOutputChannelMask, ObjectKind::Source, "setOutputChannelMask"},
    {Operation::QueryAlterNumber, ObjectKind::Source, "queryAlterNumber"},
    {Operation::SetHandsfreeDelay, ObjectKind::Source, "setHandsfreeDelay"},

    {Operation::SetFrontRearMode, ObjectKind::Mixer, "setFrontRearMode"},

    {Operation::SetFilter, ObjectKind::App, "setFilter"},
    {Operation::SetLoudness, ObjectKind::App, "setLoudness"},
    {Operation::SetEqParameter, ObjectKind::App, "setEqParameter"},
    {Operation::GetMicrophoneTest, ObjectKind::App, "getMicrophoneTest"},
    {Operation::EnableDps, ObjectKind::App, "enableDps"},
    {Operation::DisableDps, ObjectKind::App, "disableDps"},
    {Operation::EnableStereo, ObjectKind::App, "enableStereo"},
    {Operation::DisableStereo, ObjectKind::App, "disableStereo"},
    {Operation::SetDpsUserGain, ObjectKind::App, "setDpsUserGain"},
    {Operation::SetSpeakerDelay, ObjectKind::App, "setSpeakerDelay"},
    {Operation::SetAecQuality, ObjectKind::App, "setAecQuality"},
    {Operation::SetExtEqParameter, ObjectKind::App, "setExtEqParameter"},
    {Operation::StartDownlinkDelayEstimation, ObjectKind::App, "startDownlinkDelayEstimation"},
    {Operation::GetDownlinkDelayEstimation, ObjectKind::App, "getDownlinkDelayEstimation"},
};

constexpr bool operationTableIsInOrder()
{
    int index = 0;
    for (const OperationInfo &info : operationTable) {
        if (static_cast<int>(info.operation) != index++)
            return false;
    }
    return index == static_cast<int>(Operation::GetDownlinkDelayEstimation) + 1;
}
static_assert(operationTableIsInOrder(), "operationInfo() finds a row by its number");

constexpr const OperationInfo &operationInfo(Operation operation)
{
    return operationTable[static_cast<int>(operation)];
}

/// "Volume.setTrackVolume": how tests and scenarios name an operation.
inline QString operationName(Operation operation)
{
    const OperationInfo &info = operationInfo(operation);
    return objectKindName(info.kind) + QLatin1Char('.') + QLatin1String(info.name);
}

} // namespace simulator

#endif

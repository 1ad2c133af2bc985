#include "linegrammar.h"

#include <algorithm>
#include <array>

using LogLines::Id;

namespace
{

constexpr std::size_t mostLines = 12;

enum class Order {
    AsListed, ///< each once at most, in this order
    LastRepeats, ///< the same, but the last one any number of times
    Any, ///< any number of them, in any order
};

struct Operation
{
    Id begins;
    Order order;
    std::array<Id, mostLines> lines; ///< those that are left are the first one again, which no operation writes
};

constexpr Id none = Id::ManagerStarts;

constexpr Operation listed(Id begins, std::array<Id, mostLines> lines)
{
    return {begins, Order::AsListed, lines};
}

constexpr Operation lastRepeats(Id begins, std::array<Id, mostLines> lines)
{
    return {begins, Order::LastRepeats, lines};
}

constexpr Operation any(Id begins, std::array<Id, mostLines> lines)
{
    return {begins, Order::Any, lines};
}

// clang-format off
constexpr Operation operations[] = {
    // Life cycle
    lastRepeats(Id::ManagerStarts, {Id::Init, Id::MasterSet, Id::MasterRefused, Id::MasterStepIgnored, Id::StoreAutoMicGainKey, Id::AnalogGain, Id::GetMicAnalogOpAndPga, Id::HandleChannelVolumeChanged}),
    any(Id::Init, {Id::StoreHandsfreeDelayKey, Id::StoreAutoMicGainKey, Id::StepStreamSet, Id::StepStreamRefused, Id::StepTooHigh, Id::NameUnknown, Id::SetMicInputValue, Id::SetLoudNess, Id::EqType, Id::MicTypeIsDefault, Id::SetMicLeftRightSwitch}),
    // Status, channel and volume
    listed(Id::UpdateAudioStatus, {Id::HandleVolumeTypeChanged}),
    listed(Id::HandleVolumeTypeChanged, {Id::CarPlayDuckIgnored, Id::NavigationEndsInCall, Id::MainChannelTemporarily, Id::StreamTag, Id::VolumeTooHigh, Id::VolumeAdjusted}),
    listed(Id::UpdateAudioChannel, {Id::OutputTag, Id::EqualizerReset, Id::EqType}),
    listed(Id::SetVolume, {Id::HandleChannelVolumeChanged}),
    any(Id::HandleChannelVolumeChanged, {Id::StreamTag, Id::VolumeTooHigh, Id::AlternativeSet, Id::AlternativeRefused}),
    any(Id::DelaySetVolume, {Id::DelayedVolume, Id::StreamTag, Id::VolumeTooHigh}),
    listed(Id::UpdateCurrentAudioVolume, {Id::GetVolume, Id::KeyVolume, Id::SetVolume}),
    // Ducking
    listed(Id::Duck, {Id::DuckingBegins, Id::DuckingBegins}),
    listed(Id::UnDuck, {Id::DuckingBegins}),
    listed(Id::AaDuckAudio, {Id::Duck, Id::HandleVolumeTypeChanged}),
    listed(Id::AaUnduckAudio, {Id::HandleVolumeTypeChanged, Id::UnDuck}),
    listed(Id::ClDuckAudio, {Id::Duck, Id::HandleVolumeTypeChanged}),
    listed(Id::ClUnduckAudio, {Id::HandleVolumeTypeChanged, Id::UnDuck}),
    listed(Id::CpDuckAudio, {Id::Duck}),
    listed(Id::HandleNotComeCpAlte, {Id::UpdateAudioStatus}),
    listed(Id::DelayCpTruelyUnduck, {Id::UpdateAudioStatus, Id::UnDuck}),
    listed(Id::OnRecvBackCar, {Id::CpDuckAudio, Id::CpUnduckAudio}),
    // Mute
    listed(Id::SetAudioMute, {Id::IsAttOn, Id::MuteBegins}),
    listed(Id::DeMute, {Id::MuteBegins}),
    listed(Id::SetMute, {Id::MuteBegins}),
    listed(Id::TriggerAtt, {Id::IsAttOn, Id::MuteBegins}),
    any(Id::MuteBegins, {Id::MuteRefused, Id::MuteBegins}),
    listed(Id::SetHCconnect, {Id::VolumeTooHigh, Id::AlternativeSet, Id::AlternativeRefused}),
    // Equalizer
    listed(Id::EqType, {Id::SetEqType}),
    any(Id::InsertList, {Id::CustomEq}),
    listed(Id::SetEqType, {Id::InsertList, Id::SetEqTypeGains, Id::GainWrong, Id::EqualizerSet, Id::EqualizerRefused}),
    listed(Id::EqTypePrev, {Id::SetEqType}),
    listed(Id::EqTypeNext, {Id::SetEqType}),
    listed(Id::OnFirstSetEqType, {Id::EqType}),
    listed(Id::AdjustCustomEq, {Id::InsertList, Id::AdjustCustomEqGains, Id::GainWrong, Id::EqualizerSet, Id::EqualizerRefused, Id::StoreSetCustomEq}),
    listed(Id::SetLoudNess, {Id::LoudnessSent}),
    listed(Id::LoudnessSent, {Id::LoudnessRefused}),
    listed(Id::EqualizerSet, {Id::ShortRecord, Id::ShortRecordInHertz}),
    any(Id::ShortRecord, {Id::Frequency}),
    any(Id::ShortRecordInHertz, {Id::Frequency}),
    any(Id::InitialFrequency, {Id::InitialFrequency}),
    // Microphone
    listed(Id::SetMicInputValue, {Id::MicrophoneVolumeWrong, Id::MicrophoneVolumeSet, Id::MicrophoneVolumeRefused}),
    listed(Id::SetMicLeftRightSwitch, {Id::MicrophoneSwitched, Id::MicrophoneSwitchRefused, Id::StoreAutoMicGainKey, Id::AnalogGain, Id::StoreHandsfreeDelayKey, Id::HandsfreeBegins}),
    listed(Id::GetAutoMicGain, {Id::StoreAutoMicGainKey}),
    listed(Id::StoreAutoMicGainKey, {Id::StoreAutoMicGain}),
    listed(Id::StoreHandsfreeDelayKey, {Id::StoreHandsfreeDelay}),
    listed(Id::SetMicAnalogGain, {Id::AnalogGain, Id::StoreSetAutoMicGain}),
    listed(Id::GetMicAnalogOpAndPga, {Id::GetAutoMicGain}),
    listed(Id::StartMicGainCalibration, {Id::CalibrationStarts}),
    listed(Id::SetMicGainCalibration, {Id::CalibrationApplied}),
    listed(Id::SetHandsfreeDelay, {Id::HandsfreeBegins, Id::StoreSetHandsfreeDelay}),
    listed(Id::HandsfreeBegins, {Id::HandsfreeSet, Id::HandsfreeRefused}),
    listed(Id::SetDownlinkDelayEstimation, {Id::DownlinkStarts}),
    listed(Id::GetDownlinkDelayEstimation, {Id::DownlinkRead}),
    listed(Id::SetInputDestination, {Id::InputTag, Id::StoreAutoMicGainKey, Id::AnalogGain}),
    // The facade
    listed(Id::StreamTag, {Id::StreamName, Id::StreamSet, Id::StreamRefused}),
    any(Id::StepStreamSet, {Id::StepStreamSet, Id::StepStreamRefused, Id::StepTooHigh, Id::NameUnknown}),
    listed(Id::OutputTag, {Id::OutputName, Id::TrackUnknown, Id::OutputBegins}),
    listed(Id::OutputBegins, {Id::OutputTrack, Id::OutputSource, Id::FrontSeatSet, Id::FrontSeatRefused, Id::OutputFailed}),
    listed(Id::OutputFrontTag, {Id::OutputFrontName, Id::TrackUnknown, Id::OutputFrontBegins}),
    listed(Id::OutputFrontBegins, {Id::FrontChannels, Id::FrontAndRearChannels, Id::OutputFrontSet, Id::OutputFrontRefused}),
    listed(Id::InputTag, {Id::InputName, Id::TrackUnknown, Id::InputBegins}),
    listed(Id::InputBegins, {Id::InputTrack, Id::InputDestination, Id::InputResult, Id::InputSet, Id::InputRefused}),
    listed(Id::PinUnknown, {Id::AuxiliaryBegins}),
    listed(Id::QualityUnknown, {Id::EchoQualityBegins}),
    listed(Id::AuxiliaryBegins, {Id::AuxiliarySet, Id::AuxiliaryRefused}),
    listed(Id::AuxiliaryReadBegins, {Id::AuxiliaryRead, Id::AuxiliaryReadRefused, Id::InputUnknown}),
    listed(Id::DuckingBegins, {Id::FrontSeatSet, Id::FrontSeatRefused}),
    listed(Id::EchoQualityBegins, {Id::EchoQualitySet, Id::EchoQualityRefused}),
    listed(Id::GroupFound, {Id::GroupChanges, Id::TrackRefused, Id::TrackChanged}),
    any(Id::FadeBegins, {Id::FadeWrong, Id::FadeGains, Id::LoudspeakerRefused, Id::LoudspeakerGain}),
};
// clang-format on

struct TimerLine
{
    Id id;
    const char *timer;
};

constexpr TimerLine timerLines[] = {
    {Id::DeMute, "muteTimer"},
    {Id::DelaySetVolume, "delayVolumeTimer"},
    {Id::OnFirstSetEqType, "firstEqTimer"},
    {Id::HandleNotComeCpAlte, "cpAlertTimer"},
    {Id::DelayCpTruelyUnduck, "cpUnduckTimer"},
};

constexpr Id anywhere[] = {
    Id::NoEventLoop,
    Id::ObjectNotMade,
    Id::StoreComplaint,
    Id::StoreFileMissing,
    Id::StoreLargeHomeUi,
    Id::StoreNotCleared,
    Id::StoreSaveComplaint,
};

constexpr std::size_t idCount = std::size_t(Id::ServiceSays) + 1;

/// What is asked for every line of a log, by its number.
struct Known
{
    const Operation *operation = nullptr;
    bool isAnywhere = false;
};

constexpr std::array<Known, idCount> makeKnown()
{
    std::array<Known, idCount> lines{};
    for (const Operation &operation : operations)
        lines[std::size_t(operation.begins)].operation = &operation;
    for (const Id id : anywhere)
        lines[std::size_t(id)].isAnywhere = true;
    return lines;
}

constexpr std::array<Known, idCount> known = makeKnown();

} // namespace

LineGrammar::Position LineGrammar::after(Id operation, Position position, Id next)
{
    const Operation *const row = known[std::size_t(operation)].operation;
    if (!row || next == none)
        return notThere;
    const auto &lines = row->lines;
    const auto at = std::size_t(position);
    const bool isLast = row->order == Order::LastRepeats && position > 0 && (at == lines.size() || lines.at(at) == none);
    if (isLast && lines.at(at - 1) == next)
        return position;
    const auto from = lines.cbegin() + (row->order == Order::Any ? 0 : position);
    const auto found = std::find(from, lines.cend(), next);
    return found == lines.cend() ? notThere : int(found - lines.cbegin()) + 1;
}

bool LineGrammar::isAnywhere(Id id)
{
    return known[std::size_t(id)].isAnywhere;
}

const char *LineGrammar::timerOf(Id id)
{
    const auto *const found = std::find_if(std::begin(timerLines), std::end(timerLines), [id](const TimerLine &line) { return line.id == id; });
    return found == std::end(timerLines) ? nullptr : found->timer;
}

#include "platformcall.h"

#include "platform.h"
#include "valuetext.h"

#include <algorithm>
#include <functional>
#include <iterator>

using simulator::AudioChip;
using simulator::JournalEntry;
using simulator::Platform;

namespace
{

constexpr int everyOutput = 0xFFFF;
constexpr quint16 usedBand = 3;
constexpr quint16 loudnessLevel = 800;

QVariantList listAt(const LoggedCall &call, int index)
{
    return call.arguments.value(index).toList();
}

audio::audio_ext_eq_parameter_t extendedEqualizer(const LoggedCall &call)
{
    audio::audio_ext_eq_parameter_t record = {};
    record.channel = everyOutput;
    const QVariantList gains = listAt(call, 0);
    for (int i = 0; i < std::min(gains.size(), int(std::size(record.band))); ++i) {
        record.band[i].type = usedBand;
        record.band[i].gain = gains.at(i).toFloat();
    }
    return record;
}

audio::audio_channel_gain_t channelGain(const LoggedCall &call)
{
    audio::audio_channel_gain_t record = {};
    record.channel = call.arguments.at(0).toUInt();
    record.gain = static_cast<unsigned char>(call.arguments.at(1).toInt());
    return record;
}

audio::audio_loudness_t loudness(const LoggedCall &call)
{
    audio::audio_loudness_t record = {};
    record.on = call.arguments.at(0).toBool() ? 1 : 0;
    record.onAgain = record.on;
    record.level = loudnessLevel;
    return record;
}

QString textAt(const LoggedCall &call, int index)
{
    return call.arguments.at(index).toString();
}

int numberAt(const LoggedCall &call, int index)
{
    return call.arguments.at(index).toInt();
}

float realAt(const LoggedCall &call, int index)
{
    return call.arguments.at(index).toFloat();
}

unsigned char byteAt(const LoggedCall &call, int index)
{
    return static_cast<unsigned char>(numberAt(call, index));
}

struct Operation
{
    const char *name;
    /// What the chip does with it: its own result.
    int (*apply)(AudioChip &chip, const LoggedCall &call);
};

constexpr Operation operations[] = {
    {"setTrackVolume", [](AudioChip &chip, const LoggedCall &call) { return chip.setTrackVolume(textAt(call, 0), textAt(call, 1), byteAt(call, 2)); }},
    {"setMasterVolume", [](AudioChip &chip, const LoggedCall &call) { return chip.setMasterVolume(byteAt(call, 0)); }},
    {"setAlterTrackVolume", [](AudioChip &chip, const LoggedCall &call) { return chip.setAlterTrackVolume(byteAt(call, 0)); }},
    {"muteTrack", [](AudioChip &chip, const LoggedCall &call) { return chip.setMute(textAt(call, 0), true); }},
    {"unmuteTrack", [](AudioChip &chip, const LoggedCall &call) { return chip.setMute(textAt(call, 0), false); }},
    {"setDuckingMode", [](AudioChip &chip, const LoggedCall &call) { return chip.setDuckingMode(call.arguments.at(0).toUInt()); }},
    {"setDuckingTargetGain", [](AudioChip &chip, const LoggedCall &call) { return chip.setDuckingTargetGain(byteAt(call, 0)); }},
    {"setFadeBalance", [](AudioChip &chip, const LoggedCall &call) { return chip.setFadeBalance(channelGain(call)); }},
    {"setMicVolume", [](AudioChip &chip, const LoggedCall &call) { return chip.setMicVolume(realAt(call, 0)); }},
    {"setMicAnalogGain", [](AudioChip &chip, const LoggedCall &call) { return chip.setMicAnalogGain(realAt(call, 0), realAt(call, 1)); }},
    {"setMicOpGain", [](AudioChip &chip, const LoggedCall &call) { return chip.setMicOpGain(realAt(call, 1), realAt(call, 2)); }},
    {"setMicPgaGain", [](AudioChip &chip, const LoggedCall &call) { return chip.setMicPgaGain(realAt(call, 1), realAt(call, 2)); }},
    {"startMicGainCalibration", [](AudioChip &chip, const LoggedCall & /*call*/) { return chip.startMicGainCalibration(); }},
    {"setMicGainCalibration", [](AudioChip &chip, const LoggedCall & /*call*/) { return chip.setMicGainCalibration(); }},
    {"setOutputSource", [](AudioChip &chip, const LoggedCall &call) { return chip.setOutputSource(textAt(call, 0), textAt(call, 1)); }},
    {"setOutputChannelMask", [](AudioChip &chip, const LoggedCall &call) { return chip.setOutputChannelMask(numberAt(call, 0)); }},
    {"setFrontRearMode", [](AudioChip &chip, const LoggedCall &call) { return chip.setFrontRearMode(numberAt(call, 0)); }},
    {"setInputDestination", [](AudioChip &chip, const LoggedCall &call) { return chip.setInputDestination(textAt(call, 0), textAt(call, 1)); }},
    {"setInputSelectPin", [](AudioChip &chip, const LoggedCall &call) { return chip.setInputSelectPin(numberAt(call, 0), numberAt(call, 1)); }},
    {"setMicLeftRightSwitch", [](AudioChip &chip, const LoggedCall &call) { return chip.setMicLeftRightSwitch(call.arguments.at(0).toBool()); }},
    {"setHandsfreeDelay", [](AudioChip &chip, const LoggedCall &call) { return chip.setHandsfreeDelay(numberAt(call, 0)); }},
    {"setLoudness", [](AudioChip &chip, const LoggedCall &call) { return chip.setLoudness(loudness(call)); }},
    {"setExtEqParameter", [](AudioChip &chip, const LoggedCall &call) { return chip.setExtEqParameter(extendedEqualizer(call)); }},
    {"setAecQuality", [](AudioChip &chip, const LoggedCall &call) { return chip.setAecQuality(numberAt(call, 0)); }},
    {"startDownlinkDelayEstimation", [](AudioChip &chip, const LoggedCall & /*call*/) { return chip.startDownlinkDelayEstimation(); }},
};

QString argumentText(const QVariant &argument)
{
    switch (argument.userType()) {
    case QMetaType::UnknownType:
        return QStringLiteral("?");
    case QMetaType::Bool:
        return simulator::valueText(argument.toBool());
    case QMetaType::Double:
        return simulator::floatText(argument.toFloat());
    case QMetaType::QString:
        return simulator::quotedText(argument.toString());
    default:
        return argument.toString();
    }
}

template<typename Record>
void setRecord(JournalEntry &entry, const Record &record)
{
    entry.arguments = {simulator::toVariant(record)};
    entry.argumentTexts = QStringList(simulator::valueText(record));
    entry.record = simulator::recordBytes(record);
}

/// Of a call whose argument is a record that the log gives the values of.
void setRecord(JournalEntry &entry, const LoggedCall &call)
{
    if (call.operation == QLatin1String("setFadeBalance"))
        setRecord(entry, channelGain(call));
    else if (call.operation == QLatin1String("setLoudness"))
        setRecord(entry, loudness(call));
    // Of an equalizer nobody shows more than the gains, which are found in the record.
    else if (call.operation == QLatin1String("setExtEqParameter"))
        entry.record = simulator::recordBytes(extendedEqualizer(call));
}

QString refusal(int code)
{
    const QLatin1String known = simulator::refusalText(code);
    return known.size() > 0 ? QString(known) : QStringLiteral("refused by the platform");
}

} // namespace

JournalEntry PlatformCall::make(const LoggedCall &call)
{
    JournalEntry entry;
    entry.kind = call.kind;
    entry.operation = call.operation;
    entry.result = call.result;
    for (const QVariant &argument : call.arguments) {
        entry.arguments.append(argument);
        entry.argumentTexts.append(argumentText(argument));
    }
    for (const QVariant &output : call.outputs)
        entry.outputs.append(output);
    if (call.isWhole())
        setRecord(entry, call);
    if (call.isRefused()) {
        entry.note = refusal(call.result);
        return entry;
    }
    const auto *const operation
        = std::find_if(std::begin(operations), std::end(operations), [&call](const Operation &one) { return call.operation == QLatin1String(one.name); });
    if (operation == std::end(operations) || !call.isWhole())
        return entry;
    const int own = operation->apply(*Platform::instance()->chip(), call);
    if (own != 0)
        entry.note = QStringLiteral("the simulated platform would refuse it: %1").arg(refusal(own));
    return entry;
}

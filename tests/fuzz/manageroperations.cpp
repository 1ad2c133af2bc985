#include "inputbytes.h"
#include "operations.h"
#include "unitlife.h"

#include <qzaudio/audiodatabase.h>

#include <QtCore/QList>

#include <algorithm>
#include <iterator>

using audio::AudioControl;

namespace
{

constexpr int bands = 16;

void setVolume(UnitLife &life, InputBytes &input)
{
    const auto type = input.enumerator<ZelAudioType>();
    const int volume = input.number();
    life.manager().setVolume(type, volume, input.flag());
    if (type >= ZelAudioTypeMedia && type <= ZelAudioTypeHiCarCall)
        require(life.manager().getVolume(type) == volume, "the manager's volume is what it was set to");
}

void readChannels(UnitLife &life, InputBytes &input)
{
    QList<AudioChannel> channels{AudioChannelNone};
    const auto type = input.enumerator<ZelAudioType>();
    life.manager()._getAllChannelsFromCurrentType(channels, type);
    require(std::is_sorted(channels.begin(), channels.end()), "channels of a type are ascending");
    for (const AudioChannel channel : qAsConst(channels))
        require(life.store().getChannelInfo(channel).type == type, "channels of a type have it");
}

void adjustBand(UnitLife &life, InputBytes &input)
{
    const int value = input.number();
    const int band = input.index(bands); // any other stops the process, as is documented
    life.manager().adjustCustomEq(value, band);
    // As decimals, as which the manager compares them, greater numbers are the same as their neighbours.
    constexpr int mostExact = 1 << 23;
    if (value > -mostExact && value < mostExact)
        require(life.manager().customEq(band) == 2 * value, "a band that was adjusted is stored doubled");
}

void readStages(UnitLife &life, InputBytes & /*input*/)
{
    float stage = 0;
    int programmable = 0;
    life.manager().getMicAnalogOpAndPga(stage, programmable);
    require(stage >= 0 && stage <= 40, "the analogue stage is between 0 and 40 dB");
    float left = 0;
    float right = 0;
    life.manager().getMicAnalogGain(&left, &right);
    life.manager().getMicAnalogGain();
    int first = 0;
    life.manager().getMicCalibrationGain(&first);
    short delay = 0;
    life.manager().getDownlinkDelayEstimation(&delay);
}

/// Ducking and its end, for each of the projections; their arguments are not used.
void duckAny(UnitLife &life, InputBytes &input)
{
    ZelAudioManager &manager = life.manager();
    const int first = input.number();
    switch (input.index(7)) {
    case 0:
        manager.aaDuckAudio(first, input.number());
        break;
    case 1:
        manager.aaUnduckAudio(first);
        break;
    case 2:
        manager.clDuckAudio(first, input.number());
        break;
    case 3:
        manager.clUnduckAudio(first);
        break;
    case 4:
        manager.duck(first);
        break;
    case 5:
        manager.unDuck();
        break;
    default:
        manager.updateCPAAStatus(static_cast<CPAAStatus>(first));
        manager.setVolResponse(static_cast<VolResponseState>(first), input.flag());
        manager.setCpPhone(input.flag());
    }
}

// clang-format off
constexpr Operation operations[] = {
    {"manager.updateAudioStatus", [](UnitLife &life, InputBytes &input) { life.manager().updateAudioStatus(input.enumerator<AudioStatus>()); }},
    {"manager.updateAudioChannel", [](UnitLife &life, InputBytes &input) {
        const auto channel = input.enumerator<AudioChannel>();
        life.manager().updateAudioChannel(channel);
        require(life.manager().currentAudioChannel() == channel, "the channel that was reported is the channel");
    }},
    {"manager.setVolume", setVolume},
    {"manager.getVolume", [](UnitLife &life, InputBytes &input) { life.manager().getVolume(input.enumerator<ZelAudioType>()); }},
    {"manager.saveVolume", [](UnitLife &life, InputBytes &) { life.manager().saveVolume(); }},
    {"manager.updateCurrentAudioVolume", [](UnitLife &life, InputBytes &input) { life.manager().updateCurrentAudioVolume(input.flag()); }},
    {"manager._getAllChannelsFromCurrentType", readChannels},
    {"manager.duck", duckAny},
    {"manager.cpDuckAudio", [](UnitLife &life, InputBytes &input) {
        const int level = input.number();
        life.manager().cpDuckAudio(level, level);
    }},
    {"manager.cpUnduckAudio", [](UnitLife &life, InputBytes &input) { life.manager().cpUnduckAudio(input.number()); }},
    {"manager.setCPConnected", [](UnitLife &life, InputBytes &input) {
        const bool connected = input.flag();
        life.manager().setCPConnected(connected);
        require(life.manager().getCPConnected() == connected, "CarPlay is connected where it was said to be");
    }},
    {"manager.setAudioMute", [](UnitLife &life, InputBytes &input) {
        const bool mute = input.flag();
        const int count = input.number();
        life.manager().setAudioMute(mute, count);
        require(life.manager().isAttOn() == (mute && count >= 0), "a timed mute mutes, and ends where it has no time");
    }},
    {"manager.deMute", [](UnitLife &life, InputBytes &) { life.manager().deMute(); }},
    {"manager.setMute", [](UnitLife &life, InputBytes &input) { life.manager().setMute(input.flag()); }},
    {"manager.triggerAtt", [](UnitLife &life, InputBytes &) {
        const bool before = life.manager().isAttOn();
        life.manager().triggerAtt();
        require(life.manager().isAttOn() != before, "attenuation goes on and off");
    }},
    {"manager.onRecvBackCar", [](UnitLife &life, InputBytes &input) { life.manager().onRecvBackCar(input.flag()); }},
    {"manager.setHCconnect", [](UnitLife &life, InputBytes &input) { life.manager().setHCconnect(input.flag()); }},
    {"manager.customEq", [](UnitLife &life, InputBytes &input) {
        const int band = input.number();
        const int value = life.manager().customEq(band);
        require((band >= 0 && band < bands) || value == 0, "the manager's band that does not exist is 0");
    }},
    {"manager.setEqType", [](UnitLife &life, InputBytes &input) { life.manager().setEqType(input.number()); }},
    {"manager.eqTypePrev", [](UnitLife &life, InputBytes &) { life.manager().eqTypePrev(); }},
    {"manager.eqTypeNext", [](UnitLife &life, InputBytes &) { life.manager().eqTypeNext(); }},
    {"manager.adjustCustomEq", adjustBand},
    {"manager.setLoudNess", [](UnitLife &life, InputBytes &input) {
        const bool on = input.flag();
        life.manager().setLoudNess(on);
        require(life.manager().loudNess() == on, "loudness is on where it was switched on");
    }},
    {"manager.setMicInputValue", [](UnitLife &life, InputBytes &input) {
        const int value = input.number();
        life.manager().setMicInputValue(value);
        require(life.manager().micInputValue() == value, "the microphone's volume is what it was set to");
    }},
    {"manager.setMicLeftRightSwitch", [](UnitLife &life, InputBytes &input) { life.manager().setMicLeftRightSwitch(input.flag()); }},
    {"manager.getMicAnalogOpAndPga", readStages},
    {"manager.setMicAnalogGain", [](UnitLife &life, InputBytes &input) {
        const float left = input.decimal();
        life.manager().setMicAnalogGain(left, input.decimal());
    }},
    {"manager.startMicGainCalibration", [](UnitLife &life, InputBytes &) { life.manager().startMicGainCalibration(); }},
    {"manager.setMicGainCalibration", [](UnitLife &life, InputBytes &) { life.manager().setMicGainCalibration(); }},
    {"manager.setHandsfreeDelay", [](UnitLife &life, InputBytes &input) { life.manager().setHandsfreeDelay(input.number()); }},
    {"manager.setDownlinkDelayEstimation", [](UnitLife &life, InputBytes &) { life.manager().setDownlinkDelayEstimation(); }},
    {"manager.setInputDestination", [](UnitLife &life, InputBytes &input) {
        const auto tag = input.enumerator<AudioControl::AudioTag>();
        const QByteArray name = input.textOf({QStringLiteral("BT_MIC_Record"), QStringLiteral("S+Mic_APP")});
        life.manager().setInputDestination(tag, name.isNull() ? nullptr : name.constData());
    }},
};
// clang-format on

} // namespace

std::vector<Operation> managerOperations()
{
    return {std::begin(operations), std::end(operations)};
}

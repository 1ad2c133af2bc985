#include "inputbytes.h"
#include "operations.h"
#include "unitlife.h"

#include <policynames.h>
#include <tracks.h>

#include <QtCore/QHash>

#include <iterator>

using audio::AudioControl;

namespace
{

using Tag = AudioControl::AudioTag;

/// Names of sources, the applications' and the platform's.
const QStringList &sourceNames()
{
    static const QStringList names = [] {
        QStringList all;
        for (const policynames::Source &source : policynames::sources)
            all << QLatin1String(source.name) << QLatin1String(source.name) + QLatin1String("_APP");
        return all;
    }();
    return names;
}

const QStringList &trackNames()
{
    static const QStringList names = [] {
        QStringList all;
        for (const char *const track : simulator::trackNames)
            all << QLatin1String(track);
        return all;
    }();
    return names;
}

/// As the facade takes it: for as long as the call lasts, or null.
const char *pointerTo(const QByteArray &text)
{
    return text.isNull() ? nullptr : text.constData();
}

quint8 small(InputBytes &input)
{
    return static_cast<quint8>(input.byte());
}

/// Of about the right size, or of another one.
template<typename Value>
QList<Value> listOf(InputBytes &input, Value (InputBytes::*take)())
{
    constexpr int longest = 24;
    QList<Value> list;
    for (int left = input.index(longest); left > 0; --left)
        list.append((input.*take)());
    return list;
}

QHash<QString, quint8> stepsOf(InputBytes &input)
{
    constexpr int most = 6;
    QHash<QString, quint8> steps;
    for (int left = input.index(most); left > 0; --left) {
        const QString name = QString::fromUtf8(input.textOf(sourceNames()));
        steps.insert(name, small(input));
    }
    return steps;
}

void changeMainStep(UnitLife &life, InputBytes &input)
{
    QString name;
    quint8 step = 0;
    const bool up = input.flag();
    const int result = life.control().changeMainTrackStepVolume(up, name, step);
    require(result != 0 || !up || step <= life.control().getStepRang(), "a step that was raised is in the range");
}

void changeAlternativeStep(UnitLife &life, InputBytes &input)
{
    quint8 out = 0;
    const bool up = input.flag();
    const quint8 current = small(input);
    if (life.control().changeAlterStepVolume(up, current, out) == 0)
        require(out == current + (up ? 1 : -1), "the alternative track goes one step further");
}

void readMicrophoneTest(UnitLife &life, InputBytes & /*input*/)
{
    QList<int> values{1};
    life.control().getMicrophoneTest(values);
    require(values.size() == 8 || values == QList<int>{1}, "a self-test has eight values or none");
}

void readPresets(UnitLife &life, InputBytes &input)
{
    const auto mode = input.enumerator<AudioControl::EqMode>();
    require(life.control().getEqGain(mode).size() == (mode >= 0 && mode <= 6 ? 16 : 0), "seven presets have sixteen gains");
    const auto subwoofer = input.enumerator<AudioControl::SubMode>();
    require(life.control().getSubGain(subwoofer).size() == (subwoofer >= 0 && subwoofer <= 1 ? 9 : 0), "two curves have nine gains");
    QList<int> frequencies;
    life.control().getEqInitValue(frequencies);
    require(frequencies.size() == 16, "there are sixteen bands");
}

void setFilter(UnitLife &life, InputBytes &input)
{
    AudioControl::AudioFilter_t filter = {};
    const auto channel = input.enumerator<AudioControl::AudioOutChannel>();
    filter.value1 = static_cast<quint16>(input.number());
    filter.flag = static_cast<quint32>(input.number());
    filter.kind = static_cast<quint32>(input.number());
    filter.value2 = static_cast<quint16>(input.number());
    life.control().setFilter(channel, filter);
}

/// One that needs names of a track and a source, both as texts.
template<void (AudioControl::*operation)(const char *, const char *)>
void route(UnitLife &life, InputBytes &input)
{
    const QByteArray track = input.textOf(trackNames());
    const QByteArray source = input.textOf(sourceNames());
    (life.control().*operation)(pointerTo(track), pointerTo(source));
}

template<void (AudioControl::*operation)(Tag, const char *)>
void routeTag(UnitLife &life, InputBytes &input)
{
    const Tag tag = input.enumerator<Tag>();
    const QByteArray source = input.textOf(sourceNames());
    (life.control().*operation)(tag, pointerTo(source));
}

void routeFront(UnitLife &life, InputBytes &input)
{
    const QByteArray track = input.textOf(trackNames());
    const QByteArray source = input.textOf(sourceNames());
    life.control().setOutputFrontSource(pointerTo(track), pointerTo(source), input.flag());
}

void routeTagFront(UnitLife &life, InputBytes &input)
{
    const Tag tag = input.enumerator<Tag>();
    const QByteArray source = input.textOf(sourceNames());
    life.control().setOutputFrontSource(tag, pointerTo(source), input.flag());
}

void setStreamVolume(UnitLife &life, InputBytes &input)
{
    const Tag tag = input.enumerator<Tag>();
    const QByteArray source = input.textOf(sourceNames());
    life.control().setStreamVolume(tag, pointerTo(source), small(input));
}

void readStreamVolume(UnitLife &life, InputBytes &input)
{
    const Tag tag = input.enumerator<Tag>();
    const QByteArray source = input.textOf(sourceNames());
    require(life.control().getStreamVolume(tag, pointerTo(source)) <= 148, "a stream's volume is at most 148");
}

void readMicrophone(UnitLife &life, InputBytes & /*input*/)
{
    float first = 0;
    float second = 0;
    life.control().getMicAnalogGain(&first, &second);
    int firstGain = 0;
    int secondGain = 0;
    life.control().getMicCalibrationGain(&firstGain, &secondGain);
    short delay = 0;
    life.control().getDownlinkDelayEstimation(&delay);
}

void setMicrophoneGains(UnitLife &life, InputBytes &input)
{
    const float first = input.decimal();
    life.control().setMicAnalogGain(first, input.decimal());
    const float stage = input.decimal();
    require(life.control().setMicOpAndPga(stage, input.decimal()) == -1, "setting the stages always gives -1");
}

// clang-format off
constexpr Operation operations[] = {
    {"setStepRange", [](UnitLife &life, InputBytes &input) { life.control().setStepRange(small(input)); }},
    {"setAlterMode", [](UnitLife &life, InputBytes &input) { life.control().setAlterMode(input.flag()); }},
    {"setProfileMode", [](UnitLife &life, InputBytes &input) { life.control().setProfileMode(input.number()); }},
    {"setStreamVolume", setStreamVolume},
    {"getStreamVolume", readStreamVolume},
    {"setMasterVolume", [](UnitLife &life, InputBytes &input) {
        const int result = life.control().setMasterVolume(small(input));
        require(result == 0 || result == -1, "setting the master volume gives 0 or -1");
    }},
    {"getMasterVolume", [](UnitLife &life, InputBytes &) { require(life.control().getMasterVolume() <= 100, "the master volume is at most 100"); }},
    {"initTrackStepVolume", [](UnitLife &life, InputBytes &input) {
        const Tag tag = input.enumerator<Tag>();
        life.control().initTrackStepVolume(tag, stepsOf(input));
    }},
    {"getCurMainTrackStepVolumeInfo", [](UnitLife &life, InputBytes &) {
        QString name;
        quint8 step = 0;
        life.control().getCurMainTrackStepVolumeInfo(name, step);
    }},
    {"changeMainTrackStepVolume", changeMainStep},
    {"changeAlterStepVolume", changeAlternativeStep},
    {"getActivedAlterNumber", [](UnitLife &life, InputBytes &) { life.control().getActivedAlterNumber(); }},
    {"setAlterVolume", [](UnitLife &life, InputBytes &input) {
        const quint8 volume = small(input);
        require(life.control().setAlterVolume(volume, input.flag()) == -1, "setting the alternative volume always gives -1");
    }},
    {"setAlterStepVolume", [](UnitLife &life, InputBytes &input) {
        const quint8 step = small(input);
        require(life.control().setAlterStepVolume(step, input.flag()) == -1, "setting the alternative step always gives -1");
        require(life.control().getAlterStepVolume() == 0, "the alternative step is never recorded");
    }},
    {"setMasterStepVolume", [](UnitLife &life, InputBytes &input) {
        const quint8 step = small(input);
        if (life.control().setMasterStepVolume(step) == 0)
            require(life.control().getMasterStepVolume() == step, "a master step that was accepted is the master step");
    }},
    {"setMute", [](UnitLife &life, InputBytes &input) {
        const bool mute = input.flag();
        life.control().setMute(mute);
        require(life.control().isMute() == mute, "a mute holds");
    }},
    {"setBackEarphone", [](UnitLife &life, InputBytes &input) { life.control().setBackEarphone(input.flag()); }},
    {"muteBackEarphone", [](UnitLife &life, InputBytes &input) { life.control().muteBackEarphone(input.flag()); }},
    {"setEqMode", [](UnitLife &life, InputBytes &input) { life.control().setEqMode(input.enumerator<AudioControl::EqMode>()); }},
    {"getEqGain", readPresets},
    {"setEqGain", [](UnitLife &life, InputBytes &input) { life.control().setEqGain(listOf(input, &InputBytes::decimal)); }},
    {"setEqGain10", [](UnitLife &life, InputBytes &input) { life.control().setEqGain10(listOf(input, &InputBytes::number)); }},
    {"setEqValue", [](UnitLife &life, InputBytes &input) { life.control().setEqValue(listOf(input, &InputBytes::number)); }},
    {"setLoudnessSwitch", [](UnitLife &life, InputBytes &input) { life.control().setLoudnessSwitch(input.flag()); }},
    {"setFadeBalance", [](UnitLife &life, InputBytes &input) {
        const int fade = input.number();
        life.control().setFadeBalance(fade, input.number());
    }},
    {"setOutputSource", route<&AudioControl::setOutputSource>},
    {"setOutputSource(tag)", routeTag<&AudioControl::setOutputSource>},
    {"setOutputFrontSource", routeFront},
    {"setOutputFrontSource(tag)", routeTagFront},
    {"setInputDestination", route<&AudioControl::setInputDestination>},
    {"setInputDestination(tag)", routeTag<&AudioControl::setInputDestination>},
    {"setAuxinChannel", [](UnitLife &life, InputBytes &input) { life.control().setAuxinChannel(input.enumerator<AudioControl::AudioInChannel>()); }},
    {"getAuxinChannel", [](UnitLife &life, InputBytes &) {
        const int channel = life.control().getAuxinChannel();
        require(channel >= 0 && channel <= 5, "the auxiliary input's channel is between 0 and 5");
    }},
    {"setI2SINChannel", [](UnitLife &life, InputBytes &input) { life.control().setI2SINChannel(input.enumerator<AudioControl::AudioInChannel>()); }},
    {"setMainAudioDunkingMode", [](UnitLife &life, InputBytes &input) {
        life.control().setMainAudioDunkingMode(static_cast<unsigned int>(input.number()));
    }},
    {"setMainAudioDunkingTargetGain", [](UnitLife &life, InputBytes &input) { life.control().setMainAudioDunkingTargetGain(small(input)); }},
    {"setMicroPhoneVolume", [](UnitLife &life, InputBytes &input) { life.control().setMicroPhoneVolume(input.number()); }},
    {"getMicAnalogGain", readMicrophone},
    {"setMicAnalogGain", setMicrophoneGains},
    {"startMicGainCalibration", [](UnitLife &life, InputBytes &) { life.control().startMicGainCalibration(); }},
    {"setMicGainCalibration", [](UnitLife &life, InputBytes &) { life.control().setMicGainCalibration(); }},
    {"setDownlinkDelayEstimation", [](UnitLife &life, InputBytes &) { life.control().setDownlinkDelayEstimation(); }},
    {"setHandsfreeDelay", [](UnitLife &life, InputBytes &input) { life.control().setHandsfreeDelay(input.number()); }},
    {"setAECQuality", [](UnitLife &life, InputBytes &input) { life.control().setAECQuality(input.enumerator<AudioControl::AudioQuality>()); }},
    {"getMicrophoneTest", readMicrophoneTest},
    {"setMicLeftRightSwitch", [](UnitLife &life, InputBytes &input) { life.control().setMicLeftRightSwitch(input.flag()); }},
    {"setDpsEnable", [](UnitLife &life, InputBytes &input) { life.control().setDpsEnable(input.flag()); }},
    {"setStereoEnable", [](UnitLife &life, InputBytes &input) { life.control().setStereoEnable(input.flag()); }},
    {"setDpsUserGain", [](UnitLife &life, InputBytes &input) { life.control().setDpsUserGain(input.decimal()); }},
    {"setFilter", setFilter},
    {"setSpeakerDelay", [](UnitLife &life, InputBytes &input) { life.control().setSpeakerDelay(listOf(input, &InputBytes::decimal)); }},
    {"setSpeakerDealy", [](UnitLife &life, InputBytes &input) {
        const auto channel = input.enumerator<AudioControl::AudioOutChannel>();
        life.control().setSpeakerDealy(channel, input.decimal());
    }},
};
// clang-format on

} // namespace

std::vector<Operation> facadeOperations()
{
    return {std::begin(operations), std::end(operations)};
}

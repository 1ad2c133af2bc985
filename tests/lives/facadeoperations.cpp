#include "operationrows.h"

#include <QtCore/QHash>

namespace lives
{

namespace
{

using audio::AudioControl;

template<typename Act>
OperationRow row(const char *script, const Kinds &kinds, int weight, Act act, Role role = Role::Ordinary)
{
    return rowOfPart(
        "AudioControl", [](auto &unit) -> auto & { return unit.control(); }, script, kinds, weight, act, role);
}

using Tag = AudioControl::AudioTag;

/// As many as @p count says, all of them @p value but the first one.
template<typename Value>
QList<Value> values(int count, Value value)
{
    QList<Value> list;
    for (int i = 0; i < count; ++i)
        list.append(i == 0 ? static_cast<Value>(0) : value);
    return list;
}

void addState(std::vector<OperationRow> &table)
{
    table.insert(table.end(),
                 {
                     row("setStepRange(%1)", kinds(kind::byte), 2, [](auto &control, Given given) { control.setStepRange(given.byte(0)); }),
                     row("getStepRang()", kinds(), 2, [](auto &control, Given) { return control.getStepRang(); }),
                     row("setAlterMode(%1)", kinds(kind::flag), 2, [](auto &control, Given given) { control.setAlterMode(given.flag(0)); }),
                     row("getAlterMode()", kinds(), 3, [](auto &control, Given) { return control.getAlterMode(); }),
                     row("getMasterStepVolume()", kinds(), 2, [](auto &control, Given) { return control.getMasterStepVolume(); }),
                     row("getAlterStepVolume()", kinds(), 1, [](auto &control, Given) { return control.getAlterStepVolume(); }),
                     row("isMute()", kinds(), 4, [](auto &control, Given) { return control.isMute(); }),
                     row("setProfileMode(%1)", kinds(kind::number), 1, [](auto &control, Given given) { control.setProfileMode(given[0]); }),
                 });
}

void addVolumes(std::vector<OperationRow> &table)
{
    table.insert(
        table.end(),
        {
            row(
                "setStreamVolume(%1, %2, %3)",
                kinds(kind::tag, kind::source, kind::byte),
                6,
                [](auto &control, Given given) { control.setStreamVolume(given.as<Tag>(0), sourceName(given[1]), given.byte(2)); },
                Role::DirectVolume),
            row("getStreamVolume(%1, %2)",
                kinds(kind::tag, kind::source),
                6,
                [](auto &control, Given given) { return control.getStreamVolume(given.as<Tag>(0), sourceName(given[1])); }),
            row("setMasterVolume(%1)", kinds(kind::byte), 3, [](auto &control, Given given) { return control.setMasterVolume(given.byte(0)); }),
            row("getMasterVolume()", kinds(), 3, [](auto &control, Given) { return control.getMasterVolume(); }),
            row(
                "initTrackStepVolume(%1, {%2: %3})",
                kinds(kind::tag, kind::source, kind::byte),
                3,
                [](auto &control, Given given) {
                    QHash<QString, quint8> volumes;
                    volumes.insert(QLatin1String(sourceName(given[1])), given.byte(2));
                    control.initTrackStepVolume(given.as<Tag>(0), volumes);
                },
                Role::DirectVolume),
            row("getCurMainTrackStepVolumeInfo()",
                kinds(),
                5,
                [](auto &control, Given) {
                    QString name;
                    quint8 step = 0;
                    const int result = control.getCurMainTrackStepVolumeInfo(name, step);
                    return answer(result, name, step);
                }),
            row(
                "changeMainTrackStepVolume(%1)",
                kinds(kind::flag),
                12,
                [](auto &control, Given given) {
                    QString name;
                    quint8 step = 0;
                    const int result = control.changeMainTrackStepVolume(given.flag(0), name, step);
                    return answer(result, name, step);
                },
                Role::DirectVolume),
            row("getActivedAlterNumber()", kinds(), 2, [](auto &control, Given) { return control.getActivedAlterNumber(); }),
            row(
                "changeAlterStepVolume(%1, %2)",
                kinds(kind::flag, kind::byte),
                4,
                [](auto &control, Given given) {
                    quint8 step = 0;
                    const int result = control.changeAlterStepVolume(given.flag(0), given.byte(1), step);
                    return answer(result, step);
                },
                Role::DirectVolume),
            row(
                "setAlterVolume(%1, %2)",
                kinds(kind::byte, kind::flag),
                3,
                [](auto &control, Given given) { return control.setAlterVolume(given.byte(0), given.flag(1)); },
                Role::DirectVolume),
            row(
                "setAlterStepVolume(%1, %2)",
                kinds(kind::byte, kind::flag),
                3,
                [](auto &control, Given given) { return control.setAlterStepVolume(given.byte(0), given.flag(1)); },
                Role::DirectVolume),
            // Refused, it gives any number but 0.
            row("setMasterStepVolume(%1)", kinds(kind::byte), 3, [](auto &control, Given given) { return control.setMasterStepVolume(given.byte(0)) == 0; }),
            row("setMute(%1)", kinds(kind::flag), 6, [](auto &control, Given given) { control.setMute(given.flag(0)); }),
            row("setBackEarphone(%1)", kinds(kind::flag), 2, [](auto &control, Given given) { control.setBackEarphone(given.flag(0)); }),
            row("muteBackEarphone(%1)", kinds(kind::flag), 2, [](auto &control, Given given) { control.muteBackEarphone(given.flag(0)); }),
        });
}

void addEqualizer(std::vector<OperationRow> &table)
{
    table.insert(
        table.end(),
        {
            row("setEqMode(%1)", kinds(kind::equalizerType), 3, [](auto &control, Given given) { control.setEqMode(given.as<AudioControl::EqMode>(0)); }),
            row("getEqGain(%1)",
                kinds(kind::equalizerType),
                2,
                [](auto &control, Given given) { return listAnswer(control.getEqGain(given.as<AudioControl::EqMode>(0))); }),
            row("getSubGain(%1)",
                kinds(kind::equalizerType),
                2,
                [](auto &control, Given given) { return listAnswer(control.getSubGain(given.as<AudioControl::SubMode>(0))); }),
            row("setEqGain(Array.from({length: %1}, (_, i) => i ? %2 : 0))",
                kinds(kind::count, kind::gain),
                3,
                [](auto &control, Given given) { control.setEqGain(values(given[0], given.gain(1))); }),
            row("setEqGain10(Array.from({length: %1}, (_, i) => i ? %2 : 0))",
                kinds(kind::count, kind::steps),
                3,
                [](auto &control, Given given) { control.setEqGain10(values(given[0], given[1])); }),
            row("setEqValue(Array.from({length: %1}, (_, i) => i ? %2 : 0))",
                kinds(kind::count, kind::steps),
                3,
                [](auto &control, Given given) { control.setEqValue(values(given[0], given[1])); }),
            row("getEqInitValue()",
                kinds(),
                1,
                [](auto &control, Given) {
                    QList<int> frequencies = {1, 2};
                    control.getEqInitValue(frequencies);
                    return listAnswer(frequencies);
                }),
            row("setLoudnessSwitch(%1)", kinds(kind::flag), 2, [](auto &control, Given given) { control.setLoudnessSwitch(given.flag(0)); }),
            row("setFadeBalance(%1, %2)",
                kinds(kind::position, kind::position),
                6,
                [](auto &control, Given given) { control.setFadeBalance(given[0], given[1]); }),
        });
}

void addRouting(std::vector<OperationRow> &table)
{
    using Input = AudioControl::AudioInChannel;
    table.insert(table.end(),
                 {
                     row("setOutputSource(%1, %2)",
                         kinds(kind::tag, kind::source),
                         4,
                         [](auto &control, Given given) { control.setOutputSource(given.as<Tag>(0), sourceName(given[1])); }),
                     row("setOutputSource(%1, %2)",
                         kinds(kind::track, kind::platformSource),
                         3,
                         [](auto &control, Given given) { control.setOutputSource(trackName(given[0]), platformSourceName(given[1])); }),
                     row("setOutputFrontSource(%1, %2, %3)",
                         kinds(kind::tag, kind::source, kind::flag),
                         3,
                         [](auto &control, Given given) { control.setOutputFrontSource(given.as<Tag>(0), sourceName(given[1]), given.flag(2)); }),
                     row("setOutputFrontSource(%1, %2, %3)",
                         kinds(kind::track, kind::platformSource, kind::flag),
                         2,
                         [](auto &control, Given given) { control.setOutputFrontSource(trackName(given[0]), platformSourceName(given[1]), given.flag(2)); }),
                     row("setInputDestination(%1, %2)",
                         kinds(kind::tag, kind::source),
                         2,
                         [](auto &control, Given given) { control.setInputDestination(given.as<Tag>(0), sourceName(given[1])); }),
                     row("setInputDestination(%1, %2)",
                         kinds(kind::track, kind::platformSource),
                         2,
                         [](auto &control, Given given) { control.setInputDestination(trackName(given[0]), platformSourceName(given[1])); }),
                     row("setAuxinChannel(%1)", kinds(kind::outputChannel), 2, [](auto &control, Given given) { control.setAuxinChannel(given.as<Input>(0)); }),
                     row("getAuxinChannel()", kinds(), 2, [](auto &control, Given) { return control.getAuxinChannel(); }),
                     row("setI2SINChannel(%1)", kinds(kind::outputChannel), 2, [](auto &control, Given given) { control.setI2SINChannel(given.as<Input>(0)); }),
                     row(
                         "setMainAudioDunkingMode(%1)",
                         kinds(kind::byte),
                         2,
                         [](auto &control, Given given) { control.setMainAudioDunkingMode(given.byte(0)); },
                         Role::DirectDucking),
                     row(
                         "setMainAudioDunkingTargetGain(%1)",
                         kinds(kind::byte),
                         2,
                         [](auto &control, Given given) { control.setMainAudioDunkingTargetGain(given.byte(0)); },
                         Role::DirectDucking),
                 });
}

void addMicrophone(std::vector<OperationRow> &table)
{
    table.insert(table.end(),
                 {
                     row("setMicroPhoneVolume(%1)", kinds(kind::micVolume), 2, [](auto &control, Given given) { control.setMicroPhoneVolume(given[0]); }),
                     row("getMicAnalogGain()",
                         kinds(),
                         2,
                         [](auto &control, Given) {
                             float first = 0;
                             float second = 0;
                             const int result = control.getMicAnalogGain(&first, &second);
                             return answer(result, first, second);
                         }),
                     row("setMicAnalogGain(%1, %2)",
                         kinds(kind::gain, kind::gain),
                         2,
                         [](auto &control, Given given) { return control.setMicAnalogGain(given.gain(0), given.gain(1)); }),
                     row("setMicOpAndPga(%1, %2)",
                         kinds(kind::gain, kind::gain),
                         2,
                         [](auto &control, Given given) { return control.setMicOpAndPga(given.gain(0), given.gain(1)); }),
                     row("startMicGainCalibration()", kinds(), 1, [](auto &control, Given) { return control.startMicGainCalibration(); }),
                     row("setMicGainCalibration()", kinds(), 1, [](auto &control, Given) { return control.setMicGainCalibration(); }),
                     row("getMicCalibrationGain()",
                         kinds(),
                         2,
                         [](auto &control, Given) {
                             int first = 0;
                             int second = 0;
                             const int result = control.getMicCalibrationGain(&first, &second);
                             return answer(result, first, second);
                         }),
                     row("setDownlinkDelayEstimation()", kinds(), 1, [](auto &control, Given) { control.setDownlinkDelayEstimation(); }),
                     row("getDownlinkDelayEstimation()",
                         kinds(),
                         2,
                         [](auto &control, Given) {
                             short delay = 0;
                             const int result = control.getDownlinkDelayEstimation(&delay);
                             return answer(result, delay);
                         }),
                     row("setHandsfreeDelay(%1)", kinds(kind::delay), 2, [](auto &control, Given given) { return control.setHandsfreeDelay(given[0]); }),
                     row("setAECQuality(%1)",
                         kinds(kind::outputChannel),
                         2,
                         [](auto &control, Given given) { control.setAECQuality(given.as<AudioControl::AudioQuality>(0)); }),
                     row("getMicrophoneTest()",
                         kinds(),
                         2,
                         [](auto &control, Given) {
                             QList<int> readings = {1, 2, 3};
                             control.getMicrophoneTest(readings);
                             return listAnswer(readings);
                         }),
                     row("setMicLeftRightSwitch(%1)", kinds(kind::flag), 2, [](auto &control, Given given) { control.setMicLeftRightSwitch(given.flag(0)); }),
                 });
}

void addProcessing(std::vector<OperationRow> &table)
{
    using Output = AudioControl::AudioOutChannel;
    table.insert(
        table.end(),
        {
            row("setDpsEnable(%1)", kinds(kind::flag), 2, [](auto &control, Given given) { control.setDpsEnable(given.flag(0)); }),
            row("setStereoEnable(%1)", kinds(kind::flag), 2, [](auto &control, Given given) { control.setStereoEnable(given.flag(0)); }),
            row("setDpsUserGain(%1)", kinds(kind::gain), 2, [](auto &control, Given given) { control.setDpsUserGain(given.gain(0)); }),
            row("setFilter(%1, {value1: 1, flag: %2 ? 1 : 0, kind: %3, value2: 2, value3: 3, value4: 4})",
                kinds(kind::outputChannel, kind::flag, kind::nth),
                2,
                [](auto &control, Given given) {
                    control.setFilter(given.as<Output>(0), AudioControl::AudioFilter_t{1, given.flag(1) ? 1U : 0U, static_cast<quint32>(given[2]), 2, 3, 4});
                }),
            row("setSpeakerDelay(Array.from({length: %1}, (_, i) => i ? %2 : 0))",
                kinds(kind::count, kind::gain),
                2,
                [](auto &control, Given given) { control.setSpeakerDelay(values(given[0], given.gain(1))); }),
            row("setSpeakerDealy(%1, %2)",
                kinds(kind::outputChannel, kind::gain),
                2,
                [](auto &control, Given given) { control.setSpeakerDealy(given.as<Output>(0), given.gain(1)); }),
        });
}

} // namespace

void addFacadeOperations(std::vector<OperationRow> &table)
{
    addState(table);
    addVolumes(table);
    addEqualizer(table);
    addRouting(table);
    addMicrophone(table);
    addProcessing(table);
}

} // namespace lives

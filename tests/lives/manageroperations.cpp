#include "operationrows.h"

#include <QtCore/QHash>

namespace lives
{

namespace
{

template<typename Act>
OperationRow row(const char *script, const Kinds &kinds, int weight, Act act, Role role = Role::Ordinary)
{
    return rowOfPart(
        "AudioPolicy", [](auto &unit) -> auto & { return unit.manager(); }, script, kinds, weight, act, role);
}

void addVolumes(std::vector<OperationRow> &table)
{
    table.insert(
        table.end(),
        {
            row("updateAudioStatus(%1)", kinds(kind::status), 40, [](auto &manager, Given given) { manager.updateAudioStatus(given.as<AudioStatus>(0)); }),
            row("updateAudioChannel(%1)", kinds(kind::channel), 25, [](auto &manager, Given given) { manager.updateAudioChannel(given.as<AudioChannel>(0)); }),
            row("currentAudioChannel()", kinds(), 3, [](auto &manager, Given) { return manager.currentAudioChannel(); }),
            row(
                "setVolume(%1, %2, %3)",
                kinds(kind::volumeType, kind::volume, kind::flag),
                25,
                [](auto &manager, Given given) { manager.setVolume(given.as<ZelAudioType>(0), given[1], given.flag(2)); },
                Role::UserVolume),
            row("getVolume(%1)", kinds(kind::volumeType), 8, [](auto &manager, Given given) { return manager.getVolume(given.as<ZelAudioType>(0)); }),
            row("saveVolume()", kinds(), 3, [](auto &manager, Given) { manager.saveVolume(); }),
            row(
                "updateCurrentAudioVolume(%1)",
                kinds(kind::flag),
                30,
                [](auto &manager, Given given) { manager.updateCurrentAudioVolume(given.flag(0)); },
                Role::UserVolume),
            row("setVolResponse(%1, %2)",
                kinds(kind::number, kind::flag),
                2,
                [](auto &manager, Given given) { manager.setVolResponse(given.as<VolResponseState>(0), given.flag(1)); }),
            row("_getAllChannelsFromCurrentType(%1)",
                kinds(kind::volumeType),
                3,
                [](auto &manager, Given given) {
                    QList<AudioChannel> channels;
                    manager._getAllChannelsFromCurrentType(channels, given.as<ZelAudioType>(0));
                    return listAnswer(channels);
                }),
        });
}

void addDucking(std::vector<OperationRow> &table)
{
    table.insert(
        table.end(),
        {
            row("duck(%1)", kinds(kind::number), 6, [](auto &manager, Given given) { manager.duck(given[0]); }),
            row("unDuck()", kinds(), 6, [](auto &manager, Given) { manager.unDuck(); }),
            row("aaDuckAudio(%1, %2)", kinds(kind::number, kind::number), 12, [](auto &manager, Given given) { manager.aaDuckAudio(given[0], given[1]); }),
            row("aaUnduckAudio(%1)", kinds(kind::number), 12, [](auto &manager, Given given) { manager.aaUnduckAudio(given[0]); }),
            row("clDuckAudio(%1, %2)", kinds(kind::number, kind::number), 8, [](auto &manager, Given given) { manager.clDuckAudio(given[0], given[1]); }),
            row("clUnduckAudio(%1)", kinds(kind::number), 8, [](auto &manager, Given given) { manager.clUnduckAudio(given[0]); }),
            row("cpDuckAudio(%1, %2)", kinds(kind::number, kind::number), 15, [](auto &manager, Given given) { manager.cpDuckAudio(given[0], given[1]); }),
            row("cpUnduckAudio(%1)", kinds(kind::number), 15, [](auto &manager, Given given) { manager.cpUnduckAudio(given[0]); }),
            row("setCPConnected(%1)", kinds(kind::flag), 2, [](auto &manager, Given given) { manager.setCPConnected(given.flag(0)); }),
            row("getCPConnected()", kinds(), 2, [](auto &manager, Given) { return manager.getCPConnected(); }),
            row("updateCPAAStatus(%1)", kinds(kind::number), 1, [](auto &manager, Given given) { manager.updateCPAAStatus(given.as<CPAAStatus>(0)); }),
            row("setCpPhone(%1)", kinds(kind::flag), 1, [](auto &manager, Given given) { manager.setCpPhone(given.flag(0)); }),
            row("onCarplayAlertStart()", kinds(), 1, [](auto &manager, Given) { manager.onCarplayAlertStart(); }),
            row("onCarplayAlertStop()", kinds(), 1, [](auto &manager, Given) { manager.onCarplayAlertStop(); }),
        });
}

void addMute(std::vector<OperationRow> &table)
{
    table.insert(table.end(),
                 {
                     row("setAudioMute(%1, %2)",
                         kinds(kind::flag, kind::muteCount),
                         15,
                         [](auto &manager, Given given) { manager.setAudioMute(given.flag(0), given[1]); }),
                     row("deMute()", kinds(), 4, [](auto &manager, Given) { manager.deMute(); }),
                     row("setMute(%1)", kinds(kind::flag), 8, [](auto &manager, Given given) { manager.setMute(given.flag(0)); }),
                     row("isAttOn()", kinds(), 4, [](auto &manager, Given) { return manager.isAttOn(); }),
                     row("triggerAtt()", kinds(), 6, [](auto &manager, Given) { manager.triggerAtt(); }),
                     row("onRecvBackCar(%1)", kinds(kind::flag), 4, [](auto &manager, Given given) { manager.onRecvBackCar(given.flag(0)); }),
                     row("setHCconnect(%1)", kinds(kind::flag), 6, [](auto &manager, Given given) { manager.setHCconnect(given.flag(0)); }),
                 });
}

void addEqualizer(std::vector<OperationRow> &table)
{
    table.insert(
        table.end(),
        {
            row("customEq(%1)", kinds(kind::index), 3, [](auto &manager, Given given) { return manager.customEq(given[0]); }),
            row("eqType()", kinds(), 3, [](auto &manager, Given) { return manager.eqType(); }),
            row("setEqType(%1)", kinds(kind::equalizerType), 10, [](auto &manager, Given given) { manager.setEqType(given[0]); }),
            row("eqTypePrev()", kinds(), 4, [](auto &manager, Given) { manager.eqTypePrev(); }),
            row("eqTypeNext()", kinds(), 4, [](auto &manager, Given) { manager.eqTypeNext(); }),
            row("adjustCustomEq(%1, %2)", kinds(kind::steps, kind::band), 10, [](auto &manager, Given given) { manager.adjustCustomEq(given[0], given[1]); }),
            row("loudNess()", kinds(), 2, [](auto &manager, Given) { return manager.loudNess(); }),
            row("setLoudNess(%1)", kinds(kind::flag), 4, [](auto &manager, Given given) { manager.setLoudNess(given.flag(0)); }),
        });
}

void addMicrophone(std::vector<OperationRow> &table)
{
    using Tag = audio::AudioControl::AudioTag;
    table.insert(table.end(),
                 {
                     row("micInputValue()", kinds(), 2, [](auto &manager, Given) { return manager.micInputValue(); }),
                     row("setMicInputValue(%1)", kinds(kind::micVolume), 4, [](auto &manager, Given given) { manager.setMicInputValue(given[0]); }),
                     row("micTypeIsDefault()", kinds(), 2, [](auto &manager, Given) { return manager.micTypeIsDefault(); }),
                     row("setMicLeftRightSwitch(%1)", kinds(kind::flag), 5, [](auto &manager, Given given) { manager.setMicLeftRightSwitch(given.flag(0)); }),
                     row("getMicAnalogGain()", kinds(), 3, [](auto &manager, Given) { return manager.getMicAnalogGain(); }),
                     row("getPlatformMicAnalogGain()",
                         kinds(),
                         2,
                         [](auto &manager, Given) {
                             float left = 0;
                             float right = 0;
                             const int result = manager.getMicAnalogGain(&left, &right);
                             return answer(result, left, right);
                         }),
                     row("setMicAnalogGain(%1, %2)",
                         kinds(kind::gain, kind::gain),
                         6,
                         [](auto &manager, Given given) { return manager.setMicAnalogGain(given.gain(0), given.gain(1)); }),
                     row("getMicAnalogOpAndPga()",
                         kinds(),
                         5,
                         [](auto &manager, Given) {
                             float op = 0;
                             int pga = 0;
                             manager.getMicAnalogOpAndPga(op, pga);
                             return answer(op, pga);
                         }),
                     row("startMicGainCalibration()", kinds(), 2, [](auto &manager, Given) { return manager.startMicGainCalibration(); }),
                     row("setMicGainCalibration()", kinds(), 2, [](auto &manager, Given) { return manager.setMicGainCalibration(); }),
                     row("getMicCalibrationGain()",
                         kinds(),
                         2,
                         [](auto &manager, Given) {
                             int first = 0;
                             const float second = manager.getMicCalibrationGain(&first);
                             return answer(first, second);
                         }),
                     row("setHandsfreeDelay(%1)", kinds(kind::delay), 4, [](auto &manager, Given given) { return manager.setHandsfreeDelay(given[0]); }),
                     row("setDownlinkDelayEstimation()", kinds(), 2, [](auto &manager, Given) { manager.setDownlinkDelayEstimation(); }),
                     row("getDownlinkDelayEstimation()",
                         kinds(),
                         2,
                         [](auto &manager, Given) {
                             short delay = 0;
                             const int result = manager.getDownlinkDelayEstimation(&delay);
                             return answer(result, delay);
                         }),
                     row("setInputDestination(%1, %2)",
                         kinds(kind::tag, kind::source),
                         3,
                         [](auto &manager, Given given) { manager.setInputDestination(given.as<Tag>(0), sourceName(given[1])); }),
                 });
}

} // namespace

void addManagerOperations(std::vector<OperationRow> &table)
{
    addVolumes(table);
    addDucking(table);
    addMute(table);
    addEqualizer(table);
    addMicrophone(table);
}

} // namespace lives

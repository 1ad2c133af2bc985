#include "operationrows.h"

#include <powercut.h>
#include <program.h>
#include <qzaudio/audiodatabase.h>
#include <settingsprocess.h>

namespace lives
{

namespace
{

/// What is done to the unit as a whole.
template<typename Call, typename Tell>
OperationRow row(const char *script, const Kinds &kinds, int weight, Call call, Tell tell, Role role = Role::Ordinary)
{
    return {QLatin1String(script),
            kinds,
            weight,
            role,
            [call](LivedUnit &unit, const Arguments &arguments) { return answerOf(call, unit, arguments); },
            [tell](UnitModel &model, const Arguments &arguments) { return answerOf(tell, model, arguments); }};
}

/// Unit and model are told with the same words.
template<typename Act>
OperationRow same(const char *script, const Kinds &kinds, int weight, Act act)
{
    return row(script, kinds, weight, act, act);
}

/// The models take what the platform answers from the platform.
void nothing(UnitModel & /*model*/, Given /*given*/)
{
}

/// Of a store that reads the file as it is now, as scripts have one.
template<typename Act>
OperationRow reader(const char *script, const Kinds &kinds, Act act)
{
    constexpr int weight = 2;
    return row(
        script,
        kinds,
        weight,
        [act](LivedUnit &, Given given) {
            audio::AudioDataBase store;
            return answerOf(act, store, given);
        },
        [act](UnitModel &model, Given given) {
            StoreModel store(model.file());
            store.start(model.homeUiType());
            return answerOf(act, store, given);
        });
}

void addTimeAndIgnition(std::vector<OperationRow> &table)
{
    table.insert(table.end(),
                 {
                     same("wait(%1)", kinds(kind::milliseconds), 150, [](auto &unit, Given given) { unit.wait(given[0]); }),
                     same("powerOn()", kinds(), 6, [](auto &unit, Given) { unit.manager(); }),
                     same("powerOff()", kinds(), 6, [](auto &unit, Given) { unit.switchOff(); }),
                     // The chip loses its power, too.
                     row(
                         "powerOff(); Platform.reset()",
                         kinds(),
                         2,
                         [](LivedUnit &unit, Given) {
                             unit.switchOff();
                             LivedUnit::platform().reset();
                         },
                         [](UnitModel &model, Given) {
                             model.switchOff();
                             model.setHomeUiType(0);
                         },
                         Role::Reset),
                     row(
                         "Platform.setReverseGear(%1)",
                         kinds(kind::flag),
                         12,
                         [](LivedUnit &, Given given) { LivedUnit::platform().setReverseGear(given.flag(0)); },
                         [](UnitModel &model, Given given) {
                             if (model.isOn())
                                 model.manager().onRecvBackCar(given.flag(0));
                         }),
                     row(
                         "Platform.setHomeUiType(%1 ? 7 : 0)",
                         kinds(kind::flag),
                         1,
                         [](LivedUnit &, Given given) { LivedUnit::platform().setHomeUiType(given.flag(0) ? 7 : 0); },
                         [](UnitModel &model, Given given) { model.setHomeUiType(given.flag(0) ? 7 : 0); }),
                 });
}

void addPlatform(std::vector<OperationRow> &table)
{
    table.insert(table.end(),
                 {
                     row(
                         "Platform.setActiveSource(%1, %2)",
                         kinds(kind::playingTrack, kind::platformSource),
                         6,
                         [](LivedUnit &, Given given) {
                             LivedUnit::chip().setActiveSource(QLatin1String(trackName(given[0])), QLatin1String(platformSourceName(given[1])));
                         },
                         nothing),
                     row(
                         "Platform.setAlternativeCount(%1)",
                         kinds(kind::byte),
                         1,
                         [](LivedUnit &, Given given) { LivedUnit::chip().setAlternativeCount(given[0]); },
                         nothing),
                     row(
                         "Platform.setCalibrationGains(%1, %2)",
                         kinds(kind::number, kind::number),
                         1,
                         [](LivedUnit &, Given given) { LivedUnit::chip().setCalibrationGains(given[0], given[1]); },
                         nothing),
                     row(
                         "Platform.setDownlinkDelay(%1)",
                         kinds(kind::number),
                         1,
                         [](LivedUnit &, Given given) { LivedUnit::chip().setDownlinkDelay(static_cast<short>(given[0])); },
                         nothing),
                     row(
                         "Platform.failOnce(%1, %2, %3)",
                         kinds(kind::fault, kind::faultCode, kind::nth),
                         10,
                         [](LivedUnit &, Given given) { LivedUnit::faults().fail(faultName(given[0]), given[1], given[2]); },
                         nothing),
                     row(
                         "Platform.fail(%1, %2)",
                         kinds(kind::fault, kind::faultCode),
                         2,
                         [](LivedUnit &, Given given) { LivedUnit::faults().fail(faultName(given[0]), given[1]); },
                         nothing),
                     row(
                         "Platform.failAfterWriting(%1, %2)",
                         kinds(kind::writingFault, kind::faultCode),
                         2,
                         [](LivedUnit &, Given given) { LivedUnit::faults().failAfterWriting(writingFaultName(given[0]), given[1]); },
                         nothing),
                     row(
                         "Platform.failFactory(%1)",
                         kinds(kind::objectKind),
                         1,
                         [](LivedUnit &, Given given) { LivedUnit::faults().failFactory(objectKindName(given[0])); },
                         nothing),
                     row(
                         "Platform.clearFaults()", kinds(), 8, [](LivedUnit &, Given) { LivedUnit::faults().clear(); }, nothing),
                 });
}

void addSettings(std::vector<OperationRow> &table)
{
    table.insert(
        table.end(),
        {
            reader("AudioSettings.getVolume(%1)", kinds(kind::volumeType), [](auto &store, Given given) { return store.getVolume(given.as<ZelAudioType>(0)); }),
            reader("AudioSettings.eqType()", kinds(), [](auto &store, Given) { return store.eqType(); }),
            reader("AudioSettings.loudNess()", kinds(), [](auto &store, Given) { return store.loudNess(); }),
            reader("AudioSettings.micType()", kinds(), [](auto &store, Given) { return store.micType(); }),
            reader("AudioSettings.micInputValue()", kinds(), [](auto &store, Given) { return store.micInputValue(); }),
            reader("AudioSettings.getCustomEQ(%1)", kinds(kind::index), [](auto &store, Given given) { return store.getCustomEQ(given[0]); }),
            reader("AudioSettings.getAutoMicGain()", kinds(), [](auto &store, Given) { return store.getAutoMicGain(); }),
            reader("AudioSettings.getHandsfreeDelay()", kinds(), [](auto &store, Given) { return store.getHandsfreeDelay(); }),
            reader("AudioSettings.getCurrentIndexInItem()", kinds(), [](auto &store, Given) { return store.getCurrentIndexInItem(); }),
            reader("AudioSettings.getCurrentIndexInDefault(%1)",
                   kinds(kind::equalizerType),
                   [](auto &store, Given given) { return store.getCurrentIndexInDefault(given[0]); }),
            reader("AudioSettings.getNextEqType(%1)", kinds(kind::flag), [](auto &store, Given given) { return store.getNextEqType(given.flag(0)); }),
        });
}

void addOthersThatWrite(std::vector<OperationRow> &table)
{
    table.insert(table.end(),
                 {
                     row(
                         "powerOff(); eraseSettings()",
                         kinds(),
                         1,
                         [](LivedUnit &unit, Given) {
                             unit.switchOff();
                             LivedUnit::eraseSettings();
                         },
                         [](UnitModel &model, Given) {
                             model.switchOff();
                             model.file().erase();
                         },
                         Role::Settings),
                     row(
                         "powerOff(); writeSettings(%settings)",
                         kinds(kind::setting, kind::storedValue, kind::setting),
                         3,
                         [](LivedUnit &unit, Given given) {
                             unit.switchOff();
                             LivedUnit::writeSettings(settingsText(given[0], given[1], given[2]));
                         },
                         [](UnitModel &model, Given given) {
                             model.switchOff();
                             model.file().setText(settingsText(given[0], given[1], given[2]));
                         },
                         Role::Settings),
                     // No scenario can do it while its unit is on.
                     row(
                         "say(\"Another process stores volume %2 of type %1\")",
                         kinds(kind::index, kind::volume),
                         3,
                         [](LivedUnit &, Given given) { audio::AudioDataBase().save(QStringLiteral("Volume"), QString::number(given[0]), given[1]); },
                         [](UnitModel &model, Given given) { model.file().save(QStringLiteral("Volume/%1").arg(given[0]), given[1]); },
                         Role::Settings),
                 });
    if (program::isEmulated())
        return; // it cannot trace another process
    const auto saveIn = [](int systemCall, Given given) {
        powercut::runAndKillAt(systemCall,
                               settingsprocess::commandLine({QStringLiteral("save-between-stops"), QString::number(given[0]), QString::number(given[1])}));
    };
    table.insert(table.end(),
                 {
                     row(
                         "say(\"Another process, a real one, stores volume %2 of type %1\")",
                         kinds(kind::index, kind::volume),
                         rare,
                         [saveIn](LivedUnit &, Given given) { saveIn(powercut::never, given); },
                         [](UnitModel &model, Given given) { model.file().save(QStringLiteral("Volume/%1").arg(given[0]), QString::number(given[1])); },
                         Role::Settings),
                     row(
                         "powerOff(); cutPowerWhileSaving(%3, \"AudioPolicy.setVolume(%1, %2, true)\")",
                         kinds(kind::index, kind::volume, kind::systemCall),
                         rare,
                         [saveIn](LivedUnit &unit, Given given) {
                             unit.switchOff();
                             saveIn(given[2], given);
                         },
                         [](UnitModel &model, Given given) {
                             model.switchOff();
                             // The one or the other, as a whole.
                             FileModel saved = model.file();
                             saved.save(QStringLiteral("Volume/%1").arg(given[0]), QString::number(given[1]));
                             if (saved.differenceTo(LivedUnit::settings()).isEmpty())
                                 model.file() = saved;
                         },
                         Role::PowerCut),
                 });
}

void addFocus(std::vector<OperationRow> &table)
{
    table.insert(table.end(),
                 {
                     same("requestFocus(%1, %2, %3)",
                          kinds(kind::client, kind::number, kind::hint),
                          20,
                          [](auto &unit, Given given) { return unit.requestFocus(given[0], given[1], given[2]); }),
                     same("releaseFocus(%1)", kinds(kind::client), 12, [](auto &unit, Given given) { unit.releaseFocus(given[0]); }),
                     same("endClient(%1)", kinds(kind::client), 3, [](auto &unit, Given given) { unit.endClient(given[0]); }),
                 });
}

} // namespace

void addUnitOperations(std::vector<OperationRow> &table)
{
    addTimeAndIgnition(table);
    addPlatform(table);
    addSettings(table);
    addOthersThatWrite(table);
    addFocus(table);
}

} // namespace lives

#include "walkedoperation.h"

#include "world.h"

#include <scriptobject.h>

#include <audiocontroltables.h>

#include <QtCore/QFile>
#include <QtCore/QHash>
#include <QtCore/QRegularExpression>

#include <type_traits>

using audio::AudioControl;
using simulator::Platform;

namespace
{

/// What these need is a platform of the simulator's; the walk is about the library's.
bool isOfThePlatform(const OperationCall &call)
{
    return call.type->name() != QLatin1String("AudioControl") && call.type->name() != QLatin1String("AudioPolicy");
}

template<typename Target, typename Call>
std::function<QVariant(World &)> on(Call call)
{
    return [call](World &world) -> QVariant {
        Target &target = *std::get<Target *>(world.unit());
        if constexpr (std::is_void_v<std::invoke_result_t<Call, Target &>>) {
            call(target);
            return {};
        } else {
            return int(call(target));
        }
    };
}

template<typename Call>
WalkedOperation facade(const char *name, const char *arguments, Call call)
{
    return {QStringLiteral("AudioControl"), QLatin1String(name), QLatin1String(arguments), Has::Facade, on<AudioControl>(call)};
}

template<typename Call>
WalkedOperation policy(const char *name, const char *arguments, Call call)
{
    return {QStringLiteral("AudioPolicy"), QLatin1String(name), QLatin1String(arguments), Has::Manager, on<ZelAudioManager>(call)};
}

template<typename Call>
WalkedOperation start(const char *name, Has needs, Call call)
{
    return {QStringLiteral("unit"), QLatin1String(name), QString(), needs, [call](World &world) {
                call(world);
                return QVariant();
            }};
}

QHash<QString, quint8> stepsOfAllSources()
{
    QHash<QString, quint8> steps;
    quint8 step = 0;
    for (const auto &row : audio::tables::sourceNames)
        steps.insert(QString::fromLatin1(row.qtName), ++step);
    return steps;
}

void addFacadeCalls(QVector<WalkedOperation> &all)
{
    using Control = AudioControl;
    all += facade("setStreamVolume", "0, 'S+BtRingtone_APP', 60", [](Control &control) { control.setStreamVolume(Control::Main, "S+BtRingtone_APP", 60); });
    all += facade("setMasterVolume", "60", [](Control &control) { return control.setMasterVolume(60); });
    all += facade("setMasterStepVolume", "12", [](Control &control) { return control.setMasterStepVolume(12); });
    all += facade("initTrackStepVolume", "0, a group, one above the range, and an unknown name", [](Control &control) {
        QHash<QString, quint8> steps;
        steps.insert(QStringLiteral("S+FilePlayer_APP"), 9);
        steps.insert(QStringLiteral("S+IPod_APP"), 250);
        steps.insert(QStringLiteral("S+Nobody_APP"), 8);
        control.initTrackStepVolume(Control::Main, steps);
    });
    all += facade("changeAlterStepVolume", "true, 9", [](Control &control) {
        quint8 step = 0;
        return control.changeAlterStepVolume(true, 9, step);
    });
    all += facade("setAlterVolume", "20, false", [](Control &control) { return control.setAlterVolume(20, false); });
    all += facade("setMute", "true", [](Control &control) { control.setMute(true); });
    all += facade("setBackEarphone", "false", [](Control &control) { control.setBackEarphone(false); });
    all += facade("muteBackEarphone", "false", [](Control &control) { control.muteBackEarphone(false); });
    all += facade("setLoudnessSwitch", "true", [](Control &control) { control.setLoudnessSwitch(true); });
    all += facade("setDpsEnable", "true", [](Control &control) { control.setDpsEnable(true); });
    all += facade("setStereoEnable", "true", [](Control &control) { control.setStereoEnable(true); });
    all += facade("setOutputFrontSource", "'uplink', 'S+WebLink', false", [](Control &control) { control.setOutputFrontSource("uplink", "S+WebLink", false); });
}

void addPolicyCalls(QVector<WalkedOperation> &all)
{
    using Policy = ZelAudioManager;
    all += policy("updateAudioStatus", "1", [](Policy &manager) { manager.updateAudioStatus(AudioStatusBtPhoneRing); });
    all += policy("updateAudioStatus", "11", [](Policy &manager) { manager.updateAudioStatus(AudioStatusCarPlayRestore); });
    all += policy("updateAudioChannel", "3", [](Policy &manager) { manager.updateAudioChannel(AudioChannelFilePlayer); });
    all += policy("updateAudioChannel", "13", [](Policy &manager) { manager.updateAudioChannel(AudioChannelDiscPlayer); });
    all += policy("setVolume", "0, 12, false", [](Policy &manager) { manager.setVolume(ZelAudioTypeMedia, 12, false); });
    all += policy("setVolume", "1, 12, true", [](Policy &manager) { manager.setVolume(ZelAudioTypePrompt, 12, true); });
    all += policy("setVolume", "5, 12, true", [](Policy &manager) { manager.setVolume(ZelAudioTypeHiCarCall, 12, true); });
    all += policy("updateCurrentAudioVolume", "false", [](Policy &manager) { manager.updateCurrentAudioVolume(false); });
    all += policy("setMute", "true", [](Policy &manager) { manager.setMute(true); });
    all += policy("setAudioMute", "false, 0", [](Policy &manager) { manager.setAudioMute(false, 0); });
    all += policy("onRecvBackCar", "false", [](Policy &manager) { manager.onRecvBackCar(false); });
    all += policy("setHCconnect", "false", [](Policy &manager) { manager.setHCconnect(false); });
    all += policy("setLoudNess", "true", [](Policy &manager) { manager.setLoudNess(true); });
    all += policy("setMicLeftRightSwitch", "true", [](Policy &manager) { manager.setMicLeftRightSwitch(true); });
    all += policy("onRecvBackCar", "as the car reports it", [](Policy &) { Platform::instance()->setReverseGear(true); });
}

void listen(Unit &)
{
}

// Situations of the facade
void drive(Unit &unit)
{
    AudioControl &control = *std::get<AudioControl *>(unit);
    control.setStepRange(40);
    control.initTrackStepVolume(AudioControl::Main, stepsOfAllSources());
    control.setMute(true);
    std::get<Platform *>(unit)->chip()->setActiveSource(QStringLiteral("main"), QStringLiteral("S+FilePlayer"));
}

// Situations of the manager
ZelAudioManager &managerOf(Unit &unit)
{
    return *std::get<ZelAudioManager *>(unit);
}

void playFiles(Unit &unit)
{
    managerOf(unit).updateAudioChannel(AudioChannelFilePlayer);
}

void telephone(Unit &unit)
{
    managerOf(unit).updateAudioChannel(AudioChannelCarPlayTelephony);
    managerOf(unit).updateAudioStatus(AudioStatusBtPhoneTelephony);
}

/// One second before the prompt's volume is applied.
void prompt(Unit &unit)
{
    managerOf(unit).updateAudioChannel(AudioChannelCarPlayMedia);
    managerOf(unit).cpDuckAudio(0, 0);
}

void mute(Unit &unit)
{
    managerOf(unit).setMute(true);
}

void callWithHiCar(Unit &unit)
{
    managerOf(unit).updateAudioChannel(AudioChannel{18});
}

/// Half a second before the same value would be written again.
void tune(Unit &unit)
{
    managerOf(unit).adjustCustomEq(3, 4);
}

} // namespace

QString WalkedOperation::text() const
{
    return object + QLatin1Char('.') + name + QLatin1Char('(') + arguments + QLatin1Char(')');
}

QVector<WalkedOperation> walkedOperations()
{
    QVector<WalkedOperation> all;
    const QVector<OperationCall> calls = operationCalls();
    for (const OperationCall &call : calls) {
        if (isOfThePlatform(call))
            continue;
        const Has needs = call.type->name() == QLatin1String("AudioControl") ? Has::Facade : Has::Manager;
        all.append({call.type->name(), call.name(), call.arguments, needs, [made = call.call](World &world) { return made(world.unit()); }});
    }
    addFacadeCalls(all);
    addPolicyCalls(all);
    return all;
}

QVector<WalkedOperation> starts()
{
    return {start("getInstance of the facade", Has::Nothing, [](World &world) { world.startFacade(); }),
            start("a manager", Has::Facade, [](World &world) { world.startManager(); }),
            start("the end of a manager", Has::Manager, [](World &world) { world.endManager(); })};
}

QVector<WalkedOperation> firsts()
{
    return {start("instance", Has::Nothing, [](World &world) { world.startInstance(); }),
            start("the first channel", Has::Manager, [](World &world) { managerOf(world.unit()).updateAudioChannel(AudioChannelFilePlayer); })};
}

QVector<Situation> situationsOf(Has has)
{
    switch (has) {
    case Has::Facade:
        return {{"as new", listen}, {"on a drive", drive}};
    case Has::Manager:
        return {{"nothing plays", listen},
                {"files play", playFiles},
                {"a telephone call", telephone},
                {"a CarPlay prompt", prompt},
                {"muted", mute},
                {"a HiCar call", callWithHiCar},
                {"a curve is tuned", tune}};
    case Has::Nothing:
        break;
    }
    return {{"before the start", listen}};
}

QStringList declaredOperations(const QString &header, const QString &className)
{
    QFile file(header);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QString text = QString::fromUtf8(file.readAll());
    const int begin = text.indexOf(QLatin1Char('~') + className);
    QString body = text.mid(begin, text.indexOf(QLatin1String("private:"), begin) - begin);
    body.remove(QRegularExpression(QStringLiteral("\\nQ_SIGNALS:.*\\npublic Q_SLOTS:"), QRegularExpression::DotMatchesEverythingOption));
    const QRegularExpression declaration(QStringLiteral("^    [\\w<>: ]+ \\*?(\\w+)\\(.*\\)(?: const| override)?;$"), QRegularExpression::MultilineOption);
    QStringList names;
    QRegularExpressionMatchIterator match = declaration.globalMatch(body);
    while (match.hasNext())
        names.append(match.next().captured(1));
    names.removeDuplicates();
    return names;
}

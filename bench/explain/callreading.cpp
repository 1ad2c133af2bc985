#include "callreading.h"

#include "facaderules.h"

#include <qzaudio/audiotypes.h>

#include <algorithm>

using LogLines::Id;
using simulator::ObjectKind;
using Line = LoggedRequest::Line;
using Values = QVector<QVariant>;

namespace
{

constexpr int auxiliaryInput = 1;
constexpr int i2sInput = 2;
constexpr int i2sPin = 5;
constexpr int frontPair = 3;
constexpr int allPairs = 15;
constexpr int fullScale = 100;

QString text(const char *name)
{
    return QString::fromLatin1(name);
}

LoggedCall &call(LoggedRequest &request, const Line &line, ObjectKind kind, const char *operation, const Values &arguments, int result = 0)
{
    LoggedCall call;
    call.kind = kind;
    call.operation = text(operation);
    call.arguments = arguments;
    call.result = result;
    call.time = line.time;
    call.line = line.number;
    request.events.append({int(request.calls.size()), LoggedRequest::none});
    request.calls.append(call);
    return request.calls.last();
}

LoggedCall *lastCall(LoggedRequest &request)
{
    return request.calls.isEmpty() ? nullptr : &request.calls.last();
}

/// The line that caused this one, or one of those that caused that; null where there is none of that kind.
const Line *around(const LoggedRequest &request, const Line &line, Id id)
{
    for (int index = line.parent; index != LoggedRequest::none; index = request.lines.at(index).parent) {
        if (request.lines.at(index).line.id() == id)
            return &request.lines.at(index);
    }
    return nullptr;
}

/// A value of a line around this one; an invalid one where there is no such line.
QVariant valueAround(const LoggedRequest &request, const Line &line, Id id, int index)
{
    const Line *const found = around(request, line, id);
    return found ? found->line.values.at(index) : QVariant();
}

/// The line before this one that has the same cause; null where there is none of that kind.
const Line *beside(const LoggedRequest &request, const Line &line, Id id)
{
    const auto isIt = [&](const Line &other) { return other.parent == line.parent && other.line.id() == id; };
    const auto found = std::find_if(request.lines.crbegin(), request.lines.crend(), isIt);
    return found == request.lines.crend() ? nullptr : &*found;
}

QVariant firstOf(const QVariant &one, const QVariant &other)
{
    return one.isValid() ? one : other;
}

/// The code of a line that may be an outcome of either kind.
int codeOf(const LogLine &line)
{
    return line.isError() ? line.number(0) : 0;
}

QVariant gainsAround(const LoggedRequest &request, const Line &line)
{
    for (const Id id : {Id::SetEqTypeGains, Id::AdjustCustomEqGains}) {
        if (const Line *const gains = beside(request, line, id))
            return gains->line.values.at(0);
    }
    return {};
}

/// "LF" of "LFChannel"
QByteArray loudspeakerOf(const char *words)
{
    return {words, 2};
}

/// The calls that one of two operations did; the log says neither which nor with what.
void addSwitch(LoggedRequest &request, const Line &line, const char *enabling, const char *disabling)
{
    const LogLine &said = line.line;
    if (said.isError())
        call(request, line, ObjectKind::App, said.isTrue(1) ? enabling : disabling, {}, said.number(0));
    else
        call(request, line, ObjectKind::App, enabling, {QVariant()}).operation += QLatin1Char('/') + text(disabling);
}

} // namespace

bool LoggedCall::isWhole() const
{
    return std::all_of(arguments.cbegin(), arguments.cend(), [](const QVariant &argument) { return argument.isValid(); });
}

void CallReading::begin()
{
    m_refusedLoudspeakers.clear();
    m_delayedVolume.clear();
}

void CallReading::add(LoggedRequest &request)
{
    const Line &line = request.lines.constLast();
    addVolumeCalls(request, line);
    addRoutingCalls(request, line);
    addSoundCalls(request, line);
    addMicrophoneCalls(request, line);
}

void CallReading::addVolumeCalls(LoggedRequest &request, const Line &line)
{
    const LogLine &said = line.line;
    switch (said.id()) {
    case Id::StreamSet:
        if (const Line *const name = beside(request, line, Id::StreamName))
            call(request, line, ObjectKind::Volume, "setTrackVolume", {valueAround(request, line, Id::StreamTag, 1), name->line.text(1), said.number(1)});
        else // the log begins behind the name's line
            call(request, line, ObjectKind::Volume, "setTrackVolume", {QVariant(), FacadeRules::platformSource(said.text(0)), said.number(1)});
        break;
    case Id::StreamRefused:
        addRefusedStream(request, line);
        break;
    case Id::DelayedVolume:
        m_delayedVolume = said.number(2);
        break;
    case Id::VolumeAdjusted:
        // The refusal's line came first and has no volume.
        if (LoggedCall *const refused = lastCall(request); refused && refused->isRefused() && refused->operation == QLatin1String("setTrackVolume"))
            refused->arguments[2] = FacadeRules::sentVolume(refused->arguments.at(1).toString(), said.number(2) & 0xFF);
        break;
    case Id::StepStreamSet:
        call(request, line, ObjectKind::Volume, "setTrackVolume", {said.text(0), said.text(1), said.number(3)});
        break;
    case Id::StepStreamRefused:
        call(request, line, ObjectKind::Volume, "setTrackVolume", {said.text(1), said.text(2), said.number(4)}, said.number(5));
        break;
    case Id::StreamRead:
        call(request, line, ObjectKind::Volume, "getTrackVolume", {said.text(0), said.text(1)}).outputs = {said.number(2)};
        break;
    case Id::StreamReadRefused:
        call(request, line, ObjectKind::Volume, "getTrackVolume", {said.text(0), said.text(1)}, said.number(2));
        break;
    case Id::MasterSet:
    case Id::MasterRefused:
        call(request, line, ObjectKind::Volume, "setMasterVolume", {fullScale}, codeOf(said));
        break;
    case Id::MasterRead:
        call(request, line, ObjectKind::Volume, "getMasterVolume", {0}).outputs = {said.number(0)};
        break;
    case Id::MasterReadRefused:
        call(request, line, ObjectKind::Volume, "getMasterVolume", {0}, said.number(0));
        break;
    case Id::AlternativeSet:
    case Id::AlternativeRefused: {
        const QVariant step = valueAround(request, line, Id::HandleChannelVolumeChanged, 1);
        const QVariant wanted = step.isValid() ? QVariant(FacadeRules::sentAlternativeVolume(FacadeRules::platformVolume(step.toInt()))) : QVariant();
        const QVariant volume = said.isError() ? wanted : said.values.at(0);
        const bool isHiCar = valueAround(request, line, Id::SetHCconnect, 0).toBool()
            || valueAround(request, line, Id::HandleChannelVolumeChanged, 0).toInt() == ZelAudioTypeHiCarCall;
        if (isHiCar)
            call(request, line, ObjectKind::Volume, "setTrackVolume", {text("main"), text(&FacadeRules::hiCarCallSource[0]), volume});
        call(request, line, ObjectKind::Volume, "setAlterTrackVolume", {volume}, codeOf(said));
        break;
    }
    case Id::AlternativeChanged:
        call(request, line, ObjectKind::Volume, "setAlterTrackVolume", {said.number(1)});
        break;
    case Id::AlternativeChangeRefused:
        call(request, line, ObjectKind::Volume, "setAlterTrackVolume", {QVariant()}, said.number(0));
        break;
    case Id::TrackChanged:
    case Id::TrackRefused:
        addStepCalls(request, line);
        break;
    case Id::MuteBegins:
        call(request, line, ObjectKind::Volume, said.isTrue(1) ? "muteTrack" : "unmuteTrack", {said.text(0), 0});
        break;
    case Id::MuteRefused:
    case Id::LoudnessRefused:
        if (LoggedCall *const refused = lastCall(request))
            refused->result = said.number(0);
        break;
    default:
        break;
    }
}

void CallReading::addRefusedStream(LoggedRequest &request, const Line &line)
{
    const Line *const name = beside(request, line, Id::StreamName);
    const QString source = name ? name->line.text(1) : FacadeRules::platformSource(line.line.text(0));
    const QVariant step = valueAround(request, line, Id::HandleChannelVolumeChanged, 1);
    QVariant volume = step.isValid() ? QVariant(FacadeRules::platformVolume(step.toInt())) : QVariant();
    if (around(request, line, Id::DelaySetVolume))
        volume = m_delayedVolume.toInt() & 0xFF;
    if (volume.isValid())
        volume = FacadeRules::sentVolume(source, volume.toInt());
    call(request, line, ObjectKind::Volume, "setTrackVolume", {valueAround(request, line, Id::StreamTag, 1), source, volume}, line.line.number(1));
}

/// One step up or down of what plays, and of its group.
void CallReading::addStepCalls(LoggedRequest &request, const Line &line)
{
    const LogLine &said = line.line;
    const Line *const group = around(request, line, Id::GroupFound);
    const QVariant playing = group ? group->line.values.at(1) : QVariant();
    if (said.isError()) {
        call(request, line, ObjectKind::Volume, "setTrackVolume", {QVariant(), playing, QVariant()}, said.number(0));
        return;
    }
    const QString source = firstOf(playing, FacadeRules::platformSource(said.text(1))).toString();
    const int volume = said.number(3) & 0xFF;
    call(request, line, ObjectKind::Volume, "setTrackVolume", {said.text(0), source, volume});
    const QStringList others = FacadeRules::othersOfGroup(source);
    for (const QString &other : others)
        call(request, line, ObjectKind::Volume, "setTrackVolume", {said.text(0), other, volume});
}

void CallReading::addRoutingCalls(LoggedRequest &request, const Line &line)
{
    const LogLine &said = line.line;
    switch (said.id()) {
    case Id::FrontSeatSet:
    case Id::FrontSeatRefused:
        addFrontSeatCall(request, line);
        break;
    case Id::OutputFrontSet:
    case Id::OutputFrontRefused: {
        const bool frontOnly = beside(request, line, Id::FrontChannels) != nullptr;
        call(request,
             line,
             ObjectKind::Source,
             "setOutputSource",
             {valueAround(request, line, Id::OutputFrontBegins, 0), valueAround(request, line, Id::OutputFrontBegins, 1)},
             said.number(0));
        if (!frontOnly && !beside(request, line, Id::FrontAndRearChannels))
            break;
        call(request, line, ObjectKind::Source, "setOutputChannelMask", {frontOnly ? frontPair : allPairs}, said.number(1));
        call(request, line, ObjectKind::Mixer, "setFrontRearMode", {frontOnly ? 0 : 1}, said.number(2));
        break;
    }
    case Id::InputSet:
    case Id::InputRefused:
        call(request,
             line,
             ObjectKind::Source,
             "setInputDestination",
             {valueAround(request, line, Id::InputBegins, 0), valueAround(request, line, Id::InputBegins, 1)},
             codeOf(said));
        break;
    case Id::AuxiliarySet:
    case Id::AuxiliaryRefused:
        call(request, line, ObjectKind::Source, "setInputSelectPin", {auxiliaryInput, valueAround(request, line, Id::AuxiliaryBegins, 1)}, codeOf(said));
        break;
    case Id::AuxiliaryRead:
        call(request, line, ObjectKind::Source, "getInputSelectPin", {auxiliaryInput}).outputs = {said.number(0)};
        break;
    case Id::AuxiliaryReadRefused:
        call(request, line, ObjectKind::Source, "getInputSelectPin", {auxiliaryInput}, said.number(0));
        break;
    case Id::I2sSet:
    case Id::I2sRefused:
        call(request, line, ObjectKind::Source, "setInputSelectPin", {i2sInput, i2sPin}, codeOf(said));
        break;
    default:
        break;
    }
}

/// These words stand for every stream and for ducking.
void CallReading::addFrontSeatCall(LoggedRequest &request, const Line &line)
{
    if (const Line *const output = around(request, line, Id::OutputBegins)) {
        call(request, line, ObjectKind::Source, "setOutputSource", {output->line.text(0), output->line.text(1)}, codeOf(line.line));
        return;
    }
    const Line *const ducking = around(request, line, Id::DuckingBegins);
    if (!ducking)
        return;
    // Mode and gain leave the same line. A ducking sets the mode first; elsewhere no mode is as large as a gain.
    const Line *const duck = around(request, line, Id::Duck);
    const bool isSecond = duck && !request.calls.isEmpty() && request.calls.constLast().operation == QLatin1String("setDuckingMode");
    constexpr int highestMode = 1;
    const bool isGain = duck ? isSecond : ducking->line.number(0) > highestMode;
    call(request, line, ObjectKind::Volume, isGain ? "setDuckingTargetGain" : "setDuckingMode", {ducking->line.number(0)}, codeOf(line.line));
}

void CallReading::addSoundCalls(LoggedRequest &request, const Line &line)
{
    const LogLine &said = line.line;
    switch (said.id()) {
    case Id::EqualizerSet:
    case Id::EqualizerRefused:
        call(request, line, ObjectKind::App, "setExtEqParameter", {gainsAround(request, line)}, codeOf(said));
        break;
    case Id::ShortRecord:
    case Id::ShortRecordInHertz:
        if (LoggedCall *const equalizer = lastCall(request))
            equalizer->operation = text("setEqParameter");
        break;
    case Id::LoudnessSent:
        call(request, line, ObjectKind::App, "setLoudness", {valueAround(request, line, Id::SetLoudNess, 0)});
        break;
    case Id::LoudspeakerRefused:
        m_refusedLoudspeakers.insert(loudspeakerOf(said.row->words + sizeof "set"), said.number(0));
        break;
    case Id::LoudspeakerGain:
        call(request,
             line,
             ObjectKind::Volume,
             "setFadeBalance",
             {said.number(0), said.number(1)},
             m_refusedLoudspeakers.value(loudspeakerOf(said.row->words), 0));
        break;
    case Id::DpsSet:
    case Id::DpsRefused:
        addSwitch(request, line, "enableDps", "disableDps");
        break;
    case Id::StereoSet:
    case Id::StereoRefused:
        addSwitch(request, line, "enableStereo", "disableStereo");
        break;
    case Id::DpsGainSet:
    case Id::DpsGainRefused:
        call(request, line, ObjectKind::App, "setDpsUserGain", {QVariant()}, codeOf(said));
        break;
    case Id::FilterSet:
    case Id::FilterRefused:
        call(request, line, ObjectKind::App, "setFilter", {QVariant()}, codeOf(said));
        break;
    case Id::SpeakerDelayRefused:
        call(request, line, ObjectKind::App, "setSpeakerDelay", {QVariant(), QVariant()}, said.number(0));
        break;
    default:
        break;
    }
}

void CallReading::addMicrophoneCalls(LoggedRequest &request, const Line &line)
{
    const LogLine &said = line.line;
    switch (said.id()) {
    case Id::MicrophoneVolumeSet:
        call(request, line, ObjectKind::Volume, "setMicVolume", {said.real(0)});
        break;
    case Id::MicrophoneVolumeRefused: {
        const QVariant volume = valueAround(request, line, Id::SetMicInputValue, 0);
        call(request, line, ObjectKind::Volume, "setMicVolume", {volume.isValid() ? QVariant(volume.toDouble()) : volume}, said.number(0));
        break;
    }
    case Id::AnalogGain:
        call(request, line, ObjectKind::Volume, "setMicAnalogGain", {said.real(0), said.real(1)});
        break;
    case Id::StoreAutoMicGain:
        // At the start the two amplifiers are set without a line of their own.
        if (around(request, line, Id::ManagerStarts) && around(request, line, Id::GetMicAnalogOpAndPga)) {
            const FacadeRules::MicrophoneStages stages = FacadeRules::microphoneStages(said.real(0));
            call(request, line, ObjectKind::Volume, "setMicOpGain", {0, stages.stage, stages.stage});
            call(request, line, ObjectKind::Volume, "setMicPgaGain", {0, double(stages.rest), double(stages.rest)});
        }
        break;
    case Id::CalibrationStarts:
        call(request, line, ObjectKind::Volume, "startMicGainCalibration", {});
        break;
    case Id::CalibrationApplied:
        call(request, line, ObjectKind::Volume, "setMicGainCalibration", {});
        break;
    case Id::GetMicAnalogGain:
        call(request, line, ObjectKind::Volume, "getMicAnalogGain", {}).outputs = {said.real(0), said.real(1)};
        break;
    case Id::GetMicCalibrationGain:
        call(request, line, ObjectKind::Volume, "getMicCalibrationGain", {}).outputs = {said.number(0), said.number(1)};
        break;
    case Id::DownlinkStarts:
        call(request, line, ObjectKind::App, "startDownlinkDelayEstimation", {});
        break;
    case Id::DownlinkRead:
        call(request, line, ObjectKind::App, "getDownlinkDelayEstimation", {});
        break;
    case Id::HandsfreeSet:
    case Id::HandsfreeRefused:
        call(request, line, ObjectKind::Source, "setHandsfreeDelay", {valueAround(request, line, Id::HandsfreeBegins, 0)}, codeOf(said));
        break;
    case Id::EchoQualitySet:
    case Id::EchoQualityRefused:
        call(request, line, ObjectKind::App, "setAecQuality", {valueAround(request, line, Id::EchoQualityBegins, 0)}, codeOf(said));
        break;
    case Id::MicrophoneTestRefused: {
        constexpr int values = 8;
        call(request, line, ObjectKind::App, "getMicrophoneTest", {values}, said.number(0));
        break;
    }
    case Id::MicrophoneSwitched:
    case Id::MicrophoneSwitchRefused: {
        const QVariant given = valueAround(request, line, Id::SetMicLeftRightSwitch, 0);
        call(request, line, ObjectKind::Source, "setMicLeftRightSwitch", {given.isValid() ? QVariant(!given.toBool()) : given}, codeOf(said));
        break;
    }
    default:
        break;
    }
}

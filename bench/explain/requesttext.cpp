#include "requesttext.h"

#include "facaderules.h"
#include "policytext.h"
#include "viewtext.h"

#include "policynames.h"
#include "valuetext.h"

#include <algorithm>
#include <cmath>

using LogLines::Id;

namespace
{

struct Spelling
{
    Id id;
    const char *operation;
    /// A letter for each argument, "?" where the log does not say it: S a status, C a channel, T a volume type, A a tag, v any other value.
    const char *arguments;
};

constexpr Spelling spellings[] = {
    {Id::UpdateAudioStatus, "AudioPolicy.updateAudioStatus", "S"},
    {Id::UpdateAudioChannel, "AudioPolicy.updateAudioChannel", "C"},
    {Id::CurrentAudioChannel, "AudioPolicy.currentAudioChannel", ""},
    {Id::SetVolume, "AudioPolicy.setVolume", "Tvv"},
    {Id::GetVolume, "AudioPolicy.getVolume", "?"},
    {Id::SaveVolume, "AudioPolicy.saveVolume", ""},
    {Id::UpdateCurrentAudioVolume, "AudioPolicy.updateCurrentAudioVolume", "v"},
    {Id::SetVolResponse, "AudioPolicy.setVolResponse", "vv"},
    {Id::Duck, "AudioPolicy.duck", "v"},
    {Id::UnDuck, "AudioPolicy.unDuck", ""},
    {Id::AaDuckAudio, "AudioPolicy.aaDuckAudio", "??"},
    {Id::AaUnduckAudio, "AudioPolicy.aaUnduckAudio", "?"},
    {Id::ClDuckAudio, "AudioPolicy.clDuckAudio", "??"},
    {Id::ClUnduckAudio, "AudioPolicy.clUnduckAudio", "?"},
    {Id::CpDuckAudio, "AudioPolicy.cpDuckAudio", "??"},
    {Id::CpUnduckAudio, "AudioPolicy.cpUnduckAudio", "?"},
    {Id::SetCPConnected, "AudioPolicy.setCPConnected", "v"},
    {Id::GetCPConnected, "AudioPolicy.getCPConnected", ""},
    {Id::UpdateCPAAStatus, "AudioPolicy.updateCPAAStatus", "v"},
    {Id::SetCpPhone, "AudioPolicy.setCpPhone", "v"},
    {Id::SetAudioMute, "AudioPolicy.setAudioMute", "v?"},
    {Id::DeMute, "AudioPolicy.deMute", ""},
    {Id::SetMute, "AudioPolicy.setMute", "v"},
    {Id::IsAttOn, "AudioPolicy.isAttOn", ""},
    {Id::TriggerAtt, "AudioPolicy.triggerAtt", ""},
    {Id::OnRecvBackCar, "AudioPolicy.onRecvBackCar", "v"},
    {Id::SetHCconnect, "AudioPolicy.setHCconnect", "v"},
    {Id::GetEqBaseData, "AudioPolicy.getEqBaseData", ""},
    {Id::CustomEq, "AudioPolicy.customEq", "?"},
    {Id::EqType, "AudioPolicy.eqType", ""},
    {Id::SetEqType, "AudioPolicy.setEqType", "v"},
    {Id::EqTypePrev, "AudioPolicy.eqTypePrev", ""},
    {Id::EqTypeNext, "AudioPolicy.eqTypeNext", ""},
    {Id::AdjustCustomEq, "AudioPolicy.adjustCustomEq", "vv"},
    {Id::LoudNess, "AudioPolicy.loudNess", ""},
    {Id::SetLoudNess, "AudioPolicy.setLoudNess", "v"},
    {Id::MicInputValue, "AudioPolicy.micInputValue", ""},
    {Id::SetMicInputValue, "AudioPolicy.setMicInputValue", "v"},
    {Id::MicTypeIsDefault, "AudioPolicy.micTypeIsDefault", ""},
    {Id::SetMicLeftRightSwitch, "AudioPolicy.setMicLeftRightSwitch", "v"},
    {Id::GetAutoMicGain, "AudioPolicy.getMicAnalogGain", ""},
    {Id::GetMicAnalogGain, "AudioPolicy.getMicAnalogGain", ""},
    {Id::SetMicAnalogGain, "AudioPolicy.setMicAnalogGain", "vv"},
    {Id::GetMicAnalogOpAndPga, "AudioPolicy.getMicAnalogOpAndPga", ""},
    {Id::StartMicGainCalibration, "AudioPolicy.startMicGainCalibration", ""},
    {Id::SetMicGainCalibration, "AudioPolicy.setMicGainCalibration", ""},
    {Id::GetMicCalibrationGain, "AudioPolicy.getMicCalibrationGain", ""},
    {Id::SetHandsfreeDelay, "AudioPolicy.setHandsfreeDelay", "v"},
    {Id::SetDownlinkDelayEstimation, "AudioPolicy.setDownlinkDelayEstimation", ""},
    {Id::GetDownlinkDelayEstimation, "AudioPolicy.getDownlinkDelayEstimation", ""},
    {Id::SetInputDestination, "AudioPolicy.setInputDestination", "Av"},
    {Id::StoreAutoMicGainKey, "AudioSettings.getAutoMicGain", ""},
    {Id::StoreHandsfreeDelayKey, "AudioSettings.getHandsfreeDelay", ""},
    {Id::StoreSetAutoMicGain, "AudioSettings.setAutoMicGain", "?"},
    {Id::StoreSetHandsfreeDelay, "AudioSettings.setHandsfreeDelay", "?"},
    {Id::StreamRead, "AudioControl.getStreamVolume", "??"},
    {Id::StreamReadRefused, "AudioControl.getStreamVolume", "??"},
    {Id::StepStreamSet, "AudioControl.initTrackStepVolume", "??"},
    {Id::StepStreamRefused, "AudioControl.initTrackStepVolume", "??"},
    {Id::MasterSet, "AudioControl.setMasterVolume", "?"},
    {Id::MasterRefused, "AudioControl.setMasterVolume", "?"},
    {Id::MasterRead, "AudioControl.getMasterVolume", ""},
    {Id::MasterReadRefused, "AudioControl.getMasterVolume", ""},
    {Id::MasterStepIgnored, "AudioControl.setMasterStepVolume", "v"},
    {Id::AlternativeSet, "AudioControl.setAlterVolume", "??"},
    {Id::AlternativeRefused, "AudioControl.setAlterVolume", "??"},
    {Id::ModeGains, "AudioControl.getEqGain", "v"},
    {Id::InitialFrequency, "AudioControl.getEqInitValue", ""},
    {Id::OutputBegins, "AudioControl.setOutputSource", "vv"},
    {Id::OutputFrontBegins, "AudioControl.setOutputFrontSource", "vv?"},
    {Id::InputBegins, "AudioControl.setInputDestination", "vv"},
    {Id::AuxiliaryBegins, "AudioControl.setAuxinChannel", "v"},
    {Id::AuxiliaryReadBegins, "AudioControl.getAuxinChannel", ""},
    {Id::I2sSet, "AudioControl.setI2SINChannel", "?"},
    {Id::I2sRefused, "AudioControl.setI2SINChannel", "?"},
    {Id::DuckingBegins, "AudioControl.setMainAudioDunkingMode", "v"},
    {Id::MicrophoneVolumeSet, "AudioControl.setMicroPhoneVolume", "v"},
    {Id::MicrophoneVolumeRefused, "AudioControl.setMicroPhoneVolume", "?"},
    {Id::AnalogGain, "AudioControl.setMicAnalogGain", "vv"},
    {Id::CalibrationStarts, "AudioControl.startMicGainCalibration", ""},
    {Id::CalibrationApplied, "AudioControl.setMicGainCalibration", ""},
    {Id::DownlinkStarts, "AudioControl.setDownlinkDelayEstimation", ""},
    {Id::DownlinkRead, "AudioControl.getDownlinkDelayEstimation", ""},
    {Id::HandsfreeBegins, "AudioControl.setHandsfreeDelay", "v"},
    {Id::EchoQualityBegins, "AudioControl.setAECQuality", "v"},
    {Id::MicrophoneSwitched, "AudioControl.setMicLeftRightSwitch", "?"},
    {Id::MicrophoneSwitchRefused, "AudioControl.setMicLeftRightSwitch", "?"},
    {Id::MicrophoneTestRefused, "AudioControl.getMicrophoneTest", ""},
    {Id::DpsSet, "AudioControl.setDpsEnable", "?"},
    {Id::DpsRefused, "AudioControl.setDpsEnable", "?"},
    {Id::StereoSet, "AudioControl.setStereoEnable", "?"},
    {Id::StereoRefused, "AudioControl.setStereoEnable", "?"},
    {Id::DpsGainSet, "AudioControl.setDpsUserGain", "?"},
    {Id::DpsGainRefused, "AudioControl.setDpsUserGain", "?"},
    {Id::FilterSet, "AudioControl.setFilter", "??"},
    {Id::FilterRefused, "AudioControl.setFilter", "??"},
    {Id::SpeakerDelayRefused, "AudioControl.setSpeakerDelay", "?"},
    {Id::EqualizerSet, "AudioControl.setEqGain", "?"},
    {Id::EqualizerRefused, "AudioControl.setEqGain", "?"},
    {Id::GroupFound, "AudioControl.changeMainTrackStepVolume", "?"},
    {Id::TrackChanged, "AudioControl.changeMainTrackStepVolume", "?"},
    {Id::TrackRefused, "AudioControl.changeMainTrackStepVolume", "?"},
    {Id::AlternativeChanged, "AudioControl.changeAlterStepVolume", "??"},
    {Id::AlternativeChangeRefused, "AudioControl.changeAlterStepVolume", "??"},
    {Id::LoudnessSent, "AudioControl.setLoudnessSwitch", "?"},
    {Id::ModeUnknown, "AudioControl.setEqMode", "v"},
    {Id::GainWrong, "AudioControl.setEqGain", "?"},
    {Id::CountWrong, "AudioControl.setEqGain", "?"},
    {Id::NameNotInList, "AudioControl.getCurMainTrackStepVolumeInfo", ""},
    {Id::OutputUnknown, "AudioControl.getCurMainTrackStepVolumeInfo", ""},
    {Id::CurrentUnknown, "AudioControl.changeMainTrackStepVolume", "?"},
    {Id::StepTooHigh, "AudioControl.initTrackStepVolume", "??"},
    {Id::NameUnknown, "AudioControl.initTrackStepVolume", "??"},
    {Id::PinUnknown, "AudioControl.setAuxinChannel", "v"},
    {Id::QualityUnknown, "AudioControl.setAECQuality", "v"},
    {Id::MicrophoneVolumeWrong, "AudioControl.setMicroPhoneVolume", "v"},
};

constexpr const char *tags[] = {"Main", "Second", "Alternative", "Uplink", "Input0", "Input1", "Input2", "MainIm"};

template<std::size_t count>
QString nameOf(int number, const policynames::Number (&names)[count])
{
    return number >= 0 && std::size_t(number) < count ? QString::fromLatin1(names[number].name) : QString::number(number);
}

QString tagText(int tag)
{
    return tag >= 0 && std::size_t(tag) < std::size(tags) ? QString::fromLatin1(tags[tag]) : QString::number(tag);
}

QString argumentText(char kind, const QVariant &value)
{
    switch (kind) {
    case 'S':
        return statusText(value.toInt());
    case 'C':
        return nameOf(value.toInt(), policynames::channels);
    case 'T':
        return nameOf(value.toInt(), policynames::volumeTypes);
    case 'A':
        return tagText(value.toInt());
    default:
        break;
    }
    return loggedValueText(value);
}

QString spelled(const Spelling &spelling, const LogLine &line)
{
    QStringList arguments;
    int index = 0;
    for (const char *kind = spelling.arguments; *kind != '\0'; ++kind)
        arguments.append(*kind == '?' ? QStringLiteral("?") : argumentText(*kind, line.values.value(index++)));
    return QString::fromLatin1(spelling.operation) + QLatin1Char('(') + arguments.join(QStringLiteral(", ")) + QLatin1Char(')');
}

/// The first line of this kind; null for none.
const LogLine *find(const LoggedRequest &request, Id id)
{
    const auto found = std::find_if(request.lines.cbegin(), request.lines.cend(), [id](const LoggedRequest::Line &line) { return line.line.id() == id; });
    return found == request.lines.cend() ? nullptr : &found->line;
}

/// The volume that a stream was given, before it was boosted and held at its highest.
QString givenVolume(const LoggedRequest &request)
{
    const LogLine *const sent = find(request, Id::StreamSet);
    const LogLine *const name = find(request, Id::StreamName);
    QStringList volumes;
    constexpr int highest = 148;
    for (int volume = 0; sent && name && volume <= highest; ++volume) {
        if (FacadeRules::sentVolume(name->text(1), volume) == sent->number(1))
            volumes.append(QString::number(volume));
    }
    return volumes.size() == 1 ? volumes.first() : QStringLiteral("?");
}

/// A request of the facade whose tag and name stand in two lines.
QString taggedText(const LoggedRequest &request, const char *operation, Id nameId, const QString &last)
{
    const LogLine *const name = find(request, nameId);
    QStringList arguments{tagText(request.first().number(0)), name ? simulator::quotedText(name->text(0)) : QStringLiteral("?")};
    if (!last.isEmpty())
        arguments.append(last);
    return QString::fromLatin1(operation) + QLatin1Char('(') + arguments.join(QStringLiteral(", ")) + QLatin1Char(')');
}

QString muteText(const LogLine &line)
{
    const bool isSecond = line.text(0) == QLatin1String("second");
    return QStringLiteral("AudioControl.%1(%2)")
        .arg(isSecond ? QLatin1String("muteBackEarphone") : QLatin1String("setMute"), simulator::valueText(line.isTrue(1)));
}

} // namespace

QString loggedValueText(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::Bool:
        return simulator::valueText(value.toBool());
    case QMetaType::Double:
        return simulator::floatText(value.toFloat());
    case QMetaType::QString:
        return simulator::quotedText(value.toString());
    default:
        return value.toString();
    }
}

QString requestText(const LoggedRequest &request)
{
    const LogLine &first = request.first();
    switch (first.id()) {
    case Id::ManagerStarts:
        return QStringLiteral("the audio manager starts");
    case Id::StreamTag:
        return taggedText(request, "AudioControl.setStreamVolume", Id::StreamName, givenVolume(request));
    case Id::OutputTag:
        return taggedText(request, "AudioControl.setOutputSource", Id::OutputName, {});
    case Id::OutputFrontTag:
        return taggedText(request, "AudioControl.setOutputFrontSource", Id::OutputFrontName, QStringLiteral("?"));
    case Id::InputTag:
        return taggedText(request, "AudioControl.setInputDestination", Id::InputName, {});
    case Id::MuteBegins:
        return muteText(first);
    case Id::FadeBegins: // the line has the balance first, negated
        return QStringLiteral("AudioControl.setFadeBalance(%1, %2)").arg(first.number(1)).arg(-qint64(first.number(0)));
    case Id::VolumeTooHigh: {
        constexpr int highestOfStream = 148;
        return first.number(0) == highestOfStream ? QStringLiteral("AudioControl.setStreamVolume(?, ?, ?)") : QStringLiteral("AudioControl.setMasterVolume(?)");
    }
    case Id::EqualizerSet:
        if (find(request, Id::ShortRecord))
            return QStringLiteral("AudioControl.setEqMode(?)");
        break;
    case Id::EqType:
        // 100 stands for the stored type, which is asked for first.
        if (find(request, Id::SetEqType))
            return QStringLiteral("AudioPolicy.setEqType(100)");
        break;
    default:
        break;
    }
    const auto *const spelling = std::find_if(std::begin(spellings), std::end(spellings), [&first](const Spelling &one) { return one.id == first.id(); });
    return spelling == std::end(spellings) ? QStringLiteral("the rest of an operation") : spelled(*spelling, first);
}

QString timerPurpose(const QString &timer)
{
    const auto *const found = std::find_if(
        std::begin(policynames::timers), std::end(policynames::timers), [&timer](const policynames::Timer &one) { return timer == QLatin1String(one.name); });
    return found == std::end(policynames::timers) ? timer : QString::fromLatin1(found->purpose);
}

QString causeText(const LoggedRequest &request)
{
    return request.timer.isEmpty() ? requestText(request) : ViewText::timer(timerPurpose(request.timer));
}

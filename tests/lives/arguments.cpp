#include "arguments.h"

#include <faults.h>
#include <valuetext.h>

#include <iterator>

namespace lives
{

namespace
{

constexpr const char *tracks[] = {"main", "second", "alternative", "uplink", "input0", "input1", "input2", "main_im", "third"};

// All that the facade knows, and three that it does not.
constexpr const char *sources[] = {"S+FilePlayer_APP",
                                   "S+DiscPlayer_APP",
                                   "BT_AUDIO_Track",
                                   "S+BtRingtone_APP",
                                   "S+BtPcmPhone",
                                   "S+BtPcmPhone_APP",
                                   "BT_MIC_Record",
                                   "S+AuxIn_APP",
                                   "S+Mic_APP",
                                   "S+GPS_APP",
                                   "S+CarPlayMedia_APP",
                                   "S+CarPlayAlert_APP",
                                   "S+CarPlayTelephony_APP",
                                   "S+CarPlaySpeech_APP",
                                   "S+CarPlayDefault_APP",
                                   "S+AndroidAuto_APP",
                                   "S+IPod_APP",
                                   "S+CarLife_APP",
                                   "S+IosMirror_APP",
                                   "S+WebLink_APP",
                                   "s+AirPlayMedia_APP",
                                   "S+none_APP",
                                   "S+AirPlayMedia_APP",
                                   "S+FilePlayer",
                                   ""};

constexpr const char *platformSources[]
    = {"S+FilePlayer", "S+AndroidAuto", "S+none", "S+BtPcmPhone", "S+CarPlaySpeech", "S+DiscPlayer", "S+GPS", "S+Radio", ""};

constexpr const char *clients[clientCount] = {"music", "Music", "prompt", "call", "IN_VOICE_COMM_FOCUS_ID"};
constexpr const char *objectKinds[] = {"App", "Mixer", "Source", "Volume"};
constexpr const char *writingFaults[] = {"Volume.getTrackVolume",
                                         "Volume.getMasterVolume",
                                         "Source.getInputSelectPin",
                                         "App.getMicrophoneTest",
                                         "Volume.getMicAnalogGain",
                                         "Volume.getMicCalibrationGain",
                                         "App.getDownlinkDelayEstimation"};
constexpr const char *texts[] = {"0", "1", "7", "12", "25", "26", "37", "64", "91", "200", "300", "-1", "-7", "true", "false", "abc", "3.7", "99999999999"};

template<std::size_t count>
const char *pick(const char *const (&names)[count], int number)
{
    return names[static_cast<std::size_t>(number) % count];
}

template<std::size_t count>
constexpr int last(const char *const (&)[count])
{
    return static_cast<int>(count) - 1;
}

QString numberText(int number)
{
    return QString::number(number);
}
QString flagText(int number)
{
    return number != 0 ? QStringLiteral("true") : QStringLiteral("false");
}
QString gainText(int number)
{
    return simulator::floatText(static_cast<float>(number) / 4);
}
QString quoted(const QString &text)
{
    return simulator::quotedText(text);
}

} // namespace

const char *trackName(int number)
{
    return pick(tracks, number);
}
const char *sourceName(int number)
{
    return pick(sources, number);
}
const char *platformSourceName(int number)
{
    return pick(platformSources, number);
}
QString faultName(int number)
{
    static const QStringList names = simulator::Faults::operations();
    return names.at(number % names.size());
}
QString writingFaultName(int number)
{
    return QLatin1String(pick(writingFaults, number));
}
QString objectKindName(int number)
{
    return QLatin1String(pick(objectKinds, number));
}
const char *clientId(int number)
{
    return clients[number];
}
QString storedText(int number)
{
    return QLatin1String(pick(texts, number));
}

QString settingKey(int number)
{
    constexpr int volumes = 6;
    constexpr const char *others[] = {"VolumeMic", "Loudness", "MicType", "AutoMicGainOrig", "AutoMicGainArm", "MicDelayOrig", "MicDelayArm"};
    constexpr int bands = 16;
    if (number < volumes)
        return QStringLiteral("Volume/%1").arg(number);
    number -= volumes;
    if (number < static_cast<int>(std::size(others)))
        return QLatin1String("Volume/") + QLatin1String(others[number]);
    number -= static_cast<int>(std::size(others));
    return number < bands ? QStringLiteral("EQ/Custom%1").arg(number) : QStringLiteral("EQ/Type");
}

QByteArray settingsText(int firstSetting, int firstValue, int count)
{
    QByteArray volumes = "[Volume]\n";
    QByteArray equalizer = "[EQ]\n";
    for (int i = 0; i < qMin(count, settingCount); ++i) {
        const QString key = settingKey((firstSetting + i) % settingCount);
        const QByteArray line = key.section(QLatin1Char('/'), 1).toLatin1() + '=' + storedText(firstValue + i).toLatin1() + '\n';
        (key.startsWith(QLatin1String("Volume/")) ? volumes : equalizer) += line;
    }
    return equalizer + '\n' + volumes;
}

namespace kind
{
const ArgumentKind none = {0, 0, {}, numberText};
const ArgumentKind flag = {0, 1, {0, 1, 0, 1, 0, 1, 0, 1}, flagText};
const ArgumentKind status = {0, 19, {0, 10, 11, 14, 15, 18, 25, -1}, numberText};
const ArgumentKind channel = {0, 19, {3, 0, 5, 7, 10, 17, 20, -1}, numberText};
const ArgumentKind volumeType = {0, 5, {0, 3, 2, 5, 1, 6, 8, -1}, numberText};
const ArgumentKind volume = {0, 25, {20, 0, 1, 25, 26, 37, 64, -1}, numberText};
const ArgumentKind byte = {0, 255, {40, 0, 100, 101, 148, 149, 99, 255}, numberText};
const ArgumentKind number = {-50, 50, {0, 1, 2, 3, 4, 5, -1, 7}, numberText};
const ArgumentKind muteCount = {0, 30, {10, 0, 1, 2, -1, -7, 20, 40}, numberText};
const ArgumentKind equalizerType = {0, 7, {0, 6, 7, 100, 8, -1, 3, 99}, numberText};
const ArgumentKind band = {0, 15, {0, 15, 1, 14, 0, 0, 15, 7}, numberText};
const ArgumentKind index = {0, 15, {0, 15, 16, -1, 17, 1, 2, 3}, numberText};
const ArgumentKind steps = {-6, 6, {0, 6, -6, 7, -7, 100, 3, 1}, numberText};
const ArgumentKind gain = {-48, 180, {0, 36, 40, 48, 80, 160, 180, -49}, gainText};
const ArgumentKind delay = {-10, 500, {0, 120, 80, -1, 1, 32767, 100000, 7}, numberText};
const ArgumentKind micVolume = {0, 91, {12, 0, 91, 92, -1, 40, 1, 90}, numberText};
const ArgumentKind position = {-15, 15, {0, 15, -15, 16, -16, 1, -1, 5}, numberText};
const ArgumentKind tag = {0, 7, {0, 1, 2, 0, 7, 8, -1, 0}, numberText};
const ArgumentKind track = {0, last(tracks), {0, 1, 2, 0, 8, 0, 1, 3}, [](int place) { return quoted(QLatin1String(trackName(place))); }};
const ArgumentKind playingTrack = {0, 1, {0, 0, 0, 0, 0, 1, 0, 0}, [](int place) { return quoted(QLatin1String(trackName(place))); }};
const ArgumentKind source = {0, last(sources), {0, 15, 4, 5, 13, 21, 22, 24}, [](int place) { return quoted(QLatin1String(sourceName(place))); }};
const ArgumentKind platformSource
    = {0, last(platformSources), {0, 1, 2, 3, 4, 7, 8, 0}, [](int place) { return quoted(QLatin1String(platformSourceName(place))); }};
const ArgumentKind outputChannel = {0, 5, {0, 5, 6, -1, 1, 2, 3, 9}, numberText};
const ArgumentKind count = {5, 17, {16, 10, 6, 16, 10, 6, 0, 15}, numberText};
const ArgumentKind milliseconds = {0, 3000, {1, 0, 499, 500, 501, 1000, 999, 2000}, numberText};
const ArgumentKind faultCode = {1, 99, {7, -1, 1, 2, 100, 5, 9, 11}, numberText};
const ArgumentKind fault = {0, 44, {0, 1, 2, 3, 4, 5, 6, 7}, [](int place) { return quoted(faultName(place)); }};
const ArgumentKind writingFault = {0, last(writingFaults), {0, 1, 2, 3, 4, 5, 6, 0}, [](int place) { return quoted(writingFaultName(place)); }};
const ArgumentKind objectKind = {0, last(objectKinds), {0, 1, 2, 3, 0, 1, 2, 3}, [](int place) { return quoted(objectKindName(place)); }};
const ArgumentKind nth = {1, 4, {1, 2, 1, 2, 1, 3, 1, 20}, numberText};
const ArgumentKind client = {0, clientCount - 1, {0, 1, 2, 3, 4, 0, 1, 2}, numberText};
const ArgumentKind hint = {1, 4, {1, 3, 2, 4, 0, 5, -1, 1}, numberText};
const ArgumentKind setting = {0, settingCount - 1, {0, 1, 2, 3, 4, 5, 8, 9}, numberText};
const ArgumentKind storedValue = {0, last(texts), {2, 0, 3, 4, 13, 14, 15, 16}, numberText};
const ArgumentKind systemCall = {1, 40, {1, 5, 10, 15, 20, 25, 30, 60}, numberText};
} // namespace kind

} // namespace lives

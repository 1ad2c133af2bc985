#include "anydrive.h"

#include <QtCore/QRandomGenerator>
#include <QtCore/QString>

#include <iterator>

namespace
{

/// One request of a unit, with a wait between some of them.
QString anyRequest(QRandomGenerator &random)
{
    const auto number = [&random](int least, int most) -> QString { return QString::number(random.bounded(least, most + 1)); };
    const auto truth = [&random]() -> QString { return random.bounded(2) == 0 ? QStringLiteral("true") : QStringLiteral("false"); };
    constexpr const char *operations[] = {
        "AudioPolicy.aaDuckAudio(0, 0)",
        "AudioPolicy.aaUnduckAudio(0)",
        "AudioPolicy.clDuckAudio(0, 0)",
        "AudioPolicy.clUnduckAudio(0)",
        "AudioPolicy.cpDuckAudio(0, 20)",
        "AudioPolicy.cpUnduckAudio(0)",
        "AudioPolicy.eqTypeNext()",
        "AudioPolicy.triggerAtt()",
        "AudioPolicy.saveVolume()",
        "AudioPolicy.setMicGainCalibration()",
        "AudioControl.setMute(true)",
        "AudioControl.setMute(false)",
        "AudioControl.changeMainTrackStepVolume(true)",
        "powerOff(); powerOn()",
    };
    constexpr const char *faults[]
        = {"Volume.muteTrack", "App.setExtEqParameter", "App.setLoudness", "Source.setOutputSource", "Volume.setDuckingMode", "Volume.setMicVolume"};
    constexpr int waits[] = {0, 1, 10, 100, 300, 499, 500, 501, 999, 1000, 2000, 5000};
    switch (random.bounded(16)) {
    case 0:
        return QStringLiteral("AudioPolicy.updateAudioStatus(%1)").arg(number(-1, 20));
    case 1:
        return QStringLiteral("AudioPolicy.updateAudioChannel(%1)").arg(number(0, 20));
    case 2:
        return QStringLiteral("AudioPolicy.setVolume(%1, %2, %3)").arg(number(0, 5), number(0, 45), truth());
    case 3:
        return QStringLiteral("AudioPolicy.updateCurrentAudioVolume(%1)").arg(truth());
    case 4:
        return QStringLiteral("AudioPolicy.setAudioMute(%1, %2)").arg(truth(), number(-1, 30));
    case 5:
        return QStringLiteral("AudioPolicy.setMute(%1)").arg(truth());
    case 6:
        return QStringLiteral("AudioPolicy.setHCconnect(%1)").arg(truth());
    case 7:
        return QStringLiteral("AudioPolicy.setEqType(%1)").arg(number(0, 9));
    case 8:
        return QStringLiteral("AudioPolicy.adjustCustomEq(%1, %2)").arg(number(-8, 8), number(0, 15));
    case 9:
        return QStringLiteral("AudioPolicy.setMicLeftRightSwitch(%1)").arg(truth());
    case 10:
        return QStringLiteral("AudioControl.setFadeBalance(%1, %2)").arg(number(-16, 16), number(-15, 15));
    case 11:
        return QStringLiteral("AudioControl.setStreamVolume(0, \"S+AuxIn_APP\", %1)").arg(number(0, 160));
    case 12:
        return QStringLiteral("Platform.setReverseGear(%1)").arg(truth());
    case 13:
        return QStringLiteral("Platform.failOnce(\"%1\", %2, 1)").arg(QLatin1String(faults[random.bounded(int(std::size(faults)))]), number(1, 99));
    case 14:
        return QString::fromLatin1(operations[random.bounded(int(std::size(operations)))]);
    default:
        return QStringLiteral("wait(%1)").arg(waits[random.bounded(int(std::size(waits)))]);
    }
}

} // namespace

QByteArray anyDrive(unsigned int seed, int length)
{
    QRandomGenerator random(seed);
    QByteArray scenario = "powerOn();\n";
    for (int i = 0; i < length; ++i)
        scenario += anyRequest(random).toLatin1() + ";\n";
    return scenario;
}

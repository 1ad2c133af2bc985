#ifndef FACADERULES_H
#define FACADERULES_H

#include <QtCore/QString>
#include <QtCore/QStringList>

/**
 * What the facade does with values on their way to the platform and leaves no line about. Needed where the platform refused, since such a line
 * has the code only, and where one line stands for several calls.
 *
 * These follow the library's own tables; tst_logtimeline compares by playing.
 */
namespace FacadeRules
{

/// A stored volume times this is what the policy hands to the facade, of which the lower eight bits count.
constexpr int volumeFactor = 4;

/// The loudest volume of a track.
constexpr int highestVolume = 148;

/// A volume as the facade sends it for a source: the source is the platform's name.
int sentVolume(const QString &source, int volume);
/// The lower eight bits of a volume times 4, as the policy hands it to the facade.
int platformVolume(int volume);
/// A volume of the alternative track, where all sources are louder.
int sentAlternativeVolume(int volume);
/// A volume as the policy has it sent for a source on a track: the HiCar call goes the way of the alternative track.
int sentTo(const QString &track, const QString &source, int volume);
/// Whether that makes it louder.
bool isBoosted(const QString &track, const QString &source);
/// The platform's name of a source: "S+FilePlayer" for "S+FilePlayer_APP".
QString platformSource(const QString &name);
/// Those that follow when the step of a source is changed.
QStringList othersOfGroup(const QString &source);

/// Platform volumes that the policy sends for a volume type.
int channelsOfType(int type);

/// What a microphone gain in dB is made of.
struct MicrophoneStages
{
    double stage;
    int rest;
};
MicrophoneStages microphoneStages(double given);

/// The source that a HiCar call is heard with.
constexpr char hiCarCallSource[] = "hicar_voice_callmodemspeaker10";

} // namespace FacadeRules

#endif

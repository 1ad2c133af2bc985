#ifndef EQUALIZERCURVES_H
#define EQUALIZERCURVES_H

#include "equalizerresponse.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <array>
#include <optional>

namespace audio
{
struct audio_eq_parameter_t;
struct audio_ext_eq_parameter_t;
} // namespace audio

namespace simulator
{
class AudioChip;
}

/**
 * The unit's curves as bands.
 *
 * The bands and gains are the library's own, which it tells to nobody but the platform; tst_equalizerresponse compares with what it sends.
 */
namespace EqualizerCurves
{

constexpr int bandCount = 16;
constexpr double highestGain = 12; ///< dB, up and down; the facade refuses more
constexpr int modeCount = 7; ///< AudioControl::EqMode 0 to 6
constexpr int presetCount = 8; ///< equalizer types of the settings store, 0 to 7; 7 is the custom curve
constexpr int customPreset = 7;

// The chip's loudness says 800 and nothing more: it is taken for a shelf, at any volume.
constexpr double loudnessRise = 12; ///< dB, of all far below
constexpr double loudnessFrequency = 100; ///< Hz, where half of it is left
constexpr double loudnessQ = 0.707;

/// What loudness adds at a frequency in Hz, in dB.
double loudnessLevel(double frequency);

using Gains = std::array<double, bandCount>; ///< dB, as setEqGain() takes them

/// The sixteen bands of setEqGain() with these gains. Without any: flat.
EqualizerResponse::Bands ofGains(const Gains &gains = {});

/// What setEqMode() makes of a mode: the eight bands of the platform's short record. Empty for a mode that there is not.
EqualizerResponse::Bands ofMode(int mode);

/// The sixteen gains of an equalizer type of the store, which setEqType() hands to setEqGain(); flat for the custom one.
Gains gainsOfPreset(int type);

/// The curves that have names: "preset0" to "preset6" of the store, "mode0" to "mode6" of the facade.
QStringList names();
/// Empty for a name that there is not.
std::optional<EqualizerResponse::Bands> named(const QString &name);

/**
 * Sixteen numbers of dB, none beyond 12, with commas or blanks between them.
 *
 * @param problem receives why there is none
 */
std::optional<Gains> gainsFromText(const QString &text, QString &problem);

/**
 * The bands in use of a record that the platform was given.
 *
 * The short one has no Q, and its frequencies may be codes of the platform. What a code stands for is taken from the library's other form
 * of the same record, which has Hz in the same places; Q is that of the nearest of the sixteen bands. One from a log has gains only, for
 * the sixteen bands.
 */
EqualizerResponse::Bands ofRecord(const audio::audio_ext_eq_parameter_t &record);
EqualizerResponse::Bands ofRecord(const audio::audio_eq_parameter_t &record);

/// The curve that an output has now, as the record that was set last makes it; empty where none was set for it.
EqualizerResponse::Bands ofChip(const simulator::AudioChip &chip, quint32 channel);

} // namespace EqualizerCurves

#endif

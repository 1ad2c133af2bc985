#ifndef EQUALIZERRESPONSE_H
#define EQUALIZERRESPONSE_H

#include <QtCore/QVector>

#include <functional>

/**
 * What bands of an equalizer do to a sound, in dB by frequency.
 *
 * Each band is the textbook's peaking filter at 48 kHz, a biquad by the bilinear transform; bands stand one behind the other, so that
 * their responses add up in dB. A band with a gain of 0 dB does nothing, nor does one without a width or beyond half the sampling rate.
 */
namespace EqualizerResponse
{

constexpr double samplingRate = 48000; ///< Hz

// What is heard, in Hz.
constexpr double lowestFrequency = 20;
constexpr double highestFrequency = 20000;

struct Band
{
    double frequency = 0; ///< of its centre, Hz
    double q = 0; ///< centre frequency by bandwidth
    double gain = 0; ///< at its centre, dB
};

using Bands = QVector<Band>;

/// Level of the response at a frequency in Hz, in dB.
double level(const Band &band, double frequency);
double level(const Bands &bands, double frequency);
/// By how many dB the level at a frequency rises with each dB of the band's gain: 1 at its centre, less elsewhere.
double slope(const Band &band, double frequency);

/// Filters that are no bands of the unit, but may be wanted of it: the textbook's shelves.
enum class Shelf {
    Low, ///< the gain holds below the frequency
    High,
};
/// Level at a frequency in Hz, in dB; half the shelf's gain at its own frequency. Flat where the shelf has no Q or is beyond half the sampling rate.
double level(Shelf shelf, const Band &band, double frequency);

struct Point
{
    double frequency = 0; ///< Hz
    double level = 0; ///< dB
};

/// The highest point of all bands together, from 20 Hz to 20 kHz: a signal needs so much headroom where it is above 0 dB.
Point highestPoint(const Bands &bands);
/// The same of any level by frequency, in which the bands may make narrow peaks.
Point highestPoint(const Bands &bands, const std::function<double(double)> &level);

/// Frequencies from 20 Hz to 20 kHz, both among them, each the same ratio above the one before. At least two.
QVector<double> spacedFrequencies(int count);

} // namespace EqualizerResponse

#endif

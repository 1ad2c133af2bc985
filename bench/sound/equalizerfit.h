#ifndef EQUALIZERFIT_H
#define EQUALIZERFIT_H

#include "equalizercurves.h"

#include <functional>

/**
 * The gains of the unit's sixteen bands that come nearest to a curve: the least sum of squared errors in dB, at 200 frequencies from 20 Hz
 * to 20 kHz, each the same ratio above the one before. No gain is beyond 12 dB.
 */
struct EqualizerFit
{
    /// Level that is wanted at a frequency in Hz, dB.
    using Curve = std::function<double(double frequency)>;

    // Steps of the gains, dB.
    static constexpr double fineStep = 0.1;
    static constexpr double storedStep = 2; ///< of the custom curve in the settings store, which doubles what it is given

    /// @param step the gains are whole multiples of it
    static EqualizerFit to(const Curve &wanted, double step = fineStep);

    /// Those that count, Hz.
    static QVector<double> frequencies();

    EqualizerCurves::Gains gains = {};

    // Over these frequencies.
    double meanError = 0; ///< root of the mean square, dB
    EqualizerResponse::Point largestError; ///< got less wanted, where it is farthest from 0
};

#endif

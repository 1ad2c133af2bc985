#include "equalizerresponse.h"

#include <algorithm>
#include <cmath>

namespace EqualizerResponse
{

namespace
{

constexpr double decibelPerTenfold = 20;
constexpr double pi = 3.14159265358979323846;

/// The three squares that a band's response is made of: |H|² = (detuning + raised) / (detuning + lowered).
struct Squares
{
    double detuning = 1; // any positive number, for the band that does nothing
    double raised = 0;
    double lowered = 0;
};

bool isPossible(const Band &band)
{
    return band.q > 0 && band.frequency > 0 && 2 * band.frequency < samplingRate;
}

Squares squaresOf(const Band &band, double frequency)
{
    if (!isPossible(band))
        return {};
    const double centre = 2 * pi * band.frequency / samplingRate;
    const double angle = 2 * pi * frequency / samplingRate;
    // The difference of the cosines of angle and centre, exact also where both are nearly 1.
    const double detuning = 2 * std::sin((centre + angle) / 2) * std::sin((centre - angle) / 2);
    const double width = std::sin(centre) / (2 * band.q) * std::sin(angle);
    // The gain is shared by numerator and denominator.
    const double share = std::pow(10, band.gain / (2 * decibelPerTenfold));
    return {detuning * detuning, width * share * width * share, width / share * width / share};
}

/// Where between two frequencies the level is highest, if it has one highest point there.
Point highestBetween(const std::function<double(double)> &level, double low, double high)
{
    constexpr int steps = 60; // each leaves 0.62 of the interval
    const double ratio = (std::sqrt(5.0) - 1) / 2;
    double begin = std::log(low);
    double end = std::log(high);
    for (int step = 0; step < steps; ++step) {
        const double left = end - ratio * (end - begin);
        const double right = begin + ratio * (end - begin);
        if (level(std::exp(left)) < level(std::exp(right)))
            begin = left;
        else
            end = right;
    }
    const double found = std::clamp(std::exp((begin + end) / 2), low, high);
    return {found, level(found)};
}

} // namespace

double level(const Band &band, double frequency)
{
    const Squares squares = squaresOf(band, frequency);
    return decibelPerTenfold / 2 * std::log10((squares.detuning + squares.raised) / (squares.detuning + squares.lowered));
}

double level(const Bands &bands, double frequency)
{
    double sum = 0;
    for (const Band &band : bands)
        sum += level(band, frequency);
    return sum;
}

double slope(const Band &band, double frequency)
{
    const Squares squares = squaresOf(band, frequency);
    return (squares.raised / (squares.detuning + squares.raised) + squares.lowered / (squares.detuning + squares.lowered)) / 2;
}

double level(Shelf shelf, const Band &band, double frequency)
{
    if (!isPossible(band))
        return 0;
    const double pitch = std::tan(pi * frequency / samplingRate) / std::tan(pi * band.frequency / samplingRate);
    const double ratio = shelf == Shelf::Low ? pitch * pitch : 1 / (pitch * pitch);
    const double share = std::pow(10, band.gain / (2 * decibelPerTenfold));
    const double width = share * ratio / (band.q * band.q);
    const double numerator = (share - ratio) * (share - ratio) + width;
    const double denominator = (1 - share * ratio) * (1 - share * ratio) + width;
    return band.gain / 2 + decibelPerTenfold / 2 * std::log10(numerator / denominator);
}

Point highestPoint(const Bands &bands)
{
    return highestPoint(bands, [&bands](double frequency) { return level(bands, frequency); });
}

Point highestPoint(const Bands &bands, const std::function<double(double)> &level)
{
    // Narrow bands could stand between the points of a grid: their centres are points of it, too.
    constexpr int gridSize = 400;
    QVector<double> grid = spacedFrequencies(gridSize);
    for (const Band &band : bands) {
        if (isPossible(band) && band.frequency > lowestFrequency && band.frequency < highestFrequency)
            grid.append(band.frequency);
    }
    std::sort(grid.begin(), grid.end());
    int highest = 0;
    double highestLevel = level(grid.first());
    for (int place = 1; place < grid.size(); ++place) {
        const double levelHere = level(grid.at(place));
        if (levelHere > highestLevel) {
            highest = place;
            highestLevel = levelHere;
        }
    }
    const Point onGrid = {grid.at(highest), highestLevel};
    const Point between = highestBetween(level, grid.at(std::max(highest - 1, 0)), grid.at(std::min(highest + 1, grid.size() - 1)));
    return between.level > onGrid.level ? between : onGrid;
}

QVector<double> spacedFrequencies(int count)
{
    QVector<double> frequencies;
    const int steps = std::max(count, 2) - 1;
    for (int step = 0; step < steps; ++step)
        frequencies.append(lowestFrequency * std::pow(highestFrequency / lowestFrequency, double(step) / steps));
    frequencies.append(highestFrequency);
    return frequencies;
}

} // namespace EqualizerResponse

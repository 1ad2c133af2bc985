#include "equalizerfit.h"

#include <Eigen/Dense>

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <vector>

using EqualizerCurves::bandCount;
using EqualizerCurves::Gains;
using EqualizerCurves::highestGain;
using EqualizerResponse::Bands;

namespace
{

using Vector = Eigen::Matrix<double, bandCount, 1>;
using Matrix = Eigen::Matrix<double, bandCount, bandCount>;

constexpr int frequencyCount = 200;

/// The curve where it counts.
class Target
{
public:
    explicit Target(const EqualizerFit::Curve &wanted)
        : frequencies(EqualizerFit::frequencies())
        , m_levels(frequencyCount)
    {
        for (int place = 0; place < frequencyCount; ++place)
            m_levels[place] = wanted(frequencies.at(place));
    }

    /// Wanted less got.
    Eigen::VectorXd errors(const Vector &gains)
    {
        Eigen::VectorXd left = m_levels;
        for (int band = 0; band < bandCount; ++band)
            left -= response(band, gains[band]);
        return left;
    }

    /// By how much each band's gain raises the level at each frequency.
    Eigen::MatrixXd slopes(const Vector &gains) const
    {
        const Bands bands = bandsOf(gains);
        Eigen::MatrixXd all(frequencyCount, bandCount);
        for (int place = 0; place < frequencyCount; ++place) {
            for (int band = 0; band < bandCount; ++band)
                all(place, band) = EqualizerResponse::slope(bands.at(band), frequencies.at(place));
        }
        return all;
    }

    static Gains gainsOf(const Vector &gains)
    {
        Gains result;
        std::copy(gains.begin(), gains.end(), result.begin());
        return result;
    }

    const QVector<double> frequencies;

private:
    static Bands bandsOf(const Vector &gains) { return EqualizerCurves::ofGains(gainsOf(gains)); }

    /// Of one band. Kept, as rounding asks for the same ones over and over.
    const Eigen::VectorXd &response(int band, double gain)
    {
        const auto [place, isNew] = m_responses.at(std::size_t(band)).try_emplace(gain, frequencyCount);
        if (isNew) {
            EqualizerResponse::Band raised = m_flat.at(band);
            raised.gain = gain;
            for (int frequency = 0; frequency < frequencyCount; ++frequency)
                place->second[frequency] = EqualizerResponse::level(raised, frequencies.at(frequency));
        }
        return place->second;
    }

    Eigen::VectorXd m_levels;
    const Bands m_flat = EqualizerCurves::ofGains();
    std::array<std::map<double, Eigen::VectorXd>, bandCount> m_responses; // by gain
};

/**
 * A step down x'Hx/2 - g'x between bounds, which 0 keeps.
 *
 * Solves for all variables, goes as far as the bounds let it, keeps at its bound what stopped it, and solves for the others. What is held could want
 * back then; the next step begins with all of them again.
 */
Vector stepBetween(const Matrix &hessian, const Vector &gradient, const Vector &low, const Vector &high)
{
    Vector found = Vector::Zero();
    std::vector<int> freeBands(bandCount);
    std::iota(freeBands.begin(), freeBands.end(), 0);
    while (!freeBands.empty()) {
        const Vector downhill = gradient - hessian * found;
        const Eigen::MatrixXd freeHessian = hessian(freeBands, freeBands);
        const Eigen::VectorXd freeDownhill = downhill(freeBands);
        const Eigen::VectorXd freeDirection = freeHessian.ldlt().solve(freeDownhill);
        Vector direction = Vector::Zero();
        direction(freeBands) = freeDirection;

        double reach = 1;
        int stopper = -1;
        for (const int band : freeBands) {
            const double room = direction[band] > 0 ? high[band] - found[band] : low[band] - found[band];
            if (std::abs(room) < std::abs(direction[band]) * reach) {
                reach = room / direction[band];
                stopper = band;
            }
        }
        found += reach * direction;
        if (stopper < 0)
            break;
        found[stopper] = direction[stopper] > 0 ? high[stopper] : low[stopper];
        freeBands.erase(std::find(freeBands.begin(), freeBands.end(), stopper));
    }
    return found;
}

/// Gains of any fraction. A band's response is nearly in proportion to its gain, so a few steps do.
Vector fitted(Target &target)
{
    Vector gains = Vector::Zero();
    Eigen::VectorXd errors = target.errors(gains);
    constexpr int mostSteps = 50;
    constexpr double closeEnough = 1e-9; // dB
    for (int step = 0; step < mostSteps; ++step) {
        const Eigen::MatrixXd slopes = target.slopes(gains);
        const Vector bound = Vector::Constant(highestGain);
        Vector change = stepBetween(slopes.transpose() * slopes, slopes.transpose() * errors, -bound - gains, bound - gains);
        Eigen::VectorXd errorsThere = target.errors(gains + change);
        while (errorsThere.squaredNorm() > errors.squaredNorm() && change.norm() > closeEnough) {
            change /= 2;
            errorsThere = target.errors(gains + change);
        }
        if (change.norm() <= closeEnough)
            break;
        gains = (gains + change).cwiseMax(-bound).cwiseMin(bound);
        errors = errorsThere;
    }
    return gains;
}

/// Multiples of the step near these, none of which gets better when one band, or two neighbours against each other, move on by one.
Vector rounded(Target &target, const Vector &gains, double step)
{
    const double most = std::floor(highestGain / step + 1e-9);
    Eigen::Matrix<double, bandCount, 1> counts = (gains / step).array().round().cwiseMax(-most).cwiseMin(most);
    double least = target.errors(counts * step).squaredNorm();
    const auto better = [&](const Vector &other) {
        if (other.cwiseAbs().maxCoeff() > most)
            return false;
        const double sum = target.errors(other * step).squaredNorm();
        if (!(sum < least))
            return false;
        counts = other;
        least = sum;
        return true;
    };
    bool isBetter = true;
    while (isBetter) {
        isBetter = false;
        for (int band = 0; band < bandCount; ++band) {
            for (const double way : {1.0, -1.0}) {
                Vector other = counts;
                other[band] += way;
                isBetter = better(other) || isBetter;
                if (band + 1 < bandCount) {
                    other[band + 1] -= way;
                    isBetter = better(other) || isBetter;
                }
            }
        }
    }
    // Without the last bits of 0.1, and without a minus before 0.
    constexpr double digits = 1000;
    return (counts * step * digits).array().round() / digits + 0.0;
}

} // namespace

QVector<double> EqualizerFit::frequencies()
{
    return EqualizerResponse::spacedFrequencies(frequencyCount);
}

EqualizerFit EqualizerFit::to(const Curve &wanted, double step)
{
    Target target(wanted);
    const Vector gains = rounded(target, fitted(target), step);
    const Eigen::VectorXd errors = target.errors(gains);
    EqualizerFit fit;
    fit.gains = Target::gainsOf(gains);
    fit.meanError = std::sqrt(errors.squaredNorm() / frequencyCount);
    int place = 0;
    errors.cwiseAbs().maxCoeff(&place);
    fit.largestError = {target.frequencies.at(place), -errors[place]};
    return fit;
}

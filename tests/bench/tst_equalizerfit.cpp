#include <sound/equalizerfit.h>
#include <sound/equalizertext.h>

#include <QtCore/QRandomGenerator>
#include <QtTest/QtTest>

#include <cmath>
#include <numeric>
#include <vector>

using EqualizerCurves::Gains;
using EqualizerResponse::Bands;

namespace
{

EqualizerFit::Curve curveOf(const Bands &bands)
{
    return [bands](double frequency) { return EqualizerResponse::level(bands, frequency); };
}

EqualizerFit::Curve curveOf(const char *text)
{
    const EqualizerText read = EqualizerText::read(text);
    return [read](double frequency) { return read.level(frequency); };
}

double meanErrorOf(const Gains &gains, const EqualizerFit::Curve &wanted)
{
    const Bands bands = EqualizerCurves::ofGains(gains);
    double sum = 0;
    const QVector<double> frequencies = EqualizerResponse::spacedFrequencies(200);
    for (const double frequency : frequencies) {
        const double error = EqualizerResponse::level(bands, frequency) - wanted(frequency);
        sum += error * error;
    }
    return std::sqrt(sum / frequencies.size());
}

/// The least error that is found without slopes or matrices: each band in turn at the best of its gains, in steps of 0.25 dB, until nothing gets better.
double leastMeanError(const EqualizerFit::Curve &wanted)
{
    constexpr int gainCount = 97;
    constexpr double step = 2 * EqualizerCurves::highestGain / (gainCount - 1);
    const QVector<double> frequencies = EqualizerResponse::spacedFrequencies(200);
    using Levels = std::vector<double>; // at these frequencies
    static std::vector<std::vector<Levels>> levelsOf; // by band and gain
    if (levelsOf.empty()) {
        const Bands bands = EqualizerCurves::ofGains();
        for (EqualizerResponse::Band band : bands) {
            levelsOf.emplace_back();
            for (int number = 0; number < gainCount; ++number) {
                band.gain = number * step - EqualizerCurves::highestGain;
                Levels levels;
                for (const double frequency : frequencies)
                    levels.push_back(EqualizerResponse::level(band, frequency));
                levelsOf.back().push_back(levels);
            }
        }
    }

    Levels errors;
    for (const double frequency : frequencies)
        errors.push_back(-wanted(frequency));
    std::vector<std::size_t> numbers(levelsOf.size(), gainCount / 2);
    double least = std::inner_product(errors.begin(), errors.end(), errors.begin(), 0.0);
    bool isBetter = true;
    while (isBetter) {
        isBetter = false;
        for (std::size_t band = 0; band < numbers.size(); ++band) {
            for (std::size_t number = 0; number < gainCount; ++number) {
                Levels others = errors;
                for (std::size_t place = 0; place < others.size(); ++place)
                    others[place] += levelsOf[band][number][place] - levelsOf[band][numbers[band]][place];
                const double sum = std::inner_product(others.begin(), others.end(), others.begin(), 0.0);
                if (sum < least - 1e-6) {
                    least = sum;
                    errors = others;
                    numbers[band] = number;
                    isBetter = true;
                }
            }
        }
    }
    return std::sqrt(least / frequencies.size());
}

void verifyWhole(const EqualizerFit &fit, double step)
{
    for (const double gain : fit.gains) {
        QVERIFY(std::abs(gain) <= EqualizerCurves::highestGain);
        QCOMPARE(std::round(gain / step) * step + 1, gain + 1);
        QVERIFY(!std::signbit(gain) || gain < 0);
    }
}

} // namespace

Q_DECLARE_METATYPE(EqualizerFit::Curve)

/// The nearest gains, against curves that the unit can do and a search of another kind.
class EqualizerFitTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void curvesOfTheUnitAreFound_data();
    void curvesOfTheUnitAreFound();
    void nothingIsNearer_data();
    void nothingIsNearer();
    void gainsStayWithinTheirLimit();
    void errorsAreThoseOfTheCurve();
};

void EqualizerFitTest::curvesOfTheUnitAreFound_data()
{
    QTest::addColumn<QVector<double>>("given");
    QTest::addColumn<double>("step");

    for (int type = 0; type < EqualizerCurves::presetCount; ++type) {
        const Gains gains = EqualizerCurves::gainsOfPreset(type);
        QTest::addRow("type %d", type) << QVector<double>(gains.begin(), gains.end()) << EqualizerFit::fineStep;
    }
    QRandomGenerator random(16);
    for (int number = 1; number <= 5; ++number) {
        QVector<double> gains;
        QVector<double> storedGains;
        for (int band = 0; band < EqualizerCurves::bandCount; ++band) {
            gains.append(random.bounded(-120, 121) / 10.0);
            storedGains.append(random.bounded(-6, 7) * 2.0);
        }
        QTest::addRow("any %d", number) << gains << EqualizerFit::fineStep;
        QTest::addRow("stored %d", number) << storedGains << EqualizerFit::storedStep;
    }
    QTest::newRow("all at their highest") << QVector<double>(EqualizerCurves::bandCount, 12) << EqualizerFit::fineStep;
    QTest::newRow("all at their lowest, stored") << QVector<double>(EqualizerCurves::bandCount, -12) << EqualizerFit::storedStep;
}

void EqualizerFitTest::curvesOfTheUnitAreFound()
{
    QFETCH(QVector<double>, given);
    QFETCH(double, step);

    Gains gains;
    std::copy(given.cbegin(), given.cend(), gains.begin());
    const EqualizerFit fit = EqualizerFit::to(curveOf(EqualizerCurves::ofGains(gains)), step);
    verifyWhole(fit, step);
    for (std::size_t band = 0; band < gains.size(); ++band)
        QVERIFY2(std::abs(fit.gains.at(band) - gains.at(band)) < 1e-9, qPrintable(QStringLiteral("%1: %2").arg(band).arg(fit.gains.at(band))));
    QVERIFY(fit.meanError < 1e-9);
    QVERIFY(std::abs(fit.largestError.level) < 1e-9);
}

void EqualizerFitTest::nothingIsNearer_data()
{
    QTest::addColumn<EqualizerFit::Curve>("wanted");
    QTest::addColumn<double>("most"); // dB

    QTest::newRow("flat") << curveOf("Filter 1: OFF") << 0.0;
    QTest::newRow("two peaks") << curveOf("Filter 1: ON PK Fc 90 Hz Gain -6 dB Q 2\nFilter 2: ON PK Fc 2500 Hz Gain 5 dB Q 1") << 1.0;
    QTest::newRow("shelves") << curveOf("Filter 1: ON LS Fc 150 Hz Gain 6 dB\nFilter 2: ON HS Fc 6000 Hz Gain -4 dB") << 1.2;
    QTest::newRow("list") << curveOf("GraphicEQ: 20 3; 100 -3; 1000 0; 4000 5; 20000 -8") << 1.0;
    QTest::newRow("beyond the limit") << curveOf("Filter 1: ON PK Fc 1000 Hz Gain 24 dB Q 1\nFilter 2: ON PK Fc 60 Hz Gain -30 dB Q 1") << 6.0;
    QTest::newRow("all of it beyond the limit") << curveOf("GraphicEQ: 20 40") << 30.0;
    QTest::newRow("narrow") << curveOf("Filter 1: ON PK Fc 10000 Hz Gain 12 dB Q 20") << 2.0;
    QTest::newRow("at the limit and back") << curveOf("GraphicEQ: 20 -18; 40 -12; 80 0; 160 -24; 320 6; 640 24; 1280 24; 2560 -24; 5120 0; 10240 -18") << 6.0;
    QTest::newRow("saw") << curveOf("GraphicEQ: 20 -12; 40 12; 80 -12; 160 12; 320 -12; 640 12; 1280 -12; 2560 12; 5120 -12; 10240 12; 20000 -12") << 6.0;
}

void EqualizerFitTest::nothingIsNearer()
{
    QFETCH(EqualizerFit::Curve, wanted);
    QFETCH(double, most);

    const EqualizerFit fit = EqualizerFit::to(wanted);
    verifyWhole(fit, EqualizerFit::fineStep);
    QVERIFY2(fit.meanError <= most, qPrintable(QString::number(fit.meanError)));
    const double least = leastMeanError(wanted);
    // Gains are rounded to a tenth.
    QVERIFY2(fit.meanError <= least + 0.02, qPrintable(QStringLiteral("%1, and %2 is possible").arg(fit.meanError).arg(least)));

    const EqualizerFit stored = EqualizerFit::to(wanted, EqualizerFit::storedStep);
    verifyWhole(stored, EqualizerFit::storedStep);
    QVERIFY(stored.meanError >= fit.meanError - 0.001);
    // Rounding each gain by itself does not give less.
    Gains rounded = fit.gains;
    for (double &gain : rounded)
        gain = std::round(gain / EqualizerFit::storedStep) * EqualizerFit::storedStep;
    QVERIFY2(stored.meanError <= meanErrorOf(rounded, wanted) + 1e-9, qPrintable(QString::number(stored.meanError)));
}

void EqualizerFitTest::gainsStayWithinTheirLimit()
{
    const EqualizerFit fit = EqualizerFit::to(curveOf("GraphicEQ: 20 60; 20000 -60"));
    verifyWhole(fit, EqualizerFit::fineStep);
    QCOMPARE(fit.gains.front(), 12.0);
    QCOMPARE(fit.gains.back(), -12.0);
}

void EqualizerFitTest::errorsAreThoseOfTheCurve()
{
    const EqualizerFit::Curve wanted = curveOf("Filter 1: ON PK Fc 10000 Hz Gain 12 dB Q 8");
    const EqualizerFit fit = EqualizerFit::to(wanted);
    QCOMPARE(fit.meanError, meanErrorOf(fit.gains, wanted));
    const Bands bands = EqualizerCurves::ofGains(fit.gains);
    double largest = 0;
    const QVector<double> frequencies = EqualizerFit::frequencies();
    for (const double frequency : frequencies)
        largest = std::max(largest, std::abs(EqualizerResponse::level(bands, frequency) - wanted(frequency)));
    QCOMPARE(std::abs(fit.largestError.level), largest);
    QCOMPARE(fit.largestError.level, EqualizerResponse::level(bands, fit.largestError.frequency) - wanted(fit.largestError.frequency));
    // Less than was wanted, there.
    QVERIFY(fit.largestError.level < -5);
    QVERIFY(std::abs(fit.largestError.frequency - 10000) < 300);
}

QTEST_GUILESS_MAIN(EqualizerFitTest)
#include "tst_equalizerfit.moc"

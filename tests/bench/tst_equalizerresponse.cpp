#include "equalizercurves.h"
#include "measuredfilter.h"

#include <platform.h>
#include <qzaudio/audiocontrol.h>
#include <qzaudio/audiodatabase.h>

#include <QtCore/QStandardPaths>
#include <QtTest/QtTest>

#include <cmath>
#include <limits>

using EqualizerResponse::Band;
using EqualizerResponse::Bands;
using simulator::Platform;

namespace
{

constexpr quint32 leftFront = 1;

QVector<double> impulseOf(const Bands &bands)
{
    QStringList filters;
    for (const Band &band : bands)
        filters += QStringLiteral("equalizer=precision=f64:f=%1:width_type=q:width=%2:g=%3").arg(band.frequency).arg(band.q).arg(band.gain);
    return measuredImpulse(filters.join(QLatin1Char(',')));
}

bool isSame(const Bands &one, const Bands &other)
{
    return one.size() == other.size() && std::equal(one.cbegin(), one.cend(), other.cbegin(), [](const Band &a, const Band &b) {
               return a.frequency == b.frequency && a.q == b.q && a.gain == b.gain;
           });
}

EqualizerCurves::Gains allAt(double gain)
{
    EqualizerCurves::Gains gains;
    gains.fill(gain);
    return gains;
}

EqualizerCurves::Gains alternating()
{
    EqualizerCurves::Gains gains;
    for (std::size_t band = 0; band < gains.size(); ++band)
        gains.at(band) = band % 2 == 0 ? 12 : -12;
    return gains;
}

QList<float> asList(const EqualizerCurves::Gains &gains)
{
    QList<float> list;
    for (const double gain : gains)
        list.append(float(gain));
    return list;
}

} // namespace

Q_DECLARE_METATYPE(EqualizerResponse::Bands)

/// Responses against filters that others wrote, and the unit's curves against what the library sends.
class EqualizerResponseTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void levelOfOneBand_data();
    void levelOfOneBand();
    void levelsAddUp();
    void slopeIsTheDifference();
    void highestPoint_data();
    void highestPoint();
    void highestOfPresets();
    void spacedFrequencies();
    void asMeasured_data();
    void asMeasured();
    void gainsAreWhatTheLibrarySends();
    void tenGainsAreWhatTheLibrarySends();
    void modesAreWhatTheLibrarySends();
    void presetsAreTheStores();
    void theChipsCurve();
};

void EqualizerResponseTest::init()
{
    Platform::instance()->reset();
}

void EqualizerResponseTest::levelOfOneBand_data()
{
    QTest::addColumn<double>("frequency");
    QTest::addColumn<double>("q");
    QTest::addColumn<double>("gain");
    QTest::addColumn<double>("at");
    QTest::addColumn<double>("level");

    QTest::newRow("centre") << 1000.0 << 2.0 << 6.0 << 1000.0 << 6.0;
    QTest::newRow("centre, lowered") << 50.0 << 1.0 << -12.0 << 50.0 << -12.0;
    QTest::newRow("no gain") << 1000.0 << 2.0 << 0.0 << 900.0 << 0.0;
    QTest::newRow("no width") << 1000.0 << 0.0 << 6.0 << 1000.0 << 0.0;
    QTest::newRow("half the sampling rate") << 24000.0 << 1.0 << 6.0 << 20000.0 << 0.0;
    QTest::newRow("no frequency") << 0.0 << 1.0 << 6.0 << 20.0 << 0.0;
    // By complex arithmetic from the textbook's coefficients.
    QTest::newRow("below") << 1000.0 << 2.0 << 6.0 << 700.0 << 1.95160970068;
    QTest::newRow("above") << 1000.0 << 2.0 << 6.0 << 1900.0 << 0.73107196408;
    QTest::newRow("far below") << 50.0 << 1.0 << 12.0 << 20.0 << 2.55319240096;
    QTest::newRow("wide, lowered") << 630.0 << 1.5 << -7.3 << 300.0 << -1.12585088899;
    QTest::newRow("near half the sampling rate") << 20000.0 << 1.0 << 12.0 << 18000.0 << 6.55225620286;
    QTest::newRow("highest band far below") << 20000.0 << 1.0 << -12.0 << 2000.0 << -0.02015486937;
    QTest::newRow("narrow") << 3100.0 << 30.0 << 9.0 << 3050.0 << 4.48955149164;
}

void EqualizerResponseTest::levelOfOneBand()
{
    QFETCH(double, frequency);
    QFETCH(double, q);
    QFETCH(double, gain);
    QFETCH(double, at);
    QFETCH(double, level);

    const double given = EqualizerResponse::level({frequency, q, gain}, at);
    QVERIFY2(std::abs(given - level) < 1e-9, qPrintable(QString::number(given, 'g', 17)));
}

void EqualizerResponseTest::levelsAddUp()
{
    const Band one = {100, 1, 4};
    const Band other = {3000, 0.7, -9};
    const QVector<double> frequencies = EqualizerResponse::spacedFrequencies(20);
    for (const double frequency : frequencies)
        QCOMPARE(EqualizerResponse::level({one, other}, frequency), EqualizerResponse::level(one, frequency) + EqualizerResponse::level(other, frequency));
    QCOMPARE(EqualizerResponse::level(Bands(), 1000), 0.0);
}

void EqualizerResponseTest::slopeIsTheDifference()
{
    constexpr double step = 1e-4;
    for (const double gain : {-12.0, -3.0, 0.0, 7.5, 12.0}) {
        const QVector<double> frequencies = EqualizerResponse::spacedFrequencies(40);
        for (const double frequency : frequencies) {
            const double difference = EqualizerResponse::level({800, 2, gain + step}, frequency) - EqualizerResponse::level({800, 2, gain - step}, frequency);
            QVERIFY(std::abs(EqualizerResponse::slope({800, 2, gain}, frequency) - difference / (2 * step)) < 1e-6);
        }
    }
    QCOMPARE(EqualizerResponse::slope({800, 2, 5}, 800), 1.0);
}

void EqualizerResponseTest::highestPoint_data()
{
    QTest::addColumn<Bands>("bands");
    QTest::addColumn<double>("frequency");
    QTest::addColumn<double>("level");

    QTest::newRow("nothing") << Bands() << 20.0 << 0.0;
    QTest::newRow("one band") << Bands{{1000, 2, 6}} << 1000.0 << 6.0;
    QTest::newRow("narrow") << Bands{{1234.5, 1000, 6}, {12000, 1, 3}} << 1234.5 << 6 + EqualizerResponse::level(Band{12000, 1, 3}, 1234.5);
    QTest::newRow("two at the same place") << Bands{{400, 1, 6}, {400, 1, 3}} << 400.0 << 9.0;
    QTest::newRow("at the lowest frequency") << Bands{{5, 0.5, 6}} << 20.0 << EqualizerResponse::level(Band{5, 0.5, 6}, 20);
    QTest::newRow("beyond what is heard") << Bands{{22000, 1, 6}} << 20000.0 << EqualizerResponse::level(Band{22000, 1, 6}, 20000);
}

void EqualizerResponseTest::highestPoint()
{
    QFETCH(Bands, bands);
    QFETCH(double, frequency);
    QFETCH(double, level);

    const EqualizerResponse::Point highest = EqualizerResponse::highestPoint(bands);
    QVERIFY2(std::abs(highest.frequency / frequency - 1) < 1e-3, qPrintable(QString::number(highest.frequency)));
    QVERIFY2(std::abs(highest.level - level) < 1e-6, qPrintable(QString::number(highest.level)));
}

void EqualizerResponseTest::highestOfPresets()
{
    for (int type = 0; type < EqualizerCurves::presetCount; ++type) {
        const Bands bands = EqualizerCurves::ofGains(EqualizerCurves::gainsOfPreset(type));
        const EqualizerResponse::Point highest = EqualizerResponse::highestPoint(bands);
        double highestFound = -std::numeric_limits<double>::infinity();
        const QVector<double> frequencies = EqualizerResponse::spacedFrequencies(20000);
        for (const double frequency : frequencies)
            highestFound = std::max(highestFound, EqualizerResponse::level(bands, frequency));
        QVERIFY(highest.level >= highestFound);
        QVERIFY(highest.level < highestFound + 1e-4);
        QCOMPARE(EqualizerResponse::level(bands, highest.frequency), highest.level);
    }
}

void EqualizerResponseTest::spacedFrequencies()
{
    const QVector<double> frequencies = EqualizerResponse::spacedFrequencies(4);
    QCOMPARE(frequencies.size(), 4);
    QCOMPARE(frequencies.at(0), 20.0);
    QCOMPARE(frequencies.at(1), 200.0);
    QCOMPARE(frequencies.at(2), 2000.0);
    QCOMPARE(frequencies.at(3), 20000.0);
    QCOMPARE(EqualizerResponse::spacedFrequencies(0), (QVector<double>{20, 20000}));
}

void EqualizerResponseTest::asMeasured_data()
{
    QTest::addColumn<Bands>("bands");

    QTest::newRow("lowest band") << Bands{{50, 1, 12}};
    QTest::newRow("1 kHz, lowered") << Bands{{1000, 2, -12}};
    QTest::newRow("highest band") << Bands{{20000, 1, 12}};
    QTest::newRow("all at their highest") << EqualizerCurves::ofGains(allAt(12));
    QTest::newRow("all at their lowest") << EqualizerCurves::ofGains(allAt(-12));
    QTest::newRow("up and down") << EqualizerCurves::ofGains(alternating());
    QTest::newRow("type 0 of the store") << EqualizerCurves::ofGains(EqualizerCurves::gainsOfPreset(0));
    QTest::newRow("mode 1") << EqualizerCurves::ofMode(1);
}

void EqualizerResponseTest::asMeasured()
{
    if (QStandardPaths::findExecutable(QStringLiteral("ffmpeg")).isEmpty())
        QSKIP("ffmpeg is not installed");
    QFETCH(Bands, bands);

    const QVector<double> samples = impulseOf(bands);
    QCOMPARE(samples.size(), 24000);
    const QVector<double> frequencies = EqualizerResponse::spacedFrequencies(60);
    for (const double frequency : frequencies) {
        const double measured = measuredLevel(samples, frequency);
        const double level = EqualizerResponse::level(bands, frequency);
        QVERIFY2(std::abs(level - measured) < 0.001, qPrintable(QStringLiteral("%1 Hz: %2, measured %3").arg(frequency).arg(level).arg(measured)));
    }
}

void EqualizerResponseTest::gainsAreWhatTheLibrarySends()
{
    audio::AudioControl control;
    for (const EqualizerCurves::Gains &gains : {allAt(0), allAt(12), alternating(), EqualizerCurves::gainsOfPreset(0)}) {
        control.setEqGain(asList(gains));
        const Bands sent = EqualizerCurves::ofRecord(Platform::instance()->chip()->lastExtEqParameter());
        QVERIFY(isSame(sent, EqualizerCurves::ofGains(gains)));
    }
}

void EqualizerResponseTest::tenGainsAreWhatTheLibrarySends()
{
    audio::AudioControl control;
    control.setEqGain10({1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
    const Bands sent = EqualizerCurves::ofChip(*Platform::instance()->chip(), leftFront);
    QCOMPARE(sent.size(), 16);
    QCOMPARE(sent.at(3).frequency, 250.0);
    QCOMPARE(sent.at(3).q, 1.5);
    QCOMPARE(sent.at(3).gain, 4.0);
    QCOMPARE(sent.at(15).gain, 0.0);
}

void EqualizerResponseTest::modesAreWhatTheLibrarySends()
{
    audio::AudioControl control;
    for (int mode = 0; mode < EqualizerCurves::modeCount; ++mode) {
        control.setEqMode(audio::AudioControl::EqMode(mode));
        const Bands sent = EqualizerCurves::ofRecord(Platform::instance()->chip()->lastEqParameter());
        QCOMPARE(sent.size(), 8);
        QVERIFY(isSame(sent, EqualizerCurves::ofMode(mode)));
        // The facade gives its gains without their fractions.
        const QList<int> whole = control.getEqGain(audio::AudioControl::EqMode(mode));
        for (int band = 0; band < sent.size(); ++band)
            QCOMPARE(int(sent.at(band).gain), whole.at(band));
    }
    QVERIFY(EqualizerCurves::ofMode(-1).isEmpty());
    QVERIFY(EqualizerCurves::ofMode(EqualizerCurves::modeCount).isEmpty());
    // The codes are no frequencies of their own: every band of the record stands where a mode is meant to work.
    QList<double> frequencies;
    const Bands bands = EqualizerCurves::ofMode(0);
    for (const Band &band : bands)
        frequencies.append(band.frequency);
    QCOMPARE(frequencies, (QList<double>{50, 200, 400, 1000, 3000, 7000, 15000, 800}));
    QCOMPARE(bands.at(5).q, 1.0);
    QCOMPARE(bands.at(2).q, 1.5);
}

void EqualizerResponseTest::presetsAreTheStores()
{
    audio::AudioDataBase store;
    for (int type = 0; type < EqualizerCurves::presetCount; ++type) {
        const EqBaseData &preset = store.getEqBaseData()[type];
        QCOMPARE(preset.type, type);
        QCOMPARE(asList(EqualizerCurves::gainsOfPreset(type)), QList<float>(std::begin(preset.gains), std::end(preset.gains)));
    }
    QCOMPARE(EqualizerCurves::gainsOfPreset(-1), EqualizerCurves::gainsOfPreset(0));
    QCOMPARE(EqualizerCurves::gainsOfPreset(EqualizerCurves::presetCount), EqualizerCurves::gainsOfPreset(0));
}

void EqualizerResponseTest::theChipsCurve()
{
    simulator::AudioChip &chip = *Platform::instance()->chip();
    QVERIFY(EqualizerCurves::ofChip(chip, leftFront).isEmpty());

    audio::AudioControl control;
    control.setEqGain(asList(allAt(3)));
    QVERIFY(isSame(EqualizerCurves::ofChip(chip, leftFront), EqualizerCurves::ofGains(allAt(3))));
    control.setEqMode(audio::AudioControl::EqMode(1));
    QVERIFY(isSame(EqualizerCurves::ofChip(chip, leftFront), EqualizerCurves::ofMode(1)));

    audio::audio_ext_eq_parameter_t record = {};
    constexpr quint32 rightFront = 2;
    record.channel = rightFront;
    record.band[7] = {3, 440, 0, 2.5F, 0.7F, {}};
    QCOMPARE(chip.setExtEqParameter(record), 0);
    QVERIFY(EqualizerCurves::ofChip(chip, leftFront).isEmpty());
    QVERIFY(isSame(EqualizerCurves::ofChip(chip, rightFront), {{440, 0.7, 2.5}}));
}

QTEST_GUILESS_MAIN(EqualizerResponseTest)
#include "tst_equalizerresponse.moc"

#include "equalizercurves.h"
#include "responsecurve.h"

#include <QtCore/QPointF>
#include <QtTest/QtTest>

#include <cmath>

using EqualizerResponse::Bands;

namespace
{

QVariantList asList(const Bands &bands)
{
    QVariantList list;
    for (const EqualizerResponse::Band &band : bands)
        list.append(QVariantMap{{QStringLiteral("frequency"), band.frequency}, {QStringLiteral("q"), band.q}, {QStringLiteral("gain"), band.gain}});
    return list;
}

Bands twoBands()
{
    return {{100, 1, 6}, {4000, 2, -3}};
}

} // namespace

class ResponseCurveTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void flatWithoutBands();
    void points_data();
    void points();
    void knownLevels();
    void highestPoint();
    void loudness();
    void axis();
    void tellsOfChanges();
    void neverStale();
    void takesNoOtherBands_data();
    void takesNoOtherBands();
    void namedCurves();
    void unknownName();
};

void ResponseCurveTest::flatWithoutBands()
{
    const ResponseCurve curve;
    const QVariantList points = curve.points();
    QCOMPARE(points.size(), 241);
    for (const QVariant &point : points)
        QCOMPARE(point.toPointF().y(), 0.0);
    QCOMPARE(curve.highestLevel(), 0.0);
}

void ResponseCurveTest::points_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("fewest") << ResponseCurve::fewestPoints;
    QTest::newRow("some") << 7;
    QTest::newRow("most") << ResponseCurve::mostPoints;
}

void ResponseCurveTest::points()
{
    QFETCH(const int, count);
    ResponseCurve curve;
    curve.setBands(asList(twoBands()));
    curve.setPointCount(count);
    const QVariantList points = curve.points();
    const QVector<double> frequencies = EqualizerResponse::spacedFrequencies(count);
    QCOMPARE(points.size(), count);
    for (int i = 0; i < count; ++i) {
        QCOMPARE(points.at(i).toPointF().x(), double(i) / (count - 1));
        QCOMPARE(points.at(i).toPointF().y(), EqualizerResponse::level(twoBands(), frequencies.at(i)));
    }
}

void ResponseCurveTest::knownLevels()
{
    ResponseCurve curve;
    curve.setBands(asList({{1000, 1, 6}}));
    QCOMPARE(curve.level(1000), 6.0);
    // Of the biquad's coefficients, computed by another program.
    QVERIFY(std::abs(curve.level(20) - 0.00258884) < 1e-7);
    QVERIFY(std::abs(curve.level(500) - 1.87938136) < 1e-7);
    QVERIFY(std::abs(curve.level(2000) - 1.86599104) < 1e-7);
    QVERIFY(std::abs(curve.level(9000) - 0.06288548) < 1e-7);
}

void ResponseCurveTest::highestPoint()
{
    ResponseCurve curve;
    curve.setPointCount(2); // which are far from it
    curve.setBands(asList(twoBands()));
    const EqualizerResponse::Point highest = EqualizerResponse::highestPoint(twoBands());
    QCOMPARE(curve.highestFrequency(), highest.frequency);
    QCOMPARE(curve.highestLevel(), highest.level);
    QVERIFY(std::abs(curve.highestFrequency() - 100) < 1);
}

void ResponseCurveTest::loudness()
{
    ResponseCurve curve;
    curve.setBands(asList({{10000, 2, 3}}));
    const double before = curve.level(20);
    curve.setLoudness(true);
    QVERIFY(std::abs(curve.level(20) - before - EqualizerCurves::loudnessRise) < 0.2);
    QVERIFY(std::abs(curve.level(EqualizerCurves::loudnessFrequency) - EqualizerCurves::loudnessRise / 2) < 0.01);
    QVERIFY(std::abs(curve.level(10000) - 3) < 0.01);
    QCOMPARE(curve.highestFrequency(), 20.0);
    QCOMPARE(curve.highestLevel(), curve.level(20));
}

void ResponseCurveTest::axis()
{
    const ResponseCurve curve;
    QCOMPARE(curve.position(20), 0.0);
    QCOMPARE(curve.position(20000), 1.0);
    QVERIFY(std::abs(curve.position(200) - 1.0 / 3) < 1e-9);
    for (const double frequency : {20.0, 440.0, 1000.0, 20000.0})
        QVERIFY(std::abs(curve.frequency(curve.position(frequency)) - frequency) < 1e-6);
}

void ResponseCurveTest::tellsOfChanges()
{
    ResponseCurve curve;
    const QSignalSpy bands(&curve, &ResponseCurve::bandsChanged);
    const QSignalSpy loudness(&curve, &ResponseCurve::loudnessChanged);
    const QSignalSpy count(&curve, &ResponseCurve::pointCountChanged);
    const QSignalSpy all(&curve, &ResponseCurve::curveChanged);
    for (int turn = 0; turn < 2; ++turn) {
        // The second time it is what it was.
        curve.setBands(asList(twoBands()));
        curve.setLoudness(true);
        curve.setPointCount(5);
    }
    QCOMPARE(bands.count(), 1);
    QCOMPARE(loudness.count(), 1);
    QCOMPARE(count.count(), 1);
    QCOMPARE(all.count(), 3);
    QCOMPARE(curve.bands(), asList(twoBands()));
}

void ResponseCurveTest::neverStale()
{
    ResponseCurve curve;
    curve.setPointCount(3);
    QVector<double> levels;
    QVector<int> counts;
    const auto look = [&] {
        levels.append(std::round(curve.highestLevel()));
        counts.append(curve.points().size());
    };
    connect(&curve, &ResponseCurve::bandsChanged, &curve, look);
    connect(&curve, &ResponseCurve::pointCountChanged, &curve, look);
    curve.setBands(asList({{1000, 1, 4}}));
    curve.setBands(asList({{1000, 1, 5}}));
    curve.setPointCount(4);
    QCOMPARE(levels, QVector<double>({4, 5, 5}));
    QCOMPARE(counts, QVector<int>({3, 3, 4}));
}

void ResponseCurveTest::takesNoOtherBands_data()
{
    QTest::addColumn<QVariant>("band");
    const QString frequency = QStringLiteral("frequency");
    const QString q = QStringLiteral("q");
    const QString gain = QStringLiteral("gain");
    QTest::newRow("no object") << QVariant(80);
    QTest::newRow("no gain") << QVariant(QVariantMap{{frequency, 80}, {q, 1}});
    QTest::newRow("a word") << QVariant(QVariantMap{{frequency, 80}, {q, QStringLiteral("wide")}, {gain, 1}});
    QTest::newRow("no number") << QVariant(QVariantMap{{frequency, 80}, {q, 1}, {gain, qQNaN()}});
    QTest::newRow("infinite") << QVariant(QVariantMap{{frequency, qInf()}, {q, 1}, {gain, 1}});
}

void ResponseCurveTest::takesNoOtherBands()
{
    QFETCH(const QVariant, band);
    ResponseCurve curve;
    curve.setBands(asList(twoBands()));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("number 2 is none$")));
    curve.setBands(asList(twoBands()) + QVariantList{band});
    QCOMPARE(curve.bands(), asList(twoBands()));
}

void ResponseCurveTest::namedCurves()
{
    ResponseCurve curve;
    const QStringList names = curve.names();
    QCOMPARE(names, EqualizerCurves::names());
    for (const QString &name : names) {
        curve.load(name);
        QCOMPARE(curve.bands(), asList(*EqualizerCurves::named(name)));
    }
}

void ResponseCurveTest::unknownName()
{
    ResponseCurve curve;
    curve.setBands(asList(twoBands()));
    // Without an engine that it could be thrown in.
    QTest::ignoreMessage(QtWarningMsg, "there is no curve \"mode7\"; the nearest is \"mode0\"");
    curve.load(QStringLiteral("mode7"));
    QCOMPARE(curve.bands(), asList(twoBands()));
}

QTEST_GUILESS_MAIN(ResponseCurveTest)
#include "tst_responsecurve.moc"

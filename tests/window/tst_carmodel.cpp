#include "carmodel.h"

#include <QtTest/QtTest>

#include <limits>

namespace
{

constexpr double silence = -std::numeric_limits<double>::infinity();

/// Takes a snapshot without a car.
class Model : public CarModel
{
public:
    using CarModel::update;
};

QVariantMap loudspeaker(const QString &name, int gain, double level, double delay = 0, const QString &filter = {})
{
    return {
        {QStringLiteral("name"), name},
        {QStringLiteral("gain"), gain},
        {QStringLiteral("level"), level},
        {QStringLiteral("delay"), delay},
        {QStringLiteral("filter"), filter},
    };
}

QVariantMap playing(const QString &track, const QString &source, double level, bool muted = false)
{
    return {
        {QStringLiteral("track"), track},
        {QStringLiteral("source"), source},
        {QStringLiteral("level"), level},
        {QStringLiteral("muted"), muted},
    };
}

QVariantMap carWith(const QVariantMap &car)
{
    return {{QStringLiteral("car"), car}};
}

QVariantMap outputOf(const Model &model, int output)
{
    return model.outputs().at(output).toMap();
}

} // namespace

class CarModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutCar();
    void outputs_data();
    void outputs();
    void place_data();
    void place();
    void sources();
    void tellsOfChangesOnly();
    void lines_data();
    void lines();
    void frontOnlyNeedsSource();
};

void CarModelTest::withoutCar()
{
    Model model;
    model.update({});
    QVERIFY(model.outputs().isEmpty());
    QVERIFY(model.sources().isEmpty());
    QVERIFY(model.mainSource().isEmpty());
    QCOMPARE(model.frontRearMode(), -1);
    QCOMPARE(model.masterVolume(), -1);
    QCOMPARE(model.placeText(), QStringLiteral("in the middle"));
}

void CarModelTest::outputs_data()
{
    QTest::addColumn<int>("gain");
    QTest::addColumn<double>("level");
    QTest::addColumn<QString>("gainText");
    QTest::addColumn<QString>("levelText");
    QTest::addColumn<double>("loudness");
    QTest::newRow("full") << 100 << 0.0 << "100 %, 0.0 dB"
                          << "0.0 dB" << 1.0;
    QTest::newRow("half") << 50 << -6.0 << "50 %, -6.0 dB"
                          << "-6.0 dB" << 0.9;
    QTest::newRow("least") << 1 << -45.0 << "1 %, -40.0 dB"
                           << "-45.0 dB" << 0.25;
    QTest::newRow("silent") << 0 << silence << "silent"
                            << "silent" << 0.0;
    QTest::newRow("too low to hear") << 100 << -75.0 << "100 %, 0.0 dB"
                                     << "-75.0 dB" << 0.0;
}

void CarModelTest::outputs()
{
    QFETCH(const int, gain);
    QFETCH(const double, level);
    QFETCH(const QString, gainText);
    QFETCH(const QString, levelText);
    QFETCH(const double, loudness);
    Model model;
    const QVariantMap output = loudspeaker(QStringLiteral("left rear"), gain, level, 2.5, QStringLiteral("1, 2"));
    model.update(carWith({{QStringLiteral("loudspeakers"), QVariantList{loudspeaker(QStringLiteral("left front"), 100, 0), output}}}));
    QCOMPARE(model.outputs().size(), 2);
    const QVariantMap shown = outputOf(model, 1);
    QCOMPARE(shown.value(QStringLiteral("name")).toString(), QStringLiteral("left rear"));
    QCOMPARE(shown.value(QStringLiteral("gain")).toInt(), gain);
    QCOMPARE(shown.value(QStringLiteral("gainText")).toString(), gainText);
    QCOMPARE(shown.value(QStringLiteral("levelText")).toString(), levelText);
    QCOMPARE(shown.value(QStringLiteral("loudness")).toDouble(), loudness);
    QCOMPARE(shown.value(QStringLiteral("delay")).toDouble(), 2.5);
    QCOMPARE(shown.value(QStringLiteral("filter")).toString(), QStringLiteral("1, 2"));
}

void CarModelTest::place_data()
{
    QTest::addColumn<int>("fade");
    QTest::addColumn<int>("balance");
    QTest::addColumn<QString>("text");
    QTest::newRow("middle") << 0 << 0 << "in the middle";
    QTest::newRow("front") << 3 << 0 << "front 3";
    QTest::newRow("rear") << -15 << 0 << "rear 15";
    QTest::newRow("the left is positive") << 0 << 5 << "left 5";
    QTest::newRow("right") << 0 << -5 << "right 5";
    QTest::newRow("both") << -1 << -2 << "rear 1, right 2";
}

void CarModelTest::place()
{
    QFETCH(const int, fade);
    QFETCH(const int, balance);
    QFETCH(const QString, text);
    Model model;
    model.update(carWith({{QStringLiteral("fade"), fade}, {QStringLiteral("balance"), balance}}));
    QCOMPARE(model.fade(), fade);
    QCOMPARE(model.balance(), balance);
    QCOMPARE(model.placeText(), text);
}

void CarModelTest::sources()
{
    Model model;
    model.update(carWith({{QStringLiteral("masterVolume"), 90},
                          {QStringLiteral("frontRearMode"), 0},
                          {QStringLiteral("sources"),
                           QVariantList{playing(QStringLiteral("alternative"), QStringLiteral("Somebody"), -20.5, true),
                                        playing(QStringLiteral("main"), QStringLiteral("S+FilePlayer"), -12)}}}));
    QCOMPARE(model.masterVolume(), 90);
    QCOMPARE(model.frontRearMode(), 0);
    QCOMPARE(model.mainSource(), QStringLiteral("S+FilePlayer"));
    const QVariantMap unknown = model.sources().at(0).toMap();
    QCOMPARE(unknown.value(QStringLiteral("text")).toString(), QStringLiteral("Somebody"));
    QVERIFY(unknown.value(QStringLiteral("muted")).toBool());
    const QVariantMap known = model.sources().at(1).toMap();
    QCOMPARE(known.value(QStringLiteral("text")).toString(), QStringLiteral("file player"));
    QCOMPARE(known.value(QStringLiteral("levelText")).toString(), QStringLiteral("-12.0 dB"));
    QVERIFY(!known.value(QStringLiteral("muted")).toBool());
}

void CarModelTest::tellsOfChangesOnly()
{
    Model model;
    const QSignalSpy outputs(&model, &CarModel::outputsChanged);
    const QSignalSpy place(&model, &CarModel::placeChanged);
    const QSignalSpy mode(&model, &CarModel::frontRearModeChanged);
    const QSignalSpy master(&model, &CarModel::masterVolumeChanged);
    const QSignalSpy sources(&model, &CarModel::sourcesChanged);
    const auto counts = [&] { return QVector<int>{outputs.count(), place.count(), mode.count(), master.count(), sources.count()}; };
    QVariantMap car = {
        {QStringLiteral("loudspeakers"), QVariantList{loudspeaker(QStringLiteral("left front"), 0, silence)}},
        {QStringLiteral("balance"), 1},
        {QStringLiteral("frontRearMode"), 1},
        {QStringLiteral("masterVolume"), 100},
        {QStringLiteral("sources"), QVariantList{playing(QStringLiteral("main"), QStringLiteral("S+FilePlayer"), silence)}},
    };
    model.update(carWith(car));
    QCOMPARE(counts(), QVector<int>({1, 1, 1, 1, 1}));
    model.update(carWith(car));
    QCOMPARE(counts(), QVector<int>({1, 1, 1, 1, 1}));
    car[QStringLiteral("loudspeakers")] = QVariantList{loudspeaker(QStringLiteral("left front"), 40, silence)};
    model.update(carWith(car));
    QCOMPARE(counts(), QVector<int>({2, 1, 1, 1, 1}));
    car[QStringLiteral("balance")] = 2;
    car[QStringLiteral("frontRearMode")] = 0;
    model.update(carWith(car));
    QCOMPARE(counts(), QVector<int>({2, 2, 2, 1, 1}));
}

void CarModelTest::lines_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("expected");
    const CarModel &model = Model();
    QTest::newRow("place") << model.placeLine(3, -5) << "AudioControl.setFadeBalance(3, -5);";
    QTest::newRow("beyond the corner") << model.placeLine(16, -200) << "AudioControl.setFadeBalance(15, -15);";
    QTest::newRow("delay of the first") << model.delayLine(0, 0.1) << "AudioControl.setSpeakerDealy(AudioControl.LeftFront, 0.1);";
    QTest::newRow("delay of the last") << model.delayLine(5, 12) << "AudioControl.setSpeakerDealy(AudioControl.SixthOutput, 12);";
    QTest::newRow("delay of none") << model.delayLine(6, 1) << "";
    QTest::newRow("expected gain") << model.gainExpectation(3, 48) << "expect(Platform.channelGain(8)).toBe(48);";
    QTest::newRow("expected delay") << model.delayExpectation(5, 2.5) << "expect(Platform.speakerDelay(32)).toBe(2.5);";
    QTest::newRow("expected mode") << model.frontRearExpectation(1) << "expect(Platform.frontRearMode()).toBe(1);";
}

void CarModelTest::lines()
{
    QFETCH(const QString, line);
    QFETCH(const QString, expected);
    QCOMPARE(line, expected);
}

void CarModelTest::frontOnlyNeedsSource()
{
    Model model;
    QCOMPARE(model.frontOnlyLine(true), QString());
    model.update(carWith({{QStringLiteral("sources"), QVariantList{playing(QStringLiteral("main"), QStringLiteral("S+DiscPlayer"), -12)}}}));
    QCOMPARE(model.frontOnlyLine(true), QStringLiteral("AudioControl.setOutputFrontSource(\"main\", \"S+DiscPlayer\", true);"));
    QCOMPARE(model.frontOnlyLine(false), QStringLiteral("AudioControl.setOutputFrontSource(\"main\", \"S+DiscPlayer\", false);"));
}

QTEST_GUILESS_MAIN(CarModelTest)
#include "tst_carmodel.moc"

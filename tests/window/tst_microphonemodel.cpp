#include "microphonemodel.h"

#include <qzaudio/zelaudiomanager.h>

#include <QtTest/QtTest>

namespace
{

/// Told by hand what the car is like.
class ToldModel : public MicrophoneModel
{
public:
    using MicrophoneModel::update;
};

QVariantMap snapshotOf(const QVariantMap &microphone, int callDuration = 0)
{
    return {{QStringLiteral("microphone"), microphone}, {QStringLiteral("platform"), QVariantMap{{QStringLiteral("callDuration"), callDuration}}}};
}

QVariantList both(double value)
{
    return {value, value};
}

QVariantMap gains(double analog, double op, double pga)
{
    return {{QStringLiteral("analog"), both(analog)}, {QStringLiteral("op"), both(op)}, {QStringLiteral("pga"), both(pga)}};
}

} // namespace

class MicrophoneModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void splitsAsTheLibrary_data();
    static void splitsAsTheLibrary();
    static void stages();
    static void stageInUse_data();
    static void stageInUse();
    static void takesSnapshot();
    static void withoutCar();
    static void tellsChangesOnly();
};

void MicrophoneModelTest::splitsAsTheLibrary_data()
{
    QTest::addColumn<int>("gain");
    for (int gain = -30; gain <= 60; ++gain)
        QTest::addRow("%d dB", gain) << gain;
}

void MicrophoneModelTest::splitsAsTheLibrary()
{
    QFETCH(int, gain);
    static ZelAudioManager manager;
    manager.setMicAnalogGain(float(gain), float(gain));
    float stage = 0;
    int rest = 0;
    manager.getMicAnalogOpAndPga(stage, rest);
    const MicrophoneModel::Split split = MicrophoneModel::split(gain);
    QCOMPARE(split.stage, double(stage));
    QCOMPARE(split.rest, rest);
}

void MicrophoneModelTest::stages()
{
    ToldModel model;
    model.update(snapshotOf(gains(20, 21, -1)));
    const QVariantList rows = model.stages();
    QStringList texts;
    for (const QVariant &row : rows)
        texts.append(row.toMap().value(QStringLiteral("stage")).toString() + QStringLiteral(": ") + row.toMap().value(QStringLiteral("gains")).toString());
    const QStringList expected = {QStringLiteral("0: up to 6"),
                                  QStringLiteral("9: above 6 to 12"),
                                  QStringLiteral("12: 12 to 18"),
                                  QStringLiteral("21: above 18 to 27"),
                                  QStringLiteral("27.5: above 27 to 30"),
                                  QStringLiteral("30: 30 to 36"),
                                  QStringLiteral("40: above 36")};
    QCOMPARE(texts, expected);
    // The texts are what the split does.
    const struct
    {
        double gain;
        double stage;
    } edges[] = {{6, 0}, {7, 9}, {11, 9}, {12, 12}, {18, 12}, {19, 21}, {27, 21}, {28, 27.5}, {30, 30}, {36, 30}, {37, 40}};
    for (const auto &edge : edges)
        QCOMPARE(MicrophoneModel::split(edge.gain).stage, edge.stage);
}

void MicrophoneModelTest::stageInUse_data()
{
    QTest::addColumn<QVariantMap>("microphone");
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("fits");
    QTest::newRow("of the gain") << gains(20, 21, -1) << 3 << true;
    QTest::newRow("of another gain") << gains(8, 0, 0) << 0 << false;
    QTest::newRow("with another rest") << gains(20, 21, 0) << 3 << false;
    QTest::newRow("half a decibel") << gains(28, 27.5, 0) << 4 << true;
    QTest::newRow("none of the table") << gains(20, 20, 0) << -1 << false;
}

void MicrophoneModelTest::stageInUse()
{
    QFETCH(QVariantMap, microphone);
    QFETCH(int, row);
    QFETCH(bool, fits);
    ToldModel model;
    model.update(snapshotOf(microphone));
    const QVariantList stages = model.stages();
    for (int index = 0; index < stages.size(); ++index)
        QCOMPARE(stages.at(index).toMap().value(QStringLiteral("current")).toBool(), index == row);
    QCOMPARE(model.stagesFit(), fits);
}

void MicrophoneModelTest::takesSnapshot()
{
    ToldModel model;
    QVariantMap microphone = gains(45, 40, 5);
    microphone.insert({{QStringLiteral("volume"), 60.0},
                       {QStringLiteral("calibration"), 1},
                       {QStringLiteral("calibrationGains"), QVariantList{6, -5}},
                       {QStringLiteral("swapped"), true},
                       {QStringLiteral("aecQuality"), 2},
                       {QStringLiteral("handsfreeDelay"), -40},
                       {QStringLiteral("downlinkStarted"), true},
                       {QStringLiteral("downlinkDelay"), 120},
                       {QStringLiteral("test"), QVariantList{1, 2, 3, 4, 5, 6, 7, 65535}}});
    model.update(snapshotOf(microphone, 300));
    QCOMPARE(model.volume(), 60.0);
    QCOMPARE(model.analog(), both(45));
    QCOMPARE(model.op(), both(40));
    QCOMPARE(model.pga(), both(5));
    QCOMPARE(model.calibration(), 1);
    QCOMPARE(model.calibrationGains(), QVariantList({6, -5}));
    QVERIFY(model.isSwapped());
    QCOMPARE(model.aecQuality(), 2);
    QCOMPARE(model.handsfreeDelay(), -40);
    QVERIFY(model.isDownlinkStarted());
    QCOMPARE(model.downlinkDelay(), 120);
    QCOMPARE(model.test().size(), 8);
    QCOMPARE(model.test().constLast().toInt(), 65535);
    QCOMPARE(model.callDuration(), 300);
    QCOMPARE(MicrophoneModel::stagesLine(20), QStringLiteral("AudioControl.setMicOpAndPga(21, -1);"));
    QCOMPARE(MicrophoneModel::stagesLine(28), QStringLiteral("AudioControl.setMicOpAndPga(27.5, 0);"));
}

void MicrophoneModelTest::withoutCar()
{
    ToldModel model;
    for (const QVariantMap &snapshot : {QVariantMap(), snapshotOf({{QStringLiteral("op"), QStringLiteral("nonsense")}})}) {
        model.update(snapshot);
        QCOMPARE(model.volume(), 0.0);
        QCOMPARE(model.op().size(), 2);
        QVERIFY(model.stagesFit());
        QCOMPARE(model.stages().size(), 7);
    }
}

void MicrophoneModelTest::tellsChangesOnly()
{
    ToldModel model;
    QSignalSpy changed(&model, &MicrophoneModel::changed);
    model.update(snapshotOf(gains(20, 21, -1)));
    model.update(snapshotOf(gains(20, 21, -1)));
    QCOMPARE(changed.count(), 1);
    model.update(snapshotOf(gains(20, 21, -1), 10));
    QCOMPARE(changed.count(), 2);
    model.update(snapshotOf(gains(21, 21, 0), 10));
    QCOMPARE(changed.count(), 3);
}

QTEST_GUILESS_MAIN(MicrophoneModelTest)

#include "tst_microphonemodel.moc"

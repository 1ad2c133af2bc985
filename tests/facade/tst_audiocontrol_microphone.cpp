#include "operationtest.h"

#include <QtTest/QtTest>

#include <limits>

using audio::AudioControl;

namespace
{

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

OperationTest::Act setVolume(int volume)
{
    return [volume](AudioControl &control) {
        control.setMicroPhoneVolume(volume);
        return QVariant();
    };
}

/// Gives the result and the two gains, which were -77 and -78 before.
QVariant getAnalogGain(AudioControl &control)
{
    float first = -77;
    float second = -78;
    const int result = control.getMicAnalogGain(&first, &second);
    return QVariantList{result, double(first), double(second)};
}

OperationTest::Act setAnalogGain(float first, float second)
{
    return [first, second](AudioControl &control) { return control.setMicAnalogGain(first, second); };
}

OperationTest::Act setOpAndPga(float op, float pga)
{
    return [op, pga](AudioControl &control) { return control.setMicOpAndPga(op, pga); };
}

QVariant startCalibration(AudioControl &control)
{
    return control.startMicGainCalibration();
}

QVariant setCalibration(AudioControl &control)
{
    return control.setMicGainCalibration();
}

/// Gives the result and the two gains, which were -77 and -78 before.
QVariant getCalibration(AudioControl &control)
{
    int first = -77;
    int second = -78;
    const int result = control.getMicCalibrationGain(&first, &second);
    return QVariantList{result, first, second};
}

QVariant startEstimation(AudioControl &control)
{
    control.setDownlinkDelayEstimation();
    return {};
}

/// Gives the result and the delay, which was -77 before.
QVariant getEstimation(AudioControl &control)
{
    short delay = -77;
    const int result = control.getDownlinkDelayEstimation(&delay);
    return QVariantList{result, int(delay)};
}

OperationTest::Act setHandsfree(int delay)
{
    return [delay](AudioControl &control) { return control.setHandsfreeDelay(delay); };
}

OperationTest::Act setQuality(int quality)
{
    return [quality](AudioControl &control) {
        control.setAECQuality(static_cast<AudioControl::AudioQuality>(quality));
        return QVariant();
    };
}

/// Gives the list after the test, separated by spaces.
OperationTest::Act runTest(const QList<int> &before)
{
    return [before](AudioControl &control) {
        QList<int> out = before;
        control.getMicrophoneTest(out);
        QStringList texts;
        for (const int value : qAsConst(out))
            texts.append(QString::number(value));
        return texts.join(QLatin1Char(' '));
    };
}

OperationTest::Act setSwap(bool swap)
{
    return [swap](AudioControl &control) {
        control.setMicLeftRightSwitch(swap);
        return QVariant();
    };
}

} // namespace

/// The microphone and the voice processing of calls.
class AudioControlMicrophoneTest : public OperationTest
{
    Q_OBJECT

private Q_SLOTS:
    void setMicroPhoneVolume_data();
    void setMicroPhoneVolume() { checkRow(); }
    void everyMicroPhoneVolume();
    void getMicAnalogGain_data();
    void getMicAnalogGain() { checkRow(); }
    void setMicAnalogGain_data();
    void setMicAnalogGain() { checkRow(); }
    void setMicOpAndPga_data();
    void setMicOpAndPga() { checkRow(); }
    void startMicGainCalibration_data();
    void startMicGainCalibration() { checkRow(); }
    void setMicGainCalibration_data();
    void setMicGainCalibration() { checkRow(); }
    void getMicCalibrationGain_data();
    void getMicCalibrationGain() { checkRow(); }
    void setDownlinkDelayEstimation_data();
    void setDownlinkDelayEstimation() { checkRow(); }
    void getDownlinkDelayEstimation_data();
    void getDownlinkDelayEstimation() { checkRow(); }
    void setHandsfreeDelay_data();
    void setHandsfreeDelay() { checkRow(); }
    void setAECQuality_data();
    void setAECQuality() { checkRow(); }
    void getSPAudioAECQuality_data();
    void getSPAudioAECQuality();
    void getMicrophoneTest_data();
    void getMicrophoneTest() { checkRow(); }
    void setMicLeftRightSwitch_data();
    void setMicLeftRightSwitch() { checkRow(); }
    void whatWasSetIsInForce();

private:
    /// The test reads 1, 0, 65535, 4, 5, 6, 7, 8.
    static void readTestValues(OperationTest &test);
};

void AudioControlMicrophoneTest::setMicroPhoneVolume_data()
{
    addColumns();
    const auto done = [](int value) { return info(QStringLiteral("Set micro phone volume success. data: %1").arg(value)); };
    addRow("0", {}, setVolume(0), {}, {"Volume.setMicVolume(0) -> 0"_s}, {done(0)});
    addRow("45", {}, setVolume(45), {}, {"Volume.setMicVolume(45) -> 0"_s}, {done(45)});
    addRow("91, the highest", {}, setVolume(91), {}, {"Volume.setMicVolume(91) -> 0"_s}, {done(91)});
    addRow("92", {}, setVolume(92), {}, {}, {error("input data error: 92")});
    addRow("-1", {}, setVolume(-1), {}, {}, {error("input data error: -1")});
    addRow("the lowest int", {}, setVolume(lowest), {}, {}, {error("input data error: -2147483648")});
    addRow("the highest int", {}, setVolume(highest), {}, {}, {error("input data error: 2147483647")});
    addRow("refused", {refused("Volume.setMicVolume", 7)}, setVolume(5), {}, {"Volume.setMicVolume(5) -> 7"_s}, {error("Set micro phone volume error 7")});
    addRow("without a Volume", {startedWithoutObjects()}, setVolume(5), {}, {}, {error("Set micro phone volume error -1")});
    addRow("92 without a Volume", {startedWithoutObjects()}, setVolume(92), {}, {}, {error("input data error: 92")});
}

void AudioControlMicrophoneTest::everyMicroPhoneVolume()
{
    for (int volume = 0; volume <= 91; ++volume) {
        control->setMicroPhoneVolume(volume);
        QCOMPARE(platform->chip()->micVolume(), double(volume));
    }
    QCOMPARE(takeCalls().size(), 92);
}

void AudioControlMicrophoneTest::getMicAnalogGain_data()
{
    addColumns();
    const Given gains = [](OperationTest &) { QCOMPARE(simulator::Platform::instance()->chip()->setMicAnalogGain(4.5F, -3), 0); };
    addRow("the platform's two gains", {gains}, getAnalogGain, QVariantList{0, 4.5, -3.0}, fresh("Volume", {"Volume.getMicAnalogGain() -> 0, 4.5, -3"_s}), {});
    addRow("refused",
           {gains, refused("Volume.getMicAnalogGain", 7)},
           getAnalogGain,
           QVariantList{7, -77.0, -78.0},
           fresh("Volume", {"Volume.getMicAnalogGain() -> 7"_s}),
           {});
    addRow("refused after writing",
           {gains, refusedAfterWriting("Volume.getMicAnalogGain", 7)},
           getAnalogGain,
           QVariantList{7, 4.5, -3.0},
           fresh("Volume", {"Volume.getMicAnalogGain() -> 7, 4.5, -3"_s}),
           {});
    addRow("no Volume can be made",
           {noneMade("Volume")},
           getAnalogGain,
           QVariantList{-1, -77.0, -78.0},
           {notCreated("Volume")},
           {error("Create audio source failed.")});
}

void AudioControlMicrophoneTest::setMicAnalogGain_data()
{
    addColumns();
    addRow("two gains", {}, setAnalogGain(4.5F, -3), 0, fresh("Volume", {"Volume.setMicAnalogGain(4.5, -3) -> 0"_s}), {info("4.5 -3")});
    addRow("refused",
           {refused("Volume.setMicAnalogGain", 7)},
           setAnalogGain(4.5F, -3),
           7,
           fresh("Volume", {"Volume.setMicAnalogGain(4.5, -3) -> 7"_s}),
           {info("4.5 -3")});
    addRow("not a number: passed on, the chip refuses it",
           {},
           setAnalogGain(std::numeric_limits<float>::quiet_NaN(), 1),
           110,
           fresh("Volume", {"Volume.setMicAnalogGain(nan, 1) -> 110"_s}),
           {info("nan 1")});
    addRow("no Volume can be made: both values are logged before it is tried",
           {noneMade("Volume")},
           setAnalogGain(4.5F, -3),
           -1,
           {notCreated("Volume")},
           {info("4.5 -3"), error("Create audio source failed.")});
}

void AudioControlMicrophoneTest::setMicOpAndPga_data()
{
    addColumns();
    const auto calls = [](int opResult, int pgaResult) {
        return fresh(
            "Volume",
            {QStringLiteral("Volume.setMicOpGain(0, 1.5, 1.5) -> %1").arg(opResult), QStringLiteral("Volume.setMicPgaGain(0, 20, 20) -> %1").arg(pgaResult)});
    };
    addRow("-1 although both succeed", {}, setOpAndPga(1.5F, 20), -1, calls(0, 0), {});
    addRow("OP refused: PGA is set all the same", {refused("Volume.setMicOpGain", 7)}, setOpAndPga(1.5F, 20), -1, calls(7, 0), {});
    addRow("PGA refused", {refused("Volume.setMicPgaGain", 7)}, setOpAndPga(1.5F, 20), -1, calls(0, 7), {});
    addRow("both refused", {refused("Volume.setMicOpGain", 7), refused("Volume.setMicPgaGain", 8)}, setOpAndPga(1.5F, 20), -1, calls(7, 8), {});
    addRow("no Volume can be made", {noneMade("Volume")}, setOpAndPga(1.5F, 20), -1, {notCreated("Volume")}, {error("Create audio source failed.")});
}

void AudioControlMicrophoneTest::startMicGainCalibration_data()
{
    addColumns();
    const QString started = info("startMicGainCalibration");
    addRow("started", {}, startCalibration, 0, fresh("Volume", {"Volume.startMicGainCalibration() -> 0"_s}), {started});
    addRow("refused",
           {refused("Volume.startMicGainCalibration", 7)},
           startCalibration,
           7,
           fresh("Volume", {"Volume.startMicGainCalibration() -> 7"_s}),
           {started});
    addRow("no Volume can be made", {noneMade("Volume")}, startCalibration, -1, {notCreated("Volume")}, {error("Create audio source failed.")});
}

void AudioControlMicrophoneTest::setMicGainCalibration_data()
{
    addColumns();
    const QString applied = info("setMicGainCalibration");
    addRow("applied", {}, setCalibration, 0, fresh("Volume", {"Volume.setMicGainCalibration() -> 0"_s}), {applied});
    addRow("refused", {refused("Volume.setMicGainCalibration", 7)}, setCalibration, 7, fresh("Volume", {"Volume.setMicGainCalibration() -> 7"_s}), {applied});
    addRow("no Volume can be made", {noneMade("Volume")}, setCalibration, -1, {notCreated("Volume")}, {error("Create audio source failed.")});
}

void AudioControlMicrophoneTest::getMicCalibrationGain_data()
{
    addColumns();
    const Given gains = [](OperationTest &) { simulator::Platform::instance()->chip()->setCalibrationGains(12, -4); };
    addRow("the two gains found", {gains}, getCalibration, QVariantList{0, 12, -4}, fresh("Volume", {"Volume.getMicCalibrationGain() -> 0, 12, -4"_s}), {});
    addRow("refused: both are written all the same",
           {gains, refused("Volume.getMicCalibrationGain", 7)},
           getCalibration,
           QVariantList{7, 0, 0},
           fresh("Volume", {"Volume.getMicCalibrationGain() -> 7"_s}),
           {});
    addRow("refused after writing",
           {gains, refusedAfterWriting("Volume.getMicCalibrationGain", 7)},
           getCalibration,
           QVariantList{7, 12, -4},
           fresh("Volume", {"Volume.getMicCalibrationGain() -> 7, 12, -4"_s}),
           {});
    addRow("no Volume can be made: nothing is written",
           {noneMade("Volume")},
           getCalibration,
           QVariantList{-1, -77, -78},
           {notCreated("Volume")},
           {error("Create audio source failed.")});
}

void AudioControlMicrophoneTest::setDownlinkDelayEstimation_data()
{
    addColumns();
    const QString started = info("setDownlinkDelayEstimation");
    addRow("started", {}, startEstimation, {}, fresh("App", {"App.startDownlinkDelayEstimation() -> 0"_s}), {started});
    addRow("refused, silently",
           {refused("App.startDownlinkDelayEstimation", 7)},
           startEstimation,
           {},
           fresh("App", {"App.startDownlinkDelayEstimation() -> 7"_s}),
           {started});
    addRow("no App can be made", {noneMade("App")}, startEstimation, {}, {notCreated("App")}, {error("Create audio source failed.")});
    addRow("the long-lived App does not matter",
           {startedWithoutObjects()},
           startEstimation,
           {},
           fresh("App", {"App.startDownlinkDelayEstimation() -> 0"_s}),
           {started});
}

void AudioControlMicrophoneTest::getDownlinkDelayEstimation_data()
{
    addColumns();
    const QString asked = info("getDownlinkDelayEstimation");
    const auto found = [](short delay) -> Given { return [delay](OperationTest &) { simulator::Platform::instance()->chip()->setDownlinkDelay(delay); }; };
    addRow("an estimate", {found(120)}, getEstimation, QVariantList{0, 120}, fresh("App", {"App.getDownlinkDelayEstimation() -> 0, 120"_s}), {asked});
    addRow("the lowest", {found(-32768)}, getEstimation, QVariantList{0, -32768}, fresh("App", {"App.getDownlinkDelayEstimation() -> 0, -32768"_s}), {asked});
    addRow("the highest", {found(32767)}, getEstimation, QVariantList{0, 32767}, fresh("App", {"App.getDownlinkDelayEstimation() -> 0, 32767"_s}), {asked});
    addRow("refused",
           {found(120), refused("App.getDownlinkDelayEstimation", 7)},
           getEstimation,
           QVariantList{7, -77},
           fresh("App", {"App.getDownlinkDelayEstimation() -> 7"_s}),
           {asked});
    addRow("refused after writing",
           {found(120), refusedAfterWriting("App.getDownlinkDelayEstimation", 7)},
           getEstimation,
           QVariantList{7, 120},
           fresh("App", {"App.getDownlinkDelayEstimation() -> 7, 120"_s}),
           {asked});
    addRow("no App can be made", {noneMade("App")}, getEstimation, QVariantList{-1, -77}, {notCreated("App")}, {error("Create audio source failed.")});
}

void AudioControlMicrophoneTest::setHandsfreeDelay_data()
{
    addColumns();
    const QString done = info("setHandsfreeDelaysuccess."); // one word, that is how it is logged
    addRow("a delay", {}, setHandsfree(80), 0, fresh("Source", {"Source.setHandsfreeDelay(80) -> 0"_s}), {info("set setHandsfreeDelay 80"), done});
    addRow("a negative delay", {}, setHandsfree(-1), 0, fresh("Source", {"Source.setHandsfreeDelay(-1) -> 0"_s}), {info("set setHandsfreeDelay -1"), done});
    addRow("the lowest int",
           {},
           setHandsfree(lowest),
           0,
           fresh("Source", {"Source.setHandsfreeDelay(-2147483648) -> 0"_s}),
           {info("set setHandsfreeDelay -2147483648"), done});
    addRow("refused",
           {refused("Source.setHandsfreeDelay", 7)},
           setHandsfree(80),
           7,
           fresh("Source", {"Source.setHandsfreeDelay(80) -> 7"_s}),
           {info("set setHandsfreeDelay 80"), error("setHandsfreeDelay error 7")});
    addRow("no Source can be made", {noneMade("Source")}, setHandsfree(80), -1, {notCreated("Source")}, {error("Create audio source failed.")});
}

void AudioControlMicrophoneTest::setAECQuality_data()
{
    addColumns();
    const QString done = info("Set AEC Quality successful.");
    addRow("0", {}, setQuality(0), {}, {"App.setAecQuality(0) -> 0"_s}, {info("Set AEC Quality to 0"), done});
    addRow("1", {}, setQuality(1), {}, {"App.setAecQuality(1) -> 0"_s}, {info("Set AEC Quality to 1"), done});
    addRow("2", {}, setQuality(2), {}, {"App.setAecQuality(2) -> 0"_s}, {info("Set AEC Quality to 2"), done});
    addRow("3 is sent as 1",
           {},
           setQuality(3),
           {},
           {"App.setAecQuality(1) -> 0"_s},
           {error("getSPAudioAECQuality 3 err,use default 1"), info("Set AEC Quality to 1"), done});
    addRow("-1 is sent as 1",
           {},
           setQuality(-1),
           {},
           {"App.setAecQuality(1) -> 0"_s},
           {error("getSPAudioAECQuality -1 err,use default 1"), info("Set AEC Quality to 1"), done});
    addRow("refused: the text says successful all the same",
           {refused("App.setAecQuality", 7)},
           setQuality(2),
           {},
           {"App.setAecQuality(2) -> 7"_s},
           {info("Set AEC Quality to 2"), error("Set AEC Quality successful error 7")});
    addRow("without an App", {startedWithoutObjects()}, setQuality(2), {}, {}, {info("Set AEC Quality to 2"), error("Set AEC Quality successful error -1")});
}

void AudioControlMicrophoneTest::getSPAudioAECQuality_data()
{
    QTest::addColumn<int>("quality");
    QTest::addColumn<int>("platformQuality");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("0") << 0 << 0 << QStringList();
    QTest::newRow("1") << 1 << 1 << QStringList();
    QTest::newRow("2") << 2 << 2 << QStringList();
    QTest::newRow("3") << 3 << 1 << QStringList{error("getSPAudioAECQuality 3 err,use default 1")};
    QTest::newRow("-1") << -1 << 1 << QStringList{error("getSPAudioAECQuality -1 err,use default 1")};
    QTest::newRow("the lowest int") << lowest << 1 << QStringList{error("getSPAudioAECQuality -2147483648 err,use default 1")};
    QTest::newRow("the highest int") << highest << 1 << QStringList{error("getSPAudioAECQuality 2147483647 err,use default 1")};
}

void AudioControlMicrophoneTest::getSPAudioAECQuality()
{
    QFETCH(int, quality);
    QFETCH(int, platformQuality);
    QFETCH(QStringList, lines);
    QCOMPARE(int(inner->getSPAudioAECQuality(static_cast<AudioControl::AudioQuality>(quality))), platformQuality);
    QCOMPARE(log->takeTexts(), lines);
    QCOMPARE(takeCallsAndLifetimes(), QStringList());
}

void AudioControlMicrophoneTest::readTestValues(OperationTest &)
{
    simulator::Platform::instance()->chip()->setMicrophoneTest({1, 0, 65535, 4, 5, 6, 7, 8});
}

void AudioControlMicrophoneTest::getMicrophoneTest_data()
{
    addColumns();
    const QStringList calls = {"App.getMicrophoneTest(8) -> 0, 1, 0, 65535, 4, 5, 6, 7, 8"_s};
    const QString values = "1 0 65535 4 5 6 7 8"_s;
    const Given given = readTestValues;
    addRow("into an empty list", {given}, runTest({}), values, calls, {});
    addRow("one old value is replaced", {given}, runTest({99}), values, calls, {});
    addRow("ten old values are replaced", {given}, runTest({9, 9, 9, 9, 9, 9, 9, 9, 9, 9}), values, calls, {});
    addRow("refused: the list stays",
           {given, refused("App.getMicrophoneTest", 7)},
           runTest({98, 99}),
           "98 99"_s,
           {"App.getMicrophoneTest(8) -> 7"_s},
           {error("get microphone test error.ret: 7")});
    addRow("refused after writing: the list stays",
           {given, refusedAfterWriting("App.getMicrophoneTest", 7)},
           runTest({98, 99}),
           "98 99"_s,
           {"App.getMicrophoneTest(8) -> 7, 1, 0, 65535, 4, 5, 6, 7, 8"_s},
           {error("get microphone test error.ret: 7")});
    addRow("without an App: the list stays", {startedWithoutObjects()}, runTest({98, 99}), "98 99"_s, {}, {error("get microphone test error.ret: -1")});
}

void AudioControlMicrophoneTest::setMicLeftRightSwitch_data()
{
    addColumns();
    const QString done = info("ADC left right switch success");
    addRow("swapped", {}, setSwap(true), {}, fresh("Source", {"Source.setMicLeftRightSwitch(true) -> 0"_s}), {done});
    addRow("not swapped", {}, setSwap(false), {}, fresh("Source", {"Source.setMicLeftRightSwitch(false) -> 0"_s}), {done});
    addRow("refused",
           {refused("Source.setMicLeftRightSwitch", 7)},
           setSwap(true),
           {},
           fresh("Source", {"Source.setMicLeftRightSwitch(true) -> 7"_s}),
           {error("ADC left right switch failed.ret: 7")});
    addRow("no Source can be made", {noneMade("Source")}, setSwap(true), {}, {notCreated("Source")}, {error("Create audio source failed.")});
}

void AudioControlMicrophoneTest::whatWasSetIsInForce()
{
    const simulator::AudioChip *const chip = platform->chip();
    control->setMicAnalogGain(1.5F, 2.5F);
    control->setMicOpAndPga(3, 4);
    control->setHandsfreeDelay(55);
    control->setAECQuality(static_cast<AudioControl::AudioQuality>(2));
    control->setMicLeftRightSwitch(true);
    control->setDownlinkDelayEstimation();
    QCOMPARE(chip->micAnalogGain()[0], 1.5);
    QCOMPARE(chip->micAnalogGain()[1], 2.5);
    QCOMPARE(chip->micOpGain()[0], 3.0);
    QCOMPARE(chip->micOpGain()[1], 3.0);
    QCOMPARE(chip->micPgaGain()[0], 4.0);
    QCOMPARE(chip->micPgaGain()[1], 4.0);
    QCOMPARE(chip->handsfreeDelay(), 55);
    QCOMPARE(chip->aecQuality(), 2);
    QVERIFY(chip->isMicLeftRightSwapped());
    QVERIFY(chip->isDownlinkEstimationStarted());

    float first = 0;
    float second = 0;
    QCOMPARE(control->getMicAnalogGain(&first, &second), 0);
    QCOMPARE(first, 1.5F);
    QCOMPARE(second, 2.5F);

    QCOMPARE(chip->calibration(), simulator::Calibration::Idle);
    QCOMPARE(control->startMicGainCalibration(), 0);
    QCOMPARE(chip->calibration(), simulator::Calibration::Running);
    QCOMPARE(control->setMicGainCalibration(), 0);
    QCOMPARE(chip->calibration(), simulator::Calibration::Applied);
}

QTEST_GUILESS_MAIN(AudioControlMicrophoneTest)

#include "tst_audiocontrol_microphone.moc"

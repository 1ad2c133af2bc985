#include "policytest.h"

#include <faults.h>

#include <qzaudio/audiocontrol.h>

#include <limits>

using audio::AudioControl;

namespace
{

QStringList micAnalogGain(const char *left, const char *right)
{
    return calls::fresh(QStringLiteral("Volume.setMicAnalogGain(%1, %2) -> 0").arg(QLatin1String(left), QLatin1String(right)));
}

QStringList handsfreeDelay(int delay)
{
    return calls::fresh(QStringLiteral("Source.setHandsfreeDelay(%1) -> 0").arg(delay));
}

} // namespace

class ZelAudioManagerMicrophoneTest : public PolicyTest
{
    Q_OBJECT

private Q_SLOTS:
    void stages_data();
    void stages();
    void stagesLeaveTheFractionBehind();
    void inputValue_data();
    void inputValue();
    void setAnalogGain();
    void setAnalogGainIsStoredThoughThePlatformRefuses();
    void getAnalogGain();
    void leftRightSwitch_data();
    void leftRightSwitch();
    void calibration();
    void calibrationRefused();
    void handsfreeDelayIsStoredAndSent();
    void handsfreeDelayIsStoredThoughThePlatformRefuses();
    void downlinkDelay();
    void inputDestination_data();
    void inputDestination();
};

void ZelAudioManagerMicrophoneTest::stages_data()
{
    struct Row
    {
        int gain;
        float stage;
        int rest;
    };
    // clang-format off
    constexpr Row rows[] = {
        {-5, 0, -5},  {-4, 0, -4},  {-3, 0, -3},    {-2, 0, -2},    {-1, 0, -1}, {0, 0, 0},   {1, 0, 1},   {2, 0, 2},   {3, 0, 3},   {4, 0, 4},
        {5, 0, 5},    {6, 0, 6},    {7, 9, -2},     {8, 9, -1},     {9, 9, 0},   {10, 9, 1},  {11, 9, 2},  {12, 12, 0}, {13, 12, 1}, {14, 12, 2},
        {15, 12, 3},  {16, 12, 4},  {17, 12, 5},    {18, 12, 6},    {19, 21, -2}, {20, 21, -1}, {21, 21, 0}, {22, 21, 1}, {23, 21, 2}, {24, 21, 3},
        {25, 21, 4},  {26, 21, 5},  {27, 21, 6},    {28, 27.5F, 0}, {29, 27.5F, 1}, {30, 30, 0}, {31, 30, 1}, {32, 30, 2}, {33, 30, 3}, {34, 30, 4},
        {35, 30, 5},  {36, 30, 6},  {37, 40, -3},   {38, 40, -2},   {39, 40, -1}, {40, 40, 0}, {41, 40, 1}, {42, 40, 2}, {43, 40, 3}, {44, 40, 4},
        {45, 40, 5},  {46, 40, 6},  {47, 40, 7},    {48, 40, 8},    {49, 40, 9}, {50, 40, 10},
    };
    // clang-format on
    QTest::addColumn<int>("gain");
    QTest::addColumn<float>("stage");
    QTest::addColumn<int>("rest");
    for (const Row &row : rows)
        QTest::addRow("%d dB", row.gain) << row.gain << row.stage << row.rest;
}

void ZelAudioManagerMicrophoneTest::stages()
{
    QFETCH(int, gain);
    QFETCH(float, stage);
    QFETCH(int, rest);
    start();
    store(QStringLiteral("Volume/AutoMicGainOrig"), gain);
    float op = -1;
    int pga = 99;
    manager->getMicAnalogOpAndPga(op, pga);
    QCOMPARE(op, stage);
    QCOMPARE(pga, rest);
    QCOMPARE(takeCalls(), QStringList());
    QCOMPARE(takeManagerLines(),
             QStringList({QStringLiteral("[DBG] THREAD void ZelAudioManager::getMicAnalogOpAndPga(float&, int&) LINE --"),
                          QStringLiteral("[DBG] THREAD float ZelAudioManager::getMicAnalogGain() LINE --")}));
}

void ZelAudioManagerMicrophoneTest::stagesLeaveTheFractionBehind()
{
    start();
    float op = 0;
    int pga = 0;
    manager->setMicAnalogGain(27.9F, 0);
    manager->getMicAnalogOpAndPga(op, pga); // 27
    QCOMPARE(op, 21.0F);
    QCOMPARE(pga, 6);
    store(QStringLiteral("Volume/AutoMicGainOrig"), -1000000);
    manager->getMicAnalogOpAndPga(op, pga);
    QCOMPARE(op, 0.0F);
    QCOMPARE(pga, -1000000);
    store(QStringLiteral("Volume/AutoMicGainOrig"), std::numeric_limits<int>::min());
    manager->getMicAnalogOpAndPga(op, pga);
    QCOMPARE(pga, std::numeric_limits<int>::min());
    store(QStringLiteral("Volume/AutoMicGainOrig"), QStringLiteral("loud"));
    manager->getMicAnalogOpAndPga(op, pga);
    QCOMPARE(pga, 0);
}

void ZelAudioManagerMicrophoneTest::inputValue_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QStringList>("expected");
    const auto sent = [](int value) { return QStringList{QStringLiteral("Volume.setMicVolume(%1) -> 0").arg(value)}; };
    QTest::newRow("the lowest") << 0 << sent(0);
    QTest::newRow("the highest") << 91 << sent(91);
    QTest::newRow("92 is stored though it is refused") << 92 << QStringList();
    QTest::newRow("-1 is stored though it is refused") << -1 << QStringList();
}

void ZelAudioManagerMicrophoneTest::inputValue()
{
    QFETCH(int, value);
    QFETCH(QStringList, expected);
    start();
    manager->setMicInputValue(value);
    QCOMPARE(takeCalls(), expected);
    QCOMPARE(manager->micInputValue(), value);
    QCOMPARE(stored(QStringLiteral("Volume/VolumeMic")).toInt(), value);
    QCOMPARE(takeManagerLines(),
             QStringList({QStringLiteral("[DBG] THREAD void ZelAudioManager::setMicInputValue(int) LINE -- %1").arg(value),
                          QStringLiteral("[DBG] THREAD int ZelAudioManager::micInputValue() LINE --")}));
}

void ZelAudioManagerMicrophoneTest::setAnalogGain()
{
    start();
    QCOMPARE(manager->setMicAnalogGain(12.5F, -3.0F), 0);
    QCOMPARE(takeCalls(), micAnalogGain("12.5", "-3"));
    QCOMPARE(takeManagerLines(), QStringList{QStringLiteral("[DBG] THREAD int ZelAudioManager::setMicAnalogGain(float, float) LINE -- 12.5 -3")});
    QCOMPARE(stored(QStringLiteral("Volume/AutoMicGainOrig")).toFloat(), 12.5F); // the left one only
    QCOMPARE(manager->getMicAnalogGain(), 12.0F); // read in whole dB
}

void ZelAudioManagerMicrophoneTest::setAnalogGainIsStoredThoughThePlatformRefuses()
{
    start();
    QVERIFY(platform->faults()->fail(QStringLiteral("Volume.setMicAnalogGain"), 5));
    QCOMPARE(manager->setMicAnalogGain(9, 9), 5);
    QCOMPARE(stored(QStringLiteral("Volume/AutoMicGainOrig")).toFloat(), 9.0F);
    platform->faults()->clear();
    platform->faults()->failFactory(simulator::ObjectKind::Volume);
    QCOMPARE(manager->setMicAnalogGain(8, 8), -1);
    QCOMPARE(stored(QStringLiteral("Volume/AutoMicGainOrig")).toFloat(), 8.0F);
    platform->faults()->clear();
}

void ZelAudioManagerMicrophoneTest::getAnalogGain()
{
    start();
    manager->setMicAnalogGain(12.5F, 7.0F);
    takeCalls();
    log->take();
    float left = 0;
    float right = 0;
    QCOMPARE(manager->getMicAnalogGain(&left, &right), 0);
    QCOMPARE(left, 12.5F);
    QCOMPARE(right, 7.0F);
    QCOMPARE(takeCalls(), calls::fresh(QStringLiteral("Volume.getMicAnalogGain() -> 0, 12.5, 7")));
    QCOMPARE(takeManagerLines(),
             QStringList{QStringLiteral("[DBG] THREAD int ZelAudioManager::getMicAnalogGain(float*, float*) LINE -- lgain: 12.5 rgain: 7")});
    QVERIFY(platform->faults()->fail(QStringLiteral("Volume.getMicAnalogGain"), 6));
    QCOMPARE(manager->getMicAnalogGain(&left, &right), 6);
    QCOMPARE(left, 12.5F);
    platform->faults()->clear();
}

void ZelAudioManagerMicrophoneTest::leftRightSwitch_data()
{
    QTest::addColumn<bool>("original");
    QTest::addColumn<QStringList>("expected");
    // The platform is given the opposite; gain and delay are those of the microphone switched to.
    QTest::newRow("the original microphone") << true
                                             << calls::fresh(QStringLiteral("Source.setMicLeftRightSwitch(false) -> 0")) + micAnalogGain("5", "5")
            + handsfreeDelay(80);
    QTest::newRow("the arm microphone") << false
                                        << calls::fresh(QStringLiteral("Source.setMicLeftRightSwitch(true) -> 0")) + micAnalogGain("20", "20")
            + handsfreeDelay(120);
}

void ZelAudioManagerMicrophoneTest::leftRightSwitch()
{
    QFETCH(bool, original);
    QFETCH(QStringList, expected);
    store(QStringLiteral("Volume/AutoMicGainOrig"), 5);
    store(QStringLiteral("Volume/AutoMicGainArm"), 20);
    store(QStringLiteral("Volume/MicDelayOrig"), 80);
    store(QStringLiteral("Volume/MicDelayArm"), 120);
    store(QStringLiteral("Volume/MicType"), !original);
    start();
    QCOMPARE(manager->micTypeIsDefault(), !original);
    log->take();
    manager->setMicLeftRightSwitch(original);
    QCOMPARE(takeCalls(), expected);
    QCOMPARE(takeManagerLines(),
             QStringList{QStringLiteral("[DBG] THREAD void ZelAudioManager::setMicLeftRightSwitch(bool) LINE -- set Mic switch: ")
                         + QLatin1String(original ? "true" : "false")});
    QCOMPARE(manager->micTypeIsDefault(), original);
    QCOMPARE(stored(QStringLiteral("Volume/MicType")).toBool(), original);
    // A gain set now belongs to this microphone.
    manager->setMicAnalogGain(7, 7);
    QCOMPARE(stored(QStringLiteral("Volume/AutoMicGainOrig")).toInt(), original ? 7 : 5);
    QCOMPARE(stored(QStringLiteral("Volume/AutoMicGainArm")).toInt(), original ? 20 : 7);
}

void ZelAudioManagerMicrophoneTest::calibration()
{
    start();
    platform->chip()->setCalibrationGains(17, 23);
    QCOMPARE(manager->startMicGainCalibration(), 0);
    QCOMPARE(manager->setMicGainCalibration(), 0);
    int first = 0;
    QCOMPARE(manager->getMicCalibrationGain(&first), 23.0F);
    QCOMPARE(first, 17);
    QCOMPARE(takeCalls(),
             calls::fresh(QStringLiteral("Volume.startMicGainCalibration() -> 0")) + calls::fresh(QStringLiteral("Volume.setMicGainCalibration() -> 0"))
                 + calls::fresh(QStringLiteral("Volume.getMicCalibrationGain() -> 0, 17, 23")));
    QCOMPARE(takeManagerLines(),
             QStringList({QStringLiteral("[DBG] THREAD int ZelAudioManager::startMicGainCalibration() LINE --"),
                          QStringLiteral("[DBG] THREAD int ZelAudioManager::setMicGainCalibration() LINE --"),
                          QStringLiteral("[DBG] THREAD float ZelAudioManager::getMicCalibrationGain(int*) LINE -- 17 23")}));
}

void ZelAudioManagerMicrophoneTest::calibrationRefused()
{
    start();
    QVERIFY(platform->faults()->fail(QStringLiteral("Volume.startMicGainCalibration"), 3));
    QVERIFY(platform->faults()->fail(QStringLiteral("Volume.setMicGainCalibration"), 4));
    QCOMPARE(manager->startMicGainCalibration(), 3);
    QCOMPARE(manager->setMicGainCalibration(), 4);
    platform->faults()->clear();
    platform->faults()->failFactory(simulator::ObjectKind::Volume);
    int first = 77;
    QCOMPARE(manager->getMicCalibrationGain(&first), 0.0F);
    QCOMPARE(first, 77); // nothing was asked, nothing is written
    platform->faults()->clear();
}

void ZelAudioManagerMicrophoneTest::handsfreeDelayIsStoredAndSent()
{
    start();
    QCOMPARE(manager->setHandsfreeDelay(150), 0);
    QCOMPARE(takeCalls(), handsfreeDelay(150));
    QCOMPARE(stored(QStringLiteral("Volume/MicDelayOrig")).toInt(), 150);
    QCOMPARE(takeManagerLines(), QStringList{QStringLiteral("[DBG] THREAD int ZelAudioManager::setHandsfreeDelay(int) LINE -- 150")});
}

void ZelAudioManagerMicrophoneTest::handsfreeDelayIsStoredThoughThePlatformRefuses()
{
    start();
    QVERIFY(platform->faults()->fail(QStringLiteral("Source.setHandsfreeDelay"), 9));
    QCOMPARE(manager->setHandsfreeDelay(60), 9);
    QCOMPARE(stored(QStringLiteral("Volume/MicDelayOrig")).toInt(), 60);
    platform->faults()->clear();
}

void ZelAudioManagerMicrophoneTest::downlinkDelay()
{
    start();
    platform->chip()->setDownlinkDelay(-321);
    manager->setDownlinkDelayEstimation();
    short delay = 0;
    QCOMPARE(manager->getDownlinkDelayEstimation(&delay), 0);
    QCOMPARE(int(delay), -321);
    QCOMPARE(takeCalls(),
             calls::fresh(QStringLiteral("App.startDownlinkDelayEstimation() -> 0"))
                 + calls::fresh(QStringLiteral("App.getDownlinkDelayEstimation() -> 0, -321")));
    QCOMPARE(takeManagerLines(),
             QStringList({QStringLiteral("[DBG] THREAD void ZelAudioManager::setDownlinkDelayEstimation() LINE --"),
                          QStringLiteral("[DBG] THREAD int ZelAudioManager::getDownlinkDelayEstimation(short int*) LINE --")}));
    platform->faults()->failFactory(simulator::ObjectKind::App);
    QCOMPARE(manager->getDownlinkDelayEstimation(&delay), -1);
    platform->faults()->clear();
}

void ZelAudioManagerMicrophoneTest::inputDestination_data()
{
    QTest::addColumn<int>("tag");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QStringList>("expected");
    const auto sent = [](const char *track, const char *destination, int result) {
        return QStringList(
            {QStringLiteral("Source.create() -> ok"),
             QStringLiteral("Volume.create() -> ok"),
             QStringLiteral("Source.setInputDestination(\"%1\", \"%2\") -> %3").arg(QLatin1String(track), QLatin1String(destination)).arg(result)});
    };
    QTest::newRow("the microphone to the uplink") << int(AudioControl::Uplink) << QByteArray("BT_MIC_Record") << sent("uplink", "BT_MIC_Record", 0);
    QTest::newRow("an input to an unknown name, which the platform refuses") << int(AudioControl::Input1) << QByteArray("nowhere") << sent("input1", "", 102);
    QTest::newRow("a tag without a track sets only the gain") << 8 << QByteArray("BT_MIC_Record") << QStringList();
}

void ZelAudioManagerMicrophoneTest::inputDestination()
{
    QFETCH(int, tag);
    QFETCH(QByteArray, name);
    QFETCH(QStringList, expected);
    start();
    store(QStringLiteral("Volume/AutoMicGainOrig"), 14);
    const QStringList before = storedLines();
    manager->setInputDestination(static_cast<AudioControl::AudioTag>(tag), name.constData());
    QStringList made = takeCalls();
    QCOMPARE(made.mid(0, expected.size()), expected);
    made = made.mid(expected.size());
    if (!expected.isEmpty()) {
        // The order of these two is nobody's business.
        QVERIFY(made.removeOne(QStringLiteral("Source.destroy()")));
        QVERIFY(made.removeOne(QStringLiteral("Volume.destroy()")));
    }
    QCOMPARE(made, micAnalogGain("14", "14"));
    QCOMPARE(storedLines(), before);
    QCOMPARE(takeManagerLines(),
             QStringList{QStringLiteral("[DBG] THREAD void ZelAudioManager::setInputDestination(audio::AudioControl::AudioTag, const char*) LINE -- %1 %2")
                             .arg(tag)
                             .arg(QString::fromLatin1(name))});
}

POLICY_TEST_MAIN(ZelAudioManagerMicrophoneTest)

#include "tst_zelaudiomanager_microphone.moc"

#include "operationtest.h"

#include <QtTest/QtTest>

#include <limits>

using audio::AudioControl;

namespace
{

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

AudioControl::AudioOutChannel outChannel(int number)
{
    return static_cast<AudioControl::AudioOutChannel>(number);
}

OperationTest::Act setDps(bool enable)
{
    return [enable](AudioControl &control) {
        control.setDpsEnable(enable);
        return QVariant();
    };
}

OperationTest::Act setStereo(bool enable)
{
    return [enable](AudioControl &control) {
        control.setStereoEnable(enable);
        return QVariant();
    };
}

OperationTest::Act setGain(float gain)
{
    return [gain](AudioControl &control) {
        control.setDpsUserGain(gain);
        return QVariant();
    };
}

OperationTest::Act applyFilter(int channel, const AudioControl::AudioFilter_t &filter)
{
    return [channel, filter](AudioControl &control) {
        control.setFilter(outChannel(channel), filter);
        return QVariant();
    };
}

OperationTest::Act setDelays(const QList<float> &delays)
{
    return [delays](AudioControl &control) {
        control.setSpeakerDelay(delays);
        return QVariant();
    };
}

OperationTest::Act setDelay(int channel, float delay)
{
    return [channel, delay](AudioControl &control) {
        control.setSpeakerDealy(outChannel(channel), delay);
        return QVariant();
    };
}

} // namespace

/// DPS, stereo, filters and loudspeaker delays: all on the App object that the facade keeps, so none is made or destroyed.
class AudioControlOutputTest : public OperationTest
{
    Q_OBJECT

private Q_SLOTS:
    void setDpsEnable_data();
    void setDpsEnable() { checkRow(); }
    void setStereoEnable_data();
    void setStereoEnable() { checkRow(); }
    void setDpsUserGain_data();
    void setDpsUserGain() { checkRow(); }
    void setFilter_data();
    void setFilter() { checkRow(); }
    void filterRecordByteForByte_data();
    void filterRecordByteForByte();
    void setSpeakerDelay_data();
    void setSpeakerDelay() { checkRow(); }
    void setSpeakerDelayOfAnyOtherLength_data();
    void setSpeakerDelayOfAnyOtherLength();
    void setSpeakerDealy_data();
    void setSpeakerDealy() { checkRow(); }
    void whatWasSetIsInForce();
};

void AudioControlOutputTest::setDpsEnable_data()
{
    addColumns();
    addRow("on", {}, setDps(true), {}, {"App.enableDps() -> 0"_s}, {info("Set Dps successful.")});
    addRow("off", {}, setDps(false), {}, {"App.disableDps() -> 0"_s}, {info("Set Dps successful.")});
    addRow("on, refused", {refused("App.enableDps", 7)}, setDps(true), {}, {"App.enableDps() -> 7"_s}, {error("Set Dps error.ret: 7 enable: true")});
    addRow("off, refused", {refused("App.disableDps", -3)}, setDps(false), {}, {"App.disableDps() -> -3"_s}, {error("Set Dps error.ret: -3 enable: false")});
    addRow("on does not switch off", {refused("App.disableDps", 7)}, setDps(true), {}, {"App.enableDps() -> 0"_s}, {info("Set Dps successful.")});
    addRow("on, without an App", {startedWithoutObjects()}, setDps(true), {}, {}, {error("Set Dps error.ret: -1 enable: true")});
    addRow("off, without an App", {startedWithoutObjects()}, setDps(false), {}, {}, {error("Set Dps error.ret: -1 enable: false")});
}

void AudioControlOutputTest::setStereoEnable_data()
{
    addColumns();
    addRow("on", {}, setStereo(true), {}, {"App.enableStereo() -> 0"_s}, {info("Set Stereo successful.")});
    addRow("off", {}, setStereo(false), {}, {"App.disableStereo() -> 0"_s}, {info("Set Stereo successful.")});
    addRow(
        "on, refused", {refused("App.enableStereo", 7)}, setStereo(true), {}, {"App.enableStereo() -> 7"_s}, {error("Set Stereo error.ret: 7 enable: true")});
    addRow("off, refused",
           {refused("App.disableStereo", -3)},
           setStereo(false),
           {},
           {"App.disableStereo() -> -3"_s},
           {error("Set Stereo error.ret: -3 enable: false")});
    addRow("on, without an App", {startedWithoutObjects()}, setStereo(true), {}, {}, {error("Set Stereo error.ret: -1 enable: true")});
    addRow("off, without an App", {startedWithoutObjects()}, setStereo(false), {}, {}, {error("Set Stereo error.ret: -1 enable: false")});
}

void AudioControlOutputTest::setDpsUserGain_data()
{
    addColumns();
    const QString done = info("Set dps user gain successful.");
    addRow("a gain", {}, setGain(4.5F), {}, {"App.setDpsUserGain(4.5) -> 0"_s}, {done});
    addRow("a negative gain", {}, setGain(-0.25F), {}, {"App.setDpsUserGain(-0.25) -> 0"_s}, {done});
    addRow("far outside every unit: passed on", {}, setGain(1e30F), {}, {"App.setDpsUserGain(1e+30) -> 0"_s}, {done});
    addRow("not a number: passed on, the chip refuses it",
           {},
           setGain(std::numeric_limits<float>::quiet_NaN()),
           {},
           {"App.setDpsUserGain(nan) -> 110"_s},
           {error("Set dps user gain error.ret: 110")});
    addRow("refused", {refused("App.setDpsUserGain", 7)}, setGain(1), {}, {"App.setDpsUserGain(1) -> 7"_s}, {error("Set dps user gain error.ret: 7")});
    addRow("without an App", {startedWithoutObjects()}, setGain(1), {}, {}, {error("Set dps user gain error.ret: -1")});
}

void AudioControlOutputTest::setFilter_data()
{
    addColumns();
    const QString done = info("Set filter successful.");
    // value1, flag, kind, value2, value3, value4
    const auto call = [](const char *channel, const char *rest, int result) {
        return QStringList{QStringLiteral("App.setFilter({channel: %1, %2}) -> %3").arg(QLatin1String(channel), QLatin1String(rest)).arg(result)};
    };
    constexpr const char *plain = "value1: 1, notFlag: 1, value2: 2, kind: 0, value3: 3, value4: 4";
    const AudioControl::AudioFilter_t filter = {1, 0, 0, 2, 3, 4};
    addRow("left front", {}, applyFilter(0, filter), {}, call("1", plain, 0), {done});
    addRow("right front", {}, applyFilter(1, filter), {}, call("2", plain, 0), {done});
    addRow("left rear", {}, applyFilter(2, filter), {}, call("4", plain, 0), {done});
    addRow("right rear", {}, applyFilter(3, filter), {}, call("8", plain, 0), {done});
    addRow("fifth output", {}, applyFilter(4, filter), {}, call("16", plain, 0), {done});
    addRow("sixth output", {}, applyFilter(5, filter), {}, call("32", plain, 0), {done});
    addRow("channel 6 is all outputs", {}, applyFilter(6, filter), {}, call("65535", plain, 0), {done});
    addRow("channel -1 is all outputs", {}, applyFilter(-1, filter), {}, call("65535", plain, 0), {done});
    addRow("the lowest int is all outputs", {}, applyFilter(lowest, filter), {}, call("65535", plain, 0), {done});
    addRow("the highest int is all outputs", {}, applyFilter(highest, filter), {}, call("65535", plain, 0), {done});

    addRow("flag 0 is sent as 1",
           {},
           applyFilter(0, {1, 0, 1, 2, 3, 4}),
           {},
           call("1", "value1: 1, notFlag: 1, value2: 2, kind: 1, value3: 3, value4: 4", 0),
           {done});
    addRow("flag 1 is sent as 0",
           {},
           applyFilter(0, {1, 1, 1, 2, 3, 4}),
           {},
           call("1", "value1: 1, notFlag: 0, value2: 2, kind: 1, value3: 3, value4: 4", 0),
           {done});
    addRow("flag 5 is sent as 0",
           {},
           applyFilter(0, {1, 5, 1, 2, 3, 4}),
           {},
           call("1", "value1: 1, notFlag: 0, value2: 2, kind: 1, value3: 3, value4: 4", 0),
           {done});
    addRow("a flag of high bits only is sent as 0",
           {},
           applyFilter(0, {1, 0x10000, 1, 2, 3, 4}),
           {},
           call("1", "value1: 1, notFlag: 0, value2: 2, kind: 1, value3: 3, value4: 4", 0),
           {done});

    addRow("kind 1", {}, applyFilter(2, {9, 1, 1, 8, 7, 6}), {}, call("4", "value1: 9, notFlag: 0, value2: 8, kind: 1, value3: 7, value4: 6", 0), {done});
    addRow("kind 2 is sent as 0, with fourth value 0",
           {},
           applyFilter(2, {9, 1, 2, 8, 7, 6}),
           {},
           call("4", "value1: 9, notFlag: 0, value2: 8, kind: 0, value3: 7, value4: 0", 0),
           {done});
    addRow("kind 65537 does not pass for 1",
           {},
           applyFilter(2, {9, 1, 65537, 8, 7, 6}),
           {},
           call("4", "value1: 9, notFlag: 0, value2: 8, kind: 0, value3: 7, value4: 0", 0),
           {done});
    addRow("the highest kind is sent as 0, with fourth value 0",
           {},
           applyFilter(2, {9, 1, 0xFFFFFFFF, 8, 7, 6}),
           {},
           call("4", "value1: 9, notFlag: 0, value2: 8, kind: 0, value3: 7, value4: 0", 0),
           {done});
    addRow("the highest values",
           {},
           applyFilter(0, {65535, 0, 1, 65534, 65533, 65532}),
           {},
           call("1", "value1: 65535, notFlag: 1, value2: 65534, kind: 1, value3: 65533, value4: 65532", 0),
           {done});

    addRow("refused", {refused("App.setFilter", 7)}, applyFilter(0, filter), {}, call("1", plain, 7), {error("Set filter error.ret: 7")});
    addRow("without an App", {startedWithoutObjects()}, applyFilter(0, filter), {}, {}, {error("Set filter error.ret: -1")});
}

void AudioControlOutputTest::filterRecordByteForByte_data()
{
    QTest::addColumn<quint32>("flag");
    QTest::addColumn<quint32>("kind");
    QTest::addColumn<QByteArray>("bytes");
    //                                                      channel  value1 !flag value2 kind value3 value4
    QTest::newRow("flag 0, kind 0") << 0U << 0U << QByteArray("04000000 0201 0100 0403 0000 0605 0807");
    QTest::newRow("flag 5, kind 0") << 5U << 0U << QByteArray("04000000 0201 0000 0403 0000 0605 0807");
    QTest::newRow("flag 0, kind 1") << 0U << 1U << QByteArray("04000000 0201 0100 0403 0100 0605 0807");
    QTest::newRow("flag 1, kind 2") << 1U << 2U << QByteArray("04000000 0201 0000 0403 0000 0605 0000");
}

void AudioControlOutputTest::filterRecordByteForByte()
{
    QFETCH(quint32, flag);
    QFETCH(quint32, kind);
    QFETCH(QByteArray, bytes);
    control->setFilter(AudioControl::LeftRear, {0x0102, flag, kind, 0x0304, 0x0506, 0x0708});
    const auto entries = platform->journal()->entriesOf(QStringLiteral("App.setFilter"));
    QCOMPARE(entries.size(), 1);
    QCOMPARE(entries.constFirst().record.toHex(), bytes.replace(" ", ""));
}

void AudioControlOutputTest::setSpeakerDelay_data()
{
    addColumns();
    const QList<float> delays = {0, 1.5F, 2, 3.25F, 4, 5};
    const auto calls = [](const QVector<int> &results) {
        return QStringList{
            QStringLiteral("App.setSpeakerDelay(1, 0) -> %1").arg(results.at(0)),
            QStringLiteral("App.setSpeakerDelay(2, 1.5) -> %1").arg(results.at(1)),
            QStringLiteral("App.setSpeakerDelay(4, 2) -> %1").arg(results.at(2)),
            QStringLiteral("App.setSpeakerDelay(8, 3.25) -> %1").arg(results.at(3)),
            QStringLiteral("App.setSpeakerDelay(16, 4) -> %1").arg(results.at(4)),
            QStringLiteral("App.setSpeakerDelay(32, 5) -> %1").arg(results.at(5)),
        };
    };
    constexpr const char *operation = "App.setSpeakerDelay";
    addRow("six delays, no line on success", {}, setDelays(delays), {}, calls({0, 0, 0, 0, 0, 0}), {});
    addRow("only the first fails", {refusedOnce(operation, 7, 1)}, setDelays(delays), {}, calls({7, 0, 0, 0, 0, 0}), {error("set speaker delay error.ret: 7")});
    addRow(
        "only the second fails", {refusedOnce(operation, 7, 2)}, setDelays(delays), {}, calls({0, 7, 0, 0, 0, 0}), {error("set speaker delay error.ret: 7")});
    addRow("only the third fails", {refusedOnce(operation, 7, 3)}, setDelays(delays), {}, calls({0, 0, 7, 0, 0, 0}), {error("set speaker delay error.ret: 7")});
    addRow(
        "only the fourth fails", {refusedOnce(operation, 9, 4)}, setDelays(delays), {}, calls({0, 0, 0, 9, 0, 0}), {error("set speaker delay error.ret: 9")});
    addRow("only the fifth fails", {refusedOnce(operation, 7, 5)}, setDelays(delays), {}, calls({0, 0, 0, 0, 7, 0}), {error("set speaker delay error.ret: 7")});
    addRow("only the sixth fails", {refusedOnce(operation, 7, 6)}, setDelays(delays), {}, calls({0, 0, 0, 0, 0, 7}), {error("set speaker delay error.ret: 7")});
    addRow("two fail: their codes combined bit by bit",
           {refusedOnce(operation, 5, 2), refusedOnce(operation, 10, 6)},
           setDelays(delays),
           {},
           calls({0, 5, 0, 0, 0, 10}),
           {error("set speaker delay error.ret: 15")});
    addRow("two fail with bits in common",
           {refusedOnce(operation, 6, 1), refusedOnce(operation, 3, 3)},
           setDelays(delays),
           {},
           calls({6, 0, 3, 0, 0, 0}),
           {error("set speaker delay error.ret: 7")});
    addRow("all fail, one line", {refused(operation, 7)}, setDelays(delays), {}, calls({7, 7, 7, 7, 7, 7}), {error("set speaker delay error.ret: 7")});
    addRow("without an App", {startedWithoutObjects()}, setDelays(delays), {}, {}, {error("set speaker delay error.ret: -1")});
    addRow("five values: nothing, silently", {}, setDelays({1, 2, 3, 4, 5}), {}, {}, {});
    addRow("seven values: nothing, silently", {}, setDelays({1, 2, 3, 4, 5, 6, 7}), {}, {}, {});
    addRow("five values without an App: nothing, silently", {startedWithoutObjects()}, setDelays({1, 2, 3, 4, 5}), {}, {}, {});
}

void AudioControlOutputTest::setSpeakerDelayOfAnyOtherLength_data()
{
    QTest::addColumn<int>("count");
    for (int count = 0; count <= 20; ++count) {
        if (count != 6)
            QTest::addRow("%d values", count) << count;
    }
}

void AudioControlOutputTest::setSpeakerDelayOfAnyOtherLength()
{
    QFETCH(int, count);
    QList<float> delays;
    for (int i = 0; i < count; ++i)
        delays.append(1);
    control->setSpeakerDelay(delays);
    QCOMPARE(takeCallsAndLifetimes(), QStringList());
    QCOMPARE(log->takeTexts(), QStringList());
}

void AudioControlOutputTest::setSpeakerDealy_data()
{
    addColumns();
    addRow("left front, no line on success", {}, setDelay(0, 1.5F), {}, {"App.setSpeakerDelay(1, 1.5) -> 0"_s}, {});
    addRow("right front", {}, setDelay(1, 0), {}, {"App.setSpeakerDelay(2, 0) -> 0"_s}, {});
    addRow("left rear", {}, setDelay(2, 1), {}, {"App.setSpeakerDelay(4, 1) -> 0"_s}, {});
    addRow("right rear", {}, setDelay(3, 1), {}, {"App.setSpeakerDelay(8, 1) -> 0"_s}, {});
    addRow("fifth output", {}, setDelay(4, 1), {}, {"App.setSpeakerDelay(16, 1) -> 0"_s}, {});
    addRow("sixth output", {}, setDelay(5, 1), {}, {"App.setSpeakerDelay(32, 1) -> 0"_s}, {});
    addRow("channel 6 is all outputs", {}, setDelay(6, 1), {}, {"App.setSpeakerDelay(65535, 1) -> 0"_s}, {});
    addRow("channel 7 is all outputs", {}, setDelay(7, 1), {}, {"App.setSpeakerDelay(65535, 1) -> 0"_s}, {});
    addRow("channel -1 is all outputs", {}, setDelay(-1, 1), {}, {"App.setSpeakerDelay(65535, 1) -> 0"_s}, {});
    addRow("the lowest int is all outputs", {}, setDelay(lowest, 1), {}, {"App.setSpeakerDelay(65535, 1) -> 0"_s}, {});
    addRow("the highest int is all outputs", {}, setDelay(highest, 1), {}, {"App.setSpeakerDelay(65535, 1) -> 0"_s}, {});
    addRow("a negative delay: passed on, the chip refuses it",
           {},
           setDelay(0, -1),
           {},
           {"App.setSpeakerDelay(1, -1) -> 114"_s},
           {error("set speaker delay error.ret: 114")});
    addRow("refused", {refused("App.setSpeakerDelay", 7)}, setDelay(0, 1), {}, {"App.setSpeakerDelay(1, 1) -> 7"_s}, {error("set speaker delay error.ret: 7")});
    addRow("without an App", {startedWithoutObjects()}, setDelay(0, 1), {}, {}, {error("set speaker delay error.ret: -1")});
}

void AudioControlOutputTest::whatWasSetIsInForce()
{
    const simulator::AudioChip *const chip = platform->chip();
    control->setDpsEnable(true);
    control->setStereoEnable(true);
    control->setDpsUserGain(2.5F);
    QVERIFY(chip->isDpsEnabled());
    QVERIFY(chip->isStereoEnabled());
    QCOMPARE(chip->dpsUserGain(), 2.5);
    control->setDpsEnable(false);
    QVERIFY(!chip->isDpsEnabled());
    QVERIFY(chip->isStereoEnabled());
    control->setStereoEnable(false);
    QVERIFY(!chip->isStereoEnabled());

    control->setSpeakerDelay({1, 2, 3, 4, 5, 6});
    for (int channel = 0; channel < 6; ++channel)
        QCOMPARE(chip->speakerDelay(1U << channel), channel + 1.0);
    control->setSpeakerDealy(AudioControl::RightRear, 9);
    QCOMPARE(chip->speakerDelay(8), 9.0);
    QCOMPARE(chip->speakerDelay(4), 3.0);

    control->setFilter(AudioControl::RightFront, {1, 0, 1, 2, 3, 4});
    QVERIFY(chip->filter(2).has_value());
    QVERIFY(!chip->filter(1).has_value());
}

QTEST_GUILESS_MAIN(AudioControlOutputTest)

#include "tst_audiocontrol_output.moc"

#include "equalizeroperations.h"
#include "expectedequalizer.h"
#include "operationtest.h"

#include <QtTest/QtTest>

#include <cmath>
#include <limits>

using audio::AudioControl;
using namespace expected;

namespace
{

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();
constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

OperationTest::Act applyMode(int mode)
{
    return [mode](AudioControl &control) {
        control.setEqMode(static_cast<AudioControl::EqMode>(mode));
        return QVariant();
    };
}

OperationTest::Act switchLoudness(bool on)
{
    return [on](AudioControl &control) {
        control.setLoudnessSwitch(on);
        return QVariant();
    };
}

} // namespace

/// Equalizer presets, free curves and loudness. Presets and loudness use the App that the facade keeps, free curves one of their own.
class AudioControlEqualizerTest : public OperationTest
{
    Q_OBJECT

private Q_SLOTS:
    void setEqMode_data();
    void setEqMode() { checkRow(); }
    void getEqGain_data();
    void getEqGain();
    void getSubGain_data();
    void getSubGain();
    void setEqGain_data();
    void setEqGain() { checkRow(); }
    void setEqGain10_data();
    void setEqGain10() { checkRow(); }
    void setEqValue_data();
    void setEqValue() { checkRow(); }
    void listsOfEveryLength_data();
    void listsOfEveryLength();
    void oneGainOutsideInEveryBand_data();
    void oneGainOutsideInEveryBand();
    void getEqInitValue_data();
    void getEqInitValue();
    void setLoudnessSwitch_data();
    void setLoudnessSwitch() { checkRow(); }

private:
    static QStringList shortLines(const char *heading, const QList<quint16> &frequencies);
    /// Rows that the three free setters share.
    static void addPlatformRows(const Act &act, const std::function<QString(int)> &call);
};

QStringList AudioControlEqualizerTest::shortLines(const char *heading, const QList<quint16> &frequencies)
{
    QStringList lines = {info("set eq channel 65535"), info(heading)};
    for (const quint16 frequency : frequencies)
        lines.append(info(QString::number(frequency)));
    return lines;
}

// Presets -------------------------------------------------------------------------------------------------------------------

void AudioControlEqualizerTest::setEqMode_data()
{
    addColumns();
    for (int mode = 0; mode <= 6; ++mode) {
        addRow(qPrintable(QStringLiteral("mode %1").arg(mode)),
               {},
               applyMode(mode),
               {},
               {shortCall(shortCodes, modeGains.at(mode), 0)},
               shortLines("Fc:", shortCodes));
    }
    const auto unknown
        = [](const char *name, int mode) { addRow(name, {}, applyMode(mode), {}, {}, {error(QStringLiteral("input eq mode error %1").arg(mode))}); };
    unknown("mode 7", 7);
    unknown("mode 256, whose low byte is a mode", 256);
    unknown("mode -1", -1);
    unknown("the lowest int", lowest);
    unknown("the highest int", highest);
    addRow("refused", {refused("App.setEqParameter", 7)}, applyMode(2), {}, {shortCall(shortCodes, modeGains.at(2), 7)}, {error("set eq error 7")});
    addRow("without an App", {startedWithoutObjects()}, applyMode(2), {}, {}, {error("set eq error -1")});
    addRow("mode 7 without an App", {startedWithoutObjects()}, applyMode(7), {}, {}, {error("input eq mode error 7")});
}

void AudioControlEqualizerTest::getEqGain_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QList<int>>("gains");
    QTest::addColumn<QString>("line");
    for (int mode = 0; mode <= 6; ++mode) {
        QString shown = listText(wholeModeGains.at(mode));
        shown = QLatin1Char('(') + shown.mid(1, shown.size() - 2) + QLatin1Char(')');
        QTest::addRow("mode %d, fractions cut off", mode) << mode << wholeModeGains.at(mode) << info(QStringLiteral("%1 eq val is: %2").arg(mode).arg(shown));
    }
    QTest::newRow("mode 0, as it is logged") << 0 << wholeModeGains.at(0) << info("0 eq val is: (4, 4, 3, 3, 3, 2, 2, 0, -4, -3, 0, 1, 2, 2, 3, 3)");
    QTest::newRow("mode 7") << 7 << QList<int>() << info("7 eq val is: ()");
    QTest::newRow("mode -1") << -1 << QList<int>() << info("-1 eq val is: ()");
    QTest::newRow("the lowest int") << lowest << QList<int>() << info("-2147483648 eq val is: ()");
    QTest::newRow("the highest int") << highest << QList<int>() << info("2147483647 eq val is: ()");
}

void AudioControlEqualizerTest::getEqGain()
{
    QFETCH(int, mode);
    QFETCH(QList<int>, gains);
    QFETCH(QString, line);
    QCOMPARE(control->getEqGain(static_cast<AudioControl::EqMode>(mode)), gains);
    QCOMPARE(log->takeTexts(), QStringList{line});
    QCOMPARE(takeCallsAndLifetimes(), QStringList());
}

void AudioControlEqualizerTest::getSubGain_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QList<int>>("gains");
    QTest::newRow("mode 0") << 0 << QList<int>{0, 0, 7, -3, 3, 6, -2, 4, 0};
    QTest::newRow("mode 1") << 1 << QList<int>{0, 0, 0, -3, 3, 0, -2, 0, 0};
    QTest::newRow("mode 2") << 2 << QList<int>();
    QTest::newRow("mode -1") << -1 << QList<int>();
    QTest::newRow("the lowest int") << lowest << QList<int>();
    QTest::newRow("the highest int") << highest << QList<int>();
}

void AudioControlEqualizerTest::getSubGain()
{
    QFETCH(int, mode);
    QFETCH(QList<int>, gains);
    QCOMPARE(control->getSubGain(static_cast<AudioControl::SubMode>(mode)), gains);
    QCOMPARE(log->takeTexts(), QStringList());
    QCOMPARE(takeCallsAndLifetimes(), QStringList());
}

// Free curves ---------------------------------------------------------------------------------------------------------------

void AudioControlEqualizerTest::addPlatformRows(const Act &act, const std::function<QString(int)> &call)
{
    addRow("refused", {refused("App.setExtEqParameter", 7)}, act, {}, fresh("App", {call(7)}), {error("set eq error 7")});
    addRow("no App can be made", {noneMade("App")}, act, {}, {notCreated("App")}, {error("Create App failed.")});
    addRow("the long-lived App does not matter", {startedWithoutObjects()}, act, {}, fresh("App", {call(0)}), {info("set eq channel 65535")});
}

void AudioControlEqualizerTest::setEqGain_data()
{
    addColumns();
    const QStringList done = {info("set eq channel 65535")};
    const auto call = [](const QList<float> &gains, int result = 0) { return extendedCall(sixteenHertz, sixteenQ, gains, result); };
    const auto accepted = [&](const char *name, const QList<float> &gains) { addRow(name, {}, applyGains(gains), {}, fresh("App", {call(gains)}), done); };
    accepted("a slope", slopingGains);
    accepted("flat", flat);
    accepted("12 in every band", repeated(12.0F, 16));
    accepted("-12 in every band", repeated(-12.0F, 16));
    for (int mode = 0; mode < 6; ++mode)
        accepted(qPrintable(QStringLiteral("the gains of mode %1").arg(mode)), modeGains.at(mode));

    const auto outside = [](const char *name, const QList<float> &gains, const char *value) {
        addRow(name, {}, applyGains(gains), {}, {}, {error(QLatin1String("input gain val err ") + QLatin1String(value))});
    };
    outside("12.5 in the last band", oneBand(15, 12.5F, 16), "12.5");
    outside("-12.5 in the first band", oneBand(0, -12.5F, 16), "-12.5");
    outside("just above 12", oneBand(3, std::nextafter(12.0F, 13.0F), 16), "12");
    outside("just below -12", oneBand(3, std::nextafter(-12.0F, -13.0F), 16), "-12");
    outside("not a number", oneBand(7, notANumber, 16), "nan");
    outside("infinite", oneBand(7, infinity, 16), "inf");
    outside("infinitely negative", oneBand(7, -infinity, 16), "-inf");
    outside("two outside: one line, of the first", QList<float>{0, 13, 0, 14, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, "13");
    addPlatformRows(applyGains(slopingGains), [call](int result) { return call(slopingGains, result); });
}

void AudioControlEqualizerTest::setEqGain10_data()
{
    addColumns();
    const QStringList done = {info("set eq channel 65535")};
    const auto call = [](const QList<int> &gains, int result = 0) { return extendedCall(tenHertz, tenQ, widened(gains), result); };
    const auto accepted = [&](const char *name, const QList<int> &gains) { addRow(name, {}, applyTenGains(gains), {}, fresh("App", {call(gains)}), done); };
    accepted("a slope, and six parked bands of gain 0", slopingTenGains);
    accepted("12 in every band, and six parked bands of gain 0", repeated(12, 10));
    accepted("-12 in every band, and six parked bands of gain 0", repeated(-12, 10));

    const auto outside = [](const char *name, const QList<int> &gains, int value) {
        addRow(name, {}, applyTenGains(gains), {}, {}, {error(QStringLiteral("input gain val err %1").arg(value))});
    };
    outside("13 in the last band", oneBand(9, 13, 10), 13);
    outside("-13 in the first band", oneBand(0, -13, 10), -13);
    outside("the lowest int", oneBand(4, lowest, 10), lowest);
    outside("the highest int", oneBand(4, highest, 10), highest);
    outside("two outside: one line, of the first", {0, 0, -20, 0, 20, 0, 0, 0, 0, 0}, -20);
    addRow("nine values: the line names 16, not 10", {}, applyTenGains(repeated(0, 9)), {}, {}, {error("input frequency count err 9 != 16")});
    addRow("sixteen values are refused with a line that wants 16", {}, applyTenGains(repeated(0, 16)), {}, {}, {error("input frequency count err 16 != 16")});
    addPlatformRows(applyTenGains(slopingTenGains), [call](int result) { return call(slopingTenGains, result); });
}

void AudioControlEqualizerTest::setEqValue_data()
{
    addColumns();
    const QStringList done = {info("set eq channel 65535")};
    const auto call = [](const QList<int> &gains, int result = 0) { return extendedCall(sixteenHertz, sixteenQ, widened(gains), result); };
    const auto accepted = [&](const char *name, const QList<int> &gains) { addRow(name, {}, applyValues(gains), {}, fresh("App", {call(gains)}), done); };
    accepted("-12 to 12 on bands from 50 to 20000 Hz", slopingWholeGains);
    accepted("12 in every band", repeated(12, 16));
    accepted("-12 in every band", repeated(-12, 16));

    const auto outside = [](const char *name, const QList<int> &gains, int value) {
        addRow(name, {}, applyValues(gains), {}, {}, {error(QStringLiteral("input gain val err %1").arg(value))});
    };
    outside("13 in the last band", oneBand(15, 13, 16), 13);
    outside("-13 in the first band", oneBand(0, -13, 16), -13);
    outside("the lowest int", oneBand(4, lowest, 16), lowest);
    outside("the highest int", oneBand(4, highest, 16), highest);
    addRow("ten values", {}, applyValues(repeated(0, 10)), {}, {}, {error("input frequency count err 10 != 16")});
    addPlatformRows(applyValues(slopingWholeGains), [call](int result) { return call(slopingWholeGains, result); });
}

void AudioControlEqualizerTest::listsOfEveryLength_data()
{
    QTest::addColumn<int>("count");
    for (int count = 0; count <= 20; ++count)
        QTest::addRow("%d", count) << count;
}

void AudioControlEqualizerTest::listsOfEveryLength()
{
    QFETCH(int, count);
    const QStringList refusal = {error(QStringLiteral("input frequency count err %1 != 16").arg(count))};
    const QStringList success = {info("set eq channel 65535")};

    control->setEqGain(repeated(1.0F, count));
    QCOMPARE(log->takeTexts(), count == 16 ? success : refusal);
    QCOMPARE(takeCalls().size(), count == 16 ? 1 : 0);
    control->setEqGain10(repeated(1, count));
    QCOMPARE(log->takeTexts(), count == 10 ? success : refusal);
    QCOMPARE(takeCalls().size(), count == 10 ? 1 : 0);
    control->setEqValue(repeated(1, count));
    QCOMPARE(log->takeTexts(), count == 16 ? success : refusal);
    QCOMPARE(takeCalls().size(), count == 16 ? 1 : 0);
    // The count is looked at before the gains.
    control->setEqGain(repeated(notANumber, count));
    QCOMPARE(log->takeTexts(), count == 16 ? QStringList{error("input gain val err nan")} : refusal);
    QCOMPARE(takeCallsAndLifetimes(), QStringList());
}

void AudioControlEqualizerTest::oneGainOutsideInEveryBand_data()
{
    QTest::addColumn<int>("band");
    for (int band = 0; band < 16; ++band)
        QTest::addRow("band %d", band) << band;
}

void AudioControlEqualizerTest::oneGainOutsideInEveryBand()
{
    QFETCH(int, band);
    const QStringList refusal = {error("input gain val err 13")};
    control->setEqGain(oneBand(band, 13.0F, 16));
    QCOMPARE(log->takeTexts(), refusal);
    control->setEqValue(oneBand(band, 13, 16));
    QCOMPARE(log->takeTexts(), refusal);
    if (band < 10) {
        control->setEqGain10(oneBand(band, 13, 10));
        QCOMPARE(log->takeTexts(), refusal);
    }
    QCOMPARE(takeCallsAndLifetimes(), QStringList());
}

void AudioControlEqualizerTest::getEqInitValue_data()
{
    QTest::addColumn<QList<int>>("before");
    QTest::newRow("an empty list gets sixteen") << QList<int>();
    QTest::newRow("a list of two gets eighteen") << QList<int>{-7, 7};
    QTest::newRow("a list that has them gets them again") << QList<int>{50, 80, 125, 200, 315, 500, 630, 800, 1000, 2000, 3100, 4000, 5000, 6300, 16000, 20000};
}

void AudioControlEqualizerTest::getEqInitValue()
{
    QFETCH(QList<int>, before);
    QList<int> expected = before;
    for (const quint16 frequency : sixteenHertz)
        expected.append(frequency);
    QStringList lines;
    for (const int frequency : qAsConst(expected))
        lines.append(info(QStringLiteral("list= %1").arg(frequency)));

    QList<int> out = before;
    control->getEqInitValue(out);
    QCOMPARE(out, expected);
    QCOMPARE(log->takeTexts(), lines);
    QCOMPARE(takeCallsAndLifetimes(), QStringList());
}

// Loudness ------------------------------------------------------------------------------------------------------------------

void AudioControlEqualizerTest::setLoudnessSwitch_data()
{
    addColumns();
    const QString line = info("setLoudness");
    addRow("on", {}, switchLoudness(true), {}, {"App.setLoudness({on: 1, onAgain: 1, level: 800}) -> 0"_s}, {line});
    addRow("off", {}, switchLoudness(false), {}, {"App.setLoudness({on: 0, onAgain: 0, level: 800}) -> 0"_s}, {line});
    addRow("refused",
           {refused("App.setLoudness", 7)},
           switchLoudness(true),
           {},
           {"App.setLoudness({on: 1, onAgain: 1, level: 800}) -> 7"_s},
           {line, error("set Loudness error 7")});
    addRow("without an App", {startedWithoutObjects()}, switchLoudness(true), {}, {}, {line, error("set Loudness error -1")});
}

QTEST_GUILESS_MAIN(AudioControlEqualizerTest)

#include "tst_audiocontrol_equalizer.moc"

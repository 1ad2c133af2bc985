#include "operationtest.h"

#include <QtTest/QtTest>

#include <array>
#include <limits>

using audio::AudioControl;

namespace
{

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

/// Percent of full level by steps from the centre, the same for both axes.
constexpr std::array<int, 16> percent = {100, 93, 87, 80, 73, 67, 60, 53, 47, 40, 33, 27, 20, 13, 7, 0};

constexpr const char *operation = "Volume.setFadeBalance";

/// Percent at the four loudspeakers.
struct Gains
{
    int leftFront;
    int rightFront;
    int leftRear;
    int rightRear;
};

/// What each loudspeaker gets: the losses of both axes, added up, down to silence. Balance as the public operation has it.
Gains expectedGains(int fade, int balance)
{
    const auto loss = [](int steps) { return steps > 0 ? 100 - percent[static_cast<std::size_t>(steps)] : 0; };
    const int left = loss(-balance); // the sound moves to the right
    const int right = loss(balance);
    const int front = loss(-fade); // the sound moves to the rear
    const int rear = loss(fade);
    const auto rest = [](int lost) { return std::max(0, 100 - lost); };
    return {rest(left + front), rest(right + front), rest(left + rear), rest(right + rear)};
}

QStringList callsOf(const Gains &gains, const std::array<int, 4> &results = {})
{
    const auto call = [](int channel, int gain, int result) {
        return QStringLiteral("Volume.setFadeBalance({channel: %1, gain: %2}) -> %3").arg(channel).arg(gain).arg(result);
    };
    return {
        call(1, gains.leftFront, results[0]),
        call(2, gains.rightFront, results[1]),
        call(4, gains.leftRear, results[2]),
        call(8, gains.rightRear, results[3]),
    };
}

OperationTest::Act place(int fade, int balance)
{
    return [fade, balance](AudioControl &control) {
        control.setFadeBalance(fade, balance);
        return QVariant();
    };
}

} // namespace

/// Fade and balance, and the numbers of the output channels. All on the Volume object that the facade keeps.
class AudioControlFadeBalanceTest : public OperationTest
{
    Q_OBJECT

private Q_SLOTS:
    void setFadeBalance_data();
    void setFadeBalance() { checkRow(); }
    void outOfRange_data();
    void outOfRange() { checkRow(); }
    void failures_data();
    void failures() { checkRow(); }
    void everyPosition();
    void recordsByteForByte();
    void innerOperationCountsBalanceTheOtherWay();
    void innerOperationOutOfRange_data();
    void innerOperationOutOfRange();
    void getGainVal_data();
    void getGainVal();
    void getSPAudioChannel_data();
    void getSPAudioChannel();

private:
    /// Lines of a position as the inner operation sees it, errors between.
    static QStringList linesOf(int fade, int innerBalance, const Gains &gains, const QStringList &errors = {});
};

QStringList AudioControlFadeBalanceTest::linesOf(int fade, int innerBalance, const Gains &gains, const QStringList &errors)
{
    const auto percentAt = [](int steps) { return percent[static_cast<std::size_t>(qAbs(steps))]; };
    const QStringList before = {
        info(QStringLiteral("setFadeBalance %1 %2").arg(innerBalance).arg(fade)), // in this order
        info(QStringLiteral("gainX %1 gainY %2").arg(percentAt(innerBalance)).arg(percentAt(fade))),
    };
    const QStringList after = {
        info(QStringLiteral("LFChannel 1 %1").arg(gains.leftFront)),
        info(QStringLiteral("RFChannel 2 %1").arg(gains.rightFront)),
        info(QStringLiteral("LSChannel 4 %1").arg(gains.leftRear)),
        info(QStringLiteral("RSChannel 8 %1").arg(gains.rightRear)),
    };
    return before + errors + after;
}

void AudioControlFadeBalanceTest::setFadeBalance_data()
{
    addColumns();
    const auto row = [](const char *name, int fade, int balance, const Gains &gains) {
        addRow(name, {}, place(fade, balance), {}, callsOf(gains), linesOf(fade, -balance, gains));
    };
    row("the centre: 100 everywhere", 0, 0, {100, 100, 100, 100});
    row("5 to the left lowers the right side", 0, 5, {100, 67, 100, 67});
    row("5 to the right lowers the left side", 0, -5, {67, 100, 67, 100});
    row("5 to the front lowers the rear", 5, 0, {100, 100, 67, 67});
    row("5 to the rear lowers the front", -5, 0, {67, 67, 100, 100});
    row("full front", 15, 0, {100, 100, 0, 0});
    row("full rear", -15, 0, {0, 0, 100, 100});
    row("full left", 0, 15, {100, 0, 100, 0});
    row("full right", 0, -15, {0, 100, 0, 100});
    row("the right rear corner", -15, -15, {0, 0, 0, 100});
    row("the left rear corner", -15, 15, {0, 0, 100, 0});
    row("the right front corner", 15, -15, {0, 100, 0, 0});
    row("the left front corner", 15, 15, {100, 0, 0, 0});
    row("both lower one channel: the losses add up", 3, 4, {100, 73, 80, 53});
    row("both lower one channel by half: silence, not below", 8, 8, {100, 47, 47, 0});
    row("what adds up to 106 leaves silence", 8, 9, {100, 40, 47, 0});
    row("one step each", 1, -1, {93, 100, 86, 93});
}

void AudioControlFadeBalanceTest::outOfRange_data()
{
    addColumns();
    const auto row = [](const char *name, int fade, int balance, const char *started, const char *refusal) {
        addRow(name, {}, place(fade, balance), {}, {}, {info(started), error(refusal)});
    };
    // The lines name balance as the inner operation counts it.
    row("fade 16", 16, 0, "setFadeBalance 0 16", "input fade 16 balance 0 err");
    row("fade -16", -16, 0, "setFadeBalance 0 -16", "input fade -16 balance 0 err");
    row("balance 16", 0, 16, "setFadeBalance -16 0", "input fade 0 balance -16 err");
    row("balance -16", 0, -16, "setFadeBalance 16 0", "input fade 0 balance 16 err");
    row("both 16", 16, 16, "setFadeBalance -16 16", "input fade 16 balance -16 err");
    row("fade 16 with balance in range", 16, 15, "setFadeBalance -15 16", "input fade 16 balance -15 err");
    row("the lowest int as fade", lowest, 0, "setFadeBalance 0 -2147483648", "input fade -2147483648 balance 0 err");
    row("the highest int as fade", highest, 0, "setFadeBalance 0 2147483647", "input fade 2147483647 balance 0 err");
    row("the lowest int as balance, which has no negative", 0, lowest, "setFadeBalance -2147483648 0", "input fade 0 balance -2147483648 err");
    row("the highest int as balance", 0, highest, "setFadeBalance -2147483647 0", "input fade 0 balance -2147483647 err");
    row("the lowest int as both", lowest, lowest, "setFadeBalance -2147483648 -2147483648", "input fade -2147483648 balance -2147483648 err");
}

void AudioControlFadeBalanceTest::failures_data()
{
    addColumns();
    const Gains gains = {100, 80, 67, 47};
    const auto row = [&gains](const char *name, const QVector<Given> &given, const std::array<int, 4> &results, const QStringList &errors) {
        addRow(name, given, place(5, 3), {}, callsOf(gains, results), linesOf(5, -3, gains, errors));
    };
    row("only the left front fails", {refusedOnce(operation, 7, 1)}, {7, 0, 0, 0}, {error("set LFChannel gain err 7")});
    row("only the right front fails", {refusedOnce(operation, 7, 2)}, {0, 7, 0, 0}, {error("set RFChannel gain err 7")});
    row("only the left rear fails", {refusedOnce(operation, 7, 3)}, {0, 0, 7, 0}, {error("set LSChannel gain err 7")});
    row("only the right rear fails", {refusedOnce(operation, -7, 4)}, {0, 0, 0, -7}, {error("set RSChannel gain err -7")});
    row("the second and the fourth fail",
        {refusedOnce(operation, 5, 2), refusedOnce(operation, 6, 4)},
        {0, 5, 0, 6},
        {error("set RFChannel gain err 5"), error("set RSChannel gain err 6")});
    row("all fail",
        {refused(operation, 9)},
        {9, 9, 9, 9},
        {error("set LFChannel gain err 9"), error("set RFChannel gain err 9"), error("set LSChannel gain err 9"), error("set RSChannel gain err 9")});
    addRow(
        "without a Volume",
        {startedWithoutObjects()},
        place(5, 3),
        {},
        {},
        linesOf(
            5,
            -3,
            gains,
            {error("set LFChannel gain err -1"), error("set RFChannel gain err -1"), error("set LSChannel gain err -1"), error("set RSChannel gain err -1")}));
    addRow(
        "out of range without a Volume", {startedWithoutObjects()}, place(16, 0), {}, {}, {info("setFadeBalance 0 16"), error("input fade 16 balance 0 err")});
}

void AudioControlFadeBalanceTest::everyPosition()
{
    for (int fade = -15; fade <= 15; ++fade) {
        for (int balance = -15; balance <= 15; ++balance) {
            const Gains gains = expectedGains(fade, balance);
            control->setFadeBalance(fade, balance);
            QCOMPARE(takeCallsAndLifetimes(), callsOf(gains));
            QCOMPARE(log->takeTexts(), linesOf(fade, -balance, gains));
            QCOMPARE(platform->chip()->channelGain(1), gains.leftFront);
            QCOMPARE(platform->chip()->channelGain(2), gains.rightFront);
            QCOMPARE(platform->chip()->channelGain(4), gains.leftRear);
            QCOMPARE(platform->chip()->channelGain(8), gains.rightRear);
        }
    }
}

void AudioControlFadeBalanceTest::recordsByteForByte()
{
    control->setFadeBalance(5, 3);
    QList<QByteArray> records;
    const auto entries = platform->journal()->entriesOf(QString::fromLatin1(operation));
    for (const simulator::JournalEntry &entry : entries)
        records.append(entry.record.toHex(' '));
    // channel, gain, three reserved bytes
    const QList<QByteArray> expected = {
        "01 00 00 00 64 00 00 00",
        "02 00 00 00 50 00 00 00",
        "04 00 00 00 43 00 00 00",
        "08 00 00 00 2f 00 00 00",
    };
    QCOMPARE(records, expected);
}

void AudioControlFadeBalanceTest::innerOperationCountsBalanceTheOtherWay()
{
    inner->setFadeBalance(3, 5); // lowers the left side
    const Gains gains = {67, 100, 47, 80};
    QCOMPARE(takeCallsAndLifetimes(), callsOf(gains));
    QCOMPARE(log->takeTexts(), linesOf(3, 5, gains));
}

void AudioControlFadeBalanceTest::innerOperationOutOfRange_data()
{
    QTest::addColumn<int>("fade");
    QTest::addColumn<int>("balance");
    QTest::newRow("fade 16") << 16 << 0;
    QTest::newRow("balance -16") << 0 << -16;
    QTest::newRow("the lowest int as fade") << lowest << 0;
    QTest::newRow("the lowest int as balance") << 0 << lowest;
    QTest::newRow("the highest ints") << highest << highest;
}

void AudioControlFadeBalanceTest::innerOperationOutOfRange()
{
    QFETCH(int, fade);
    QFETCH(int, balance);
    inner->setFadeBalance(fade, balance);
    QCOMPARE(takeCallsAndLifetimes(), QStringList());
    const QStringList lines = {
        info(QStringLiteral("setFadeBalance %1 %2").arg(balance).arg(fade)),
        error(QStringLiteral("input fade %1 balance %2 err").arg(fade).arg(balance)),
    };
    QCOMPARE(log->takeTexts(), lines);
}

void AudioControlFadeBalanceTest::getGainVal_data()
{
    QTest::addColumn<int>("a");
    QTest::addColumn<int>("b");
    QTest::addColumn<int>("gainX");
    QTest::addColumn<int>("gainY");
    QTest::addColumn<int>("gain");
    QTest::newRow("the centre") << 0 << 0 << 40 << 30 << 100;
    QTest::newRow("the side that the sound moves to") << -1 << 0 << 40 << 30 << 100;
    QTest::newRow("the side that it moves from") << 1 << 0 << 40 << 30 << 40;
    QTest::newRow("the end that it moves to") << 0 << 1 << 40 << 30 << 100;
    QTest::newRow("the end that it moves from") << 0 << -1 << 40 << 30 << 30;
    QTest::newRow("from this side, to this end") << 1 << 1 << 40 << 30 << 40;
    QTest::newRow("to this side, from this end") << -1 << -1 << 40 << 30 << 30;
    QTest::newRow("from both, the losses add up") << 1 << -1 << 80 << 70 << 50;
    QTest::newRow("from both, nothing is left exactly") << 1 << -1 << 60 << 40 << 0;
    QTest::newRow("from both, not below silence") << 1 << -1 << 40 << 30 << 0;
    QTest::newRow("only the signs count") << 15 << -15 << 80 << 70 << 50;
    QTest::newRow("the lowest ints") << lowest << lowest << 40 << 30 << 30;
}

void AudioControlFadeBalanceTest::getGainVal()
{
    QFETCH(int, a);
    QFETCH(int, b);
    QFETCH(int, gainX);
    QFETCH(int, gainY);
    QFETCH(int, gain);
    QCOMPARE(inner->getGainVal(a, b, gainX, gainY), gain);
    QCOMPARE(log->takeTexts(), QStringList());
    QCOMPARE(takeCallsAndLifetimes(), QStringList());
}

void AudioControlFadeBalanceTest::getSPAudioChannel_data()
{
    QTest::addColumn<int>("channel");
    QTest::addColumn<quint32>("bits");
    QTest::newRow("-2") << -2 << 0xFFFFU;
    QTest::newRow("-1") << -1 << 0xFFFFU;
    QTest::newRow("0, left front") << 0 << 1U;
    QTest::newRow("1, right front") << 1 << 2U;
    QTest::newRow("2, left rear") << 2 << 4U;
    QTest::newRow("3, right rear") << 3 << 8U;
    QTest::newRow("4, fifth output") << 4 << 16U;
    QTest::newRow("5, sixth output") << 5 << 32U;
    QTest::newRow("6") << 6 << 0xFFFFU;
    QTest::newRow("7") << 7 << 0xFFFFU;
    QTest::newRow("32, the width of the bits") << 32 << 0xFFFFU;
    QTest::newRow("the lowest int") << lowest << 0xFFFFU;
    QTest::newRow("the highest int") << highest << 0xFFFFU;
}

void AudioControlFadeBalanceTest::getSPAudioChannel()
{
    QFETCH(int, channel);
    QFETCH(quint32, bits);
    QCOMPARE(inner->getSPAudioChannel(static_cast<AudioControl::AudioOutChannel>(channel)), bits);
    QCOMPARE(log->takeTexts(), QStringList());
    QCOMPARE(takeCallsAndLifetimes(), QStringList());
}

QTEST_GUILESS_MAIN(AudioControlFadeBalanceTest)

#include "tst_audiocontrol_fadebalance.moc"

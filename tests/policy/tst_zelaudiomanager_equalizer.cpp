#include "childprocess.h"
#include "policytest.h"

#include <limits>

namespace
{

constexpr std::array<calls::Curve, 8> presets = {{
    {4.8F, 4.3F, 3.8F, 3.4F, 3.0F, 2.7F, 2.5F, 0.5F, -4.0F, -3.0F, 0.0F, 1.1F, 2.2F, 2.7F, 3.2F, 3.8F},
    {5.0F, 5.5F, 4.0F, 3.5F, 3.0F, 2.0F, 1.5F, 0.5F, 0.0F, 0.5F, 2.0F, 3.0F, 5.0F, 4.0F, 6.0F, 5.0F},
    {5.0F, 4.5F, 3.0F, 1.0F, 2.0F, 4.0F, 5.0F, 0.0F, -2.0F, -2.0F, 3.0F, 4.0F, 5.0F, 5.5F, 5.5F, 2.0F},
    {6.0F, 5.0F, 4.0F, 0.0F, 0.0F, 0.0F, 3.0F, 4.0F, 4.0F, 2.0F, 0.0F, 0.0F, 5.0F, 5.0F, 5.0F, 5.0F},
    {-3.0F, -2.0F, 0.0F, 3.0F, 4.0F, 5.0F, 5.5F, 5.5F, 5.5F, 4.0F, 3.0F, 3.0F, 0.0F, -3.0F, 5.0F, 4.0F},
    {-4.0F, -5.0F, -5.0F, 3.0F, 4.0F, 6.0F, 6.0F, 5.0F, 5.0F, 5.5F, 2.0F, 1.0F, 0.0F, 0.0F, -4.0F, -5.0F},
    {2.0F, 2.0F, 2.0F, 2.0F, 2.0F, 2.0F, 2.0F, 2.0F, 2.0F, 2.0F, 2.0F, 2.0F, 2.0F, 2.0F, 2.0F, 2.0F},
    {0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F},
}};

calls::Curve customCurve(std::size_t band, float gain)
{
    calls::Curve curve = {};
    curve[band] = gain;
    return curve;
}

} // namespace

class ZelAudioManagerEqualizerTest : public PolicyTest
{
    Q_OBJECT

private Q_SLOTS:
    void setEqType_data();
    void setEqType();
    void setEqTypeLogs();
    void customTypeTakesTheStoredCurve();
    void nextAndPrevious_data();
    void nextAndPrevious();
    void firstEqualizerTimerSetsTheStoredType();
    void adjustCustomEq_data();
    void adjustCustomEq();
    void adjustCustomEqLogs();
    void gainBeyondTheRangeIsStoredButRefused();
    void repeatWithinHalfASecondIsIgnored();
    void ignoredRepeatProlongsNothing();
    void anotherBandProlongsTheTime();
    void anotherValueIsWrittenAtOnce();
    void ignoredRepeatDoesNotSelectTheCustomType();
    void firstAdjustmentIsWrittenThoughNothingIsNew();
    void customTimerRunningOutDoesNothing();
    void missingBandStopsTheProcess_data();
    void missingBandStopsTheProcess();
    void loudness();
    void readersReadTheStore();
};

void ZelAudioManagerEqualizerTest::setEqType_data()
{
    QTest::addColumn<int>("storedBefore");
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("curve");
    QTest::addColumn<int>("storedAfter");
    for (int type = 0; type < 8; ++type)
        QTest::addRow("type %d", type) << 6 << type << type << type;
    QTest::newRow("100 is the stored type") << 4 << 100 << 4 << 4;
    QTest::newRow("an unknown type sounds like 0 and is stored") << 6 << 42 << 0 << 42;
    QTest::newRow("a negative type sounds like 0 and is stored") << 6 << -1 << 0 << -1;
    QTest::newRow("100 of an unknown stored type") << 42 << 100 << 0 << 42;
    QTest::newRow("a stored 100 sounds like 0") << 100 << 100 << 0 << 100;
}

void ZelAudioManagerEqualizerTest::setEqType()
{
    QFETCH(int, storedBefore);
    QFETCH(int, type);
    QFETCH(int, curve);
    QFETCH(int, storedAfter);
    store(QStringLiteral("EQ/Type"), storedBefore);
    start();
    manager->setEqType(type);
    QCOMPARE(takeCalls(), calls::equalizer(presets[static_cast<std::size_t>(curve)]));
    QCOMPARE(manager->eqType(), storedAfter);
    QCOMPARE(stored(QStringLiteral("EQ/Type")).toInt(), storedAfter);
}

void ZelAudioManagerEqualizerTest::setEqTypeLogs()
{
    start();
    manager->setEqType(100);
    const QStringList lines = takeManagerLines();
    QCOMPARE(lines.filter(QStringLiteral("::setEqType(")),
             QStringList({QStringLiteral("[DBG] THREAD void ZelAudioManager::setEqType(int) LINE -- xxxxxxx 6"),
                          QStringLiteral("[DBG] THREAD void ZelAudioManager::setEqType(int) LINE -- (2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2)")}));
    QCOMPARE(lines.filter(QStringLiteral("insertList")).size(), 1);
}

void ZelAudioManagerEqualizerTest::customTypeTakesTheStoredCurve()
{
    calls::Curve curve = {};
    for (int band = 0; band < 16; ++band) {
        const int gain = (band % 13) * 2 - 12;
        store(QStringLiteral("EQ/Custom%1").arg(band), gain);
        curve[static_cast<std::size_t>(band)] = static_cast<float>(gain);
    }
    start();
    manager->setEqType(7);
    QCOMPARE(takeCalls(), calls::equalizer(curve));
}

void ZelAudioManagerEqualizerTest::nextAndPrevious_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<bool>("next");
    QTest::addColumn<int>("after");
    for (int type = 0; type < 7; ++type) {
        QTest::addRow("next of %d", type) << type << true << type + 1;
        QTest::addRow("previous of %d", type + 1) << type + 1 << false << type;
    }
    QTest::newRow("next of 7 is 0") << 7 << true << 0;
    QTest::newRow("previous of 0 is 7") << 0 << false << 7;
    QTest::newRow("next of an unknown type is 1") << 42 << true << 1;
    QTest::newRow("previous of an unknown type is 7") << 42 << false << 7;
}

void ZelAudioManagerEqualizerTest::nextAndPrevious()
{
    QFETCH(int, before);
    QFETCH(bool, next);
    QFETCH(int, after);
    store(QStringLiteral("EQ/Type"), before);
    start();
    if (next)
        manager->eqTypeNext();
    else
        manager->eqTypePrev();
    QCOMPARE(takeCalls(), calls::equalizer(presets[static_cast<std::size_t>(after)]));
    QCOMPARE(stored(QStringLiteral("EQ/Type")).toInt(), after);
    QCOMPARE(takeManagerLines().constFirst(),
             QStringLiteral("[DBG] THREAD void ZelAudioManager::%1() LINE --").arg(QLatin1String(next ? "eqTypeNext" : "eqTypePrev")));
}

void ZelAudioManagerEqualizerTest::firstEqualizerTimerSetsTheStoredType()
{
    start();
    managerstate::firstEqTimer(*manager).start();
    clock->advance(1000);
    manager->setEqType(3); // chosen meanwhile
    takeCalls();
    clock->advance(999);
    QCOMPARE(takeCalls(), QStringList());
    log->take();
    clock->advance(1);
    QCOMPARE(takeCalls(), calls::equalizer(presets[3]));
    QCOMPARE(takeManagerLines().constFirst(), QStringLiteral("[DBG] THREAD void ZelAudioManager::onFirstSetEqType() LINE --"));
}

void ZelAudioManagerEqualizerTest::adjustCustomEq_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("band");
    for (int band = 0; band < 16; ++band)
        QTest::addRow("band %d", band) << 3 << band;
    QTest::newRow("the highest gain") << 6 << 0;
    QTest::newRow("the lowest gain") << -6 << 15;
    QTest::newRow("no gain") << 0 << 7;
}

void ZelAudioManagerEqualizerTest::adjustCustomEq()
{
    QFETCH(int, value);
    QFETCH(int, band);
    start();
    const QStringList before = storedLines();
    manager->adjustCustomEq(value, band);
    QCOMPARE(takeCalls(), calls::equalizer(customCurve(static_cast<std::size_t>(band), static_cast<float>(value * 2))));
    QCOMPARE(manager->customEq(band), value * 2);
    QCOMPARE(manager->eqType(), 7);
    QStringList after = before;
    after.removeOne(QStringLiteral("EQ/Type=6"));
    after += QStringLiteral("EQ/Type=7");
    after += QStringLiteral("EQ/Custom%1=%2").arg(band).arg(value * 2);
    after.sort();
    QCOMPARE(storedLines(), after);
    QVERIFY(managerstate::customEqTimer(*manager).isActive());
    manager->adjustCustomEq(value, band); // the same again, too soon
    QCOMPARE(takeCalls(), QStringList());
}

void ZelAudioManagerEqualizerTest::adjustCustomEqLogs()
{
    start();
    manager->adjustCustomEq(-2, 1);
    QCOMPARE(takeManagerLines().filter(QStringLiteral("adjustCustomEq")),
             QStringList({QStringLiteral("[DBG] THREAD void ZelAudioManager::adjustCustomEq(int, int) LINE -- -2 1"),
                          QStringLiteral("[DBG] THREAD void ZelAudioManager::adjustCustomEq(int, int) LINE -- "
                                         "(0, -4, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0)")}));
}

void ZelAudioManagerEqualizerTest::gainBeyondTheRangeIsStoredButRefused()
{
    start();
    manager->adjustCustomEq(7, 2);
    QCOMPARE(takeCalls(), QStringList());
    QCOMPARE(stored(QStringLiteral("EQ/Custom2")).toInt(), 14);
    // The curve as a whole stays refused until the band comes back.
    manager->adjustCustomEq(1, 3);
    QCOMPARE(takeCalls(), QStringList());
    manager->adjustCustomEq(6, 2);
    calls::Curve curve = {};
    curve[2] = 12;
    curve[3] = 2;
    QCOMPARE(takeCalls(), calls::equalizer(curve));
    // A value whose double no int holds wraps round.
    manager->adjustCustomEq(std::numeric_limits<int>::min(), 2);
    QCOMPARE(stored(QStringLiteral("EQ/Custom2")).toInt(), 0);
    curve[2] = 0;
    QCOMPARE(takeCalls(), calls::equalizer(curve));
}

void ZelAudioManagerEqualizerTest::repeatWithinHalfASecondIsIgnored()
{
    start();
    const QStringList written = calls::equalizer(customCurve(5, 6));
    manager->adjustCustomEq(3, 5);
    QCOMPARE(takeCalls(), written);
    manager->adjustCustomEq(3, 5);
    QCOMPARE(takeCalls(), QStringList());
    clock->advance(499);
    manager->adjustCustomEq(3, 5);
    QCOMPARE(takeCalls(), QStringList());
    clock->advance(1);
    manager->adjustCustomEq(3, 5);
    QCOMPARE(takeCalls(), written);
}

void ZelAudioManagerEqualizerTest::ignoredRepeatProlongsNothing()
{
    start();
    manager->adjustCustomEq(3, 5);
    clock->advance(400);
    manager->adjustCustomEq(3, 5); // ignored
    clock->advance(100);
    takeCalls();
    manager->adjustCustomEq(3, 5);
    QCOMPARE(takeCalls(), calls::equalizer(customCurve(5, 6)));
}

void ZelAudioManagerEqualizerTest::anotherBandProlongsTheTime()
{
    start();
    manager->adjustCustomEq(3, 5);
    clock->advance(400);
    manager->adjustCustomEq(1, 0); // starts the time anew, for all bands
    clock->advance(499);
    takeCalls();
    manager->adjustCustomEq(3, 5);
    QCOMPARE(takeCalls(), QStringList());
    clock->advance(1);
    manager->adjustCustomEq(3, 5);
    calls::Curve curve = customCurve(5, 6);
    curve[0] = 2;
    QCOMPARE(takeCalls(), calls::equalizer(curve));
}

void ZelAudioManagerEqualizerTest::anotherValueIsWrittenAtOnce()
{
    start();
    manager->adjustCustomEq(3, 5);
    takeCalls();
    manager->adjustCustomEq(4, 5);
    QCOMPARE(takeCalls(), calls::equalizer(customCurve(5, 8)));
    manager->adjustCustomEq(3, 5);
    QCOMPARE(takeCalls(), calls::equalizer(customCurve(5, 6)));
}

void ZelAudioManagerEqualizerTest::ignoredRepeatDoesNotSelectTheCustomType()
{
    start();
    manager->adjustCustomEq(3, 5);
    manager->setEqType(2);
    takeCalls();
    manager->adjustCustomEq(3, 5);
    QCOMPARE(takeCalls(), QStringList());
    QCOMPARE(manager->eqType(), 2);
    clock->advance(500);
    manager->adjustCustomEq(3, 5);
    QCOMPARE(takeCalls(), calls::equalizer(customCurve(5, 6)));
    QCOMPARE(manager->eqType(), 7);
}

void ZelAudioManagerEqualizerTest::firstAdjustmentIsWrittenThoughNothingIsNew()
{
    store(QStringLiteral("EQ/Custom5"), 6);
    start();
    manager->adjustCustomEq(3, 5);
    QCOMPARE(takeCalls(), calls::equalizer(customCurve(5, 6)));
}

void ZelAudioManagerEqualizerTest::customTimerRunningOutDoesNothing()
{
    start();
    manager->adjustCustomEq(3, 5);
    takeCalls();
    log->take();
    const QStringList before = storedLines();
    clock->advance(500);
    QVERIFY(!managerstate::customEqTimer(*manager).isActive());
    QCOMPARE(takeCalls(), QStringList());
    QCOMPARE(log->takeTexts(), QStringList());
    QCOMPARE(storedLines(), before);
}

void ZelAudioManagerEqualizerTest::missingBandStopsTheProcess_data()
{
    QTest::addColumn<int>("band");
    QTest::addColumn<bool>("stops");
    QTest::newRow("16, one beyond the last") << 16 << true;
    QTest::newRow("-1") << -1 << true;
    QTest::newRow("the largest number") << std::numeric_limits<int>::max() << true;
    QTest::newRow("the smallest number") << std::numeric_limits<int>::min() << true;
    QTest::newRow("15, the last, goes on") << 15 << false;
}

void ZelAudioManagerEqualizerTest::missingBandStopsTheProcess()
{
    QFETCH(int, band);
    QFETCH(bool, stops);
    const ChildProcess process({QStringLiteral("band"), QString::number(band)});
    if (!stops) {
        QCOMPARE(process.exitStatus, QProcess::NormalExit);
        QCOMPARE(process.exitCode, 0);
        QCOMPARE(process.outputLines(), calls::equalizer(customCurve(15, 6)) + QStringList{QStringLiteral("alive")});
        return;
    }
    QCOMPARE(process.exitStatus, QProcess::CrashExit);
    QCOMPARE(process.outputLines(), QStringList()); // no curve was sent
    QCOMPARE(process.errorLines().filter(QStringLiteral("ASSERT failure in QList<T>::replace: \"index out of range\"")).size(), 1);
    // The custom type was selected before.
    QCOMPARE(stored(QStringLiteral("EQ/Type")).toInt(), 7);
    QCOMPARE(storedLines().filter(QStringLiteral("Custom")), QStringList());
}

void ZelAudioManagerEqualizerTest::loudness()
{
    start();
    manager->setLoudNess(true);
    QCOMPARE(takeCalls(), QStringList{QStringLiteral("App.setLoudness({on: 1, onAgain: 1, level: 800}) -> 0")});
    QCOMPARE(manager->loudNess(), true);
    QCOMPARE(stored(QStringLiteral("Volume/Loudness")).toBool(), true);
    manager->setLoudNess(false);
    QCOMPARE(takeCalls(), QStringList{QStringLiteral("App.setLoudness({on: 0, onAgain: 0, level: 800}) -> 0")});
    QCOMPARE(manager->loudNess(), false);
    QCOMPARE(stored(QStringLiteral("Volume/Loudness")).toBool(), false);
    QCOMPARE(takeManagerLines().filter(QStringLiteral("oudNess(")).constFirst(),
             QStringLiteral("[DBG] THREAD void ZelAudioManager::setLoudNess(bool) LINE -- true"));
}

void ZelAudioManagerEqualizerTest::readersReadTheStore()
{
    store(QStringLiteral("EQ/Custom9"), -8);
    start();
    const EqBaseData *base = manager->getEqBaseData();
    for (int type = 0; type < 8; ++type) {
        QCOMPARE(base[type].type, type);
        for (std::size_t band = 0; band < 16; ++band)
            QCOMPARE(base[type].gains[band], presets[static_cast<std::size_t>(type)][band]);
    }
    QCOMPARE(manager->getEqBaseData(), base);
    QCOMPARE(manager->customEq(9), -8);
    QCOMPARE(manager->customEq(16), 0);
    QCOMPARE(manager->eqType(), 6);
    QCOMPARE(takeManagerLines(),
             QStringList({QStringLiteral("[DBG] THREAD const EqBaseData* ZelAudioManager::getEqBaseData() LINE --"),
                          QStringLiteral("[DBG] THREAD const EqBaseData* ZelAudioManager::getEqBaseData() LINE --"),
                          QStringLiteral("[DBG] THREAD int ZelAudioManager::customEq(int) LINE --"),
                          QStringLiteral("[DBG] THREAD int ZelAudioManager::customEq(int) LINE --"),
                          QStringLiteral("[DBG] THREAD int ZelAudioManager::eqType() LINE --")}));
    QCOMPARE(takeCalls(), QStringList());
}

POLICY_TEST_MAIN(ZelAudioManagerEqualizerTest)

#include "tst_zelaudiomanager_equalizer.moc"

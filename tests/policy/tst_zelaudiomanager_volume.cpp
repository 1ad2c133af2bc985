#include "policytest.h"

#include <situationexpectations.h>

#include <limits>

Q_DECLARE_METATYPE(ZelAudioType)

namespace
{

QStringList mediaCalls(int volume, int auxIn)
{
    return calls::volumeOfType(0, volume, auxIn);
}

/// All of their sources are boosted.
QStringList telephonyCalls(int volume)
{
    return calls::volumeOfType(2, -1, volume);
}

QStringList ringCalls(int volume)
{
    return calls::volumeOfType(3, -1, volume);
}

} // namespace

class ZelAudioManagerVolumeTest : public PolicyTest
{
    Q_OBJECT

private Q_SLOTS:
    void setVolume_data();
    void setVolume();
    void setVolumeStores_data();
    void setVolumeStores();
    void saveVolumeWritesAllSix();
    void deferredWrite();
    void deferredWriteIsRestarted();
    void deferredWriteSendsWhatIsStoredThen();
    void singleChannelTypesAreNeverPending_data();
    void singleChannelTypesAreNeverPending();
    void pendingTypesDrain_data();
    void pendingTypesDrain();
    void leftoverIsWrittenWithTheNext();
    void volumeKey_data();
    void volumeKey();
    void volumeKeyTellsAfterEverythingIsDone();
    void channelsOfType_data();
    void channelsOfType();
    void onlyLogged();
};

void ZelAudioManagerVolumeTest::setVolume_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("volume");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("media goes to fourteen channels") << 0 << 10 << mediaCalls(40, 60);
    QTest::newRow("media at its highest") << 0 << 25 << mediaCalls(100, 148);
    QTest::newRow("prompts go to the alternative track") << 1 << 10 << calls::fresh(QStringLiteral("Volume.setAlterTrackVolume(60) -> 0"));
    QTest::newRow("telephony goes to two channels") << 2 << 10 << telephonyCalls(60);
    QTest::newRow("ring goes to two channels") << 3 << 10 << ringCalls(60);
    QTest::newRow("speech goes to one channel") << 4 << 10 << calls::streamVolume(QStringLiteral("S+CarPlaySpeech"), 60);
    QTest::newRow("a HiCar call goes to its stream and the alternative track")
        << 5 << 10
        << QStringList({QStringLiteral("Volume.create() -> ok"),
                        QStringLiteral("Volume.setTrackVolume(\"main\", \"hicar_voice_callmodemspeaker10\", 60) -> 0"),
                        QStringLiteral("Volume.setAlterTrackVolume(60) -> 0"),
                        QStringLiteral("Volume.destroy()")});
    QTest::newRow("a type beyond the last goes nowhere") << 6 << 10 << QStringList();
    QTest::newRow("a negative type goes nowhere") << -1 << 10 << QStringList();
    QTest::newRow("above the platform's range") << 4 << 38 << QStringList();
    QTest::newRow("the low 8 bits count") << 4 << 74 << calls::streamVolume(QStringLiteral("S+CarPlaySpeech"), 60);
    QTest::newRow("the low 8 bits of a step count") << 1 << 266 << calls::fresh(QStringLiteral("Volume.setAlterTrackVolume(60) -> 0"));
    QTest::newRow("an alternative volume above 25 is refused") << 1 << 26 << QStringList();
}

void ZelAudioManagerVolumeTest::setVolume()
{
    QFETCH(int, type);
    QFETCH(int, volume);
    QFETCH(QStringList, expected);
    start();
    manager->setVolume(static_cast<ZelAudioType>(type), volume, false);
    QCOMPARE(takeCalls(), expected);
    QCOMPARE(takeManagerLines().constFirst(),
             QStringLiteral("[DBG] THREAD void ZelAudioManager::setVolume(ZelAudioType, int, bool) LINE -- %1 %2 false 0").arg(type).arg(volume));
}

void ZelAudioManagerVolumeTest::setVolumeStores_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("save");
    for (int type = 0; type < 6; ++type) {
        QTest::addRow("type %d, in memory only", type) << type << false;
        QTest::addRow("type %d, saved", type) << type << true;
    }
}

void ZelAudioManagerVolumeTest::setVolumeStores()
{
    QFETCH(int, type);
    QFETCH(bool, save);
    start();
    const QStringList before = storedLines();
    manager->setVolume(static_cast<ZelAudioType>(type), 17, save);
    QCOMPARE(manager->getVolume(static_cast<ZelAudioType>(type)), 17);
    QStringList after = before;
    if (save)
        after += QStringLiteral("Volume/%1=17").arg(type);
    after.sort();
    QCOMPARE(storedLines(), after);
}

void ZelAudioManagerVolumeTest::saveVolumeWritesAllSix()
{
    start();
    for (int type = 0; type < 6; ++type)
        manager->setVolume(static_cast<ZelAudioType>(type), type + 3, false);
    takeCalls();
    const QStringList before = storedLines();
    manager->saveVolume();
    QStringList after = before;
    for (int type = 0; type < 6; ++type)
        after += QStringLiteral("Volume/%1=%2").arg(type).arg(type + 3);
    after.sort();
    QCOMPARE(storedLines(), after);
    QCOMPARE(takeCalls(), QStringList());
}

void ZelAudioManagerVolumeTest::deferredWrite()
{
    start();
    manager->setVolume(ZelAudioTypeTelephony, 10, false);
    QCOMPARE(takeCalls(), telephonyCalls(60));
    clock->advance(499);
    QCOMPARE(takeCalls(), QStringList());
    log->take();
    clock->advance(1);
    QCOMPARE(takeCalls(), telephonyCalls(60));
    QCOMPARE(takeManagerLines().filter(QStringLiteral("_delaysetVolume")),
             QStringList({QStringLiteral("[DBG] THREAD void ZelAudioManager::_delaysetVolume() LINE --"),
                          QStringLiteral("[DBG] THREAD void ZelAudioManager::_delaysetVolume() LINE -- \"S+CarPlayTelephony_APP\" 7 40"),
                          QStringLiteral("[DBG] THREAD void ZelAudioManager::_delaysetVolume() LINE -- \"S+BtPcmPhone\" 12 40")}));
    QCOMPARE(managerstate::pendingVolumeTypes(*manager), QList<ZelAudioType>());
    clock->advance(10000);
    QCOMPARE(takeCalls(), QStringList());
}

void ZelAudioManagerVolumeTest::deferredWriteIsRestarted()
{
    start();
    manager->setVolume(ZelAudioTypeTelephony, 10, false);
    clock->advance(300);
    manager->setVolume(ZelAudioTypeTelephony, 11, false); // pending already
    QCOMPARE(managerstate::pendingVolumeTypes(*manager), QList<ZelAudioType>{ZelAudioTypeTelephony});
    takeCalls();
    clock->advance(499);
    QCOMPARE(takeCalls(), QStringList());
    manager->setVolume(ZelAudioTypeRing, 5, false); // another type restarts the same timer
    takeCalls();
    clock->advance(499);
    QCOMPARE(takeCalls(), QStringList());
    clock->advance(1);
    QCOMPARE(takeCalls(), telephonyCalls(66)); // of two the second stays
    QCOMPARE(managerstate::pendingVolumeTypes(*manager), QList<ZelAudioType>{ZelAudioTypeRing});
    QVERIFY(!managerstate::delayVolumeTimer(*manager).isActive());
}

void ZelAudioManagerVolumeTest::deferredWriteSendsWhatIsStoredThen()
{
    start();
    manager->setVolume(ZelAudioTypeRing, 10, false);
    manager->setVolume(ZelAudioTypeRing, 20, false);
    takeCalls();
    clock->advance(500);
    QCOMPARE(takeCalls(), ringCalls(120));
    manager->setVolume(ZelAudioTypeRing, 40, false); // refused by the facade, then and later
    QCOMPARE(takeCalls(), QStringList());
    clock->advance(500);
    QCOMPARE(takeCalls(), QStringList());
}

void ZelAudioManagerVolumeTest::singleChannelTypesAreNeverPending_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("prompts, the alternative track") << 1;
    QTest::newRow("speech, one channel") << 4;
    QTest::newRow("HiCar call, the alternative track") << 5;
    QTest::newRow("a type without channels") << 6;
    QTest::newRow("a negative type") << -3;
}

void ZelAudioManagerVolumeTest::singleChannelTypesAreNeverPending()
{
    QFETCH(int, type);
    start();
    manager->setVolume(static_cast<ZelAudioType>(type), 10, false);
    QCOMPARE(managerstate::pendingVolumeTypes(*manager), QList<ZelAudioType>());
    QVERIFY(!managerstate::delayVolumeTimer(*manager).isActive());
    takeCalls();
    clock->advance(500);
    QCOMPARE(takeCalls(), QStringList());
}

void ZelAudioManagerVolumeTest::pendingTypesDrain_data()
{
    // Each type is one letter; only a, c and d can become pending through setVolume().
    const QList<ZelAudioType> a = {ZelAudioTypeMedia};
    const QList<ZelAudioType> b = {ZelAudioTypeSpeech};
    const QList<ZelAudioType> c = {ZelAudioTypeTelephony};
    const QList<ZelAudioType> d = {ZelAudioTypeRing};
    const QList<ZelAudioType> e = {ZelAudioTypePrompt};
    const QList<ZelAudioType> f = {ZelAudioTypeHiCarCall};
    const QStringList writesA = mediaCalls(12, 18);
    const QStringList writesB = calls::streamVolume(QStringLiteral("S+CarPlaySpeech"), 102);
    const QStringList writesC = telephonyCalls(66);
    const QStringList writesE = calls::streamVolume(QStringLiteral("S+none"), 28);

    QTest::addColumn<QList<ZelAudioType>>("pending");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<QList<ZelAudioType>>("left");
    QTest::newRow("none") << QList<ZelAudioType>() << QStringList() << QList<ZelAudioType>();
    QTest::newRow("one is written") << a << writesA << QList<ZelAudioType>();
    QTest::newRow("of two the first is written, the second stays") << a + b << writesA << b;
    QTest::newRow("of three the second is dropped, the third is written and stays") << a + b + c << writesA + writesC << c;
    QTest::newRow("of four the third and fourth stay") << a + b + c + d << writesA + writesC << c + d;
    QTest::newRow("of five the first, third and fifth are written") << a + b + c + d + e << writesA + writesC + writesE << d + e;
    QTest::newRow("of six the first, third and fifth are written, the last three stay") << a + b + c + d + e + f << writesA + writesC + writesE << d + e + f;
    QTest::newRow("another order") << b + a + c << writesB + writesC << c;
    QTest::newRow("a type without channels is written nowhere") << f << QStringList() << QList<ZelAudioType>();
}

void ZelAudioManagerVolumeTest::pendingTypesDrain()
{
    QFETCH(QList<ZelAudioType>, pending);
    QFETCH(QStringList, expected);
    QFETCH(QList<ZelAudioType>, left);
    const int volumes[] = {3, 7, 11, 13, 17, 19};
    for (int type = 0; type < 6; ++type)
        store(QStringLiteral("Volume/%1").arg(type), volumes[type]);
    start();
    managerstate::pendingVolumeTypes(*manager) = pending;
    managerstate::delayVolumeTimer(*manager).start(500);
    clock->advance(500);
    QCOMPARE(takeCalls(), expected);
    QCOMPARE(managerstate::pendingVolumeTypes(*manager), left);
    QVERIFY(!managerstate::delayVolumeTimer(*manager).isActive());
}

void ZelAudioManagerVolumeTest::leftoverIsWrittenWithTheNext()
{
    start();
    manager->setVolume(ZelAudioTypeMedia, 10, false);
    manager->setVolume(ZelAudioTypeTelephony, 10, false);
    takeCalls();
    clock->advance(500);
    QCOMPARE(takeCalls(), mediaCalls(40, 60));
    // The telephony left over comes first now, and the ring waits.
    manager->setVolume(ZelAudioTypeRing, 10, false);
    takeCalls();
    clock->advance(500);
    QCOMPARE(takeCalls(), telephonyCalls(60));
    QCOMPARE(managerstate::pendingVolumeTypes(*manager), QList<ZelAudioType>{ZelAudioTypeRing});
}

void ZelAudioManagerVolumeTest::volumeKey_data()
{
    QTest::addColumn<int>("volume");
    QTest::addColumn<bool>("up");
    QTest::addColumn<int>("expected");
    QTest::addColumn<bool>("mute");
    const int highest = std::numeric_limits<int>::max();
    const int lowest = std::numeric_limits<int>::min();
    QTest::newRow("up from the middle") << 12 << true << 13 << false;
    QTest::newRow("down from the middle") << 12 << false << 11 << false;
    QTest::newRow("up from 0") << 0 << true << 1 << false;
    QTest::newRow("down to 1") << 2 << false << 1 << false;
    QTest::newRow("down to 0 mutes") << 1 << false << 0 << true;
    QTest::newRow("down from 0 stays at 0 and mutes") << 0 << false << 0 << true;
    QTest::newRow("up to 25") << 24 << true << 25 << false;
    QTest::newRow("up from 25 stays at 25") << 25 << true << 25 << false;
    QTest::newRow("down from far above comes back to 25") << 30 << false << 25 << false;
    QTest::newRow("up from far below comes back to 0 and mutes") << -5 << true << 0 << true;
    QTest::newRow("up from the largest number") << highest << true << 25 << false;
    QTest::newRow("down from the smallest number") << lowest << false << 0 << true;
}

void ZelAudioManagerVolumeTest::volumeKey()
{
    QFETCH(int, volume);
    QFETCH(bool, up);
    QFETCH(int, expected);
    QFETCH(bool, mute);
    store(QStringLiteral("Volume/4"), volume);
    store(QStringLiteral("Volume/0"), volume);
    start();
    manager->updateAudioChannel(AudioChannelBtAudio);
    takeCalls();
    log->take();
    manager->updateCurrentAudioVolume(up);
    QCOMPARE(takeVolumeChanges(), (QList<VolumeChange>{{mute, expected, 0}}));
    QCOMPARE(takeCalls(), mediaCalls(expected * 4, expected == 25 ? 148 : expected * 6));
    QCOMPARE(manager->getVolume(ZelAudioTypeMedia), expected);
    QCOMPARE(stored(QStringLiteral("Volume/0")).toInt(), expected);
    const QStringList lines = takeManagerLines();
    const QString operation = QStringLiteral("[DBG] THREAD void ZelAudioManager::updateCurrentAudioVolume(bool) LINE -- ");
    QCOMPARE(lines.filter(operation), QStringList({operation + QLatin1String(up ? "true" : "false"), operation + QStringLiteral("0 %1").arg(expected)}));
}

void ZelAudioManagerVolumeTest::volumeKeyTellsAfterEverythingIsDone()
{
    start();
    manager->updateAudioChannel(AudioChannelBtAudio);
    takeCalls();
    QStringList seen;
    connect(manager.get(), &ZelAudioManager::zelvolumeChanged, this, [this, result = &seen] {
        *result = takeCalls();
        *result += QStringLiteral("stored %1").arg(stored(QStringLiteral("Volume/0")).toInt());
    });
    manager->updateCurrentAudioVolume(true);
    QCOMPARE(seen, mediaCalls(84, 126) + QStringList{QStringLiteral("stored 21")});
    takeVolumeChanges();
}

void ZelAudioManagerVolumeTest::channelsOfType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QList<int>>("expected");
    const char *const names[] = {"media", "prompt", "telephony", "ring", "speech", "HiCar call"};
    for (int type = 0; type < expectation::typeCount; ++type)
        QTest::newRow(names[type]) << type << expectation::channelsOfType(type);
    QTest::newRow("no type") << 6 << QList<int>();
    QTest::newRow("a negative type") << -1 << QList<int>();
}

void ZelAudioManagerVolumeTest::channelsOfType()
{
    QFETCH(int, type);
    QFETCH(QList<int>, expected);
    start();
    QList<AudioChannel> channels = {AudioChannelAuxIn, AudioChannelCarLife};
    manager->_getAllChannelsFromCurrentType(channels, static_cast<ZelAudioType>(type));
    QList<int> numbers;
    for (const AudioChannel channel : qAsConst(channels))
        numbers.append(channel);
    QCOMPARE(numbers, expected);
}

void ZelAudioManagerVolumeTest::onlyLogged()
{
    start();
    manager->setVolResponse(static_cast<VolResponseState>(2), true);
    QCOMPARE(log->takeTexts(), QStringList{QStringLiteral("[DBG] THREAD void ZelAudioManager::setVolResponse(VolResponseState, bool) LINE -- 2 true")});
    QCOMPARE(takeCalls(), QStringList());
    manager->getVolume(ZelAudioTypeRing);
    manager->saveVolume();
    QCOMPARE(takeManagerLines(),
             QStringList({QStringLiteral("[DBG] THREAD int ZelAudioManager::getVolume(ZelAudioType) LINE --"),
                          QStringLiteral("[DBG] THREAD void ZelAudioManager::saveVolume() LINE --")}));
}

POLICY_TEST_MAIN(ZelAudioManagerVolumeTest)

#include "tst_zelaudiomanager_volume.moc"

#include "policytest.h"

#include <faults.h>

#include <limits>

namespace
{

QStringList muted()
{
    return {QStringLiteral("Volume.muteTrack(\"main\", 0) -> 0"), QStringLiteral("Volume.muteTrack(\"alternative\", 0) -> 0")};
}

QStringList audible()
{
    return {QStringLiteral("Volume.unmuteTrack(\"main\", 0) -> 0"), QStringLiteral("Volume.unmuteTrack(\"alternative\", 0) -> 0")};
}

const QStringList ducked = calls::fresh(QStringLiteral("Volume.setDuckingMode(1) -> 0")) + calls::fresh(QStringLiteral("Volume.setDuckingTargetGain(60) -> 0"));
const QStringList restored = calls::fresh(QStringLiteral("Volume.setDuckingMode(0) -> 0"));

} // namespace

class ZelAudioManagerMuteTest : public PolicyTest
{
    Q_OBJECT

private Q_SLOTS:
    void timedMute_data();
    void timedMute();
    void timedMuteOfZeroEndsInTheNextTurn();
    void timedMuteIsRestarted();
    void timedMuteOvertakenByAnUnmuteKeepsItsTimer();
    void timedMuteLeavesNoTraceWhenUnmuted();
    void unmute_data();
    void unmute();
    void muteAndAttenuation();
    void muteIsRememberedWhenThePlatformRefuses();
    void reverseGear();
    void reverseGearOutWithinOneSecond();
    void reverseGearComesFromTheMcuService();
    void hiCarCall();
};

void ZelAudioManagerMuteTest::timedMute_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<qint64>("milliseconds");
    QTest::newRow("1 is 50 ms") << 1 << qint64(50);
    QTest::newRow("3 is 150 ms") << 3 << qint64(150);
    QTest::newRow("20 is a second") << 20 << qint64(1000);
    QTest::newRow("72000 is an hour") << 72000 << qint64(3600000);
    QTest::newRow("42949672 is the last product that an int holds") << 42949672 << qint64(2147483600);
    QTest::newRow("42949673 is the longest time there is") << 42949673 << qint64(2147483647);
    QTest::newRow("the largest count is the longest time there is") << std::numeric_limits<int>::max() << qint64(2147483647);
}

void ZelAudioManagerMuteTest::timedMute()
{
    QFETCH(int, count);
    QFETCH(qint64, milliseconds);
    start();
    manager->setAudioMute(true, count);
    QCOMPARE(takeCalls(), muted());
    QCOMPARE(manager->isAttOn(), true);
    clock->advance(milliseconds - 1);
    QCOMPARE(takeCalls(), QStringList());
    log->take();
    clock->advance(1);
    QCOMPARE(takeCalls(), audible());
    QCOMPARE(takeManagerLines(), QStringList{QStringLiteral("[DBG] THREAD void ZelAudioManager::deMute() LINE -- Set audio demute")});
    QCOMPARE(manager->isAttOn(), false);
    QVERIFY(!managerstate::muteTimer(*manager).isActive());
}

void ZelAudioManagerMuteTest::timedMuteOfZeroEndsInTheNextTurn()
{
    start();
    manager->setAudioMute(true, 0);
    QCOMPARE(takeCalls(), muted());
    QCoreApplication::processEvents();
    QCOMPARE(takeCalls(), audible());
}

void ZelAudioManagerMuteTest::timedMuteIsRestarted()
{
    start();
    manager->setAudioMute(true, 20);
    clock->advance(900);
    takeCalls();
    manager->setAudioMute(true, 20);
    QCOMPARE(takeCalls(), QStringList()); // muted already
    clock->advance(999);
    QCOMPARE(takeCalls(), QStringList());
    clock->advance(1);
    QCOMPARE(takeCalls(), audible());
}

void ZelAudioManagerMuteTest::timedMuteOvertakenByAnUnmuteKeepsItsTimer()
{
    start();
    manager->setAudioMute(true, 20);
    clock->advance(300);
    takeCalls();
    manager->setAudioMute(false, 0);
    QCOMPARE(takeCalls(), audible());
    QVERIFY(managerstate::muteTimer(*manager).isActive());
    clock->advance(200);
    manager->setMute(true); // meant to last
    QCOMPARE(takeCalls(), muted());
    clock->advance(499);
    QCOMPARE(takeCalls(), QStringList());
    clock->advance(1);
    QCOMPARE(takeCalls(), audible());
}

void ZelAudioManagerMuteTest::timedMuteLeavesNoTraceWhenUnmuted()
{
    start();
    manager->setAudioMute(true, 2);
    manager->deMute();
    takeCalls();
    clock->advance(100);
    QCOMPARE(takeCalls(), QStringList()); // audible already
}

void ZelAudioManagerMuteTest::unmute_data()
{
    QTest::addColumn<bool>("mutedBefore");
    QTest::addColumn<bool>("mute");
    QTest::addColumn<int>("count");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("a negative count unmutes what is muted") << true << true << -1 << audible();
    QTest::newRow("a negative count leaves what is audible") << false << true << -1 << QStringList();
    QTest::newRow("the most negative count") << true << true << std::numeric_limits<int>::min() << audible();
    QTest::newRow("no mute, no count") << true << false << 0 << audible();
    QTest::newRow("no mute, whatever the count") << true << false << 5 << audible();
    QTest::newRow("no mute, negative count") << true << false << -5 << audible();
    QTest::newRow("no mute of what is audible") << false << false << 5 << QStringList();
}

void ZelAudioManagerMuteTest::unmute()
{
    QFETCH(bool, mutedBefore);
    QFETCH(bool, mute);
    QFETCH(int, count);
    QFETCH(QStringList, expected);
    start();
    manager->setMute(mutedBefore);
    takeCalls();
    log->take();
    manager->setAudioMute(mute, count);
    QCOMPARE(takeCalls(), expected);
    QCOMPARE(takeManagerLines(),
             QStringList(
                 {QStringLiteral("[DBG] THREAD void ZelAudioManager::setAudioMute(bool, int) LINE -- Set audio mute ") + QLatin1String(mute ? "true" : "false"),
                  QStringLiteral("[DBG] THREAD bool ZelAudioManager::isAttOn() LINE --")}));
    QCOMPARE(manager->isAttOn(), false);
    QVERIFY(!managerstate::muteTimer(*manager).isActive());
}

void ZelAudioManagerMuteTest::muteAndAttenuation()
{
    start();
    manager->setMute(false);
    QCOMPARE(takeCalls(), QStringList());
    manager->setMute(true);
    QCOMPARE(takeCalls(), muted());
    manager->setMute(true);
    QCOMPARE(takeCalls(), QStringList());
    log->take();
    manager->triggerAtt();
    QCOMPARE(takeCalls(), audible());
    QCOMPARE(takeManagerLines().constFirst(), QStringLiteral("[DBG] THREAD void ZelAudioManager::triggerAtt() LINE --"));
    QCOMPARE(manager->isAttOn(), false);
    manager->triggerAtt();
    QCOMPARE(takeCalls(), muted());
    QCOMPARE(manager->isAttOn(), true);
    manager->deMute();
    QCOMPARE(takeCalls(), audible());
    manager->deMute();
    QCOMPARE(takeCalls(), QStringList());
    log->take();
    manager->setMute(false);
    QCOMPARE(takeManagerLines(), QStringList{QStringLiteral("[DBG] THREAD void ZelAudioManager::setMute(bool) LINE -- false")});
}

void ZelAudioManagerMuteTest::muteIsRememberedWhenThePlatformRefuses()
{
    start();
    QVERIFY(platform->faults()->fail(QStringLiteral("Volume.muteTrack"), 7));
    manager->setMute(true);
    QCOMPARE(takeCalls(), QStringList({QStringLiteral("Volume.muteTrack(\"main\", 0) -> 7"), QStringLiteral("Volume.muteTrack(\"alternative\", 0) -> 7")}));
    QCOMPARE(manager->isAttOn(), true);
    platform->faults()->clear();
}

void ZelAudioManagerMuteTest::reverseGear()
{
    store(QStringLiteral("Volume/1"), 10);
    start();
    manager->updateAudioChannel(AudioChannelBtAudio);
    takeCalls();
    log->take();
    manager->onRecvBackCar(true);
    QCOMPARE(takeCalls(), ducked);
    QCOMPARE(takeManagerLines(),
             QStringList({QStringLiteral("[DBG] THREAD void ZelAudioManager::onRecvBackCar(bool) LINE -- true"),
                          QStringLiteral("[DBG] THREAD void ZelAudioManager::cpDuckAudio(int, int) LINE --"),
                          QStringLiteral("[DBG] THREAD void ZelAudioManager::duck(int) LINE -- 0 40")}));
    clock->advance(999);
    QCOMPARE(takeCalls(), QStringList());
    clock->advance(1);
    QCOMPARE(takeCalls(), calls::streamVolume(QStringLiteral("BT_AUDIO_Track"), 40));
    QCOMPARE(int(managerstate::currentStatus(*manager)), 10);
    manager->onRecvBackCar(false);
    QCOMPARE(takeCalls(), QStringList());
    clock->advance(499);
    QCOMPARE(takeCalls(), QStringList());
    clock->advance(1);
    QCOMPARE(takeCalls(), calls::streamVolume(QStringLiteral("BT_AUDIO_Track"), 80) + restored);
    QCOMPARE(int(managerstate::currentStatus(*manager)), 11);
}

void ZelAudioManagerMuteTest::reverseGearOutWithinOneSecond()
{
    start();
    manager->updateAudioChannel(AudioChannelBtAudio);
    takeCalls();
    manager->onRecvBackCar(true);
    clock->advance(999);
    manager->onRecvBackCar(false);
    QCOMPARE(takeCalls(), ducked);
    // As after an unduck: an alert would show in the status only.
    clock->advance(1);
    QCOMPARE(int(managerstate::currentStatus(*manager)), 0);
    clock->advance(498);
    QCOMPARE(takeCalls(), QStringList());
    QCOMPARE(int(managerstate::currentStatus(*manager)), 0);
    clock->advance(1);
    QCOMPARE(takeCalls(), calls::streamVolume(QStringLiteral("BT_AUDIO_Track"), 80) + restored);
    QCOMPARE(int(managerstate::currentStatus(*manager)), 11);
}

void ZelAudioManagerMuteTest::reverseGearComesFromTheMcuService()
{
    start();
    platform->setReverseGear(true);
    QCOMPARE(takeCalls(), ducked);
    platform->setReverseGear(true); // reported again: ducked again
    QCOMPARE(takeCalls(), ducked);
    platform->setReverseGear(false);
    QCOMPARE(takeCalls(), QStringList());
    clock->advance(500);
    QCOMPARE(takeCalls().mid(3), restored);
    // A manager that is gone is not told.
    manager.reset();
    platform->setReverseGear(true);
    QCOMPARE(takeCalls(), QStringList());
}

void ZelAudioManagerMuteTest::hiCarCall()
{
    store(QStringLiteral("Volume/1"), 10);
    store(QStringLiteral("Volume/5"), 12);
    start();
    manager->setHCconnect(true);
    QCOMPARE(takeCalls(),
             QStringList({QStringLiteral("Volume.create() -> ok"),
                          QStringLiteral("Volume.setTrackVolume(\"main\", \"hicar_voice_callmodemspeaker10\", 72) -> 0"),
                          QStringLiteral("Volume.setAlterTrackVolume(72) -> 0"),
                          QStringLiteral("Volume.destroy()")}));
    manager->setHCconnect(false);
    QCOMPARE(takeCalls(), calls::fresh(QStringLiteral("Volume.setAlterTrackVolume(60) -> 0")));
    QCOMPARE(takeManagerLines(),
             QStringList({QStringLiteral("[DBG] THREAD void ZelAudioManager::setHCconnect(bool) LINE -- true"),
                          QStringLiteral("[DBG] THREAD void ZelAudioManager::setHCconnect(bool) LINE -- false")}));
}

POLICY_TEST_MAIN(ZelAudioManagerMuteTest)

#include "tst_zelaudiomanager_mute.moc"

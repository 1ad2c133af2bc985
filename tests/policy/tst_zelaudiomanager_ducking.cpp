#include "policytest.h"

#include <journal.h>

#include <qzaudio/audiocontrol.h>

#include <limits>

namespace
{

const QStringList ducked = calls::fresh(QStringLiteral("Volume.setDuckingMode(1) -> 0")) + calls::fresh(QStringLiteral("Volume.setDuckingTargetGain(60) -> 0"));
const QStringList restored = calls::fresh(QStringLiteral("Volume.setDuckingMode(0) -> 0"));

/// Prompts (type 1) at 10 and media (type 0) at 20 tell the statuses apart.
QStringList promptVolume(const char *source)
{
    return calls::streamVolume(QLatin1String(source), 40);
}

QStringList mediaVolume(const char *source)
{
    return calls::streamVolume(QLatin1String(source), 80);
}

} // namespace

class ZelAudioManagerDuckingTest : public PolicyTest
{
    Q_OBJECT

private Q_SLOTS:
    void duck_data();
    void duck();
    void duckSetsTheModesInOrder();
    void unDuck();
    void androidAuto();
    void carLife();
    void carPlayAlertComesAfterOneSecond();
    void carPlayRestoreComesAfterHalfASecond();
    void unduckWithinOneSecondNeverAppliesTheAlert();
    void unduckAtOneSecondComesAfterTheAlert();
    void duckWithinHalfASecondKeepsTheAudioDucked();
    void duckAtHalfASecondComesAfterTheRestore();
    void repeatedDuckRestartsTheAlert();
    void repeatedUnduckRestartsTheRestore();
    void reportedStatusStopsTheAlert();
    void reportedStatusKeepsTheRestore();
    void secondPromptWithinHalfASecondAppliesNothingNew();
    void secondPromptAfterARestoreAppliesTheAlertAgain();
    void restoreDuringACarPlayCall();
    void unduckWithoutDuck();
    void projectionDucksLeaveTheTimersAlone();
    void connectionIsRemembered();
    void onlyLogged();

private:
    void startOnCarPlay();
};

void ZelAudioManagerDuckingTest::startOnCarPlay()
{
    store(QStringLiteral("Volume/1"), 10);
    start();
    manager->updateAudioChannel(AudioChannelCarPlayMedia);
    takeCalls();
    log->take();
}

void ZelAudioManagerDuckingTest::duck_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<int>("mediaVolume");
    QTest::addColumn<QString>("logged");
    QTest::newRow("level 0") << 0 << 20 << QStringLiteral("0 40");
    QTest::newRow("level 40") << 40 << 20 << QStringLiteral("40 40");
    QTest::newRow("a level beyond a byte") << 300 << 25 << QStringLiteral("300 50");
    QTest::newRow("a negative level") << -1 << 0 << QStringLiteral("-1 0");
    QTest::newRow("a volume whose double no int holds") << 1 << std::numeric_limits<int>::max() << QStringLiteral("1 -2");
}

void ZelAudioManagerDuckingTest::duck()
{
    QFETCH(int, level);
    QFETCH(int, mediaVolume);
    QFETCH(QString, logged);
    store(QStringLiteral("Volume/0"), mediaVolume);
    start();
    manager->duck(level);
    QCOMPARE(takeCalls(), ducked); // the gain is 60 whatever the level
    QCOMPARE(takeManagerLines(), QStringList{QStringLiteral("[DBG] THREAD void ZelAudioManager::duck(int) LINE -- ") + logged});
    QVERIFY(!managerstate::cpAlertTimer(*manager).isActive());
    QCOMPARE(managerstate::cpDucking(*manager), false);
}

void ZelAudioManagerDuckingTest::duckSetsTheModesInOrder()
{
    start();
    audio::AudioControl *control = audio::AudioControl::getInstance();
    control->setAlterMode(false);
    QStringList modes;
    const QMetaObject::Connection watch
        = connect(platform->journal(), &simulator::Journal::appended, this, [control, list = &modes](const simulator::JournalEntry &entry) {
              if (!entry.isCreate() && !entry.isDestroy())
                  *list += entry.operation + QLatin1String(control->getAlterMode() ? " on" : " off");
          });
    manager->duck(0);
    manager->unDuck();
    disconnect(watch);
    QCOMPARE(modes, QStringList({QStringLiteral("setDuckingMode off"), QStringLiteral("setDuckingTargetGain on"), QStringLiteral("setDuckingMode on")}));
    QCOMPARE(control->getAlterMode(), false);
    takeCalls();
}

void ZelAudioManagerDuckingTest::unDuck()
{
    start();
    manager->unDuck();
    QCOMPARE(takeCalls(), restored);
    QCOMPARE(takeManagerLines(), QStringList{QStringLiteral("[DBG] THREAD void ZelAudioManager::unDuck() LINE --")});
    QCOMPARE(audio::AudioControl::getInstance()->getAlterMode(), false);
}

void ZelAudioManagerDuckingTest::androidAuto()
{
    startOnCarPlay();
    manager->aaDuckAudio(1, 2);
    QCOMPARE(takeCalls(), ducked + promptVolume("S+AndroidAuto"));
    QCOMPARE(takeManagerLines().mid(0, 2),
             QStringList({QStringLiteral("[DBG] THREAD void ZelAudioManager::aaDuckAudio(int, int) LINE -- AA duck"),
                          QStringLiteral("[DBG] THREAD void ZelAudioManager::duck(int) LINE -- 40 40")}));
    QCOMPARE(int(managerstate::currentStatus(*manager)), 0);
    manager->aaUnduckAudio(3);
    QCOMPARE(takeCalls(), mediaVolume("S+AndroidAuto") + restored);
    QCOMPARE(takeManagerLines().constFirst(), QStringLiteral("[DBG] THREAD void ZelAudioManager::aaUnduckAudio(int) LINE -- AA unduck"));
    QCOMPARE(int(managerstate::currentStatus(*manager)), 0);
    clock->advance(10000);
    QCOMPARE(takeCalls(), QStringList());
}

void ZelAudioManagerDuckingTest::carLife()
{
    startOnCarPlay();
    manager->clDuckAudio(1, 2);
    QCOMPARE(takeCalls(), ducked + promptVolume("S+CarLife"));
    QCOMPARE(takeManagerLines().mid(0, 2),
             QStringList({QStringLiteral("[DBG] THREAD void ZelAudioManager::clDuckAudio(int, int) LINE -- CL duck"),
                          QStringLiteral("[DBG] THREAD void ZelAudioManager::duck(int) LINE -- 40 40")}));
    QCOMPARE(int(managerstate::currentStatus(*manager)), 0);
    manager->clUnduckAudio(3);
    QCOMPARE(takeCalls(), mediaVolume("S+CarLife") + restored);
    QCOMPARE(takeManagerLines().constFirst(), QStringLiteral("[DBG] THREAD void ZelAudioManager::clUnduckAudio(int) LINE -- AA unduck"));
    QCOMPARE(int(managerstate::currentStatus(*manager)), 0);
    clock->advance(10000);
    QCOMPARE(takeCalls(), QStringList());
}

void ZelAudioManagerDuckingTest::carPlayAlertComesAfterOneSecond()
{
    startOnCarPlay();
    manager->cpDuckAudio(0, 30);
    QCOMPARE(takeCalls(), ducked);
    QCOMPARE(managerstate::cpDucking(*manager), true);
    QCOMPARE(takeManagerLines(),
             QStringList({QStringLiteral("[DBG] THREAD void ZelAudioManager::cpDuckAudio(int, int) LINE --"),
                          QStringLiteral("[DBG] THREAD void ZelAudioManager::duck(int) LINE -- 30 40")}));
    clock->advance(999);
    QCOMPARE(takeCalls(), QStringList());
    QCOMPARE(int(managerstate::currentStatus(*manager)), 0);
    clock->advance(1);
    QCOMPARE(takeCalls(), promptVolume("S+CarPlayMedia"));
    QCOMPARE(int(managerstate::currentStatus(*manager)), 10);
    QCOMPARE(takeManagerLines().mid(0, 2),
             QStringList({QStringLiteral("[DBG] THREAD void ZelAudioManager::_handleNotComeCpAlte() LINE --"),
                          QStringLiteral("[DBG] THREAD void ZelAudioManager::updateAudioStatus(AudioStatus) LINE -- 10")}));
    clock->advance(100000);
    QCOMPARE(takeCalls(), QStringList());
}

void ZelAudioManagerDuckingTest::carPlayRestoreComesAfterHalfASecond()
{
    startOnCarPlay();
    manager->cpDuckAudio(0, 0);
    clock->advance(1000);
    takeCalls();
    log->take();
    manager->cpUnduckAudio(0);
    QCOMPARE(managerstate::cpDucking(*manager), false);
    QCOMPARE(takeManagerLines(), QStringList{QStringLiteral("[DBG] THREAD void ZelAudioManager::cpUnduckAudio(int) LINE -- 10")});
    QCOMPARE(takeCalls(), QStringList());
    clock->advance(499);
    QCOMPARE(takeCalls(), QStringList());
    clock->advance(1);
    QCOMPARE(takeCalls(), mediaVolume("S+CarPlayMedia") + restored);
    QCOMPARE(int(managerstate::currentStatus(*manager)), 11);
    QCOMPARE(takeManagerLines().constFirst(), QStringLiteral("[DBG] THREAD void ZelAudioManager::_delayCpTruelyUnduck() LINE --"));
    clock->advance(100000);
    QCOMPARE(takeCalls(), QStringList());
}

void ZelAudioManagerDuckingTest::unduckWithinOneSecondNeverAppliesTheAlert()
{
    startOnCarPlay();
    manager->cpDuckAudio(0, 0);
    clock->advance(999);
    manager->cpUnduckAudio(0);
    takeCalls();
    // The alert, were it still to come, would come without a sound: the audio is not ducked any more. Its status would tell.
    clock->advance(1);
    QCOMPARE(int(managerstate::currentStatus(*manager)), 0);
    clock->advance(498);
    QCOMPARE(takeCalls(), QStringList());
    QCOMPARE(int(managerstate::currentStatus(*manager)), 0);
    clock->advance(1);
    QCOMPARE(takeCalls(), mediaVolume("S+CarPlayMedia") + restored);
    QCOMPARE(int(managerstate::currentStatus(*manager)), 11);
}

void ZelAudioManagerDuckingTest::unduckAtOneSecondComesAfterTheAlert()
{
    startOnCarPlay();
    manager->cpDuckAudio(0, 0);
    takeCalls();
    clock->advance(1000);
    manager->cpUnduckAudio(0);
    QCOMPARE(takeCalls(), promptVolume("S+CarPlayMedia"));
    clock->advance(500);
    QCOMPARE(takeCalls(), mediaVolume("S+CarPlayMedia") + restored);
}

void ZelAudioManagerDuckingTest::duckWithinHalfASecondKeepsTheAudioDucked()
{
    startOnCarPlay();
    manager->cpDuckAudio(0, 0);
    clock->advance(200);
    manager->cpUnduckAudio(0);
    clock->advance(499);
    takeCalls();
    manager->cpDuckAudio(0, 0);
    QCOMPARE(takeCalls(), ducked);
    clock->advance(1); // the restore's deadline
    QCOMPARE(takeCalls(), QStringList());
    QCOMPARE(platform->chip()->isDucked(), true);
    clock->advance(998);
    QCOMPARE(takeCalls(), QStringList());
    clock->advance(1); // one second after the second duck
    QCOMPARE(takeCalls(), promptVolume("S+CarPlayMedia"));
    clock->advance(100000);
    QCOMPARE(takeCalls(), QStringList());
}

void ZelAudioManagerDuckingTest::duckAtHalfASecondComesAfterTheRestore()
{
    startOnCarPlay();
    manager->cpDuckAudio(0, 0);
    manager->cpUnduckAudio(0);
    takeCalls();
    clock->advance(500);
    manager->cpDuckAudio(0, 0);
    QCOMPARE(takeCalls(), mediaVolume("S+CarPlayMedia") + restored + ducked);
}

void ZelAudioManagerDuckingTest::repeatedDuckRestartsTheAlert()
{
    startOnCarPlay();
    manager->cpDuckAudio(0, 0);
    clock->advance(600);
    manager->cpDuckAudio(0, 0);
    takeCalls();
    clock->advance(999);
    QCOMPARE(takeCalls(), QStringList());
    clock->advance(1);
    QCOMPARE(takeCalls(), promptVolume("S+CarPlayMedia"));
}

void ZelAudioManagerDuckingTest::repeatedUnduckRestartsTheRestore()
{
    startOnCarPlay();
    manager->cpDuckAudio(0, 0);
    manager->cpUnduckAudio(0);
    clock->advance(400);
    manager->cpUnduckAudio(0);
    takeCalls();
    clock->advance(499);
    QCOMPARE(takeCalls(), QStringList());
    clock->advance(1);
    QCOMPARE(takeCalls(), mediaVolume("S+CarPlayMedia") + restored);
}

void ZelAudioManagerDuckingTest::reportedStatusStopsTheAlert()
{
    startOnCarPlay();
    manager->cpDuckAudio(0, 0);
    clock->advance(500);
    manager->updateAudioStatus(AudioStatusCarPlaySpeech);
    takeCalls();
    clock->advance(10000);
    QCOMPARE(takeCalls(), QStringList());
    QCOMPARE(int(managerstate::currentStatus(*manager)), 8);
    QCOMPARE(platform->chip()->isDucked(), true);
}

void ZelAudioManagerDuckingTest::reportedStatusKeepsTheRestore()
{
    startOnCarPlay();
    manager->cpDuckAudio(0, 0);
    manager->cpUnduckAudio(0);
    clock->advance(100);
    manager->updateAudioStatus(AudioStatusCarPlayRestore);
    takeCalls();
    clock->advance(400);
    QCOMPARE(takeCalls(), restored); // the status is current already
}

void ZelAudioManagerDuckingTest::secondPromptWithinHalfASecondAppliesNothingNew()
{
    startOnCarPlay();
    manager->cpDuckAudio(0, 0);
    clock->advance(1000); // status 10
    manager->cpUnduckAudio(0);
    clock->advance(100);
    manager->cpDuckAudio(0, 0);
    takeCalls();
    clock->advance(10000);
    QCOMPARE(takeCalls(), QStringList());
    QCOMPARE(int(managerstate::currentStatus(*manager)), 10);
}

void ZelAudioManagerDuckingTest::secondPromptAfterARestoreAppliesTheAlertAgain()
{
    startOnCarPlay();
    for (int prompt = 0; prompt < 2; ++prompt) {
        manager->cpDuckAudio(0, 0);
        clock->advance(1000);
        QCOMPARE(takeCalls(), ducked + promptVolume("S+CarPlayMedia"));
        manager->cpUnduckAudio(0);
        clock->advance(500);
        QCOMPARE(takeCalls(), mediaVolume("S+CarPlayMedia") + restored);
    }
}

void ZelAudioManagerDuckingTest::restoreDuringACarPlayCall()
{
    startOnCarPlay();
    manager->updateAudioChannel(AudioChannelCarPlayTelephony);
    manager->cpDuckAudio(0, 0);
    takeCalls();
    clock->advance(1000);
    QCOMPARE(takeCalls(), calls::streamVolume(QStringLiteral("S+CarPlayTelephony"), 60));
    manager->cpUnduckAudio(0);
    clock->advance(500);
    QCOMPARE(takeCalls(), mediaVolume("S+CarPlayMedia") + restored);
}

void ZelAudioManagerDuckingTest::unduckWithoutDuck()
{
    startOnCarPlay();
    manager->cpUnduckAudio(0);
    QCOMPARE(takeCalls(), QStringList());
    clock->advance(500);
    QCOMPARE(takeCalls(), mediaVolume("S+CarPlayMedia") + restored);
}

void ZelAudioManagerDuckingTest::projectionDucksLeaveTheTimersAlone()
{
    startOnCarPlay();
    manager->cpDuckAudio(0, 0);
    clock->advance(400);
    manager->aaDuckAudio(0, 0);
    manager->aaUnduckAudio(0);
    manager->clDuckAudio(0, 0);
    manager->clUnduckAudio(0);
    takeCalls();
    clock->advance(599);
    QCOMPARE(takeCalls(), QStringList());
    clock->advance(1);
    QCOMPARE(takeCalls(), promptVolume("S+CarPlayMedia"));
}

void ZelAudioManagerDuckingTest::connectionIsRemembered()
{
    start();
    QCOMPARE(manager->getCPConnected(), false);
    manager->setCPConnected(true);
    QCOMPARE(manager->getCPConnected(), true);
    manager->setCPConnected(false);
    QCOMPARE(manager->getCPConnected(), false);
    QCOMPARE(takeManagerLines().mid(0, 3),
             QStringList({QStringLiteral("[DBG] THREAD bool ZelAudioManager::getCPConnected() LINE --"),
                          QStringLiteral("[DBG] THREAD void ZelAudioManager::setCPConnected(bool) LINE -- true"),
                          QStringLiteral("[DBG] THREAD bool ZelAudioManager::getCPConnected() LINE --")}));
    QCOMPARE(takeCalls(), QStringList());
}

void ZelAudioManagerDuckingTest::onlyLogged()
{
    start();
    manager->updateCPAAStatus(static_cast<CPAAStatus>(3));
    manager->setCpPhone(true);
    manager->onCarplayAlertStart();
    manager->onCarplayAlertStop();
    QCOMPARE(log->takeTexts(),
             QStringList({QStringLiteral("[DBG] THREAD void ZelAudioManager::updateCPAAStatus(CPAAStatus) LINE -- 3"),
                          QStringLiteral("[DBG] THREAD void ZelAudioManager::setCpPhone(bool) LINE -- true")}));
    QCOMPARE(takeCalls(), QStringList());
    QVERIFY(!managerstate::cpAlertTimer(*manager).isActive());
}

POLICY_TEST_MAIN(ZelAudioManagerDuckingTest)

#include "tst_zelaudiomanager_ducking.moc"

#include "policytest.h"

#include <situationexpectations.h>

#include <limits>

class ZelAudioManagerStatusTest : public PolicyTest
{
    Q_OBJECT

private Q_SLOTS:
    void status_data();
    void status();
    void statusLogs();
    void repeatedStatusOnlyStopsTheCarPlayAlert();
    void carPlayDuckStatusWithoutDuckWritesNothing();
    void statusWithoutChannelUsesAuxIn();
    void restoreDuringCarPlayCallUsesMedia();
    void channel_data();
    void channel();
    void channelLogs();
};

void ZelAudioManagerStatusTest::status_data()
{
    QTest::addColumn<int>("volume");
    QTest::addColumn<QStringList>("expected");
    const auto filePlayer = [](int value) { return calls::streamVolume(QStringLiteral("S+FilePlayer"), value); };
    QTest::newRow("0 is silence") << 0 << filePlayer(0);
    QTest::newRow("1 is 4") << 1 << filePlayer(4);
    QTest::newRow("25, the highest, is 100") << 25 << filePlayer(100);
    QTest::newRow("37 is the most that the platform takes") << 37 << filePlayer(148);
    QTest::newRow("38 is refused") << 38 << QStringList();
    QTest::newRow("63 is refused") << 63 << QStringList();
    QTest::newRow("64 wraps round to silence") << 64 << filePlayer(0);
    QTest::newRow("70 wraps round to 24") << 70 << filePlayer(24);
    QTest::newRow("-1 is 252 and refused") << -1 << QStringList();
    QTest::newRow("-40 wraps round to 96") << -40 << filePlayer(96);
    QTest::newRow("the largest number is 252 and refused") << std::numeric_limits<int>::max() << QStringList();
    QTest::newRow("the smallest number is silence") << std::numeric_limits<int>::min() << filePlayer(0);
}

void ZelAudioManagerStatusTest::status()
{
    QFETCH(int, volume);
    QFETCH(QStringList, expected);
    store(QStringLiteral("Volume/0"), volume);
    start();
    manager->updateAudioChannel(AudioChannelFilePlayer);
    takeCalls();
    manager->updateAudioStatus(static_cast<AudioStatus>(7));
    QCOMPARE(takeCalls(), expected);
}

void ZelAudioManagerStatusTest::statusLogs()
{
    start();
    manager->updateAudioStatus(static_cast<AudioStatus>(2));
    QCOMPARE(takeManagerLines(),
             QStringList({QStringLiteral("[DBG] THREAD void ZelAudioManager::updateAudioStatus(AudioStatus) LINE -- 2"),
                          QStringLiteral("[DBG] THREAD void ZelAudioManager::_handleVolumeTypeChanged(AudioStatus) LINE -- "
                                         "_handleVolumeTypeChanged status: 2"),
                          QStringLiteral("[DBG] THREAD void ZelAudioManager::_handleVolumeTypeChanged(AudioStatus) LINE -- "
                                         "Auto adjust volume when audio status changed 0 \"S+BtPcmPhone\" 80")}));
    QCOMPARE(takeCalls(), calls::streamVolume(QStringLiteral("S+BtPcmPhone"), 120));
}

void ZelAudioManagerStatusTest::repeatedStatusOnlyStopsTheCarPlayAlert()
{
    start();
    manager->updateAudioStatus(AudioStatusCarPlaySpeech);
    manager->cpDuckAudio(0, 0);
    takeCalls();
    QVERIFY(managerstate::cpAlertTimer(*manager).isActive());
    manager->updateAudioStatus(AudioStatusCarPlaySpeech);
    QVERIFY(!managerstate::cpAlertTimer(*manager).isActive());
    clock->advance(5000);
    QCOMPARE(takeCalls(), QStringList());
    QCOMPARE(int(managerstate::currentStatus(*manager)), 8);
}

void ZelAudioManagerStatusTest::carPlayDuckStatusWithoutDuckWritesNothing()
{
    start();
    manager->updateAudioChannel(AudioChannelCarPlayMedia);
    takeCalls();
    log->take();
    manager->updateAudioStatus(AudioStatusCarPlayDuck);
    QCOMPARE(takeCalls(), QStringList());
    QCOMPARE(takeManagerLines(),
             QStringList({QStringLiteral("[DBG] THREAD void ZelAudioManager::updateAudioStatus(AudioStatus) LINE -- 10"),
                          QStringLiteral("[DBG] THREAD void ZelAudioManager::_handleVolumeTypeChanged(AudioStatus) LINE -- "
                                         "_handleVolumeTypeChanged status: 10"),
                          QStringLiteral("[DBG] THREAD void ZelAudioManager::_handleVolumeTypeChanged(AudioStatus) LINE -- "
                                         "Click the key on the dial-up keyboard from the mobile phone and send message")}));
    // It is the current status all the same: a duck finds nothing to apply.
    QCOMPARE(int(managerstate::currentStatus(*manager)), 10);
    manager->cpDuckAudio(0, 0);
    takeCalls();
    clock->advance(1000);
    QCOMPARE(takeCalls(), QStringList());
}

void ZelAudioManagerStatusTest::statusWithoutChannelUsesAuxIn()
{
    start();
    manager->updateAudioStatus(static_cast<AudioStatus>(7));
    QCOMPARE(takeCalls(), calls::streamVolume(QStringLiteral("S+AuxIn"), 120));
    QVERIFY(takeManagerLines().contains(QStringLiteral("[DBG] THREAD void ZelAudioManager::_handleVolumeTypeChanged(AudioStatus) LINE -- "
                                                       "Use the main sound channel temporarily")));
    QCOMPARE(manager->currentAudioChannel(), 0);
}

void ZelAudioManagerStatusTest::restoreDuringCarPlayCallUsesMedia()
{
    start();
    manager->updateAudioChannel(AudioChannelCarPlayTelephony);
    takeCalls();
    log->take();
    manager->updateAudioStatus(AudioStatusCarPlayRestore);
    QCOMPARE(takeCalls(), calls::streamVolume(QStringLiteral("S+CarPlayMedia"), 80));
    QVERIFY(takeManagerLines().contains(
        QStringLiteral("[DBG] THREAD void ZelAudioManager::_handleVolumeTypeChanged(AudioStatus) LINE -- Navi end when cp taking")));
    QCOMPARE(manager->currentAudioChannel(), 7);
}

void ZelAudioManagerStatusTest::channel_data()
{
    QTest::addColumn<int>("channel");
    QTest::addColumn<QString>("source");
    QTest::addColumn<bool>("setsEqualizer");
    const auto add = [](int channel, const expectation::Source &source, bool setsEqualizer) {
        QTest::addRow("channel %d", channel) << channel << QString::fromLatin1(source.platformName) << setsEqualizer;
    };
    for (int channel = 0; channel < expectation::channelCount; ++channel)
        add(channel, expectation::channel(channel).source, expectation::channel(channel).setsEqualizer);
    add(expectation::channelCount, expectation::noSource, false);
    add(-1, expectation::noSource, false);
}

void ZelAudioManagerStatusTest::channel()
{
    QFETCH(int, channel);
    QFETCH(QString, source);
    QFETCH(bool, setsEqualizer);
    start();
    manager->updateAudioChannel(static_cast<AudioChannel>(channel));
    QStringList expected = calls::fresh(QStringLiteral("Source.setOutputSource(\"main\", \"%1\") -> 0").arg(source));
    if (setsEqualizer)
        expected += calls::equalizer(calls::curveOf(2.0F));
    QCOMPARE(takeCalls(), expected); // and no volume
    QCOMPARE(manager->currentAudioChannel(), channel);
    QVERIFY(!managerstate::firstEqTimer(*manager).isActive());
    // Reported again, all of it happens again.
    manager->updateAudioChannel(static_cast<AudioChannel>(channel));
    QCOMPARE(takeCalls(), expected);
}

void ZelAudioManagerStatusTest::channelLogs()
{
    start();
    manager->updateAudioChannel(AudioChannelCarLife);
    QCOMPARE(takeManagerLines().mid(0, 2),
             QStringList({QStringLiteral("[DBG] THREAD void ZelAudioManager::updateAudioChannel(AudioChannel) LINE -- Update Audio Channel 17"),
                          QStringLiteral("[DBG] THREAD void ZelAudioManager::updateAudioChannel(AudioChannel) LINE -- reset eq")}));
    QCOMPARE(manager->currentAudioChannel(), 17);
    QCOMPARE(takeManagerLines(), QStringList{QStringLiteral("[DBG] THREAD int ZelAudioManager::currentAudioChannel() LINE -- 17")});
}

POLICY_TEST_MAIN(ZelAudioManagerStatusTest)

#include "tst_zelaudiomanager_status.moc"

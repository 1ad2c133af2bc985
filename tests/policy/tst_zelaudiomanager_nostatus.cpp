#include "policytest.h"

#include <limits>

/// Numbers that are no status, from a client of another version.
class ZelAudioManagerNoStatusTest : public PolicyTest
{
    Q_OBJECT

private Q_SLOTS:
    void setsTheVolumeOfMedia_data();
    void setsTheVolumeOfMedia();
    void stepsWhatTheChannelSays_data() { setsTheVolumeOfMedia_data(); }
    void stepsWhatTheChannelSays();
};

void ZelAudioManagerNoStatusTest::setsTheVolumeOfMedia_data()
{
    QTest::addColumn<int>("status");
    QTest::newRow("one less than the lowest") << -1;
    QTest::newRow("one more than the highest") << 20;
    QTest::newRow("the smallest number") << std::numeric_limits<int>::min();
    QTest::newRow("the largest number") << std::numeric_limits<int>::max();
}

void ZelAudioManagerNoStatusTest::setsTheVolumeOfMedia()
{
    QFETCH(int, status);
    store(QStringLiteral("Volume/0"), 10);
    start();
    manager->updateAudioChannel(AudioChannelFilePlayer);
    takeCalls();
    manager->updateAudioStatus(static_cast<AudioStatus>(status));
    QCOMPARE(takeCalls(), calls::streamVolume(QStringLiteral("S+FilePlayer"), 40));
    // The main track's, too.
    manager->setVolume(ZelAudioTypeMedia, 11, false);
    const QStringList changes = takeCalls().filter(QStringLiteral("setTrackVolume"));
    QVERIFY(!changes.isEmpty());
    QCOMPARE(changes.filter(QStringLiteral("setTrackVolume(\"main\", ")).size(), changes.size());
}

void ZelAudioManagerNoStatusTest::stepsWhatTheChannelSays()
{
    QFETCH(int, status);
    store(QStringLiteral("Volume/0"), 10);
    start();
    manager->updateAudioStatus(static_cast<AudioStatus>(status));
    manager->updateAudioChannel(AudioChannelFilePlayer);
    manager->updateCurrentAudioVolume(true);
    QCOMPARE(takeVolumeChanges(), (QList<VolumeChange>{{false, 11, ZelAudioTypeMedia}}));
    manager->updateAudioChannel(AudioChannelBtRingtone);
    manager->updateCurrentAudioVolume(true);
    QCOMPARE(takeVolumeChanges(), QList<VolumeChange>());
}

POLICY_TEST_MAIN(ZelAudioManagerNoStatusTest)
#include "tst_zelaudiomanager_nostatus.moc"

#include "policytest.h"

/// In a process of its own, and in one function: that the first channel was seen is remembered by the process.
class ZelAudioManagerFirstChannelTest : public PolicyTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { } // the first channel is reported here in the other programs
    void equalizerAfterPowerOn();

private:
    void becomesFilePlayer();
    void laterChannels();
};

namespace
{

QStringList route(const char *platformSource)
{
    return calls::fresh(QStringLiteral("Source.setOutputSource(\"main\", \"%1\") -> 0").arg(QLatin1String(platformSource)));
}

} // namespace

void ZelAudioManagerFirstChannelTest::becomesFilePlayer()
{
    const QTimer &timer = managerstate::firstEqTimer(*manager);
    const QStringList equalizer = calls::equalizer(calls::curveOf(2.0F));

    manager->updateAudioChannel(AudioChannelFilePlayer);
    QCOMPARE(takeCalls(), route("S+FilePlayer") + equalizer);
    QVERIFY(timer.isActive());
    clock->advance(1999);
    QCOMPARE(takeCalls(), QStringList());
    clock->advance(1);
    QCOMPARE(takeCalls(), equalizer);
    QVERIFY(!timer.isActive());
    clock->advance(100000);
    QCOMPARE(takeCalls(), QStringList());
}

void ZelAudioManagerFirstChannelTest::laterChannels()
{
    manager->updateAudioChannel(AudioChannelFilePlayer);
    QCOMPARE(takeCalls(), route("S+FilePlayer") + calls::equalizer(calls::curveOf(2.0F)));
    QVERIFY(!managerstate::firstEqTimer(*manager).isActive());
    manager->updateAudioChannel(AudioChannelBtAudio);
    QCOMPARE(takeCalls(), route("BT_AUDIO_Track"));
    QVERIFY(!managerstate::firstEqTimer(*manager).isActive());
}

void ZelAudioManagerFirstChannelTest::equalizerAfterPowerOn()
{
    start();
    manager->updateAudioChannel(AudioChannelNone);
    QCOMPARE(takeCalls(), route("S+none"));
    QVERIFY(!managerstate::firstEqTimer(*manager).isActive());
    manager->updateAudioChannel(AudioChannelNone);
    QCOMPARE(takeCalls(), route("S+none"));

    becomesFilePlayer();
    if (QTest::currentTestFailed())
        return;
    laterChannels();
    if (QTest::currentTestFailed())
        return;

    // The process remembers, whatever becomes of the manager.
    start();
    laterChannels();
}

POLICY_TEST_MAIN(ZelAudioManagerFirstChannelTest)

#include "tst_zelaudiomanager_firstchannel.moc"

#include "player.h"
#include "somebody.h"

#include <qzaudio/focusrequester.h>

#include <QtTest/QtTest>

class PlayerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void playsOnQuietlyDuringAPrompt();
    void pausesForACall();
    void staysStoppedBehindTheRadio();
    void turnsTheVolume();
};

void PlayerTest::playsOnQuietlyDuringAPrompt()
{
    Player player;
    Somebody navigation(QStringLiteral("navigation"));
    player.play();
    QCOMPARE(player.state(), Player::Playing);
    QVERIFY(navigation.request(AUDIOFOCUS_GAIN_TRANSIENT_MAY_DUCK));
    QCOMPARE(player.state(), Player::Quiet);
    navigation.abandon();
    QCOMPARE(player.state(), Player::Playing);
}

void PlayerTest::pausesForACall()
{
    Player player;
    Somebody telephone(QStringLiteral("IN_VOICE_COMM_FOCUS_ID")); // the one id that nobody takes focus from
    player.play();
    QVERIFY(telephone.request(AUDIOFOCUS_GAIN_TRANSIENT));
    QCOMPARE(player.state(), Player::Paused);
    player.play();
    QCOMPARE(player.state(), Player::Paused);
    telephone.abandon();
    QCOMPARE(player.state(), Player::Playing);
}

void PlayerTest::staysStoppedBehindTheRadio()
{
    Player player;
    Somebody radio(QStringLiteral("radio"));
    player.play();
    QVERIFY(radio.request(AUDIOFOCUS_GAIN));
    QCOMPARE(player.state(), Player::Stopped);
    QCoreApplication::processEvents(); // here it leaves the stack
    radio.abandon();
    QCOMPARE(player.state(), Player::Stopped);
}

void PlayerTest::turnsTheVolume()
{
    Player player;
    player.play();
    QSignalSpy changed(&player, &Player::volumeChanged);
    const int before = player.volume();
    player.turnVolume(true);
    QCOMPARE(player.volume(), before + 1);
    QCOMPARE(changed.count(), 1);
}

QTEST_GUILESS_MAIN(PlayerTest)
#include "tst_player.moc"

#include "operationtest.h"

#include <QtTest/QtTest>

using audio::AudioControl;

/// Mute of the car, and the rear seats' output.
class AudioControlMuteTest : public OperationTest
{
    Q_OBJECT

private Q_SLOTS:
    void setMute_data();
    void setMute();
    void setBackEarphone_data();
    void setBackEarphone();
    void muteBackEarphone_data();
    void muteBackEarphone();
    void muteAudio_data();
    void muteAudio();
    void silencesTheChip();

private:
    /// Requests one after the other; the result is isMute() after each.
    static Act setMuteTo(const QList<bool> &states);
    static Act onBackEarphone(void (AudioControl::*operation)(bool), bool argument);
    void addBackEarphoneRows(const char *muting, const char *unmuting, void (AudioControl::*operation)(bool), bool mutes);
};

AudioControlMuteTest::Act AudioControlMuteTest::setMuteTo(const QList<bool> &states)
{
    return [states](AudioControl &facade) {
        QVariantList results;
        for (const bool state : states) {
            facade.setMute(state);
            results.append(facade.isMute());
        }
        return results;
    };
}

AudioControlMuteTest::Act AudioControlMuteTest::onBackEarphone(void (AudioControl::*operation)(bool), bool argument)
{
    return [operation, argument](AudioControl &facade) {
        (facade.*operation)(argument);
        return facade.isMute();
    };
}

void AudioControlMuteTest::setMute_data()
{
    const QStringList muted = {R"(Volume.muteTrack("main", 0) -> 0)"_s, R"(Volume.muteTrack("alternative", 0) -> 0)"_s};
    const QStringList unmuted = {R"(Volume.unmuteTrack("main", 0) -> 0)"_s, R"(Volume.unmuteTrack("alternative", 0) -> 0)"_s};
    const QString muteMain = info("set id: main to mute state: true");
    const QString muteAlternative = info("set id: alternative to mute state: true");
    const QString unmuteMain = info("set id: main to mute state: false");
    const QString unmuteAlternative = info("set id: alternative to mute state: false");
    const QString refusal = error("set back earphone error 7"); // also for these tracks

    addColumns();
    addRow("off on a fresh facade does nothing", {}, setMuteTo({false}), QVariantList{false}, {}, {});
    addRow("on: main, then alternative", {}, setMuteTo({true}), QVariantList{true}, muted, {muteMain, muteAlternative});
    addRow("on twice mutes once", {}, setMuteTo({true, true}), QVariantList{true, true}, muted, {muteMain, muteAlternative});
    addRow("on and off", {}, setMuteTo({true, false}), QVariantList{true, false}, muted + unmuted, {muteMain, muteAlternative, unmuteMain, unmuteAlternative});
    addRow("on, off, off",
           {},
           setMuteTo({true, false, false}),
           QVariantList{true, false, false},
           muted + unmuted,
           {muteMain, muteAlternative, unmuteMain, unmuteAlternative});
    addRow("the platform refuses both; the state changes all the same",
           {refused("Volume.muteTrack", 7)},
           setMuteTo({true}),
           QVariantList{true},
           {R"(Volume.muteTrack("main", 0) -> 7)"_s, R"(Volume.muteTrack("alternative", 0) -> 7)"_s},
           {muteMain, refusal, muteAlternative, refusal});
    addRow("the platform refuses main",
           {refusedOnce("Volume.muteTrack", 7, 1)},
           setMuteTo({true}),
           QVariantList{true},
           {R"(Volume.muteTrack("main", 0) -> 7)"_s, R"(Volume.muteTrack("alternative", 0) -> 0)"_s},
           {muteMain, refusal, muteAlternative});
    addRow("the platform refuses alternative",
           {refusedOnce("Volume.muteTrack", 7, 2)},
           setMuteTo({true}),
           QVariantList{true},
           {R"(Volume.muteTrack("main", 0) -> 0)"_s, R"(Volume.muteTrack("alternative", 0) -> 7)"_s},
           {muteMain, muteAlternative, refusal});
    addRow("a refused mute is not tried again",
           {refused("Volume.muteTrack", 7)},
           setMuteTo({true, true}),
           QVariantList{true, true},
           {R"(Volume.muteTrack("main", 0) -> 7)"_s, R"(Volume.muteTrack("alternative", 0) -> 7)"_s},
           {muteMain, refusal, muteAlternative, refusal});
    addRow("the platform refuses to unmute",
           {refused("Volume.unmuteTrack", 7)},
           setMuteTo({true, false}),
           QVariantList{true, false},
           muted + QStringList{R"(Volume.unmuteTrack("main", 0) -> 7)"_s, R"(Volume.unmuteTrack("alternative", 0) -> 7)"_s},
           {muteMain, muteAlternative, unmuteMain, refusal, unmuteAlternative, refusal});
    addRow("without the long-lived Volume",
           {startedWithoutObjects()},
           setMuteTo({true}),
           QVariantList{true},
           {},
           {muteMain, error("set back earphone error -1"), muteAlternative, error("set back earphone error -1")});
    addRow("no Volume is made for it", {noneMade("Volume")}, setMuteTo({true}), QVariantList{true}, muted, {muteMain, muteAlternative});
}

void AudioControlMuteTest::setMute()
{
    checkRow();
}

void AudioControlMuteTest::addBackEarphoneRows(const char *muting, const char *unmuting, void (AudioControl::*operation)(bool), bool mutes)
{
    const QString muteLine = info("set id: second to mute state: true");
    const QString unmuteLine = info("set id: second to mute state: false");

    addColumns();
    addRow(muting, {}, onBackEarphone(operation, mutes), false, {R"(Volume.muteTrack("second", 0) -> 0)"_s}, {muteLine});
    addRow(unmuting, {}, onBackEarphone(operation, !mutes), false, {R"(Volume.unmuteTrack("second", 0) -> 0)"_s}, {unmuteLine});
    addRow("the platform refuses to mute",
           {refused("Volume.muteTrack", -3)},
           onBackEarphone(operation, mutes),
           false,
           {R"(Volume.muteTrack("second", 0) -> -3)"_s},
           {muteLine, error("set back earphone error -3")});
    addRow("the platform refuses to unmute",
           {refused("Volume.unmuteTrack", 7)},
           onBackEarphone(operation, !mutes),
           false,
           {R"(Volume.unmuteTrack("second", 0) -> 7)"_s},
           {unmuteLine, error("set back earphone error 7")});
    addRow("without the long-lived Volume",
           {startedWithoutObjects()},
           onBackEarphone(operation, mutes),
           false,
           {},
           {muteLine, error("set back earphone error -1")});
    const Act twice = [operation, mutes](AudioControl &facade) {
        (facade.*operation)(mutes);
        (facade.*operation)(mutes);
        return QVariant();
    };
    addRow("an unchanged state reaches the platform again",
           {},
           twice,
           QVariant(),
           {R"(Volume.muteTrack("second", 0) -> 0)"_s, R"(Volume.muteTrack("second", 0) -> 0)"_s},
           {muteLine, muteLine});
}

void AudioControlMuteTest::setBackEarphone_data()
{
    addBackEarphoneRows("off mutes the rear seats", "on unmutes them", &AudioControl::setBackEarphone, false);
}

void AudioControlMuteTest::setBackEarphone()
{
    checkRow();
}

void AudioControlMuteTest::muteBackEarphone_data()
{
    addBackEarphoneRows("true mutes the rear seats", "false unmutes them", &AudioControl::muteBackEarphone, true);
}

void AudioControlMuteTest::muteBackEarphone()
{
    checkRow();
}

void AudioControlMuteTest::muteAudio_data()
{
    QTest::addColumn<QByteArray>("track");
    QTest::addColumn<int>("code");
    for (const char *track : {"main", "second", "alternative", "uplink", "input0", "input1", "input2", "main_im"})
        QTest::newRow(track) << QByteArray(track) << 0;
    QTest::newRow("a track that the platform does not know") << QByteArray("attic") << 101;
}

void AudioControlMuteTest::muteAudio()
{
    QFETCH(QByteArray, track);
    QFETCH(int, code);
    const QString name = QString::fromLatin1(track);
    inner->muteAudio(track.constData(), true);
    inner->muteAudio(track.constData(), false);
    QCOMPARE(takeCallsAndLifetimes(),
             (QStringList{R"(Volume.muteTrack("%1", 0) -> %2)"_s.arg(name).arg(code), R"(Volume.unmuteTrack("%1", 0) -> %2)"_s.arg(name).arg(code)}));
    const QStringList failure = code == 0 ? QStringList() : QStringList{error("set back earphone error %1"_s.arg(code))};
    QCOMPARE(log->takeTexts(),
             (QStringList{info("set id: %1 to mute state: true"_s.arg(name))} + failure + QStringList{info("set id: %1 to mute state: false"_s.arg(name))}
              + failure));
    QCOMPARE(inner->mute, false); // setMute()'s business
}

void AudioControlMuteTest::silencesTheChip()
{
    const simulator::AudioChip *const chip = platform->chip();
    control->setMute(true);
    QVERIFY(chip->isMuted("main"_s));
    QVERIFY(chip->isMuted("alternative"_s));
    QVERIFY(!chip->isMuted("second"_s));
    control->setBackEarphone(false);
    QVERIFY(chip->isMuted("second"_s));
    control->setMute(false);
    QVERIFY(!chip->isMuted("main"_s));
    QVERIFY(!chip->isMuted("alternative"_s));
    QVERIFY(chip->isMuted("second"_s));
    control->setBackEarphone(true);
    QVERIFY(!chip->isMuted("second"_s));
}

QTEST_APPLESS_MAIN(AudioControlMuteTest)
#include "tst_audiocontrol_mute.moc"

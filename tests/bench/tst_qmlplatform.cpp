#include "platform.h"
#include "qmlplatform.h"

#include <audiocontroltables.h>
#include <qzaudio/audiocontrol.h>

#include <QtQml/QJSEngine>
#include <QtQml/QQmlEngine>
#include <QtTest/QtTest>

using audio::AudioControl;
using simulator::Platform;

/// The simulated platform as scripts see it.
class QmlPlatformTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void readers_data();
    void readers();
    void journal();
    void faults();
    void theCar();
    void refusals_data();
    void refusals();
    void unknownNames_data();
    void unknownNames();
    void namesInUse();
    void sourcesAreTheLibrarys();
    void resetIsTold();

private:
    QString evaluate(const QString &script);

    QJSEngine engine;
    QmlPlatform platform;
};

void QmlPlatformTest::initTestCase()
{
    QQmlEngine::setObjectOwnership(&platform, QQmlEngine::CppOwnership);
    engine.globalObject().setProperty(QStringLiteral("Platform"), engine.newQObject(&platform));
}

void QmlPlatformTest::init()
{
    Platform::instance()->reset();
    AudioControl *const control = AudioControl::getInstance();
    control->setMasterVolume(100);
    control->setStreamVolume(AudioControl::Main, "S+FilePlayer_APP", 74);
    control->setOutputSource(AudioControl::Main, "S+FilePlayer_APP");
    control->setFadeBalance(0, 5);
    control->setSpeakerDealy(AudioControl::LeftFront, 1.5F);
    control->setEqGain({4.8F, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, -12});
}

QString QmlPlatformTest::evaluate(const QString &script)
{
    return engine.evaluate(script).toString();
}

void QmlPlatformTest::readers_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *script, const char *expected) { QTest::newRow(script) << QString::fromLatin1(script) << QString::fromLatin1(expected); };
    row("Platform.masterVolume()", "100");
    row("Platform.trackVolume('main', 'S+FilePlayer')", "74");
    row("Platform.activeSource('main')", "\"S+FilePlayer\"");
    row("Platform.outputSource('main')", "\"S+FilePlayer\"");
    row("[1, 2, 4, 8].map(c => Platform.channelGain(c))", "[100,67,100,67]");
    row("Platform.effectiveGain('main', 'S+FilePlayer', 1)", "0.5");
    row("Platform.effectiveSound('main', 'S+FilePlayer', 1, 0)", "{\"delay\":1.5,\"equalizer\":4.8,\"gain\":0.5}");
    row("Platform.effectiveSound('main', 'S+FilePlayer', 2, 15)", "{\"delay\":0,\"equalizer\":-12,\"gain\":0.335}");
    row("Platform.effectiveMainVolume()", "74");
    row("Platform.equalizerGain(1, 0)", "4.8");
    row("Platform.lastExtEqParameter().gain[15]", "-12");
    row("Platform.lastEqParameter().channel", "0");
    row("Platform.isMuted('second')", "false");
    row("Platform.isDucked()", "false");
    row("Platform.setDownlinkDelay(-5), Platform.downlinkDelay()", "-5");
    row("Platform.setCalibrationGains(3, 4), Platform.calibrationGains()", "[3,4]");
    row("Platform.setMicrophoneTest([1, 2, 3, 4, 5, 6, 7, 65535]), Platform.microphoneTest()", "[1,2,3,4,5,6,7,65535]");
    row("Platform.setAlternativeCount(2), Platform.alternativeCount('alternative')", "2");
    row("Platform.setActiveSource('second', 'S+Radio'), Platform.activeSource('second')", "\"S+Radio\"");
    row("Platform.filter(1)", "{}");
    row("Platform.inputSelectPin(1)", "0");
    row("Platform.state()[0]", "{\"group\":\"volume\",\"name\":\"master\",\"value\":100}");
    row("Platform.alive('Source')", "0");
    row("Platform.problems().length", "0");
}

void QmlPlatformTest::readers()
{
    QFETCH(QString, script);
    QFETCH(QString, expected);
    QCOMPARE(evaluate(QStringLiteral("JSON.stringify((%1))").arg(script)), expected);
}

void QmlPlatformTest::journal()
{
    QSignalSpy called(&platform, &QmlPlatform::called);
    QSignalSpy state(&platform, &QmlPlatform::stateChanged);
    evaluate(QStringLiteral("Platform.clearJournal()"));
    AudioControl::getInstance()->setStreamVolume(AudioControl::Main, "S+FilePlayer_APP", 75);
    AudioControl::getInstance()->setStreamVolume(AudioControl::Main, "S+FilePlayer_APP", 75);
    const QString call = QStringLiteral("Volume.setTrackVolume(\"main\", \"S+FilePlayer\", 75) -> 0");
    QCOMPARE(evaluate(QStringLiteral("Platform.journal().join()")), call + QLatin1Char(',') + call);
    QVERIFY(evaluate(QStringLiteral("Platform.journalText()")).contains(QLatin1String("setTrackVolume")));
    int calls = 0;
    for (const QVariantList &arguments : qAsConst(called))
        calls += arguments.first().toString() == call ? 1 : 0;
    QCOMPARE(calls, 2);
    QCOMPARE(state.count(), 1);
}

void QmlPlatformTest::faults()
{
    evaluate(QStringLiteral("Platform.failOnce('Volume.setMasterVolume', 9, 2)"));
    QCOMPARE(AudioControl::getInstance()->setMasterVolume(1), 0);
    QCOMPARE(AudioControl::getInstance()->setMasterVolume(1), -1);
    QCOMPARE(AudioControl::getInstance()->setMasterVolume(1), 0);
    evaluate(QStringLiteral("Platform.fail('Volume.setMasterVolume', 9)"));
    QCOMPARE(AudioControl::getInstance()->setMasterVolume(1), -1);
    QCOMPARE(evaluate(QStringLiteral("Platform.pendingFaults().length")), QStringLiteral("1"));
    evaluate(QStringLiteral("Platform.clearFaults()"));
    QCOMPARE(AudioControl::getInstance()->setMasterVolume(1), 0);
    evaluate(QStringLiteral("Platform.failFactory('Source')"));
    QCOMPARE(AudioControl::getInstance()->getActivedAlterNumber(), -1);
    evaluate(QStringLiteral("Platform.reset()"));
    QCOMPARE(AudioControl::getInstance()->getActivedAlterNumber(), 0);
}

void QmlPlatformTest::theCar()
{
    QSignalSpy gear(&platform, &QmlPlatform::reverseGearChanged);
    QSignalSpy home(&platform, &QmlPlatform::homeUiTypeChanged);
    evaluate(QStringLiteral("Platform.setReverseGear(true); Platform.setHomeUiType(7)"));
    QCOMPARE(evaluate(QStringLiteral("[Platform.reverseGear, Platform.homeUiType].join()")), QStringLiteral("true,7"));
    QCOMPARE(gear.count(), 1);
    QCOMPARE(home.count(), 1);
    evaluate(QStringLiteral("Platform.setReverseGear(false)"));
}

void QmlPlatformTest::refusals_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("error");

    const auto row = [](const char *script, const char *error) { QTest::newRow(script) << QString::fromLatin1(script) << QString::fromLatin1(error); };
    row("Platform.fail('Volume.setVolume', 1)", "RangeError: there is no operation Volume.setVolume to fail with code 1");
    row("Platform.failAfterWriting('Volume.setMasterVolume', 1)",
        "RangeError: there is no operation Volume.setMasterVolume that writes something, to fail with code 1");
    row("Platform.failAfterWriting('Volume.getMasterVolume', 0)",
        "RangeError: there is no operation Volume.getMasterVolume that writes something, to fail with code 0");
    row("Platform.fail('Volume.setMasterVolume', 0)", "RangeError: there is no operation Volume.setMasterVolume to fail with code 0");
    row("Platform.failOnce('Volume.setMasterVolume', 1, 0)", "RangeError: there is no call 0 of an operation Volume.setMasterVolume to fail with code 1");
    row("Platform.failFactory('Speaker')", "RangeError: kind must be App, Mixer, Source or Volume, not Speaker");
    row("Platform.alive('Speaker')", "RangeError: kind must be App, Mixer, Source or Volume, not Speaker");
    row("Platform.setMicrophoneTest([1])", "RangeError: values must be eight numbers, not 1");
    row("Platform.setReverseGear(1)", "TypeError: engaged must be true or false, not 1");
    row("Platform.channelGain(-1)", "RangeError: channel must be a whole number from 0 to 4294967295, not -1");
}

void QmlPlatformTest::refusals()
{
    QFETCH(QString, script);
    QFETCH(QString, error);
    QCOMPARE(evaluate(script), error);
    QCOMPARE(Platform::instance()->faults()->pending(), QStringList());
}

void QmlPlatformTest::unknownNames_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("error");

    const auto row = [](const char *script, const char *error) { QTest::newRow(script) << QString::fromLatin1(script) << QString::fromLatin1(error); };
    const char *const mian = "there is no track \"mian\"; the nearest is \"main\"";
    row("effectiveGain('mian', 'S+FilePlayer', 1)", mian);
    row("effectiveSound('mian', 'S+FilePlayer', 1, 0)", mian);
    row("effectiveGainDb('mian', 'S+FilePlayer', 1, 0)", mian);
    row("trackVolume('mian', 'S+FilePlayer')", mian);
    row("isMuted('mian')", mian);
    row("activeSource('mian')", mian);
    row("setActiveSource('mian', 'S+FilePlayer')", mian);
    row("outputSource('mian')", mian);
    row("outputChannelMask('mian')", mian);
    row("inputDestination('mian')", mian);
    row("alternativeCount('mian')", mian);
    row("isMuted('MAIN')", "there is no track \"MAIN\"; the nearest is \"main\"");
    row("isMuted('input')", "there is no track \"input\"; the nearest is \"input0\"");
    row("isMuted('loudspeaker')", "there is no track \"loudspeaker\"; tracks are main, second, alternative, uplink, input0, input1, input2, main_im");
    row("isMuted('')", "there is no track \"\"; tracks are main, second, alternative, uplink, input0, input1, input2, main_im");
    row("trackVolume('main', 'S+FilePlayer_APP')", "there is no source \"S+FilePlayer_APP\"; the nearest is \"S+FilePlayer\"");
    row("trackVolume('main', 's+fileplayer')", "there is no source \"s+fileplayer\"; the nearest is \"S+FilePlayer\"");
    row("effectiveGain('main', 'S+BtPhone', 1)", "there is no source \"S+BtPhone\"; the nearest is \"S+BtPcmPhone\"");
    row("effectiveSound('main', 'Gramophone', 1, 0)", "there is no source \"Gramophone\"");
    row("effectiveGainDb('main', 'Gramophone', 1, 0)", "there is no source \"Gramophone\"");
    row("effectiveGain('main', 'S+FilePlayer', 3)", "there is no channel 3; the nearest of 1, 2, 4, 8, 16, 32 is 2");
    row("effectiveSound('main', 'S+FilePlayer', 64, 0)", "there is no channel 64; the nearest of 1, 2, 4, 8, 16, 32 is 32");
    row("effectiveGainDb('main', 'S+FilePlayer', 65535, 0)", "there is no channel 65535; the nearest of 1, 2, 4, 8, 16, 32 is 32");
    row("equalizerGain(0, 0)", "there is no channel 0; the nearest of 1, 2, 4, 8, 16, 32 is 1");
    row("channelGain(7)", "there is no channel 7; the nearest of 1, 2, 4, 8, 16, 32 is 8");
    row("filter(5)", "there is no channel 5; the nearest of 1, 2, 4, 8, 16, 32 is 4");
    row("speakerDelay(33)", "there is no channel 33; the nearest of 1, 2, 4, 8, 16, 32 is 32");
    row("effectiveSound('main', 'S+FilePlayer', 1, 20)", "there is no band 20; bands are 0 to 19");
    row("effectiveGainDb('main', 'S+FilePlayer', 1, -1)", "there is no band -1; bands are 0 to 19");
    row("equalizerGain(1, 20)", "there is no band 20; bands are 0 to 19");
    row("inputSelectPin(3)", "there is no input 3; the nearest of 1, 2 is 2");
    row("inputSelectPin(0)", "there is no input 0; the nearest of 1, 2 is 1");
}

void QmlPlatformTest::unknownNames()
{
    QFETCH(QString, script);
    QFETCH(QString, error);
    QCOMPARE(evaluate(QLatin1String("Platform.") + script), QLatin1String("RangeError: ") + error);
    QCOMPARE(evaluate(QStringLiteral("Platform.live.") + script), QLatin1String("RangeError: ") + error);
}

void QmlPlatformTest::namesInUse()
{
    simulator::AudioChip *const chip = Platform::instance()->chip();
    const QString unknown = QStringLiteral("RangeError: there is no source \"Gramophone\"");
    const QString script = QStringLiteral("Platform.trackVolume('alternative', 'Gramophone')");
    QCOMPARE(evaluate(script), unknown);
    QCOMPARE(evaluate(QStringLiteral("Platform.trackVolume('main', '')")), QStringLiteral("0"));
    QCOMPARE(evaluate(QStringLiteral("Platform.trackVolume('main', 'S+none')")), QStringLiteral("0"));
    QCOMPARE(chip->setTrackVolume(QStringLiteral("alternative"), QStringLiteral("Gramophone"), 9), 0);
    QCOMPARE(evaluate(script), QStringLiteral("9"));
    QCOMPARE(chip->setAlterTrackVolume(7), 0); // the source has no volume of its own any more, but there is one of that name
    QCOMPARE(evaluate(script), QStringLiteral("7"));
    evaluate(QStringLiteral("Platform.setActiveSource('second', 'Organ')"));
    QCOMPARE(evaluate(QStringLiteral("Platform.trackVolume('main', 'Organ')")), QStringLiteral("0"));
    QCOMPARE(chip->setInputDestination(QStringLiteral("input0"), QStringLiteral("Recorder")), 0);
    QCOMPARE(evaluate(QStringLiteral("Platform.trackVolume('main', 'Recorder')")), QStringLiteral("0"));
    QCOMPARE(evaluate(QStringLiteral("Platform.trackVolume('main', 'Recroder')")),
             QStringLiteral("RangeError: there is no source \"Recroder\"; the nearest is \"Recorder\""));

    // What was there before a script looked is known, too.
    QmlPlatform later;
    QQmlEngine::setObjectOwnership(&later, QQmlEngine::CppOwnership);
    engine.globalObject().setProperty(QStringLiteral("Later"), engine.newQObject(&later));
    QCOMPARE(evaluate(QStringLiteral("Later.trackVolume('main', 'Organ')")), QStringLiteral("0"));
    engine.globalObject().deleteProperty(QStringLiteral("Later"));
}

void QmlPlatformTest::sourcesAreTheLibrarys()
{
    // A script of its own, that has not heard of the names of other tests.
    for (const auto &row : audio::tables::sourceNames)
        QCOMPARE(evaluate(QStringLiteral("Platform.trackVolume('second', '%1')").arg(QLatin1String(row.spName))), QStringLiteral("0"));
    AudioControl::getInstance()->setAlterVolume(3, true);
    QCOMPARE(evaluate(QStringLiteral("Platform.trackVolume('second', 'hicar_voice_callmodemspeaker10')")), QStringLiteral("0"));
}

void QmlPlatformTest::resetIsTold()
{
    AudioControl *const control = AudioControl::getInstance();
    control->setMasterVolume(90);
    evaluate(QStringLiteral("Platform.setReverseGear(true); Platform.setHomeUiType(7); Platform.fail('Volume.setMasterVolume', 9)"));
    QSignalSpy state(&platform, &QmlPlatform::stateChanged);
    QSignalSpy gear(&platform, &QmlPlatform::reverseGearChanged);
    QSignalSpy home(&platform, &QmlPlatform::homeUiTypeChanged);
    QSignalSpy live(&platform, &QmlPlatform::liveChanged);
    evaluate(QStringLiteral("Platform.reset()"));
    QCOMPARE(gear.count(), 1);
    QCOMPARE(home.count(), 1);
    QVERIFY(live.count() > 0);
    const auto told = [&state](const char *group, const char *name) {
        for (const QVariantList &arguments : qAsConst(state)) {
            if (arguments.at(0) == QLatin1String(group) && arguments.at(1) == QLatin1String(name))
                return arguments.at(2).isValid() ? arguments.at(2).toString() : QStringLiteral("no longer set");
        }
        return QStringLiteral("nothing");
    };
    QCOMPARE(told("volume", "master"), QStringLiteral("0"));
    QCOMPARE(told("volume", "main S+FilePlayer"), QStringLiteral("no longer set"));
    QCOMPARE(told("channel gain", "right front"), QStringLiteral("100"));
    QCOMPARE(told("ducking", "mode"), QStringLiteral("nothing"));
    state.clear();
    gear.clear();
    evaluate(QStringLiteral("Platform.reset()"));
    QCOMPARE(state.count(), 0);
    QCOMPARE(gear.count(), 0);
}

QTEST_GUILESS_MAIN(QmlPlatformTest)

#include "tst_qmlplatform.moc"

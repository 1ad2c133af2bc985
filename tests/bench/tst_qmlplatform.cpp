#include "platform.h"
#include "qmlplatform.h"

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

QTEST_GUILESS_MAIN(QmlPlatformTest)

#include "tst_qmlplatform.moc"

#include "platform.h"
#include "qmlaudiocontrol.h"

#include <QtCore/QMetaMethod>
#include <QtQml/QJSEngine>
#include <QtQml/QQmlEngine>
#include <QtTest/QtTest>

using simulator::Platform;

namespace
{

/// The facade's public operations as its header declares them, overloads once.
QStringList declaredOperations()
{
    QFile header(QStringLiteral(AUDIO_CONTROL_HEADER));
    if (!header.open(QIODevice::ReadOnly))
        return {};
    const QString text = QString::fromUtf8(header.readAll());
    const int begin = text.indexOf(QLatin1String("~AudioControl()"));
    const int end = text.indexOf(QLatin1String("private:"));
    const QRegularExpression declaration(QStringLiteral("^    [\\w<>]+ \\*?(\\w+)\\(.*\\);$"), QRegularExpression::MultilineOption);
    QStringList names;
    QRegularExpressionMatchIterator match = declaration.globalMatch(text.mid(begin, end - begin));
    while (match.hasNext())
        names.append(match.next().captured(1));
    names.removeDuplicates();
    names.sort();
    return names;
}

} // namespace

/// The facade as scripts see it: every operation, exact platform calls, and numbers that do not fit.
class QmlAudioControlTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void offersEveryOperation();
    void calls_data();
    void calls();
    void results_data();
    void results();
    void refusals_data();
    void refusals();

private:
    QJSEngine engine;
    QmlAudioControl control;
};

void QmlAudioControlTest::init()
{
    if (!engine.globalObject().hasProperty(QStringLiteral("AudioControl"))) {
        QQmlEngine::setObjectOwnership(&control, QQmlEngine::CppOwnership);
        engine.globalObject().setProperty(QStringLiteral("AudioControl"), engine.newQObject(&control));
        engine.globalObject().setProperty(QStringLiteral("Enumerators"), engine.newQMetaObject(&QmlAudioControl::staticMetaObject));
    }
    Platform::instance()->reset();
}

void QmlAudioControlTest::offersEveryOperation()
{
    const QStringList declared = declaredOperations();
    QVERIFY(declared.contains(QLatin1String("setStepRange")) && declared.contains(QLatin1String("setSpeakerDealy"))); // the first and the last
    QStringList offered;
    const QMetaObject &type = QmlAudioControl::staticMetaObject;
    for (int i = type.methodOffset(); i < type.methodCount(); ++i)
        offered.append(QString::fromLatin1(type.method(i).name()));
    offered.sort();
    QCOMPARE(offered, declared);
}

void QmlAudioControlTest::calls_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QStringList>("expected");

    const auto row = [](const char *script, const QStringList &expected) { QTest::newRow(script) << QString::fromLatin1(script) << expected; };
    const auto text = [](const char *call) { return QString::fromLatin1(call); };
    row("AudioControl.setStreamVolume(Enumerators.Main, 'S+FilePlayer_APP', 80)", {text("Volume.setTrackVolume(\"main\", \"S+FilePlayer\", 80) -> 0")});
    row("AudioControl.setStreamVolume(Enumerators.MainIm, 'S+FilePlayer_APP', 0)", {text("Volume.setTrackVolume(\"main_im\", \"S+FilePlayer\", 0) -> 0")});
    row("AudioControl.setStreamVolume(0, null, 80)", {});
    row("AudioControl.initTrackStepVolume(1, {'S+DiscPlayer_APP': 50})", {text("Volume.setTrackVolume(\"second\", \"S+DiscPlayer\", 50) -> 0")});
    row("AudioControl.setOutputSource(0, 'S+FilePlayer_APP')", {text("Source.setOutputSource(\"main\", \"S+FilePlayer\") -> 0")});
    row("AudioControl.setOutputSource('second', 'S+Radio')", {text("Source.setOutputSource(\"second\", \"S+Radio\") -> 0")});
    row("AudioControl.setOutputFrontSource('main', 'S+Radio', true)",
        {text("Source.setOutputSource(\"main\", \"S+Radio\") -> 0"), text("Source.setOutputChannelMask(3) -> 0"), text("Mixer.setFrontRearMode(0) -> 0")});
    row("AudioControl.setOutputFrontSource(0, 'S+FilePlayer_APP', false)",
        {text("Source.setOutputSource(\"main\", \"S+FilePlayer\") -> 0"),
         text("Source.setOutputChannelMask(15) -> 0"),
         text("Mixer.setFrontRearMode(1) -> 0")});
    row("AudioControl.setInputDestination('input0', 'uplink')", {text("Source.setInputDestination(\"input0\", \"uplink\") -> 0")});
    row("AudioControl.setInputDestination(4, 'BT_MIC_Record')", {text("Source.setInputDestination(\"input0\", \"BT_MIC_Record\") -> 0")});
    row("AudioControl.setAuxinChannel(3)", {text("Source.setInputSelectPin(1, 3) -> 0")});
    row("AudioControl.setI2SINChannel(0)", {text("Source.setInputSelectPin(2, 5) -> 0")});
    row("AudioControl.setMainAudioDunkingMode(4294967295)", {text("Volume.setDuckingMode(4294967295) -> 0")});
    row("AudioControl.setMainAudioDunkingTargetGain(60)", {text("Volume.setDuckingTargetGain(60) -> 0")});
    row("AudioControl.setBackEarphone(false)", {text("Volume.muteTrack(\"second\", 0) -> 0")});
    row("AudioControl.muteBackEarphone(false)", {text("Volume.unmuteTrack(\"second\", 0) -> 0")});
    row("AudioControl.setMute(true), AudioControl.setMute(false)",
        {text("Volume.muteTrack(\"main\", 0) -> 0"),
         text("Volume.muteTrack(\"alternative\", 0) -> 0"),
         text("Volume.unmuteTrack(\"main\", 0) -> 0"),
         text("Volume.unmuteTrack(\"alternative\", 0) -> 0")});
    row("AudioControl.setLoudnessSwitch(true)", {text("App.setLoudness({on: 1, onAgain: 1, level: 800}) -> 0")});
    row("AudioControl.setMicroPhoneVolume(91)", {text("Volume.setMicVolume(91) -> 0")});
    row("AudioControl.setMicOpAndPga(9, 0.5)", {text("Volume.setMicOpGain(0, 9, 9) -> 0"), text("Volume.setMicPgaGain(0, 0.5, 0.5) -> 0")});
    row("AudioControl.setAECQuality(2)", {text("App.setAecQuality(2) -> 0")});
    row("AudioControl.setMicLeftRightSwitch(true)", {text("Source.setMicLeftRightSwitch(true) -> 0")});
    row("AudioControl.setDownlinkDelayEstimation()", {text("App.startDownlinkDelayEstimation() -> 0")});
    row("AudioControl.setDpsEnable(true)", {text("App.enableDps() -> 0")});
    row("AudioControl.setStereoEnable(false)", {text("App.disableStereo() -> 0")});
    row("AudioControl.setDpsUserGain(2.5)", {text("App.setDpsUserGain(2.5) -> 0")});
    row("AudioControl.setSpeakerDealy(Enumerators.RightRear, 1.5)", {text("App.setSpeakerDelay(8, 1.5) -> 0")});
    row("AudioControl.setSpeakerDelay([1, 2])", {});
    row("AudioControl.setFilter(0, {value1: 1, flag: 0, kind: 1, value2: 2, value3: 3, value4: 4})",
        {text("App.setFilter({channel: 1, value1: 1, notFlag: 1, value2: 2, kind: 1, value3: 3, value4: 4}) -> 0")});
    row("AudioControl.setAlterStepVolume(50, false)", {text("Volume.setAlterTrackVolume(75) -> 0")});
    row("AudioControl.setProfileMode(3)", {});
}

void QmlAudioControlTest::calls()
{
    QFETCH(QString, script);
    QFETCH(QStringList, expected);

    const QJSValue result = engine.evaluate(script);
    QVERIFY2(!result.isError(), qPrintable(result.toString()));
    QCOMPARE(Platform::instance()->journal()->calls(), expected);
}

void QmlAudioControlTest::results_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *script, const char *expected) { QTest::newRow(script) << QString::fromLatin1(script) << QString::fromLatin1(expected); };
    row("[Enumerators.Main, Enumerators.MainIm, Enumerators.LeftFront, Enumerators.SixthOutput]", "[0,7,0,5]");
    row("AudioControl.setStepRange(30), AudioControl.getStepRang()", "30");
    row("AudioControl.setStepRange(100), AudioControl.setAlterMode(false), AudioControl.getAlterMode()", "false");
    row("AudioControl.isMute()", "false");
    row("AudioControl.setMasterVolume(101)", "-1");
    row("AudioControl.setMasterVolume(0), AudioControl.getMasterVolume()", "100");
    row("AudioControl.setMasterStepVolume(100), AudioControl.getMasterStepVolume()", "100");
    row("AudioControl.getAlterStepVolume()", "0");
    row("AudioControl.setAlterVolume(1, false)", "-1");
    row("AudioControl.setStreamVolume(0, 'S+BtRingtone_APP', 40), AudioControl.getStreamVolume(0, 'S+BtRingtone_APP')", "60");
    row("AudioControl.getEqGain(0)", "[4,4,3,3,3,2,2,0,-4,-3,0,1,2,2,3,3]");
    row("AudioControl.getEqGain(-1)", "[]");
    row("Array.isArray(AudioControl.getEqGain(0))", "true");
    row("AudioControl.getSubGain(1)", "[0,0,0,-3,3,0,-2,0,0]");
    row("AudioControl.getEqInitValue().length", "16");
    row("AudioControl.getEqInitValue()[15]", "20000");
    row("AudioControl.setAuxinChannel(4), AudioControl.getAuxinChannel()", "4");
    row("AudioControl.setMicAnalogGain(4.8, -0.1), AudioControl.getMicAnalogGain()", "{\"first\":4.8,\"result\":0,\"second\":-0.1}");
    row("AudioControl.getMicCalibrationGain().result", "0");
    row("AudioControl.startMicGainCalibration()", "0");
    row("AudioControl.setMicGainCalibration()", "0");
    row("AudioControl.getDownlinkDelayEstimation().result", "0");
    row("AudioControl.setHandsfreeDelay(-7)", "0");
    row("AudioControl.getMicrophoneTest().length", "8");
    row("AudioControl.getActivedAlterNumber()", "0");
    row("AudioControl.changeAlterStepVolume(false, 51)", "{\"result\":0,\"step\":50}");
    row("AudioControl.changeAlterStepVolume(false, 0)", "{\"result\":1,\"step\":0}");
    row("AudioControl.getCurMainTrackStepVolumeInfo().result", "-1");
    row("AudioControl.setOutputSource('main', 'S+CarLife'), AudioControl.changeMainTrackStepVolume(true)",
        "{\"name\":\"S+CarLife_APP\",\"result\":0,\"step\":51}");
}

void QmlAudioControlTest::results()
{
    QFETCH(QString, script);
    QFETCH(QString, expected);

    const QJSValue result = engine.evaluate(QStringLiteral("JSON.stringify((%1))").arg(script));
    QVERIFY2(!result.isError(), qPrintable(result.toString()));
    QCOMPARE(result.toString(), expected);
}

void QmlAudioControlTest::refusals_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("error");

    const auto row = [](const char *script, const char *error) { QTest::newRow(script) << QString::fromLatin1(script) << QString::fromLatin1(error); };
    row("AudioControl.setStreamVolume(0, 'S+FilePlayer_APP', 256)", "RangeError: volume must be a whole number from 0 to 255, not 256");
    row("AudioControl.setStreamVolume(0, 'S+FilePlayer_APP', -1)", "RangeError: volume must be a whole number from 0 to 255, not -1");
    row("AudioControl.setStreamVolume(0, 'S+FilePlayer_APP', NaN)", "RangeError: volume must be a whole number from 0 to 255, not NaN");
    row("AudioControl.setStreamVolume(0, 'S+FilePlayer_APP', Infinity)", "RangeError: volume must be a whole number from 0 to 255, not Infinity");
    row("AudioControl.setStreamVolume(0, 'S+FilePlayer_APP', 1.5)", "RangeError: volume must be a whole number from 0 to 255, not 1.5");
    row("AudioControl.setStreamVolume(0, 'S+FilePlayer_APP', '80')", "TypeError: volume must be a whole number from 0 to 255, not 80");
    row("AudioControl.setStreamVolume(0, 'S+FilePlayer_APP', undefined)", "TypeError: volume must be a whole number from 0 to 255, not undefined");
    row("AudioControl.setStreamVolume(0, 7, 80)", "TypeError: name must be a text, not 7");
    row("AudioControl.setStreamVolume(4e9, 'S+FilePlayer_APP', 300)", "RangeError: tag must be a whole number from -2147483648 to 2147483647, not 4000000000");
    row("AudioControl.setMute(1)", "TypeError: mute must be true or false, not 1");
    row("AudioControl.setFadeBalance(0, 2147483648)", "RangeError: balance must be a whole number from -2147483648 to 2147483647, not 2147483648");
    row("AudioControl.setEqValue([1, 2, 'x'])", "TypeError: gains[2] must be a whole number from -2147483648 to 2147483647, not x");
    row("AudioControl.setEqGain(7)", "TypeError: gains must be a list, not 7");
    row("AudioControl.setDpsUserGain(1e300)", "RangeError: gain must be a number that a float holds, not 1e+300");
    row("AudioControl.setMainAudioDunkingMode(-1)", "RangeError: mode must be a whole number from 0 to 4294967295, not -1");
    row("AudioControl.initTrackStepVolume(0, {'S+DiscPlayer_APP': 50, 'S+AuxIn_APP': 256})",
        "RangeError: S+AuxIn_APP must be a whole number from 0 to 255, not 256");
    row("AudioControl.initTrackStepVolume(0, 5)", "TypeError: volumes must be an object of names and numbers, not 5");
    row("AudioControl.setFilter(0, {value1: 65536, flag: 0, kind: 1, value2: 2, value3: 3, value4: 4})",
        "RangeError: value1 must be a whole number from 0 to 65535, not 65536");
    row("AudioControl.setFilter(0, {value1: 1})", "TypeError: flag must be a whole number from 0 to 4294967295, not undefined");
    row("AudioControl.setOutputSource(undefined, 'S+Radio')", "TypeError: track must be a text, not undefined");
    row("AudioControl.setMasterVolume()", "Error: Insufficient arguments");
}

void QmlAudioControlTest::refusals()
{
    QFETCH(QString, script);
    QFETCH(QString, error);

    const QJSValue result = engine.evaluate(script);
    QVERIFY(result.isError());
    QCOMPARE(result.toString(), error);
    QCOMPARE(Platform::instance()->journal()->calls(), QStringList());
}

QTEST_GUILESS_MAIN(QmlAudioControlTest)

#include "tst_qmlaudiocontrol.moc"

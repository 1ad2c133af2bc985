#include "platform.h"
#include "qmlaudiopolicy.h"
#include "qmlaudiosettings.h"
#include "virtualclock.h"

#include <qzaudio/audiodatabase.h>
#include <qzaudio/zelaudiomanager.h>

#include <QtQml/QJSEngine>
#include <QtQml/QQmlEngine>
#include <QtTest/QtTest>

using simulator::Platform;
using simulator::VirtualClock;

/// The policy and the settings as scripts see them.
class QmlAudioPolicyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void nothingStartsBeforeTheFirstUse();
    void aMistakenCallStartsNothing();
    void signalsOnlyOnRealChange();
    void timersBringChanges();
    void anotherManagerShows();
    void readingLeavesNoLogLine();
    void settingsFollowTheFile();
    void results_data();
    void results();

private:
    QVariant evaluate(const QString &script);

    QScopedPointer<ZelAudioManager> manager;
    QScopedPointer<QmlAudioPolicy> policy;
    QmlAudioSettings settings;
    QJSEngine engine;
};

void QmlAudioPolicyTest::init()
{
    policy.reset();
    manager.reset();
    QFile::remove(QStringLiteral("/media/flash/nvm/audioData.db"));
    Platform::instance()->reset();
    policy.reset(new QmlAudioPolicy([this] {
        if (!manager)
            manager.reset(new ZelAudioManager);
        return manager.data();
    }));
    for (QObject *object : {static_cast<QObject *>(policy.data()), static_cast<QObject *>(&settings)})
        QQmlEngine::setObjectOwnership(object, QQmlEngine::CppOwnership);
    engine.globalObject().setProperty(QStringLiteral("AudioPolicy"), engine.newQObject(policy.data()));
    engine.globalObject().setProperty(QStringLiteral("AudioSettings"), engine.newQObject(&settings));
}

QVariant QmlAudioPolicyTest::evaluate(const QString &script)
{
    const QJSValue result = engine.evaluate(script);
    if (result.isError())
        return result.toString();
    return result.toVariant();
}

void QmlAudioPolicyTest::nothingStartsBeforeTheFirstUse()
{
    evaluate(QStringLiteral("AudioPolicy.statusChanged.connect(function() {})"));
    QVERIFY(!manager);
    QCOMPARE(Platform::instance()->journal()->count(), 0);
    QCOMPARE(evaluate(QStringLiteral("AudioPolicy.status")).toInt(), 0);
    QVERIFY(manager);
    QVERIFY(Platform::instance()->journal()->count() > 0);
}

void QmlAudioPolicyTest::aMistakenCallStartsNothing()
{
    QCOMPARE(evaluate(QStringLiteral("AudioPolicy.setVolume(0, 1.5, true)")).toString(),
             QStringLiteral("RangeError: volume must be a whole number from -2147483648 to 2147483647, not 1.5"));
    QCOMPARE(evaluate(QStringLiteral("AudioPolicy.adjustCustomEq(1, 16)")).toString(),
             QStringLiteral("RangeError: band must be a whole number from 0 to 15, not 16"));
    QVERIFY(!manager);
}

void QmlAudioPolicyTest::signalsOnlyOnRealChange()
{
    QSignalSpy status(policy.data(), &QmlAudioPolicy::statusChanged);
    QSignalSpy channel(policy.data(), &QmlAudioPolicy::channelChanged);
    QSignalSpy muted(policy.data(), &QmlAudioPolicy::mutedChanged);
    QSignalSpy volumes(policy.data(), &QmlAudioPolicy::volumesChanged);
    QSignalSpy equalizer(policy.data(), &QmlAudioPolicy::equalizerTypeChanged);
    QSignalSpy curve(policy.data(), &QmlAudioPolicy::customCurveChanged);
    QSignalSpy key(policy.data(), &QmlAudioPolicy::zelvolumeChanged);
    const auto counts = [&] {
        return QList<int>{status.count(), channel.count(), muted.count(), volumes.count(), equalizer.count(), curve.count(), key.count()};
    };

    policy->status(); // starts the manager: what it begins with is no change
    QCOMPARE(counts(), QList<int>({0, 0, 0, 0, 0, 0, 0}));
    evaluate(QStringLiteral("AudioPolicy.updateAudioStatus(2)"));
    evaluate(QStringLiteral("AudioPolicy.updateAudioStatus(2)"));
    QCOMPARE(counts(), QList<int>({1, 0, 0, 0, 0, 0, 0}));
    evaluate(QStringLiteral("AudioPolicy.updateAudioChannel(3)"));
    evaluate(QStringLiteral("AudioPolicy.updateAudioChannel(3)"));
    QCOMPARE(counts(), QList<int>({1, 1, 0, 0, 0, 0, 0}));
    evaluate(QStringLiteral("AudioPolicy.setMute(true)"));
    evaluate(QStringLiteral("AudioPolicy.setMute(true)"));
    QCOMPARE(counts(), QList<int>({1, 1, 1, 0, 0, 0, 0}));
    evaluate(QStringLiteral("AudioPolicy.setVolume(AudioPolicy.volumes.length - 1, 3, false)"));
    evaluate(QStringLiteral("AudioPolicy.setVolume(5, 3, true)"));
    QCOMPARE(counts(), QList<int>({1, 1, 1, 1, 0, 0, 0}));
    evaluate(QStringLiteral("AudioPolicy.setEqType(6)"));
    evaluate(QStringLiteral("AudioPolicy.setEqType(2)"));
    QCOMPARE(counts(), QList<int>({1, 1, 1, 1, 1, 0, 0}));
    evaluate(QStringLiteral("AudioPolicy.adjustCustomEq(4, 7)"));
    QCOMPARE(counts(), QList<int>({1, 1, 1, 1, 2, 1, 0}));
    evaluate(QStringLiteral("AudioPolicy.updateCurrentAudioVolume(true)"));
    QCOMPARE(counts(), QList<int>({1, 1, 1, 2, 2, 1, 1}));
    QCOMPARE(key.first(), QVariantList({false, 21, 2}));
    QCOMPARE(policy->customCurve().at(7).toInt(), 8);
    evaluate(QStringLiteral("AudioPolicy.setMute(false)"));
}

void QmlAudioPolicyTest::timersBringChanges()
{
    QSignalSpy status(policy.data(), &QmlAudioPolicy::statusChanged);
    QSignalSpy muted(policy.data(), &QmlAudioPolicy::mutedChanged);
    VirtualClock *const clock = VirtualClock::installed();
    evaluate(QStringLiteral("AudioPolicy.updateAudioChannel(5); AudioPolicy.setAudioMute(true, 4); AudioPolicy.cpDuckAudio(0, 0)"));
    QCOMPARE(muted.count(), 1);
    clock->advance(199);
    QCOMPARE(muted.count(), 1);
    clock->advance(1);
    QCOMPARE(muted.count(), 2);
    clock->advance(799);
    QCOMPARE(status.count(), 0);
    clock->advance(1);
    QCOMPARE(status.count(), 1);
    QCOMPARE(policy->status(), 10);
    Platform::instance()->setReverseGear(false); // ends a duck as leaving reverse gear does
    clock->advance(500);
    QCOMPARE(status.count(), 2);
    QCOMPARE(policy->status(), 11);
}

void QmlAudioPolicyTest::anotherManagerShows()
{
    evaluate(QStringLiteral("AudioPolicy.updateAudioStatus(3)"));
    QSignalSpy status(policy.data(), &QmlAudioPolicy::statusChanged);
    manager.reset();
    QCOMPARE(policy->status(), 0);
    QCOMPARE(status.count(), 1);
}

void QmlAudioPolicyTest::readingLeavesNoLogLine()
{
    policy->status();
    static int lines;
    lines = 0;
    const QtMessageHandler before = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) { ++lines; });
    evaluate(QStringLiteral(
        "[AudioPolicy.status, AudioPolicy.channel, AudioPolicy.muted, AudioPolicy.volumes, AudioPolicy.equalizerType, AudioPolicy.customCurve]"));
    qInstallMessageHandler(before);
    QCOMPARE(lines, 0);
}

void QmlAudioPolicyTest::settingsFollowTheFile()
{
    QCOMPARE(evaluate(QStringLiteral("AudioSettings.getVolume(0)")).toInt(), 20);
    evaluate(QStringLiteral("AudioPolicy.setVolume(0, 7, false)"));
    QCOMPARE(evaluate(QStringLiteral("AudioSettings.getVolume(0)")).toInt(), 20);
    evaluate(QStringLiteral("AudioPolicy.setVolume(0, 8, true)"));
    QCOMPARE(evaluate(QStringLiteral("AudioSettings.getVolume(0)")).toInt(), 8);
    audio::AudioDataBase other;
    other.setEqType(4);
    QCOMPARE(evaluate(QStringLiteral("AudioSettings.eqType()")).toInt(), 4);
    QVERIFY(other.clear());
    QCOMPARE(evaluate(QStringLiteral("AudioSettings.eqType()")).toInt(), 6);
}

void QmlAudioPolicyTest::results_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *script, const char *expected) { QTest::newRow(script) << QString::fromLatin1(script) << QString::fromLatin1(expected); };
    row("AudioPolicy._getAllChannelsFromCurrentType(2)", "[7,12]");
    row("AudioPolicy.getEqBaseData().length", "8");
    row("AudioPolicy.getEqBaseData()[0].gains.slice(0, 3)", "[4.8,4.3,3.8]");
    row("AudioPolicy.setMicAnalogGain(20, 20), AudioPolicy.getMicAnalogOpAndPga()", "{\"op\":21,\"pga\":-1}");
    row("AudioPolicy.setMicAnalogGain(3.7, 1), AudioPolicy.getMicAnalogGain()", "3");
    row("AudioPolicy.setMicAnalogGain(3.7, 1), AudioPolicy.getPlatformMicAnalogGain()", "{\"left\":3.7,\"result\":0,\"right\":1}");
    row("AudioPolicy.setHandsfreeDelay(40)", "0");
    row("AudioPolicy.setEqType(0), AudioPolicy.eqTypePrev(), AudioPolicy.eqType()", "7");
    row("AudioPolicy.setEqType(7), AudioPolicy.eqTypeNext(), AudioPolicy.eqType()", "0");
    row("AudioPolicy.setCPConnected(true), AudioPolicy.getCPConnected()", "true");
    row("AudioPolicy.triggerAtt(), AudioPolicy.isAttOn()", "true");
    row("AudioPolicy.deMute(), AudioPolicy.isAttOn()", "false");
    row("AudioPolicy.updateAudioChannel(19), AudioPolicy.currentAudioChannel()", "19");
    row("AudioPolicy.setMicInputValue(30), AudioPolicy.micInputValue()", "30");
    row("AudioPolicy.setLoudNess(true), AudioPolicy.loudNess()", "true");
    row("AudioPolicy.setMicLeftRightSwitch(false), AudioPolicy.micTypeIsDefault()", "false");
    row("AudioPolicy.adjustCustomEq(5, 3), AudioPolicy.customEq(3)", "10");
    row("AudioSettings.getAudioStatusInfo(14)", "{\"param\":0,\"type\":1}");
    row("AudioSettings.getStatusToSpName(25)", "\"S+none_APP\"");
    row("AudioSettings.getChannelInfo(19)", "{\"spName\":\"s+AirPlayMedia_APP\",\"type\":0}");
    row("Object.keys(AudioSettings.getGroupDefaultData()).length", "18");
    row("AudioSettings.getNextEqType(true)", "7");
    row("AudioSettings.data('Mine', 'key', 'other')", "\"other\"");
    row("AudioSettings.getCurrentIndexInDefault(5)", "5");
}

void QmlAudioPolicyTest::results()
{
    QFETCH(QString, script);
    QFETCH(QString, expected);
    QCOMPARE(evaluate(QStringLiteral("JSON.stringify((%1))").arg(script)).toString(), expected);
}

int main(int argc, char **argv)
{
    VirtualClock::install();
    QCoreApplication application(argc, argv);
    QmlAudioPolicyTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_qmlaudiopolicy.moc"

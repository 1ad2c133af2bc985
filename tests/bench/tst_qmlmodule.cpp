#include "platform.h"

#include <program.h>

#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtTest/QtTest>

using simulator::Platform;

/// The modules as an application imports them: from the plugins, in a QML engine.
class QmlModuleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void importStartsNothing();
    void facade();
    void focusElement();
    void policyBindings();
    void platformBindings();
    void bindingsAfterReset();
    void exampleOfBindings();
    void unsavedSettings();

private:
    QObject *create(const QByteArray &body);

    QQmlEngine engine;
    QScopedPointer<QObject> root;
};

void QmlModuleTest::init()
{
    Platform::instance()->reset();
}

QObject *QmlModuleTest::create(const QByteArray &body)
{
    QQmlComponent component(&engine);
    component.setData("import QtQml 2.15\nimport QzAudio 1.0\nimport QzAudio.Simulator 1.0\nQtObject {\n" + body + "\n}\n", QUrl());
    root.reset(component.create());
    if (!root)
        qWarning().noquote() << component.errorString();
    return root.data();
}

void QmlModuleTest::importStartsNothing()
{
    QVERIFY(create("property var policy: AudioPolicy\nproperty var settings: AudioSettings"));
    QCOMPARE(Platform::instance()->journal()->count(), 0);
    QVERIFY(!QFile::exists(QStringLiteral("/media/flash/nvm/audioData.db")));
}

void QmlModuleTest::facade()
{
    QObject *const object = create("property int tag: AudioControl.Second\n"
                                   "property var gains: AudioControl.getEqGain(6)\n"
                                   "property string refused\n"
                                   "Component.onCompleted: {\n"
                                   "    AudioControl.setStreamVolume(AudioControl.Main, 'S+FilePlayer_APP', 80)\n"
                                   "    try { AudioControl.setStreamVolume(0, 'S+FilePlayer_APP', 300) } catch (error) { refused = error.message }\n"
                                   "}\n"
                                   "property int volume: Platform.trackVolume('main', 'S+DiscPlayer')");
    QVERIFY(object);
    QCOMPARE(object->property("tag").toInt(), 1);
    QCOMPARE(object->property("gains").toList().size(), 16);
    QCOMPARE(object->property("refused").toString(), QStringLiteral("volume must be a whole number from 0 to 255, not 300"));
    QCOMPARE(Platform::instance()->chip()->trackVolume(QStringLiteral("main"), QStringLiteral("S+FilePlayer")), 80);
}

void QmlModuleTest::focusElement()
{
    QObject *const object = create("property AudioFocus music: AudioFocus {\n"
                                   "    clientId: 'music'\n"
                                   "    durationHint: AudioFocus.Gain\n"
                                   "    onFocusChanged: told.push(change)\n"
                                   "}\n"
                                   "property AudioFocus prompt: AudioFocus { clientId: 'prompt'; durationHint: AudioFocus.GainTransientMayDuck }\n"
                                   "property var told: []\n"
                                   "property bool granted: music.request() && prompt.request()\n"
                                   "property bool held: music.held");
    QVERIFY(object);
    QVERIFY(object->property("granted").toBool());
    QCoreApplication::sendPostedEvents();
    QCOMPARE(object->property("told").value<QJSValue>().toVariant().toList(), QVariantList({-3}));
    QVERIFY(!object->property("held").toBool());
}

void QmlModuleTest::policyBindings()
{
    QObject *const object = create("property bool muted: AudioPolicy.muted\n"
                                   "property int media: AudioPolicy.volumes[AudioPolicy.Media]\n"
                                   "property int keys: 0\n"
                                   "property Connections connections: Connections {\n"
                                   "    target: AudioPolicy\n"
                                   "    function onZelvolumeChanged(mute, volume, type) { keys = keys + 1 }\n"
                                   "}\n"
                                   "function work() {\n"
                                   "    AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer)\n"
                                   "    AudioPolicy.setMute(true)\n"
                                   "    AudioPolicy.setVolume(AudioPolicy.Media, 11, true)\n"
                                   "    AudioPolicy.updateCurrentAudioVolume(true)\n"
                                   "}\n"
                                   "property var stored: AudioSettings.getVolume(0)");
    QVERIFY(object);
    QCOMPARE(object->property("media").toInt(), 20);
    QVERIFY(QMetaObject::invokeMethod(object, "work"));
    QCOMPARE(object->property("muted").toBool(), true);
    QCOMPARE(object->property("media").toInt(), 12);
    QCOMPARE(object->property("keys").toInt(), 1);
}

void QmlModuleTest::platformBindings()
{
    QObject *const object = create("property bool ducked: Platform.live.isDucked()\n"
                                   "property int volume: Platform.live.trackVolume('main', 'S+FilePlayer')\n"
                                   "property int calls: Platform.live.journal().length\n"
                                   "property int faults: Platform.live.pendingFaults().length\n"
                                   "property int sources: Platform.live.made('Source')\n"
                                   "property var seen: []\n"
                                   "function work() {\n"
                                   "    AudioControl.setStreamVolume(AudioControl.Main, 'S+FilePlayer_APP', 80)\n"
                                   "    seen.push(volume, ducked)\n"
                                   "    AudioControl.setMainAudioDunkingMode(1)\n"
                                   "    seen.push(ducked)\n"
                                   "    Platform.fail('Volume.setMasterVolume', 9)\n"
                                   "    seen.push(faults)\n"
                                   "    Platform.clearFaults()\n"
                                   "    seen.push(faults, calls === Platform.journal().length, calls > 0)\n"
                                   "    AudioControl.getActivedAlterNumber()\n"
                                   "    seen.push(sources === Platform.made('Source'), sources > 0)\n"
                                   "    Platform.clearJournal()\n"
                                   "    seen.push(calls)\n"
                                   "}");
    QVERIFY(object);
    QVERIFY(QMetaObject::invokeMethod(object, "work"));
    // Each of them was right at once, not only with the next turn of the event loop.
    QCOMPARE(object->property("seen").value<QJSValue>().toVariant().toList(), QVariantList({80, false, true, 1, 0, true, true, true, true, 0}));
}

void QmlModuleTest::bindingsAfterReset()
{
    QObject *const object = create("property bool reverse: Platform.reverseGear\n"
                                   "property int home: Platform.homeUiType\n"
                                   "property int master: Platform.live.masterVolume()\n"
                                   "property var state: Platform.live.state()\n"
                                   "property int calls: Platform.live.journal().length\n"
                                   "property bool muted: AudioPolicy.muted\n"
                                   "property int media: AudioPolicy.volumes[AudioPolicy.Media]\n"
                                   "property var seen: []\n"
                                   "function work() {\n"
                                   "    Platform.setReverseGear(true)\n"
                                   "    Platform.setHomeUiType(7)\n"
                                   "    AudioControl.setMasterVolume(100)\n"
                                   "    seen.push(reverse, home, master, state[0].value)\n"
                                   "    Platform.reset()\n"
                                   "    seen.push(reverse, home, master, state[0].value, calls)\n"
                                   "    seen.push(muted === AudioPolicy.muted, media === AudioPolicy.volumes[0])\n"
                                   "}");
    QVERIFY(object);
    QVERIFY(QMetaObject::invokeMethod(object, "work"));
    QCOMPARE(object->property("seen").value<QJSValue>().toVariant().toList(), QVariantList({true, 7, 100, 100, false, 0, 0, 0, 0, true, true}));
    // The same where the platform is reset by C++.
    Platform::instance()->setReverseGear(true);
    QCOMPARE(object->property("reverse").toBool(), true);
    Platform::instance()->chip()->setMasterVolume(60);
    QCOMPARE(object->property("master").toInt(), 60);
    Platform::instance()->reset();
    QCOMPARE(object->property("reverse").toBool(), false);
    QCOMPARE(object->property("master").toInt(), 0);
}

namespace
{

/// The first block of code in a language behind a text of the manual.
QString codeOfManual(const QString &language, const QString &behind)
{
    QFile manual(QStringLiteral(QML_DOCUMENT));
    if (!manual.open(QIODevice::ReadOnly))
        return {};
    const QString text = QString::fromUtf8(manual.readAll());
    const QString fence = QStringLiteral("\n```") + language + QLatin1Char('\n');
    const int begin = text.indexOf(fence, text.indexOf(behind)) + fence.size();
    return text.mid(begin, text.indexOf(QStringLiteral("\n```\n"), begin) + 1 - begin);
}

Q_GLOBAL_STATIC(QStringList, printed)

void collect(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (QLatin1String(context.category) == QLatin1String("qml"))
        printed->append(qFormatLogMessage(type, context, message));
}

} // namespace

void QmlModuleTest::exampleOfBindings()
{
    const QString chapter = QStringLiteral("A function in a binding is called once.");
    const QString example = codeOfManual(QStringLiteral("qml"), chapter);
    QVERIFY(example.contains(QLatin1String("Platform.live.")));
    QQmlComponent component(&engine);
    component.setData(example.toUtf8(), QUrl());
    const QtMessageHandler previous = qInstallMessageHandler(&collect);
    qSetMessagePattern(QStringLiteral("%{category}: %{message}"));
    const QScopedPointer<QObject> object(component.create());
    qInstallMessageHandler(previous);
    qSetMessagePattern(QStringLiteral("%{message}"));
    QVERIFY2(object, qPrintable(component.errorString()));
    QCOMPARE(printed->join(QLatin1Char('\n')) + QLatin1Char('\n'), codeOfManual(QStringLiteral("text"), chapter));
}

void QmlModuleTest::unsavedSettings()
{
    if (qEnvironmentVariableIsSet("QZAUDIO_TEST_CHILD")) {
        // The process below, of an ordinary user without a flash.
        QVERIFY(create("Component.onCompleted: { AudioPolicy.setVolume(0, 11, true); AudioPolicy.saveVolume() }"));
        QQmlEngine second;
        QQmlComponent component(&second);
        component.setData("import QtQml 2.15\nimport QzAudio 1.0\nQtObject { property int volume: AudioPolicy.getVolume(0) }", QUrl());
        const QScopedPointer<QObject> object(component.create());
        QVERIFY(object);
        QCOMPARE(object->property("volume").toInt(), 11);
        return;
    }
    const auto linesOf = [](const QString &wrapper) {
        const QStringList words = QStringLiteral("env QZAUDIO_TEST_CHILD=1 bwrap %1").arg(wrapper).split(QLatin1Char(' '), Qt::SkipEmptyParts);
        const program::Run run = program::run(words + program::commandLine(QCoreApplication::applicationFilePath(), {QStringLiteral("unsavedSettings")}));
        if (run.exitCode != 0)
            qWarning().noquote() << run.output << run.errors;
        return program::lines(run.output + run.errors).filter(QStringLiteral("settings cannot be saved"));
    };
    const QString ordinaryUser = QStringLiteral("--unshare-user --uid 1000 --gid 1000 --dev-bind / / ");
    const QStringList lines = linesOf(ordinaryUser + QStringLiteral("--tmpfs /media --remount-ro /media"));
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines.constFirst().endsWith(
                 QLatin1String("QzAudio: settings cannot be saved: there is no folder /media/flash/nvm that can be written; on a desk start the program with "
                               "\"qzaudio-with-flash COMMAND\".")),
             qPrintable(lines.constFirst()));
    QCOMPARE(linesOf(ordinaryUser + QStringLiteral("--tmpfs /media --dir /media/flash/nvm")).size(), 0);
    QCOMPARE(linesOf(ordinaryUser + QStringLiteral("--tmpfs /media")).size(), 0); // the store makes the folder
}

QTEST_GUILESS_MAIN(QmlModuleTest)

#include "tst_qmlmodule.moc"

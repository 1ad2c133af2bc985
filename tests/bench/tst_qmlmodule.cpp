#include "platform.h"

#include <program.h>

#include <QtCore/QRegularExpression>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtTest/QtTest>

#include <cmath>

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
    void examplesOfManual_data();
    void examplesOfManual();
    void elements_data();
    void elements();
    void platformOfLaterVersion();
    void responseCurve();
    void refusedBands();
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

QString manualText()
{
    QFile manual(QStringLiteral(QML_DOCUMENT));
    return manual.open(QIODevice::ReadOnly) ? QString::fromUtf8(manual.readAll()) : QString();
}

/// The first block of code in a language behind a text of the manual.
QString codeOfManual(const QString &language, const QString &behind)
{
    const QString text = manualText();
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

void QmlModuleTest::examplesOfManual_data()
{
    QTest::addColumn<QString>("chapter");
    QTest::addColumn<QString>("uses");
    QTest::newRow("bindings") << QStringLiteral("A function in a binding is called once.") << QStringLiteral("Platform.live.");
    QTest::newRow("journal model") << QStringLiteral("### `JournalModel`") << QStringLiteral("journal.refusedOnly");
    QTest::newRow("response curve") << QStringLiteral("### `ResponseCurve`") << QStringLiteral("curve.points");
    QTest::newRow("situations") << QStringLiteral("### `Situations`") << QStringLiteral("situations.perform");
    QTest::newRow("focus stack") << QStringLiteral("### `FocusStack`") << QStringLiteral("stack.next");
}

void QmlModuleTest::examplesOfManual()
{
    QFETCH(const QString, chapter);
    QFETCH(const QString, uses);
    const QString example = codeOfManual(QStringLiteral("qml"), chapter);
    QVERIFY(example.contains(uses));
    printed->clear();
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

void QmlModuleTest::elements_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("minor");
    // What the type file tells of is what there has to be.
    QFile types(qEnvironmentVariable("QML2_IMPORT_PATH") + QStringLiteral("/QzAudio/Simulator/plugins.qmltypes"));
    QVERIFY(types.open(QIODevice::ReadOnly));
    static const QRegularExpression exported(QStringLiteral(R"(exports: ..QzAudio\.Simulator/(\w+) 1\.([1-9]\d*))"));
    QRegularExpressionMatchIterator found = exported.globalMatch(QString::fromUtf8(types.readAll()));
    QVERIFY(found.hasNext());
    while (found.hasNext()) {
        const QRegularExpressionMatch match = found.next();
        QTest::newRow(qPrintable(match.captured(1))) << match.captured(1) << match.captured(2).toInt();
    }
}

void QmlModuleTest::elements()
{
    QFETCH(const QString, name);
    QFETCH(const int, minor);
    const auto make = [this, name](int version) {
        QQmlComponent component(&engine);
        component.setData(QStringLiteral("import QzAudio.Simulator 1.%1\n%2 {}\n").arg(version).arg(name).toUtf8(), QUrl());
        return component.create();
    };
    const QScopedPointer<QObject> object(make(minor));
    QVERIFY(object);
    const QScopedPointer<QObject> earlier(make(minor - 1));
    QVERIFY(!earlier);

    // All that it has of its own stands in its chapter of the manual; change signals do together.
    const QString manual = manualText();
    const int begin = manual.indexOf(QStringLiteral("\n### `%1`").arg(name));
    QVERIFY(begin >= 0);
    const QString chapter = manual.mid(begin, manual.indexOf(QStringLiteral("\n##"), begin + 1) - begin);
    const QMetaObject &type = *object->metaObject();
    for (int i = type.propertyOffset(); i < type.propertyCount(); ++i)
        QVERIFY2(chapter.contains(QStringLiteral("`%1`").arg(QLatin1String(type.property(i).name()))), type.property(i).name());
    for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
        const QMetaMethod method = type.method(i);
        if (method.methodType() != QMetaMethod::Signal)
            QVERIFY2(chapter.contains(QStringLiteral("`%1(").arg(QLatin1String(method.name()))), method.name().constData());
    }
    QCOMPARE(Platform::instance()->journal()->count(), 0);
}

void QmlModuleTest::platformOfLaterVersion()
{
    QQmlComponent component(&engine);
    component.setData("import QtQml 2.15\nimport QzAudio.Simulator 1.1\nQtObject { property int gain: Platform.live.duckingGain() }", QUrl());
    const QScopedPointer<QObject> object(component.create());
    QVERIFY2(object, qPrintable(component.errorString()));
    QCOMPARE(object->property("gain").toInt(), Platform::instance()->chip()->duckingGain());
}

void QmlModuleTest::responseCurve()
{
    QQmlComponent component(&engine);
    component.setData("import QtQml 2.15\n"
                      "import QzAudio.Simulator 1.1\n"
                      "QtObject {\n"
                      "    property real gain: 6\n"
                      "    property ResponseCurve curve: ResponseCurve {\n"
                      "        pointCount: 5\n"
                      "        bands: [{ frequency: 1000, q: 2, gain: gain }]\n"
                      "    }\n"
                      "    property real highest: curve.highestLevel\n"
                      "    property var ends: [curve.points[0].x, curve.points[4].x]\n"
                      "    property int count: curve.points.length\n"
                      "    property string refused\n"
                      "    property var named: []\n"
                      "    function work() {\n"
                      "        try { curve.load('present3') } catch (error) { refused = error.name + ': ' + error.message }\n"
                      "        curve.names().forEach(name => { curve.load(name); named.push(curve.bands.length) })\n"
                      "    }\n"
                      "}\n",
                      QUrl());
    const QScopedPointer<QObject> object(component.create());
    QVERIFY2(object, qPrintable(component.errorString()));
    QCOMPARE(object->property("highest").toDouble(), 6.0);
    QCOMPARE(object->property("ends").value<QJSValue>().toVariant().toList(), QVariantList({0, 1}));
    QCOMPARE(object->property("count").toInt(), 5);
    object->setProperty("gain", -4.5);
    QVERIFY(std::abs(object->property("highest").toDouble()) < 0.1);
    QVERIFY(QMetaObject::invokeMethod(object.data(), "work"));
    QCOMPARE(object->property("refused").toString(), QStringLiteral("RangeError: there is no curve \"present3\"; the nearest is \"preset3\""));
    QCOMPARE(object->property("named").value<QJSValue>().toVariant().toList(), QVariantList({16, 16, 16, 16, 16, 16, 16, 8, 8, 8, 8, 8, 8, 8}));
}

void QmlModuleTest::refusedBands()
{
    QQmlComponent component(&engine);
    component.setData("import QtQml 2.15\n"
                      "import QzAudio.Simulator 1.1\n"
                      "ResponseCurve {\n"
                      "    function work() {\n"
                      "        bands = [{ frequency: 80, q: 1, gain: 3 }]\n"
                      "        bands = [{ frequency: 80, q: 1, gain: 6 }, { frequency: 100, q: 1 }]\n"
                      "        pointCount = 1\n"
                      "    }\n"
                      "}\n",
                      QUrl());
    const QScopedPointer<QObject> object(component.create());
    QVERIFY2(object, qPrintable(component.errorString()));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("bands are objects \\{frequency, q, gain\\} of numbers; number 1 is none$")));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("pointCount must be from 2 to 2000, not 1$")));
    QVERIFY(QMetaObject::invokeMethod(object.data(), "work"));
    QCOMPARE(object->property("bands").toList().size(), 1);
    QCOMPARE(object->property("highestLevel").toDouble(), 3.0);
    QCOMPARE(object->property("pointCount").toInt(), 241);
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

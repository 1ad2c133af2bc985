#include "platform.h"

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

QTEST_GUILESS_MAIN(QmlModuleTest)

#include "tst_qmlmodule.moc"

#include "qmlaudiofocus.h"

#include <qzaudio/audiomanager.h>

#include <QtQml/QJSEngine>
#include <QtQml/QQmlEngine>
#include <QtTest/QtTest>

#include <thread>

/// The focus element: what it holds, what it is told, and that its handlers may ask for more.
class QmlAudioFocusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void grantAndLoss();
    void changesComeQueued();
    void handlerMayRequestAndRelease();
    void staleChangesAreNotDelivered();
    void deniedRequestKeepsWhatWasTold();
    void destroyedElementReleases();
    void newIdReleasesTheOldOne();
    void withoutId();
    void propertiesSignalRealChanges();
    void toldFromAnotherThread();
};

namespace
{

void turn()
{
    QCoreApplication::sendPostedEvents();
}

struct Client : QmlAudioFocus
{
    explicit Client(const char *name, int wanted = Gain)
    {
        setClientId(QLatin1String(name));
        setDurationHint(wanted);
        connect(this, &QmlAudioFocus::focusChanged, this, [this](int change) { changes.append(change); });
    }

    QList<int> changes;
};

} // namespace

void QmlAudioFocusTest::grantAndLoss()
{
    Client music("music");
    Client prompt("prompt", QmlAudioFocus::GainTransientMayDuck);
    QSignalSpy held(&music, &QmlAudioFocus::heldChanged);
    QVERIFY(music.request());
    QVERIFY(music.held());
    QVERIFY(prompt.request());
    turn();
    QVERIFY(!music.held());
    prompt.release();
    turn();
    QVERIFY(music.held());
    QCOMPARE(music.changes, QList<int>({QmlAudioFocus::LossTransientCanDuck, QmlAudioFocus::Gain}));
    QCOMPARE(prompt.changes, QList<int>());
    QCOMPARE(held.count(), 3);
}

void QmlAudioFocusTest::changesComeQueued()
{
    Client music("music");
    Client radio("radio");
    QVERIFY(music.request());
    QVERIFY(radio.request());
    QCOMPARE(music.changes, QList<int>());
    turn();
    QCOMPARE(music.changes, QList<int>({QmlAudioFocus::Loss}));
}

void QmlAudioFocusTest::handlerMayRequestAndRelease()
{
    Client music("music");
    Client radio("radio");
    connect(&music, &QmlAudioFocus::focusChanged, &music, [&music](int change) {
        if (change == QmlAudioFocus::Loss)
            music.request();
        else
            music.release();
    });
    QVERIFY(music.request());
    QVERIFY(radio.request());
    turn(); // music takes focus back, from inside its handler
    turn();
    QVERIFY(music.held());
    QVERIFY(!radio.held());
    QCOMPARE(radio.changes, QList<int>({QmlAudioFocus::Loss}));
}

void QmlAudioFocusTest::staleChangesAreNotDelivered()
{
    Client music("music");
    Client radio("radio");
    QVERIFY(music.request());
    QVERIFY(radio.request());
    QVERIFY(music.request()); // before it was told of its loss
    turn();
    QCOMPARE(music.changes, QList<int>());
    QVERIFY(music.held());

    QVERIFY(radio.request());
    music.release();
    turn();
    QCOMPARE(music.changes, QList<int>());
    QVERIFY(!music.held());
}

void QmlAudioFocusTest::deniedRequestKeepsWhatWasTold()
{
    Client music("music");
    Client voice("IN_VOICE_COMM_FOCUS_ID", QmlAudioFocus::GainTransient);
    QVERIFY(music.request());
    QVERIFY(voice.request());
    QVERIFY(!music.request());
    turn();
    QCOMPARE(music.changes, QList<int>({QmlAudioFocus::LossTransient}));
    QVERIFY(!music.held());
    music.setDurationHint(5);
    voice.release();
    QVERIFY(!music.request());
    turn();
    QCOMPARE(music.changes, QList<int>({QmlAudioFocus::LossTransient, QmlAudioFocus::Gain}));
}

void QmlAudioFocusTest::destroyedElementReleases()
{
    Client music("music");
    QVERIFY(music.request());
    {
        Client radio("radio");
        QVERIFY(radio.request());
    }
    turn();
    QCOMPARE(music.changes, QList<int>({QmlAudioFocus::Loss, QmlAudioFocus::Gain}));
}

void QmlAudioFocusTest::newIdReleasesTheOldOne()
{
    Client music("music");
    Client radio("radio");
    QVERIFY(music.request());
    QVERIFY(radio.request());
    radio.setClientId(QStringLiteral("other"));
    QVERIFY(!radio.held());
    turn();
    QCOMPARE(music.changes, QList<int>({QmlAudioFocus::Loss, QmlAudioFocus::Gain}));
}

void QmlAudioFocusTest::withoutId()
{
    QJSEngine engine;
    QmlAudioFocus focus;
    QQmlEngine::setObjectOwnership(&focus, QQmlEngine::CppOwnership);
    engine.globalObject().setProperty(QStringLiteral("focus"), engine.newQObject(&focus));
    QCOMPARE(engine.evaluate(QStringLiteral("focus.request()")).toString(), QStringLiteral("Error: AudioFocus needs a clientId before request()"));
    QVERIFY(!focus.held());
    QVERIFY(engine.evaluate(QStringLiteral("focus.clientId = 'x'; focus.request()")).toBool());
}

void QmlAudioFocusTest::propertiesSignalRealChanges()
{
    QmlAudioFocus focus;
    QSignalSpy id(&focus, &QmlAudioFocus::clientIdChanged);
    QSignalSpy stream(&focus, &QmlAudioFocus::streamTypeChanged);
    QSignalSpy hint(&focus, &QmlAudioFocus::durationHintChanged);
    for (int i = 0; i < 2; ++i) {
        focus.setClientId(QStringLiteral("a"));
        focus.setStreamType(7);
        focus.setDurationHint(2);
    }
    QCOMPARE(id.count(), 1);
    QCOMPARE(stream.count(), 1);
    QCOMPARE(hint.count(), 1);
    QCOMPARE(focus.streamType(), 7);
}

void QmlAudioFocusTest::toldFromAnotherThread()
{
    struct Rival : IAudioFocusChangeListener
    {
        void onAudioFocusChange(int /*focusChange*/) override { }
        QString clientId() override { return QStringLiteral("rival"); }
    } rival;
    Client music("music");
    QVERIFY(music.request());
    std::thread([&rival] { AudioManager::instance()->requestAudioFocus(3, 2, &rival); }).join();
    QCOMPARE(music.changes, QList<int>());
    turn(); // reaches AudioManager's thread, which is this one
    turn();
    QCOMPARE(music.changes, QList<int>({QmlAudioFocus::LossTransient}));
    std::thread([&rival] { AudioManager::instance()->abandonAudioFocus(&rival); }).join();
    turn(); // reaches AudioManager's thread, which is this one
    turn();
    QVERIFY(music.held());
}

QTEST_GUILESS_MAIN(QmlAudioFocusTest)

#include "tst_qmlaudiofocus.moc"

#include <logrecorder.h>
#include <qzaudio/audioservice.h>

#include <QtTest/QtTest>

#include <utility>

namespace
{

QString lossLine(const char *change, const char *id)
{
    return QStringLiteral("[DBG] THREAD void FocusRequester::handleFocusLoss(int) LINE -- dispatching  \"%1\"  to  \"%2\"")
        .arg(QLatin1String(change), QLatin1String(id));
}

QString dispatchLine(const char *change, const char *id)
{
    // "dispathing", on purpose.
    return QStringLiteral("[DBG] THREAD virtual void AudioService::dispatchAudioFocusChange(int, const QString&) LINE -- dispathing \"%1\" to \"%2\"")
        .arg(QLatin1String(change), QLatin1String(id));
}

/// Records audioFocusChanged() as "CODE ID".
class ChangeRecorder
{
public:
    explicit ChangeRecorder(AudioService &service)
    {
        QObject::connect(&service, &AudioService::audioFocusChanged, &service, [this](int newState, const QString &clientId) {
            m_changes.append(QString::number(newState) + QLatin1Char(' ') + clientId);
        });
    }

    QStringList take() { return std::exchange(m_changes, {}); }

private:
    QStringList m_changes;
};

} // namespace

class AudioServiceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bases();
    void metaObject_data();
    void metaObject();
    void metaObjectSize();
    void interfaceIdentifier();
    void parent();
    void dispatch_data();
    void dispatch();
    void lossBeforeTheRequestReturns();
    void sameRequestAgain();
    void abandonTellsTheNext();
    void unregisterTellsNobody();
    void refusedRequest();
    void callsFromInsideTheSignal();
    void uncheckedHint();
    void calledByName();
    void callsThroughTheInterface();
};

void AudioServiceTest::bases()
{
    AudioService service;
    // QObject comes first: one pointer for both.
    QCOMPARE(static_cast<void *>(static_cast<QObject *>(&service)), static_cast<void *>(&service));
    QVERIFY(static_cast<void *>(static_cast<IAudioFocusDispatcher *>(&service)) != static_cast<void *>(&service));
    QCOMPARE(AudioService::staticMetaObject.superClass(), &QObject::staticMetaObject);
}

void AudioServiceTest::metaObject_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("isSignal");
    QTest::addColumn<QByteArray>("signature");
    QTest::addColumn<QByteArray>("result");
    QTest::addColumn<QList<QByteArray>>("names");
    using Names = QList<QByteArray>;
    QTest::newRow("audioFocusChanged") << 0 << true << QByteArray("audioFocusChanged(int,QString)") << QByteArray("void") << (Names{"newState", "clientId"});
    QTest::newRow("requestAudioFocus") << 1 << false << QByteArray("requestAudioFocus(int,int,QString)") << QByteArray("int")
                                       << (Names{"mainStreamType", "durationHint", "clientId"});
    QTest::newRow("abandonAudioFocus") << 2 << false << QByteArray("abandonAudioFocus(QString)") << QByteArray("int") << (Names{"clientId"});
    QTest::newRow("unregisterAudioFocusClient") << 3 << false << QByteArray("unregisterAudioFocusClient(QString)") << QByteArray("void") << (Names{"clientId"});
    QTest::newRow("getCurrentAudioFocus") << 4 << false << QByteArray("getCurrentAudioFocus()") << QByteArray("int") << Names();
}

void AudioServiceTest::metaObject()
{
    QFETCH(int, index);
    QFETCH(bool, isSignal);
    const QMetaObject &meta = AudioService::staticMetaObject;
    const QMetaMethod method = meta.method(meta.methodOffset() + index);
    QTEST(method.methodSignature(), "signature");
    QTEST(QByteArray(method.typeName()), "result");
    QTEST(method.parameterNames(), "names");
    QCOMPARE(method.methodType(), isSignal ? QMetaMethod::Signal : QMetaMethod::Slot);
    QCOMPARE(method.access(), QMetaMethod::Public);
}

void AudioServiceTest::metaObjectSize()
{
    const QMetaObject &meta = AudioService::staticMetaObject;
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 5);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
}

void AudioServiceTest::interfaceIdentifier()
{
    AudioService service;
    QCOMPARE(service.qt_metacast("com.brevika.tavi.IAudioFocusDispatcher/1.0"), static_cast<void *>(static_cast<IAudioFocusDispatcher *>(&service)));
    QCOMPARE(qobject_interface_iid<IAudioFocusDispatcher *>(), "com.brevika.tavi.IAudioFocusDispatcher/1.0");
    QCOMPARE(qobject_cast<IAudioFocusDispatcher *>(static_cast<QObject *>(&service)), static_cast<IAudioFocusDispatcher *>(&service));
    QVERIFY(!service.qt_metacast("com.brevika.tavi.IAudioFocusDispatcher/1.1"));
    QVERIFY(service.inherits("AudioService"));
}

void AudioServiceTest::parent()
{
    QObject owner;
    const AudioService service(&owner);
    QCOMPARE(service.parent(), &owner);
    QVERIFY(service.children().isEmpty()); // the stack is no child
}

void AudioServiceTest::dispatch_data()
{
    QTest::addColumn<int>("focusChange");
    QTest::addColumn<QString>("name");
    QTest::newRow("LOSS_TRANSIENT_CAN_DUCK") << -3 << QStringLiteral("LOSS_TRANSIENT_CAN_DUCK");
    QTest::newRow("LOSS_TRANSIENT") << -2 << QStringLiteral("LOSS_TRANSIENT");
    QTest::newRow("LOSS") << -1 << QStringLiteral("LOSS");
    QTest::newRow("NONE") << 0 << QStringLiteral("NONE");
    QTest::newRow("GAIN") << 1 << QStringLiteral("GAIN");
    QTest::newRow("unknown") << 12 << QStringLiteral("[invalid focus change 12]");
}

void AudioServiceTest::dispatch()
{
    QFETCH(int, focusChange);
    QFETCH(QString, name);
    AudioService service;
    ChangeRecorder changes(service);
    LogRecorder log;
    service.dispatchAudioFocusChange(focusChange, QStringLiteral("music"));
    QCOMPARE(changes.take(), QStringList(QString::number(focusChange) + QStringLiteral(" music")));
    QCOMPARE(log.takeTexts(), QStringList(dispatchLine(name.toLatin1().constData(), "music")));
}

void AudioServiceTest::lossBeforeTheRequestReturns()
{
    AudioService service;
    ChangeRecorder changes(service);
    LogRecorder log;
    QCOMPARE(service.requestAudioFocus(3, 1, QStringLiteral("A")), 0);
    QCOMPARE(changes.take(), QStringList());
    QCOMPARE(service.requestAudioFocus(3, 3, QStringLiteral("B")), 0);
    QCOMPARE(changes.take(), QStringList(QStringLiteral("-3 A")));
    QCOMPARE(log.takeTexts(), (QStringList{lossLine("LOSS_TRANSIENT_CAN_DUCK", "A"), dispatchLine("LOSS_TRANSIENT_CAN_DUCK", "A")}));
    QCOMPARE(service.getCurrentAudioFocus(), 3);
}

void AudioServiceTest::sameRequestAgain()
{
    AudioService service;
    service.requestAudioFocus(3, 1, QStringLiteral("A"));
    service.requestAudioFocus(3, 3, QStringLiteral("B"));
    ChangeRecorder changes(service);
    LogRecorder log;
    QCOMPARE(service.requestAudioFocus(3, 3, QStringLiteral("B")), 0);
    QCOMPARE(changes.take(), QStringList());
    QCOMPARE(log.takeTexts(), QStringList());
}

void AudioServiceTest::abandonTellsTheNext()
{
    AudioService service;
    service.requestAudioFocus(3, 1, QStringLiteral("A"));
    service.requestAudioFocus(3, 3, QStringLiteral("B"));
    ChangeRecorder changes(service);
    QCOMPARE(service.abandonAudioFocus(QStringLiteral("B")), 0);
    QCOMPARE(changes.take(), QStringList(QStringLiteral("1 A")));
    QCOMPARE(service.getCurrentAudioFocus(), 1);
    QCOMPARE(service.abandonAudioFocus(QStringLiteral("unknown")), 0);
    QCOMPARE(changes.take(), QStringList());
}

void AudioServiceTest::unregisterTellsNobody()
{
    AudioService service;
    service.requestAudioFocus(3, 1, QStringLiteral("A"));
    service.requestAudioFocus(3, 3, QStringLiteral("B"));
    ChangeRecorder changes(service);
    service.unregisterAudioFocusClient(QStringLiteral("B"));
    QCOMPARE(changes.take(), QStringList());
    QCOMPARE(service.getCurrentAudioFocus(), 1);
}

void AudioServiceTest::refusedRequest()
{
    AudioService service;
    service.requestAudioFocus(3, 2, QStringLiteral("IN_VOICE_COMM_FOCUS_ID"));
    ChangeRecorder changes(service);
    QCOMPARE(service.requestAudioFocus(3, 1, QStringLiteral("A")), 1);
    QCOMPARE(changes.take(), QStringList());
    QCOMPARE(service.getCurrentAudioFocus(), 2);
}

void AudioServiceTest::callsFromInsideTheSignal()
{
    AudioService service;
    service.requestAudioFocus(3, 1, QStringLiteral("A"));
    service.requestAudioFocus(3, 2, QStringLiteral("B"));
    ChangeRecorder changes(service);
    // A gives up when it has lost focus for good, and brings more clients than the stack has room for.
    connect(&service, &AudioService::audioFocusChanged, this, [&service](int newState, const QString &clientId) {
        if (newState != -1 || clientId != QLatin1String("A"))
            return;
        service.abandonAudioFocus(clientId);
        for (int i = 0; i < 100; ++i)
            service.requestAudioFocus(3, 3, QStringLiteral("more%1").arg(i));
    });
    QCOMPARE(service.requestAudioFocus(3, 1, QStringLiteral("C")), 0);
    QCOMPARE(service.getCurrentAudioFocus(), 1);
    const QStringList told = changes.take();
    QCOMPARE(told.filter(QStringLiteral("-1 A")).size(), 1);
    QCOMPARE(told.filter(QRegularExpression(QStringLiteral("^-1 more"))).size(), 100);
    service.abandonAudioFocus(QStringLiteral("C"));
    QCOMPARE(changes.take(), QStringList(QStringLiteral("1 more99")));
}

void AudioServiceTest::uncheckedHint()
{
    AudioService service;
    QCOMPARE(service.requestAudioFocus(3, -17, QStringLiteral("A")), 0);
    QCOMPARE(service.getCurrentAudioFocus(), -17);
}

void AudioServiceTest::calledByName()
{
    AudioService service;
    int result = -1;
    QVERIFY(
        QMetaObject::invokeMethod(&service, "requestAudioFocus", Q_RETURN_ARG(int, result), Q_ARG(int, 3), Q_ARG(int, 4), Q_ARG(QString, QStringLiteral("A"))));
    QCOMPARE(result, 0);
    QVERIFY(QMetaObject::invokeMethod(&service, "getCurrentAudioFocus", Q_RETURN_ARG(int, result)));
    QCOMPARE(result, 4);
    QVERIFY(QMetaObject::invokeMethod(&service, "unregisterAudioFocusClient", Q_ARG(QString, QStringLiteral("A"))));
    QVERIFY(QMetaObject::invokeMethod(&service, "getCurrentAudioFocus", Q_RETURN_ARG(int, result)));
    QCOMPARE(result, 0);
    result = -1;
    QVERIFY(QMetaObject::invokeMethod(&service, "abandonAudioFocus", Q_RETURN_ARG(int, result), Q_ARG(QString, QStringLiteral("A"))));
    QCOMPARE(result, 0);
}

void AudioServiceTest::callsThroughTheInterface()
{
    AudioService service;
    ChangeRecorder changes(service);
    auto *const dispatcher = qobject_cast<IAudioFocusDispatcher *>(&service);
    QVERIFY(dispatcher);
    dispatcher->dispatchAudioFocusChange(-2, QStringLiteral("A"));
    QCOMPARE(changes.take(), QStringList(QStringLiteral("-2 A")));
}

QTEST_GUILESS_MAIN(AudioServiceTest)
#include "tst_audioservice.moc"

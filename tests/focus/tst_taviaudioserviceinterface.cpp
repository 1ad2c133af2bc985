#include "generatedaudioserviceproxy.h"
#include "mortalprocess.h"
#include "privatebus.h"

#include <qzaudio/taviaudioserviceinterface.h>

#include <QtDBus/QDBusPendingCallWatcher>
#include <QtTest/QtTest>

#include <functional>
#include <memory>

namespace
{

constexpr int longestWait = 20000; // ms
constexpr int noBlock = 2000; // ms; a blocking call would wait for 25 s

QString serviceName()
{
    return QStringLiteral("tavi.AudioService");
}

QString objectPath()
{
    return QStringLiteral("/tavi/AudioService");
}

/// Waits for the end of a call without blocking: the event loop runs.
bool isFinished(const QDBusPendingCall &call)
{
    QDBusPendingCallWatcher watcher(call);
    return watcher.isFinished() || QSignalSpy(&watcher, &QDBusPendingCallWatcher::finished).wait(longestWait);
}

/// The ten-word summary of a member, for the comparison of two classes.
QString describe(const QMetaMethod &method)
{
    const QString kind = method.methodType() == QMetaMethod::Signal ? QStringLiteral("signal") : QStringLiteral("slot");
    return QStringLiteral("%1 %2 %3 (%4) %5")
        .arg(kind,
             QString::fromLatin1(method.typeName()),
             QString::fromLatin1(method.methodSignature()),
             QString::fromLatin1(method.parameterNames().join(", ")),
             QString::number(method.access()));
}

QStringList ownMembers(const QMetaObject &meta)
{
    QStringList members;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index)
        members.append(describe(meta.method(index)));
    return members;
}

/// A call of each method, by its name.
using Call = std::function<QDBusPendingCall(TaviAudioServiceInterface &)>;

const QVector<QPair<const char *, Call>> &allCalls()
{
    static const QVector<QPair<const char *, Call>> calls = {
        {"abandonAudioFocus", [](TaviAudioServiceInterface &proxy) { return proxy.abandonAudioFocus(QStringLiteral("music")); }},
        {"currentMegaBase", [](TaviAudioServiceInterface &proxy) { return proxy.currentMegaBase(); }},
        {"getCurrentAudioFocus", [](TaviAudioServiceInterface &proxy) { return proxy.getCurrentAudioFocus(); }},
        {"isVolumeAvailable", [](TaviAudioServiceInterface &proxy) { return proxy.isVolumeAvailable(); }},
        {"isVolumeMute", [](TaviAudioServiceInterface &proxy) { return proxy.isVolumeMute(); }},
        {"nextMegaBase", [](TaviAudioServiceInterface &proxy) { return proxy.nextMegaBase(); }},
        {"requestAudioFocus", [](TaviAudioServiceInterface &proxy) { return proxy.requestAudioFocus(3, 4, QStringLiteral("music")); }},
        {"unregisterAudioFocusClient", [](TaviAudioServiceInterface &proxy) { return proxy.unregisterAudioFocusClient(QStringLiteral("music")); }},
        {"volumeLevel", [](TaviAudioServiceInterface &proxy) { return proxy.volumeLevel(); }},
    };
    return calls;
}

} // namespace

Q_DECLARE_METATYPE(Call)

class TaviAudioServiceInterfaceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void members();
    void order();
    void interfaceName();

    void numbers();
    void truths();
    void withoutValue();
    void argumentsOnTheBus();
    void signalsOfTheService();
    void signalsOfAnotherPath();
    void serviceThatComesLater();

    void absentService_data();
    void absentService();
    void serviceDiesInACall_data();
    void serviceDiesInACall();
    void lateAnswer_data();
    void lateAnswer();
    void answerAfterTheTimeout();
    void wrongTypes_data();
    void wrongTypes();
    void tooFewValues();
    void errorAnswer();
    void malformedSignals();
    void busGoesAway();
    void noBusAtAll();

private:
    void eachMethod();
    void startFake(const char *scenario);
    /// Has the fake do something, and waits until it has.
    QVariant control(const char *member);

    std::unique_ptr<PrivateBus> bus;
    std::unique_ptr<MortalProcess> fake;
    std::unique_ptr<TaviAudioServiceInterface> proxy;
};

void TaviAudioServiceInterfaceTest::init()
{
    bus = std::make_unique<PrivateBus>();
    QVERIFY2(!bus->address().isEmpty(), "dbus-daemon did not start");
    fake = std::make_unique<MortalProcess>();
    proxy = std::make_unique<TaviAudioServiceInterface>(serviceName(), objectPath(), bus->connect());
}

void TaviAudioServiceInterfaceTest::cleanup()
{
    proxy.reset();
    fake.reset();
    bus.reset();
}

void TaviAudioServiceInterfaceTest::startFake(const char *scenario)
{
    const QString line = fake->startAndReadLine(QStringLiteral(FAKE_AUDIO_SERVICE), {bus->address(), QLatin1String(scenario)});
    QCOMPARE(line, QStringLiteral("ready"));
}

QVariant TaviAudioServiceInterfaceTest::control(const char *member)
{
    const QDBusMessage message = QDBusMessage::createMethodCall(serviceName(), objectPath(), QStringLiteral("fake.Control"), QLatin1String(member));
    QDBusPendingCall call = proxy->connection().asyncCall(message);
    return isFinished(call) && !call.isError() ? call.reply().arguments().value(0) : QVariant();
}

/// One row for each method.
void TaviAudioServiceInterfaceTest::eachMethod()
{
    QTest::addColumn<Call>("call");
    for (const auto &row : allCalls())
        QTest::newRow(row.first) << row.second;
}

void TaviAudioServiceInterfaceTest::members()
{
    const QStringList written = ownMembers(TaviAudioServiceInterface::staticMetaObject);
    const QStringList generated = ownMembers(GeneratedAudioServiceProxy::staticMetaObject);
    QCOMPARE(written.size(), 12);
    for (int index = 0; index < qMax(written.size(), generated.size()); ++index)
        QCOMPARE(written.value(index), generated.value(index));
    QCOMPARE(TaviAudioServiceInterface::staticMetaObject.superClass(), GeneratedAudioServiceProxy::staticMetaObject.superClass());
    QCOMPARE(TaviAudioServiceInterface::staticMetaObject.methodOffset(), GeneratedAudioServiceProxy::staticMetaObject.methodOffset());
}

void TaviAudioServiceInterfaceTest::order()
{
    const QMetaObject &meta = TaviAudioServiceInterface::staticMetaObject;
    QList<QByteArray> names;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index)
        names.append(meta.method(index).name());
    QCOMPARE(names,
             (QList<QByteArray>{"audioFocusChanged",
                                "megaBaseChanged",
                                "volumeChanged",
                                "abandonAudioFocus",
                                "currentMegaBase",
                                "getCurrentAudioFocus",
                                "isVolumeAvailable",
                                "isVolumeMute",
                                "nextMegaBase",
                                "requestAudioFocus",
                                "unregisterAudioFocusClient",
                                "volumeLevel"}));
    // The name is misspelled on the bus, on purpose.
    QCOMPARE(meta.method(meta.methodOffset() + 2).parameterNames(), (QList<QByteArray>{"isMite", "level"}));
}

void TaviAudioServiceInterfaceTest::interfaceName()
{
    QCOMPARE(TaviAudioServiceInterface::staticInterfaceName(), "tavi.AudioService");
    QCOMPARE(proxy->interface(), QStringLiteral("tavi.AudioService"));
    QCOMPARE(proxy->service(), serviceName());
    QCOMPARE(proxy->path(), objectPath());
    QVERIFY(!proxy->parent());
    QObject parent;
    const TaviAudioServiceInterface child(serviceName(), objectPath(), proxy->connection(), &parent);
    QCOMPARE(child.parent(), &parent);
}

void TaviAudioServiceInterfaceTest::numbers()
{
    startFake("normal");
    const QVector<QPair<QDBusPendingReply<int>, int>> calls = {
        {proxy->abandonAudioFocus(QStringLiteral("music")), 11},
        {proxy->currentMegaBase(), 12},
        {proxy->getCurrentAudioFocus(), 13},
        {proxy->requestAudioFocus(3, 4, QStringLiteral("music")), 14},
        {proxy->volumeLevel(), 15},
    };
    for (const auto &call : calls) {
        QVERIFY(isFinished(call.first));
        QVERIFY(call.first.isValid());
        QCOMPARE(call.first.value(), call.second);
    }
}

void TaviAudioServiceInterfaceTest::truths()
{
    startFake("normal");
    for (const QDBusPendingReply<bool> &call : {proxy->isVolumeAvailable(), proxy->isVolumeMute()}) {
        QVERIFY(isFinished(call));
        QVERIFY(call.isValid());
        QCOMPARE(call.value(), true);
    }
}

void TaviAudioServiceInterfaceTest::withoutValue()
{
    startFake("normal");
    for (const QDBusPendingReply<> &call : {proxy->nextMegaBase(), proxy->unregisterAudioFocusClient(QStringLiteral("music"))}) {
        QVERIFY(isFinished(call));
        QVERIFY(call.isValid());
    }
}

void TaviAudioServiceInterfaceTest::argumentsOnTheBus()
{
    startFake("normal");
    for (const auto &row : allCalls())
        QVERIFY(isFinished(row.second(*proxy)));
    QVERIFY(isFinished(proxy->requestAudioFocus(-1, 2147483647, QString::fromUtf8("h\u00f6rer \u97f3"))));
    QVERIFY(isFinished(proxy->abandonAudioFocus(QString())));
    QCOMPARE(control("calls").toStringList(),
             (QStringList{QStringLiteral("abandonAudioFocus(s) music"),
                          QStringLiteral("currentMegaBase() "),
                          QStringLiteral("getCurrentAudioFocus() "),
                          QStringLiteral("isVolumeAvailable() "),
                          QStringLiteral("isVolumeMute() "),
                          QStringLiteral("nextMegaBase() "),
                          QStringLiteral("requestAudioFocus(iis) 3 4 music"),
                          QStringLiteral("unregisterAudioFocusClient(s) music"),
                          QStringLiteral("volumeLevel() "),
                          QString::fromUtf8("requestAudioFocus(iis) -1 2147483647 h\u00f6rer \u97f3"),
                          QStringLiteral("abandonAudioFocus(s) ")}));
}

void TaviAudioServiceInterfaceTest::signalsOfTheService()
{
    QSignalSpy focus(proxy.get(), &TaviAudioServiceInterface::audioFocusChanged);
    QSignalSpy megaBase(proxy.get(), &TaviAudioServiceInterface::megaBaseChanged);
    QSignalSpy volume(proxy.get(), &TaviAudioServiceInterface::volumeChanged);
    startFake("normal");
    control("signals");
    QTRY_COMPARE_WITH_TIMEOUT(volume.size(), 1, longestWait);
    QCOMPARE(focus.size(), 1);
    QCOMPARE(focus.first(), (QVariantList{-3, QStringLiteral("music")}));
    QCOMPARE(megaBase.size(), 1);
    QCOMPARE(megaBase.first(), QVariantList{2});
    QCOMPARE(volume.first(), (QVariantList{true, 17}));
}

void TaviAudioServiceInterfaceTest::signalsOfAnotherPath()
{
    TaviAudioServiceInterface elsewhere(serviceName(), QStringLiteral("/elsewhere"), proxy->connection());
    QSignalSpy elsewhereFocus(&elsewhere, &TaviAudioServiceInterface::audioFocusChanged);
    QSignalSpy focus(proxy.get(), &TaviAudioServiceInterface::audioFocusChanged);
    startFake("normal");
    control("signals");
    QTRY_COMPARE_WITH_TIMEOUT(focus.size(), 1, longestWait);
    QCOMPARE(elsewhereFocus.size(), 0);
}

void TaviAudioServiceInterfaceTest::serviceThatComesLater()
{
    // The proxy was made while nobody had the name.
    QDBusPendingReply<int> early = proxy->volumeLevel();
    QVERIFY(isFinished(early));
    QCOMPARE(early.error().type(), QDBusError::ServiceUnknown);
    startFake("normal");
    QDBusPendingReply<int> reply = proxy->volumeLevel();
    QVERIFY(isFinished(reply));
    QCOMPARE(reply.value(), 15);
}

void TaviAudioServiceInterfaceTest::absentService_data()
{
    eachMethod();
}

void TaviAudioServiceInterfaceTest::absentService()
{
    QFETCH(Call, call);
    QElapsedTimer time;
    time.start();
    const QDBusPendingCall pending = call(*proxy);
    QVERIFY(time.elapsed() < noBlock);
    QVERIFY(isFinished(pending));
    QVERIFY(pending.isError());
    QCOMPARE(pending.error().type(), QDBusError::ServiceUnknown);
}

void TaviAudioServiceInterfaceTest::serviceDiesInACall_data()
{
    eachMethod();
}

void TaviAudioServiceInterfaceTest::serviceDiesInACall()
{
    QFETCH(Call, call);
    startFake("dies");
    QElapsedTimer time;
    time.start();
    const QDBusPendingCall pending = call(*proxy);
    QVERIFY(time.elapsed() < noBlock);
    QVERIFY(isFinished(pending));
    QVERIFY(pending.isError());
    QCOMPARE(pending.error().type(), QDBusError::NoReply);
    QTRY_COMPARE_WITH_TIMEOUT(fake->state(), QProcess::NotRunning, longestWait);

    // The next call finds nobody.
    const QDBusPendingCall next = call(*proxy);
    QVERIFY(isFinished(next));
    QCOMPARE(next.error().type(), QDBusError::ServiceUnknown);
}

void TaviAudioServiceInterfaceTest::lateAnswer_data()
{
    eachMethod();
}

void TaviAudioServiceInterfaceTest::lateAnswer()
{
    QFETCH(Call, call);
    startFake("late");
    QElapsedTimer time;
    time.start();
    const QDBusPendingCall pending = call(*proxy);
    QVERIFY(time.elapsed() < noBlock);
    // The fake has got the call by now, and keeps it.
    QCOMPARE(control("calls").toStringList().size(), 1);
    QVERIFY(!pending.isFinished());
    control("answer");
    QVERIFY(isFinished(pending));
    QVERIFY(!pending.isError());
}

void TaviAudioServiceInterfaceTest::answerAfterTheTimeout()
{
    startFake("late");
    proxy->setTimeout(1);
    QDBusPendingReply<int> reply = proxy->volumeLevel();
    QVERIFY(isFinished(reply));
    QVERIFY(reply.isError());
    // libdbus says "no reply" here, the bus would say "timed out".
    QVERIFY(reply.error().type() == QDBusError::NoReply || reply.error().type() == QDBusError::Timeout || reply.error().type() == QDBusError::TimedOut);
    proxy->setTimeout(-1);
    control("answer"); // comes to nobody any more
    QVERIFY(reply.isError());
    QDBusPendingReply<int> next = proxy->currentMegaBase();
    control("answer");
    QVERIFY(isFinished(next));
    QCOMPARE(next.value(), 12);
}

void TaviAudioServiceInterfaceTest::wrongTypes_data()
{
    QTest::addColumn<QString>("method");
    for (const char *method : {"abandonAudioFocus", "currentMegaBase", "getCurrentAudioFocus", "requestAudioFocus", "volumeLevel"})
        QTest::newRow(method) << QString::fromLatin1(method);
}

void TaviAudioServiceInterfaceTest::wrongTypes()
{
    QFETCH(QString, method);
    startFake("wrong-types");
    QDBusPendingReply<int> reply;
    if (method == QLatin1String("abandonAudioFocus"))
        reply = proxy->abandonAudioFocus(QStringLiteral("music"));
    else if (method == QLatin1String("currentMegaBase"))
        reply = proxy->currentMegaBase();
    else if (method == QLatin1String("getCurrentAudioFocus"))
        reply = proxy->getCurrentAudioFocus();
    else if (method == QLatin1String("requestAudioFocus"))
        reply = proxy->requestAudioFocus(3, 4, QStringLiteral("music"));
    else
        reply = proxy->volumeLevel();
    QVERIFY(isFinished(reply));
    QVERIFY(!reply.isValid());
    QCOMPARE(reply.error().type(), QDBusError::InvalidSignature);
    QCOMPARE(reply.value(), 0);

    QDBusPendingReply<bool> truth = proxy->isVolumeMute();
    QVERIFY(isFinished(truth));
    QVERIFY(!truth.isValid());
    QCOMPARE(truth.error().type(), QDBusError::InvalidSignature);
    QCOMPARE(truth.value(), false);
}

void TaviAudioServiceInterfaceTest::tooFewValues()
{
    startFake("too-few");
    QDBusPendingReply<int> reply = proxy->requestAudioFocus(3, 4, QStringLiteral("music"));
    QVERIFY(isFinished(reply));
    QVERIFY(!reply.isValid());
    QCOMPARE(reply.error().type(), QDBusError::InvalidSignature);
}

void TaviAudioServiceInterfaceTest::errorAnswer()
{
    startFake("error");
    QDBusPendingReply<int> reply = proxy->requestAudioFocus(3, 4, QStringLiteral("music"));
    QVERIFY(isFinished(reply));
    QVERIFY(!reply.isValid());
    QCOMPARE(reply.error().type(), QDBusError::AccessDenied);
    QCOMPARE(reply.error().message(), QStringLiteral("not today"));
    QDBusPendingReply<> nothing = proxy->nextMegaBase();
    QVERIFY(isFinished(nothing));
    QVERIFY(!nothing.isValid());
}

void TaviAudioServiceInterfaceTest::malformedSignals()
{
    QSignalSpy focus(proxy.get(), &TaviAudioServiceInterface::audioFocusChanged);
    QSignalSpy megaBase(proxy.get(), &TaviAudioServiceInterface::megaBaseChanged);
    QSignalSpy volume(proxy.get(), &TaviAudioServiceInterface::volumeChanged);
    startFake("normal");
    control("malformed");
    QTRY_COMPARE_WITH_TIMEOUT(megaBase.size(), 1, longestWait);
    QCOMPARE(megaBase.first(), QVariantList{99}); // the good one, which came last
    QCOMPARE(focus.size(), 0);
    QCOMPARE(volume.size(), 0);
    QDBusPendingReply<int> reply = proxy->volumeLevel();
    QVERIFY(isFinished(reply));
    QCOMPARE(reply.value(), 15);
}

void TaviAudioServiceInterfaceTest::busGoesAway()
{
    startFake("late");
    const QDBusPendingReply<int> reply = proxy->volumeLevel();
    QCOMPARE(control("calls").toStringList().size(), 1);
    QVERIFY(bus->stop());
    QVERIFY(isFinished(reply));
    QVERIFY(reply.isError());
    const QDBusPendingReply<int> next = proxy->volumeLevel();
    QVERIFY(isFinished(next));
    QVERIFY(next.isError());
}

void TaviAudioServiceInterfaceTest::noBusAtAll()
{
    TaviAudioServiceInterface orphan(serviceName(), objectPath(), QDBusConnection(QStringLiteral("never made")));
    QVERIFY(!orphan.isValid());
    for (const auto &row : allCalls()) {
        const QDBusPendingCall pending = row.second(orphan);
        QVERIFY(isFinished(pending));
        QVERIFY(pending.isError());
        QCOMPARE(pending.error().type(), QDBusError::Disconnected);
    }
}

QTEST_GUILESS_MAIN(TaviAudioServiceInterfaceTest)
#include "tst_taviaudioserviceinterface.moc"

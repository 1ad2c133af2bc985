#include "daemontest.h"
#include "hangingwriter.h"

#include <QtDBus/QDBusConnectionInterface>
#include <QtTest/QtTest>

#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace
{

// Users that every system has ("daemon" and "bin"): the bus lets none in whose groups it cannot look up.
constexpr uint firstUser = 1;
constexpr uint secondUser = 2;

QString callId()
{
    return QStringLiteral("IN_VOICE_COMM_FOCUS_ID");
}

} // namespace

/// Several users on the system bus.
class DaemonUsersTest : public DaemonTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void oneUserTakesAll_data();
    void oneUserTakesAll();
    void ownUserTakesAll();
    void callOfAnybody();
    void callUsers();
    void callOnTheSessionBus();
    void callIsReported_data();
    void callIsReported();
    void callThatNobodyMakes();
    void othersLeaveDuringACall();
    void questionsOfAUser();

private:
    using Client = std::unique_ptr<FocusClientConnection>;

    void start(const QStringList &arguments = {});
    Client client(uint user) { return std::make_unique<FocusClientConnection>(*bus, bus->connectAs(user)); }
};

void DaemonUsersTest::initTestCase()
{
    if (::geteuid() != 0)
        QSKIP("Only root can be several users");
    if (!::getpwuid(firstUser) || !::getpwuid(secondUser) || ::seteuid(firstUser) != 0)
        QSKIP("There are no other users here");
    QCOMPARE(::seteuid(0), 0);
}

void DaemonUsersTest::init()
{
    DaemonTest::init();
    startSystemBus(::geteuid());
    daemon->setProcessChannelMode(QProcess::SeparateChannels);
}

void DaemonUsersTest::start(const QStringList &arguments)
{
    startDaemon(QStringList{QStringLiteral("--system"), QStringLiteral("--no-volume")} + arguments);
}

void DaemonUsersTest::oneUserTakesAll_data()
{
    QTest::addColumn<int>("connections");
    QTest::addColumn<int>("ids");
    QTest::addColumn<int>("granted");
    QTest::newRow("many ids") << 16 << 16 << 64;
    QTest::newRow("many connections") << 128 << 1 << 32;
}

void DaemonUsersTest::oneUserTakesAll()
{
    QFETCH(int, connections);
    QFETCH(int, ids);
    start();
    std::vector<Client> flood;
    int granted = 0;
    for (int number = 0; number < connections; ++number) {
        flood.push_back(client(firstUser));
        for (int id = 0; id < ids; ++id) {
            const QString result = flood.back()->request(QStringLiteral("flood %1 %2").arg(number).arg(id), 1);
            granted += result == QLatin1String("0") ? 1 : 0;
            QVERIFY2(result == QLatin1String("0") || result == QLatin1String("LimitsExceeded"), result.toLatin1().constData());
        }
    }
    QTEST(granted, "granted");
    QCOMPARE(client(secondUser)->request(QStringLiteral("another user's"), 1), QStringLiteral("0"));
    QCOMPARE(client(0)->request(QStringLiteral("the service's own user's"), 1), QStringLiteral("0"));
    // What a user gives back is there again.
    flood.front()->abandon(QStringLiteral("flood 0 0"));
    QCOMPARE(flood.back()->request(QStringLiteral("flood again"), 1), QStringLiteral("0"));
}

void DaemonUsersTest::ownUserTakesAll()
{
    start();
    std::vector<Client> flood;
    for (int number = 0; number < 16; ++number) {
        flood.push_back(client(0));
        for (int id = 0; id < 16; ++id)
            QCOMPARE(flood.back()->request(QStringLiteral("flood %1 %2").arg(number).arg(id), 1), QStringLiteral("0"));
    }
    QCOMPARE(client(0)->request(QStringLiteral("one too many"), 1), QStringLiteral("LimitsExceeded"));
    QCOMPARE(client(firstUser)->request(QStringLiteral("another user's"), 1), QStringLiteral("0"));
}

void DaemonUsersTest::callOfAnybody()
{
    start();
    const Client stranger = client(firstUser);
    const Client music = client(secondUser);
    const Client phone = client(0);
    QCOMPARE(stranger->request(callId(), 1), QStringLiteral("AccessDenied"));
    QCOMPARE(music->request(QStringLiteral("music"), 1), QStringLiteral("0"));
    QCOMPARE(phone->request(callId(), 2), QStringLiteral("0"));
    QCOMPARE(music->request(QStringLiteral("music"), 1), QStringLiteral("1"));
    QCOMPARE(stranger->request(callId(), 1), QStringLiteral("AccessDenied"));
    QCOMPARE(stranger->abandon(callId()), QStringLiteral("AccessDenied"));
    QCOMPARE(phone->abandon(callId()), QStringLiteral("0"));
    QCOMPARE(stranger->request(callId(), 1), QStringLiteral("AccessDenied"));
}

void DaemonUsersTest::callUsers()
{
    start({QStringLiteral("--call-user"), QString::number(firstUser)});
    const Client phone = client(firstUser);
    QCOMPARE(client(secondUser)->request(callId(), 2), QStringLiteral("AccessDenied"));
    QCOMPARE(client(0)->request(callId(), 2), QStringLiteral("AccessDenied")); // who is named stands in the default's place
    QCOMPARE(phone->request(callId(), 2), QStringLiteral("0"));
}

void DaemonUsersTest::callOnTheSessionBus()
{
    DaemonTest::init();
    startDaemon({QStringLiteral("--call-user"), QString::number(firstUser)});
    FocusClientConnection phone(*bus);
    QCOMPARE(phone.request(callId(), 2), QStringLiteral("AccessDenied"));
}

void DaemonUsersTest::callIsReported_data()
{
    QTest::addColumn<QString>("end");
    QTest::newRow("abandoned") << QStringLiteral("abandon");
    QTest::newRow("unregistered") << QStringLiteral("unregister");
    QTest::newRow("connection gone") << QStringLiteral("leave");
}

void DaemonUsersTest::callIsReported()
{
    QFETCH(QString, end);
    start({QStringLiteral("--call-user"), QString::number(firstUser)});
    const Client phone = client(firstUser);
    const QByteArray who
        = QStringLiteral("%1 (user %2, process %3)\n").arg(phone->connection().baseService()).arg(firstUser).arg(QCoreApplication::applicationPid()).toLatin1();
    QCOMPARE(phone->request(callId(), 2), QStringLiteral("0"));
    QCOMPARE(phone->request(callId(), 2), QStringLiteral("1")); // refused like anybody, and no news
    QByteArray errors;
    const auto hasLines = [&](int count) {
        errors += daemon->readAllStandardError();
        return errors.count('\n') >= count;
    };
    QTRY_VERIFY_WITH_TIMEOUT(hasLines(1), longestWait);
    QCOMPARE(errors, "qzaudio-focusd: a call has focus, from " + who);
    errors.clear();
    if (end == QLatin1String("abandon"))
        phone->abandon(callId());
    else if (end == QLatin1String("unregister"))
        phone->result(phone->proxy().unregisterAudioFocusClient(callId()));
    else
        phone->leave();
    QTRY_VERIFY_WITH_TIMEOUT(hasLines(1), longestWait);
    QCOMPARE(errors, "qzaudio-focusd: the call has no focus any more, from " + who);
}

void DaemonUsersTest::callThatNobodyMakes()
{
    start({QStringLiteral("--call-user"), QString::number(firstUser)});
    const Client phone = client(firstUser);
    QCOMPARE(phone->abandon(callId()), QStringLiteral("0"));
    QCOMPARE(phone->result(phone->proxy().unregisterAudioFocusClient(callId())), QStringLiteral("done"));
    QVERIFY(daemon->stop());
    QCOMPARE(daemon->readAllStandardError(), QByteArray());
}

void DaemonUsersTest::othersLeaveDuringACall()
{
    start({QStringLiteral("--call-user"), QString::number(firstUser)});
    const Client music = client(secondUser);
    const Client phone = client(firstUser);
    QCOMPARE(music->request(QStringLiteral("music"), 1), QStringLiteral("0"));
    QCOMPARE(phone->request(callId(), 2), QStringLiteral("0"));
    const QString name = music->connection().baseService();
    music->leave();
    const QDBusConnectionInterface *const interface = phone->connection().interface();
    QTRY_VERIFY_WITH_TIMEOUT(!interface->isServiceRegistered(name), longestWait);
    // The bus told the daemon of it before this question.
    QCOMPARE(phone->result(phone->proxy().getCurrentAudioFocus()), QStringLiteral("2"));
    QVERIFY(daemon->stop());
    const QByteArray errors = daemon->readAllStandardError();
    QVERIFY(errors.startsWith("qzaudio-focusd: a call has focus, from "));
    QCOMPARE(errors.count('\n'), 1);
}

/// However many connections a user has, others are answered, too.
void DaemonUsersTest::questionsOfAUser()
{
    startDaemon({QStringLiteral("--system")});
    std::vector<Client> flood;
    QVector<QDBusPendingReply<int>> replies;
    const Client other = client(secondUser);
    QDBusPendingReply<int> reply;
    {
        const HangingWriter writer;
        QVERIFY(writer.isHeld());
        for (int number = 0; number < 5; ++number) {
            flood.push_back(client(firstUser));
            for (int question = 0; question < 16; ++question)
                replies.append(flood.back()->proxy().volumeLevel());
        }
        QCOMPARE(flood.back()->result(replies.constLast()), QStringLiteral("LimitsExceeded"));
        reply = other->proxy().volumeLevel();
        QCOMPARE(other->result(other->proxy().getCurrentAudioFocus()), QStringLiteral("0"));
        QVERIFY(!reply.isFinished());
    }
    QCOMPARE(other->result(reply), QStringLiteral("20"));
    QStringList results;
    for (const auto &answer : qAsConst(replies))
        results.append(flood.front()->result(answer));
    QCOMPARE(results.count(QStringLiteral("20")), 64);
    QCOMPARE(results.count(QStringLiteral("LimitsExceeded")), 16);
}

QTEST_GUILESS_MAIN(DaemonUsersTest)
#include "tst_focusd_users.moc"

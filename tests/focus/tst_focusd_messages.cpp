#include "daemontest.h"

#include <QtCore/QSet>
#include <QtTest/QtTest>

#include <memory>
#include <vector>

namespace
{

/// What passes over a bus, as dbus-monitor sees it: each message once, however many receive it.
class BusMonitor
{
public:
    explicit BusMonitor(PrivateBus &bus)
        : m_connection(bus.connect())
    {
        m_monitor.start(QStringLiteral("dbus-monitor"), {QStringLiteral("--address"), bus.address(), QStringLiteral("--profile")});
        m_monitor.readNextLine(); // the heading, once it monitors
        take();
    }

    /// The messages since the last call, each by its member; answers and errors are "answer" and "error". The daemon's signs of life are left out:
    /// it asks the bus for one every few seconds, which a slow run meets.
    QStringList take()
    {
        const QString mark = QStringLiteral("mark%1").arg(++m_marks);
        if (!m_connection.send(QDBusMessage::createSignal(QStringLiteral("/test"), QStringLiteral("test.Mark"), mark)))
            return {};
        QStringList messages;
        for (;;) {
            const QStringList columns = m_monitor.readNextLine().split(QLatin1Char('\t'));
            if (columns.isEmpty() || columns.constFirst().isEmpty())
                return {}; // none came in time
            if (columns.constLast() == mark)
                return messages;
            if (columns.constLast() == QLatin1String("GetId"))
                m_signsOfLife.insert(columns.value(Sender) + QLatin1Char(' ') + columns.value(Serial));
            else if (m_signsOfLife.remove(columns.value(Destination) + QLatin1Char(' ') + columns.constLast()))
                continue;
            else if (columns.constFirst() == QLatin1String("mr"))
                messages.append(QStringLiteral("answer"));
            else if (columns.constFirst() == QLatin1String("err"))
                messages.append(QStringLiteral("error"));
            else if (!columns.constFirst().startsWith(QLatin1Char('#')))
                messages.append(columns.constLast());
        }
    }

private:
    Q_DISABLE_COPY(BusMonitor)

    /// Columns of all messages; the last one is the member, of an answer the serial of its question.
    enum Column {
        Type,
        Time,
        Serial,
        Sender,
        Destination,
    };

    QDBusConnection m_connection;
    MortalProcess m_monitor;
    int m_marks = 0;
    QSet<QString> m_signsOfLife; // that wait for their answers: who asked, and the question's serial
};

} // namespace

/// Each message on the bus costs about as much as a whole request: how many does the daemon need?
class DaemonMessagesTest : public DaemonTest
{
    Q_OBJECT

private Q_SLOTS:
    void messages_data();
    void messages();

private:
    using Client = std::unique_ptr<FocusClientConnection>;

    Client client() { return std::make_unique<FocusClientConnection>(*bus); }
    static QString carryOut(FocusClientConnection &client, const QString &step);
};

/// @param step such as "request 3" and "abandon"
QString DaemonMessagesTest::carryOut(FocusClientConnection &client, const QString &step)
{
    const QString id = QStringLiteral("client");
    if (step == QLatin1String("abandon"))
        return client.abandon(id);
    if (step == QLatin1String("unregister"))
        return client.result(client.proxy().unregisterAudioFocusClient(id));
    if (step == QLatin1String("take another's"))
        return client.request(QStringLiteral("holder 0"), 1);
    return client.request(id, step.section(QLatin1Char(' '), 1).toInt());
}

void DaemonMessagesTest::messages_data()
{
    QTest::addColumn<int>("holders"); // connections with a client in the stack, which all have lost focus but the last one
    QTest::addColumn<int>("idle"); // connections that have had one
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QString>("step");
    QTest::addColumn<int>("count");

    const QStringList none;
    const QStringList known{QStringLiteral("request 1"), QStringLiteral("abandon")};
    const QStringList on{QStringLiteral("request 1")};
    const QString request = QStringLiteral("request 1");
    const QString abandon = QStringLiteral("abandon");
    // Call and answer; who is at a connection is asked once, and everybody hears of a loss and of a gain.
    for (const int holders : {0, 100}) {
        const int told = holders > 0 ? 1 : 0;
        const auto row = [&](const char *name) -> QTestData & { return QTest::addRow("%s, %d others", name, holders) << holders << 0; };
        row("first request") << none << request << 4 + told;
        row("request") << known << request << 2 + told;
        row("same request again") << on << request << 2;
        row("request with another hint") << on << QStringLiteral("request 2") << 2;
        row("hint that does not exist") << known << QStringLiteral("request 0") << 2;
        row("abandonment") << on << abandon << 2 + told;
        row("abandonment of nothing") << known << abandon << 2;
        row("unregistration") << on << QStringLiteral("unregister") << 2;
    }
    QTest::newRow("another's client") << 100 << 0 << known << QStringLiteral("take another's") << 2;
    // More connections than the service keeps in mind.
    QTest::newRow("first request, 200 idle ones") << 0 << 200 << none << request << 4;
    QTest::newRow("request, 200 idle ones") << 0 << 200 << known << request << 2;
}

void DaemonMessagesTest::messages()
{
    QFETCH(int, holders);
    QFETCH(int, idle);
    QFETCH(QStringList, before);
    QFETCH(QString, step);
    startDaemon({QStringLiteral("--no-volume")});
    const Client measured = client();
    std::vector<Client> others;
    for (int number = 0; number < holders; ++number) {
        others.push_back(client());
        QCOMPARE(others.back()->request(QStringLiteral("holder %1").arg(number), 1), QStringLiteral("0"));
    }
    for (const QString &earlier : qAsConst(before))
        QCOMPARE(carryOut(*measured, earlier), QStringLiteral("0"));
    for (int number = 0; number < idle; ++number) {
        others.push_back(client());
        const QString id = QStringLiteral("idle %1").arg(number);
        QCOMPARE(others.back()->request(id, 1), QStringLiteral("0"));
        QCOMPARE(others.back()->abandon(id), QStringLiteral("0"));
    }

    BusMonitor monitor(*bus);
    carryOut(*measured, step);
    // What the daemon sends after its answer is on the bus when it has answered this, too.
    measured->result(measured->proxy().getCurrentAudioFocus());
    const QStringList messages = monitor.take();
    QVERIFY2(messages.contains(QLatin1String("getCurrentAudioFocus")), messages.join(QLatin1Char(' ')).toLatin1().constData());
    constexpr int ofTheQuestion = 2;
    QFETCH(int, count);
    QVERIFY2(messages.size() - ofTheQuestion == count, messages.join(QLatin1Char(' ')).toLatin1().constData());
}

QTEST_GUILESS_MAIN(DaemonMessagesTest)
#include "tst_focusd_messages.moc"

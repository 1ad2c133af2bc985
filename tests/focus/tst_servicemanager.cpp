#include <servicemanager.h>

#include <QtTest/QtTest>

#include <limits>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace
{

/// What a service manager reads from.
class NotifySocket
{
public:
    /// @param name a file, or "@" and a name that is no file; empty for a socket that nobody can find.
    explicit NotifySocket(const QByteArray &name)
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::copy(name.begin(), name.end(), address.sun_path);
        if (name.startsWith('@'))
            address.sun_path[0] = '\0';
        const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path)) + static_cast<socklen_t>(name.size());
        m_isBound = name.isEmpty() || ::bind(m_descriptor, reinterpret_cast<const sockaddr *>(&address), length) == 0;
        m_address = address;
        m_length = length;
    }
    ~NotifySocket() { ::close(m_descriptor); }

    bool isBound() const { return m_isBound; }

    /// An empty text where nothing came.
    QByteArray take() const
    {
        char buffer[100];
        const ssize_t size = ::recv(m_descriptor, buffer, sizeof buffer, MSG_DONTWAIT);
        return {buffer, static_cast<int>(qMax<ssize_t>(size, 0))};
    }

    /// Leaves no room for another message.
    void fill() const
    {
        const int sender = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        while (::sendto(sender, "x", 1, MSG_DONTWAIT, reinterpret_cast<const sockaddr *>(&m_address), m_length) == 1) { }
        ::close(sender);
    }

private:
    Q_DISABLE_COPY(NotifySocket)

    const int m_descriptor = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_un m_address{};
    socklen_t m_length = 0;
    bool m_isBound = false;
};

QByteArray abstractName(int size)
{
    const QByteArray name = "@qzaudio test " + QByteArray::number(::getpid()) + ' ';
    return name.leftJustified(size, 'x', true);
}

} // namespace

/// What the daemon reads of a service manager's wishes, and how it tells it that it is alive.
class ServiceManagerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { init(); }

    void watchdogTime_data();
    void watchdogTime();
    void saysAlive_data();
    void saysAlive();
    void saysNothing_data();
    void saysNothing();
    void noRoomForTheMessage();
    void noDescriptorLeft();
};

void ServiceManagerTest::init()
{
    qunsetenv("WATCHDOG_PID");
    qunsetenv("WATCHDOG_USEC");
    qunsetenv("NOTIFY_SOCKET");
}

void ServiceManagerTest::watchdogTime_data()
{
    QTest::addColumn<QByteArray>("process");
    QTest::addColumn<QByteArray>("microseconds");
    QTest::addColumn<int>("milliseconds");
    const QByteArray own = QByteArray::number(QCoreApplication::applicationPid());
    QTest::newRow("no watchdog") << QByteArray() << QByteArray() << 0;
    QTest::newRow("for whoever is started") << QByteArray() << QByteArray("400000") << 400;
    QTest::newRow("for this process") << own << QByteArray("400000") << 400;
    QTest::newRow("for the process that started it") << QByteArray::number(::getppid()) << QByteArray("400000") << 0;
    QTest::newRow("for nobody that there is") << QByteArray("many") << QByteArray("400000") << 0;
    QTest::newRow("a fraction is left out") << own << QByteArray("1999") << 1;
    QTest::newRow("less than a millisecond") << own << QByteArray("999") << 0;
    QTest::newRow("no number") << own << QByteArray("soon") << 0;
    QTest::newRow("negative") << own << QByteArray("-400000") << 0;
    QTest::newRow("longer than an int holds") << own << QByteArray("9000000000000000000") << std::numeric_limits<int>::max();
}

void ServiceManagerTest::watchdogTime()
{
    QFETCH(QByteArray, process);
    QFETCH(QByteArray, microseconds);
    qputenv("WATCHDOG_PID", process);
    qputenv("WATCHDOG_USEC", microseconds);
    QTEST(servicemanager::watchdogMs(), "milliseconds");
}

void ServiceManagerTest::saysAlive_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("a file") << QByteArray();
    QTest::newRow("no file") << abstractName(40);
    QTest::newRow("the longest name") << abstractName(sizeof sockaddr_un::sun_path);
}

void ServiceManagerTest::saysAlive()
{
    QFETCH(QByteArray, name);
    const QTemporaryDir folder;
    if (name.isEmpty())
        name = folder.filePath(QStringLiteral("notify")).toLocal8Bit();
    const NotifySocket manager(name);
    QVERIFY(manager.isBound());
    qputenv("NOTIFY_SOCKET", name);
    QVERIFY(servicemanager::sayAlive());
    QCOMPARE(manager.take(), QByteArray("WATCHDOG=1"));
    QCOMPARE(manager.take(), QByteArray()); // once
}

void ServiceManagerTest::saysNothing_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("nameOfSocket");
    QTest::newRow("no service manager") << QByteArray() << QByteArray();
    QTest::newRow("nobody listens") << abstractName(40) << QByteArray();
    QTest::newRow("somebody else listens") << abstractName(40) << abstractName(41);
    QTest::newRow("too short for a name") << QByteArray("n") << QByteArray("n");
    QTest::newRow("too long for a name") << abstractName(sizeof sockaddr_un::sun_path + 1) << abstractName(sizeof sockaddr_un::sun_path);
}

void ServiceManagerTest::saysNothing()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, nameOfSocket);
    const QTemporaryDir folder;
    const QString currentFolder = QDir::currentPath();
    QVERIFY(QDir::setCurrent(folder.path())); // where a name without a folder is looked for
    const NotifySocket manager(nameOfSocket);
    qputenv("NOTIFY_SOCKET", name);
    const bool isTold = servicemanager::sayAlive();
    QVERIFY(QDir::setCurrent(currentFolder));
    QVERIFY(manager.isBound());
    QVERIFY(!isTold);
    QCOMPARE(manager.take(), QByteArray());
}

/// A manager that does not read holds up nobody.
void ServiceManagerTest::noRoomForTheMessage()
{
    const QByteArray name = abstractName(40);
    const NotifySocket manager(name);
    QVERIFY(manager.isBound());
    manager.fill();
    qputenv("NOTIFY_SOCKET", name);
    QVERIFY(!servicemanager::sayAlive());
    while (!manager.take().isEmpty()) { }
    QVERIFY(servicemanager::sayAlive());
    QCOMPARE(manager.take(), QByteArray("WATCHDOG=1"));
}

void ServiceManagerTest::noDescriptorLeft()
{
    const QByteArray name = abstractName(40);
    const NotifySocket manager(name);
    QVERIFY(manager.isBound());
    qputenv("NOTIFY_SOCKET", name);
    rlimit limit{};
    QCOMPARE(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    const rlimit none{0, limit.rlim_max};
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &none), 0);
    const bool isTold = servicemanager::sayAlive();
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &limit), 0);
    QVERIFY(!isTold);
    QCOMPARE(manager.take(), QByteArray());
    QVERIFY(servicemanager::sayAlive());
}

QTEST_GUILESS_MAIN(ServiceManagerTest)
#include "tst_servicemanager.moc"

#include <clientregistry.h>
#include <options.h>
#include <volumesource.h>

#include <logrecorder.h>
#include <qzaudio/audiodatabase.h>
#include <qzaudio/zelaudiomanager.h>

#include <QtTest/QtTest>

#include <unistd.h>

using Answer = ClientRegistry::Answer;

namespace
{

QString first()
{
    return QStringLiteral(":1.1");
}

QString second()
{
    return QStringLiteral(":1.2");
}

constexpr uint ownUser = 7;

ClientRegistry::Caller own(const QString &connection)
{
    return {connection, ownUser};
}

QString id(int number)
{
    return QStringLiteral("client %1").arg(number);
}

} // namespace

/// The parts of the daemon that need no bus.
class FocusServiceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ownership();
    void idLength_data();
    void idLength();
    void clientsOfAConnection();
    void clientsTogether();
    void connections();
    void clientsOfAUser();
    void connectionsOfAUser();
    void lastPlaces();
    void placesOfIdleConnections();
    void takeInOrderOfRequests();
    void unknownOnes();

    void options_data();
    void options();
    void callUsers_data();
    void callUsers();
    void help();

    void volume();
};

void FocusServiceTest::ownership()
{
    ClientRegistry registry(ownUser);
    QCOMPARE(registry.mayRequest(own(first()), id(1)), Answer::Yes);
    QVERIFY(!registry.hasConnection(first()));
    registry.add(own(first()), id(1));
    QVERIFY(registry.hasConnection(first()));
    QCOMPARE(registry.mayRequest(own(first()), id(1)), Answer::Yes);
    QCOMPARE(registry.mayRemove(first(), id(1)), Answer::Yes);
    QCOMPARE(registry.mayRequest(own(second()), id(1)), Answer::OfAnotherConnection);
    QCOMPARE(registry.mayRemove(second(), id(1)), Answer::OfAnotherConnection);
    QCOMPARE(registry.mayRemove(second(), id(2)), Answer::Yes); // nobody's
    registry.remove(id(1));
    QCOMPARE(registry.mayRequest(own(second()), id(1)), Answer::Yes);
    QVERIFY(registry.hasConnection(first())); // and watched on
}

void FocusServiceTest::idLength_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<bool>("fits");
    QTest::newRow("empty") << 0 << true;
    QTest::newRow("longest") << 255 << true;
    QTest::newRow("too long") << 256 << false;
}

void FocusServiceTest::idLength()
{
    QFETCH(int, length);
    QFETCH(bool, fits);
    const ClientRegistry registry(ownUser);
    const QString text(length, QLatin1Char('x'));
    QCOMPARE(registry.mayRequest(own(first()), text), fits ? Answer::Yes : Answer::IdTooLong);
    QCOMPARE(registry.mayRemove(first(), text), fits ? Answer::Yes : Answer::IdTooLong);
}

void FocusServiceTest::clientsOfAConnection()
{
    ClientRegistry registry(ownUser);
    for (int number = 0; number < 16; ++number) {
        QCOMPARE(registry.mayRequest(own(first()), id(number)), Answer::Yes);
        registry.add(own(first()), id(number));
    }
    QCOMPARE(registry.mayRequest(own(first()), id(16)), Answer::TooManyOfConnection);
    QCOMPARE(registry.mayRequest(own(first()), id(3)), Answer::Yes); // one that is in already
    QCOMPARE(registry.mayRequest(own(second()), id(16)), Answer::Yes);
    registry.remove(id(5));
    QCOMPARE(registry.mayRequest(own(first()), id(16)), Answer::Yes);
}

void FocusServiceTest::clientsTogether()
{
    ClientRegistry registry(ownUser);
    for (int number = 0; number < 256; ++number)
        registry.add(own(QStringLiteral(":2.%1").arg(number / 16)), id(number));
    QCOMPARE(registry.mayRequest(own(first()), id(256)), Answer::TooMany);
    QCOMPARE(registry.mayRequest(own(QStringLiteral(":2.0")), id(0)), Answer::Yes);
    registry.remove(id(0));
    QCOMPARE(registry.mayRequest(own(first()), id(256)), Answer::Yes);
}

void FocusServiceTest::connections()
{
    ClientRegistry registry(ownUser);
    for (int number = 0; number < 128; ++number) {
        QVERIFY(!registry.isFull(ownUser));
        registry.add(own(QStringLiteral(":2.%1").arg(number)), id(number));
    }
    QVERIFY(registry.isFull(ownUser));
    QVERIFY(registry.idleConnection(ownUser).isEmpty());
    QCOMPARE(registry.mayRequest(own(first()), id(128)), Answer::TooMany);
    QCOMPARE(registry.mayRequest(own(QStringLiteral(":2.7")), id(128)), Answer::Yes);
    // One without clients makes room.
    registry.remove(id(9));
    QCOMPARE(registry.idleConnection(ownUser), QStringLiteral(":2.9"));
    QCOMPARE(registry.mayRequest(own(first()), id(128)), Answer::Yes);
    QCOMPARE(registry.takeConnection(registry.idleConnection(ownUser)), QStringList());
    QVERIFY(!registry.isFull(ownUser));
}

void FocusServiceTest::clientsOfAUser()
{
    ClientRegistry registry(ownUser);
    const auto caller = [](int number, uint user) { return ClientRegistry::Caller{QStringLiteral(":%1.%2").arg(user).arg(number), user}; };
    for (int number = 0; number < 64; ++number) {
        QCOMPARE(registry.mayRequest(caller(number / 16, 8), id(number)), Answer::Yes);
        registry.add(caller(number / 16, 8), id(number));
    }
    QCOMPARE(registry.mayRequest(caller(4, 8), id(64)), Answer::TooManyOfUser);
    QCOMPARE(registry.mayRequest(caller(0, 8), id(0)), Answer::Yes); // one that is in already
    QCOMPARE(registry.mayRequest(caller(0, 9), id(64)), Answer::Yes);
    QCOMPARE(registry.mayRequest(own(first()), id(64)), Answer::Yes);
    registry.remove(id(20));
    QCOMPARE(registry.mayRequest(caller(4, 8), id(64)), Answer::Yes);
}

void FocusServiceTest::connectionsOfAUser()
{
    ClientRegistry registry(ownUser);
    const auto caller = [](int number, uint user) { return ClientRegistry::Caller{QStringLiteral(":%1.%2").arg(user).arg(number), user}; };
    for (int number = 0; number < 32; ++number) {
        QCOMPARE(registry.mayRequest(caller(number, 8), id(number)), Answer::Yes);
        registry.add(caller(number, 8), id(number));
    }
    QCOMPARE(registry.mayRequest(caller(32, 8), id(32)), Answer::TooManyOfUser);
    QCOMPARE(registry.mayRequest(caller(31, 8), id(32)), Answer::Yes); // another one of a connection that counts already
    QCOMPARE(registry.mayRequest(caller(0, 9), id(32)), Answer::Yes);
    registry.remove(id(20));
    QCOMPARE(registry.mayRequest(caller(32, 8), id(32)), Answer::Yes);
}

void FocusServiceTest::lastPlaces()
{
    ClientRegistry registry(ownUser);
    int clients = 0;
    int connections = 0;
    const auto take = [&](uint user, int number) {
        const ClientRegistry::Caller caller{QStringLiteral(":%1.%2").arg(user).arg(number), user};
        const Answer answer = registry.mayRequest(caller, id(clients));
        if (answer == Answer::Yes) {
            connections += registry.hasConnection(caller.connection) ? 0 : 1;
            registry.add(caller, id(clients++));
        }
        return answer;
    };
    // Three users have all that a user may have, and no more is to be had but for those who have few.
    for (const uint user : {100U, 101U, 102U}) {
        for (int number = 0; number < 64; ++number)
            QCOMPARE(take(user, number % 32), Answer::Yes);
    }
    QCOMPARE(clients, 192);
    QCOMPARE(connections, 96);
    for (uint user = 200; user < 216; ++user) {
        for (int number = 0; number < 4; ++number)
            QCOMPARE(take(user, number % 2), Answer::Yes);
        QCOMPARE(take(user, 0), Answer::TooMany);
    }
    QCOMPARE(clients, 256);
    QCOMPARE(connections, 128);
    QCOMPARE(take(300, 0), Answer::TooMany);
    // Whatever they do, the service's own user has as many again; and the other way round.
    for (int number = 0; number < 256; ++number)
        QCOMPARE(take(ownUser, number % 128), Answer::Yes);
    QCOMPARE(take(ownUser, 0), Answer::TooMany);
    registry.takeConnection(QStringLiteral(":100.0"));
    QCOMPARE(take(300, 0), Answer::Yes);
    QCOMPARE(take(ownUser, 0), Answer::TooMany);
}

void FocusServiceTest::placesOfIdleConnections()
{
    ClientRegistry registry(ownUser);
    const ClientRegistry::Caller other{second(), 8};
    registry.add(other, id(1));
    registry.remove(id(1));
    QVERIFY(registry.idleConnection(ownUser).isEmpty()); // it takes no place from that user
    QCOMPARE(registry.idleConnection(8), second());
    QCOMPARE(registry.idleConnection(9), second());
    for (int number = 0; number < 128; ++number)
        registry.add(own(QStringLiteral(":2.%1").arg(number)), id(number));
    QVERIFY(registry.isFull(ownUser));
    QVERIFY(!registry.isFull(8));
}

void FocusServiceTest::takeInOrderOfRequests()
{
    ClientRegistry registry(ownUser);
    registry.add(own(first()), id(1));
    registry.add(own(first()), id(2));
    registry.add(own(second()), id(4));
    registry.add(own(first()), id(3));
    registry.add(own(first()), id(1));
    QCOMPARE(registry.takeConnection(first()), (QStringList{id(2), id(3), id(1)}));
    QVERIFY(!registry.hasConnection(first()));
    QCOMPARE(registry.takeConnection(first()), QStringList());
    QCOMPARE(registry.mayRequest(own(second()), id(1)), Answer::Yes);
    QCOMPARE(registry.mayRequest(own(first()), id(4)), Answer::OfAnotherConnection);
}

void FocusServiceTest::unknownOnes()
{
    ClientRegistry registry(ownUser);
    registry.remove(id(1));
    QCOMPARE(registry.takeConnection(first()), QStringList());
    QVERIFY(!registry.hasConnection(first()));
    QVERIFY(!registry.hasConnection(QString()));
}

void FocusServiceTest::options_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("action");
    QTest::addColumn<QString>("summary"); // of what is served: bus, name, path, mega bases, volume, log
    const int serve = int(Options::Action::Serve);
    const int complain = int(Options::Action::Complain);
    const QString none;
    const auto list = [](const char *arguments) { return QString::fromLatin1(arguments).split(QLatin1Char(' '), Qt::SkipEmptyParts); };
    QTest::newRow("none") << QStringList() << serve << QStringLiteral("session tavi.AudioService /tavi/AudioService 4 volume quiet");
    QTest::newRow("session") << list("--session") << serve << QStringLiteral("session tavi.AudioService /tavi/AudioService 4 volume quiet");
    QTest::newRow("all") << list("--system --name a.b-c --path /a/b_1 --mega-bases 2 --no-volume --log") << serve
                         << QStringLiteral("system a.b-c /a/b_1 2 none log");
    QTest::newRow("root path") << list("--path /") << serve << QStringLiteral("session tavi.AudioService / 4 volume quiet");
    QTest::newRow("help") << list("--help") << int(Options::Action::ShowHelp) << none;
    QTest::newRow("help, short") << list("-h --system") << int(Options::Action::ShowHelp) << none;
    QTest::newRow("version") << list("--version") << int(Options::Action::ShowVersion) << none;
    QTest::newRow("version, short") << list("-v") << int(Options::Action::ShowVersion) << none;
    QTest::newRow("unknown option") << list("--sytem") << complain << none;
    QTest::newRow("word") << list("start") << complain << none;
    QTest::newRow("both buses") << list("--session --system") << complain << none;
    QTest::newRow("name without a dot") << list("--name audio") << complain << none;
    QTest::newRow("name with a digit first") << list("--name tavi.2Audio") << complain << none;
    QTest::newRow("unique name") << list("--name :1.7") << complain << none;
    QTest::newRow("name too long") << QStringList{QStringLiteral("--name"), QStringLiteral("a.") + QString(254, QLatin1Char('b'))} << complain << none;
    QTest::newRow("relative path") << list("--path tavi") << complain << none;
    QTest::newRow("path with a slash at the end") << list("--path /tavi/") << complain << none;
    QTest::newRow("path with a blank") << QStringList{QStringLiteral("--path"), QStringLiteral("/ta vi")} << complain << none;
    QTest::newRow("path without a value") << list("--path") << complain << none;
    QTest::newRow("no mega bases") << list("--mega-bases 0") << complain << none;
    QTest::newRow("fewer") << list("--mega-bases -1") << complain << none;
    QTest::newRow("no number") << list("--mega-bases many") << complain << none;
    QTest::newRow("too many") << list("--mega-bases 2147483648") << complain << none;
    QTest::newRow("unknown user") << list("--call-user no-such-user") << complain << none;
    QTest::newRow("no user") << list("--call-user") << complain << none;
    QTest::newRow("negative user") << list("--call-user -1") << complain << none;
    QTest::newRow("no watchdog") << list("--watchdog 0") << serve << QStringLiteral("session tavi.AudioService /tavi/AudioService 4 volume quiet");
    QTest::newRow("negative watchdog") << list("--watchdog -1") << complain << none;
    QTest::newRow("watchdog, no number") << list("--watchdog soon") << complain << none;
    QTest::newRow("watchdog beyond a day") << list("--watchdog 86401") << complain << none;
}

void FocusServiceTest::options()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, action);
    const Options options = Options::parse(arguments);
    QCOMPARE(int(options.action), action);
    QCOMPARE(options.complaint.isEmpty(), options.action != Options::Action::Complain);
    if (options.action == Options::Action::Serve) {
        const QString summary = QStringLiteral("%1 %2 %3 %4 %5 %6")
                                    .arg(options.systemBus ? QStringLiteral("system") : QStringLiteral("session"),
                                         options.name,
                                         options.path,
                                         QString::number(options.megaBaseCount),
                                         options.volume ? QStringLiteral("volume") : QStringLiteral("none"),
                                         options.log ? QStringLiteral("log") : QStringLiteral("quiet"));
        QTEST(summary, "summary");
    }
}

void FocusServiceTest::callUsers_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QVector<uint>>("users");
    const auto list = [](const char *arguments) { return QString::fromLatin1(arguments).split(QLatin1Char(' '), Qt::SkipEmptyParts); };
    QTest::newRow("session") << QStringList() << QVector<uint>();
    QTest::newRow("system") << list("--system") << QVector<uint>{0, ::geteuid()};
    QTest::newRow("number") << list("--system --call-user 4711") << QVector<uint>{4711};
    QTest::newRow("name") << list("--system --call-user root") << QVector<uint>{0};
    QTest::newRow("several") << list("--session --call-user 5 --call-user root") << QVector<uint>{5, 0};
}

void FocusServiceTest::callUsers()
{
    QFETCH(QStringList, arguments);
    QTEST(Options::parse(arguments).callUsers, "users");
}

void FocusServiceTest::help()
{
    const QString text = Options::help();
    for (const char *part : {"--session",
                             "--system",
                             "--name NAME",
                             "--path PATH",
                             "--mega-bases COUNT",
                             "--no-volume",
                             "--log",
                             "--watchdog SECONDS",
                             "30 by",
                             "--help",
                             "--version",
                             "tavi.AudioService by default",
                             "/tavi/AudioService by default",
                             "4 by default",
                             "255 characters",
                             "16 clients of a connection",
                             "256 clients",
                             "128 connections",
                             "64 clients and 32 connections",
                             "--call-user USER",
                             "Exit status"})
        QVERIFY2(text.contains(QLatin1String(part)), part);
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (const QString &line : lines)
        QVERIFY2(line.size() <= 100, line.toLatin1().constData());
}

void FocusServiceTest::volume()
{
    const LogRecorder log; // keeps the lines of a whole start-up away
    VolumeSource source;
    QList<QPair<bool, int>> changes;
    connect(&source, &VolumeSource::changed, this, [&changes](bool isMuted, int level) { changes.append({isMuted, level}); });
    const QString file = QStringLiteral("/media/flash/nvm/audioData.db");
    QVERIFY(!QFile::exists(file)); // nothing was started yet
    const int level = source.level();
    QVERIFY(QFile::exists(file));
    auto *const manager = source.findChild<ZelAudioManager *>();
    QVERIFY(manager);
    QCOMPARE(level, manager->getVolume(ZelAudioTypeMedia));
    QVERIFY(!source.isMuted());
    QVERIFY(changes.isEmpty());

    // The volume key, while a file plays: the manager stores the volume.
    manager->updateAudioChannel(AudioChannelFilePlayer);
    manager->updateCurrentAudioVolume(false);
    QTRY_COMPARE(changes.size(), 1);
    QCOMPARE(std::exchange(changes, {}), (QList<QPair<bool, int>>{{false, level - 1}}));
    QCOMPARE(source.level(), level - 1);

    // A mute has no signal; the next change of the volume tells of it.
    manager->setMute(true);
    QVERIFY(source.isMuted());
    QVERIFY(changes.isEmpty());
    manager->updateCurrentAudioVolume(false);
    QTRY_COMPARE(changes.size(), 1);
    QCOMPARE(std::exchange(changes, {}), (QList<QPair<bool, int>>{{true, level - 2}}));
    manager->setMute(false);
    QVERIFY(!source.isMuted());

    // Another volume type is not the media's; the change after it is the next that comes.
    manager->updateAudioStatus(static_cast<AudioStatus>(1));
    manager->updateCurrentAudioVolume(true);

    // Another process stores a volume; here another store does.
    audio::AudioDataBase store;
    store.setVolume(ZelAudioTypeMedia, 3, true);
    QTRY_COMPARE(changes.size(), 1);
    QCOMPARE(std::exchange(changes, {}), (QList<QPair<bool, int>>{{false, 3}}));
    QCOMPARE(source.level(), 3);
    // Something else is stored, then the volume again.
    store.setLoudNess(true);
    store.setVolume(ZelAudioTypeMedia, 4, true);
    QTRY_COMPARE(changes.size(), 1);
    QCOMPARE(changes.first(), (QPair<bool, int>(false, 4)));
}

QTEST_GUILESS_MAIN(FocusServiceTest)
#include "tst_focusservice.moc"

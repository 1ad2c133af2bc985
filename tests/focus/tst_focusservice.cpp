#include <clientregistry.h>
#include <options.h>
#include <volumesource.h>

#include <logrecorder.h>
#include <qzaudio/audiodatabase.h>
#include <qzaudio/zelaudiomanager.h>

#include <QtTest/QtTest>

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
    void takeInOrderOfRequests();
    void unknownOnes();

    void options_data();
    void options();
    void help();

    void volume();
};

void FocusServiceTest::ownership()
{
    ClientRegistry registry;
    QCOMPARE(registry.mayRequest(first(), id(1)), Answer::Yes);
    QVERIFY(!registry.hasConnection(first()));
    registry.add(first(), id(1));
    QVERIFY(registry.hasConnection(first()));
    QCOMPARE(registry.mayRequest(first(), id(1)), Answer::Yes);
    QCOMPARE(registry.mayRemove(first(), id(1)), Answer::Yes);
    QCOMPARE(registry.mayRequest(second(), id(1)), Answer::OfAnotherConnection);
    QCOMPARE(registry.mayRemove(second(), id(1)), Answer::OfAnotherConnection);
    QCOMPARE(registry.mayRemove(second(), id(2)), Answer::Yes); // nobody's
    registry.remove(id(1));
    QCOMPARE(registry.mayRequest(second(), id(1)), Answer::Yes);
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
    const ClientRegistry registry;
    const QString text(length, QLatin1Char('x'));
    QCOMPARE(registry.mayRequest(first(), text), fits ? Answer::Yes : Answer::IdTooLong);
    QCOMPARE(registry.mayRemove(first(), text), fits ? Answer::Yes : Answer::IdTooLong);
}

void FocusServiceTest::clientsOfAConnection()
{
    ClientRegistry registry;
    for (int number = 0; number < 16; ++number) {
        QCOMPARE(registry.mayRequest(first(), id(number)), Answer::Yes);
        registry.add(first(), id(number));
    }
    QCOMPARE(registry.mayRequest(first(), id(16)), Answer::TooManyOfConnection);
    QCOMPARE(registry.mayRequest(first(), id(3)), Answer::Yes); // one that is in already
    QCOMPARE(registry.mayRequest(second(), id(16)), Answer::Yes);
    registry.remove(id(5));
    QCOMPARE(registry.mayRequest(first(), id(16)), Answer::Yes);
}

void FocusServiceTest::clientsTogether()
{
    ClientRegistry registry;
    for (int number = 0; number < 256; ++number)
        registry.add(QStringLiteral(":2.%1").arg(number / 16), id(number));
    QCOMPARE(registry.mayRequest(first(), id(256)), Answer::TooMany);
    QCOMPARE(registry.mayRequest(QStringLiteral(":2.0"), id(0)), Answer::Yes);
    registry.remove(id(0));
    QCOMPARE(registry.mayRequest(first(), id(256)), Answer::Yes);
}

void FocusServiceTest::connections()
{
    ClientRegistry registry;
    for (int number = 0; number < 128; ++number) {
        QVERIFY(!registry.isFull());
        registry.add(QStringLiteral(":2.%1").arg(number), id(number));
    }
    QVERIFY(registry.isFull());
    QVERIFY(registry.idleConnection().isEmpty());
    QCOMPARE(registry.mayRequest(first(), id(128)), Answer::TooMany);
    QCOMPARE(registry.mayRequest(QStringLiteral(":2.7"), id(128)), Answer::Yes);
    // One without clients makes room.
    registry.remove(id(9));
    QCOMPARE(registry.idleConnection(), QStringLiteral(":2.9"));
    QCOMPARE(registry.mayRequest(first(), id(128)), Answer::Yes);
    QCOMPARE(registry.takeConnection(registry.idleConnection()), QStringList());
    QVERIFY(!registry.isFull());
}

void FocusServiceTest::takeInOrderOfRequests()
{
    ClientRegistry registry;
    registry.add(first(), id(1));
    registry.add(first(), id(2));
    registry.add(second(), id(4));
    registry.add(first(), id(3));
    registry.add(first(), id(1));
    QCOMPARE(registry.takeConnection(first()), (QStringList{id(2), id(3), id(1)}));
    QVERIFY(!registry.hasConnection(first()));
    QCOMPARE(registry.takeConnection(first()), QStringList());
    QCOMPARE(registry.mayRequest(second(), id(1)), Answer::Yes);
    QCOMPARE(registry.mayRequest(first(), id(4)), Answer::OfAnotherConnection);
}

void FocusServiceTest::unknownOnes()
{
    ClientRegistry registry;
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
    ZelAudioManager *const manager = ZelAudioManager::instance();
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

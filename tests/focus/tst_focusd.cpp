#include "daemontest.h"

#include <logrecorder.h>
#include <program.h>
#include <qzaudio/audiodatabase.h>

#include <QtDBus/QDBusConnectionInterface>
#include <QtDBus/QDBusMessage>
#include <QtTest/QtTest>
#include <QtXml/QDomDocument>

#include <csignal>
#include <memory>
#include <unistd.h>
#include <vector>

class FocusDaemonTest : public DaemonTest
{
    Q_OBJECT

private Q_SLOTS:
    void helpAndVersion_data();
    void helpAndVersion();
    void wrongCommandLine();
    void noBus();
    void nameIsTaken();
    void otherNameAndPath();
    void systemBus();
    void systemBusOfAnotherUser();
    void stopsWhenTold_data();
    void stopsWhenTold();
    void stopsWithTheBus();
    void startedByTheBus();
    void describesItself();

    void twoClients();
    void sameRequestAgain();
    void invalidHints_data();
    void invalidHints();
    void voiceCommunication();
    void unregister();
    void clientLeaves();
    void clientLeavesFromBelow();
    void clientWithSeveralIdsLeaves();
    void clientLeavesBeforeItIsWatched();
    void forgedDeparture();
    void foreignClients();
    void idIsFreeAgain();
    void floodOfIds();
    void floodOfConnections();
    void floodOfCycles();
    void longIds();
    void wrongArguments();

    void megaBase();
    void oneMegaBase();
    void volume();
    void noVolume();
};

void FocusDaemonTest::helpAndVersion_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("beginning");
    QTest::newRow("help") << QStringLiteral("--help") << QStringLiteral("Usage: qzaudio-focusd [OPTION]...");
    QTest::newRow("version") << QStringLiteral("--version") << QStringLiteral("qzaudio-focusd 1.");
}

void FocusDaemonTest::helpAndVersion()
{
    QFETCH(QString, option);
    QFETCH(QString, beginning);
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere"); // needs no bus
    const QString line = daemon->startAndReadLine(QStringLiteral(QZAUDIO_FOCUSD), {option});
    QVERIFY2(line.startsWith(beginning), line.toLatin1().constData());
    QTRY_COMPARE_WITH_TIMEOUT(daemon->state(), QProcess::NotRunning, longestWait);
    QCOMPARE(daemon->exitCode(), 0);
}

void FocusDaemonTest::wrongCommandLine()
{
    QCOMPARE(runDaemon({QStringLiteral("--sytem")}), 2);
}

void FocusDaemonTest::noBus()
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere");
    QCOMPARE(runDaemon({}), 1);
}

void FocusDaemonTest::nameIsTaken()
{
    QVERIFY(bus->connect().registerService(QStringLiteral("tavi.AudioService")));
    QCOMPARE(runDaemon({}), 1);
}

void FocusDaemonTest::otherNameAndPath()
{
    startDaemon({QStringLiteral("--name"), QStringLiteral("test.Focus"), QStringLiteral("--path"), QStringLiteral("/test/Focus")});
    FocusClientConnection client(*bus, QStringLiteral("test.Focus"), QStringLiteral("/test/Focus"));
    QCOMPARE(client.request(QStringLiteral("A"), 1), QStringLiteral("0"));
    FocusClientConnection other(*bus);
    QCOMPARE(other.request(QStringLiteral("A"), 1), QStringLiteral("ServiceUnknown"));
}

void FocusDaemonTest::systemBus()
{
    startSystemBus(::getuid());
    startDaemon({QStringLiteral("--system"), QStringLiteral("--no-volume")});
    FocusClientConnection music(*bus);
    FocusClientConnection prompt(*bus);
    QCOMPARE(music.request(QStringLiteral("music"), 1), QStringLiteral("0"));
    QCOMPARE(prompt.request(QStringLiteral("prompt"), 3), QStringLiteral("0"));
    QTRY_COMPARE_WITH_TIMEOUT(music.changeCount(), 1, longestWait);
    QCOMPARE(music.take(), QStringList(QStringLiteral("-3 music")));

    // Of the interfaces that Qt puts beside its objects, clients may look at the description only.
    const auto call = [&music](const char *interface, const char *member, const QVariantList &arguments) {
        QDBusMessage message = QDBusMessage::createMethodCall(
            QStringLiteral("tavi.AudioService"), QStringLiteral("/tavi/AudioService"), QLatin1String(interface), QLatin1String(member));
        message.setArguments(arguments);
        return music.connection().asyncCall(message);
    };
    const QString description = music.result(QDBusPendingReply<QString>(call("org.freedesktop.DBus.Introspectable", "Introspect", {})));
    QVERIFY(description.contains(QLatin1String("requestAudioFocus")));
    QCOMPARE(music.result(QDBusPendingReply<QVariantMap>(call("org.freedesktop.DBus.Properties", "GetAll", {QStringLiteral("tavi.AudioService")}))),
             QStringLiteral("AccessDenied"));
    // The bus is one that denies.
    QVERIFY(!music.connection().registerService(QStringLiteral("tavi.OtherService")));
}

void FocusDaemonTest::systemBusOfAnotherUser()
{
    startSystemBus(::getuid() + 1);
    QCOMPARE(runDaemon({QStringLiteral("--system")}), 1);
}

void FocusDaemonTest::stopsWhenTold_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
}

void FocusDaemonTest::stopsWhenTold()
{
    QFETCH(int, signal);
    startDaemon();
    ::kill(static_cast<pid_t>(daemon->processId()), signal);
    QTRY_COMPARE_WITH_TIMEOUT(daemon->state(), QProcess::NotRunning, longestWait);
    QCOMPARE(daemon->exitStatus(), QProcess::NormalExit);
    QCOMPARE(daemon->exitCode(), 0);
}

void FocusDaemonTest::stopsWithTheBus()
{
    startDaemon();
    QVERIFY(bus->stop());
    QTRY_COMPARE_WITH_TIMEOUT(daemon->state(), QProcess::NotRunning, longestWait);
    QCOMPARE(daemon->exitStatus(), QProcess::NormalExit);
    QCOMPARE(daemon->exitCode(), 1); // so that it is started again
}

void FocusDaemonTest::startedByTheBus()
{
    QFile file(QStringLiteral(QZAUDIO_FOCUSD_ACTIVATION));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QString text = QString::fromUtf8(file.readAll());
    // What the installation fills in.
    const QString execution = QStringLiteral("Exec=@DAEMON_FOR_DBUS@\n");
    QVERIFY(text.contains(execution));
    text.replace(execution, QStringLiteral("Exec=") + program::forShell(program::commandLine(QStringLiteral(QZAUDIO_FOCUSD))) + QLatin1Char('\n'));

    PrivateBus activating(text);
    QVERIFY(!activating.address().isEmpty());
    FocusClientConnection client(activating);
    QCOMPARE(client.request(QStringLiteral("A"), 2), QStringLiteral("0"));
    QCOMPARE(client.result(client.proxy().getCurrentAudioFocus()), QStringLiteral("2"));
    // The bus does not stop what it started: the daemon goes when the bus is gone.
    const uint process = client.connection().interface()->servicePid(QStringLiteral("tavi.AudioService")).value();
    QVERIFY(process > 0);
    QVERIFY(activating.stop());
    QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(QStringLiteral("/proc/%1/exe").arg(process)), longestWait);
}

void FocusDaemonTest::describesItself()
{
    startDaemon();
    const QDBusMessage question = QDBusMessage::createMethodCall(QStringLiteral("tavi.AudioService"),
                                                                 QStringLiteral("/tavi/AudioService"),
                                                                 QStringLiteral("org.freedesktop.DBus.Introspectable"),
                                                                 QStringLiteral("Introspect"));
    FocusClientConnection client(*bus);
    const QDBusPendingReply<QString> reply = client.connection().asyncCall(question);
    QString described = client.result(reply);

    // Member by member, each as "KIND NAME ARGUMENT..."; argument: direction, type and name.
    const auto membersOf = [](const QString &xml) {
        QStringList members;
        QDomDocument document;
        if (!document.setContent(xml))
            return members;
        const QDomNodeList interfaces = document.elementsByTagName(QStringLiteral("interface"));
        for (int index = 0; index < interfaces.size(); ++index) {
            const QDomElement interface = interfaces.at(index).toElement();
            if (interface.attribute(QStringLiteral("name")) != QLatin1String("tavi.AudioService"))
                continue;
            for (QDomElement member = interface.firstChildElement(); !member.isNull(); member = member.nextSiblingElement()) {
                QString text = member.tagName() + QLatin1Char(' ') + member.attribute(QStringLiteral("name"));
                for (QDomElement argument = member.firstChildElement(QStringLiteral("arg")); !argument.isNull();
                     argument = argument.nextSiblingElement(QStringLiteral("arg"))) {
                    text += QStringLiteral(" %1:%2:%3")
                                .arg(argument.attribute(QStringLiteral("direction")),
                                     argument.attribute(QStringLiteral("type")),
                                     argument.attribute(QStringLiteral("name")));
                }
                members.append(text);
            }
        }
        members.sort();
        return members;
    };
    QFile description(QStringLiteral(AUDIO_SERVICE_DESCRIPTION));
    QVERIFY(description.open(QIODevice::ReadOnly));
    const QStringList expected = membersOf(QString::fromUtf8(description.readAll()));
    QCOMPARE(expected.size(), 12);
    QCOMPARE(membersOf(described), expected);
}

void FocusDaemonTest::twoClients()
{
    startDaemon();
    FocusClientConnection music(*bus);
    FocusClientConnection prompt(*bus);
    QCOMPARE(music.result(music.proxy().getCurrentAudioFocus()), QStringLiteral("0"));
    QCOMPARE(music.request(QStringLiteral("music"), 1), QStringLiteral("0"));
    QCOMPARE(prompt.request(QStringLiteral("prompt"), 3), QStringLiteral("0"));
    QCOMPARE(prompt.take(), QStringList(QStringLiteral("-3 music"))); // everybody hears of it, before the answer
    QTRY_COMPARE_WITH_TIMEOUT(music.changeCount(), 1, longestWait);
    QCOMPARE(music.take(), QStringList(QStringLiteral("-3 music")));
    QCOMPARE(music.result(music.proxy().getCurrentAudioFocus()), QStringLiteral("3"));
    QCOMPARE(prompt.abandon(QStringLiteral("prompt")), QStringLiteral("0"));
    QTRY_COMPARE_WITH_TIMEOUT(music.changeCount(), 1, longestWait);
    QCOMPARE(music.take(), QStringList(QStringLiteral("1 music")));
    QCOMPARE(music.result(music.proxy().getCurrentAudioFocus()), QStringLiteral("1"));
    QCOMPARE(music.abandon(QStringLiteral("music")), QStringLiteral("0"));
    QCOMPARE(music.result(music.proxy().getCurrentAudioFocus()), QStringLiteral("0"));
    QVERIFY(!QFile::exists(settingsFile())); // focus alone leaves the audio platform alone
}

void FocusDaemonTest::sameRequestAgain()
{
    startDaemon();
    FocusClientConnection music(*bus);
    FocusClientConnection prompt(*bus);
    music.request(QStringLiteral("music"), 1);
    prompt.request(QStringLiteral("prompt"), 3);
    prompt.take();
    QCOMPARE(prompt.request(QStringLiteral("prompt"), 3), QStringLiteral("0"));
    QCOMPARE(prompt.take(), QStringList());
    QCOMPARE(prompt.request(QStringLiteral("prompt"), 2), QStringLiteral("0"));
    QCOMPARE(prompt.take(), QStringList(QStringLiteral("-2 music")));
}

void FocusDaemonTest::invalidHints_data()
{
    QTest::addColumn<int>("hint");
    QTest::newRow("NONE") << 0;
    QTest::newRow("above") << 5;
    QTest::newRow("LOSS") << -1;
}

void FocusDaemonTest::invalidHints()
{
    QFETCH(int, hint);
    startDaemon();
    FocusClientConnection client(*bus);
    QCOMPARE(client.request(QStringLiteral("A"), hint), QStringLiteral("1"));
    QCOMPARE(client.result(client.proxy().getCurrentAudioFocus()), QStringLiteral("0"));
}

void FocusDaemonTest::voiceCommunication()
{
    startDaemon();
    FocusClientConnection phone(*bus);
    FocusClientConnection music(*bus);
    QCOMPARE(music.request(QStringLiteral("music"), 1), QStringLiteral("0"));
    QCOMPARE(phone.request(QStringLiteral("IN_VOICE_COMM_FOCUS_ID"), 2), QStringLiteral("0"));
    QCOMPARE(music.request(QStringLiteral("music"), 1), QStringLiteral("1"));
    QCOMPARE(music.request(QStringLiteral("radio"), 1), QStringLiteral("1"));
    music.take();
    phone.leave(); // the call ends with its program
    QTRY_COMPARE_WITH_TIMEOUT(music.changeCount(), 1, longestWait);
    QCOMPARE(music.take(), QStringList(QStringLiteral("1 music")));
    QCOMPARE(music.request(QStringLiteral("radio"), 1), QStringLiteral("0"));
}

void FocusDaemonTest::unregister()
{
    startDaemon();
    FocusClientConnection client(*bus);
    client.request(QStringLiteral("A"), 1);
    client.request(QStringLiteral("B"), 2);
    client.take();
    QCOMPARE(client.result(client.proxy().unregisterAudioFocusClient(QStringLiteral("B"))), QStringLiteral("done"));
    QCOMPARE(client.take(), QStringList());
    QCOMPARE(client.result(client.proxy().getCurrentAudioFocus()), QStringLiteral("1"));
    QCOMPARE(client.result(client.proxy().unregisterAudioFocusClient(QStringLiteral("unknown"))), QStringLiteral("done"));
    QCOMPARE(client.abandon(QStringLiteral("unknown")), QStringLiteral("0"));
    QCOMPARE(client.result(client.proxy().getCurrentAudioFocus()), QStringLiteral("1"));
}

void FocusDaemonTest::clientLeaves()
{
    startDaemon();
    FocusClientConnection music(*bus);
    auto prompt = std::make_unique<FocusClientConnection>(*bus);
    music.request(QStringLiteral("music"), 1);
    prompt->request(QStringLiteral("prompt"), 2);
    prompt.reset();
    QTRY_COMPARE_WITH_TIMEOUT(music.changeCount(), 2, longestWait);
    QCOMPARE(music.take(), (QStringList{QStringLiteral("-2 music"), QStringLiteral("1 music")}));
    QCOMPARE(music.result(music.proxy().getCurrentAudioFocus()), QStringLiteral("1"));
}

void FocusDaemonTest::clientLeavesFromBelow()
{
    startDaemon();
    auto music = std::make_unique<FocusClientConnection>(*bus);
    FocusClientConnection prompt(*bus);
    music->request(QStringLiteral("music"), 1);
    prompt.request(QStringLiteral("prompt"), 2);
    prompt.take();
    music.reset();
    // Its id is free once the service has noticed, and nobody was told anything.
    QTRY_COMPARE_WITH_TIMEOUT(prompt.abandon(QStringLiteral("music")), QStringLiteral("0"), longestWait);
    QCOMPARE(prompt.take(), QStringList());
    QCOMPARE(prompt.abandon(QStringLiteral("prompt")), QStringLiteral("0"));
    QCOMPARE(prompt.take(), QStringList());
    QCOMPARE(prompt.result(prompt.proxy().getCurrentAudioFocus()), QStringLiteral("0"));
}

void FocusDaemonTest::clientWithSeveralIdsLeaves()
{
    startDaemon();
    FocusClientConnection stayer(*bus);
    FocusClientConnection leaver(*bus);
    leaver.request(QStringLiteral("below"), 1);
    stayer.request(QStringLiteral("stayer"), 1);
    leaver.request(QStringLiteral("middle"), 1);
    leaver.request(QStringLiteral("top"), 1);
    QTRY_COMPARE_WITH_TIMEOUT(stayer.changeCount(), 3, longestWait);
    stayer.take();
    leaver.leave();
    QTRY_VERIFY_WITH_TIMEOUT(stayer.changeCount() > 0, longestWait);
    QCOMPARE(stayer.result(stayer.proxy().getCurrentAudioFocus()), QStringLiteral("1"));
    QCOMPARE(stayer.take(), QStringList(QStringLiteral("1 stayer"))); // and none of those who are gone
}

void FocusDaemonTest::clientLeavesBeforeItIsWatched()
{
    startDaemon();
    FocusClientConnection music(*bus);
    music.request(QStringLiteral("music"), 1);

    // The daemon sleeps while a client asks and goes.
    const auto daemonProcess = static_cast<pid_t>(daemon->processId());
    ::kill(daemonProcess, SIGSTOP);
    auto ghost = std::make_unique<FocusClientConnection>(*bus);
    const QString name = ghost->connection().baseService();
    // Nobody waits for the answer: Qt frees a call that is pending when its connection closes, whoever still holds it.
    QDBusMessage request = QDBusMessage::createMethodCall(
        QStringLiteral("tavi.AudioService"), QStringLiteral("/tavi/AudioService"), QStringLiteral("tavi.AudioService"), QStringLiteral("requestAudioFocus"));
    request.setArguments({3, 1, QStringLiteral("ghost")});
    QVERIFY(ghost->connection().send(request));
    // Once the bus answers this, it has the request, too.
    QVERIFY(ghost->result(QDBusPendingReply<QString>(ghost->connection().interface()->asyncCall(QStringLiteral("GetId")))).size() > 1);
    ghost.reset();
    const auto isThere = [&] { return music.result(QDBusPendingReply<bool>(music.connection().interface()->asyncCall(QStringLiteral("NameHasOwner"), name))); };
    QTRY_COMPARE_WITH_TIMEOUT(isThere(), QStringLiteral("false"), longestWait);
    ::kill(daemonProcess, SIGCONT);

    QTRY_COMPARE_WITH_TIMEOUT(music.changeCount(), 2, longestWait);
    QCOMPARE(music.take(), (QStringList{QStringLiteral("-1 music"), QStringLiteral("1 music")}));
}

void FocusDaemonTest::forgedDeparture()
{
    startDaemon();
    FocusClientConnection owner(*bus);
    FocusClientConnection forger(*bus);
    owner.request(QStringLiteral("A"), 1);
    // Only the bus itself is believed.
    const QString name = owner.connection().baseService();
    QDBusMessage departure = QDBusMessage::createTargetedSignal(QStringLiteral("tavi.AudioService"),
                                                                QStringLiteral("/org/freedesktop/DBus"),
                                                                QStringLiteral("org.freedesktop.DBus"),
                                                                QStringLiteral("NameOwnerChanged"));
    departure.setArguments({name, name, QString()});
    QVERIFY(forger.connection().send(departure));
    QCOMPARE(forger.request(QStringLiteral("A"), 2), QStringLiteral("AccessDenied"));
    QCOMPARE(forger.result(forger.proxy().getCurrentAudioFocus()), QStringLiteral("1"));
}

void FocusDaemonTest::foreignClients()
{
    startDaemon();
    FocusClientConnection owner(*bus);
    FocusClientConnection foreigner(*bus);
    owner.request(QStringLiteral("A"), 1);
    QCOMPARE(foreigner.abandon(QStringLiteral("A")), QStringLiteral("AccessDenied"));
    QCOMPARE(foreigner.result(foreigner.proxy().unregisterAudioFocusClient(QStringLiteral("A"))), QStringLiteral("AccessDenied"));
    QCOMPARE(foreigner.request(QStringLiteral("A"), 2), QStringLiteral("AccessDenied"));
    QCOMPARE(owner.result(owner.proxy().getCurrentAudioFocus()), QStringLiteral("1"));
    // Not from below either, and not by leaving.
    QCOMPARE(foreigner.request(QStringLiteral("B"), 2), QStringLiteral("0"));
    QCOMPARE(foreigner.abandon(QStringLiteral("A")), QStringLiteral("AccessDenied"));
    foreigner.leave();
    QTRY_COMPARE_WITH_TIMEOUT(owner.changeCount(), 2, longestWait);
    QCOMPARE(owner.take(), (QStringList{QStringLiteral("-2 A"), QStringLiteral("1 A")}));
}

void FocusDaemonTest::idIsFreeAgain()
{
    startDaemon();
    FocusClientConnection first(*bus);
    FocusClientConnection second(*bus);
    first.request(QStringLiteral("A"), 1);
    QCOMPARE(second.request(QStringLiteral("A"), 1), QStringLiteral("AccessDenied"));
    first.abandon(QStringLiteral("A"));
    QCOMPARE(second.request(QStringLiteral("A"), 1), QStringLiteral("0"));
    second.result(second.proxy().unregisterAudioFocusClient(QStringLiteral("A")));
    QCOMPARE(first.request(QStringLiteral("A"), 1), QStringLiteral("0"));
    // A request that is denied takes no id.
    QCOMPARE(first.request(QStringLiteral("C"), 0), QStringLiteral("1"));
    QCOMPARE(second.request(QStringLiteral("C"), 1), QStringLiteral("0"));
}

void FocusDaemonTest::floodOfIds()
{
    startDaemon();
    FocusClientConnection client(*bus);
    const auto flood = [&client](int from, int to) {
        QVector<QDBusPendingReply<int>> replies;
        for (int number = from; number < to; ++number)
            replies.append(client.proxy().requestAudioFocus(3, 1, QStringLiteral("client %1").arg(number)));
        QStringList results;
        for (const auto &reply : qAsConst(replies))
            results.append(client.result(reply));
        return results;
    };
    const QStringList results = flood(0, 1000);
    QCOMPARE(results.count(QStringLiteral("0")), 16);
    QCOMPARE(results.mid(0, 16).count(QStringLiteral("0")), 16);
    QCOMPARE(results.count(QStringLiteral("LimitsExceeded")), 984);
    const qint64 before = residentKilobytes();
    QCOMPARE(flood(1000, 11000).count(QStringLiteral("LimitsExceeded")), 10000);
    const qint64 grown = residentKilobytes() - before;
    QVERIFY(before > 0);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // they keep memory of their own
    constexpr int slack = 2048; // KiB; the ids alone, kept, would take more
    QVERIFY2(grown < slack, QByteArray::number(grown).constData());
#else
    Q_UNUSED(grown)
#endif
    // Those that are in still work.
    QCOMPARE(client.abandon(QStringLiteral("client 15")), QStringLiteral("0"));
    QCOMPARE(client.request(QStringLiteral("client 2000"), 1), QStringLiteral("0"));
}

void FocusDaemonTest::floodOfConnections()
{
    startDaemon();
    std::vector<std::unique_ptr<FocusClientConnection>> clients;
    for (int number = 0; number < 128; ++number) {
        clients.push_back(std::make_unique<FocusClientConnection>(*bus));
        QCOMPARE(clients.back()->request(QStringLiteral("client %1").arg(number), 2), QStringLiteral("0"));
    }
    FocusClientConnection late(*bus);
    QCOMPARE(late.request(QStringLiteral("late"), 2), QStringLiteral("LimitsExceeded"));
    // A connection that has nothing in the stack makes room.
    QCOMPARE(clients.front()->abandon(QStringLiteral("client 0")), QStringLiteral("0"));
    QCOMPARE(late.request(QStringLiteral("late"), 2), QStringLiteral("0"));
    // And one that leaves; the one that had to make room is watched again when it comes back.
    clients.back().reset();
    QTRY_COMPARE_WITH_TIMEOUT(clients.front()->request(QStringLiteral("client 0"), 2), QStringLiteral("0"), longestWait);
    QTRY_VERIFY_WITH_TIMEOUT(late.changeCount() > 0, longestWait);
    QCOMPARE(late.take().constLast(), QStringLiteral("-2 late"));
    clients.erase(clients.begin());
    QTRY_COMPARE_WITH_TIMEOUT(late.changeCount(), 1, longestWait);
    QCOMPARE(late.take(), QStringList(QStringLiteral("1 late")));
}

void FocusDaemonTest::floodOfCycles()
{
    startDaemon();
    FocusClientConnection client(*bus);
    FocusClientConnection other(*bus);
    other.request(QStringLiteral("other"), 1);
    for (int number = 0; number < 500; ++number) {
        const QString id = QStringLiteral("client %1").arg(number);
        QCOMPARE(client.request(id, 1 + number % 4), QStringLiteral("0"));
        QCOMPARE(client.abandon(id), QStringLiteral("0"));
    }
    QTRY_COMPARE_WITH_TIMEOUT(other.changeCount(), 1000, longestWait);
    QCOMPARE(other.take().constLast(), QStringLiteral("1 other"));
}

void FocusDaemonTest::longIds()
{
    startDaemon();
    FocusClientConnection client(*bus);
    const QString longest(255, QLatin1Char('x'));
    QCOMPARE(client.request(longest, 1), QStringLiteral("0"));
    QCOMPARE(client.abandon(longest), QStringLiteral("0"));
    const QString tooLong(256, QLatin1Char('x'));
    QCOMPARE(client.request(tooLong, 1), QStringLiteral("InvalidArgs"));
    QCOMPARE(client.abandon(tooLong), QStringLiteral("InvalidArgs"));
    QCOMPARE(client.result(client.proxy().unregisterAudioFocusClient(tooLong)), QStringLiteral("InvalidArgs"));
    QCOMPARE(client.request(QString(), 1), QStringLiteral("0")); // an id like any other
    QCOMPARE(client.result(client.proxy().getCurrentAudioFocus()), QStringLiteral("1"));
}

void FocusDaemonTest::wrongArguments()
{
    startDaemon();
    FocusClientConnection client(*bus);
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("tavi.AudioService"), QStringLiteral("/tavi/AudioService"), QStringLiteral("tavi.AudioService"), QStringLiteral("requestAudioFocus"));
    message.setArguments({QStringLiteral("three"), 1, QStringLiteral("A")});
    QCOMPARE(client.result(QDBusPendingReply<int>(client.connection().asyncCall(message))), QStringLiteral("UnknownMethod"));
    message.setArguments({3});
    QCOMPARE(client.result(QDBusPendingReply<int>(client.connection().asyncCall(message))), QStringLiteral("UnknownMethod"));
    QCOMPARE(client.request(QStringLiteral("A"), 1), QStringLiteral("0"));
}

void FocusDaemonTest::megaBase()
{
    startDaemon();
    FocusClientConnection client(*bus);
    QSignalSpy changes(&client.proxy(), &TaviAudioServiceInterface::megaBaseChanged);
    QCOMPARE(client.result(client.proxy().currentMegaBase()), QStringLiteral("0"));
    for (const int value : {1, 2, 3, 0, 1}) {
        QCOMPARE(client.result(client.proxy().nextMegaBase()), QStringLiteral("done"));
        QCOMPARE(client.result(client.proxy().currentMegaBase()), QString::number(value));
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes.takeFirst(), QVariantList{value});
    }
}

void FocusDaemonTest::oneMegaBase()
{
    startDaemon({QStringLiteral("--mega-bases"), QStringLiteral("1")});
    FocusClientConnection client(*bus);
    QSignalSpy changes(&client.proxy(), &TaviAudioServiceInterface::megaBaseChanged);
    QCOMPARE(client.result(client.proxy().nextMegaBase()), QStringLiteral("done"));
    QCOMPARE(client.result(client.proxy().currentMegaBase()), QStringLiteral("0"));
    QCOMPARE(changes.size(), 0); // nothing changed
}

void FocusDaemonTest::volume()
{
    const LogRecorder log; // keeps the lines of the store away
    startDaemon();
    FocusClientConnection client(*bus);
    QSignalSpy changes(&client.proxy(), &TaviAudioServiceInterface::volumeChanged);
    QCOMPARE(client.result(client.proxy().isVolumeAvailable()), QStringLiteral("true"));
    QVERIFY(!QFile::exists(settingsFile())); // that question did not start the audio
    audio::AudioDataBase store;
    const int level = store.getVolume(ZelAudioTypeMedia);
    QCOMPARE(client.result(client.proxy().volumeLevel()), QString::number(level));
    QVERIFY(QFile::exists(settingsFile()));
    QCOMPARE(client.result(client.proxy().isVolumeMute()), QStringLiteral("false"));
    QCOMPARE(changes.size(), 0);

    // This process stores another volume.
    store.setVolume(ZelAudioTypeMedia, level - 3, true);
    QTRY_COMPARE_WITH_TIMEOUT(changes.size(), 1, longestWait);
    QCOMPARE(changes.takeFirst(), (QVariantList{false, level - 3}));
    QCOMPARE(client.result(client.proxy().volumeLevel()), QString::number(level - 3));
    // The same again, and another type's: no news.
    store.setVolume(ZelAudioTypeMedia, level - 3, true);
    store.setVolume(static_cast<ZelAudioType>(2), 1, true);
    store.setVolume(ZelAudioTypeMedia, level, true);
    QTRY_COMPARE_WITH_TIMEOUT(changes.size(), 1, longestWait);
    QCOMPARE(changes.takeFirst(), (QVariantList{false, level}));
}

void FocusDaemonTest::noVolume()
{
    startDaemon({QStringLiteral("--no-volume")});
    FocusClientConnection client(*bus);
    QCOMPARE(client.result(client.proxy().isVolumeAvailable()), QStringLiteral("false"));
    QCOMPARE(client.result(client.proxy().volumeLevel()), QStringLiteral("NotSupported"));
    QCOMPARE(client.result(client.proxy().isVolumeMute()), QStringLiteral("NotSupported"));
    QVERIFY(!QFile::exists(settingsFile()));
}

QTEST_GUILESS_MAIN(FocusDaemonTest)
#include "tst_focusd.moc"

#include <drivemodel.h>

#include <policynames.h>

#include <QtTest/QAbstractItemModelTester>
#include <QtCore/QStandardPaths>
#include <QtTest/QtTest>

#include <iterator>

/// What the room Drive shows of a car, and the steps that it makes of what is done there.
class DriveModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void showsTheSnapshot();
    void showsNothingOfNoCar();
    void signalsOnlyChanges_data();
    void signalsOnlyChanges();
    void steps_data();
    void steps();
    void keys_data();
    void keys();
    void knobIsAhead();
    void knobFallsBack_data();
    void knobFallsBack();
    void expectations();
    void countdown_data();
    void countdown();
    void timersKeepTheirRows();
    void situationGroups();
    void theCarFollows();
};

namespace
{

class Shown : public DriveModel
{
public:
    using DriveModel::update;

    void show(const QVariantMap &drive) { update({{QStringLiteral("drive"), drive}}); }
};

QVariantMap timer(const char *purpose, int left)
{
    return {{QStringLiteral("purpose"), QString::fromLatin1(purpose)}, {QStringLiteral("left"), left}};
}

QVariantMap aCall()
{
    return {{QStringLiteral("on"), true},
            {QStringLiteral("heard"), QStringLiteral("Bluetooth telephone -5.7 dB")},
            {QStringLiteral("status"), 2},
            {QStringLiteral("channel"), 12},
            {QStringLiteral("volumes"), QVariantList{10, 11, 12, 13, 14, 15}},
            {QStringLiteral("muted"), true},
            {QStringLiteral("muteLeft"), 450},
            {QStringLiteral("keyType"), 2},
            {QStringLiteral("keyReason"), QStringLiteral("the status is BtTelephony")},
            {QStringLiteral("reverseGear"), true},
            {QStringLiteral("ducked"), true},
            {QStringLiteral("duckGain"), 60},
            {QStringLiteral("timers"), QVariantList{timer("unmute", 450)}}};
}

QVariantMap with(QVariantMap drive, const char *key, const QVariant &value)
{
    drive.insert(QString::fromLatin1(key), value);
    return drive;
}

QStringList timersOf(DriveModel &model)
{
    QStringList texts;
    for (int row = 0; row < model.timers()->rowCount(); ++row) {
        const QModelIndex index = model.timers()->index(row);
        texts.append(QStringLiteral("%1 %2 %3")
                         .arg(index.data(TimerList::PurposeRole).toString(), index.data(TimerList::LeftRole).toString())
                         .arg(index.data(TimerList::ShareRole).toDouble()));
    }
    return texts;
}

QString up()
{
    return QStringLiteral("AudioPolicy.updateCurrentAudioVolume(true);");
}

QString down()
{
    return QStringLiteral("AudioPolicy.updateCurrentAudioVolume(false);");
}

QStringList times(int count, const QString &line)
{
    QStringList lines;
    for (int i = 0; i < count; ++i)
        lines.append(line);
    return lines;
}

} // namespace

void DriveModelTest::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
}

void DriveModelTest::showsTheSnapshot()
{
    Shown model;
    model.show(aCall());
    QVERIFY(model.isOn());
    QCOMPARE(model.heard(), QStringLiteral("Bluetooth telephone -5.7 dB"));
    QCOMPARE(model.status(), 2);
    QCOMPARE(model.channel(), 12);
    QCOMPARE(model.volumes(), QVariantList({10, 11, 12, 13, 14, 15}));
    QCOMPARE(model.keyType(), 2);
    QCOMPARE(model.keyReason(), QStringLiteral("the status is BtTelephony"));
    QCOMPARE(model.keyVolume(), 12);
    QVERIFY(model.isMuted());
    QCOMPARE(model.muteLeft(), 450.0);
    QVERIFY(model.reverseGear());
    QVERIFY(model.isDucked());
    QCOMPARE(model.duckGain(), 60);
    QCOMPARE(timersOf(model), QStringList(QStringLiteral("unmute 450 1")));
    QCOMPARE(model.channels().size(), int(std::size(policynames::channels)));
    QCOMPARE(model.channels().at(12).toMap().value(QStringLiteral("text")).toString(), QStringLiteral("12 BtPhone"));
    QCOMPARE(model.statuses().at(2).toMap().value(QStringLiteral("meaning")).toString(), QStringLiteral("a telephone call over Bluetooth"));
    QCOMPARE(model.volumeTypes().at(1).toMap().value(QStringLiteral("meaning")).toString(), QStringLiteral("prompts"));
}

void DriveModelTest::showsNothingOfNoCar()
{
    Shown model;
    model.show(aCall());
    model.update({});
    QVERIFY(!model.isOn());
    QCOMPARE(model.heard(), QString());
    QCOMPARE(model.keyType(), -1);
    QCOMPARE(model.keyVolume(), -1);
    QCOMPARE(model.muteLeft(), -1.0);
    QCOMPARE(model.muteShare(), 0.0);
    QVERIFY(model.volumes().isEmpty());
    QVERIFY(!model.isMuted());
    QCOMPARE(timersOf(model), QStringList());
    model.show({{QStringLiteral("keyType"), 4}, {QStringLiteral("volumes"), QVariantList{1, 2}}});
    QCOMPARE(model.keyVolume(), -1);
}

void DriveModelTest::signalsOnlyChanges_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("signalled");
    const auto row = [](const char *key, const QVariant &value, const char *signalled) {
        QTest::newRow(key) << QString::fromLatin1(key) << value << QString::fromLatin1(signalled);
    };
    row("on", false, "sound");
    row("heard", QStringLiteral("nothing"), "sound");
    row("status", 6, "situation");
    row("channel", 3, "situation");
    row("volumes", QVariantList({10, 11, 9, 13, 14, 15}), "volumes keyVolume");
    row("keyType", 3, "volumes keyVolume");
    row("keyReason", QStringLiteral("another"), "volumes");
    row("muted", false, "mute");
    row("muteLeft", 400, "mute");
    row("reverseGear", false, "sound");
    row("ducked", false, "sound");
    row("duckGain", 50, "sound");
    row("timers", QVariantList(), "");
    row("homeUiType", 7, "");
}

void DriveModelTest::signalsOnlyChanges()
{
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    Shown model;
    model.show(aCall());
    QStringList signalled;
    connect(&model, &DriveModel::soundChanged, this, [&signalled] { signalled.append(QStringLiteral("sound")); });
    connect(&model, &DriveModel::situationChanged, this, [&signalled] { signalled.append(QStringLiteral("situation")); });
    connect(&model, &DriveModel::volumesChanged, this, [&signalled] { signalled.append(QStringLiteral("volumes")); });
    connect(&model, &DriveModel::keyVolumeChanged, this, [&signalled] { signalled.append(QStringLiteral("keyVolume")); });
    connect(&model, &DriveModel::muteChanged, this, [&signalled] { signalled.append(QStringLiteral("mute")); });
    model.show(aCall());
    QCOMPARE(signalled, QStringList());
    model.show(with(aCall(), key.toLatin1().constData(), value));
    QTEST(signalled.join(QLatin1Char(' ')), "signalled");
}

void DriveModelTest::steps_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("volume");
    QTest::addColumn<QString>("line");
    QTest::newRow("a channel") << "channel" << 3 << 0 << "AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);";
    QTest::newRow("a channel without a source") << "channel" << 14 << 0 << "AudioPolicy.updateAudioChannel(AudioPolicy.ChannelUnassigned14);";
    QTest::newRow("a channel that there is none of") << "channel" << 20 << 0 << "AudioPolicy.updateAudioChannel(20);";
    QTest::newRow("a status") << "status" << 1 << 0 << "AudioPolicy.updateAudioStatus(AudioPolicy.StatusBtRing);";
    QTest::newRow("a status that there is none of") << "status" << -1 << 0 << "AudioPolicy.updateAudioStatus(-1);";
    QTest::newRow("a volume") << "volume" << 0 << 14 << "AudioPolicy.setVolume(AudioPolicy.Media, 14, true);";
    QTest::newRow("the last volume") << "volume" << 5 << 0 << "AudioPolicy.setVolume(AudioPolicy.HiCarCall, 0, true);";
    QTest::newRow("mute") << "mute" << 1 << 0 << "AudioPolicy.setMute(true);";
    QTest::newRow("unmute") << "mute" << 0 << 0 << "AudioPolicy.setMute(false);";
    QTest::newRow("the mute key") << "mute key" << 0 << 0 << "AudioPolicy.triggerAtt();";
    QTest::newRow("a timed mute") << "mute for" << 2000 << 0 << "AudioPolicy.setAudioMute(true, 40);";
    QTest::newRow("one that is no whole number of units") << "mute for" << 99 << 0 << "AudioPolicy.setAudioMute(true, 1);";
}

void DriveModelTest::steps()
{
    QFETCH(QString, what);
    QFETCH(int, number);
    QFETCH(int, volume);
    Shown model;
    QStringList lines;
    if (what == QLatin1String("channel"))
        lines = model.chooseChannel(number);
    else if (what == QLatin1String("status"))
        lines = model.chooseStatus(number);
    else if (what == QLatin1String("volume"))
        lines = model.setVolume(number, volume);
    else if (what == QLatin1String("mute"))
        lines = model.setMuted(number != 0);
    else if (what == QLatin1String("mute key"))
        lines = model.toggleMute();
    else
        lines = model.muteFor(number);
    QCOMPARE(lines.size(), 1);
    QTEST(lines.constFirst(), "line");
}

void DriveModelTest::keys_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("target"); // 1 and -1: one step of the keys
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("turned up") << 2 << 15 << times(3, up());
    QTest::newRow("turned down") << 2 << 10 << times(2, down());
    QTest::newRow("not turned") << 2 << 12 << QStringList();
    QTest::newRow("turned where nothing is") << -1 << 15 << QStringList();
    QTest::newRow("a step up") << 2 << 1 << times(1, up());
    QTest::newRow("a step down") << 2 << -1 << times(1, down());
    QTest::newRow("a step where nothing is") << -1 << 1 << times(1, up());
    QTest::newRow("a step down where nothing is") << -1 << -1 << times(1, down());
}

void DriveModelTest::keys()
{
    QFETCH(int, type);
    QFETCH(int, target);
    Shown model;
    model.show(with(aCall(), "keyType", type));
    QTEST(target == 1 || target == -1 ? model.step(target > 0) : model.turnTo(target), "lines");
}

/// Steps take a while; meanwhile the knob goes on from where it was turned to.
void DriveModelTest::knobIsAhead()
{
    Desk desk;
    Shown model;
    model.setDesk(&desk);
    model.show(aCall());
    QSignalSpy moved(&model, &DriveModel::keyVolumeChanged);
    QCOMPARE(model.turnTo(14), times(2, up()));
    QCOMPARE(model.keyVolume(), 14);
    QCOMPARE(model.turnTo(15), times(1, up()));
    QCOMPARE(model.keyVolume(), 15);
    QCOMPARE(moved.count(), 2);
    Q_EMIT desk.performed(up(), {}, {});
    model.show(with(aCall(), "volumes", QVariantList{10, 11, 13, 13, 14, 15}));
    QCOMPARE(model.keyVolume(), 15);
    Q_EMIT desk.performed(QStringLiteral("AudioPolicy.setMute(true);"), {}, {});
    Q_EMIT desk.performed(up(), {}, {});
    model.show(with(aCall(), "volumes", QVariantList{10, 11, 14, 13, 14, 15}));
    QCOMPARE(model.keyVolume(), 15);
    QCOMPARE(moved.count(), 2);
    // All have come: what the car says counts, whatever was wanted.
    Q_EMIT desk.performed(up(), {}, {});
    model.show(with(aCall(), "volumes", QVariantList{10, 11, 14, 13, 14, 15}));
    QCOMPARE(model.keyVolume(), 14);
    QCOMPARE(moved.count(), 3);
}

void DriveModelTest::knobFallsBack_data()
{
    QTest::addColumn<QString>("cause");
    QTest::addColumn<int>("volume");
    QTest::newRow("the keys work on something else") << "type" << 13;
    QTest::newRow("the car is another one") << "restart" << 12;
    QTest::newRow("the end of the range") << "end" << 25;
}

void DriveModelTest::knobFallsBack()
{
    QFETCH(QString, cause);
    Desk desk;
    Shown model;
    model.setDesk(&desk);
    model.show(aCall());
    model.turnTo(30);
    QCOMPARE(model.keyVolume(), 25);
    if (cause == QLatin1String("restart"))
        Q_EMIT desk.restarted();
    model.show(with(aCall(), "keyType", cause == QLatin1String("type") ? 3 : 2));
    QTEST(model.keyVolume(), "volume");
}

void DriveModelTest::expectations()
{
    Shown model;
    model.show(aCall());
    QCOMPARE(model.expectedStatus(), QStringLiteral("expect(AudioPolicy.status).toBe(AudioPolicy.StatusBtTelephony);"));
    QCOMPARE(model.expectedChannel(), QStringLiteral("expect(AudioPolicy.channel).toBe(AudioPolicy.ChannelBtPhone);"));
    QCOMPARE(model.expectedVolume(3), QStringLiteral("expect(AudioPolicy.volumes[AudioPolicy.Ring]).toBe(13);"));
    model.show(with(aCall(), "status", 55));
    QCOMPARE(model.expectedStatus(), QStringLiteral("expect(AudioPolicy.status).toBe(55);"));
}

void DriveModelTest::countdown_data()
{
    QTest::addColumn<QList<int>>("left");
    QTest::addColumn<double>("share");
    QTest::newRow("none") << QList<int>{} << 0.0;
    QTest::newRow("seen first") << QList<int>{400} << 1.0;
    QTest::newRow("half of it") << QList<int>{400, 200} << 0.5;
    QTest::newRow("started anew") << QList<int>{400, 200, 300} << 1.0;
    QTest::newRow("over") << QList<int>{400, -1} << 0.0;
    QTest::newRow("a shorter one") << QList<int>{400, -1, 100, 25} << 0.25;
    QTest::newRow("at its end") << QList<int>{400, 0} << 0.0;
}

void DriveModelTest::countdown()
{
    QFETCH(QList<int>, left);
    Shown model;
    for (const int now : qAsConst(left))
        model.show(with(aCall(), "muteLeft", now));
    QTEST(model.muteShare(), "share");
}

void DriveModelTest::timersKeepTheirRows()
{
    Shown model;
    const QAbstractItemModelTester tester(model.timers(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy count(model.timers(), &TimerList::countChanged);
    QSignalSpy inserted(model.timers(), &TimerList::rowsInserted);
    QSignalSpy removed(model.timers(), &TimerList::rowsRemoved);
    QSignalSpy changed(model.timers(), &TimerList::dataChanged);
    const auto show = [&model](const QVariantList &timers) { model.show(with(aCall(), "timers", timers)); };
    show({timer("one", 1000), timer("two", 500)});
    QCOMPARE(inserted.count(), 2);
    show({timer("one", 750), timer("two", 500)});
    QCOMPARE(changed.count(), 1);
    QCOMPARE(count.count(), 1);
    QCOMPARE(timersOf(model), QStringList({QStringLiteral("one 750 0.75"), QStringLiteral("two 500 1")}));
    show({timer("two", 250)});
    QCOMPARE(removed.count(), 1);
    QCOMPARE(timersOf(model), QStringList(QStringLiteral("two 250 0.5")));
    show({timer("two", 500), timer("three", 0)});
    QCOMPARE(timersOf(model), QStringList({QStringLiteral("two 500 1"), QStringLiteral("three 0 0")}));
    QCOMPARE(inserted.count(), 3);
    QCOMPARE(count.count(), 3);
}

void DriveModelTest::situationGroups()
{
    Shown model;
    QStringList texts;
    const QVariantList groups = model.situationGroups();
    for (const QVariant &group : groups) {
        QStringList names;
        const QVariantList situations = group.toMap().value(QStringLiteral("situations")).toList();
        for (const QVariant &situation : situations) {
            names.append(situation.toMap().value(QStringLiteral("name")).toString());
            QVERIFY(!situation.toMap().value(QStringLiteral("title")).toString().isEmpty());
            QVERIFY(!situation.toMap().value(QStringLiteral("explanation")).toString().isEmpty());
        }
        texts.append(group.toMap().value(QStringLiteral("title")).toString() + QStringLiteral(": ") + names.join(QLatin1Char(' ')));
    }
    QCOMPARE(texts.join(QStringLiteral("; ")),
             QStringLiteral("Telephone: callComes callAnswered callEnds; CarPlay: carPlayPromptBegins carPlayPromptEnds; "
                            "Android Auto: androidAutoPromptBegins androidAutoPromptEnds; CarLife: carLifePromptBegins carLifePromptEnds; "
                            "Reverse gear: reverseIn reverseOut; Ignition: ignitionOn ignitionOff"));
    QCOMPARE(model.perform(QStringLiteral("carPlayPromptEnds")), QStringList(QStringLiteral("AudioPolicy.cpUnduckAudio(0);")));
    QCOMPARE(model.perform(QStringLiteral("nothing of the kind")), QStringList());
}

/// With the real car: the call goes back to the channel from before it, and the knob arrives where it was turned to.
void DriveModelTest::theCarFollows()
{
    Desk desk;
    Shown model;
    model.setDesk(&desk);
    model.setActive(true);
    desk.startAnew();
    desk.setSpeed(0);
    QTRY_VERIFY(model.isOn());
    model.chooseChannel(13);
    QTRY_COMPARE(model.channel(), 13);
    model.turnTo(9);
    QCOMPARE(model.keyVolume(), 9);
    QTRY_COMPARE(model.volumes().value(0).toInt(), 9);
    // Not looked at, the room knows all the same what played.
    model.chooseChannel(2);
    model.setActive(false);
    QTRY_COMPARE(desk.snapshot().value(QStringLiteral("drive")).toMap().value(QStringLiteral("channel")).toInt(), 2);
    model.perform(QStringLiteral("callComes"));
    model.perform(QStringLiteral("callAnswered"));
    QTRY_COMPARE(desk.snapshot().value(QStringLiteral("drive")).toMap().value(QStringLiteral("status")).toInt(), 2);
    model.setActive(true);
    QCOMPARE(model.channel(), 12);
    QCOMPARE(model.keyType(), 2);
    model.perform(QStringLiteral("callEnds"));
    QTRY_COMPARE(model.channel(), 2);
    QTRY_COMPARE(model.status(), 0);
    model.perform(QStringLiteral("ignitionOff"));
    QTRY_VERIFY(!model.isOn());
    for (const Recording::Step &step : desk.recording()->steps())
        QVERIFY2(!step.isFailed, qPrintable(step.line));
}

QTEST_GUILESS_MAIN(DriveModelTest)
#include "tst_drivemodel.moc"

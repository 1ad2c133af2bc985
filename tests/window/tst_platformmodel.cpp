#include "platformmodel.h"

#include <QtCore/QStandardPaths>
#include <QtTest/QtTest>

namespace
{

/// Told by hand what the car is like.
class ToldModel : public PlatformModel
{
public:
    using PlatformModel::update;
};

QVariantMap snapshotOf(const QVariantMap &platform)
{
    return {{QStringLiteral("platform"), platform}};
}

QVariantMap item(const char *group, const char *name, const QString &value)
{
    return {{QStringLiteral("group"), QLatin1String(group)}, {QStringLiteral("name"), QLatin1String(name)}, {QStringLiteral("value"), value}};
}

QVariantMap rowOf(const RowListModel &rows, const QString &key, const QString &value)
{
    for (const QVariantMap &row : rows.rows()) {
        if (row.value(key) == value)
            return row;
    }
    return {};
}

QVariantMap operation(PlatformModel &model, const char *name)
{
    return rowOf(*model.operations(), QStringLiteral("operation"), QLatin1String(name));
}

} // namespace

class PlatformModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void initTestCase();
    static void operations();
    static void faults();
    static void faultTexts_data();
    static void faultTexts();
    static void booksAndState();
    static void listsKeepTheirPlace();
    static void tellsChangesOnly();
    static void expectations_data();
    static void expectations();
    static void driveWithFaults();
    static void journal();
};

void PlatformModelTest::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
}

void PlatformModelTest::operations()
{
    ToldModel model;
    QVERIFY(model.operations()->count() > 40);
    QCOMPARE(model.operations()->count(), PlatformModel::operationNames().size() - 1 - 8); // all, create and destroy of four kinds
    QCOMPARE(operation(model, "Volume.getTrackVolume").value(QStringLiteral("writes")), QVariant(true));
    QCOMPARE(operation(model, "Volume.setTrackVolume").value(QStringLiteral("writes")), QVariant(false));
    QCOMPARE(operation(model, "Volume.setTrackVolume").value(QStringLiteral("calls")), QVariant(0));

    model.update(
        snapshotOf({{QStringLiteral("counts"),
                     QVariantMap{{QStringLiteral("Volume.setTrackVolume"), QVariantMap{{QStringLiteral("calls"), 12}, {QStringLiteral("refused"), 3}}}}}}));
    QCOMPARE(operation(model, "Volume.setTrackVolume").value(QStringLiteral("calls")), QVariant(12));
    QCOMPARE(operation(model, "Volume.setTrackVolume").value(QStringLiteral("refused")), QVariant(3));
    QCOMPARE(operation(model, "Volume.getTrackVolume").value(QStringLiteral("calls")), QVariant(0));
}

void PlatformModelTest::faults()
{
    ToldModel model;
    model.update(snapshotOf({{QStringLiteral("faults"),
                              QStringList{QStringLiteral("Volume.setTrackVolume 7 always"),
                                          QStringLiteral("Volume.setTrackVolume -3 in 1 calls"),
                                          QStringLiteral("Mixer.create null always")}}}));
    QCOMPARE(model.faults().size(), 3);
    QCOMPARE(model.failingFactories(), QStringList(QStringLiteral("Mixer")));
    QCOMPARE(operation(model, "Volume.setTrackVolume").value(QStringLiteral("fault")), QVariant(QStringLiteral("7, always; -3, the next call")));
    QCOMPARE(operation(model, "Volume.getTrackVolume").value(QStringLiteral("fault")), QVariant(QString()));
    model.update(snapshotOf({}));
    QCOMPARE(operation(model, "Volume.setTrackVolume").value(QStringLiteral("fault")), QVariant(QString()));
    QVERIFY(model.failingFactories().isEmpty());
}

void PlatformModelTest::faultTexts_data()
{
    QTest::addColumn<QString>("pending");
    QTest::addColumn<QString>("shown");
    QTest::newRow("always") << QStringLiteral("Volume.getTrackVolume 7 always") << QStringLiteral("7, always");
    QTest::newRow("next") << QStringLiteral("Volume.getTrackVolume 7 in 1 calls") << QStringLiteral("7, the next call");
    QTest::newRow("later") << QStringLiteral("Volume.getTrackVolume 7 in 4 calls") << QStringLiteral("7, in 4 calls");
    QTest::newRow("after writing") << QStringLiteral("Volume.getTrackVolume 7 after writing always") << QStringLiteral("7, after writing");
}

void PlatformModelTest::faultTexts()
{
    QFETCH(QString, pending);
    QFETCH(QString, shown);
    ToldModel model;
    model.update(snapshotOf({{QStringLiteral("faults"), QStringList(pending)}}));
    QCOMPARE(operation(model, "Volume.getTrackVolume").value(QStringLiteral("fault")), QVariant(shown));
}

void PlatformModelTest::booksAndState()
{
    ToldModel model;
    model.update(snapshotOf({
        {QStringLiteral("books"),
         QVariantList{
             QVariantMap{{QStringLiteral("kind"), QStringLiteral("Volume")}, {QStringLiteral("alive"), 1}, {QStringLiteral("made"), 31}},
         }},
        {QStringLiteral("living"), QStringList(QStringLiteral("Volume#1"))},
        {QStringLiteral("problems"), QStringList(QStringLiteral("Volume#2 destroyed twice"))},
        {QStringLiteral("callDuration"), 250},
        {QStringLiteral("state"), QVariantList{item("volume", "master", QStringLiteral("100")), item("microphone", "pga gain", QStringLiteral("5, 5"))}},
    }));
    QCOMPARE(model.books().size(), 1);
    QCOMPARE(model.living(), QStringList(QStringLiteral("Volume#1")));
    QCOMPARE(model.problems(), QStringList(QStringLiteral("Volume#2 destroyed twice")));
    QCOMPARE(model.callDuration(), 250);
    QCOMPARE(model.state()->count(), 2);
    const int value = model.state()->roleNames().key("value");
    QCOMPARE(model.state()->data(model.state()->index(0), value), QVariant(QStringLiteral("100")));
    QCOMPARE(model.state()->data(model.state()->index(2), value), QVariant());
}

void PlatformModelTest::listsKeepTheirPlace()
{
    ToldModel model;
    const auto told = [](const QString &master, bool isLonger) {
        QVariantList state{item("volume", "master", master), item("mute", "main", QStringLiteral("false"))};
        if (isLonger)
            state.append(item("filter", "left front", QStringLiteral("on 1")));
        return snapshotOf({{QStringLiteral("state"), state}});
    };
    model.update(told(QStringLiteral("0"), false));
    QSignalSpy reset(model.state(), &RowListModel::modelReset);
    QSignalSpy changed(model.state(), &RowListModel::dataChanged);
    QSignalSpy inserted(model.state(), &RowListModel::rowsInserted);
    QSignalSpy removed(model.state(), &RowListModel::rowsRemoved);
    QSignalSpy operations(model.operations(), &RowListModel::dataChanged);
    model.update(told(QStringLiteral("100"), false));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.constFirst().constFirst().toModelIndex().row(), 0);
    model.update(told(QStringLiteral("100"), true));
    QCOMPARE(inserted.count(), 1);
    model.update(told(QStringLiteral("100"), false));
    QCOMPARE(removed.count(), 1);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(reset.count(), 0);
    QCOMPARE(operations.count(), 0);
    QCOMPARE(model.state()->count(), 2);
}

void PlatformModelTest::tellsChangesOnly()
{
    ToldModel model;
    QSignalSpy faults(&model, &PlatformModel::faultsChanged);
    QSignalSpy books(&model, &PlatformModel::booksChanged);
    QSignalSpy duration(&model, &PlatformModel::callDurationChanged);
    QVariantMap platform{{QStringLiteral("living"), QStringList(QStringLiteral("App#1"))}};
    model.update(snapshotOf(platform));
    model.update(snapshotOf(platform));
    QCOMPARE(books.count(), 1);
    QCOMPARE(faults.count(), 0);
    platform.insert(QStringLiteral("callDuration"), 5);
    model.update(snapshotOf(platform));
    QCOMPARE(duration.count(), 1);
    QCOMPARE(books.count(), 1);
}

void PlatformModelTest::expectations_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("expected");
    const auto state
        = [](const char *value) { return PlatformModel::expectationOfState(QStringLiteral("volume"), QStringLiteral("master"), QLatin1String(value)); };
    const auto expected = [](const char *value) {
        return QStringLiteral("expect(Platform.state().find(item => item.group === \"volume\" && item.name === \"master\").value).toBe(%1);")
            .arg(QLatin1String(value));
    };
    QTest::newRow("number") << state("100") << expected("100");
    QTest::newRow("decimal") << state("-4.8") << expected("-4.8");
    QTest::newRow("truth") << state("true") << expected("true");
    QTest::newRow("text") << state("S+FilePlayer") << expected("\"S+FilePlayer\"");
    QTest::newRow("list") << state("1, 2") << QString();
    QTest::newRow("nothing") << state("") << QString();
    const auto call = [](const char *name, const char *text, const char *note = "") {
        return PlatformModel::expectationOfCall(QLatin1String(name), QLatin1String(text), QLatin1String(note));
    };
    QTest::newRow("call") << call("Volume.setMicVolume", R"(Volume.muteTrack("main", 0) -> 0)")
                          << QStringLiteral(R"(expect(Platform.journal()).toContain("Volume.muteTrack(\"main\", 0) -> 0");)");
    QTest::newRow("refused call") << call("Volume.setMicVolume", "Volume.setMicVolume(1000) -> 103 (out of range)", "out of range") << QString();
    QTest::newRow("create") << call("Volume.create", "Volume.create() -> ok") << QString();
    QTest::newRow("equalizer") << call("App.setExtEqParameter", "App.setExtEqParameter(gains 1 2 dB) -> 0") << QString();
}

void PlatformModelTest::expectations()
{
    QFETCH(QString, line);
    QFETCH(QString, expected);
    QCOMPARE(line, expected);
}

/// All that the room orders, on a real car.
void PlatformModelTest::driveWithFaults()
{
    Desk desk;
    QSignalSpy performed(&desk, &Desk::performed);
    desk.startAnew();
    desk.setSpeed(0);
    PlatformModel model;
    model.setDesk(&desk);
    model.setActive(true);
    QTRY_VERIFY(operation(model, "Volume.setMasterVolume").value(QStringLiteral("calls")).toInt() > 0);

    model.fail(QStringLiteral("Volume.setMasterVolume"), 7, PlatformModel::Always);
    model.fail(QStringLiteral("Volume.setMasterVolume"), 8, PlatformModel::NextCall);
    model.fail(QStringLiteral("Volume.getMasterVolume"), 9, PlatformModel::AfterWriting);
    model.failFactory(QStringLiteral("Mixer"));
    const QStringList all = {QStringLiteral("Volume.setMasterVolume 7 always"),
                             QStringLiteral("Volume.setMasterVolume 8 in 1 calls"),
                             QStringLiteral("Volume.getMasterVolume 9 after writing always"),
                             QStringLiteral("Mixer.create null always")};
    QTRY_COMPARE(model.faults(), all);
    model.takeBack(0);
    QTRY_COMPARE(model.faults(), all.mid(1));
    desk.perform(QStringLiteral("AudioControl.setMasterVolume(100);"));
    QTRY_COMPARE(operation(model, "Volume.setMasterVolume").value(QStringLiteral("refused")), QVariant(1));
    QTRY_COMPARE(model.faults(), all.mid(2));
    model.takeBackAllOf(QStringLiteral("Mixer.create"));
    QTRY_COMPARE(model.faults(), all.mid(2, 1));
    model.clearFaults();
    QTRY_VERIFY(model.faults().isEmpty());
    model.setCallDuration(20);
    QTRY_COMPARE(model.callDuration(), 20);

    // What the table offers to expect is so.
    const QString expectation = rowOf(*model.state(), QStringLiteral("name"), QStringLiteral("master")).value(QStringLiteral("expectation")).toString();
    QVERIFY(!expectation.isEmpty());
    desk.perform(expectation);
    QTRY_COMPARE(performed.isEmpty() ? QString() : performed.constLast().constFirst().toString(), expectation);
    for (const QList<QVariant> &outcome : performed)
        QVERIFY2(outcome.at(2).toString().isEmpty(), qPrintable(outcome.at(2).toString()));
    const QVariantList happenings = desk.happenings();
    int checks = 0;
    for (const QVariant &happening : happenings) {
        const QVariantMap entry = happening.toMap();
        if (entry.value(QStringLiteral("kind")) != QLatin1String("check"))
            continue;
        ++checks;
        QVERIFY2(entry.value(QStringLiteral("passed")).toBool(), qPrintable(entry.value(QStringLiteral("result")).toString()));
    }
    QCOMPARE(checks, 1);
}

void PlatformModelTest::journal()
{
    Desk desk;
    desk.startAnew();
    desk.setSpeed(0);
    PlatformModel model;
    model.setDesk(&desk);
    QTRY_VERIFY(!desk.journal().isEmpty());
    QCOMPARE(model.journal()->total(), 0); // nobody looks
    model.setActive(true);
    QCOMPARE(model.journal()->total(), desk.journal().size());
    desk.perform(QStringLiteral("AudioControl.setMasterVolume(100);"));
    const auto last
        = [&model](JournalModel::Role role) { return model.journal()->data(model.journal()->index(model.journal()->count() - 1), role).toString(); };
    QTRY_COMPARE(last(JournalModel::CauseRole), QStringLiteral("AudioControl.setMasterVolume(100)"));
    QCOMPARE(model.journal()->total(), desk.journal().size());
    model.setActive(false);
    const int total = model.journal()->total();
    desk.perform(QStringLiteral("AudioControl.setMasterVolume(90);"));
    QTRY_VERIFY(desk.journal().size() > total);
    QCOMPARE(model.journal()->total(), total);
    model.setActive(true);
    QCOMPARE(model.journal()->total(), desk.journal().size());
    desk.undo();
    QTRY_COMPARE(model.journal()->total(), total);
}

QTEST_GUILESS_MAIN(PlatformModelTest)

#include "tst_platformmodel.moc"

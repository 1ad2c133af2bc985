#include <focusmodel.h>

#include <QtTest/QAbstractItemModelTester>
#include <QtCore/QRandomGenerator>
#include <QtCore/QStandardPaths>
#include <QtQml/QJSEngine>
#include <QtTest/QtTest>

/// What the room Focus shows of a car, what it foretells, and the steps that it makes.
class FocusModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void showsTheSnapshot();
    void showsNothingOfNoCar();
    void forecasts_data();
    void forecasts();
    void releases_data();
    void releases();
    void signalsOnlyChanges();
    void variables_data();
    void variables();
    void variablesDiffer();
    void stepsOfClients_data();
    void stepsOfClients();
    void story_data();
    void story();
    void clientsKeepTheirRows();
    void forecastComesTrueInTheCar();

private:
    static QVariantMap focus(const QString &stack, const QString &clients);
};

namespace
{

class Shown : public FocusModel
{
public:
    using FocusModel::update;

    void show(const QVariantMap &focus) { update({{QStringLiteral("focus"), focus}}); }
    QVariant client(int row, ClientList::Role role) { return clients()->index(row).data(role); }
};

QStringList split(const QString &written)
{
    return written.split(QStringLiteral(", "), Qt::SkipEmptyParts);
}

} // namespace

/// The stack as "music 3 1 -2, …", the bottom first: client, stream, hint, loss. Clients as "music 1 held musicVariable -2 1, …": client, hint,
/// "held" or "waits", variable ("-" for none), changes.
QVariantMap FocusModelTest::focus(const QString &stack, const QString &clients)
{
    QVariantList entries;
    const QStringList parts = split(stack);
    for (const QString &part : parts) {
        const QStringList words = part.split(QLatin1Char(' '));
        entries.append(QVariantMap{{QStringLiteral("clientId"), words.at(0)},
                                   {QStringLiteral("streamType"), words.at(1).toInt()},
                                   {QStringLiteral("hint"), words.at(2).toInt()},
                                   {QStringLiteral("loss"), words.at(3).toInt()}});
    }
    QVariantList made;
    const QStringList descriptions = split(clients);
    for (const QString &description : descriptions) {
        const QStringList words = description.split(QLatin1Char(' '));
        QVariantList changes;
        for (int i = 4; i < words.size(); ++i)
            changes.append(words.at(i).toInt());
        made.append(QVariantMap{{QStringLiteral("clientId"), words.at(0)},
                                {QStringLiteral("hint"), words.at(1).toInt()},
                                {QStringLiteral("streamType"), 3},
                                {QStringLiteral("held"), words.at(2) == QLatin1String("held")},
                                {QStringLiteral("variable"), words.at(3) == QLatin1String("-") ? QString() : words.at(3)},
                                {QStringLiteral("changes"), changes}});
    }
    return {{QStringLiteral("stack"), entries}, {QStringLiteral("clients"), made}};
}

void FocusModelTest::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
}

void FocusModelTest::showsTheSnapshot()
{
    Shown model;
    model.show(focus(QStringLiteral("music 3 1 -3, navigation 5 3 0"), QStringLiteral("music 1 waits music -3, navigation 3 held prompt, radio 2 waits -")));
    QCOMPARE(model.stack()->count(), 2);
    QCOMPARE(model.stack()->index(0).data(FocusStack::ClientIdRole).toString(), QStringLiteral("navigation"));
    QCOMPARE(model.stack()->index(1).data(FocusStack::LossNameRole).toString(), QStringLiteral("LossTransientCanDuck"));
    QCOMPARE(model.clients()->count(), 3);
    QCOMPARE(model.client(0, ClientList::ToldRole).toString(), QStringLiteral("LossTransientCanDuck"));
    QCOMPARE(model.client(0, ClientList::HeldRole).toBool(), false);
    QCOMPARE(model.client(1, ClientList::HeldRole).toBool(), true);
    QCOMPARE(model.client(1, ClientList::HintRole).toInt(), 3);
    QCOMPARE(model.client(1, ClientList::VariableRole).toString(), QStringLiteral("prompt"));
    QCOMPARE(model.client(2, ClientList::StreamTypeRole).toInt(), 3);
    QCOMPARE(model.clientIds(), split(QStringLiteral("navigation, music, radio")));
    QCOMPARE(model.hints().size(), 4);
    for (int i = 0; i < 4; ++i) {
        QCOMPARE(model.hints().at(i).toMap().value(QStringLiteral("number")).toInt(), i + 1);
        QVERIFY(!model.hints().at(i).toMap().value(QStringLiteral("meaning")).toString().isEmpty());
    }
    QCOMPARE(model.hints().at(3).toMap().value(QStringLiteral("name")).toString(), QStringLiteral("GainTransientExclusive"));
}

void FocusModelTest::showsNothingOfNoCar()
{
    Shown model;
    model.show(focus(QStringLiteral("music 3 1 0"), QStringLiteral("music 1 held music")));
    model.update({});
    QCOMPARE(model.stack()->count(), 0);
    QCOMPARE(model.clients()->count(), 0);
    QCOMPARE(model.clientIds(), QStringList());
    QCOMPARE(model.releaseText(), QStringLiteral("Nobody holds focus."));
    QVERIFY(model.isNextGranted());
}

void FocusModelTest::forecasts_data()
{
    QTest::addColumn<QString>("stack");
    QTest::addColumn<QString>("client");
    QTest::addColumn<int>("hint");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("losses");
    QTest::newRow("nobody there") << ""
                                  << "" << 1 << "Granted; nobody is told anything."
                                  << "";
    QTest::newRow("a new client") << "music 3 1 0"
                                  << "" << 3 << "Granted; music is told LossTransientCanDuck."
                                  << "music told LossTransientCanDuck";
    QTest::newRow("one that waits") << "music 3 1 -2, call 0 2 0"
                                    << "music" << 1 << "Granted; call is told Loss."
                                    << "call told Loss, music - None";
    QTest::newRow("a loss that stays") << "music 3 1 -1, radio 3 1 0"
                                       << "" << 2 << "Granted; radio is told LossTransient."
                                       << "radio told LossTransient, music - Loss";
    QTest::newRow("several") << "music 3 1 -3, navigation 3 3 0"
                             << "call" << 4 << "Granted; music is told LossTransient, navigation is told LossTransient."
                             << "navigation told LossTransient, music told LossTransient";
    QTest::newRow("the holder, the same") << "music 3 1 0"
                                          << "music" << 1 << "Granted; nobody is told anything."
                                          << "music - None";
    QTest::newRow("voice communication") << "music 3 1 -2, IN_VOICE_COMM_FOCUS_ID 0 2 0"
                                         << "music" << 1 << "Denied: nobody can take focus from voice communication."
                                         << "IN_VOICE_COMM_FOCUS_ID - None, music - LossTransient";
}

void FocusModelTest::forecasts()
{
    QFETCH(QString, stack);
    QFETCH(QString, client);
    QFETCH(int, hint);
    Shown model;
    model.show(focus(stack, QString()));
    model.setNextClient(client);
    model.setNextHint(hint);
    QTEST(model.nextText(), "text");
    QCOMPARE(model.isNextGranted(), model.nextText().startsWith(QLatin1String("Granted")));
    QStringList losses;
    const QVariantList rows = model.nextLosses();
    for (const QVariant &row : rows) {
        const QVariantMap loss = row.toMap();
        losses.append(QStringLiteral("%1 %2 %3")
                          .arg(loss.value(QStringLiteral("clientId")).toString(),
                               loss.value(QStringLiteral("told")).toBool() ? QStringLiteral("told") : QStringLiteral("-"),
                               loss.value(QStringLiteral("lossName")).toString()));
    }
    QTEST(losses.join(QStringLiteral(", ")), "losses");
}

void FocusModelTest::releases_data()
{
    QTest::addColumn<QString>("stack");
    QTest::addColumn<QString>("text");
    QTest::newRow("nobody") << ""
                            << "Nobody holds focus.";
    QTest::newRow("alone") << "music 3 1 0"
                           << "When music releases focus, nobody is told anything.";
    QTest::newRow("another waits") << "music 3 1 -3, navigation 3 3 0"
                                   << "When navigation releases focus, music is told Gain.";
}

void FocusModelTest::releases()
{
    QFETCH(QString, stack);
    Shown model;
    model.show(focus(stack, QString()));
    QTEST(model.releaseText(), "text");
}

void FocusModelTest::signalsOnlyChanges()
{
    Shown model;
    const QVariantMap state = focus(QStringLiteral("music 3 1 0"), QStringLiteral("music 1 held music"));
    model.show(state);
    QSignalSpy forecast(&model, &FocusModel::forecastChanged);
    QSignalSpy ids(&model, &FocusModel::clientIdsChanged);
    QSignalSpy stack(model.stack(), &FocusStack::entriesChanged);
    QSignalSpy clients(model.clients(), &ClientList::dataChanged);
    model.show(state);
    model.setNextClient(QString());
    model.setNextHint(1);
    QCOMPARE(forecast.count() + ids.count() + stack.count() + clients.count(), 0);
    model.show(focus(QStringLiteral("music 3 2 0"), QStringLiteral("music 1 held music")));
    QCOMPARE(forecast.count(), 1);
    QCOMPARE(ids.count(), 0);
    model.show(focus(QStringLiteral("music 3 2 0"), QStringLiteral("music 1 held music, radio 1 waits radio")));
    QCOMPARE(forecast.count(), 1);
    QCOMPARE(ids.count(), 1);
    QCOMPARE(clients.count(), 0);
    model.setNextClient(QStringLiteral("radio"));
    model.setNextHint(3);
    QCOMPARE(forecast.count(), 3);
}

void FocusModelTest::variables_data()
{
    QTest::addColumn<QString>("client");
    QTest::addColumn<QString>("line");
    QTest::newRow("plain") << "music"
                           << R"(var music = new AudioFocus({clientId: "music", durationHint: AudioFocus.Gain});)";
    QTest::newRow("with blanks") << "my music"
                                 << R"(var my_music = new AudioFocus({clientId: "my music", durationHint: AudioFocus.Gain});)";
    QTest::newRow("a digit first") << "1st"
                                   << R"(var client1st = new AudioFocus({clientId: "1st", durationHint: AudioFocus.Gain});)";
    QTest::newRow("no letter at all") << "++"
                                      << R"(var client_ = new AudioFocus({clientId: "++", durationHint: AudioFocus.Gain});)";
    QTest::newRow("quotes") << R"(say "hi"\)"
                            << R"(var say_hi_ = new AudioFocus({clientId: "say \"hi\"\\", durationHint: AudioFocus.Gain});)";
    QTest::newRow("a word of the language") << "class"
                                            << R"(var class2 = new AudioFocus({clientId: "class", durationHint: AudioFocus.Gain});)";
    QTest::newRow("a name of scenarios") << "Platform"
                                         << R"(var Platform2 = new AudioFocus({clientId: "Platform", durationHint: AudioFocus.Gain});)";
    QTest::newRow("one that there is") << "radio"
                                       << R"(var radio2 = new AudioFocus({clientId: "radio", durationHint: AudioFocus.Gain});)";
    QTest::newRow("voice communication")
        << "IN_VOICE_COMM_FOCUS_ID"
        << R"(var IN_VOICE_COMM_FOCUS_ID = new AudioFocus({clientId: "IN_VOICE_COMM_FOCUS_ID", durationHint: AudioFocus.Gain});)";
    QTest::newRow("letters beyond ASCII") << QStringLiteral("Müsik")
                                          << QStringLiteral("var M_sik = new AudioFocus({clientId: \"Müsik\", durationHint: AudioFocus.Gain});");
    QTest::newRow("a line break") << "a\nb"
                                  << R"(var a_b = new AudioFocus({clientId: "a\nb", durationHint: AudioFocus.Gain});)";
    QTest::newRow("nothing") << ""
                             << "";
}

void FocusModelTest::variables()
{
    QFETCH(QString, client);
    Shown model;
    model.show(focus(QString(), QStringLiteral("radio 1 waits radio")));
    const QString line = model.addClient(client, 1, 3).value(0);
    QTEST(line, "line");
    // It is a step that the engine takes, and it gives the client this very id.
    QJSEngine engine;
    engine.evaluate(QStringLiteral("function AudioFocus(given) { got = given.clientId; } var got = \"\";"));
    const QJSValue result = engine.evaluate(line);
    QVERIFY2(!result.isError(), qPrintable(result.toString()));
    QCOMPARE(engine.evaluate(QStringLiteral("got")).toString(), client);
    QVERIFY(!line.contains(QLatin1Char('\n')));
}

void FocusModelTest::variablesDiffer()
{
    Shown model;
    const QString first = model.addClient(QStringLiteral("music"), 3, 7).value(0);
    QCOMPARE(first, QStringLiteral(R"(var music = new AudioFocus({clientId: "music", streamType: 7, durationHint: AudioFocus.GainTransientMayDuck});)"));
    QVERIFY(model.addClient(QStringLiteral("music"), 1, 3).value(0).startsWith(QLatin1String("var music2 = ")));
    QVERIFY(model.addClient(QStringLiteral("music"), 1, 3).value(0).startsWith(QLatin1String("var music3 = ")));
    // What a step has written may be any variable's name.
    Desk desk;
    desk.recording()->add({{0, QStringLiteral("let radio = 1; function prompt() {}"), {}, false}});
    Shown another;
    another.setDesk(&desk);
    QVERIFY(another.addClient(QStringLiteral("prompt"), 1, 3).value(0).startsWith(QLatin1String("var prompt2 = ")));
    QVERIFY(another.addClient(QStringLiteral("radio"), 1, 3).value(0).startsWith(QLatin1String("var radio2 = ")));
    QVERIFY(another.addClient(QStringLiteral("rad"), 1, 3).value(0).startsWith(QLatin1String("var rad = ")));
}

void FocusModelTest::stepsOfClients_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("lines");
    QTest::newRow("one with a variable") << 0
                                         << "music.request(); music.release(); music.durationHint = AudioFocus.GainTransient; "
                                            "expect(music.held).toBe(false); "
                                            "expect(music.changes).toEqual([AudioFocus.LossTransient, AudioFocus.Gain, AudioFocus.Loss]);";
    QTest::newRow("another") << 1
                             << "voice.request(); voice.release(); voice.durationHint = AudioFocus.GainTransient; "
                                "expect(voice.held).toBe(true); expect(voice.changes).toEqual([]);";
    QTest::newRow("without a variable") << 2 << "";
    QTest::newRow("no such row") << 3 << "";
    QTest::newRow("before the first") << -1 << "";
}

void FocusModelTest::stepsOfClients()
{
    QFETCH(int, row);
    Shown model;
    model.show(focus(QString(), QStringLiteral("music 1 waits music -2 1 -1, IN_VOICE_COMM_FOCUS_ID 2 held voice, radio 1 waits - -1")));
    QStringList lines = model.request(row) + model.release(row) + model.setHint(row, 2);
    for (const ClientList::Role role : {ClientList::ExpectedHeldRole, ClientList::ExpectedChangesRole})
        lines.append(model.client(row, role).toString());
    lines.removeAll(QString());
    QTEST(lines.join(QLatin1Char(' ')), "lines");
}

void FocusModelTest::story_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("shown");
    QTest::newRow("none") << 0 << 0;
    QTest::newRow("one") << 1 << 1;
    QTest::newRow("as many as are shown") << 12 << 12;
    QTest::newRow("more") << 200 << 12;
}

void FocusModelTest::story()
{
    QFETCH(int, count);
    QFETCH(int, shown);
    QString changes;
    for (int i = 0; i < count; ++i)
        changes += i == count - 1 ? QStringLiteral(" -1") : QStringLiteral(" 1");
    Shown model;
    model.show(focus(QString(), QStringLiteral("music 1 waits music") + changes));
    QCOMPARE(model.client(0, ClientList::ToldCountRole).toInt(), count);
    const QStringList told = split(model.client(0, ClientList::ToldRole).toString());
    QCOMPARE(told.size(), count > shown ? shown + 1 : shown);
    QCOMPARE(told.contains(QStringLiteral("…")), count > shown);
    if (count > 0)
        QCOMPARE(told.last(), QStringLiteral("Loss"));
}

void FocusModelTest::clientsKeepTheirRows()
{
    Shown model;
    const QAbstractItemModelTester tester(model.clients(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy count(model.clients(), &ClientList::countChanged);
    QSignalSpy inserted(model.clients(), &ClientList::rowsInserted);
    QSignalSpy removed(model.clients(), &ClientList::rowsRemoved);
    QSignalSpy changed(model.clients(), &ClientList::dataChanged);
    model.show(focus(QString(), QStringLiteral("music 1 waits music, radio 1 waits radio")));
    model.show(focus(QString(), QStringLiteral("music 1 held music, radio 1 waits radio")));
    QCOMPARE(inserted.count(), 2);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.first().first().toModelIndex().row(), 0);
    QCOMPARE(count.count(), 1);
    model.show(focus(QString(), QStringLiteral("radio 1 waits radio")));
    QCOMPARE(removed.count(), 1);
    QCOMPARE(model.client(0, ClientList::ClientIdRole).toString(), QStringLiteral("radio"));
    QCOMPARE(count.count(), 2);
}

/// With the real car: what each client of a drive is told is what was foretold for it.
void FocusModelTest::forecastComesTrueInTheCar()
{
    Desk desk;
    Shown model;
    model.setDesk(&desk);
    model.setActive(true);
    desk.startAnew();
    desk.setSpeed(0);
    const QStringList ids = split(QStringLiteral("music, navigation, telephone"));
    for (const QString &id : ids)
        model.addClient(id, 1, 3);
    QTRY_COMPARE(model.clients()->count(), ids.size());
    for (int row = 0; row < ids.size(); ++row)
        QVERIFY(!model.client(row, ClientList::VariableRole).toString().isEmpty());
    QVector<QStringList> told(ids.size());
    QRandomGenerator random(3);
    int steps = desk.recording()->doneCount();
    const auto perform = [&](const QStringList &lines) {
        steps += lines.size();
        QTRY_COMPARE_WITH_TIMEOUT(desk.recording()->doneCount(), steps, 20000);
    };
    QTRY_COMPARE(desk.recording()->doneCount(), 1 + ids.size());
    steps = 1 + ids.size();
    for (int i = 0; i < 35; ++i) {
        const int row = random.bounded(ids.size());
        FocusInspector::Outcome outcome;
        if (random.bounded(3) == 0) {
            outcome = FocusInspector::afterRelease(model.stack()->stack(), ids.at(row));
            perform(model.release(row));
        } else {
            const int hint = random.bounded(1, 5);
            perform(model.setHint(row, hint));
            QTRY_COMPARE(model.client(row, ClientList::HintRole).toInt(), hint);
            outcome = FocusInspector::afterRequest(model.stack()->stack(), ids.at(row), hint, 3);
            perform(model.request(row));
        }
        for (const FocusInspector::Told &one : qAsConst(outcome.told))
            told[ids.indexOf(one.clientId)].append(FocusInspector::changeScript(one.change));
        // The steps' outcomes and the snapshot come one after the other.
        QTRY_COMPARE(model.stack()->count(), outcome.stack.size());
        for (int client = 0; client < ids.size(); ++client)
            QTRY_COMPARE(model.client(client, ClientList::ToldCountRole).toInt(), told.at(client).size());
    }
    const int all = told.at(0).size() + told.at(1).size() + told.at(2).size();
    QVERIFY2(all > 5, qPrintable(QString::number(all)));
    for (int client = 0; client < ids.size(); ++client) {
        QCOMPARE(model.client(client, ClientList::ExpectedChangesRole).toString(),
                 QStringLiteral("expect(%1.changes).toEqual([%2]);").arg(ids.at(client), told.at(client).join(QStringLiteral(", "))));
    }
}

QTEST_GUILESS_MAIN(FocusModelTest)
#include "tst_focusmodel.moc"

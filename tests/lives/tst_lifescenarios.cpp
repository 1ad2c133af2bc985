#include "life.h"
#include "lifescenario.h"

#include <program.h>
#include <virtualclock.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QLoggingCategory>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

namespace
{

using lives::Operation;
using lives::OperationRow;

/// What another process stores while the unit is on no scenario can do: there it is a heading.
bool isHeading(const OperationRow &row)
{
    return row.script.startsWith(QLatin1String("say("));
}

/// One operation of each row, with arguments from the edges.
std::vector<Operation> lifeOfAllKinds(std::size_t edge)
{
    std::vector<Operation> life;
    const auto &table = lives::operationTable();
    for (std::size_t row = 0; row < table.size(); ++row) {
        Operation operation;
        operation.row = static_cast<int>(row);
        for (std::size_t place = 0; place < lives::mostArguments; ++place)
            operation.arguments[place] = table[row].arguments[place]->edges[(edge + place) % table[row].arguments[place]->edges.size()];
        if (isHeading(table[row]))
            continue;
        // The old settings stay, in whatever the process is killed at.
        if (table[row].role == lives::Role::PowerCut)
            operation.arguments[2] = 1;
        life.push_back(operation);
    }
    return life;
}

QString noteOf(const QString &output)
{
    const QStringList lines = program::lines(output);
    for (const QString &line : lines) {
        const QJsonObject event = QJsonDocument::fromJson(line.toUtf8()).object();
        if (event.value(QLatin1String("event")).toString() == QLatin1String("note"))
            return event.value(QLatin1String("text")).toString().remove(QLatin1String("console: "));
    }
    return {};
}

} // namespace

/// A life that fails is told as a scenario: that it is one, and does the same.
class LifeScenariosTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void scenarioDoesTheSame_data();
    void scenarioDoesTheSame();
    void problemStandsAtTheHead();
};

void LifeScenariosTest::init()
{
    QDir folder(QStringLiteral("/media/flash/nvm"));
    const QStringList names = folder.entryList(QDir::Files | QDir::Hidden);
    for (const QString &name : names)
        QVERIFY(folder.remove(name));
}

void LifeScenariosTest::scenarioDoesTheSame_data()
{
    QTest::addColumn<int>("edge");
    for (int edge = 0; edge < 4; ++edge)
        QTest::addRow("edge %d of each argument", edge) << edge;
}

void LifeScenariosTest::scenarioDoesTheSame()
{
    if (program::isEmulated())
        QSKIP("an emulator runs one program only");
    QFETCH(const int, edge);
    const std::vector<Operation> life = lifeOfAllKinds(static_cast<std::size_t>(edge));
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("life.js")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(lives::toScenario(life, {}) + "console.log(Platform.journal().join(\"|\"));\n");
    file.close();
    const program::Run played
        = program::run(program::commandLine(QStringLiteral(BENCH_PROGRAM), {QStringLiteral("play"), QStringLiteral("--json"), file.fileName()}));
    QVERIFY2(played.exitCode == 0, qPrintable(played.output.right(2000) + played.errors));

    // A process that has used nothing of the library yet, as the bench's.
    const program::Run lived = program::run(program::commandLine(QCoreApplication::applicationFilePath(), {QStringLiteral("--live"), QString::number(edge)}));
    QVERIFY2(lived.exitCode == 0, qPrintable(lived.errors));
    const QStringList expected = lived.output.trimmed().split(QLatin1Char('|'));
    const QStringList calls = noteOf(played.output).split(QLatin1Char('|'));
    QVERIFY(expected.size() > 100);
    for (int i = 0; i < qMin(expected.size(), calls.size()); ++i)
        QCOMPARE(calls.at(i), expected.at(i));
    QCOMPARE(calls.size(), expected.size());
}

void LifeScenariosTest::problemStandsAtTheHead()
{
    Operation operation;
    const QByteArray scenario = lives::toScenario({operation, operation}, QStringLiteral("this\nis wrong"));
    QCOMPARE(scenario, QByteArray("// this is wrong\n\nwait(0);\nwait(0);\n"));
}

namespace
{

/// Does what the scenario does, and prints the platform's calls.
int liveAndPrint(int edge)
{
    lives::LivedUnit unit;
    const auto life = lifeOfAllKinds(static_cast<std::size_t>(edge));
    for (const Operation &operation : life)
        operation.what().call(unit, lives::Arguments(operation.arguments));
    QTextStream(stdout) << lives::LivedUnit::platform().journal()->calls().join(QLatin1Char('|')) << Qt::endl;
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    // Step volumes are sent in the order of a hash.
    qputenv("QT_HASH_SEED", "0");
    simulator::VirtualClock::install();
    QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false\ndefault.critical=false\nqzaudio.simulator=false"));
    if (argc == 3 && QByteArray(argv[1]) == "--live")
        return liveAndPrint(QByteArray(argv[2]).toInt());
    LifeScenariosTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_lifescenarios.moc"

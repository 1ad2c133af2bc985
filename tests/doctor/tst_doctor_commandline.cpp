#include "doctortest.h"

#include <privatebus.h>

#include <QtTest/QtTest>

#include <unistd.h>

/// The doctor's command line, and the shape of what it prints.
class CommandLineDoctorTest : public DoctorTest
{
    Q_OBJECT

private Q_SLOTS:
    void told_data();
    void told();
    void mistakes_data();
    void mistakes();
    void columns_data();
    void columns();
    void oneLineForEachFinding();
    void helpTellsEachStatus();
    void outputThatCannotBeWritten_data();
    void outputThatCannotBeWritten();
    void folderWithABlank();
    void documentedExample();
};

namespace
{

/// One line for each finding, without what is another one on each machine.
QStringList withoutTheMachine(QString output)
{
    const QRegularExpression::PatternOption lines = QRegularExpression::MultilineOption;
    output.replace(QRegularExpression(QStringLiteral("\n +")), QStringLiteral(" ")); // folded
    output.remove(QRegularExpression(QStringLiteral("^flash +[a-z]+ +lasting.*\n"), lines));
    output.remove(QRegularExpression(QStringLiteral("^.* good\n"), lines)); // the last one
    output.replace(QRegularExpression(QStringLiteral("^flash +[a-z]+ +sync.*$"), lines), QStringLiteral("flash sync")); // as fast as the disk
    output.replace(QRegularExpression(QStringLiteral("/\\S*/")), QStringLiteral("/"));
    output.replace(QRegularExpression(QStringLiteral("x86_64|arm\\b")), QStringLiteral("ARCHITECTURE"));
    output.replace(QRegularExpression(QStringLiteral("\\b(un)?signed\\b")), QStringLiteral("SIGNED"));
    output.replace(QRegularExpression(QStringLiteral("\\S+ may write")), QStringLiteral("USER may write"));
    output.replace(QRegularExpression(QStringLiteral("socket \\S+")), QStringLiteral("socket"));
    output.replace(QRegularExpression(QStringLiteral("\\d+ [kM]B")), QStringLiteral("ROOM"));
    output.replace(QRegularExpression(QStringLiteral("Qt [\\d.]+|pointers of \\d+")), QStringLiteral("NUMBER"));
    return program::lines(output.replace(QRegularExpression(QStringLiteral(" +")), QStringLiteral(" ")));
}

} // namespace

void CommandLineDoctorTest::told_data()
{
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("begin");
    QTest::newRow("help") << QStringLiteral("--help") << QStringLiteral("Usage: qzaudio-doctor [OPTION]...\n");
    QTest::newRow("help, in short") << QStringLiteral("-h") << QStringLiteral("Usage: qzaudio-doctor [OPTION]...\n");
    QTest::newRow("version") << QStringLiteral("--version") << QStringLiteral("qzaudio-doctor 1.");
    QTest::newRow("version, in short") << QStringLiteral("-v") << QStringLiteral("qzaudio-doctor 1.");
}

void CommandLineDoctorTest::told()
{
    QFETCH(QString, argument);
    QFETCH(QString, begin);
    const program::Run run = look(Unit(), {argument});
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.output.startsWith(begin), qPrintable(run.output));
    QCOMPARE(run.errors, QString());
}

void CommandLineDoctorTest::mistakes_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("complaint");
    const QString patience = QStringLiteral("--patience");
    const QString range = QStringLiteral("--patience is a number from 1 to 60.");
    QTest::newRow("unknown option") << QStringList(QStringLiteral("--mend")) << QStringLiteral("Unknown option 'mend'.");
    QTest::newRow("a word") << QStringList(QStringLiteral("flash")) << QStringLiteral("There is nothing to do with \"flash\".");
    QTest::newRow("no patience") << QStringList{patience, QStringLiteral("0")} << range;
    QTest::newRow("too much patience") << QStringList{patience, QStringLiteral("61")} << range;
    QTest::newRow("patience in words") << QStringList{patience, QStringLiteral("long")} << range;
    QTest::newRow("patience without a value") << QStringList{patience} << QStringLiteral("Missing value after '--patience'.");
}

void CommandLineDoctorTest::mistakes()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, complaint);
    const program::Run run = look(Unit(), arguments);
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.output, QString());
    QCOMPARE(run.errors, QStringLiteral("qzaudio-doctor: %1 See qzaudio-doctor --help.\n").arg(complaint));
}

void CommandLineDoctorTest::columns_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("columns");
    QTest::addColumn<int>("most");
    for (const char *const argument : {"", "--help"}) {
        const QStringList arguments = QString::fromLatin1(argument).split(QLatin1Char(' '), Qt::SkipEmptyParts);
        for (const int columns : {1, 40, 60, 80, 120}) {
            QTest::addRow("%s %d", argument, columns) << arguments << QString::number(columns) << std::max(columns, 40);
        }
    }
    QTest::newRow("help for a program that reads") << QStringList(QStringLiteral("--help")) << QString() << 100;
}

void CommandLineDoctorTest::columns()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, columns);
    QFETCH(int, most);
    const Unit unit{withFlash(), {{QStringLiteral("COLUMNS"), columns}}, false};
    const program::Run run = look(unit, arguments);
    const QStringList lines = program::lines(run.output);
    QVERIFY2(lines.size() > 10, qPrintable(run.output));
    int longest = 0;
    for (const QString &line : lines) {
        // A path may be as long as it likes, and stands alone then.
        const bool isOneWord = !line.trimmed().contains(QLatin1Char(' '));
        QVERIFY2(line.size() <= most || isOneWord, qPrintable(line));
        QVERIFY2(!line.endsWith(QLatin1Char(' ')), qPrintable(line));
        longest = std::max(longest, isOneWord ? 0 : line.size());
    }
    QVERIFY2(longest > most * 2 / 3, qPrintable(run.output));
}

void CommandLineDoctorTest::oneLineForEachFinding()
{
    const program::Run run = look({withFlash(), {}, false});
    static const QRegularExpression finding(QStringLiteral("^(library|platform|records|flash|settings|bus|log) +(good|note|wrong) +[a-z]+ +\\S.*$"));
    QStringList lines = program::lines(run.output);
    const QString last = lines.takeLast();
    QCOMPARE(lines.filter(finding), lines);
    const auto count
        = [&lines](const char *grade) { return lines.filter(QRegularExpression(QStringLiteral("^[a-z]+ +%1 ").arg(QLatin1String(grade)))).size(); };
    QCOMPARE(last, QStringLiteral("%1 wrong, %2 to note, %3 good").arg(count("wrong")).arg(count("note")).arg(count("good")));
}

void CommandLineDoctorTest::helpTellsEachStatus()
{
    const QString help = look(Unit(), {QStringLiteral("--help")}).output;
    QStringList statuses;
    auto lines = QRegularExpression(QStringLiteral("^  (\\d+) +([a-z]+)"), QRegularExpression::MultilineOption).globalMatch(help);
    while (lines.hasNext()) {
        const QRegularExpressionMatch line = lines.next();
        statuses.append(line.captured(1) + QLatin1Char(' ') + line.captured(2));
    }
    QCOMPARE(statuses.join(QStringLiteral(", ")), QStringLiteral("0 nothing, 1 the, 2 there, 10 library, 11 platform, 12 flash, 13 settings, 14 bus"));
}

void CommandLineDoctorTest::outputThatCannotBeWritten_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("lines") << QStringList();
    QTest::newRow("JSON") << QStringList(QStringLiteral("--json"));
    QTest::newRow("help") << QStringList(QStringLiteral("--help"));
}

void CommandLineDoctorTest::outputThatCannotBeWritten()
{
    QFETCH(QStringList, arguments);
    const QStringList toFullDevice{QStringLiteral("sh"), QStringLiteral("-c"), QStringLiteral("exec \"$@\" >/dev/full"), QStringLiteral("sh")};
    const program::Run run = look({toFullDevice, {}, false}, arguments);
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.errors, QStringLiteral("qzaudio-doctor: the output cannot be written\n"));
}

void CommandLineDoctorTest::folderWithABlank()
{
    const QString program = pathOf(QStringLiteral("the doctor"));
    QVERIFY(QFile::copy(QStringLiteral(DOCTOR), program));
    QVERIFY(QFile::link(QFileInfo(QStringLiteral(QZAUDIO_LIBRARY_FILE)).canonicalFilePath(), pathOf(QStringLiteral("libqzaudio.so.1"))));
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LD_LIBRARY_PATH"), folder() + QLatin1Char(':') + QFileInfo(QStringLiteral(QZAUDIO_LIBRARY_FILE)).path());
    process.setProcessEnvironment(environment);
    const program::Run run = program::run(process, withFlash() + program::commandLine(program));
    QCOMPARE(run.exitCode, 14);
    QVERIFY2(!run.output.contains(QRegularExpression(QStringLiteral("flash +wrong"))), qPrintable(run.output));
}

/// "The doctor" in the document: on a desk, on a bus that can start the daemon.
void CommandLineDoctorTest::documentedExample()
{
    QFile document(QStringLiteral(INTEGRATION_DOCUMENT));
    QVERIFY(document.open(QIODevice::ReadOnly));
    static const QRegularExpression example(QStringLiteral("```\n\\$ [^\n]*qzaudio-doctor --write-test\n(.*?)```\n"),
                                            QRegularExpression::DotMatchesEverythingOption);
    const QStringList told = withoutTheMachine(example.match(QString::fromUtf8(document.readAll())).captured(1));
    QVERIFY(told.size() > 10);
    const PrivateBus bus(QStringLiteral("[D-BUS Service]\nName=tavi.AudioService\nExec=/bin/false\n"));
    const program::Run run
        = look({withFlash(), {{QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address()}}, false}, patient() << QStringLiteral("--write-test"));
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(withoutTheMachine(run.output), told);
}

QTEST_GUILESS_MAIN(CommandLineDoctorTest)
#include "tst_doctor_commandline.moc"

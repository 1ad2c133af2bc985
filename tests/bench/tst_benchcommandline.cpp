#include "benchprocess.h"

#include <QtTest/QtTest>

#include <algorithm>

/// What the bench answers to right and wrong command lines.
class BenchCommandLineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answers_data();
    void answers();
    void helpFitsTheWidth_data();
    void helpFitsTheWidth();
    void mistakes_data();
    void mistakes();
    void unreachableService();
};

void BenchCommandLineTest::answers_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("answer");

    const auto row
        = [](const char *arguments, const char *answer) { QTest::newRow(arguments) << QString::fromLatin1(arguments) << QString::fromLatin1(answer); };
    row("--version", "qzaudio-bench 1.");
    row("-v", "qzaudio-bench 1.");
    row("--help", "Usage: qzaudio-bench COMMAND");
    row("-h", "Usage: qzaudio-bench COMMAND");
    row("help", "Usage: qzaudio-bench COMMAND");
    row("help play", "Usage: qzaudio-bench play [OPTION]... SCENARIO...");
    row("play --help", "Usage: qzaudio-bench play [OPTION]... SCENARIO...");
    row("play --help --nonsense", "Usage: qzaudio-bench play [OPTION]... SCENARIO...");
    row("settings --help", "Usage: qzaudio-bench settings [OPTION]... [FILE]");
    row("help help", "Usage: qzaudio-bench help [OPTION]... [COMMAND]");
    row("help --help", "Usage: qzaudio-bench help [OPTION]... [COMMAND]");
    row("help --commands", "play\n");
    row("help --exit-statuses focus",
        "0 success\n1 the audio service denied or refused a request\n2 a mistake on the command line\n2 output that cannot be written\n"
        "3 the bus or the audio service does not answer\n130 interrupted\n");
    row("help --complete -- focus request me --hint g", "\ngain\n");
    row("help --complete -- play power-c", "FILE\npower-cycle\n");
    row("focus -h", "Usage: qzaudio-bench focus [OPTION]... ACTION [CLIENT]");
}

void BenchCommandLineTest::answers()
{
    QFETCH(QString, arguments);
    QFETCH(QString, answer);

    const BenchProcess bench(arguments.split(QLatin1Char(' ')));
    QCOMPARE(bench.exitCode, 0);
    QVERIFY2(bench.output.startsWith(answer), qPrintable(bench.output));
    QCOMPARE(bench.output.count(QLatin1String("\nExit status: 0 ")), answer.startsWith(QLatin1String("Usage")) ? 1 : 0);
    // Neither the platform nor the library has said anything.
    QCOMPARE(bench.errors, QString());
}

void BenchCommandLineTest::helpFitsTheWidth_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<int>("width");

    QTest::newRow("60") << 60 << 60;
    QTest::newRow("80") << 80 << 80;
    QTest::newRow("120") << 120 << 120;
    QTest::newRow("at most 200") << 1000 << 200;
    QTest::newRow("no terminal and no COLUMNS") << 0 << 100;
}

void BenchCommandLineTest::helpFitsTheWidth()
{
    QFETCH(int, columns);
    QFETCH(int, width);

    int widest = 0;
    QStringList commands = program::lines(BenchProcess({QStringLiteral("help"), QStringLiteral("--commands")}).output);
    QVERIFY(commands.size() > 1);
    commands.prepend(QString());
    for (const QString &command : qAsConst(commands)) {
        QStringList arguments(QStringLiteral("help"));
        if (!command.isEmpty())
            arguments.append(command);
        const BenchProcess bench(arguments, {}, {{QStringLiteral("COLUMNS"), QString::number(columns)}});
        QCOMPARE(bench.exitCode, 0);
        const QStringList lines = program::lines(bench.output);
        for (const QString &line : lines)
            widest = std::max(widest, line.size());
    }
    QVERIFY2(widest <= width, qPrintable(QString::number(widest)));
    // What is there is used.
    constexpr int longestWord = 20;
    QVERIFY2(widest > std::min(width, 150) - longestWord, qPrintable(QString::number(widest)));
}

void BenchCommandLineTest::mistakes_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("complaint");

    const auto row
        = [](const char *arguments, const char *complaint) { QTest::newRow(arguments) << QString::fromLatin1(arguments) << QString::fromLatin1(complaint); };
    row("", "a command is missing; see qzaudio-bench --help");
    row("fly", "unknown command fly; see qzaudio-bench --help");
    row("pla", "unknown command pla; the nearest is play; see qzaudio-bench --help");
    row("help stetings", "unknown command stetings; the nearest is settings; see qzaudio-bench --help");
    row("help play settings", "help takes one command; see qzaudio-bench help --help");
    row("help --commands play", "--commands takes no command; see qzaudio-bench help --help");
    row("help --commands --complete", "the options of help do not go together; see qzaudio-bench help --help");
    row("help --exit-statuses", "--exit-statuses needs a command; see qzaudio-bench help --help");
    row("help --exit-statuses fly", "unknown command fly; see qzaudio-bench --help");
    row("help fly", "unknown command fly; see qzaudio-bench --help");
    row("--fast", "unknown option --fast; see qzaudio-bench --help");
    row("play --fast", "unknown option 'fast'; see qzaudio-bench play --help");
    row("play --junit", "missing value after '--junit'; see qzaudio-bench play --help");
    row("play", "play needs a scenario; --list has those that come with the bench; see qzaudio-bench play --help");
    row("play missing.js", "missing.js: there is no such file");
    row("play comute", "comute: there is no such file, and no scenario of this name comes with the bench (--list has them)");
    row("play /dev", "/dev: there is no scenario in this folder");
    row("play --list /nowhere", "/nowhere: there is no such folder");
    row("play --brief --json commute", "--brief, --json and --verbose do not go together; see qzaudio-bench play --help");
    row("play -v --brief commute", "--brief, --json and --verbose do not go together; see qzaudio-bench play --help");
    row("play --repeat 0 commute", "--repeat is a whole number from 1, not 0; see qzaudio-bench play --help");
    row("play --repeat often commute", "--repeat is a whole number from 1, not often; see qzaudio-bench play --help");
    row("play --timeout -1 commute", "--timeout is a whole number of seconds, not -1; see qzaudio-bench play --help");
    row("play --timeout 1.5 commute", "--timeout is a whole number of seconds, not 1.5; see qzaudio-bench play --help");
    row("play --timeout 1000001 commute", "--timeout is a whole number of seconds, not 1000001; see qzaudio-bench play --help");
    row("play --memory much commute", "--memory is a whole number of megabytes, not much; see qzaudio-bench play --help");
    row("play --in-process --repeat 2 commute", "--in-process goes neither with --flash nor with --repeat");
    row("play --in-process a.js b.js", "--in-process takes one scenario; see qzaudio-bench play --help");
    row("play --junit= commute", "--junit needs a name; see qzaudio-bench play --help");
    row("settings a b", "settings takes one file");
    row("settings --json --watch", "--watch does not go with --json; see qzaudio-bench settings --help");
    row("focus", "focus needs an action; see qzaudio-bench focus --help");
    row("focus steal", "unknown action steal");
    row("focus request", "request takes one client");
    row("focus current me", "current takes no client");
    row("focus request me --hint loud", "--hint is gain, transient, may-duck, exclusive or a number");
    row("focus current --system --session", "--session, --system and --address do not go together");
    row("focus request me --stream x", "--stream is a number");
}

void BenchCommandLineTest::mistakes()
{
    QFETCH(QString, arguments);
    QFETCH(QString, complaint);

    const BenchProcess bench(arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts));
    QCOMPARE(bench.exitCode, 2);
    QCOMPARE(bench.output, QString());
    QVERIFY2(bench.errors.startsWith(QLatin1String("qzaudio-bench: ") + complaint), qPrintable(bench.errors));
    QCOMPARE(bench.errors.count(QLatin1Char('\n')), 1);
}

void BenchCommandLineTest::unreachableService()
{
    const BenchProcess bench({QStringLiteral("focus"), QStringLiteral("current"), QStringLiteral("--address"), QStringLiteral("unix:path=/nowhere")});
    QCOMPARE(bench.exitCode, 3);
    QVERIFY2(bench.errors.startsWith(QLatin1String("qzaudio-bench: no bus: ")), qPrintable(bench.errors));
}

QTEST_GUILESS_MAIN(BenchCommandLineTest)

#include "tst_benchcommandline.moc"

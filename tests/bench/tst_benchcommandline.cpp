#include "benchprocess.h"

#include <QtTest/QtTest>

/// What the bench answers to right and wrong command lines.
class BenchCommandLineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answers_data();
    void answers();
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
    row("help play", "Usage: qzaudio-bench play [OPTION]... FILE.js");
    row("play --help", "Usage: qzaudio-bench play [OPTION]... FILE.js");
    row("play --help --nonsense", "Usage: qzaudio-bench play [OPTION]... FILE.js");
    row("settings --help", "Usage: qzaudio-bench settings [OPTION]... [FILE]");
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
    const QStringList lines = bench.output.split(QLatin1Char('\n'));
    constexpr int width = 100;
    for (const QString &line : lines)
        QVERIFY2(line.size() <= width, qPrintable(line));
}

void BenchCommandLineTest::mistakes_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("complaint");

    const auto row
        = [](const char *arguments, const char *complaint) { QTest::newRow(arguments) << QString::fromLatin1(arguments) << QString::fromLatin1(complaint); };
    row("", "a command is missing; see qzaudio-bench --help");
    row("fly", "unknown command fly; see qzaudio-bench --help");
    row("help fly", "unknown command fly; see qzaudio-bench --help");
    row("--fast", "unknown option --fast; see qzaudio-bench --help");
    row("play --fast", "unknown option 'fast'; see qzaudio-bench play --help");
    row("play --junit", "missing value after '--junit'; see qzaudio-bench play --help");
    row("play", "play needs a scenario; see qzaudio-bench play --help");
    row("play a.js b.js", "play takes one scenario");
    row("play missing.js", "missing.js: No such file or directory");
    row("play /tmp", "/tmp: ");
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

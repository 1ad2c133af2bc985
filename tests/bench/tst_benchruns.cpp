#include "benchprocess.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QTemporaryDir>
#include <QtCore/QXmlStreamReader>
#include <QtTest/QtTest>

#include <algorithm>
#include <csignal>

/// "play": each run in a process and on a flash of its own, whatever a scenario does, and several of them.
class BenchRunsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void eachRunHasItsOwnFlash();
    void settingsAreKeptWhereAskedFor();
    void theMachinesFolderIsNotMade();
    void twoRunsAtOnce();
    void withoutWhatMakesTheFlash();
    void standardInput();
    void byName();
    void list();
    void folder();
    void severalScenarios();
    void oneThatCannotBeRead();
    void repeated();
    void strict_data();
    void strict();
    void fullDisk_data();
    void fullDisk();
    void reportOnFullDisk();
    void reportOnStandardOutput();
    void reportIsReplacedWhole();
    void noLimitByDefaultInRealTime();
    void endlessScenario();
    void interrupted_data();
    void interrupted();
    void terminal_data();
    void terminal();
    void deathOfTheScenariosProcess();
    void deathOfTheBench();

private:
    QString write(const QString &name, const QByteArray &program);
    BenchProcess play(const QStringList &arguments, const BenchProcess::Environment &changed = {}) const;
    static QMap<QString, QString> attributesOf(const QString &report, const QString &element);

    QTemporaryDir work;
};

void BenchRunsTest::initTestCase()
{
    if (!BenchProcess::canSupervise())
        QSKIP("an emulator runs one program only");
}

QString BenchRunsTest::write(const QString &name, const QByteArray &program)
{
    QFile file(work.filePath(name));
    if (!QDir().mkpath(QFileInfo(file).path()) || !file.open(QIODevice::WriteOnly) || file.write(program) != program.size())
        qFatal("cannot write a scenario");
    return name;
}

BenchProcess BenchRunsTest::play(const QStringList &arguments, const BenchProcess::Environment &changed) const
{
    return BenchProcess(QStringList(QStringLiteral("play")) + arguments, work.path(), changed);
}

/// The attributes of the first such element of a report.
QMap<QString, QString> BenchRunsTest::attributesOf(const QString &report, const QString &element)
{
    QXmlStreamReader reader(report);
    QMap<QString, QString> result;
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == element && result.isEmpty()) {
            const auto attributes = reader.attributes();
            for (const QXmlStreamAttribute &attribute : attributes)
                result.insert(attribute.name().toString(), attribute.value().toString());
        }
    }
    return reader.hasError() ? QMap<QString, QString>{{QStringLiteral("error"), reader.errorString()}} : result;
}

void BenchRunsTest::eachRunHasItsOwnFlash()
{
    write(QStringLiteral("store.js"),
          "expect(AudioSettings.getVolume(0)).toBe(20);\nAudioPolicy.setVolume(AudioPolicy.Media, 3, true);\n"
          "expect(AudioSettings.getVolume(0)).toBe(3);\n");
    for (int i = 0; i < 2; ++i) {
        const BenchProcess bench = play({QStringLiteral("store.js")});
        QVERIFY2(bench.exitCode == 0, qPrintable(bench.output));
        QCOMPARE(bench.errors, QStringLiteral("qzaudio-bench: simulated platform, private flash (--flash DIR keeps one)\n"));
    }
    QVERIFY(!QFile::exists(QStringLiteral("/media/flash/nvm/audioData.db")));
}

void BenchRunsTest::settingsAreKeptWhereAskedFor()
{
    write(QStringLiteral("first.js"), "AudioPolicy.setVolume(AudioPolicy.Media, 3, true);\nexpect(1).toBe(1);\n");
    write(QStringLiteral("second.js"), "expect(AudioSettings.getVolume(0)).toBe(3);\n");
    const QString flash = QStringLiteral("a flash");
    const BenchProcess first = play({QStringLiteral("--flash"), flash, QStringLiteral("first.js")});
    QCOMPARE(first.exitCode, 0);
    QCOMPARE(first.errors, QStringLiteral("qzaudio-bench: simulated platform, settings in a flash\n"));
    QVERIFY(QFile::exists(work.filePath(QStringLiteral("a flash/audioData.db"))));
    QCOMPARE(play({QStringLiteral("--flash"), flash, QStringLiteral("second.js")}).exitCode, 0);
    QCOMPARE(play({QStringLiteral("second.js")}).exitCode, 1);
    // The test's own, which stands for the machine's.
    QCOMPARE(play({QStringLiteral("--flash"), QStringLiteral("/media/flash/nvm"), QStringLiteral("first.js")}).exitCode, 0);
    QVERIFY(QFile::remove(QStringLiteral("/media/flash/nvm/audioData.db")));
}

void BenchRunsTest::theMachinesFolderIsNotMade()
{
    // The test's own folder goes away for a moment.
    write(QStringLiteral("fine.js"), "powerOn();\nexpect(1).toBe(1);\n");
    const QString script = QStringLiteral("bwrap --dev-bind / / --tmpfs /media sh -c '%1; echo $?; find /media' 2>&1");
    const auto runWithout = [&script](const QString &arguments) {
        return program::run({QStringLiteral("sh"), QStringLiteral("-c"), script.arg(QStringLiteral(BENCH_PROGRAM " play ") + arguments)}).output;
    };
    const QString file = work.filePath(QStringLiteral("fine.js"));
    QVERIFY2(runWithout(file).endsWith(QLatin1String("Passed: %1: 1 expectation held in 0.000 s.\n0\n/media\n").arg(file)), qPrintable(runWithout(file)));
    QCOMPARE(runWithout(QStringLiteral("--flash /media/flash/nvm ") + file),
             QStringLiteral("qzaudio-bench: /media/flash/nvm: there is no such folder, and the bench makes none there\n2\n/media\n"));
    QCOMPARE(runWithout(QStringLiteral("--in-process ") + file),
             QStringLiteral("qzaudio-bench: /media/flash/nvm: there is no such folder; qzaudio-with-flash COMMAND gives one to a program\n2\n/media\n"));
}

void BenchRunsTest::twoRunsAtOnce()
{
    write(QStringLiteral("busy.js"),
          "for (let i = 0; i < 100; ++i) {\n"
          "    AudioPolicy.setVolume(AudioPolicy.Media, i % 25, true);\n"
          "    expect(AudioSettings.getVolume(0)).toBe(i % 25);\n"
          "}\n");
    constexpr int count = 4;
    std::vector<std::unique_ptr<QProcess>> processes;
    for (int i = 0; i < count; ++i) {
        processes.push_back(std::make_unique<QProcess>());
        processes.back()->setWorkingDirectory(work.path());
        BenchProcess::start(*processes.back(), {QStringLiteral("play"), QStringLiteral("--brief"), QStringLiteral("busy.js")});
    }
    for (const auto &process : processes) {
        QVERIFY(process->waitForFinished());
        QCOMPARE(process->exitCode(), 0);
    }
}

void BenchRunsTest::withoutWhatMakesTheFlash()
{
    write(QStringLiteral("fine.js"), "expect(1).toBe(1);\n");
    // A shell and nothing else: qzaudio-with-flash does not find bwrap.
    QDir(work.path()).mkpath(QStringLiteral("bin"));
    QFile::link(QStringLiteral("/bin/sh"), work.filePath(QStringLiteral("bin/sh")));
    const BenchProcess bench = play({QStringLiteral("fine.js")}, {{QStringLiteral("PATH"), work.filePath(QStringLiteral("bin"))}});
    QCOMPARE(bench.exitCode, 2);
    QVERIFY2(bench.errors.endsWith(
                 QLatin1String("qzaudio-bench: fine.js: no flash folder could be made for it; --flash /media/flash/nvm plays on the machine's own\n")),
             qPrintable(bench.errors));
    QVERIFY2(bench.errors.contains(QLatin1String("bwrap is missing")), qPrintable(bench.errors));
}

void BenchRunsTest::standardInput()
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    BenchProcess::start(process, {QStringLiteral("play"), QStringLiteral("--brief"), QStringLiteral("--repeat"), QStringLiteral("2"), QStringLiteral("-")});
    process.write("\nexpect(1).toBe(1);\nexpect(2).toBe(2);\n");
    process.closeWriteChannel();
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 0);
    QCOMPARE(process.readAll().count("Passed: -: 2 expectations held in 0.000 s.\n"), 2);
}

void BenchRunsTest::byName()
{
    const BenchProcess bench = play({QStringLiteral("--brief"), QStringLiteral("commute")});
    QVERIFY2(bench.output.contains(QRegularExpression(QStringLiteral("^Passed: /.*/share/qzaudio/scenarios/commute.js: \\d+ expectations held"))),
             qPrintable(bench.output));
    // A file of this name comes first.
    write(QStringLiteral("commute"), "expect(1).toBe(2);\n");
    QCOMPARE(play({QStringLiteral("--brief"), QStringLiteral("commute")}).exitCode, 1);
    QVERIFY(QFile::remove(work.filePath(QStringLiteral("commute"))));
}

void BenchRunsTest::list()
{
    const BenchProcess installed = play({QStringLiteral("--list")});
    QCOMPARE(installed.exitCode, 0);
    QVERIFY2(installed.output.contains(QLatin1String("\ncommute      A drive home: music, ")), qPrintable(installed.output));
    write(QStringLiteral("mine/b.js"), "// Second. It goes on.\n");
    write(QStringLiteral("mine/a.js"), "// First of\n// two lines\nsay('x');\n// not this\n");
    write(QStringLiteral("mine/notes.txt"), "none");
    QCOMPARE(play({QStringLiteral("--list"), QStringLiteral("mine")}).output, QStringLiteral("a  First of two lines\nb  Second.\n"));
}

void BenchRunsTest::folder()
{
    write(QStringLiteral("all/b.js"), "expect(1).toBe(1);\n");
    write(QStringLiteral("all/a.js"), "expect(1).toBe(1);\nexpect(2).toBe(2);\n");
    const BenchProcess bench = play({QStringLiteral("all/")});
    QCOMPARE(bench.exitCode, 0);
    QCOMPARE(bench.output,
             QStringLiteral("Passed: all/a.js: 2 expectations held in 0.000 s.\n"
                            "Passed: all/b.js: 1 expectation held in 0.000 s.\n"
                            "\n"
                            "Passed: all of 2 runs, 3 expectations held.\n"));
}

void BenchRunsTest::severalScenarios()
{
    write(QStringLiteral("good.js"), "say('Hello');\nexpect(1).toBe(1);\n");
    write(QStringLiteral("bad.js"), "expect(1).toBe(2);\n");
    const QString report = work.filePath(QStringLiteral("several.xml"));
    const BenchProcess bench = play({QStringLiteral("good.js"), QStringLiteral("bad.js"), QStringLiteral("--junit"), report});
    QCOMPARE(bench.exitCode, 1);
    QCOMPARE(bench.output,
             QStringLiteral("Passed: good.js: 1 expectation held in 0.000 s.\n"
                            "bad.js:1: expected 2, got 1\n"
                            "Failed: bad.js: 1 of 1 expectation failed in 0.000 s.\n"
                            "\n"
                            "Failed: 1 of 2 runs passed, 1 of 2 expectations failed.\n"));
    QFile xml(report);
    QVERIFY(xml.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(xml.readAll());
    const QMap<QString, QString> all = attributesOf(text, QStringLiteral("testsuites"));
    QCOMPARE(all.value(QStringLiteral("tests")), QStringLiteral("2"));
    QCOMPARE(all.value(QStringLiteral("failures")), QStringLiteral("1"));
    QCOMPARE(text.count(QLatin1String("<testsuite ")), 2);
    // What is asked for shows for each.
    QVERIFY(play({QStringLiteral("-v"), QStringLiteral("good.js"), QStringLiteral("bad.js")}).output.contains(QLatin1String("  0:00.000  Hello\n")));
}

void BenchRunsTest::oneThatCannotBeRead()
{
    write(QStringLiteral("good.js"), "expect(1).toBe(1);\n");
    const QString report = work.filePath(QStringLiteral("missing.xml"));
    const BenchProcess bench = play({QStringLiteral("missing.js"), QStringLiteral("good.js"), QStringLiteral("--junit"), report});
    QCOMPARE(bench.exitCode, 2);
    QVERIFY(bench.errors.startsWith(QLatin1String("qzaudio-bench: missing.js: there is no such file\n")));
    QVERIFY(bench.output.contains(QLatin1String("Passed: good.js")));
    QVERIFY(bench.output.endsWith(QLatin1String("Failed: 1 of 2 runs passed, 0 of 1 expectation failed.\n")));
    QFile xml(report);
    QVERIFY(xml.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(xml.readAll());
    QCOMPARE(attributesOf(text, QStringLiteral("testsuites")).value(QStringLiteral("errors")), QStringLiteral("1"));
    QCOMPARE(attributesOf(text, QStringLiteral("error")).value(QStringLiteral("message")), QStringLiteral("there is no such file"));
}

void BenchRunsTest::repeated()
{
    write(QStringLiteral("good.js"), "expect(1).toBe(1);\n");
    const BenchProcess good = play({QStringLiteral("--repeat"), QStringLiteral("3"), QStringLiteral("good.js")});
    QCOMPARE(good.exitCode, 0);
    QCOMPARE(good.output.count(QLatin1String("Passed: good.js")), 3);
    QVERIFY(good.output.endsWith(QLatin1String("Passed: all of 3 runs, 3 expectations held.\n")));

    write(QStringLiteral("bad.js"), "expect(1).toBe(2);\n");
    const BenchProcess bad = play({QStringLiteral("--repeat"), QStringLiteral("3"), QStringLiteral("bad.js")});
    QCOMPARE(bad.exitCode, 1);
    QCOMPARE(bad.output.count(QLatin1String("Failed: bad.js")), 1);
    QVERIFY(bad.output.endsWith(QLatin1String("Failed: 0 of 3 runs passed, 1 of 1 expectation failed, 2 not played.\n")));
}

void BenchRunsTest::strict_data()
{
    QTest::addColumn<QByteArray>("program");
    QTest::newRow("an empty file") << QByteArray();
    QTest::newRow("comments only") << QByteArray("// nothing\n");
    QTest::newRow("no expectation") << QByteArray("say('Hello');\nwait(1000);\n");
}

void BenchRunsTest::strict()
{
    QFETCH(QByteArray, program);
    write(QStringLiteral("lax.js"), program);
    const BenchProcess lax = play({QStringLiteral("lax.js")});
    QCOMPARE(lax.exitCode, 0);
    QVERIFY2(lax.output.contains(QLatin1String("expects nothing, so nothing was checked.\n")), qPrintable(lax.output));
    const QString report = work.filePath(QStringLiteral("strict.xml"));
    const BenchProcess strict = play({QStringLiteral("--strict"), QStringLiteral("--junit"), report, QStringLiteral("lax.js")});
    QCOMPARE(strict.exitCode, 1);
    QVERIFY2(strict.output.contains(QLatin1String("Failed: lax.js")), qPrintable(strict.output));
    QFile xml(report);
    QVERIFY(xml.open(QIODevice::ReadOnly));
    QCOMPARE(attributesOf(QString::fromUtf8(xml.readAll()), QStringLiteral("testsuites")).value(QStringLiteral("errors")), QStringLiteral("1"));
}

void BenchRunsTest::fullDisk_data()
{
    QTest::addColumn<QString>("arguments");
    for (const char *const arguments : {"play good.js",
                                        "play -vv good.js",
                                        "play --json good.js",
                                        "play --brief good.js good.js",
                                        "play --list",
                                        "settings",
                                        "settings --json",
                                        "help",
                                        "help play",
                                        "--version"})
        QTest::newRow(arguments) << QString::fromLatin1(arguments);
}

void BenchRunsTest::fullDisk()
{
    QFETCH(QString, arguments);
    write(QStringLiteral("good.js"), "say('Hello');\nexpect(1).toBe(1);\n");
    QProcess process;
    process.setWorkingDirectory(work.path());
    process.setStandardOutputFile(QStringLiteral("/dev/full"));
    BenchProcess::start(process, arguments.split(QLatin1Char(' ')));
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 2);
    const QString errors = QString::fromUtf8(process.readAllStandardError());
    QVERIFY2(errors.contains(QLatin1String("qzaudio-bench: the output cannot be written: No space left on device\n")), qPrintable(errors));
}

void BenchRunsTest::reportOnFullDisk()
{
    write(QStringLiteral("good.js"), "expect(1).toBe(1);\n");
    const BenchProcess device = play({QStringLiteral("--junit"), QStringLiteral("/dev/full"), QStringLiteral("good.js")});
    QCOMPARE(device.exitCode, 2);
    QVERIFY2(device.errors.endsWith(QLatin1String("qzaudio-bench: /dev/full: No space left on device\n")), qPrintable(device.errors));

    // A disk of one page, with a report on it that is as long.
    const QString script = QStringLiteral("bwrap --dev-bind / / --size 4096 --tmpfs /mnt sh -c 'echo old >/mnt/r.xml; %1 play --repeat 100 --brief --junit "
                                          "/mnt/r.xml %2 >/dev/null; echo $?; cat /mnt/r.xml; ls /mnt' 2>&1");
    const QString output
        = program::run({QStringLiteral("sh"), QStringLiteral("-c"), script.arg(QStringLiteral(BENCH_PROGRAM), work.filePath(QStringLiteral("good.js")))})
              .output;
    QVERIFY2(output.endsWith(QLatin1String("qzaudio-bench: /mnt/r.xml: No space left on device\n2\nold\nr.xml\n")), qPrintable(output));
}

void BenchRunsTest::reportOnStandardOutput()
{
    write(QStringLiteral("good.js"), "say('Hello');\nexpect(1).toBe(1);\n");
    const BenchProcess bench = play({QStringLiteral("--junit"), QStringLiteral("-"), QStringLiteral("good.js")});
    QCOMPARE(bench.exitCode, 0);
    QCOMPARE(attributesOf(bench.output, QStringLiteral("testsuites")).value(QStringLiteral("tests")), QStringLiteral("1"));
    QVERIFY2(bench.errors.contains(QLatin1String("  0:00.000  Hello\n")), qPrintable(bench.errors));
    QVERIFY2(bench.errors.contains(QLatin1String("Passed: good.js: ")), qPrintable(bench.errors));
}

void BenchRunsTest::reportIsReplacedWhole()
{
    write(QStringLiteral("good.js"), "expect(1).toBe(1);\n");
    const QString report = work.filePath(QStringLiteral("whole.xml"));
    QFile old(report);
    QVERIFY(old.open(QIODevice::WriteOnly) && old.write("old") == 3);
    old.close();
    QVERIFY(old.open(QIODevice::ReadOnly));
    QCOMPARE(play({QStringLiteral("--junit"), report, QStringLiteral("good.js")}).exitCode, 0);
    // Whoever has the old one open reads on in it: another file took its name.
    QCOMPARE(old.readAll(), QByteArray("old"));
    QVERIFY(QFileInfo(report).size() > 3);
}

void BenchRunsTest::noLimitByDefaultInRealTime()
{
    write(QStringLiteral("wait.js"), "wait(1500);\nexpect(1).toBe(1);\n");
    QCOMPARE(play({QStringLiteral("--realtime"), QStringLiteral("wait.js")}).exitCode, 0);
    const BenchProcess limited = play({QStringLiteral("--realtime"), QStringLiteral("--timeout"), QStringLiteral("1"), QStringLiteral("wait.js")});
    QCOMPARE(limited.exitCode, 1);
    QVERIFY2(limited.output.contains(QLatin1String("wait.js:1: did not end within 1 s\n")), qPrintable(limited.output));
}

void BenchRunsTest::endlessScenario()
{
    write(QStringLiteral("endless.js"), "expect(1).toBe(1);\nfunction spin() {\n    while (true) {\n    }\n}\n\nspin();\n");
    const QString report = work.filePath(QStringLiteral("endless.xml"));
    const BenchProcess bench = play({QStringLiteral("--timeout"), QStringLiteral("1"), QStringLiteral("--junit"), report, QStringLiteral("endless.js")});
    QCOMPARE(bench.exitCode, 1);
    QVERIFY2(bench.output.contains(QRegularExpression(QStringLiteral("\nendless.js:[34]: did not end within 1 s\n  endless.js:7: which called spin\\(\\)\n"))),
             qPrintable(bench.output));
    QFile xml(report);
    QVERIFY(xml.open(QIODevice::ReadOnly));
    const QMap<QString, QString> all = attributesOf(QString::fromUtf8(xml.readAll()), QStringLiteral("testsuites"));
    QCOMPARE(all.value(QStringLiteral("tests")), QStringLiteral("2"));
    QCOMPARE(all.value(QStringLiteral("errors")), QStringLiteral("1"));
}

void BenchRunsTest::interrupted_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QByteArray>("program");
    QTest::addColumn<int>("status");
    const QByteArray begin("say('begun');\nexpect(1).toBe(1);\n");
    QTest::newRow("Ctrl+C while it waits") << SIGINT << begin + "wait(60000);\n" << 130;
    QTest::newRow("Ctrl+C while it computes") << SIGINT << begin + "while (true) {\n}\n" << 130;
    QTest::newRow("a request to stop") << SIGTERM << begin + "wait(60000);\n" << 143;
}

void BenchRunsTest::interrupted()
{
    QFETCH(int, number);
    QFETCH(QByteArray, program);
    QFETCH(int, status);
    write(QStringLiteral("long.js"), program);
    write(QStringLiteral("next.js"), "expect(1).toBe(1);\n");
    const QString report = work.filePath(QStringLiteral("interrupted.xml"));
    QProcess process;
    process.setWorkingDirectory(work.path());
    BenchProcess::start(process,
                        {QStringLiteral("play"),
                         QStringLiteral("-v"),
                         QStringLiteral("--realtime"),
                         QStringLiteral("--junit"),
                         report,
                         QStringLiteral("long.js"),
                         QStringLiteral("next.js")});
    QString output;
    while (!output.contains(QLatin1String("ok: "))) {
        QVERIFY2(process.waitForReadyRead(), qPrintable(output));
        output += QString::fromUtf8(process.readAllStandardOutput());
    }
    QCOMPARE(kill(pid_t(process.processId()), number), 0);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), status);
    output += QString::fromUtf8(process.readAllStandardOutput());
    QVERIFY2(output.contains(QLatin1String("Interrupted: long.js: 0 of 1 expectation failed until then.\n")), qPrintable(output));
    QVERIFY2(output.endsWith(QLatin1String("Interrupted: 0 of 2 runs passed, 0 of 1 expectation failed, 1 not played.\n")), qPrintable(output));
    QFile xml(report);
    QVERIFY(xml.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(xml.readAll());
    QCOMPARE(attributesOf(text, QStringLiteral("testsuites")).value(QStringLiteral("tests")), QStringLiteral("2"));
    QCOMPARE(attributesOf(text, QStringLiteral("error")).value(QStringLiteral("message")), QStringLiteral("interrupted"));
}

void BenchRunsTest::terminal_data()
{
    QTest::addColumn<BenchProcess::Environment>("environment");
    QTest::addColumn<bool>("isColored");
    QTest::addColumn<int>("width");
    using Environment = BenchProcess::Environment;
    const QString term = QStringLiteral("TERM");
    const QString xterm = QStringLiteral("xterm");
    QTest::newRow("a terminal of 72 columns") << Environment{{term, xterm}} << true << 72;
    QTest::newRow("COLUMNS comes first") << Environment{{term, xterm}, {QStringLiteral("COLUMNS"), QStringLiteral("50")}} << true << 50;
    QTest::newRow("TERM=dumb") << Environment{{term, QStringLiteral("dumb")}} << false << 72;
    QTest::newRow("NO_COLOR") << Environment{{term, xterm}, {QStringLiteral("NO_COLOR"), QStringLiteral("1")}} << false << 72;
}

void BenchRunsTest::terminal()
{
    QFETCH(BenchProcess::Environment, environment);
    QFETCH(bool, isColored);
    QFETCH(int, width);
    write(QStringLiteral("long.js"), "say('" + QByteArray("abc ").repeated(100) + "');\nexpect(1).toBe(1);\n");
    QProcess process;
    process.setWorkingDirectory(work.path());
    QProcessEnvironment changed = QProcessEnvironment::systemEnvironment();
    changed.remove(QStringLiteral("COLUMNS"));
    for (auto variable = environment.cbegin(); variable != environment.cend(); ++variable)
        changed.insert(variable.key(), variable.value());
    process.setProcessEnvironment(changed);
    // Another program gives it a terminal.
    const QString command = QStringLiteral("stty cols 72; " BENCH_PROGRAM " play long.js");
    const program::Run run = program::run(
        process,
        {QStringLiteral("script"), QStringLiteral("--quiet"), QStringLiteral("--return"), QStringLiteral("--command"), command, QStringLiteral("/dev/null")});
    QVERIFY2(run.exitCode == 0, qPrintable(run.output + run.errors));
    QVERIFY2(run.output.contains(QLatin1String("\033[")) == isColored, qPrintable(run.output));
    int widest = 0;
    QString text = run.output;
    const QStringList lines = text.remove(QRegularExpression(QStringLiteral("\033\\[[0-9;]*m"))).split(QStringLiteral("\r\n"));
    for (const QString &line : lines) {
        if (line.contains(QLatin1String("abc")))
            widest = std::max(widest, line.size());
    }
    QVERIFY2(widest <= width && widest > width - 4, qPrintable(QString::number(widest)));
}

void BenchRunsTest::deathOfTheScenariosProcess()
{
    // A policy band outside its range would stop the process, but is refused; so it is killed from outside.
    write(QStringLiteral("killed.js"), "expect(1).toBe(1);\nwait(60000);\n");
    QProcess process;
    process.setWorkingDirectory(work.path());
    BenchProcess::start(process, {QStringLiteral("play"), QStringLiteral("-v"), QStringLiteral("--realtime"), QStringLiteral("killed.js")});
    QString output;
    while (!output.contains(QLatin1String("ok: "))) {
        QVERIFY2(process.waitForReadyRead(), qPrintable(output));
        output += QString::fromUtf8(process.readAllStandardOutput());
    }
    QCOMPARE(program::run({QStringLiteral("pkill"), QStringLiteral("-KILL"), QStringLiteral("-P"), QString::number(process.processId())}).exitCode, 0);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 1);
    output += QString::fromUtf8(process.readAllStandardOutput());
    QVERIFY2(output.contains(QLatin1String("killed.js: ended by signal 9 (Killed)\n")), qPrintable(output));
    QVERIFY2(output.contains(QLatin1String("Failed: killed.js: 0 of 1 expectation failed in ")), qPrintable(output));
}

/// What plays does not go on by itself.
void BenchRunsTest::deathOfTheBench()
{
    const QString name = QStringLiteral("orphan-%1.js").arg(QCoreApplication::applicationPid());
    write(name, "expect(1).toBe(1);\nwait(60000);\n");
    QProcess process;
    process.setWorkingDirectory(work.path());
    BenchProcess::start(process, {QStringLiteral("play"), QStringLiteral("-v"), QStringLiteral("--realtime"), name});
    QString output;
    while (!output.contains(QLatin1String("ok: "))) {
        QVERIFY2(process.waitForReadyRead(), qPrintable(output));
        output += QString::fromUtf8(process.readAllStandardOutput());
    }
    const QStringList lookForIt{QStringLiteral("pgrep"), QStringLiteral("-f"), QStringLiteral("in-process.*") + name};
    QCOMPARE(program::run(lookForIt).exitCode, 0);
    process.kill();
    QVERIFY(process.waitForFinished());
    QTRY_COMPARE(program::run(lookForIt).exitCode, 1);
}

QTEST_GUILESS_MAIN(BenchRunsTest)

#include "tst_benchruns.moc"

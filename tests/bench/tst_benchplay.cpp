#include "benchprocess.h"
#include "program.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>
#include <QtCore/QXmlStreamReader>
#include <QtTest/QtTest>

/// "play": results, messages, timeline and reports of scenarios written here.
class BenchPlayTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void results_data();
    void results();
    void timeline();
    void timersHaveHeadings();
    void logLinesStandWhereTheyHappened();
    void failuresOfThePlatformShow();
    void everyLineFitsTheWidth_data();
    void everyLineFitsTheWidth();
    void theDrive();
    void theDriveTellsFailures();
    void startUpIsCounted();
    void json();
    void colorsOnlyWhereAskedFor();
    void junitCounts();
    void junitThatCannotBeWritten();
    void realtimeWaitsForReal();
    void virtualTimeDoesNot();
    void scenarioPathWithBlanks();

private:
    QString write(const QString &name, const QByteArray &program);
    static QString timelineOf(const QString &output);

    QTemporaryDir folder;
};

QString BenchPlayTest::write(const QString &name, const QByteArray &program)
{
    QFile file(folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(program) != program.size())
        qFatal("cannot write a scenario");
    return file.fileName();
}

/// What stands above the state table and the verdict.
QString BenchPlayTest::timelineOf(const QString &output)
{
    return output.left(output.indexOf(QRegularExpression(QStringLiteral("\n(The platform's state|Passed|Failed)"))));
}

void BenchPlayTest::results_data()
{
    QTest::addColumn<QByteArray>("program");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("message");

    const auto row = [](const char *name, const char *program, int status, const char *message) {
        QTest::newRow(name) << QByteArray(program) << status << QString::fromLatin1(message);
    };
    row("nothing to do", "", 0, "Passed: FILE: played in 0.000 s, but expects nothing, so nothing was checked.");
    row("one expectation holds", "expect(1).toBe(1);", 0, "Passed: FILE: 1 expectation held in 0.000 s.");
    row("a failed expectation", "\n\nexpect(1 + 1).toBe(3);", 1, "FILE:3: expected 3, got 2");
    row("the scenario goes on after it",
        "expect(1).toBe(2);\nexpect(2).toBe(2);\nexpect(3).toBe(2);",
        1,
        "Failed: FILE: 2 of 3 expectations failed in 0.000 s.");
    row("a negated expectation", "expect(1).not.toBe(1);", 1, "FILE:1: expected not 1, got 1");
    row("lists are compared by their elements", "expect([1, [2, 'x']]).toEqual([1, [2, 'x']]);", 0, "Passed");
    row("lists of another length", "expect([1, 2]).toEqual([1]);", 1, "FILE:1: expected [1], got [1, 2]");
    row("objects are compared by their fields", "expect({a: 1, b: [2]}).toEqual({b: [2], a: 1});", 0, "Passed");
    row("an object with a field more", "expect({a: 1, b: 2}).toEqual({a: 1});", 1, "FILE:1: expected {a: 1}, got {a: 1, b: 2}");
    row("NaN is NaN", "expect(NaN).toBe(NaN);", 0, "Passed");
    row("null is not undefined", "expect(null).toBe(undefined);", 1, "FILE:1: expected undefined, got null");
    row("close enough", "expect(0.1 + 0.2).toBeCloseTo(0.3);", 0, "Passed");
    row("not close enough", "expect(1).toBeCloseTo(2, 0.5);", 1, "FILE:1: expected 2 within 0.5, got 1");
    row("more", "expect(6.1).toBeGreaterThan(6);\nexpect(-Infinity).toBeLessThan(6);\nexpect(6).not.toBeLessThan(6);", 0, "Passed");
    row("not more", "expect(6).toBeGreaterThan(6);", 1, "FILE:1: expected more than 6, got 6");
    row("not less", "expect(6).toBeLessThan(6);", 1, "FILE:1: expected less than 6, got 6");
    row("not not less", "expect(5).not.toBeLessThan(6);", 1, "FILE:1: expected not less than 6, got 5");
    row("NaN is close to nothing", "expect(NaN).toBeCloseTo(1);", 1, "FILE:1: expected 1 within 0.005, got NaN");
    row("a text contains", "expect('first sound').toContain('sound');", 0, "Passed");
    row("a list contains", "expect([[1], [2]]).toContain([2]);", 0, "Passed");
    row("a list does not contain", "expect([1]).toContain(2);", 1, "FILE:1: expected something with 2, got [1]");
    row("an unknown matcher", "expect(1).toBeOne();", 1, "FILE:1: ReferenceError: expect() has no function toBeOne");
    row("an unknown function of a layer",
        "say('x');\nAudioControl.setVolumes(1);",
        1,
        "FILE:2: ReferenceError: AudioControl has no function or property setVolumes");
    row("an unknown function", "\nplayMusic();", 1, "FILE:2: ReferenceError: playMusic is not defined");
    row("a property that does not exist", "AudioPolicy.loud = true;", 1, "FILE:1: ReferenceError: AudioPolicy has no function or property loud");
    row("a property that only reads", "\nAudioPolicy.status = 3;", 1, "FILE:2: TypeError: AudioPolicy.status cannot be set");
    row("a property that AudioFocus does not have",
        "const music = new AudioFocus({clientId: 'music'});\nmusic.chnages;",
        1,
        "FILE:2: ReferenceError: AudioFocus has no function or property chnages");
    row("a hint that AudioFocus does not have",
        "new AudioFocus({clientId: 'music', durationHint: AudioFocus.Gian});",
        1,
        "FILE:1: ReferenceError: AudioFocus has no function or property Gian");
    row("a property of AudioFocus that is set wrongly spelled",
        "const music = new AudioFocus({clientId: 'music'});\nmusic.durationHnt = 1;",
        1,
        "FILE:2: ReferenceError: AudioFocus has no function or property durationHnt");
    row("a property of AudioFocus that only reads",
        "const music = new AudioFocus({clientId: 'music'});\nmusic.held = true;",
        1,
        "FILE:2: TypeError: AudioFocus.held cannot be set");
    row("a property of AudioFocus that can be set",
        "const music = new AudioFocus({clientId: 'music'});\nmusic.durationHint = 2;\nexpect(music.durationHint).toBe(2);",
        0,
        "Passed");
    row("an object that is no list shows as an object",
        "expect(new AudioFocus({clientId: 'music'})).toBe(7);",
        1,
        "FILE:1: expected 7, got {clientId: \"music\", ");
    row("a syntax error", "say('x');\nwait(;", 1, "FILE:2: SyntaxError");
    row("something thrown that is no error", "throw {cause: 7};", 1, "FILE:1: thrown: {cause: 7}");
    row("a number that the type cannot hold",
        "\n\nAudioControl.setStreamVolume(AudioControl.Main, 'S+FilePlayer_APP', 300);",
        1,
        "FILE:3: RangeError: volume must be a whole number from 0 to 255, not 300");
    row("a missing argument",
        "AudioControl.setStreamVolume(AudioControl.Main);",
        1,
        "FILE:1: TypeError: AudioControl.setStreamVolume(tag, name, volume): name and volume are missing");
    row("an error inside a function", "function f() {\n  AudioControl.nope();\n}\nf();", 1, "FILE:2: ReferenceError");
    row("a wait that is none", "wait(-1);", 1, "FILE:1: RangeError: wait() takes whole milliseconds");
    row("a band that would stop the process", "AudioPolicy.adjustCustomEq(1, 16);", 1, "FILE:1: RangeError: band must be a whole number from 0 to 15, not 16");
    row("erasing the settings of a running unit", "powerOn();\neraseSettings();", 1, "FILE:2: Error: switch the unit off before erasing its settings");
    row("writing the settings of a running unit", "powerOn();\nwriteSettings('');", 1, "FILE:2: Error: switch the unit off before writing its settings");
    row("settings that are written",
        "powerOff();\nwriteSettings('[Volume]\\n0=7\\n');\npowerOn();\nexpect(AudioPolicy.getVolume(0)).toBe(7);\n",
        0,
        "1 expectation held in 0.000 s.");
    row("settings that are cut", "writeSettings('[Volume]\\n0=7');\nexpect(AudioPolicy.getVolume(0)).toBe(20);\n", 0, "1 expectation held in 0.000 s.");
    // An emulator runs one program only.
    if (!program::isEmulated()) {
        row("a unit that loses its power while it saves",
            "powerOn();\nAudioPolicy.setVolume(0, 9, true);\npowerOff();\n"
            "expect(cutPowerWhileSaving(5, 'AudioPolicy.setVolume(0, 7, true)')).toContain('cut at byte 5; left: audioData.db (67 bytes)');\n"
            "powerOn();\nexpect(AudioPolicy.getVolume(0)).toBe(9);\n",
            0,
            "2 expectations held in 0.000 s.");
    }
    row("taking the power from a running unit", "powerOn();\ncutPowerWhileSaving(5, '');", 1, "FILE:2: Error: switch the unit off before taking the power");
    row("an error stops the scenario",
        "expect(1).toBe(1);\nthrow new Error('enough');\nexpect(1).toBe(2);",
        1,
        "0 of 1 expectation failed in 0.000 s; stopped by an error.");
}

void BenchPlayTest::results()
{
    QFETCH(QByteArray, program);
    QFETCH(int, status);
    QFETCH(QString, message);

    const QString file = write(QStringLiteral("scenario.js"), program);
    const BenchProcess bench({QStringLiteral("play"), file});
    QCOMPARE(bench.exitStatus, QProcess::NormalExit);
    message.replace(QLatin1String("FILE"), file);
    QVERIFY2(bench.output.contains(message), qPrintable(bench.output));
    QCOMPARE(bench.exitCode, status);
}

void BenchPlayTest::timeline()
{
    const QString file = write(QStringLiteral("timeline.js"),
                               "say('Hello');\n"
                               "AudioControl.setStreamVolume(AudioControl.Main, 'S+BtRingtone_APP', 40);\n"
                               "wait(61500);\n"
                               "expect(AudioControl.getStreamVolume(0, 'S+BtRingtone_APP')).toBe(60);\n"
                               "expect(Platform.masterVolume()).toBe(1);\n"
                               "console.log('done');\n");
    const BenchProcess bench({QStringLiteral("play"), QStringLiteral("-vv"), file});
    QCOMPARE(timelineOf(bench.output),
             QStringLiteral("\n"
                            "  0:00.000  Hello\n"
                            "  0:00.000  AudioControl.setStreamVolume(Main, \"S+BtRingtone_APP\", 40)\n"
                            "                Volume.setTrackVolume(\"main\", \"S+BtRingtone\", 60) -> 0\n"
                            "  1:01.500  AudioControl.getStreamVolume(Main, \"S+BtRingtone_APP\") = 60\n"
                            "                Volume.getTrackVolume(\"main\", \"S+BtRingtone\") -> 0, 60\n"
                            "            ok: expect(AudioControl.getStreamVolume(0, 'S+BtRingtone_APP')).toBe(60)\n"
                            "            FAILED: line 5: expect(Platform.masterVolume()).toBe(1): expected 1, got 0\n"
                            "            console: done\n"));
    QVERIFY(bench.output.contains(QLatin1String("main S+BtRingtone")));
}

void BenchPlayTest::timersHaveHeadings()
{
    const QString file = write(QStringLiteral("timers.js"),
                               "eraseSettings();\n"
                               "powerOn();\n"
                               "wait(1000);\n"
                               "AudioPolicy.setAudioMute(true, 4);\n"
                               "wait(1000);\n");
    const BenchProcess bench({QStringLiteral("play"), QStringLiteral("-v"), file});
    QVERIFY2(timelineOf(bench.output)
                 .endsWith(QLatin1String("  0:01.000  AudioPolicy.setAudioMute(true, 4)\n"
                                         "                Volume.muteTrack(\"main\", 0) -> 0\n"
                                         "                Volume.muteTrack(\"alternative\", 0) -> 0\n"
                                         "  0:01.200  timer: unmute after the timed mute\n"
                                         "                Volume.unmuteTrack(\"main\", 0) -> 0\n"
                                         "                Volume.unmuteTrack(\"alternative\", 0) -> 0\n")),
             qPrintable(bench.output));
}

void BenchPlayTest::logLinesStandWhereTheyHappened()
{
    const QString file = write(QStringLiteral("log.js"), "AudioControl.setMasterVolume(30);\nAudioControl.setMasterVolume(101);\n");
    const BenchProcess with({QStringLiteral("play"), QStringLiteral("-v"), QStringLiteral("--log"), file});
    const QRegularExpression expected(
        QStringLiteral("^  0:00.000  AudioControl.setMasterVolume\\(30\\) = 0\n"
                       "                Volume.setMasterVolume\\(100\\) -> 0\n"
                       "                log: \\[QT\\] \\[Audiocontrol\\] set master volume 100\n"
                       "  0:00.000  AudioControl.setMasterVolume\\(101\\) = -1\n"
                       "                log: \\[QT\\] \\[Error\\] \\[Audiocontrol\\] line: \\d+ input volume val more than +100\n$"));
    QVERIFY2(expected.match(timelineOf(with.output)).hasMatch(), qPrintable(with.output));

    const BenchProcess without({QStringLiteral("play"), QStringLiteral("-v"), file});
    QVERIFY(!without.output.contains(QLatin1String("log:")));
}

void BenchPlayTest::failuresOfThePlatformShow()
{
    const QString file = write(QStringLiteral("faults.js"),
                               "Platform.failFactory('Mixer');\n"
                               "Platform.failOnce('Source.setOutputSource', 7, 1);\n"
                               "AudioControl.setOutputFrontSource('main', 'S+Radio', true);\n");
    const BenchProcess bench({QStringLiteral("play"), QStringLiteral("-v"), file});
    const QString text = timelineOf(bench.output);
    QVERIFY2(text.contains(QLatin1String("Mixer.create() -> null")), qPrintable(text));
    QVERIFY2(text.contains(QLatin1String("Source.setOutputSource(\"main\", \"S+Radio\") -> 7 (")), qPrintable(text));
}

void BenchPlayTest::everyLineFitsTheWidth_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<int>("width");

    QTest::newRow("COLUMNS=60") << 60 << 60;
    QTest::newRow("COLUMNS=80") << 80 << 80;
    QTest::newRow("COLUMNS=150") << 150 << 150;
    QTest::newRow("without") << 0 << 100;
}

void BenchPlayTest::everyLineFitsTheWidth()
{
    QFETCH(int, columns);
    QFETCH(int, width);

    const QString file
        = write(QStringLiteral("wide.js"),
                "say('It is said that a long story needs more room than there is in any line, and that is why it is broken where it has to be.');\n"
                "AudioControl.setEqGain([1.25, 2.25, 3.25, 4.25, 5.25, 6.25, 7.25, 8.25, 9.25, 10.25, 11.25, -1.25, -2.25, -3.25, -4.25, -5.25]);\n"
                "AudioControl.setEqMode(0);\n"
                "powerOn();\n");
    for (const char *const view : {"--brief", "--log", "-v", "-vv"}) {
        const BenchProcess bench({QStringLiteral("play"), QLatin1String(view), QStringLiteral("--log"), QStringLiteral("wide.js")},
                                 folder.path(),
                                 {{QStringLiteral("COLUMNS"), QString::number(columns)}});
        QVERIFY2(bench.exitCode == 0, qPrintable(file));
        const QStringList lines = bench.output.split(QLatin1Char('\n'));
        for (const QString &line : lines) {
            // The verdict is one line, for those who search for it; a long word cannot be broken.
            if (!line.startsWith(QLatin1String("Passed: ")) && line.trimmed().contains(QLatin1Char(' ')))
                QVERIFY2(line.size() <= width, qPrintable(line));
        }
    }
}

void BenchPlayTest::theDrive()
{
    const QString file = write(QStringLiteral("drive.js"),
                               "powerOn();\n"
                               "AudioPolicy.setVolume(AudioPolicy.Media, 12, true);\n"
                               "say('Music');\n"
                               "AudioPolicy.updateAudioChannel(3);\n"
                               "expect(Platform.activeSource('main')).toBe('S+FilePlayer');\n"
                               "wait(5000);\n"
                               "AudioPolicy.updateCurrentAudioVolume(true);\n"
                               "say('Nothing happens for a while');\n"
                               "wait(1000);\n"
                               "say('Reverse gear');\n"
                               "Platform.setReverseGear(true);\n"
                               "wait(3000);\n"
                               "AudioPolicy.setMute(true);\n"
                               "console.log('quiet');\n");
    const BenchProcess bench({QStringLiteral("play"), QStringLiteral("drive.js")}, folder.path());
    // 12 of 25 reach the platform as 48 of 148: 20 lg(48/148) = -9.8 dB; 60 percent of it are 4.4 dB less.
    QCOMPARE(bench.output,
             QStringLiteral("\n"
                            "  0:00.000  Music\n"
                            "            heard  file player -9.8 dB\n"
                            "            why    AudioPolicy.updateAudioChannel(FilePlayer)\n"
                            "  0:05.000  heard  file player -9.1 dB (was -9.8 dB)\n"
                            "            why    AudioPolicy.updateCurrentAudioVolume(true)\n"
                            "\n"
                            "  0:05.000  Nothing happens for a while\n"
                            "            heard  file player -9.1 dB\n"
                            "\n"
                            "  0:06.000  Reverse gear\n"
                            "            heard  file player -13.5 dB (ducked to 60 %, was -9.1 dB)\n"
                            "            why    Platform.setReverseGear(true)\n"
                            "  0:07.000  heard  file player -9.8 dB (ducked to 60 %, was -13.5 dB)\n"
                            "            why    timer: apply the prompts' volume while ducked; status becomes CarPlayDuck: a\n"
                            "                   CarPlay prompt plays over the main audio, or reverse gear is in\n"
                            "  0:09.000  heard  file player muted\n"
                            "            why    AudioPolicy.setMute(true)\n"
                            "            console: quiet\n"
                            "\n"
                            "Passed: drive.js: 1 expectation held in 9.000 s.\n"));
    QVERIFY(QFile::exists(file));
}

void BenchPlayTest::theDriveTellsFailures()
{
    write(QStringLiteral("failure.js"),
          "function volumeIs(wanted) {\n"
          "    expect(Platform.masterVolume()).toBe(wanted);\n"
          "}\n"
          "say('Silence');\n"
          "volumeIs(0);\n"
          "volumeIs(1);\n");
    const BenchProcess bench({QStringLiteral("play"), QStringLiteral("failure.js")}, folder.path());
    QCOMPARE(bench.output,
             QStringLiteral("\n"
                            "  0:00.000  Silence\n"
                            "            FAILED: line 2: expect(Platform.masterVolume()).toBe(wanted): expected 1, got 0, in\n"
                            "                volumeIs() called from line 6\n"
                            "            heard  nothing\n"
                            "\n"
                            "failure.js:2: expected 1, got 0\n"
                            "  failure.js:6: which called volumeIs()\n"
                            "Failed: failure.js: 1 of 2 expectations failed in 0.000 s.\n"));
    const BenchProcess brief({QStringLiteral("play"), QStringLiteral("--brief"), QStringLiteral("failure.js")}, folder.path());
    QCOMPARE(brief.output,
             QStringLiteral("failure.js:2: expected 1, got 0\n"
                            "  failure.js:6: which called volumeIs()\n"
                            "Failed: failure.js: 1 of 2 expectations failed in 0.000 s.\n"));
}

void BenchPlayTest::startUpIsCounted()
{
    const QString file = write(QStringLiteral("start.js"), "eraseSettings();\npowerOn();\n");
    const QString call = QStringLiteral("Volume.setTrackVolume(\"main\", \"S+FilePlayer\", 80) -> 0\n");
    const BenchProcess requests({QStringLiteral("play"), QStringLiteral("-v"), file});
    QVERIFY2(requests.output.contains(
                 QRegularExpression(QStringLiteral("  0:00.000  powerOn\\(\\)\n {16}starts up the audio with \\d\\d platform calls, which -vv shows\n"))),
             qPrintable(requests.output));
    QVERIFY(!requests.output.contains(call));
    QVERIFY(!requests.output.contains(QLatin1String("The platform's state")));
    const BenchProcess everything({QStringLiteral("play"), QStringLiteral("-vv"), file});
    QVERIFY2(everything.output.contains(call), qPrintable(everything.output));
    QVERIFY(everything.output.contains(QLatin1String("The platform's state")));
}

/// Each line is an object, and together they say what the other views say.
void BenchPlayTest::json()
{
    write(QStringLiteral("objects.js"),
          "say('Music \\u001b[31m');\n"
          "AudioControl.setStreamVolume(AudioControl.Main, 'S+FilePlayer_APP', 74);\n"
          "AudioControl.setMasterVolume(100);\n"
          "AudioControl.setOutputSource(AudioControl.Main, 'S+FilePlayer_APP');\n"
          "wait(250);\n"
          "expect(1).toBe(2);\n");
    const BenchProcess bench({QStringLiteral("play"), QStringLiteral("--json"), QStringLiteral("objects.js")}, folder.path());
    QCOMPARE(bench.exitCode, 1);
    QVERIFY(!bench.output.contains(QLatin1Char('\033')));
    QStringList events;
    QJsonObject heard;
    QJsonObject check;
    QJsonObject request;
    QJsonObject end;
    const QStringList lines = program::lines(bench.output);
    for (const QString &line : lines) {
        QJsonParseError error;
        const QJsonObject object = QJsonDocument::fromJson(line.toUtf8(), &error).object();
        QVERIFY2(error.error == QJsonParseError::NoError, qPrintable(line));
        QCOMPARE(object.value(QLatin1String("scenario")).toString(), QStringLiteral("objects.js"));
        const QString event = object.value(QLatin1String("event")).toString();
        events.append(event);
        if (event == QLatin1String("heard"))
            heard = object;
        else if (event == QLatin1String("check"))
            check = object;
        else if (event == QLatin1String("request"))
            request = object;
        else if (event == QLatin1String("end"))
            end = object;
    }
    QCOMPARE(events.join(QLatin1Char(' ')), QStringLiteral("heading request request request heard check end"));
    const QJsonObject sound = heard.value(QLatin1String("sounds")).toArray().at(0).toObject();
    QCOMPARE(sound.value(QLatin1String("source")).toString(), QStringLiteral("S+FilePlayer"));
    QCOMPARE(sound.value(QLatin1String("name")).toString(), QStringLiteral("file player"));
    // Half of 148.
    QVERIFY(qAbs(sound.value(QLatin1String("level")).toDouble() + 6.02) < 0.01);
    QCOMPARE(request.value(QLatin1String("caused")).toArray().at(0).toObject().value(QLatin1String("event")).toString(), QStringLiteral("call"));
    QCOMPARE(check.value(QLatin1String("time")).toInt(), 250);
    QCOMPARE(check.value(QLatin1String("line")).toInt(), 6);
    QCOMPARE(check.value(QLatin1String("passed")).toBool(true), false);
    QCOMPARE(check.value(QLatin1String("cause")).toString(), QStringLiteral("expected 2, got 1"));
    QCOMPARE(end.value(QLatin1String("failures")).toInt(), 1);
    QCOMPARE(end.value(QLatin1String("time")).toInt(), 250);
}

void BenchPlayTest::colorsOnlyWhereAskedFor()
{
    const QString file = write(QStringLiteral("colors.js"), "expect(1).toBe(1);");
    const QString escape = QStringLiteral("\033[");
    QVERIFY(!BenchProcess({QStringLiteral("play"), file}).output.contains(escape));
    QVERIFY(!BenchProcess({QStringLiteral("play"), QStringLiteral("--color"), QStringLiteral("never"), file}).output.contains(escape));
    QVERIFY(BenchProcess({QStringLiteral("play"), QStringLiteral("--color"), QStringLiteral("always"), file}).output.contains(escape));
    QVERIFY(!BenchProcess({QStringLiteral("play"), QStringLiteral("--color"), QStringLiteral("auto"), file}).output.contains(escape));
    const BenchProcess wrong({QStringLiteral("play"), QStringLiteral("--color"), QStringLiteral("blue"), file});
    QCOMPARE(wrong.exitCode, 2);
    QVERIFY(wrong.errors.contains(QLatin1String("--color is auto, always or never, not blue")));
}

void BenchPlayTest::junitCounts()
{
    const QString file = write(QStringLiteral("counts.js"),
                               "expect('a<b&\"').toBe('a<b&\"');\n"
                               "expect(1).toBe(2);\n"
                               "wait(1500);\n"
                               "expect(2).toBe(2);\n"
                               "nope();\n");
    const QString report = folder.filePath(QStringLiteral("report.xml"));
    const BenchProcess bench({QStringLiteral("play"), QStringLiteral("--junit"), report, file});
    QCOMPARE(bench.exitCode, 1);

    QFile xml(report);
    QVERIFY(xml.open(QIODevice::ReadOnly));
    QXmlStreamReader reader(&xml);
    QStringList cases;
    int failures = 0;
    int errors = 0;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        const auto attribute = [&reader](const char *name) { return reader.attributes().value(QLatin1String(name)).toString(); };
        if (reader.name() == QLatin1String("testsuite")) {
            QCOMPARE(attribute("name"), QStringLiteral("counts"));
            QCOMPARE(attribute("tests"), QStringLiteral("4"));
            QCOMPARE(attribute("failures"), QStringLiteral("1"));
            QCOMPARE(attribute("errors"), QStringLiteral("1"));
            QVERIFY(attribute("time").toDouble() < 1.5);
        } else if (reader.name() == QLatin1String("property")) {
            QCOMPARE(attribute("name"), QStringLiteral("virtual time"));
            QCOMPARE(attribute("value"), QStringLiteral("1.500"));
        } else if (reader.name() == QLatin1String("testcase")) {
            cases += attribute("name");
        } else if (reader.name() == QLatin1String("failure")) {
            QCOMPARE(attribute("message"), QStringLiteral("expected 2, got 1"));
            ++failures;
        } else if (reader.name() == QLatin1String("error")) {
            QVERIFY(attribute("message").contains(QLatin1String("nope is not defined")));
            ++errors;
        }
    }
    QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
    QCOMPARE(cases,
             QStringList({QStringLiteral("line 1: expect('a<b&\"').toBe('a<b&\"')"),
                          QStringLiteral("line 2: expect(1).toBe(2)"),
                          QStringLiteral("line 4: expect(2).toBe(2)"),
                          QStringLiteral("plays to its end")}));
    QCOMPARE(failures, 1);
    QCOMPARE(errors, 1);
}

void BenchPlayTest::junitThatCannotBeWritten()
{
    const QString file = write(QStringLiteral("fine.js"), "expect(1).toBe(1);");
    const BenchProcess bench({QStringLiteral("play"), QStringLiteral("--junit"), QStringLiteral("/nowhere/report.xml"), file});
    QCOMPARE(bench.exitCode, 2);
    QVERIFY(bench.errors.contains(QLatin1String("/nowhere/report.xml")));
}

void BenchPlayTest::realtimeWaitsForReal()
{
    const QString file = write(QStringLiteral("real.js"), "wait(300);\nexpect(now() >= 300).toBe(true);\n");
    QElapsedTimer timer;
    timer.start();
    const BenchProcess bench({QStringLiteral("play"), QStringLiteral("--realtime"), file});
    QVERIFY2(bench.exitCode == 0, qPrintable(bench.output));
    QVERIFY(timer.elapsed() >= 300);
}

void BenchPlayTest::virtualTimeDoesNot()
{
    constexpr int hour = 3600000;
    const QString file = write(QStringLiteral("virtual.js"), "wait(3600000);\nexpect(now()).toBe(3600000);\n");
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(BenchProcess({QStringLiteral("play"), file}).exitCode, 0);
    QVERIFY(timer.elapsed() < hour / 60);
}

void BenchPlayTest::scenarioPathWithBlanks()
{
    const QString file = write(QStringLiteral("a b 50%41.js"), "\nexpect(1).toBe(2);");
    const BenchProcess absolute({QStringLiteral("play"), file});
    QVERIFY2(absolute.output.contains(file + QLatin1String(":2: expected 2, got 1")), qPrintable(absolute.output));
    const BenchProcess relative({QStringLiteral("play"), QStringLiteral("a b 50%41.js")}, folder.path());
    QVERIFY2(relative.output.contains(QLatin1String("\na b 50%41.js:2: expected 2, got 1")), qPrintable(relative.output));
}

QTEST_GUILESS_MAIN(BenchPlayTest)

#include "tst_benchplay.moc"

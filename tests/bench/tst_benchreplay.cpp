#include "anydrive.h"
#include "benchprocess.h"

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

namespace
{

/// The log lines that an event of "play --json --log" tells of, with their time.
void collectLog(const QJsonObject &event, QByteArray &log)
{
    constexpr double second = 1000;
    if (event.value(QLatin1String("event")) == QLatin1String("log")) {
        const double time = event.value(QLatin1String("time")).toDouble() / second;
        log += '[' + QByteArray::number(time, 'f', 3).rightJustified(12) + "] " + event.value(QLatin1String("text")).toString().toUtf8() + '\n';
    }
    const QJsonArray caused = event.value(QLatin1String("caused")).toArray();
    for (const QJsonValue &one : caused)
        collectLog(one.toObject(), log);
}

/// The log of a unit whose timers run so many ms late.
QByteArray withLateTimers(const QByteArray &log, int late)
{
    constexpr const char *timers[] = {"_delaysetVolume", "_handleNotComeCpAlte", "_delayCpTruelyUnduck", "onFirstSetEqType"};
    constexpr double second = 1000;
    constexpr int width = 14; // of "[    1.000]"
    double lateTime = -1;
    QVector<QPair<double, QByteArray>> timed;
    const QByteArrayList lines = log.split('\n');
    for (const QByteArray &line : lines) {
        if (line.isEmpty())
            continue;
        const double time = line.mid(1, width - 2).toDouble();
        if (std::any_of(std::begin(timers), std::end(timers), [&line](const char *timer) { return line.contains(timer); }))
            lateTime = time;
        timed.append({time == lateTime ? time + late / second : time, line.mid(width)});
    }
    std::stable_sort(timed.begin(), timed.end(), [](const auto &one, const auto &other) { return one.first < other.first; });
    QByteArray result;
    for (const auto &[time, text] : qAsConst(timed))
        result += '[' + QByteArray::number(time, 'f', 3).rightJustified(width - 2) + "]" + text + '\n';
    return result;
}

QByteArray withoutTimes(const QByteArray &log)
{
    constexpr int width = 15; // of "[    1.000] "
    QByteArray result;
    const QByteArrayList lines = log.split('\n');
    for (const QByteArray &line : lines)
        result += line.mid(width) + '\n';
    return result;
}

/// As the system's log has lines of a process, from this second of a day on.
QByteArray ofProcess(const QByteArray &log, int process, int begin)
{
    constexpr int width = 14;
    QByteArray result;
    const QByteArrayList lines = log.split('\n');
    for (const QByteArray &line : lines) {
        if (line.isEmpty())
            continue;
        constexpr double second = 1000;
        const auto milliseconds = int((line.mid(1, width - 2).toDouble() + begin) * second + 0.5);
        result += QTime::fromMSecsSinceStartOfDay(milliseconds).toString(QStringLiteral("'2026-11-22T'hh:mm:ss.zzz")).toLatin1() + " unit player["
            + QByteArray::number(process) + "]: " + line.mid(width) + '\n';
    }
    return result;
}

} // namespace

class BenchReplayTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aReplayIsCompared_data();
    void aReplayIsCompared();
    void aReplaysLogIsKept_data();
    void aReplaysLogIsKept();
    void anyDriveIsReplayed_data();
    void anyDriveIsReplayed();
    void aScenarioIsWrittenAndPlays();
    void aScenarioReadsWell();
    void theStandardOutputIsAFile();
    void nothingIsLeftOfAFailure_data();
    void nothingIsLeftOfAFailure();
    void mistakesAreSaid_data();
    void mistakesAreSaid();

private:
    QByteArray play(const QByteArray &scenario, const QStringList &options = {}) const;
    QString write(const char *name, const QByteArray &text) const;

    QTemporaryDir m_folder;
    QByteArray m_commute; // scenario
    QByteArray m_log; // of it
};

QString BenchReplayTest::write(const char *name, const QByteArray &text) const
{
    QFile file(m_folder.filePath(QLatin1String(name)));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("no file can be written");
    return file.fileName();
}

/// The log of a unit that did this.
QByteArray BenchReplayTest::play(const QByteArray &scenario, const QStringList &options) const
{
    const BenchProcess bench(QStringList{QStringLiteral("play"), QStringLiteral("--json"), QStringLiteral("--log"), write("scenario.js", scenario)} + options);
    QByteArray log;
    const QStringList lines = program::lines(bench.output);
    for (const QString &line : lines)
        collectLog(QJsonDocument::fromJson(line.toUtf8()).object(), log);
    return log;
}

void BenchReplayTest::initTestCase()
{
    if (!BenchProcess::canSupervise())
        QSKIP("no process that plays can be started here");
    QFile file(QStringLiteral(SCENARIOS "/commute.js"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    m_commute = file.readAll();
    m_log = play(m_commute);
    QVERIFY(m_log.count('\n') > 500);
}

void BenchReplayTest::aReplayIsCompared_data()
{
    QTest::addColumn<QByteArray>("log");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("said");

    const auto row = [](const char *name, const QByteArray &log, int status, const char *said, const QStringList &options = {}) {
        QTest::newRow(name) << log << options << status << QString::fromLatin1(said);
    };
    row("the same", m_log, 0, "no difference in [0-9]+ calls\n");
    row("refused by the platform",
        play("Platform.failOnce('Volume.setTrackVolume', 7, 45);" + m_commute),
        1,
        "The first difference is call [0-9]+ of [0-9]+, line [0-9]+, 0\\.000 s, of AudioPolicy\\.setVolume\\(Media, 12, true\\):\n"
        "  on the unit  Volume\\.setTrackVolume\\(\"main\", \"S\\+[A-Za-z]+\", [0-9]+\\) -> 7\n"
        "  replayed     Volume\\.setTrackVolume\\(\"main\", \"S\\+[A-Za-z]+\", [0-9]+\\) -> 0\n"
        "Likely cause: refused by the unit's platform with 7\n");
    row("refused from the start",
        play("Platform.fail('Volume.setTrackVolume', 7);" + m_commute),
        1,
        "The first difference is call [0-9]+ of [0-9]+, line [0-9]+, 0\\.000 s, of the audio manager starts:\n"
        "  on the unit  Volume\\.setTrackVolume\\(.*\\) -> 7\n"
        "  replayed     Volume\\.setTrackVolume\\(.*\\) -> 0\n"
        "Likely cause: refused by the unit's platform with 7\n");
    row("another stored volume",
        m_log,
        1,
        "The first difference is call [0-9]+ .*\n"
        "  on the unit  Volume\\.setTrackVolume\\(.*, (80|120)\\) -> 0\n"
        "  replayed     Volume\\.setTrackVolume\\(.*, (20|30)\\) -> 0\n"
        "Likely cause: another stored volume than the log tells of, or than --settings gave\n",
        {QStringLiteral("--settings"), write("unit.ini", "[Volume]\n0=5\n")});
    const QStringList storing{QStringLiteral("--flash"), m_folder.filePath(QStringLiteral("stored"))};
    play("powerOn(); [3, 4, 5, 6, 7].forEach((volume, type) => AudioPolicy.setVolume(type, volume, true)); AudioPolicy.setMicInputValue(33);"
         "AudioPolicy.setMicLeftRightSwitch(false); AudioPolicy.setMicAnalogGain(21, 21); AudioPolicy.setHandsfreeDelay(80);"
         "AudioPolicy.adjustCustomEq(3, 4); AudioPolicy.adjustCustomEq(-2, 5);",
         storing);
    row("what was stored before",
        play("powerOn(); AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer); wait(3000); AudioPolicy.updateCurrentAudioVolume(true);", storing),
        0,
        "no difference in [0-9]+ calls\n");
    row("it begins in the middle",
        m_log.mid(m_log.lastIndexOf('\n', m_log.indexOf("updateCurrentAudioVolume")) + 1),
        1,
        "The first difference is call 1 of [0-9]+, line [0-9]+, .*, of AudioPolicy\\.updateCurrentAudioVolume\\(true\\):\n"
        "  on the unit  Volume\\.setTrackVolume\\(.*, 52\\) -> 0\n"
        "  replayed     Volume\\.setTrackVolume\\(.*, 84\\) -> 0\n"
        "Likely cause: another stored volume than the log tells of, or than --settings gave\n"
        "The log does not have the audio's start; what was set before it, and stored but for --settings, is not known\n");
    QByteArray otherRelease = m_log;
    const int ducking = otherRelease.indexOf("setMainAudioDunkingMode 60");
    QVERIFY(ducking > 0);
    otherRelease.replace(ducking, int(qstrlen("setMainAudioDunkingMode 60")), "setMainAudioDunkingMode 55");
    row("another release",
        otherRelease,
        1,
        "The first difference is .*\n"
        "  on the unit  Volume\\.setDuckingTargetGain\\(55\\) -> 0\n"
        "  replayed     Volume\\.setDuckingTargetGain\\(60\\) -> 0\n"
        "Likely cause: another release of the library, or a call before it that left no line\n");
    QByteArray withoutCall = m_log;
    const int alternative = withoutCall.indexOf("set alter volume");
    const int begin = withoutCall.lastIndexOf('\n', alternative);
    row("a call less",
        withoutCall.remove(begin, withoutCall.indexOf('\n', alternative) - begin),
        1,
        "The first difference is call [0-9]+ of [0-9]+, before line [0-9]+:\n"
        "  on the unit  no such call\n"
        "  replayed     Volume\\.setAlterTrackVolume\\(120\\) -> 0\n"
        "Likely cause: another release of the library, or a call before it that left no line\n");
    QByteArray withCall = m_log;
    const int delayed = withCall.lastIndexOf('\n', withCall.indexOf("-- \"S+none_APP\" 1 "));
    const int next = withCall.lastIndexOf('\n', withCall.indexOf("-- \"BT_AUDIO_Track\" 2 "));
    row("a call more",
        withCall.insert(next, withCall.mid(delayed, next - delayed)),
        1,
        "The first difference is call [0-9]+ of [0-9]+, line [0-9]+, 0\\.500 s, of a timer: write pending volumes again:\n"
        "  on the unit  Volume\\.setTrackVolume\\(.*\\) -> 0\n"
        "  replayed     no such call\n"
        "Likely cause: another release of the library, or a call before it that left no line\n");
    QByteArray twoThreads = ofProcess(otherRelease, 812, 0);
    const int other = twoThreads.indexOf("ZelAudioManager::setVolume");
    const int thread = twoThreads.lastIndexOf("[DBG] ", other) + int(qstrlen("[DBG] "));
    row("two threads",
        twoThreads.replace(thread, twoThreads.indexOf(' ', thread) - thread, "99"),
        1,
        "The first difference is .*\nLikely cause: calls by two threads: the audio manager is made for one\n");

    const QStringList flash{QStringLiteral("--flash"), m_folder.filePath(QStringLiteral("flash"))};
    const QByteArray first = play(m_commute, flash);
    const QByteArray second = play(m_commute, flash);
    constexpr int oneHour = 3600;
    row("a process behind another", ofProcess(first, 812, 0) + ofProcess(second, 813, oneHour), 0, "no difference in [0-9]+ calls\n");
    row("two at a time",
        ofProcess(first, 812, 0) + ofProcess(second.mid(0, second.indexOf("ZelAudioManager::setVolume")), 813, oneHour)
            + ofProcess(first.mid(first.lastIndexOf('\n', first.lastIndexOf("onRecvBackCar"))), 812, oneHour),
        0,
        "no difference in [0-9]+ calls; [0-9]+ requests of other processes or threads left out\n");
    for (const int late : {7, -20, 900})
        row(qPrintable(QStringLiteral("timers %1 ms late").arg(late)), withLateTimers(m_log, late), 0, "no difference in [0-9]+ calls\n");
    row("no times", withoutTimes(m_log), 0, "no difference in [0-9]+ calls\n");
}

void BenchReplayTest::aReplayIsCompared()
{
    QFETCH(const QByteArray, log);
    QFETCH(const QStringList, options);
    QFETCH(const int, status);
    QFETCH(const QString, said);
    const BenchProcess bench(QStringList{QStringLiteral("explain"), QStringLiteral("--replay"), write("unit.log", log)} + options);
    QCOMPARE(bench.errors, QString());
    const QRegularExpression pattern(QRegularExpression::anchoredPattern(said), QRegularExpression::DotMatchesEverythingOption);
    QVERIFY2(pattern.match(bench.output).hasMatch(), qPrintable(bench.output));
    QCOMPARE(bench.exitCode, status);
}

void BenchReplayTest::aReplaysLogIsKept_data()
{
    QTest::addColumn<QByteArray>("log");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("untold");
    QTest::newRow("a drive") << m_log << 0 << QString();
    QTest::newRow("it goes on behind a difference") << play("Platform.failOnce('Volume.setTrackVolume', 7, 45);" + m_commute) << 1 << QString();
    QTest::newRow("it begins in the middle") << m_log.mid(m_log.lastIndexOf('\n', m_log.indexOf("updateCurrentAudioVolume")) + 1) << 1
                                             << QStringLiteral("channel");
    const QStringList flash{QStringLiteral("--flash"), m_folder.filePath(QStringLiteral("kept"))};
    const QByteArray first = play("Platform.failOnce('Volume.setTrackVolume', 7, 45);" + m_commute, flash);
    constexpr int oneHour = 3600;
    QTest::newRow("two processes") << ofProcess(first, 812, 0) + ofProcess(play(m_commute, flash), 813, oneHour) << 1 << QString();
}

/// What held when is the same as in the log, to the millisecond.
void BenchReplayTest::aReplaysLogIsKept()
{
    QFETCH(const QByteArray, log);
    QFETCH(const int, status);
    QFETCH(const QString, untold);
    const QString unit = write("unit.log", log);
    const QString kept = write("kept.log", "what was there before");
    const BenchProcess bench({QStringLiteral("explain"), QStringLiteral("--replay"), QStringLiteral("--log-to"), kept, unit});
    QCOMPARE(bench.errors, QString());
    QCOMPARE(bench.exitCode, status);
    const auto lanesOf = [&untold](const QString &file) {
        const BenchProcess plot({QStringLiteral("plot"), QStringLiteral("timeline"), QStringLiteral("--squeeze=0"), QStringLiteral("--json"), file});
        QStringList texts;
        const QJsonArray panels = QJsonDocument::fromJson(plot.output.toUtf8()).object().value(QLatin1String("panels")).toArray();
        const QJsonArray lanes = panels.at(0).toObject().value(QLatin1String("lanes")).toArray();
        for (const QJsonValue &lane : lanes) {
            const QString name = lane.toObject().value(QLatin1String("name")).toString();
            if (name != QLatin1String("part") && name != untold)
                texts.append(QString::fromUtf8(QJsonDocument(lane.toObject()).toJson(QJsonDocument::Compact)));
        }
        return texts.join(QLatin1Char('\n'));
    };
    const QString lanes = lanesOf(unit);
    QVERIFY2(lanes.contains(QStringLiteral("CarPlayDuck")), qPrintable(lanes));
    QVERIFY2(lanesOf(kept) == lanes, qPrintable(lanesOf(kept) + QLatin1Char('\n') + lanes));
}

void BenchReplayTest::anyDriveIsReplayed_data()
{
    QTest::addColumn<uint>("seed");
    for (uint seed = 2001; seed <= 2010; ++seed)
        QTest::addRow("%u", seed) << seed;
}

/// The refusals that a random drive orders are differences; without them there is none.
void BenchReplayTest::anyDriveIsReplayed()
{
    QFETCH(const uint, seed);
    constexpr int length = 120;
    QByteArray drive;
    const QByteArrayList requests = anyDrive(seed, length).split('\n');
    for (const QByteArray &request : requests) {
        if (!request.startsWith("Platform.failOnce"))
            drive += request + '\n';
    }
    const BenchProcess bench({QStringLiteral("explain"), QStringLiteral("--replay"), write("drive.log", play(drive))});
    QVERIFY2(bench.output.startsWith(QLatin1String("no difference in ")), qPrintable(bench.output + QString::fromLatin1(drive)));
    QCOMPARE(bench.exitCode, 0);
}

void BenchReplayTest::aScenarioIsWrittenAndPlays()
{
    const QString log = write("unit.log", play("Platform.failOnce('Volume.muteTrack', 5, 1);" + m_commute + "AudioPolicy.setAudioMute(true, 3); wait(1000);"));
    const QString scenario = write("drive.js", "what was there before");
    const BenchProcess written({QStringLiteral("explain"), QStringLiteral("--scenario"), scenario, log});
    QCOMPARE(written.errors, QString());
    QCOMPARE(written.exitCode, 0);
    QVERIFY2(QRegularExpression(QStringLiteral("^.*/drive\\.js: [0-9]+ requests and timers in [0-9:.]+\n$")).match(written.output).hasMatch(),
             qPrintable(written.output));
    QFile file(scenario);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().contains("AudioPolicy.setAudioMute(true, 3);\n"));
    const BenchProcess played({QStringLiteral("play"), QStringLiteral("--brief"), QStringLiteral("--strict"), scenario});
    QVERIFY2(played.exitCode == 0, qPrintable(played.output));
}

void BenchReplayTest::aScenarioReadsWell()
{
    const BenchProcess bench({QStringLiteral("explain"), QStringLiteral("--scenario"), QStringLiteral("-"), write("unit.log", m_log)});
    QCOMPARE(bench.exitCode, 0);
    const QStringList parts{
        QStringLiteral("// What a unit did, from its log "),
        QStringLiteral("say(\"The audio starts, "),
        QStringLiteral("powerOn();\n"),
        QStringLiteral("AudioPolicy.setVolume(AudioPolicy.Media, 12, true);\n"),
        QStringLiteral("wait(500); // 0.500 s: write pending volumes again\n"),
        QStringLiteral("AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);\nexpect(Platform.outputSource(\"main\")).toBe(\"S+FilePlayer\");\n"),
        QStringLiteral("AudioPolicy.updateAudioStatus(AudioPolicy.StatusBtTelephony);\nexpect(Platform.trackVolume(\"main\", \"S+BtPcmPhone\")).toBe(108);\n"),
        QStringLiteral("Platform.setReverseGear(true);\nexpect(Platform.duckingMode()).toBe(1);\n"),
        QStringLiteral("Platform.setReverseGear(false);\nwait(500); // "),
    };
    int from = 0;
    for (const QString &part : parts) {
        const int found = bench.output.indexOf(part, from);
        QVERIFY2(found >= 0, qPrintable(part + QStringLiteral(" is not in\n") + bench.output.mid(from)));
        from = found;
    }
}

void BenchReplayTest::theStandardOutputIsAFile()
{
    const QString log = write("unit.log", m_log);
    const QString scenario = m_folder.filePath(QStringLiteral("out.js"));
    const BenchProcess toFile({QStringLiteral("explain"), log, QStringLiteral("--scenario"), scenario});
    const BenchProcess toOutput({QStringLiteral("explain"), log, QStringLiteral("--scenario=-")});
    QFile file(scenario);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(toOutput.output, QString::fromUtf8(file.readAll()));
}

void BenchReplayTest::nothingIsLeftOfAFailure_data()
{
    QTest::addColumn<QByteArray>("log");
    QTest::addColumn<QString>("scenario");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("said");
    QTest::newRow("nothing in it") << QByteArray("no line\n") << m_folder.filePath(QStringLiteral("none.js")) << 3
                                   << QStringLiteral("no line of the audio library");
    QTest::newRow("no such folder") << m_log << m_folder.filePath(QStringLiteral("no/such.js")) << 2 << QStringLiteral("no/such.js: No such file or directory");
    QTest::newRow("a full disk") << m_log << QStringLiteral("/dev/full") << 2 << QStringLiteral("/dev/full: No space left on device");
}

void BenchReplayTest::nothingIsLeftOfAFailure()
{
    QFETCH(const QByteArray, log);
    QFETCH(const QString, scenario);
    QFETCH(const int, status);
    QFETCH(const QString, said);
    const BenchProcess bench({QStringLiteral("explain"), write("unit.log", log), QStringLiteral("--scenario"), scenario});
    QCOMPARE(bench.exitCode, status);
    QVERIFY2(bench.errors.contains(said), qPrintable(bench.errors));
    QCOMPARE(program::lines(bench.errors).size(), 1);
    QCOMPARE(bench.output, QString());
    QVERIFY(!QFileInfo(scenario).isFile());
}

void BenchReplayTest::mistakesAreSaid_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("said");
    const QString log = write("unit.log", m_log);
    const auto row = [](const QStringList &options, const char *said) { QTest::newRow(said) << options << QString::fromLatin1(said); };
    row({QStringLiteral("--replay"), QStringLiteral("--scenario=-"), log}, "--scenario and --replay do not go together");
    row({QStringLiteral("--scenario="), log}, "--scenario needs a name");
    row({QStringLiteral("--replay"), QStringLiteral("--json"), log}, "--json does not go with --replay");
    row({QStringLiteral("--scenario=-"), QStringLiteral("--follow"), log}, "--follow does not go with --scenario");
    row({QStringLiteral("--settings=/no/such.ini"), log}, "--settings goes with a question, --why and its like, --scenario or --replay");
    row({QStringLiteral("--replay"), QStringLiteral("--settings=/no/such.ini"), log}, "there is no file /no/such.ini");
    row({QStringLiteral("--replay"), QStringLiteral("--settings=/"), log}, "/ is a folder, not a settings file");
    row({QStringLiteral("--scenario"), log, log}, "this is the log itself");
    row({QStringLiteral("--log-to"), write("kept.log", {}), log}, "--log-to goes with --replay");
    row({QStringLiteral("--replay"), QStringLiteral("--log-to="), log}, "--log-to needs a name");
    row({QStringLiteral("--replay"), QStringLiteral("--log-to=/no/such.log"), log}, "No such file or directory");
    QTest::newRow("--replay --log-to the log") << QStringList{QStringLiteral("--replay"), QStringLiteral("--log-to"), log, log}
                                               << QStringLiteral("this is the log itself");
}

void BenchReplayTest::mistakesAreSaid()
{
    QFETCH(const QStringList, options);
    QFETCH(const QString, said);
    const BenchProcess bench(QStringList(QStringLiteral("explain")) + options);
    QCOMPARE(bench.exitCode, 2);
    QVERIFY2(bench.errors.contains(said), qPrintable(bench.errors));
    QCOMPARE(bench.output, QString());
}

QTEST_GUILESS_MAIN(BenchReplayTest)
#include "tst_benchreplay.moc"

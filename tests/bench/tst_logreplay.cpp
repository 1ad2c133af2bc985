#include "anydrive.h"

#include <explain/logreplay.h>
#include <explain/logstory.h>
#include <explain/scenariowriter.h>
#include <scenarioplayer.h>
#include <timeline.h>

#include <settingsfile.h>

#include "platform.h"
#include "virtualclock.h"

#include <program.h>

#include <QtCore/QDataStream>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QLoggingCategory>
#include <QtCore/QRandomGenerator>
#include <QtCore/QTemporaryDir>
#include <QtQml/QJSEngine>
#include <QtTest/QtTest>

#include <sys/wait.h>
#include <unistd.h>

using simulator::JournalEntry;
using simulator::Platform;

namespace
{

/// What no call looks like.
constexpr char nothing[] = "^$";

constexpr int driveCount = 200;
/// Of drives, and of damaged logs, in an emulator, which takes seconds for each.
constexpr int emulatedCount = 4;

struct Happening
{
    qint64 time = 0;
    QString text;
};

QDataStream &operator<<(QDataStream &stream, const Happening &one)
{
    return stream << one.time << one.text;
}

QDataStream &operator>>(QDataStream &stream, Happening &one)
{
    return stream >> one.time >> one.text;
}

/// What came of a scenario.
struct Played
{
    QVector<Happening> calls;
    QVector<Happening> log;
    QStringList failures;
};

Played *recorded = nullptr;

void recordLine(QtMsgType /*type*/, const QMessageLogContext &context, const QString &message)
{
    if (qstrcmp(context.category, "default") == 0)
        recorded->log.append({Platform::instance()->now(), message});
}

/// Plays it in this process, which is as new. @param forgetsCleared also what the scenario clears from the journal
Played play(const QString &program, bool forgetsCleared)
{
    Played played;
    recorded = &played;
    qInstallMessageHandler(recordLine);
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, true);
    simulator::Journal *const journal = Platform::instance()->journal();
    QObject::connect(journal, &simulator::Journal::appended, journal, [](const JournalEntry &entry) {
        if (!entry.isCreate() && !entry.isDestroy())
            recorded->calls.append({entry.time, entry.call()});
    });
    if (forgetsCleared)
        QObject::connect(journal, &simulator::Journal::cleared, journal, [] { recorded->calls.clear(); });
    Timeline timeline;
    const ScenarioResult result = ScenarioPlayer(timeline).play(QStringLiteral("scenario.js"), program);
    for (const ScenarioResult::Check &check : result.checks) {
        if (!check.passed)
            played.failures.append(QStringLiteral("line %1: %2: %3").arg(check.line).arg(check.text, check.cause));
    }
    if (!result.error.isEmpty())
        played.failures.append(QStringLiteral("line %1: %2").arg(result.errorLine).arg(result.error));
    return played;
}

/// The log as a unit has it whose clock says seconds since its start.
QByteArray logText(const Played &played)
{
    QByteArray text;
    constexpr double second = 1000;
    for (const Happening &line : played.log)
        text += '[' + QByteArray::number(double(line.time) / second, 'f', 3).rightJustified(12) + "] " + line.text.toUtf8() + '\n';
    return text;
}

void tell(const QByteArray &log, LogStoryListener &listener)
{
    LogFrames frames;
    LogClock clock;
    LogStory story(frames, clock, listener);
    quint64 number = 0;
    const QByteArrayList lines = log.split('\n');
    for (const QByteArray &line : lines)
        story.add({line.constData(), std::size_t(line.size())}, ++number, false);
    story.finish();
}

QString scenarioOf(const QByteArray &log)
{
    QByteArray text;
    ScenarioWriter writer([&text](const QByteArray &part) { text += part; }, ScenarioWriter::Purpose::Reading, QStringLiteral("unit.log"));
    tell(log, writer);
    writer.finish();
    return QString::fromUtf8(text);
}

/// @param leftOut receives those that the pattern finds
QStringList textsOf(const QVector<Happening> &calls, qint64 begin, const QRegularExpression &unsaid, int *leftOut = nullptr)
{
    QStringList texts;
    for (const Happening &call : calls) {
        if (!unsaid.match(call.text).hasMatch())
            texts.append(QStringLiteral("%1 %2").arg(call.time - begin).arg(call.text));
        else if (leftOut)
            ++*leftOut;
    }
    return texts;
}

/// Where two lists differ first, with what comes before; empty where they do not.
QString difference(const QStringList &replayed, const QStringList &played)
{
    const int shorter = qMin(replayed.size(), played.size());
    int index = 0;
    while (index < shorter && replayed.at(index) == played.at(index))
        ++index;
    if (index == replayed.size() && index == played.size())
        return {};
    return QStringLiteral("call %1 of %2: played %3, replayed %4, both behind %5")
        .arg(index)
        .arg(played.size())
        .arg(played.value(index), replayed.value(index), played.value(index - 1));
}

} // namespace

class LogReplayTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aBundledScenarioComesBack_data();
    void aBundledScenarioComesBack();
    void aTrickyDriveComesBack_data();
    void aTrickyDriveComesBack();
    void anyDriveComesBack_data();
    void anyDriveComesBack();
    void aDamagedLogGivesAScenario();
    void aStepBeyondAllRangesIsWritten();
    void cleanupTestCase();

private:
    Played playApart(const QString &program, bool forgetsCleared = false) const;
    void compare(const Played &played, const QRegularExpression &unsaid, int *leftOut) const;

    QTemporaryDir m_folder;
    int m_drives = 0; // that were compared
    int m_leftOut = 0; // calls of theirs
};

/// In a process that is as this one is now: the library keeps some things as long as a process.
Played LogReplayTest::playApart(const QString &program, bool forgetsCleared) const
{
    const QDir flash(QFileInfo(SettingsFile::path()).path());
    const QStringList left = flash.entryList(QDir::Files | QDir::Hidden);
    for (const QString &file : left)
        QFile::remove(flash.filePath(file));
    const QString name = m_folder.filePath(QStringLiteral("played"));
    const pid_t child = fork();
    if (child == 0) {
        const Played played = play(program, forgetsCleared);
        QFile file(name);
        QDataStream stream(&file);
        const bool isWritten = file.open(QIODevice::WriteOnly);
        stream << played.calls << played.log << played.failures;
        file.close();
        _exit(isWritten ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    Played played;
    QFile file(name);
    if (status != 0 || !file.open(QIODevice::ReadOnly)) {
        played.failures.append(QStringLiteral("the process ended with %1").arg(status));
        return played;
    }
    QDataStream stream(&file);
    stream >> played.calls >> played.log >> played.failures;
    return played;
}

void LogReplayTest::aBundledScenarioComesBack_data()
{
    QTest::addColumn<QString>("unsaid"); // calls that, or whose arguments, the log does not tell
    QTest::addColumn<int>("leftOut"); // so many of them

    QMap<QString, QPair<QString, int>> unsaid;
    // Of the facade's own calls the log has neither gains nor switches, nor the direction of a step that was refused.
    unsaid.insert(QStringLiteral("tuning.js"), {QStringLiteral("^App\\.(setDpsUserGain|setEqParameter|setExtEqParameter|setFilter|setSpeakerDelay)\\("), 14});
    unsaid.insert(QStringLiteral("steps.js"), {QStringLiteral("^Source\\.getActiveSource|hicar_voice_callmodemspeaker10|-> 7$"), 26});
    const QDir scenarios(QStringLiteral(SCENARIOS));
    const QStringList files = scenarios.entryList({QStringLiteral("*.js")});
    for (const QString &file : files) {
        const auto left = unsaid.value(file, {QString::fromLatin1(nothing), 0});
        QTest::newRow(qPrintable(file)) << left.first << left.second;
    }
}

void LogReplayTest::aBundledScenarioComesBack()
{
    QFETCH(const QString, unsaid);
    QFETCH(const int, leftOut);
    QFile source(QStringLiteral(SCENARIOS "/") + QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(source.open(QIODevice::ReadOnly));
    const Played played = playApart(QString::fromUtf8(source.readAll()));
    QCOMPARE(played.failures, QStringList());
    int count = 0;
    compare(played, QRegularExpression(unsaid), &count);
    QCOMPARE(count, leftOut);
}

/// Writes what the log of a unit tells as a scenario, plays that, and compares.
void LogReplayTest::compare(const Played &played, const QRegularExpression &unsaid, int *leftOut) const
{
    const QString scenario = scenarioOf(logText(played));
    const Played replayed = playApart(scenario, true);
    const QString found = difference(textsOf(replayed.calls, 0, unsaid), textsOf(played.calls, played.log.value(0).time, unsaid, leftOut));
    const QString failures = replayed.failures.join(QLatin1Char('\n'));
    QVERIFY2(found.isEmpty(), qPrintable(found + QLatin1Char('\n') + failures));
    QVERIFY2(failures.isEmpty(), qPrintable(failures));
}

void LogReplayTest::aTrickyDriveComesBack_data()
{
    QTest::addColumn<QString>("drive");
    const auto row = [](const char *name, const char *drive) { QTest::newRow(name) << QString::fromLatin1(drive); };
    row("unmuted by hand", "powerOn(); AudioPolicy.setAudioMute(true, 20); wait(313); AudioPolicy.deMute(); wait(87); AudioPolicy.triggerAtt(); wait(5000);");
    row("muted again and again", "powerOn(); for (const time of [13, 50, 249, 250]) { AudioPolicy.setAudioMute(true, 5); wait(time); } AudioPolicy.isAttOn();");
    row("muted while muted, and asked", "powerOn(); AudioPolicy.setMute(true); AudioPolicy.setAudioMute(true, 3); AudioPolicy.isAttOn(); wait(150);");
    row("muted by a negative count", "powerOn(); AudioPolicy.setMute(true); AudioPolicy.setAudioMute(true, -3); AudioPolicy.setAudioMute(true, -1);");
    row("the log ends in a mute", "powerOn(); AudioPolicy.setAudioMute(true, 100); wait(1234); AudioPolicy.setVolume(0, 3, false);");
    row("off in a mute", "powerOn(); AudioPolicy.setAudioMute(true, 100); wait(1234); powerOff(); wait(60000); powerOn(); AudioPolicy.deMute();");
    row("off before a timer",
        "powerOn(); AudioPolicy.setVolume(0, 7, true); wait(100); powerOff(); wait(1000); powerOn(); wait(499); powerOff(); wait(1); powerOn();");
    row("two timers at a time, both refused",
        "powerOn(); wait(1000); AudioPolicy.setVolume(3, 7, true); AudioPolicy.cpUnduckAudio(0); Platform.failOnce('Volume.setTrackVolume', 3, 2);"
        "Platform.failOnce('Volume.setTrackVolume', 4, 3); Platform.failOnce('Volume.setDuckingMode', 5, 1); wait(5000);");
    row("the mute's timer and another at a time", "powerOn(); wait(200); AudioPolicy.setAudioMute(true, 6); wait(5000);");
    row("three timers at a time, two with the same volume",
        "powerOn(); AudioPolicy.updateAudioChannel(AudioPolicy.ChannelBtRingtone); wait(3000); AudioPolicy.setVolume(3, 24, true);"
        "AudioPolicy.setAudioMute(true, 10); AudioPolicy.cpUnduckAudio(0); wait(600);");
    row("restored by hand in a duck that came before the restoring",
        "powerOn(); AudioPolicy.cpDuckAudio(0, 0); wait(100); AudioPolicy.cpUnduckAudio(0); wait(200); AudioPolicy.cpDuckAudio(0, 0); wait(350);"
        "AudioPolicy.updateAudioStatus(AudioPolicy.StatusCarPlayRestore); wait(2000);");
    row("the other home screen", "Platform.setHomeUiType(7); powerOn(); wait(10); powerOff(); Platform.setHomeUiType(0); powerOn();");
    row("names as nobody has them",
        "powerOn(); AudioPolicy.setInputDestination(3, 'a \\\\ b'); AudioControl.setOutputSource('main', '\\u2028'); AudioControl.setOutputSource('x', 'y');");
    row("fractions", "powerOn(); AudioPolicy.setMicAnalogGain(9.75, -0.1); AudioPolicy.setMicAnalogGain(1e9, 3.3); AudioControl.setMicAnalogGain(0.1, 0.2);");
    row("the facade",
        "powerOn(); AudioControl.setOutputFrontSource(0, 'S+FilePlayer_APP', true); AudioControl.setOutputFrontSource(0, 'S+AuxIn_APP', false);"
        "AudioControl.setAuxinChannel(3); AudioControl.getAuxinChannel(); AudioControl.setAuxinChannel(77); AudioControl.setI2SINChannel(1);"
        "AudioControl.setMainAudioDunkingMode(1); AudioControl.setMainAudioDunkingTargetGain(33); AudioControl.setMicroPhoneVolume(55);"
        "AudioControl.setMicroPhoneVolume(99); AudioControl.startMicGainCalibration(); AudioControl.setMicGainCalibration(); wait(5);"
        "AudioControl.setDownlinkDelayEstimation(); AudioControl.getDownlinkDelayEstimation(); AudioControl.setHandsfreeDelay(9);"
        "AudioControl.setAECQuality(2); AudioControl.setAECQuality(9); AudioControl.muteBackEarphone(true); AudioControl.setBackEarphone(true);"
        "AudioControl.getStreamVolume(2, 's+AirPlayMedia_APP'); AudioControl.getMasterVolume(); AudioControl.setMasterVolume(7);"
        "AudioControl.setStreamVolume(9, 'S+AuxIn_APP', 3); AudioControl.setStreamVolume(0, 'no such', 3); AudioControl.changeAlterStepVolume(true, 3);"
        "AudioControl.changeAlterStepVolume(false, 1); AudioPolicy.getMicCalibrationGain(); AudioPolicy.getPlatformMicAnalogGain();");
    row("steps of its own",
        "powerOn(); AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer); AudioControl.setStepRange(40);"
        "AudioControl.initTrackStepVolume(0, {'S+FilePlayer_APP': 39, 'S+AuxIn_APP': 17}); AudioControl.changeMainTrackStepVolume(true);"
        "AudioControl.changeMainTrackStepVolume(true); AudioControl.changeMainTrackStepVolume(false); AudioControl.changeMainTrackStepVolume(false);");
}

void LogReplayTest::aTrickyDriveComesBack()
{
    if (program::isEmulated())
        QSKIP("too many drives for an emulator, which has some of any drives");
    QFETCH(const QString, drive);
    const Played played = playApart(drive);
    QCOMPARE(played.failures, QStringList());
    compare(played, QRegularExpression(QString::fromLatin1(nothing)), nullptr);
}

void LogReplayTest::anyDriveComesBack_data()
{
    QTest::addColumn<uint>("seed");
    const uint count = uint(program::isEmulated() ? emulatedCount : driveCount);
    for (uint seed = 1; seed <= count; ++seed)
        QTest::addRow("%u", seed) << seed;
}

void LogReplayTest::anyDriveComesBack()
{
    QFETCH(const uint, seed);
    constexpr int length = 80;
    constexpr uint firstSeed = 1000; // others than the timeline's test has
    const Played played = playApart(QString::fromLatin1(anyDrive(firstSeed + seed, length)));
    QCOMPARE(played.failures, QStringList());
    QVERIFY(played.calls.size() > length);
    // A step that is at its end leaves no line, but asks what plays.
    compare(played, QRegularExpression(QStringLiteral("^Source\\.getActiveSource\\(")), &m_leftOut);
    ++m_drives;
}

/// Whatever the lines say, what is written is a program.
void LogReplayTest::aDamagedLogGivesAScenario()
{
    constexpr int length = 300;
    constexpr uint seed = 20261122;
    const QByteArray whole = logText(playApart(QString::fromLatin1(anyDrive(seed, length))));
    constexpr const char *pieces[] = {"\"", "\\", "*/", "\xe2\x80\xa8", "(", "-1", "99999999999", "nan", "true", "\r"};
    QRandomGenerator random(seed);
    QJSEngine engine;
    const int rounds = program::isEmulated() ? emulatedCount : 100;
    constexpr int size = 20000;
    constexpr int changes = 200;
    for (int round = 0; round < rounds; ++round) {
        QByteArray log = whole.mid(random.bounded(whole.size() - size), size);
        for (int change = 0; change < changes; ++change) {
            const int at = random.bounded(log.size());
            if (random.bounded(2) == 0)
                log.remove(at, random.bounded(20));
            else
                log.insert(at, pieces[random.bounded(int(std::size(pieces)))]);
        }
        const QString scenario = scenarioOf(log);
        QVERIFY(scenario.count(QLatin1Char('\n')) > 10);
        LogReplay replay(QStringLiteral("unit.log"), std::nullopt);
        tell(log, replay);
        const QJSValue program = engine.evaluate(QStringLiteral("(function(){") + scenario + QStringLiteral("})"));
        QVERIFY2(!program.isError(), qPrintable(program.toString()));
    }
}

/// No range makes it the value; the product with the highest one is more than an int.
void LogReplayTest::aStepBeyondAllRangesIsWritten()
{
    const QString scenario = scenarioOf("[    1.000] [QT] [Audiocontrol] set stream main \"S+AuxIn\" 2112827382 120");
    QVERIFY2(scenario.contains(QLatin1String("{\"S+AuxIn_APP\": 2112827382}")), qPrintable(scenario));
    QVERIFY2(!scenario.contains(QLatin1String("setStepRange")), qPrintable(scenario));
}

void LogReplayTest::cleanupTestCase()
{
    constexpr int counted = 72;
    if (m_drives == driveCount) // not some of them, chosen on the command line
        QCOMPARE(m_leftOut, counted);
}

int main(int argc, char **argv)
{
    simulator::VirtualClock::install();
    const QCoreApplication application(argc, argv);
    LogReplayTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_logreplay.moc"

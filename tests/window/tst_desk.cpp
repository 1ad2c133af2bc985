#include <desk.h>

#include <QtCore/QStandardPaths>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <csignal>
#include <unistd.h>

namespace
{

constexpr const char *crashing = "crash";

} // namespace

/// The desk and its car, which is the real one, in its process.
class DeskTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void startsSwitchedOn();
    void performsAndRecords();
    void timeRuns();
    void stepsToTimer();
    void goesBack();
    void replaysTheFirstChannel();
    void undoesAndRedoes();
    void newStepDropsWhatWasToCome();
    void slipIsNotRecorded();
    void failureWithEffectIsRecorded();
    void saves();
    void playsScenario();
    void takesOver();
    void clientsOfScenarioTakeNoNames();
    void stopsEndlessLoop();
    void slowPlatform();
    void focusStack();
    void losesNothingWithFullDisk();
    void recovers();
    void leavesBehind();
    void crashLeavesBehind();
    void damagedRecording();

private:
    QVariant value(const char *section, const char *key) const { return m_desk->snapshot().value(QLatin1String(section)).toMap().value(QLatin1String(key)); }
    QString write(const QString &name, const QByteArray &text)
    {
        QFile file(m_folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            qFatal("no scenario could be written");
        return file.fileName();
    }

    QTemporaryDir m_folder;
    std::unique_ptr<Desk> m_desk;
};

void DeskTest::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
}

void DeskTest::init()
{
    m_desk = std::make_unique<Desk>();
    m_desk->startAnew();
    m_desk->setSpeed(0);
    QTRY_VERIFY(value("drive", "on").toBool());
    QTRY_COMPARE(m_desk->recording()->doneCount(), 1);
}

void DeskTest::cleanup()
{
    m_desk.reset();
}

void DeskTest::startsSwitchedOn()
{
    QCOMPARE(m_desk->recording()->steps().first().line, QStringLiteral("powerOn();"));
    QCOMPARE(value("drive", "volumes").toList().first().toInt(), 20);
    QVERIFY(!m_desk->journal().isEmpty());
}

void DeskTest::performsAndRecords()
{
    QSignalSpy performed(m_desk.get(), &Desk::performed);
    m_desk->perform(QStringLiteral("AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);"));
    m_desk->perform(QStringLiteral("AudioPolicy.getVolume(0)"));
    QTRY_COMPARE(performed.size(), 2);
    QCOMPARE(performed.at(1).at(1).toString(), QStringLiteral("20"));
    QTRY_COMPARE(value("drive", "channel").toInt(), 3);
    QCOMPARE(m_desk->recording()->doneCount(), 3);
    QVERIFY(m_desk->recording()->isUnsaved());
    QVERIFY(value("drive", "heard").toString().contains(QStringLiteral("file player")));
    QCOMPARE(m_desk->journal().last().toMap().value(QStringLiteral("cause")).toString(), QStringLiteral("AudioPolicy.updateAudioChannel(FilePlayer)"));
}

void DeskTest::timeRuns()
{
    m_desk->setSpeed(10);
    QTRY_VERIFY(m_desk->now() > 1000);
    m_desk->setSpeed(0);
    m_desk->perform(QStringLiteral("now()"));
    QSignalSpy performed(m_desk.get(), &Desk::performed);
    QVERIFY(performed.wait());
    QTRY_COMPARE(m_desk->now(), performed.last().at(1).toDouble());
}

void DeskTest::stepsToTimer()
{
    m_desk->stepToNextTimer(); // what the start wrote is written once more
    QTRY_COMPARE(m_desk->now(), 500.0);
    m_desk->perform(QStringLiteral("AudioPolicy.setAudioMute(true, 4);"));
    QTRY_COMPARE(value("drive", "muteLeft").toInt(), 200);
    QCOMPARE(m_desk->nextTimer(), 700.0);
    m_desk->stepToNextTimer();
    QTRY_COMPARE(m_desk->now(), 700.0);
    QTRY_VERIFY(!value("drive", "muted").toBool());
}

void DeskTest::goesBack()
{
    m_desk->stepToNextTimer();
    QTRY_COMPARE(m_desk->now(), 500.0);
    m_desk->perform(QStringLiteral("AudioPolicy.setVolume(AudioPolicy.Media, 7, true);"));
    QTRY_COMPARE(value("drive", "volumes").toList().first().toInt(), 7);
    m_desk->goTo(300);
    QTRY_VERIFY(!m_desk->isReplaying());
    QTRY_COMPARE(m_desk->now(), 300.0);
    QCOMPARE(value("drive", "volumes").toList().first().toInt(), 20);
    QCOMPARE(m_desk->recording()->count(), 2);
    QCOMPARE(m_desk->recording()->doneCount(), 1);
    // What was to come comes again.
    m_desk->setSpeed(10);
    QTRY_COMPARE(value("drive", "volumes").toList().first().toInt(), 7);
    QCOMPARE(m_desk->recording()->doneCount(), 2);
    QCOMPARE(m_desk->recording()->steps().last().time, qint64(500));
}

void DeskTest::replaysTheFirstChannel()
{
    // Only the first channel in the life of a process sets the equalizer once more after 2000 ms.
    const QString line = QStringLiteral("AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);");
    const auto timers = [this] {
        QStringList purposes;
        const QVariantList running = value("drive", "timers").toList();
        for (const QVariant &timer : running)
            purposes.append(timer.toMap().value(QStringLiteral("purpose")).toString());
        return purposes;
    };
    const QString purpose = QStringLiteral("set the equalizer again after the first channel");
    m_desk->perform(line);
    QTRY_VERIFY(timers().contains(purpose));
    m_desk->goTo(0);
    QTRY_VERIFY(!m_desk->isReplaying());
    QVERIFY(timers().contains(purpose));
}

void DeskTest::undoesAndRedoes()
{
    m_desk->perform(QStringLiteral("AudioPolicy.setVolume(0, 7, true);"));
    m_desk->perform(QStringLiteral("AudioPolicy.setVolume(0, 8, true);"));
    QTRY_COMPARE(m_desk->recording()->doneCount(), 3);
    m_desk->undo();
    QTRY_VERIFY(!m_desk->isReplaying());
    QCOMPARE(value("drive", "volumes").toList().first().toInt(), 7);
    QVERIFY(m_desk->recording()->canRedo());
    m_desk->undo();
    QTRY_VERIFY(!m_desk->isReplaying());
    QCOMPARE(value("drive", "volumes").toList().first().toInt(), 20);
    m_desk->redo();
    m_desk->redo();
    QTRY_COMPARE(value("drive", "volumes").toList().first().toInt(), 8);
    QVERIFY(!m_desk->recording()->canRedo());
}

void DeskTest::newStepDropsWhatWasToCome()
{
    m_desk->perform(QStringLiteral("AudioPolicy.setVolume(0, 7, true);"));
    QTRY_COMPARE(m_desk->recording()->doneCount(), 2);
    m_desk->undo();
    QTRY_VERIFY(!m_desk->isReplaying());
    m_desk->perform(QStringLiteral("AudioPolicy.setVolume(0, 9, true);"));
    QTRY_COMPARE(value("drive", "volumes").toList().first().toInt(), 9);
    QCOMPARE(m_desk->recording()->count(), 2);
    QVERIFY(!m_desk->recording()->canRedo());
}

void DeskTest::slipIsNotRecorded()
{
    m_desk->perform(QStringLiteral("AudioPolicy.setVolum(0, 7, true);"));
    QTRY_VERIFY(m_desk->message().contains(QStringLiteral("AudioPolicy has no function or property setVolum")));
    m_desk->perform(QStringLiteral("if (;"));
    QTRY_VERIFY(m_desk->message().contains(QStringLiteral("SyntaxError")));
    QCOMPARE(m_desk->recording()->count(), 1);
}

void DeskTest::failureWithEffectIsRecorded()
{
    m_desk->perform(QStringLiteral("AudioPolicy.setVolume(0, 7, true); throw new Error(\"too late\");"));
    QTRY_COMPARE(m_desk->recording()->count(), 2);
    m_desk->goTo(0);
    QTRY_VERIFY(!m_desk->isReplaying());
    QCOMPARE(value("drive", "volumes").toList().first().toInt(), 7);
}

void DeskTest::saves()
{
    m_desk->perform(QStringLiteral("AudioPolicy.setVolume(AudioPolicy.Media, 7, true);"));
    m_desk->stepToNextTimer();
    QTRY_COMPARE(m_desk->now(), 500.0);
    m_desk->perform(QStringLiteral("expect(AudioPolicy.getVolume(0)).toBe(7);"));
    QTRY_COMPARE(m_desk->recording()->count(), 3);
    const QString file = m_folder.filePath(QStringLiteral("a drive.js"));
    QVERIFY(m_desk->save(QUrl::fromLocalFile(file)));
    QVERIFY(!m_desk->recording()->isUnsaved());
    QProcess play;
    play.start(QCoreApplication::applicationDirPath() + QStringLiteral("/../bin/qzaudio-bench"),
               {QStringLiteral("play"), QStringLiteral("--in-process"), QStringLiteral("--brief"), file});
    QVERIFY(play.waitForFinished());
    const QByteArray output = play.readAllStandardOutput();
    QVERIFY2(output.contains("1 expectation held in 0.500 s"), output.constData());

    m_desk->startAnew();
    m_desk->open(QUrl::fromLocalFile(file));
    QTRY_VERIFY(!m_desk->isReplaying());
    QCOMPARE(m_desk->recording()->count(), 3);
    QCOMPARE(m_desk->recording()->doneCount(), 0);
    m_desk->goTo(500);
    QTRY_COMPARE(value("drive", "volumes").toList().value(0).toInt(), 7);
}

void DeskTest::playsScenario()
{
    m_desk->openBundled(QStringLiteral("power-cycle"));
    QCOMPARE(m_desk->scenario(), QStringLiteral("power-cycle"));
    m_desk->setSpeed(10);
    QTRY_COMPARE(m_desk->scenario(), QString());
    QCOMPARE(m_desk->message(), QString());
    QVERIFY(m_desk->recording()->count() > 10);
    QVERIFY(!m_desk->recording()->isUnsaved());
    QVERIFY(m_desk->now() >= 500);
}

void DeskTest::takesOver()
{
    const QString file = write(QStringLiteral("drive.js"),
                               "powerOn();\nAudioPolicy.updateAudioStatus(AudioPolicy.StatusBtRing);\n"
                               "const music = new AudioFocus({clientId: \"music\"});\nmusic.request();\nwait(100000);\nAudioPolicy.setMute(true);\n");
    m_desk->open(QUrl::fromLocalFile(file));
    QTRY_COMPARE(value("drive", "status").toInt(), 1);
    m_desk->perform(QStringLiteral("AudioPolicy.setMute(true);"));
    QVERIFY(m_desk->message().contains(QStringLiteral("take over first")));
    m_desk->goTo(60000);
    QTRY_VERIFY(!m_desk->isReplaying());
    QTRY_COMPARE(m_desk->now(), 60000.0);
    QCOMPARE(m_desk->scenario(), QStringLiteral("drive"));
    m_desk->takeOver();
    QTRY_COMPARE(m_desk->scenario(), QString());
    QStringList lines;
    for (const Recording::Step &step : m_desk->recording()->steps())
        lines.append(step.line);
    QCOMPARE(lines,
             QStringList({QStringLiteral("powerOn();"),
                          QStringLiteral("AudioPolicy.updateAudioStatus(AudioPolicy.StatusBtRing);"),
                          QStringLiteral("var music = new AudioFocus({clientId: \"music\", streamType: 3, durationHint: 1});"),
                          QStringLiteral("music.request();")}));
    m_desk->perform(QStringLiteral("AudioPolicy.updateAudioStatus(AudioPolicy.StatusNone);"));
    QTRY_COMPARE(value("drive", "status").toInt(), 0);
    QCOMPARE(m_desk->recording()->steps().last().time, qint64(60000));
    m_desk->undo();
    QTRY_VERIFY(!m_desk->isReplaying());
    QTRY_COMPARE(m_desk->now(), 60000.0);
    QCOMPARE(value("drive", "status").toInt(), 1);
}

/// The recording calls them otherwise: its further lines need the words of the language, and what scenarios find.
void DeskTest::clientsOfScenarioTakeNoNames()
{
    m_desk->open(QUrl::fromLocalFile(write(QStringLiteral("names.js"),
                                           "[\"powerOn\", \"class\", \"music\"].forEach(name => new AudioFocus({clientId: name}).request());\n"
                                           "powerOn();\n")));
    QTRY_COMPARE(m_desk->scenario(), QString());
    QStringList lines;
    for (const Recording::Step &step : m_desk->recording()->steps())
        lines.append(step.line);
    QCOMPARE(lines.filter(QStringLiteral(".request")),
             QStringList({QStringLiteral("powerOn2.request();"), QStringLiteral("class2.request();"), QStringLiteral("music.request();")}));
    m_desk->goTo(0);
    QTRY_VERIFY(!m_desk->isReplaying());
    QTRY_COMPARE(m_desk->recording()->doneCount(), lines.size());
    QCOMPARE(m_desk->message(), QString());
}

void DeskTest::stopsEndlessLoop()
{
    m_desk->open(QUrl::fromLocalFile(write(QStringLiteral("endless.js"), "powerOn();\nwhile (true) {}\n")));
    QTRY_COMPARE(m_desk->recording()->count(), 1);
    m_desk->takeOver();
    QTRY_COMPARE(m_desk->scenario(), QString());
    m_desk->perform(QStringLiteral("AudioPolicy.setMute(true);"));
    QTRY_VERIFY(value("drive", "muted").toBool());
}

void DeskTest::slowPlatform()
{
    m_desk->perform(QStringLiteral("Platform.setCallDuration(500);"));
    m_desk->perform(QStringLiteral("AudioPolicy.setVolume(AudioPolicy.Telephony, 3, true);"));
    QTRY_COMPARE(m_desk->recording()->doneCount(), 3);
    QTRY_VERIFY(m_desk->now() >= 500);
    const double then = m_desk->now();
    m_desk->perform(QStringLiteral("AudioPolicy.setVolume(AudioPolicy.Telephony, 4, true);"));
    m_desk->goTo(then);
    QTRY_VERIFY(!m_desk->isReplaying());
    QTRY_COMPARE(m_desk->now(), then);
}

void DeskTest::focusStack()
{
    m_desk->perform(QStringLiteral("var music = new AudioFocus({clientId: \"music\", durationHint: AudioFocus.Gain});"));
    m_desk->perform(QStringLiteral("var prompt = new AudioFocus({clientId: \"navigation\", durationHint: AudioFocus.GainTransientMayDuck});"));
    m_desk->perform(QStringLiteral("music.request();"));
    m_desk->perform(QStringLiteral("prompt.request();"));
    QTRY_COMPARE(value("focus", "stack").toList().size(), 2);
    const QVariantMap bottom = value("focus", "stack").toList().first().toMap();
    QCOMPARE(bottom.value(QStringLiteral("clientId")).toString(), QStringLiteral("music"));
    QCOMPARE(bottom.value(QStringLiteral("loss")).toInt(), -3);
    const QVariantMap client = value("focus", "clients").toList().first().toMap();
    QCOMPARE(client.value(QStringLiteral("variable")).toString(), QStringLiteral("music"));
    QCOMPARE(client.value(QStringLiteral("changes")).toList(), QVariantList({-3}));
    QVERIFY(!client.value(QStringLiteral("held")).toBool());
}

void DeskTest::losesNothingWithFullDisk()
{
    m_desk->perform(QStringLiteral("AudioPolicy.setMute(true);"));
    QTRY_COMPARE(m_desk->recording()->count(), 2);
    QVERIFY(!m_desk->save(QUrl::fromLocalFile(QStringLiteral("/dev/full"))));
    QVERIFY2(m_desk->message().contains(QStringLiteral("/dev/full cannot be saved")), qUtf8Printable(m_desk->message()));
    QVERIFY(m_desk->recording()->isUnsaved());
    QCOMPARE(m_desk->recording()->count(), 2);
}

void DeskTest::recovers()
{
    // A window that crashes: its lock stays with the number of a process that there is none of.
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) + QStringLiteral("/unsaved");
    QVERIFY(QDir().mkpath(folder));
    QFile file(folder + QStringLiteral("/gone.js"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("// A drive recorded with qzaudio-desk.\n\npowerOn();\nwait(100);\nAudioPolicy.setMute(true);\n");
    file.close();
    Desk next;
    QCOMPARE(next.leftBehind(), file.fileName());
    {
        const Desk third;
        QCOMPARE(third.leftBehind(), QString());
    }
    next.recover();
    QCOMPARE(next.leftBehind(), QString());
    QTRY_VERIFY(!next.isReplaying());
    QCOMPARE(next.recording()->count(), 2);
    QVERIFY(next.recording()->isUnsaved());
    QVERIFY(!file.exists());
}

void DeskTest::leavesBehind()
{
    {
        const Desk other;
        QCOMPARE(other.leftBehind(), QString());
    }
    m_desk->perform(QStringLiteral("AudioPolicy.setMute(true);"));
    QTRY_COMPARE(m_desk->recording()->count(), 2);
    m_desk->leaveUnsavedBehind();
    m_desk.reset();
    Desk next;
    QVERIFY(!next.leftBehind().isEmpty());
    next.dismissLeftBehind();
    QCOMPARE(next.leftBehind(), QString());
    const Desk last;
    QCOMPARE(last.leftBehind(), QString());
}

void DeskTest::crashLeavesBehind()
{
    QProcess window;
    window.start(QCoreApplication::applicationFilePath(), {QString::fromLatin1(crashing)});
    QVERIFY(window.waitForFinished());
    QCOMPARE(window.exitStatus(), QProcess::CrashExit);
    QCOMPARE(window.exitCode(), SIGKILL);
    Desk next;
    QVERIFY(!next.leftBehind().isEmpty());
    next.recover();
    QTRY_VERIFY(!next.isReplaying());
    QCOMPARE(next.recording()->count(), 2);
    QCOMPARE(next.recording()->steps().last().line, QStringLiteral("AudioPolicy.setMute(true);"));
}

void DeskTest::damagedRecording()
{
    m_desk->open(QUrl::fromLocalFile(write(QStringLiteral("damaged.js"), "// A drive recorded with qzaudio-desk.\n\npowerOn();\nwait(100);\nAudioPol")));
    QTRY_VERIFY(!m_desk->isReplaying());
    m_desk->goTo(200);
    QTRY_VERIFY2(m_desk->message().contains(QStringLiteral("AudioPol is not defined")), qUtf8Printable(m_desk->message()));
    QTRY_VERIFY(value("drive", "on").toBool());
    m_desk->open(QUrl::fromLocalFile(write(QStringLiteral("binary.js"), QByteArray(100, '\0'))));
    QVERIFY(m_desk->message().contains(QStringLiteral("binary.js is no scenario")));
    m_desk->open(QUrl::fromLocalFile(m_folder.filePath(QStringLiteral("none.js"))));
    QVERIFY(m_desk->message().contains(QStringLiteral("none.js cannot be opened")));
}

/// A window that records a step and is killed.
void crash()
{
    QStandardPaths::setTestModeEnabled(true);
    Desk desk;
    desk.startAnew();
    desk.perform(QStringLiteral("AudioPolicy.setMute(true);"));
    if (QTest::qWaitFor([&desk] { return desk.recording()->count() == 2; }))
        ::kill(::getpid(), SIGKILL);
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (QCoreApplication::arguments().value(1) == QLatin1String(crashing)) {
        crash();
        return 1;
    }
    DeskTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_desk.moc"

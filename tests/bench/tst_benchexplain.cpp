#include "benchprocess.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <csignal>

namespace
{

/// A short drive: the file player, a volume key, a mute, a refusal and a complaint of the store.
const char *const drive = R"([    1.000] [DBG] 9 ZelAudioManager::ZelAudioManager(QObject*) 84 --
[    2.000] [DBG] 9 void ZelAudioManager::updateAudioChannel(AudioChannel) 179 -- Update Audio Channel 3
[    2.000] [DBG] 9 void audio::AudioControl::setOutputSource(AudioTag, const char*) 432 -- 0 "main" tag
[    2.000] [DBG] 9 void audio::AudioControl::setOutputSource(AudioTag, const char*) 432 -- S+FilePlayer_APP "S+FilePlayer" src
[    2.000] [QT] [Audiocontrol] set audio stream output source main S+FilePlayer
[    2.000] [DBG] 9 void audio::AudioControl::setOutputSource(const char*, const char*) 420 -- main tag
[    2.000] [DBG] 9 void audio::AudioControl::setOutputSource(const char*, const char*) 421 -- S+FilePlayer src
[    2.000] [QT] [Audiocontrol] Set Front seat audio stream success.
[    3.000] [DBG] 9 void ZelAudioManager::updateCurrentAudioVolume(bool) 273 -- true
[    3.000] [DBG] 9 int ZelAudioManager::getVolume(ZelAudioType) 212 --
[    3.000] [DBG] 9 void ZelAudioManager::updateCurrentAudioVolume(bool) 286 -- 2 13
[    3.000] [DBG] 9 void ZelAudioManager::setVolume(ZelAudioType, int, bool) 205 -- 2 13 true 2
[    3.000] [DBG] 9 void ZelAudioManager::_handleChannelVolumeChanged(ZelAudioType, int) 224 -- 2 13
[    3.000] [DBG] 9 void audio::AudioControl::setStreamVolume(AudioTag, const char*, quint8) 185 -- 0 "main" tag
[    3.000] [DBG] 9 void audio::AudioControl::setStreamVolume(AudioTag, const char*, quint8) 185 -- S+BtPcmPhone "S+BtPcmPhone" src
[    3.000] [QT] [Error] [Audiocontrol] line: 193 set stream S+BtPcmPhone err 7
[    3.000] [ERR] 9 void audio::AudioDataBase::save(QString, QString, QVariant) 121 -- /flash/a.ini cannot be written: full
[    4.000] [DBG] 9 void ZelAudioManager::setMicInputValue(int) 557 -- 12
[    4.000] [QT] [Audiocontrol] Set micro phone volume success. data: 12
[    5.000] [DBG] 9 void FocusRequester::handleFocusLoss(int) 75 -- dispatching  "LOSS"  to  "music"
)";

/// Begins while the audio is on: only one volume of the file player is told, and later than it plays.
const char *const laterDrive = R"([    2.000] [QT] [Audiocontrol] set audio stream output source main S+FilePlayer
[    2.000] [QT] [Audiocontrol] Set Front seat audio stream success.
[    3.000] [DBG] 9 void audio::AudioControl::setStreamVolume(AudioTag, const char*, quint8) 185 -- 0 "main" tag
[    3.000] [DBG] 9 void audio::AudioControl::setStreamVolume(AudioTag, const char*, quint8) 185 -- S+FilePlayer_APP "S+FilePlayer" src
[    3.000] [QT] [Audiocontrol] set stream S+FilePlayer_APP 74
)";

} // namespace

class BenchExplainTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void viewsShowTheDrive_data();
    void viewsShowTheDrive();
    void aVolumeThatWasNotToldIsUnknown();
    void mistakesAreSaid_data();
    void mistakesAreSaid();
    void standardInputIsRead();
    void aLogIsFollowedUntilInterrupted();

private:
    QString write(const char *name, const QByteArray &text) const;

    QTemporaryDir m_folder;
    QString m_log;
};

QString BenchExplainTest::write(const char *name, const QByteArray &text) const
{
    QFile file(m_folder.filePath(QLatin1String(name)));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("no file can be written");
    return file.fileName();
}

void BenchExplainTest::initTestCase()
{
    m_log = write("drive.log", drive);
}

void BenchExplainTest::viewsShowTheDrive_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("output");

    const auto row = [](const char *options, const char *output) {
        QTest::newRow(options) << QString::fromLatin1(options).split(QLatin1Char(' '), Qt::SkipEmptyParts) << QString::fromLatin1(output);
    };
    row("",
        "\n"
        "  0:00.000  The audio starts, process 9, 1.000 s\n"
        "  0:01.000  heard  file player silent\n"
        "            why    AudioPolicy.updateAudioChannel(FilePlayer)\n"
        "  0:02.000  log    [ERR] 9 void audio::AudioDataBase::save(QString, QString, QVariant) 121 --\n"
        "                   /flash/a.ini cannot be written: full\n"
        "            refused: Volume.setTrackVolume(\"main\", \"S+BtPcmPhone\", 78) -> 7 (refused by the\n"
        "            platform)\n"
        "  0:04.000  focus: \"music\" loses focus: LOSS\n"
        "            focus: in the end somebody unknown has focus, taken from \"music\" (5.000 s) and never\n"
        "            given back\n"
        "            focus: in the end without focus: \"music\" since 5.000 s (LOSS)\n");
    row("-v --from +1s --to +1.9s",
        "  0:01.000  AudioPolicy.updateAudioChannel(FilePlayer)\n"
        "                Source.setOutputSource(\"main\", \"S+FilePlayer\") -> 0\n");
    row("-v --from 4.0 --to 4.5",
        "  0:03.000  heard: file player silent\n"
        "  0:03.000  AudioPolicy.setMicInputValue(12)\n"
        "                Volume.setMicVolume(12) -> 0\n");
    row("--from 4.0",
        "  0:03.000  heard  file player silent\n"
        "  0:04.000  focus: \"music\" loses focus: LOSS\n"
        "            focus: in the end somebody unknown has focus, taken from \"music\" (5.000 s) and never\n"
        "            given back\n"
        "            focus: in the end without focus: \"music\" since 5.000 s (LOSS)\n");
    row("-v --only microphone",
        "\n"
        "  0:00.000  The audio starts, process 9, 1.000 s\n"
        "  0:03.000  AudioPolicy.setMicInputValue(12)\n"
        "                Volume.setMicVolume(12) -> 0\n");
    row("-v --only routing,focus --from +0.5s",
        "  0:01.000  AudioPolicy.updateAudioChannel(FilePlayer)\n"
        "                Source.setOutputSource(\"main\", \"S+FilePlayer\") -> 0\n"
        "            focus: \"music\" loses focus: LOSS\n"
        "            focus: in the end somebody unknown has focus, taken from \"music\" (5.000 s) and never\n"
        "                given back\n"
        "            focus: in the end without focus: \"music\" since 5.000 s (LOSS)\n");
    row("--only focus",
        "\n"
        "  0:00.000  The audio starts, process 9, 1.000 s\n"
        "  0:04.000  focus: \"music\" loses focus: LOSS\n"
        "  0:04.000  focus: in the end somebody unknown has focus, taken from \"music\" (5.000 s) and never\n"
        "            given back\n"
        "  0:04.000  focus: in the end without focus: \"music\" since 5.000 s (LOSS)\n");
    row("-v --source S+FilePlayer_APP --from +0.5s",
        "  0:01.000  AudioPolicy.updateAudioChannel(FilePlayer)\n"
        "                Source.setOutputSource(\"main\", \"S+FilePlayer\") -> 0\n");
    row("--summary",
        "Requests and timers\n"
        "  in all                     4\n"
        "  starts of the audio        1\n"
        "Volumes set\n"
        "  Telephony                  13 to 13, in the end 13; set once\n"
        "Volume keys\n"
        "  up                         1\n"
        "  down                       0\n"
        "Time in each status\n"
        "  None                       0:00:02.000\n"
        "  BtTelephony                0:00:02.000\n"
        "Saves\n"
        "  asked for                  2\n"
        "  with a complaint           1\n"
        "Focus\n"
        "  \"music\"                    lost once, had again 0 times\n"
        "  in the end somebody unknown has focus, taken from \"music\" (5.000 s) and never given back\n"
        "  in the end without focus: \"music\" since 5.000 s (LOSS)\n"
        "Refused by the platform\n"
        "  Volume.setTrackVolume      once with 7\n");
    row("--json --from +3s --to +3s",
        R"json({"at":"4.000 s","caused":[{"event":"call","text":"Volume.setMicVolume(12) -> 0","time":3000}],"event":"request","line":18,"log":"drive.log","process":9,"text":"AudioPolicy.setMicInputValue(12)","time":3000})json"
        "\n");
}

void BenchExplainTest::viewsShowTheDrive()
{
    QFETCH(const QStringList, options);
    QFETCH(const QString, output);
    const BenchProcess bench(QStringList(QStringLiteral("explain")) + options + QStringList(QStringLiteral("drive.log")),
                             m_folder.path(),
                             {{QStringLiteral("COLUMNS"), QStringLiteral("100")}});
    QCOMPARE(bench.errors, QString());
    QCOMPARE(bench.exitCode, 0);
    QCOMPARE(bench.output, output);
}

void BenchExplainTest::aVolumeThatWasNotToldIsUnknown()
{
    const QString log = write("later", laterDrive);
    const BenchProcess bench({QStringLiteral("explain"), log});
    QCOMPARE(bench.output,
             QStringLiteral("\n"
                            "  0:00.000  The log begins while the audio is on already, 2.000 s\n"
                            "            heard  file player at an unknown level\n"
                            "            why    AudioControl.setOutputSource(\"main\", \"S+FilePlayer\")\n"
                            "  0:01.000  heard  file player -6.0 dB\n"
                            "            why    AudioControl.setStreamVolume(Main, \"S+FilePlayer_APP\", 74)\n"));

    QVector<QJsonObject> heard;
    const QStringList lines = BenchProcess({QStringLiteral("explain"), QStringLiteral("--json"), log}).output.split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        const QJsonObject event = QJsonDocument::fromJson(line.toUtf8()).object();
        if (event.value(QLatin1String("event")) == QLatin1String("heard"))
            heard.append(event.value(QLatin1String("sounds")).toArray().at(0).toObject());
    }
    QCOMPARE(heard.size(), 2);
    QCOMPARE(heard.at(0).value(QLatin1String("source")).toString(), QStringLiteral("S+FilePlayer"));
    QVERIFY(!heard.at(0).contains(QLatin1String("level")));
    QVERIFY(heard.at(1).value(QLatin1String("level")).isDouble());
}

void BenchExplainTest::mistakesAreSaid_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("error");

    const auto row = [](const char *name, const QStringList &arguments, int status, const QString &error) {
        QTest::newRow(name) << arguments << status << QStringLiteral("qzaudio-bench: ") + error + QLatin1Char('\n');
    };
    const QString help = QStringLiteral("; see qzaudio-bench explain --help");
    const QString nothing = QStringLiteral(": no line of the audio library in %1 lines; looked for [DBG], [ERR] and [QT] with the library's words behind them");
    const QString foreign = write("foreign", "one\ntwo\n[DBG] 1 void Player::play() 3 --\n");
    const QString binary = write("binary", QByteArray(200000, '\0') + "\n\xff\xfe\n");
    const QString empty = write("empty", {});
    const QString archive = write("cut.gz", QByteArray("\x1f\x8b\x08\x00\x00\x00\x00\x00\x00\x03", 10));
    row("two logs", {m_log, m_log}, 2, QStringLiteral("explain takes one log") + help);
    row("two views", {QStringLiteral("-v"), QStringLiteral("--json")}, 2, QStringLiteral("--summary, --json and --verbose do not go together") + help);
    row("no time",
        {QStringLiteral("--from"), QStringLiteral("noon")},
        2,
        QStringLiteral("--from is a time as in the log, 12:03:07, or from its first line on, +12s, not noon") + help);
    row("no area",
        {QStringLiteral("--only"), QStringLiteral("volume,x")},
        2,
        QStringLiteral("--only knows equalizer, focus, microphone, routing, volume, not x") + help);
    row("no pattern", {QStringLiteral("--pattern"), QStringLiteral("x")}, 2, QStringLiteral("--pattern is no QT_MESSAGE_PATTERN: it has no %{message}") + help);
    row("no colour", {QStringLiteral("--color"), QStringLiteral("red")}, 2, QStringLiteral("--color is auto, always or never, not red") + help);
    row("no such time in the log",
        {QStringLiteral("--from"), QStringLiteral("12:03:07"), m_log},
        2,
        QStringLiteral("the log's lines have no such times as --from or --to; its first one is 1.000 s") + help);
    row("a folder", {m_folder.path()}, 2, m_folder.path() + QStringLiteral(": this is a folder"));
    row("no file", {m_folder.filePath(QStringLiteral("none"))}, 2, m_folder.filePath(QStringLiteral("none")) + QStringLiteral(": No such file or directory"));
    // An emulator runs one program only.
    if (!program::isEmulated())
        row("a damaged archive", {archive}, 2, archive + QStringLiteral(": gzip: ") + archive + QStringLiteral(": unexpected end of file"));
    row("no line of the library", {foreign}, 3, foreign + nothing.arg(3));
    row("binary data", {binary}, 3, binary + nothing.arg(2));
    row("an empty file", {empty}, 3, empty + nothing.arg(0));
}

void BenchExplainTest::mistakesAreSaid()
{
    QFETCH(const QStringList, arguments);
    const BenchProcess bench(QStringList(QStringLiteral("explain")) + arguments);
    QTEST(bench.errors, "error");
    QTEST(bench.exitCode, "status");
}

void BenchExplainTest::standardInputIsRead()
{
    for (const QStringList &log : {QStringList(), QStringList(QStringLiteral("-"))}) {
        QProcess process;
        process.setStandardInputFile(m_log);
        BenchProcess::start(process, QStringList{QStringLiteral("explain"), QStringLiteral("--summary")} + log);
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 0);
        QVERIFY(process.readAllStandardOutput().contains("once with 7"));
    }
}

void BenchExplainTest::aLogIsFollowedUntilInterrupted()
{
    const QString log = write("growing", drive);
    QProcess process;
    BenchProcess::start(process, {QStringLiteral("explain"), QStringLiteral("-v"), QStringLiteral("--follow"), log});
    QByteArray output;
    const auto waitFor = [&](const char *text) {
        for (int i = 0; i < 100 && !output.contains(text); ++i) {
            process.waitForReadyRead(100);
            output += process.readAllStandardOutput();
        }
        return output.contains(text);
    };
    QVERIFY(waitFor("focus: \"music\" loses focus"));
    QFile file(log);
    QVERIFY(file.open(QIODevice::Append));
    file.write("[    6.000] [DBG] 9 void ZelAudioManager::setCPConnected(bool) 375 -- true\n");
    file.close();
    QVERIFY(waitFor("0:05.000  AudioPolicy.setCPConnected(true)"));
    ::kill(pid_t(process.processId()), SIGINT);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 130);
}

QTEST_GUILESS_MAIN(BenchExplainTest)
#include "tst_benchexplain.moc"

#include "benchprocess.h"

#include <explain/policyrules.h>
#include <situationtables.h>

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <algorithm>

namespace
{

/// What a run of "play" told.
struct Played
{
    struct Heard
    {
        qint64 time; ///< ms since the first line of the log
        QString source;
        double level; ///< dB; of silence a number that no sound has
    };

    QByteArrayList log; ///< with the kernel's times
    QVector<Heard> heard; ///< the last for each time
    qint64 start = -1; ///< when the first line of the log came

    /// Number of the first line with this text, behind a line; 0 for none.
    qint64 line(const char *text, qint64 behind = 0) const
    {
        for (int i = int(behind); i < log.size(); ++i) {
            if (log.at(i).contains(text))
                return i + 1;
        }
        return 0;
    }

    QByteArray text(int from = 0, int count = -1) const { return log.mid(from, count).join('\n') + '\n'; }
};

constexpr double silence = -1000;
constexpr int startOfClock = 7; // s that the log's clock is ahead of the timeline

double levelOf(const QJsonValue &value)
{
    return value.isNull() ? silence : value.toDouble();
}

void read(const QJsonObject &object, Played &played)
{
    const QString event = object.value(QLatin1String("event")).toString();
    const auto time = qint64(object.value(QLatin1String("time")).toDouble());
    if (event == QLatin1String("log")) {
        if (played.start < 0)
            played.start = time;
        constexpr double second = 1000;
        const double seconds = double(time - played.start) / second + startOfClock;
        played.log.append('[' + QByteArray::number(seconds, 'f', 6).rightJustified(12) + "] " + object.value(QLatin1String("text")).toString().toUtf8());
    }
    if (event == QLatin1String("heard")) {
        while (!played.heard.isEmpty() && played.heard.constLast().time == time - played.start)
            played.heard.removeLast();
        const QJsonArray sounds = object.value(QLatin1String("sounds")).toArray();
        for (const QJsonValue &sound : sounds)
            played.heard.append(
                {time - played.start, sound.toObject().value(QLatin1String("source")).toString(), levelOf(sound.toObject().value(QLatin1String("level")))});
    }
    const QJsonArray caused = object.value(QLatin1String("caused")).toArray();
    for (const QJsonValue &one : caused)
        read(one.toObject(), played);
}

QJsonObject named(const QJsonObject &chain, const char *list, const QString &name)
{
    const QJsonArray all = chain.value(QLatin1String(list)).toArray();
    const auto found = std::find_if(all.begin(), all.end(), [&name](const QJsonValue &one) { return one.toObject().value(QLatin1String("what")) == name; });
    return found == all.end() ? QJsonObject() : (*found).toObject();
}

QString textOf(const QJsonObject &object)
{
    return object.value(QLatin1String("text")).toString();
}

/// The beginning of every drive here: the audio starts and a source plays.
const char *const musicPlays = "powerOn(); AudioPolicy.setVolume(AudioPolicy.Media, 14, true); AudioPolicy.setVolume(AudioPolicy.Prompt, 15, true);"
                               "AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer); wait(5000);";
const char *const projectionPlays = "powerOn(); AudioPolicy.setVolume(AudioPolicy.Media, 14, true); AudioPolicy.setVolume(AudioPolicy.Prompt, 22, true);"
                                    "AudioPolicy.setVolume(AudioPolicy.Speech, 9, true);"
                                    "AudioPolicy.updateAudioChannel(AudioPolicy.ChannelAndroidAuto); wait(5000);";
const char *const callBegins
    = "powerOn(); AudioPolicy.setVolume(AudioPolicy.Telephony, 18, true); AudioPolicy.setVolume(AudioPolicy.Ring, 10, true); wait(2000);"
      "AudioPolicy.updateAudioChannel(AudioPolicy.ChannelBtPhone); AudioPolicy.updateAudioStatus(AudioPolicy.StatusBtRing); wait(2000);";
const char *const callGoesOn = "AudioPolicy.updateAudioStatus(AudioPolicy.StatusBtTelephony); wait(2000);";
const char *const refusesVolume = "Platform.failOnce('Volume.setTrackVolume', 7, 1);";

} // namespace

class LogWhyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void rulesAreTheLibrarys();
    void eachLinkHasItsLine_data();
    void eachLinkHasItsLine();
    void levelIsWhatWasHeard_data();
    void levelIsWhatWasHeard();
    void otherwiseIsWhatWouldBeHeard_data();
    void otherwiseIsWhatWouldBeHeard();
    void linksOfDrives_data();
    void linksOfDrives();
    void otherwiseOfDrives_data();
    void otherwiseOfDrives();
    void unknownIsSaid_data();
    void unknownIsSaid();
    void laterLinesTellTheRest();
    void settingsTellTheRest();
    void aRequestMayBeHalfDone();
    void aRebootForgets();
    void momentsAreFound_data();
    void momentsAreFound();
    void jumpsAreFound_data();
    void jumpsAreFound();
    void peopleReadIt();
    void mistakesAreSaid_data();
    void mistakesAreSaid();

private:
    Played play(const QByteArray &scenario);
    Played playFile(const QString &scenario);
    QString write(const char *name, const QByteArray &text) const;
    BenchProcess explain(const QByteArray &log, const QStringList &options) const;
    QJsonObject ask(const QByteArray &log, const QStringList &options) const;
    QJsonObject why(const QByteArray &log, const QString &source, const QStringList &options = {}) const;

    QTemporaryDir m_folder;
    Played m_commute;
    QMap<QByteArray, Played> m_drives;
};

/// Scenarios are played once.
Played LogWhyTest::play(const QByteArray &scenario)
{
    const auto known = m_drives.constFind(scenario);
    if (known != m_drives.cend())
        return *known;
    const BenchProcess bench({QStringLiteral("play"), QStringLiteral("--json"), QStringLiteral("--log"), write("drive.js", scenario)});
    Played played;
    const QStringList lines = program::lines(bench.output);
    for (const QString &line : lines)
        read(QJsonDocument::fromJson(line.toUtf8()).object(), played);
    m_drives.insert(scenario, played);
    return played;
}

Played LogWhyTest::playFile(const QString &scenario)
{
    QFile file(QStringLiteral(SCENARIOS "/%1.js").arg(scenario));
    return file.open(QIODevice::ReadOnly) ? play(file.readAll()) : Played();
}

QString LogWhyTest::write(const char *name, const QByteArray &text) const
{
    QFile file(m_folder.filePath(QLatin1String(name)));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("no file can be written");
    return file.fileName();
}

BenchProcess LogWhyTest::explain(const QByteArray &log, const QStringList &options) const
{
    return BenchProcess(
        QStringList(QStringLiteral("explain")) + options + QStringList(write("log", log)), {}, {{QStringLiteral("COLUMNS"), QStringLiteral("100")}});
}

QJsonObject LogWhyTest::ask(const QByteArray &log, const QStringList &options) const
{
    const BenchProcess bench = explain(log, options + QStringList(QStringLiteral("--json")));
    if (bench.exitCode != 0)
        qWarning("%s", qPrintable(bench.errors));
    return QJsonDocument::fromJson(bench.output.toUtf8()).object();
}

QJsonObject LogWhyTest::why(const QByteArray &log, const QString &source, const QStringList &options) const
{
    return ask(log, QStringList{QStringLiteral("--why"), source} + options);
}

void LogWhyTest::initTestCase()
{
    if (!BenchProcess::canSupervise())
        QSKIP("no process that plays can be started here");
    m_commute = playFile(QStringLiteral("commute"));
    QVERIFY(m_commute.log.size() > 500);
}

void LogWhyTest::rulesAreTheLibrarys()
{
    const auto platformName = [](const char *name) -> QString {
        QString text = QString::fromLatin1(name);
        text.remove(QRegularExpression(QStringLiteral("_APP$")));
        return text.startsWith(QLatin1Char('s')) ? QLatin1Char('S') + text.mid(1) : text;
    };
    QCOMPARE(PolicyRules::highestStatus, situations::highestStatus);
    constexpr int named[] = {AudioStatusNone,
                             AudioStatusBtPhoneRing,
                             AudioStatusBtPhoneTelephony,
                             AudioStatusCarPlayAlert,
                             AudioStatusCarPlayTelephony,
                             AudioStatusCarPlaySpeech,
                             AudioStatusCarPlayDuck,
                             AudioStatusCarPlayRestore,
                             AudioStatusAndroidAutoSpeech,
                             AudioStatusAndroidAutoDuck,
                             AudioStatusAndroidAutoRestore,
                             AudioStatusCarLifeSpeech,
                             AudioStatusCarLifeDuck,
                             AudioStatusCarLifeRestore};
    for (int status = -1; status <= situations::highestStatus + 1; ++status)
        QCOMPARE(PolicyRules::isNamed(status), std::find(std::begin(named), std::end(named), status) != std::end(named));
    for (const situations::Status &row : situations::statuses) {
        QCOMPARE(PolicyRules::typeOfStatus(row.status), int(row.type));
        const bool isOfChannel = row.source.view() == situations::noSource;
        QCOMPARE(PolicyRules::sourceOfStatus(row.status), isOfChannel ? QString() : platformName(row.source));
        QCOMPARE(PolicyRules::isOfDuck(row.status), row.type == ZelAudioTypePrompt);
    }
    for (int channel = -1; channel <= situations::highestChannel + 1; ++channel) {
        const auto number = static_cast<AudioChannel>(channel);
        QCOMPARE(PolicyRules::typeOfChannel(channel), int(situations::typeOf(number)));
        QCOMPARE(PolicyRules::sourceOfChannel(channel), platformName(situations::sourceOf(number)));
    }
    for (const situations::Stream &stream : situations::streams)
        QCOMPARE(PolicyRules::typeOfSource(platformName(stream.name)), int(stream.type));
    QCOMPARE(PolicyRules::typeOfSource(QStringLiteral("S+none")), PolicyRules::none);
}

void LogWhyTest::eachLinkHasItsLine_data()
{
    QTest::addColumn<QString>("link");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QJsonValue>("value");
    QTest::addColumn<qint64>("line");
    QTest::addColumn<QString>("at");
    QTest::addColumn<QString>("cause");

    const auto row = [](const char *link, const char *text, const QJsonValue &value, qint64 line, const char *at, const char *cause) {
        QTest::newRow(link) << QString::fromLatin1(link) << QString::fromLatin1(text) << value << line << QString::fromLatin1(at) << QString::fromLatin1(cause);
    };
    const qint64 key = m_commute.line("updateCurrentAudioVolume(bool) 273 -- false");
    const qint64 keyOfRing = m_commute.line("updateCurrentAudioVolume(bool) 286 -- 3 11");
    row("stored volume", "17 of telephony", 17, key, "200.000 s", "volume key down");
    row("times 4", "68", 68, 0, "", "");
    row("boosted", "x 1.5 = 102", true, 0, "", "");
    row("sent volume", "102 of 148", 102, m_commute.line("set stream S+BtPcmPhone 102", key), "200.000 s", "AudioPolicy.updateCurrentAudioVolume(false)");
    row("refused", "nothing", {}, 0, "", "");
    row("master volume", "100 percent", 100, m_commute.line("set master volume 100"), "7.000 s", "the audio manager starts");
    row("playing",
        "yes, on track main",
        true,
        m_commute.line("Set Front seat audio stream success", keyOfRing),
        "200.000 s",
        "AudioPolicy.updateAudioChannel(BtPhone)");
    row("duck", "off", false, m_commute.line("Set Front seat audio stream success", m_commute.line("unDuck()")), "76.000 s", "AudioPolicy.aaUnduckAudio(?)");
    row("mute", "off, as after switching on", false, 0, "", "");
    row("loudspeakers", "100 / 100 / 100 / 100 percent, as after switching on", QJsonArray{100, 100, 100, 100}, 0, "", "");
    row("equalizer",
        "type 6: 2 dB in all bands",
        6,
        m_commute.line("set eq channel", m_commute.line("onFirstSetEqType")),
        "10.000 s",
        "timer: set the equalizer again after the first channel");
    row("loudness", "off", false, m_commute.line("[Audiocontrol] setLoudness"), "7.000 s", "the audio manager starts");
}

void LogWhyTest::eachLinkHasItsLine()
{
    QFETCH(const QString, link);
    QFETCH(const QJsonValue, value);
    QFETCH(const qint64, line);
    // The application's name is as good.
    for (const char *const source : {"S+BtPcmPhone", "S+BtPcmPhone_APP"}) {
        const QJsonObject chain = why(m_commute.text(), QLatin1String(source), {QStringLiteral("--at"), QStringLiteral("300.0")});
        QCOMPARE(chain.value(QLatin1String("source")).toString(), QStringLiteral("S+BtPcmPhone"));
        QCOMPARE(chain.value(QLatin1String("at")).toString(), QStringLiteral("300.000 s"));
        const QJsonObject found = named(chain, "links", link);
        QTEST(textOf(found), "text");
        QCOMPARE(found.value(QLatin1String("value")), value);
        QCOMPARE(qint64(found.value(QLatin1String("line")).toDouble()), line);
        QTEST(found.value(QLatin1String("at")).toString(), "at");
        QTEST(found.value(QLatin1String("cause")).toString(), "cause");
        QCOMPARE(found.value(QLatin1String("known")), QJsonValue(true));
    }
}

void LogWhyTest::levelIsWhatWasHeard_data()
{
    QTest::addColumn<QString>("scenario");
    QTest::addColumn<qint64>("time");
    QTest::addColumn<QString>("source");
    QTest::addColumn<double>("level");
    for (const char *const scenario : {"commute", "carplay", "mute", "power-on"}) {
        const Played played = playFile(QLatin1String(scenario));
        QVERIFY(!played.heard.isEmpty());
        for (const Played::Heard &heard : played.heard) {
            QTest::addRow("%s: %s, %d ms", scenario, qPrintable(heard.source), int(heard.time))
                << QString::fromLatin1(scenario) << heard.time << heard.source << heard.level;
        }
    }
}

void LogWhyTest::levelIsWhatWasHeard()
{
    QFETCH(const QString, scenario);
    QFETCH(const qint64, time);
    QFETCH(const QString, source);
    const QJsonObject chain = why(playFile(scenario).text(), source, {QStringLiteral("--at"), QStringLiteral("+%1ms").arg(time)});
    QTEST(levelOf(chain.value(QLatin1String("level"))), "level");
}

void LogWhyTest::otherwiseIsWhatWouldBeHeard_data()
{
    QTest::addColumn<QByteArray>("drive");
    QTest::addColumn<QByteArray>("other");
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("what");

    const auto more = [](const char *name, const QByteArray &drive, const char *further, const char *source, const char *what) {
        QTest::newRow(name) << drive << drive + further << QString::fromLatin1(source) << QString::fromLatin1(what);
    };
    const QByteArray music(musicPlays);
    const QByteArray projection(projectionPlays);
    const QByteArray call = QByteArray(callBegins) + callGoesOn;
    more("a call, one step up", call, "AudioPolicy.updateCurrentAudioVolume(true);", "S+BtPcmPhone", "one step up");
    more("a call, one step down", call, "AudioPolicy.updateCurrentAudioVolume(false);", "S+BtPcmPhone", "one step down");
    more("music, one step up", music, "AudioPolicy.updateCurrentAudioVolume(true);", "S+FilePlayer", "one step up");
    more("a call that rings", call, "AudioPolicy.updateAudioStatus(AudioPolicy.StatusBtRing);", "S+BtPcmPhone", "in status BtRing");
    more("a call without a status", call, "AudioPolicy.updateAudioStatus(0);", "S+BtPcmPhone", "in status None");
    more("music, muted", music + "AudioPolicy.setMute(true);", "AudioPolicy.setMute(false);", "S+FilePlayer", "without the mute");
    more("music, ducked for a prompt", music + "AudioPolicy.aaDuckAudio(0, 0);", "AudioPolicy.aaUnduckAudio(0);", "S+FilePlayer", "without the duck");
    more("the prompt's own source", projection + "AudioPolicy.aaDuckAudio(0, 0);", "AudioPolicy.aaUnduckAudio(0);", "S+AndroidAuto", "without the duck");
    more(
        "reverse gear", music + "Platform.setReverseGear(true); wait(2000);", "Platform.setReverseGear(false); wait(600);", "S+FilePlayer", "without the duck");
    more("into reverse", music, "Platform.setReverseGear(true); wait(2000);", "S+FilePlayer", "ducked, in status CarPlayDuck");
    more("a prompt comes", projection, "AudioPolicy.aaDuckAudio(0, 0);", "S+AndroidAuto", "ducked, in status AndroidAutoDuck");
    more("speech", projection, "AudioPolicy.updateAudioStatus(12);", "S+AndroidAuto", "in status AndroidAutoSpeech");
    more("a status ends while ducked",
         music + "Platform.setReverseGear(true); wait(2000);",
         "AudioPolicy.updateAudioStatus(0);",
         "S+FilePlayer",
         "in status None");

    const QByteArray refused = QByteArray(callBegins) + refusesVolume + callGoesOn;
    const QByteArray lineOf = QByteArray::number(play(refused).line("err 7"));
    QTest::newRow("a refusal that had not been") << refused << call << QStringLiteral("S+BtPcmPhone")
                                                 << QStringLiteral("if the platform had not refused line ") + QString::fromLatin1(lineOf);
    const QByteArray lineOfCall = QByteArray::number(play(call).line("set stream S+BtPcmPhone 108", play(call).line("_handleVolumeTypeChanged status: 2")));
    QTest::newRow("a refusal that might have been") << call << refused << QStringLiteral("S+BtPcmPhone")
                                                    << QStringLiteral("if the platform had refused line ") + QString::fromLatin1(lineOfCall);
}

void LogWhyTest::otherwiseIsWhatWouldBeHeard()
{
    QFETCH(const QByteArray, drive);
    QFETCH(const QByteArray, other);
    QFETCH(const QString, source);
    QFETCH(const QString, what);
    const QJsonObject chain = why(play(drive).text(), source);
    const Played truth = play(other);
    const auto ofSource = [&source](const Played::Heard &heard) { return heard.source == source; };
    const auto heard = std::find_if(truth.heard.crbegin(), truth.heard.crend(), ofSource);
    QVERIFY(heard != truth.heard.crend());
    const QJsonObject otherwise = named(chain, "otherwise", what);
    QVERIFY2(!otherwise.isEmpty(), QJsonDocument(chain).toJson().constData());
    QCOMPARE(levelOf(otherwise.value(QLatin1String("level"))), heard->level);
    QCOMPARE(otherwise.value(QLatin1String("known")), QJsonValue(true));
    // Asking has changed nothing.
    QVERIFY(named(chain, "otherwise", what) == named(why(play(drive).text(), source), "otherwise", what));
}

void LogWhyTest::linksOfDrives_data()
{
    QTest::addColumn<QByteArray>("drive");
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("link");
    QTest::addColumn<QString>("text"); // with # for the number of a line
    QTest::addColumn<QString>("cause");

    const auto row = [](const char *name, const QByteArray &drive, const char *source, const char *link, const char *text, const char *cause) {
        QTest::newRow(name) << drive << QString::fromLatin1(source) << QString::fromLatin1(link) << QString::fromLatin1(text) << QString::fromLatin1(cause);
    };
    const QByteArray music(musicPlays);
    const QByteArray call(callBegins);
    const QByteArray muted = music + "AudioPolicy.setMute(true);";
    const QByteArray reverse = music + "Platform.setReverseGear(true); wait(2000);";
    row("muted", muted, "S+FilePlayer", "mute", "on", "AudioPolicy.setMute(true)");
    row("ducked", music + "AudioPolicy.clDuckAudio(0, 0);", "S+FilePlayer", "duck", "on, to 60 percent", "AudioPolicy.clDuckAudio(?, ?)");
    row("in reverse", reverse, "S+FilePlayer", "duck", "on, to 60 percent", "AudioPolicy.onRecvBackCar(true)");
    row("the volume in reverse", reverse, "S+FilePlayer", "stored volume", "15 of prompts", "AudioPolicy.setVolume(Prompt, 15, true)");
    row("sent in reverse", reverse, "S+FilePlayer", "sent volume", "60 of 148", "timer: apply the prompts' volume while ducked");
    row("a duck that was refused",
        music + "Platform.failOnce('Volume.setDuckingMode', 9, 1); AudioPolicy.aaDuckAudio(0, 0);",
        "S+FilePlayer",
        "duck",
        "off, as after switching on; another one since then refused with 9, line #, AudioPolicy.aaDuckAudio(?, ?) at 12.000 s",
        "");
    row("a volume that was refused", call + refusesVolume + callGoesOn, "S+BtPcmPhone", "refused", "108 with 7", "AudioPolicy.updateAudioStatus(BtTelephony)");
    row("the volume before it", call + refusesVolume + callGoesOn, "S+BtPcmPhone", "stored volume", "10 of ring", "AudioPolicy.setVolume(Ring, 10, true)");
    row("a volume that was accepted again",
        call + refusesVolume + callGoesOn + "AudioPolicy.updateCurrentAudioVolume(true);",
        "S+BtPcmPhone",
        "refused",
        "108 with 7, and accepted since",
        "AudioPolicy.updateAudioStatus(BtTelephony)");
    row("a stored volume that changed since",
        call + "AudioPolicy.setVolume(AudioPolicy.Ring, 5, true);",
        "S+BtPcmPhone",
        "stored volume",
        "10 of ring, which by now is 5: line #, AudioPolicy.setVolume(Ring, 5, true) at 11.000 s",
        "AudioPolicy.setVolume(Ring, 10, true)");
    row("another source plays",
        call,
        "S+FilePlayer",
        "playing",
        "no: track main plays Bluetooth telephone, S+BtPcmPhone",
        "AudioPolicy.updateAudioChannel(BtPhone)");
    row("nothing plays", "powerOn();", "S+FilePlayer", "playing", "no: nothing plays on track main", "");
    row("the volume of the start", "powerOn();", "S+FilePlayer", "stored volume", "20 of media", "the audio manager starts");
    row("a master volume that was refused",
        "Platform.failOnce('Volume.setMasterVolume', 6, 1);" + music,
        "S+FilePlayer",
        "master volume",
        "0 percent, as after switching on; another one since then refused with 6, line #, the audio manager starts at 7.000 s",
        "");
    row("fade and balance",
        music + "AudioControl.setFadeBalance(3, -4);",
        "S+FilePlayer",
        "loudspeakers",
        "73 / 100 / 53 / 80 percent from fade 3, balance -4",
        "AudioControl.setFadeBalance(3, -4)");
    row("a loudspeaker that was refused",
        music + "Platform.failOnce('Volume.setFadeBalance', 8, 1); AudioControl.setFadeBalance(3, -4);",
        "S+FilePlayer",
        "loudspeakers",
        "100 / 100 / 53 / 80 percent from fade 3, balance -4; another one since then refused with 8, line #, AudioControl.setFadeBalance(3, -4) at 12.000 s",
        "AudioControl.setFadeBalance(3, -4)");
    const QByteArray given = music + "AudioControl.setStreamVolume(0, 'S+FilePlayer_APP', 40);";
    row("a volume that was given", given, "S+FilePlayer", "stored volume", "none: the volume was given as it is", "");
    row("sent as it was given", given, "S+FilePlayer", "sent volume", "40 of 148", "AudioControl.setStreamVolume(Main, \"S+FilePlayer_APP\", 40)");
    row("more than eight bits", music + "AudioPolicy.setVolume(0, 70, true);", "S+FilePlayer", "times 4", "280, of which the lower eight bits are 24", "");
    const QByteArray alternative = music + "AudioControl.setOutputSource(2, 'S+CarPlaySpeech_APP');";
    row("the alternative track's volume", alternative, "S+CarPlaySpeech", "sent volume", "90 of 148", "AudioPolicy.setVolume(Prompt, 15, true)");
    row("the alternative track's duck", alternative, "S+CarPlaySpeech", "duck", "none on track alternative", "");
    row("the HiCar call",
        music + "AudioPolicy.setVolume(5, 11, true);",
        "hicar_voice_callmodemspeaker10",
        "stored volume",
        "11 of HiCar call",
        "AudioPolicy.setVolume(HiCarCall, 11, true)");
    row("sent for the HiCar call",
        music + "AudioPolicy.setVolume(5, 11, true);",
        "hicar_voice_callmodemspeaker10",
        "sent volume",
        "66 of 148",
        "AudioPolicy.setVolume(HiCarCall, 11, true)");
    row("a custom curve",
        music + "AudioPolicy.adjustCustomEq(2, 15);",
        "S+FilePlayer",
        "equalizer",
        "type 7: 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 4 dB",
        "AudioPolicy.adjustCustomEq(2, 15)");
    row("a curve without a type",
        music + "AudioControl.setEqMode(1);",
        "S+FilePlayer",
        "equalizer",
        "unknown: the log does not say what it was set to; before that 2 dB in all bands",
        "AudioControl.setEqMode(?)");
    row("loudness", music + "AudioPolicy.setLoudNess(true);", "S+FilePlayer", "loudness", "on", "AudioPolicy.setLoudNess(true)");
}

void LogWhyTest::linksOfDrives()
{
    QFETCH(const QByteArray, drive);
    QFETCH(const QString, source);
    QFETCH(const QString, link);
    QFETCH(const QString, cause);
    const QJsonObject found = named(why(play(drive).text(), source), "links", link);
    QTEST(textOf(found).replace(QRegularExpression(QStringLiteral("line \\d+")), QStringLiteral("line #")), "text");
    QCOMPARE(found.value(QLatin1String("cause")).toString(), cause);
}

void LogWhyTest::otherwiseOfDrives_data()
{
    QTest::addColumn<QByteArray>("drive");
    QTest::addColumn<QString>("source");
    QTest::addColumn<QStringList>("otherwise"); // with # for the number of a line

    const auto row = [](const char *name, const QByteArray &drive, const char *source, const QStringList &otherwise) {
        QTest::newRow(name) << drive << QString::fromLatin1(source) << otherwise;
    };
    const QByteArray music(musicPlays);
    const QString down = QStringLiteral("one step down: 13 of media makes 52 of 148, -9.1 dB (0.6 dB less)");
    const QString up = QStringLiteral("one step up: 15 of media makes 60 of 148, -7.8 dB (0.6 dB more)");
    const QString prompt = QStringLiteral("ducked, in status CarPlayDuck: 15 of prompts makes 60 of 148, -12.3 dB (3.8 dB less)");
    const QString repeated = QStringLiteral("if the platform had refused line #: still 56 of 148, -8.4 dB (no difference)");
    row("music", music, "S+FilePlayer", {prompt, up, down, repeated});
    row("the loudest",
        music + "AudioPolicy.setVolume(0, 25, true);",
        "S+FilePlayer",
        {QStringLiteral("ducked, in status CarPlayDuck: 15 of prompts makes 60 of 148, -12.3 dB (8.9 dB less)"),
         QStringLiteral("one step down: 24 of media makes 96 of 148, -3.8 dB (0.4 dB less)"),
         QStringLiteral("if the platform had refused line #: still 56 of 148, -8.4 dB (5.0 dB less)")});
    row("no volume at all",
        music + "AudioPolicy.setVolume(0, 0, true);",
        "S+FilePlayer",
        {QStringLiteral("ducked, in status CarPlayDuck: 15 of prompts makes 60 of 148, -12.3 dB"),
         QStringLiteral("one step up: 1 of media makes 4 of 148, -31.4 dB"),
         QStringLiteral("if the platform had refused line #: still 56 of 148, -8.4 dB")});
    row("given as it is",
        music + "AudioControl.setStreamVolume(0, 'S+FilePlayer_APP', 40);",
        "S+FilePlayer",
        {QStringLiteral("in status None: 14 of media makes 56 of 148, -8.4 dB (2.9 dB more)"),
         QStringLiteral("ducked, in status CarPlayDuck: 15 of prompts makes 60 of 148, -12.3 dB (0.9 dB less)"),
         QStringLiteral("if the platform had refused line #: still 56 of 148, -8.4 dB (2.9 dB more)")});
    row("a source of no situation",
        music,
        "S+Mic",
        {QStringLiteral("one step up: 21 of media makes 84 of 148, -4.9 dB (0.4 dB more)"),
         QStringLiteral("one step down: 19 of media makes 76 of 148, -5.8 dB (0.4 dB less)"),
         QStringLiteral("if the platform had refused line #: still 0 of 148, silent")});
}

void LogWhyTest::otherwiseOfDrives()
{
    QFETCH(const QByteArray, drive);
    QFETCH(const QString, source);
    QStringList found;
    const QJsonArray all = why(play(drive).text(), source).value(QLatin1String("otherwise")).toArray();
    for (const QJsonValue &one : all) {
        QString what = one.toObject().value(QLatin1String("what")).toString();
        what.replace(QRegularExpression(QStringLiteral("line \\d+")), QStringLiteral("line #"));
        found.append(what + QStringLiteral(": ") + textOf(one.toObject()));
    }
    QTEST(found, "otherwise");
}

void LogWhyTest::unknownIsSaid_data()
{
    QTest::addColumn<QString>("link");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *link, const char *text) { QTest::newRow(link) << QString::fromLatin1(link) << QString::fromLatin1(text); };
    row("stored volume", "unknown, of telephony: the log has no start of the audio (the unit's settings file would settle it: --settings FILE)");
    row("sent volume", "unknown: the log has none for it");
    row("master volume", "unknown: the log has no start of the audio; taken for 100 percent");
    row("playing", "unknown: the log has no start of the audio, and does not say what plays on track main");
    row("duck", "unknown: the log has no start of the audio; taken for off");
    row("mute", "unknown: the log has no start of the audio; taken for off");
    row("loudspeakers", "unknown: the log has no start of the audio; taken for 100 / 100 / 100 / 100 percent");
    row("equalizer", "unknown: the log has no start of the audio (the unit's settings file would settle it: --settings FILE)");
    row("loudness", "unknown: the log has no start of the audio; taken for off");
}

void LogWhyTest::unknownIsSaid()
{
    QFETCH(const QString, link);
    // Behind the key that was pressed in the call.
    const qint64 begin = m_commute.line("_delaysetVolume() 242", m_commute.line("updateCurrentAudioVolume(bool) 273 -- false"));
    QVERIFY(begin > 0);
    const QJsonObject chain = why(m_commute.text(int(begin) - 1), QStringLiteral("S+BtPcmPhone"), {QStringLiteral("--at"), QStringLiteral("+1s")});
    const QJsonObject found = named(chain, "links", link);
    QTEST(textOf(found), "text");
    QCOMPARE(found.value(QLatin1String("known")), QJsonValue(false));
    QCOMPARE(chain.value(QLatin1String("known")), QJsonValue(false));
    QCOMPARE(chain.value(QLatin1String("level")), QJsonValue());
    QCOMPARE(textOf(chain), QStringLiteral("unknown, as its volume is"));
}

void LogWhyTest::laterLinesTellTheRest()
{
    // A status says what it makes its volume of, a duck what the media volume is.
    const Played call = play(QByteArray(callBegins) + callGoesOn);
    const qint64 status = call.line("updateAudioStatus", call.line("_handleVolumeTypeChanged status: 1"));
    const QByteArray ofCall = call.text(int(status) - 1);
    const QJsonObject telephony = named(why(ofCall, QStringLiteral("S+BtPcmPhone")), "links", QStringLiteral("stored volume"));
    QCOMPARE(textOf(telephony), QStringLiteral("18 of telephony"));
    QCOMPARE(telephony.value(QLatin1String("line")).toInt(), int(call.line("Auto adjust volume", status) - status + 1));
    QCOMPARE(telephony.value(QLatin1String("cause")).toString(), QStringLiteral("AudioPolicy.updateAudioStatus(BtTelephony)"));
    const Played prompt = play(QByteArray(musicPlays) + "AudioPolicy.aaDuckAudio(0, 0);");
    const QJsonObject media = why(prompt.text(int(prompt.line("aaDuckAudio")) - 1), QStringLiteral("S+FilePlayer"));
    QCOMPARE(textOf(named(media, "links", QStringLiteral("stored volume"))), QStringLiteral("14 of media"));
    QCOMPARE(textOf(named(media, "links", QStringLiteral("sent volume"))),
             QStringLiteral("unknown: the log has none for it; taken for 56 of 148, which the stored one makes"));
    QCOMPARE(textOf(media), QStringLiteral("-12.9 dB against full scale at the front left, without the equalizer, if it plays"));
}

void LogWhyTest::settingsTellTheRest()
{
    const qint64 begin = m_commute.line("_delaysetVolume() 242", m_commute.line("updateCurrentAudioVolume(bool) 273 -- false"));
    const QString settings = write("unit.ini", "[Volume]\n2=17\n[EQ]\nType=3\n");
    const QStringList options{QStringLiteral("--at"), QStringLiteral("+1s"), QStringLiteral("--settings"), settings};
    const QJsonObject chain = why(m_commute.text(int(begin) - 1), QStringLiteral("S+BtPcmPhone"), options);
    QCOMPARE(textOf(named(chain, "links", QStringLiteral("stored volume"))), QStringLiteral("17 of telephony, as the settings file has it"));
    QCOMPARE(named(chain, "links", QStringLiteral("stored volume")).value(QLatin1String("known")), QJsonValue(false));
    QCOMPARE(textOf(named(chain, "links", QStringLiteral("sent volume"))),
             QStringLiteral("unknown: the log has none for it; taken for 102 of 148, which the stored one makes"));
    QCOMPARE(textOf(named(chain, "links", QStringLiteral("equalizer"))), QStringLiteral("type 3, as the settings file has it"));
    QCOMPARE(textOf(chain), QStringLiteral("-3.2 dB against full scale at the front left, without the equalizer, if it plays"));
    const QJsonObject media = why(m_commute.text(int(begin) - 1), QStringLiteral("S+FilePlayer"), options);
    QCOMPARE(textOf(named(media, "links", QStringLiteral("stored volume"))),
             QStringLiteral("20 of media, the settings file has none, so the default: 20, or 25 with home UI type 7"));
    // What the log says counts more.
    const QJsonObject whole = why(m_commute.text(), QStringLiteral("S+FilePlayer"), {QStringLiteral("--settings"), settings});
    QCOMPARE(textOf(named(whole, "links", QStringLiteral("stored volume"))), QStringLiteral("14 of media"));
    QCOMPARE(textOf(named(whole, "links", QStringLiteral("equalizer"))), QStringLiteral("type 6: 2 dB in all bands"));
}

void LogWhyTest::aRequestMayBeHalfDone()
{
    const QByteArray log = "[    1.000] [DBG] 9 void ZelAudioManager::setVolume(ZelAudioType, int, bool) 205 -- 2 17 true 0\n"
                           "[    1.000] [DBG] 9 void ZelAudioManager::_handleChannelVolumeChanged(ZelAudioType, int) 224 -- 2 17\n"
                           "[    1.000] [DBG] 9 void audio::AudioControl::setStreamVolume(AudioTag, const char*, quint8) 185 -- 0 \"main\" tag\n"
                           "[    1.000] [DBG] 9 void audio::AudioControl::setStreamVolume(AudioTag, const char*, quint8) 185 -- S+CarPlayTelephony_APP "
                           "\"S+CarPlayTelephony\" src\n"
                           "[    1.000] [QT] [Audiocontrol] set stream S+CarPlayTelephony_APP 102\n"
                           "[    1.010] [DBG] 9 void audio::AudioControl::setStreamVolume(AudioTag, const char*, quint8) 185 -- 0 \"main\" tag\n"
                           "[    1.010] [DBG] 9 void audio::AudioControl::setStreamVolume(AudioTag, const char*, quint8) 185 -- S+BtPcmPhone "
                           "\"S+BtPcmPhone\" src\n"
                           "[    1.010] [QT] [Audiocontrol] set stream S+BtPcmPhone 102\n";
    const auto sent = [&](const char *source, const char *at) -> QString {
        return textOf(named(why(log, QLatin1String(source), {QStringLiteral("--at"), QLatin1String(at)}), "links", QStringLiteral("sent volume")));
    };
    QCOMPARE(sent("S+CarPlayTelephony", "1.005"), QStringLiteral("102 of 148"));
    QCOMPARE(sent("S+BtPcmPhone", "1.005"), QStringLiteral("unknown: the log has none for it; taken for 102 of 148, which the stored one makes"));
    QCOMPARE(sent("S+BtPcmPhone", "1.010"), QStringLiteral("102 of 148"));
}

void LogWhyTest::aRebootForgets()
{
    const qint64 drive = m_commute.line("setVolume(ZelAudioType, int, bool) 205 -- 0 12");
    const QByteArray log = m_commute.text() + m_commute.text(0, int(drive) - 1);
    const QJsonObject chain = why(log, QStringLiteral("S+FilePlayer"));
    QCOMPARE(textOf(named(chain, "links", QStringLiteral("duck"))), QStringLiteral("off, as after switching on"));
    QCOMPARE(textOf(named(chain, "links", QStringLiteral("playing"))), QStringLiteral("no: nothing plays on track main"));
    QCOMPARE(textOf(named(chain, "links", QStringLiteral("stored volume"))), QStringLiteral("20 of media"));
    // A question about the time before does not see it.
    const QJsonObject before = why(log, QStringLiteral("S+FilePlayer"), {QStringLiteral("--at"), QStringLiteral("+10s")});
    QCOMPARE(textOf(named(before, "links", QStringLiteral("playing"))), QStringLiteral("yes, on track main"));
    QCOMPARE(textOf(named(before, "links", QStringLiteral("stored volume"))), QStringLiteral("14 of media"));
}

void LogWhyTest::momentsAreFound_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("at");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *options, const char *source, const char *at, const char *level) {
        const QString text
            = qstrlen(level) == 0 ? QString() : QLatin1String(level) + QStringLiteral(" against full scale at the front left, without the equalizer");
        QTest::newRow(options) << QString::fromLatin1(options) << QString::fromLatin1(source) << QString::fromLatin1(at) << text;
    };
    row("--quietest", "S+FilePlayer", "73.000 s", "-12.9 dB");
    row("--loudest", "S+BtPcmPhone", "200.000 s", "-2.7 dB");
    row("--loudest --source S+FilePlayer_APP", "S+FilePlayer", "13.000 s", "-8.4 dB");
    row("--quietest --from +1s --to +60s", "S+FilePlayer", "8.000 s", "-9.8 dB");
    row("--quietest --from 80.0 --to 190.0", "S+FilePlayer", "80.000 s", "-8.4 dB");
    row("--loudest --from +490s", "S+FilePlayer", "497.000 s", "-8.4 dB");
    row("--loudest --source S+Mic", "", "", "");
}

void LogWhyTest::momentsAreFound()
{
    QFETCH(const QString, options);
    const QJsonObject chain = ask(m_commute.text(), options.split(QLatin1Char(' ')));
    QTEST(chain.value(QLatin1String("source")).toString(), "source");
    QTEST(chain.value(QLatin1String("at")).toString(), "at");
    QTEST(textOf(chain), "text");
}

void LogWhyTest::jumpsAreFound_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QStringList>("jumps"); // with # for the number of a line
    const auto row = [](const char *options, const QStringList &jumps) { QTest::newRow(options) << QString::fromLatin1(options) << jumps; };
    const QString duck = QStringLiteral("  1:06.000  line # at 73.000 s: file player, -8.4 dB -> -12.9 dB: AudioPolicy.aaDuckAudio(?, ?)");
    const QString unduck = QStringLiteral("  1:09.000  line # at 76.000 s: file player, -12.9 dB -> -8.4 dB: AudioPolicy.aaUnduckAudio(?)");
    const QString call = QStringLiteral("  3:13.000  line # at 200.000 s: Bluetooth telephone, -7.8 dB -> -2.7 dB: AudioPolicy.updateAudioStatus(BtTelephony)");
    const QString reverse = QStringLiteral("  8:13.000  line # at 500.000 s: file player, -8.4 dB -> -12.9 dB: AudioPolicy.onRecvBackCar(true)");
    row("--jumps 4", {duck, unduck, call, reverse});
    row("--jumps 5dB", {call});
    row("--jumps=6 dB", {QStringLiteral("No source became louder or quieter by 6 dB.")});
    row("--jumps 4db --source S+FilePlayer --from +1min", {duck, unduck, reverse});
    row("--jumps 4db --source S+FilePlayer --to +2min", {duck, unduck});
    row("--jumps 4db --source S+FilePlayer --from +67s", {unduck, reverse});
}

void LogWhyTest::jumpsAreFound()
{
    QFETCH(const QString, options);
    const QStringList words = options.contains(QLatin1Char('=')) ? QStringList(options) : options.split(QLatin1Char(' '));
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("COLUMNS"), QStringLiteral("200"));
    process.setProcessEnvironment(environment);
    process.setStandardInputFile(write("log", m_commute.text()));
    BenchProcess::start(process, QStringList(QStringLiteral("explain")) + words);
    QVERIFY(process.waitForFinished());
    QStringList jumps = QString::fromUtf8(process.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    jumps.replaceInStrings(QRegularExpression(QStringLiteral("line \\d+")), QStringLiteral("line #"));
    QTEST(jumps, "jumps");
    QCOMPARE(process.exitCode(), 0);
}

void LogWhyTest::peopleReadIt()
{
    const QByteArray log = play(QByteArray(callBegins) + callGoesOn).text();
    for (const int columns : {60, 100}) {
        const BenchProcess bench({QStringLiteral("explain"), QStringLiteral("--why"), QStringLiteral("S+BtPcmPhone"), write("log", log)},
                                 {},
                                 {{QStringLiteral("COLUMNS"), QString::number(columns)}});
        const QStringList lines = program::lines(bench.output);
        QVERIFY(lines.size() > 15);
        for (const QString &line : lines)
            QVERIFY2(line.size() <= columns, qPrintable(line));
        QCOMPARE(lines.first(), QStringLiteral("Bluetooth telephone, S+BtPcmPhone on track main, at 11.000 s"));
        QVERIFY(bench.output.contains(QStringLiteral("\nstored volume   18 of telephony (line ")));
        QVERIFY(bench.output.contains(QStringLiteral("\nso              -2.7 dB against full scale")));
        QVERIFY(bench.output.contains(QStringLiteral("\n  one step up: 19 of telephony makes 114 of 148, -2.3 dB")));
    }
}

void LogWhyTest::mistakesAreSaid_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("error");

    const QString help = QStringLiteral("; see qzaudio-bench explain --help");
    const auto row = [&help](const QString &options, const QString &error, bool isOfCommandLine = true) {
        QTest::newRow(qPrintable(options)) << options.split(QLatin1Char(' '))
                                           << QStringLiteral("qzaudio-bench: %1%2\n").arg(error, isOfCommandLine ? help : QString());
    };
    row(QStringLiteral("--at +1s"), QStringLiteral("--at goes with --why"));
    row(QStringLiteral("--why S+Mic --quietest"), QStringLiteral("--why, --quietest, --loudest and --jumps do not go together"));
    row(QStringLiteral("--quietest --at +1s"), QStringLiteral("--at does not go with --quietest"));
    row(QStringLiteral("--why S+Mic --from +1s"), QStringLiteral("--from does not go with --why"));
    row(QStringLiteral("--loudest --follow"), QStringLiteral("--follow does not go with --loudest"));
    row(QStringLiteral("--loudest -v"), QStringLiteral("--verbose does not go with --loudest"));
    row(QStringLiteral("--jumps 6dB --summary"), QStringLiteral("--summary does not go with --jumps"));
    row(QStringLiteral("--why S+Mic --only volume"), QStringLiteral("--only does not go with --why"));
    row(QStringLiteral("--why S+Mic --at noon"), QStringLiteral("--at is a time as in the log, 12:03:07, or from its first line on, +12s, not noon"));
    for (const char *const level : {"loud", "0dB", "-6", "nan", "dB"})
        row(QStringLiteral("--jumps=") + QLatin1String(level), QStringLiteral("--jumps is a level above 0, 6dB, not %1").arg(QLatin1String(level)));
    row(QStringLiteral("--why S+Mic --at +600s"), QStringLiteral("--at +600s is not in the log, which goes from 7.000 s to 509.500 s"));
    row(QStringLiteral("--why S+Mic --at 6.999"), QStringLiteral("--at 6.999 is not in the log, which goes from 7.000 s to 509.500 s"));
    row(QStringLiteral("--why S+Mic --at 12:03:07"), QStringLiteral("--at 12:03:07 is not in the log, which goes from 7.000 s to 509.500 s"));
    row(QStringLiteral("--quietest --from 12:03:07"), QStringLiteral("the log's lines have no such times as --from or --to; its first one is 7.000 s"));
    row(QStringLiteral("--why S+Mic --replay"), QStringLiteral("--replay does not go with --why"));
    row(QStringLiteral("--summary --settings x"), QStringLiteral("--settings goes with a question, --why and its like, --scenario or --replay"));
    row(QStringLiteral("--why Radio"), QStringLiteral("neither the log nor the library has a source Radio"));
    const QString folder = m_folder.path();
    row(QStringLiteral("--why S+Mic --settings ") + folder, folder + QStringLiteral(" is a folder, not a settings file"));
    row(QStringLiteral("--why S+Mic --settings %1/none").arg(folder), QStringLiteral("there is no file %1/none").arg(folder));
    const QString large = write("large.ini", QByteArray(1024 * 1024 + 1, ' '));
    row(QStringLiteral("--loudest --settings ") + large, large + QStringLiteral(": more than 1 MB, too large to be a settings file"), false);
}

void LogWhyTest::mistakesAreSaid()
{
    QFETCH(const QStringList, options);
    const BenchProcess bench = explain(m_commute.text(), options);
    QTEST(bench.errors, "error");
    QCOMPARE(bench.exitCode, 2);
    QCOMPARE(bench.output, QString());
}

QTEST_GUILESS_MAIN(LogWhyTest)
#include "tst_logwhy.moc"

#include "anydrive.h"
#include "benchprocess.h"

#include <explain/logstory.h>

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QRandomGenerator>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <algorithm>
#include <functional>

namespace
{

struct Happening
{
    qint64 time;
    QString text;
};

struct LogText
{
    qint64 time;
    QByteArray text;
};

/// What a run of "play" or "explain" told.
struct Told
{
    QVector<Happening> calls;
    QVector<Happening> timers;
    QVector<Happening> heard;
    QStringList requests;
    QStringList notes;
    QVector<Happening> headings;
    QVector<LogText> log;
};

/// Without the remark behind a call, which says why it was refused.
QString withoutRemark(const QString &call)
{
    QString text = call;
    return text.remove(QRegularExpression(QStringLiteral(" \\([^()]*\\)$")));
}

void read(const QJsonObject &object, Told &told, bool isCaused)
{
    const QString event = object.value(QLatin1String("event")).toString();
    const QString text = object.value(QLatin1String("text")).toString();
    const auto time = qint64(object.value(QLatin1String("time")).toDouble());
    const QJsonArray caused = object.value(QLatin1String("caused")).toArray();
    if (event == QLatin1String("call"))
        told.calls.append({time, withoutRemark(text)});
    else if (event == QLatin1String("log"))
        told.log.append({time, text.toUtf8()});
    else if (event == QLatin1String("heard"))
        told.heard.append({time, text});
    else if (event == QLatin1String("note"))
        told.notes.append(text);
    else if (event == QLatin1String("heading"))
        told.headings.append({time, text});
    // A mute that changes nothing leaves no line.
    else if (event == QLatin1String("request") && !isCaused && !(text.startsWith(QLatin1String("AudioControl.setMute")) && caused.isEmpty()))
        told.requests.append(text);
    // One that left nothing but lines did nothing.
    const bool didSomething = std::any_of(
        caused.cbegin(), caused.cend(), [](const QJsonValue &one) { return one.toObject().value(QLatin1String("event")) != QLatin1String("log"); });
    if (event == QLatin1String("timer") && didSomething)
        told.timers.append({time, text});
    for (const QJsonValue &one : caused)
        read(one.toObject(), told, true);
}

Told readOutput(const QString &output)
{
    Told told;
    const QStringList lines = program::lines(output);
    for (const QString &line : lines)
        read(QJsonDocument::fromJson(line.toUtf8()).object(), told, false);
    return told;
}

/// Calls that leave no line.
bool isSilent(const QString &call)
{
    constexpr const char *silent[] = {"Source.getActiveSource(", "Source.queryAlterNumber(", "App.setSpeakerDelay(", "Volume.getMicAnalogGain("};
    return std::any_of(std::begin(silent), std::end(silent), [&call](const char *begin) { return call.startsWith(QLatin1String(begin)); });
}

/// Whether a text with "?" for what is not known, and "one/other" for an operation that is one of two, can stand for another.
bool canBe(const QString &told, const QString &real)
{
    QString pattern = QRegularExpression::escape(told);
    pattern.replace(QLatin1String("\\?, \\?"), QLatin1String(".*")).replace(QLatin1String("(\\?)"), QLatin1String("(.*)"));
    pattern.replace(QLatin1String("\\(\\?\\)"), QLatin1String("\\(.*\\)")).replace(QLatin1String("\\?"), QLatin1String(".*"));
    pattern.replace(QRegularExpression(QStringLiteral("\\\\\\.(\\w+)\\\\?/(\\w+)")), QStringLiteral("\\.(\\1|\\2)"));
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(real).hasMatch();
}

QString textOf(const Happening &one)
{
    return QStringLiteral("%1 %2").arg(one.time).arg(one.text);
}

QString textOf(const QVector<Happening> &all)
{
    QStringList texts;
    for (const Happening &one : all)
        texts.append(textOf(one));
    return texts.join(QLatin1Char('\n'));
}

QStringList textsOf(const QVector<Happening> &all)
{
    QStringList texts;
    for (const Happening &one : all)
        texts.append(one.text);
    return texts;
}

/// Of a line that begins no operation, and belongs to none.
constexpr const char *unspelled = "the rest of an operation";

constexpr qint64 startOfLog = 1795349587000; // 2026-11-22 12:13:07 UTC
constexpr int process = 812;

QDateTime dateAt(qint64 time)
{
    return QDateTime::fromMSecsSinceEpoch(startOfLog + time, Qt::UTC);
}

QByteArray dated(qint64 time, const char *format)
{
    return QLocale::c().toString(dateAt(time), QString::fromLatin1(format)).toLatin1();
}

QByteArray jsonText(const QByteArray &text)
{
    const QByteArray array = QJsonDocument(QJsonArray{QString::fromUtf8(text)}).toJson(QJsonDocument::Compact);
    return array.mid(1, array.size() - 2);
}

using Writer = std::function<QByteArray(const LogText &)>;

QByteArray written(const QVector<LogText> &log, const Writer &write)
{
    QByteArray text;
    for (const LogText &line : log)
        text += write(line) + '\n';
    return text;
}

QByteArray dltText(const LogText &line)
{
    return "1 " + dated(line.time, "yyyy/MM/dd hh:mm:ss.zzz") + "000 1.2345 0 ECU1 PLAY AUDI 812 log debug verbose 1 " + line.text;
}

QByteArray kernelText(const LogText &line)
{
    return '[' + QByteArray::number(double(line.time) / 1000 + 7, 'f', 6).rightJustified(12) + "] " + line.text;
}

/// Counts, and looks at nothing.
class Counter : public LogStoryListener
{
public:
    void request(const LoggedRequest &request) override
    {
        ++requests;
        for (const LoggedRequest::Line &line : request.lines)
            QVERIFY(line.parent < int(request.lines.size()));
    }
    void note(qint64 /*time*/, quint64 /*line*/, const QString &text) override { notes.append(text); }
    void heading(qint64 /*time*/, quint64 /*line*/, const QString & /*text*/) override { }
    void reboot() override { ++reboots; }

    int requests = 0;
    int reboots = 0;
    QStringList notes;
};

} // namespace

class LogTimelineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aPlayedScenarioIsExplained_data();
    void aPlayedScenarioIsExplained();
    void anyDriveIsExplained_data();
    void anyDriveIsExplained();
    void whatIsNotWrittenIsAsSent_data();
    void whatIsNotWrittenIsAsSent();
    void neighboursAreToldApart_data();
    void neighboursAreToldApart();
    void whatIsHeardIsTheSame_data();
    void whatIsHeardIsTheSame();
    void eachFormGivesTheSame_data();
    void eachFormGivesTheSame();
    void refusalsAreTold();
    void oddLinesAreNoEnd_data();
    void oddLinesAreNoEnd();
    void twoProcessesAreToldApart();
    void aSecondThreadIsTold();
    void aRestartIsTold();
    void aRebootSilencesTheChip();
    void aLogMayBeginAnywhere();
    void aDamagedLogIsNoEnd();
    void focusIsTold();

private:
    Told play(const QString &scenario) const;
    QString write(const char *name, const QByteArray &text) const;
    Told explain(const QByteArray &log, const QStringList &options = {}) const;
    Told played(const char *scenario) const { return m_played.value(QLatin1String(scenario)); }

    QTemporaryDir m_folder;
    QMap<QString, Told> m_played;
};

Told LogTimelineTest::play(const QString &scenario) const
{
    const BenchProcess bench({QStringLiteral("play"), QStringLiteral("--json"), QStringLiteral("--log"), scenario});
    return readOutput(bench.output);
}

QString LogTimelineTest::write(const char *name, const QByteArray &text) const
{
    QFile file(m_folder.filePath(QLatin1String(name)));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("no file can be written");
    return file.fileName();
}

Told LogTimelineTest::explain(const QByteArray &log, const QStringList &options) const
{
    const BenchProcess bench(QStringList{QStringLiteral("explain"), QStringLiteral("--json")} + options + QStringList(write("log", log)));
    if (bench.exitCode != 0)
        qWarning("%s", qPrintable(bench.errors));
    return readOutput(bench.output);
}

void LogTimelineTest::initTestCase()
{
    if (!BenchProcess::canSupervise())
        QSKIP("no process that plays can be started here");
    const QDir scenarios(QStringLiteral(SCENARIOS));
    const QStringList files = scenarios.entryList({QStringLiteral("*.js")});
    for (const QString &file : files)
        m_played.insert(QFileInfo(file).completeBaseName(), play(scenarios.filePath(file)));
    QVERIFY(m_played.size() >= 9);
    QVERIFY(played("commute").log.size() > 500);
}

void LogTimelineTest::aPlayedScenarioIsExplained_data()
{
    QTest::addColumn<QString>("scenario");
    const QStringList names = m_played.keys();
    for (const QString &name : names)
        QTest::newRow(qPrintable(name)) << name;
}

void LogTimelineTest::aPlayedScenarioIsExplained()
{
    QFETCH(const QString, scenario);
    const Told played = m_played.value(scenario);
    const qint64 start = played.log.constFirst().time;
    const Told explained = explain(written(played.log, kernelText));

    // A HiCar call's volume that the facade was given directly leaves no line.
    QVector<Happening> expected;
    for (const Happening &call : played.calls) {
        if (!isSilent(call.text) && !(scenario == QLatin1String("steps") && call.text.contains(QLatin1String("hicar"))))
            expected.append({call.time - start, call.text});
    }
    QCOMPARE(explained.calls.size(), expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        QVERIFY2(explained.calls.at(i).time == expected.at(i).time && canBe(explained.calls.at(i).text, expected.at(i).text),
                 qPrintable(QStringLiteral("call %1: played %2, explained %3").arg(i).arg(textOf(expected.at(i)), textOf(explained.calls.at(i)))));
    }

    // Unmuting by hand while the mute's timer runs looks like the timer.
    QVector<Happening> timers;
    for (const Happening &timer : played.timers) {
        if (!timer.text.isEmpty())
            timers.append({timer.time - start, timer.text});
    }
    if (scenario == QLatin1String("mute"))
        QCOMPARE(explained.timers.size(), timers.size() + 1);
    else
        QCOMPARE(textOf(explained.timers), textOf(timers));

    // What applications ask of the policy is there in the same words.
    QStringList requests;
    for (const QString &request : played.requests) {
        if (request.startsWith(QLatin1String("AudioPolicy.")) && !(scenario == QLatin1String("mute") && request.contains(QLatin1String("deMute"))))
            requests.append(request.section(QLatin1String(" = "), 0, 0));
    }
    QStringList explainedRequests = explained.requests.filter(QRegularExpression(QStringLiteral("^AudioPolicy\\.(?!onRecvBackCar)")));
    QCOMPARE(explainedRequests.size(), requests.size());
    for (int i = 0; i < requests.size(); ++i)
        QVERIFY2(canBe(explainedRequests.at(i), requests.at(i)), qPrintable(requests.at(i) + QLatin1String(": ") + explainedRequests.at(i)));
    QCOMPARE(explained.notes.filter(QRegularExpression(QStringLiteral("^(?!focus)"))), QStringList());
    QVERIFY(!explained.requests.contains(QLatin1String(unspelled)));
}

void LogTimelineTest::anyDriveIsExplained_data()
{
    QTest::addColumn<uint>("seed");
    constexpr uint count = 30;
    for (uint seed = 1; seed <= count; ++seed)
        QTest::addRow("%u", seed) << seed;
}

void LogTimelineTest::anyDriveIsExplained()
{
    QFETCH(const uint, seed);
    constexpr int length = 80;
    const Told played = play(write("drive.js", anyDrive(seed, length)));
    const Told explained = explain(written(played.log, kernelText));
    QStringList expected;
    for (const Happening &call : played.calls) {
        if (!isSilent(call.text))
            expected.append(textOf({call.time - played.log.constFirst().time, call.text}));
    }
    QVERIFY(expected.size() > length);
    QCOMPARE(textOf(explained.calls).split(QLatin1Char('\n')), expected);
    QVector<Happening> timers;
    for (const Happening &timer : played.timers)
        timers.append({timer.time - played.log.constFirst().time, timer.text});
    QCOMPARE(textOf(explained.timers), textOf(timers));

    const QRegularExpression certain(QStringLiteral("^(AudioPolicy\\.(?!onRecvBackCar)|AudioControl\\.set(Stream|Fade|Mute))"));
    const QStringList asked = played.requests.filter(certain);
    const QStringList told = explained.requests.filter(certain);
    for (int i = 0; i < qMin(asked.size(), told.size()); ++i) {
        const QString request = QString(asked.at(i)).section(QStringLiteral(" = "), 0, 0);
        QVERIFY2(canBe(told.at(i), request), qPrintable(QStringLiteral("request %1: played %2, explained %3").arg(i).arg(request, told.at(i))));
    }
    QCOMPARE(told.size(), asked.size());
    QVERIFY(!explained.requests.contains(QLatin1String(unspelled)));
}

void LogTimelineTest::whatIsNotWrittenIsAsSent_data()
{
    QTest::addColumn<QByteArray>("scenario");
    QTest::addColumn<QString>("operation");
    QTest::addColumn<int>("least");

    const QByteArray refusing = "powerOn();\n"
                                "Platform.fail(\"Volume.setTrackVolume\", 7);\n"
                                "Platform.fail(\"Volume.setAlterTrackVolume\", 9);\n";
    QTest::newRow("refused volumes") << refusing + R"(
        for (const volume of [0, 5, 13, 24, 25, 37, 40])
            for (let type = 0; type < 6; ++type) {
                AudioPolicy.setVolume(type, volume, false);
                wait(1000);
            })" << QStringLiteral("Volume.set")
                                     << 150;
    QTest::newRow("refused volumes of statuses") << refusing + R"(
        for (const volume of [5, 13, 24, 40]) {
            for (let type = 0; type < 6; ++type)
                AudioPolicy.setVolume(type, volume, true);
            for (let status = -1; status < 21; ++status) {
                AudioPolicy.updateAudioStatus(status);
                wait(1000);
            }
        })" << QStringLiteral("Volume.set") << 150;
    QTest::newRow("steps of a group") << QByteArray(R"(powerOn();
        for (let channel = 0; channel < 21; ++channel) {
            AudioPolicy.updateAudioChannel(channel);
            AudioControl.changeMainTrackStepVolume(true);
            AudioControl.changeMainTrackStepVolume(false);
        })") << QStringLiteral("Volume.set")
                                      << 40;
    QTest::newRow("microphone amplifiers at the start") << QByteArray(R"(powerOn();
        for (const gain of [-3, 0, 4, 6, 8.5, 9, 11, 12, 17, 19.5, 21, 25, 27.5, 29, 30, 35, 38, 40, 46, 60]) {
            AudioPolicy.setMicAnalogGain(gain, gain);
            powerOff();
            powerOn();
        })") << QStringLiteral("Volume.setMic") << 40;
}

/// Where a line does not say what the platform was sent, it follows from the library's tables.
void LogTimelineTest::whatIsNotWrittenIsAsSent()
{
    QFETCH(const QByteArray, scenario);
    QFETCH(const QString, operation);
    QFETCH(const int, least);
    const Told played = play(write("drive.js", scenario));
    const Told explained = explain(written(played.log, kernelText));
    // Nor is how the HiCar call's own volume went.
    const QRegularExpression notWritten(QStringLiteral("(hicar.*) -> \\d"));
    const QStringList expected = textsOf(played.calls).filter(operation).replaceInStrings(notWritten, QStringLiteral("\\1"));
    const QStringList told = textsOf(explained.calls).filter(operation).replaceInStrings(notWritten, QStringLiteral("\\1"));
    QVERIFY2(expected.size() >= least, qPrintable(QString::number(expected.size())));
    QCOMPARE(told, expected);
}

void LogTimelineTest::neighboursAreToldApart_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QStringList>("requests");

    const QString unmute = QStringLiteral("[DBG] 9 void ZelAudioManager::setAudioMute(bool, int) 407 -- Set audio mute false");
    const QString asks = QStringLiteral("[DBG] 9 bool ZelAudioManager::isAttOn() 431 --");
    const QString muted = QStringLiteral("[QT] [Audiocontrol] set id: main to mute state: true");
    const QString unmuted = QStringLiteral("[QT] [Audiocontrol] set id: main to mute state: false");
    const QString request = QStringLiteral("AudioPolicy.setAudioMute(false, ?)");
    QTest::newRow("unmuted") << QStringList{unmute, asks, unmuted} << QStringList{request};
    QTest::newRow("muted by somebody else") << QStringList{unmute, asks, muted} << QStringList{request, QStringLiteral("AudioControl.setMute(true)")};
    QTest::newRow("the rear seats") << QStringList{unmute, asks, QStringLiteral("[QT] [Audiocontrol] set id: second to mute state: false")}
                                    << QStringList{request, QStringLiteral("AudioControl.muteBackEarphone(false)")};
    const QString duck = QStringLiteral("[DBG] 9 void ZelAudioManager::cpDuckAudio(int, int) 344 --");
    const QString unduck = QStringLiteral("[DBG] 9 void ZelAudioManager::cpUnduckAudio(int) 352 -- 0");
    QTest::newRow("reverse gear") << QStringList{QStringLiteral("[DBG] 9 void ZelAudioManager::onRecvBackCar(bool) 443 -- true"), duck, unduck}
                                  << QStringList{QStringLiteral("AudioPolicy.onRecvBackCar(true)"), QStringLiteral("AudioPolicy.cpUnduckAudio(?)")};
    const QString eqType = QStringLiteral("[DBG] 9 int ZelAudioManager::eqType() 474 --");
    const QString setEqType = QStringLiteral("[DBG] 9 void ZelAudioManager::setEqType(int) 490 -- xxxxxxx %1");
    QTest::newRow("the stored equalizer type") << QStringList{setEqType.arg(3), eqType, setEqType.arg(3)}
                                               << QStringList{QStringLiteral("AudioPolicy.setEqType(3)"), QStringLiteral("AudioPolicy.setEqType(100)")};
    QTest::newRow("another equalizer type") << QStringList{setEqType.arg(3), eqType, setEqType.arg(4)}
                                            << QStringList{QStringLiteral("AudioPolicy.setEqType(3)"),
                                                           QStringLiteral("AudioPolicy.eqType()"),
                                                           QStringLiteral("AudioPolicy.setEqType(4)")};
    const auto at = [](const char *time, const QString &line) -> QString { return QStringLiteral("[%1] %2").arg(QLatin1String(time), line); };
    QTest::newRow("the stored equalizer type, asked for a while before it is set")
        << QStringList{at("1.000", setEqType.arg(3)), at("2.000", eqType), at("2.500", setEqType.arg(3))}
        << QStringList{QStringLiteral("AudioPolicy.setEqType(3)"), QStringLiteral("AudioPolicy.eqType()"), QStringLiteral("AudioPolicy.setEqType(3)")};
    QTest::newRow("the stored equalizer type, in a log of whole seconds")
        << QStringList{at("1.000", setEqType.arg(3)), at("2.000", eqType), at("3.000", setEqType.arg(3))}
        << QStringList{QStringLiteral("AudioPolicy.setEqType(3)"), QStringLiteral("AudioPolicy.setEqType(100)")};
    const QString mute = QStringLiteral("[DBG] 9 void ZelAudioManager::setAudioMute(bool, int) 404 -- Set audio mute true");
    const QString isAttOn = QStringLiteral("[DBG] 9 bool ZelAudioManager::isAttOn() 431 --");
    QTest::newRow("a mute that lasts asks") << QStringList{at("1.000", mute), at("1.001", isAttOn)}
                                            << QStringList{QStringLiteral("AudioPolicy.setAudioMute(true, ?)")};
    QTest::newRow("asked a while after a mute") << QStringList{at("1.000", mute), at("1.500", isAttOn)}
                                                << QStringList{QStringLiteral("AudioPolicy.setAudioMute(true, ?)"), QStringLiteral("AudioPolicy.isAttOn()")};
    const QString key = QStringLiteral("[DBG] 9 void ZelAudioManager::updateCurrentAudioVolume(bool) 273 -- true");
    const QString getVolume = QStringLiteral("[DBG] 9 int ZelAudioManager::getVolume(ZelAudioType) 212 --");
    const QString keyVolume = QStringLiteral("[DBG] 9 void ZelAudioManager::updateCurrentAudioVolume(bool) 286 -- 0 13");
    QTest::newRow("a key") << QStringList{key, getVolume, keyVolume} << QStringList{QStringLiteral("AudioPolicy.updateCurrentAudioVolume(true)")};
    const QStringList keyAndQuestion{QStringLiteral("AudioPolicy.updateCurrentAudioVolume(true)"), QStringLiteral("AudioPolicy.getVolume(?)")};
    QTest::newRow("a key without an effect, and a question") << QStringList{key, getVolume} << keyAndQuestion;
    QTest::newRow("the same, and something else") << QStringList{key, getVolume, isAttOn}
                                                  << keyAndQuestion + QStringList(QStringLiteral("AudioPolicy.isAttOn()"));
}

void LogTimelineTest::neighboursAreToldApart()
{
    QFETCH(const QStringList, lines);
    QTEST(explain(lines.join(QLatin1Char('\n')).toUtf8()).requests, "requests");
}

void LogTimelineTest::whatIsHeardIsTheSame_data()
{
    QTest::addColumn<QString>("scenario");
    for (const char *const name : {"commute", "carplay", "mute", "power-on"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void LogTimelineTest::whatIsHeardIsTheSame()
{
    QFETCH(const QString, scenario);
    const Told played = m_played.value(scenario);
    const Told explained = explain(written(played.log, kernelText));
    QVector<Happening> expected;
    for (const Happening &heard : played.heard)
        expected.append({heard.time - played.log.constFirst().time, heard.text});
    QVERIFY(!expected.isEmpty());
    QCOMPARE(textOf(explained.heard), textOf(expected));
}

void LogTimelineTest::eachFormGivesTheSame_data()
{
    QTest::addColumn<QByteArray>("log");
    QTest::addColumn<int>("precision"); // ms; 0 for no time at all
    QTest::addColumn<QStringList>("options");

    const QVector<LogText> log = played("commute").log;
    const auto row = [&log](const char *name, int precision, const Writer &write, const QStringList &options = {}) {
        QTest::newRow(name) << written(log, write) << precision << options;
    };
    constexpr int second = 1000;
    row("none", 0, [](const LogText &line) -> QByteArray { return line.text; });
    row("CRLF", 0, [](const LogText &line) -> QByteArray { return line.text + '\r'; });
    row("Qt: time", second, [](const LogText &line) -> QByteArray { return dated(line.time, "yyyy-MM-ddThh:mm:ss") + " player[812]: " + line.text; });
    row("Qt: time process", 1, [](const LogText &line) -> QByteArray {
        return QByteArray::number(double(line.time) / second, 'f', 3).rightJustified(10) + ' ' + line.text;
    });
    row("Qt: a time, type, program and numbers", 1, [](const LogText &line) -> QByteArray {
        return dated(line.time, "yyyy-MM-dd hh:mm:ss.zzz") + " [debug] player(812) 812 default: " + line.text;
    });
    row("Qt: the time of day", 1, [](const LogText &line) -> QByteArray { return dated(line.time, "hh:mm:ss.zzz") + " debug " + line.text; });
    row("journalctl short", second, [](const LogText &line) -> QByteArray { return dated(line.time, "MMM dd hh:mm:ss") + " unit player[812]: " + line.text; });
    row("journalctl short-precise", 1, [](const LogText &line) -> QByteArray {
        return dated(line.time, "MMM dd hh:mm:ss.zzz") + "000 unit player[812]: " + line.text;
    });
    row("journalctl short-iso", second, [](const LogText &line) -> QByteArray {
        return dated(line.time, "yyyy-MM-ddThh:mm:ss") + "+0100 unit player[812]: " + line.text;
    });
    row("journalctl short-monotonic", 1, [](const LogText &line) -> QByteArray {
        return '[' + QByteArray::number(double(line.time) / second + 7, 'f', 6) + "] unit player[812]: " + line.text;
    });
    row("journalctl json", 1, [](const LogText &line) -> QByteArray {
        return "{\"__REALTIME_TIMESTAMP\":\"" + QByteArray::number((startOfLog + line.time) * 1000) + R"(","_PID":"812","MESSAGE":)" + jsonText(line.text)
            + '}';
    });
    row("journalctl export", 1, [](const LogText &line) -> QByteArray {
        return "__CURSOR=s=1\n__REALTIME_TIMESTAMP=" + QByteArray::number((startOfLog + line.time) * 1000) + "\nMESSAGE=" + line.text + "\n_PID=812\n";
    });
    row("RFC 3164", second, [](const LogText &line) -> QByteArray { return "<15>" + dated(line.time, "MMM dd hh:mm:ss") + " unit player[812]: " + line.text; });
    row("RFC 5424", 1, [](const LogText &line) -> QByteArray {
        return "<15>1 " + dated(line.time, "yyyy-MM-ddThh:mm:ss.zzz") + "Z unit player 812 - - " + line.text;
    });
    row("DLT", 1, dltText);
    row("kernel", 1, kernelText);
    row("--pattern",
        1,
        [](const LogText &line) -> QByteArray { return '#' + dated(line.time, "hhmmsszzz") + '#' + line.text; },
        {QStringLiteral("--pattern"), QStringLiteral("#%{time hhmmsszzz}#%{message}")});
}

void LogTimelineTest::eachFormGivesTheSame()
{
    QFETCH(const QByteArray, log);
    QFETCH(const int, precision);
    QFETCH(const QStringList, options);
    const Told expected = explain(written(played("commute").log, kernelText));
    const Told explained = explain(log, options);
    QCOMPARE(textsOf(explained.calls), textsOf(expected.calls));
    QCOMPARE(textsOf(explained.timers), textsOf(expected.timers));
    QCOMPARE(explained.requests, expected.requests);
    QCOMPARE(explained.notes, QStringList());
    for (int i = 0; i < expected.calls.size() && precision > 0; ++i)
        QVERIFY(qAbs(explained.calls.at(i).time - expected.calls.at(i).time) < precision);
}

void LogTimelineTest::refusalsAreTold()
{
    const Told explained
        = explain("[DBG] 9 void ZelAudioManager::setVolume(ZelAudioType, int, bool) 205 -- 3 20 true 0\n"
                  "[DBG] 9 void ZelAudioManager::_handleChannelVolumeChanged(ZelAudioType, int) 224 -- 3 20\n"
                  "[DBG] 9 void audio::AudioControl::setStreamVolume(AudioTag, const char*, quint8) 185 -- 0 \"main\" tag\n"
                  "[DBG] 9 void audio::AudioControl::setStreamVolume(AudioTag, const char*, quint8) 185 -- S+BtRingtone_APP \"S+BtRingtone\" src\n"
                  "[QT] [Error] [Audiocontrol] line: 193 set stream S+BtRingtone_APP err 7\n");
    QCOMPARE(explained.requests, QStringList(QStringLiteral("AudioPolicy.setVolume(Ring, 20, true)")));
    QCOMPARE(textsOf(explained.calls), QStringList(QStringLiteral("Volume.setTrackVolume(\"main\", \"S+BtRingtone\", 120) -> 7")));
}

void LogTimelineTest::oddLinesAreNoEnd_data()
{
    QTest::addColumn<QByteArray>("log");
    QTest::addColumn<QString>("note");

    const QVector<LogText> log = played("commute").log;
    const QByteArray text = written(log, kernelText);
    QTest::newRow("other programs") << written(log, [](const LogText &line) -> QByteArray {
        return "[    1.000000] usb 1-1: new device [1234]\n" + kernelText(line) + "\n\n[DBG";
    }) << QString();
    QTest::newRow("each line twice") << written(log, [](const LogText &line) -> QByteArray { return kernelText(line) + '\n' + kernelText(line); })
                                     << QStringLiteral("the same line twice; the second one is left out");
    QTest::newRow("a line that is cut") << text + "[   99.000000] [DBG] 12 void ZelAudioManager::setVol\n"
                                        << QStringLiteral("this looks like a line of the library, but is cut, or of another release or program");
    QTest::newRow("a line without an end") << text + "[   99.000000] [QT] [Audiocontrol] " + QByteArray(100000, 'a')
                                           << QStringLiteral("the line is longer than 64 kB and was cut");
    QTest::newRow("another form") << "?? [QT] [Audiocontrol] setMicGainCalibration\n"
            + text << QStringLiteral("what stands before the library's text is not understood, so its time is unknown; --pattern says what it is");
    QTest::newRow("no UTF-8") << text + "[QT] [Error] [Audiocontrol] line: 1 get sp track name failed. \"\xff\xfe\"\n"
                              << QStringLiteral("the line is not UTF-8");
}

void LogTimelineTest::oddLinesAreNoEnd()
{
    QFETCH(const QByteArray, log);
    QFETCH(const QString, note);
    const Told expected = explain(written(played("commute").log, kernelText));
    const Told explained = explain(log);
    QStringList calls = textsOf(explained.calls);
    calls.removeAll(QStringLiteral("Volume.setMicGainCalibration() -> 0"));
    QCOMPARE(calls, textsOf(expected.calls));
    QCOMPARE(explained.notes.isEmpty(), note.isEmpty());
    if (!note.isEmpty())
        QVERIFY2(explained.notes.constFirst() == note, qPrintable(explained.notes.join(QLatin1Char('\n'))));
}

void LogTimelineTest::twoProcessesAreToldApart()
{
    const QVector<LogText> one = played("commute").log;
    const QVector<LogText> other = played("carplay").log;
    const auto write = [](const LogText &line, int number) -> QByteArray {
        return dated(line.time, "yyyy-MM-ddThh:mm:ss.zzz") + " unit player[" + QByteArray::number(number) + "]: " + line.text + '\n';
    };
    QByteArray log;
    int taken = 0;
    for (const LogText &line : one) {
        log += write(line, process);
        for (; taken < other.size() && other.at(taken).time <= line.time; ++taken)
            log += write(other.at(taken), process + 1);
    }
    for (; taken < other.size(); ++taken)
        log += write(other.at(taken), process + 1);
    const Told explained = explain(log);
    QStringList expected = textsOf(explain(written(one, kernelText)).calls) + textsOf(explain(written(other, kernelText)).calls);
    QStringList calls = textsOf(explained.calls);
    expected.sort();
    calls.sort();
    QCOMPARE(calls, expected);
}

void LogTimelineTest::aSecondThreadIsTold()
{
    const QByteArray line = "[    1.000000] unit player[812]: [DBG] %1 void ZelAudioManager::setCpPhone(bool) 392 -- true\n";
    const auto of = [&line](const char *thread) -> QByteArray { return QByteArray(line).replace("%1", thread); };
    QCOMPARE(explain(of("812") + of("812")).notes, QStringList());
    const Told explained = explain(of("812") + of("813") + of("812"));
    QCOMPARE(explained.notes, QStringList(QStringLiteral("a second thread calls the audio manager, which is made for one")));
    QCOMPARE(explained.requests.size(), 3);
}

void LogTimelineTest::aRestartIsTold()
{
    const QVector<LogText> log = played("commute").log;
    QByteArray text = written(log, dltText);
    QByteArray again = text;
    again.replace(" 812 log", " 813 log").replace("2026/11/22", "2026/11/23");
    const Told explained = explain(text + again);
    QVERIFY(explained.headings.constFirst().text.startsWith(QLatin1String("The audio starts, ")));
    QVERIFY(std::any_of(explained.headings.cbegin(), explained.headings.cend(), [](const Happening &heading) {
        return heading.text.startsWith(QLatin1String("The audio starts again, PLAY (813), 2026-11-23 12:13:07.000"));
    }));
    QCOMPARE(textsOf(explained.calls), textsOf(explain(text).calls) + textsOf(explain(text).calls));
}

void LogTimelineTest::aRebootSilencesTheChip()
{
    const QByteArray text = written(played("commute").log, kernelText);
    const Told explained = explain(text + text);
    const QStringList headings = textsOf(explained.headings);
    QVERIFY(headings.contains(QLatin1String("The system starts again")));
    QVERIFY(explained.notes.constFirst().startsWith(QLatin1String("the clock goes back by ")));
    const QStringList heard = textsOf(explained.heard);
    const QStringList once = textsOf(explain(text).heard);
    QVERIFY2(heard == once + once || heard == once + QStringList(QStringLiteral("nothing")) + once, qPrintable(heard.join(QLatin1Char('\n'))));
}

void LogTimelineTest::aLogMayBeginAnywhere()
{
    const QVector<LogText> log = played("commute").log;
    const QStringList whole = textsOf(explain(written(log, kernelText)).calls);
    for (int begin = 1; begin < log.size(); begin += 37) {
        const Told explained = explain(written(log.mid(begin), kernelText));
        const QStringList calls = textsOf(explained.calls);
        QVERIFY(calls.size() <= whole.size());
        // The first request may be in pieces; what comes after it is as ever.
        const int sure = qMax(0, calls.size() - 40);
        QCOMPARE(calls.mid(calls.size() - sure), whole.mid(whole.size() - sure));
    }
}

void LogTimelineTest::aDamagedLogIsNoEnd()
{
    QByteArray whole;
    for (const Told &told : qAsConst(m_played))
        whole += written(told.log, dltText);
    constexpr uint seed = 20261122;
    QRandomGenerator random(seed);
    constexpr int rounds = 200;
    constexpr int size = 20000;
    for (int round = 0; round < rounds; ++round) {
        QByteArray log = whole.mid(random.bounded(whole.size() - size), size);
        for (int change = 0; change < 200; ++change) {
            const int at = random.bounded(log.size());
            switch (random.bounded(4)) {
            case 0:
                log[at] = char(random.bounded(256));
                break;
            case 1:
                log.remove(at, random.bounded(20));
                break;
            case 2:
                log.insert(at, log.mid(random.bounded(log.size()), random.bounded(100)));
                break;
            default:
                log.insert(at, "\"\\x(");
            }
        }
        Counter counter;
        LogFrames frames;
        LogClock clock;
        LogStory story(frames, clock, counter);
        quint64 number = 0;
        const QByteArrayList lines = log.split('\n');
        for (const QByteArray &line : lines)
            story.add({line.constData(), std::size_t(line.size())}, ++number, false);
        story.finish();
        QVERIFY(counter.requests > 0 || !counter.notes.isEmpty());
        QVERIFY(counter.notes.size() < 200);
    }
}

void LogTimelineTest::focusIsTold()
{
    const Told explained = explain(written(played("focus").log, kernelText));
    QCOMPARE(explained.notes.value(0), QStringLiteral("focus: \"music\" loses focus: LOSS_TRANSIENT_CAN_DUCK"));
    QCOMPARE(explained.notes.value(1), QStringLiteral("focus: \"music\" has focus again"));
    QCOMPARE(explain("unit qzaudio-focusd[5]: qzaudio-focusd: a call has focus, from :1.5\n").notes.value(0),
             QStringLiteral("focus: a call has focus, from :1.5"));
}

QTEST_GUILESS_MAIN(LogTimelineTest)
#include "tst_logtimeline.moc"

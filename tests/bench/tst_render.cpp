#include "benchprocess.h"
#include "wavefile.h"

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace
{

constexpr double toneLevel = 0.25;
constexpr double toneHertz = 1000;
constexpr double pi = 3.14159265358979323846;
constexpr double full = 148;

/// What 24 bits round, and single precision before them.
constexpr double rounding = 4.0 / 8388608;

/// Gains at the loudspeakers from a time on, in parts of 1.
struct Step
{
    int time; ///< ms
    std::array<double, 4> gains;
};

using Steps = QVector<Step>;

Step everywhere(int time, double gain)
{
    return {time, {gain, gain, gain, gain}};
}

QByteArray filePlayerAt(int volume)
{
    return "AudioControl.setStreamVolume(AudioControl.Main, 'S+FilePlayer_APP', " + QByteArray::number(volume) + ");\n";
}

/// Of a sound that is nowhere as it was before, but for each whole second.
double rampAt(int sample)
{
    return std::round(32768 * toneLevel * (sample % WaveFile::sampleRate) / WaveFile::sampleRate) / 32768;
}

/// The file player plays, at a volume of 80.
QByteArray playing()
{
    return "AudioControl.setMasterVolume(100);\n" + filePlayerAt(80) + "AudioControl.setOutputSource(AudioControl.Main, 'S+FilePlayer_APP');\n";
}

} // namespace

Q_DECLARE_METATYPE(Steps)

/// "render": what is in the samples. Text of the graph proves nothing.
class RenderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void eachSampleIsAsLoudAsTheChipSays_data();
    void eachSampleIsAsLoudAsTheChipSays();
    void halfTheVolumeIsSixDecibelsLess();
    void delaysAreThoseOfTheLoudspeakers();
    void bandsAreThoseOfTheEqualizer();
    void bandsChangeWithoutClicks();
    void loudnessRaisesTheBass();
    void twoEarsHearHalfOfEach();
    void promptsBeginAnew();
    void logSoundsLikeItsScenario();
    void failedScenarioSoundsUntilThen_data();
    void failedScenarioSoundsUntilThen();
    void reportTellsHowFarAPromptStandsAbove_data();
    void reportTellsHowFarAPromptStandsAbove();
    void reportCountsClippedSamples_data();
    void reportCountsClippedSamples();
    void scenarioMeasuresWhatItPlayed_data();
    void scenarioMeasuresWhatItPlayed();
    void scenarioMeasuresWhatTheReportTells();
    void scenarioNeedsTheProgramsToMeasure();
    void progressIsShownOnATerminal();
    void graphNeedsNoSound();
    void missingProgramsAreNamed_data();
    void missingProgramsAreNamed();
    void refusals_data();
    void refusals();

private:
    QString path(const char *name) const { return m_folder.filePath(QLatin1String(name)); }
    void writeScenario(const QByteArray &text) const;
    BenchProcess render(const QStringList &options) const;
    WaveFile rendered(const QByteArray &scenario, const QStringList &options = {}) const;
    QJsonObject report(const QByteArray &scenario) const;

    QTemporaryDir m_folder;
    QVector<double> m_tone; // a second
};

void RenderTest::initTestCase()
{
    for (const char *const program : {"ffmpeg", "espeak-ng"}) {
        if (QStandardPaths::findExecutable(QLatin1String(program)).isEmpty())
            QSKIP(qPrintable(QStringLiteral("%1 is not installed").arg(QLatin1String(program))));
    }
    if (!BenchProcess::canSupervise())
        QSKIP("an emulator runs one program only");
    for (int i = 0; i < WaveFile::sampleRate; ++i)
        m_tone.append(std::round(32768 * toneLevel * std::sin(2 * pi * toneHertz * i / WaveFile::sampleRate)) / 32768);
    QVERIFY(WaveFile::write(path("tone.wav"), m_tone));
    QVERIFY(WaveFile::write(path("silence.wav"), QVector<double>(WaveFile::sampleRate, 0)));
    QVector<double> bass;
    for (int i = 0; i < WaveFile::sampleRate; ++i)
        bass.append(toneLevel * std::sin(2 * pi * 20 * i / WaveFile::sampleRate));
    QVERIFY(WaveFile::write(path("bass.wav"), bass));
    QVector<double> peaks; // at each millisecond
    for (int i = 0; i < WaveFile::sampleRate; ++i)
        peaks.append(toneLevel * std::cos(2 * pi * toneHertz * i / WaveFile::sampleRate));
    QVERIFY(WaveFile::write(path("peaks.wav"), peaks));
    QVector<double> ramp;
    for (int i = 0; i < WaveFile::sampleRate; ++i)
        ramp.append(rampAt(i));
    QVERIFY(WaveFile::write(path("ramp.wav"), ramp));
    QFile noSound(path("text.wav"));
    QVERIFY(noSound.open(QIODevice::WriteOnly));
    noSound.write("This is no sound.\n");
}

void RenderTest::writeScenario(const QByteArray &text) const
{
    QFile file(path("drive.js"));
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(text);
}

BenchProcess RenderTest::render(const QStringList &options) const
{
    return BenchProcess(QStringList{QStringLiteral("render"), path("drive.js")} + options);
}

WaveFile RenderTest::rendered(const QByteArray &scenario, const QStringList &options) const
{
    writeScenario(scenario);
    QFile::remove(path("drive.wav"));
    const QStringList sound{QStringLiteral("--sound"), QStringLiteral("S+FilePlayer=") + path("tone.wav")};
    const BenchProcess bench = render(QStringList{QStringLiteral("-o"), path("drive.wav")} + sound + options);
    if (bench.exitCode != 0)
        qWarning("%s", qPrintable(bench.errors));
    return WaveFile::read(path("drive.wav"));
}

QJsonObject RenderTest::report(const QByteArray &scenario) const
{
    writeScenario(scenario);
    const BenchProcess bench = render({QStringLiteral("--report"),
                                       QStringLiteral("--json"),
                                       QStringLiteral("--sound"),
                                       QStringLiteral("S+FilePlayer=") + path("tone.wav"),
                                       QStringLiteral("--sound"),
                                       QStringLiteral("S+AndroidAuto=") + path("tone.wav")});
    if (bench.exitCode != 0)
        qWarning("%s", qPrintable(bench.errors));
    return QJsonDocument::fromJson(bench.output.toUtf8()).object();
}

void RenderTest::eachSampleIsAsLoudAsTheChipSays_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<Steps>("steps");
    QTest::addColumn<int>("length");
    const double at80 = 80 / full;
    const double at40 = 40 / full;

    QTest::newRow("volume 80, then 40") << playing() + "wait(1000);\n" + filePlayerAt(40) + "wait(500);" << QStringList()
                                        << Steps{everywhere(0, at80), everywhere(1000, at40)} << 1500;
    QTest::newRow("ducked at its second") << playing()
            + "AudioControl.setMainAudioDunkingTargetGain(50);\nwait(1000);\nAudioControl.setMainAudioDunkingMode(1);\n"
              "wait(337);\nAudioControl.setMainAudioDunkingMode(0);\nwait(200);"
                                          << QStringList() << Steps{everywhere(0, at80), everywhere(1000, at80 / 2), everywhere(1337, at80)} << 1537;
    QTest::newRow("in the middle of the car") << playing() + "AudioControl.setFadeBalance(0, 0);\nwait(300);" << QStringList() << Steps{everywhere(0, at80)}
                                              << 300;
    QTest::newRow("five steps to the left") << playing() + "AudioControl.setFadeBalance(0, 5);\nwait(300);" << QStringList()
                                            << Steps{{0, {at80, 0.67 * at80, at80, 0.67 * at80}}} << 300;
    QTest::newRow("to the right and to the front") << playing() + "wait(100);\nAudioControl.setFadeBalance(3, -5);\nwait(300);" << QStringList()
                                                   << Steps{everywhere(0, at80), {100, {0.67 * at80, at80, 0.47 * at80, 0.80 * at80}}} << 400;
    QTest::newRow("mute is digital silence") << playing() + "wait(501);\nAudioControl.setMute(true);\nwait(250);\nAudioControl.setMute(false);\nwait(100);"
                                             << QStringList() << Steps{everywhere(0, at80), everywhere(501, 0), everywhere(751, at80)} << 851;
    QByteArray restless = playing();
    Steps changes{everywhere(0, at80)};
    for (int i = 1; i <= 40; ++i) {
        const int volume = i * 37 % 149;
        restless += "wait(1);\n" + filePlayerAt(volume);
        changes.append(everywhere(i, volume / full));
    }
    QTest::newRow("another volume each millisecond") << restless + "wait(10);" << QStringList() << changes << 50;
    QTest::newRow("a source that is not routed") << filePlayerAt(80) + "AudioControl.setMasterVolume(100);\nwait(100);" << QStringList()
                                                 << Steps{everywhere(0, 0)} << 100;
    QTest::newRow("from and to") << playing() + "wait(1000);\n" + filePlayerAt(40) + "wait(500);"
                                 << QStringList{QStringLiteral("--from"), QStringLiteral("0:00.9"), QStringLiteral("--to"), QStringLiteral("1200ms")}
                                 << Steps{everywhere(0, at80), everywhere(100, at40)} << 300;
    QTest::newRow("squeezed") << playing() + "wait(60000);\n" + filePlayerAt(40) + "wait(100);\n" + filePlayerAt(20) + "wait(9000);"
                              << QStringList{QStringLiteral("--squeeze"), QStringLiteral("0.5s")}
                              << Steps{everywhere(0, at80), everywhere(500, at40), everywhere(600, at40 / 2)} << 1100;
}

void RenderTest::eachSampleIsAsLoudAsTheChipSays()
{
    QFETCH(QByteArray, script);
    QFETCH(QStringList, options);
    QFETCH(Steps, steps);
    QFETCH(int, length);
    constexpr int samplesPerMillisecond = 48;
    const WaveFile wave = rendered(script, options);
    QCOMPARE(wave.channels.size(), 4);
    QCOMPARE(wave.length(), length * samplesPerMillisecond);
    for (int channel = 0; channel < 4; ++channel) {
        int step = 0;
        for (int i = 0; i < wave.length(); ++i) {
            while (step + 1 < steps.size() && i >= steps.at(step + 1).time * samplesPerMillisecond)
                ++step;
            const double gain = steps.at(step).gains[std::size_t(channel)];
            const double expected = gain * m_tone.at(i % WaveFile::sampleRate);
            const double heard = wave.at(channel, i);
            if (std::abs(heard - expected) > rounding || (gain == 0 && heard != 0))
                QFAIL(qPrintable(QStringLiteral("channel %1, sample %2: %3 instead of %4").arg(channel).arg(i).arg(heard).arg(expected)));
        }
    }
}

void RenderTest::halfTheVolumeIsSixDecibelsLess()
{
    const WaveFile wave = rendered(playing() + "wait(1000);\n" + filePlayerAt(40) + "wait(1000);");
    QCOMPARE(wave.length(), 2 * WaveFile::sampleRate);
    const double difference = wave.level(0, 0, 1) - wave.level(0, 1, 2);
    QVERIFY2(std::abs(difference - 6.0206) < 0.001, qPrintable(QString::number(difference)));
}

void RenderTest::delaysAreThoseOfTheLoudspeakers()
{
    const WaveFile wave = rendered("AudioControl.setSpeakerDelay([0, 1.5, 2.5, 4, 0, 0]);\n" + playing()
                                   + "wait(500);\nAudioControl.setSpeakerDelay([0, 3, 0, 4, 0, 0]);\nwait(500);");
    QCOMPARE(wave.length(), WaveFile::sampleRate);
    struct Stretch
    {
        int from; // ms
        int to;
        std::array<int, 4> delays; // samples
    };
    for (const Stretch &stretch : {Stretch{5, 500, {0, 72, 120, 192}}, Stretch{510, 1000, {0, 144, 0, 192}}}) {
        for (int channel = 0; channel < 4; ++channel) {
            const int delay = stretch.delays[std::size_t(channel)];
            for (int i = stretch.from * 48; i < stretch.to * 48; ++i)
                QVERIFY2(std::abs(wave.at(channel, i) - 80 / full * m_tone.at(i - delay)) < rounding,
                         qPrintable(QStringLiteral("channel %1, sample %2").arg(channel).arg(i)));
        }
    }
    // Nothing comes before it can be there.
    QCOMPARE(wave.at(3, 191), 0.0);
    QVERIFY(wave.at(3, 193) != 0.0);
}

void RenderTest::bandsAreThoseOfTheEqualizer()
{
    // The ninth band is that of 1000 Hz.
    const WaveFile wave = rendered(playing()
                                   + "wait(1000);\nAudioControl.setEqGain([0, 0, 0, 0, 0, 0, 0, 0, 6, 0, 0, 0, 0, 0, 0, 0]);\nwait(1000);\n"
                                     "AudioControl.setEqGain([0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 12]);\nwait(1000);");
    QCOMPARE(wave.length(), 3 * WaveFile::sampleRate);
    for (int channel = 0; channel < 4; ++channel) {
        const double flat = wave.level(channel, 0.2, 0.9);
        const double raised = wave.level(channel, 1.2, 1.9) - flat;
        const double elsewhere = wave.level(channel, 2.2, 2.9) - flat;
        QVERIFY2(std::abs(raised - 6) < 0.001, qPrintable(QString::number(raised)));
        QVERIFY2(std::abs(elsewhere) < 0.1, qPrintable(QString::number(elsewhere)));
    }
}

void RenderTest::bandsChangeWithoutClicks()
{
    const WaveFile wave = rendered(playing()
                                       + "wait(503);\nAudioControl.setEqGain([0, 0, 0, 0, 0, 0, 0, 0, 6, 0, 0, 0, 0, 0, 0, 0]);\nwait(503);\n"
                                         "AudioControl.setEqGain([0, 0, 0, 0, 0, 0, 0, 0, -6, 0, 0, 0, 0, 0, 0, 0]);\nwait(503);",
                                   {QStringLiteral("--sound"), QStringLiteral("S+FilePlayer=") + path("peaks.wav")});
    QVERIFY(wave.length() > 0);
    const double loudest = toneLevel * 80 / full * std::pow(10, 6.0 / 20);
    const double steepest = loudest * 2 * std::sin(pi * toneHertz / WaveFile::sampleRate);
    const double step = loudest - toneLevel * 80 / full;
    double jump = 0;
    // It begins at a peak.
    for (int i = 1; i < wave.length(); ++i)
        jump = std::max(jump, std::abs(wave.at(0, i) - wave.at(0, i - 1)));
    QVERIFY2(jump <= steepest + step, qPrintable(QStringLiteral("%1 instead of %2").arg(jump).arg(steepest + step)));
}

void RenderTest::loudnessRaisesTheBass()
{
    const WaveFile wave = rendered(playing() + "wait(2000);\nAudioControl.setLoudnessSwitch(true);\nwait(2000);",
                                   {QStringLiteral("--sound"), QStringLiteral("S+FilePlayer=") + path("bass.wav")});
    QCOMPARE(wave.length(), 4 * WaveFile::sampleRate);
    const double raised = wave.level(0, 3, 4) - wave.level(0, 1, 2);
    QVERIFY2(std::abs(raised - 12) < 0.2, qPrintable(QString::number(raised)));
}

void RenderTest::twoEarsHearHalfOfEach()
{
    const WaveFile wave = rendered(playing() + "AudioControl.setFadeBalance(3, -5);\nwait(300);", {QStringLiteral("--for"), QStringLiteral("two-ears")});
    QCOMPARE(wave.channels.size(), 2);
    for (int i = 0; i < wave.length(); ++i) {
        QVERIFY(std::abs(wave.at(0, i) - (0.67 + 0.47) / 2 * 80 / full * m_tone.at(i)) < rounding);
        QVERIFY(std::abs(wave.at(1, i) - (1 + 0.80) / 2 * 80 / full * m_tone.at(i)) < rounding);
    }
}

void RenderTest::promptsBeginAnew()
{
    const WaveFile wave
        = rendered("powerOn();\nAudioControl.setEqGain([0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0]);\nAudioPolicy.setVolume(AudioPolicy.Prompt, 15, "
                   "true);\nwait(100);\nAudioPolicy.aaDuckAudio(0, 0);\nwait(1007);\n"
                   "AudioPolicy.aaUnduckAudio(0);\nwait(500);\nAudioPolicy.aaDuckAudio(0, 0);\nwait(1000);\nAudioPolicy.aaUnduckAudio(0);\nwait(100);",
                   {QStringLiteral("--sound"), QStringLiteral("S+AndroidAuto=") + path("ramp.wav")});
    QCOMPARE(wave.length(), 2707 * 48);
    // 15 * 4, boosted
    const double gain = 90 / full;
    for (int i = 0; i < wave.length(); ++i) {
        const int time = i / 48;
        const bool isFirst = time >= 100 && time < 1107;
        const bool isSecond = time >= 1607 && time < 2607;
        const int place = i - (isFirst ? 100 : 1607) * 48;
        const double expected = isFirst || isSecond ? gain * rampAt(place) : 0;
        QVERIFY2(std::abs(wave.at(0, i) - expected) < rounding,
                 qPrintable(QStringLiteral("sample %1: %2 instead of %3").arg(i).arg(wave.at(0, i)).arg(expected)));
    }
}

void RenderTest::logSoundsLikeItsScenario()
{
    const WaveFile wave
        = rendered("powerOn();\nAudioPolicy.setVolume(AudioPolicy.Media, 12, true);\nAudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);\n"
                   "wait(700);\nAudioPolicy.updateCurrentAudioVolume(true);\nwait(3000);\nAudioPolicy.aaDuckAudio(0, 0);\nwait(400);\n"
                   "AudioPolicy.aaUnduckAudio(0);\nwait(300);\nAudioPolicy.aaDuckAudio(0, 0);",
                   {QStringLiteral("--sound"), QStringLiteral("S+AndroidAuto=") + path("silence.wav")});
    QCOMPARE(wave.length(), 4400 * 48);
    QCOMPARE(BenchProcess({QStringLiteral("play"), path("drive.js"), QStringLiteral("--log-to"), path("drive.log")}).exitCode, 0);
    const BenchProcess bench({QStringLiteral("render"),
                              path("drive.log"),
                              QStringLiteral("-o"),
                              path("log.wav"),
                              QStringLiteral("--sound"),
                              QStringLiteral("S+FilePlayer=") + path("tone.wav"),
                              QStringLiteral("--sound"),
                              QStringLiteral("S+AndroidAuto=") + path("silence.wav")});
    QVERIFY2(bench.exitCode == 0, qPrintable(bench.errors));
    const WaveFile ofLog = WaveFile::read(path("log.wav"));
    QCOMPARE(ofLog.length(), wave.length());
    QVERIFY(wave.level(0, 1, 2) > -40);
    QCOMPARE(ofLog.channels, wave.channels);
}

void RenderTest::failedScenarioSoundsUntilThen_data()
{
    QTest::addColumn<QByteArray>("failure");
    QTest::addColumn<int>("length");
    QTest::newRow("an expectation") << QByteArray("expect(1).toBe(2);\n") << 500;
    QTest::newRow("an error") << QByteArray("nothing();\n") << 300;
}

void RenderTest::failedScenarioSoundsUntilThen()
{
    QFETCH(QByteArray, failure);
    QFETCH(int, length);
    writeScenario(playing() + "wait(300);\n" + failure + "wait(200);\n");
    QFile::remove(path("drive.wav"));
    const BenchProcess bench = render({QStringLiteral("-o"), path("drive.wav"), QStringLiteral("--sound"), QStringLiteral("S+FilePlayer=") + path("tone.wav")});
    QCOMPARE(bench.exitCode, 1);
    QVERIFY2(bench.errors.contains(QLatin1String("drive.js")), qPrintable(bench.errors));
    const WaveFile wave = WaveFile::read(path("drive.wav"));
    QCOMPARE(wave.length(), length * 48);
    QVERIFY(std::abs(wave.at(0, 12) - 80 / full * m_tone.at(12)) < rounding);
}

void RenderTest::reportTellsHowFarAPromptStandsAbove_data()
{
    QTest::addColumn<int>("prompt");
    QTest::addColumn<double>("above");
    QTest::addColumn<QString>("verdict");
    // The prompt is boosted, the music is at 48, of which 60 percent.
    QTest::newRow("too quiet") << 8 << 20 * std::log10(48 / 28.8) << QStringLiteral("too quiet");
    QTest::newRow("good") << 12 << 20 * std::log10(72 / 28.8) << QStringLiteral("good");
    QTest::newRow("too loud") << 24 << 20 * std::log10(144 / 28.8) << QStringLiteral("too loud");
}

void RenderTest::reportTellsHowFarAPromptStandsAbove()
{
    QFETCH(int, prompt);
    QFETCH(double, above);
    QFETCH(QString, verdict);
    const QJsonObject told = report(
        "say('Quiet');\nwait(1000);\npowerOn();\nAudioPolicy.setVolume(AudioPolicy.Media, 12, true);\nAudioPolicy.setVolume(AudioPolicy.Prompt, "
        + QByteArray::number(prompt)
        + ", true);\nsay('Music');\nAudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);\nwait(5000);\nAudioPolicy.aaDuckAudio(0, 0);\nwait(4000);\n"
          "AudioPolicy.aaUnduckAudio(0);\nwait(1000);");
    const QJsonArray prompts = told.value(QLatin1String("promptsAndCalls")).toArray();
    QCOMPARE(prompts.size(), 1);
    const QJsonObject one = prompts.at(0).toObject();
    QCOMPARE(one.value(QLatin1String("source")).toString(), QStringLiteral("S+AndroidAuto"));
    QCOMPARE(one.value(QLatin1String("from")).toInt(), 6000);
    QCOMPARE(one.value(QLatin1String("to")).toInt(), 10000);
    QCOMPARE(one.value(QLatin1String("verdict")).toString(), verdict);
    const double measured = one.value(QLatin1String("above")).toDouble();
    // The meter shows tenths.
    QVERIFY2(std::abs(measured - above) < 0.15, qPrintable(QString::number(measured)));
    const QJsonArray sections = told.value(QLatin1String("sections")).toArray();
    QCOMPARE(sections.size(), 2);
    QVERIFY(sections.at(0).toObject().value(QLatin1String("integrated")).isNull());
    QVERIFY(sections.at(1).toObject().value(QLatin1String("integrated")).isDouble());
}

void RenderTest::reportCountsClippedSamples_data()
{
    QTest::addColumn<int>("neighbour"); // gain of the band beside the highest one
    QTest::addColumn<bool>("isClipped");
    // 12 dB on a quarter of the range is nearly all of it.
    QTest::newRow("one band") << 0 << false;
    QTest::newRow("two bands") << 3 << true;
}

void RenderTest::reportCountsClippedSamples()
{
    QFETCH(int, neighbour);
    QFETCH(bool, isClipped);
    const QJsonObject told = report(playing() + filePlayerAt(148) + "AudioControl.setEqGain([0, 0, 0, 0, 0, 0, 0, " + QByteArray::number(neighbour)
                                    + ", 12, 0, 0, 0, 0, 0, 0, 0]);\nwait(1000);");
    const QJsonObject whole = told.value(QLatin1String("whole")).toObject();
    QCOMPARE(whole.value(QLatin1String("clippedSamples")).toInt() > 0, isClipped);
    const double measured = whole.value(QLatin1String("truePeak")).toDouble(-99);
    QVERIFY2(std::abs(measured) < 0.5, qPrintable(QString::number(measured)));
}

void RenderTest::scenarioMeasuresWhatItPlayed_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("message");
    const auto row = [](const char *name, const QByteArray &script, int status, const char *message) {
        QTest::newRow(name) << script << status << QString::fromLatin1(message);
    };
    const QByteArray over = "Sound.above('S+AndroidAuto', 'S+FilePlayer')";
    const QByteArray prompt = "function prompt(volume) { AudioPolicy.setVolume(AudioPolicy.Prompt, volume, true); AudioPolicy.aaDuckAudio(0, 0); wait(3000);"
                              "const distance = "
        + over + "; AudioPolicy.aaUnduckAudio(0); wait(100); return distance; }\n";
    row("twice as much is 6 LU", prompt + "const less = prompt(10);\nexpect(prompt(20) - less).toBeCloseTo(6.02, 0.11);", 0, "1 expectation held");
    row("ducked less is quieter",
        prompt + "const at60 = prompt(10);\nAudioPolicy.setVolume(AudioPolicy.Media, 24, true);\nexpect(prompt(10)).toBeCloseTo(at60 - 6.02, 0.11);",
        0,
        "1 expectation held");
    row("over all others", prompt + "prompt(10);\nexpect(Sound.above('S+AndroidAuto')).toBe(" + over + ");", 0, "1 expectation held");
    row("the other way round",
        prompt + "const distance = prompt(10);\nexpect(Sound.above('S+FilePlayer', 'S+AndroidAuto')).toBe(-distance);",
        0,
        "1 expectation held");
    row("too quiet", prompt + "expect(prompt(3)).toBeGreaterThan(6);", 1, "expected more than 6, got -");
    row("over silence", prompt + "AudioPolicy.setVolume(AudioPolicy.Media, 0, true);\nexpect(prompt(10)).toBe(Infinity);", 0, "1 expectation held");
    row("silence over silence", prompt + "AudioControl.setMute(true);\nprompt(10);", 1, "Error: neither S+AndroidAuto nor S+FilePlayer was to be heard");
    row("too short a time", "AudioPolicy.aaDuckAudio(0, 0);\nwait(399);\n" + over + ";", 1, "have not sounded together for 400 ms");
    row("long enough a time", "AudioPolicy.aaDuckAudio(0, 0);\nwait(400);\nexpect(" + over + ").toBeGreaterThan(-99);", 0, "1 expectation held");
}

void RenderTest::scenarioMeasuresWhatItPlayed()
{
    QFETCH(QByteArray, script);
    QFETCH(int, status);
    QFETCH(QString, message);
    writeScenario(
        "powerOn();\nAudioPolicy.setVolume(AudioPolicy.Media, 12, true);\nAudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);\nwait(3000);\n"
        + script);
    const BenchProcess bench({QStringLiteral("play"), path("drive.js")});
    QVERIFY2(bench.output.contains(message), qPrintable(bench.output + bench.errors));
    QCOMPARE(bench.exitCode, status);
}

void RenderTest::scenarioMeasuresWhatTheReportTells()
{
    writeScenario("powerOn();\nAudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);\nwait(2000);\nAudioPolicy.aaDuckAudio(0, 0);\nwait(3000);\n"
                  "say(Sound.above('S+AndroidAuto', 'S+FilePlayer').toFixed(1));\nAudioPolicy.aaUnduckAudio(0);\nwait(1000);");
    const BenchProcess bench = render({QStringLiteral("--report"), QStringLiteral("--json")});
    const QJsonObject told = QJsonDocument::fromJson(bench.output.toUtf8()).object();
    const double reported = told.value(QLatin1String("promptsAndCalls")).toArray().at(0).toObject().value(QLatin1String("above")).toDouble();
    const QJsonArray sections = told.value(QLatin1String("sections")).toArray();
    QCOMPARE(sections.size(), 2);
    const double measured = sections.at(1).toObject().value(QLatin1String("heading")).toString().toDouble();
    QVERIFY2(std::abs(measured - reported) < 0.05, qPrintable(QStringLiteral("%1 instead of %2").arg(measured).arg(reported)));
}

void RenderTest::scenarioNeedsTheProgramsToMeasure()
{
    writeScenario("powerOn();\nAudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);\nAudioPolicy.aaDuckAudio(0, 0);\nwait(1000);\n"
                  "Sound.above('S+AndroidAuto');");
    const QTemporaryDir none;
    // In this process's flash: nothing is found that makes another.
    const BenchProcess bench({QStringLiteral("play"), QStringLiteral("--in-process"), path("drive.js")}, {}, {{QStringLiteral("PATH"), none.path()}});
    QCOMPARE(bench.exitCode, 1);
    QVERIFY2(bench.output.contains(QLatin1String("drive.js:5: Error: ffmpeg is not installed: the Debian package ffmpeg has it\n")), qPrintable(bench.output));
}

void RenderTest::progressIsShownOnATerminal()
{
    writeScenario(playing() + "wait(1000);");
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
    QVERIFY(terminal >= 0 && grantpt(terminal) == 0 && unlockpt(terminal) == 0);
    QProcess process;
    process.setStandardErrorFile(QString::fromLocal8Bit(ptsname(terminal)));
    BenchProcess::start(process, {QStringLiteral("render"), path("drive.js"), QStringLiteral("-o"), path("progress.wav")});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 0);
    constexpr int most = 4096;
    QByteArray shown(most, '\0');
    shown.truncate(int(std::max(ssize_t(0), read(terminal, shown.data(), most))));
    close(terminal);
    QVERIFY2(shown.contains("\r######################### 100 %"), shown.constData());
    QVERIFY(shown.endsWith("\r\x1b[K"));
}

void RenderTest::graphNeedsNoSound()
{
    writeScenario(playing() + "wait(100);\n" + filePlayerAt(40) + "wait(100);");
    const BenchProcess bench = render({QStringLiteral("--graph")});
    QCOMPARE(bench.exitCode, 0);
    QVERIFY2(bench.output.contains(QLatin1String("[out]")), qPrintable(bench.output));
    QVERIFY2(bench.output.contains(QLatin1String("\n0.100 volume@v0s0 volume 0.27027027, ")), qPrintable(bench.output));
}

void RenderTest::missingProgramsAreNamed_data()
{
    QTest::addColumn<bool>("hasFfmpeg");
    QTest::addColumn<QString>("message");
    QTest::newRow("no FFmpeg") << false << QStringLiteral("qzaudio-bench: ffmpeg is not installed: the Debian package ffmpeg has it\n");
    QTest::newRow("no speech") << true << QStringLiteral("qzaudio-bench: espeak-ng is not installed: the Debian package espeak-ng has it\n");
}

void RenderTest::missingProgramsAreNamed()
{
    QFETCH(bool, hasFfmpeg);
    QFETCH(QString, message);
    writeScenario("powerOn();\nAudioPolicy.setVolume(AudioPolicy.Prompt, 12, true);\nAudioPolicy.aaDuckAudio(0, 0);\nwait(1000);");
    QCOMPARE(BenchProcess({QStringLiteral("play"), path("drive.js"), QStringLiteral("--log-to"), path("prompt.log")}).exitCode, 0);
    QTemporaryDir programs;
    if (hasFfmpeg)
        QVERIFY(QFile::link(QStandardPaths::findExecutable(QStringLiteral("ffmpeg")), programs.filePath(QStringLiteral("ffmpeg"))));
    const BenchProcess bench(
        {QStringLiteral("render"), path("prompt.log"), QStringLiteral("-o"), path("no.wav")}, {}, {{QStringLiteral("PATH"), programs.path()}});
    QCOMPARE(bench.exitCode, 2);
    QCOMPARE(bench.errors, message);
    QVERIFY(!QFile::exists(path("no.wav")));
}

void RenderTest::refusals_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("message");
    const QString output = QStringLiteral("-o");
    const QString anywhere = path("refused.wav");
    QTest::newRow("nothing to do") << QStringList() << QStringLiteral("render needs -o FILE, --report, --play or --graph");
    QTest::newRow("the standard output") << QStringList{output, QStringLiteral("-")} << QStringLiteral("--output needs the name of a file");
    QTest::newRow("a folder that is not there") << QStringList{output, QStringLiteral("/nowhere/drive.wav")}
                                                << QStringLiteral("/nowhere/drive.wav: No such file or directory");
    QTest::newRow("a full disk") << QStringList{output, QStringLiteral("/dev/full")} << QStringLiteral("No space left on device");
    QTest::newRow("a sound that is not there") << QStringList{output, anywhere, QStringLiteral("--sound"), QStringLiteral("S+FilePlayer=/nowhere/song.flac")}
                                               << QStringLiteral("/nowhere/song.flac: there is no such file that can be read");
    QTest::newRow("a sound that is none") << QStringList{output, anywhere, QStringLiteral("--sound"), QStringLiteral("S+FilePlayer=") + path("text.wav")}
                                          << path("text.wav") + QStringLiteral(" cannot be read as sound: ");
    QTest::newRow("a sound without a source") << QStringList{output, anywhere, QStringLiteral("--sound"), QStringLiteral("song.flac")}
                                              << QStringLiteral("--sound is a source and a file, S+FilePlayer=song.flac, not song.flac");
    QTest::newRow("for whom") << QStringList{output, anywhere, QStringLiteral("--for"), QStringLiteral("cats")}
                              << QStringLiteral("--for is loudspeakers or two-ears, not cats");
    QTest::newRow("a time") << QStringList{output, anywhere, QStringLiteral("--from"), QStringLiteral("noon")}
                            << QStringLiteral("--from is a time such as 5s or 1:06.5, not noon");
    QTest::newRow("beyond the end") << QStringList{output, anywhere, QStringLiteral("--from"), QStringLiteral("1s")}
                                    << QStringLiteral("there is nothing to hear from then on: the drive ends after 0.1 s");
    QTest::newRow("back in time")
        << QStringList{output, anywhere, QStringLiteral("--from"), QStringLiteral("50ms"), QStringLiteral("--to"), QStringLiteral("20ms")}
        << QStringLiteral("--to is a time after --from");
    if (QDir(QStringLiteral("/dev/snd")).entryList({QStringLiteral("pcm*p")}, QDir::System).isEmpty()) {
        QTest::newRow("no sound card") << QStringList{QStringLiteral("--play")}
                                       << QStringLiteral("this machine has no sound card to play on: -o FILE writes the sound\n");
    }
    QTest::newRow("no report") << QStringList{output, anywhere, QStringLiteral("--json")} << QStringLiteral("--json is a form of --report");
}

void RenderTest::refusals()
{
    QFETCH(QStringList, options);
    QFETCH(QString, message);
    writeScenario(playing() + "wait(100);");
    const BenchProcess bench = render(options);
    QCOMPARE(bench.exitCode, 2);
    QVERIFY2(bench.errors.contains(message), qPrintable(bench.errors));
    QVERIFY(!QFile::exists(path("refused.wav")));
}

QTEST_GUILESS_MAIN(RenderTest)

#include "tst_render.moc"

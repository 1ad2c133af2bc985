#include "benchprocess.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QStandardPaths>
#include <QtCore/QTemporaryDir>
#include <QtCore/QXmlStreamReader>
#include <QtTest/QtTest>

namespace
{

/// A drive whose expectation fails, behind something to draw.
const char *const failing = "powerOn();\n"
                            "AudioPolicy.updateAudioChannel(AudioPolicy.ChannelFilePlayer);\n"
                            "wait(1000);\n"
                            "expect(1).toBe(2);\n";

QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

} // namespace

class BenchPlotTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void subjectsAreDrawn_data();
    void subjectsAreDrawn();
    void mistakesAreSaid_data();
    void mistakesAreSaid();
    void localeDecidesTheCharacters();
    void svgGoesToTheStandardOutput();
    void svgGoesIntoAFile();
    void pngIsMade();
    void aMissingConverterIsNamed();
    void aFullDiskIsNoSuccess();
    void programsGetTheFigure_data();
    void programsGetTheFigure();
    void programsGetADrive();
    void aFailedScenarioIsDrawn();
    void aScenariosCurveIsTheRecord();
    void logsAreDrawn();

private:
    BenchProcess plot(const char *text, const BenchProcess::Environment &changed = {}) const;
    void write(const char *name, const QByteArray &text) const;

    QTemporaryDir m_folder;
};

BenchProcess BenchPlotTest::plot(const char *text, const BenchProcess::Environment &changed) const
{
    BenchProcess::Environment environment{{QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8")}};
    for (auto variable = changed.cbegin(); variable != changed.cend(); ++variable)
        environment.insert(variable.key(), variable.value());
    return BenchProcess(QStringList(QStringLiteral("plot")) + words(text), m_folder.path(), environment);
}

void BenchPlotTest::write(const char *name, const QByteArray &text) const
{
    QFile file(m_folder.filePath(QLatin1String(name)));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("no file can be written");
}

void BenchPlotTest::initTestCase()
{
    write("empty.log", "nothing of interest\n");
    write("failing.js", failing);
    write("fifteen.db", "[EQ]\nType=7\nCustom3=13\n");
}

void BenchPlotTest::subjectsAreDrawn_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("told");
    QTest::newRow("equalizer") << "equalizer"
                               << "mode and preset 6";
    QTest::newRow("curves") << "equalizer mode1 preset1 --gains 1,2,3,4,5,6,7,8,9,10,11,12,-12,0,0,0.5"
                            << "3 the gains given";
    QTest::newRow("fade") << "fade --fade -4 --balance 3"
                          << "Fade -4 (to the rear), balance 3 (to the left)";
    QTest::newRow("policy") << "policy"
                            << "10 CarPlayDuck: source of the channel";
    if (!BenchProcess::canSupervise())
        return;
    QTest::newRow("a drive") << "timeline commute"
                             << "8 at 8:13: Reverse gear: the music";
    QTest::newRow("some of a drive") << "timeline commute --from +60s --to +190s --squeeze 0"
                                     << "1:06";
    QTest::newRow("a drive's curve") << "equalizer commute --at +1s"
                                     << "commute at +1s: the highest point is 5.6 dB";
}

void BenchPlotTest::subjectsAreDrawn()
{
    QFETCH(const QString, arguments);
    QFETCH(const QString, told);
    for (const int width : {60, 200}) {
        const BenchProcess bench = plot(qPrintable(arguments), {{QStringLiteral("COLUMNS"), QString::number(width)}});
        QCOMPARE(bench.errors, QString());
        QCOMPARE(bench.exitCode, 0);
        QString text = bench.output;
        QVERIFY2(text.replace(QLatin1Char('\n'), QLatin1Char(' ')).contains(told), qPrintable(bench.output));
        const QStringList lines = bench.output.split(QLatin1Char('\n'));
        for (const QString &line : lines)
            QVERIFY2(line.size() <= width, qPrintable(line));
    }
}

void BenchPlotTest::mistakesAreSaid_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("said");
    QTest::addColumn<int>("status");
    QTest::newRow("a subject that there is not") << "loudness"
                                                 << "plot knows equalizer, fade, timeline, policy, not loudness" << 2;
    QTest::newRow("another kind of picture") << "policy -o picture.jpg"
                                             << "ends in .svg or .png" << 2;
    QTest::newRow("a folder that there is not") << "policy -o none/picture.svg"
                                                << "none/picture.svg: No such file" << 2;
    QTest::newRow("a picture for programs and people") << "policy --json -o picture.svg"
                                                       << "--json and --output do not go together" << 2;
    QTest::newRow("another subject's option") << "policy --fade 3"
                                              << "--fade goes with fade, not with policy" << 2;
    QTest::newRow("beyond the range") << "fade --fade 16"
                                      << "from -15 to 15" << 2;
    QTest::newRow("no steps") << "fade --balance x"
                              << "from -15 to 15" << 2;
    QTest::newRow("something more") << "fade 3"
                                    << "plot fade takes nothing more" << 2;
    QTest::newRow("fifteen gains") << "equalizer --gains 0,0,0,0,0,0,0,0,0,0,0,0,0,0,0"
                                   << "a curve has 16 gains, not 15" << 2;
    QTest::newRow("a curve that the library refuses") << "equalizer --settings fifteen.db"
                                                      << "fifteen.db: its custom curve has a gain beyond 12 dB" << 1;
    QTest::newRow("no settings") << "equalizer --settings none.db"
                                 << "there is no settings file none.db" << 2;
    QTest::newRow("too many curves") << "equalizer mode0 mode1 mode2 mode3 mode4 mode5 mode6 preset0 preset1"
                                     << "a chart holds 8 curves" << 2;
    QTest::newRow("a time of no drive") << "equalizer mode1 --at +3s"
                                        << "--at is a time of a scenario or log" << 2;
    QTest::newRow("no time") << "timeline empty.log --from noon"
                             << "--from is a time as in the log" << 2;
    QTest::newRow("no duration") << "timeline empty.log --squeeze much"
                                 << "--squeeze is a number of seconds" << 2;
    QTest::newRow("no drive") << "timeline"
                              << "plot timeline takes one scenario or log" << 2;
    QTest::newRow("no such log") << "timeline none.log"
                                 << "none.log: No such file" << 2;
    QTest::newRow("an empty log") << "timeline empty.log"
                                  << "no line of the audio library" << 3;
    QTest::newRow("colours of no kind") << "policy --color blue"
                                        << "--color is auto, always or never, not blue" << 2;
    if (!BenchProcess::canSupervise())
        return;
    QTest::newRow("no such scenario") << "timeline none.js"
                                      << "none.js: there is no such file" << 2;
    QTest::newRow("a clock that scenarios do not have") << "equalizer commute --at 12:03:07"
                                                        << "a scenario's times are from its beginning on" << 2;
    QTest::newRow("a clock that the log does not have") << "timeline commute --from 12:03:07"
                                                        << "no such times" << 2;
}

void BenchPlotTest::mistakesAreSaid()
{
    QFETCH(const QString, arguments);
    QFETCH(const QString, said);
    QFETCH(const int, status);
    const BenchProcess bench = plot(qPrintable(arguments));
    QVERIFY2(bench.errors.contains(said), qPrintable(bench.errors));
    QCOMPARE(bench.errors.count(QLatin1Char('\n')), 1);
    QCOMPARE(bench.exitCode, status);
    QCOMPARE(bench.output, QString());
}

void BenchPlotTest::localeDecidesTheCharacters()
{
    const auto isAscii
        = [](const QString &text) { return std::all_of(text.cbegin(), text.cend(), [](QChar character) { return character.unicode() < 0x80; }); };
    QVERIFY(!isAscii(plot("equalizer mode1").output));
    QVERIFY(isAscii(plot("equalizer mode1", {{QStringLiteral("LC_ALL"), QStringLiteral("C")}}).output));
}

void BenchPlotTest::svgGoesToTheStandardOutput()
{
    const BenchProcess bench = plot("policy -o -");
    QCOMPARE(bench.exitCode, 0);
    QXmlStreamReader reader(bench.output);
    QVERIFY(reader.readNextStartElement());
    QCOMPARE(reader.name().toString(), QStringLiteral("svg"));
    while (!reader.atEnd())
        reader.readNext();
    QVERIFY(!reader.hasError());
}

void BenchPlotTest::svgGoesIntoAFile()
{
    write("fade.svg", QByteArray(1000000, 'x'));
    const BenchProcess bench = plot("fade -o fade.svg");
    QCOMPARE(bench.exitCode, 0);
    QCOMPARE(bench.output, QString());
    QFile file(m_folder.filePath(QStringLiteral("fade.svg")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray svg = file.readAll();
    QVERIFY(svg.startsWith("<?xml"));
    QVERIFY(svg.endsWith("</svg>\n"));
}

void BenchPlotTest::pngIsMade()
{
    if (QStandardPaths::findExecutable(QStringLiteral("rsvg-convert")).isEmpty())
        QSKIP("there is no rsvg-convert, of the Debian package librsvg2-bin");
    if (!BenchProcess::canSupervise())
        QSKIP("an emulator runs one program only");
    const BenchProcess bench = plot("policy -o policy.png");
    QCOMPARE(bench.errors, QString());
    QCOMPARE(bench.exitCode, 0);
    QFile file(m_folder.filePath(QStringLiteral("policy.png")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray png = file.readAll();
    QVERIFY(png.startsWith("\x89PNG\r\n"));
    // The width stands in the first chunk, in pixels: twice that of the drawing.
    QCOMPARE(png.mid(16, 4).toHex(), QByteArray("00000780"));
}

void BenchPlotTest::aMissingConverterIsNamed()
{
    if (program::isEmulated())
        QSKIP("the emulator is found in PATH");
    const BenchProcess bench = plot("policy -o missing.png", {{QStringLiteral("PATH"), m_folder.path()}});
    QCOMPARE(bench.exitCode, 2);
    QVERIFY2(bench.errors.contains(QStringLiteral("rsvg-convert is missing, of the Debian package librsvg2-bin")), qPrintable(bench.errors));
    QCOMPARE(bench.errors.count(QLatin1Char('\n')), 1);
    QVERIFY(!QFile::exists(m_folder.filePath(QStringLiteral("missing.png"))));
}

void BenchPlotTest::aFullDiskIsNoSuccess()
{
    QVERIFY(QFile::link(QStringLiteral("/dev/full"), m_folder.filePath(QStringLiteral("full.svg"))));
    const BenchProcess bench = plot("policy -o full.svg");
    QCOMPARE(bench.exitCode, 2);
    QVERIFY2(bench.errors.contains(QStringLiteral("full.svg: No space left on device")), qPrintable(bench.errors));
}

void BenchPlotTest::programsGetTheFigure_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("kinds");
    QTest::addColumn<QByteArray>("part");
    QTest::newRow("equalizer") << "equalizer mode1"
                               << "charts table" << QByteArray(R"("logarithmic":true)");
    QTest::newRow("fade") << "fade --fade 4 --balance -9"
                          << "car maps" << QByteArray(R"("chosen":[24,11])");
    QTest::newRow("policy") << "policy"
                            << "graph" << QByteArray(R"("edges":[[0,0],[1,3])");
}

void BenchPlotTest::programsGetTheFigure()
{
    QFETCH(const QString, arguments);
    QFETCH(const QString, kinds);
    QFETCH(const QByteArray, part);
    const BenchProcess bench = plot(qPrintable(arguments + QStringLiteral(" --json")));
    QCOMPARE(bench.errors, QString());
    QCOMPARE(bench.exitCode, 0);
    QCOMPARE(bench.output.count(QLatin1Char('\n')), 1);
    const QJsonObject figure = QJsonDocument::fromJson(bench.output.toUtf8()).object();
    QStringList found;
    const QJsonArray panels = figure.value(QLatin1String("panels")).toArray();
    for (const QJsonValue &panel : panels)
        found.append(panel.toObject().value(QLatin1String("kind")).toString());
    QCOMPARE(found.join(QLatin1Char(' ')), kinds);
    QVERIFY2(bench.output.toUtf8().contains(part), qPrintable(bench.output));
    QVERIFY(!figure.value(QLatin1String("title")).toString().isEmpty());
}

void BenchPlotTest::programsGetADrive()
{
    if (!BenchProcess::canSupervise())
        QSKIP("no process that plays can be started here");
    const BenchProcess bench = plot("timeline commute --squeeze 0 --json");
    QCOMPARE(bench.exitCode, 0);
    const QJsonObject figure = QJsonDocument::fromJson(bench.output.toUtf8()).object();
    const QJsonArray panels = figure.value(QLatin1String("panels")).toArray();
    const QJsonObject status = panels.at(0).toObject().value(QLatin1String("lanes")).toArray().at(1).toObject();
    QCOMPARE(status.value(QLatin1String("name")).toString(), QStringLiteral("status"));
    const QJsonObject ringing{{QStringLiteral("from"), 189}, {QStringLiteral("to"), 193}, {QStringLiteral("label"), QStringLiteral("BtRing")}};
    QCOMPARE(status.value(QLatin1String("spans")).toArray().at(1).toObject(), ringing);
    // What comes in the last moment has no span any more.
    QCOMPARE(status.value(QLatin1String("spans")).toArray().last().toObject().value(QLatin1String("label")).toString(), QStringLiteral("CarPlayDuck"));
    QCOMPARE(status.value(QLatin1String("atEnd")).toString(), QStringLiteral("CarPlayRestore"));
    const QJsonObject charts = panels.at(1).toObject();
    const QJsonArray names{QStringLiteral("S+FilePlayer"), QStringLiteral("S+BtRingtone"), QStringLiteral("S+BtPcmPhone")};
    QCOMPARE(charts.value(QLatin1String("sources")).toArray(), names);
    const QJsonObject ringtone = charts.value(QLatin1String("charts")).toArray().at(0).toObject().value(QLatin1String("series")).toArray().at(1).toObject();
    QVERIFY(ringtone.value(QLatin1String("stepped")).toBool());
    const QJsonArray points = ringtone.value(QLatin1String("points")).toArray();
    QCOMPARE(points.at(0).toArray().at(0).toDouble(), 189.0);
    // Silence has no number.
    QCOMPARE(points.at(points.size() - 1).toArray(), QJsonArray({502.5, QJsonValue()}));
}

void BenchPlotTest::aFailedScenarioIsDrawn()
{
    if (!BenchProcess::canSupervise())
        QSKIP("no process that plays can be started here");
    const BenchProcess bench = plot("timeline failing.js");
    QCOMPARE(bench.exitCode, 1);
    QVERIFY2(bench.errors.contains(QStringLiteral("failing.js: the scenario failed")), qPrintable(bench.errors));
    QVERIFY2(bench.output.contains(QStringLiteral("FilePlayer")), qPrintable(bench.output));
}

void BenchPlotTest::aScenariosCurveIsTheRecord()
{
    if (!BenchProcess::canSupervise())
        QSKIP("no process that plays can be started here");
    write("curves.js",
          "AudioControl.setEqMode(3);\n"
          "wait(1000);\n"
          "AudioControl.setEqGain10([1, 2, 3, 4, 5, 6, 7, 8, 9, 10]);\n"
          "wait(1000);\n"
          "Platform.fail(\"App.setExtEqParameter\", 7);\n"
          "AudioControl.setEqGain10([0, 0, 0, 0, 0, 0, 0, 0, 0, 0]);\n");
    const QString first = plot("equalizer curves.js --at +0.5s").output;
    QVERIFY2(first.contains(QStringLiteral("400 Hz  1.5       4.0")), qPrintable(first));
    QVERIFY2(first.contains(QStringLiteral("7 kHz")), qPrintable(first));
    const QString last = plot("equalizer curves.js --at +2.5s").output;
    // What the platform refused changes nothing.
    QVERIFY2(last.contains(QStringLiteral(" 30 Hz    1       1.0")), qPrintable(last));
    QVERIFY2(last.contains(QStringLiteral("16 kHz    1      10.0")), qPrintable(last));
}

void BenchPlotTest::logsAreDrawn()
{
    if (!BenchProcess::canSupervise())
        QSKIP("no process that plays can be started here");
    const QString log = m_folder.filePath(QStringLiteral("commute.log"));
    QCOMPARE(BenchProcess({QStringLiteral("play"), QStringLiteral("--brief"), QStringLiteral("--log-to"), log, QStringLiteral("commute")}).exitCode, 0);
    const QString ofScenario = plot("timeline commute").output;
    const QString ofLog = plot("timeline commute.log").output;
    QVERIFY(ofLog.startsWith(QStringLiteral("commute.log\n")));
    // But for the headings, which only the scenario has.
    const auto drawing = [](const QString &text) {
        const int begin = text.indexOf(QLatin1String("\nstatus "));
        return text.mid(begin, text.indexOf(QLatin1String("\n1 at 0:00: ")) - begin);
    };
    QVERIFY(drawing(ofScenario).size() > 1000);
    QCOMPARE(drawing(ofLog), drawing(ofScenario));
    QVERIFY2(ofScenario.contains(QStringLiteral("8 at 8:13: Reverse gear: the music is ducked at once")), qPrintable(ofScenario));
    const QString curve = plot("equalizer commute.log --at +1s").output;
    QVERIFY2(curve.contains(QStringLiteral("the highest point is 5.6 dB")), qPrintable(curve));
}

QTEST_GUILESS_MAIN(BenchPlotTest)

#include "tst_benchplot.moc"

#include "benchprocess.h"
#include "equalizercurves.h"

#include <qzaudio/audiodatabase.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <cmath>

namespace
{

constexpr char twoPeaks[] = "# two peaks\n"
                            "Preamp: -6,5 dB\n"
                            "Filter 1: ON PK Fc 100 Hz Gain -4.2 dB Q 1.41\n"
                            "Filter 2: ON LP Fc 9000 Hz\n"
                            "Filter 3: ON PK Fc 2500 Hz Gain 5 dB Q 1\n"
                            "Filter 4: OFF PK Fc 30 Hz Gain 5 dB Q 1\n"
                            "nonsense\n";

QString settingsFile()
{
    return QStringLiteral("/media/flash/nvm/audioData.db");
}

QString readAll(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QJsonObject jsonOf(const BenchProcess &run)
{
    return QJsonDocument::fromJson(run.output.toUtf8()).object();
}

QVector<double> gainsOf(const QJsonObject &document)
{
    QVector<double> gains;
    const QJsonArray array = document.value(QLatin1String("gains")).toArray();
    for (const QJsonValue &gain : array)
        gains.append(gain.toDouble());
    return gains;
}

} // namespace

/// "equalizer": curves from text files, to them, and into settings files.
class BenchEqualizerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void wrongWords_data();
    void wrongWords();
    void completions_data();
    void completions();
    void wrongTexts_data();
    void wrongTexts();
    void bothCurves();
    void forPrograms();
    void manyProblems();
    void strict();
    void narrowOutput();
    void theCallIsAScripts();
    void exportedCurvesComeBack_data();
    void exportedCurvesComeBack();
    void settingsAreChangedInOnePlace();
    void settingsAreMade();
    void theLibrarysOwnSettings();
    void settingsThatCannotBeChanged_data();
    void settingsThatCannotBeChanged();
    void curveOfSettings_data();
    void curveOfSettings();

private:
    /// The path of a file with this text, in the test's folder.
    QString fileOf(const QString &name, const QByteArray &text) const;

    QScopedPointer<QTemporaryDir> folder;
};

void BenchEqualizerTest::init()
{
    folder.reset(new QTemporaryDir);
    QFile::remove(settingsFile());
}

QString BenchEqualizerTest::fileOf(const QString &name, const QByteArray &text) const
{
    QFile file(folder->filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("no file to read");
    return file.fileName();
}

void BenchEqualizerTest::wrongWords_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("complaint");

    const auto row = [](const char *line, const char *complaint) { QTest::newRow(line) << QString::fromLatin1(line) << QString::fromLatin1(complaint); };
    row("", "equalizer needs import or export; see");
    row("draw", "equalizer can import or export, not draw; see");
    row("import", "import takes one file; see");
    row("import a b", "import takes one file; see");
    row("import a --gains 1", "--gains does not go with import; see");
    row("import a --settings /tmp", "/tmp is a folder, not a settings file; see");
    row("import a --settings=", "--settings needs a name; see");
    row("export", "export takes one of these: a preset, --gains, --settings; see");
    row("export preset0 mode0", "export takes one of these");
    row("export preset0 --gains 0", "export takes one of these");
    row("export --strict preset0", "--strict does not go with export; see");
    row("export --json preset0", "--json does not go with export; see");
    row("export preset7", "there is no curve preset7, only preset0 to preset6 and mode0 to mode6; see");
    row("export mode7", "there is no curve mode7");
    row("export Preset0", "there is no curve Preset0");
    row("export --settings nowhere", "there is no file nowhere; see");
    row("export --gains 1,2,3,4,5,6,7,8,9,10,11,12,1,2,3", "a curve has 16 gains, not 15; see");
    row("export --gains 1,2,3,4,5,6,7,8,9,10,11,12,1,2,3,4,5", "a curve has 16 gains, not 17; see");
    row("export --gains=", "a curve has 16 gains, not 1; see");
    row("export --gains 0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,12.1", "a gain is a number from -12 to 12, not \"12.1\"; see");
    row("export --gains 0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,nan", "a gain is a number from -12 to 12, not \"nan\"; see");
    row("export --gains 0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,", "a gain is a number from -12 to 12, not \"\"; see");
}

void BenchEqualizerTest::wrongWords()
{
    QFETCH(QString, line);
    QFETCH(QString, complaint);

    const BenchProcess run(QStringList(QStringLiteral("equalizer")) + line.split(QLatin1Char(' '), Qt::SkipEmptyParts), folder->path());
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.output, QString());
    QVERIFY2(run.errors.startsWith(QStringLiteral("qzaudio-bench: ") + complaint), qPrintable(run.errors));
    QCOMPARE(program::lines(run.errors).size(), 1);
}

void BenchEqualizerTest::completions_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("answer"); // a path or none, then the words

    QTest::newRow("action") << "equalizer ex"
                            << "\nexport\n";
    QTest::newRow("text") << "equalizer import --strict x"
                          << "FILE\n";
    QTest::newRow("preset") << "equalizer export preset1"
                            << "\npreset1\n";
    QTest::newRow("mode") << "equalizer export mode"
                          << "\nmode0\nmode1\nmode2\nmode3\nmode4\nmode5\nmode6\n";
    QTest::newRow("nothing more") << "equalizer export preset1 p"
                                  << "\n";
    QTest::newRow("settings") << "equalizer export --settings x"
                              << "FILE\n";
    QTest::newRow("what is not for people") << "equalizer --st"
                                            << "\n--strict\n";
}

void BenchEqualizerTest::completions()
{
    QFETCH(QString, line);
    QFETCH(QString, answer);

    const BenchProcess run(QStringList{QStringLiteral("help"), QStringLiteral("--complete"), QStringLiteral("--")} + line.split(QLatin1Char(' ')));
    QCOMPARE(run.output, answer);
}

void BenchEqualizerTest::wrongTexts_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("complaint");

    QTest::newRow("missing") << "missing" << QByteArray() << 2 << "qzaudio-bench: missing: No such file or directory\n";
    QTest::newRow("folder") << "." << QByteArray() << 2 << "qzaudio-bench: .: file to open is a directory\n";
    QTest::newRow("empty") << "text" << QByteArray("") << 3 << "qzaudio-bench: text: there is no filter in it\n";
    QTest::newRow("a preamp alone") << "text" << QByteArray("Preamp: -6 dB\n") << 3 << "qzaudio-bench: text: there is no filter in it\n";
    QTest::newRow("something else") << "text" << QByteArray("hello\n") << 3
                                    << "text:1: neither a filter nor a list nor a preamp; left out\nqzaudio-bench: text: there is no filter in it\n";
    QTest::newRow("acts on a terminal") << "text" << QByteArray("Filter 1: ON \x1b[31m\n") << 3
                                        << "text:1: \"\\x1b[31M\" is no kind of filter; left out\nqzaudio-bench: text: there is no filter in it\n";
    QTest::newRow("too large") << "text" << QByteArray(1024 * 1024 + 1, '\n') << 2 << "qzaudio-bench: text: more than 1 MB, too large to be an equalizer's\n";
}

void BenchEqualizerTest::wrongTexts()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, text);
    QFETCH(int, status);
    QFETCH(QString, complaint);

    if (!text.isNull())
        fileOf(name, text);
    const QStringList command = {QStringLiteral("equalizer"), QStringLiteral("import"), name};
    for (const QStringList &form : {command, command + QStringList{QStringLiteral("--json")}}) {
        const BenchProcess run(form, folder->path());
        QCOMPARE(run.errors, complaint);
        QCOMPARE(run.output, QString());
        QCOMPARE(run.exitCode, status);
    }
}

void BenchEqualizerTest::bothCurves()
{
    fileOf(QStringLiteral("text"), twoPeaks);
    const BenchProcess run({QStringLiteral("equalizer"), QStringLiteral("import"), QStringLiteral("text")}, folder->path());
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.errors,
             QStringLiteral("text:4: the unit's bands cannot do a filter of the kind LP; left out\n"
                            "text:7: neither a filter nor a list nor a preamp; left out\n"));
    QVERIFY2(run.output.startsWith(QLatin1String("text: 2 filters, 1 filter off, preamp -6.5 dB, which the unit has not\n\nfrequency wanted dB")),
             qPrintable(run.output));
    QRegularExpression row(QStringLiteral("^ *([0-9.]+) (k?)Hz +([-+0-9.]+) +([-+0-9.]+) +([-+0-9.]+)$"), QRegularExpression::MultilineOption);
    int rows = 0;
    for (auto found = row.globalMatch(run.output); found.hasNext(); ++rows) {
        const QRegularExpressionMatch match = found.next();
        const double frequency = match.captured(1).toDouble() * (match.captured(2).isEmpty() ? 1 : 1000);
        const double wanted = EqualizerResponse::level({{100, 1.41, -4.2}, {2500, 1, 5}}, frequency);
        QVERIFY2(std::abs(match.captured(3).toDouble() - wanted) < 0.051, qPrintable(match.captured()));
        QVERIFY2(std::abs(match.captured(4).toDouble() - match.captured(3).toDouble() - match.captured(5).toDouble()) < 0.151, qPrintable(match.captured()));
    }
    QCOMPARE(rows, 31);
    QVERIFY2(run.output.contains(QRegularExpression(QStringLiteral("\nError from 20 Hz to 20 kHz: 0\\.[0-9]+ dB on the average"))), qPrintable(run.output));
    QVERIFY2(run.output.contains(QLatin1String("\nHeadroom: ")), qPrintable(run.output));
    QVERIFY2(run.output.contains(QRegularExpression(QStringLiteral("\nAudioControl\\.setEqGain\\(\\[([-0-9.]+, ){15}[-0-9.]+\\]\\);\n$"))),
             qPrintable(run.output));
}

void BenchEqualizerTest::forPrograms()
{
    QProcess process;
    BenchProcess::start(process, {QStringLiteral("equalizer"), QStringLiteral("import"), QStringLiteral("-"), QStringLiteral("--json")});
    process.write(twoPeaks);
    process.closeWriteChannel();
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 0);
    QCOMPARE(process.readAllStandardError(), QByteArray());
    const QJsonObject document = QJsonDocument::fromJson(process.readAllStandardOutput()).object();
    QCOMPARE(document.value(QLatin1String("file")).toString(), QStringLiteral("-"));
    QCOMPARE(document.value(QLatin1String("filters")).toInt(), 2);
    QCOMPARE(document.value(QLatin1String("filtersOff")).toInt(), 1);
    QCOMPARE(document.value(QLatin1String("lists")).toInt(-1), 0);
    QCOMPARE(document.value(QLatin1String("preamp")).toDouble(), -6.5);
    const QJsonArray problems = document.value(QLatin1String("problems")).toArray();
    QCOMPARE(problems.size(), 2);
    QCOMPARE(problems.at(1).toObject(),
             (QJsonObject{{QStringLiteral("line"), 7}, {QStringLiteral("text"), QStringLiteral("neither a filter nor a list nor a preamp")}}));

    const QVector<double> gains = gainsOf(document);
    QCOMPARE(gains.size(), 16);
    EqualizerCurves::Gains given;
    std::copy(gains.cbegin(), gains.cend(), given.begin());
    const EqualizerResponse::Bands bands = EqualizerCurves::ofGains(given);
    const QJsonArray curve = document.value(QLatin1String("curve")).toArray();
    QCOMPARE(curve.size(), 200);
    double sum = 0;
    for (const QJsonValue &value : curve) {
        const QJsonObject point = value.toObject();
        const double frequency = point.value(QLatin1String("frequency")).toDouble();
        const double got = point.value(QLatin1String("got")).toDouble();
        const double wanted = point.value(QLatin1String("wanted")).toDouble();
        QCOMPARE(got + 100, EqualizerResponse::level(bands, frequency) + 100);
        QCOMPARE(wanted + 100, EqualizerResponse::level({{100, 1.41, -4.2}, {2500, 1, 5}}, frequency) + 100);
        sum += (got - wanted) * (got - wanted);
    }
    QCOMPARE(document.value(QLatin1String("meanError")).toDouble(), std::sqrt(sum / curve.size()));
    QCOMPARE(document.value(QLatin1String("highest")).toObject().value(QLatin1String("level")).toDouble(), EqualizerResponse::highestPoint(bands).level);
    QCOMPARE(document.value(QLatin1String("bands")).toArray().at(15).toObject().value(QLatin1String("frequency")).toDouble(), 20000.0);
}

void BenchEqualizerTest::manyProblems()
{
    fileOf(QStringLiteral("text"), QByteArray("Filter: ON PK Fc 100 Hz Gain 1 dB Q 1\n") + QByteArray("what\n").repeated(25));
    const BenchProcess run({QStringLiteral("equalizer"), QStringLiteral("import"), QStringLiteral("text")}, folder->path());
    QCOMPARE(run.exitCode, 0);
    const QStringList lines = program::lines(run.errors);
    QCOMPARE(lines.size(), 21);
    QCOMPARE(lines.at(19), QStringLiteral("text:21: neither a filter nor a list nor a preamp; left out"));
    QCOMPARE(lines.at(20), QStringLiteral("text: \u2026 and 5 more lines like these"));
}

void BenchEqualizerTest::strict()
{
    fileOf(QStringLiteral("text"), twoPeaks);
    const QStringList command = {QStringLiteral("equalizer"), QStringLiteral("import"), QStringLiteral("--strict"), QStringLiteral("text")};
    const BenchProcess refused(command + QStringList{QStringLiteral("--json")}, folder->path());
    QCOMPARE(refused.exitCode, 1);
    QCOMPARE(refused.output, QString());
    QCOMPARE(refused.errors,
             QStringLiteral("text:4: the unit's bands cannot do a filter of the kind LP\n"
                            "text:7: neither a filter nor a list nor a preamp\n"));

    // What is understood is not refused, even if it can only be had nearly.
    fileOf(QStringLiteral("text"), "Filter 1: ON LS Fc 100 Hz Gain 3 dB\n");
    const BenchProcess taken(command, folder->path());
    QCOMPARE(taken.exitCode, 0);
    QCOMPARE(taken.errors, QStringLiteral("text:1: the unit has no shelf; its bands come as near as they can\n"));
}

void BenchEqualizerTest::narrowOutput()
{
    fileOf(QStringLiteral("text"), "GraphicEQ: 20 40; 20000 40\n");
    const BenchProcess run(
        {QStringLiteral("equalizer"), QStringLiteral("import"), QStringLiteral("text")}, folder->path(), {{QStringLiteral("COLUMNS"), QStringLiteral("40")}});
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.output.simplified().contains(QLatin1String("At their limit of 12 dB: 50 Hz, 80 Hz, 125 Hz,")), qPrintable(run.output));
    const QStringList lines = program::lines(run.output);
    for (const QString &line : lines)
        QVERIFY2(line.size() <= 40 || line.startsWith(QLatin1String("AudioControl.")), qPrintable(line));
}

void BenchEqualizerTest::theCallIsAScripts()
{
    fileOf(QStringLiteral("text"), twoPeaks);
    const BenchProcess import({QStringLiteral("equalizer"), QStringLiteral("import"), QStringLiteral("text")}, folder->path());
    const QStringList lines = program::lines(import.output);
    const QString &call = lines.last();
    const QString expectations = QStringLiteral("const gains = %1;\n"
                                                "gains.forEach((gain, band) => expect(Platform.equalizerGain(1, band)).toBe(gain));\n"
                                                "expect(gains.length).toBe(16);\n")
                                     .arg(call.mid(call.indexOf(QLatin1Char('[')), call.indexOf(QLatin1Char(']')) - call.indexOf(QLatin1Char('[')) + 1));
    fileOf(QStringLiteral("call.js"), (call + QLatin1Char('\n') + expectations).toUtf8());
    const BenchProcess played({QStringLiteral("play"), QStringLiteral("--brief"), QStringLiteral("--strict"), QStringLiteral("call.js")}, folder->path());
    QVERIFY2(played.exitCode == 0, qPrintable(played.output + played.errors));
}

void BenchEqualizerTest::exportedCurvesComeBack_data()
{
    QTest::addColumn<QStringList>("what");
    QTest::addColumn<QVector<double>>("gains");

    for (int type = 0; type < EqualizerCurves::customPreset; ++type) {
        const EqualizerCurves::Gains gains = EqualizerCurves::gainsOfPreset(type);
        QTest::addRow("preset%d", type) << QStringList(QStringLiteral("preset%1").arg(type)) << QVector<double>(gains.begin(), gains.end());
    }
    QTest::newRow("gains") << QStringList{QStringLiteral("--gains"), QStringLiteral("-1,-2,3.5,0,0,0,0,0, 12 -12,0,0,0,0,0.1 , -0.1")}
                           << QVector<double>{-1, -2, 3.5, 0, 0, 0, 0, 0, 12, -12, 0, 0, 0, 0, 0.1, -0.1};
}

void BenchEqualizerTest::exportedCurvesComeBack()
{
    QFETCH(QStringList, what);
    QFETCH(QVector<double>, gains);

    const BenchProcess exported(QStringList{QStringLiteral("equalizer"), QStringLiteral("export")} + what);
    QCOMPARE(exported.exitCode, 0);
    QCOMPARE(exported.errors, QString());
    fileOf(QStringLiteral("text"), exported.output.toUtf8());
    const BenchProcess imported(
        {QStringLiteral("equalizer"), QStringLiteral("import"), QStringLiteral("--strict"), QStringLiteral("--json"), QStringLiteral("text")}, folder->path());
    QCOMPARE(imported.exitCode, 0);
    QCOMPARE(gainsOf(jsonOf(imported)), gains);
    QVERIFY(jsonOf(imported).value(QLatin1String("meanError")).toDouble() < 1e-9);
}

void BenchEqualizerTest::settingsAreChangedInOnePlace()
{
    if (!BenchProcess::canSupervise())
        QSKIP("the emulator runs one program only");
    fileOf(QStringLiteral("text"), twoPeaks);
    const QString file = fileOf(QStringLiteral("unit.db"), "[EQ]\nCustom3=8\nType=3\n\n[Mine]\nkey=7\n\n[Volume]\n0=11\n");
    QFile::setPermissions(file, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    const BenchProcess run({QStringLiteral("equalizer"),
                            QStringLiteral("import"),
                            QStringLiteral("text"),
                            QStringLiteral("--json"),
                            QStringLiteral("--settings"),
                            QStringLiteral("unit.db")},
                           folder->path());
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.exitCode, 0);
    const QVector<double> gains = gainsOf(jsonOf(run));
    QCOMPARE(gains.size(), 16);
    const QSettings settings(file, QSettings::IniFormat);
    QCOMPARE(settings.allKeys().size(), 19);
    QCOMPARE(settings.value(QStringLiteral("Mine/key")).toInt(), 7);
    QCOMPARE(settings.value(QStringLiteral("Volume/0")).toInt(), 11);
    QCOMPARE(QFile::permissions(file) & (QFileDevice::ReadGroup | QFileDevice::ReadOther), QFileDevice::Permissions());
    // Nothing is left beside it.
    QCOMPARE(QDir(folder->path()).entryList(QDir::Files), (QStringList{QStringLiteral("text"), QStringLiteral("unit.db")}));

    // The unit's store finds it.
    QVERIFY(QFile::copy(file, settingsFile()));
    audio::AudioDataBase store;
    QCOMPARE(store.eqType(), 7);
    for (int band = 0; band < gains.size(); ++band)
        QCOMPARE(double(store.getCustomEQ(band)), gains.at(band));
}

void BenchEqualizerTest::settingsAreMade()
{
    if (!BenchProcess::canSupervise())
        QSKIP("the emulator runs one program only");
    fileOf(QStringLiteral("text"), "GraphicEQ: 20 0; 1000 0; 2000 4; 4000 0\n");
    const BenchProcess run(
        {QStringLiteral("equalizer"), QStringLiteral("import"), QStringLiteral("text"), QStringLiteral("--settings"), QStringLiteral("new.db")},
        folder->path());
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.output.endsWith(QLatin1String("\nStored in new.db as the custom curve, which is in use now.\n")), qPrintable(run.output));
    const QSettings settings(folder->filePath(QStringLiteral("new.db")), QSettings::IniFormat);
    QCOMPARE(settings.allKeys().size(), 17);
    QCOMPARE(settings.value(QStringLiteral("EQ/Type")).toInt(), 7);
    QCOMPARE(settings.value(QStringLiteral("EQ/Custom9")).toInt(), 4);

    // And gives the curve back.
    const BenchProcess exported({QStringLiteral("equalizer"), QStringLiteral("export"), QStringLiteral("--settings"), QStringLiteral("new.db")},
                                folder->path());
    QCOMPARE(exported.exitCode, 0);
    QVERIFY2(exported.output.startsWith(QLatin1String("# curve in use in new.db\nPreamp: -4")), qPrintable(exported.output));
    QVERIFY2(exported.output.contains(QLatin1String("\nFilter 10: ON PK Fc 2000 Hz Gain 4 dB Q 2\n")), qPrintable(exported.output));
}

void BenchEqualizerTest::theLibrarysOwnSettings()
{
    fileOf(QStringLiteral("text"), "Filter: ON PK Fc 125 Hz Gain -6 dB Q 1\n");
    const BenchProcess run({QStringLiteral("equalizer"), QStringLiteral("import"), QStringLiteral("text"), QStringLiteral("--settings"), settingsFile()},
                           folder->path());
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.exitCode, 0);
    audio::AudioDataBase store;
    QCOMPARE(store.eqType(), 7);
    QCOMPARE(store.getCustomEQ(2), -6);
    QCOMPARE(store.getCustomEQ(3), 0);
}

void BenchEqualizerTest::settingsThatCannotBeChanged_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("complaint");

    QTest::newRow("damaged") << "unit.db" << QByteArray("[EQ\nTy!pe") << 1 << "qzaudio-bench: unit.db: some of it is not written as settings are\n";
    QTest::newRow("too large") << "unit.db" << QByteArray(1024 * 1024 + 1, '\n') << 1
                               << "qzaudio-bench: unit.db: more than 1 MB, too large to be a settings file\n";
    QTest::newRow("no folder") << "missing/unit.db" << QByteArray() << 2 << "qzaudio-bench: missing/unit.db: No such file or directory\n";
}

void BenchEqualizerTest::settingsThatCannotBeChanged()
{
    if (!BenchProcess::canSupervise())
        QSKIP("the emulator runs one program only");
    QFETCH(QString, file);
    QFETCH(QByteArray, text);
    QFETCH(int, status);
    QFETCH(QString, complaint);

    fileOf(QStringLiteral("text"), "Filter: ON PK Fc 125 Hz Gain -6 dB Q 1\n");
    if (!text.isNull())
        fileOf(file, text);
    const BenchProcess run({QStringLiteral("equalizer"), QStringLiteral("import"), QStringLiteral("text"), QStringLiteral("--settings"), file}, folder->path());
    QCOMPARE(run.errors, complaint);
    QCOMPARE(run.exitCode, status);
    QVERIFY(!run.output.contains(QLatin1String("Stored")));
    QCOMPARE(readAll(folder->filePath(file)), QString::fromUtf8(text));
}

void BenchEqualizerTest::curveOfSettings_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("line"); // of the curve, or the complaint

    QTest::newRow("a preset") << QByteArray("[EQ]\nType=3\nCustom0=8\n") << 0 << "Filter 1: ON PK Fc 50 Hz Gain 6 dB Q 1";
    QTest::newRow("nothing stored") << QByteArray("[Volume]\n0=3\n") << 0 << "Filter 1: ON PK Fc 50 Hz Gain 2 dB Q 1";
    QTest::newRow("the custom curve") << QByteArray("[EQ]\nType=7\nCustom0=8\n") << 0 << "Filter 1: ON PK Fc 50 Hz Gain 8 dB Q 1";
    QTest::newRow("unknown type") << QByteArray("[EQ]\nType=9\n") << 0 << "Filter 1: ON PK Fc 50 Hz Gain 4.8 dB Q 1";
    QTest::newRow("a gain that is refused") << QByteArray("[EQ]\nType=7\nCustom0=14\n") << 1
                                            << "qzaudio-bench: unit.db: its custom curve has a gain beyond 12 dB, which a unit refuses";
    QTest::newRow("a gain that does not count") << QByteArray("[EQ]\nType=1\nCustom0=14\n") << 0 << "Filter 1: ON PK Fc 50 Hz Gain 5 dB Q 1";
    QTest::newRow("too large") << QByteArray(1024 * 1024 + 1, '\n') << 1 << "qzaudio-bench: unit.db: more than 1 MB, too large to be a settings file";
}

void BenchEqualizerTest::curveOfSettings()
{
    QFETCH(QByteArray, text);
    QFETCH(int, status);
    QFETCH(QString, line);

    fileOf(QStringLiteral("unit.db"), text);
    const BenchProcess run({QStringLiteral("equalizer"), QStringLiteral("export"), QStringLiteral("--settings"), QStringLiteral("unit.db")}, folder->path());
    QCOMPARE(run.exitCode, status);
    const QStringList lines = program::lines(status == 0 ? run.output : run.errors);
    QVERIFY2(lines.contains(line), qPrintable(run.output + run.errors));
}

QTEST_GUILESS_MAIN(BenchEqualizerTest)
#include "tst_benchequalizer.moc"

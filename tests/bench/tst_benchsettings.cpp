#include "benchprocess.h"
#include "settingsreader.h"

#include <qzaudio/audiodatabase.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QRandomGenerator>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <cstdio>
#include <iterator>
#include <limits>

namespace
{

QString settingsFile()
{
    return QStringLiteral("/media/flash/nvm/audioData.db");
}

/// The path of a file with this text.
QString fileOf(const QTemporaryDir &folder, const QByteArray &text)
{
    QFile file(folder.filePath(QStringLiteral("settings")));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("no file to read");
    return file.fileName();
}

} // namespace

/// "settings": the table, the JSON and the changes, of files written by the store and by hand.
class BenchSettingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void withoutFile();
    void table();
    void defaultsAreTheStores();
    void keysAreTheStores();
    void watch();
    void watchHostileFile();
    void mistypedName_data();
    void mistypedName();
    void unreadableFile();
    void inEffect_data();
    void inEffect();
    void inEffectOfDamagedFiles();
    void problems_data();
    void problems();
    void marks();
    void tooLargeFile_data();
    void tooLargeFile();
    void readsAsQtDoes_data();
    void readsAsQtDoes();
    void storedNumbers();
    void serializedObjects_data();
    void serializedObjects();
    void unseenCharacters_data();
    void unseenCharacters();
    void longTexts();
    void binaryFile();
    void manyKeys();

private:
    static void compareWithStore();
    static QJsonObject setting(const QJsonObject &document, const QString &key);
    static QJsonObject json(const QStringList &file = {});
    static QJsonObject json(const QString &file);
};

void BenchSettingsTest::init()
{
    QFile::remove(settingsFile());
    QFile::remove(settingsFile() + QStringLiteral(".damaged"));
}

QJsonObject BenchSettingsTest::json(const QString &file)
{
    return json(QStringList(file));
}

QJsonObject BenchSettingsTest::json(const QStringList &file)
{
    const BenchProcess bench(QStringList{QStringLiteral("settings"), QStringLiteral("--json")} + file);
    return QJsonDocument::fromJson(bench.output.toUtf8()).object();
}

QJsonObject BenchSettingsTest::setting(const QJsonObject &document, const QString &key)
{
    const QJsonArray settings = document.value(QLatin1String("settings")).toArray();
    for (const QJsonValue &value : settings) {
        if (value.toObject().value(QLatin1String("key")) == key)
            return value.toObject();
    }
    return {};
}

void BenchSettingsTest::withoutFile()
{
    const BenchProcess bench({QStringLiteral("settings")});
    QCOMPARE(bench.exitCode, 0);
    QVERIFY2(bench.output.startsWith(settingsFile() + QLatin1String(": no such file, all defaults hold\n")), qPrintable(bench.output));
    const QStringList lines = bench.output.split(QLatin1Char('\n'));
    constexpr int width = 100;
    for (const QString &line : lines)
        QVERIFY2(line.size() <= width, qPrintable(line));
}

void BenchSettingsTest::table()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("settings.db")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[EQ]\nCustom3=-4\nType=text\n[Mine]\nnote=left alone\n[Volume]\n0=11\nLoudness=false\n");
    file.close();

    const BenchProcess bench({QStringLiteral("settings"), file.fileName()});
    QCOMPARE(bench.exitCode, 0);
    const auto hasRow = [&bench](const char *pattern) {
        return QRegularExpression(QLatin1String(pattern), QRegularExpression::MultilineOption).match(bench.output).hasMatch();
    };
    QVERIFY2(hasRow("^Volume/0 +11 +20, or 25 with home UI type 7 +media volume, 0 to 25$"), qPrintable(bench.output));
    QVERIFY(hasRow("^Volume/1 +- +20, or 25"));
    QVERIFY(hasRow("^Volume/Loudness +false +true +loudness$"));
    QVERIFY(hasRow("^EQ/Type +text +6 "));
    QVERIFY(hasRow("^EQ/Custom3 +-4 +0 +custom curve, band 3, dB$"));
    QVERIFY(hasRow("^Mine/note +left alone +unknown to the library, kept$"));
}

void BenchSettingsTest::defaultsAreTheStores()
{
    // The table of defaults is the bench's own; the store says whether it is right.
    const QJsonObject document = json();
    audio::AudioDataBase reader;
    for (int type = 0; type < 6; ++type) {
        const QString text = setting(document, QStringLiteral("Volume/%1").arg(type)).value(QLatin1String("default")).toString();
        QCOMPARE(text, QStringLiteral("%1, or 25 with home UI type 7").arg(reader.getVolume(static_cast<ZelAudioType>(type))));
    }
    const auto defaultOf = [&document](const char *key) { return setting(document, QLatin1String(key)).value(QLatin1String("default")).toString(); };
    QCOMPARE(defaultOf("Volume/VolumeMic"), QString::number(reader.micInputValue()));
    QCOMPARE(defaultOf("Volume/Loudness"), QVariant(reader.loudNess()).toString());
    QCOMPARE(defaultOf("Volume/MicType"), QVariant(reader.micType()).toString());
    QCOMPARE(defaultOf("Volume/AutoMicGainOrig"), QString::number(double(reader.getAutoMicGain())));
    QCOMPARE(defaultOf("Volume/MicDelayOrig"), QString::number(reader.getHandsfreeDelay()));
    QCOMPARE(defaultOf("EQ/Type"), QString::number(reader.eqType()));
    for (int band = 0; band < 16; ++band) {
        QCOMPARE(setting(document, QStringLiteral("EQ/Custom%1").arg(band)).value(QLatin1String("default")).toString(),
                 QString::number(reader.getCustomEQ(band)));
    }
    reader.setmicType(false);
    QCOMPARE(defaultOf("Volume/AutoMicGainArm"), QString::number(double(reader.getAutoMicGain())));
    QCOMPARE(defaultOf("Volume/MicDelayArm"), QString::number(reader.getHandsfreeDelay()));
}

void BenchSettingsTest::keysAreTheStores()
{
    // Everything that the store can write.
    audio::AudioDataBase store;
    store.savevolume();
    store.setLoudNess(false);
    store.setMicInputValue(1);
    for (const bool original : {true, false}) {
        store.setmicType(original);
        store.setAutoMicGain(1);
        store.setHandsfreeDelay(1);
    }
    store.setEqType(1);
    for (int band = 0; band < 16; ++band)
        store.setCustomEQ(1, band);

    // Each key of the bench is there, and the bench knows each key that is there.
    const QJsonObject document = json(settingsFile());
    const QJsonArray settings = document.value(QLatin1String("settings")).toArray();
    QVERIFY(!settings.isEmpty());
    for (const QJsonValue &value : settings) {
        const QByteArray row = QJsonDocument(value.toObject()).toJson();
        QVERIFY2(value.toObject().value(QLatin1String("stored")).isString(), row.constData());
        QVERIFY2(value.toObject().value(QLatin1String("meaning")) != QLatin1String("unknown to the library, kept"), row.constData());
    }
}

void BenchSettingsTest::watch()
{
    QProcess process;
    BenchProcess::start(process, {QStringLiteral("settings"), QStringLiteral("--watch")});
    QString output;
    const auto hears = [&](const QString &text) {
        constexpr int patience = 20000;
        QElapsedTimer timer;
        timer.start();
        while (!output.contains(text) && timer.elapsed() < patience) {
            process.waitForReadyRead(100);
            output += QString::fromUtf8(process.readAllStandardOutput());
        }
        return output.contains(text);
    };
    QVERIFY(hears(QLatin1String("Watching ") + settingsFile()));
    audio::AudioDataBase store;
    store.setVolume(ZelAudioTypeMedia, 21, true);
    QVERIFY2(hears(QStringLiteral("  Volume/0  - -> 21\n")), qPrintable(output));
    store.setVolume(ZelAudioTypeMedia, 22, true);
    QVERIFY2(hears(QStringLiteral("  Volume/0  21 -> 22\n")), qPrintable(output));
    QVERIFY(store.clear());
    QVERIFY2(hears(QStringLiteral("  Volume/0  22 -> -\n")), qPrintable(output));
    process.kill();
    process.waitForFinished();
}

void BenchSettingsTest::mistypedName_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    const QString missing = QStringLiteral("there is no file /nowhere/settings; see qzaudio-bench settings --help\n");
    QTest::newRow("no such file") << QStringList{QStringLiteral("/nowhere/settings")} << missing;
    QTest::newRow("for programs") << QStringList{QStringLiteral("--json"), QStringLiteral("/nowhere/settings")} << missing;
    QTest::newRow("to watch") << QStringList{QStringLiteral("--watch"), QStringLiteral("/nowhere/settings")} << missing;
    QTest::newRow("settings of the unit") << QStringList{settingsFile()}
                                          << QStringLiteral("there is no file %1; see qzaudio-bench settings --help\n").arg(settingsFile());
    QTest::newRow("folder") << QStringList{QStringLiteral("/tmp")}
                            << QStringLiteral("/tmp is a folder, not a settings file; see qzaudio-bench settings --help\n");
}

void BenchSettingsTest::mistypedName()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    const BenchProcess bench(QStringList{QStringLiteral("settings")} + arguments);
    QCOMPARE(bench.exitCode, 2);
    QCOMPARE(bench.output, QString());
    QCOMPARE(bench.errors, QLatin1String("qzaudio-bench: ") + error);
}

void BenchSettingsTest::unreadableFile()
{
    // Named by nobody, so no mistake on the command line: the unit's own file.
    QVERIFY(QDir().mkdir(settingsFile()));
    const BenchProcess bench({QStringLiteral("settings")});
    QVERIFY(QDir().rmdir(settingsFile()));
    QCOMPARE(bench.exitCode, 1);
    QCOMPARE(bench.output, QString());
    QCOMPARE(bench.errors, QStringLiteral("qzaudio-bench: %1: file to open is a directory\n").arg(settingsFile()));
}

/// What the bench calls in effect is what a store reads from the same file.
void BenchSettingsTest::compareWithStore()
{
    QHash<QString, QString> inEffect;
    const auto settings = SettingsReader(settingsFile()).settings();
    for (const SettingsReader::Setting &each : settings)
        inEffect.insert(each.key, each.inEffect);
    audio::AudioDataBase store;
    const auto number = [&inEffect](const QString &key) {
        // Of "20, or 25 with home UI type 7" the first holds here.
        return inEffect.value(key).section(QLatin1Char(','), 0, 0);
    };
    for (int type = 0; type < 6; ++type)
        QCOMPARE(number(QStringLiteral("Volume/%1").arg(type)), QString::number(store.getVolume(static_cast<ZelAudioType>(type))));
    QCOMPARE(number(QStringLiteral("Volume/VolumeMic")), QString::number(store.micInputValue()));
    QCOMPARE(number(QStringLiteral("Volume/Loudness")), QVariant(store.loudNess()).toString());
    QCOMPARE(number(QStringLiteral("Volume/MicType")), QVariant(store.micType()).toString());
    const QString gain = store.micType() ? QStringLiteral("Volume/AutoMicGainOrig") : QStringLiteral("Volume/AutoMicGainArm");
    QCOMPARE(number(gain).toFloat(), store.getAutoMicGain());
    const QString delay = store.micType() ? QStringLiteral("Volume/MicDelayOrig") : QStringLiteral("Volume/MicDelayArm");
    QCOMPARE(number(delay), QString::number(store.getHandsfreeDelay()));
    QCOMPARE(number(QStringLiteral("EQ/Type")), QString::number(store.eqType()));
    for (int band = 0; band < 16; ++band)
        QCOMPARE(number(QStringLiteral("EQ/Custom%1").arg(band)), QString::number(store.getCustomEQ(band)));
}

void BenchSettingsTest::inEffect_data()
{
    QTest::addColumn<QByteArray>("value");
    for (const char *value : {"7",
                              "-3",
                              "loud",
                              "rock",
                              "7.5",
                              "7.0",
                              "1e2",
                              "99",
                              "+7",
                              "007",
                              "0x10",
                              "\" 7 \"",
                              "2147483647",
                              "2147483648",
                              "-2147483649",
                              "4294967303",
                              "99999999999999999999",
                              "true",
                              "True",
                              "FALSE",
                              "off",
                              "0",
                              "0.0",
                              "",
                              "\"\"",
                              "1, 2",
                              ",",
                              "nan",
                              "inf",
                              "\\x37",
                              "7 ; comment",
                              "7\\",
                              "\"7",
                              "7\x01",
                              "7\xe4",
                              "@Invalid()",
                              "@",
                              "@@7",
                              "@7",
                              "@ByteArray(7)",
                              "@ByteArray(no)",
                              "@String(false)",
                              "@String(7.5)",
                              "@Rect(1 2 3 4)",
                              "@Rect(1 2)",
                              "@Size(1 2)",
                              "@Point(1 2)",
                              "@Nothing(1)",
                              "@Variant()",
                              "@Variant(7)",
                              "@DateTime(x)",
                              "1, @Variant(7)",
                              R"(@Variant(\0\0\0\x1\x1))", // bool
                              R"(@Variant(\0\0\0\x2\0\0\0\x7))", // int
                              R"(@Variant(\0\0\0\x2\0\0))", // int, too short
                              R"(@Variant(\0\0\0\x4\0\0\0\x1\0\0\0\x7))", // large
                              R"(@Variant(\0\0\0\x6@\x1e\0\0\0\0\0\0))", // double 7.5
                              R"(@Variant(\0\0\0\x6\xc0\x1e\0\0\0\0\0\0))", // double -7.5
                              R"(@Variant(\0\0\0\x6\x7f\xf8\0\0\0\0\0\0))", // double, no number
                              R"(@Variant(\0\0\0\x6\x7f\xe0\0\0\0\0\0\0))", // double, huge
                              R"(@Variant(\0\0\0\x7\0\x37))", // character
                              R"(@Variant(\0\0\0\x13\0\0\0\x1\0\0\0\x2\0\0\0\x3\0\0\0\x4))", // rectangle
                              R"(@Variant(\0\0\0\x82\0\x7))", // short
                              R"(@Variant(\0\0\0\x87@\xf0\0\0))", // float 7.5
                              R"(@Variant(\0\0\0\t\x7f\xff\xff\xff))", // list of 2147483647 elements
                              R"(\x40Variant(\0\0\0\t\x7f\xff\xff\xff))",
                              R"(@DateTime(\0\0\0\x10\0))"}) {
        QTest::newRow(value) << QByteArray(value);
    }
}

void BenchSettingsTest::inEffect()
{
    QFETCH(QByteArray, value);
    // The microphone's type says which keys of the others are read.
    for (const QByteArray &type : {QByteArray("true"), QByteArray("false"), value}) {
        QByteArray text = "[EQ]\nType=" + value + '\n';
        for (int band = 0; band < 16; ++band)
            text += "Custom" + QByteArray::number(band) + '=' + value + '\n';
        text += "[Volume]\n";
        for (const char *key : {"0", "1", "2", "3", "4", "5", "VolumeMic", "Loudness", "AutoMicGainOrig", "AutoMicGainArm", "MicDelayOrig", "MicDelayArm"})
            text += key + QByteArray("=") + value + '\n';
        QFile file(settingsFile());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text + "MicType=" + type + '\n');
        file.close();
        compareWithStore();
        if (QTest::currentTestFailed())
            return;
    }
}

void BenchSettingsTest::inEffectOfDamagedFiles()
{
    const QByteArray whole = "\xef\xbb\xbf; settings\r\n[EQ]\nType=3\nCustom1=-4 ; low\n\n[General]\nx=1\n[Volume]\n0=11\n1=12\n0=\"13\"\n"
                             "Loudness=false\nMicType=true\nAutoMicGainOrig=@Variant(\\0\\0\\0\\x87@\\xf0\\0\\0)\nMicDelayOrig=9\n[%General]\ny=2\n";
    const QByteArray pieces[] = {
        "\n", "\r", "[", "]", "\"", "\\", ";", "=", ",", "@", "\x01", "\xe4", " ", "[]\n", "[General]\n", "[EQ]\n", "/", "%", "%45", "Volume\\0=5\n", "0=8\n"};
    constexpr quint32 seed = 8711;
    QRandomGenerator random(seed);
    for (int run = 0; run < 150; ++run) {
        QByteArray text = whole;
        for (int change = random.bounded(3); change >= 0; --change) {
            const int at = int(random.bounded(quint32(text.size())));
            if (random.bounded(3) == 0)
                text.remove(at, int(random.bounded(4U)) + 1);
            else
                text.insert(at, pieces[random.bounded(quint32(std::size(pieces)))]);
        }
        if (random.bounded(10) == 0)
            text.truncate(int(random.bounded(quint32(text.size()))));
        QFile file(settingsFile());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        compareWithStore();
        if (QTest::currentTestFailed()) {
            qWarning("of the file %s", text.toPercentEncoding("[]=\n; \"\\@").constData());
            return;
        }
    }
}

void BenchSettingsTest::problems_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("effect");
    QTest::addColumn<QString>("problem");
    const auto row = [](const char *text, const char *key, const char *effect, const char *problem) {
        QTest::newRow(QByteArray(text).replace('\n', ' ').constData())
            << QByteArray(text) << QString::fromLatin1(key) << QString::fromLatin1(effect) << QString::fromLatin1(problem);
    };
    row("[Volume]\n0=11\n", "Volume/0", "11", "");
    row("[Volume]\n0=\" 11 \"\n", "Volume/0", "11", "");
    row("[Volume]\n1=11\n", "Volume/0", "20, or 25 with home UI type 7", "");
    row("[Volume]\n0=loud\n", "Volume/0", "0", "no whole number");
    row("[Volume]\n0=7.5\n", "Volume/0", "0", "no whole number");
    row("[Volume]\n0=\n", "Volume/0", "0", "no whole number");
    row("[Volume]\n0=26\n", "Volume/0", "26", "outside 0 to 25");
    row("[Volume]\n0=-1\n", "Volume/0", "-1", "outside 0 to 25");
    row("[Volume]\n0=4294967303\n", "Volume/0", "7", "too large a number");
    row("[Volume]\n0=@Invalid()\n", "Volume/0", "0", "stored without a value");
    row("[Volume]\n0=9", "Volume/0", "20, or 25 with home UI type 7", "the line is damaged and left out");
    row("[Volume]\n0=8\n0=9", "Volume/0", "8", "of an earlier line, the last is damaged");
    QTest::newRow("too long a line") << QByteArray("[Volume]\n0=" + QByteArray(65536, '0') + "7\n") << QStringLiteral("Volume/0")
                                     << QStringLiteral("20, or 25 with home UI type 7") << QStringLiteral("the line is damaged and left out");
    row("[Volu\n0=9\n", "Volume/0", "9", "read from damaged lines");
    row("[Volume]\nVolumeMic=92\n", "Volume/VolumeMic", "92", "outside 0 to 91");
    row("[Volume]\nLoudness=off\n", "Volume/Loudness", "true", "neither true nor false");
    row("[Volume]\nLoudness=False\n", "Volume/Loudness", "false", "");
    row("[Volume]\nMicType=0\n", "Volume/MicType", "false", "");
    row("[Volume]\nAutoMicGainOrig=@Variant(\\0\\0\\0\\x87@\\xe0\\0\\0)\n", "Volume/AutoMicGainOrig", "7", "");
    row("[Volume]\nAutoMicGainOrig=@Variant(\\0\\0\\0\\x87@\\xf0\\0\\0)\n", "Volume/AutoMicGainOrig", "7", "no whole number");
    row("[Volume]\nAutoMicGainOrig=7.5\n", "Volume/AutoMicGainOrig", "0", "no whole number");
    row("[EQ]\nType=rock\n", "EQ/Type", "0", "no whole number");
    row("[EQ]\nType=8\n", "EQ/Type", "8", "outside 0 to 7");
    row("[EQ]\nCustom15=14\n", "EQ/Custom15", "14", "outside -12 to 12");
}

void BenchSettingsTest::problems()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, key);
    QFETCH(QString, effect);
    QFETCH(QString, problem);
    const QTemporaryDir folder;
    const QJsonObject row = setting(json(fileOf(folder, text)), key);
    QCOMPARE(row.value(QLatin1String("inEffect")), QJsonValue(effect));
    QCOMPARE(row.value(QLatin1String("problem")), problem.isEmpty() ? QJsonValue(QJsonValue::Null) : QJsonValue(problem));
}

void BenchSettingsTest::marks()
{
    const QTemporaryDir folder;
    const QString path = fileOf(folder, "[EQ]\nType=rock\n[Mine]\nnote=loud\n[Volume]\n0=11\n1=99\n");
    const BenchProcess bench({QStringLiteral("settings"), path});
    QCOMPARE(bench.exitCode, 0);
    const auto hasRows = [&bench](const char *pattern) {
        return QRegularExpression(QLatin1String(pattern), QRegularExpression::MultilineOption).match(bench.output).hasMatch();
    };
    QVERIFY2(hasRows("^Volume/1 +99 .*\n(?: +.*\n)? +! in effect: 99 \\(outside 0 to 25\\)$"), qPrintable(bench.output));
    QVERIFY2(hasRows("^EQ/Type +rock .*\n(?: +.*\n)? +! in effect: 0 \\(no whole number\\)$"), qPrintable(bench.output));
    QCOMPARE(bench.output.count(QLatin1Char('!')), 2);
}

void BenchSettingsTest::watchHostileFile()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("watched"));
    const auto write = [&path](const QByteArray &text) {
        QFile file(path + QStringLiteral(".new"));
        return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && std::rename(qPrintable(file.fileName()), qPrintable(path)) == 0;
    };
    QVERIFY(write("[Volume]\n0=11\n"));
    QProcess process;
    BenchProcess::start(process, {QStringLiteral("settings"), QStringLiteral("--watch"), path});
    QString output;
    const auto hears = [&](const QString &text) {
        constexpr int patience = 20000;
        QElapsedTimer timer;
        timer.start();
        while (!output.contains(text) && timer.elapsed() < patience) {
            process.waitForReadyRead(100);
            output += QString::fromUtf8(process.readAllStandardOutput());
        }
        return output.contains(text);
    };
    QVERIFY(hears(QStringLiteral("Watching ")));
    QVERIFY(write("[Volume]\n0=11\n1=\\x1b[2J\n%1B=2\n"));
    QVERIFY2(hears(QStringLiteral("  Volume/1  - -> \\x1b[2J  ! in effect: 0 (no whole number)\n")), qPrintable(output));
    QVERIFY2(hears(QStringLiteral("  Volume/\\x1b  - -> 2\n")), qPrintable(output));
    QVERIFY(write("[Volume]\n0=11\n1=loud\n"));
    QVERIFY2(hears(QStringLiteral("  Volume/1  \\x1b[2J -> loud  ! in effect: 0 (no whole number)\n")), qPrintable(output));
    QVERIFY2(hears(QStringLiteral("  Volume/\\x1b  2 -> -\n")), qPrintable(output));
    QVERIFY(write("[Volume]\n0=@Variant(\\0\\0\\0\\t\\x7f\\xff\\xff\\xff)\n"));
    QVERIFY2(hears(QStringLiteral("  Volume/0  11 -> (unreadable)  ! in effect: 20, or 25 with home UI type 7 (the line is damaged and left out)\n")),
             qPrintable(output));
    QVERIFY(write(QByteArray(1024 * 1024 + 1, ';')));
    QVERIFY2(hears(QStringLiteral("  more than 1 MB, too large to be a settings file\n")), qPrintable(output));
    QByteArray noise = "[Volume]\n0=12\n[Noise]\n";
    for (int i = 0; i < 1500; ++i)
        noise += QByteArray::number(i) + "=1\n";
    QVERIFY(write(noise));
    QVERIFY2(hears(QStringLiteral("  \u2026 and 501 more changes\n")), qPrintable(output.right(300)));
    QVERIFY(!output.contains(QLatin1Char('\x1b')));
    QCOMPARE(output.count(QLatin1String("  Noise/")), 1000);
    QVERIFY(write("[Volume]\n0=13\n"));
    QVERIFY2(hears(QStringLiteral("  Volume/0  12 -> 13\n")), qPrintable(output.right(300)));
    process.kill();
    process.waitForFinished();
}

void BenchSettingsTest::tooLargeFile_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<bool>("isTooLarge");
    QTest::newRow("1 MB") << 1024 * 1024 << false;
    QTest::newRow("a byte more") << 1024 * 1024 + 1 << true;
    QTest::newRow("one value of 10 MB") << 10 * 1024 * 1024 << true;
}

void BenchSettingsTest::tooLargeFile()
{
    QFETCH(int, size);
    QFETCH(bool, isTooLarge);
    const QByteArray beginning = "[Volume]\n0=";
    const QTemporaryDir folder;
    const QString path = fileOf(folder, beginning + QByteArray(size - beginning.size(), '1'));
    for (const bool asJson : {false, true}) {
        QStringList arguments = {QStringLiteral("settings"), path};
        if (asJson)
            arguments += QStringLiteral("--json");
        const BenchProcess bench(arguments);
        QCOMPARE(bench.exitStatus, QProcess::NormalExit);
        QCOMPARE(bench.exitCode, isTooLarge ? 1 : 0);
        QCOMPARE(bench.output.isEmpty(), isTooLarge);
        QCOMPARE(bench.errors, isTooLarge ? QStringLiteral("qzaudio-bench: %1: more than 1 MB, too large to be a settings file\n").arg(path) : QString());
        QVERIFY2(bench.output.size() < 20000, QByteArray::number(bench.output.size()).constData());
    }
}

void BenchSettingsTest::readsAsQtDoes_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("sections") << QByteArray("a=1\n[General]\nb=2\n[%General]\nc=3\n[ Volume ]\n0=4\n[a/b]\nc=5\n[Volume]\n0=6\n");
    QTest::newRow("keys") << QByteArray("a b=1\nc%20d=2\n%U20AC=3\ne\\f=4\n%zz=5\n g  =  6\n%4=7\n");
    QTest::newRow("quoted") << QByteArray("a=\" x \"\nb=\"x;y=z, w\"\nc=\"x\" y\nd=\"\"\n");
    QTest::newRow("escapes") << QByteArray("a=\\x41\\101g\\n\\t\\\\\nb=\\q\\x\nc=\\x1F600\nd=x\\x20 \n");
    QTest::newRow("lists") << QByteArray("a=1, 2,3\nb=,\nc=\"1, 2\", 3\nd=@@a, b\n");
    QTest::newRow("comments") << QByteArray("; a=1\nb=2 ; c=3\n;\n\n;d\n");
    QTest::newRow("several lines") << QByteArray("a=1\\\n2\nb=3\\\r\n4\r\nc=\"5\n6\"\n");
    QTest::newRow("at signs") << QByteArray("a=@@x\nb=@x\nc=@ByteArray(x)\nd=@String(y)\ne=@Invalid()\nf=x@Variant(y)\n");
    QTest::newRow("Latin-1") << QByteArray("a=\xe4\xc3\xa4\n\xe4=1\n");
    QTest::newRow("no settings") << QByteArray("hello\n[open\na=1\n");
    QTest::newRow("empty") << QByteArray();
}

void BenchSettingsTest::readsAsQtDoes()
{
    QFETCH(QByteArray, text);
    const QTemporaryDir folder;
    const QString path = fileOf(folder, text);
    const QSettings settings(path, QSettings::IniFormat);
    const BenchProcess bench({QStringLiteral("settings"), QStringLiteral("--json"), path});
    QCOMPARE(bench.exitCode, settings.status() == QSettings::NoError ? 0 : 1);
    const QJsonObject document = QJsonDocument::fromJson(bench.output.toUtf8()).object();
    const QStringList keys = settings.allKeys();
    for (const QString &key : keys) {
        const QVariant value = settings.value(key);
        const QString expected = value.type() == QVariant::StringList ? value.toStringList().join(QLatin1String(", ")) : value.toString();
        const QJsonValue stored = setting(document, key).value(QLatin1String("stored"));
        QCOMPARE(stored, value.isValid() ? QJsonValue(expected) : QJsonValue());
    }
    const QJsonArray rows = document.value(QLatin1String("settings")).toArray();
    for (const QJsonValue &row : rows) {
        const QString key = row.toObject().value(QLatin1String("key")).toString();
        QVERIFY2(keys.contains(key) || row.toObject().value(QLatin1String("stored")).isNull(), qPrintable(key));
    }
}

void BenchSettingsTest::storedNumbers()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("numbers"));
    {
        QSettings settings(path, QSettings::IniFormat);
        settings.setValue(QStringLiteral("float"), 3.5F);
        settings.setValue(QStringLiteral("double"), -0.25);
        settings.setValue(QStringLiteral("whole"), std::numeric_limits<qlonglong>::min());
        settings.setValue(QStringLiteral("truth"), true);
    }
    const QJsonObject document = json(path);
    const auto stored = [&document](const char *key) { return setting(document, QLatin1String(key)).value(QLatin1String("stored")).toString(); };
    QCOMPARE(stored("float"), QStringLiteral("3.5"));
    QCOMPARE(stored("double"), QStringLiteral("-0.25"));
    QCOMPARE(stored("whole"), QStringLiteral("-9223372036854775808"));
    QCOMPARE(stored("truth"), QStringLiteral("true"));
}

void BenchSettingsTest::serializedObjects_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("list of 2147483647 elements") << QByteArray(R"(@Variant(\0\0\0\t\x7f\xff\xff\xff))");
    QTest::newRow("the same in other words") << QByteArray(R"(\x40Variant(\0\0\0\t\x7f\xff\xff\xff))");
    QTest::newRow("within a list") << QByteArray(R"(1, @Variant(\0\0\0\t\x7f\xff\xff\xff))");
    QTest::newRow("text of 2 GB") << QByteArray(R"(@Variant(\0\0\0\n\x7f\xff\xff\xfe))");
    QTest::newRow("image") << QByteArray(R"(@Variant(\0\0\0\x46\0\0\0\x1))");
    QTest::newRow("number of another size") << QByteArray(R"(@Variant(\0\0\0\x2\0\0))");
    QTest::newRow("no type") << QByteArray(R"(@Variant(\0))");
    QTest::newRow("time") << QByteArray(R"(@DateTime(\0\0\0\x10\0))");
}

void BenchSettingsTest::serializedObjects()
{
    QFETCH(QByteArray, value);
    const QTemporaryDir folder;
    const BenchProcess bench({QStringLiteral("settings"), fileOf(folder, "[Volume]\n0=" + value + "\n1=7\n")});
    QCOMPARE(bench.exitStatus, QProcess::NormalExit);
    QCOMPARE(bench.exitCode, 0);
    QVERIFY2(QRegularExpression(QStringLiteral("\nVolume/0 +(1, )?\\(unreadable\\) ")).match(bench.output).hasMatch(), qPrintable(bench.output));
    QVERIFY2(QRegularExpression(QStringLiteral("\nVolume/1 +7 ")).match(bench.output).hasMatch(), qPrintable(bench.output)); // and the rest is read
}

void BenchSettingsTest::unseenCharacters_data()
{
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("meant");
    QTest::newRow("escape") << QByteArray("\\x1b[31m") << QStringLiteral("\\x1b[31m") << QStringLiteral("\x1b[31m");
    QTest::newRow("escape, as a byte") << QByteArray("\x1b]0;") << QStringLiteral("\\x1b]0") << QStringLiteral("\x1b]0");
    QTest::newRow("line ends") << QByteArray("a\\nb\\rc\\td") << QStringLiteral("a\\nb\\rc\\td") << QStringLiteral("a\nb\rc\td");
    QTest::newRow("zero") << QByteArray("a\\0z") << QStringLiteral("a\\x00z") << QString(QStringLiteral("a") + QChar(0) + QLatin1Char('z'));
    QTest::newRow("delete") << QByteArray("\x7f") << QStringLiteral("\\x7f") << QString(QChar(0x7f));
    QTest::newRow("control sequence introducer") << QByteArray("\x9b"
                                                               "2J")
                                                 << QStringLiteral("\\x9b2J") << QString(QChar(0x9b) + QStringLiteral("2J"));
    QTest::newRow("right-to-left override") << QByteArray("\\x202e"
                                                          "gpj")
                                            << QStringLiteral("\\u202egpj") << QString(QChar(0x202e) + QStringLiteral("gpj"));
    QTest::newRow("isolate") << QByteArray("\\x2066z") << QStringLiteral("\\u2066z") << QString(QChar(0x2066) + QStringLiteral("z"));
    QTest::newRow("line separator") << QByteArray("\\x2028z") << QStringLiteral("\\u2028z") << QString(QChar(0x2028) + QStringLiteral("z"));
    QTest::newRow("letters stay") << QByteArray("\xe4\\x4f60\\\\") << QStringLiteral("\u00e4\u4f60\\") << QStringLiteral("\u00e4\u4f60\\");
}

void BenchSettingsTest::unseenCharacters()
{
    QFETCH(QByteArray, written);
    QFETCH(QString, shown);
    QFETCH(QString, meant);
    const QTemporaryDir folder;
    const QString path = fileOf(folder, "[Volume]\n0=" + written + "\n");
    const BenchProcess bench({QStringLiteral("settings"), path});
    QCOMPARE(bench.exitCode, 0);
    const QRegularExpression row(QStringLiteral("^Volume/0 +%1 +20, or 25").arg(QRegularExpression::escape(shown)), QRegularExpression::MultilineOption);
    QVERIFY2(row.match(bench.output).hasMatch(), qPrintable(bench.output));

    // Programs get the very text, and a terminal that is shown it does nothing either.
    const BenchProcess asJson({QStringLiteral("settings"), QStringLiteral("--json"), path});
    const QJsonObject document = QJsonDocument::fromJson(asJson.output.toUtf8()).object();
    QCOMPARE(setting(document, QStringLiteral("Volume/0")).value(QLatin1String("stored")).toString(), meant);
    for (const QString &output : {bench.output, asJson.output}) {
        for (const QChar character : output)
            QVERIFY(character == QLatin1Char('\n') || character.isPrint());
    }

    // In names of keys and groups, too.
    QByteArray name;
    for (const QChar character : qAsConst(meant))
        name += "%U" + QByteArray::number(character.unicode(), 16).rightJustified(4, '0');
    const BenchProcess names({QStringLiteral("settings"), fileOf(folder, "[" + name + "]\n" + name + "=1\n")});
    QVERIFY2(names.output.contains(QLatin1Char('\n') + shown + QLatin1Char('/') + shown + QLatin1Char(' ')), qPrintable(names.output));
}

void BenchSettingsTest::longTexts()
{
    // The values' column ends with the line, 74 columns behind the keys'.
    const QTemporaryDir folder;
    const QString exactly(200, QLatin1Char('x'));
    const QString path = fileOf(folder,
                                "[Volume]\n0=" + exactly.toLatin1() + "\n1=y" + exactly.toLatin1() + "\n2=" + QByteArray("\\x1b").repeated(100)
                                    + "\n3=" + QByteArray(76, 'z') + "\n" + QByteArray(300, 'k') + "=1\n");
    const BenchProcess bench({QStringLiteral("settings"), path});
    QCOMPARE(bench.exitCode, 0);
    const auto mark = [](int size) { return QStringLiteral("\u2026 (%1 characters)").arg(size); };
    QVERIFY2(bench.output.contains(QLatin1String("  ") + exactly.left(76 - mark(200).size()) + mark(200) + QLatin1Char('\n')), qPrintable(bench.output));
    QVERIFY(bench.output.contains(QLatin1String("  y") + exactly.left(75 - mark(201).size()) + mark(201) + QLatin1Char('\n')));
    QVERIFY(bench.output.contains(QLatin1String("  ") + QStringLiteral("\\x1b").repeated((76 - mark(100).size()) / 4) + mark(100) + QLatin1Char('\n')));
    QVERIFY(bench.output.contains(QLatin1String("  ") + QString(76, QLatin1Char('z')) + QLatin1Char('\n')));
    QVERIFY(bench.output.contains(QLatin1String("\nVolume/") + QString(93 - mark(307).size(), QLatin1Char('k')) + mark(307) + QLatin1Char('\n')));
    const QJsonObject document = json(path);
    QCOMPARE(setting(document, QStringLiteral("Volume/0")).value(QLatin1String("stored")).toString(), exactly);
    QCOMPARE(setting(document, QStringLiteral("Volume/1")).value(QLatin1String("stored")).toString(),
             QString(QLatin1Char('y') + exactly.left(199) + QStringLiteral("\u2026 (201 characters)")));
}

void BenchSettingsTest::binaryFile()
{
    constexpr quint32 seed = 4711;
    QRandomGenerator random(seed);
    QByteArray noise(200000, '\0');
    for (char &byte : noise)
        byte = char(random.bounded(256));
    QByteArray bytes = noise.left(30000);
    for (const char end : {'\r', '\n', ';', '\\', '"', ',', '=', '['})
        bytes.replace(end, 'x');
    const QTemporaryDir folder;
    const QByteArray files[] = {noise, "[Volume]\n0=" + bytes + '\n' + bytes + "=1\n1=@ByteArray(" + bytes + ")\n2=" + bytes + ", " + bytes + '\n'};
    for (const QByteArray &text : files) {
        const BenchProcess bench({QStringLiteral("settings"), fileOf(folder, text)});
        const QStringList lines = bench.output.split(QLatin1Char('\n'));
        QVERIFY(lines.size() > 30);
        constexpr int width = 100;
        for (const QString &line : lines)
            QVERIFY2(line.size() <= width, qPrintable(line));
        const BenchProcess asJson({QStringLiteral("settings"), QStringLiteral("--json"), fileOf(folder, text)});
        const QStringList jsonLines = asJson.output.split(QLatin1Char('\n'));
        constexpr int jsonWidth = 1400; // 200 characters, each of them as \u0000
        for (const QString &line : jsonLines)
            QVERIFY2(line.size() <= jsonWidth, qPrintable(line));
    }
}

void BenchSettingsTest::manyKeys()
{
    QByteArray text = "[Volume]\n0=3\n[Noise]\n";
    for (int i = 0; i < 1003; ++i)
        text += QByteArray::number(i) + QByteArray(900, 'n') + '=' + QByteArray(100, '\x1b') + '\n';
    const QTemporaryDir folder;
    const QString path = fileOf(folder, text);
    const BenchProcess bench({QStringLiteral("settings"), path});
    QCOMPARE(bench.exitCode, 0);
    QCOMPARE(bench.output.count(QLatin1String("\nNoise/")), 1000);
    QVERIFY(bench.output.endsWith(QStringLiteral("\n\u2026 and 3 more keys that the library does not know\n")));
    QVERIFY2(bench.output.size() < 1024 * 1024, QByteArray::number(bench.output.size()).constData());
    const QJsonObject document = json(path);
    QCOMPARE(document.value(QLatin1String("settings")).toArray().size(), 14 + 16 + 1000);
    QCOMPARE(document.value(QLatin1String("leftOut")).toInt(), 3);
    QCOMPARE(json().value(QLatin1String("leftOut")), QJsonValue(0));
}

QTEST_GUILESS_MAIN(BenchSettingsTest)

#include "tst_benchsettings.moc"

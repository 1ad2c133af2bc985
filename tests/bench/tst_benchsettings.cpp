#include "benchprocess.h"

#include <qzaudio/audiodatabase.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

namespace
{

QString settingsFile()
{
    return QStringLiteral("/media/flash/nvm/audioData.db");
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
    void unreadableFile();

private:
    static QJsonObject setting(const QJsonObject &document, const QString &key);
    static QJsonObject json(const QString &file);
};

void BenchSettingsTest::init()
{
    QFile::remove(settingsFile());
}

QJsonObject BenchSettingsTest::json(const QString &file)
{
    const BenchProcess bench({QStringLiteral("settings"), QStringLiteral("--json"), file});
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
    const QJsonObject document = json(QStringLiteral("/nowhere"));
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

void BenchSettingsTest::unreadableFile()
{
    const BenchProcess bench({QStringLiteral("settings"), QStringLiteral("/tmp")});
    QCOMPARE(bench.exitCode, 1);
    QVERIFY2(bench.errors.startsWith(QLatin1String("qzaudio-bench: /tmp: ")), qPrintable(bench.errors));
}

QTEST_GUILESS_MAIN(BenchSettingsTest)

#include "tst_benchsettings.moc"

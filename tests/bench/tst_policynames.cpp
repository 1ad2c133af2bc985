#include "benchprocess.h"
#include "explain/policyrules.h"
#include "policynames.h"
#include "policytext.h"
#include "qmlaudiopolicy.h"

#include <audiocontroltables.h>

#include <QtCore/QMetaEnum>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace
{

struct Enumerator
{
    QString name;
    int number = 0;
};

/// The enumerators of the public header that begin so, without that beginning.
QVector<Enumerator> declaredEnumerators(const QString &prefix)
{
    QFile header(QStringLiteral(AUDIO_TYPES_HEADER));
    if (!header.open(QIODevice::ReadOnly))
        return {};
    const QRegularExpression declaration(QStringLiteral("^    %1(\\w+) = (\\d+),").arg(prefix), QRegularExpression::MultilineOption);
    QVector<Enumerator> enumerators;
    QRegularExpressionMatchIterator match = declaration.globalMatch(QString::fromUtf8(header.readAll()));
    while (match.hasNext()) {
        const QRegularExpressionMatch found = match.next();
        enumerators.append({found.captured(1), found.captured(2).toInt()});
    }
    return enumerators;
}

template<std::size_t count>
QVector<policynames::Number> rows(const policynames::Number (&numbers)[count])
{
    QVector<policynames::Number> list;
    std::copy(std::begin(numbers), std::end(numbers), std::back_inserter(list));
    return list;
}

/// A table of names, what the public header calls its numbers, and what scripts call them.
struct Table
{
    QVector<policynames::Number> numbers;
    QString headerPrefix;
    QMetaEnum script;
    QString scriptPrefix;
};

} // namespace
Q_DECLARE_METATYPE(Table)

/// The policy's numbers in words: complete, the same everywhere, and shown by the timeline.
class PolicyNamesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesAreThoseOfThePublicHeader_data() { tables(); }
    void namesAreThoseOfThePublicHeader();
    void namesAreThoseOfScripts_data() { tables(); }
    void namesAreThoseOfScripts();
    void noTwoReadAlike_data() { tables(); }
    void noTwoReadAlike();
    void texts();
    void sources_data();
    void sources();
    void everySourceOfTheLibraryHasAName();
    void timeline_data();
    void timeline();
    void scriptsNeedNoNumbers();
    void keysWorkOn();

private:
    static void tables();
    QString played(const QByteArray &program) const;

    QTemporaryDir folder;
};

/// The enumerators of AudioPolicy that stand under a name.
static QMetaEnum enumeratorsOf(const char *name)
{
    const QMetaObject &type = QmlAudioPolicy::staticMetaObject;
    return type.enumerator(type.indexOfEnumerator(name));
}

void PolicyNamesTest::tables()
{
    QTest::addColumn<Table>("table");
    QTest::newRow("statuses") << Table{rows(policynames::statuses), QStringLiteral("AudioStatus"), enumeratorsOf("Status"), QStringLiteral("Status")};
    QTest::newRow("channels") << Table{rows(policynames::channels), QStringLiteral("AudioChannel"), enumeratorsOf("Channel"), QStringLiteral("Channel")};
    QTest::newRow("volume types") << Table{rows(policynames::volumeTypes), QStringLiteral("ZelAudioType"), enumeratorsOf("VolumeType"), QString()};
}

void PolicyNamesTest::namesAreThoseOfThePublicHeader()
{
    QFETCH(Table, table);
    const QVector<Enumerator> declared = declaredEnumerators(table.headerPrefix);
    QVERIFY(declared.size() >= 6);
    for (const Enumerator &enumerator : declared) {
        QString name = enumerator.name;
        if (table.scriptPrefix == QLatin1String("Status"))
            name.replace(QLatin1String("BtPhone"), QLatin1String("Bt"));
        QVERIFY2(enumerator.number < table.numbers.size(), qPrintable(enumerator.name));
        QCOMPARE(QString::fromLatin1(table.numbers.at(enumerator.number).name), name);
    }
}

void PolicyNamesTest::namesAreThoseOfScripts()
{
    QFETCH(Table, table);
    QCOMPARE(table.script.keyCount(), table.numbers.size());
    for (const policynames::Number &number : qAsConst(table.numbers))
        QCOMPARE(QString::fromLatin1(table.script.valueToKey(number.number)), table.scriptPrefix + QLatin1String(number.name));
}

void PolicyNamesTest::noTwoReadAlike()
{
    QFETCH(Table, table);
    QSet<QString> names;
    for (const policynames::Number &number : qAsConst(table.numbers)) {
        QVERIFY(*number.meaning != '\0');
        names.insert(QLatin1String(number.name));
    }
    QCOMPARE(names.size(), table.numbers.size());
}

void PolicyNamesTest::texts()
{
    QCOMPARE(statusText(2), QStringLiteral("BtTelephony"));
    QCOMPARE(statusText(19), QStringLiteral("CarLifeRestore"));
    QCOMPARE(statusText(20), QStringLiteral("20"));
    QCOMPARE(statusText(-1), QStringLiteral("-1"));
    QCOMPARE(statusMeaning(2), QStringLiteral("a telephone call over Bluetooth"));
    QCOMPARE(statusMeaning(20), QString());
}

void PolicyNamesTest::sources_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *source, const char *text) { QTest::newRow(source) << QString::fromLatin1(source) << QString::fromLatin1(text); };
    row("S+FilePlayer", "file player");
    row("S+CarPlaySpeech", "CarPlay speech");
    row("BT_AUDIO_Track", "Bluetooth audio");
    row("S+AuxIn", "auxiliary input");
    row("S+none", "no source");
    row("S+FilePlayer_APP", "file player");
    row("s+AirPlayMedia_APP", "AirPlay media");
    row("S+Gramophone", "S+Gramophone");
    row("S+Gramophone_APP", "S+Gramophone_APP");
    row("", "");
}

void PolicyNamesTest::sources()
{
    QFETCH(QString, source);
    QTEST(sourceText(source), "text");
}

void PolicyNamesTest::everySourceOfTheLibraryHasAName()
{
    for (const audio::tables::SourceName &source : audio::tables::sourceNames) {
        const QString name = QLatin1String(source.spName);
        QVERIFY2(sourceText(name) != name, source.spName);
        QCOMPARE(sourceText(QLatin1String(source.qtName)), sourceText(name));
    }
}

QString PolicyNamesTest::played(const QByteArray &program) const
{
    QFile file(folder.filePath(QStringLiteral("scenario.js")));
    if (!file.open(QIODevice::WriteOnly) || file.write(program) != program.size())
        qFatal("cannot write a scenario");
    file.close();
    return BenchProcess({QStringLiteral("play"), QStringLiteral("-v"), file.fileName()}).output;
}

void PolicyNamesTest::timeline_data()
{
    QTest::addColumn<QByteArray>("call");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *call, const char *text) { QTest::newRow(call) << QByteArray(call) << QString::fromLatin1(text); };
    row("AudioPolicy.updateAudioStatus(2)", "AudioPolicy.updateAudioStatus(BtTelephony)");
    row("AudioPolicy.updateAudioStatus(AudioPolicy.StatusCarPlayDuck)", "AudioPolicy.updateAudioStatus(CarPlayDuck)");
    row("AudioPolicy.updateAudioStatus(0)", "AudioPolicy.updateAudioStatus(None)");
    row("AudioPolicy.updateAudioStatus(20)", "AudioPolicy.updateAudioStatus(20)");
    row("AudioPolicy.updateAudioChannel(3)", "AudioPolicy.updateAudioChannel(FilePlayer)");
    row("AudioPolicy.updateAudioChannel(-1)", "AudioPolicy.updateAudioChannel(-1)");
    row("AudioPolicy.setVolume(0, 12, true)", "AudioPolicy.setVolume(Media, 12, true)");
    row("AudioPolicy.setVolume(5, 2, false)", "AudioPolicy.setVolume(HiCarCall, 2, false)");
    row("AudioPolicy.getVolume(3)", "AudioPolicy.getVolume(Ring) = 20");
    row("AudioPolicy.getVolume(6)", "AudioPolicy.getVolume(6) = ");
    row("AudioPolicy._getAllChannelsFromCurrentType(4)", "AudioPolicy._getAllChannelsFromCurrentType(Speech) = [8]");
    // Numbers of another kind stay numbers.
    row("AudioPolicy.setEqType(2)", "AudioPolicy.setEqType(2)");
    row("AudioPolicy.customEq(2)", "AudioPolicy.customEq(2) = 0");
    row("AudioPolicy.toString()", "AudioPolicy.toString() = ");
}

void PolicyNamesTest::timeline()
{
    QFETCH(QByteArray, call);
    QFETCH(QString, text);
    const QString output = played("eraseSettings();\npowerOn();\n" + call + ";\n");
    QVERIFY2(output.contains(QLatin1String("  0:00.000  ") + text), qPrintable(output));
}

void PolicyNamesTest::scriptsNeedNoNumbers()
{
    const QString output = played("expect(AudioPolicy.StatusBtTelephony).toBe(2);\n"
                                  "expect(AudioPolicy.StatusBtTelephony3).toBe(3);\n"
                                  "expect(AudioPolicy.ChannelFilePlayer).toBe(3);\n"
                                  "expect(AudioPolicy.ChannelHiCar).toBe(18);\n"
                                  "expect(AudioPolicy.Telephony).toBe(2);\n");
    QVERIFY2(output.contains(QLatin1String("5 expectations held")), qPrintable(output));
}

void PolicyNamesTest::keysWorkOn()
{
    QStringList expected;
    for (int status = 0; status <= PolicyRules::highestStatus + 1; ++status) {
        for (int channel = 0; channel <= int(std::size(policynames::channels)); ++channel)
            expected.append(QString::number(PolicyRules::typeOfKeys(status, channel)));
    }
    const QString output = played("powerOn();\n"
                                  "const types = [];\n"
                                  "for (let status = 0; status <= 20; ++status) {\n"
                                  "    for (let channel = 0; channel <= 20; ++channel) {\n"
                                  "        for (let type = 0; type < 6; ++type)\n"
                                  "            AudioPolicy.setVolume(type, 10, true);\n"
                                  "        AudioPolicy.updateAudioChannel(channel);\n"
                                  "        AudioPolicy.updateAudioStatus(status);\n"
                                  "        AudioPolicy.updateCurrentAudioVolume(true);\n"
                                  "        types.push(AudioPolicy.volumes.indexOf(11));\n"
                                  "    }\n"
                                  "}\n"
                                  "console.log('types:' + types.join(','));\n");
    QVERIFY2(output.contains(QStringLiteral("types:") + expected.join(QLatin1Char(','))), qPrintable(output.right(2000)));
}

QTEST_GUILESS_MAIN(PolicyNamesTest)

#include "tst_policynames.moc"

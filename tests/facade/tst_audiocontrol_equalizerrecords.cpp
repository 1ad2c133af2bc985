#include "equalizeroperations.h"
#include "expectedequalizer.h"
#include "operationtest.h"

#include <QtTest/QtTest>

#include <cstring>

using audio::AudioControl;
using namespace expected;

namespace
{

template<typename Record>
QByteArray bytesOf(const Record &record)
{
    return QByteArray(reinterpret_cast<const char *>(&record), sizeof record).toHex();
}

} // namespace

/// The equalizer's records to the last byte, and the inner operations that fill and send them.
class AudioControlEqualizerRecordsTest : public OperationTest
{
    Q_OBJECT

private Q_SLOTS:
    void shortRecordByteForByte_data();
    void shortRecordByteForByte();
    void extendedRecordByteForByte_data();
    void extendedRecordByteForByte();
    void loudnessRecordByteForByte();
    void nothingIsKeptBetweenCalls();

    void shortPresets_data();
    void shortPresets();
    void extendedPresets_data();
    void extendedPresets();
    void innerShortSetters_data();
    void innerShortSetters();
    void innerExtendedSetters_data();
    void innerExtendedSetters();

private:
    /// The bytes of the one record that was sent by an operation.
    QByteArray sentRecord(const char *operation) const;
};

QByteArray AudioControlEqualizerRecordsTest::sentRecord(const char *operation) const
{
    const auto entries = platform->journal()->entriesOf(QString::fromLatin1(operation));
    return entries.size() == 1 ? entries.constFirst().record.toHex() : QByteArray("not sent once");
}

// Bytes ---------------------------------------------------------------------------------------------------------------------

void AudioControlEqualizerRecordsTest::shortRecordByteForByte_data()
{
    QTest::addColumn<int>("mode");
    for (int mode = 0; mode <= 6; ++mode)
        QTest::addRow("mode %d", mode) << mode;
}

void AudioControlEqualizerRecordsTest::shortRecordByteForByte()
{
    QFETCH(int, mode);
    control->setEqMode(static_cast<AudioControl::EqMode>(mode));
    QCOMPARE(sentRecord("App.setEqParameter"), shortRecord(shortCodes, modeGains.at(mode)));
    QCOMPARE(bytesOf(platform->chip()->lastEqParameter()), shortRecord(shortCodes, modeGains.at(mode)));
}

void AudioControlEqualizerRecordsTest::extendedRecordByteForByte_data()
{
    QTest::addColumn<Act>("act");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("setEqGain") << applyGains(slopingGains) << extendedRecord(sixteenHertz, sixteenQ, slopingGains);
    QTest::newRow("setEqGain10") << applyTenGains(slopingTenGains) << extendedRecord(tenHertz, tenQ, widened(slopingTenGains));
    QTest::newRow("setEqValue") << applyValues(slopingWholeGains) << extendedRecord(sixteenHertz, sixteenQ, widened(slopingWholeGains));
}

void AudioControlEqualizerRecordsTest::extendedRecordByteForByte()
{
    QFETCH(OperationTest::Act, act);
    QFETCH(QByteArray, bytes);
    QCOMPARE(bytes.size(), 2 * 564);
    act(*control);
    QCOMPARE(sentRecord("App.setExtEqParameter"), bytes);
    QCOMPARE(bytesOf(platform->chip()->lastExtEqParameter()), bytes);
}

void AudioControlEqualizerRecordsTest::loudnessRecordByteForByte()
{
    control->setLoudnessSwitch(true);
    QCOMPARE(sentRecord("App.setLoudness"), QByteArray("010001002003"));
    QVERIFY(platform->chip()->isLoudnessOn());
    platform->journal()->clear();
    control->setLoudnessSwitch(false);
    QCOMPARE(sentRecord("App.setLoudness"), QByteArray("000000002003"));
    QVERIFY(!platform->chip()->isLoudnessOn());
}

void AudioControlEqualizerRecordsTest::nothingIsKeptBetweenCalls()
{
    control->setEqGain(repeated(12.0F, 16));
    platform->journal()->clear();
    control->setEqGain10(repeated(1, 10));
    QCOMPARE(sentRecord("App.setExtEqParameter"), extendedRecord(tenHertz, tenQ, repeated(1.0F, 10)));
    platform->journal()->clear();
    control->setEqGain(oneBand(15, 12.5F, 16)); // refused: what is in force stays
    QCOMPARE(takeCallsAndLifetimes(), QStringList());
    QCOMPARE(bytesOf(platform->chip()->lastExtEqParameter()), extendedRecord(tenHertz, tenQ, repeated(1.0F, 10)));
    control->setEqMode(static_cast<AudioControl::EqMode>(1));
    control->setEqMode(static_cast<AudioControl::EqMode>(6));
    QCOMPARE(bytesOf(platform->chip()->lastEqParameter()), shortRecord(shortCodes, flat));
}

// Inner operations ----------------------------------------------------------------------------------------------------------

void AudioControlEqualizerRecordsTest::shortPresets_data()
{
    QTest::addColumn<bool>("inHertz");
    QTest::newRow("initEqSystemVal: index codes") << false;
    QTest::newRow("initEqValue: Hz") << true;
}

void AudioControlEqualizerRecordsTest::shortPresets()
{
    QFETCH(bool, inHertz);
    audio::audio_eq_parameter_t parameter = {};
    std::fill(std::begin(parameter.gain), std::end(parameter.gain), 1.25F);
    QCOMPARE(inHertz ? inner->initEqValue(parameter) : inner->initEqSystemVal(parameter), 0);
    // The gains are left to the caller.
    QCOMPARE(bytesOf(parameter), shortRecord(inHertz ? shortHertz : shortCodes, repeated(1.25F, 8)));
    QCOMPARE(log->takeTexts(), QStringList());
    QCOMPARE(takeCallsAndLifetimes(), QStringList());
}

void AudioControlEqualizerRecordsTest::extendedPresets_data()
{
    QTest::addColumn<int>("preset");
    QTest::newRow("initEqSystemVal16: sixteen bands, and type 0 in the four others") << 0;
    QTest::newRow("initEqValue16: sixteen bands") << 1;
    QTest::newRow("initEqSystemVal10: ten bands and six parked ones") << 2;
}

void AudioControlEqualizerRecordsTest::extendedPresets()
{
    QFETCH(int, preset);
    // What a preset does not write stays as it was: seen on a record full of 0xAA.
    audio::audio_ext_eq_parameter_t parameter;
    std::memset(static_cast<void *>(&parameter), 0xAA, sizeof parameter);

    const int result = preset == 0 ? inner->initEqSystemVal16(parameter) : preset == 1 ? inner->initEqValue16(parameter) : inner->initEqSystemVal10(parameter);
    QCOMPARE(result, 0);

    Bytes bytes;
    bytes << quint32(0xFFFF);
    for (int band = 0; band < 16; ++band) {
        bytes << quint32(3) << (preset == 2 ? tenHertz : sixteenHertz).at(band) << quint16(0xAAAA);
        bytes << quint32(0xAAAAAAAA) << (preset == 2 ? tenQ : sixteenQ).at(band); // the gain is left to the caller
        bytes << quint32(0) << quint32(0) << quint32(0);
    }
    for (int band = 16; band < 20; ++band) {
        bytes << (preset == 0 ? quint32(0) : quint32(0xAAAAAAAA));
        for (int word = 1; word < 7; ++word)
            bytes << quint32(0xAAAAAAAA);
    }
    QCOMPARE(bytesOf(parameter), bytes.toHex());
    QCOMPARE(log->takeTexts(), QStringList());
    QCOMPARE(takeCallsAndLifetimes(), QStringList());
}

void AudioControlEqualizerRecordsTest::innerShortSetters_data()
{
    QTest::addColumn<bool>("inHertz");
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("result");
    QTest::newRow("setEqGain") << false << 0 << 0;
    QTest::newRow("setEqGain, refused: -1 whatever the code") << false << 7 << -1;
    QTest::newRow("setEqValue") << true << 0 << 0;
    QTest::newRow("setEqValue, refused: -1 whatever the code") << true << 7 << -1;
    QTest::newRow("setEqGain without an App") << false << -1 << -1;
    QTest::newRow("setEqValue without an App") << true << -1 << -1;
}

void AudioControlEqualizerRecordsTest::innerShortSetters()
{
    QFETCH(bool, inHertz);
    QFETCH(int, code);
    QFETCH(int, result);
    if (code > 0)
        QVERIFY(platform->faults()->fail("App.setEqParameter"_s, code));
    else if (code < 0)
        startedWithoutObjects()(*this);
    const QList<quint16> &frequencies = inHertz ? shortHertz : shortCodes;
    QStringList lines = {error(QStringLiteral("set eq error %1").arg(code))};
    if (code == 0) {
        lines = QStringList{info("set eq channel 65535"), info(inHertz ? "EqFrequency:" : "Fc:")};
        for (const quint16 frequency : frequencies)
            lines.append(info(QString::number(frequency)));
    }
    audio::audio_eq_parameter_t parameter = {};
    inHertz ? inner->initEqValue(parameter) : inner->initEqSystemVal(parameter);
    std::fill(std::begin(parameter.gain), std::end(parameter.gain), -2.5F);

    QCOMPARE(inHertz ? inner->setEqValue(parameter) : inner->setEqGain(parameter), result);
    if (code == 0)
        QCOMPARE(sentRecord("App.setEqParameter"), shortRecord(frequencies, repeated(-2.5F, 8)));
    QCOMPARE(takeCallsAndLifetimes(), code < 0 ? QStringList() : QStringList{shortCall(frequencies, repeated(-2.5F, 8), code)});
    QCOMPARE(log->takeTexts(), lines);
}

void AudioControlEqualizerRecordsTest::innerExtendedSetters_data()
{
    QTest::addColumn<bool>("isValue");
    QTest::addColumn<QVector<Given>>("given");
    QTest::addColumn<int>("result");
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<QStringList>("lines");
    const auto calls = [](int code) { return fresh("App", {extendedCall(sixteenHertz, sixteenQ, flat, code)}); };
    for (const bool isValue : {false, true}) {
        const char *name = isValue ? "setEqValue16" : "setEqGain16";
        QTest::addRow("%s", name) << isValue << QVector<Given>() << 0 << calls(0) << QStringList{info("set eq channel 65535")};
        QTest::addRow("%s, refused: -1 whatever the code", name)
            << isValue << QVector<Given>{refused("App.setExtEqParameter", 7)} << -1 << calls(7) << QStringList{error("set eq error 7")};
        QTest::addRow("%s, no App can be made: 0, the caller is not told", name)
            << isValue << QVector<Given>{noneMade("App")} << 0 << QStringList{notCreated("App")} << QStringList{error("Create App failed.")};
    }
}

void AudioControlEqualizerRecordsTest::innerExtendedSetters()
{
    QFETCH(bool, isValue);
    QFETCH(QVector<OperationTest::Given>, given);
    QFETCH(int, result);
    QFETCH(QStringList, calls);
    QFETCH(QStringList, lines);
    for (const Given &wrong : qAsConst(given))
        wrong(*this);
    audio::audio_ext_eq_parameter_t parameter = {};
    inner->initEqSystemVal16(parameter);
    QCOMPARE(isValue ? inner->setEqValue16(parameter) : inner->setEqGain16(parameter), result);
    QCOMPARE(takeCallsAndLifetimes(), calls);
    QCOMPARE(log->takeTexts(), lines);
}

QTEST_GUILESS_MAIN(AudioControlEqualizerRecordsTest)

#include "tst_audiocontrol_equalizerrecords.moc"

#include "equalizercurves.h"
#include "measuredfilter.h"

#include <sound/equalizertext.h>

#include <QtCore/QStandardPaths>
#include <QtCore/QTextCodec>
#include <QtTest/QtTest>

#include <cmath>
#include <limits>

using EqualizerResponse::Shelf;

namespace
{

QString remarksText(const QVector<EqualizerText::Remark> &remarks)
{
    QStringList texts;
    for (const EqualizerText::Remark &remark : remarks)
        texts.append(QStringLiteral("%1: %2").arg(remark.line).arg(remark.text));
    return texts.join(QLatin1Char('\n'));
}

/// Bytes of a text in UTF-16 with its mark.
QByteArray wide(const QString &text)
{
    return QTextCodec::codecForName("UTF-16LE")->fromUnicode(text);
}

} // namespace

/// Texts of equalizer tools, good ones and others.
class EqualizerTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void filters_data();
    void filters();
    void problems_data();
    void problems();
    void whatIsOffCountsForNothing();
    void preamps();
    void lists();
    void allAddsUp();
    void lineEndsAndEncodings_data();
    void lineEndsAndEncodings();
    void channels();
    void anyBytes();
    void shelvesAsMeasured_data();
    void shelvesAsMeasured();
    void writtenIsRead();
    void writtenText();
};

void EqualizerTextTest::filters_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<double>("frequency");
    QTest::addColumn<double>("gain");
    QTest::addColumn<double>("q");
    QTest::addColumn<QString>("shelf");

    QTest::newRow("usual") << "Filter 1: ON PK Fc 100 Hz Gain -2.5 dB Q 1.41" << 100.0 << -2.5 << 1.41 << "";
    QTest::newRow("columns") << "Filter  1: ON  PK       Fc    63.0 Hz   Gain  +4.0 dB  Q  0.70" << 63.0 << 4.0 << 0.7 << "";
    QTest::newRow("without a number") << "Filter: ON PK Fc 100 Hz Gain 1 dB Q 2" << 100.0 << 1.0 << 2.0 << "";
    QTest::newRow("small letters") << "filter 12: on pk fc 100 hz gain 1 db q 2" << 100.0 << 1.0 << 2.0 << "";
    QTest::newRow("decimal commas") << "Filter 1: ON PK Fc 62,5 Hz Gain -2,5 dB Q 1,41" << 62.5 << -2.5 << 1.41 << "";
    QTest::newRow("without units") << "Filter 1: ON PK Fc 100 Gain 1 Q 2" << 100.0 << 1.0 << 2.0 << "";
    QTest::newRow("units at the numbers") << "Filter 1: ON PK Fc 100Hz Gain 1dB Q 2" << 100.0 << 1.0 << 2.0 << "";
    QTest::newRow("kilohertz") << "Filter 1: ON PK Fc 2.5 kHz Gain 1 dB Q 2" << 2500.0 << 1.0 << 2.0 << "";
    QTest::newRow("kilohertz with three decimals") << "Filter 1: ON PK Fc 2.500kHz Gain 1 dB Q 2" << 2500.0 << 1.0 << 2.0 << "";
    QTest::newRow("kilohertz with three decimals behind a comma") << "Filter 1: ON PK Fc 12,500 kHz Gain 1 dB Q 2" << 12500.0 << 1.0 << 2.0 << "";
    QTest::newRow("another order") << "Filter 1: ON PK Q 2 Gain 1 dB Fc 100 Hz" << 100.0 << 1.0 << 2.0 << "";
    QTest::newRow("another name") << "Filter 1: ON PEQ Fc 100 Hz Gain 1 dB Q 2" << 100.0 << 1.0 << 2.0 << "";
    QTest::newRow("minus sign of typography") << QStringLiteral("Filter 1: ON PK Fc 100 Hz Gain \u22122.5 dB Q 1") << 100.0 << -2.5 << 1.0 << "";
    QTest::newRow("bandwidth") << "Filter 1: ON PK Fc 100 Hz Gain 1 dB BW Oct 1" << 100.0 << 1.0 << std::sqrt(2.0) << "";
    QTest::newRow("bandwidth, its unit behind") << "Filter 1: ON PK Fc 100 Hz Gain 1 dB BW 2 oct" << 100.0 << 1.0 << 2.0 / 3 << "";
    QTest::newRow("low shelf") << "Filter 1: ON LS Fc 100 Hz Gain 3 dB" << 100.0 << 3.0 << 0.7071 << "low";
    QTest::newRow("low shelf with Q") << "Filter 1: ON LSC Fc 100 Hz Gain 3 dB Q 0.5" << 100.0 << 3.0 << 0.5 << "low";
    QTest::newRow("high shelf") << "Filter 1: ON HSC Fc 8000 Hz Gain -3 dB Q 1" << 8000.0 << -3.0 << 1.0 << "high";
}

void EqualizerTextTest::filters()
{
    QFETCH(QString, line);
    QFETCH(double, frequency);
    QFETCH(double, gain);
    QFETCH(double, q);
    QFETCH(QString, shelf);

    const EqualizerText text = EqualizerText::read(line.toUtf8());
    QCOMPARE(remarksText(text.problems), QString());
    QCOMPARE(text.filters.size(), 1);
    const EqualizerText::Filter &filter = text.filters.first();
    QCOMPARE(filter.band.frequency, frequency);
    QCOMPARE(filter.band.gain, gain);
    QCOMPARE(filter.band.q, q);
    QCOMPARE(filter.shelf.has_value(), !shelf.isEmpty());
    QVERIFY(!filter.shelf || *filter.shelf == (shelf == QLatin1String("low") ? Shelf::Low : Shelf::High));
    // That a shelf is no band of the unit is worth a word.
    QCOMPARE(text.notes.size(), shelf.isEmpty() ? 0 : 1);
}

void EqualizerTextTest::problems_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("problem");

    QTest::newRow("something else") << "Device: all"
                                    << "neither a filter nor a list nor a preamp";
    QTest::newRow("no colon") << "Filter 1 ON PK Fc 100 Hz Gain 1 dB Q 1"
                              << "neither a filter nor a list nor a preamp";
    QTest::newRow("nothing behind") << "Filter 1:"
                                    << "a filter is ON or OFF";
    QTest::newRow("neither on nor off") << "Filter 1: PK Fc 100 Hz Gain 1 dB Q 1"
                                        << "a filter is ON or OFF";
    QTest::newRow("no kind") << "Filter 1: ON"
                             << "\"\" is no kind of filter";
    QTest::newRow("unknown kind") << "Filter 1: ON XY Fc 100 Hz Gain 1 dB Q 1"
                                  << "\"XY\" is no kind of filter";
    QTest::newRow("low pass") << "Filter 1: ON LP Fc 100 Hz"
                              << "the unit's bands cannot do a filter of the kind LP";
    QTest::newRow("high pass with Q") << "Filter 1: ON HPQ Fc 100 Hz Q 0.7"
                                      << "the unit's bands cannot do a filter of the kind HPQ";
    QTest::newRow("notch") << "Filter 1: ON NO Fc 100 Hz"
                           << "the unit's bands cannot do a filter of the kind NO";
    QTest::newRow("no frequency") << "Filter 1: ON PK Gain 1 dB Q 1"
                                  << "Fc is missing";
    QTest::newRow("no gain") << "Filter 1: ON PK Fc 100 Hz Q 1"
                             << "Gain is missing";
    QTest::newRow("no Q") << "Filter 1: ON PK Fc 100 Hz Gain 1 dB"
                          << "Q is missing";
    QTest::newRow("frequency twice") << "Filter 1: ON PK Fc 100 Hz Fc 200 Hz Gain 1 dB Q 1"
                                     << "Fc is there twice";
    QTest::newRow("Q and bandwidth") << "Filter 1: ON PK Fc 100 Hz Gain 1 dB Q 1 BW Oct 1"
                                     << "BW is there twice";
    QTest::newRow("no number") << "Filter 1: ON PK Fc hundred Hz Gain 1 dB Q 1"
                               << "Fc needs a number, not \"hundred\"";
    QTest::newRow("number that ends early") << "Filter 1: ON PK Fc 100 Hz Gain 1 dB Q"
                                            << "Q needs a number, not \"\"";
    QTest::newRow("not a number") << "Filter 1: ON PK Fc 100 Hz Gain nan dB Q 1"
                                  << "Gain needs a number, not \"nan\"";
    QTest::newRow("hexadecimal") << "Filter 1: ON PK Fc 0x64 Hz Gain 1 dB Q 1"
                                 << "Fc needs a number, not \"0x64\"";
    QTest::newRow("something more") << "Filter 1: ON PK Fc 100 Hz Gain 1 dB Q 1 T60 80 ms"
                                    << "what is \"t60\"?";
    QTest::newRow("slope of a shelf") << "Filter 1: ON LS 12dB Fc 100 Hz Gain 1 dB"
                                      << "what is \"12\"?";
    QTest::newRow("thousands or decimals") << "Filter 1: ON PK Fc 12,500 Hz Gain 1 dB Q 1"
                                           << "12,500 Hz can be 12.5 Hz or 12500 Hz";
    QTest::newRow("too low") << "Filter 1: ON PK Fc 0.5 Hz Gain 1 dB Q 1"
                             << "0.5 Hz is not from 1 Hz to below 24 kHz";
    QTest::newRow("too high") << "Filter 1: ON PK Fc 24 kHz Gain 1 dB Q 1"
                              << "24000 Hz is not from 1 Hz to below 24 kHz";
    QTest::newRow("too loud") << "Filter 1: ON PK Fc 100 Hz Gain 60.1 dB Q 1"
                              << "a gain of 60.1 dB is beyond 60 dB";
    QTest::newRow("more digits than a number holds") << QStringLiteral("Filter 1: ON PK Fc 100 Hz Gain %1 dB Q 1").arg(QString(400, QLatin1Char('9')))
                                                     << "a gain of inf dB is beyond 60 dB";
    QTest::newRow("no width") << "Filter 1: ON PK Fc 100 Hz Gain 1 dB Q 0"
                              << "a Q of 0 is not from 0.01 to 1000";
    QTest::newRow("no bandwidth") << "Filter 1: ON PK Fc 100 Hz Gain 1 dB BW Oct 0"
                                  << "a Q of inf is not from 0.01 to 1000";
    QTest::newRow("preamp without a number") << "Preamp: low"
                                             << "a preamp is a number of dB";
    QTest::newRow("preamp with more") << "Preamp: -6 dB now"
                                      << "a preamp is a number of dB";
    QTest::newRow("preamp too loud") << "Preamp: -100 dB"
                                     << "a preamp is a number of dB";
    QTest::newRow("empty list") << "GraphicEQ:"
                                << "a list has a frequency and a gain between its semicolons, not \"\"";
    QTest::newRow("list without a gain") << "GraphicEQ: 20 0; 50"
                                         << "a list has a frequency and a gain between its semicolons, not \"50\"";
    QTest::newRow("list with a word too much") << "GraphicEQ: 20 0; 50 1 2"
                                               << "a list has a frequency and a gain between its semicolons, not \"50 1 2\"";
    QTest::newRow("list from nothing") << "GraphicEQ: 0 0; 50 1"
                                       << "no list can have 0 dB at 0 Hz";
    QTest::newRow("list too loud") << "GraphicEQ: 20 0; 50 61"
                                   << "no list can have 61 dB at 50 Hz";
    QTest::newRow("list with a frequency twice") << "GraphicEQ: 50 0; 20 1; 50 1"
                                                 << "50 Hz is twice in the list";
    QTest::newRow("list with thousands or decimals") << "GraphicEQ: 20 0; 20,000 1"
                                                     << "20,000 Hz can be 20 Hz or 20000 Hz";
}

void EqualizerTextTest::problems()
{
    QFETCH(QString, line);
    QFETCH(QString, problem);

    const QString good = QStringLiteral("Filter 1: ON PK Fc 100 Hz Gain 1 dB Q 2\n");
    const EqualizerText text = EqualizerText::read((good + line + QLatin1Char('\n') + good).toUtf8());
    QCOMPARE(remarksText(text.problems), QStringLiteral("2: ") + problem);
    QCOMPARE(text.filters.size(), 2);
    QVERIFY(text.lists.isEmpty());
    QCOMPARE(text.preamp, 0.0);
}

void EqualizerTextTest::whatIsOffCountsForNothing()
{
    const EqualizerText text = EqualizerText::read("# Filter 1: ON PK Fc 100 Hz Gain 1 dB Q 2\n"
                                                   "\n"
                                                   "// nothing\n"
                                                   "   \t\n"
                                                   "Filter 1: OFF PK Fc 100 Hz Gain 1 dB Q 2\n"
                                                   "Filter 2: OFF\n"
                                                   "Filter 3: ON None\n");
    QCOMPARE(remarksText(text.problems), QString());
    QCOMPARE(text.filtersOff, 3);
    QVERIFY(text.filters.isEmpty());
    QVERIFY(!text.isEmpty());
    QCOMPARE(text.level(100), 0.0);
    QVERIFY(EqualizerText::read("# nothing\nPreamp: -6 dB\n").isEmpty());
}

void EqualizerTextTest::preamps()
{
    const EqualizerText text = EqualizerText::read("Preamp: -6,5 dB\nPreamp: -1.5\nFilter: ON PK Fc 100 Hz Gain 3 dB Q 2");
    QCOMPARE(text.preamp, -8.0);
    QCOMPARE(text.level(100), 3.0);
}

void EqualizerTextTest::lists()
{
    const EqualizerText text = EqualizerText::read("GraphicEQ: 1000 -3; 100 0; 10000 6,5;");
    QCOMPARE(remarksText(text.problems), QString());
    QCOMPARE(text.lists.size(), 1);
    QCOMPARE(text.level(20), 0.0);
    QCOMPARE(text.level(100), 0.0);
    QCOMPARE(text.level(std::sqrt(100 * 1000.0)), -1.5);
    QCOMPARE(text.level(1000), -3.0);
    QCOMPARE(text.level(1000 * std::pow(10, 0.25)), -3 + 9.5 / 4);
    QCOMPARE(text.level(20000), 6.5);
}

void EqualizerTextTest::allAddsUp()
{
    const EqualizerText text = EqualizerText::read("GraphicEQ: 1000 -3\n"
                                                   "GraphicEQ: 1000 1\n"
                                                   "Filter 1: ON PK Fc 200 Hz Gain 4 dB Q 1\n"
                                                   "Filter 2: ON HS Fc 200 Hz Gain 6 dB\n");
    QCOMPARE(text.level(200), -2.0 + 4 + 3);
    QVERIFY(std::abs(text.level(19000) - (-2.0 + 6)) < 0.01);
}

void EqualizerTextTest::lineEndsAndEncodings_data()
{
    QTest::addColumn<QByteArray>("bytes");

    const QString text = QStringLiteral("# F\u00fcr Oma\nFilter 1: ON PK Fc 100 Hz Gain 1 dB Q 2\nPreamp: -3 dB\nwhat\n");
    QTest::newRow("UTF-8") << text.toUtf8();
    QTest::newRow("UTF-8 with its mark") << QByteArray("\xef\xbb\xbf") + text.toUtf8();
    QTest::newRow("Latin-1") << text.toLatin1();
    QTest::newRow("UTF-16") << wide(text);
    QTest::newRow("CRLF") << QString(text).replace(QLatin1Char('\n'), QLatin1String("\r\n")).toUtf8();
    QTest::newRow("CR") << QString(text).replace(QLatin1Char('\n'), QLatin1Char('\r')).toUtf8();
    QTest::newRow("no line end at last") << text.trimmed().toUtf8();
    QTest::newRow("tabs and blanks of typography") << QString(text).replace(QLatin1String("Fc 100"), QStringLiteral("Fc\t\u00a0100")).toUtf8();
}

void EqualizerTextTest::lineEndsAndEncodings()
{
    QFETCH(QByteArray, bytes);

    const EqualizerText text = EqualizerText::read(bytes);
    QCOMPARE(remarksText(text.problems), QStringLiteral("4: neither a filter nor a list nor a preamp"));
    QCOMPARE(text.filters.size(), 1);
    QCOMPARE(text.filters.first().band.frequency, 100.0);
    QCOMPARE(text.preamp, -3.0);
}

void EqualizerTextTest::channels()
{
    const EqualizerText text = EqualizerText::read("Channel: all\n"
                                                   "Filter 1: ON PK Fc 100 Hz Gain 1 dB Q 2\n"
                                                   "Channel: L\n"
                                                   "Filter 1: ON PK Fc 200 Hz Gain 1 dB Q 2\n"
                                                   "GraphicEQ: 20 1\n"
                                                   "Preamp: -3 dB\n"
                                                   "channel: ALL\n"
                                                   "Filter 1: ON PK Fc 300 Hz Gain 1 dB Q 2\n");
    QCOMPARE(remarksText(text.problems), QStringLiteral("3: one curve holds for all outputs; what is for some of them is left out"));
    QCOMPARE(text.filters.size(), 2);
    QCOMPARE(text.filters.at(1).band.frequency, 300.0);
    QVERIFY(text.lists.isEmpty());
    QCOMPARE(text.preamp, 0.0);
}

void EqualizerTextTest::anyBytes()
{
    QByteArray all;
    for (int byte = 0; byte < 256; ++byte)
        all += char(byte);
    QVERIFY(EqualizerText::read(all).isEmpty());
    QVERIFY(EqualizerText::read({}).isEmpty());
    QCOMPARE(EqualizerText::read({}).problems.size(), 0);
    QVERIFY(EqualizerText::read(QByteArray(1000, '\0')).isEmpty());
}

void EqualizerTextTest::shelvesAsMeasured_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("filter");

    QTest::newRow("low") << "Filter 1: ON LS Fc 100 Hz Gain 6 dB Q 0.7071"
                         << "lowshelf=precision=f64:f=100:width_type=q:width=0.7071:g=6";
    QTest::newRow("low, lowered, steep") << "Filter 1: ON LS Fc 300 Hz Gain -9 dB Q 1.5"
                                         << "lowshelf=precision=f64:f=300:width_type=q:width=1.5:g=-9";
    QTest::newRow("high") << "Filter 1: ON HS Fc 8 kHz Gain 12 dB Q 0.5"
                          << "highshelf=precision=f64:f=8000:width_type=q:width=0.5:g=12";
}

void EqualizerTextTest::shelvesAsMeasured()
{
    if (QStandardPaths::findExecutable(QStringLiteral("ffmpeg")).isEmpty())
        QSKIP("ffmpeg is not installed");
    QFETCH(QString, line);
    QFETCH(QString, filter);

    const EqualizerText text = EqualizerText::read(line.toUtf8());
    const QVector<double> samples = measuredImpulse(filter);
    QCOMPARE(samples.size(), 24000);
    const QVector<double> frequencies = EqualizerResponse::spacedFrequencies(40);
    for (const double frequency : frequencies) {
        const double measured = measuredLevel(samples, frequency);
        QVERIFY2(std::abs(text.level(frequency) - measured) < 0.001,
                 qPrintable(QStringLiteral("%1 Hz: %2, measured %3").arg(frequency).arg(text.level(frequency)).arg(measured)));
    }
}

void EqualizerTextTest::writtenIsRead()
{
    const QStringList names = EqualizerCurves::names();
    QCOMPARE(names.size(), 14);
    for (const QString &name : names) {
        const EqualizerResponse::Bands bands = *EqualizerCurves::named(name);
        const EqualizerText text = EqualizerText::read(EqualizerText::written(bands, name).toUtf8());
        QCOMPARE(remarksText(text.problems), QString());
        QCOMPARE(text.filters.size(), bands.size());
        double highest = -std::numeric_limits<double>::infinity();
        const QVector<double> frequencies = EqualizerResponse::spacedFrequencies(500);
        for (const double frequency : frequencies) {
            QCOMPARE(text.level(frequency), EqualizerResponse::level(bands, frequency));
            highest = std::max(highest, text.level(frequency));
        }
        // Nothing clips, and no more is given away than a tenth.
        QVERIFY(highest + text.preamp <= 0);
        QVERIFY(highest + text.preamp > -0.11 || text.preamp == 0);
    }
}

void EqualizerTextTest::writtenText()
{
    QCOMPARE(EqualizerText::written({{62.5, 1.41, -2.5}, {20000, 1, 12}}, QStringLiteral("two")),
             QStringLiteral("# two\n"
                            "Preamp: -12 dB\n"
                            "Filter 1: ON PK Fc 62.5 Hz Gain -2.5 dB Q 1.41\n"
                            "Filter 2: ON PK Fc 20000 Hz Gain 12 dB Q 1\n"));
    QCOMPARE(EqualizerText::written({{1000, 2, -3}}, QStringLiteral("one")),
             QStringLiteral("# one\n"
                            "Filter 1: ON PK Fc 1000 Hz Gain -3 dB Q 2\n"));
}

QTEST_GUILESS_MAIN(EqualizerTextTest)
#include "tst_equalizertext.moc"

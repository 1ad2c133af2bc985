#include "tonemodel.h"

#include "equalizercurves.h"
#include "policynames.h"

#include <QtTest/QtTest>

#include <algorithm>

namespace
{

/// Takes a snapshot without a car.
class Model : public ToneModel
{
public:
    using ToneModel::update;
};

QVariantList flat(int gain = 0)
{
    QVariantList gains;
    for (int band = 0; band < EqualizerCurves::bandCount; ++band)
        gains.append(gain);
    return gains;
}

QVariantList asList(const EqualizerResponse::Bands &bands, double error = 0)
{
    QVariantList list;
    for (const EqualizerResponse::Band &band : bands) {
        list.append(QVariantMap{{QStringLiteral("frequency"), band.frequency}, {QStringLiteral("q"), band.q}, {QStringLiteral("gain"), band.gain + error}});
    }
    return list;
}

QVariantMap toneOf(int type, const QVariantList &custom, const QVariantList &bands, bool loudness = false)
{
    const QVariantMap tone = {
        {QStringLiteral("equalizerType"), type},
        {QStringLiteral("customCurve"), custom},
        {QStringLiteral("bands"), bands},
        {QStringLiteral("loudness"), loudness},
    };
    return {{QStringLiteral("tone"), tone}};
}

QVariantMap timerOf(const QString &purpose, int left)
{
    const QVariantMap timer = {{QStringLiteral("purpose"), purpose}, {QStringLiteral("left"), left}};
    return {{QStringLiteral("drive"), QVariantMap{{QStringLiteral("timers"), QVariantList{timer}}}}};
}

} // namespace

class ToneModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutCar();
    void takesOver();
    void tellsOfChangesOnly();
    void curveText_data();
    void curveText();
    void refusedCurve_data();
    void refusedCurve();
    void repeatLeft();
    void lines_data();
    void lines();
    void gainLine_data();
    void gainLine();
    void texts();
};

void ToneModelTest::withoutCar()
{
    Model model;
    model.update({});
    QCOMPARE(model.equalizerType(), -1);
    QVERIFY(model.customGains().isEmpty());
    QVERIFY(model.bands().isEmpty());
    QVERIFY(!model.isLoudnessOn());
    QVERIFY(!model.isCustomRefused());
    QCOMPARE(model.repeatLeft(), 0);
    QCOMPARE(model.curveText(), QStringLiteral("no curve yet"));
}

void ToneModelTest::takesOver()
{
    Model model;
    const QVariantList bands = asList(EqualizerCurves::ofMode(2));
    model.update(toneOf(3, flat(4), bands, true));
    QCOMPARE(model.equalizerType(), 3);
    QCOMPARE(model.customGains(), flat(4));
    QCOMPARE(model.bands(), bands);
    QVERIFY(model.isLoudnessOn());
}

void ToneModelTest::tellsOfChangesOnly()
{
    Model model;
    const QSignalSpy type(&model, &ToneModel::equalizerTypeChanged);
    const QSignalSpy gains(&model, &ToneModel::customGainsChanged);
    const QSignalSpy bands(&model, &ToneModel::bandsChanged);
    const QSignalSpy text(&model, &ToneModel::curveTextChanged);
    const QSignalSpy loudness(&model, &ToneModel::loudnessChanged);
    const QSignalSpy repeat(&model, &ToneModel::repeatLeftChanged);
    const auto counts = [&] { return QVector<int>{type.count(), gains.count(), bands.count(), text.count(), loudness.count(), repeat.count()}; };
    const QVariantList preset = asList(EqualizerCurves::ofGains(EqualizerCurves::gainsOfPreset(3)));
    model.update(toneOf(3, flat(), preset));
    QCOMPARE(counts(), QVector<int>({1, 1, 1, 1, 0, 0}));
    model.update(toneOf(3, flat(), preset));
    QCOMPARE(counts(), QVector<int>({1, 1, 1, 1, 0, 0}));
    model.update(toneOf(3, flat(2), preset));
    QCOMPARE(counts(), QVector<int>({1, 2, 1, 1, 0, 0}));
    model.update(toneOf(3, flat(2), preset, true));
    QCOMPARE(counts(), QVector<int>({1, 2, 1, 1, 1, 0}));
}

void ToneModelTest::curveText_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QVariantList>("custom");
    QTest::addColumn<QVariantList>("bands");
    QTest::addColumn<QString>("text");
    EqualizerCurves::Gains gains;
    gains.fill(4);
    const QVariantList preset5 = asList(EqualizerCurves::ofGains(EqualizerCurves::gainsOfPreset(5)));
    EqualizerCurves::Gains ofPreset6;
    ofPreset6.fill(2);
    QTest::newRow("preset") << 5 << flat() << preset5 << "preset 5 of the store";
    QTest::newRow("as floats have it") << 5 << flat() << asList(EqualizerCurves::ofGains(EqualizerCurves::gainsOfPreset(5)), 1e-6) << "preset 5 of the store";
    QTest::newRow("mode") << 5 << flat() << asList(EqualizerCurves::ofMode(4)) << "mode 4 of the facade";
    QTest::newRow("custom") << 7 << flat(4) << asList(EqualizerCurves::ofGains(gains)) << "the custom curve";
    QTest::newRow("custom that a preset has, too") << 7 << flat(2) << asList(EqualizerCurves::ofGains(ofPreset6)) << "the custom curve";
    QTest::newRow("preset that the custom curve is, too") << 6 << flat(2) << asList(EqualizerCurves::ofGains(ofPreset6)) << "preset 6 of the store";
    QTest::newRow("set past the policy") << 5 << flat() << asList(EqualizerCurves::ofGains(gains)) << "a curve of its own";
    QTest::newRow("nearly") << 5 << flat() << asList(EqualizerCurves::ofGains(EqualizerCurves::gainsOfPreset(5)), 0.1) << "a curve of its own";
    QTest::newRow("a band less") << 5 << flat() << preset5.mid(1) << "a curve of its own";
}

void ToneModelTest::curveText()
{
    QFETCH(const int, type);
    QFETCH(const QVariantList, custom);
    QFETCH(const QVariantList, bands);
    QFETCH(const QString, text);
    Model model;
    model.update(toneOf(type, custom, bands));
    QCOMPARE(model.curveText(), text);
}

void ToneModelTest::refusedCurve_data()
{
    QTest::addColumn<int>("gain");
    QTest::addColumn<bool>("refused");
    QTest::newRow("highest") << 12 << false;
    QTest::newRow("lowest") << -12 << false;
    QTest::newRow("higher") << 14 << true;
    QTest::newRow("lower") << -14 << true;
}

void ToneModelTest::refusedCurve()
{
    QFETCH(const int, gain);
    QFETCH(const bool, refused);
    Model model;
    QVariantList custom = flat();
    custom[9] = gain;
    model.update(toneOf(7, custom, {}));
    QCOMPARE(model.isCustomRefused(), refused);
}

void ToneModelTest::repeatLeft()
{
    Model model;
    const QSignalSpy changed(&model, &ToneModel::repeatLeftChanged);
    model.update(timerOf(QStringLiteral("unmute after the timed mute"), 700));
    QCOMPARE(model.repeatLeft(), 0);
    model.update(timerOf(QStringLiteral("take a repeated equalizer gain again"), 420));
    QCOMPARE(model.repeatLeft(), 420);
    model.update({});
    QCOMPARE(model.repeatLeft(), 0);
    QCOMPARE(changed.count(), 2);
}

void ToneModelTest::lines_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("expected");
    const ToneModel &model = Model();
    QTest::newRow("type") << model.typeLine(7) << "AudioPolicy.setEqType(7);";
    QTest::newRow("mode") << model.modeLine(6) << "AudioControl.setEqMode(6);";
    QTest::newRow("loudness on") << model.loudnessLine(true) << "AudioPolicy.setLoudNess(true);";
    QTest::newRow("loudness off") << model.loudnessLine(false) << "AudioPolicy.setLoudNess(false);";
    QTest::newRow("expected type") << model.typeExpectation(2) << "expect(AudioPolicy.eqType()).toBe(2);";
    QTest::newRow("expected loudness") << model.loudnessExpectation(true) << "expect(Platform.isLoudnessOn()).toBe(true);";
    QTest::newRow("expected gain") << model.gainExpectation(15, -8) << "expect(AudioPolicy.customEq(15)).toBe(-8);";
}

void ToneModelTest::lines()
{
    QFETCH(const QString, line);
    QFETCH(const QString, expected);
    QCOMPARE(line, expected);
}

void ToneModelTest::gainLine_data()
{
    QTest::addColumn<double>("gain");
    QTest::addColumn<int>("value");
    QTest::newRow("flat") << 0.0 << 0;
    QTest::newRow("up") << 4.0 << 2;
    QTest::newRow("down") << -6.0 << -3;
    QTest::newRow("highest") << 12.0 << 6;
    QTest::newRow("too high") << 14.0 << 6;
    QTest::newRow("too low") << -40.0 << -6;
    QTest::newRow("between, up") << 3.2 << 2;
    QTest::newRow("between, down") << 2.8 << 1;
}

void ToneModelTest::gainLine()
{
    QFETCH(const double, gain);
    QFETCH(const int, value);
    QCOMPARE(Model().gainLine(11, gain), QStringLiteral("AudioPolicy.adjustCustomEq(%1, 11);").arg(value));
}

void ToneModelTest::texts()
{
    const Model model;
    QCOMPARE(model.typeTexts().size(), EqualizerCurves::presetCount);
    QCOMPARE(model.modeTexts().size(), EqualizerCurves::modeCount);
    QCOMPARE(model.bandTexts().size(), EqualizerCurves::bandCount);
    QCOMPARE(model.bandTexts().mid(8, 3), QStringList({QStringLiteral("1k"), QStringLiteral("2k"), QStringLiteral("3.1k")}));
    QCOMPARE(model.bandTexts().constFirst(), QStringLiteral("50"));
    QCOMPARE(model.bandNames().size(), EqualizerCurves::bandCount);
    QCOMPARE(model.bandNames().mid(7, 4), QStringList({QStringLiteral("800 Hz"), QStringLiteral("1 kHz"), QStringLiteral("2 kHz"), QStringLiteral("3.1 kHz")}));
    QStringList names;
    const QVariantList curves = model.namedCurves();
    for (const QVariant &curve : curves)
        names.append(curve.toMap().value(QStringLiteral("name")).toString());
    QCOMPARE(names, EqualizerCurves::names());
    QCOMPARE(curves.at(7).toMap().value(QStringLiteral("text")).toString(), QStringLiteral("mode 0 of the facade"));
    QCOMPARE(model.highestGain(), 12);
}

QTEST_GUILESS_MAIN(ToneModelTest)
#include "tst_tonemodel.moc"

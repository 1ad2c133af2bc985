#include "equalizercurves.h"

#include <plot/equalizerplot.h>
#include <plot/fadeplot.h>
#include <plot/plotcurves.h>
#include <plot/policyplot.h>
#include <situationexpectations.h>

#include <platform.h>

#include <qzaudio/audiocontrol.h>

#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <cmath>
#include <complex>

namespace
{

template<typename Panel>
Panel panelOf(const Figure &figure)
{
    for (const Figure::Panel &panel : figure.panels) {
        if (const auto *const found = std::get_if<Panel>(&panel))
            return *found;
    }
    return {};
}

/// What is to be left of a loudspeaker, in percent: steps is how far the sound is turned away from it, along the car and across it.
int expectedGain(int alongSteps, int acrossSteps)
{
    const auto left = [](int steps) { return steps <= 0 ? 100 : (100 * (15 - steps) + 7) / 15; };
    return std::max(0, left(alongSteps) + left(acrossSteps) - 100);
}

struct Loudspeaker
{
    int front; ///< 1, or -1 for one in the rear
    int left;
};

constexpr Loudspeaker loudspeakers[] = {{1, 1}, {1, -1}, {-1, 1}, {-1, -1}};

/// The peaking filter as its transfer function, at 48 kHz.
double level(double frequency, double q, double gain, double at)
{
    const double pi = std::acos(-1.0);
    const double amplitude = std::pow(10, gain / 40);
    const double centre = 2 * pi * frequency / 48000;
    const double alpha = std::sin(centre) / (2 * q);
    const std::complex<double> z = std::polar(1.0, -2 * pi * at / 48000);
    const std::complex<double> above = 1 + alpha * amplitude - 2 * std::cos(centre) * z + (1 - alpha * amplitude) * z * z;
    const std::complex<double> below = 1 + alpha / amplitude - 2 * std::cos(centre) * z + (1 - alpha / amplitude) * z * z;
    return 20 * std::log10(std::abs(above / below));
}

} // namespace

class PlotSubjectsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void fieldIsTheChips();
    void carIsTheChips_data();
    void carIsTheChips();
    void responseIsTheFilters_data();
    void responseIsTheFilters();
    void bandsAreThoseThatAreSent();
    void headroomIsOfTheSum();
    void modesStandBesidePresets();
    void gainsAreUnderstood_data();
    void gainsAreUnderstood();
    void settingsMakeACurve_data();
    void settingsMakeACurve();
    void policyIsTheTables();

private:
    QTemporaryDir m_folder;
};

void PlotSubjectsTest::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
}

void PlotSubjectsTest::fieldIsTheChips()
{
    const auto maps = panelOf<Figure::Maps>(FadePlot::draw(0, 0));
    QCOMPARE(maps.maps.size(), 4);
    int silent = 0;
    for (int i = 0; i < maps.maps.size(); ++i) {
        const Figure::Map &map = maps.maps.at(i);
        QCOMPARE(map.columns, 31);
        QCOMPARE(map.values.size(), 31 * 31);
        QCOMPARE(map.isMarked.size(), 31 * 31);
        for (int place = 0; place < map.values.size(); ++place) {
            const int fade = 15 - place / 31;
            const int balance = 15 - place % 31;
            const int along = -fade * loudspeakers[i].front;
            const int across = -balance * loudspeakers[i].left;
            const QByteArray where = QByteArray::number(i) + ": fade " + QByteArray::number(fade) + " balance " + QByteArray::number(balance);
            QVERIFY2(map.values.at(place) == expectedGain(along, across) / 100.0, where.constData());
            QVERIFY2(map.isMarked.at(place) == (along > 0 && across > 0), where.constData());
            silent += along > 0 && along < 15 && across > 0 && across < 15 && expectedGain(along, across) == 0 ? 1 : 0;
        }
    }
    QVERIFY(FadePlot::draw(0, 0).remarks.constFirst().contains(QStringLiteral("silent in %1 of the 961").arg(silent / 4)));
}

void PlotSubjectsTest::carIsTheChips_data()
{
    QTest::addColumn<int>("fade");
    QTest::addColumn<int>("balance");
    QTest::addColumn<QString>("gains"); // left front, right front, left rear, right rear
    QTest::newRow("centre") << 0 << 0 << QStringLiteral("100 %, 0.0 dB|100 %, 0.0 dB|100 %, 0.0 dB|100 %, 0.0 dB");
    QTest::newRow("front and right") << 5 << -3 << QStringLiteral("80 %, -1.9 dB|100 %, 0.0 dB|47 %, -6.6 dB|67 %, -3.5 dB");
    QTest::newRow("rear and left") << -15 << 15 << QStringLiteral("0 %, silent|0 %, silent|100 %, 0.0 dB|0 %, silent");
}

void PlotSubjectsTest::carIsTheChips()
{
    QFETCH(const int, fade);
    QFETCH(const int, balance);
    QFETCH(const QString, gains);
    const Figure figure = FadePlot::draw(fade, balance);
    const auto car = panelOf<Figure::Car>(figure);
    QCOMPARE(car.loudspeakers.size(), 4);
    for (int i = 0; i < 4; ++i) {
        QCOMPARE(car.loudspeakers.at(i).gain, gains.section(QLatin1Char('|'), i, i));
        // It is left as it was asked for.
        QCOMPARE(qRound(car.loudspeakers.at(i).level * 100), simulator::Platform::instance()->chip()->channelGain(1U << unsigned(i)));
    }
    const QPoint chosen = panelOf<Figure::Maps>(figure).maps.constFirst().chosen;
    QCOMPARE(chosen, QPoint(15 - balance, 15 - fade));
}

void PlotSubjectsTest::responseIsTheFilters_data()
{
    QTest::addColumn<QString>("name");
    const QStringList names = EqualizerCurves::names();
    QCOMPARE(names.size(), 14);
    for (const QString &name : names)
        QTest::newRow(qPrintable(name)) << name;
}

void PlotSubjectsTest::responseIsTheFilters()
{
    QFETCH(const QString, name);
    const auto curve = PlotCurves::ofName(name);
    QVERIFY(curve);
    const Figure::Chart chart = panelOf<Figure::Charts>(EqualizerPlot::draw({*curve})).charts.constFirst();
    QCOMPARE(chart.series.size(), 1);
    const auto &points = chart.series.constFirst().points;
    QVERIFY(points.size() > 200);
    QVERIFY(std::abs(points.constFirst().x() - 20) < 1e-6);
    QVERIFY(std::abs(points.constLast().x() - 20000) < 1e-6);
    for (const QPointF &point : points) {
        double sum = 0;
        for (const EqualizerResponse::Band &band : curve->bands)
            sum += level(band.frequency, band.q, band.gain, point.x());
        QVERIFY2(std::abs(point.y() - sum) < 0.01, qPrintable(QStringLiteral("%1 Hz").arg(point.x())));
        QVERIFY(point.y() <= chart.y.most && point.y() >= chart.y.least);
    }
    QCOMPARE(chart.dots.size(), curve->bands.size());
}

void PlotSubjectsTest::bandsAreThoseThatAreSent()
{
    audio::AudioControl control;
    const simulator::AudioChip *const chip = simulator::Platform::instance()->chip();
    for (int mode = 0; mode < 7; ++mode) {
        control.setEqMode(audio::AudioControl::EqMode(mode));
        const auto sent = EqualizerCurves::ofRecord(chip->lastEqParameter());
        const auto drawn = PlotCurves::ofName(QStringLiteral("mode%1").arg(mode))->bands;
        QCOMPARE(drawn.size(), sent.size());
        for (int band = 0; band < sent.size(); ++band) {
            QCOMPARE(drawn.at(band).frequency, sent.at(band).frequency);
            QCOMPARE(drawn.at(band).gain, sent.at(band).gain);
        }
    }
}

void PlotSubjectsTest::headroomIsOfTheSum()
{
    const auto curve = PlotCurves::ofName(QStringLiteral("preset1"));
    double highest = 0;
    for (double frequency = 20; frequency <= 20000; frequency += 0.5) {
        double sum = 0;
        for (const EqualizerResponse::Band &band : curve->bands)
            sum += level(band.frequency, band.q, band.gain, frequency);
        highest = std::max(highest, sum);
    }
    const QString remark = EqualizerPlot::draw({*curve}).remarks.constFirst();
    QVERIFY2(remark.contains(QStringLiteral("highest point is %1 dB").arg(highest, 0, 'f', 1)), qPrintable(remark));
    QVERIFY2(remark.contains(QStringLiteral("the highest band 6.0 dB")), qPrintable(remark));
    QVERIFY2(remark.contains(QStringLiteral("above %1 dB of full scale").arg(-highest - 12, 0, 'f', 1)), qPrintable(remark));
}

void PlotSubjectsTest::modesStandBesidePresets()
{
    const auto charts = panelOf<Figure::Charts>(EqualizerPlot::compare());
    QCOMPARE(charts.charts.size(), 7);
    QCOMPARE(charts.legend.size(), 2);
    for (int number = 0; number < 7; ++number) {
        const Figure::Chart &chart = charts.charts.at(number);
        QCOMPARE(chart.series.size(), 2);
        for (const QString &name : {QStringLiteral("mode%1"), QStringLiteral("preset%1")}) {
            const auto alone = panelOf<Figure::Charts>(EqualizerPlot::draw({*PlotCurves::ofName(name.arg(number))}));
            QCOMPARE(chart.series.at(name.startsWith(QLatin1Char('m')) ? 0 : 1).points, alone.charts.constFirst().series.constFirst().points);
        }
    }
}

void PlotSubjectsTest::gainsAreUnderstood_data()
{
    QTest::addColumn<QString>("list");
    QTest::addColumn<QString>("problem");
    QTest::newRow("sixteen") << "12,-12,0.5,0,0,0,0,0,0,0,0,0,0,0,0,-1" << QString();
    QTest::newRow("with blanks") << "1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 0, 0, 0, 0" << QString();
    QTest::newRow("fifteen") << "0,0,0,0,0,0,0,0,0,0,0,0,0,0,0"
                             << "a curve has 16 gains, not 15";
    QTest::newRow("too much") << "12.5,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0"
                              << "a number from -12 to 12, not \"12.5\"";
    QTest::newRow("no number") << "nan,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0"
                               << "not \"nan\"";
    QTest::newRow("empty") << ""
                           << "not 1";
}

void PlotSubjectsTest::gainsAreUnderstood()
{
    QFETCH(const QString, list);
    QFETCH(const QString, problem);
    QString said;
    const auto curve = PlotCurves::ofGains(list, said);
    QVERIFY2(problem.isEmpty() ? said.isEmpty() : said.contains(problem), qPrintable(said));
    QCOMPARE(bool(curve), problem.isEmpty());
    if (!curve)
        return;
    const QStringList words = list.split(QLatin1Char(','));
    for (int band = 0; band < 16; ++band)
        QCOMPARE(curve->bands.at(band).gain, words.at(band).trimmed().toDouble());
}

void PlotSubjectsTest::settingsMakeACurve_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("said");
    QTest::addColumn<double>("firstGain");
    QTest::newRow("the default") << QByteArray("[Volume]\n0=12\n") << QString() << 2.0;
    QTest::newRow("a preset") << QByteArray("[EQ]\nType=4\n") << QString() << -3.0;
    QTest::newRow("a custom curve") << QByteArray("[EQ]\nType=7\nCustom0=6\nCustom15=-4\n") << QString() << 6.0;
    QTest::newRow("too much") << QByteArray("[EQ]\nType=7\nCustom0=14\n") << "beyond 12 dB" << 0.0;
}

void PlotSubjectsTest::settingsMakeACurve()
{
    QFETCH(const QByteArray, text);
    QFETCH(const QString, said);
    QFETCH(const double, firstGain);
    const QString path = m_folder.filePath(QStringLiteral("audioData.db"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
    file.close();
    QString problem;
    const auto curve = PlotCurves::ofSettings(path, problem);
    QCOMPARE(bool(curve), said.isEmpty());
    QVERIFY2(said.isEmpty() ? problem.isEmpty() : problem.contains(said), qPrintable(problem));
    if (!curve)
        return;
    QCOMPARE(curve->name, QStringLiteral("the curve in use in ") + path);
    QCOMPARE(curve->bands.constFirst().gain, firstGain);
}

void PlotSubjectsTest::policyIsTheTables()
{
    const auto graph = panelOf<Figure::Graph>(PolicyPlot::draw());
    QCOMPARE(graph.columns.size(), 3);
    const Figure::Column &statuses = graph.columns.at(0);
    const Figure::Column &types = graph.columns.at(1);
    const Figure::Column &channels = graph.columns.at(2);
    QCOMPARE(statuses.nodes.size(), expectation::statusCount);
    QCOMPARE(types.nodes.size(), expectation::typeCount);
    QCOMPARE(channels.nodes.size(), expectation::channelCount);
    QCOMPARE(statuses.edges.size(), expectation::statusCount);
    QCOMPARE(types.edges.size(), expectation::channelCount);
    for (int i = 0; i < expectation::statusCount; ++i) {
        const expectation::Status &status = expectation::statuses[std::size_t(i)];
        QCOMPARE(statuses.edges.at(i).from, i);
        QCOMPARE(statuses.edges.at(i).to, status.type);
        const QString source = expectation::isNone(status.source) ? QStringLiteral("source of the channel") : QString::fromLatin1(status.source.platformName);
        QCOMPARE(statuses.nodes.at(i).detail, source);
    }
    for (int i = 0; i < expectation::channelCount; ++i) {
        const expectation::Channel &channel = expectation::channels[std::size_t(i)];
        QCOMPARE(types.edges.at(i).to, i);
        QCOMPARE(types.edges.at(i).from, channel.type);
        const QString source = expectation::isNone(channel.source) ? QStringLiteral("no source") : QString::fromLatin1(channel.source.platformName);
        QCOMPARE(channels.nodes.at(i).detail, source);
    }
}

QTEST_GUILESS_MAIN(PlotSubjectsTest)

#include "tst_plotsubjects.moc"

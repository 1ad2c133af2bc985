#include "equalizercurves.h"

#include <plot/equalizerplot.h>
#include <plot/fadeplot.h>
#include <plot/policyplot.h>
#include <plot/svgplot.h>
#include <plot/terminalplot.h>

#include <QtCore/QRegularExpression>
#include <QtCore/QXmlStreamReader>
#include <QtTest/QtTest>

#include <cmath>
#include <limits>

using Characters = TextCanvas::Characters;

Q_DECLARE_METATYPE(Figure)
Q_DECLARE_METATYPE(TextCanvas::Characters)

namespace
{

constexpr int widths[] = {40, 60, 100, 200};

/// A drive with more in it than there is room for: spans of any length, texts of any length, breaks.
Figure crowded()
{
    Figure::Axis axis;
    axis.most = 100;
    Figure::Lane lane{QStringLiteral("a lane with a long name"), {}};
    Figure::Chart chart;
    Figure::Series series{0, {}, true};
    for (int i = 0; i < 100; ++i) {
        axis.ticks.append({double(i), QStringLiteral("%1:%2.125").arg(i).arg(i)});
        if (i % 10 == 0)
            axis.breaks.append(i + 0.5);
        lane.spans.append({double(i), i % 3 == 0 ? i : i + 0.5, QStringLiteral("what holds <&> %1").arg(i)});
        series.points.append({double(i), i % 7 == 0 ? -std::numeric_limits<double>::infinity() : -i});
    }
    chart.title = QStringLiteral("a chart \u2026 <of> & anything");
    chart.x = axis;
    chart.y.least = -60;
    chart.y.most = 0;
    chart.y.ticks = {{0, QStringLiteral("0 dB")}, {-60, QStringLiteral("-60")}};
    Figure::Charts charts;
    for (int i = 0; i < EqualizerPlot::mostCurves; ++i) {
        charts.legend.append(QStringLiteral("a source whose name has no end, number %1, ").arg(i) + QString(i * 40, QLatin1Char('x')));
        series.name = i;
        chart.series.append(series);
    }
    charts.charts.append(chart);
    Figure figure{QString(300, QLatin1Char('t'))};
    const Figure::List list{{QStringLiteral("short"), QStringLiteral("words of a long item ").repeated(20), QString(300, QLatin1Char('i'))}};
    figure.panels = {Figure::Lanes{axis, {lane, lane}}, list, charts};
    figure.remarks = QStringList{QStringLiteral("A remark of many words. ").repeated(20), QString(500, QLatin1Char('w'))};
    return figure;
}

Figure eightCurves()
{
    QVector<EqualizerPlot::Curve> curves;
    for (int type = 0; type < EqualizerPlot::mostCurves; ++type)
        curves.append({QStringLiteral("preset %1").arg(type), EqualizerCurves::ofGains(EqualizerCurves::gainsOfPreset(type))});
    return EqualizerPlot::draw(curves);
}

struct Named
{
    const char *name;
    Figure figure;
};

QVector<Named> figures()
{
    return {
        {"fade", FadePlot::draw(4, -9)},
        {"policy", PolicyPlot::draw()},
        {"modes and presets", EqualizerPlot::compare()},
        {"eight curves", eightCurves()},
        {"one curve", EqualizerPlot::draw({{QStringLiteral("flat"), {}}})},
        {"crowded", crowded()},
        {"nothing", Figure{QStringLiteral("nothing")}},
    };
}

/// Numbers of an attribute.
QVector<double> numbersOf(const QString &text)
{
    static const QRegularExpression number(QStringLiteral("-?[0-9.]+(e-?[0-9]+)?"));
    QVector<double> numbers;
    auto matches = number.globalMatch(text);
    while (matches.hasNext())
        numbers.append(matches.next().captured().toDouble());
    return numbers;
}

} // namespace

class PlotFiguresTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void linesFitTheTerminal_data();
    void linesFitTheTerminal();
    void charactersAreThoseOfTheTerminal_data();
    void charactersAreThoseOfTheTerminal();
    void coloursAreOnlyWhereTheyAreWanted();
    void linesDifferWithoutColours();
    void svgIsWellFormed_data();
    void svgIsWellFormed();
    void svgHasBothLooks();
    void brailleHasTheDots();
    void placesAreOnTheAxis();
};

void PlotFiguresTest::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
}

void PlotFiguresTest::linesFitTheTerminal_data()
{
    QTest::addColumn<Figure>("figure");
    QTest::addColumn<int>("width");
    QTest::addColumn<Characters>("characters");
    const auto all = figures();
    for (const Named &one : all) {
        for (const int width : widths) {
            QTest::addRow("%s, %d, Braille", one.name, width) << one.figure << width << Characters::Unicode;
            QTest::addRow("%s, %d, ASCII", one.name, width) << one.figure << width << Characters::Ascii;
        }
    }
}

void PlotFiguresTest::linesFitTheTerminal()
{
    QFETCH(const Figure, figure);
    QFETCH(const int, width);
    QFETCH(const Characters, characters);
    const QStringList lines = TerminalPlot(width, characters).draw(figure).split(QLatin1Char('\n'));
    int longest = 0;
    for (const QString &line : lines) {
        QVERIFY2(line.size() <= width, qPrintable(line));
        longest = std::max(longest, int(line.size()));
    }
    // What has a chart uses the width.
    if (!figure.panels.isEmpty() && std::holds_alternative<Figure::Charts>(figure.panels.constLast()))
        QVERIFY2(longest > width * 9 / 10, qPrintable(QString::number(longest)));
}

void PlotFiguresTest::charactersAreThoseOfTheTerminal_data()
{
    QTest::addColumn<Figure>("figure");
    const auto all = figures();
    for (const Named &one : all)
        QTest::newRow(one.name) << one.figure;
}

void PlotFiguresTest::charactersAreThoseOfTheTerminal()
{
    QFETCH(const Figure, figure);
    const QString text = TerminalPlot(60, Characters::Ascii).draw(figure);
    for (const QChar character : text)
        QVERIFY2(character == QLatin1Char('\n') || (character.unicode() >= ' ' && character.unicode() < 0x7F), qPrintable(QString(character)));
}

void PlotFiguresTest::coloursAreOnlyWhereTheyAreWanted()
{
    const TerminalPlot plot(100, Characters::Unicode);
    const Figure figure = EqualizerPlot::compare();
    const QString plain = plot.draw(figure);
    QVERIFY(!plain.contains(QChar(0x1B)));
    Console::setColors(Console::Colors::Always);
    QString colored = plot.draw(figure);
    Console::setColors(Console::Colors::Never);
    QVERIFY(colored.contains(QChar(0x1B)));
    colored.remove(QRegularExpression(QStringLiteral("\033\\[[0-9;]*m")));
    QCOMPARE(colored, plain);
}

void PlotFiguresTest::linesDifferWithoutColours()
{
    const QStringList lines = TerminalPlot(200, Characters::Unicode).draw(eightCurves()).split(QLatin1Char('\n'));
    QSet<QString> samples;
    for (const QString &line : lines) {
        // "⠤⠤⠤⠤⠤ 1 preset 0  ⠄⠄⠄⠄⠄ 2 preset 1"
        static const QRegularExpression entry(QStringLiteral("(.{5}) [1-8] preset [0-7](  |$)"));
        auto matches = entry.globalMatch(line);
        while (matches.hasNext())
            samples.insert(matches.next().captured(1));
    }
    QCOMPARE(samples.size(), 8);
}

void PlotFiguresTest::svgIsWellFormed_data()
{
    charactersAreThoseOfTheTerminal_data();
}

void PlotFiguresTest::svgIsWellFormed()
{
    QFETCH(const Figure, figure);
    QXmlStreamReader reader(SvgPlot::draw(figure));
    double width = 0;
    double height = 0;
    QVector<QPair<QString, QRectF>> texts;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QXmlStreamAttributes attributes = reader.attributes();
        const auto number = [&attributes](const char *name) { return attributes.value(QLatin1String(name)).toDouble(); };
        const QString element = reader.name().toString();
        if (element == QLatin1String("svg")) {
            const QVector<double> box = numbersOf(attributes.value(QLatin1String("viewBox")).toString());
            QCOMPARE(box.size(), 4);
            width = box.at(2);
            height = box.at(3);
            QCOMPARE(width, SvgPlot::width);
            continue;
        }
        const auto isInside = [&](double x, double y) { return x >= 0 && x <= width && y >= 0 && y <= height; };
        bool isGood = true;
        if (element == QLatin1String("rect")) {
            isGood = isInside(number("x"), number("y")) && isInside(number("x") + number("width"), number("y") + number("height")) && number("width") >= 0;
        } else if (element == QLatin1String("line")) {
            isGood = isInside(number("x1"), number("y1")) && isInside(number("x2"), number("y2"));
        } else if (element == QLatin1String("circle")) {
            isGood = isInside(number("cx") - number("r"), number("cy") - number("r")) && isInside(number("cx") + number("r"), number("cy") + number("r"));
        } else if (element == QLatin1String("polyline")) {
            const QVector<double> points = numbersOf(attributes.value(QLatin1String("points")).toString());
            QVERIFY(!points.isEmpty() && points.size() % 2 == 0);
            for (int i = 0; i < points.size(); i += 2)
                isGood = isGood && isInside(points.at(i), points.at(i + 1));
        } else if (element == QLatin1String("text")) {
            const double x = number("x");
            const double y = number("y");
            const QString anchor = attributes.value(QLatin1String("text-anchor")).toString();
            // As wide as most fonts have it.
            constexpr double usual = 0.55;
            constexpr double size = 12;
            const QString text = reader.readElementText();
            const double extent = text.size() * size * usual;
            const double begin = anchor == QLatin1String("end") ? x - extent : anchor == QLatin1String("middle") ? x - extent / 2 : x;
            isGood = isInside(begin, y - size) && isInside(begin + extent, y);
            QVERIFY2(isGood, qPrintable(text));
            // Most letters are narrower, and keep off the line's top and bottom.
            const QRectF ink(begin + extent / 8, y - size * 2 / 3, extent * 3 / 4, size * 2 / 3);
            for (const auto &other : qAsConst(texts))
                QVERIFY2(!ink.intersects(other.second), qPrintable(text + QStringLiteral(" / ") + other.first));
            texts.append({text, ink});
        }
        QVERIFY2(isGood, qPrintable(QStringLiteral("%1 in line %2").arg(element).arg(reader.lineNumber())));
    }
    QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
    QVERIFY(!texts.isEmpty());
}

void PlotFiguresTest::svgHasBothLooks()
{
    const QByteArray svg = SvgPlot::draw(PolicyPlot::draw());
    QVERIFY(svg.contains("@media (prefers-color-scheme:dark)"));
    QVERIFY(svg.contains("class=\"background\""));
    QVERIFY(svg.contains("font-family:sans-serif"));
    // Nothing is fetched from anywhere.
    QVERIFY(!svg.contains("href") && !svg.contains("url(") && !svg.contains("@import"));
    QCOMPARE(svg.count("http"), 1); // the name space
}

void PlotFiguresTest::brailleHasTheDots()
{
    TextCanvas canvas(2, 1, Characters::Unicode);
    canvas.dot(0, 0, Console::Style::Plain, '*');
    canvas.dot(1, 3, Console::Style::Plain, '*');
    canvas.dot(3, 1, Console::Style::Plain, '*');
    // None of these is on it.
    canvas.dot(4, 0, Console::Style::Plain, '*');
    canvas.dot(0, 4, Console::Style::Plain, '*');
    canvas.dot(-1, 0, Console::Style::Plain, '*');
    canvas.write(5, 0, QStringLiteral("x"));
    QCOMPARE(canvas.toText(), QString::fromUtf8("\u2881\u2810\n"));
    TextCanvas ascii(3, 1, Characters::Ascii);
    ascii.dot(1, 0, Console::Style::Plain, '+');
    QCOMPARE(ascii.toText(), QStringLiteral(" +\n"));
}

void PlotFiguresTest::placesAreOnTheAxis()
{
    Figure::Axis axis{-12, 6};
    QCOMPARE(axis.placeOf(-12), 0.0);
    QCOMPARE(axis.placeOf(-3), 0.5);
    QCOMPARE(axis.placeOf(100), 1.0);
    QCOMPARE(axis.placeOf(-100), 0.0);
    axis = {20, 20000};
    axis.isLogarithmic = true;
    QCOMPARE(axis.placeOf(20), 0.0);
    QVERIFY(std::abs(axis.placeOf(200) - 1 / 3.0) < 1e-12);
    QCOMPARE(axis.placeOf(20000), 1.0);
    QCOMPARE((Figure::Axis{5, 5}.placeOf(5)), 0.0);
}

QTEST_GUILESS_MAIN(PlotFiguresTest)

#include "tst_plotfigures.moc"

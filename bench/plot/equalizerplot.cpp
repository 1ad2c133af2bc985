#include "equalizerplot.h"

#include "equalizercurves.h"

#include <algorithm>
#include <cmath>

using EqualizerResponse::Band;
using EqualizerResponse::Bands;
using EqualizerResponse::Point;

namespace
{

constexpr double axisStep = 6; // dB

QString decibels(double level)
{
    constexpr double shown = 0.05;
    // Minus zero would show as "-0.0".
    return QString::number(std::abs(level) < shown ? 0.0 : level, 'f', 1);
}

QString frequencyText(double frequency)
{
    constexpr double thousand = 1000;
    return frequency < thousand ? QStringLiteral("%1 Hz").arg(std::round(frequency)) : QStringLiteral("%1 kHz").arg(frequency / thousand, 0, 'g', 3);
}

Figure::Axis frequencyAxis()
{
    Figure::Axis axis;
    axis.least = EqualizerResponse::lowestFrequency;
    axis.most = EqualizerResponse::highestFrequency;
    axis.isLogarithmic = true;
    axis.ticks = {
        {20, QStringLiteral("20 Hz")},
        {50, QStringLiteral("50")},
        {100, QStringLiteral("100")},
        {200, QStringLiteral("200")},
        {500, QStringLiteral("500")},
        {1000, QStringLiteral("1k")},
        {2000, QStringLiteral("2k")},
        {5000, QStringLiteral("5k")},
        {10000, QStringLiteral("10k")},
        {20000, QStringLiteral("20k")},
    };
    return axis;
}

Figure::Series seriesOf(const Bands &bands, int name)
{
    constexpr int count = 481;
    Figure::Series series{name, {}};
    const QVector<double> frequencies = EqualizerResponse::spacedFrequencies(count);
    for (const double frequency : frequencies)
        series.points.append({frequency, EqualizerResponse::level(bands, frequency)});
    return series;
}

/// An axis that all of the lines fit on.
Figure::Axis levelAxis(const QVector<Figure::Chart> &charts)
{
    double least = -axisStep;
    double most = axisStep;
    for (const Figure::Chart &chart : charts) {
        for (const Figure::Series &series : chart.series) {
            for (const QPointF &point : series.points) {
                least = std::min(least, axisStep * std::floor(point.y() / axisStep));
                most = std::max(most, axisStep * std::ceil(point.y() / axisStep));
            }
        }
    }
    Figure::Axis axis{least, most};
    const int steps = int(std::lround((most - least) / axisStep));
    for (int i = 0; i <= steps; ++i) {
        const double level = most - i * axisStep;
        axis.ticks.append({level, i == 0 ? QStringLiteral("%1 dB").arg(level) : QString::number(level)});
    }
    return axis;
}

void addBands(Figure::Chart &chart, const Bands &bands, int name)
{
    for (const Band &band : bands) {
        const QString label = QStringLiteral("%1, Q %2, %3 dB").arg(frequencyText(band.frequency)).arg(band.q).arg(decibels(band.gain));
        chart.dots.append({name, {band.frequency, EqualizerResponse::level(bands, band.frequency)}, label});
    }
}

/// One row for each band that one of the curves has.
Figure::Table tableOf(const QVector<EqualizerPlot::Curve> &curves)
{
    QVector<Band> bands;
    for (const EqualizerPlot::Curve &curve : curves) {
        for (const Band &band : curve.bands) {
            const bool isKnown
                = std::any_of(bands.cbegin(), bands.cend(), [&band](const Band &other) { return other.frequency == band.frequency && other.q == band.q; });
            if (!isKnown)
                bands.append(band);
        }
    }
    std::stable_sort(bands.begin(), bands.end(), [](const Band &one, const Band &other) { return one.frequency < other.frequency; });
    Figure::Table table{2, {QStringLiteral("band"), QStringLiteral("Q")}, {}};
    for (int i = 0; i < curves.size(); ++i)
        table.head.append(curves.size() == 1 ? QStringLiteral("gain, dB") : QStringLiteral("%1, dB").arg(i + 1));
    for (const Band &band : qAsConst(bands)) {
        QStringList row{frequencyText(band.frequency), QString::number(band.q)};
        for (const EqualizerPlot::Curve &curve : curves) {
            const auto found = std::find_if(
                curve.bands.cbegin(), curve.bands.cend(), [&band](const Band &other) { return other.frequency == band.frequency && other.q == band.q; });
            row.append(found == curve.bands.cend() ? QStringLiteral("-") : decibels(found->gain));
        }
        table.rows.append(row);
    }
    return table;
}

QString headroomText(const EqualizerPlot::Curve &curve)
{
    const Point highest = EqualizerResponse::highestPoint(curve.bands);
    const auto loudest = std::max_element(curve.bands.cbegin(), curve.bands.cend(), [](const Band &one, const Band &other) { return one.gain < other.gain; });
    const double needed = std::max(highest.level, 0.0);
    QString text = QStringLiteral("%1: the highest point is %2 dB at %3").arg(curve.name, decibels(highest.level), frequencyText(highest.frequency));
    if (loudest != curve.bands.cend())
        text += QStringLiteral(", the highest band %1 dB").arg(decibels(loudest->gain));
    return text
        + QStringLiteral(". It needs %1 dB of headroom; with %2 dB of loudness on top, whatever is above %3 dB of full scale there clips.")
              .arg(decibels(needed))
              .arg(EqualizerCurves::loudnessRise)
              .arg(decibels(-needed - EqualizerCurves::loudnessRise));
}

} // namespace

Figure EqualizerPlot::draw(const QVector<Curve> &curves)
{
    Figure::Charts charts;
    Figure::Chart chart;
    QStringList names;
    for (const Curve &curve : curves) {
        const int name = charts.legend.size();
        charts.legend.append(curves.size() == 1 ? curve.name : QStringLiteral("%1 %2").arg(name + 1).arg(curve.name));
        names.append(curve.name);
        chart.series.append(seriesOf(curve.bands, name));
        addBands(chart, curve.bands, name);
    }
    chart.x = frequencyAxis();
    chart.y = levelAxis({chart});
    charts.charts.append(chart);
    Figure figure{QStringLiteral("Equalizer: ") + names.join(QStringLiteral(", "))};
    figure.panels = {charts, tableOf(curves)};
    for (const Curve &curve : curves)
        figure.remarks.append(headroomText(curve));
    return figure;
}

Figure EqualizerPlot::compare()
{
    Figure::Charts charts{{QStringLiteral("the facade's mode"), QStringLiteral("the store's preset")}, {}};
    for (int number = 0; number < EqualizerCurves::modeCount; ++number) {
        const Bands mode = EqualizerCurves::ofMode(number);
        const Bands preset = EqualizerCurves::ofGains(EqualizerCurves::gainsOfPreset(number));
        Figure::Chart chart;
        chart.title = QStringLiteral("mode and preset %1: headroom %2 and %3 dB")
                          .arg(number)
                          .arg(decibels(std::max(EqualizerResponse::highestPoint(mode).level, 0.0)),
                               decibels(std::max(EqualizerResponse::highestPoint(preset).level, 0.0)));
        chart.x = frequencyAxis();
        chart.series = {seriesOf(mode, 0), seriesOf(preset, 1)};
        charts.charts.append(chart);
    }
    const Figure::Axis axis = levelAxis(charts.charts);
    for (Figure::Chart &chart : charts.charts)
        chart.y = axis;
    Figure figure{QStringLiteral("Equalizer: the facade's modes and the store's presets")};
    figure.panels = {charts};
    figure.remarks.append(
        QStringLiteral(
            "A mode is what setEqMode() sends: eight bands. A preset is what setEqType() sends: sixteen bands. Preset 7 is the custom curve, flat until one is "
            "stored. Headroom is what the highest point of all bands together needs, the mode's first; loudness needs up to %1 dB more.")
            .arg(EqualizerCurves::loudnessRise));
    return figure;
}

#include "svgpanels.h"

#include <algorithm>
#include <cmath>

using Anchor = SvgCanvas::Anchor;

namespace
{

const QLatin1String text("text");
const QLatin1String faint("faint");
const QLatin1String heading("heading");
const QLatin1String grid("grid");
const QLatin1String axis("axis");

constexpr double legendSample = 24;
constexpr double gap = 16;
constexpr double titleHeight = 26;
constexpr double axisHeight = 22; ///< with the ticks' labels
constexpr double heightOfOne = 360;
constexpr double heightOfSmall = 190;
constexpr double smallMargin = 52;
constexpr double laneHeight = 26;
constexpr double breakSize = 4;

struct LegendEntry
{
    QPointF place;
    QString label;
};

QVector<LegendEntry> legendOf(const QStringList &legend, double width)
{
    QVector<LegendEntry> entries;
    QPointF place(0, 0);
    for (const QString &label : legend) {
        const QString shown = SvgCanvas::shortened(label, width - legendSample - gap);
        const double columns = legendSample + SvgCanvas::widthOf(shown) + gap;
        if (place.x() > 0 && place.x() + columns > width)
            place = {0, place.y() + SvgCanvas::lineHeight};
        entries.append({place, shown});
        place.rx() += columns;
    }
    return entries;
}

double legendHeight(const QStringList &legend)
{
    const auto entries = legendOf(legend, SvgPanels::usualWidth);
    return entries.isEmpty() ? 0 : entries.constLast().place.y() + SvgCanvas::lineHeight + gap / 2;
}

int perRow(const Figure::Charts &charts)
{
    constexpr int most = 2;
    return std::min(int(charts.charts.size()), most);
}

double chartHeight(const Figure::Charts &charts)
{
    return charts.charts.size() == 1 ? heightOfOne : heightOfSmall;
}

double xOf(const Figure::Axis &horizontal, double value, const QRectF &area)
{
    return area.left() + horizontal.placeOf(value) * area.width();
}

double yOf(const Figure::Axis &upright, double value, const QRectF &area)
{
    return area.bottom() - upright.placeOf(value) * area.height();
}

/// As much of it as fits: at least its first word, which may be a number.
QString labelOf(const Figure::Span &span, double width)
{
    const QString shown = SvgCanvas::shortened(span.label, width);
    const QString word = span.label.section(QLatin1Char(' '), 0, 0);
    return shown.isEmpty() && SvgCanvas::widthOf(word) <= width ? word : shown;
}

void drawHorizontalAxis(SvgCanvas &canvas, const Figure::Axis &horizontal, const QRectF &area)
{
    double free = area.left() - 2 * gap;
    for (const Figure::Tick &tick : horizontal.ticks) {
        const double x = xOf(horizontal, tick.value, area);
        const double half = SvgCanvas::widthOf(tick.label) / 2;
        // Whatever the label is, it stays in the picture.
        const double centre = std::min(x, area.right() + gap - half);
        if (centre - half < free)
            continue;
        canvas.line({x, area.top()}, {x, area.bottom()}, grid);
        canvas.text({centre, area.bottom() + SvgCanvas::lineHeight}, tick.label, faint, Anchor::Middle);
        free = centre + half + gap / 4;
    }
    canvas.line(area.bottomLeft(), area.bottomRight(), axis);
    for (const double value : horizontal.breaks) {
        const double x = xOf(horizontal, value, area);
        canvas.line({x, area.top()}, {x, area.bottom()}, axis + QStringLiteral(" break"));
        canvas.line({x - breakSize, area.bottom() + breakSize}, {x + breakSize, area.bottom() - breakSize}, axis);
    }
}

void drawLine(SvgCanvas &canvas, const Figure::Chart &chart, const Figure::Series &series, const QRectF &area)
{
    QVector<QPointF> drawn;
    const auto flush = [&] {
        if (!drawn.isEmpty())
            canvas.polyline(drawn, SvgCanvas::lineOf(series.name));
        drawn.clear();
    };
    for (const QPointF &point : series.points) {
        const double x = xOf(chart.x, point.x(), area);
        if (series.isStepped && !drawn.isEmpty())
            drawn.append({x, drawn.constLast().y()});
        if (std::isfinite(point.y()))
            drawn.append({x, yOf(chart.y, point.y(), area)});
        else
            flush();
    }
    flush();
}

void drawChart(SvgCanvas &canvas, const Figure::Chart &chart, const QRectF &place, double leftMargin)
{
    canvas.text({place.left(), place.top() + SvgCanvas::textSize}, SvgCanvas::shortened(chart.title, place.width()), heading);
    const QRectF area(place.left() + leftMargin, place.top() + titleHeight, place.width() - leftMargin, place.height() - titleHeight - axisHeight);
    for (const Figure::Tick &tick : chart.y.ticks) {
        const double y = yOf(chart.y, tick.value, area);
        canvas.line({area.left(), y}, {area.right(), y}, tick.value == 0 ? axis : grid);
        canvas.text({area.left() - gap / 2, y + SvgCanvas::textSize / 3}, tick.label, faint, Anchor::End);
    }
    drawHorizontalAxis(canvas, chart.x, area);
    for (const Figure::Series &series : chart.series)
        drawLine(canvas, chart, series, area);
    for (const Figure::Dot &dot : chart.dots) {
        constexpr double radius = 4;
        canvas.circle({xOf(chart.x, dot.place.x(), area), yOf(chart.y, dot.place.y(), area)}, radius, SvgCanvas::fillOf(dot.name), dot.label);
    }
}

} // namespace

double SvgPanels::heightOf(const Figure::Charts &charts)
{
    if (charts.charts.isEmpty())
        return 0;
    const int rows = (charts.charts.size() + perRow(charts) - 1) / perRow(charts);
    return legendHeight(charts.legend) + rows * chartHeight(charts) + (rows - 1) * gap;
}

void SvgPanels::draw(SvgCanvas &canvas, const Figure::Charts &charts, const QRectF &area)
{
    const auto entries = legendOf(charts.legend, SvgPanels::usualWidth);
    for (int name = 0; name < entries.size(); ++name) {
        const QPointF place = area.topLeft() + entries.at(name).place + QPointF(0, SvgCanvas::textSize);
        const QPointF sample = place - QPointF(0, SvgCanvas::textSize / 3);
        canvas.polyline({sample, sample + QPointF(legendSample - gap / 2, 0)}, SvgCanvas::lineOf(name));
        canvas.text(place + QPointF(legendSample, 0), entries.at(name).label, text);
    }
    const double top = area.top() + legendHeight(charts.legend);
    const int inRow = perRow(charts);
    for (int i = 0; i < charts.charts.size(); ++i) {
        const double width = (area.width() - (inRow - 1) * 2 * gap) / inRow;
        const int row = i / inRow;
        const QRectF place(area.left() + (i % inRow) * (width + 2 * gap), top + row * (chartHeight(charts) + gap), width, chartHeight(charts));
        drawChart(canvas, charts.charts.at(i), place, inRow == 1 ? margin : smallMargin);
    }
}

double SvgPanels::heightOf(const Figure::Lanes &lanes)
{
    return lanes.lanes.size() * laneHeight + axisHeight;
}

void SvgPanels::draw(SvgCanvas &canvas, const Figure::Lanes &lanes, const QRectF &area)
{
    const QRectF field(area.left() + margin, area.top(), area.width() - margin, lanes.lanes.size() * laneHeight);
    drawHorizontalAxis(canvas, lanes.x, field);
    constexpr double inset = 2;
    for (int row = 0; row < lanes.lanes.size(); ++row) {
        const Figure::Lane &lane = lanes.lanes.at(row);
        const double top = field.top() + row * laneHeight;
        const double baseline = top + laneHeight / 2 + SvgCanvas::textSize / 3;
        canvas.text({area.left(), baseline}, SvgCanvas::shortened(lane.name, margin - gap / 2), text);
        for (int i = 0; i < lane.spans.size(); ++i) {
            const Figure::Span &span = lane.spans.at(i);
            const double left = xOf(lanes.x, span.from, field);
            const double width = std::max(xOf(lanes.x, span.to, field) - left, inset);
            const bool isMoment = span.to <= span.from;
            const QRectF bar(left, top + inset, width, laneHeight - 2 * inset);
            canvas.rectangle(bar, SvgCanvas::fillOf(row), span.label, isMoment ? 1 : 0.25, isMoment ? 0 : inset);
            const double end = i + 1 < lane.spans.size() ? xOf(lanes.x, lane.spans.at(i + 1).from, field) : field.right();
            const double room = isMoment ? end - left : width;
            canvas.text({left + 2 * inset, baseline}, labelOf(span, room - 3 * inset), isMoment ? faint : text);
        }
    }
}

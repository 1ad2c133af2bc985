#include "svgpanels.h"

#include <algorithm>

using Anchor = SvgCanvas::Anchor;

namespace
{

const QLatin1String text("text");
const QLatin1String faint("faint");
const QLatin1String heading("heading");
const QLatin1String axis("axis");

constexpr double gap = 24;
constexpr double titleHeight = 20;
constexpr double mapHeight = 190;
constexpr double silentShade = 0.15;

constexpr double carWidth = 280;
constexpr double carHeight = 300;
constexpr double barWidth = 100;
constexpr double barHeight = 10;

constexpr double nodeHeight = 20;

/// Where a column of a graph has its nodes.
struct ColumnPlace
{
    double left;
    double right;
};

int longestColumn(const Figure::Graph &graph)
{
    int longest = 0;
    for (const Figure::Column &column : graph.columns)
        longest = std::max(longest, int(column.nodes.size()));
    return longest;
}

/// Height of a node's middle: those of a shorter column are spread.
double middleOf(const Figure::Graph &graph, int column, int node, const QRectF &area)
{
    const double height = area.height() - titleHeight;
    const int count = graph.columns.at(column).nodes.size();
    return area.top() + titleHeight + height * (node + 0.5) / count;
}

QVector<double> columnWidths(const Figure::Table &table)
{
    QVector<double> widths;
    for (int column = 0; column < table.head.size(); ++column) {
        double width = SvgCanvas::widthOf(table.head.at(column));
        for (const QStringList &row : table.rows)
            width = std::max(width, SvgCanvas::widthOf(row.value(column)));
        widths.append(width + gap / 2);
    }
    return widths;
}

} // namespace

double SvgPanels::heightOf(const Figure::Maps & /*maps*/)
{
    return mapHeight + titleHeight + 5 * SvgCanvas::lineHeight;
}

void SvgPanels::draw(SvgCanvas &canvas, const Figure::Maps &maps, const QRectF &area)
{
    const int count = std::max(int(maps.maps.size()), 1);
    const double size = std::min((area.width() - (count - 1) * gap) / count, mapHeight);
    const double step = (area.width() - count * size) / std::max(count - 1, 1) + size;
    for (int i = 0; i < maps.maps.size(); ++i) {
        const Figure::Map &map = maps.maps.at(i);
        const double left = area.left() + i * step;
        const double top = area.top() + titleHeight;
        canvas.text({left, area.top() + SvgCanvas::textSize}, map.title, heading);
        const double cell = size / map.columns;
        // What is alike beside each other is drawn as one.
        int begin = 0;
        for (int place = 1; place <= map.values.size(); ++place) {
            const bool isSame = place < map.values.size() && place % map.columns != 0 && map.values.at(place) == map.values.at(begin)
                && map.isMarked.at(place) == map.isMarked.at(begin);
            if (isSame)
                continue;
            const int row = begin / map.columns;
            const QRectF run(left + (begin % map.columns) * cell, top + row * cell, (place - begin) * cell, cell);
            const bool isMarked = map.isMarked.at(begin);
            if (map.values.at(begin) > 0)
                canvas.rectangle(run, SvgCanvas::fillOf(isMarked ? 1 : 0) + QStringLiteral(" cell"), {}, map.values.at(begin));
            else if (isMarked)
                canvas.rectangle(run, text + QStringLiteral(" cell"), {}, silentShade);
            begin = place;
        }
        const int rows = map.values.size() / map.columns;
        const double height = cell * rows;
        canvas.path(QStringLiteral("M%1,%2 h%3 v%4 h-%3 z").arg(left).arg(top).arg(size).arg(height), axis);
        canvas.circle({left + (map.chosen.x() + 0.5) * cell, top + (map.chosen.y() + 0.5) * cell}, cell, QStringLiteral("text"));
    }
    double y = area.top() + titleHeight + size + SvgCanvas::lineHeight;
    canvas.text(
        {area.left(), y}, QStringLiteral("Top: %1; bottom: %2; left: %3; right: %4; dot: as above").arg(maps.top, maps.bottom, maps.left, maps.right), faint);
    struct Key
    {
        QString look;
        double opacity;
        QString meaning;
    };
    const Key keys[] = {
        {SvgCanvas::fillOf(0), 1, QStringLiteral("the paler, the quieter; none: silent")},
        {SvgCanvas::fillOf(1), 1, maps.marked},
        {text, silentShade, maps.marked + QStringLiteral(" to silence")},
    };
    for (const Key &key : keys) {
        y += SvgCanvas::lineHeight;
        canvas.rectangle({area.left(), y - SvgCanvas::textSize + 2, SvgCanvas::textSize, SvgCanvas::textSize}, key.look, {}, key.opacity);
        canvas.text({area.left() + SvgCanvas::lineHeight + 4, y}, key.meaning, faint);
    }
}

double SvgPanels::heightOf(const Figure::Car & /*car*/)
{
    return carHeight;
}

void SvgPanels::draw(SvgCanvas &canvas, const Figure::Car &car, const QRectF &area)
{
    const double left = area.left() + (area.width() - carWidth) / 2;
    const double top = area.top();
    constexpr double hood = 36;
    constexpr double corner = 40;
    // Body, windscreen and rear window.
    canvas.path(QStringLiteral("M%1,%2 h%3 q%4,0 %4,%4 v%5 q0,%4 -%4,%4 h-%3 q-%4,0 -%4,-%4 v-%5 q0,-%4 %4,-%4 z")
                    .arg(left + corner)
                    .arg(top + 1)
                    .arg(carWidth - 2 * corner)
                    .arg(corner)
                    .arg(carHeight - 2 * corner - 2),
                axis);
    canvas.path(QStringLiteral("M%1,%2 q%3,-%4 %5,0").arg(left + corner / 2).arg(top + 2 * hood).arg((carWidth - corner) / 2).arg(hood).arg(carWidth - corner),
                axis);
    canvas.path(QStringLiteral("M%1,%2 q%3,%4 %5,0")
                    .arg(left + corner / 2)
                    .arg(top + carHeight - hood)
                    .arg((carWidth - corner) / 2)
                    .arg(hood / 2)
                    .arg(carWidth - corner),
                axis);
    canvas.text({left + carWidth / 2, top + hood}, QStringLiteral("front"), faint, Anchor::Middle);
    for (int i = 0; i < car.loudspeakers.size(); ++i) {
        const Figure::Loudspeaker &one = car.loudspeakers.at(i);
        const bool isLeft = i % 2 == 0;
        const double y = top + (i < 2 ? carHeight * 0.38 : carHeight * 0.7);
        constexpr double inset = 30;
        const double x = isLeft ? left + inset : left + carWidth - inset;
        constexpr double largest = 20;
        canvas.circle({x, y}, largest, axis);
        if (one.level > 0)
            canvas.circle({x, y}, largest * one.level, SvgCanvas::fillOf(0), one.gain);
        const double outside = isLeft ? left - gap / 2 : left + carWidth + gap / 2;
        const Anchor anchor = isLeft ? Anchor::End : Anchor::Begin;
        canvas.text({outside, y - barHeight}, one.name, heading, anchor);
        canvas.text({outside, y + SvgCanvas::lineHeight - barHeight}, one.gain, text, anchor);
        const double barLeft = isLeft ? outside - barWidth : outside;
        const double barTop = y + SvgCanvas::lineHeight - barHeight / 2;
        canvas.rectangle({barLeft, barTop, barWidth, barHeight}, SvgCanvas::fillOf(0), {}, 0.2);
        const double length = barWidth * one.level;
        canvas.rectangle({isLeft ? outside - length : outside, barTop, length, barHeight}, SvgCanvas::fillOf(0));
    }
}

double SvgPanels::heightOf(const Figure::Graph &graph)
{
    return titleHeight + longestColumn(graph) * nodeHeight;
}

void SvgPanels::draw(SvgCanvas &canvas, const Figure::Graph &graph, const QRectF &area)
{
    constexpr int columnCount = 3;
    if (graph.columns.size() != columnCount)
        return;
    constexpr double outerWidth = 350;
    constexpr double middleWidth = 110;
    const double centre = area.center().x();
    const ColumnPlace places[columnCount] = {
        {area.left(), area.left() + outerWidth},
        {centre - middleWidth / 2, centre + middleWidth / 2},
        {area.right() - outerWidth, area.right()},
    };
    for (int column = 0; column + 1 < columnCount; ++column) {
        for (const Figure::Edge &edge : graph.columns.at(column).edges) {
            // By the colour of what the lines are sorted by.
            const int color = column == 0 ? edge.to : edge.from;
            canvas.curve({places[column].right, middleOf(graph, column, edge.from, area)},
                         {places[column + 1].left, middleOf(graph, column + 1, edge.to, area)},
                         SvgCanvas::lineOf(color) + QStringLiteral(" edge"),
                         graph.columns.at(column).nodes.at(edge.from).name + QStringLiteral(" \u2013 ") + graph.columns.at(column + 1).nodes.at(edge.to).name);
        }
    }
    for (int column = 0; column < columnCount; ++column) {
        const ColumnPlace &place = places[column];
        const double width = place.right - place.left;
        const bool isMiddle = column == 1;
        const Anchor anchor = isMiddle ? Anchor::Middle : column == 0 ? Anchor::End : Anchor::Begin;
        const double x = isMiddle ? centre : column == 0 ? place.right - gap / 4 : place.left + gap / 4;
        canvas.text({x, area.top() + SvgCanvas::textSize}, graph.columns.at(column).title, heading, anchor);
        for (int i = 0; i < graph.columns.at(column).nodes.size(); ++i) {
            const Figure::Node &node = graph.columns.at(column).nodes.at(i);
            const double y = middleOf(graph, column, i, area);
            if (isMiddle)
                canvas.rectangle({place.left, y - nodeHeight / 2, width, nodeHeight}, SvgCanvas::fillOf(i), {}, 0.25, 4);
            const QString shown = node.detail.isEmpty() ? node.name : node.name + QStringLiteral(" \u00b7 ") + node.detail;
            canvas.text({x, y + SvgCanvas::textSize / 3}, SvgCanvas::shortened(shown, width), text, anchor);
        }
    }
}

double SvgPanels::heightOf(const Figure::List &list)
{
    double height = 0;
    for (const QString &item : list.items)
        height += SvgCanvas::lines(item, usualWidth).size() * SvgCanvas::lineHeight;
    return height;
}

void SvgPanels::draw(SvgCanvas &canvas, const Figure::List &list, const QRectF &area)
{
    double y = area.top();
    for (const QString &item : list.items) {
        const QStringList lines = SvgCanvas::lines(item, usualWidth);
        for (const QString &line : lines) {
            y += SvgCanvas::lineHeight;
            canvas.text({area.left(), y - SvgCanvas::lineHeight + SvgCanvas::textSize}, SvgCanvas::shortened(line, usualWidth), text);
        }
    }
}

double SvgPanels::heightOf(const Figure::Table &table)
{
    return (table.rows.size() + 1) * SvgCanvas::lineHeight + 4;
}

void SvgPanels::draw(SvgCanvas &canvas, const Figure::Table &table, const QRectF &area)
{
    const QVector<double> widths = columnWidths(table);
    double right = area.left();
    for (int column = 0; column < widths.size() && right + widths.at(column) <= area.right(); ++column) {
        right += widths.at(column);
        double y = area.top() + SvgCanvas::textSize;
        canvas.text({right, y}, table.head.at(column), faint, Anchor::End);
        for (const QStringList &row : table.rows) {
            y += SvgCanvas::lineHeight;
            canvas.text({right, y}, row.value(column), text, Anchor::End);
        }
    }
    const double y = area.top() + SvgCanvas::lineHeight;
    canvas.line({area.left(), y}, {right, y}, axis);
}

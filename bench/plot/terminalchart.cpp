#include "terminalchart.h"

#include <algorithm>
#include <cmath>
#include <iterator>

using Console::Style;

namespace
{

constexpr Style styles[] = {Style::Request, Style::Good, Style::Plain, Style::Heading, Style::Bad};
constexpr char letters[] = {'*', '+', 'o', 'x', '#', '%', '@', '&'};

/// Which of eight dots in a row are drawn.
constexpr unsigned int dashes[] = {0xFF, 0x55, 0x1F, 0x11, 0x5F, 0x33, 0x7F, 0x13};

template<typename Value, std::size_t count>
Value inTurn(const Value (&values)[count], int index)
{
    return values[std::size_t(index) % count];
}

/// The part of a canvas that is drawn on with dots.
class DotField
{
public:
    DotField(TextCanvas &canvas, const TerminalChart::Place &place)
        : m_canvas(canvas)
        , m_place(place)
    {
    }

    int width() const { return m_place.columns * m_canvas.dotsAcross(); }
    int height() const { return m_place.rows * m_canvas.dotsDown(); }
    int xOf(double place) const { return int(std::lround(place * (width() - 1))); }
    int yOf(double place) const { return int(std::lround((1 - place) * (height() - 1))); }

    void dot(int x, int y, int name)
    {
        m_canvas.dot(
            m_place.column * m_canvas.dotsAcross() + x, m_place.row * m_canvas.dotsDown() + y, TerminalChart::styleOf(name), TerminalChart::letterOf(name));
    }

    /// A column of dots from one height to another, with all dashes.
    void upright(int x, int from, int to, int name)
    {
        for (int y = std::min(from, to); y <= std::max(from, to); ++y)
            dot(x, y, name);
    }

    void line(int x, int y, int toX, int toY, int name)
    {
        int lastY = y;
        for (int column = x; column <= toX; ++column) {
            const int now = toX > x ? y + int(std::lround(double(toY - y) * (column - x) / (toX - x))) : toY;
            if (m_canvas.isAscii() || TerminalChart::isInked(name, column)) {
                dot(column, now, name);
                // Where the line is steep, its dots would have gaps that are none of its dashes.
                if (std::abs(now - lastY) > 1)
                    upright(column, lastY < now ? lastY + 1 : lastY - 1, now, name);
            }
            lastY = now;
        }
    }

private:
    TextCanvas &m_canvas;
    const TerminalChart::Place m_place;
};

void drawLine(DotField &field, const Figure::Chart &chart, const Figure::Series &series)
{
    const QPointF *last = nullptr;
    for (const QPointF &point : series.points) {
        if (!std::isfinite(point.y())) {
            if (last && series.isStepped) {
                const int y = field.yOf(chart.y.placeOf(last->y()));
                field.line(field.xOf(chart.x.placeOf(last->x())), y, field.xOf(chart.x.placeOf(point.x())), y, series.name);
            }
            last = nullptr;
            continue;
        }
        const int x = field.xOf(chart.x.placeOf(point.x()));
        const int y = field.yOf(chart.y.placeOf(point.y()));
        if (!last) {
            field.dot(x, y, series.name);
        } else {
            const int lastX = field.xOf(chart.x.placeOf(last->x()));
            const int lastY = field.yOf(chart.y.placeOf(last->y()));
            field.line(lastX, lastY, x, series.isStepped ? lastY : y, series.name);
            if (series.isStepped)
                field.upright(x, lastY, y, series.name);
        }
        last = &point;
    }
}

/// The labels below an axis, as many as fit beside each other.
void drawTicks(TextCanvas &canvas, const Figure::Axis &axis, int column, int columns, int row)
{
    const bool isAscii = canvas.isAscii();
    canvas.write(column, row, QString(columns, isAscii ? QLatin1Char('-') : QChar(0x2500)), Style::Faint);
    const int end = column + columns;
    int free = column;
    for (const Figure::Tick &tick : axis.ticks) {
        const int place = column + int(std::lround(axis.placeOf(tick.value) * (columns - 1)));
        const int begin = std::clamp(place - tick.label.size() / 2, column, std::max(end - tick.label.size(), column));
        if (begin < free || begin + tick.label.size() > end)
            continue;
        canvas.write(place, row, isAscii ? QStringLiteral("+") : QString(QChar(0x252C)), Style::Faint);
        canvas.write(begin, row + 1, tick.label, Style::Faint);
        free = begin + tick.label.size() + 1;
    }
    for (const double value : axis.breaks)
        canvas.write(column + int(std::lround(axis.placeOf(value) * (columns - 1))), row, isAscii ? QStringLiteral("/") : QString(QChar(0x2571)), Style::Plain);
}

QString shortened(const QString &text, int columns, bool isAscii)
{
    if (text.size() <= columns)
        return text;
    const QString mark = isAscii ? QStringLiteral("~") : QString(QChar(0x2026));
    return columns < 2 ? QString() : text.left(columns - 1) + mark;
}

/// As much of it as fits: at least its first word, which may be a number.
QString labelOf(const Figure::Span &span, int columns, bool isAscii)
{
    const QString word = span.label.section(QLatin1Char(' '), 0, 0);
    const bool isWordOnly = columns < span.label.size() && columns <= word.size() + 1;
    return isWordOnly && word.size() <= columns ? word : shortened(span.label, columns, isAscii);
}

} // namespace

Style TerminalChart::styleOf(int name)
{
    return inTurn(styles, name);
}

char TerminalChart::letterOf(int name)
{
    return inTurn(letters, name);
}

bool TerminalChart::isInked(int name, int dot)
{
    constexpr int dotsOfDash = 8;
    return (inTurn(dashes, name) >> (dot % dotsOfDash) & 1U) != 0;
}

void TerminalChart::draw(TextCanvas &canvas, const Figure::Chart &chart, const Place &place, int leftMargin)
{
    canvas.write(place.column, place.row, shortened(chart.title, place.columns, canvas.isAscii()), Style::Heading);
    const Place lines{place.column + leftMargin, place.row + 1, place.columns - leftMargin, place.rows - 1 - axisRows};
    DotField field(canvas, lines);
    int lastRow = -1;
    for (const Figure::Tick &tick : chart.y.ticks) {
        const int row = lines.row + field.yOf(chart.y.placeOf(tick.value)) / canvas.dotsDown();
        if (row == lastRow)
            continue;
        lastRow = row;
        canvas.write(lines.column - 1 - tick.label.size(), row, tick.label, Style::Faint);
        for (int column = 0; column < lines.columns; column += 2)
            canvas.write(lines.column + column, row, canvas.isAscii() ? QStringLiteral(".") : QString(QChar(0x00B7)), Style::Faint);
    }
    for (const Figure::Series &series : chart.series)
        drawLine(field, chart, series);
    for (const Figure::Dot &dot : chart.dots) {
        const int column = lines.column + field.xOf(chart.x.placeOf(dot.place.x())) / canvas.dotsAcross();
        const int row = lines.row + field.yOf(chart.y.placeOf(dot.place.y())) / canvas.dotsDown();
        canvas.write(column, row, QStringLiteral("o"), styleOf(dot.name));
    }
    drawTicks(canvas, chart.x, lines.column, lines.columns, lines.row + lines.rows);
}

void TerminalChart::draw(TextCanvas &canvas, const Figure::Lanes &lanes, const Place &place)
{
    const int column = place.column + margin;
    const int columns = place.columns - margin;
    const auto columnOf = [&](double value) { return column + int(std::lround(lanes.x.placeOf(value) * (columns - 1))); };
    int row = place.row;
    for (const Figure::Lane &lane : lanes.lanes) {
        canvas.write(place.column, row, shortened(lane.name, margin - 1, canvas.isAscii()));
        // Of spans on the same character that which comes last is seen, but a moment stays.
        for (const Figure::Span &span : lane.spans) {
            const int begin = columnOf(span.from);
            const bool isMoment = span.to <= span.from;
            const int count = isMoment ? 1 : std::max(columnOf(span.to) - begin, 1);
            if (isMoment) {
                canvas.write(begin, row, span.label, Style::Heading);
                continue;
            }
            const QChar edge = canvas.isAscii() ? QLatin1Char('|') : QChar(0x258F);
            const QChar line = canvas.isAscii() ? QLatin1Char('_') : QChar(0x2581);
            canvas.write(begin, row, QString(count, line), Style::Good);
            canvas.write(begin, row, QString(edge), Style::Good);
            canvas.write(begin + 1, row, labelOf(span, count - 1, canvas.isAscii()), Style::Good);
        }
        ++row;
    }
    drawTicks(canvas, lanes.x, column, columns, row);
}

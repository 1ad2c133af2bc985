#include "terminalplot.h"

#include "terminalchart.h"

#include <algorithm>
#include <clocale>
#include <cmath>
#include <cstring>
#include <iterator>
#include <langinfo.h>
#include <numeric>

using Console::Style;

namespace
{

constexpr int gap = 2; ///< columns between what stands beside each other

QChar shadeOf(double value, bool isAscii)
{
    constexpr ushort blocks[] = {' ', 0x2591, 0x2592, 0x2593, 0x2588};
    constexpr ushort letters[] = {' ', '.', ':', 'o', '#'};
    static_assert(std::size(blocks) == std::size(letters), "the same shades");
    constexpr int highest = int(std::size(blocks)) - 1;
    // Only what is silent is blank.
    const int shade = value <= 0 ? 0 : std::clamp(int(std::ceil(value * highest)), 1, highest);
    return isAscii ? QChar(letters[shade]) : QChar(blocks[shade]);
}

QString tenths(double value)
{
    constexpr int highest = 9;
    return QString::number(std::clamp(int(value * (highest + 1)), 0, highest));
}

/// Rows of a map that are drawn: its middle one, and every third up and down from it, so that it looks as high as it is wide.
QVector<int> shownRows(int rows)
{
    constexpr int step = 3;
    QVector<int> shown;
    for (int row = (rows / 2) % step; row < rows; row += step)
        shown.append(row);
    return shown;
}

void drawMap(TextCanvas &canvas, const Figure::Map &map, const QVector<int> &rows, int column, int firstRow)
{
    canvas.write(column, firstRow, map.title, Style::Heading);
    for (int i = 0; i < rows.size(); ++i) {
        for (int x = 0; x < map.columns; ++x) {
            const int index = rows.at(i) * map.columns + x;
            const bool isMarked = map.isMarked.at(index);
            const QString text = isMarked ? tenths(map.values.at(index)) : QString(shadeOf(map.values.at(index), canvas.isAscii()));
            canvas.write(column + x, firstRow + 1 + i, text, isMarked ? Style::Bad : Style::Plain);
        }
    }
    const auto nearest = std::min_element(
        rows.cbegin(), rows.cend(), [&map](int one, int other) { return std::abs(one - map.chosen.y()) < std::abs(other - map.chosen.y()); });
    canvas.write(column + map.chosen.x(), firstRow + 1 + int(nearest - rows.cbegin()), QStringLiteral("X"), Style::Request);
}

/// A frame of characters.
void drawFrame(TextCanvas &canvas, int column, int row, int columns, int rows)
{
    static constexpr ushort lines[] = {0x256D, 0x256E, 0x2570, 0x256F, 0x2500, 0x2502};
    static constexpr char letters[] = {'/', '\\', '\\', '/', '-', '|'};
    const auto text = [&canvas](int index, int count = 1) { return QString(count, canvas.isAscii() ? QLatin1Char(letters[index]) : QChar(lines[index])); };
    canvas.write(column, row, text(0) + text(4, columns - 2) + text(1), Style::Faint);
    for (int i = 1; i < rows - 1; ++i) {
        canvas.write(column, row + i, text(5), Style::Faint);
        canvas.write(column + columns - 1, row + i, text(5), Style::Faint);
    }
    canvas.write(column, row + rows - 1, text(2) + text(4, columns - 2) + text(3), Style::Faint);
}

QString nodeText(const Figure::Node &node)
{
    return node.detail.isEmpty() ? node.name : node.name + QStringLiteral(": ") + node.detail;
}

} // namespace

TerminalPlot::TerminalPlot(int width, TextCanvas::Characters characters)
    : m_width(width)
    , m_characters(characters)
{
}

TextCanvas::Characters TerminalPlot::charactersOfLocale()
{
    return std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0 ? TextCanvas::Characters::Unicode : TextCanvas::Characters::Ascii;
}

QString TerminalPlot::draw(const Figure &figure) const
{
    QString text = Console::styled(Style::Heading, encoded(paragraph(figure.title)));
    for (const Figure::Panel &panel : figure.panels)
        text += QLatin1Char('\n') + std::visit([this](const auto &one) { return drawPanel(one); }, panel);
    for (const QString &remark : figure.remarks)
        text += QLatin1Char('\n') + paragraph(remark);
    return encoded(text);
}

/// Without what ASCII does not have.
QString TerminalPlot::encoded(const QString &text) const
{
    if (!isAscii())
        return text;
    QString plain;
    for (const QChar character : text) {
        constexpr ushort lastOfAscii = 0x7F;
        if (character.unicode() <= lastOfAscii)
            plain += character;
        else
            plain += character == QChar(0x2026) ? QLatin1Char('~') : QLatin1Char('?');
    }
    return plain;
}

QString TerminalPlot::paragraph(const QString &text, int indent, int hanging) const
{
    QString lines;
    QString line(indent, QLatin1Char(' '));
    const QStringList words = text.split(QLatin1Char(' '));
    for (QString word : words) {
        if (!line.trimmed().isEmpty() && line.size() + 1 + word.size() > m_width) {
            lines += line + QLatin1Char('\n');
            line = QString(hanging, QLatin1Char(' '));
        } else if (!line.trimmed().isEmpty()) {
            line += QLatin1Char(' ');
        }
        while (line.size() + word.size() > m_width) {
            const int room = m_width - line.size();
            lines += line + word.left(room) + QLatin1Char('\n');
            word = word.mid(room);
            line = QString(hanging, QLatin1Char(' '));
        }
        line += word;
    }
    return lines + line + QLatin1Char('\n');
}

QString TerminalPlot::legendText(const QStringList &legend) const
{
    constexpr int sample = 5; // characters: all dashes begin again in the last one
    QString text;
    int column = 0;
    for (int name = 0; name < legend.size(); ++name) {
        const QString label = legend.at(name).left(m_width - sample - 1);
        const int columns = sample + 1 + label.size();
        if (column > 0 && column + gap + columns > m_width) {
            text += QLatin1Char('\n');
            column = 0;
        }
        if (column > 0) {
            text += QString(gap, QLatin1Char(' '));
            column += gap;
        }
        TextCanvas line(sample, 1, m_characters);
        for (int dot = 0; dot < sample * line.dotsAcross(); ++dot) {
            if (isAscii() || TerminalChart::isInked(name, dot))
                line.dot(dot, line.dotsDown() / 2, TerminalChart::styleOf(name), TerminalChart::letterOf(name));
        }
        QString drawn = line.toText();
        drawn.chop(1);
        text += drawn + QLatin1Char(' ') + label;
        column += columns;
    }
    return legend.isEmpty() ? QString() : text + QLatin1Char('\n');
}

QString TerminalPlot::drawPanel(const Figure::Charts &charts) const
{
    constexpr int narrowest = 44;
    constexpr int smallMargin = 7;
    const int count = charts.charts.size();
    const int perRow = count == 1 ? 1 : std::clamp((m_width + gap) / (narrowest + gap), 1, std::max(count, 1));
    const int columns = (m_width + gap) / perRow - gap;
    const int margin = count == 1 ? TerminalChart::margin : smallMargin;
    constexpr int leastRows = 17;
    constexpr int mostRows = 25;
    constexpr int columnsPerRow = 8;
    constexpr int rowsOfSeveral = 10;
    const int rows = (count == 1 ? std::clamp(m_width / columnsPerRow, leastRows, mostRows) : rowsOfSeveral) + 1 + TerminalChart::axisRows;
    QString text = legendText(charts.legend);
    for (int first = 0; first < count; first += perRow) {
        if (count > 1)
            text += QLatin1Char('\n');
        TextCanvas drawn = canvas(rows);
        for (int i = first; i < std::min(first + perRow, count); ++i)
            TerminalChart::draw(drawn, charts.charts.at(i), {(i - first) * (columns + gap), 0, columns, rows}, margin);
        text += drawn.toText();
    }
    return text;
}

QString TerminalPlot::drawPanel(const Figure::Lanes &lanes) const
{
    const int rows = lanes.lanes.size() + TerminalChart::axisRows;
    TextCanvas drawn = canvas(rows);
    TerminalChart::draw(drawn, lanes, {0, 0, m_width, rows});
    return drawn.toText();
}

QString TerminalPlot::drawPanel(const Figure::Maps &maps) const
{
    if (maps.maps.isEmpty())
        return {};
    const Figure::Map &first = maps.maps.constFirst();
    const QVector<int> rows = shownRows(first.values.size() / first.columns);
    const int perRow = std::clamp((m_width + gap) / (first.columns + gap), 1, maps.maps.size());
    QString text;
    for (int begin = 0; begin < maps.maps.size(); begin += perRow) {
        if (begin > 0)
            text += QLatin1Char('\n');
        TextCanvas drawn = canvas(rows.size() + 1);
        for (int i = begin; i < std::min(begin + perRow, maps.maps.size()); ++i)
            drawMap(drawn, maps.maps.at(i), rows, (i - begin) * (first.columns + gap), 0);
        text += drawn.toText();
    }
    QString shades;
    constexpr int shadeCount = 4;
    for (int shade = 1; shade <= shadeCount; ++shade)
        shades += QStringLiteral("%1 to %2 %, ").arg(shadeOf(double(shade) / shadeCount, isAscii())).arg(shade * 100 / shadeCount);
    return text + QLatin1Char('\n')
        + paragraph(
               QStringLiteral("Top row: %1, bottom row: %2; left: %3, right: %4. %5blank: silent; a digit: %6, tens of percent that are left; X: as above.")
                   .arg(maps.top, maps.bottom, maps.left, maps.right, shades, maps.marked));
}

QString TerminalPlot::drawPanel(const Figure::Car &car) const
{
    constexpr int columns = 40;
    constexpr int rows = 14;
    constexpr int frontRow = 3;
    constexpr int rearRow = 9;
    constexpr int barColumns = 10;
    TextCanvas drawn = canvas(rows);
    drawFrame(drawn, 0, 0, columns, rows);
    const QString front = QStringLiteral("front");
    drawn.write((columns - front.size()) / 2, 1, front, Style::Faint);
    const QString rear = QStringLiteral("rear");
    drawn.write((columns - rear.size()) / 2, rows - 2, rear, Style::Faint);
    for (int i = 0; i < car.loudspeakers.size(); ++i) {
        const Figure::Loudspeaker &one = car.loudspeakers.at(i);
        const int row = i < 2 ? frontRow : rearRow;
        const bool isLeft = i % 2 == 0;
        const auto write = [&](int line, const QString &text, Style style) { drawn.write(isLeft ? 2 : columns - 2 - text.size(), row + line, text, style); };
        const int filled = one.level <= 0 ? 0 : std::clamp(int(std::lround(one.level * barColumns)), 1, barColumns);
        const QString bar
            = QString(filled, isAscii() ? QLatin1Char('#') : QChar(0x2588)) + QString(barColumns - filled, isAscii() ? QLatin1Char('.') : QChar(0x2591));
        write(0, one.name, Style::Heading);
        write(1, bar, Style::Request);
        write(2, one.gain, Style::Plain);
    }
    return drawn.toText();
}

QString TerminalPlot::drawPanel(const Figure::Graph &graph) const
{
    constexpr int indent = 4;
    QString text;
    if (graph.columns.size() != 3)
        return text;
    const Figure::Column &left = graph.columns.at(0);
    const Figure::Column &middle = graph.columns.at(1);
    const Figure::Column &right = graph.columns.at(2);
    const auto add = [&](const QString &title, const Figure::Column &column, const QVector<int> &nodes) {
        if (nodes.isEmpty())
            return;
        text += QString(indent / 2, QLatin1Char(' ')) + Console::styled(Style::Faint, title) + QLatin1Char('\n');
        for (const int node : nodes)
            text += paragraph(nodeText(column.nodes.at(node)), indent, 2 * indent);
    };
    for (int node = 0; node < middle.nodes.size(); ++node) {
        QVector<int> before;
        for (const Figure::Edge &edge : left.edges) {
            if (edge.to == node)
                before.append(edge.from);
        }
        QVector<int> after;
        for (const Figure::Edge &edge : middle.edges) {
            if (edge.from == node)
                after.append(edge.to);
        }
        text += Console::styled(Style::Heading, nodeText(middle.nodes.at(node))) + QLatin1Char('\n');
        add(left.title, left, before);
        add(right.title, right, after);
    }
    return text;
}

QString TerminalPlot::drawPanel(const Figure::Table &table) const
{
    QVector<int> widths;
    QVector<int> keys;
    for (int column = 0; column < table.head.size(); ++column) {
        int width = table.head.at(column).size();
        for (const QStringList &row : table.rows)
            width = std::max(width, row.value(column).size());
        widths.append(width + gap);
        if (column < table.keys)
            keys.append(column);
    }
    const auto widthOf = [&widths](const QVector<int> &columns) {
        return std::accumulate(columns.cbegin(), columns.cend(), -gap, [&widths](int sum, int column) { return sum + widths.at(column); });
    };
    // What is too wide stands in parts, one below the other.
    QString text;
    QVector<int> columns = keys;
    for (int column = table.keys; column < table.head.size(); ++column) {
        if (columns.size() > keys.size() && widthOf(columns) + widths.at(column) > m_width) {
            text += tableText(table, columns, widths) + QLatin1Char('\n');
            columns = keys;
        }
        columns.append(column);
    }
    return text + tableText(table, columns, widths);
}

QString TerminalPlot::drawPanel(const Figure::List &list) const
{
    constexpr int hanging = 4;
    QString text;
    for (const QString &item : list.items)
        text += paragraph(item, 0, hanging);
    return text;
}

QString TerminalPlot::tableText(const Figure::Table &table, const QVector<int> &columns, const QVector<int> &widths) const
{
    const auto lineOf = [&](const QStringList &cells) {
        QString line;
        for (const int column : columns)
            line += cells.value(column).rightJustified(widths.at(column));
        return line.mid(gap, m_width);
    };
    QString text = Console::styled(Style::Faint, lineOf(table.head)) + QLatin1Char('\n');
    for (const QStringList &row : table.rows)
        text += lineOf(row) + QLatin1Char('\n');
    return text;
}

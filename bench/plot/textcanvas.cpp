#include "textcanvas.h"

#include <array>

namespace
{

constexpr ushort firstBraille = 0x2800;
constexpr ushort lastBraille = 0x28FF;

/// Bits of the dots in a character of Braille, row by row: the last row was added to it later.
constexpr std::array<std::array<ushort, 2>, 4> brailleBits = {{{0x01, 0x08}, {0x02, 0x10}, {0x04, 0x20}, {0x40, 0x80}}};

bool isBraille(QChar character)
{
    return character.unicode() >= firstBraille && character.unicode() <= lastBraille;
}

} // namespace

TextCanvas::TextCanvas(int columns, int rows, Characters characters)
    : m_columns(columns)
    , m_rows(rows)
    , m_characters(characters)
    , m_cells(columns * rows)
{
}

void TextCanvas::write(int column, int row, const QString &text, Console::Style style)
{
    for (int i = 0; i < text.size(); ++i) {
        if (has(column + i, row))
            cell(column + i, row) = {text.at(i), style};
    }
}

void TextCanvas::dot(int x, int y, Console::Style style, char letter)
{
    if (x < 0 || y < 0)
        return;
    const int column = x / dotsAcross();
    const int row = y / dotsDown();
    if (!has(column, row))
        return;
    Cell &place = cell(column, row);
    if (isAscii()) {
        place = {QLatin1Char(letter), style};
        return;
    }
    const ushort before = isBraille(place.character) ? place.character.unicode() : firstBraille;
    const ushort bit = brailleBits[std::size_t(y % dotsDown())][std::size_t(x % dotsAcross())];
    place = {QChar(ushort(before | bit)), style};
}

bool TextCanvas::isBlank(int column, int row, int count) const
{
    for (int i = column; i < column + count; ++i) {
        if (!has(i, row) || m_cells.at(row * m_columns + i).character != QLatin1Char(' '))
            return false;
    }
    return true;
}

QString TextCanvas::toText() const
{
    QString text;
    for (int row = 0; row < m_rows; ++row) {
        int end = m_columns;
        while (end > 0 && m_cells.at(row * m_columns + end - 1).character == QLatin1Char(' '))
            --end;
        int column = 0;
        while (column < end) {
            const Console::Style style = m_cells.at(row * m_columns + column).style;
            QString same;
            for (; column < end && m_cells.at(row * m_columns + column).style == style; ++column)
                same += m_cells.at(row * m_columns + column).character;
            text += Console::styled(style, same);
        }
        text += QLatin1Char('\n');
    }
    return text;
}

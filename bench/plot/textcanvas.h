#ifndef TEXTCANVAS_H
#define TEXTCANVAS_H

#include "console.h"

#include <QtCore/QString>
#include <QtCore/QVector>

/// A field of characters, which texts and dots are put on. What lies outside of it is not drawn.
class TextCanvas
{
public:
    enum class Characters {
        Unicode, ///< with Braille, of which a character has two columns and four rows of dots
        Ascii, ///< a dot is a character
    };

    TextCanvas(int columns, int rows, Characters characters);

    int columns() const { return m_columns; }
    int rows() const { return m_rows; }
    bool isAscii() const { return m_characters == Characters::Ascii; }
    /// Dots of a character, across and down.
    int dotsAcross() const { return isAscii() ? 1 : 2; }
    int dotsDown() const { return isAscii() ? 1 : 4; }

    void write(int column, int row, const QString &text, Console::Style style = Console::Style::Plain);
    /// @param letter what stands for the dot where there is no Braille
    void dot(int x, int y, Console::Style style, char letter);

    bool isBlank(int column, int row, int count) const;

    /// Its lines, without blanks at their ends.
    QString toText() const;

private:
    struct Cell
    {
        QChar character = QLatin1Char(' ');
        Console::Style style = Console::Style::Plain;
    };

    bool has(int column, int row) const { return column >= 0 && row >= 0 && column < m_columns && row < m_rows; }
    Cell &cell(int column, int row) { return m_cells[row * m_columns + column]; }

    const int m_columns;
    const int m_rows;
    const Characters m_characters;
    QVector<Cell> m_cells;
};

#endif

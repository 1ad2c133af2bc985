#ifndef TERMINALPLOT_H
#define TERMINALPLOT_H

#include "figure.h"
#include "textcanvas.h"

#include <QtCore/QString>

/**
 * Draws a figure with characters, no line wider than the terminal.
 *
 * Lines of a chart differ by their dashes, so that they can be told from each other without colours, too.
 */
class TerminalPlot
{
public:
    /// @param width columns, 40 or more
    TerminalPlot(int width, TextCanvas::Characters characters);

    /// What the locale has: Ascii where it is not one of UTF-8.
    static TextCanvas::Characters charactersOfLocale();

    QString draw(const Figure &figure) const;

private:
    QString drawPanel(const Figure::Charts &charts) const;
    QString drawPanel(const Figure::Lanes &lanes) const;
    QString drawPanel(const Figure::Maps &maps) const;
    QString drawPanel(const Figure::Car &car) const;
    QString drawPanel(const Figure::Graph &graph) const;
    QString drawPanel(const Figure::Table &table) const;
    QString drawPanel(const Figure::List &list) const;

    QString tableText(const Figure::Table &table, const QVector<int> &columns, const QVector<int> &widths) const;
    QString legendText(const QStringList &legend) const;
    TextCanvas canvas(int rows) const { return {m_width, rows, m_characters}; }
    /// In as many lines as it needs, also where a word is longer than a line.
    QString paragraph(const QString &text, int indent = 0, int hanging = 0) const;
    bool isAscii() const { return m_characters == TextCanvas::Characters::Ascii; }
    QString encoded(const QString &text) const;

    const int m_width;
    const TextCanvas::Characters m_characters;
};

#endif

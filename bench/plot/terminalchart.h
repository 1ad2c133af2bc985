#ifndef TERMINALCHART_H
#define TERMINALCHART_H

#include "figure.h"
#include "textcanvas.h"

/// Draws charts and lanes on a canvas of characters.
namespace TerminalChart
{

/// Columns for what stands left of a chart and of lanes, so that those of one figure have the same place.
constexpr int margin = 12;

/// Where on the canvas something is to be drawn.
struct Place
{
    int column;
    int row;
    int columns;
    int rows;
};

/// Looks of the line with this index in the legend.
Console::Style styleOf(int name);
char letterOf(int name);
/// Whether the dash of the line has a dot here.
bool isInked(int name, int dot);

/// Rows below the lines of a chart: the axis and its ticks.
constexpr int axisRows = 2;

/// The chart with its title above it and its axes. The place holds all of it.
void draw(TextCanvas &canvas, const Figure::Chart &chart, const Place &place, int leftMargin);

/// One row for each lane, and the axis.
void draw(TextCanvas &canvas, const Figure::Lanes &lanes, const Place &place);

} // namespace TerminalChart

#endif

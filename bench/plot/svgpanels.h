#ifndef SVGPANELS_H
#define SVGPANELS_H

#include "figure.h"
#include "svgcanvas.h"

/**
 * The panels of a figure as SVG: how high each is, and the panel itself, in an area of that height.
 *
 * What is drawn of a time or a frequency has its place by the same margins in each panel, so that panels of one axis stand below each other.
 */
namespace SvgPanels
{

constexpr double usualWidth = 912; ///< of an area: heights are asked for before there is one
constexpr double margin = 100; ///< left of lines and lanes

double heightOf(const Figure::Charts &charts);
double heightOf(const Figure::Lanes &lanes);
double heightOf(const Figure::Maps &maps);
double heightOf(const Figure::Car &car);
double heightOf(const Figure::Graph &graph);
double heightOf(const Figure::Table &table);
double heightOf(const Figure::List &list);

void draw(SvgCanvas &canvas, const Figure::Charts &charts, const QRectF &area);
void draw(SvgCanvas &canvas, const Figure::Lanes &lanes, const QRectF &area);
void draw(SvgCanvas &canvas, const Figure::Maps &maps, const QRectF &area);
void draw(SvgCanvas &canvas, const Figure::Car &car, const QRectF &area);
void draw(SvgCanvas &canvas, const Figure::Graph &graph, const QRectF &area);
void draw(SvgCanvas &canvas, const Figure::Table &table, const QRectF &area);
void draw(SvgCanvas &canvas, const Figure::List &list, const QRectF &area);

} // namespace SvgPanels

#endif

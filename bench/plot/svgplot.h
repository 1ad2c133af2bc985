#ifndef SVGPLOT_H
#define SVGPLOT_H

#include "figure.h"

#include <QtCore/QByteArray>

/// Draws a figure as SVG.
namespace SvgPlot
{

constexpr double width = 960;

QByteArray draw(const Figure &figure);

} // namespace SvgPlot

#endif

#ifndef FIGUREJSON_H
#define FIGUREJSON_H

#include "figure.h"

#include <QtCore/QJsonObject>

/// A figure for programs that draw it themselves: with the members' names, each panel with its kind.
namespace FigureJson
{

/// Coordinates that are not finite, where a line is interrupted, are null.
QJsonObject of(const Figure &figure);

} // namespace FigureJson

#endif

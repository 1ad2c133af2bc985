#ifndef PICTUREFILE_H
#define PICTUREFILE_H

#include "figure.h"

/// A figure as a file: SVG, or PNG through rsvg-convert.
namespace PictureFile
{

/// What is wrong with the name that a picture is to have; empty for nothing. "-" is SVG on the standard output.
QString problemOfName(const QString &file);

/// @return why it could not be written; empty where it was
QString write(const Figure &figure, const QString &file);

} // namespace PictureFile

#endif

#ifndef ARGUMENTLIST_H
#define ARGUMENTLIST_H

#include <QtCore/QStringList>

namespace ArgumentList
{

/// The parts between commas, but for those in quotes and brackets: {"\"a, b\"", "[1, 2]"} of "\"a, b\", [1, 2]".
QStringList split(const QString &arguments);

} // namespace ArgumentList

#endif

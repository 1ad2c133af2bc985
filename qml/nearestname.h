#ifndef NEARESTNAME_H
#define NEARESTNAME_H

#include <QtCore/QString>
#include <QtCore/QStringList>

/**
 * The known name that was most likely meant: the one with the fewest letters to change, upper and lower case alike.
 *
 * Empty where more than half of the letters are others.
 */
QString nearestName(const QString &name, const QStringList &known);

#endif

#ifndef SCRIPTNAMES_H
#define SCRIPTNAMES_H

#include <QtCore/QString>

namespace scriptnames
{

/// Whether no variable of a recorded line may be called so: a word of the language, or what a scenario finds in its global scope.
bool isTaken(const QString &name);

} // namespace scriptnames

#endif

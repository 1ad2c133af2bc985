#ifndef LOADEDFILE_H
#define LOADEDFILE_H

#include <QtCore/QString>

/// Which file of this process has the code at @p address, links followed. Empty where it is this program itself.
QString fileOfCode(const void *address);

#endif

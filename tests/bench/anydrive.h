#ifndef ANYDRIVE_H
#define ANYDRIVE_H

#include <QtCore/QByteArray>

/// A scenario of so many random requests, refusals and waits of a unit that is on; of the same seed the same.
QByteArray anyDrive(unsigned int seed, int length);

#endif

#ifndef LIBRARYEXAMINATION_H
#define LIBRARYEXAMINATION_H

#include "finding.h"

/// Which libqzaudio is loaded, and whether it is of this program's version.
Findings examineLibrary();

/// Sizes of the records that cross the border to the platform, as this program's compiler sees them; the vendor's has to see the same.
Findings examineRecords();

#endif

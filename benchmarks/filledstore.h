#ifndef FILLEDSTORE_H
#define FILLEDSTORE_H

#include <qzaudio/audiodatabase.h>

/// A store whose file has a value for all that is kept, as on a unit that has been used for a while.
audio::AudioDataBase &filledStore();

#endif

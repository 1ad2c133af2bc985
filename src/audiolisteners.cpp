#include <qzaudio/audiolisteners.h>

IAudioFocusChangeListener::~IAudioFocusChangeListener() = default;

IMegaBaseChangeListener::~IMegaBaseChangeListener() = default;

IVolumeListener::~IVolumeListener() = default;

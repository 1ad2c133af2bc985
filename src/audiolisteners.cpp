#include <qzaudio/audiolisteners.h>

IAudioFocusChangeListener::~IAudioFocusChangeListener() = default;

IMegaBaseChangeListener::~IMegaBaseChangeListener() = default;

IVolumeListener::~IVolumeListener()
{
    // Its one virtual function is pure, so nothing but this function brings the class's tables into the library, where clients look
    // for them; without this the optimizer would leave them out.
    asm volatile("" : : "r"(this) : "memory");
}

#include <qzaudio/iaudiofocusdispatcher.h>

IAudioFocusDispatcher::~IAudioFocusDispatcher() = default;

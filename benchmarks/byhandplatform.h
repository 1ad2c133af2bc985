#ifndef BYHANDPLATFORM_H
#define BYHANDPLATFORM_H

#include <spaudiosetting.h>

/// What several floors send to the platform.
namespace byhand
{

/// One operation on an object of its own: onNewObject<createVolume>([](Volume &volume) { volume.setDuckingMode(1); });
template<auto create, typename Operation>
void onNewObject(Operation operation)
{
    auto *const object = create();
    operation(*object);
    audio::SPAudioSetting::destroy(object);
}

/// One setTrackVolume() on the main track, on an object of its own.
void setTrackVolume(const char *source, unsigned char value);

/// The media volume, 0 to 25, for each source that has it.
void setMediaVolume(int volume);

} // namespace byhand

#endif

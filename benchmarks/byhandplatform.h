#ifndef BYHANDPLATFORM_H
#define BYHANDPLATFORM_H

/// What several floors send to the platform.
namespace byhand
{

/// One setTrackVolume() on the main track, on an object of its own.
void setTrackVolume(const char *source, unsigned char value);

/// The media volume, 0 to 25, for each source that has it.
void setMediaVolume(int volume);

} // namespace byhand

#endif

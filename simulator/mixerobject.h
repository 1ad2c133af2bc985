#ifndef MIXEROBJECT_H
#define MIXEROBJECT_H

#include "bookedobject.h"

#include <spaudiosetting.h>

namespace simulator
{

/// The platform's Mixer on the simulated chip.
class MixerObject final : public audio::SPAudioSetting::Mixer, public BookedObject
{
public:
    static constexpr ObjectKind staticKind = ObjectKind::Mixer;

    MixerObject();

    int setFrontRearMode(int mode) override;
};

} // namespace simulator

#endif

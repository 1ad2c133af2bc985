#ifndef MIXEROBJECT_H
#define MIXEROBJECT_H

#include "bookedobject.h"

#include <spaudiosetting.h>

#include <QtCore/QObject>

namespace simulator
{

/// The platform's Mixer on the simulated chip.
class MixerObject final : public audio::SPAudioSetting::Mixer, public BookedObject
{
    Q_GADGET

public:
    static constexpr ObjectKind staticKind = ObjectKind::Mixer;

    MixerObject()
        : BookedObject(staticKind)
    {
    }

public Q_SLOTS:
    int setFrontRearMode(int mode) override { return call(__func__, &AudioChip::setFrontRearMode, mode); }
};

} // namespace simulator

#endif

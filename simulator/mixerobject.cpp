#include "mixerobject.h"

#include "audiochip.h"
#include "call.h"

namespace simulator
{

MixerObject::MixerObject()
    : BookedObject(staticKind)
{
}

int MixerObject::setFrontRearMode(int mode)
{
    return Call(*this, Operation::SetFrontRearMode).with(mode).run([mode](AudioChip &chip) { return chip.setFrontRearMode(mode); });
}

} // namespace simulator

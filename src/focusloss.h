#ifndef FOCUSLOSS_H
#define FOCUSLOSS_H

#include <qzaudio/focusrequester.h>

namespace focusloss
{

/// The loss for a gain request (rows 1 to 4) by the loss received so far (columns 0, -1, -2, -3). A loss never softens.
constexpr int lossForGain[4][4] = {
    {-1, -1, -1, -1}, // GAIN
    {-2, -1, -2, -2}, // GAIN_TRANSIENT
    {-3, -1, -2, -3}, // GAIN_TRANSIENT_MAY_DUCK
    {-2, -1, -2, -2}, // GAIN_TRANSIENT_EXCLUSIVE
};

/// Whether there is a loss for both.
constexpr bool isDefined(int gainRequest, int lossReceived)
{
    return gainRequest >= AUDIOFOCUS_GAIN && gainRequest <= AUDIOFOCUS_GAIN_TRANSIENT_EXCLUSIVE && lossReceived >= AUDIOFOCUS_LOSS_TRANSIENT_CAN_DUCK
        && lossReceived <= AUDIOFOCUS_NONE;
}

constexpr int loss(int gainRequest, int lossReceived)
{
    return lossForGain[gainRequest - 1][-lossReceived];
}

} // namespace focusloss

#endif

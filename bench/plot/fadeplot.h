#ifndef FADEPLOT_H
#define FADEPLOT_H

#include "figure.h"

/// What fade and balance make of the four loudspeakers: of one setting, and of all.
namespace FadePlot
{

constexpr int highestStep = 15; ///< of both, up and down

/// Sets the simulated platform's fade and balance to each of their settings, in the end to the one that is asked for.
Figure draw(int fade, int balance);

} // namespace FadePlot

#endif

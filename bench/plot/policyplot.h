#ifndef POLICYPLOT_H
#define POLICYPLOT_H

#include "figure.h"

/// Which volume type governs which status and which channel, and whom its volume reaches.
namespace PolicyPlot
{

Figure draw();

} // namespace PolicyPlot

#endif

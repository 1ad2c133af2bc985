#ifndef SIMULATORLOG_H
#define SIMULATORLOG_H

#include <QtCore/QLoggingCategory>

namespace simulator
{

/// Category "qzaudio.simulator", usable until the very end of the process: unlike Qt's own category objects it is never destroyed.
const QLoggingCategory &simulatorLog();

} // namespace simulator

#endif

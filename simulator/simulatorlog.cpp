#include "simulatorlog.h"

namespace simulator
{

const QLoggingCategory &simulatorLog()
{
    static const QLoggingCategory *const category = new QLoggingCategory("qzaudio.simulator");
    return *category;
}

} // namespace simulator

#include "command.h"

bool Command::wantsVirtualTime(const QCommandLineParser & /*parsed*/) const
{
    return false;
}

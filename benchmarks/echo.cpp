#include "echo.h"

int Echo::requestAudioFocus(int, int, const QString &)
{
    return 0;
}

int Echo::abandonAudioFocus(const QString &)
{
    return 0;
}

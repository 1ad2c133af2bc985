#include "report.h"

#include <cstdio>

void report(const QString &text)
{
    std::fputs((QStringLiteral("qzaudio-focusd: ") + text + QLatin1Char('\n')).toLocal8Bit().constData(), stderr);
}

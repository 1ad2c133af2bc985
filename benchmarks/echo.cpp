#include "echo.h"

Echo::Echo(bool tells)
    : m_tells(tells)
{
}

int Echo::requestAudioFocus(int, int, const QString &)
{
    if (m_tells)
        Q_EMIT audioFocusChanged(-3, QStringLiteral("bench.client.0"));
    return 0;
}

int Echo::abandonAudioFocus(const QString &)
{
    if (m_tells)
        Q_EMIT audioFocusChanged(1, QStringLiteral("bench.client.0"));
    return 0;
}

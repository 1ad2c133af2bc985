#ifndef LOWBYTE_H
#define LOWBYTE_H

#include <QtCore/qglobal.h>

namespace audio
{

/// What the platform is sent of a number that an unsigned byte does not hold.
constexpr quint8 lowByte(int value)
{
    return static_cast<quint8>(value);
}

} // namespace audio

#endif

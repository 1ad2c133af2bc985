#ifndef WRAPPING_H
#define WRAPPING_H

namespace lives
{

/// Numbers beyond an int come back at its other end.
constexpr int times(int number, unsigned int factor)
{
    return static_cast<int>(static_cast<unsigned int>(number) * factor);
}

} // namespace lives

#endif

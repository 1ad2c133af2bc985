#ifndef SLOWFLASH_H
#define SLOWFLASH_H

/// What this process's fsync() and fdatasync() do besides their work.
namespace slowflash
{

enum class Mishap {
    None,
    Stop, ///< the process stands still, with a save half done, until somebody lets it go on
    Death, ///< the process dies, with a save half done
};

void setDelay(int milliseconds);
/// Happens at the next call. The word is printed before it.
void setMishap(Mishap mishap);

} // namespace slowflash

#endif

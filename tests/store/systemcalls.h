#ifndef SYSTEMCALLS_H
#define SYSTEMCALLS_H

#include <QtCore/QByteArray>

#include <functional>

/**
 * What the C library's functions answer to the library under test, in the test's own process: those of the program come before the C
 * library's own.
 *
 * Known are fchmod, fchown, flock, fstat64, fsync, futimens, link, lstat64, open, opendir, pread, read, rename and unlink; a call of another
 * name for the same function, pread64, counts as one of it.
 */
namespace systemcalls
{

struct Plan
{
    int error = 0; ///< instead of the call; 0: it is made
    int after = 0; ///< so many calls, which are made
    int times = 1;
    std::function<void()> meanwhile = {}; ///< what happens right before
};

void plan(const QByteArray &function, const Plan &plan);
/// How often the plans of a function were followed since they were last forgotten: a plan that nobody meets shows nothing.
int followed(const QByteArray &function);
/// From now on everything is as without this.
void forget();

} // namespace systemcalls

#endif

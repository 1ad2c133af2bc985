#ifndef POWERCUT_H
#define POWERCUT_H

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <functional>
#include <limits>

/// Kills a process at a system call, or lets a system call of it fail.
namespace powercut
{

constexpr int never = std::numeric_limits<int>::max();

/**
 * Starts a program that stops itself twice (SIGSTOP, sent by kill()), and kills it (SIGKILL) when it is about to enter its n-th
 * system call after the first stop, n counted from 1. Where it makes fewer calls it is killed at the second stop. Calls
 * whileStopped() at the first stop.
 *
 * Gives the number of system calls that it made between the stops, without the last kill(); -1 where the program could not be
 * traced or ended before.
 */
int runAndKillAt(int systemCall, const QStringList &commandLine, const std::function<void()> &whileStopped = {});

/// How far a child of this process came.
struct Cut
{
    int systemCalls = -1; ///< between the stops, of those that count; -1 where it could not be traced or ended before
    int steps = 0; ///< that it told
    bool isWhole = false; ///< it came to the second stop
};

/// Which calls of a child count. How often it asks for memory depends on what this process did before: such calls never do.
enum class Calls {
    OfFiles,
    ThatMayChangeFiles, ///< a cut at another one leaves what a cut at the next one of these does
};

/// The same for what @p work does between two calls of stop(), in a child that inherits this process's memory: some ten times faster.
Cut runAndKillAt(int systemCall, Calls calls, const std::function<void()> &work);

/// For the child.
void stop();
/// For the child: one more step is behind it.
void tellStep();

/// What a failing system call is replaced by: it is not made, and gives the error.
struct Fault
{
    int systemCall = never; ///< the n-th after the first stop, counted from 1, of those that have to do with files
    int error = 0; ///< ENOSPC, EIO ...
    bool isForEver = false; ///< all that come after it before the second stop fail, too
};

struct FaultyRun
{
    int systemCalls = -1; ///< that could have failed, between the stops; -1 where the program could not be traced or ended before
    bool hasEndedWell = false; ///< exit status 0
    QString output; ///< its standard output and error output
};

/// Runs the program that stops itself twice to its end, with one fault between the stops. Calls whileStopped() at the second stop.
FaultyRun runWithFault(const Fault &fault, const QStringList &commandLine, const std::function<void()> &whileStopped);

} // namespace powercut

#endif

#ifndef POWERCUT_H
#define POWERCUT_H

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <functional>
#include <limits>
#include <vector>

/// Kills a process at a system call, lets a system call of it fail, or lets others act right before one.
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
    bool isTraced = false; ///< it came to its second stop
    bool hasEndedWell = false; ///< exit status 0
    QString output; ///< its standard output and error output
};

/// Runs the program that stops itself twice to its end, with one fault between the stops. Calls whileStopped() at the second stop.
FaultyRun runWithFault(const Fault &fault, const QStringList &commandLine, const std::function<void()> &whileStopped);

enum class Call {
    Open,
    Read, ///< from a file's current place, or from another
    Write,
    Status, ///< of what has the name, as stat() and lstat() ask for it
    KernelLock,
    Sleep,
};

/// Right before a system call, when others may act.
struct Moment
{
    Call call;
    QString path; ///< that the call is about, or its descriptor is open for; only the beginning has to be the same. Empty for any
    int count; ///< the n-th such call after the first stop, counted from 1
    std::function<void()> act;
    int error = 0; ///< that the call gives instead of being made: EIO, ENOSPC ...
    int mostBytes = never; ///< that a read or write is about, from there on in this call
};

/// Runs the program that stops itself twice to its end, and calls whileStopped() at the second stop. What is to happen at a moment that
/// never comes does not happen. System calls are not counted.
FaultyRun runWithMoments(const std::vector<Moment> &moments, const QStringList &commandLine, const std::function<void()> &whileStopped);

/**
 * Runs the program that stops itself twice to its end, and gives what it does to files below a folder between the stops, in order,
 * each as "CALL PATH": write, fsync, rename (the old name), unlink. Empty where the program could not be traced.
 */
QStringList changesBelow(const QString &folder, const QStringList &commandLine);

} // namespace powercut

#endif

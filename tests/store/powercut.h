#pragma once

#include <QtCore/QStringList>

#include <functional>
#include <limits>

/// Kills a process at a system call of its choice.
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

} // namespace powercut

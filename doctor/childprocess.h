#ifndef CHILDPROCESS_H
#define CHILDPROCESS_H

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <functional>

/// Work that may hang or crash, in a process of its own.
namespace ChildProcess
{
using Tell = std::function<void(const QByteArray &)>;

struct Outcome
{
    QByteArray told; ///< all that was told until it ended
    bool isWhole = false; ///< the work came to its end
    QString ending; ///< where it did not, how the process ended: "crashes, signal 11"
};

/**
 * Forks and does @p work there, which tells what it has to tell, and no 0 byte in it. What it prints besides is dropped, and it leaves no core file.
 *
 * Call it while the process has no other thread: the child has none of them, but whatever they held.
 *
 * @param patienceMs how long it may tell nothing; then it is killed
 */
Outcome run(const std::function<void(const Tell &)> &work, int patienceMs);
} // namespace ChildProcess

#endif

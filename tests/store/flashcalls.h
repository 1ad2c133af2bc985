#ifndef FLASHCALLS_H
#define FLASHCALLS_H

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <functional>

/// What a process does to the files of the flash, taken from its system calls.
struct FlashCall
{
    enum class Kind {
        Create, ///< an empty file
        Write,
        Truncate, ///< to `position` bytes
        SynchronizeFile,
        SynchronizeFolder,
        Link, ///< `name` gets a second name, `newName`
        Rename,
        Unlink,
        Step, ///< the process says that a save returned
    };

    Kind kind = Kind::Step;
    quint64 file = 0; ///< its inode, where the call has a descriptor
    QByteArray name = {}; ///< in the folder
    QByteArray newName = {};
    QByteArray bytes = {};
    qint64 position = 0; ///< of the first byte
};

namespace flashcalls
{

struct Record
{
    QVector<FlashCall> calls;
    /// Calls that this recorder cannot say of what they do to the flash. What is concluded from a record with any is worth nothing.
    QStringList unknown;
    bool isWhole = false; ///< the process came to its second stop
};

/// Runs a child that does the work, and records it between its two stops (powercut::stop()).
Record record(const std::function<void()> &work);

} // namespace flashcalls

#endif

#ifndef TRACEDPROCESS_H
#define TRACEDPROCESS_H

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <array>
#include <functional>

#include <sys/types.h>

/**
 * A process of one thread that runs from one system call to the next, and dies (SIGKILL) with this object.
 *
 * It is stopped at its very beginning. Threads: all operations belong to the thread that made the object.
 */
class TracedProcess
{
public:
    /// What it is stopped for.
    enum class Stop {
        Ended,
        Stopped, ///< by SIGSTOP
        EntersSystemCall,
        LeavesSystemCall,
        Other,
    };

    struct SystemCall
    {
        quint64 number = 0;
        std::array<quint64, 6> arguments = {};
    };

    /// A program with its arguments; what it writes is appended to the file @p output.
    explicit TracedProcess(const QStringList &commandLine, const QString &output = QStringLiteral("/dev/null"));
    /// A child of this process, which ends without destructors when @p work returns.
    explicit TracedProcess(const std::function<void()> &work);
    ~TracedProcess();

    /// False where it could not be traced, or ended.
    bool isAlive() const { return m_process > 0; }
    /// Of a process that ended by itself.
    int exitStatus() const { return m_exitStatus; }
    pid_t id() const { return m_process; }

    /// Lets it run to where it enters or leaves a system call, or something else stops it.
    Stop runToNextStop();
    /// Lets it run until it stops itself; false when it ended.
    bool runToOwnStop();
    /// Lets it run until it ended. Signals reach it.
    void runToEnd();
    void kill();

    /// At the entry of a system call.
    SystemCall systemCall() const;
    /// At its exit: what it gives, -errno where it failed.
    qint64 result() const;
    /// At the entry: the kernel gets the number of no system call.
    void skipSystemCall() const;
    /// At the entry: a third argument that is a number of bytes.
    void setByteCount(int bytes) const;
    /// From the entry to the exit: the call is not made, but for close(), and gives the error.
    void failSystemCall(int error);
    /// At the exit.
    void setError(int error) const;

    /// What stands in its memory; shorter where that ends.
    QByteArray bytesAt(quint64 address, qint64 size) const;
    /// A text, up to its zero byte.
    QByteArray textAt(quint64 address) const;

private:
    Q_DISABLE_COPY(TracedProcess)

    void waitForBeginning();
    Stop waitForStop();

    pid_t m_process = -1;
    int m_exitStatus = -1;
};

#endif

#ifndef BOUNDPROCESS_H
#define BOUNDPROCESS_H

#include <QtCore/QProcess>

#include <csignal>
#include <sys/prctl.h>

/// A program that does not outlive this one.
class BoundProcess : public QProcess
{
public:
    /// @param endingSignal that it gets when this program ends
    explicit BoundProcess(int endingSignal = SIGKILL)
        : m_endingSignal(endingSignal)
    {
    }

protected:
    void setupChildProcess() override { prctl(PR_SET_PDEATHSIG, m_endingSignal); }

private:
    const int m_endingSignal;
};

#endif

#include "mortalprocess.h"

#include <program.h>

#include <QtTest/QtTest>

#include <csignal>
#include <sys/prctl.h>

namespace
{

/// Generous: a sanitizer, or the emulator of another processor, may be at work.
constexpr int longestWait = 20000; // ms

} // namespace

MortalProcess::MortalProcess(QObject *parent)
    : QProcess(parent)
{
    setProcessChannelMode(ForwardedErrorChannel);
}

MortalProcess::~MortalProcess()
{
    kill();
    waitForFinished(longestWait);
}

QString MortalProcess::startAndReadLine(const QString &file, const QStringList &arguments)
{
    program::start(*this, program::commandLine(file, arguments));
    return readNextLine();
}

QString MortalProcess::readNextLine()
{
    // Nothing is said without a reason: canReadLine() is true again with each line that is left.
    if (!QTest::qWaitFor([this] { return canReadLine() || state() == NotRunning; }, longestWait) || !canReadLine())
        return {};
    return QString::fromLocal8Bit(readLine()).trimmed();
}

bool MortalProcess::stop()
{
    terminate();
    return QTest::qWaitFor([this] { return state() == NotRunning; }, longestWait);
}

void MortalProcess::setupChildProcess()
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
}

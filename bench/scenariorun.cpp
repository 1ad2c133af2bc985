#include "scenariorun.h"

#include "boundprocess.h"
#include "exitstatus.h"
#include "interruption.h"
#include "resultchannel.h"
#include "scenariofiles.h"
#include "settingsfile.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTimer>

#include <csignal>
#include <sys/mman.h>
#include <unistd.h>

namespace
{

/// One that plays, writing to where it should.
class PlayingProcess : public BoundProcess
{
public:
    /// @param outputTo descriptor; -1 for the standard output
    explicit PlayingProcess(int outputTo)
        : m_output(outputTo)
    {
        setProcessChannelMode(ForwardedChannels);
        setInputChannelMode(ForwardedInputChannel);
    }

protected:
    void setupChildProcess() override
    {
        BoundProcess::setupChildProcess();
        if (m_output >= 0)
            dup2(m_output, STDOUT_FILENO);
    }

private:
    const int m_output;
};

/// A file in memory with a text, to be read as a program's standard input.
class InputFile
{
public:
    explicit InputFile(const QByteArray &text)
        : m_file(memfd_create("scenario", MFD_CLOEXEC))
    {
        QFile output;
        if (output.open(m_file, QIODevice::WriteOnly | QIODevice::Unbuffered))
            output.write(text);
    }
    ~InputFile() { close(m_file); }

    QString path() const { return QStringLiteral("/proc/self/fd/%1").arg(m_file); }

private:
    Q_DISABLE_COPY(InputFile)

    const int m_file;
};

/// How long the process has to end by itself, after its time is over or after it was asked to.
constexpr int patienceMs = 5000;

/// The signal that ended the process, also where another program reports it in its exit status; 0 for none.
int signalOf(const QProcess &process)
{
    constexpr int signalBase = 128;
    if (process.exitStatus() == QProcess::CrashExit)
        return process.exitCode();
    return process.exitCode() > signalBase ? process.exitCode() - signalBase : 0;
}

QString secondsText(int seconds)
{
    return QStringLiteral("did not end within %1 s, and had to be killed").arg(seconds);
}

} // namespace

ScenarioRun::ScenarioRun(const Settings &chosen, Interruption &interrupted)
    : m_settings(chosen)
    , m_interruption(interrupted)
{
}

bool ScenarioRun::isLibrarysFolder(const QString &flash)
{
    const QString folder = QFileInfo(SettingsFile::path()).path();
    return !flash.isEmpty() && (QFileInfo(flash).canonicalFilePath() == folder || QFileInfo(flash).absoluteFilePath() == folder);
}

ScenarioRun::Outcome ScenarioRun::play(const QString &file, const QByteArray &input)
{
    Outcome outcome;
    const ResultChannel channel;
    PlayingProcess process(m_settings.storyToError ? STDERR_FILENO : m_settings.output);
    const InputFile inputFile(input);
    if (file == ScenarioFiles::standardInput()) {
        process.setInputChannelMode(QProcess::ManagedInputChannel);
        process.setStandardInputFile(inputFile.path());
    }

    QStringList command;
    if (!isLibrarysFolder(m_settings.flash)) {
        command.append(QCoreApplication::applicationDirPath() + QStringLiteral("/qzaudio-with-flash"));
        if (!m_settings.flash.isEmpty())
            command += {QStringLiteral("--dir"), m_settings.flash};
        command.append(QStringLiteral("--"));
    }
    command += {QCoreApplication::applicationFilePath(), QStringLiteral("play"), QStringLiteral("--in-process")};
    command += {QStringLiteral("--results-to"), QString::number(channel.descriptor())};
    command += m_settings.options;
    command += {QStringLiteral("--"), file};

    QEventLoop loop;
    QObject::connect(&process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), &loop, &QEventLoop::quit);
    QObject::connect(&process, &QProcess::errorOccurred, &loop, [&loop](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            loop.quit();
    });
    QTimer timeout;
    bool isKilled = false;
    QObject::connect(&timeout, &QTimer::timeout, &process, [&process, &isKilled] {
        isKilled = true;
        process.kill();
    });
    QObject::connect(&m_interruption, &Interruption::interrupted, &process, [&process] {
        process.terminate();
        QTimer::singleShot(patienceMs, &process, &QProcess::kill);
    });
    if (m_settings.seconds > 0) {
        timeout.setSingleShot(true);
        timeout.start(m_settings.seconds * 1000 + patienceMs);
    }
    QElapsedTimer clock;
    clock.start();
    process.start(command.constFirst(), command.mid(1));
    if (process.state() != QProcess::NotRunning)
        loop.exec();
    outcome.milliseconds = clock.elapsed();

    const ResultChannel::Received received = channel.read();
    outcome.result = received.result;
    outcome.result.file = file;
    ScenarioResult &result = outcome.result;
    outcome.isInterrupted = Interruption::received() != 0;
    if (process.error() == QProcess::FailedToStart) {
        outcome.problem = QStringLiteral("%1 cannot be started: %2").arg(command.constFirst(), process.errorString());
    } else if (outcome.isInterrupted) {
        if (!received.hasEnded)
            result.error = QStringLiteral("interrupted");
    } else if (isKilled) {
        result.error = secondsText(m_settings.seconds);
    } else if (!received.hasStarted) {
        outcome.problem
            = QStringLiteral("no flash folder could be made for it; --flash %1 plays on the machine's own").arg(QFileInfo(SettingsFile::path()).path());
    } else if (const int number = signalOf(process); number != 0) {
        result.error = QStringLiteral("ended by signal %1 (%2)").arg(number).arg(QString::fromLocal8Bit(strsignal(number)));
    } else if (!received.hasEnded) {
        result.error = QStringLiteral("ended early, with exit status %1").arg(process.exitCode());
    } else {
        outcome.isOutputLost = process.exitCode() == UsageError;
    }
    return outcome;
}

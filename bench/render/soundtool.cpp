#include "soundtool.h"

#include "boundprocess.h"
#include "console.h"
#include "interruption.h"

#include <QtCore/QProcessEnvironment>
#include <QtCore/QStandardPaths>

namespace
{

/// A speaking program gets the sound server's folders ready, the user's home included, even where it speaks into a file.
QProcessEnvironment withoutSoundServer(const QString &folder)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PULSE_RUNTIME_PATH"), folder);
    return environment;
}

QString lastLine(const QByteArray &messages)
{
    const QByteArray text = messages.trimmed();
    return Console::printable(QString::fromLocal8Bit(text.mid(text.lastIndexOf('\n') + 1)));
}

} // namespace

SoundTool::SoundTool(const QString &program, const QString &debianPackage)
    : m_program(program)
    , m_package(debianPackage)
{
}

QString SoundTool::absence() const
{
    return QStandardPaths::findExecutable(m_program).isEmpty() ? QStringLiteral("%1 is not installed: the Debian package %2 has it").arg(m_program, m_package)
                                                               : QString();
}

SoundTool::Outcome SoundTool::run(const QStringList &arguments, const QString &folder, const std::function<void(const QByteArray &)> &told) const
{
    const QString missing = absence();
    if (!missing.isEmpty())
        return {missing, {}};
    BoundProcess process;
    process.setWorkingDirectory(folder);
    if (m_program == espeak().m_program)
        process.setProcessEnvironment(withoutSoundServer(folder));
    process.setStandardInputFile(QProcess::nullDevice());
    Outcome outcome;
    process.start(m_program, arguments);
    if (!process.waitForStarted(-1)) {
        outcome.problem = QStringLiteral("%1 cannot be started: %2").arg(m_program, process.errorString());
        return outcome;
    }
    constexpr int lookPeriod = 200;
    bool isStopped = false;
    while (process.state() != QProcess::NotRunning) {
        process.waitForReadyRead(lookPeriod);
        if (Interruption::received() != 0 && !isStopped) {
            isStopped = true;
            process.terminate();
        }
        outcome.messages += process.readAllStandardError();
        while (process.canReadLine()) {
            const QByteArray line = process.readLine().trimmed();
            if (told)
                told(line);
        }
    }
    outcome.messages += process.readAllStandardError();
    if (process.exitStatus() != QProcess::NormalExit)
        outcome.problem = QStringLiteral("%1 was ended by signal %2").arg(m_program).arg(process.exitCode());
    else if (process.exitCode() != 0)
        outcome.problem = QStringLiteral("%1: %2").arg(m_program, lastLine(outcome.messages));
    return outcome;
}

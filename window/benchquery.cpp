#include "benchquery.h"

#include "boundprocess.h"
#include "exitstatus.h"
#include "programs.h"

#include <utility>

namespace
{

/// The last line of what a program says, without its name.
QString lastLine(const QByteArray &messages)
{
    const QString name = QStringLiteral("qzaudio-bench: ");
    const QString text = QString::fromUtf8(messages).trimmed();
    const QString line = text.mid(text.lastIndexOf(QLatin1Char('\n')) + 1);
    return line.startsWith(name) ? line.mid(name.size()) : line;
}

} // namespace

BenchQuery::BenchQuery(QObject *parent)
    : QObject(parent)
{
}

BenchQuery::~BenchQuery()
{
    cancel();
}

void BenchQuery::ask(const QStringList &arguments)
{
    cancel();
    // It may have started others, and a flash to take away.
    m_process = new BoundProcess(SIGTERM);
    connect(m_process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this, &BenchQuery::take);
    connect(m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            fail();
    });
    m_process->setStandardInputFile(QProcess::nullDevice());
    m_process->start(programPath(QStringLiteral("qzaudio-bench")), arguments);
}

void BenchQuery::cancel()
{
    QProcess *const process = std::exchange(m_process, nullptr);
    if (!process)
        return;
    process->disconnect(this);
    if (process->state() == QProcess::NotRunning) {
        process->deleteLater();
        return;
    }
    // It is asked to end, and taken away when it has: one that is deleted is waited for.
    connect(process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), process, &QObject::deleteLater);
    connect(process, &QProcess::errorOccurred, process, [process](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            process->deleteLater();
    });
    // Before it is the bench it is a copy of this program, whose handlers of signals it has.
    if (process->state() == QProcess::Starting)
        connect(process, &QProcess::started, process, &QProcess::terminate);
    else
        process->terminate();
}

void BenchQuery::take()
{
    QProcess *const process = std::exchange(m_process, nullptr);
    process->deleteLater();
    const bool hasEnded = process->exitStatus() == QProcess::NormalExit;
    const QString said = hasEnded ? lastLine(process->readAllStandardError()) : tr("qzaudio-bench was ended by signal %1").arg(process->exitCode());
    Q_EMIT answered(hasEnded ? process->exitCode() : int(UsageError), process->readAllStandardOutput(), said);
}

void BenchQuery::fail()
{
    QProcess *const process = std::exchange(m_process, nullptr);
    process->deleteLater();
    Q_EMIT answered(UsageError, {}, tr("%1 cannot be started: %2").arg(process->program(), process->errorString()));
}

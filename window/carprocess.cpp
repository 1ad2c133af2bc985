#include "carprocess.h"

#include "messages.h"
#include "programs.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>

namespace
{

constexpr int breather = 2; // ms that are left to whatever else the thread has to do

} // namespace

CarProcess::CarProcess(const Files &used, QObject *parent)
    : QObject(parent)
    , m_files(used)
{
    m_nextRead.setSingleShot(true);
    m_nextRead.setInterval(breather);
    connect(&m_nextRead, &QTimer::timeout, this, &CarProcess::readMessages);
}

CarProcess::~CarProcess()
{
    if (!m_process)
        return;
    m_process->disconnect(this);
    m_process->kill();
    constexpr int patience = 1000;
    m_process->waitForFinished(patience);
}

void CarProcess::startAnew(bool isMeasured)
{
    m_isMeasured = isMeasured;
    m_isWanted = true;
    m_waiting.clear();
    if (m_process)
        m_process->kill(); // the next one starts when this one is gone, so that nothing writes to its flash any more
    else
        start();
}

void CarProcess::start()
{
    m_isWanted = false;
    QDir(m_files.flash).removeRecursively();
    QDir().mkpath(m_files.flash);

    m_process = new BoundProcess;
    m_process->setParent(this);
    m_process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    connect(m_process, &QProcess::readyReadStandardOutput, this, &CarProcess::readMessages);
    connect(m_process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this, &CarProcess::finished);
    connect(m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            finished();
    });
    m_process->start(programPath(QStringLiteral("qzaudio-with-flash")),
                     {QStringLiteral("--dir"),
                      m_files.flash,
                      QStringLiteral("--"),
                      programPath(QStringLiteral("qzaudio-desk-car")),
                      m_files.log,
                      m_files.sound,
                      m_isMeasured ? QStringLiteral("measured") : QStringLiteral("unmeasured")});
    const QVector<QVariantMap> waiting = m_waiting;
    m_waiting.clear();
    for (const QVariantMap &message : waiting)
        send(message);
}

void CarProcess::send(const QVariantMap &message)
{
    if (m_process && !m_isWanted)
        Messages::write(*m_process, message);
    else
        m_waiting.append(message);
}

void CarProcess::readMessages()
{
    // A replay tells more at once than a frame has time for.
    constexpr int mostTime = 3; // ms
    QElapsedTimer elapsed;
    elapsed.start();
    while (readMessage()) {
        if (elapsed.elapsed() < mostTime)
            continue;
        m_nextRead.start();
        return;
    }
}

bool CarProcess::readMessage()
{
    if (!m_process || m_isWanted)
        return false;
    const std::optional<QVariantMap> message = Messages::read(*m_process);
    if (!message)
        return false;
    Q_EMIT told(*message);
    return true;
}

void CarProcess::finished()
{
    if (!m_process)
        return;
    while (readMessage())
        continue;
    const QString why = m_process->error() == QProcess::FailedToStart ? m_process->errorString()
        : m_process->exitStatus() == QProcess::CrashExit              ? tr("it was ended by signal %1").arg(m_process->exitCode())
                                                                      : tr("it ended with exit status %1").arg(m_process->exitCode());
    m_process->disconnect(this);
    m_process->deleteLater();
    m_process = nullptr;
    if (m_isWanted)
        start();
    else
        Q_EMIT lost(why);
}

#include "recordingbackup.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QUuid>

namespace
{

constexpr const char *recordingSuffix = ".js";
constexpr const char *lockSuffix = ".lock";

} // namespace

RecordingBackup::RecordingBackup(const QString &keptIn)
    : m_folder(keptIn)
    , m_name(QUuid::createUuid().toString(QUuid::WithoutBraces))
{
    QDir().mkpath(m_folder);
    m_lock = std::make_unique<QLockFile>(path(m_name, lockSuffix));
    m_lock->setStaleLockTime(0);
    m_lock->tryLock();
    m_file.setFileName(path(m_name, recordingSuffix));
}

RecordingBackup::~RecordingBackup()
{
    if (!m_isLeftBehind)
        clear();
}

QString RecordingBackup::path(const QString &name, const char *suffix) const
{
    return m_folder + QLatin1Char('/') + name + QLatin1String(suffix);
}

void RecordingBackup::keep(const Recording &recording)
{
    clear();
    if (!recording.isUnsaved() || recording.steps().isEmpty() || !m_file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return;
    m_file.write(recording.toScenario(0).toUtf8());
    m_file.flush();
    m_lastTime = recording.steps().last().time;
}

void RecordingBackup::append(const Recording &recording)
{
    if (!m_file.isOpen()) {
        keep(recording);
        return;
    }
    const Recording::Step &step = recording.steps().last();
    if (step.time > m_lastTime)
        m_file.write(QStringLiteral("wait(%1);\n").arg(step.time - m_lastTime).toUtf8());
    m_lastTime = step.time;
    m_file.write(step.line.toUtf8() + '\n');
    m_file.flush();
}

void RecordingBackup::clear()
{
    if (m_file.isOpen())
        m_file.close();
    m_file.remove();
    m_lastTime = 0;
}

QString RecordingBackup::takeLeftBehind()
{
    const QStringList names = QDir(m_folder).entryList({QStringLiteral("*.js")}, QDir::Files, QDir::Time);
    for (const QString &file : names) {
        const QString name = file.chopped(int(qstrlen(recordingSuffix)));
        if (name == m_name)
            continue;
        auto lock = std::make_unique<QLockFile>(path(name, lockSuffix));
        lock->setStaleLockTime(0);
        // Of a process that runs it cannot be had.
        if (!lock->tryLock())
            continue;
        m_otherLock = std::move(lock);
        return path(name, recordingSuffix);
    }
    return {};
}

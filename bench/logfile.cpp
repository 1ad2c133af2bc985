#include "logfile.h"

LogFile::LogFile(const QString &file)
    : m_file(file)
{
}

QString LogFile::open()
{
    return m_file.open(QIODevice::WriteOnly | QIODevice::Truncate) ? QString() : m_file.errorString();
}

void LogFile::add(qint64 time, const QString &line)
{
    constexpr double millisecondsPerSecond = 1000;
    constexpr int width = 12;
    constexpr int decimals = 3;
    const QString written = QStringLiteral("[%1] %2\n").arg(double(time) / millisecondsPerSecond, width, 'f', decimals).arg(line);
    if (m_file.write(written.toUtf8()) < 0 && m_problem.isEmpty())
        m_problem = m_file.errorString();
}

void LogFile::flush()
{
    if (!m_file.flush() && m_problem.isEmpty())
        m_problem = m_file.errorString();
}

QString LogFile::close()
{
    if (!m_file.isOpen())
        return {};
    if (!m_file.flush() && m_problem.isEmpty())
        m_problem = m_file.errorString();
    m_file.close();
    return m_problem;
}

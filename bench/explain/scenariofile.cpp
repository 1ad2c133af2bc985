#include "scenariofile.h"

#include "console.h"

#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>

QString ScenarioFile::open(const QString &name)
{
    if (name == QLatin1String("-"))
        return {};
    // A device or a pipe is there already, and must not be replaced by a file.
    if (QFileInfo::exists(name) && !QFileInfo(name).isFile())
        m_file = std::make_unique<QFile>(name);
    else
        m_file = std::make_unique<QSaveFile>(name);
    return m_file->open(QIODevice::WriteOnly) ? QString() : m_file->errorString();
}

void ScenarioFile::write(const QByteArray &text)
{
    if (m_file)
        m_file->write(text);
    else
        Console::out(QString::fromUtf8(text));
}

QString ScenarioFile::close()
{
    if (!m_file)
        return {};
    bool isWhole = m_file->flush() && m_file->error() == QFileDevice::NoError;
    if (auto *const file = dynamic_cast<QSaveFile *>(m_file.get()))
        isWhole = isWhole && file->commit();
    return isWhole ? QString() : m_file->errorString();
}

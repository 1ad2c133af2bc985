#include "logjsonview.h"

LogJsonView::LogJsonView(const QString &file)
    : JsonView(file)
    , m_file(file)
{
}

void LogJsonView::setOrigin(const Origin &origin)
{
    m_origin = origin;
}

QJsonObject LogJsonView::origin() const
{
    QJsonObject object{{QStringLiteral("log"), m_file}};
    if (m_origin.line > 0)
        object.insert(QStringLiteral("line"), qint64(m_origin.line));
    if (m_origin.process >= 0)
        object.insert(QStringLiteral("process"), m_origin.process);
    if (!m_origin.program.isEmpty())
        object.insert(QStringLiteral("program"), m_origin.program);
    if (!m_origin.at.isEmpty())
        object.insert(QStringLiteral("at"), m_origin.at);
    return object;
}

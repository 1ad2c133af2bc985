#include "documenttables.h"

#include <QtCore/QFile>
#include <QtCore/QTextStream>

#include <algorithm>

DocumentTables::DocumentTables(bool onlyCheck, const char *renewingTool)
    : m_onlyCheck(onlyCheck)
    , m_tool(QString::fromLatin1(renewingTool))
{
}

void DocumentTables::complain(int status, const QString &name, const QString &text)
{
    QTextStream(stderr) << name << ": " << text << Qt::endl;
    m_exitStatus = std::max(m_exitStatus, status);
}

bool DocumentTables::read(const QString &name, QStringList &lines)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly)) {
        complain(2, name, file.errorString());
        return false;
    }
    lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    return true;
}

void DocumentTables::write(const QString &name, const QStringList &lines)
{
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(lines.join(QLatin1Char('\n')).toUtf8()) < 0 || !file.flush())
        complain(2, name, file.errorString());
}

void DocumentTables::renewFile(const QString &file, const QStringList &lines)
{
    QStringList present;
    if (m_onlyCheck && read(file, present) && present != lines)
        complain(1, file, QStringLiteral("is not as the library's tables are; %1 renews it").arg(m_tool));
    else if (!m_onlyCheck)
        write(file, lines);
}

void DocumentTables::renewTables(const QString &document, QMap<QString, QStringList> tables)
{
    const QString begin = QStringLiteral("<!-- table: ");
    const QString end = QStringLiteral("<!-- end of table -->");
    QStringList present;
    if (!read(document, present))
        return;
    QStringList renewed;
    for (int i = 0; i < present.size(); ++i) {
        renewed += present.at(i);
        if (!present.at(i).startsWith(begin))
            continue;
        const QString name = present.at(i).mid(begin.size()).section(QLatin1String(" -->"), 0, 0);
        const int last = present.indexOf(end, i);
        if (!tables.contains(name) || last < 0) {
            complain(1, document, QStringLiteral("line %1: there is no table \"%2\", or it stands twice, or it does not end").arg(i + 1).arg(name));
            continue;
        }
        const QStringList table = tables.take(name);
        if (m_onlyCheck && present.mid(i + 1, last - i - 1) != table)
            complain(1, document, QStringLiteral("the table \"%1\" is not the library's; %2 renews it").arg(name, m_tool));
        renewed += table;
        i = last - 1;
    }
    const QStringList missing = tables.keys();
    for (const QString &name : missing)
        complain(1, document, QStringLiteral("the table \"%1\" is missing").arg(name));
    if (!m_onlyCheck && m_exitStatus == 0 && renewed != present)
        write(document, renewed);
}

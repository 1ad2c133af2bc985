#ifndef DOCUMENTTABLES_H
#define DOCUMENTTABLES_H

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>

/**
 * Files that are made from the library's own tables: a program writes them, or with --check only compares.
 *
 * In a Markdown document each table stands between the lines "<!-- table: NAME -->" and "<!-- end of table -->". Problems go to the standard
 * error with the name of the tool that renews the file.
 */
class DocumentTables
{
public:
    /// @param renewingTool "tools/policy-tables"
    DocumentTables(bool onlyCheck, const char *renewingTool);

    void renewTables(const QString &document, QMap<QString, QStringList> tables);
    void renewFile(const QString &file, const QStringList &lines);

    /// 0, 1 where a file differs or a marker is wrong, 2 where a file cannot be read or written.
    int exitStatus() const { return m_exitStatus; }

private:
    bool read(const QString &name, QStringList &lines);
    void write(const QString &name, const QStringList &lines);
    void complain(int status, const QString &name, const QString &text);

    const bool m_onlyCheck;
    const QString m_tool;
    int m_exitStatus = 0;
};

#endif

#ifndef SCENARIOFILE_H
#define SCENARIOFILE_H

#include <QtCore/QByteArray>
#include <QtCore/QFileDevice>
#include <QtCore/QString>

#include <memory>

/// A file that a scenario is written to, part by part: the standard output ("-"), or one that is there whole or not at all.
class ScenarioFile
{
public:
    /// @return what is the matter; empty when it is open
    QString open(const QString &name);
    void write(const QByteArray &text);
    /// @return what was the matter, a full disk among them; empty when all of it is there
    QString close();

private:
    std::unique_ptr<QFileDevice> m_file; // null for the standard output
};

#endif

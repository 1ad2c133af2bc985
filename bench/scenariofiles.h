#ifndef SCENARIOFILES_H
#define SCENARIOFILES_H

#include <QtCore/QString>
#include <QtCore/QStringList>

/// Where scenarios are found.
namespace ScenarioFiles
{
/// The standard input, as a scenario's file.
QString standardInput();

/// Folder of the scenarios that come with the bench; it may be missing.
QString installedFolder();

/**
 * The files that a word of the command line stands for: a file, all scenarios of a folder by name, the standard input ("-"), or the name
 * of a scenario that comes with the bench ("commute").
 *
 * @param problem receives what is wrong where there is none
 */
QStringList find(const QString &word, QString &problem);

/// Those of a folder, by name.
QStringList inFolder(const QString &folder);

/// What a scenario is about: the first sentence of the comment that it begins with.
QString title(const QString &file);
} // namespace ScenarioFiles

#endif

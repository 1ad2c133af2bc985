#ifndef STORELIFE_H
#define STORELIFE_H

#include "flash.h"

#include <QtCore/QString>
#include <QtCore/QVector>

/// Lives of the settings store that end in a power cut, and what has to hold after it.
namespace storelife
{

/// Of the group "Volume".
struct Save
{
    QString key;
    int value;
};
using Saves = QVector<Save>;

/// Different values of the keys that the letters stand for: "aba" saves a key, another one, and the first one again.
Saves savesOf(const char *letters);

/// What the file has before the first save, behind the first one, behind the second one ...
QVector<flash::Entries> versions(const flash::Entries &first, const Saves &saves);

/// For powercut: a store saves all of it, and tells a step after each save. Only the saves are between the stops.
void save(const Saves &saves);
/// For powercut: a store starts, which cleans up behind the dead, reads all, and saves.
void startAndSave(const Save &save);

/// The files on the flash: names and contents.
using Folder = QMap<QByteArray, QByteArray>;
Folder folder();
/// "audioData.db.new-1234" as "audioData.db.new-N"
QString kindOfName(const QString &name);
/// Two folders are the same kind where they differ in nothing but numbers of temporary files.
Folder kindOf(const Folder &folder);
/// Puts these files on the flash, and no others. They are a second old: a unit takes longer to start than a writer to lock the file that it made.
void setFolder(const Folder &folder);

/**
 * Looks with three readers at what a cut left, and starts and saves once more, in this process. The settings have to be one of @p versions,
 * and no more may lie beside them than one dead writer leaves; after the save, nothing at all but @p kept.
 *
 * @return what does not hold; empty where all does
 */
QString problemOf(const QVector<flash::Entries> &versions, const QStringList &kept = {});

} // namespace storelife

#endif

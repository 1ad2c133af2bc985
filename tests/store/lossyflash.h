#ifndef LOSSYFLASH_H
#define LOSSYFLASH_H

#include "flashcalls.h"

#include <QtCore/QMap>
#include <QtCore/QVector>

/**
 * A folder on a file system that keeps at a power cut what was synchronized, and of the rest whatever it likes.
 *
 * What a file system with a journal may do, and this one does:
 * - Bytes of a file are safe when fsync() of that file returned, names when fsync() of the folder returned. One says nothing of the other:
 *   ext4 and UBIFS keep the new file's name together with its bytes, but nobody promised it.
 * - Each change of a name is made or not: after a cut rename() has replaced the file and taken the old name away, or neither. That is what a
 *   journal is for; without it no program could replace a file safely.
 * - In order, the changes of names are kept up to some moment, and those of each file up to some other one. Out of order, each change of a
 *   name is kept or lost by itself, and so is each page of a file, of 512 bytes, which is no more than what a flash writes at once. A page that
 *   was lost reads as before, or as zeros behind the old end. The length is kept or lost by itself, too.
 * - A change may come to the flash long before anybody synchronizes it.
 * - What was synchronized stays. Blocks that go bad are no matter of power cuts.
 * - Permissions and times may be lost as well. No promise is about those.
 */
class LossyFlash
{
public:
    enum class Order { InOrder, OutOfOrder };

    /// Names and contents.
    using Folder = QMap<QByteArray, QByteArray>;

    /// All of it is safe. @p inodes has the files' numbers, by name, that calls tell them by.
    explicit LossyFlash(const Folder &folder, const QMap<QByteArray, quint64> &inodes = {});

    void apply(const FlashCall &call);

    /// What programs see before a cut.
    Folder whole() const;
    /// All that can be there after a cut at this moment.
    QVector<Folder> afterCut(Order order) const;

private:
    using Names = QMap<QByteArray, int>; // index in m_files

    struct File
    {
        QByteArray safe;
        QVector<QByteArray> later; // the content after each change that is not safe yet
    };

    static const QByteArray &contentOf(const File &file) { return file.later.isEmpty() ? file.safe : file.later.last(); }
    static void change(Names &names, const FlashCall &call, int file);
    File &fileOf(const FlashCall &call);
    QVector<Names> namesAfterCut(Order order) const;
    static QVector<QByteArray> contentsInOrder(const File &file);
    static QVector<QByteArray> contentsOutOfOrder(const File &file);

    struct NameChange
    {
        FlashCall call;
        int file = -1; // that a name is for, where the call makes one
    };

    QVector<File> m_files;
    QMap<quint64, int> m_fileOfInode;
    Names m_safeNames;
    Names m_names;
    QVector<NameChange> m_nameChanges; // that are not safe yet
};

#endif

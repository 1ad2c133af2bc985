#include "lossyflash.h"

#include <algorithm>

namespace
{

using Kind = FlashCall::Kind;

constexpr int pageSize = 512;
constexpr int mostPages = 6; // that are lost one by one; a longer file has larger pages

int pageSizeOf(int size)
{
    return std::max(pageSize, (size + mostPages - 1) / mostPages);
}

/// With zeros where it grows.
QByteArray resized(QByteArray bytes, int size)
{
    return bytes.leftJustified(size, '\0', true);
}

void appendOnce(QVector<QByteArray> &list, const QByteArray &bytes)
{
    if (!list.contains(bytes))
        list.append(bytes);
}

/// Lengths at which nothing, a byte, a page, half of all, all but a byte, or all has come to the flash.
QVector<int> lengthsUpTo(int size)
{
    QVector<int> lengths{0, std::min(1, size), size / 2, std::max(0, size - 1), size};
    for (int length = pageSizeOf(size); length < size; length += pageSizeOf(size))
        lengths.append(length);
    return lengths;
}

/// Some pages of the new content over the old one.
QByteArray mixed(const QByteArray &before, const QByteArray &after, int size, unsigned newPages)
{
    const QByteArray fresh = resized(after, size);
    QByteArray bytes = resized(before, size);
    const int page = pageSizeOf(std::max(before.size(), after.size()));
    for (int number = 0; number * page < size; ++number) {
        if (newPages & (1U << number))
            bytes.replace(number * page, page, fresh.mid(number * page, page));
    }
    return bytes;
}

} // namespace

LossyFlash::LossyFlash(const Folder &folder, const QMap<QByteArray, quint64> &inodes)
{
    for (auto content = folder.begin(); content != folder.end(); ++content) {
        m_safeNames.insert(content.key(), m_files.size());
        m_fileOfInode.insert(inodes.value(content.key()), m_files.size());
        m_files.append(File{content.value(), {}});
    }
    m_names = m_safeNames;
}

LossyFlash::File &LossyFlash::fileOf(const FlashCall &call)
{
    return m_files[m_fileOfInode.value(call.file)];
}

void LossyFlash::change(Names &names, const FlashCall &call, int file)
{
    switch (call.kind) {
    case Kind::Create:
        names.insert(call.name, file);
        break;
    case Kind::Link:
        names.insert(call.newName, file);
        break;
    case Kind::Rename:
        names.remove(call.name);
        names.insert(call.newName, file);
        break;
    case Kind::Unlink:
        names.remove(call.name);
        break;
    default:
        break;
    }
}

void LossyFlash::apply(const FlashCall &call)
{
    switch (call.kind) {
    case Kind::Create:
        m_fileOfInode.insert(call.file, m_files.size()); // a number that another file had and lost is a new file's
        m_files.append(File());
        Q_FALLTHROUGH();
    case Kind::Link:
    case Kind::Rename:
    case Kind::Unlink: {
        const int file = call.kind == Kind::Create ? m_files.size() - 1 : m_names.value(call.name, -1);
        change(m_names, call, file);
        m_nameChanges.append(NameChange{call, file});
        break;
    }
    case Kind::Write: {
        File &file = fileOf(call);
        QByteArray content = contentOf(file);
        const int position = static_cast<int>(call.position);
        content = resized(content, std::max(content.size(), position + call.bytes.size()));
        file.later.append(content.replace(position, call.bytes.size(), call.bytes));
        break;
    }
    case Kind::Truncate: {
        File &file = fileOf(call);
        file.later.append(resized(contentOf(file), static_cast<int>(call.position)));
        break;
    }
    case Kind::SynchronizeFile: {
        File &file = fileOf(call);
        file.safe = contentOf(file);
        file.later.clear();
        break;
    }
    case Kind::SynchronizeFolder:
        m_safeNames = m_names;
        m_nameChanges.clear();
        break;
    case Kind::Step:
        break;
    }
}

LossyFlash::Folder LossyFlash::whole() const
{
    Folder folder;
    for (auto name = m_names.begin(); name != m_names.end(); ++name)
        folder.insert(name.key(), contentOf(m_files.at(name.value())));
    return folder;
}

QVector<LossyFlash::Names> LossyFlash::namesAfterCut(Order order) const
{
    QVector<Names> all;
    const unsigned ways = order == Order::InOrder ? static_cast<unsigned>(m_nameChanges.size()) + 1 : 1U << m_nameChanges.size();
    for (unsigned way = 0; way < ways; ++way) {
        const unsigned kept = order == Order::InOrder ? (1U << way) - 1 : way; // a bit for each change
        Names names = m_safeNames;
        for (int number = 0; number < m_nameChanges.size(); ++number) {
            if (kept & (1U << number))
                change(names, m_nameChanges.at(number).call, m_nameChanges.at(number).file);
        }
        if (!all.contains(names))
            all.append(names);
    }
    return all;
}

QVector<QByteArray> LossyFlash::contentsInOrder(const File &file)
{
    QVector<QByteArray> all{file.safe};
    QByteArray before = file.safe;
    for (const QByteArray &after : file.later) {
        const QVector<int> lengths = lengthsUpTo(after.size());
        for (const int length : lengths)
            appendOnce(all, after.left(length) + (after.size() < before.size() ? QByteArray() : before.mid(length)));
        before = after;
    }
    return all;
}

QVector<QByteArray> LossyFlash::contentsOutOfOrder(const File &file)
{
    QVector<QByteArray> all{file.safe};
    for (const QByteArray &after : file.later) {
        const int longest = std::max(file.safe.size(), after.size());
        const int pages = (longest + pageSizeOf(longest) - 1) / pageSizeOf(longest);
        const QVector<int> lengths = lengthsUpTo(after.size()) + QVector<int>{file.safe.size()};
        for (unsigned newPages = 0; newPages < (1U << pages); ++newPages) {
            for (const int length : lengths)
                appendOnce(all, mixed(file.safe, after, length, newPages));
        }
    }
    return all;
}

QVector<LossyFlash::Folder> LossyFlash::afterCut(Order order) const
{
    QVector<Folder> all;
    const QVector<Names> ways = namesAfterCut(order);
    for (const Names &names : ways) {
        QVector<Folder> folders{Folder()};
        for (auto name = names.begin(); name != names.end(); ++name) {
            const File &file = m_files.at(name.value());
            const QVector<QByteArray> contents = order == Order::InOrder ? contentsInOrder(file) : contentsOutOfOrder(file);
            QVector<Folder> more;
            for (Folder folder : qAsConst(folders)) {
                for (const QByteArray &content : contents) {
                    folder.insert(name.key(), content);
                    more.append(folder);
                }
            }
            folders = more;
        }
        all += folders;
    }
    return all;
}

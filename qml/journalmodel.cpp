#include "journalmodel.h"

#include "platform.h"

#include <QtCore/QVariantMap>

#include <algorithm>
#include <iterator>

using simulator::Journal;
using simulator::JournalEntry;
using simulator::Platform;

JournalModel::JournalModel(QObject *parent)
    : QAbstractListModel(parent)
{
}

JournalModel::~JournalModel() = default;

void JournalModel::setLive(bool live)
{
    if (m_live == live)
        return;
    m_live = live;
    disconnect(m_appended);
    disconnect(m_cleared);
    if (live) {
        const Journal *const journal = Platform::instance()->journal();
        m_appended = connect(journal, &Journal::appended, this, [this](const JournalEntry &entry) { add({rowOf(entry)}); });
        m_cleared = connect(journal, &Journal::cleared, this, &JournalModel::clear);
        load();
    }
    Q_EMIT liveChanged();
}

void JournalModel::setLimit(int limit)
{
    const int least = std::max(limit, 1);
    if (m_limit == least)
        return;
    m_limit = least;
    dropOldest(total() - m_limit);
    Q_EMIT limitChanged();
}

void JournalModel::setText(const QString &text)
{
    if (m_text == text)
        return;
    m_text = text;
    filter();
    Q_EMIT textChanged();
}

void JournalModel::setRefusedOnly(bool refusedOnly)
{
    if (m_refusedOnly == refusedOnly)
        return;
    m_refusedOnly = refusedOnly;
    filter();
    Q_EMIT refusedOnlyChanged();
}

void JournalModel::setOperation(const QString &operation)
{
    if (m_operation == operation)
        return;
    m_operation = operation;
    filter();
    Q_EMIT operationChanged();
}

void JournalModel::append(const QVariantList &rows)
{
    std::vector<Row> added;
    added.reserve(std::size_t(rows.size()));
    for (const QVariant &row : rows) {
        const QVariantMap fields = row.toMap();
        const auto text = [&fields](const char *name) { return fields.value(QLatin1String(name)).toString(); };
        added.push_back({fields.value(QStringLiteral("time")).toLongLong(),
                         text("object"),
                         text("operation"),
                         text("call"),
                         text("cause"),
                         text("note"),
                         fields.value(QStringLiteral("refused")).toBool()});
    }
    add(std::move(added));
}

void JournalModel::clear()
{
    if (m_rows.empty())
        return;
    beginResetModel();
    m_firstNumber += m_rows.size();
    m_rows.clear();
    m_shown.clear();
    endResetModel();
    Q_EMIT totalChanged();
    Q_EMIT countChanged();
}

int JournalModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant JournalModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Row &row = shownRow(index.row());
    switch (role) {
    case TimeRole:
        return row.time;
    case ObjectRole:
        return row.object;
    case OperationRole:
        return row.operation;
    case CallRole:
    case Qt::DisplayRole:
        return row.call;
    case CauseRole:
        return row.cause;
    case NoteRole:
        return row.note;
    case RefusedRole:
        return row.isRefused;
    default:
        return {};
    }
}

QHash<int, QByteArray> JournalModel::roleNames() const
{
    return {{TimeRole, "time"},
            {ObjectRole, "object"},
            {OperationRole, "operation"},
            {CallRole, "call"},
            {CauseRole, "cause"},
            {NoteRole, "note"},
            {RefusedRole, "refused"}};
}

JournalModel::Row JournalModel::rowOf(const JournalEntry &entry)
{
    return {entry.time,
            entry.object(),
            simulator::objectKindName(entry.kind) + QLatin1Char('.') + entry.operation,
            entry.call(),
            {},
            entry.note,
            !entry.note.isEmpty()};
}

bool JournalModel::isShown(const Row &row) const
{
    if ((m_refusedOnly && !row.isRefused) || (!m_operation.isEmpty() && row.operation != m_operation))
        return false;
    const auto hasText = [this](const QString &text) { return text.contains(m_text, Qt::CaseInsensitive); };
    return m_text.isEmpty() || hasText(row.call) || hasText(row.object) || hasText(row.cause) || hasText(row.note);
}

const JournalModel::Row &JournalModel::shownRow(int index) const
{
    return m_rows[std::size_t(m_shown[std::size_t(index)] - m_firstNumber)];
}

void JournalModel::add(std::vector<Row> &&rows)
{
    if (rows.empty())
        return;
    const auto most = std::size_t(m_limit);
    const auto first = rows.size() > most ? rows.end() - m_limit : rows.begin();
    const int kept = int(rows.end() - first);
    dropOldest(total() + kept - m_limit);
    std::vector<quint64> shown;
    quint64 number = m_firstNumber + m_rows.size();
    for (auto row = first; row != rows.end(); ++row, ++number) {
        if (isShown(*row))
            shown.push_back(number);
    }
    const auto takeOver = [&] { m_rows.insert(m_rows.end(), std::make_move_iterator(first), std::make_move_iterator(rows.end())); };
    if (shown.empty()) {
        takeOver();
    } else {
        beginInsertRows({}, count(), count() + int(shown.size()) - 1);
        takeOver();
        m_shown.insert(m_shown.end(), shown.cbegin(), shown.cend());
        endInsertRows();
        Q_EMIT countChanged();
    }
    Q_EMIT totalChanged();
}

void JournalModel::dropOldest(int count)
{
    if (count <= 0)
        return;
    const quint64 firstKept = m_firstNumber + quint64(count);
    const auto firstShown = std::lower_bound(m_shown.begin(), m_shown.end(), firstKept);
    const int gone = int(firstShown - m_shown.begin());
    const auto drop = [&] {
        m_rows.erase(m_rows.begin(), m_rows.begin() + count);
        m_firstNumber = firstKept;
    };
    if (gone == 0) {
        drop();
    } else {
        beginRemoveRows({}, 0, gone - 1);
        drop();
        m_shown.erase(m_shown.begin(), firstShown);
        endRemoveRows();
        Q_EMIT countChanged();
    }
    Q_EMIT totalChanged();
}

/// What the journal has already.
void JournalModel::load()
{
    clear();
    const auto entries = Platform::instance()->journal()->entries();
    std::vector<Row> rows;
    for (int index = std::max(0, entries.size() - m_limit); index < entries.size(); ++index)
        rows.push_back(rowOf(entries.at(index)));
    add(std::move(rows));
}

/// The latest rows at once, the others in turns of their own: to look at all of a long drive takes longer than a frame.
void JournalModel::filter()
{
    beginResetModel();
    m_shown.clear();
    m_firstFiltered = m_firstNumber + m_rows.size();
    m_shown = takeUnfiltered();
    endResetModel();
    Q_EMIT countChanged();
    goOnLater();
}

void JournalModel::filterOn()
{
    m_isFilterOnPosted = false;
    const std::deque<quint64> shown = takeUnfiltered();
    if (!shown.empty()) {
        beginInsertRows({}, 0, int(shown.size()) - 1);
        m_shown.insert(m_shown.begin(), shown.cbegin(), shown.cend());
        endInsertRows();
        Q_EMIT countChanged();
    }
    goOnLater();
}

/// Numbers of rows to show, of the last that the filter has not seen yet.
std::deque<quint64> JournalModel::takeUnfiltered()
{
    constexpr quint64 rowsInATurn = 10000;
    std::deque<quint64> shown;
    for (quint64 left = rowsInATurn; left > 0 && m_firstFiltered > m_firstNumber; --left) {
        --m_firstFiltered;
        if (isShown(m_rows[std::size_t(m_firstFiltered - m_firstNumber)]))
            shown.push_front(m_firstFiltered);
    }
    return shown;
}

void JournalModel::goOnLater()
{
    if (m_isFilterOnPosted || m_firstFiltered <= m_firstNumber)
        return;
    m_isFilterOnPosted = true;
    QMetaObject::invokeMethod(this, &JournalModel::filterOn, Qt::QueuedConnection);
}

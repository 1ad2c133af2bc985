#include "timerlist.h"

#include <algorithm>

void TimerList::update(const QVariantList &timers)
{
    const int countBefore = count();
    const auto isListed = [&timers](const QString &purpose) {
        return std::any_of(
            timers.cbegin(), timers.cend(), [&purpose](const QVariant &timer) { return timer.toMap().value(QStringLiteral("purpose")).toString() == purpose; });
    };
    for (int row = count() - 1; row >= 0; --row) {
        if (isListed(m_rows.at(row).purpose))
            continue;
        beginRemoveRows({}, row, row);
        m_rows.remove(row);
        endRemoveRows();
    }
    for (const QVariant &timer : timers) {
        const QString purpose = timer.toMap().value(QStringLiteral("purpose")).toString();
        const qint64 left = timer.toMap().value(QStringLiteral("left")).toLongLong();
        const auto known = std::find_if(m_rows.begin(), m_rows.end(), [&purpose](const Row &row) { return row.purpose == purpose; });
        if (known == m_rows.end()) {
            beginInsertRows({}, count(), count());
            m_rows.append({purpose, {}});
            m_rows.last().time.setLeft(left);
            endInsertRows();
        } else if (known->time.left() != left) {
            known->time.setLeft(left);
            const QModelIndex changed = index(int(known - m_rows.begin()));
            Q_EMIT dataChanged(changed, changed, {LeftRole, ShareRole});
        }
    }
    if (count() != countBefore)
        Q_EMIT countChanged();
}

int TimerList::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant TimerList::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Row &row = m_rows.at(index.row());
    switch (role) {
    case PurposeRole:
    case Qt::DisplayRole:
        return row.purpose;
    case LeftRole:
        return row.time.left();
    case ShareRole:
        return row.time.share();
    default:
        return {};
    }
}

QHash<int, QByteArray> TimerList::roleNames() const
{
    return {{PurposeRole, "purpose"}, {LeftRole, "left"}, {ShareRole, "share"}};
}

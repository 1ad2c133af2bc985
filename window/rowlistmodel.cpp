#include "rowlistmodel.h"

#include <algorithm>

RowListModel::RowListModel(const QList<QByteArray> &roles, QObject *parent)
    : QAbstractListModel(parent)
    , m_roles(roles)
{
}

void RowListModel::setRows(const QVector<QVariantMap> &rows)
{
    // Rows that came or went are taken to be behind all others: tables here grow by what was never set before.
    const int common = std::min(rows.size(), m_rows.size());
    for (int row = 0; row < common; ++row) {
        if (m_rows.at(row) == rows.at(row))
            continue;
        m_rows[row] = rows.at(row);
        Q_EMIT dataChanged(index(row), index(row));
    }
    if (rows.size() == m_rows.size())
        return;
    if (rows.size() > common) {
        beginInsertRows({}, common, rows.size() - 1);
        m_rows = rows;
        endInsertRows();
    } else {
        beginRemoveRows({}, common, m_rows.size() - 1);
        m_rows = rows;
        endRemoveRows();
    }
    Q_EMIT countChanged();
}

int RowListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant RowListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    return m_rows.at(index.row()).value(QString::fromLatin1(m_roles.value(role - Qt::UserRole)));
}

QHash<int, QByteArray> RowListModel::roleNames() const
{
    QHash<int, QByteArray> names;
    for (int role = 0; role < m_roles.size(); ++role)
        names.insert(Qt::UserRole + role, m_roles.at(role));
    return names;
}

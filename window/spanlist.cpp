#include "spanlist.h"

#include <algorithm>

/// Scrolling changes one, and only what is bound to that is computed anew.
QVector<int> SpanList::changedRoles(const Span &before, const Span &after)
{
    QVector<int> roles;
    if (before.row != after.row)
        roles.append(RowRole);
    if (before.lane != after.lane)
        roles.append(LaneRole);
    if (before.left != after.left)
        roles.append(LeftRole);
    if (before.length != after.length)
        roles.append(LengthRole);
    if (before.label != after.label)
        roles.append(LabelRole);
    return roles;
}

SpanList::SpanList(QObject *parent)
    : QAbstractListModel(parent)
{
}

void SpanList::assign(const QVector<Span> &spans)
{
    const int before = m_spans.size();
    const int kept = std::min(before, spans.size());
    if (spans.size() < before) {
        beginRemoveRows({}, spans.size(), before - 1);
        m_spans.resize(spans.size());
        endRemoveRows();
    }
    for (int i = 0; i < kept; ++i) {
        const QVector<int> roles = changedRoles(m_spans.at(i), spans.at(i));
        if (roles.isEmpty())
            continue;
        m_spans[i] = spans.at(i);
        Q_EMIT dataChanged(index(i), index(i), roles);
    }
    if (spans.size() > before) {
        beginInsertRows({}, before, spans.size() - 1);
        m_spans += spans.mid(before);
        endInsertRows();
    }
}

int SpanList::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_spans.size();
}

QVariant SpanList::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Span &span = m_spans.at(index.row());
    switch (role) {
    case RowRole:
        return span.row;
    case LaneRole:
        return span.lane;
    case LeftRole:
        return span.left;
    case LengthRole:
        return span.length;
    case Qt::DisplayRole:
    case LabelRole:
        return span.label;
    default:
        return {};
    }
}

QHash<int, QByteArray> SpanList::roleNames() const
{
    return {{RowRole, "row"}, {LaneRole, "lane"}, {LeftRole, "left"}, {LengthRole, "length"}, {LabelRole, "label"}};
}

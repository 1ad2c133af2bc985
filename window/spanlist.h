#ifndef SPANLIST_H
#define SPANLIST_H

#include <QtCore/QAbstractListModel>
#include <QtCore/QString>
#include <QtCore/QVector>

/**
 * What is drawn of lanes, in pixels from the left. Rows are kept while their contents change, so that scrolling makes no new items.
 *
 * Roles: row (0: the drive, 1: its replay), lane, left, length (0: a moment), label.
 */
class SpanList : public QAbstractListModel
{
    Q_OBJECT

public:
    struct Span
    {
        int row;
        int lane;
        double left;
        double length;
        QString label;
    };

    explicit SpanList(QObject *parent = nullptr);

    void assign(const QVector<Span> &spans);
    const QVector<Span> &spans() const { return m_spans; }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    enum Role {
        RowRole = Qt::UserRole,
        LaneRole,
        LeftRole,
        LengthRole,
        LabelRole,
    };

    static QVector<int> changedRoles(const Span &before, const Span &after);

    QVector<Span> m_spans;
};

#endif

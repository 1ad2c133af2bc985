#ifndef ROWLISTMODEL_H
#define ROWLISTMODEL_H

#include <QtCore/QAbstractListModel>
#include <QtCore/QVariantMap>
#include <QtCore/QVector>

/**
 * Rows of a table that is told anew as a whole, for lists: only what is different changes in them, so that they keep their place.
 *
 * The roles are the members of the rows.
 */
class RowListModel : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    /// @param roles names of the members that rows have
    explicit RowListModel(const QList<QByteArray> &roles, QObject *parent = nullptr);

    int count() const { return m_rows.size(); }
    const QVector<QVariantMap> &rows() const { return m_rows; }
    void setRows(const QVector<QVariantMap> &rows);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    Q_DISABLE_COPY(RowListModel)

    const QList<QByteArray> m_roles;
    QVector<QVariantMap> m_rows;
};

#endif

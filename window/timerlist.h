#ifndef TIMERLIST_H
#define TIMERLIST_H

#include "countdown.h"

#include <QtCore/QAbstractListModel>
#include <QtCore/QString>
#include <QtCore/QVariantList>
#include <QtCore/QVector>

/// The policy's timers that run, with the time that they have left. A row stays the same row as long as its timer runs.
class TimerList : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role {
        PurposeRole = Qt::UserRole, ///< "unmute after the timed mute"
        LeftRole, ///< ms
        ShareRole, ///< of the time that it had, from 1 down to 0
    };

    using QAbstractListModel::QAbstractListModel;

    int count() const { return m_rows.size(); }
    /// Maps of {purpose, left}, in any order that stays.
    void update(const QVariantList &timers);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    Q_DISABLE_COPY(TimerList)

    struct Row
    {
        QString purpose;
        Countdown time;
    };

    QVector<Row> m_rows;
};

#endif

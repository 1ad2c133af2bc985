#ifndef RECORDING_H
#define RECORDING_H

#include <QtCore/QAbstractListModel>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <optional>

/**
 * What was done to the car: lines of a scenario with their times, of which the first doneCount were done, and the others come when their
 * time does.
 *
 * Roles: time (ms), line, done, outcome (a result, or what was thrown), failed.
 */
class Recording : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(int doneCount READ doneCount NOTIFY doneCountChanged)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY doneCountChanged)
    Q_PROPERTY(bool canRedo READ canRedo NOTIFY doneCountChanged)
    /// Whether it has steps that no file has.
    Q_PROPERTY(bool unsaved READ isUnsaved NOTIFY unsavedChanged)

public:
    struct Step
    {
        qint64 time = 0; ///< ms of the car's clock
        QString line;
        QString outcome;
        bool isFailed = false;
    };

    enum Role {
        TimeRole = Qt::UserRole,
        LineRole,
        DoneRole,
        OutcomeRole,
        FailedRole,
    };
    Q_ENUM(Role)

    explicit Recording(QObject *parent = nullptr);

    int count() const { return m_steps.size(); }
    int doneCount() const { return m_doneCount; }
    bool canUndo() const { return m_doneCount > 0; }
    bool canRedo() const { return m_doneCount < m_steps.size(); }
    bool isUnsaved() const { return m_unsaved; }
    const QVector<Step> &steps() const { return m_steps; }

    /// New steps that were just done, in place of all that were to come.
    void add(const QVector<Step> &steps);
    /// The step that was to come next was just done.
    void done(const Step &step);
    /// So many steps are done.
    void setDoneCount(int count);
    void replace(const QVector<Step> &steps, int doneCount);
    void setUnsaved(bool unsaved);

    /// The recording as a scenario that lasts until @p end ms, if that is later than its last step.
    QString toScenario(qint64 end) const;
    /// The steps of a scenario as toScenario() writes it; empty for any other. @param end receives the time up to which it lasts
    static std::optional<QVector<Step>> fromScenario(const QString &text, qint64 &end);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();
    void doneCountChanged();
    void unsavedChanged();

private:
    QVector<Step> m_steps;
    int m_doneCount = 0;
    bool m_unsaved = false;
};

#endif

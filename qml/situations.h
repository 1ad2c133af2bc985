#ifndef SITUATIONS_H
#define SITUATIONS_H

#include <QtCore/QAbstractListModel>
#include <QtCore/QStringList>

/**
 * What happens in a car, ready to be made to happen: a call comes, a prompt begins, reverse gear is engaged, the ignition goes off.
 *
 *     Situations { id: situations }
 *     Repeater {
 *         model: situations
 *         Button { text: model.title; onClicked: situations.perform(model.name) }
 *     }
 *
 * Who drives the car of another process takes the lines() of a scenario that do the same there.
 */
class Situations : public QAbstractListModel
{
    Q_OBJECT
    /// The channel that hanging up goes back to: the last one that was no call's when a situation was performed, 0 until then. Set it
    /// for lines() of another process's car.
    Q_PROPERTY(int channelAfterCall READ channelAfterCall WRITE setChannelAfterCall NOTIFY channelAfterCallChanged)

public:
    enum Role {
        NameRole = Qt::UserRole, ///< "callComes"
        TitleRole, ///< "A call comes"
        GroupRole, ///< "Telephone": what the situation is about
        ExplanationRole, ///< what it does, a sentence
        PhaseRole, ///< Phase
        LinesRole, ///< lines()
        PerformableRole, ///< whether perform() can do it
    };
    enum Phase {
        Begins, ///< something that another situation of its group ends
        Continues, ///< the next part of what has begun
        Ends,
    };
    Q_ENUM(Phase)

    explicit Situations(QObject *parent = nullptr);

    int channelAfterCall() const { return m_channelAfterCall; }
    void setChannelAfterCall(int channel);

    /**
     * Makes it happen in this process, through ZelAudioManager::instance() and the simulated platform, on the calling thread.
     *
     * An unknown name throws a RangeError. The manager lives as long as its process, so that "ignitionOff" throws an Error; "ignitionOn"
     * makes the manager where it is not there yet. @return whether it was done
     */
    Q_INVOKABLE bool perform(const QString &name);
    /// What a scenario does for it, each line a statement; empty for an unknown name.
    Q_INVOKABLE QStringList lines(const QString &name) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// Whether a channel plays only while there is a call.
    static bool isChannelOfCall(int channel);

Q_SIGNALS:
    void channelAfterCallChanged();

private:
    Q_DISABLE_COPY(Situations)

    /// The engine's AudioPolicy, so that what is bound to it follows; without one an own.
    QObject &policy();

    QObject *m_ownPolicy = nullptr; // a child
    int m_channelAfterCall = 0;
};

#endif

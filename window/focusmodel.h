#ifndef FOCUSMODEL_H
#define FOCUSMODEL_H

#include "clientlist.h"
#include "focusstack.h"
#include "roommodel.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariantList>

/**
 * The room Focus: who is in the stack, what a request or a release would bring, and clients that are made by hand.
 *
 * What changes the car gives the lines of the scenario that did it. Without a desk nothing is done, and the lines are given all the same.
 */
class FocusModel : public RoomModel
{
    Q_OBJECT
    Q_PROPERTY(FocusStack *stack READ stack CONSTANT)
    Q_PROPERTY(ClientList *clients READ clients CONSTANT)
    /// How focus can be wanted: {number, name, meaning}; the number is the index and one.
    Q_PROPERTY(QVariantList hints READ hints CONSTANT)

    /// Ids of all clients that are known, those in the stack first.
    Q_PROPERTY(QStringList clientIds READ clientIds NOTIFY clientIdsChanged)
    /// Who would request next, and how. An empty id is a client that there is not yet.
    Q_PROPERTY(QString nextClient READ nextClient WRITE setNextClient NOTIFY forecastChanged)
    Q_PROPERTY(int nextHint READ nextHint WRITE setNextHint NOTIFY forecastChanged)
    Q_PROPERTY(bool nextGranted READ isNextGranted NOTIFY forecastChanged)
    /// The answer in a sentence.
    Q_PROPERTY(QString nextText READ nextText NOTIFY forecastChanged)
    /// What it would bring to each client of the stack, the top first: {clientId, told, lossName}. The loss is that which it then has.
    Q_PROPERTY(QVariantList nextLosses READ nextLosses NOTIFY forecastChanged)
    /// What a release of the top would bring, in a sentence.
    Q_PROPERTY(QString releaseText READ releaseText NOTIFY forecastChanged)

public:
    explicit FocusModel(QObject *parent = nullptr);

    FocusStack *stack() { return &m_stack; }
    ClientList *clients() { return &m_clients; }
    QVariantList hints() const;
    QStringList clientIds() const;
    QString nextClient() const { return m_nextClient; }
    void setNextClient(const QString &clientId);
    int nextHint() const { return m_nextHint; }
    void setNextHint(int hint);
    bool isNextGranted() const;
    QString nextText() const;
    QVariantList nextLosses() const;
    QString releaseText() const;

    /// Makes a client under a variable of its own. Nothing for an empty id, which could not request.
    Q_INVOKABLE QStringList addClient(const QString &clientId, int hint, int streamType);
    // By the client's row. Nothing where its variable is not known.
    Q_INVOKABLE QStringList request(int row);
    Q_INVOKABLE QStringList release(int row);
    Q_INVOKABLE QStringList setHint(int row, int hint);

Q_SIGNALS:
    void clientIdsChanged();
    void forecastChanged();

protected:
    void update(const QVariantMap &snapshot) override;

private:
    QStringList performed(const QString &line);
    QString variableOf(int row) const;
    QString newVariable(const QString &clientId) const;
    FocusInspector::Outcome next() const;

    FocusStack m_stack;
    ClientList m_clients;
    QString m_nextClient;
    int m_nextHint = AUDIOFOCUS_GAIN;
    QStringList m_ownVariables; // given out, whether the car has answered yet or not
};

#endif

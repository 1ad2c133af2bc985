#ifndef FOCUSCLIENT_H
#define FOCUSCLIENT_H

#include <qzaudio/taviaudioserviceinterface.h>

#include <QtCore/QObject>
#include <QtCore/QString>

#include <functional>

/**
 * One conversation with the audio service: makes a call, prints the answer, and where wanted stays to print what comes.
 *
 * Runs on the event loop; when it is done it leaves the loop with the command's exit status.
 */
class FocusClient : public QObject
{
    Q_OBJECT

public:
    /// @param advice what to do where nobody serves @p service, a line for the user; may be empty
    FocusClient(const QString &service, const QString &path, const QDBusConnection &connection, const QString &advice, QObject *parent = nullptr);

    /**
     * Requests focus and holds it until the standard input ends, then abandons it.
     *
     * The service takes focus from a client that leaves the bus, so a request that ends at once would be worth nothing.
     */
    void request(const QString &clientId, int streamType, int durationHint);
    void abandon(const QString &clientId);
    void current();
    void monitor();

private:
    Q_DISABLE_COPY(FocusClient)

    /// Prints what is wrong, and gives the exit status for it.
    int complain(const QDBusError &error) const;
    void printChange(int change, const QString &clientId);
    void holdUntilEndOfInput(const QString &clientId);
    /// Calls back with the answer. An error is printed and ends the conversation.
    void whenAnswered(const QDBusPendingReply<int> &reply, const std::function<void(int)> &answered);

    TaviAudioServiceInterface m_proxy;
    QString m_adviceToUser;
};

#endif

#ifndef HEARTBEAT_H
#define HEARTBEAT_H

#include <QtCore/QObject>
#include <QtCore/QTimer>
#include <QtDBus/QDBusConnection>

/**
 * Tells again and again that the process answers: beat() comes when a question to the bus has gone out and its answer has come in.
 *
 * That takes the event loop of the object's thread, Qt's thread for the bus, the connection and the bus. Any of them that hangs
 * stops it.
 */
class Heartbeat : public QObject
{
    Q_OBJECT

public:
    Heartbeat(const QDBusConnection &bus, int milliseconds, QObject *parent = nullptr);

Q_SIGNALS:
    void beat();

private:
    Q_DISABLE_COPY(Heartbeat)

    void ask();

    QDBusConnection m_bus;
    QTimer m_timer;
    bool m_isAsking = false;
};

#endif

#ifndef RECEIVELIMITS_H
#define RECEIVELIMITS_H

#include <QtDBus/QDBusConnection>

/**
 * Lets a connection read on however much of what it received is still in use.
 *
 * The bus library stops reading while more than 63 MB, or 4096 file descriptors, wait to be handled, and goes on in whichever
 * thread gives the message free that makes the difference. Behind Qt that is seldom the thread that reads, no other may switch its
 * socket on again, and the connection would be deaf for ever after one large message.
 *
 * False when the library has no such setting; everything then is as it was.
 */
bool liftReceiveLimits(const QDBusConnection &connection);

#endif

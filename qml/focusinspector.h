#ifndef FOCUSINSPECTOR_H
#define FOCUSINSPECTOR_H

#include <qzaudio/focusrequester.h>

#include <QtCore/QString>
#include <QtCore/QVector>

class AudioManager;
class AudioService;

/**
 * A window into audio focus: who is in the stack, and what a request or a release would bring.
 *
 * Nothing here tells a client anything, changes a stack or leaves a log line.
 */
namespace FocusInspector
{

/// Clients from the bottom to the top, which holds focus.
using Stack = QVector<FocusRequester>;

/// A client is told a change, 1 for the gain or one of the losses, -1 to -3.
struct Told
{
    QString clientId;
    int change;
};

struct Outcome
{
    bool granted; ///< always for a release
    QVector<Told> told; ///< in this order
    Stack stack; ///< what it is like afterwards, without dispatchers
};

/// What tells of changes in a manager's stack; it lives as long as the manager.
AudioService &serviceOf(AudioManager &manager);
/// The stack of a manager. Use it where no other thread requests or abandons meanwhile.
Stack stackOf(AudioManager &manager);

/**
 * What AudioManager::requestAudioFocus() would bring for a client, worked out by the library itself on a copy.
 *
 * In @p stack each client stands once. Clients that are told are those of the stack: whether somebody listens under that id is not known here.
 */
Outcome afterRequest(const Stack &stack, const QString &clientId, int durationHint, int streamType);
/// What AudioManager::abandonAudioFocus() would bring for a client.
Outcome afterRelease(const Stack &stack, const QString &clientId);

/// "GainTransient", as scripts have it, without their AudioFocus; the number where it has no name.
QString changeName(int focusChange);
/// The same as scripts write it: "AudioFocus.GainTransient".
QString changeScript(int focusChange);

} // namespace FocusInspector

#endif

#ifndef QZAUDIO_AUDIOFOCUSCONTROL_H
#define QZAUDIO_AUDIOFOCUSCONTROL_H

#include <qzaudio/export.h>
#include <qzaudio/focusrequester.h>

#include <QtCore/QObject>
#include <QtCore/QStack>
#include <QtCore/QString>

class IAudioFocusDispatcher;

/**
 * The focus stack: the client on top holds focus, those below have lost it for the time being.
 *
 * While the client "IN_VOICE_COMM_FOCUS_ID" is on top nobody can take focus.
 *
 * Threads: no lock; callers serialise. Dispatchers run on the caller's thread in the middle of the operation. What one of them asks
 * of the stack takes effect at once, before the operation goes on.
 */
class QZAUDIO_EXPORT AudioFocusControl : public QObject
{
    Q_OBJECT

public:
    /// An empty stack.
    explicit AudioFocusControl(QObject *parent = nullptr);
    ~AudioFocusControl() override;

    /**
     * Requests focus for a client.
     *
     * @param mainStreamType the stream that will play; only remembered
     * @param durationHint a gain, 1 to 4; not checked here
     * @param dispatcher where the entry's changes go; not owned, may be null
     * @param clientId who asks; one that is in the stack already moves to the top
     * @return 0 granted, 1 failed
     *
     * The new holder is sent no GAIN: the result is its grant. The same request by the holder changes nothing.
     */
    int requestAudioFocus(int mainStreamType, int durationHint, IAudioFocusDispatcher *dispatcher, const QString &clientId);
    /**
     * Gives focus up, or leaves the stack. Always 0.
     *
     * When the entry was on top, the one that comes to be there is told GAIN, unless it is voice communication. When it was not
     * on top, nobody is told anything.
     */
    int abandonAudioFocus(const QString &clientId);
    /// Leaves the stack without anybody being told.
    void unregisterAudioFocusClient(const QString &clientId);
    /// The duration hint of the top entry, 0 for an empty stack.
    int getCurrentAudioFocus() const;
    /// False while voice communication is on top.
    bool canReassignAudioFocus() const;
    /// Tells the top entry GAIN, unless it is voice communication.
    void notifyTopOfAudioFocusStack();
    /**
     * Removes a client: from the top (then, with @p signal, the next one is told GAIN, unless it is voice communication) or else
     * silently from below.
     *
     * An entry on top hides further entries of the same client below it; they stay.
     */
    void removeFocusStackEntry(const QString &clientId, bool signal);
    /// Tells every entry the loss that a gain causes it, bottom first.
    void propagateFocusLossFromGain_syncAf(int focusGain);
    /// Takes focus from the top entry, which is told LOSS. The entry below is not given focus.
    void discardAudioFocusOwner();
    /// Logs every entry at debug level, bottom first.
    void dumpFocusStack();

private:
    Q_DISABLE_COPY(AudioFocusControl)

    QStack<FocusRequester> focusStack;
};

#endif

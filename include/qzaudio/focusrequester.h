#ifndef QZAUDIO_FOCUSREQUESTER_H
#define QZAUDIO_FOCUSREQUESTER_H

#include <qzaudio/export.h>

#include <QtCore/QString>

class IAudioFocusDispatcher;

/**
 * @file
 * The codes of audio focus, and an entry of its stack.
 */

/// Focus change codes. The gains are also the valid duration hints of a request; the losses are what a holder is told.
enum AudioFocusChange : int {
    AUDIOFOCUS_LOSS_TRANSIENT_CAN_DUCK = -3, ///< lost for a while; the holder may go on, more quietly
    AUDIOFOCUS_LOSS_TRANSIENT = -2, ///< lost for a while; the holder pauses
    AUDIOFOCUS_LOSS = -1, ///< lost for good; the holder stops
    AUDIOFOCUS_NONE = 0, ///< no change; as the hint of the holder: nobody holds focus
    AUDIOFOCUS_GAIN = 1, ///< gained for good; others are told LOSS
    AUDIOFOCUS_GAIN_TRANSIENT = 2, ///< gained for a while; others are told LOSS_TRANSIENT
    AUDIOFOCUS_GAIN_TRANSIENT_MAY_DUCK = 3, ///< the same, and others are told LOSS_TRANSIENT_CAN_DUCK
    AUDIOFOCUS_GAIN_TRANSIENT_EXCLUSIVE = 4, ///< the same, and others are told LOSS_TRANSIENT
};

/**
 * One entry of the focus stack: who asked for focus, how, and which loss it was last told of.
 *
 * A plain value, copied into and out of the stack. Use it from the thread that works the stack.
 */
class QZAUDIO_EXPORT FocusRequester
{
public:
    /// Nobody's request, without a dispatcher.
    FocusRequester() = default;
    /**
     * A request that has lost nothing yet.
     *
     * @param requestedStreamType the stream that will play; only remembered
     * @param requestedHint the gain that was asked for; not checked here
     * @param changeDispatcher where focus changes go; not owned, may be null
     * @param id who asks
     */
    FocusRequester(int requestedStreamType, int requestedHint, IAudioFocusDispatcher *changeDispatcher, const QString &id);

    /// Whether the entry belongs to the client; ids are compared case-sensitively.
    bool hasSameClient(const QString &id) const;

    /// "GAIN", "LOSS_TRANSIENT" and so on; any other value gives "[invalid focus change N]".
    static QString focusChangeToString(int focusChange);

    /**
     * The loss, -1 to -3, that this entry suffers when another client is granted @p gainRequest (1 to 4).
     *
     * A loss never softens. For a request outside 1..4, or a corrupt entry, 0 and "Invalid focus request" at critical level.
     */
    int focusLossForGainRequest(int gainRequest);

    /// Dispatches the gain and forgets the loss.
    void handleFocusGain(int focusGain);
    /// Dispatches the loss and remembers it; a repeat of the last one is suppressed.
    void handleFocusLoss(int focusLoss);
    /// handleFocusLoss() of the loss that @p gainRequest causes; an invalid request counts as the "loss" 0.
    void handleExternalFocusGain(int gainRequest);
    /// Logs the entry at debug level.
    void dump();

    int streamType = 0; ///< the stream that will play, a number of the client's own
    int durationHint = AUDIOFOCUS_NONE; ///< the gain that was asked for
    int focusLossReceived = AUDIOFOCUS_NONE; ///< the last loss dispatched; 0 at first and after every gain
    QString clientId; ///< who asked
    IAudioFocusDispatcher *dispatcher = nullptr; ///< not owned, may be null
};

#endif

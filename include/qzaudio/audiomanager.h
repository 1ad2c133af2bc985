#ifndef QZAUDIO_AUDIOMANAGER_H
#define QZAUDIO_AUDIOMANAGER_H

#include <qzaudio/audiolisteners.h>
#include <qzaudio/export.h>
#include <qzaudio/qxprivate.h>

/**
 * A client's entry to audio focus within its own process.
 *
 * Threads: the manager belongs to the thread that made it, with the first instance(). requestAudioFocus() and abandonAudioFocus()
 * may be called from any thread; a non-recursive mutex serialises them.
 * - On the manager's thread, listeners are told before the call returns, while it holds the mutex. A listener that calls either
 *   operation from inside onAudioFocusChange() therefore blocks for ever: post the call to the event loop instead.
 * - What a call on another thread causes is told later, from the event loop of the manager's thread and without the mutex. There
 *   must be such a loop, and it must not run while other threads still request or abandon: the table of listeners is not
 *   protected then.
 *
 * The other operations are not protected: use them from the manager's thread.
 *
 * A listener should not throw. What one throws while it is told within a request or abandonment reaches the caller of that, after
 * the work is done: everybody has been told, the request is granted or the client gone, and the mutex is free. Of several
 * exceptions the first is passed on, and each further one only leaves "threw, too" at critical level. What a listener throws later,
 * told from the event loop, goes through Qt's event loop, which is not made for it.
 */
class QZAUDIO_EXPORT AudioManager
{
public:
    /**
     * The one manager of the process, made on first use; safe against concurrent first calls.
     *
     * Destroyed at process exit, after the static objects of the program: a static listener can abandon in its destructor.
     */
    static AudioManager *instance();

    /// For tests and tools that need a manager of their own; applications use instance().
    AudioManager();
    ~AudioManager();
    AudioManager(const AudioManager &) = delete;
    AudioManager &operator=(const AudioManager &) = delete;

    /**
     * Requests focus on behalf of a listener.
     *
     * @param streamType the stream that will play; only remembered
     * @param durationHint 1 GAIN, 2 GAIN_TRANSIENT, 3 GAIN_TRANSIENT_MAY_DUCK, 4 GAIN_TRANSIENT_EXCLUSIVE; any other value is
     *        denied with "Invalid duration hint, audio focus request denied" in the log
     * @param listener told of later changes, not of this grant; not owned; null is a client with an empty id
     * @return 0 granted, 1 failed; the listener stays registered even then, unless the hint was denied
     *
     * The first listener registered under an id keeps it until that id abandons.
     */
    int requestAudioFocus(int streamType, int durationHint, IAudioFocusChangeListener *listener);
    /// Gives focus up. The abandoning listener is told nothing more. Always 0.
    int abandonAudioFocus(IAudioFocusChangeListener *listener);

    /// Registers a listener, once; not owned. Null stops the process (fatal assertion "listener != NULL").
    void requestMegaBase(IMegaBaseChangeListener *listener);
    /// Forgets the listener, before it is destroyed. One that was not registered changes nothing.
    void abandonMegaBase(IMegaBaseChangeListener *listener);
    /// Registers a listener, once; not owned. Null stops the process (fatal assertion "listener != NULL").
    void requestVolume(IVolumeListener *listener);
    /// Forgets the listener, before it is destroyed. One that was not registered changes nothing.
    void abandonVolume(IVolumeListener *listener);

    /// A number that is only kept.
    void setReason(int reason);
    /// What setReason() was given last, 0 until then.
    int reason();
    /// Does nothing.
    void nextMegaBase();

private:
    QxPrivate<AudioManager> *d;
    int storedReason = 0; // "stored" because an operation has the plain name
};

#endif

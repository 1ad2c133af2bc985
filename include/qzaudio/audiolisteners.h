#ifndef QZAUDIO_AUDIOLISTENERS_H
#define QZAUDIO_AUDIOLISTENERS_H

#include <qzaudio/export.h>

#include <QtCore/QString>

/**
 * @file
 * What a client implements to hear from AudioManager. Listeners are never owned by the library: abandon before destroying one.
 */

/// Hears of focus gains and losses.
class QZAUDIO_EXPORT IAudioFocusChangeListener
{
public:
    virtual ~IAudioFocusChangeListener();

    /**
     * Called with a focus change code (1 gain, -1 to -3 losses) on the thread of the AudioManager.
     *
     * The manager may hold its non-recursive mutex meanwhile: requesting or abandoning focus from here blocks for ever. Post
     * the call to the event loop instead.
     *
     * Better not throw: the exception goes to whoever made the request, most likely another client (see AudioManager).
     */
    virtual void onAudioFocusChange(int focusChange) = 0;

    /**
     * The client's identity. Listeners with the same id are the same client. Must not change while focus is held.
     *
     * Called within requests and abandonments, which it ends when it throws.
     */
    virtual QString clientId() = 0;
};

/// Hears of changes of the mega base. Nothing in this library changes it; over the bus megaBaseChanged() of TaviAudioServiceInterface tells.
class QZAUDIO_EXPORT IMegaBaseChangeListener
{
public:
    virtual ~IMegaBaseChangeListener();
    /// Called with the mega base that is chosen now.
    virtual void onMegaBaseChange(int newValue) = 0;
};

/// Kept in a list; the library calls nothing on it. Abstract, as the others are: a client derives its own.
class QZAUDIO_EXPORT IVolumeListener
{
public:
    virtual ~IVolumeListener() = 0;
};

#endif

#ifndef QMLAUDIOFOCUS_H
#define QMLAUDIOFOCUS_H

#include <qzaudio/audiolisteners.h>

#include <QtCore/QList>
#include <QtCore/QMutex>
#include <QtCore/QObject>
#include <QtCore/QString>

/**
 * A client of audio focus for QML and JavaScript: the element AudioFocus of the module QzAudio.
 *
 *     AudioFocus {
 *         id: music
 *         clientId: "music"
 *         streamType: 3
 *         durationHint: AudioFocus.Gain
 *         onFocusChanged: change === AudioFocus.Gain ? player.play() : player.pause()
 *     }
 *
 * Focus is that of AudioManager::instance(), among the clients of this process. AudioManager tells its listeners while it holds
 * its mutex; this element posts what it is told to its own thread's event loop, so that a handler may call request() and
 * release(). What was told before the client's last granted request() or release() is no longer delivered.
 *
 * An element that is destroyed releases its focus.
 */
class QmlAudioFocus : public QObject, public IAudioFocusChangeListener
{
    Q_OBJECT
    /// Who this is to other clients. Set it before request(); a new id releases what was held under the old one.
    Q_PROPERTY(QString clientId READ clientId WRITE setClientId NOTIFY clientIdChanged)
    /// The stream that will play, remembered with the request; 3 until set.
    Q_PROPERTY(int streamType READ streamType WRITE setStreamType NOTIFY streamTypeChanged)
    /// How focus is wanted: Gain, GainTransient, GainTransientMayDuck or GainTransientExclusive; Gain until set.
    Q_PROPERTY(int durationHint READ durationHint WRITE setDurationHint NOTIFY durationHintChanged)
    /// Whether the client has focus, as far as it has been told.
    Q_PROPERTY(bool held READ held NOTIFY heldChanged)

public:
    /// Focus change codes, and the hints among them.
    enum FocusChange : int {
        LossTransientCanDuck = -3,
        LossTransient = -2,
        Loss = -1,
        None = 0,
        Gain = 1,
        GainTransient = 2,
        GainTransientMayDuck = 3,
        GainTransientExclusive = 4,
    };
    Q_ENUM(FocusChange)

    explicit QmlAudioFocus(QObject *parent = nullptr);
    ~QmlAudioFocus() override;

    QString clientId() override;
    void setClientId(const QString &id);
    int streamType() const;
    void setStreamType(int type);
    int durationHint() const;
    void setDurationHint(int hint);
    bool held() const;

    /**
     * Requests focus. True when granted: the client holds focus from then on and is not told of it again.
     *
     * Without a clientId a JavaScript error is thrown. A hint outside 1..4 is denied.
     */
    Q_INVOKABLE bool request();
    /// Gives focus up, or leaves the stack.
    Q_INVOKABLE void release();

    /// Called by AudioManager, on any thread, with its mutex held.
    void onAudioFocusChange(int focusChange) override;

Q_SIGNALS:
    void clientIdChanged();
    void streamTypeChanged();
    void durationHintChanged();
    void heldChanged();
    /// The client gained focus again (Gain) or lost it (one of the losses).
    void focusChanged(int change);

private:
    Q_DISABLE_COPY(QmlAudioFocus)

    void deliver();
    void setHeld(bool now);

    QString m_id;
    int m_stream = 3;
    int m_hint = Gain;
    bool m_holding = false;
    bool m_registered = false; // AudioManager may know this listener
    bool m_requesting = false;
    int m_toldBeforeRequest = 0; // how many of the undelivered changes the request in progress makes stale
    QMutex m_undeliveredMutex;
    QList<int> m_undelivered; // told, but not yet delivered
};

#endif

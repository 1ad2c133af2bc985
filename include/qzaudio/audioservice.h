#ifndef QZAUDIO_AUDIOSERVICE_H
#define QZAUDIO_AUDIOSERVICE_H

#include <qzaudio/audiofocuscontrol.h>
#include <qzaudio/export.h>
#include <qzaudio/iaudiofocusdispatcher.h>

#include <QtCore/QObject>
#include <QtCore/QString>

/**
 * The focus service: owns the focus stack and turns every focus change into the signal audioFocusChanged().
 *
 * The order of signal and slots is that of the meta-object, on which clients rely. The operations have the shape of the focus
 * part of the bus interface "tavi.AudioService".
 *
 * Threads: no lock; callers serialise. The signal is emitted on the thread of the request or abandonment that caused it,
 * before that returns. The stack is in the middle of its work then: what a receiver on the same thread requests, abandons or
 * unregisters from inside the signal takes effect before the request that the signal tells of. Better post such a call to the event
 * loop, or connect queued.
 */
class QZAUDIO_EXPORT AudioService : public QObject, public IAudioFocusDispatcher
{
    Q_OBJECT
    Q_INTERFACES(IAudioFocusDispatcher)

public:
    /// A service with an empty stack of its own. It puts nothing on a bus.
    explicit AudioService(QObject *parent = nullptr);
    ~AudioService() override;

    /// Called by the stack: logs the change and emits audioFocusChanged().
    void dispatchAudioFocusChange(int focusChange, const QString &clientId) override;

Q_SIGNALS:
    /// A client gained (1) or lost (-1 to -3) focus. After a request with an unchecked hint outside 1..4: 0, to those that had lost it before.
    void audioFocusChanged(int newState, QString clientId);

public Q_SLOTS:
    /// Requests focus for a client: 0 granted, 1 failed. The stream is only remembered; @p durationHint is a gain, 1 to 4; not checked here.
    int requestAudioFocus(int mainStreamType, int durationHint, QString clientId);
    /// Gives a client's focus up, or takes it off the stack. Always 0.
    int abandonAudioFocus(QString clientId);
    /// Takes a client off the stack without anybody being told.
    void unregisterAudioFocusClient(QString clientId);
    /// The duration hint of the holder, 0 when there is none.
    int getCurrentAudioFocus();

private:
    Q_DISABLE_COPY(AudioService)

    AudioFocusControl focusControl;
};

#endif

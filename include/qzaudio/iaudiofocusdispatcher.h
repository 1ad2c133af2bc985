#ifndef QZAUDIO_IAUDIOFOCUSDISPATCHER_H
#define QZAUDIO_IAUDIOFOCUSDISPATCHER_H

#include <qzaudio/export.h>

#include <QtCore/QObject>
#include <QtCore/QString>

/**
 * Carries focus changes from the focus stack to whoever tells the clients.
 *
 * Not owned by the stack, and called on the thread of the request or abandonment that caused the change, before it returns.
 */
class QZAUDIO_EXPORT IAudioFocusDispatcher
{
public:
    virtual ~IAudioFocusDispatcher();

    /**
     * Must not throw: the stack is in the middle of its work.
     *
     * @param focusChange a focus change code, -3 to 4 (see AudioFocusChange)
     * @param clientId who gained or lost focus
     */
    virtual void dispatchAudioFocusChange(int focusChange, const QString &clientId) = 0;
};

Q_DECLARE_INTERFACE(IAudioFocusDispatcher, "com.brevika.tavi.IAudioFocusDispatcher/1.0")

#endif

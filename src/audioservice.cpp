#include <qzaudio/audioservice.h>

#include "logging.h"

AudioService::AudioService(QObject *parent)
    : QObject(parent)
    , focusControl(nullptr)
{
}

AudioService::~AudioService() = default;

int AudioService::requestAudioFocus(int mainStreamType, int durationHint, QString clientId)
{
    return focusControl.requestAudioFocus(mainStreamType, durationHint, qobject_cast<IAudioFocusDispatcher *>(this), clientId);
}

int AudioService::abandonAudioFocus(QString clientId)
{
    return focusControl.abandonAudioFocus(clientId);
}

void AudioService::unregisterAudioFocusClient(QString clientId)
{
    focusControl.unregisterAudioFocusClient(clientId);
}

int AudioService::getCurrentAudioFocus()
{
    return focusControl.getCurrentAudioFocus();
}

void AudioService::dispatchAudioFocusChange(int focusChange, const QString &clientId)
{
    traceDebug() << "dispathing" << FocusRequester::focusChangeToString(focusChange) << "to" << clientId; // spelled so
    Q_EMIT audioFocusChanged(focusChange, clientId);
}

#include <qzaudio/audiomanager.h>

#include "audiomanager_p.h"
#include "logging.h"

#include <qzaudio/audioservice.h>

#include <QtCore/QMutexLocker>

namespace
{

constexpr int failed = 1;

AudioManagerPrivate *privateOf(QxPrivate<AudioManager> *d)
{
    return static_cast<AudioManagerPrivate *>(d);
}

template<typename Listener>
void appendOnce(QList<Listener *> &list, Listener *listener)
{
    if (!list.contains(listener))
        list.append(listener);
}

} // namespace

AudioManagerPrivate::AudioManagerPrivate()
    : QObject(nullptr)
    , service(new AudioService(this))
{
    connect(service, &AudioService::audioFocusChanged, this, &AudioManagerPrivate::onAudioFocusChanged);
}

AudioManagerPrivate::~AudioManagerPrivate() = default;

QString AudioManagerPrivate::getIdForAudioFocusListener(IAudioFocusChangeListener *listener)
{
    return listener ? listener->clientId() : QString();
}

void AudioManagerPrivate::registerAudioFocusListener(IAudioFocusChangeListener *listener)
{
    const QString id = getIdForAudioFocusListener(listener);
    if (!listeners.contains(id))
        listeners.insert(id, listener);
}

void AudioManagerPrivate::unregisterAudioFocusListener(IAudioFocusChangeListener *listener)
{
    listeners.remove(getIdForAudioFocusListener(listener));
}

void AudioManagerPrivate::onAudioFocusChanged(int newState, QString clientId)
{
    if (IAudioFocusChangeListener *listener = listeners.value(clientId))
        listener->onAudioFocusChange(newState);
}

void AudioManagerPrivate::onMegaBaseChanged(int newValue)
{
    const QList<IMegaBaseChangeListener *> copy = megaBaseListeners; // a listener may abandon while it is told
    for (IMegaBaseChangeListener *listener : copy) {
        if (listener)
            listener->onMegaBaseChange(newValue);
    }
}

AudioManager *AudioManager::instance()
{
    static AudioManager manager;
    return &manager;
}

AudioManager::AudioManager()
    : d(new AudioManagerPrivate)
{
    d->q = this;
}

AudioManager::~AudioManager()
{
    delete d;
}

int AudioManager::requestAudioFocus(int streamType, int durationHint, IAudioFocusChangeListener *listener)
{
    AudioManagerPrivate *const self = privateOf(d);
    const QMutexLocker locker(&self->mutex);
    if (durationHint < AUDIOFOCUS_GAIN || durationHint > AUDIOFOCUS_GAIN_TRANSIENT_EXCLUSIVE) {
        traceDebug() << "Invalid duration hint, audio focus request denied";
        return failed;
    }
    self->registerAudioFocusListener(listener);
    return self->service->requestAudioFocus(streamType, durationHint, self->getIdForAudioFocusListener(listener));
}

int AudioManager::abandonAudioFocus(IAudioFocusChangeListener *listener)
{
    AudioManagerPrivate *const self = privateOf(d);
    const QMutexLocker locker(&self->mutex);
    // First: whatever the abandonment tells, it does not tell the one who abandons.
    self->unregisterAudioFocusListener(listener);
    return self->service->abandonAudioFocus(self->getIdForAudioFocusListener(listener));
}

void AudioManager::requestMegaBase(IMegaBaseChangeListener *listener)
{
    Q_ASSERT(listener != NULL); // NOLINT(modernize-use-nullptr): this text is what the crash report shows
    appendOnce(privateOf(d)->megaBaseListeners, listener);
}

void AudioManager::abandonMegaBase(IMegaBaseChangeListener *listener)
{
    privateOf(d)->megaBaseListeners.removeAll(listener);
}

void AudioManager::requestVolume(IVolumeListener *listener)
{
    Q_ASSERT(listener != NULL); // NOLINT(modernize-use-nullptr): this text is what the crash report shows
    appendOnce(privateOf(d)->volumeListeners, listener);
}

void AudioManager::abandonVolume(IVolumeListener *listener)
{
    privateOf(d)->volumeListeners.removeAll(listener);
}

void AudioManager::setReason(int reason)
{
    storedReason = reason;
}

int AudioManager::reason()
{
    return storedReason;
}

void AudioManager::nextMegaBase()
{
}

#include <qzaudio/audiomanager.h>

#include "audiomanager_p.h"
#include "logging.h"

#include <qzaudio/audioservice.h>

#include <QtCore/QMutexLocker>

#include <cxxabi.h>
#include <exception>
#include <utility>

namespace
{

constexpr int failed = 1;

/**
 * One request or abandonment on the thread that makes it.
 *
 * Keeps what a listener throws until everybody has been told and the stack is whole. Past that the exception goes on to the caller.
 * On its way from the listener it would cross Qt's signal, which is not made for it, and leave the stack half done.
 */
class Undertaking
{
public:
    explicit Undertaking(const AudioManagerPrivate *owner)
        : m_manager(owner)
        , m_outer(innermost)
    {
        innermost = this;
    }
    ~Undertaking() { innermost = m_outer; }

    /// The one that a listener of this manager is being told in; null for what another thread caused.
    static Undertaking *of(const AudioManagerPrivate *owner) { return innermost && innermost->m_manager == owner ? innermost : nullptr; }

    /// True for the first one, which is the one that is passed on.
    bool keep(const std::exception_ptr &exception)
    {
        if (m_thrown)
            return false;
        m_thrown = exception;
        return true;
    }
    void passOn() const
    {
        if (m_thrown)
            std::rethrow_exception(m_thrown);
    }

private:
    Q_DISABLE_COPY(Undertaking)

    // A listener may work with another manager, whose undertaking then lies within.
    static thread_local Undertaking *innermost;

    const AudioManagerPrivate *m_manager;
    Undertaking *m_outer;
    std::exception_ptr m_thrown;
};

thread_local Undertaking *Undertaking::innermost = nullptr;

AudioManager *theManager = nullptr;

/// Runs when the library is unloaded, after all destructors of the program's statics, and costs nothing when it is loaded.
[[gnu::destructor]] void deleteManager()
{
    delete std::exchange(theManager, nullptr);
}

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
    IAudioFocusChangeListener *const listener = listeners.value(clientId);
    if (!listener)
        return;
    Undertaking *const undertaking = Undertaking::of(this);
    if (!undertaking) {
        listener->onAudioFocusChange(newState);
        return;
    }
    try {
        listener->onAudioFocusChange(newState);
    } catch (const abi::__forced_unwind &) { // the end of the thread, which nobody may hold up
        throw;
    } catch (...) {
        if (!undertaking->keep(std::current_exception()))
            traceCritical() << "audio focus listener" << clientId << "threw, too; only the first exception is passed on";
    }
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
    static AudioManager *const manager = theManager = new AudioManager;
    return manager;
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
    const Undertaking undertaking(self);
    const int result = self->service->requestAudioFocus(streamType, durationHint, self->getIdForAudioFocusListener(listener));
    undertaking.passOn();
    return result;
}

int AudioManager::abandonAudioFocus(IAudioFocusChangeListener *listener)
{
    AudioManagerPrivate *const self = privateOf(d);
    const QMutexLocker locker(&self->mutex);
    // First: whatever the abandonment tells, it does not tell the one who abandons.
    self->unregisterAudioFocusListener(listener);
    const Undertaking undertaking(self);
    const int result = self->service->abandonAudioFocus(self->getIdForAudioFocusListener(listener));
    undertaking.passOn();
    return result;
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

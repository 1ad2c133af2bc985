#include "focusworld.h"

#include <audiomanager_p.h>
#include <memberaccess.h>

#include <qzaudio/audiolisteners.h>
#include <qzaudio/iaudiofocusdispatcher.h>

#include <utility>

namespace
{

OPEN_MEMBER(AudioFocusControl, focusStack, QStack<FocusRequester>)
OPEN_MEMBER(AudioService, focusControl, AudioFocusControl)
OPEN_MEMBER(AudioManager, d, QxPrivate<AudioManager> *)

constexpr int stream = 3;

class MegaBaseListener : public IMegaBaseChangeListener
{
public:
    void onMegaBaseChange(int) override { }
};

class VolumeListener : public IVolumeListener
{
public:
    ~VolumeListener() override = default;
};

} // namespace

/// A client in both of its forms.
class FocusWorld::Client : public IAudioFocusDispatcher, public IAudioFocusChangeListener
{
public:
    Client(FocusWorld &world, QString id)
        : m_world(world)
        , m_id(std::move(id))
    {
    }

    void dispatchAudioFocusChange(int focusChange, const QString &clientId) override { m_world.tell(focusChange, clientId); }
    void onAudioFocusChange(int focusChange) override { m_world.tell(focusChange, m_id); }
    QString clientId() override { return m_id; }

private:
    FocusWorld &m_world;
    QString m_id;
};

QString FocusFault::describe() const
{
    if (way == None)
        return QStringLiteral("everybody is there");
    return client + (way == NobodyThere ? QLatin1String(" is null") : QLatin1String(" calls back"));
}

FocusWorld::FocusWorld(FocusLevel level, FocusFault fault)
    : m_level(level)
    , m_fault(std::move(fault))
{
    if (m_fault.way != FocusFault::NobodyThere)
        QObject::connect(&service, &AudioService::audioFocusChanged, &m_context, [this](int code, const QString &id) { tell(code, id); });
}

FocusWorld::~FocusWorld() = default;

FocusWorld::Client &FocusWorld::client(const QString &id)
{
    std::unique_ptr<Client> &found = m_clients[id];
    if (!found)
        found = std::make_unique<Client>(*this, id);
    return *found;
}

IAudioFocusDispatcher *FocusWorld::dispatcherOf(const QString &id)
{
    return m_fault.way == FocusFault::NobodyThere && m_fault.client == id ? nullptr : &client(id);
}

IAudioFocusChangeListener *FocusWorld::listenerOf(const QString &id)
{
    return m_fault.way == FocusFault::NobodyThere && m_fault.client == id ? nullptr : &client(id);
}

int FocusWorld::request(const QString &id, int hint)
{
    switch (m_level) {
    case FocusLevel::Control:
        return control.requestAudioFocus(stream, hint, dispatcherOf(id), id);
    case FocusLevel::Service:
        return service.requestAudioFocus(stream, hint, id);
    case FocusLevel::Manager:
        break;
    }
    return manager.requestAudioFocus(stream, hint, listenerOf(id));
}

int FocusWorld::abandon(const QString &id)
{
    switch (m_level) {
    case FocusLevel::Control:
        return control.abandonAudioFocus(id);
    case FocusLevel::Service:
        return service.abandonAudioFocus(id);
    case FocusLevel::Manager:
        break;
    }
    return manager.abandonAudioFocus(listenerOf(id));
}

FocusRun FocusWorld::run(const std::function<QVariant(FocusWorld &)> &call)
{
    m_log.take();
    m_current = FocusRun();
    m_current.result = call(*this);
    m_current.lines = m_log.takeTexts();
    m_current.stack = stack();
    return std::exchange(m_current, {});
}

void FocusWorld::tell(int focusChange, const QString &clientId)
{
    m_current.told += QString::number(focusChange) + QLatin1Char(' ') + clientId;
    if (m_fault.way != FocusFault::CallsBack || m_fault.client != clientId)
        return;
    ++m_current.callbacks;
    const QString answer = callBack();
    if (!m_current.answers.contains(answer))
        m_current.answers += answer;
}

/// All that may be called from where a client is told; requests and abandonments of the manager may not.
QString FocusWorld::callBack()
{
    switch (m_level) {
    case FocusLevel::Control:
        return QStringLiteral("%1 %2").arg(control.getCurrentAudioFocus()).arg(control.canReassignAudioFocus());
    case FocusLevel::Service:
        return QString::number(service.getCurrentAudioFocus());
    case FocusLevel::Manager:
        break;
    }
    MegaBaseListener megaBase;
    VolumeListener volume;
    manager.requestMegaBase(&megaBase);
    manager.abandonMegaBase(&megaBase);
    manager.requestVolume(&volume);
    manager.abandonVolume(&volume);
    manager.nextMegaBase();
    manager.setReason(7);
    return QString::number(manager.reason());
}

QStringList FocusWorld::stack()
{
    AudioFocusControl *reached = &control;
    if (m_level == FocusLevel::Service)
        reached = &(service.*memberOf(focusControl_Member()));
    else if (m_level == FocusLevel::Manager)
        reached = &(static_cast<AudioManagerPrivate *>(manager.*memberOf(d_Member()))->service->*memberOf(focusControl_Member()));
    QStringList texts;
    const QStack<FocusRequester> &entries = reached->*memberOf(focusStack_Member());
    for (const FocusRequester &entry : entries)
        texts += QStringLiteral("%1 %2 %3 %4").arg(entry.clientId).arg(entry.streamType).arg(entry.durationHint).arg(entry.focusLossReceived);
    return texts;
}

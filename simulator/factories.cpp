#include "appobject.h"
#include "mixerobject.h"
#include "platform.h"
#include "sourceobject.h"
#include "volumeobject.h"

namespace simulator
{

namespace
{

JournalEntry lifetimeEntry(ObjectKind kind, const char *operation)
{
    JournalEntry entry;
    entry.time = Platform::instance()->now();
    entry.kind = kind;
    entry.operation = QLatin1String(operation);
    return entry;
}

template<typename Object>
Object *create()
{
    Platform *const platform = Platform::instance();
    JournalEntry entry = lifetimeEntry(Object::staticKind, "create");
    platform->passCallDuration();
    if (platform->faults()->takeFactoryFault(Object::staticKind)) {
        entry.note = QStringLiteral("injected fault");
        platform->journal()->append(entry);
        return nullptr;
    }
    auto object = std::make_unique<Object>();
    Object *const handle = object.get();
    entry.number = platform->books()->enter(handle, std::move(object));
    platform->journal()->append(entry);
    return handle;
}

/// @p handle is only looked up: it may be null, stale or nonsense.
void release(ObjectKind kind, const void *handle)
{
    Platform *const platform = Platform::instance();
    JournalEntry entry = lifetimeEntry(kind, "destroy");
    platform->passCallDuration();
    if (const BookedObject *const object = platform->books()->leave(kind, handle))
        entry.number = object->number;
    else
        entry.note = platform->books()->problems().constLast();
    platform->journal()->append(entry);
}

} // namespace

} // namespace simulator

namespace audio::SPAudioSetting
{

App *createApp()
{
    return simulator::create<simulator::AppObject>();
}

Mixer *createMixer()
{
    return simulator::create<simulator::MixerObject>();
}

Source *createSource()
{
    return simulator::create<simulator::SourceObject>();
}

Volume *createVolume()
{
    return simulator::create<simulator::VolumeObject>();
}

void destroy(App *app)
{
    simulator::release(simulator::ObjectKind::App, app);
}

void destroy(Mixer *mixer)
{
    simulator::release(simulator::ObjectKind::Mixer, mixer);
}

void destroy(Source *source)
{
    simulator::release(simulator::ObjectKind::Source, source);
}

void destroy(Volume *volume)
{
    simulator::release(simulator::ObjectKind::Volume, volume);
}

} // namespace audio::SPAudioSetting

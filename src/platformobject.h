#ifndef PLATFORMOBJECT_H
#define PLATFORMOBJECT_H

#include "logging.h"

#include <spaudiosetting.h>

#include <QtCore/qglobal.h>

namespace audio
{

/**
 * Calls an operation of a platform object; a null object counts as the call failing with -1, and no call is made.
 *
 *     callPlatform(volume, &SPAudioSetting::Volume::muteTrack, "main", 0)
 */
template<typename Object, typename... Parameters, typename... Arguments>
int callPlatform(Object *object, int (Object::*operation)(Parameters...), Arguments &&...arguments)
{
    return object ? (object->*operation)(arguments...) : -1;
}

/// A platform object made for one operation of the facade and destroyed on every path out of it. May be null: test it.
template<typename Object>
class PlatformObject
{
public:
    PlatformObject() { create(m_object); }
    ~PlatformObject()
    {
        if (m_object)
            SPAudioSetting::destroy(m_object);
    }

    explicit operator bool() const { return m_object; }
    Object *operator->() const { return m_object; }

    /// As callPlatform().
    template<typename Operation, typename... Arguments>
    int call(Operation operation, Arguments &&...arguments) const
    {
        return callPlatform(m_object, operation, arguments...);
    }

private:
    Q_DISABLE_COPY(PlatformObject)

    static void create(SPAudioSetting::App *&app) { app = SPAudioSetting::createApp(); }
    static void create(SPAudioSetting::Mixer *&mixer) { mixer = SPAudioSetting::createMixer(); }
    static void create(SPAudioSetting::Source *&source) { source = SPAudioSetting::createSource(); }
    static void create(SPAudioSetting::Volume *&volume) { volume = SPAudioSetting::createVolume(); }

    Object *m_object = nullptr;
};

/// Whether there is an object; without one an error line says so with the operation's text.
template<typename Object>
bool isMade(const PlatformObject<Object> &object, const char *failure, const logging::CodeLocation &at)
{
    if (!object)
        logging::logError(at, failure);
    return bool(object);
}

} // namespace audio

#endif

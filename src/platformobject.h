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
 *     callPlatform(PlatformObject<SPAudioSetting::Volume>(), &SPAudioSetting::Volume::setDuckingMode, mode)
 *
 * @param object one that is kept, or a PlatformObject
 */
template<typename Object, typename Operation, typename... Arguments>
int callPlatform(const Object &object, Operation operation, Arguments &&...arguments)
{
    return object ? ((*object).*operation)(arguments...) : -1;
}

/// A platform object made for one operation of the facade and destroyed on every path out of it. May be null: test it.
template<typename Object>
class PlatformObject
{
public:
    PlatformObject() { create(m_object); }

    /// Where there is no object, an error line of the operation says so.
    template<typename... Failure>
    explicit PlatformObject(const logging::CodeLocation &at, const Failure &...failure)
        : PlatformObject()
    {
        if (!m_object)
            logging::logError(at, failure...);
    }

    ~PlatformObject()
    {
        if (m_object)
            SPAudioSetting::destroy(m_object);
    }

    explicit operator bool() const { return m_object; }
    Object *operator->() const { return m_object; }
    Object &operator*() const { return *m_object; }

private:
    Q_DISABLE_COPY(PlatformObject)

    static void create(SPAudioSetting::App *&app) { app = SPAudioSetting::createApp(); }
    static void create(SPAudioSetting::Mixer *&mixer) { mixer = SPAudioSetting::createMixer(); }
    static void create(SPAudioSetting::Source *&source) { source = SPAudioSetting::createSource(); }
    static void create(SPAudioSetting::Volume *&volume) { volume = SPAudioSetting::createVolume(); }

    Object *m_object = nullptr;
};

} // namespace audio

#endif

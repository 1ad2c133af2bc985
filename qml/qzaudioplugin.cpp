#include "qzaudioplugin.h"

#include "qmlaudiocontrol.h"
#include "qmlaudiofocus.h"
#include "qmlaudiopolicy.h"
#include "qmlaudiosettings.h"

#include <QtQml/qqml.h>

namespace
{

template<typename Singleton>
QObject *makeSingleton(QQmlEngine * /*engine*/, QJSEngine * /*scriptEngine*/)
{
    return new Singleton;
}

} // namespace

void QzAudioPlugin::registerTypes(const char *uri)
{
    qmlRegisterSingletonType<QmlAudioControl>(uri, 1, 0, "AudioControl", &makeSingleton<QmlAudioControl>);
    qmlRegisterSingletonType<QmlAudioSettings>(uri, 1, 0, "AudioSettings", &makeSingleton<QmlAudioSettings>);
    qmlRegisterSingletonType<QmlAudioPolicy>(uri, 1, 0, "AudioPolicy", &makeSingleton<QmlAudioPolicy>);
    qmlRegisterType<QmlAudioFocus>(uri, 1, 0, "AudioFocus");
}

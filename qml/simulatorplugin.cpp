#include "simulatorplugin.h"

#include "qmlplatform.h"
#include "simulatortypes.h"

#include <QtQml/qqml.h>

void SimulatorPlugin::registerTypes(const char *uri)
{
    const auto makePlatform = [](QQmlEngine * /*engine*/, QJSEngine * /*scriptEngine*/) -> QObject * { return new QmlPlatform; };
    qmlRegisterSingletonType<QmlPlatform>(uri, 1, 0, "Platform", makePlatform);
    for (const SimulatorTypes::Type &type : SimulatorTypes::all())
        type.add(uri, type);
}

#include "windowtypes.h"

#include "carmodel.h"
#include "desk.h"
#include "responsecurve.h"
#include "tonemodel.h"

#include <QtQml/qqml.h>

/// The QML files stand in a static library, which registers no resources by itself. Qt wants this outside any namespace.
static void registerResources()
{
    Q_INIT_RESOURCE(window);
}

namespace
{

constexpr const char *module = "QzAudio.Desk";

} // namespace

void registerWindowTypes(Desk &desk)
{
    registerResources();
    qmlRegisterSingletonInstance(module, 1, 0, "Desk", &desk);
    qmlRegisterUncreatableType<Recording>(module, 1, 0, "Recording", QStringLiteral("the desk has one"));
    qmlRegisterType<CarModel>(module, 1, 0, "CarModel");
    qmlRegisterType<ToneModel>(module, 1, 0, "ToneModel");
    qmlRegisterType<ResponseCurve>(module, 1, 0, "ResponseCurve");
}

#include "windowtypes.h"

#include "desk.h"

#include <QtQml/qqml.h>

namespace
{

constexpr const char *module = "QzAudio.Desk";

} // namespace

void registerWindowTypes(Desk &desk)
{
    qmlRegisterSingletonInstance(module, 1, 0, "Desk", &desk);
    qmlRegisterUncreatableType<Recording>(module, 1, 0, "Recording", QStringLiteral("the desk has one"));
}

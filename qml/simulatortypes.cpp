#include "simulatortypes.h"

#include "focusstack.h"
#include "journalmodel.h"
#include "responsecurve.h"
#include "situations.h"

#include <QtQml/qqml.h>

namespace SimulatorTypes
{

namespace
{

template<typename Class>
Type element(const char *name, int minor)
{
    const auto add = [](const char *uri, const Type &type) { qmlRegisterType<Class>(uri, 1, type.minor, type.name); };
    return {name, minor, &Class::staticMetaObject, add};
}

} // namespace

const QVector<Type> &all()
{
    static const QVector<Type> types = {
        element<FocusStack>("FocusStack", 1),
        element<JournalModel>("JournalModel", 1),
        element<ResponseCurve>("ResponseCurve", 1),
        element<Situations>("Situations", 1),
    };
    return types;
}

} // namespace SimulatorTypes

#ifndef SCENARIOLIMITS_H
#define SCENARIOLIMITS_H
#include <QtCore/QtGlobal>
struct ScenarioLimits
{
    qint64 milliseconds = 0;
    qint64 bytes = 0;
};
#endif

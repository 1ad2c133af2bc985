#ifndef LIFESCENARIO_H
#define LIFESCENARIO_H

#include "operations.h"

namespace lives
{

/// A life as a scenario that the bench plays, with what is wrong with it at its head.
QByteArray toScenario(const std::vector<Operation> &life, const QString &problem);

} // namespace lives

#endif

#ifndef OPERATIONROWS_H
#define OPERATIONROWS_H

#include "operations.h"

namespace lives
{

// What the parts of the table are written with.

using Given = const Arguments &;
using Kinds = std::array<const ArgumentKind *, mostArguments>;

inline Kinds kinds(const ArgumentKind &first = kind::none, const ArgumentKind &second = kind::none, const ArgumentKind &third = kind::none)
{
    return {&first, &second, &third};
}

/// A part of the unit and its model are called with the same words; @p partOf gives the part of either.
template<typename PartOf, typename Act>
OperationRow rowOfPart(const char *object, PartOf partOf, const char *script, const Kinds &kinds, int weight, Act act, Role role)
{
    return {QLatin1String(object) + QLatin1Char('.') + QLatin1String(script),
            kinds,
            weight,
            role,
            [act, partOf](LivedUnit &unit, Given given) { return answerOf(act, partOf(unit), given); },
            [act, partOf](UnitModel &model, Given given) { return answerOf(act, partOf(model), given); }};
}

} // namespace lives

#endif

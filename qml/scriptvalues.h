#ifndef SCRIPTVALUES_H
#define SCRIPTVALUES_H

#include <QtCore/QList>
#include <QtCore/QVariant>

struct EqBaseData;

/// The library's values as the arrays and objects that scripts get.
namespace ScriptValues
{
QVariantList array(const QList<int> &values);

/// The shortest decimal number that is this float: 4.8, where the plain conversion gives 4.800000190734863.
double decimal(float value);

/// The eight equalizer presets that @p table points to: [{type, tag, gains}, ...].
QVariantList equalizerPresets(const EqBaseData *table);
} // namespace ScriptValues

#endif

#ifndef FOCUSADVICE_H
#define FOCUSADVICE_H

#include <QtCore/QString>

/// What a user can do about a bus or a service that is not there: one line, for this very program, from the tree or installed.
namespace FocusAdvice
{
QString withoutBus();
/// @param options of qzaudio-focusd, for the bus that it is missed on; may be empty
QString withoutService(const QString &options);
} // namespace FocusAdvice

#endif

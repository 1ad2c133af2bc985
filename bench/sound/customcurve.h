#ifndef CUSTOMCURVE_H
#define CUSTOMCURVE_H

#include "equalizercurves.h"

#include <QtCore/QString>

/// The custom curve of a settings file, which the library's own store writes.
namespace CustomCurve
{

/**
 * Stores the curve in a settings file and puts its type, 7, in use; all else in the file stays. A missing file is made.
 *
 * The store knows one path only. Another file is therefore changed as a copy, by this program once more, on a flash of its own, and replaced at
 * once by the result.
 *
 * @param gains even numbers of dB, as the store has no others
 * @return what was the matter; empty where all of it is stored
 */
QString write(const QString &file, const EqualizerCurves::Gains &gains);

/// The same in this process, in the library's own file. What was stored is for others to read.
void store(const EqualizerCurves::Gains &gains);

/**
 * The curve that a unit with this settings file begins with: that of the stored type.
 *
 * @param problem receives why there is none
 */
std::optional<EqualizerCurves::Gains> read(const QString &file, QString &problem);

/// Gains as an option's value has them, and as code.
QString toText(const EqualizerCurves::Gains &gains);

} // namespace CustomCurve

#endif

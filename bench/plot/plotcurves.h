#ifndef PLOTCURVES_H
#define PLOTCURVES_H

#include "equalizerplot.h"

#include "explain/logfilter.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>

class DriveLog;

/// The curves that a command line can name. Where there is none, a text receives what is the matter.
namespace PlotCurves
{

/// One of EqualizerCurves::names().
std::optional<EqualizerPlot::Curve> ofName(const QString &name);

/// As EqualizerCurves::gainsFromText() reads them.
std::optional<EqualizerPlot::Curve> ofGains(const QString &list, QString &problem);

/// What a unit with this settings file begins with.
std::optional<EqualizerPlot::Curve> ofSettings(const QString &file, QString &problem);

/**
 * The curve of a drive at a time, or at its end. Needs a VirtualClock.
 *
 * @param status receives an exit status, where there is no curve or the drive failed
 */
std::optional<EqualizerPlot::Curve> ofDrive(const QString &word, const std::optional<LogLimit> &time, const QString &timeText, int &status);

} // namespace PlotCurves

#endif

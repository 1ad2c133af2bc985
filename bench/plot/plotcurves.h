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

/// "mode0" to "mode6" of the facade, "preset0" to "preset7" of the store.
QStringList names();

std::optional<EqualizerPlot::Curve> ofName(const QString &name);

/// Sixteen gains in dB, with commas.
std::optional<EqualizerPlot::Curve> ofGains(const QString &list, QString &problem);

/// What the library sends for a settings file: the preset of the stored type, or the custom curve.
std::optional<EqualizerPlot::Curve> ofSettings(const QString &file, QString &problem);

/**
 * The curve of a drive at a time, or at its end. Needs a VirtualClock.
 *
 * @param status receives an exit status, where there is no curve or the drive failed
 */
std::optional<EqualizerPlot::Curve> ofDrive(const QString &word, const std::optional<LogLimit> &time, const QString &timeText, int &status);

} // namespace PlotCurves

#endif

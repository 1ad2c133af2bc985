#ifndef TIMELINELAYOUT_H
#define TIMELINELAYOUT_H

#include "drivefigure.h"
#include "spanlist.h"
#include "timescale.h"

#include <QtCore/QVariantList>

#include <optional>

/// Where what is to be drawn of a drive stands, as far as it is in sight. What is too short to be told apart is drawn as one.
namespace TimelineLayout
{

QVector<SpanList::Span> spansOf(const DriveFigure &figure, int row, const TimeScale &scale);
QVector<SpanList::Span> marksOf(const QVector<DriveFigure::Difference> &differences, const TimeScale &scale);

/// dB at the bottom.
double leastLevel(const DriveFigure &drive, const std::optional<DriveFigure> &replay);
/// Maps of {row, source, paths}. A source of both has one number.
QVariantList curvesOf(const DriveFigure &drive, const std::optional<DriveFigure> &replay, const TimeScale &scale, double height);
/// Maps of {place, label}.
QVariantList levelTicks(double least, double height);

} // namespace TimelineLayout

#endif

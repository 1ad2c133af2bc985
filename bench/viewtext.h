#ifndef VIEWTEXT_H
#define VIEWTEXT_H

#include "scenarioresult.h"

#include <QtCore/QString>

/// How the views that people read write what is in all of them.
namespace ViewText
{
/// Column at which texts begin, behind the times.
constexpr int column = 12;

/// "  0:01.500  ", as wide as the column.
QString time(qint64 milliseconds);
/// A text broken to the width, below itself from the second line on.
QString paragraph(const QString &text, int hanging = column);
/// The name of a timer's event: "timer: restore after the projection's prompt".
QString timer(const QString &name);
/// An expectation that failed: "FAILED: line 5: expect(x).toBe(1): expected 1, got 0", with the way to it.
QString failure(const ScenarioResult::Check &check);
/// The way to a failure: ", in tenDecibels() called from line 7", empty where nothing was called.
QString way(const QVector<ScenarioResult::Frame> &stack);
/// What the frame @p caller of a stack called: "volumeIs()". A frame without a line stands for those that were left out.
QString calledFunction(const QVector<ScenarioResult::Frame> &stack, int caller);
} // namespace ViewText

#endif

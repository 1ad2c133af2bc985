#ifndef PLAYSUMMARY_H
#define PLAYSUMMARY_H

#include "scenariorun.h"

#include <QtCore/QVector>

/// The verdict of a run, for people.
namespace PlaySummary
{
/// What failed, each with its place, and the verdict. @param isStrict a scenario that expects nothing has failed
QString toText(const ScenarioRun::Outcome &outcome, bool isStrict);
/// The verdict on all of several. @param planned how many were to be played
QString toText(const QVector<ScenarioRun::Outcome> &outcomes, int planned, bool isStrict);
/// Whether nothing failed.
bool isPassed(const ScenarioRun::Outcome &outcome, bool isStrict);
} // namespace PlaySummary

#endif

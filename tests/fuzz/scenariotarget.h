#ifndef SCENARIOTARGET_H
#define SCENARIOTARGET_H

#include <scenarioresult.h>

#include <QtCore/QStringList>

#include <string_view>

/// What playing a scenario gives: its result, and all that is told of it.
struct PlayedScenario
{
    ScenarioResult result;
    QStringList texts;
};

/// Exit status of a process whose scenario could not be ended: inside a function of the engine that takes for ever or all memory. None of the fuzzer's own.
constexpr int stuckStatus = 78;

/**
 * Plays a scenario of these bytes as the bench does, within limits on time and memory.
 *
 * One that would start other programs is not played. Ends the process where the result has no place in the scenario. Needs an
 * application object, a VirtualClock from before it, and a flash.
 */
PlayedScenario played(std::string_view bytes);

#endif

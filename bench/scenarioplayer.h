#ifndef SCENARIOPLAYER_H
#define SCENARIOPLAYER_H

#include "scenariolimits.h"
#include "scenarioresult.h"

#include <QtCore/QString>

class Timeline;

/**
 * Plays a scenario: a JavaScript file with the objects of the QML modules and the functions of scenario.js.
 *
 * On virtual time where a simulator::VirtualClock is installed, else on real time. Needs an application object. A limit ends the
 * scenario as an error does, but nothing in it can catch that.
 */
class ScenarioPlayer
{
public:
    explicit ScenarioPlayer(Timeline &shownIn, ScenarioLimits scenarioLimits = {});

    /// @param file name for messages; @param program its text
    ScenarioResult play(const QString &file, const QString &program);

private:
    Timeline &m_timeline;
    const ScenarioLimits m_limits;
};

#endif

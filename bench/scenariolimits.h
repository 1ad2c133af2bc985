#ifndef SCENARIOLIMITS_H
#define SCENARIOLIMITS_H

#include "scenarioresult.h"

#include <functional>

/// What a scenario may use before it is ended.
struct ScenarioLimits
{
    qint64 milliseconds = 0; ///< of real time; 0 for no limit
    qint64 bytes = 0; ///< of memory that the process has in use, the bench's own included; 0 for no limit

    /**
     * Called where a limit is reached inside something that cannot be ended, such as making a text of a gigabyte: play() will not
     * return soon. It gets the result so far and is called on a thread of its own while the scenario's thread stands still for good,
     * wherever it is: call what needs no lock of that thread, then end the process with _exit().
     */
    std::function<void(const ScenarioResult &result)> onStuck = {};
};

#endif

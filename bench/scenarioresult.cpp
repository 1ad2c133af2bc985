#include "scenarioresult.h"

#include <algorithm>

int ScenarioResult::failures() const
{
    return int(std::count_if(checks.cbegin(), checks.cend(), [](const Check &check) { return !check.passed; }));
}

bool ScenarioResult::succeeded() const
{
    return error.isEmpty() && failures() == 0;
}

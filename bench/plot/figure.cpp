#include "figure.h"

#include <algorithm>
#include <cmath>

double Figure::Axis::placeOf(double value) const
{
    const double held = std::clamp(value, least, most);
    if (most <= least)
        return 0;
    return isLogarithmic ? std::log(held / least) / std::log(most / least) : (held - least) / (most - least);
}

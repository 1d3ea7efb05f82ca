#pragma once

#include <math.h>

#include <algorithm>

/// The weight of source pixel `at` in result pixel `i`, in doubles.
inline double ReferenceWeight(int i, int at, int from, int to)
{
    const double scale = double(from) / to;
    if (to < from) {
        return std::max(0.0, std::min((i + 1) * scale, at + 1.0) - std::max(i * scale, double(at))) / scale;
    }
    const double place = std::min(std::max((i + 0.5) * scale - 0.5, 0.0), from - 1.0);
    return std::max(0.0, 1 - fabs(place - at));
}

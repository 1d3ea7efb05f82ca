#pragma once

#include "ZmVector.h"

/// All points within Radius of Center; Radius is not negative.
struct ZmSphere {
    ZmVector Center;  ///< the middle
    float Radius;     ///< 0 for a point
};

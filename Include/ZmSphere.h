#pragma once

#include "ZmVector.h"

/// All points within Radius of Center; Radius is not negative.
struct ZmSphere {
    ZmVector Center;  ///< centre of the sphere
    float Radius;     ///< 0 for a point
};

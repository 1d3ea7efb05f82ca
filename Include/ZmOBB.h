#pragma once

#include "ZmVector.h"

/// Box in any orientation: three unit axes with half-extents about a centre.
struct ZmOBB {
    ZmVector Center;   ///< the middle
    ZmVector Axis[3];  ///< unit length, at right angles to one another
    float Extent[3];   ///< half the size along each axis
};

#pragma once

#include "ZmVector.h"

/// Box in any orientation: three unit axes with half-extents about a centre.
struct ZmOBB {
    ZmVector Center;
    ZmVector Axis[3];
    float Extent[3];
};

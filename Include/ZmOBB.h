#pragma once

#include "ZmVector.h"

/// Box in any orientation: three unit axes with half-extents about a centre.
struct ZmOBB {
    ZmVector Center;   ///< centre of the box
    ZmVector Axis[3];  ///< of unit length, mutually orthogonal
    float Extent[3];   ///< half the size along each axis
};

#pragma once

#include "ZmMatrix.h"

/// Half-line from Origin along Direction, which need not be of unit length.
struct ZmRay {
    ZmVector Origin;     ///< where it begins
    ZmVector Direction;  ///< where it goes

    /// dest = this ray through m: the origin as a point, the direction without
    /// translation. `dest` may be this ray.
    ZM_API void Transform(ZmRay& dest, const ZmMatrix& m) const;
};

#pragma once

#include "ZmMatrix.h"

/// Half-line from Origin along Direction, which need not be of unit length.
struct ZmRay {
    ZmVector Origin;     ///< starting point
    ZmVector Direction;  ///< direction, of any length

    /// dest = this ray transformed by m: the origin as a point, the direction without translation. `dest` may be this
    /// ray.
    ZM_API void Transform(ZmRay& dest, const ZmMatrix& m) const;
};

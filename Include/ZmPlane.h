#pragma once

#include "ZmVector.h"

/// The plane Normal . p + D = 0. Points with Normal . p + D > 0 are on its positive, outer side.
struct ZmPlane {
    ZmVector Normal;  ///< of unit length when built from three points
    float D;          ///< minus the distance from the origin along Normal

    /// Plane through p with normal n, which is used as given.
    ZM_API void Create(const ZmVector& n, const ZmVector& p);

    /// Plane through three points, with unit normal (b - a) x (c - a). Collinear points give NaNs.
    ZM_API void Create(const ZmVector& a, const ZmVector& b, const ZmVector& c);
};

#pragma once

#include "Queries/StoreIf.h"
#include "Queries/Tolerances.h"
#include "ZmPlane.h"
#include "ZmRay.h"

#include <math.h>

namespace zm {

/// Which planes count: all, or only those whose normal faces the start.
enum class Facing {
    ANY,
    FRONT
};

/// Where a linear object crosses a plane.
struct PlaneCrossing {
    bool meets;   ///< not parallel, and the facing counts; only then is there a parameter
    bool inside;  ///< also, the parameter lies within the object
    float parameter;
    ZmVector point;

    /// Writes the outputs of the plane tests. The parameter is written even if it is out of range.
    void Store(ZmVector& resPoint, float& resParameter) const
    {
        StoreIf(meets, resParameter, parameter);
        StoreIf(inside, resPoint, point);
    }
};

template <Reach reach, Facing facing>
inline PlaneCrossing CrossPlane(const ZmRay& ray, const ZmPlane& plane)
{
    const float approach = Dot(plane.Normal, ray.Direction);
    const float t = -(Dot(plane.Normal, ray.Origin) + plane.D) / approach;
    const bool meets = facing == Facing::FRONT ? !(approach > -kEpsilon) : !(fabsf(approach) < kEpsilon);
    const bool before = reach != Reach::LINE && t < -kEpsilon, beyond = reach == Reach::SEGMENT && t > kOnePlus;
    return {meets, bool(meets & !before & !beyond), t, ray.Origin + ray.Direction * t};
}

}  // namespace zm

#pragma once

#include "Queries/StoreIf.h"
#include "Queries/Tolerances.h"
#include "ZmPlane.h"
#include "ZmRay.h"

#include <math.h>

namespace zm {

/// Which planes are seen: all, or those only whose normal faces the start.
enum class Facing {
    Any,
    Front
};

/// Where a linear object crosses a plane.
struct PlaneCrossing {
    bool meets;   ///< not parallel, and seen: then there is a parameter
    bool inside;  ///< and the parameter lies within the object
    float parameter;
    ZmVector point;

    /// The outputs of the plane tests: the parameter comes before the check of its range.
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
    const bool meets = facing == Facing::Front ? !(approach > -kEpsilon) : !(fabsf(approach) < kEpsilon);
    const bool before = reach != Reach::Line && t < -kEpsilon, beyond = reach == Reach::Segment && t > kOnePlus;
    return {meets, bool(meets & !before & !beyond), t, ray.Origin + ray.Direction * t};
}

}  // namespace zm

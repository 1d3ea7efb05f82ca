#pragma once

#include "ZmRay.h"

/// Squared Euclidean distances between lines, rays, segments and points.
///
/// A ZmRay is interpreted as the function's name says: as a line (Origin + t * Direction, any t), a ray (t >= 0) or a
/// segment (0 <= t <= 1, so Direction is end minus start). Directions need not be of unit length. The pointers receive
/// the parameters of the closest points, the first object's first; a null pointer is skipped.
///
/// Everything is computed in double, so that neither nearly parallel directions nor very different lengths cost
/// precision: the distance belongs to the parameters before they are rounded to float. If several pairs of points are
/// closest, one of them is returned. Any thread may call; the results have the same bits on every path and platform.
///
/// Between two linear objects a zero direction represents a point with the parameter 0. A line paired with such a
/// point reports its nearest point, not the 0 of parallel lines. In the three functions for points, a zero direction
/// gives NaN for a line, while a ray or segment is treated as a point.
class ZmDistance {
public:
    /// A line counts as parallel to the other object if |Direction0 x Direction1|^2 is below 2^-23, whatever the
    /// lengths of the directions. Then *t1 = 0 and *t0 is the foot of the other object's origin on the line, although
    /// objects that are not quite parallel come closer elsewhere. Pass directions of sensible length: for unit vectors
    /// the limit is an angle of 0.02 degrees; if the product of the lengths is below 3.4e-4, any directions count as
    /// parallel.
    ZM_API static float LineLineSquareDistance(const ZmRay& line0, const ZmRay& line1, float* t0, float* t1);
    ZM_API static float LineRaySquareDistance(const ZmRay& line, const ZmRay& ray, float* t0, float* t1);
    ZM_API static float LineSegmentSquareDistance(const ZmRay& line, const ZmRay& segment, float* t0, float* t1);

    /// These return the smallest distance for nearly parallel pairs as well, and for directions of any length. If the
    /// directions are parallel to float precision, the second parameter is 0 if that belongs to a closest pair.
    ZM_API static float RayRaySquareDistance(const ZmRay& ray0, const ZmRay& ray1, float* t0, float* t1);
    ZM_API static float RaySegmentSquareDistance(const ZmRay& ray, const ZmRay& segment, float* t0, float* t1);
    ZM_API static float SegmentSegmentSquareDistance(const ZmRay& segment0, const ZmRay& segment1, float* t0,
                                                     float* t1);

    /// `t` receives the parameter of the closest point.
    ZM_API static float PointLineSquareDistance(const ZmVector& point, const ZmRay& line, float* t);
    ZM_API static float PointRaySquareDistance(const ZmVector& point, const ZmRay& ray, float* t);
    ZM_API static float PointSegmentSquareDistance(const ZmVector& point, const ZmRay& segment, float* t);
};

#pragma once

#include "ZmRay.h"

/// Squared Euclidean distances between lines, rays, segments and points.
///
/// A ZmRay is read as what the function's name says: a line (Origin + t * Direction, any t), a ray (t >= 0) or
/// a segment (0 <= t <= 1, so Direction is end minus start). Directions need not be of unit length. The
/// pointers get the parameters of the closest points, the first object's first; a null pointer is not written.
///
/// Computed in double throughout, so that neither nearly parallel directions nor lengths that are thousands
/// of times apart cost digits: the distance is that of the parameters before they are rounded to float.
/// Where several pairs are closest, one of them is given. Any thread; the same bits on every path
/// and platform.
///
/// Between two linear objects a zero direction stands for a point, with the parameter 0; beside a point, a line keeps
/// its nearest point and not the 0 of parallel lines. In the three forms for points a zero direction gives a
/// non-number, unless the object is a ray or a segment, where it is a point too.
class ZmDistance {
public:
    /// A line counts as parallel to the other object when |Direction0 x Direction1|^2 is below 2^-23, whatever the
    /// lengths of the directions. Then *t1 = 0 and *t0 is the foot of the other origin on the line, although objects
    /// that are not quite parallel come closer somewhere. So pass directions of a sensible length: for unit vectors the
    /// limit is an angle of 0.02 degrees; where the product of the lengths is below 3.4e-4 any direction counts as
    /// parallel.
    ZM_API static float LineLineSquareDistance(const ZmRay& line0, const ZmRay& line1, float* t0, float* t1);
    ZM_API static float LineRaySquareDistance(const ZmRay& line, const ZmRay& ray, float* t0, float* t1);
    ZM_API static float LineSegmentSquareDistance(const ZmRay& line, const ZmRay& segment, float* t0, float* t1);

    /// These give the smallest distance for nearly parallel pairs too, and for directions of any length. Where
    /// directions are parallel as far as floats can tell, the second parameter is 0 if that belongs to a closest pair.
    ZM_API static float RayRaySquareDistance(const ZmRay& ray0, const ZmRay& ray1, float* t0, float* t1);
    ZM_API static float RaySegmentSquareDistance(const ZmRay& ray, const ZmRay& segment, float* t0, float* t1);
    ZM_API static float SegmentSegmentSquareDistance(const ZmRay& segment0, const ZmRay& segment1, float* t0,
                                                     float* t1);

    /// `t` is the parameter of the closest point.
    ZM_API static float PointLineSquareDistance(const ZmVector& point, const ZmRay& line, float* t);
    ZM_API static float PointRaySquareDistance(const ZmVector& point, const ZmRay& ray, float* t);
    ZM_API static float PointSegmentSquareDistance(const ZmVector& point, const ZmRay& segment, float* t);
};

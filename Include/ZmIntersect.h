#pragma once

#include "ZmBbox.h"
#include "ZmFrustum.h"
#include "ZmOBB.h"
#include "ZmPlane.h"
#include "ZmRay.h"
#include "ZmSphere.h"

/// Overlap tests between rays, segments, lines, planes, triangles, spheres, boxes and the frustum.
///
/// A ZmRay stands for three things, told apart by the function that is called: a ray (Origin + t * Direction
/// with t >= 0), a segment (0 <= t <= 1, so Direction is end minus start) or a line (any t). Directions need
/// not be of unit length, and `dist` is always t, no Euclidean distance.
///
/// Every function returns 0 for no intersection. The tolerance EPS is 2^-23, whatever the size of what is compared with
/// it: directions and normals of about unit length are judged as one expects, tiny ones count as parallel or as
/// nothing. The parameter of a segment may reach 1 + 2^-23. Outputs keep their values where nothing is said about them;
/// they must not lie inside an input of the same call, except where that input is a plain point. Non-numbers in the
/// input give 0 or a result without meaning, never a crash. No state: any thread may call. All functions give the same
/// bits whatever the feature word says.
class ZmIntersect {
public:
    // --- Planes -------------------------------------------------------------------
    //
    // Parallel, that is |Normal . Direction| < EPS: 0 with nothing written. Else `dist` is written, also when
    // the range of t then gives 0; `point` is written for a hit only. The culled forms see planes only whose
    // normal faces the start: Normal . Direction <= -EPS, else 0 with nothing written.

    /// 1 for t >= -EPS.
    ZM_API static int RayPlane(const ZmRay& ray, const ZmPlane& plane, ZmVector& point, float& dist);
    ZM_API static int RayPlaneCulled(const ZmRay& ray, const ZmPlane& plane, ZmVector& point, float& dist);
    /// 1 for -EPS <= t <= 1 + EPS.
    ZM_API static int SegmentPlane(const ZmRay& segment, const ZmPlane& plane, ZmVector& point, float& dist);
    ZM_API static int SegmentPlaneCulled(const ZmRay& segment, const ZmPlane& plane, ZmVector& point, float& dist);
    /// 1 for any t.
    ZM_API static int LinePlane(const ZmRay& line, const ZmPlane& plane, ZmVector& point, float& dist);

    /// 1 when the plane cuts or touches the box, without tolerance.
    ZM_API static int BoxPlane(const ZmBbox& box, const ZmPlane& plane);
    /// The same for the box placed by an affine matrix.
    ZM_API static int BoxPlane(const ZmBbox& box, const ZmMatrix& matrix, const ZmPlane& plane);

    /// The point that three planes share. 0, with `point` untouched, only when their determinant is exactly
    /// 0: nearly parallel planes give a point far away.
    ZM_API static int Planes(const ZmPlane& plane1, const ZmPlane& plane2, const ZmPlane& plane3, ZmVector& point);

    // --- Axis-aligned boxes and lines ---------------------------------------------
    //
    // With points: where the line enters (`inPoint`) and leaves (`outPoint`) the box, and the normals of those
    // two faces; the pointers may be null. BOTH normals point against the direction of travel, so
    // that of the exit points into the box. All outputs are written for a hit only. A direction component
    // below EPS counts as parallel to its slab, whose faces belong to it.

    /// 1 when the ray enters the box from outside, -1 when its origin lies inside (t of entry <= EPS; inPoint
    /// is then behind the origin), 0 for a miss or a box behind the origin (t of exit < EPS).
    ZM_API static int RayBox(const ZmRay& ray, const ZmBbox& box, ZmVector& inPoint, ZmVector* outPoint,
                             ZmVector* inNormal, ZmVector* outNormal);
    /// The same for a segment. One that lies wholly inside crosses no face and gives 0.
    ZM_API static int SegmentBox(const ZmRay& segment, const ZmBbox& box, ZmVector& inPoint, ZmVector* outPoint,
                                 ZmVector* inNormal, ZmVector* outNormal);
    /// 1 or 0. Every comparison of parameters is one of absolute values: inPoint is the crossing nearest to the origin,
    /// outPoint the farthest, in either direction. Sizes alone also decide between 1 and 0, so that some lines through
    /// the box give 0 and some past it 1. Callers rely on it; the form without points is exact.
    ZM_API static int LineBox(const ZmRay& line, const ZmBbox& box, ZmVector& inPoint, ZmVector* outPoint,
                              ZmVector* inNormal, ZmVector* outNormal);

    /// 1 or 0 by separating axes: exact but for rounding, touching counts, a segment inside the box counts.
    ZM_API static int RayBox(const ZmRay& ray, const ZmBbox& box);
    ZM_API static int SegmentBox(const ZmRay& segment, const ZmBbox& box);
    ZM_API static int LineBox(const ZmRay& line, const ZmBbox& box);

    // --- Triangles ----------------------------------------------------------------
    //
    // `normal` is the caller's and never computed from the corners. Make it a unit vector: a vector product of two
    // edges shrinks with the square of their length, and EPS does not. With such a normal RayFace and the others take
    // every ray of unit length for parallel to a triangle with edges of 3e-4 or less, and FaceFace takes parallel
    // triangles with edges of 1e-3 or less for crossing though they are ten edges apart.

    /// Whether a point of the triangle's plane lies in the triangle, seen along the largest component of the
    /// normal (the first of equals): 1 for one winding, 2 for the other, 0 outside. A point on
    /// an edge is inside for winding 2 only. i1 and i2 get the two axes that are kept.
    ZM_API static int PointInFace(const ZmVector& point, const ZmVector& pt0, const ZmVector& pt1, const ZmVector& pt2,
                                  const ZmVector& normal, int& i1, int& i2);

    /// The plane test of the triangle's plane, with its outputs, then PointInFace of the point. When the
    /// plane is missed i1 and i2 are not written; when only the triangle is, all outputs are.
    ZM_API static int RayFace(const ZmRay& ray, const ZmVector& pt0, const ZmVector& pt1, const ZmVector& pt2,
                              const ZmVector& normal, ZmVector& point, float& dist);
    ZM_API static int RayFace(const ZmRay& ray, const ZmVector& pt0, const ZmVector& pt1, const ZmVector& pt2,
                              const ZmVector& normal, ZmVector& point, float& dist, int& i1, int& i2);
    ZM_API static int RayFaceCulled(const ZmRay& ray, const ZmVector& pt0, const ZmVector& pt1, const ZmVector& pt2,
                                    const ZmVector& normal, ZmVector& point, float& dist, int& i1, int& i2);
    ZM_API static int SegmentFace(const ZmRay& segment, const ZmVector& pt0, const ZmVector& pt1, const ZmVector& pt2,
                                  const ZmVector& normal, ZmVector& point, float& dist);
    ZM_API static int SegmentFace(const ZmRay& segment, const ZmVector& pt0, const ZmVector& pt1, const ZmVector& pt2,
                                  const ZmVector& normal, ZmVector& point, float& dist, int& i1, int& i2);
    ZM_API static int SegmentFaceCulled(const ZmRay& segment, const ZmVector& pt0, const ZmVector& pt1,
                                        const ZmVector& pt2, const ZmVector& normal, ZmVector& point, float& dist,
                                        int& i1, int& i2);
    ZM_API static int LineFace(const ZmRay& line, const ZmVector& pt0, const ZmVector& pt1, const ZmVector& pt2,
                               const ZmVector& normal, ZmVector& point, float& dist);
    ZM_API static int LineFace(const ZmRay& line, const ZmVector& pt0, const ZmVector& pt1, const ZmVector& pt2,
                               const ZmVector& normal, ZmVector& point, float& dist, int& i1, int& i2);

    /// The weights with which a point of the triangle's plane is c0 * pt0 + c1 * pt1 + c2 * pt2, from the axes
    /// that PointInFace keeps. An axis beyond 2 counts as 2. A degenerate triangle gives non-numbers
    /// or infinities.
    ZM_API static void GetPointCoefficients(const ZmVector& point, const ZmVector& pt0, const ZmVector& pt1,
                                            const ZmVector& pt2, const int& i1, const int& i2, float& c0, float& c1,
                                            float& c2);

    /// Whether two triangles share a point, touching included. Distances below EPS count as 0; triangles of
    /// one plane are compared inside it, degenerate ones as the segments or points that they are.
    ZM_API static int FaceFace(const ZmVector& a0, const ZmVector& a1, const ZmVector& a2, const ZmVector& aNormal,
                               const ZmVector& b0, const ZmVector& b1, const ZmVector& b2, const ZmVector& bNormal);

    // --- Spheres ------------------------------------------------------------------

    /// The points in which the whole LINE of the ray meets the sphere, those behind the origin included:
    /// 2 with both written in the order of travel, 1 with inter1 written where the line just touches, or 0.
    /// The pointers must not be null. A zero direction gives 0. In double, so that spheres thousands of radii away are
    /// met where they are; the points are rounded to floats.
    ZM_API static int RaySphere(const ZmRay& ray, const ZmSphere& sphere, ZmVector* inter1, ZmVector* inter2);

    /// Whether two spheres meet while each moves straight from its centre to its end: 1 with the first meeting
    /// in [0, 1], else 0. Spheres that touch at the start give 1 with both times 0. Otherwise
    /// *t0 <= *t1 are the times at which they touch, written also when they lie outside [0, 1], but not when
    /// the spheres never meet on their lines; 0 and 0 without relative motion. A null pointer is not written. In
    /// double.
    ZM_API static int SphereSphere(const ZmSphere& sphere1, const ZmVector& end1, const ZmSphere& sphere2,
                                   const ZmVector& end2, float* t0, float* t1);

    /// 1 when they overlap; touching counts.
    ZM_API static int SphereAABB(const ZmSphere& sphere, const ZmBbox& box);

    // --- Boxes --------------------------------------------------------------------

    /// 1 when the boxes overlap; touching counts.
    ZM_API static int AABBAABB(const ZmBbox& box1, const ZmBbox& box2);

    /// 1 or 0 by the fifteen separating axes, without tolerance and without a special case for
    /// parallel edges: their axes are zero but for rounding, which may then part boxes that only just overlap.
    ZM_API static int AABBOBB(const ZmBbox& box, const ZmOBB& obb);
    ZM_API static int OBBOBB(const ZmOBB& obb1, const ZmOBB& obb2);

    /// 1 when box and triangle share a point: a corner of the triangle in the box, an edge through it, or the
    /// box poking through the triangle.
    ZM_API static int AABBFace(const ZmBbox& box, const ZmVector& pt0, const ZmVector& pt1, const ZmVector& pt2,
                               const ZmVector& normal);

    // --- The view frustum ---------------------------------------------------------

    /// 0 when all three points lie strictly in front of one of the six planes, else 1, also for some triangles
    /// outside near a corner.
    ZM_API static int FrustumFace(const ZmFrustum& frustum, const ZmVector& pt0, const ZmVector& pt1,
                                  const ZmVector& pt2);

    /// A quick test of a box placed by an affine matrix against the six planes, in the order near, far, left,
    /// right, top, bottom: 0 when the box lies wholly in front of a plane, 1 at the first
    /// plane that it straddles or touches, WITHOUT a look at the planes that follow, 1 when inside all. So a box that
    /// straddles the near plane gives 1 wherever it lies beside it. Callers rely on that.
    ZM_API static int FrustumBox(const ZmFrustum& frustum, const ZmBbox& box, const ZmMatrix& matrix);

    /// 1 or 0, exact but for rounding; touching counts. Reads the eye, the axes, the half-sizes, the two distances
    /// and their ratio, not the planes. Edges that run parallel part nothing.
    ZM_API static int FrustumAABB(const ZmFrustum& frustum, const ZmBbox& box);
    /// The same for a box placed by an affine matrix, sheared and flat ones included.
    ZM_API static int FrustumOBB(const ZmFrustum& frustum, const ZmBbox& box, const ZmMatrix& matrix);
};

#pragma once

#include "ZmBbox.h"
#include "ZmFrustum.h"
#include "ZmOBB.h"
#include "ZmPlane.h"
#include "ZmRay.h"
#include "ZmSphere.h"

/// Overlap tests between rays, segments, lines, planes, triangles, spheres, boxes and the frustum.
///
/// A ZmRay represents one of three things, depending on the function: a ray (Origin + t * Direction with t >= 0), a
/// segment (0 <= t <= 1, so Direction is end minus start) or a line (any t). Directions need not be of unit length, and
/// `dist` is always t, not a Euclidean distance.
///
/// Every function returns 0 for no intersection. The tolerance EPS is 2^-23 and is absolute: it suits directions and
/// normals of about unit length, while tiny ones count as parallel or as zero. The parameter of a segment may reach
/// 1 + 2^-23. Outputs stay unchanged unless stated otherwise. They must not lie inside an input of the same call,
/// unless that input is a plain point. NaNs in the input give 0 or a meaningless result, never a crash. There is no
/// shared state: any thread may call. All functions give the same bits for every value of the feature word.
class ZmIntersect {
public:
    // --- Planes -------------------------------------------------------------------
    //
    // If the line is parallel to the plane, |Normal . Direction| < EPS, the functions return 0 and write nothing.
    // Otherwise they write `dist`, even when the range of t then gives 0; they write `point` for a hit only. The culled
    // forms see only planes whose normal faces the start: without Normal . Direction <= -EPS they return 0 and write
    // nothing.

    /// Returns 1 for t >= -EPS.
    ZM_API static int RayPlane(const ZmRay& ray, const ZmPlane& plane, ZmVector& point, float& dist);
    ZM_API static int RayPlaneCulled(const ZmRay& ray, const ZmPlane& plane, ZmVector& point, float& dist);
    /// Returns 1 for -EPS <= t <= 1 + EPS.
    ZM_API static int SegmentPlane(const ZmRay& segment, const ZmPlane& plane, ZmVector& point, float& dist);
    ZM_API static int SegmentPlaneCulled(const ZmRay& segment, const ZmPlane& plane, ZmVector& point, float& dist);
    /// Returns 1 for any t.
    ZM_API static int LinePlane(const ZmRay& line, const ZmPlane& plane, ZmVector& point, float& dist);

    /// Returns 1 if the plane cuts or touches the box, without tolerance.
    ZM_API static int BoxPlane(const ZmBbox& box, const ZmPlane& plane);
    /// The same for a box placed by an affine matrix.
    ZM_API static int BoxPlane(const ZmBbox& box, const ZmMatrix& matrix, const ZmPlane& plane);

    /// Computes the point shared by three planes. Returns 0, with `point` unchanged, only if their determinant is
    /// exactly 0: nearly parallel planes give a point far away.
    ZM_API static int Planes(const ZmPlane& plane1, const ZmPlane& plane2, const ZmPlane& plane3, ZmVector& point);

    // --- Axis-aligned boxes and lines ---------------------------------------------
    //
    // The forms with points give the points where the line enters (`inPoint`) and leaves (`outPoint`) the box, and the
    // normals of those two faces; the pointers may be null. BOTH normals point against the direction of travel, so the
    // exit normal points into the box. Outputs are written for a hit only. A direction component below EPS counts as
    // parallel to its slab; the faces belong to the slab.

    /// Returns 1 if the ray enters the box from outside, -1 if its origin lies inside (t of entry <= EPS; inPoint is
    /// then behind the origin), 0 for a miss or a box behind the origin (t of exit < EPS).
    ZM_API static int RayBox(const ZmRay& ray, const ZmBbox& box, ZmVector& inPoint, ZmVector* outPoint,
                             ZmVector* inNormal, ZmVector* outNormal);
    /// The same for a segment. A segment wholly inside the box crosses no face and gives 0.
    ZM_API static int SegmentBox(const ZmRay& segment, const ZmBbox& box, ZmVector& inPoint, ZmVector* outPoint,
                                 ZmVector* inNormal, ZmVector* outNormal);
    /// Returns 1 or 0. All comparisons of the parameter t use its absolute value: inPoint is the crossing nearest to
    /// the origin and outPoint the farthest, in either direction. The result, too, depends on absolute values only, so
    /// some lines through the box give 0 and some lines past it give 1. Callers rely on this; the form without points
    /// is exact.
    ZM_API static int LineBox(const ZmRay& line, const ZmBbox& box, ZmVector& inPoint, ZmVector* outPoint,
                              ZmVector* inNormal, ZmVector* outNormal);

    /// Return 1 or 0 by separating axes, exact apart from rounding. Touching counts, and so does a segment inside the
    /// box.
    ZM_API static int RayBox(const ZmRay& ray, const ZmBbox& box);
    ZM_API static int SegmentBox(const ZmRay& segment, const ZmBbox& box);
    ZM_API static int LineBox(const ZmRay& line, const ZmBbox& box);

    // --- Triangles ----------------------------------------------------------------
    //
    // `normal` is supplied by the caller and never computed from the corners. It should be a unit vector: the vector
    // product of two edges shrinks with the square of their length, while EPS does not. With such a normal, RayFace and
    // the other line tests treat every ray of unit length as parallel to a triangle with edges of 3e-4 or less, and
    // FaceFace reports parallel triangles with edges of 1e-3 or less as crossing even when they are ten edges apart.

    /// Tests whether a point of the triangle's plane lies in the triangle, seen along the largest component of the
    /// normal (the first of equals). Returns 1 for one winding, 2 for the other, 0 outside. A point on an edge is
    /// inside for winding 2 only. i1 and i2 receive the two axes that are kept.
    ZM_API static int PointInFace(const ZmVector& point, const ZmVector& pt0, const ZmVector& pt1, const ZmVector& pt2,
                                  const ZmVector& normal, int& i1, int& i2);

    /// Run the plane test on the triangle's plane, with its outputs, then PointInFace on the point found. If the plane
    /// is missed, i1 and i2 are not written; if only the triangle is missed, all outputs are written.
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

    /// Computes the weights that express a point of the triangle's plane as c0 * pt0 + c1 * pt1 + c2 * pt2, on the axes
    /// kept by PointInFace. An axis beyond 2 counts as 2. A degenerate triangle gives NaNs or infinities.
    ZM_API static void GetPointCoefficients(const ZmVector& point, const ZmVector& pt0, const ZmVector& pt1,
                                            const ZmVector& pt2, const int& i1, const int& i2, float& c0, float& c1,
                                            float& c2);

    /// Tests whether two triangles share a point; touching counts. Distances below EPS count as 0. Triangles in the
    /// same plane are compared within it, degenerate ones as segments or points.
    ZM_API static int FaceFace(const ZmVector& a0, const ZmVector& a1, const ZmVector& a2, const ZmVector& aNormal,
                               const ZmVector& b0, const ZmVector& b1, const ZmVector& b2, const ZmVector& bNormal);

    // --- Spheres ------------------------------------------------------------------

    /// Finds the points where the whole LINE of the ray meets the sphere, including points behind the origin. Returns 2
    /// with both points written in the order of travel, 1 with inter1 written if the line just touches, or 0. The
    /// pointers must not be null. A zero direction gives 0. Computed in double, so that spheres thousands of radii away
    /// are hit accurately; the points are rounded to float.
    ZM_API static int RaySphere(const ZmRay& ray, const ZmSphere& sphere, ZmVector* inter1, ZmVector* inter2);

    /// Tests whether two spheres meet while each moves straight from its centre to its end. Returns 1 if they first
    /// meet in [0, 1], else 0. Spheres that touch at the start give 1 with both times 0. Otherwise *t0 <= *t1 are the
    /// times at which they touch; both are written even outside [0, 1], but not if the spheres never meet on their
    /// lines. Without relative motion both times are 0. A null pointer is skipped. Computed in double.
    ZM_API static int SphereSphere(const ZmSphere& sphere1, const ZmVector& end1, const ZmSphere& sphere2,
                                   const ZmVector& end2, float* t0, float* t1);

    /// Returns 1 if sphere and box overlap; touching counts.
    ZM_API static int SphereAABB(const ZmSphere& sphere, const ZmBbox& box);

    // --- Boxes --------------------------------------------------------------------

    /// Returns 1 if the boxes overlap; touching counts.
    ZM_API static int AABBAABB(const ZmBbox& box1, const ZmBbox& box2);

    /// Return 1 or 0 by the fifteen separating axes, without tolerance. Parallel edges get no special treatment: their
    /// axes are zero apart from rounding, which may separate boxes that only just overlap.
    ZM_API static int AABBOBB(const ZmBbox& box, const ZmOBB& obb);
    ZM_API static int OBBOBB(const ZmOBB& obb1, const ZmOBB& obb2);

    /// Returns 1 if box and triangle share a point: a corner of the triangle inside the box, an edge through the box,
    /// or the box poking through the triangle.
    ZM_API static int AABBFace(const ZmBbox& box, const ZmVector& pt0, const ZmVector& pt1, const ZmVector& pt2,
                               const ZmVector& normal);

    // --- The view frustum ---------------------------------------------------------

    /// Returns 0 if all three points lie strictly in front of one of the six planes, else 1; some triangles outside the
    /// frustum near a corner also give 1.
    ZM_API static int FrustumFace(const ZmFrustum& frustum, const ZmVector& pt0, const ZmVector& pt1,
                                  const ZmVector& pt2);

    /// Quick test of a box placed by an affine matrix against the planes near, far, left, right, top, bottom, in that
    /// order. Returns 0 if the box lies wholly in front of a plane, 1 at the first plane that it straddles or touches,
    /// WITHOUT testing the remaining planes, and 1 if it is inside all of them. So a box that straddles the near plane
    /// gives 1 even if it lies far to the side. Callers rely on this.
    ZM_API static int FrustumBox(const ZmFrustum& frustum, const ZmBbox& box, const ZmMatrix& matrix);

    /// Returns 1 or 0, exact apart from rounding; touching counts. Reads the eye, the axes, the half-sizes, the two
    /// distances and their ratio, not the planes. Parallel edges yield no separating axis.
    ZM_API static int FrustumAABB(const ZmFrustum& frustum, const ZmBbox& box);
    /// The same for a box placed by an affine matrix, including sheared and flat boxes.
    ZM_API static int FrustumOBB(const ZmFrustum& frustum, const ZmBbox& box, const ZmMatrix& matrix);
};

#pragma once

#include "Queries/PlaneCrossing.h"

namespace zm {

/// The two axes that remain when a plane is projected along the largest component of its normal.
struct KeptAxes {
    int i1, i2;

    explicit KeptAxes(const ZmVector& normal)
    {
        const float x = fabsf(normal.x), y = fabsf(normal.y), z = fabsf(normal.z);
        const bool dropsY = x < y, dropsZ = (dropsY ? y : x) < z;
        i1 = !(dropsY | dropsZ);
        i2 = 2 - dropsZ;
    }
};

/// 1 if p lies on the first side of the edge from `a` to `b`, else 2.
inline int SideOfEdge(const ZmVector& p, const ZmVector& a, const ZmVector& b, KeptAxes kept)
{
    const int u = kept.i1, v = kept.i2;
    return (p[u] - a[u]) * (b[v] - a[v]) - (b[u] - a[u]) * (p[v] - a[v]) < 0 ? 1 : 2;
}

/// The winding, 1 or 2, if the point lies inside all edges, else 0.
inline int PointInTriangle(const ZmVector& p, const ZmVector& pt0, const ZmVector& pt1, const ZmVector& pt2,
                           KeptAxes kept)
{
    return SideOfEdge(p, pt0, pt1, kept) & SideOfEdge(p, pt1, pt2, kept) & SideOfEdge(p, pt2, pt0, kept);
}

/// Intersects a linear object with a triangle and fills the outputs of the face tests. Branch-free: whether the plane
/// or the triangle is missed cannot be predicted.
template <Reach reach, Facing facing>
inline int CrossFace(const ZmRay& ray, const ZmVector& pt0, const ZmVector& pt1, const ZmVector& pt2,
                     const ZmVector& normal, ZmVector& point, float& dist, int& i1, int& i2)
{
    ZmPlane plane;
    plane.Normal = normal;
    plane.D = -Dot(normal, pt0);
    const PlaneCrossing crossing = CrossPlane<reach, facing>(ray, plane);
    const KeptAxes kept(normal);
    const int winding = PointInTriangle(crossing.point, pt0, pt1, pt2, kept);
    crossing.Store(point, dist);
    StoreIf(crossing.inside, i1, kept.i1);
    StoreIf(crossing.inside, i2, kept.i2);
    return winding & -int(crossing.inside);
}

}  // namespace zm

#include "Queries/FaceCrossing.h"
#include "ZmIntersect.h"

namespace zm {
namespace {

/// The overloads that do not return the axes.
template <Reach reach>
int CrossEitherFace(const ZmRay& ray, const ZmVector& pt0, const ZmVector& pt1, const ZmVector& pt2,
                    const ZmVector& normal, ZmVector& point, float& dist)
{
    int i1 = 0, i2 = 0;
    return CrossFace<reach, Facing::ANY>(ray, pt0, pt1, pt2, normal, point, dist, i1, i2);
}

/// Component 0, 1 or, for every other number, 2.
float Component(const ZmVector& v, int axis)
{
    return axis == 0 ? v.x : axis == 1 ? v.y : v.z;
}

}  // namespace
}  // namespace zm

int ZmIntersect::PointInFace(const ZmVector& point, const ZmVector& pt0, const ZmVector& pt1, const ZmVector& pt2,
                             const ZmVector& normal, int& i1, int& i2)
{
    const zm::KeptAxes kept(normal);
    i1 = kept.i1;
    i2 = kept.i2;
    return zm::PointInTriangle(point, pt0, pt1, pt2, kept);
}

int ZmIntersect::RayFace(const ZmRay& ray, const ZmVector& pt0, const ZmVector& pt1, const ZmVector& pt2,
                         const ZmVector& normal, ZmVector& point, float& dist)
{
    return zm::CrossEitherFace<zm::Reach::RAY>(ray, pt0, pt1, pt2, normal, point, dist);
}

int ZmIntersect::RayFace(const ZmRay& ray, const ZmVector& pt0, const ZmVector& pt1, const ZmVector& pt2,
                         const ZmVector& normal, ZmVector& point, float& dist, int& i1, int& i2)
{
    return zm::CrossFace<zm::Reach::RAY, zm::Facing::ANY>(ray, pt0, pt1, pt2, normal, point, dist, i1, i2);
}

int ZmIntersect::RayFaceCulled(const ZmRay& ray, const ZmVector& pt0, const ZmVector& pt1, const ZmVector& pt2,
                               const ZmVector& normal, ZmVector& point, float& dist, int& i1, int& i2)
{
    return zm::CrossFace<zm::Reach::RAY, zm::Facing::FRONT>(ray, pt0, pt1, pt2, normal, point, dist, i1, i2);
}

int ZmIntersect::SegmentFace(const ZmRay& segment, const ZmVector& pt0, const ZmVector& pt1, const ZmVector& pt2,
                             const ZmVector& normal, ZmVector& point, float& dist)
{
    return zm::CrossEitherFace<zm::Reach::SEGMENT>(segment, pt0, pt1, pt2, normal, point, dist);
}

int ZmIntersect::SegmentFace(const ZmRay& segment, const ZmVector& pt0, const ZmVector& pt1, const ZmVector& pt2,
                             const ZmVector& normal, ZmVector& point, float& dist, int& i1, int& i2)
{
    return zm::CrossFace<zm::Reach::SEGMENT, zm::Facing::ANY>(segment, pt0, pt1, pt2, normal, point, dist, i1, i2);
}

int ZmIntersect::SegmentFaceCulled(const ZmRay& segment, const ZmVector& pt0, const ZmVector& pt1, const ZmVector& pt2,
                                   const ZmVector& normal, ZmVector& point, float& dist, int& i1, int& i2)
{
    return zm::CrossFace<zm::Reach::SEGMENT, zm::Facing::FRONT>(segment, pt0, pt1, pt2, normal, point, dist, i1, i2);
}

int ZmIntersect::LineFace(const ZmRay& line, const ZmVector& pt0, const ZmVector& pt1, const ZmVector& pt2,
                          const ZmVector& normal, ZmVector& point, float& dist)
{
    return zm::CrossEitherFace<zm::Reach::LINE>(line, pt0, pt1, pt2, normal, point, dist);
}

int ZmIntersect::LineFace(const ZmRay& line, const ZmVector& pt0, const ZmVector& pt1, const ZmVector& pt2,
                          const ZmVector& normal, ZmVector& point, float& dist, int& i1, int& i2)
{
    return zm::CrossFace<zm::Reach::LINE, zm::Facing::ANY>(line, pt0, pt1, pt2, normal, point, dist, i1, i2);
}

void ZmIntersect::GetPointCoefficients(const ZmVector& point, const ZmVector& pt0, const ZmVector& pt1,
                                       const ZmVector& pt2, const int& i1, const int& i2, float& c0, float& c1,
                                       float& c2)
{
    // u0 = c1 * u1 + c2 * u2, v0 = c1 * v1 + c2 * v2.
    const ZmVector offset = point - pt0, edge1 = pt1 - pt0, edge2 = pt2 - pt0;
    const float u0 = zm::Component(offset, i1), u1 = zm::Component(edge1, i1), u2 = zm::Component(edge2, i1);
    const float v0 = zm::Component(offset, i2), v1 = zm::Component(edge1, i2), v2 = zm::Component(edge2, i2);
    float weight1, weight2;
    if (u1 == 0) {
        weight2 = u0 / u2;
        weight1 = (v0 - weight2 * v2) / v1;
    } else {
        weight2 = (v0 * u1 - u0 * v1) / (v2 * u1 - u2 * v1);
        weight1 = (u0 - weight2 * u2) / u1;
    }
    c0 = 1 - (weight1 + weight2);
    c1 = weight1;
    c2 = weight2;
}

#include "Queries/BoxShape.h"
#include "Queries/PlaneCrossing.h"
#include "ZmIntersect.h"

namespace zm {
namespace {

template <Reach reach, Facing facing>
int MeetsPlane(const ZmRay& ray, const ZmPlane& plane, ZmVector& point, float& dist)
{
    const PlaneCrossing crossing = CrossPlane<reach, facing>(ray, plane);
    crossing.Store(point, dist);
    return crossing.inside;
}

float SignedDistance(const ZmPlane& plane, const ZmVector& p)
{
    return Dot(plane.Normal, p) + plane.D;
}

}  // namespace
}  // namespace zm

int ZmIntersect::RayPlane(const ZmRay& ray, const ZmPlane& plane, ZmVector& point, float& dist)
{
    return zm::MeetsPlane<zm::Reach::RAY, zm::Facing::ANY>(ray, plane, point, dist);
}

int ZmIntersect::RayPlaneCulled(const ZmRay& ray, const ZmPlane& plane, ZmVector& point, float& dist)
{
    return zm::MeetsPlane<zm::Reach::RAY, zm::Facing::FRONT>(ray, plane, point, dist);
}

int ZmIntersect::SegmentPlane(const ZmRay& segment, const ZmPlane& plane, ZmVector& point, float& dist)
{
    return zm::MeetsPlane<zm::Reach::SEGMENT, zm::Facing::ANY>(segment, plane, point, dist);
}

int ZmIntersect::SegmentPlaneCulled(const ZmRay& segment, const ZmPlane& plane, ZmVector& point, float& dist)
{
    return zm::MeetsPlane<zm::Reach::SEGMENT, zm::Facing::FRONT>(segment, plane, point, dist);
}

int ZmIntersect::LinePlane(const ZmRay& line, const ZmPlane& plane, ZmVector& point, float& dist)
{
    return zm::MeetsPlane<zm::Reach::LINE, zm::Facing::ANY>(line, plane, point, dist);
}

int ZmIntersect::BoxPlane(const ZmBbox& box, const ZmPlane& plane)
{
    const zm::Diagonal along(box, plane.Normal);
    return !(zm::SignedDistance(plane, along.first) > 0) && !(zm::SignedDistance(plane, along.last) < 0);
}

int ZmIntersect::BoxPlane(const ZmBbox& box, const ZmMatrix& matrix, const ZmPlane& plane)
{
    const zm::PlacedBox placed(box, matrix);
    float radius = 0;
    for (int i = 0; i < 3; ++i) {
        radius += fabsf(Dot(plane.Normal, placed.axis[i] * placed.half[i]));
    }
    return fabsf(zm::SignedDistance(plane, placed.centre)) <= radius;
}

int ZmIntersect::Planes(const ZmPlane& plane1, const ZmPlane& plane2, const ZmPlane& plane3, ZmVector& point)
{
    const ZmMatrix normals(plane1.Normal, plane2.Normal, plane3.Normal, ZmVector(0, 0, 0));
    const float determinant = Zm3DMatrixDeterminant(normals);
    if (determinant == 0) {
        return 0;
    }
    // Cramer's rule.
    const float inverse = 1 / determinant;
    ZmVector common;
    for (int column = 0; column < 3; ++column) {
        ZmMatrix replaced = normals;
        replaced[0][column] = -plane1.D;
        replaced[1][column] = -plane2.D;
        replaced[2][column] = -plane3.D;
        common[column] = Zm3DMatrixDeterminant(replaced) * inverse;
    }
    point = common;
    return 1;
}

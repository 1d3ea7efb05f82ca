#include "ZmFrustum.h"

#include "Math/Normalize.h"
#include "ZmTrigonometry.h"

#include <math.h>

namespace {

/// The plane through the eye and two edge directions; its normal points away from `inside`.
ZmPlane SidePlane(const ZmVector& eye, const ZmVector& edge0, const ZmVector& edge1, const ZmVector& inside)
{
    const ZmVector normal = zm::NormalizedExactly(Cross(edge0, edge1));
    ZmPlane plane;
    plane.Create(Dot(normal, inside) > 0 ? -normal : normal, eye);
    return plane;
}

/// Normalises an axis and returns its former length. A zero axis is left unchanged.
float TakeLength(ZmVector& axis)
{
    const float length = Length(axis);
    if (length > 0) {
        axis *= 1.0f / length;
    }
    return length;
}

}  // namespace

ZmFrustum::ZmFrustum()
    : Origin(0, 0, 0), Right(1, 0, 0), Up(0, 1, 0), Direction(0, 0, 1), HalfWidth(1), HalfHeight(1), NearDistance(1),
      FarDistance(2), Planes{}
{
    Update();
}

ZmFrustum::ZmFrustum(const ZmVector& origin, const ZmVector& right, const ZmVector& up, const ZmVector& dir,
                     float nearPlane, float farPlane, float fov, float aspectRatio)
    : Origin(origin), Right(right), Up(up), Direction(dir), HalfWidth(ZmTan(fov * 0.5f) * nearPlane),
      HalfHeight(HalfWidth * aspectRatio), NearDistance(nearPlane), FarDistance(farPlane), Planes{}
{
    Update();
}

void ZmFrustum::Update()
{
    FarNearRatio = FarDistance / NearDistance;
    WidthFactor = -2 * HalfWidth * FarDistance;
    HeightFactor = -2 * HalfHeight * FarDistance;

    const ZmVector ahead = Direction * NearDistance, aside = Right * HalfWidth, above = Up * HalfHeight;
    const ZmVector leftBottom = ahead - aside - above, rightBottom = ahead + aside - above;
    const ZmVector rightTop = ahead + aside + above, leftTop = ahead - aside + above;
    Planes[PLANE_NEAR].Create(-Direction, Origin + ahead);
    Planes[PLANE_LEFT] = SidePlane(Origin, leftBottom, leftTop, ahead);
    Planes[PLANE_RIGHT] = SidePlane(Origin, rightTop, rightBottom, ahead);
    Planes[PLANE_TOP] = SidePlane(Origin, leftTop, rightTop, ahead);
    Planes[PLANE_BOTTOM] = SidePlane(Origin, rightBottom, leftBottom, ahead);
    Planes[PLANE_FAR].Create(Direction, Origin + Direction * FarDistance);
}

void ZmFrustum::Transform(const ZmMatrix& m)
{
    Zm3DMultiplyMatrixVector(&Origin, m, &Origin);
    Right.Rotate(m);
    Up.Rotate(m);
    Direction.Rotate(m);
    HalfWidth *= TakeLength(Right);
    HalfHeight *= TakeLength(Up);
    const float depthScale = TakeLength(Direction);
    NearDistance *= depthScale;
    FarDistance *= depthScale;
    Update();
}

void ZmFrustum::ComputeVertices(ZmVector* vertices) const
{
    const ZmVector ahead = Direction * NearDistance, aside = Right * HalfWidth, above = Up * HalfHeight;
    const ZmVector corners[4] = {ahead - aside - above, ahead + aside - above, ahead + aside + above,
                                 ahead - aside + above};
    for (int i = 0; i < 4; ++i) {
        vertices[i] = Origin + corners[i];
        vertices[4 + i] = Origin + corners[i] * FarNearRatio;
    }
}

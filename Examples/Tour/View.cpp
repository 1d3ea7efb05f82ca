#include "View.h"

#include "Mesh.h"

#include <cmath>

ZmMatrix PerspectiveView(const ZmFrustum& frustum)
{
    const ZmMatrix cameraToWorld(frustum.Right, frustum.Up, frustum.Direction, frustum.Origin);
    ZmMatrix worldToCamera;
    Zm3DInverseMatrix(worldToCamera, cameraToWorld);

    ZmMatrix projection = ZmMatrix::Identity();
    const float depthScale = frustum.FarDistance / (frustum.FarDistance - frustum.NearDistance);
    projection[0][0] = frustum.NearDistance / frustum.HalfWidth;
    projection[1][1] = frustum.NearDistance / frustum.HalfHeight;
    projection[2][2] = depthScale;
    projection[2][3] = 1;
    projection[3][2] = -depthScale * frustum.NearDistance;
    projection[3][3] = 0;

    ZmMatrix worldToClip;
    Zm3DMultiplyMatrix4(worldToClip, projection, worldToCamera);
    return worldToClip;
}

ZmMatrix LookAlong(const ZmVector& direction)
{
    const bool steep = std::fabs(direction.y) > 0.9f;
    const ZmVector right = Unit(Cross(steep ? ZmVector::axisZ() : ZmVector::axisY(), direction));
    // The inverse of a rotation is its transpose.
    ZmMatrix view(right, Cross(direction, right), direction, ZmVector::axis0());
    Zm3DTransposeMatrix(view, view);
    return view;
}

ZmMatrix OrthographicProjection(const ZmBbox& box)
{
    const ZmVector size = box.Max - box.Min;
    ZmMatrix projection = ZmMatrix::Identity();
    projection[0][0] = 2 / size.x;
    projection[1][1] = 2 / size.y;
    projection[2][2] = 1 / size.z;
    projection[3][0] = -(box.Max.x + box.Min.x) / size.x;
    projection[3][1] = -(box.Max.y + box.Min.y) / size.y;
    projection[3][2] = -box.Min.z / size.z;
    return projection;
}

ZmRay RayThrough(const ZmFrustum& camera, float x, float y, int width, int height)
{
    const float u = 2 * (x + 0.5f) / float(width) - 1, v = 1 - 2 * (y + 0.5f) / float(height);
    const ZmVector offset = camera.Right * (u * camera.HalfWidth) + camera.Up * (v * camera.HalfHeight);
    return {camera.Origin, camera.Direction + offset * (1 / camera.NearDistance)};
}

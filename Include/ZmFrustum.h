#pragma once

#include "ZmMatrix.h"
#include "ZmPlane.h"

/// View pyramid with six bounding planes. Their normals point outwards whichever handedness the three axes have.
///
/// Fields may be changed freely; call Update() afterwards.
class ZmFrustum {
public:
    /// Indices into Planes.
    enum {
        PLANE_LEFT,
        PLANE_RIGHT,
        PLANE_TOP,
        PLANE_BOTTOM,
        PLANE_NEAR,
        PLANE_FAR
    };

    /// At the origin, looking along +Z with X to the right and Y up; half-sizes 1 at distance 1, far distance 2.
    ZM_API ZmFrustum();

    /// `fov` is the full horizontal angle in radians; `aspectRatio` is height divided by width. The axes are used as
    /// given and should be orthonormal.
    ZM_API ZmFrustum(const ZmVector& origin, const ZmVector& right, const ZmVector& up, const ZmVector& dir,
                     float nearPlane, float farPlane, float fov, float aspectRatio);

    /// Recomputes the ratio, the factors and the planes from the other fields.
    ZM_API void Update();

    /// Transforms the frustum by m and calls Update(). A scaling matrix scales it: the change of the axes' lengths goes
    /// into the half-sizes and distances, and the axes have unit length afterwards. Shear cannot be represented; the
    /// axes are then no longer orthogonal.
    ZM_API void Transform(const ZmMatrix& m);

    /// Writes the eight corners: left bottom, right bottom, right top, left top of the near rectangle, then the same of
    /// the far one.
    ZM_API void ComputeVertices(ZmVector* vertices) const;

    ZmVector Origin;     ///< the eye
    ZmVector Right;      ///< unit axis to the right
    ZmVector Up;         ///< unit axis upwards
    ZmVector Direction;  ///< unit axis of view
    float HalfWidth;     ///< half-width of the view at NearDistance
    float HalfHeight;    ///< half-height of the view at NearDistance
    float NearDistance;  ///< from the eye to the near plane
    float FarDistance;   ///< from the eye to the far plane
    float FarNearRatio;  ///< FarDistance / NearDistance
    float WidthFactor;   ///< -2 * HalfWidth * FarDistance
    float HeightFactor;  ///< -2 * HalfHeight * FarDistance
    ZmPlane Planes[6];   ///< left, right, top, bottom, near, far
};

#pragma once

#include "ZmMath.h"

/// World to the homogeneous clip space of ZMCLIP_FLAGS, as `frustum` sees it; w is
/// the distance along its direction.
ZmMatrix PerspectiveView(const ZmFrustum& frustum);

/// World turned so that Z points along `direction`, a unit vector.
ZmMatrix LookAlong(const ZmVector& direction);

/// After LookAlong(): the inside of `box` to clip space, without perspective.
ZmMatrix OrthographicProjection(const ZmBbox& box);

/// From the eye through the middle of a sample; the direction reaches 1 along the camera's.
ZmRay RayThrough(const ZmFrustum& camera, float x, float y, int width, int height);

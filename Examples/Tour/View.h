#pragma once

#include "ZmMath.h"

/// World space to the homogeneous clip space of ZMCLIP_FLAGS, as seen by `frustum`; w is the distance along its
/// direction.
ZmMatrix PerspectiveView(const ZmFrustum& frustum);

/// Rotates the world so that Z points along `direction`, a unit vector.
ZmMatrix LookAlong(const ZmVector& direction);

/// Projects the inside of `box`, after LookAlong(), to clip space without perspective.
ZmMatrix OrthographicProjection(const ZmBbox& box);

/// The ray from the eye through the centre of a sample; its direction reaches 1 along the camera's.
ZmRay RayThrough(const ZmFrustum& camera, float x, float y, int width, int height);

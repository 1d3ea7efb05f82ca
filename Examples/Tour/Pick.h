#pragma once

#include "Scene.h"

/// The nearest triangle under a point of the picture.
struct PickedTriangle {
    const Model* of = nullptr;  ///< null if the ray hit only sky
    size_t triangle = 0;        ///< its index in the mesh
    ZmVector corners[3];        ///< in the world
    ZmVector point;             ///< where the ray hits it
    float distance = 0;         ///< from the eye
};

/// Tests the boxes of all models first, then the meshes of those that remain, in model space.
PickedTriangle Pick(const Scene& scene, const ZmRay& ray);

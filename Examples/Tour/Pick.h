#pragma once

#include "Scene.h"

/// The nearest triangle under a point of the picture.
struct PickedTriangle {
    const Model* Of = nullptr;  ///< null: only sky was there
    size_t Triangle = 0;        ///< its number in the mesh
    ZmVector Corners[3];        ///< in the world
    ZmVector Point;             ///< where the ray meets it
    float Distance = 0;         ///< from the eye
};

/// Boxes first, then the triangles of what is left, in the model's own space.
PickedTriangle Pick(const std::vector<VisibleModel>& visible, const ZmRay& ray);

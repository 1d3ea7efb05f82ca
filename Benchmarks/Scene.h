#pragma once

#include "Harness.h"

// Many boxes and spheres, and what meets them. Plain data, for the reason given in Harness.h.
namespace bench {

constexpr int kSceneSize = 100000;

/// About a fifth of the objects lie in the frustum, a few percent on the ray.
struct Scene {
    float boxes[kSceneSize][6];  ///< Max, then Min
    float spheres[kSceneSize][4];
    float points[kSceneSize][3];
    float frustumPlanes[6][4];  ///< positive outside
    float ray[6];
    float box[6];
    float sphere[4];
    float matrix[16];
};

// Internal to each file, as in Each.h.
namespace {

/// Clears what a contender may have written behind the last index, so that the lists can be compared.
inline void EndList(const Work& w, int found)
{
    unsigned* indices = static_cast<unsigned*>(w.dst);
    for (int i = found; i < found + 8 && i < w.count; ++i) {
        indices[i] = 0;
    }
}

}  // namespace
}  // namespace bench

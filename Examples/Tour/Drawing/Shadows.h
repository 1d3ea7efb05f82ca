#pragma once

#include "DepthMap.h"
#include "Scene.h"

/// The sun's view of the statues, in three maps: sharp near the camera, coarser
/// farther away.
class Shadows {
public:
    enum {
        kMapCount = 3
    };

    /// Draws the maps, each on a thread of its own if there are so many.
    Shadows(const Scene& scene, int threads);

    /// Share of the sun, 0 to 1, that reaches `point` on a surface with unit `normal`.
    /// The edge of a shadow softens with the distance from what throws it. `distance` is
    /// that from the camera; `turn`, 0 to 1, varies the sampling from sample to sample.
    float Sunlight(const ZmVector& point, const ZmVector& normal, float distance, float turn) const;

private:
    void DrawMap(const Scene& scene, int index);

    ZmMatrix m_WorldToSun;
    DepthMap m_Maps[kMapCount];
};

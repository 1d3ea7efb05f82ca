#pragma once

#include "DepthMap.h"
#include "Scene.h"

/// Shadow maps of the statues as the sun sees them, in three maps: fine near the camera, coarser farther away.
class Shadows {
public:
    static constexpr int kMapCount = 3;

    /// Draws the maps, each on a thread of its own if `threads` allows it.
    Shadows(const Scene& scene, int threads);

    /// The share of the sun, 0 to 1, that reaches `point` on a surface with unit `normal`. Shadow edges soften with the
    /// distance from the caster. `distance` is the distance from the camera; `turn`, 0 to 1, varies the sampling from
    /// sample to sample.
    float Sunlight(const ZmVector& point, const ZmVector& normal, float distance, float turn) const;

private:
    void DrawMap(const Scene& scene, int index);

    ZmMatrix m_WorldToSun;
    DepthMap m_Maps[kMapCount];
};

#pragma once

#include "Raster.h"

/// What a light far away sees: for each texel the depth, 0 to 1, of the nearest surface.
class DepthMap {
public:
    /// Empties the map. `worldToLight` is LookAlong() of the light's direction, `lightBox`
    /// the part of its space that the map covers.
    void Begin(int size, const ZmMatrix& worldToLight, const ZmBbox& lightBox);

    void Draw(const Mesh& mesh, const ZmMatrix& modelToWorld);

    /// 0 when `worldBox` lies outside the map.
    int MayContain(const ZmBbox& worldBox) const;

    /// x and y in texels, z the depth as in Nearest().
    ZmVector ToMap(const ZmVector& world) const;

    /// Depth of the surface nearest to the light; 1 where there is none, and outside.
    float Nearest(float x, float y) const;

    float TexelSize() const { return m_TexelSize; }    ///< in the world, the larger side
    float DepthRange() const { return m_DepthRange; }  ///< in the world, what 0 to 1 covers

private:
    int m_Size = 0;
    float m_TexelSize = 0;
    float m_DepthRange = 0;
    ZmMatrix m_WorldToClip;
    ZmMatrix m_WorldToMap;
    std::vector<float> m_Depths;
    TransformedMesh m_Scratch;
};

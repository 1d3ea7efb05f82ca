#pragma once

#include "Raster.h"

/// The view of a distant light: for each texel the depth, 0 to 1, of the nearest surface.
class DepthMap {
public:
    /// Clears the map. `worldToLight` is LookAlong() of the light's direction; `lightBox` is the part of light space
    /// that the map covers.
    void Begin(int size, const ZmMatrix& worldToLight, const ZmBbox& lightBox);

    void Draw(const Mesh& mesh, const ZmMatrix& modelToWorld);

    /// 0 if `worldBox` lies outside the map.
    int MayContain(const ZmBbox& worldBox) const;

    /// x and y are in texels; z is the depth as in Nearest().
    ZmVector ToMap(const ZmVector& world) const;

    /// Depth of the surface nearest to the light; 1 if there is none, and outside the map.
    float Nearest(float x, float y) const;

    float TexelSize() const { return m_TexelSize; }    ///< the larger side, in world units
    float DepthRange() const { return m_DepthRange; }  ///< the extent of depths 0 to 1, in world units

private:
    int m_Size = 0;
    float m_TexelSize = 0;
    float m_DepthRange = 0;
    ZmMatrix m_WorldToClip;
    ZmMatrix m_WorldToMap;
    std::vector<float> m_Depths;
    TransformedMesh m_Scratch;
};

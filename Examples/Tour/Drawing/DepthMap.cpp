#include "DepthMap.h"

#include "View.h"

void DepthMap::Begin(int size, const ZmMatrix& worldToLight, const ZmBbox& lightBox)
{
    m_Size = size;
    m_Depths.assign(size_t(size) * size_t(size), 1.0f);
    const ZmVector extent = lightBox.Max - lightBox.Min;
    m_TexelSize = std::max(extent.x, extent.y) / float(size);
    m_DepthRange = extent.z;
    Zm3DMultiplyMatrix(m_WorldToClip, OrthographicProjection(lightBox), worldToLight);

    const float half = 0.5f * float(size);
    const ZmMatrix clipToMap(ZmVector(half, 0, 0), ZmVector(0, -half, 0), ZmVector(0, 0, 1), ZmVector(half, half, 0));
    Zm3DMultiplyMatrix(m_WorldToMap, clipToMap, m_WorldToClip);
}

void DepthMap::Draw(const Mesh& mesh, const ZmMatrix& modelToWorld)
{
    ZmMatrix modelToClip;
    Zm3DMultiplyMatrix(modelToClip, m_WorldToClip, modelToWorld);
    m_Scratch.ToClipSpace(mesh, modelToClip);
    const RasterTarget target = {m_Size, m_Size, {0, 0, m_Size, m_Size}};
    DrawMesh(mesh, m_Scratch, true, target, [this](const Sample& sample) {
        float& depth = m_Depths[size_t(sample.y) * size_t(m_Size) + size_t(sample.x)];
        depth = std::min(depth, sample.depth);
    });
}

int DepthMap::MayContain(const ZmBbox& worldBox) const
{
    ZMCLIP_FLAGS andFlags, orFlags;
    return ZmTransformBox2D(m_WorldToClip, worldBox, nullptr, nullptr, andFlags, orFlags);
}

ZmVector DepthMap::ToMap(const ZmVector& world) const
{
    ZmVector result;
    Zm3DMultiplyMatrixVector(&result, m_WorldToMap, &world);
    return result;
}

float DepthMap::Nearest(float x, float y) const
{
    const float size = float(m_Size);
    if (!(x >= 0 && y >= 0 && x < size && y < size)) {
        return 1;
    }
    return m_Depths[size_t(y) * size_t(m_Size) + size_t(x)];
}

#include "Shadows.h"

#include "View.h"
#include "Workers.h"

#include <cmath>

namespace {

constexpr int kMapSize = 2048;
// The distance at which each map ends; the first begins at the camera's near plane.
constexpr float kMapEnd[Shadows::kMapCount] = {11, 34, 120};
// Width of the penumbra over distance from the shadow caster: a hazy sun, ten times the real size.
constexpr float kSunSize = 0.045f;
constexpr int kBlockerTaps = 6;
constexpr int kShadowTaps = 10;

void Include(ZmBbox& box, const ZmBbox& other)
{
    for (int axis = 0; axis < 3; ++axis) {
        box.Max[axis] = std::max(box.Max[axis], other.Max[axis]);
        box.Min[axis] = std::min(box.Min[axis], other.Min[axis]);
    }
}

// The box in sun space that contains the view between two distances.
ZmBbox SliceBox(ZmFrustum view, float nearDistance, float farDistance, const ZmMatrix& worldToSun)
{
    view.HalfWidth *= nearDistance / view.NearDistance;
    view.HalfHeight *= nearDistance / view.NearDistance;
    view.NearDistance = nearDistance;
    view.FarDistance = farDistance;
    view.Update();
    ZmVector corners[8];
    view.ComputeVertices(corners);
    Zm3DMultiplyMatrixVectorMany(corners, worldToSun, corners, 8, sizeof(ZmVector));
    ZmBbox box = {corners[0], corners[0]};
    for (const ZmVector& corner : corners) {
        Include(box, {corner, corner});
    }
    return box;
}

// Points spread evenly over the unit disc, rotated by `turn` of a full circle.
Zm2DVector DiscPoint(int index, int count, float turn)
{
    const float radius = std::sqrt((float(index) + 0.5f) / float(count));
    const int angle = int((turn + 0.381966f * float(index)) * 16384);
    return {radius * Tcos(angle), radius * Tsin(angle)};
}

}  // namespace

Shadows::Shadows(const Scene& scene, int threads) : m_WorldToSun(LookAlong(-scene.light.towards))
{
    ShareOut(threads, kMapCount, [&](int, int index) { DrawMap(scene, index); });
}

void Shadows::DrawMap(const Scene& scene, int index)
{
    const float nearDistance = index == 0 ? scene.camera.NearDistance : 0.9f * kMapEnd[index - 1];
    ZmBbox box = SliceBox(scene.camera, nearDistance, kMapEnd[index], m_WorldToSun);
    // Shadow casters may lie far outside the slice, towards the sun.
    for (const Model& model : scene.models) {
        if (model.made != Material::STATUE) {
            continue;
        }
        ZmBbox sunBox;
        sunBox.TransformFrom(model.box, m_WorldToSun);
        box.Min.z = std::min(box.Min.z, sunBox.Min.z);
    }
    m_Maps[index].Begin(kMapSize, m_WorldToSun, box);
    for (const Model& model : scene.models) {
        if (model.made == Material::STATUE && m_Maps[index].MayContain(model.box)) {
            m_Maps[index].Draw(*model.shape, model.world);
        }
    }
}

float Shadows::Sunlight(const ZmVector& point, const ZmVector& normal, float distance, float turn) const
{
    // The borders between maps are dithered, so that they are invisible.
    int index = 0;
    while (index < kMapCount && distance > kMapEnd[index] * (0.9f + 0.1f * turn)) {
        ++index;
    }
    if (index == kMapCount) {
        return 1;
    }
    const DepthMap& map = m_Maps[index];
    const float texel = map.TexelSize(), depthRange = map.DepthRange();
    const ZmVector p = map.ToMap(point + normal * (0.02f + 1.5f * texel));

    float blockers = 0, blockerDepth = 0;
    const float searchRadius = 0.09f / texel;
    for (int i = 0; i < kBlockerTaps; ++i) {
        const Zm2DVector offset = DiscPoint(i, kBlockerTaps, turn);
        const float depth = map.Nearest(p.x + searchRadius * offset.x, p.y + searchRadius * offset.y);
        if (depth < p.z) {
            blockers += 1;
            blockerDepth += depth;
        }
    }
    if (blockers == 0) {
        return 1;
    }

    const float height = (p.z - blockerDepth / blockers) * depthRange;
    const float radius = std::clamp(kSunSize * height, 0.012f, 0.09f) / texel;
    int lit = 0;
    for (int i = 0; i < kShadowTaps; ++i) {
        const Zm2DVector offset = DiscPoint(i, kShadowTaps, turn);
        lit += map.Nearest(p.x + radius * offset.x, p.y + radius * offset.y) >= p.z;
    }
    return float(lit) / kShadowTaps;
}

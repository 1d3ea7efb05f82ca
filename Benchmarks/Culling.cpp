// One object against many, whose results are lists of those that remain.

#include "Families.h"
#include "Inputs.h"
#include "Records.h"
#include "Scene.h"

#include "ZmBuilders.h"
#include "ZmCulling.h"
#include "ZmIntersect.h"

#include <cmath>
#include <cstring>
#include <memory>

namespace bench {
namespace {

ZmFrustum SceneFrustum()
{
    return {ZmVector(1, 0.5f, -9), ZmVector(1, 0, 0), ZmVector(0, 1, 0), ZmVector(0, 0, 1), 1, 17, 1.2f, 0.7f};
}

std::unique_ptr<Scene> NewScene()
{
    auto made = std::make_unique<Scene>();
    Scene& scene = *made;
    const float* random = RandomFloats(sizeof(scene.boxes) * 2);
    for (int i = 0; i < kSceneSize; ++i) {
        const float* r = random + 8 * i;  // every fourth is no random number
        for (int axis = 0; axis < 3; ++axis) {
            const float centre = 10 * r[axis], half = 0.1f + std::fabs(r[4 + axis]);
            scene.boxes[i][axis] = centre + half;
            scene.boxes[i][3 + axis] = centre - half;
            scene.spheres[i][axis] = scene.points[i][axis] = centre;
        }
        scene.spheres[i][3] = 0.1f + std::fabs(r[4]);
    }
    const ZmFrustum frustum = SceneFrustum();
    static_assert(sizeof(scene.frustumPlanes) == sizeof(frustum.Planes), "six planes of four floats");
    std::memcpy(scene.frustumPlanes, frustum.Planes, sizeof(scene.frustumPlanes));
    const float ray[] = {-12, -3, -8, 0.7f, 0.2f, 0.6f}, box[] = {3, 2, 4, -4, -1, -3}, sphere[] = {2, 1, -1, 4};
    std::memcpy(scene.ray, ray, sizeof(ray));
    std::memcpy(scene.box, box, sizeof(box));
    std::memcpy(scene.sphere, sphere, sizeof(sphere));
    std::memcpy(scene.matrix, TurningMatrix(), sizeof(scene.matrix));
    return made;
}

void Prepare(Work& w)
{
    static const std::unique_ptr<Scene> scene = NewScene();
    w.src = scene.get();
}

constexpr Task kTasks[] = {
    {"Culling/frustum-boxes", 4, 0, Prepare, {1000, kSceneSize}, {0.30, 0.30}, 0},
    {"Culling/frustum-spheres", 4, 0, Prepare, {1000, kSceneSize}, {0.30, 0.30}, 0},
    {"Culling/ray-boxes", 4, 0, Prepare, {1000, kSceneSize}, {0.30, 0.30}, 0},
    {"Culling/box-boxes", 4, 0, Prepare, {1000, kSceneSize}, {0.30, 0.30}, 0},
    {"Culling/sphere-boxes", 4, 0, Prepare, {1000, kSceneSize}, {0.30, 0.30}, 0},
    {"Culling/transform-boxes", 24, 0, Prepare, {1000, kSceneSize}, {0.40, 0.40}},
    {"Culling/box-of-points", 24, 0, Prepare, {1000, kSceneSize}, {0.30, 0.30}},
    {"Culling/sphere-of-points", 16, 0, Prepare, {1000, kSceneSize}, {0.30, 0.30}},
};

const Scene& SceneOf(const Work& w)
{
    return *static_cast<const Scene*>(w.src);
}

ZmStridedData Boxes(const Work& w)
{
    return {const_cast<float*>(SceneOf(w).boxes[0]), sizeof(ZmBbox)};
}

uint32_t* Indices(const Work& w)
{
    return static_cast<uint32_t*>(w.dst);
}

void FrustumBoxes(const Work& w)
{
    EndList(w, ZmCullBoxes(SceneFrustum(), Boxes(w), w.count, nullptr, Indices(w)));
}

void FrustumSpheres(const Work& w)
{
    const ZmStridedData spheres(const_cast<float*>(SceneOf(w).spheres[0]), sizeof(ZmSphere));
    EndList(w, ZmCullSpheres(SceneFrustum(), spheres, w.count, nullptr, Indices(w)));
}

void RayBoxes(const Work& w)
{
    EndList(w, ZmRayBoxes(Record<ZmRay>(SceneOf(w).ray), Boxes(w), w.count, nullptr, Indices(w)));
}

void BoxBoxes(const Work& w)
{
    EndList(w, ZmBoxBoxes(Record<ZmBbox>(SceneOf(w).box), Boxes(w), w.count, nullptr, Indices(w)));
}

void SphereBoxes(const Work& w)
{
    EndList(w, ZmSphereBoxes(Record<ZmSphere>(SceneOf(w).sphere), Boxes(w), w.count, nullptr, Indices(w)));
}

void TransformBoxes(const Work& w)
{
    ZmTransformBoxes({w.dst, sizeof(ZmBbox)}, Boxes(w), Record<ZmMatrix>(SceneOf(w).matrix), w.count);
}

ZmStridedData Points(const Work& w)
{
    return {const_cast<float*>(SceneOf(w).points[0]), sizeof(ZmVector)};
}

void BoxOfPoints(const Work& w)
{
    *static_cast<ZmBbox*>(w.dst) = ZmBoxOfPoints(Points(w), w.count);
}

void SphereOfPoints(const Work& w)
{
    *static_cast<ZmSphere*>(w.dst) = ZmSphereOfPoints(Points(w), w.count);
}

constexpr Entry kEntries[] = {
    {"Culling/box-of-points", BoxOfPoints},  {"Culling/sphere-of-points", SphereOfPoints},
    {"Culling/frustum-boxes", FrustumBoxes}, {"Culling/frustum-spheres", FrustumSpheres},
    {"Culling/ray-boxes", RayBoxes},         {"Culling/box-boxes", BoxBoxes},
    {"Culling/sphere-boxes", SphereBoxes},   {"Culling/transform-boxes", TransformBoxes},
};

// --- Our own single calls in a loop ---

/// Lists the boxes for which the test gives anything but 0.
template <class Test>
void ListBoxes(const Work& w, Test test)
{
    uint32_t* indices = Indices(w);
    int found = 0;
    for (int i = 0; i < w.count; ++i) {
        if (test(Record<ZmBbox>(SceneOf(w).boxes[i]))) {
            indices[found++] = uint32_t(i);
        }
    }
    EndList(w, found);
}

void RayBoxesSingly(const Work& w)
{
    const ZmRay ray = Record<ZmRay>(SceneOf(w).ray);
    ListBoxes(w, [&](const ZmBbox& box) { return ZmIntersect::RayBox(ray, box); });
}

void BoxBoxesSingly(const Work& w)
{
    const ZmBbox one = Record<ZmBbox>(SceneOf(w).box);
    ListBoxes(w, [&](const ZmBbox& box) { return ZmIntersect::AABBAABB(one, box); });
}

void SphereBoxesSingly(const Work& w)
{
    const ZmSphere sphere = Record<ZmSphere>(SceneOf(w).sphere);
    ListBoxes(w, [&](const ZmBbox& box) { return ZmIntersect::SphereAABB(sphere, box); });
}

void TransformBoxesSingly(const Work& w)
{
    for (int i = 0; i < w.count; ++i) {
        static_cast<ZmBbox*>(w.dst)[i].TransformFrom(Record<ZmBbox>(SceneOf(w).boxes[i]),
                                                     Record<ZmMatrix>(SceneOf(w).matrix));
    }
}

void BoxOfPointsInline(const Work& w)
{
    *static_cast<ZmBbox*>(w.dst) = ZmBoxFromPoints(Points(w), w.count);
}

void SphereOfPointsInline(const Work& w)
{
    *static_cast<ZmSphere*>(w.dst) = ZmSphereFromPoints(Points(w), w.count);
}

constexpr Entry kSingleEntries[] = {
    {"Culling/box-of-points", BoxOfPointsInline}, {"Culling/sphere-of-points", SphereOfPointsInline},
    {"Culling/ray-boxes", RayBoxesSingly},        {"Culling/box-boxes", BoxBoxesSingly},
    {"Culling/sphere-boxes", SphereBoxesSingly},  {"Culling/transform-boxes", TransformBoxesSingly},
};

}  // namespace

constexpr Tasks kCullingTasks{kTasks};
constexpr Contender kCulling{"ZmMath", Role::OURS, kEntries};
constexpr Contender kCullingSingly{"ZmMath singly", Role::PEER, kSingleEntries};

}  // namespace bench

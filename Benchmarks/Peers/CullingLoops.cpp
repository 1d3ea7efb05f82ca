// One object against many boxes or spheres in plain loops, for AVX2 and FMA: with early exits, and without branches but
// for the list.

#include "../Harness.h"
#include "../Scene.h"

#include <algorithm>
#include <cmath>

namespace bench {
namespace {

/// Lists the objects for which the test holds.
template <class Test>
inline void List(const Work& w, Test test)
{
    unsigned* indices = static_cast<unsigned*>(w.dst);
    const int count = w.count;
    int found = 0;
    for (int i = 0; i < count; ++i) {
        if (test(i)) {
            indices[found++] = unsigned(i);
        }
    }
    EndList(w, found);
}

/// The same by writing every index and counting those that stay.
template <class Test>
inline void ListWithoutBranches(const Work& w, Test test)
{
    unsigned* indices = static_cast<unsigned*>(w.dst);
    const int count = w.count;
    int found = 0;
    for (int i = 0; i < count; ++i) {
        indices[found] = unsigned(i);
        found += test(i) ? 1 : 0;
    }
    EndList(w, found);
}

inline const Scene& SceneOf(const Work& w)
{
    return *static_cast<const Scene*>(w.src);
}

inline float Distance(const float* plane, float x, float y, float z)
{
    return plane[0] * x + plane[1] * y + plane[2] * z + plane[3];
}

/// How far the nearest corner of a box lies in front of a plane.
inline float NearestCorner(const float* plane, const float* box)
{
    return Distance(plane, box[plane[0] < 0 ? 0 : 3], box[plane[1] < 0 ? 1 : 4], box[plane[2] < 0 ? 2 : 5]);
}

/// Lists the objects of which distance(plane, i), that of the nearest part, is positive for no plane; the first that is
/// ends the test.
template <class Function>
inline void ListInFrustum(const Work& w, Function distance)
{
    const Scene& scene = SceneOf(w);
    List(w, [&](int i) {
        for (const float(&plane)[4] : scene.frustumPlanes) {
            if (distance(plane, i) > 0) {
                return false;
            }
        }
        return true;
    });
}

void FrustumBoxes(const Work& w)
{
    const Scene& scene = SceneOf(w);
    ListInFrustum(w, [&](const float* plane, int i) { return NearestCorner(plane, scene.boxes[i]); });
}

void FrustumBoxesByCentre(const Work& w)
{
    const Scene& scene = SceneOf(w);
    ListWithoutBranches(w, [&](int i) {
        const float* box = scene.boxes[i];
        const float x = 0.5f * (box[0] + box[3]), y = 0.5f * (box[1] + box[4]), z = 0.5f * (box[2] + box[5]);
        const float hx = 0.5f * (box[0] - box[3]), hy = 0.5f * (box[1] - box[4]), hz = 0.5f * (box[2] - box[5]);
        float farthest = -1;
        for (const float(&plane)[4] : scene.frustumPlanes) {
            const float radius = std::fabs(plane[0]) * hx + std::fabs(plane[1]) * hy + std::fabs(plane[2]) * hz;
            farthest = std::max(farthest, Distance(plane, x, y, z) - radius);
        }
        return farthest <= 0;
    });
}

void FrustumSpheres(const Work& w)
{
    const Scene& scene = SceneOf(w);
    ListInFrustum(w, [&](const float* plane, int i) {
        const float* sphere = scene.spheres[i];
        return Distance(plane, sphere[0], sphere[1], sphere[2]) - sphere[3];
    });
}

void FrustumSpheresWithoutBranches(const Work& w)
{
    const Scene& scene = SceneOf(w);
    ListWithoutBranches(w, [&](int i) {
        const float* sphere = scene.spheres[i];
        float farthest = -1e30f;
        for (const float(&plane)[4] : scene.frustumPlanes) {
            farthest = std::max(farthest, Distance(plane, sphere[0], sphere[1], sphere[2]));
        }
        return farthest <= sphere[3];
    });
}

/// The slab test with the direction's inverse.
void RayBoxes(const Work& w)
{
    const Scene& scene = SceneOf(w);
    const float* ray = scene.ray;
    const float inverse[] = {1 / ray[3], 1 / ray[4], 1 / ray[5]};
    ListWithoutBranches(w, [&](int i) {
        const float* box = scene.boxes[i];
        float first = 0, last = 1e30f;
        for (int axis = 0; axis < 3; ++axis) {
            const float a = (box[3 + axis] - ray[axis]) * inverse[axis], b = (box[axis] - ray[axis]) * inverse[axis];
            first = std::max(first, std::min(a, b));
            last = std::min(last, std::max(a, b));
        }
        return first <= last;
    });
}

void BoxBoxes(const Work& w)
{
    const Scene& scene = SceneOf(w);
    const float* a = scene.box;
    ListWithoutBranches(w, [&](int i) {
        const float* b = scene.boxes[i];
        return (a[3] <= b[0]) & (a[0] >= b[3]) & (a[4] <= b[1]) & (a[1] >= b[4]) & (a[5] <= b[2]) & (a[2] >= b[5]);
    });
}

void SphereBoxes(const Work& w)
{
    const Scene& scene = SceneOf(w);
    const float* sphere = scene.sphere;
    ListWithoutBranches(w, [&](int i) {
        const float* box = scene.boxes[i];
        float square = 0;
        for (int axis = 0; axis < 3; ++axis) {
            const float outside = std::max(std::max(box[3 + axis] - sphere[axis], sphere[axis] - box[axis]), 0.0f);
            square += outside * outside;
        }
        return square <= sphere[3] * sphere[3];
    });
}

void TransformBoxes(const Work& w)
{
    const Scene& scene = SceneOf(w);
    const float* m = scene.matrix;
    float(*dst)[6] = static_cast<float(*)[6]>(w.dst);
    const int count = w.count;
    for (int i = 0; i < count; ++i) {
        const float* box = scene.boxes[i];
        for (int column = 0; column < 3; ++column) {
            float high = m[12 + column], low = high;
            for (int axis = 0; axis < 3; ++axis) {
                const float a = m[4 * axis + column] * box[axis], b = m[4 * axis + column] * box[3 + axis];
                high += std::max(a, b);
                low += std::min(a, b);
            }
            dst[i][column] = high;
            dst[i][3 + column] = low;
        }
    }
}

/// Max, then Min.
inline void FindBox(float* box, const float (*points)[3], int count)
{
    float max[] = {-1e30f, -1e30f, -1e30f}, min[] = {1e30f, 1e30f, 1e30f};
    for (int i = 0; i < count; ++i) {
        for (int axis = 0; axis < 3; ++axis) {
            max[axis] = std::max(max[axis], points[i][axis]);
            min[axis] = std::min(min[axis], points[i][axis]);
        }
    }
    std::copy(max, max + 3, box);
    std::copy(min, min + 3, box + 3);
}

void BoxOfPoints(const Work& w)
{
    FindBox(static_cast<float*>(w.dst), SceneOf(w).points, w.count);
}

void SphereOfPoints(const Work& w)
{
    const float(*points)[3] = SceneOf(w).points;
    const int count = w.count;
    float box[6];
    FindBox(box, points, count);
    const float x = 0.5f * (box[0] + box[3]), y = 0.5f * (box[1] + box[4]), z = 0.5f * (box[2] + box[5]);
    float farthest = 0;
    for (int i = 0; i < count; ++i) {
        const float dx = points[i][0] - x, dy = points[i][1] - y, dz = points[i][2] - z;
        farthest = std::max(farthest, dx * dx + dy * dy + dz * dz);
    }
    const float sphere[] = {x, y, z, std::sqrt(farthest)};
    std::copy(sphere, sphere + 4, static_cast<float*>(w.dst));
}

constexpr Entry kEntries[] = {
    {"Culling/box-of-points", BoxOfPoints},
    {"Culling/sphere-of-points", SphereOfPoints},
    {"Culling/frustum-boxes", FrustumBoxes, "early exits"},
    {"Culling/frustum-boxes", FrustumBoxesByCentre, "without branches"},
    {"Culling/frustum-spheres", FrustumSpheres, "early exits"},
    {"Culling/frustum-spheres", FrustumSpheresWithoutBranches, "without branches"},
    {"Culling/ray-boxes", RayBoxes},
    {"Culling/box-boxes", BoxBoxes},
    {"Culling/sphere-boxes", SphereBoxes},
    {"Culling/transform-boxes", TransformBoxes},
};

}  // namespace

extern const Contender kCullingLoops;
constexpr Contender kCullingLoops{"plain loop", Role::PEER, kEntries};

}  // namespace bench

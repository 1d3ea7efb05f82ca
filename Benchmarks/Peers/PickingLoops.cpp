// A ray against many triangles in plain loops, for AVX2 and FMA, by Moeller and Trumbore's test: with early exits, and
// without branches.

#include "../Harness.h"
#include "../PickingMesh.h"
#include "../PlainVectors.h"

#include <cfloat>
#include <cmath>

namespace bench {
namespace {

struct Hit {
    float distance = FLT_MAX, u = 0, v = 0;
    bool found = false;
};

/// Tests triangle i, and takes it if it is nearer.
inline bool Meet(const PickingMesh& mesh, const float* ray, int i, Hit& hit)
{
    const unsigned* corners = mesh.indices[i];
    const Vec a(mesh.positions[corners[0]]), direction(ray + 3);
    const Vec edge1 = Vec(mesh.positions[corners[1]]) - a, edge2 = Vec(mesh.positions[corners[2]]) - a;
    const Vec p = Cross(direction, edge2);
    const float determinant = Dot(edge1, p);
    if (determinant == 0) {
        return false;
    }
    const float inverse = 1 / determinant;
    const Vec offset = Vec(ray) - a;
    const float u = Dot(offset, p) * inverse;
    if (u < 0 || u > 1) {
        return false;
    }
    const Vec q = Cross(offset, edge1);
    const float v = Dot(direction, q) * inverse;
    if (v < 0 || u + v > 1) {
        return false;
    }
    const float t = Dot(edge2, q) * inverse;
    if (t < 0 || t >= hit.distance) {
        return false;
    }
    hit = {t, u, v, true};
    return true;
}

void RayMesh(const Work& w)
{
    PickingMesh& mesh = MeshOf(w);
    const float* ray = mesh.rays[NextRay(mesh)];
    Hit hit;
    for (int i = 0; i < w.count; ++i) {
        Meet(mesh, ray, i, hit);
    }
    EndPass(w, hit.found, hit.distance, hit.u, hit.v);
}

void RayMeshAny(const Work& w)
{
    PickingMesh& mesh = MeshOf(w);
    const float* ray = mesh.misses[NextRay(mesh)];
    Hit hit;
    for (int i = 0; i < w.count; ++i) {
        if (Meet(mesh, ray, i, hit)) {
            break;
        }
    }
    EndPass(w, hit.found, 1, 0, 0);
}

/// The nearest hit with selections in place of branches.
inline Hit NearestWithoutBranches(const PickingMesh& mesh, const float* ray, int count)
{
    const Vec origin(ray), direction(ray + 3);
    float nearest = FLT_MAX, nearestU = 0, nearestV = 0;
    for (int i = 0; i < count; ++i) {
        const unsigned* corners = mesh.indices[i];
        const Vec a(mesh.positions[corners[0]]);
        const Vec edge1 = Vec(mesh.positions[corners[1]]) - a, edge2 = Vec(mesh.positions[corners[2]]) - a;
        const Vec p = Cross(direction, edge2), offset = origin - a, q = Cross(offset, edge1);
        const float inverse = 1 / Dot(edge1, p), u = Dot(offset, p) * inverse, v = Dot(direction, q) * inverse;
        const float t = Dot(edge2, q) * inverse;
        const bool nearer = (u >= 0) & (v >= 0) & (u + v <= 1) & (t >= 0) & (t < nearest);
        nearest = nearer ? t : nearest;
        nearestU = nearer ? u : nearestU;
        nearestV = nearer ? v : nearestV;
    }
    Hit hit;
    hit.distance = nearest;
    hit.u = nearestU;
    hit.v = nearestV;
    hit.found = nearest < FLT_MAX;
    return hit;
}

void RayMeshWithoutBranches(const Work& w)
{
    PickingMesh& mesh = MeshOf(w);
    const Hit hit = NearestWithoutBranches(mesh, mesh.rays[NextRay(mesh)], w.count);
    EndPass(w, hit.found, hit.distance, hit.u, hit.v);
}

void RayMeshAnyWithoutBranches(const Work& w)
{
    PickingMesh& mesh = MeshOf(w);
    EndPass(w, NearestWithoutBranches(mesh, mesh.misses[NextRay(mesh)], w.count).found, 1, 0, 0);
}

constexpr Entry kEntries[] = {
    {"Picking/ray-mesh", RayMesh, "early exits"},
    {"Picking/ray-mesh", RayMeshWithoutBranches, "without branches"},
    {"Picking/ray-mesh-any", RayMeshAny, "early exits"},
    {"Picking/ray-mesh-any", RayMeshAnyWithoutBranches, "without branches"},
};

}  // namespace

extern const Contender kPickingLoops;
constexpr Contender kPickingLoops{"plain loop", Role::PEER, kEntries};

}  // namespace bench

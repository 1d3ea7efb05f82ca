// One ray against all triangles of a mesh.

#include "Families.h"
#include "Inputs.h"
#include "PickingMesh.h"
#include "Records.h"

#include "ZmIntersect.h"
#include "ZmOperators.h"
#include "ZmPicking.h"

#include <cfloat>
#include <cmath>
#include <cstring>
#include <memory>

namespace bench {
namespace {

void Store(float* res, const ZmVector& v)
{
    std::memcpy(res, &v, 3 * sizeof(float));
}

/// A point of a ring with bumps, at two angles.
ZmVector OnRing(float around, float across)
{
    const float thickness = 1 + 0.1f * std::sin(7 * around), radius = 2 + thickness * std::cos(across);
    return {radius * std::cos(around), radius * std::sin(around), thickness * std::sin(across)};
}

/// `sides` squares of two triangles in each direction.
void BuildRing(PickingMesh& mesh, int sides, int triangles)
{
    const float step = 6.2831853f / float(sides);
    for (int i = 0; i <= sides; ++i) {
        for (int j = 0; j <= sides; ++j) {
            Store(mesh.positions[mesh.positionCount++], OnRing(float(j) * step, float(i) * step));
        }
    }
    for (int i = 0; i < triangles; ++i) {
        const unsigned row = unsigned(sides + 1), square = unsigned(i) / 2;
        const unsigned at = square / unsigned(sides) * row + square % unsigned(sides);
        const unsigned corners[2][3] = {{at, at + 1, at + row}, {at + 1, at + row + 1, at + row}};
        std::memcpy(mesh.indices[i], corners[i % 2], sizeof(corners[0]));
        const auto corner = [&](int k) { return Record<ZmVector>(mesh.positions[mesh.indices[i][k]]); };
        Store(mesh.normals[i], Normalized(Cross(corner(1) - corner(0), corner(2) - corner(0))));
    }
}

std::unique_ptr<PickingMesh> NewMesh(int triangles)
{
    auto mesh = std::make_unique<PickingMesh>();
    BuildRing(*mesh, int(std::ceil(std::sqrt(float(triangles) / 2))), triangles);
    const float* random = RandomFloats(sizeof(mesh->rays) * 2);
    for (int i = 0; i < kMeshRays; ++i) {
        const ZmVector& at = Record<ZmVector>(random + 8 * i);
        const ZmVector origin = Normalized(at) * 8, target = OnRing(6 * random[8 * i + 4], 6 * random[8 * i + 5]);
        Store(mesh->rays[i], origin);
        Store(mesh->rays[i] + 3, target * 0.8f - origin);
        Store(mesh->misses[i], origin);
        Store(mesh->misses[i] + 3, Cross(origin, at + ZmVector(0, 0, 3)));
    }
    return mesh;
}

void Prepare(Work& w)
{
    static const std::unique_ptr<PickingMesh> small = NewMesh(1000), large = NewMesh(kMeshTriangles);
    PickingMesh& mesh = w.count == kMeshTriangles ? *large : *small;
    mesh.pass = 0;
    w.src = &mesh;
}

constexpr Task kTasks[] = {
    {"Picking/ray-mesh", 12, 0, Prepare, {1000, kMeshTriangles}, {0.40, 0.40}},
    {"Picking/ray-mesh-any", 12, 0, Prepare, {1000, kMeshTriangles}, {0.40, 0.40}},
};

ZmMesh Described(const Work& w)
{
    PickingMesh& mesh = MeshOf(w);
    return {{mesh.positions, 12}, mesh.positionCount, mesh.indices, 1, w.count};
}

void RayMesh(const Work& w)
{
    ZmMeshHit hit;
    const int found = ZmRayMesh(Record<ZmRay>(MeshOf(w).rays[NextRay(MeshOf(w))]), Described(w), FLT_MAX, hit);
    EndPass(w, found != 0, hit.distance, hit.u, hit.v);
}

void RayMeshAny(const Work& w)
{
    EndPass(w, ZmRayMeshAny(Record<ZmRay>(MeshOf(w).misses[NextRay(MeshOf(w))]), Described(w), FLT_MAX) != 0, 1, 0, 0);
}

constexpr Entry kEntries[] = {
    {"Picking/ray-mesh", RayMesh},
    {"Picking/ray-mesh-any", RayMeshAny},
};

// --- Our own single calls in a loop ---

/// The nearest triangle by RayFace, or the first; `point` is where.
int Nearest(const Work& w, const ZmRay& ray, bool any, float& nearest, ZmVector& point)
{
    const PickingMesh& mesh = MeshOf(w);
    int triangle = -1;
    for (int i = 0; i < w.count && !(any && triangle >= 0); ++i) {
        const auto corner = [&](int k) -> const ZmVector& {
            return Record<ZmVector>(mesh.positions[mesh.indices[i][k]]);
        };
        ZmVector at;
        float t;
        if (ZmIntersect::RayFace(ray, corner(0), corner(1), corner(2), Record<ZmVector>(mesh.normals[i]), at, t) != 0 &&
            t < nearest) {
            nearest = t;
            point = at;
            triangle = i;
        }
    }
    return triangle;
}

void RayMeshSingly(const Work& w)
{
    PickingMesh& mesh = MeshOf(w);
    float nearest = FLT_MAX, weights[3] = {};
    ZmVector point;
    const int triangle = Nearest(w, Record<ZmRay>(mesh.rays[NextRay(mesh)]), false, nearest, point);
    if (triangle >= 0) {
        const auto corner = [&](int k) { return Record<ZmVector>(mesh.positions[mesh.indices[triangle][k]]); };
        int i1, i2;
        ZmIntersect::PointInFace(point, corner(0), corner(1), corner(2), Record<ZmVector>(mesh.normals[triangle]), i1,
                                 i2);
        ZmIntersect::GetPointCoefficients(point, corner(0), corner(1), corner(2), i1, i2, weights[0], weights[1],
                                          weights[2]);
    }
    EndPass(w, triangle >= 0, nearest, weights[1], weights[2]);
}

void RayMeshAnySingly(const Work& w)
{
    PickingMesh& mesh = MeshOf(w);
    float nearest = FLT_MAX;
    ZmVector point;
    EndPass(w, Nearest(w, Record<ZmRay>(mesh.misses[NextRay(mesh)]), true, nearest, point) >= 0, 1, 0, 0);
}

constexpr Entry kSingleEntries[] = {
    {"Picking/ray-mesh", RayMeshSingly},
    {"Picking/ray-mesh-any", RayMeshAnySingly},
};

}  // namespace

constexpr Tasks kPickingTasks{kTasks};
constexpr Contender kPicking{"ZmMath", Role::OURS, kEntries};
constexpr Contender kPickingSingly{"ZmMath singly", Role::PEER, kSingleEntries};

}  // namespace bench

#pragma once

#include "Harness.h"

// A mesh and the rays that meet or miss it. Plain data, for the reason given in Harness.h.
namespace bench {

constexpr int kMeshTriangles = 100000;
constexpr int kMeshPositions = kMeshTriangles;  // more than enough
constexpr int kMeshRays = 64;

/// The rays take turns, so that branch predictors do not learn the triangles that they meet.
struct PickingMesh {
    float positions[kMeshPositions][3];
    unsigned indices[kMeshTriangles][3];
    float normals[kMeshTriangles][3];  ///< of unit length
    float rays[kMeshRays][6];          ///< origins and directions; most of them hit
    float misses[kMeshRays][6];
    int positionCount;
    int pass;  ///< the number of passes since the mesh was prepared
};

// Internal to each file, as in Each.h.
namespace {

inline PickingMesh& MeshOf(const Work& w)
{
    return *static_cast<PickingMesh*>(const_cast<void*>(w.src));
}

/// The rays of the next pass.
inline int NextRay(PickingMesh& mesh)
{
    return mesh.pass++ % kMeshRays;
}

/// Writes the result of a pass: the distance and the barycentric coordinates, or zeros.
inline void EndPass(const Work& w, bool found, float distance, float u, float v)
{
    float* res = static_cast<float*>(w.dst);
    res[0] = found ? distance : 0;
    res[1] = found ? u : 0;
    res[2] = found ? v : 0;
}

}  // namespace
}  // namespace bench

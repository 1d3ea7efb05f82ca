#pragma once

#include "ZmMath.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// One vertex of an interleaved buffer. `sky` and `ground` are the shares of light, 0 to 1, that reach it from above
/// and from below.
struct Vertex {
    ZmVector position;
    ZmVector normal;
    float sky;
    float ground;
};
static_assert(sizeof(Vertex) == 32, "the tour shows 32-byte strides");

/// Triangles whose cross product (b - a) x (c - a) points outwards.
struct Mesh {
    std::vector<Vertex> vertices;
    std::vector<uint32_t> indices;  ///< three per triangle, always valid
    ZmBbox box{};
    bool closed = false;  ///< no back face is ever visible

    size_t TriangleCount() const { return indices.size() / 3; }
};

/// Normalises any mesh for the scene: centred over the origin, resting on y = 0, with the largest side 1 and smooth
/// normals that point outwards. Returns false if the mesh has no size.
bool PrepareMesh(Mesh& mesh);

void ComputeBox(Mesh& mesh);

/// One component of the vertices, as the library's bulk functions expect it.
ZmStridedData Positions(const Mesh& mesh);
ZmStridedData Normals(const Mesh& mesh);

/// `v` normalised, or `fallback` if it is too short to have a direction.
ZmVector Unit(const ZmVector& v, const ZmVector& fallback = ZmVector::axisY());

#pragma once

#include "ZmMath.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// One vertex of an interleaved buffer. `Sky` and `Ground` say how much light from
/// above and from below reaches it, 0 to 1 each.
struct Vertex {
    ZmVector Position;
    ZmVector Normal;
    float Sky;
    float Ground;
};
static_assert(sizeof(Vertex) == 32, "the tour shows 32-byte strides");

/// Triangles whose vertex product (b - a) x (c - a) points outwards.
struct Mesh {
    std::vector<Vertex> Vertices;
    std::vector<uint32_t> Indices;  ///< three a triangle, always valid
    ZmBbox Box{};
    bool Closed = false;  ///< nobody can look at a triangle from behind

    size_t TriangleCount() const { return Indices.size() / 3; }
};

/// Makes any mesh fit for the scene: centred over the origin, standing on y = 0, its
/// largest side 1, normals smooth and pointing outwards. False when it has no size.
bool PrepareMesh(Mesh& mesh);

void ComputeBox(Mesh& mesh);

/// One component of the vertices as the library's bulk functions take it.
ZmStridedData Positions(const Mesh& mesh);
ZmStridedData Normals(const Mesh& mesh);

/// `v` in unit length, or `fallback` where it is too short to have a direction.
ZmVector Unit(const ZmVector& v, const ZmVector& fallback = ZmVector::axisY());

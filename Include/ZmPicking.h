#pragma once

#include "ZmRay.h"
#include "ZmStridedData.h"

#include <stdint.h>

// One ray against the triangles of a mesh.
//
// `distance` is t of Origin + t * Direction: it is measured in lengths of the direction, as in ZmIntersect. Triangles
// are hit for 0 <= t <= maxDistance, both included and without tolerance, so a maximum of 1 makes the ray a segment,
// and INFINITY or FLT_MAX leaves it endless. A negative maximum hits nothing.
//
// WATERTIGHT: no ray passes between triangles that share an edge, with the same bits in both corners. One that meets
// the edge or a corner hits at least one of them, however thin, small or far away they are (Woop, Benthin and Wald,
// "Watertight Ray/Triangle Intersection", Journal of Computer Graphics Techniques 2, 2013). ZmIntersect::RayFace, which
// takes a plane and has a tolerance, differs near edges.
//
// A triangle that has no area as seen along the ray is never hit, for example one with two equal corners; nor is one
// with an index out of range, which reads nothing. One whose corners lie on a line may be hit by a ray that meets that
// line: it fills what rounding leaves open between its neighbours. A direction of zero hits nothing. Triangles with
// NaNs or infinities are missed; in the ray these give a meaningless result, never a crash.
//
// Any thread may call. All functions give the same bits for every value of the feature word.

/// Triangles over shared positions. Triangle i has the positions indices[3 * i], indices[3 * i + 1] and
/// indices[3 * i + 2].
struct ZmMesh {
    ZmStridedData positions;  ///< three floats each, at any stride and alignment; nothing else is read
    int positionCount;        ///< indices from here on are out of range; below 1: nothing is hit
    const void* indices;      ///< uint16_t or uint32_t, tight, at any alignment; null: 0, 1, 2, 3 ...
    bool wideIndices;         ///< whether indices are uint32_t
    int triangleCount;        ///< below 1: nothing is hit
};

/// Sides of triangles, to be combined with |. The front is the side to which (b - a) x (c - a) points, the normal of
/// ZmPlane::Create(a, b, c) for the corners a, b and c.
enum ZMMESH_SIDES : uint32_t {
    ZMMESH_FRONT = 1,
    ZMMESH_BACK = 2,
    ZMMESH_BOTH = ZMMESH_FRONT | ZMMESH_BACK
};

/// Where a ray meets a mesh: the point (1 - u - v) * a + u * b + v * c of the triangle with the corners a, b and c.
struct ZmMeshHit {
    int triangle;    ///< number of the triangle
    float distance;  ///< t, see above
    float u;         ///< weight of b, not negative
    float v;         ///< weight of c; u + v is at most 1, rounding apart
};

/// Finds the nearest triangle that the ray hits on one of `sides`; of equal distances, the lowest number. Returns 1, or
/// 0 with `hit` unchanged.
ZM_API int ZmRayMesh(const ZmRay& ray, const ZmMesh& mesh, float maxDistance, ZmMeshHit& hit,
                     ZMMESH_SIDES sides = ZMMESH_BOTH);

/// Returns 1 if the ray hits any triangle on one of `sides`, else 0. Ends at the first: the question of shadows and of
/// lines of sight.
ZM_API int ZmRayMeshAny(const ZmRay& ray, const ZmMesh& mesh, float maxDistance, ZMMESH_SIDES sides = ZMMESH_BOTH);

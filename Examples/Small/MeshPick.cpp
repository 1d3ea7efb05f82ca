// What a game asks of its landscape: the ground under the mouse, and whether a guard can see a place behind a hill.
#include <ZmMath.h>

#include <cfloat>
#include <cstdint>
#include <cstdio>
#include <vector>

namespace {

constexpr int kSide = 32;  // squares of one unit

/// A plain with one hill, y upwards.
float HeightAt(int x, int z)
{
    const int fromTop = (x - 16) * (x - 16) + (z - 12) * (z - 12);
    return fromTop < 36 ? 5 - float(fromTop) * 5 / 36 : 0;
}

struct Landscape {
    std::vector<ZmVector> positions;
    std::vector<uint16_t> indices;

    Landscape()
    {
        for (int z = 0; z <= kSide; ++z) {
            for (int x = 0; x <= kSide; ++x) {
                positions.push_back({float(x), HeightAt(x, z), float(z)});
            }
        }
        for (int z = 0; z < kSide; ++z) {
            for (int x = 0; x < kSide; ++x) {
                const uint16_t a = uint16_t(z * (kSide + 1) + x), b = uint16_t(a + kSide + 1);
                const uint16_t corners[] = {a, b, uint16_t(a + 1), uint16_t(a + 1), b, uint16_t(b + 1)};
                indices.insert(indices.end(), corners, corners + 6);
            }
        }
    }

    /// Only describes the arrays: nothing is copied or prepared.
    ZmMesh Mesh()
    {
        return {
            {positions.data(), sizeof(ZmVector)}, int(positions.size()), indices.data(), 0, int(indices.size() / 3)};
    }

    /// The point of the triangle that was hit; normals and texture coordinates mix in the same way.
    ZmVector PointOf(const ZmMeshHit& hit) const
    {
        const uint16_t* corners = &indices[size_t(hit.triangle) * 3];
        const ZmVector &a = positions[corners[0]], &b = positions[corners[1]], &c = positions[corners[2]];
        return a * (1 - hit.u - hit.v) + b * hit.u + c * hit.v;
    }
};

}  // namespace

int main()
{
    Landscape landscape;
    const ZmMesh mesh = landscape.Mesh();

    const ZmVector eye(16, 9, -10);
    const ZmVector clicks[] = {{0, -0.3f, 1}, {0.4f, -0.3f, 1}, {0, 0.2f, 1}};
    for (const ZmVector& direction : clicks) {
        ZmMeshHit hit;
        if (ZmRayMesh({eye, direction}, mesh, FLT_MAX, hit)) {
            const ZmVector at = landscape.PointOf(hit);
            std::printf("the ground at %.2f, %.2f, %.2f\n", at.x, at.y, at.z);
        } else {
            std::puts("the sky");
        }
    }

    // A segment has a maximum of 1 when its direction is end minus start.
    const ZmVector guard(16, 2, 2);
    const ZmVector places[] = {{16, 1, 22}, {28, 1, 22}, {16, 9, 22}};
    for (const ZmVector& place : places) {
        const bool hidden = ZmRayMeshAny({guard, place - guard}, mesh, 1) != 0;
        std::printf("%.0f, %.0f, %.0f: %s\n", place.x, place.y, place.z, hidden ? "hidden" : "seen");
    }
}

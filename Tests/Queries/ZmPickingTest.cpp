#include "ZmPicking.h"

#include "Support/Paths.h"
#include "Support/Strided.h"
#include "ZmOperators.h"

#include <float.h>

namespace {

enum class IndexKind {
    NONE,
    NARROW,
    WIDE
};

/// A mesh in buffers of exactly its size, so that the sanitizers see every access beside them.
class TestMesh {
public:
    TestMesh(const std::vector<ZmVector>& positions, const std::vector<uint32_t>& indices, IndexKind kind,
             unsigned stride = 12)
        : m_Positions(positions, stride), m_Wide(indices), m_Narrow(indices.begin(), indices.end())
    {
        const bool isWide = kind == IndexKind::WIDE;
        const void* first = isWide ? static_cast<const void*>(m_Wide.data()) : m_Narrow.data();
        m_Mesh = {m_Positions.Data(), int(positions.size()), kind == IndexKind::NONE ? nullptr : first, isWide,
                  int(indices.size() / 3)};
    }
    TestMesh(const TestMesh&) = delete;
    TestMesh& operator=(const TestMesh&) = delete;

    ZmMesh& operator*() { return m_Mesh; }

private:
    Strided<ZmVector> m_Positions;
    std::vector<uint32_t> m_Wide;
    std::vector<uint16_t> m_Narrow;
    ZmMesh m_Mesh;
};

constexpr ZmMeshHit kUntouched = {-7, -7, -7, -7};

/// The nearest hit, or kUntouched. Expects that the question for any hit has the same answer.
ZmMeshHit Nearest(const ZmRay& ray, const ZmMesh& mesh, float maxDistance = FLT_MAX, ZMMESH_SIDES sides = ZMMESH_BOTH)
{
    ZmMeshHit hit = kUntouched;
    const int found = ZmRayMesh(ray, mesh, maxDistance, hit, sides);
    EXPECT_EQ(found, hit.triangle >= 0);
    EXPECT_EQ(ZmRayMeshAny(ray, mesh, maxDistance, sides), found);
    return hit;
}

/// A triangle and a ray in double, by Cramer's rule.
struct Reference {
    double distance, u, v;

    Reference(const ZmRay& ray, const ZmVector& a, const ZmVector& b, const ZmVector& c)
    {
        const zm::Triple origin(a), edge1 = zm::Triple(b) - origin, edge2 = zm::Triple(c) - origin;
        const zm::Triple offset = zm::Triple(ray.Origin) - origin, direction(ray.Direction);
        const double determinant = Dot(Cross(edge1, edge2), direction);
        distance = -Dot(Cross(edge1, edge2), offset) / determinant;
        u = Dot(Cross(direction, offset), edge2) / determinant;
        v = Dot(Cross(direction, offset), edge1) / -determinant;
    }
    /// How far inside all limits the hit is; negative outside.
    double Margin() const { return fmin(fmin(u, v), fmin(1 - u - v, distance)); }
};

TEST(ZmPickingTest, FindsTheNearestTriangleAtAnyStrideAndCount)
{
    OnEachPath(400, [](Random& random) {
        const int count = random.Int(0, 27);
        const IndexKind kind = IndexKind(random.Int(0, 2));
        const unsigned stride = unsigned(random.Int(12, 18));
        std::vector<ZmVector> positions;
        std::vector<uint32_t> indices;
        for (int i = 0; i < 3 * count; ++i) {
            positions.push_back(random.Vector(4));
            indices.push_back(kind == IndexKind::NONE ? uint32_t(i) : uint32_t(random.Int(0, 3 * count - 1)));
        }
        ZmRay ray;
        ray.Origin = random.Vector(8);
        ray.Direction = random.Vector(2) - ray.Origin;
        TestMesh mesh(positions, indices, kind, stride);

        ZmMeshHit expected = kUntouched;
        double nearest = DBL_MAX;
        for (int i = 0; i < count; ++i) {
            const uint32_t* corners = &indices[size_t(i) * 3];
            const Reference found(ray, positions[corners[0]], positions[corners[1]], positions[corners[2]]);
            if (fabs(found.Margin()) < 1e-4) {
                return;  // rounding may decide
            }
            if (found.Margin() > 0 && found.distance < nearest) {
                nearest = found.distance;
                expected = {i, float(found.distance), float(found.u), float(found.v)};
            }
        }
        const ZmMeshHit hit = Nearest(ray, *mesh);
        EXPECT_EQ(hit.triangle, expected.triangle) << count << " triangles, kind " << int(kind);
        EXPECT_NEAR(hit.distance, expected.distance, 1e-4);
        EXPECT_NEAR(hit.u, expected.u, 1e-3);
        EXPECT_NEAR(hit.v, expected.v, 1e-3);
    });
}

TEST(ZmPickingTest, AllPathsFindTheSameBits)
{
    std::vector<ZmMeshHit> first;
    for (const Path& path : AllPaths()) {
        const PathGuard guard(path);
        Random random(7);
        std::vector<ZmMeshHit> hits;
        for (int round = 0; round < 200; ++round) {
            std::vector<ZmVector> positions;
            for (int i = 0; i < 63; ++i) {
                positions.push_back(random.Vector());
            }
            TestMesh mesh(positions, std::vector<uint32_t>(63), IndexKind::NONE);
            ZmRay ray;
            ray.Origin = random.Vector(1);
            ray.Direction = random.Vector(1);
            hits.push_back(Nearest(ray, *mesh));
        }
        if (first.empty()) {
            first = hits;
        }
        EXPECT_EQ(memcmp(hits.data(), first.data(), hits.size() * sizeof(ZmMeshHit)), 0) << path.name;
    }
}

/// A closed fan of thin and thick triangles around two poles.
struct Spindle {
    std::vector<ZmVector> positions;
    std::vector<uint32_t> indices;

    Spindle(Random& random, float scale, const ZmVector& centre)
    {
        const uint32_t belt = uint32_t(random.Int(3, 40));
        positions = {{random.Float(0.5f), random.Float(0.5f), -1}, {random.Float(0.5f), random.Float(0.5f), 1}};
        for (uint32_t i = 0; i < belt; ++i) {
            const float angle = 6.2831853f * (float(i) + random.Float(0.49f)) / float(belt);
            positions.push_back({cosf(angle), sinf(angle), random.Float(0.3f)});
            const uint32_t a = 2 + i, b = 2 + (i + 1) % belt;
            indices.insert(indices.end(), {0, b, a, 1, a, b});
        }
        for (ZmVector& p : positions) {
            p = p * scale + centre;
        }
    }
};

TEST(ZmPickingTest, NoRayPassesBetweenTriangles)
{
    const struct {
        const char* name;
        float scale;
        ZmVector centre;
    } rows[] = {
        {"at the origin", 1, {0, 0, 0}},
        {"far away", 1, {300, -500, 2000}},
        {"tiny", 1e-25f, {0, 0, 0}},
        {"huge", 1e25f, {0, 0, 0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        OnEachPath(100, [&](Random& random) {
            const Spindle spindle(random, row.scale, row.centre);
            TestMesh mesh(spindle.positions, spindle.indices, IndexKind::NARROW);
            for (size_t i = 0; i < spindle.indices.size(); ++i) {
                const ZmVector &a = spindle.positions[spindle.indices[i]],
                               &b = spindle.positions[spindle.indices[i / 3 * 3 + (i + 1) % 3]];
                const float part = i % 2 ? random.Float(0, 1) : 0;  // on the edge, and at its corner
                ZmRay ray;
                ray.Origin = row.centre + random.Vector(0.1f) * row.scale;
                ray.Direction = Lerp(a, b, part) - ray.Origin;
                ASSERT_TRUE(ZmRayMeshAny(ray, *mesh, FLT_MAX)) << "from inside, edge " << i;
                ray.Direction *= -1;
                ASSERT_TRUE(ZmRayMeshAny(ray, *mesh, FLT_MAX)) << "backwards, edge " << i;
            }
        });
    }
}

/// Parallel triangles around the z axis at these depths; seen along +z, the first shows its front if `turned` is false.
TestMesh Layers(const std::vector<float>& depths, bool turned = false)
{
    std::vector<ZmVector> positions;
    for (const float z : depths) {
        const ZmVector b(3, -2, z), c(-1, 4, z);
        positions.insert(positions.end(), {{-2, -2, z}, turned ? b : c, turned ? c : b});
    }
    return {positions, std::vector<uint32_t>(positions.size()), IndexKind::NONE};
}

TEST(ZmPickingTest, DistancesAreMeasuredInDirectionsUpToTheMaximum)
{
    const struct {
        const char* name;
        float originZ, directionZ, maxDistance, expected;
    } rows[] = {
        {"a unit", 0, 1, FLT_MAX, 4},
        {"a longer direction", 0, 8, FLT_MAX, 0.5f},
        {"endless", 0, 1, INFINITY, 4},
        {"just far enough", 0, 1, 4, 4},
        {"too short", 0, 1, 3.9999998f, -7},
        {"from the other side", 6, -1, FLT_MAX, 2},
        {"on the triangle", 4, 1, 0, 0},
        {"behind", 4.0000005f, 1, FLT_MAX, -7},
        {"less than nothing", 4, 1, -1, -7},
        {"not a number", 0, 1, NAN, -7},
        {"without direction", 0, 0, FLT_MAX, -7},
    };
    for (const auto& row : rows) {
        OnEachPath(1, [&](Random&) {
            for (const size_t count : {size_t(1), size_t(8), size_t(11)}) {
                TestMesh mesh = Layers(std::vector<float>(count, 4));
                EXPECT_EQ(Nearest({{0, 0, row.originZ}, {0, 0, row.directionZ}}, *mesh, row.maxDistance).distance,
                          row.expected)
                    << row.name << ", " << count;
            }
        });
    }
}

TEST(ZmPickingTest, OfEqualDistancesTheLowestNumberWins)
{
    OnEachPath(1, [](Random&) {
        const std::vector<float> depths = {9, 9, 9, 5, 9, 9, 9, 9, 5, 9, 3, 3, 3, 9, 3, 9, 9, 3, 4};
        TestMesh mesh = Layers(depths);
        EXPECT_EQ(Nearest({{0, 0, 0}, {0, 0, 1}}, *mesh).triangle, 10);
        EXPECT_EQ(Nearest({{0, 0, 0}, {0, 0, 1}}, *mesh, 2.5f).triangle, -7);
        (*mesh).triangleCount = 10;
        EXPECT_EQ(Nearest({{0, 0, 0}, {0, 0, 1}}, *mesh).triangle, 3);
    });
}

TEST(ZmPickingTest, TheFrontIsWhereTheNormalPoints)
{
    const ZmRay there = {{0.1f, 0.2f, 0}, {0, 0, 1}}, back = {{0.1f, 0.2f, 9}, {0, 0, -1}};
    OnEachPath(1, [&](Random& random) {
        for (int axis = 0; axis < 3; ++axis) {
            // Turns z to each axis and keeps the handedness.
            const auto turned = [&](const ZmVector& v) {
                return axis == 0 ? ZmVector(v.z, v.x, v.y) : axis == 1 ? ZmVector(v.y, v.z, v.x) : v;
            };
            const ZmVector a = turned({-2, -2, 5}), b = turned({3, -2, 5}), c = turned({-1, 4, 5});
            TestMesh mesh({a, b, c}, {0, 1, 2, 0, 1, 2, 0, 1, 2}, IndexKind(random.Int(1, 2)));
            for (const ZmRay& ray : {there, back}) {
                const ZmRay seen = {turned(ray.Origin), turned(ray.Direction)};
                ZmPlane plane;
                plane.Create(a, b, c);
                const bool front = Dot(plane.Normal, seen.Direction) < 0;
                EXPECT_EQ(Nearest(seen, *mesh, FLT_MAX, ZMMESH_FRONT).triangle, front ? 0 : -7) << axis;
                EXPECT_EQ(Nearest(seen, *mesh, FLT_MAX, ZMMESH_BACK).triangle, front ? -7 : 0) << axis;
            }
        }
    });
}

TEST(ZmPickingTest, NothingIsReadOrHitOutsideTheMesh)
{
    const std::vector<ZmVector> positions = {{-2, -2, 5}, {3, -2, 5}, {-1, 4, 5}, {-2, -2, 4}, {3, -2, 4}, {-1, 4, 4}};
    const ZmRay ray = {{0, 0, 0}, {0, 0, 1}};
    const uint32_t count = uint32_t(positions.size());
    OnEachPath(1, [&](Random&) {
        for (const uint32_t outside : {count, count + 1, 0xFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
            for (size_t at = 0; at < 33; ++at) {
                std::vector<uint32_t> indices;
                for (uint32_t i = 0; i < 33; ++i) {
                    indices.push_back(3 + i % 3);  // the nearer triangle
                }
                indices[at] = outside;
                const bool isWide = outside > 0xFFFF;
                TestMesh mesh(positions, indices, isWide ? IndexKind::WIDE : IndexKind::NARROW);
                EXPECT_EQ(Nearest(ray, *mesh).triangle, at < 3 ? 1 : 0) << outside << " at " << at;
                TestMesh apart(positions, std::vector<uint32_t>(33, outside), IndexKind::WIDE, 16);
                EXPECT_EQ(Nearest(ray, *apart).triangle, -7);
            }
        }
        TestMesh plain(positions, std::vector<uint32_t>(60), IndexKind::NONE);
        EXPECT_EQ(Nearest(ray, *plain).triangle, 1) << "more triangles than positions";
        for (const auto& counts : {std::pair<int, int>{0, 20}, {2, 20}, {-6, 20}, {6, 0}, {6, -1}}) {
            (*plain).positionCount = counts.first;
            (*plain).triangleCount = counts.second;
            EXPECT_EQ(Nearest(ray, *plain).triangle, -7) << counts.first << ", " << counts.second;
        }
    });
}

TEST(ZmPickingTest, TrianglesWithoutAreaOrNumbersAreNotHit)
{
    const float nan = nanf(""), inf = INFINITY;
    const ZmVector a(-2, -2, 3), b(3, -2, 3), c(-1, 4, 3), origin(0, 0, 3);
    const struct {
        const char* name;
        ZmVector corners[3];
    } rows[] = {
        {"a point on the ray", {origin, origin, origin}},
        {"two equal corners", {origin, a, a}},
        {"two equal corners on the ray", {a, origin, origin}},
        {"a line through the ray", {{-1, 0, 3}, {1, 0, 3}, {2, 0, 3}}},
        {"seen edge-on", {{-1, 0, 2}, {1, 0, 2}, {0, 0, 4}}},
        {"a corner without a number", {a, b, {nan, 4, 3}}},
        {"a depth without a number", {a, {3, -2, nan}, c}},
        {"an infinite corner", {a, b, {-1, inf, 3}}},
        {"an infinite depth", {a, b, {-1, 4, -inf}}},
        {"all infinite", {{-inf, -inf, 3}, {inf, -inf, 3}, {0, inf, 3}}},
    };
    for (const auto& row : rows) {
        OnEachPath(1, [&](Random&) {
            SCOPED_TRACE(row.name);
            std::vector<ZmVector> positions;
            for (int i = 0; i < 16; ++i) {
                positions.insert(positions.end(), row.corners, row.corners + 3);
            }
            const std::vector<uint32_t> indices(positions.size() + 3);
            TestMesh missed(positions, indices, IndexKind::NONE);
            EXPECT_EQ(Nearest({{0, 0, 0}, {0, 0, 1}}, *missed).triangle, -7);
            positions.insert(positions.end(), {{-2, -2, 9}, {3, -2, 9}, {-1, 4, 9}});
            TestMesh hit(positions, indices, IndexKind::NONE);
            EXPECT_EQ(Nearest({{0, 0, 0}, {0, 0, 1}}, *hit).triangle, 16);
        });
    }
    TestMesh mesh({a, b, c}, {0, 1, 2}, IndexKind::WIDE);
    OnEachPath(300, [&](Random& random) {
        const float odd[] = {nan, inf, -inf, 0, 1, FLT_MAX, -FLT_MAX, FLT_MIN};
        float v[6];
        for (float& f : v) {
            f = odd[random.Int(0, 7)];
        }
        Nearest({{v[0], v[1], v[2]}, {v[3], v[4], v[5]}}, *mesh);
    });
}

}  // namespace

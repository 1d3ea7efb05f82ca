#include "Queries/Overlaps.h"

namespace {

ZmFrustum RandomFrustum(Random& random)
{
    ZmMatrix turn;
    (random.Int(0, 3) ? random.Rotation() : ZmQuaternion(0, 0, 0, 1)).ToMatrix(turn);
    ZmFrustum frustum;
    frustum.HalfWidth = random.Float(0.2f, 1.5f);
    frustum.HalfHeight = random.Float(0.2f, 1.5f);
    frustum.NearDistance = random.Float(0.5f, 2);
    frustum.FarDistance = random.Float(3, 10);
    frustum.Transform(turn);
    frustum.Origin = random.Vector(3);
    frustum.Update();
    return frustum;
}

/// Turned, stretched, and now and then sheared or flat.
ZmMatrix RandomPlace(Random& random, const ZmVector& position)
{
    const int kind = random.Int(0, 9);
    if (kind == 0) {
        return {random.Vector(1), random.Vector(1), random.Vector(1), position};
    }
    ZmMatrix m;
    random.Rotation().ToMatrix(m);
    const ZmVector scale = {random.Float(0.3f, 2), kind == 1 ? 0 : random.Float(0.3f, 2), random.Float(0.3f, 2)};
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            m[i][j] *= scale[i];
        }
        m[3][i] = position[i];
    }
    return m;
}

TEST(ZmIntersectFrustumTest, BoxesAgreeWithProjectionsOfAllCorners)
{
    OverlapCounts aligned("aligned"), placed("placed");
    OnEachPath(3000, [&](Random& random) {
        const ZmFrustum frustum = RandomFrustum(random);
        const ZmVector near = frustum.Origin + frustum.Direction * 4.0f + random.Vector(6);
        const ZmBbox local = RandomBox(random, 1, 3), box = {local.Max + near, local.Min + near};
        const ZmMatrix m = RandomPlace(random, near);
        aligned.Check(ZmIntersect::FrustumAABB(frustum, box), Gap(Hull::Frustum(frustum), Hull::Box(box)));
        placed.Check(ZmIntersect::FrustumOBB(frustum, local, m), Gap(Hull::Frustum(frustum), Hull::Box(local, m)));
    });
}

TEST(ZmIntersectFrustumTest, ParallelEdgesPartNothing)
{
    // Boxes with the frustum's orientation, or aligned with its slanted edges, that overlap it slightly: the products
    // of edges are then pure rounding error.
    OnEachPath(3000, [&](Random& random) {
        const ZmFrustum frustum = RandomFrustum(random);
        ZmVector corners[8];
        frustum.ComputeVertices(corners);
        const bool slanted = random.Int(0, 1) == 1;
        const ZmVector edge = corners[4] - corners[0];
        const ZmVector z = slanted ? edge * (1 / Length(edge)) : frustum.Direction;
        const ZmVector cross = Cross(frustum.Up, z), x = cross * (1 / Length(cross)), y = Cross(z, x);
        const ZmVector half = {random.Float(0.5f, 2), random.Float(0.5f, 2), random.Float(0.5f, 2)};
        // From a point of the frustum outwards, by a little less than the box reaches.
        const ZmVector inside = corners[random.Int(0, 7)];
        const float s = random.Int(0, 1) ? 0.999f : -0.999f;
        const ZmVector centre = inside + x * (s * half.x) + y * (s * half.y) - z * (s * half.z);
        EXPECT_EQ(ZmIntersect::FrustumOBB(frustum, {half, -half}, {x, y, z, centre}), 1);
    });
}

/// The plane tests exactly as documented, one plane at a time.
int ByPlanes(const ZmFrustum& frustum, const Hull& box)
{
    for (const int index : {4, 5, 0, 1, 2, 3}) {
        const ZmPlane& plane = frustum.Planes[index];
        double least = 1e300, most = -1e300;
        for (const Double3& corner : box.corners) {
            const double distance = Dot(corner, Double3(plane.Normal)) + plane.D;
            least = std::min(least, distance);
            most = std::max(most, distance);
        }
        if (most >= 0) {
            return least > 0 ? 0 : 1;
        }
    }
    return 1;
}

TEST(ZmIntersectFrustumTest, PlanesAreVisitedInOrderAndTheFirstStraddledOneEndsTheTest)
{
    int early = 0;
    OnEachPath(4000, [&](Random& random) {
        const ZmFrustum frustum = RandomFrustum(random);
        const ZmVector near = frustum.Origin + frustum.Direction * 4.0f + random.Vector(8);
        const ZmBbox box = RandomBox(random, 1, 3);
        const ZmMatrix m = RandomPlace(random, near);
        const int answer = ZmIntersect::FrustumBox(frustum, box, m);
        EXPECT_EQ(answer, ByPlanes(frustum, Hull::Box(box, m)));
        early += answer && !ZmIntersect::FrustumOBB(frustum, box, m);
    });
    EXPECT_GT(early, 100) << "boxes outside the frustum that the first plane lets pass";
}

TEST(ZmIntersectFrustumTest, RequiredAnswersOfThePlaneTests)
{
    const ZmFrustum frustum;  // along Z, from 1 to 2, 45 degrees to each side
    const ZmBbox unit = {{1, 1, 1}, {-1, -1, -1}};
    const struct {
        const char* name;
        ZmVector place;
        float size;
        int byPlanes, exact;
    } rows[] = {
        {"inside", {0, 0, 1.5f}, 0.1f, 1, 1},
        {"straddles near, far outside to the left", {-50, 0, 1}, 0.5f, 1, 0},
        {"touches near from in front", {0, 0, 0.5f}, 0.5f, 1, 1},
        {"in front of near", {0, 0, 0.25f}, 0.5f, 0, 0},
        {"beyond far", {0, 0, 3}, 0.5f, 0, 0},
        {"around all of it", {0, 0, 1}, 40, 1, 1},
        {"left of it, within the depths", {-4, 0, 1.5f}, 0.25f, 0, 0},
    };
    for (const auto& row : rows) {
        const ZmMatrix m = {{row.size, 0, 0}, {0, row.size, 0}, {0, 0, row.size}, row.place};
        OnEachPath(1, [&](Random&) {
            SCOPED_TRACE(row.name);
            EXPECT_EQ(ZmIntersect::FrustumBox(frustum, unit, m), row.byPlanes);
            EXPECT_EQ(ZmIntersect::FrustumOBB(frustum, unit, m), row.exact);
        });
    }
}

TEST(ZmIntersectFrustumTest, TrianglesAreOutsideWhenOnePlaneHasAllCornersInFront)
{
    const ZmFrustum frustum;
    const struct {
        const char* name;
        ZmVector a, b, c;
        int expected;
    } rows[] = {
        {"inside", {0, 0, 1.5f}, {0.1f, 0, 1.5f}, {0, 0.1f, 1.5f}, 1},
        {"left", {-3, 0, 1.5f}, {-4, 0, 1.5f}, {-3, 1, 1.5f}, 0},
        {"above", {0, 3, 1.5f}, {1, 4, 1.5f}, {-1, 4, 1.5f}, 0},
        {"nearer than near", {0, 0, 0.5f}, {0.1f, 0, 0.9f}, {0, 0.1f, 0}, 0},
        {"one corner in the near plane", {0, 0, 1}, {0.1f, 0, 0.9f}, {0, 0.1f, 0}, 1},
        {"beyond far", {0, 0, 3}, {1, 0, 3}, {0, 1, 3}, 0},
        {"outside near an edge, not of one plane", {4, 0, 1.5f}, {0, 4, 1.5f}, {4, 4, 1.5f}, 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(ZmIntersect::FrustumFace(frustum, row.a, row.b, row.c), row.expected);
    }
}

}  // namespace

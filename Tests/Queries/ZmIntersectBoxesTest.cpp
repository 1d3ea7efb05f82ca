#include "Queries/Overlaps.h"

namespace {

constexpr int kRounds = 4000;

TEST(ZmIntersectBoxesTest, AgreeWithProjectionsOfAllCorners)
{
    OverlapCounts aligned("aligned"), mixed("mixed"), oriented("oriented");
    OnEachPath(kRounds, [&](Random& random) {
        const ZmBbox a = RandomBox(random, 3, 4), b = RandomBox(random, 3, 4);
        const ZmOBB c = RandomOriented(random, 2, 2), d = RandomOriented(random, 2, 2);
        aligned.Check(ZmIntersect::AABBAABB(a, b), Gap(Hull::Box(a), Hull::Box(b)));
        mixed.Check(ZmIntersect::AABBOBB(a, c), Gap(Hull::Box(a), Hull::Box(c)));
        oriented.Check(ZmIntersect::OBBOBB(c, d), Gap(Hull::Box(c), Hull::Box(d)));
    });
}

/// A box turned by a quarter about Z in whole numbers.
ZmOBB Turned(const ZmVector& centre, float x, float y, float z)
{
    return {centre, {{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}}, {x, y, z}};
}

TEST(ZmIntersectBoxesTest, TouchingCounts)
{
    const ZmBbox unit = {{1, 1, 1}, {-1, -1, -1}};
    const struct {
        const char* name;
        ZmVector centre;
        int expected;
    } rows[] = {
        {"one face", {3, 0, 0}, 1},           {"one edge", {3, -2, 0}, 1},
        {"one corner", {-3, 2, 4}, 1},        {"X alone apart", {3.001f, 0, 0}, 0},
        {"Y alone apart", {0, 2.001f, 0}, 0}, {"Z alone apart", {0, 0, -4.001f}, 0},
    };
    for (const auto& row : rows) {
        OnEachPath(1, [&](Random&) {
            SCOPED_TRACE(row.name);
            const ZmVector half(2, 1, 3);
            EXPECT_EQ(ZmIntersect::AABBAABB(unit, {row.centre + half, row.centre - half}), row.expected);
            EXPECT_EQ(ZmIntersect::AABBAABB({row.centre + half, row.centre - half}, unit), row.expected);
            const ZmOBB turned = Turned(row.centre, half.y, half.x, half.z);
            EXPECT_EQ(ZmIntersect::AABBOBB(unit, turned), row.expected);
            EXPECT_EQ(ZmIntersect::OBBOBB(turned, Turned({0, 0, 0}, 1, 1, 1)), row.expected);
        });
    }
}

TEST(ZmIntersectBoxesTest, BoxAndTriangleAgreeWithProjections)
{
    OverlapCounts counts("counts");
    OnEachPath(kRounds, [&](Random& random) {
        const ZmBbox box = RandomBox(random, 2, 4);
        const float size = random.Int(0, 1) ? 2.0f : 8.0f;  // large ones are poked through
        const ZmVector middle = random.Vector(2);
        const ZmVector a = middle + random.Vector(size), b = middle + random.Vector(size),
                       c = middle + random.Vector(size);
        counts.Check(ZmIntersect::AABBFace(box, a, b, c, Cross(b - a, c - a)),
                     Gap(Hull::Box(box), Hull::Triangle(a, b, c)));
    });
}

TEST(ZmIntersectBoxesTest, BoxAndTriangleMeetInEachOfTheirWays)
{
    const ZmBbox box = {{1, 1, 1}, {-1, -1, -1}};
    const struct {
        const char* name;
        ZmVector a, b, c;
        int expected;
    } rows[] = {
        {"a corner of the triangle inside", {0, 0, 0}, {5, 5, 0}, {5, 6, 1}, 1},
        {"an edge through the box", {-3, 0, 0.5f}, {3, 0.1f, 0}, {0, 9, 0}, 1},
        {"the box pokes through, one winding", {-9, -8, 0.1f}, {9, -8, 0}, {0, 9, 0.2f}, 1},
        {"the box pokes through, the other", {9, -8, 0}, {-9, -8, 0.1f}, {0, 9, 0.2f}, 1},
        {"a corner on a face of the box", {1, 0, 0}, {5, 1, 0}, {5, -1, 0}, 1},
        {"all beyond one face", {1.1f, 0, 0}, {5, 1, 0}, {5, -1, 0}, 0},
        {"past an edge of the box", {2.2f, 0, 0}, {0, 2.2f, 0}, {2.2f, 2.2f, 0}, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(ZmIntersect::AABBFace(box, row.a, row.b, row.c, Cross(row.b - row.a, row.c - row.a)), row.expected);
    }
}

}  // namespace

#include "Queries/Overlaps.h"

namespace {

constexpr float kKept = 77;

struct Triangle {
    ZmVector a, b, c;
    ZmVector Normal() const { return Cross(b - a, c - a); }
    Triangle Reversed() const { return {a, c, b}; }
};

Triangle RandomTriangle(Random& random, float range)
{
    return {random.Vector(range), random.Vector(range), random.Vector(range)};
}

/// Outputs of a face test, initialised to values that no test writes.
struct Hit {
    int code = 0;
    ZmVector point{kKept, kKept, kKept};
    float t = kKept;
    int i1 = int(kKept), i2 = int(kKept);

    bool operator==(const Hit& o) const
    {
        return code == o.code && point == o.point && t == o.t && i1 == o.i1 && i2 == o.i2;
    }
};

using Form = int (*)(const ZmRay&, const ZmVector&, const ZmVector&, const ZmVector&, const ZmVector&, ZmVector&,
                     float&, int&, int&);
using ShortForm = int (*)(const ZmRay&, const ZmVector&, const ZmVector&, const ZmVector&, const ZmVector&, ZmVector&,
                          float&);
using PlaneForm = int (*)(const ZmRay&, const ZmPlane&, ZmVector&, float&);

const struct {
    const char* name;
    Form form;
    ShortForm shortForm;
    PlaneForm planeForm;
} kForms[] = {
    {"RayFace", ZmIntersect::RayFace, ZmIntersect::RayFace, ZmIntersect::RayPlane},
    {"RayFaceCulled", ZmIntersect::RayFaceCulled, nullptr, ZmIntersect::RayPlaneCulled},
    {"SegmentFace", ZmIntersect::SegmentFace, ZmIntersect::SegmentFace, ZmIntersect::SegmentPlane},
    {"SegmentFaceCulled", ZmIntersect::SegmentFaceCulled, nullptr, ZmIntersect::SegmentPlaneCulled},
    {"LineFace", ZmIntersect::LineFace, ZmIntersect::LineFace, ZmIntersect::LinePlane},
};

TEST(ZmIntersectFaceTest, AFaceTestIsItsPlaneTestThenThePointTest)
{
    Random random(5);
    int hits[5] = {};
    for (int round = 0; round < 3000; ++round) {
        const Triangle t = RandomTriangle(random, 2);
        const ZmVector origin = random.Vector(3), target = t.a * 0.4f + t.b * 0.3f + t.c * 0.3f + random.Vector(1);
        const float length = random.Float(-1, 2);
        const ZmRay ray = {origin, random.Int(0, 9) ? (target - origin) * length : t.b - t.a};
        ZmPlane plane;
        plane.Create(t.Normal(), t.a);
        for (int i = 0; i < 5; ++i) {
            SCOPED_TRACE(kForms[i].name);
            Hit expected, got, brief;
            if (kForms[i].planeForm(ray, plane, expected.point, expected.t)) {
                expected.code =
                    ZmIntersect::PointInFace(expected.point, t.a, t.b, t.c, t.Normal(), expected.i1, expected.i2);
            }
            got.code = kForms[i].form(ray, t.a, t.b, t.c, t.Normal(), got.point, got.t, got.i1, got.i2);
            EXPECT_TRUE(got == expected);
            if (kForms[i].shortForm) {
                brief.code = kForms[i].shortForm(ray, t.a, t.b, t.c, t.Normal(), brief.point, brief.t);
                EXPECT_TRUE(brief.code == got.code && brief.point == got.point && brief.t == got.t);
            }
            hits[i] += got.code != 0;
        }
    }
    for (const int count : hits) {
        EXPECT_GT(count, 50);
    }
}

TEST(ZmIntersectFaceTest, HitsAreThoseOfMoellerAndTrumbore)
{
    Random random(6);
    int hits = 0;
    for (int round = 0; round < 5000; ++round) {
        const Triangle t = RandomTriangle(random, 2);
        const ZmVector origin = random.Vector(3);
        const ZmRay ray = {origin, random.Vector(1) - origin};
        const Double3 e1 = Double3(t.b) - t.a, e2 = Double3(t.c) - t.a, d = ray.Direction;
        const Double3 p = Cross(d, e2), s = Double3(ray.Origin) - t.a, q = Cross(s, e1);
        const double det = Dot(e1, p), u = Dot(s, p) / det, v = Dot(d, q) / det, at = Dot(e2, q) / det;
        const double margin = std::min({fabs(u), fabs(v), fabs(1 - u - v), fabs(at), fabs(det)});
        if (margin < 1e-3) {
            continue;
        }
        const bool inside = u > 0 && v > 0 && u + v < 1 && at > 0;
        ZmVector point;
        float dist;
        EXPECT_EQ(ZmIntersect::RayFace(ray, t.a, t.b, t.c, t.Normal(), point, dist) != 0, inside);
        hits += inside;
        EXPECT_NEAR(dist, at, 1e-3 * (1 + fabs(at)));
        if (inside) {
            int i1, i2;
            float c0, c1, c2;
            ASSERT_NE(ZmIntersect::PointInFace(point, t.a, t.b, t.c, t.Normal(), i1, i2), 0);
            ZmIntersect::GetPointCoefficients(point, t.a, t.b, t.c, i1, i2, c0, c1, c2);
            EXPECT_NEAR(c1, u, 2e-3);
            EXPECT_NEAR(c2, v, 2e-3);
            EXPECT_EQ(c0, 1 - (c1 + c2));
        }
    }
    EXPECT_GT(hits, 200);
}

TEST(ZmIntersectFaceTest, TheWindingTellsTheCodeAndTheNormalTheAxes)
{
    const Triangle xy = {{0, 0, 0}, {4, 0, 0}, {0, 4, 0}}, xz = {{0, 0, 0}, {4, 0, 0}, {0, 0, 4}};
    const Triangle yz = {{0, 0, 0}, {0, 4, 0}, {0, 0, 4}};
    const struct {
        const char* name;
        Triangle triangle;
        ZmVector point, normal;
        int code, i1, i2;
    } rows[] = {
        {"Z dropped", xy, {1, 1, 0}, {0, 0, 1}, 1, 0, 1},
        {"Z dropped, the other winding", xy.Reversed(), {1, 1, 0}, {0, 0, 1}, 2, 0, 1},
        {"the normal's sign tells nothing", xy, {1, 1, 0}, {0, 0, -9}, 1, 0, 1},
        {"outside", xy, {3, 3, 0}, {0, 0, 1}, 0, 0, 1},
        {"Y dropped", xz, {1, 0, 1}, {0, 1, 0}, 1, 0, 2},
        {"X dropped", yz, {0, 1, 1}, {1, 0, 0}, 1, 1, 2},
        {"X before equal Y and Z", yz, {0, 1, 1}, {1, -1, 1}, 1, 1, 2},
        {"Y before equal Z", xz, {1, 0, 1}, {0.5f, 1, -1}, 1, 0, 2},
        {"on an edge, one winding", xy, {2, 0, 0}, {0, 0, 1}, 0, 0, 1},
        {"on an edge, the other", xy.Reversed(), {2, 0, 0}, {0, 0, 1}, 2, 0, 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        int i1 = -1, i2 = -1;
        const Triangle& t = row.triangle;
        EXPECT_EQ(ZmIntersect::PointInFace(row.point, t.a, t.b, t.c, row.normal, i1, i2), row.code);
        EXPECT_EQ(i1, row.i1);
        EXPECT_EQ(i2, row.i2);
    }
}

TEST(ZmIntersectFaceTest, CoefficientsWhenTheFirstEdgeHasNoPartInTheFirstAxis)
{
    float c0, c1, c2;
    ZmIntersect::GetPointCoefficients({1, 1, 5}, {0, 0, 5}, {0, 4, 5}, {4, 0, 5}, 0, 1, c0, c1, c2);
    EXPECT_EQ(c0, 0.5f);
    EXPECT_EQ(c1, 0.25f);
    EXPECT_EQ(c2, 0.25f);
}

// --- Two triangles ---

int Meet(const Triangle& a, const Triangle& b)
{
    return ZmIntersect::FaceFace(a.a, a.b, a.c, a.Normal(), b.a, b.b, b.c, b.Normal());
}

TEST(ZmIntersectFaceTest, TwoTrianglesAgreeWithProjections)
{
    OverlapCounts counts("counts");
    Random random(8);
    for (int round = 0; round < 8000; ++round) {
        const Triangle a = RandomTriangle(random, 2), b = RandomTriangle(random, 2);
        counts.Check(Meet(a, b), Gap(Hull::Triangle(a.a, a.b, a.c), Hull::Triangle(b.a, b.b, b.c)));
        // The same in one plane: its points have integer coordinates and so lie exactly in it.
        const auto within = [&] { return ZmVector(float(random.Int(-9, 9)), float(random.Int(-9, 9)), 0); };
        Triangle c = {within(), within(), within()}, d = {within(), within(), within()};
        for (ZmVector* p : {&c.a, &c.b, &c.c, &d.a, &d.b, &d.c}) {
            p->z = p->x * 2 - p->y + 3;
        }
        const double gap = Gap(Hull::Triangle(c.a, c.b, c.c), Hull::Triangle(d.a, d.b, d.c));
        if (fabs(gap) > 1e-9 && Length(c.Normal()) > 0 && Length(d.Normal()) > 0) {
            // All lie in one plane, along whose normal the overlap is zero.
            EXPECT_EQ(Meet(c, d), gap < 0);
        }
    }
}

TEST(ZmIntersectFaceTest, TrianglesThatTouchOrLieInOnePlane)
{
    const Triangle base = {{0, 0, 0}, {4, 0, 0}, {0, 4, 0}};
    const struct {
        const char* name;
        Triangle other;
        int expected;
    } rows[] = {
        {"a corner in the inside", {{1, 1, 0}, {1, 1, 3}, {2, 1, 3}}, 1},
        {"a corner above it", {{1, 1, 0.01f}, {1, 1, 3}, {2, 1, 3}}, 0},
        {"a shared corner", {{4, 0, 0}, {6, 0, 1}, {6, 1, -1}}, 1},
        {"a shared edge, folded", {{0, 0, 0}, {4, 0, 0}, {0, 0, 4}}, 1},
        {"an edge on the plane, outside", {{3, 3, 0}, {9, 3, 0}, {5, 5, 4}}, 0},
        {"an edge on the plane, inside", {{1, 1, 0}, {1.5f, 1, 0}, {1, 1, 4}}, 1},
        {"through the inside", {{1, 1, -1}, {1, 1, 1}, {9, 9, 0.5f}}, 1},
        {"beside it, through its plane", {{5, 5, -1}, {5, 5, 1}, {9, 9, 0.5f}}, 0},
        {"parallel", {{0, 0, 1}, {4, 0, 1}, {0, 4, 1}}, 0},
        {"itself", base, 1},
        {"itself, reversed", base.Reversed(), 1},
        {"in the plane, contained", {{1, 1, 0}, {1.5f, 1, 0}, {1, 1.5f, 0}}, 1},
        {"in the plane, containing", {{-9, -9, 0}, {30, -9, 0}, {-9, 30, 0}}, 1},
        {"in the plane, edges that cross", {{1, -1, 0}, {2, -1, 0}, {1.5f, 9, 0}}, 1},
        {"in the plane, apart", {{3, 3, 0}, {4, 3, 0}, {3, 4, 0}}, 0},
        {"in the plane, one corner on an edge", {{2, 2, 0}, {4, 3, 0}, {3, 4, 0}}, 1},
        {"in the plane, edges on one line", {{1, 0, 0}, {3, 0, 0}, {2, -3, 0}}, 1},
        {"in the plane, on one line but apart", {{5, 0, 0}, {7, 0, 0}, {6, -3, 0}}, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Meet(base, row.other), row.expected);
        EXPECT_EQ(Meet(row.other, base), row.expected);
    }
}

TEST(ZmIntersectFaceTest, ASharedCornerAlwaysTouches)
{
    Random random(10);
    for (int round = 0; round < 2000; ++round) {
        // A shared corner near the origin, the others far away: sums of both lose the near one's digits.
        const ZmVector shared = random.Vector(1);
        const Triangle a = {shared, random.Vector(100), random.Vector(100)};
        EXPECT_EQ(Meet(a, {shared, random.Vector(100), random.Vector(100)}), 1);
    }
}

TEST(ZmIntersectFaceTest, DegenerateTrianglesOfOnePlaneCountAsSegments)
{
    const Triangle base = {{0, 0, 0}, {4, 0, 0}, {0, 4, 0}};
    const ZmVector normal(0, 0, 1);
    const auto meets = [&](const ZmVector& from, const ZmVector& to) {
        return ZmIntersect::FaceFace(base.a, base.b, base.c, normal, from, to, to, normal);
    };
    EXPECT_EQ(meets({1, 1, 0}, {9, 9, 0}), 1);
    EXPECT_EQ(meets({1, 1, 0}, {1, 1, 0}), 1);
    EXPECT_EQ(meets({5, 5, 0}, {9, 9, 0}), 0) << "a segment that points at the triangle";
    EXPECT_EQ(meets({5, 0, 0}, {9, 0, 0}), 0) << "a segment on the line of an edge";
}

}  // namespace

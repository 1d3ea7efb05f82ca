#include "Queries/Overlaps.h"

namespace {

using Form = int (*)(const ZmRay&, const ZmPlane&, ZmVector&, float&);

constexpr Form kRay = ZmIntersect::RayPlane, kRayCulled = ZmIntersect::RayPlaneCulled, kLine = ZmIntersect::LinePlane;
constexpr Form kSegment = ZmIntersect::SegmentPlane, kSegmentCulled = ZmIntersect::SegmentPlaneCulled;

constexpr float kEps = 0x1p-23f, kKept = 77;

/// Rays from a height above the plane y = 0 straight down, or up, or along it.
const struct {
    const char* name;
    Form form;
    float height, climb;
    int code;
    float t;  // kKept where nothing is written
} kRows[] = {
    {"ray down", kRay, 4, -2, 1, 2},
    {"ray up, still tells t", kRay, 4, 2, 0, -2},
    {"ray from just behind", kRay, kEps, 1, 1, -kEps},
    {"ray from behind", kRay, 2 * kEps, 1, 0, -2 * kEps},
    {"ray along the plane", kRay, 4, 0, 0, kKept},
    {"ray nearly along it", kRay, 4, kEps / 2, 0, kKept},
    {"ray a little steeper", kRay, 4, -kEps, 1, 4 / kEps},
    {"ray against the back", kRay, -4, 2, 1, 2},
    {"culled ray down", kRayCulled, 4, -2, 1, 2},
    {"culled ray down from behind the plane", kRayCulled, -4, -2, 0, -2},
    {"culled ray against the back writes nothing", kRayCulled, -4, 2, 0, kKept},
    {"culled ray at EPS", kRayCulled, 4, -kEps, 1, 4 / kEps},
    {"culled ray above EPS", kRayCulled, 4, -kEps / 2, 0, kKept},
    {"segment across", kSegment, 4, -8, 1, 0.5f},
    {"segment that ends in the plane", kSegment, 4, -4, 1, 1},
    {"segment that ends EPS before it", kSegment, 1, -(1 - kEps / 2), 1, 1 + kEps},
    {"segment too short, still tells t", kSegment, 4, -2, 0, 2},
    {"segment away, still tells t", kSegment, 4, 4, 0, -1},
    {"segment from behind", kSegment, -4, 8, 1, 0.5f},
    {"culled segment across", kSegmentCulled, 4, -8, 1, 0.5f},
    {"culled segment from behind writes nothing", kSegmentCulled, -4, 8, 0, kKept},
    {"line behind the origin", kLine, 4, 2, 1, -2},
    {"line along the plane", kLine, 4, 0, 0, kKept},
};

TEST(ZmIntersectPlaneTest, CodesParametersAndPoints)
{
    const ZmPlane plane = {{0, 1, 0}, 0};
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.name);
        ZmVector point(kKept, kKept, kKept);
        float t = kKept;
        EXPECT_EQ(row.form({{3, row.height, 5}, {0, row.climb, 0}}, plane, point, t), row.code);
        EXPECT_EQ(t, row.t);
        const float y = row.height + row.t * row.climb;
        EXPECT_EQ(point, row.code ? ZmVector(3, y, 5) : ZmVector(kKept, kKept, kKept));
    }
}

TEST(ZmIntersectPlaneTest, BoxesAgreeWithTheirCorners)
{
    OverlapCounts aligned("aligned"), placed("placed");
    OnEachPath(3000, [&](Random& random) {
        const ZmBbox box = RandomBox(random, 3, 4);
        const ZmMatrix m = random.Affine(1);
        ZmPlane plane;
        plane.Create(random.UnitVector(), random.Vector(3));
        const auto gap = [&](const Hull& hull) {
            double least = 1e300, most = -1e300;
            for (const Double3& corner : hull.corners) {
                const double distance = Dot(corner, Double3(plane.Normal)) + plane.D;
                least = std::min(least, distance);
                most = std::max(most, distance);
            }
            return std::max(least, -most);
        };
        aligned.Check(ZmIntersect::BoxPlane(box, plane), gap(Hull::Box(box)));
        placed.Check(ZmIntersect::BoxPlane(box, m, plane), gap(Hull::Box(box, m)));
    });
}

TEST(ZmIntersectPlaneTest, APlaneThroughAFaceOrCornerTouches)
{
    const ZmBbox box = {{2, 3, 4}, {1, -1, -1}};
    const struct {
        const char* name;
        ZmPlane plane;
        int expected;
    } rows[] = {
        {"face", {{1, 0, 0}, -2}, 1},
        {"face, turned round", {{-1, 0, 0}, 2}, 1},
        {"beyond the face", {{1, 0, 0}, -2.001f}, 0},
        {"before the other", {{-1, 0, 0}, 0.999f}, 0},
        {"corner", {{1, 1, 1}, -9}, 1},
        {"past the corner", {{1, 1, 1}, -9.001f}, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(ZmIntersect::BoxPlane(box, row.plane), row.expected);
        EXPECT_EQ(ZmIntersect::BoxPlane(box, ZmMatrix::Identity(), row.plane), row.expected);
    }
}

TEST(ZmIntersectPlaneTest, ThreePlanesShareAPointUnlessTheirDeterminantIsZero)
{
    Random random(3);
    for (int round = 0; round < 1000; ++round) {
        const ZmVector common = random.Vector(5);
        ZmPlane planes[3];
        for (ZmPlane& plane : planes) {
            plane.Create(random.UnitVector(), common);
        }
        const double volume = Dot(Cross(Double3(planes[0].Normal), planes[1].Normal), Double3(planes[2].Normal));
        ZmVector point;
        ASSERT_EQ(ZmIntersect::Planes(planes[0], planes[1], planes[2], point), 1);
        EXPECT_LT(Length(point - common), 1e-5 / fabs(volume));
    }
    const ZmPlane x = {{1, 0, 0}, -1}, y = {{0, 1, 0}, -2}, parallel = {{2, 0, 0}, -3};
    const ZmPlane leaning = {{1, 0, 1e-20f}, -2};
    ZmVector point(kKept, kKept, kKept);
    EXPECT_EQ(ZmIntersect::Planes(x, y, parallel, point), 0);
    EXPECT_EQ(point, ZmVector(kKept, kKept, kKept));
    EXPECT_EQ(ZmIntersect::Planes(x, y, leaning, point), 1) << "nearly parallel is not parallel";
    EXPECT_GT(point.z, 1e19f);
}

}  // namespace

#include "Queries/Overlaps.h"
#include "Support/Reference.h"

namespace {

constexpr float kKept = 77;

TEST(ZmIntersectSphereTest, TheWholeLineMeetsTheSphere)
{
    const ZmVector kept(kKept, kKept, kKept);
    const struct {
        const char* name;
        ZmRay ray;
        int count;
        ZmVector first, second;
    } rows[] = {
        {"ahead", {{-5, 0, 0}, {4, 0, 0}}, 2, {-2, 0, 0}, {2, 0, 0}},
        {"behind the origin, in the order of travel", {{5, 0, 0}, {4, 0, 0}}, 2, {-2, 0, 0}, {2, 0, 0}},
        {"from inside", {{0, 1, 0}, {0, -4, 0}}, 2, {0, 2, 0}, {0, -2, 0}},
        {"touching", {{-5, 2, 0}, {4, 0, 0}}, 1, {0, 2, 0}, kept},
        {"past it", {{-5, 2.001f, 0}, {4, 0, 0}}, 0, kept, kept},
        {"without direction", {{0, 0, 0}, {0, 0, 0}}, 0, kept, kept},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        ZmVector first = kept, second = kept;
        EXPECT_EQ(ZmIntersect::RaySphere(row.ray, {{0, 0, 0}, 2}, &first, &second), row.count);
        EXPECT_EQ(first, row.first);
        EXPECT_EQ(second, row.second);
    }
}

TEST(ZmIntersectSphereTest, RandomPointsLieOnBoth)
{
    OverlapCounts counts("counts", 1e-3);
    Random random(4);
    for (int round = 0; round < 3000; ++round) {
        const ZmSphere sphere = {random.Vector(3), random.Float(0.1f, 4)};
        const ZmRay ray = {random.Vector(3), random.Vector(3)};
        const Double3 d = ray.Direction, offset = Double3(sphere.Center) - ray.Origin, cross = Cross(offset, d);
        const double distance = sqrt(Dot(cross, cross) / Dot(d, d));
        ZmVector points[2];
        const int count = ZmIntersect::RaySphere(ray, sphere, &points[0], &points[1]);
        counts.Check(count != 0, distance - sphere.Radius);
        for (int i = 0; i < count && fabs(distance - sphere.Radius) > 1e-3; ++i) {
            const Double3 away = Cross(Double3(points[i]) - ray.Origin, d);
            EXPECT_NEAR(Length(points[i] - sphere.Center), sphere.Radius, 1e-4);
            EXPECT_LT(sqrt(Dot(away, away) / Dot(d, d)), 1e-4);
        }
    }
}

// Tolerance, in radii, where the line or the path nearly touches the sphere.
constexpr double kBand = 16 * kRounding;

/// A point `radii` of about 1 away from another.
ZmVector Away(Random& random, const ZmVector& from, float radii)
{
    return from + random.UnitVector() * radii;
}

TEST(ZmIntersectSphereTest, FarAwayRaysMeetWhatTheyAimAt)
{
    OverlapCounts counts("counts", kBand);
    Random random(4);
    for (int round = 0; round < 20000; ++round) {
        const float radii[] = {3, 100, 1e3f, 1e4f, 1e5f}, lengths[] = {1e-4f, 0.3f, 1, 7};
        const ZmSphere sphere = {random.Vector(1), 1};
        const ZmVector origin = Away(random, sphere.Center, radii[random.Int(0, 4)]);
        const ZmRay ray = {origin, (sphere.Center + random.Vector(1.1f) - origin) * lengths[random.Int(0, 3)]};
        const Double3 d = ray.Direction, offset = Double3(sphere.Center) - origin, cross = Cross(offset, d);
        ZmVector points[2];
        const int count = ZmIntersect::RaySphere(ray, sphere, &points[0], &points[1]);
        counts.Check(count != 0, sqrt(Dot(cross, cross) / Dot(d, d)) - 1);
        for (int i = 0; i < count; ++i) {
            EXPECT_NEAR(Length(points[i] - sphere.Center), 1, 8 * kRounding) << "point " << i;
        }
    }
}

TEST(ZmIntersectSphereTest, SpheresFarApartMeetWhereTheyAimAt)
{
    OverlapCounts counts("counts", kBand);
    Random random(4);
    for (int round = 0; round < 20000; ++round) {
        constexpr float radii[] = {3, 100, 1e3f, 1e4f, 1e5f};
        const ZmSphere a = {random.Vector(1), 0.75f}, b = {Away(random, a.Center, radii[random.Int(0, 4)]), 0.25f};
        const ZmVector endA = random.Vector(1), endB = endA + random.Vector(1.8f) - (b.Center - a.Center) * 0.5f;
        const Double3 between = Double3(b.Center) - a.Center;
        const Double3 motion = Double3(endB) - b.Center - (Double3(endA) - a.Center), cross = Cross(between, motion);
        const double square = Dot(motion, motion), distance = sqrt(Dot(cross, cross) / square);
        const double first = (-Dot(between, motion) - sqrt(square - Dot(cross, cross))) / square;
        float t0 = kKept, t1 = kKept;
        const int code = ZmIntersect::SphereSphere(a, endA, b, endB, &t0, &t1);
        if (sqrt(Dot(between, between)) > 1 + kBand) {
            counts.Check(code, first < 0 || first > 1 ? std::max(distance - 1, kBand) : distance - 1);
            EXPECT_EQ(t0 == kKept, t1 == kKept);
            EXPECT_TRUE(!code || fabs(t0 - first) <= 2 * kRounding * first + 1e-9) << t0 << " " << first;
        }
    }
}

const struct {
    const char* name;
    ZmVector start, end;  // of a sphere of radius 1; the other one, of radius 2, moves from the origin to (0, 3, 0)
    int code;
    float t0, t1;
} kMeetings[] = {
    {"touching at the start", {3, 0, 0}, {9, 9, 9}, 1, 0, 0},
    {"touching at rest", {3, 0, 0}, {3, 3, 0}, 1, 0, 0},
    {"overlapping at the start", {1, 0, 0}, {1, 3, 0}, 1, 0, 0},
    {"head on", {9, 0, 0}, {-3, 3, 0}, 1, 0.5f, 1},
    {"first contact at exactly 1", {9, 0, 0}, {3, 3, 0}, 1, 1, 2},
    {"too slow", {9, 0, 0}, {6, 3, 0}, 0, 2, 4},
    {"moving apart", {9, 0, 0}, {15, 3, 0}, 0, -2, -1},
    {"passing with one contact", {3, -4, 0}, {3, 7, 0}, 1, 0.5f, 0.5f},
    {"passing apart", {3.5f, -4, 0}, {3.5f, 7, 0}, 0, kKept, kKept},
    {"side by side", {9, 0, 0}, {9, 3, 0}, 0, 0, 0},
};

TEST(ZmIntersectSphereTest, MovingSpheresTellWhenTheyTouch)
{
    const ZmSphere other = {{0, 0, 0}, 2};
    const ZmVector otherEnd(0, 3, 0);
    for (const auto& row : kMeetings) {
        SCOPED_TRACE(row.name);
        float t0 = kKept, t1 = kKept;
        EXPECT_EQ(ZmIntersect::SphereSphere({row.start, 1}, row.end, other, otherEnd, &t0, &t1), row.code);
        EXPECT_EQ(t0, row.t0);
        EXPECT_EQ(t1, row.t1);
        EXPECT_EQ(ZmIntersect::SphereSphere(other, otherEnd, {row.start, 1}, row.end, nullptr, nullptr), row.code);
    }
}

TEST(ZmIntersectSphereTest, MovingSpheresMeetWhereSamplesOfTheirWayDo)
{
    OverlapCounts counts("counts", 0.01);
    Random random(9);
    for (int round = 0; round < 1500; ++round) {
        const ZmSphere a = {random.Vector(4), random.Float(0.2f, 1)}, b = {random.Vector(4), random.Float(0.2f, 1)};
        const ZmVector endA = random.Vector(4), endB = random.Vector(4);
        double nearest = 1e300;
        for (int step = 0; step <= 1000; ++step) {
            const double t = step / 1000.0;
            const Double3 apart =
                Double3(a.Center) * (1 - t) + Double3(endA) * t - Double3(b.Center) * (1 - t) - Double3(endB) * t;
            nearest = std::min(nearest, sqrt(Dot(apart, apart)) - a.Radius - b.Radius);
        }
        float t0, t1;
        const int code = ZmIntersect::SphereSphere(a, endA, b, endB, &t0, &t1);
        counts.Check(code, nearest);
        if (code && t0 > 0) {
            const ZmVector apart = a.Center + (endA - a.Center) * t0 - b.Center - (endB - b.Center) * t0;
            EXPECT_NEAR(Length(apart), a.Radius + b.Radius, 1e-3);
        }
    }
}

TEST(ZmIntersectSphereTest, BoxAndSphereAgreeWithTheNearestPointOfTheBox)
{
    OverlapCounts counts("counts");
    OnEachPath(3000, [&](Random& random) {
        const ZmBbox box = RandomBox(random, 3, 3);
        const ZmSphere sphere = {random.Vector(4), random.Float(0, 3)};
        double square = 0;
        for (int i = 0; i < 3; ++i) {
            const double nearest = std::min(std::max(sphere.Center[i], box.Min[i]), box.Max[i]);
            square += (sphere.Center[i] - nearest) * (sphere.Center[i] - nearest);
        }
        counts.Check(ZmIntersect::SphereAABB(sphere, box), sqrt(square) - sphere.Radius);
    });
    const ZmBbox box = {{1, 1, 1}, {-1, -1, -1}};
    OnEachPath(1, [&](Random&) {
        EXPECT_EQ(ZmIntersect::SphereAABB({{4, 5, 0}, 5}, box), 1) << "touches an edge";
        EXPECT_EQ(ZmIntersect::SphereAABB({{4, 5, 0}, 4.999f}, box), 0);
        EXPECT_EQ(ZmIntersect::SphereAABB({{0, 0, 0}, 0}, box), 1) << "a point inside";
        EXPECT_EQ(ZmIntersect::SphereAABB({{0, 0, 1}, 0}, box), 1) << "a point on a face";
    });
}

}  // namespace

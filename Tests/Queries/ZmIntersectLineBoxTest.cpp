#include "Queries/Overlaps.h"

namespace {

constexpr float kEps = 0x1p-23f;

TEST(ZmIntersectLineBoxTest, BooleanFormsAgreeWithProjections)
{
    constexpr double kFar = 100;  // represents infinity: nothing is farther than 20
    OverlapCounts rays("rays"), segments("segments"), lines("lines");
    OnEachPath(4000, [&](Random& random) {
        const ZmBbox box = RandomBox(random, 2, 5);
        const ZmVector origin = random.Vector(4);
        const float length = random.Float(0.5f, 2);
        ZmRay ray = {origin, (random.Vector(3) - origin) * length};
        const int axis = random.Int(0, 8);
        if (axis < 3) {  // many parallel to a face
            ray.Direction[axis] = 0;
        }
        const Double3 start = ray.Origin, direction = ray.Direction, end = start + direction;
        const Double3 beyond = direction * (kFar / sqrt(Dot(direction, direction)));
        const Hull hull = Hull::Box(box);
        segments.Check(ZmIntersect::SegmentBox(ray, box), Gap(hull, Hull::Segment(start, end)));
        rays.Check(ZmIntersect::RayBox(ray, box), Gap(hull, Hull::Segment(start, start + beyond)));
        lines.Check(ZmIntersect::LineBox(ray, box), Gap(hull, Hull::Segment(start - beyond, start + beyond)));
    });
}

/// The outputs of the overloads that return points.
struct Crossing {
    int code;
    ZmVector inPoint, outPoint, inNormal, outNormal;
};

using Form = int (*)(const ZmRay&, const ZmBbox&, ZmVector&, ZmVector*, ZmVector*, ZmVector*);

Crossing CrossBox(Form form, const ZmRay& ray, const ZmBbox& box)
{
    const ZmVector untouched(77, 77, 77);
    Crossing res = {0, untouched, untouched, untouched, untouched};
    res.code = form(ray, box, res.inPoint, &res.outPoint, &res.inNormal, &res.outNormal);
    ZmVector alone = untouched;
    EXPECT_EQ(form(ray, box, alone, nullptr, nullptr, nullptr), res.code) << "without the optional outputs";
    EXPECT_EQ(alone, res.inPoint);
    if (res.code == 0) {
        EXPECT_TRUE(res.inPoint == untouched && res.outPoint == untouched) << "written on a miss";
        EXPECT_TRUE(res.inNormal == untouched && res.outNormal == untouched) << "written on a miss";
    }
    return res;
}

constexpr Form kRay = ZmIntersect::RayBox, kSegment = ZmIntersect::SegmentBox, kLine = ZmIntersect::LineBox;
const ZmVector kX(1, 0, 0), kY(0, 1, 0), kZ(0, 0, 1), kNone(0, 0, 0);

const struct {
    const char* name;
    Form form;
    ZmRay ray;
    int code;
    float in, out;  // parameters of hits
    ZmVector inNormal, outNormal;
} kCrossings[] = {
    {"ray from outside, both normals against it", kRay, {{-3, 0, 0}, {2, 0, 0}}, 1, 1, 2, -kX, -kX},
    {"ray downwards", kRay, {{0.5f, 5, 0}, {0, -1, 0}}, 1, 4, 6, kY, kY},
    {"ray through an edge: the first of equal axes", kRay, {{-2, -2, 0}, {1, 1, 0}}, 1, 1, 3, -kX, -kX},
    {"ray in by one axis, out by another", kRay, {{-2, 0, 0}, {1, 0.5f, 0}}, 1, 1, 2, -kX, -kY},
    {"ray from inside: the entry lies behind", kRay, {{0, 0, 0.5f}, {0, 0, 0.5f}}, -1, -3, 1, -kZ, -kZ},
    {"ray from a face inwards", kRay, {{-1, 0, 0}, {1, 0, 0}}, -1, 0, 2, -kX, -kX},
    {"ray without direction, inside", kRay, {{0.5f, 0, 0}, {0, 0, 0}}, -1, 0, 0, kNone, kNone},
    {"ray in the plane of a face", kRay, {{-3, 1, 0}, {1, 0, 0}}, 1, 2, 4, -kX, -kX},
    {"ray in the plane of the face opposite", kRay, {{-3, -1, 0}, {1, 0, 0}}, 1, 2, 4, -kX, -kX},
    {"ray beside a face", kRay, {{-3, 1.0001f, 0}, {1, 0, 0}}, 0, 0, 0, kNone, kNone},
    {"ray away from the box", kRay, {{3, 0, 0}, {1, 0, 0}}, 0, 0, 0, kNone, kNone},
    {"ray that leaves at its start", kRay, {{1, 0, 0}, {1, 0, 0}}, 0, 0, 0, kNone, kNone},
    {"ray past a corner", kRay, {{-3, 0, 0}, {1, 0.6f, 0}}, 0, 0, 0, kNone, kNone},
    {"segment through", kSegment, {{-3, 0, 0}, {8, 0, 0}}, 1, 0.25f, 0.5f, -kX, -kX},
    {"segment that ends inside", kSegment, {{-3, 0, 0}, {2.5f, 0, 0}}, 1, 0.8f, 1.6f, -kX, -kX},
    {"segment that starts inside", kSegment, {{0, 0, 0}, {4, 0, 0}}, -1, -0.25f, 0.25f, -kX, -kX},
    {"segment that ends at the face", kSegment, {{-3, 0, 0}, {2, 0, 0}}, 1, 1, 2, -kX, -kX},
    {"segment wholly inside crosses nothing", kSegment, {{-0.5f, 0, 0}, {1, 0, 0}}, 0, 0, 0, kNone, kNone},
    {"segment from face to face crosses both", kSegment, {{-1, 0, 0}, {2, 0, 0}}, -1, 0, 1, -kX, -kX},
    {"segment too short", kSegment, {{-3, 0, 0}, {1.9f, 0, 0}}, 0, 0, 0, kNone, kNone},
    {"line towards the box", kLine, {{-3, 0, 0}, {1, 0, 0}}, 1, 2, 4, -kX, -kX},
    {"line away from the box: nearest first", kLine, {{3, 0, 0}, {1, 0, 0}}, 1, -2, -4, -kX, -kX},
    {"line from inside: nearest first", kLine, {{0.5f, 0, 0}, {-1, 0, 0}}, 1, -0.5f, 1.5f, kX, kX},
    // X spans t from -1 to 3, Y from -2 to 2/3: near 2/3 does not replace 1, far 2 replaces 3.
    {"line judged by sizes alone", kLine, {{-0.5f, 0.5f, 0}, {0.5f, 0.75f, 0}}, 1, -1, -2, -kX, -kY},
    // X spans t from -1 to 1, Y from 2 to 4.
    {"line that misses by sizes", kLine, {{0, -3, 0}, {1, 1, 0}}, 0, 0, 0, kNone, kNone},
    {"line without direction, outside", kLine, {{0, -3, 0}, {0, 0, 0}}, 0, 0, 0, kNone, kNone},
};

TEST(ZmIntersectLineBoxTest, CodesPointsAndNormals)
{
    const ZmBbox unit = {{1, 1, 1}, {-1, -1, -1}};
    for (const auto& row : kCrossings) {
        SCOPED_TRACE(row.name);
        const Crossing got = CrossBox(row.form, row.ray, unit);
        ASSERT_EQ(got.code, row.code);
        if (row.code != 0) {
            EXPECT_EQ(got.inPoint, row.ray.Origin + row.ray.Direction * row.in);
            EXPECT_EQ(got.outPoint, row.ray.Origin + row.ray.Direction * row.out);
            EXPECT_EQ(got.inNormal, row.inNormal);
            EXPECT_EQ(got.outNormal, row.outNormal);
        }
    }
}

TEST(ZmIntersectLineBoxTest, TolerancesAtTheEnds)
{
    const ZmBbox box = {{2, 1, 1}, {1, -1, -1}};
    ZmVector point;
    const auto ray = [&](float x, float length) {
        return ZmIntersect::RayBox({{x, 0, 0}, {length, 0, 0}}, box, point, nullptr, nullptr, nullptr);
    };
    const auto segment = [&](float length) {
        return ZmIntersect::SegmentBox({{0, 0, 0}, {length, 0, 0}}, box, point, nullptr, nullptr, nullptr);
    };
    EXPECT_EQ(ray(1 - kEps, 1), -1) << "entry at EPS";
    EXPECT_EQ(ray(1 - 2 * kEps, 1), 1) << "entry beyond EPS";
    EXPECT_EQ(ray(2 - 2 * kEps, 2), -1) << "exit at EPS";
    EXPECT_EQ(ray(2 - 2 * kEps, 4), 0) << "exit before EPS";
    EXPECT_EQ(segment(1), 1) << "entry at 1";
    EXPECT_EQ(segment(1 - kEps / 2), 1) << "entry at 1 + EPS";
    EXPECT_EQ(segment(1 - 2 * kEps), 0) << "entry beyond it";
}

TEST(ZmIntersectLineBoxTest, PointsOfRandomHitsLieWhereDoublesPutThem)
{
    Random random(7);
    int hits = 0;
    for (int round = 0; round < 4000; ++round) {
        const ZmBbox box = RandomBox(random, 2, 6);
        const ZmVector origin = random.Vector(5);
        const ZmRay ray = {origin, random.Vector(2) - origin};
        double in = -1e30, out = 1e30;
        for (int i = 0; i < 3; ++i) {
            const double t0 = (double(box.Min[i]) - ray.Origin[i]) / ray.Direction[i];
            const double t1 = (double(box.Max[i]) - ray.Origin[i]) / ray.Direction[i];
            in = std::max(in, std::min(t0, t1));
            out = std::min(out, std::max(t0, t1));
        }
        if (fabs(in - out) < 1e-4 || fabs(in) < 1e-4 || fabs(out) < 1e-4 || fabs(in - 1) < 1e-4 ||
            fabs(out - 1) < 1e-4) {
            continue;
        }
        const int expected = in > out || out < 0 ? 0 : in < 0 ? -1 : 1;
        const Crossing got = CrossBox(ZmIntersect::RayBox, ray, box);
        ASSERT_EQ(got.code, expected);
        EXPECT_EQ(CrossBox(ZmIntersect::SegmentBox, ray, box).code, in > 1 || (in < 0 && out > 1) ? 0 : expected);
        if (expected) {
            ++hits;
            EXPECT_NEAR(Length(got.inPoint - ray.Origin), fabs(in) * Length(ray.Direction), 1e-4 * (1 + fabs(in)));
            EXPECT_NEAR(Length(got.outPoint - ray.Origin), fabs(out) * Length(ray.Direction), 1e-4 * (1 + fabs(out)));
        }
    }
    EXPECT_GT(hits, 200);
}

}  // namespace

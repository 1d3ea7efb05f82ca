#include "Queries/Hull.h"

#include <gtest/gtest.h>

#include <math.h>

namespace {

constexpr double kNone = 1e300;

/// The range of a parameter.
struct Range {
    double low, high;

    double Clamp(double t) const { return t < low ? low : t > high ? high : t; }
    bool Has(double t) const { return t >= low && t <= high; }
};
constexpr Range kLine = {-kNone, kNone}, kRay = {0, kNone}, kSegment = {0, 1};

using Form = float (*)(const ZmRay&, const ZmRay&, float*, float*);

const struct {
    const char* name;
    Form form;
    Range first, second;
} kForms[] = {
    {"LineLine", ZmDistance::LineLineSquareDistance, kLine, kLine},
    {"LineRay", ZmDistance::LineRaySquareDistance, kLine, kRay},
    {"LineSegment", ZmDistance::LineSegmentSquareDistance, kLine, kSegment},
    {"RayRay", ZmDistance::RayRaySquareDistance, kRay, kRay},
    {"RaySegment", ZmDistance::RaySegmentSquareDistance, kRay, kSegment},
    {"SegmentSegment", ZmDistance::SegmentSegmentSquareDistance, kSegment, kSegment},
};

/// Two linear objects in double.
struct Pair {
    Double3 p0, d0, p1, d1;

    Pair(const ZmRay& a, const ZmRay& b) : p0(a.Origin), d0(a.Direction), p1(b.Origin), d1(b.Direction) {}

    double At(double s, double t) const
    {
        const Double3 apart = p0 + d0 * s - p1 - d1 * t;
        return Dot(apart, apart);
    }
    /// The nearest point of one object to a point of the other.
    double S(double t) const { return Dot(p1 + d1 * t - p0, d0) / Dot(d0, d0); }
    double T(double s) const { return Dot(p0 + d0 * s - p1, d1) / Dot(d1, d1); }
};

/// The smallest distance by brute force: the inside of the domain, each of its edges, and its corners.
double Smallest(const Pair& pair, const Range& first, const Range& second)
{
    double best = kNone;
    const auto consider = [&](double s, double t) { best = std::min(best, pair.At(s, t)); };
    const Double3 normal = Cross(pair.d0, pair.d1), offset = pair.p1 - pair.p0;
    const double s = Dot(Cross(offset, pair.d1), normal) / Dot(normal, normal);
    if (first.Has(s) && second.Has(pair.T(s))) {
        consider(s, pair.T(s));
    }
    for (const double edge : {first.low, first.high}) {
        if (fabs(edge) < kNone) {
            consider(edge, second.Clamp(pair.T(edge)));
        }
    }
    for (const double edge : {second.low, second.high}) {
        if (fabs(edge) < kNone) {
            consider(first.Clamp(pair.S(edge)), edge);
        }
    }
    if (best == kNone) {  // two parallel lines
        consider(pair.S(0), 0);
    }
    return best;
}

/// The description of a kind of pairs.
struct PairKind {
    const char* name;
    void (*make)(Random&, ZmRay&, ZmRay&);
    int firstForm;  ///< of kForms; lines count as parallel sooner than others, beside short directions at any angle
};

float Scale(Random& random)
{
    constexpr float scales[] = {1e-3f, 0.03f, 1, 30, 1000};
    return scales[random.Int(0, 4)];
}

/// Makes two objects of the same direction up to `tilt`.
void Tilt(Random& random, float tilt, ZmRay& a, ZmRay& b)
{
    const float size = Scale(random);
    const ZmVector along = random.UnitVector();
    a = {random.Vector(size), along * size};
    b = {a.Origin + random.Vector(size * 0.1f), (along + random.Vector(tilt)) * size};
}

const PairKind kKinds[] = {
    {"free",
     [](Random& random, ZmRay& a, ZmRay& b) {
         a = {random.Vector(2), random.Vector(2)};
         b = {random.Vector(2), random.Vector(2)};
     },
     0},
    {"long beside short",
     [](Random& random, ZmRay& a, ZmRay& b) {
         const float sizeA = Scale(random), sizeB = Scale(random);
         a = {random.Vector(sizeA), random.UnitVector() * sizeA};
         const ZmVector beside = a.Origin + a.Direction * random.Float(-0.5f, 1.5f);
         b = {beside + random.Vector(sizeB), random.UnitVector() * sizeB};
     },
     3},
    {"parallel",
     [](Random& random, ZmRay& a, ZmRay& b) {
         a = {random.Vector(2), random.Vector(2)};
         constexpr float factors[] = {-4, -1, -0.5f, 0.25f, 1, 8};  // exact
         b = {random.Vector(4), a.Direction * factors[random.Int(0, 5)]};
     },
     0},
    {"nearly parallel",
     [](Random& random, ZmRay& a, ZmRay& b) {
         constexpr float tilts[] = {1e-1f, 1e-2f, 1e-3f, 1e-4f, 1e-5f};
         Tilt(random, tilts[random.Int(0, 4)], a, b);
     },
     3},
    {"parallel but for rounding", [](Random& random, ZmRay& a, ZmRay& b) { Tilt(random, 1e-7f, a, b); }, 4},
    {"crossing",
     [](Random& random, ZmRay& a, ZmRay& b) {
         const ZmVector common = random.Vector(1), alongA = random.Vector(2), alongB = random.Vector(2);
         a = {common - alongA * random.Float(0, 1), alongA};
         b = {common - alongB * random.Float(0, 1), alongB};
     },
     0},
};

TEST(ZmDistanceTest, EveryKindOfPairGivesTheSmallestDistance)
{
    for (const PairKind& kind : kKinds) {
        Random random(12);
        for (int round = 0; round < 2000; ++round) {
            ZmRay a, b;
            kind.make(random, a, b);
            const Pair pair(a, b);
            for (int i = kind.firstForm; i < 6; ++i) {
                const auto& form = kForms[i];
                SCOPED_TRACE(testing::Message() << kind.name << ", " << form.name << ", round " << round);
                float s = 77, t = 77;
                const double got = form.form(a, b, &s, &t), expected = Smallest(pair, form.first, form.second);
                // The rounding of the result, and what the reference itself may lose: positions to 1e-14.
                const double size =
                    Dot(pair.p0 - pair.p1, pair.p0 - pair.p1) + Dot(pair.d0, pair.d0) + Dot(pair.d1, pair.d1);
                EXPECT_NEAR(got, expected, 1e-6 * expected + 1e-13 * size);
                EXPECT_TRUE(form.first.Has(s) && form.second.Has(t));
                // The parameters are floats: each moves its point by 2^-24 of the way.
                const double moved =
                    0x1p-23 * (fabs(s) * sqrt(Dot(pair.d0, pair.d0)) + fabs(t) * sqrt(Dot(pair.d1, pair.d1)));
                EXPECT_NEAR(sqrt(pair.At(s, t)), sqrt(got), moved + 1e-6 * sqrt(size));
                EXPECT_EQ(form.form(a, b, nullptr, nullptr), float(got));
            }
        }
    }
}

const struct {
    const char* name;
    Form form;
    ZmRay first, second;
    float distance, s, t;
} kPairs[] = {
    {"parallel lines: the foot of the second's origin",
     ZmDistance::LineLineSquareDistance,
     {{1, 0, 0}, {2, 0, 0}},
     {{7, 2, 0}, {-5, 0, 0}},
     4,
     3,
     0},
    {"lines that count as parallel",
     ZmDistance::LineLineSquareDistance,
     {{0, 0, 0}, {1, 0, 0}},
     {{3, 2, 0}, {1, 0x1p-12f, 0}},
     4,
     3,
     0},
    {"lines that just do not",
     ZmDistance::LineLineSquareDistance,
     {{0, 0, 0}, {1, 0, 0}},
     {{3, 2, 0}, {1, 0x1p-11f, 0}},
     0,
     3 - 4096,
     -4096},
    {"lines at exactly the limit are not parallel",
     ZmDistance::LineLineSquareDistance,
     {{0, 0, 0}, {0x1p-11f, 0, 0}},
     {{3, 2, 1}, {0x1p-11f, 0x1p-1f, 0x1p-1f}},
     0.5f,
     3 * 2048 - 3,
     -3},
    {"short lines count as parallel at any angle",
     ZmDistance::LineLineSquareDistance,
     {{0, 0, 0}, {0x1p-7f, 0, 0}},
     {{1, 1, 1}, {0, 0x1p-7f, 0}},
     2,
     128,
     0},
    {"a line beside a short ray, too",
     ZmDistance::LineRaySquareDistance,
     {{0, 0, 0}, {0x1p-7f, 0, 0}},
     {{1, 1, 1}, {0, -0x1p-7f, 0}},
     2,
     128,
     0},
    {"and beside a short segment",
     ZmDistance::LineSegmentSquareDistance,
     {{0, 0, 0}, {1, 0, 0}},
     {{1, 1, 0}, {0, -0x1p-12f, 0}},
     1,
     1,
     0},
    {"long lines hardly at any",
     ZmDistance::LineLineSquareDistance,
     {{0, 0, 0}, {4096, 0, 0}},
     {{4096, 2, 1}, {4096, 0x1p-11f, 0}},
     1,
     1 - 4096,
     -4096},
    {"short segments that cross",
     ZmDistance::SegmentSegmentSquareDistance,
     {{0, 0, 0}, {0x1p-7f, 0, 0}},
     {{0x1p-8f, -0x1p-8f, 0}, {0, 0x1p-7f, 0}},
     0,
     0.5f,
     0.5f},
    {"parallel rays that part",
     ZmDistance::RayRaySquareDistance,
     {{0, 0, 0}, {-1, 0, 0}},
     {{3, 4, 0}, {1, 0, 0}},
     25,
     0,
     0},
    {"parallel rays, one ahead",
     ZmDistance::RayRaySquareDistance,
     {{3, 4, 0}, {1, 0, 0}},
     {{0, 0, 0}, {1, 0, 0}},
     16,
     0,
     3},
    {"segments on one line",
     ZmDistance::SegmentSegmentSquareDistance,
     {{0, 0, 0}, {2, 0, 0}},
     {{5, 0, 0}, {3, 0, 0}},
     9,
     1,
     0},
    {"segments on one line, turned",
     ZmDistance::SegmentSegmentSquareDistance,
     {{0, 0, 0}, {2, 0, 0}},
     {{8, 0, 0}, {-3, 0, 0}},
     9,
     1,
     1},
    {"segments that overlap sideways",
     ZmDistance::SegmentSegmentSquareDistance,
     {{0, 0, 0}, {4, 0, 0}},
     {{2, 3, 0}, {4, 0, 0}},
     9,
     0.5f,
     0},
    {"segments that cross",
     ZmDistance::SegmentSegmentSquareDistance,
     {{-1, 0, 0}, {2, 0, 0}},
     {{0, -1, 0}, {0, 4, 0}},
     0,
     0.5f,
     0.25f},
    {"segments end to end",
     ZmDistance::SegmentSegmentSquareDistance,
     {{0, 0, 0}, {1, 1, 0}},
     {{4, 5, 0}, {1, 1, 9}},
     25,
     1,
     0},
    {"a point and a line",
     ZmDistance::LineLineSquareDistance,
     {{0, 2, 0}, {0, 0, 0}},
     {{4, 0, 0}, {2, 0, 0}},
     4,
     0,
     -2},
    {"a line and a point",
     ZmDistance::LineLineSquareDistance,
     {{4, 0, 0}, {2, 0, 0}},
     {{0, 2, 0}, {0, 0, 0}},
     4,
     -2,
     0},
    {"a point and a segment",
     ZmDistance::SegmentSegmentSquareDistance,
     {{9, 2, 0}, {0, 0, 0}},
     {{4, 0, 0}, {5, 0, 0}},
     4,
     0,
     1},
    {"two points", ZmDistance::SegmentSegmentSquareDistance, {{3, 4, 0}, {0, 0, 0}}, {{0, 0, 0}, {0, 0, 0}}, 25, 0, 0},
};

TEST(ZmDistanceTest, ParametersOfParallelAndPointlikePairs)
{
    for (const auto& row : kPairs) {
        SCOPED_TRACE(row.name);
        float s = 77, t = 77;
        EXPECT_EQ(row.form(row.first, row.second, &s, &t), row.distance);
        EXPECT_EQ(s, row.s);
        EXPECT_EQ(t, row.t);
    }
}

TEST(ZmDistanceTest, PointsFindTheirFoot)
{
    using PointForm = float (*)(const ZmVector&, const ZmRay&, float*);
    const PointForm line = ZmDistance::PointLineSquareDistance, ray = ZmDistance::PointRaySquareDistance;
    const PointForm segment = ZmDistance::PointSegmentSquareDistance;
    const ZmRay object = {{1, 0, 0}, {4, 0, 0}}, point = {{1, 0, 0}, {0, 0, 0}};
    const struct {
        const char* name;
        PointForm form;
        const ZmRay* object;
        ZmVector point;
        float distance, t;
    } rows[] = {
        {"beside a line", line, &object, {3, 2, 0}, 4, 0.5f},
        {"before a line's origin", line, &object, {-3, 2, 0}, 4, -1},
        {"beside a ray", ray, &object, {9, 2, 0}, 4, 2},
        {"behind a ray", ray, &object, {-2, 4, 0}, 25, 0},
        {"at a ray's origin", ray, &object, {1, 0, 0}, 0, 0},
        {"beside a segment", segment, &object, {4, 0, 3}, 9, 0.75f},
        {"behind a segment", segment, &object, {-2, 4, 0}, 25, 0},
        {"beyond a segment", segment, &object, {8, 4, 0}, 25, 1},
        {"at a segment's end", segment, &object, {5, 0, 0}, 0, 1},
        {"a ray that is a point", ray, &point, {4, 4, 0}, 25, 0},
        {"a segment that is a point", segment, &point, {4, 4, 0}, 25, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        float t = 77;
        EXPECT_EQ(row.form(row.point, *row.object, &t), row.distance);
        EXPECT_EQ(t, row.t);
        EXPECT_EQ(row.form(row.point, *row.object, nullptr), row.distance);
    }
    EXPECT_NE(line({4, 4, 0}, point, nullptr), line({4, 4, 0}, point, nullptr)) << "a line without direction";
}

TEST(ZmDistanceTest, APointFarAlongALineKeepsItsDistance)
{
    // In single precision the error of the foot itself would exceed the distance.
    const ZmRay line = {{0, 0, 0}, {1000, 2000, 2000}};
    const ZmVector point(1000, 2000, 2000 + 0x1p-10f);
    EXPECT_NEAR(ZmDistance::PointLineSquareDistance(point, line, nullptr), 0x1p-20 * 5 / 9, 1e-13);
}

}  // namespace

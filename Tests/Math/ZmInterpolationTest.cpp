#include "Support/Blocks.h"
#include "Support/Paths.h"
#include "Support/Reference.h"

#include <math.h>

namespace {

constexpr int kRounds = 500;
/// One and a half units in the last place of 1.
constexpr double kExact = 3 * kRounding;
/// The nearest float to a component, but for a tenth of a rounding.
constexpr double kNearest = 0.6 * kRounding;

ZmMatrix Key(Random& random)
{
    const ZmVector scale(random.Float(0.5f, 4), random.Float(0.5f, 4), random.Float(0.5f, 4)), origin = random.Vector();
    return ZmTransform(origin, random.Rotation(), scale);
}

/// The spherical interpolation by its formula, in double.
void ExpectSlerp(const ZmQuaternion& got, const ZmQuaternion& a, const ZmQuaternion& b, double t, double tolerance)
{
    const double la = sqrt(double(a.x) * a.x + double(a.y) * a.y + double(a.z) * a.z + double(a.w) * a.w);
    const double lb = sqrt(double(b.x) * b.x + double(b.y) * b.y + double(b.z) * b.z + double(b.w) * b.w);
    const double dot = (double(a.x) * b.x + double(a.y) * b.y + double(a.z) * b.z + double(a.w) * b.w) / (la * lb);
    const double angle = acos(fmin(fabs(dot), 1)), s = sin(angle), sign = dot < 0 ? -1 : 1;
    const double ka = (s < 1e-7 ? 1 - t : sin((1 - t) * angle) / s) / la;
    const double kb = sign * (s < 1e-7 ? t : sin(t * angle) / s) / lb;
    ExpectNear(got, ka * a.x + kb * b.x, ka * a.y + kb * b.y, ka * a.z + kb * b.z, ka * a.w + kb * b.w, tolerance);
}

TEST(ZmInterpolationTest, QuaternionKeysComeBackWithTheirBits)
{
    Random random(1);
    for (int round = 0; round < kRounds; ++round) {
        const ZmQuaternion a = random.Rotation(), b = random.Rotation(), end = Dot(a, b) < 0 ? -b : b;
        EXPECT_TRUE(SameBits(SlerpExact(a, b, 0), a) && SameBits(SlerpExact(a, b, 1), end));
        EXPECT_TRUE(SameBits(Nlerp(a, b, 0), a) && SameBits(Nlerp(a, b, 1), end));
    }
}

TEST(ZmInterpolationTest, SlerpIsExactAtEveryDistance)
{
    if (!SystemSinesAreExact()) {
        GTEST_SKIP() << "the C library's sines are inexact here";
    }
    Random random(2);
    for (int round = 0; round < kRounds; ++round) {
        for (const float apart : {0.0f, 1e-7f, 1e-5f, 1e-3f, 0.1f, 1.0f, 2.0f, 3.1f}) {
            SCOPED_TRACE(apart);
            const ZmQuaternion a = random.Rotation(), b = a * ZmRotationQuaternion(random.UnitVector(), apart);
            const float t = random.Float(0, 1);
            ExpectSlerp(SlerpExact(a, b, t), a, b, t, kNearest);
            ExpectSlerp(SlerpExact(a, -b, t), a, -b, t, kNearest);  // the shorter arc
            ExpectSlerp(SlerpExact(a, b, 3 * t - 1), a, b, 3 * t - 1, kExact);
            const ZmQuaternion chord = Nlerp(a, b, t);
            EXPECT_NEAR(Length(chord), 1, 2 * kExact);
            EXPECT_NEAR(double(Dot(chord, SlerpExact(a, b, t))), 1, 0.011);
        }
    }
}

TEST(ZmInterpolationTest, SlerpTakesKeysOfAnyLength)
{
    if (!SystemSinesAreExact()) {
        GTEST_SKIP() << "the C library's sines are inexact here";
    }
    Random random(8);
    for (const float length : {1 + 0x1p-18f, 1 + 0x1p-16f, 1 - 0x1p-15f, 1.002f, 0.9f, 7.0f, 1e-12f, 1e15f}) {
        SCOPED_TRACE(length);
        for (int round = 0; round < kRounds; ++round) {
            const ZmQuaternion a = random.Rotation(), b = random.Rotation();
            const float t = random.Float(0, 1);
            ExpectSlerp(SlerpExact(a * length, b, t), a, b, t, 2 * kRounding);  // the multiples are rounded, too
            ExpectSlerp(SlerpExact(a, b * -length, t), a, -b, t, 2 * kRounding);
        }
    }
}

TEST(ZmInterpolationTest, NlerpMeetsSlerpInTheMiddle)
{
    Random random(3);
    for (int round = 0; round < kRounds; ++round) {
        const ZmQuaternion a = random.Rotation(), b = random.Rotation(), middle = SlerpExact(a, b, 0.5f);
        ExpectNear(Nlerp(a, b, 0.5f), middle.x, middle.y, middle.z, middle.w, kExact);
    }
}

TEST(ZmInterpolationTest, MatrixKeysComeBackWithTheirBits)
{
    Random random(4);
    for (int round = 0; round < kRounds; ++round) {
        const ZmMatrix a = round % 2 ? Key(random) : random.Matrix(), b = round % 3 ? Key(random) : random.Matrix();
        EXPECT_TRUE(SameBits(ZmInterpolate(a, b, 0), a));
        EXPECT_TRUE(SameBits(ZmInterpolate(a, b, 1), b));
    }
}

TEST(ZmInterpolationTest, KeysAreReachedWithoutAStep)
{
    // Sheared and mirrored keys, too: what lies next to an end is next to its key.
    Random random(5);
    for (int round = 0; round < kRounds; ++round) {
        const ZmMatrix a = random.Affine(1), b = random.Affine(1);
        ExpectNear(ZmInterpolate(a, b, 0x1p-40f), a, 8 * kRounding);
        ExpectNear(ZmInterpolate(a, b, 1 - 0x1p-24f), b, 40 * kRounding);
        ExpectNear(ZmInterpolate(a, a, 0.3f), a, 2 * kRounding);
    }
}

TEST(ZmInterpolationTest, PartsOfAMatrixMoveOnTheirOwn)
{
    Random random(6);
    for (int round = 0; round < kRounds; ++round) {
        const ZmQuaternion qa = random.Rotation(), qb = random.Rotation();
        const ZmVector sa(random.Float(1, 2), random.Float(1, 2), random.Float(1, 2)),
            pa = random.Vector(2), sb(random.Float(1, 2), random.Float(1, 2), random.Float(1, 2)),
            pb = random.Vector(2);
        const float t = random.Float(0, 1);
        const ZmMatrix got = ZmInterpolate(ZmTransform(pa, qa, sa), ZmTransform(pb, qb, sb), t);
        const ZmMatrix expected = ZmTransform(Lerp(pa, pb, t), SlerpExact(qa, qb, t), Lerp(sa, sb, t));
        ExpectNear(got, expected, 24 * kRounding);  // the keys and the expected matrix are themselves rounded
    }
}

TEST(ZmInterpolationTest, HalfwayBetweenQuarterTurnsIsAnEighth)
{
    const ZmMatrix half =
        ZmInterpolate(ZmScaling(1) * ZmTranslation({0, 2, 0}), ZmScaling(3) * ZmRotationZ(1.57079633f), 0.5f);
    const double s = 2 * sqrt(0.5);
    Matrix44d expected;
    expected[0] = Row4(s, s, 0, 0);
    expected[1] = Row4(-s, s, 0, 0);
    expected[2] = Row4(0, 0, 2, 0);
    expected[3] = Row4(0, 1, 0, 1);
    ExpectNear(half, expected, 4 * kRounding);
}

TEST(ZmInterpolationTest, OrthonormalizedRowsAreAProperRotation)
{
    Random random(7);
    for (int round = 0; round < kRounds; ++round) {
        const ZmMatrix m = random.Matrix(), unit = Orthonormalized(m);
        for (int i = 0; i < 9; ++i) {
            const ZmVector a = Row(unit, i / 3), b = Row(unit, i % 3);
            const double dot = double(a.x) * b.x + double(a.y) * b.y + double(a.z) * b.z;
            EXPECT_NEAR(dot, i / 3 == i % 3, kExact);
        }
        EXPECT_NEAR(Determinant3(Matrix44d(unit)).value, 1, 2 * kExact);
        const ZmVector along = Normalized(Row(m, 0)), inPlane = Cross(Row(m, 0), Row(m, 1));
        EXPECT_EQ(Row(unit, 0), along);
        EXPECT_GT(Dot(inPlane, Row(unit, 2)), 0);
        for (int i = 0; i < 4; ++i) {
            EXPECT_EQ(unit[3][i], m[3][i]);
            EXPECT_EQ(unit[i][3], m[i][3]);
        }
    }
}

}  // namespace

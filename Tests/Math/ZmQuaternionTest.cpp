#include "Support/Blocks.h"
#include "Support/Paths.h"
#include "Support/Reference.h"

namespace {

bool Equal(const ZmQuaternion& a, const ZmQuaternion& b)
{
    return a.x == b.x && a.y == b.y && a.z == b.z && a.w == b.w;
}

double SquareNorm(const ZmQuaternion& q)
{
    return double(q.x) * q.x + double(q.y) * q.y + double(q.z) * q.z + double(q.w) * q.w;
}

// --- To and from matrices --------------------------------------------------------------

TEST(ZmQuaternionTest, ToMatrixGivesARotationForAnyLength)
{
    OnEachPath(100, [](Random& random) {
        const ZmQuaternion q = {random.Float(10), random.Float(10), random.Float(10), random.Float(10)};
        ZmMatrix m = random.Matrix();
        q.ToMatrix(m);
        ExpectNear(m, RotationOf(q), 8 * kRounding);
        EXPECT_TRUE(m[0][3] == 0 && m[1][3] == 0 && m[2][3] == 0 && m[3][3] == 1);
        ZmQuaternion().ToMatrix(m);
        ExpectClose(m, Matrix44d(), 0);
        ZmQuaternion(0, 0, 0, 0).ToMatrix(m);
        EXPECT_TRUE(isnan(m[0][0]) && isnan(m[1][2]));
    });
}

TEST(ZmQuaternionTest, FromRotationTurnsInTheSenseOfTheAxisBuilder)
{
    OnEachPath(100, [](Random& random) {
        const ZmVector axis = random.UnitVector();
        const float angle = random.Float(7);
        const double s = sin(angle / 2.0);
        ZmQuaternion q, scaled;
        q.FromRotation(axis, angle);
        ExpectNear(q, s * axis.x, s * axis.y, s * axis.z, cos(angle / 2.0), 2 * kRounding);
        scaled.FromRotation(axis * 4, angle);  // the axis is not normalised
        EXPECT_TRUE(Equal(scaled, {q.x * 4, q.y * 4, q.z * 4, q.w}));
        ZmMatrix fromQuaternion, fromAxis;
        q.ToMatrix(fromQuaternion);
        Zm3DMatrixFromRotation(fromAxis, axis, angle);
        ExpectNear(fromQuaternion, fromAxis, OnVectorPath() ? 6 * kRsqrtError : 16 * kRounding);
    });
}

TEST(ZmQuaternionTest, RotationsComeBackFromTheirMatrix)
{
    OnEachPath(400, [](Random& random) {
        const ZmQuaternion q = random.Rotation();
        ZmMatrix m;
        q.ToMatrix(m);
        ExpectSameRotation(Zm3DQuaternionFromMatrix(m), q, 8 * kRounding);
    });
}

// Each branch makes its own component positive, which shows the branch taken.
const struct {
    const char* name;
    ZmVector axis;  // of a half turn
    float x, y, z;
} kHalfTurns[] = {
    {"x is largest", {-0.8f, 0.6f, 0}, 0.8f, -0.6f, 0},
    {"y is largest", {0.6f, -0.8f, 0}, -0.6f, 0.8f, 0},
    {"z is largest", {0, 0.6f, -0.8f}, 0, -0.6f, 0.8f},
    {"z beats x", {0.6f, 0, -0.8f}, -0.6f, 0, 0.8f},
    {"a tie of x and y goes to x", {-1, 1, 0}, 0.70710678f, -0.70710678f, 0},
    {"a tie of x and z goes to x", {-1, 0, 1}, 0.70710678f, 0, -0.70710678f},
    {"a tie of y and z goes to y", {0, -1, 1}, 0, 0.70710678f, -0.70710678f},
};

TEST(ZmQuaternionTest, FromMatrixStartsFromTheLargestComponent)
{
    for (const auto& row : kHalfTurns) {
        SCOPED_TRACE(row.name);
        const float s = 2 / SquareLength(row.axis);  // a half turn is s * axis * axis^T - 1; ties are exact
        ZmMatrix m(row.axis * (s * row.axis.x), row.axis * (s * row.axis.y), row.axis * (s * row.axis.z), {0, 0, 0});
        for (int i = 0; i < 3; ++i) {
            m[i][i] -= 1;
        }
        ExpectNear(Zm3DQuaternionFromMatrix(m), row.x, row.y, row.z, 0, 4 * kRounding);
    }
    const ZmMatrix traceOfZero({0, 0, 1}, {1, 0, 0}, {0, 1, 0}, {0, 0, 0});
    ExpectNear(Zm3DQuaternionFromMatrix(traceOfZero), 0.5, 0.5, 0.5, 0.5, 0);
    const ZmMatrix theOtherWay({0, 1, 0}, {0, 0, 1}, {1, 0, 0}, {0, 0, 0});
    ExpectNear(Zm3DQuaternionFromMatrix(theOtherWay), -0.5, -0.5, -0.5, 0.5, 0);
}

TEST(ZmQuaternionTest, FromMatrixMakesTheBlockOrthonormalAndPutsItBackOnDemand)
{
    OnEachPath(20, [](Random& random) {
        const ZmQuaternion q = random.Rotation();
        ZmMatrix rotation, original = random.Matrix();  // the third row does not count
        q.ToMatrix(rotation);
        for (int j = 0; j < 3; ++j) {
            original[0][j] = rotation[0][j] * 3;
            original[1][j] = rotation[1][j] * 0.25f;
        }
        ZmMatrix restored = original, written = original;
        ZmQuaternion fromRestored, fromWritten;
        fromRestored.FromMatrix(restored, 0, 1);
        fromWritten.FromMatrix(written, 0, 0);
        const double tolerance = OnVectorPath() ? 4 * kRsqrtError : 8 * kRounding;
        ExpectSameRotation(fromRestored, q, tolerance);
        EXPECT_TRUE(Equal(fromWritten, fromRestored));
        EXPECT_TRUE(SameBits(restored, original));
        Matrix44d expected(original);
        for (int i = 0; i < 9; ++i) {
            expected[i / 3][i % 3] = RotationOf(q)[i / 3][i % 3];
        }
        ExpectNear(written, expected, tolerance);
        fromRestored.FromMatrix(ZmMatrix::Identity(), 0, 1);  // which is in memory that cannot be written
        ExpectSameRotation(fromRestored, ZmQuaternion(), tolerance);
    });
}

TEST(ZmQuaternionTest, FromMatrixTakesAUnitMatrixAsItIs)
{
    for (const int restore : {0, 1}) {
        const ZmMatrix original({3, 0, 0}, {0, 3, 0}, {0, 0, 2}, {0, 0, 0});
        ZmMatrix m = original;
        ZmQuaternion q;
        q.FromMatrix(m, 1, restore);
        EXPECT_TRUE(Equal(q, {0, 0, 0, 1.5f}));  // half the root of a trace of 8 and 1
        EXPECT_TRUE(SameBits(m, original));
    }
}

// --- Axes and angles ------------------------------------------------------------------------

TEST(ZmQuaternionTest, ToRotationDividesByTheRootOfOneMinusW)
{
    OnEachPath(100, [](Random& random) {
        const ZmQuaternion q = random.Rotation();
        ZmVector axis;
        float angle;
        q.ToRotation(axis, angle);
        const double f = 1 / sqrt(1 - double(q.w)), tolerance = 8 * kRounding / (1 - fabs(double(q.w)));
        ExpectNear(axis, {q.x * f, q.y * f, q.z * f, 0}, tolerance);
        EXPECT_NEAR(angle, 2 * atan2(sqrt(1 - double(q.w) * q.w), double(q.w)), tolerance);
    });
    ZmVector axis;
    float angle;
    ZmQuaternion().ToRotation(axis, angle);
    EXPECT_EQ(angle, 0);
    EXPECT_FALSE(isfinite(axis.x) || isfinite(axis.y) || isfinite(axis.z));
}

TEST(ZmQuaternionTest, EulerAnglesGoByWayOfTheMatrix)
{
    OnEachPath(100, [](Random& random) {
        const ZmVector angles = {random.Float(3), random.Float(1.4f), random.Float(3)};
        ZmQuaternion q;
        q.FromEulerAngles(angles.x, angles.y, angles.z);
        ZmMatrix fromQuaternion, fromAngles;
        q.ToMatrix(fromQuaternion);
        Zm3DMatrixFromEulerAngles(fromAngles, angles.x, angles.y, angles.z);
        ExpectNear(fromQuaternion, fromAngles, 12 * kRounding);
        ZmVector found;
        q.ToEulerAngles(&found.x, &found.y, &found.z);
        ExpectNear(found, Row4(angles, 0), 16 * kRounding / cos(angles.y));
    });
}

// --- Algebra ----------------------------------------------------------------------------------

TEST(ZmQuaternionTest, UnitsMultiplyAsHamiltonsDo)
{
    const ZmQuaternion i(1, 0, 0, 0), j(0, 1, 0, 0), k(0, 0, 1, 0);
    EXPECT_TRUE(Equal(Zm3DQuaternionMultiply(i, j), k));
    EXPECT_TRUE(Equal(Zm3DQuaternionMultiply(j, k), i));
    EXPECT_TRUE(Equal(Zm3DQuaternionMultiply(k, i), j));
    EXPECT_TRUE(Equal(Zm3DQuaternionMultiply(j, i), Zm3DQuaternionConjugate(k)));
    EXPECT_TRUE(Equal(Zm3DQuaternionMultiply(k, k), {0, 0, 0, -1}));
}

TEST(ZmQuaternionTest, ProductsTurnVectorsByTheFirstFactorFirst)
{
    OnEachPath(100, [](Random& random) {
        const ZmQuaternion a = random.Rotation(), b = random.Rotation();
        ZmQuaternion member = a, square = a;
        member.Multiply(b);
        square.Multiply(square);
        EXPECT_TRUE(Equal(member, Zm3DQuaternionMultiply(a, b)));
        EXPECT_TRUE(Equal(square, Zm3DQuaternionMultiply(a, a)));
        ZmMatrix m;
        member.ToMatrix(m);
        ExpectNear(m, RotationOf(a) * RotationOf(b), 16 * kRounding);
    });
}

TEST(ZmQuaternionTest, DivisionTakesTheDivisorFromTheLeft)
{
    OnEachPath(100, [](Random& random) {
        const ZmQuaternion a = random.Rotation(), b = random.Rotation();
        ExpectNear(Zm3DQuaternionMultiply(b, Zm3DQuaternionDivide(a, b)), a.x, a.y, a.z, a.w, 8 * kRounding);
    });
    // The result is not divided by the length of b.
    EXPECT_TRUE(Equal(Zm3DQuaternionDivide({1, 2, 3, 4}, {0, 0, 0, 2}), {2, 4, 6, 8}));
}

TEST(ZmQuaternionTest, NormalizeMapsZeroToTheIdentity)
{
    OnEachPath(50, [](Random& random) {
        const ZmVector4 v = random.Vector4();
        ZmQuaternion q(v.x, v.y, v.z, v.w), zero(0, 0, 0, 0);
        const double length = sqrt(SquareNorm(q));
        q.Normalize();
        zero.Normalize();
        ExpectNear(q, v.x / length, v.y / length, v.z / length, v.w / length, 4 * kRounding);
        EXPECT_TRUE(Equal(zero, {0, 0, 0, 1}));
    });
}

TEST(ZmQuaternionTest, TheLogarithmIsTheAxisByHalfTheAngle)
{
    OnEachPath(100, [](Random& random) {
        const ZmVector axis = random.UnitVector();
        const float half = random.Float(0.005f, 3);
        ZmQuaternion q;
        q.FromRotation(axis, 2 * half);
        ExpectNear(Ln(q), axis.x * half, axis.y * half, axis.z * half, 0, 16 * kRounding);
        ExpectNear(Exp(Ln(q)), q.x, q.y, q.z, q.w, 8 * kRounding);
        const ZmQuaternion other = random.Rotation(), again = Zm3DQuaternionMultiply(q, Exp(LnDif(q, other)));
        ExpectNear(again, other.x, other.y, other.z, other.w, 16 * kRounding);
    });
    EXPECT_TRUE(Equal(Ln({0, 0, 0, 1}), {0, 0, 0, 0}));
    EXPECT_TRUE(Equal(Ln({0, 0, 0, -1}), {0, 0, 0, 0}));
}

TEST(ZmQuaternionTest, TheExponentialOfNextToNothingIsTheIdentity)
{
    EXPECT_TRUE(Equal(Exp({0, 0, 0, 0}), {0, 0, 0, 1}));
    EXPECT_TRUE(Equal(Exp({1e-8f, 0, 0, 0}), {1e-8f, 0, 0, 1}));
    EXPECT_TRUE(Equal(Exp({0, 0, 0x1p-23f, 5}), {0, 0, 0x1p-23f, 1}));  // w is not read
}

TEST(ZmQuaternionTest, ExponentialsOfLargeAnglesKeepTheirDigits)
{
    if (!SystemSinesAreExact()) {
        GTEST_SKIP() << "the C library's sines are inexact here";
    }
    for (const float size : {1.0f, 300.0f, 12345.0f, 1e6f, 1e9f}) {
        const ZmQuaternion q = Exp({size, -2 * size, 0.7f * size, 3});
        const double x = size, z = 0.7f * size, theta = sqrt(5 * x * x + z * z), f = sin(theta) / theta;
        ExpectNear(q, f * x, f * -2 * x, f * z, cos(theta), 2 * kRounding);
    }
}

// --- Interpolation ---------------------------------------------------------------------------------

constexpr double kDegree = 3.14159265358979 / 180;

ZmQuaternion AboutZ(double quaternionAngle)
{
    return {0, 0, float(sin(quaternionAngle)), float(cos(quaternionAngle))};
}

TEST(ZmQuaternionTest, SlerpMovesEvenlyAlongTheShorterArc)
{
    for (const double arc : {-89.0, -60.0, 8.2, 9.0, 30.0, 89.0, 120.0, 170.0}) {
        for (const float t : {0.0f, 0.1f, 0.5f, 0.8f, 1.0f}) {
            SCOPED_TRACE(arc);
            const ZmQuaternion q = Slerp(t, AboutZ(0.3), AboutZ(0.3 + arc * kDegree));
            const double way = arc > 90 ? arc - 180 : arc, angle = 0.3 + t * way * kDegree;
            // The arc is computed from its cosine, which is imprecise for small arcs.
            ExpectNear(q, 0, 0, sin(angle), cos(angle), 4 * kRounding / fabs(sin(arc * kDegree)));
        }
    }
}

TEST(ZmQuaternionTest, SlerpOfNearQuaternionsIsLinearAndNotRenormalised)
{
    for (const double arc : {0.0, 5.0, 8.05, -8.05}) {  // linear up to a cosine of 0.99, 8.1 degrees
        const ZmQuaternion a = AboutZ(0), b = AboutZ(arc * kDegree);
        for (const float sign : {1.0f, -1.0f}) {
            const ZmQuaternion q = Slerp(0.25f, a, {0, 0, sign * b.z, sign * b.w});
            ExpectNear(q, 0, 0, 0.25 * b.z, 0.75 + 0.25 * b.w, 2 * kRounding);
        }
    }
    EXPECT_LT(SquareNorm(Slerp(0.5f, AboutZ(0), AboutZ(8.05 * kDegree))), 0.9952);  // cos 4.025 degrees, squared
    EXPECT_NEAR(SquareNorm(Slerp(0.5f, AboutZ(0), AboutZ(8.2 * kDegree))), 1, 16 * kRounding);
}

TEST(ZmQuaternionTest, SquadRunsFromItsFirstQuaternionToItsLast)
{
    OnEachPath(20, [](Random& random) {
        const ZmQuaternion q1 = random.Rotation(), s1 = random.Rotation(), s2 = random.Rotation(),
                           q2 = random.Rotation();
        ExpectSameRotation(Squad(0, q1, s1, s2, q2), q1, 4 * kRounding);
        ExpectSameRotation(Squad(1, q1, s1, s2, q2), q2, 4 * kRounding);
        const ZmQuaternion middle = Slerp(0.375f, Slerp(0.25f, q1, q2), Slerp(0.25f, s1, s2));
        EXPECT_TRUE(Equal(Squad(0.25f, q1, s1, s2, q2), middle));
    });
}

}  // namespace

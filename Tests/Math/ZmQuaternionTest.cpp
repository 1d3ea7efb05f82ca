#include "Support/Blocks.h"
#include "Support/Paths.h"
#include "Support/Reference.h"

namespace {

const float kRootHalf = 0.70710678f;

void ExpectNear(const ZmQuaternion& got, double x, double y, double z, double w, double tolerance)
{
    EXPECT_NEAR(got.x, x, tolerance);
    EXPECT_NEAR(got.y, y, tolerance);
    EXPECT_NEAR(got.z, z, tolerance);
    EXPECT_NEAR(got.w, w, tolerance);
}

bool Equal(const ZmQuaternion& a, const ZmQuaternion& b)
{
    return a.x == b.x && a.y == b.y && a.z == b.z && a.w == b.w;
}

double SquareLength(const ZmQuaternion& q)
{
    return double(q.x) * q.x + double(q.y) * q.y + double(q.z) * q.z + double(q.w) * q.w;
}

// --- To and from matrices --------------------------------------------------------------

TEST(QuaternionTest, ToMatrixGivesARotationForAnyLength)
{
    OnEachPath([] {
        Random random(1);
        for (int round = 0; round < 100; ++round) {
            const ZmVector4 v = random.Vector4();
            const ZmQuaternion q(v.x, v.y, v.z, v.w);
            ZmMatrix m = random.Matrix();
            q.ToMatrix(m);
            ExpectNear(m, RotationOf(q), 8 * kRounding);
            EXPECT_TRUE(m[0][3] == 0 && m[1][3] == 0 && m[2][3] == 0 && m[3][3] == 1);
        }
    });
}

TEST(QuaternionTest, ToMatrixOfTheDefaultIsTheIdentityAndOfZeroNonNumbers)
{
    OnEachPath([] {
        ZmMatrix m;
        ZmQuaternion().ToMatrix(m);
        EXPECT_TRUE(m.Compare(ZmMatrix::Identity()));
        ZmQuaternion(0, 0, 0, 0).ToMatrix(m);
        EXPECT_TRUE(isnan(m[0][0]) && isnan(m[1][2]));
    });
}

TEST(QuaternionTest, FromRotationTurnsInTheSenseOfTheAxisBuilder)
{
    OnEachPath([] {
        Random random(2);
        for (int round = 0; round < 100; ++round) {
            const ZmVector axis = random.UnitVector();
            const float angle = random.Float(-7, 7);
            ZmQuaternion q;
            q.FromRotation(axis, angle);
            ExpectNear(q, sin(angle / 2.0) * axis.x, sin(angle / 2.0) * axis.y, sin(angle / 2.0) * axis.z,
                       cos(angle / 2.0), 2 * kRounding);
            ZmMatrix fromQuaternion, fromAxis;
            q.ToMatrix(fromQuaternion);
            Zm3DMatrixFromRotation(fromAxis, axis, angle);
            ExpectNear(fromQuaternion, Matrix44d(fromAxis), OnVectorPath() ? 6 * kRsqrtError : 16 * kRounding);
        }
    });
}

TEST(QuaternionTest, FromRotationTakesTheAxisAsItIs)
{
    ZmQuaternion q;
    q.FromRotation({0, 4, 0}, 3.14159265f);
    ExpectNear(q, 0, 4, 0, 0, 4 * kRounding);
}

TEST(QuaternionTest, AQuarterTurnAboutZTakesXToMinusY)
{
    OnEachPath([] {
        ZmQuaternion q;
        q.FromRotation(ZmVector::axisZ(), 1.57079633f);
        ZmMatrix m;
        q.ToMatrix(m);
        ExpectNear(Rotate(m, ZmVector::axisX()), {0, -1, 0, 0}, 2 * kRounding);
    });
}

TEST(QuaternionTest, RotationsComeBackFromTheirMatrix)
{
    Random random(3);
    for (int round = 0; round < 400; ++round) {
        const ZmQuaternion q = random.Rotation();
        ZmMatrix m;
        q.ToMatrix(m);
        ExpectSameRotation(Zm3DQuaternionFromMatrix(m), q, 8 * kRounding);
    }
}

// Each branch makes its own component positive, which tells which one was taken.
const struct {
    const char* name;
    ZmQuaternion turn, expected;
} kBranches[] = {
    {"trace of 0 still goes to w", {-0.5f, -0.5f, -0.5f, 0.5f}, {-0.5f, -0.5f, -0.5f, 0.5f}},
    {"x is largest", {-0.8f, 0.6f, 0, 0}, {0.8f, -0.6f, 0, 0}},
    {"y is largest", {0.6f, -0.8f, 0, 0}, {-0.6f, 0.8f, 0, 0}},
    {"z is largest", {0, 0.6f, -0.8f, 0}, {0, -0.6f, 0.8f, 0}},
    {"z beats x", {0.6f, 0, -0.8f, 0}, {-0.6f, 0, 0.8f, 0}},
    {"a tie of x and y goes to x", {-kRootHalf, kRootHalf, 0, 0}, {kRootHalf, -kRootHalf, 0, 0}},
    {"a tie of x and z goes to x", {-kRootHalf, 0, kRootHalf, 0}, {kRootHalf, 0, -kRootHalf, 0}},
    {"a tie of y and z goes to y", {0, -kRootHalf, kRootHalf, 0}, {0, kRootHalf, -kRootHalf, 0}},
};

TEST(QuaternionTest, FromMatrixStartsFromTheLargestComponent)
{
    for (const auto& row : kBranches) {
        SCOPED_TRACE(row.name);
        ZmMatrix m;
        row.turn.ToMatrix(m);
        for (int i = 0; i < 9; ++i) {  // ties must be exact
            m[i / 3][i % 3] = fabsf(m[i / 3][i % 3]) < 1e-6f ? 0.0f : m[i / 3][i % 3];
        }
        const ZmQuaternion& e = row.expected;
        ExpectNear(Zm3DQuaternionFromMatrix(m), e.x, e.y, e.z, e.w, 4 * kRounding);
    }
}

/// A rotation with its rows scaled and the last one replaced by something else.
ZmMatrix SkewedRotation(Random& random, const ZmQuaternion& q)
{
    ZmMatrix m;
    q.ToMatrix(m);
    for (int j = 0; j < 3; ++j) {
        m[0][j] *= 3;
        m[1][j] *= 0.25f;
        m[2][j] = random.Float(-1, 1);
        m[3][j] = random.Float(-1, 1);
        m[j][3] = random.Float(-1, 1);
    }
    return m;
}

TEST(QuaternionTest, FromMatrixMakesTheBlockOrthonormalAndPutsItBackOnDemand)
{
    OnEachPath([] {
        Random random(4);
        const ZmQuaternion q = random.Rotation();
        const ZmMatrix original = SkewedRotation(random, q);
        const double tolerance = OnVectorPath() ? 4 * kRsqrtError : 8 * kRounding;
        ZmMatrix restored = original, written = original;
        ZmQuaternion fromRestored, fromWritten;
        fromRestored.FromMatrix(restored, 0, 1);
        fromWritten.FromMatrix(written, 0, 0);
        ExpectSameRotation(fromRestored, q, tolerance);
        EXPECT_TRUE(Equal(fromWritten, fromRestored));
        EXPECT_TRUE(SameBits(restored, original));
        Matrix44d expected = RotationOf(q);
        for (int i = 0; i < 4; ++i) {
            expected[i][3] = original[i][3];
            expected[3][i] = original[3][i];
        }
        ExpectNear(written, expected, tolerance);
    });
}

TEST(QuaternionTest, FromMatrixTakesAUnitMatrixAsItIs)
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

TEST(QuaternionTest, ToRotationDividesByTheRootOfOneMinusW)
{
    Random random(5);
    for (int round = 0; round < 100; ++round) {
        const ZmQuaternion q = random.Rotation();
        ZmVector axis;
        float angle;
        q.ToRotation(axis, angle);
        const double f = 1 / sqrt(1 - double(q.w)), tolerance = 8 * kRounding / (1 - fabs(double(q.w)));
        ExpectNear(axis, {q.x * f, q.y * f, q.z * f, 0}, tolerance);
        EXPECT_NEAR(angle, 2 * atan2(sqrt(1 - double(q.w) * q.w), double(q.w)), tolerance);
    }
}

TEST(QuaternionTest, ToRotationOfTheIdentityHasNoFiniteAxis)
{
    ZmVector axis;
    float angle;
    ZmQuaternion().ToRotation(axis, angle);
    EXPECT_EQ(angle, 0);
    EXPECT_FALSE(isfinite(axis.x) || isfinite(axis.y) || isfinite(axis.z));
}

TEST(QuaternionTest, EulerAnglesGoByWayOfTheMatrix)
{
    Random random(6);
    for (int round = 0; round < 100; ++round) {
        const ZmVector angles = {random.Float(-3, 3), random.Float(-1.4f, 1.4f), random.Float(-3, 3)};
        ZmQuaternion q;
        q.FromEulerAngles(angles.x, angles.y, angles.z);
        ZmMatrix fromQuaternion, fromAngles;
        q.ToMatrix(fromQuaternion);
        Zm3DMatrixFromEulerAngles(fromAngles, angles.x, angles.y, angles.z);
        ExpectNear(fromQuaternion, Matrix44d(fromAngles), 12 * kRounding);
        ZmVector found;
        q.ToEulerAngles(&found.x, &found.y, &found.z);
        ExpectNear(found, Vector4d(angles, 0), 16 * kRounding / cos(angles.y));
    }
}

// --- Algebra ----------------------------------------------------------------------------------

TEST(QuaternionTest, UnitsMultiplyAsHamiltonsDo)
{
    const ZmQuaternion i(1, 0, 0, 0), j(0, 1, 0, 0), k(0, 0, 1, 0), minusOne(0, 0, 0, -1);
    EXPECT_TRUE(Equal(Zm3DQuaternionMultiply(i, j), k));
    EXPECT_TRUE(Equal(Zm3DQuaternionMultiply(j, k), i));
    EXPECT_TRUE(Equal(Zm3DQuaternionMultiply(k, i), j));
    EXPECT_TRUE(Equal(Zm3DQuaternionMultiply(j, i), Zm3DQuaternionConjugate(k)));
    for (const ZmQuaternion& unit : {i, j, k}) {
        EXPECT_TRUE(Equal(Zm3DQuaternionMultiply(unit, unit), minusOne));
    }
}

TEST(QuaternionTest, ProductsTurnVectorsByTheFirstFactorFirst)
{
    Random random(7);
    for (int round = 0; round < 100; ++round) {
        const ZmQuaternion a = random.Rotation(), b = random.Rotation();
        const Matrix44d expected = RotationOf(a) * RotationOf(b);
        ZmQuaternion member = a, square = a;
        member.Multiply(b);
        square.Multiply(square);
        ZmMatrix m;
        member.ToMatrix(m);
        ExpectNear(m, expected, 16 * kRounding);
        EXPECT_TRUE(Equal(member, Zm3DQuaternionMultiply(a, b)));
        EXPECT_TRUE(Equal(square, Zm3DQuaternionMultiply(a, a)));
    }
}

TEST(QuaternionTest, DivisionTakesTheDivisorFromTheLeft)
{
    Random random(8);
    for (int round = 0; round < 100; ++round) {
        const ZmQuaternion a = random.Rotation(), b = random.Rotation();
        const ZmQuaternion quotient = Zm3DQuaternionDivide(a, b);
        const ZmQuaternion again = Zm3DQuaternionMultiply(b, quotient);
        ExpectNear(again, a.x, a.y, a.z, a.w, 8 * kRounding);
    }
    // Nothing is divided by the length of b.
    EXPECT_TRUE(Equal(Zm3DQuaternionDivide({1, 2, 3, 4}, {0, 0, 0, 2}), {2, 4, 6, 8}));
}

TEST(QuaternionTest, NormalizeMapsZeroToTheIdentity)
{
    Random random(9);
    for (int round = 0; round < 50; ++round) {
        const ZmVector4 v = random.Vector4();
        ZmQuaternion q(v.x, v.y, v.z, v.w);
        const double length = sqrt(SquareLength(q));
        q.Normalize();
        ExpectNear(q, v.x / length, v.y / length, v.z / length, v.w / length, 4 * kRounding);
    }
    ZmQuaternion zero(0, 0, 0, 0);
    zero.Normalize();
    EXPECT_TRUE(Equal(zero, {0, 0, 0, 1}));
}

// --- Logarithm and exponential -----------------------------------------------------------------

TEST(QuaternionTest, TheLogarithmIsTheAxisByHalfTheAngle)
{
    Random random(10);
    for (int round = 0; round < 100; ++round) {
        const ZmVector axis = random.UnitVector();
        const float angle = random.Float(0.01f, 6);
        ZmQuaternion q;
        q.FromRotation(axis, angle);
        const double half = angle / 2.0;
        ExpectNear(Ln(q), axis.x * half, axis.y * half, axis.z * half, 0, 16 * kRounding);
        const ZmQuaternion again = Exp(Ln(q));
        ExpectNear(again, q.x, q.y, q.z, q.w, 8 * kRounding);
    }
    EXPECT_TRUE(Equal(Ln({0, 0, 0, 1}), {0, 0, 0, 0}));
    EXPECT_TRUE(Equal(Ln({0, 0, 0, -1}), {0, 0, 0, 0}));
}

TEST(QuaternionTest, TheExponentialOfNextToNothingIsTheIdentity)
{
    EXPECT_TRUE(Equal(Exp({0, 0, 0, 0}), {0, 0, 0, 1}));
    EXPECT_TRUE(Equal(Exp({1e-8f, 0, 0, 0}), {1e-8f, 0, 0, 1}));
    EXPECT_TRUE(Equal(Exp({0, 0, 0x1p-23f, 5}), {0, 0, 0x1p-23f, 1}));  // w is not read
}

TEST(QuaternionTest, TheDifferenceOfLogarithmsLeadsFromOneToTheOther)
{
    Random random(11);
    for (int round = 0; round < 50; ++round) {
        const ZmQuaternion a = random.Rotation(), b = random.Rotation();
        const ZmQuaternion again = Zm3DQuaternionMultiply(a, Exp(LnDif(a, b)));
        ExpectNear(again, b.x, b.y, b.z, b.w, 16 * kRounding);
    }
}

// --- Interpolation ---------------------------------------------------------------------------------

ZmQuaternion AboutZ(double quaternionAngle)
{
    return {0, 0, float(sin(quaternionAngle)), float(cos(quaternionAngle))};
}

const double kDegree = 3.14159265358979 / 180;

TEST(QuaternionTest, SlerpMovesEvenlyAlongTheArc)
{
    for (const double arc : {9.0, 30.0, 60.0, 89.0}) {
        for (const float t : {0.0f, 0.1f, 0.5f, 0.8f, 1.0f}) {
            SCOPED_TRACE(arc);
            const ZmQuaternion q = Slerp(t, AboutZ(0.3), AboutZ(0.3 + arc * kDegree));
            const double expected = 0.3 + t * arc * kDegree;
            // The arc comes from its cosine, which says little about a small one.
            ExpectNear(q, 0, 0, sin(expected), cos(expected), 2 * kRounding / sin(arc * kDegree));
        }
    }
}

TEST(QuaternionTest, SlerpTakesTheShorterArc)
{
    for (const float t : {0.0f, 0.25f, 1.0f}) {
        const ZmQuaternion q = Slerp(t, AboutZ(0), AboutZ(120 * kDegree));  // 60 degrees the other way
        ExpectNear(q, 0, 0, sin(-60 * kDegree * t), cos(-60 * kDegree * t), 4 * kRounding);
    }
    Random random(12);
    const ZmQuaternion q = random.Rotation(), opposite(-q.x, -q.y, -q.z, -q.w);
    ExpectNear(Slerp(0.7f, q, opposite), q.x, q.y, q.z, q.w, 2 * kRounding);
}

TEST(QuaternionTest, SlerpOfNearQuaternionsIsLinearAndNotRenormalised)
{
    const ZmQuaternion a = AboutZ(0), b = AboutZ(5 * kDegree);
    for (const float sign : {1.0f, -1.0f}) {
        const ZmQuaternion q = Slerp(0.25f, a, {0, 0, sign * b.z, sign * b.w});
        ExpectNear(q, 0, 0, 0.25 * b.z, 0.75 + 0.25 * b.w, 2 * kRounding);
    }
    EXPECT_LT(SquareLength(Slerp(0.5f, a, b)), 0.9982);  // cos 2.5 degrees, squared
    EXPECT_NEAR(SquareLength(Slerp(0.5f, AboutZ(0), AboutZ(90 * kDegree))), 1, 8 * kRounding);
}

TEST(QuaternionTest, SlerpBecomesLinearAtAHundredthOfTheCosine)
{
    for (const double cosine : {0.9899, 0.9901}) {
        const double arc = acos(cosine), t = 0.25;
        const ZmQuaternion q = Slerp(float(t), AboutZ(0), AboutZ(arc));
        const double length = cosine < 0.99 ? 1 : sqrt(0.75 * 0.75 + 0.25 * 0.25 + 2 * 0.75 * 0.25 * cosine);
        EXPECT_NEAR(SquareLength(q), length * length, 16 * kRounding) << cosine;
    }
}

TEST(QuaternionTest, SquadRunsFromItsFirstQuaternionToItsLast)
{
    Random random(13);
    const ZmQuaternion q1 = random.Rotation(), s1 = random.Rotation(), s2 = random.Rotation(), q2 = random.Rotation();
    ExpectSameRotation(Squad(0, q1, s1, s2, q2), q1, 4 * kRounding);
    ExpectSameRotation(Squad(1, q1, s1, s2, q2), q2, 4 * kRounding);
    const ZmQuaternion middle = Slerp(0.375f, Slerp(0.25f, q1, q2), Slerp(0.25f, s1, s2));
    EXPECT_TRUE(Equal(Squad(0.25f, q1, s1, s2, q2), middle));
}

}  // namespace

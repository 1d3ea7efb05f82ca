#include "Support/Blocks.h"
#include "Support/Paths.h"
#include "Support/Reference.h"

#include <math.h>

// The bits of inline forms are compared with the exported functions on random inputs; accuracy with formulas in double.

namespace {

constexpr int kRounds = 500;

// --- Constants ---------------------------------------------------------------------------

constexpr ZmMatrix kTurnAndMove({0, 1, 0}, {-1, 0, 0}, {0, 0, 1}, {2, 3, 4});
constexpr ZmQuaternion kI(1, 0, 0, 0), kJ(0, 1, 0, 0), kK(0, 0, 1, 0);

static_assert(ZmVector(2, 4, 6) / 2.0f == ZmVector(1, 2, 3));
static_assert(ZmVector(2, 4, 6) * ZmVector(1, 0.5f, 2) / ZmVector(2, 1, 4) == ZmVector(1, 2, 3));
static_assert((Zm2DVector(1, 2) + Zm2DVector(3, 4)) * 2.0f - Zm2DVector(1, 1) == Zm2DVector(7, 11));
static_assert(ZmVector4(1, 2, 3, 4) - 2.0f * ZmVector4(1, 1, 1, 1) == -ZmVector4(1, 0, -1, -2));
static_assert(ZmColor(1, 2, 3) * ZmColor(2, 1, 0, 0.5f) / 2.0f == ZmColor(1, 1, 0, 0.25f));
static_assert(kI * kJ == kK && kJ * kI == -kK && kK * kK == ZmQuaternion(0, 0, 0, -1));
static_assert(kTurnAndMove * kTurnAndMove == ZmMatrix({-1, 0, 0}, {0, -1, 0}, {0, 0, 1}, {-1, 5, 8}));
static_assert(AffineProduct(kTurnAndMove, kTurnAndMove) == kTurnAndMove * kTurnAndMove);
static_assert(Transposed(kTurnAndMove)[0][3] == 2 && Transposed(kTurnAndMove)[0][1] == -1);
static_assert(Determinant(kTurnAndMove) == 1);
static_assert(ZmVector4(1, 0, 0, 1) * kTurnAndMove == ZmVector4(2, 4, 4, 1));
static_assert(TransformPoint({1, 0, 0}, kTurnAndMove) == ZmVector(2, 4, 4));
static_assert(TransformDirection({1, 0, 0}, kTurnAndMove) == ZmVector(0, 1, 0));
static_assert(TransformNormal({1, 0, 0}, kTurnAndMove) == ZmVector(0, 1, 0));
static_assert(Cross(Zm2DVector(1, 0), Zm2DVector(0, 1)) == 1);
static_assert(Clamp(ZmVector(-1, 2, 0.5f), {0, 0, 0}, {1, 1, 1}) == Saturate(ZmVector(-1, 2, 0.5f)));
static_assert(Abs(ZmVector4(-1, 2, -3, 4)) == ZmVector4(1, 2, 3, 4));
static_assert(Reflect(ZmVector(1, -1, 0), {0, 1, 0}) == ZmVector(1, 1, 0));
static_assert(Lerp(ZmColor(0, 1, 0), ZmColor(1, 0, 0), 0.25f) == ZmColor(0.25f, 0.75f, 0));

// --- Beside the exported functions -------------------------------------------------------

TEST(ZmOperatorsTest, MatricesGiveTheBitsOfTheLibrary)
{
    OnEachPath(kRounds, [](Random& random) {
        const ZmMatrix a = random.Matrix(), b = random.Matrix();
        ZmMatrix product, transposed;
        Zm3DMultiplyMatrix4(product, b, a);
        Zm3DTransposeMatrix(transposed, a);
        EXPECT_TRUE(SameBits(a * b, product));
        EXPECT_TRUE(SameBits(Transposed(a), transposed));
        EXPECT_TRUE(SameBits(Determinant(a), Zm3DMatrixDeterminant(a)));
        ZmMatrix own = a;
        EXPECT_TRUE(SameBits(own *= own, a * a));

        const ZmMatrix first = random.Affine(), second = random.Affine();
        Zm3DMultiplyMatrix(product, second, first);
        EXPECT_EQ(first * second, product);
        EXPECT_TRUE(SameBits(AffineProduct(first, second), product));
        Zm3DMultiplyMatrix(product, b, a);  // whatever the fourth columns hold
        EXPECT_TRUE(SameBits(AffineProduct(a, b), product));
    });
}

TEST(ZmOperatorsTest, TransformsGiveTheBitsOfTheLibrary)
{
    OnEachPath(kRounds, [](Random& random) {
        const ZmMatrix m = random.Matrix();
        const ZmVector4 v = random.Vector4();
        const ZmVector p(v.x, v.y, v.z);
        ZmVector4 row;
        ZmVector point, direction;
        Zm3DMultiplyMatrixVector4(&row, m, &v);
        Zm3DMultiplyMatrixVector(&point, m, &p);
        Zm3DRotateVector(&direction, m, &p);
        EXPECT_TRUE(SameBits(v * m, row));
        EXPECT_TRUE(SameBits(TransformPoint(p, m), point));
        EXPECT_TRUE(SameBits(TransformDirection(p, m), direction));
    });
}

TEST(ZmOperatorsTest, QuaternionsGiveTheBitsOfTheLibrary)
{
    OnEachPath(kRounds, [](Random& random) {
        const ZmQuaternion a = random.Rotation(), b = random.Rotation();
        ZmQuaternion product = a;
        product.Multiply(b);
        EXPECT_TRUE(SameBits(a * b, product));
        EXPECT_TRUE(SameBits(Conjugate(a), Zm3DQuaternionConjugate(a)));
    });
}

TEST(ZmOperatorsTest, LerpGivesTheBitsOfTheArrays)
{
    OnEachPath(kRounds, [](Random& random) {
        const ZmVector4 a = random.Vector4(), b = random.Vector4();
        const float t = random.Float(-1, 2);
        ZmVector4 expected;
        InterpolateFloatArray(&expected, &a, &b, t, 4);
        EXPECT_TRUE(SameBits(Lerp(a, b, t), expected));
        const ZmVector three = Lerp(ZmVector(a.x, a.y, a.z), ZmVector(b.x, b.y, b.z), t);
        EXPECT_EQ(three, ZmVector(expected.x, expected.y, expected.z));
        EXPECT_EQ(Lerp(Zm2DVector(a.x, a.y), Zm2DVector(b.x, b.y), t), Zm2DVector(expected.x, expected.y));
    });
}

// --- Laws --------------------------------------------------------------------------------

TEST(ZmOperatorsTest, ProductsReadFromLeftToRight)
{
    Random random(2);
    for (int round = 0; round < kRounds; ++round) {
        const ZmMatrix a = random.Matrix(1), b = random.Matrix(1);
        const ZmVector4 v = random.Vector4(1), once = v * (a * b), inTurn = (v * a) * b;
        const Row4 expected = Row4(v.x, v.y, v.z, v.w) * Matrix44d(a) * Matrix44d(b);
        const float got[2][4] = {{once.x, once.y, once.z, once.w}, {inTurn.x, inTurn.y, inTurn.z, inTurn.w}};
        for (int i = 0; i < 8; ++i) {
            ExpectClose(got[i / 4][i % 4], expected[i % 4], 8);
        }

        const ZmQuaternion p = random.Rotation(), q = random.Rotation();
        const ZmVector w = random.Vector(1);
        ExpectNear(Rotate(p * q, w), Row4(Rotate(q, Rotate(p, w)), 0), 16 * kRounding);
    }
}

TEST(ZmOperatorsTest, RotationByAQuaternionIsThatOfItsMatrix)
{
    Random random(3);
    for (int round = 0; round < kRounds; ++round) {
        const ZmQuaternion q = random.Rotation();
        const ZmVector v = random.Vector(1);
        ExpectNear(Rotate(q, v), Row4(v, 0) * RotationOf(q), 10 * kRounding);
        ExpectNear(Rotate(Conjugate(q), Rotate(q, v)), Row4(v, 0), 20 * kRounding);
    }
}

TEST(ZmOperatorsTest, NormalsStayPerpendicularAndHaveTheLengthOfTheTransposedInverse)
{
    Random random(4);
    for (int round = 0; round < kRounds; ++round) {
        const ZmMatrix m = random.Affine(1);
        const ZmVector n = random.UnitVector(), other = random.UnitVector();
        const Matrix44d block(m);
        const double det = Determinant3(block).value;
        if (fabs(det) < 0.01) {
            continue;
        }
        // n * transposed inverse, dotted with v * M, is the dot of n and v.
        const ZmVector normal = TransformNormal(n, m);
        const Row4 image = Row4(other, 0) * block;
        double got = 0, expected = 0;
        for (int i = 0; i < 3; ++i) {
            got += normal[i] * image[i].value;
            expected += double(n[i]) * other[i];
        }
        EXPECT_NEAR(got, expected, 16 * kRounding * (1 + double(Length(normal))));
    }
}

// --- Accuracy and edges ------------------------------------------------------------------

/// The distance between a float and the true value, in units of the float's last place.
double UlpsOff(float got, double expected)
{
    const float magnitude = fabsf(float(expected)), next = nextafterf(magnitude, INFINITY);
    return fabs(got - expected) / (double(next) - magnitude);
}

TEST(ZmOperatorsTest, NormalizedIsExactAtAnyLength)
{
    Random random(5);
    for (int round = 0; round < kRounds; ++round) {
        for (const float range : {1e-38f, 1e-20f, 1.0f, 1e19f, 1.5e38f}) {
            SCOPED_TRACE(range);
            const ZmVector4 v = random.Vector4(range);
            const double two = sqrt(double(v.x) * v.x + double(v.y) * v.y), three = sqrt(two * two + double(v.z) * v.z),
                         four = sqrt(three * three + double(v.w) * v.w);
            const Zm2DVector unit2 = Normalized(Zm2DVector(v.x, v.y));
            ZmVector unit3(v.x, v.y, v.z);
            NormalizeExact(unit3);
            const ZmVector4 unit4 = Normalized(v);
            const ZmQuaternion q = Normalized(ZmQuaternion(v.x, v.y, v.z, v.w));
            EXPECT_LE(UlpsOff(unit2.y, v.y / two), 0.51);
            EXPECT_LE(UlpsOff(unit3.x, v.x / three), 0.51);
            EXPECT_LE(UlpsOff(unit3.z, v.z / three), 0.51);
            EXPECT_LE(UlpsOff(unit4.w, v.w / four), 0.51);
            EXPECT_LE(UlpsOff(q.w, v.w / four), 0.51);
        }
    }
}

TEST(ZmOperatorsTest, NothingToNormalizeGivesNonNumbersOrTheIdentity)
{
    const ZmVector v = Normalized(ZmVector(0, 0, 0));
    EXPECT_TRUE(isnan(v.x) && isnan(v.y) && isnan(v.z));
    EXPECT_EQ(Normalized(ZmQuaternion(0, 0, 0, 0)), ZmQuaternion());
}

TEST(ZmOperatorsTest, LengthsAndDistancesAreRoots)
{
    EXPECT_EQ(Length(Zm2DVector(3, 4)), 5);
    EXPECT_EQ(Length(ZmVector4(1, 1, 1, 1)), 2);
    EXPECT_EQ(Length(ZmQuaternion(2, 2, 2, 2)), 4);
    EXPECT_EQ(Distance(ZmVector(1, 2, 3), ZmVector(3, 5, 9)), 7);
    EXPECT_EQ(Distance(Zm2DVector(1, 1), Zm2DVector(4, 5)), 5);
    EXPECT_EQ(Dot(ZmVector4(1, 2, 3, 4), ZmVector4(5, 6, 7, 8)), 70);
    EXPECT_EQ(Dot(ZmQuaternion(1, 2, 3, 4), ZmQuaternion(5, 6, 7, 8)), 70);
}

TEST(ZmOperatorsTest, NonNumbersYieldToTheSecondOperand)
{
    const ZmVector nans(NAN, NAN, NAN), v(1, 2, 3);
    EXPECT_EQ(Min(nans, v), v);
    EXPECT_EQ(Max(nans, v), v);
    EXPECT_TRUE(isnan(Min(v, nans).x));
    EXPECT_EQ(Clamp(nans, {4, 5, 6}, {7, 8, 9}), ZmVector(4, 5, 6));
    EXPECT_EQ(Saturate(ZmColor(NAN, 2, -1, 0.5f)), ZmColor(0, 1, 0, 0.5f));
    EXPECT_NE(nans, nans);
    EXPECT_NE(ZmQuaternion(0, 0, 0, 1), -ZmQuaternion(0, 0, 0, 1));
}

// In-place forms, each against its pair of operands.
template <class T>
void ExpectInPlaceForms(T a, const T& b)
{
    const T start = a;
    EXPECT_EQ(a += b, start + b);
    EXPECT_EQ(a -= b, start + b - b);
    EXPECT_EQ(a *= 4.0f, (start + b - b) * 4.0f);
    EXPECT_EQ(a /= 2.0f, (start + b - b) * 4.0f / 2.0f);
    EXPECT_NE(a, start);
}

TEST(ZmOperatorsTest, InPlaceFormsChangeTheirLeftOperand)
{
    ExpectInPlaceForms(Zm2DVector(1, 2), Zm2DVector(5, 6));
    ExpectInPlaceForms(ZmVector(1, 2, 3), ZmVector(5, 6, 7));
    ExpectInPlaceForms(ZmVector4(1, 2, 3, 4), ZmVector4(5, 6, 7, 8));
    ExpectInPlaceForms(ZmColor(1, 2, 3, 4), ZmColor(5, 6, 7, 8));
}

}  // namespace

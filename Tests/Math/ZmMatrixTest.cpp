#include "Support/Blocks.h"
#include "Support/Paths.h"
#include "Support/Reference.h"

namespace {

void ExpectAffineColumn(const ZmMatrix& m)
{
    EXPECT_TRUE(m[0][3] == 0 && m[1][3] == 0 && m[2][3] == 0 && m[3][3] == 1);
}

// --- Products, transposes, comparison ----------------------------------------------------

TEST(ZmMatrixTest, ProductsApplyTheSecondFactorFirst)
{
    OnEachPath(100, [](Random& random) {
        const ZmMatrix a = random.Matrix(), b = random.Matrix();
        ZmMatrix full, affine;
        Zm3DMultiplyMatrix4(full, a, b);
        ExpectClose(full, Matrix44d(b) * a);
        Zm3DMultiplyMatrix(affine, a, b);
        ExpectClose(affine, Matrix44d(b).Affine() * Matrix44d(a).Affine());
        ExpectAffineColumn(affine);
    });
}

TEST(ZmMatrixTest, ProductsMayGoToTheirFactors)
{
    OnEachPath(1, [](Random& random) {
        for (const auto multiply : {Zm3DMultiplyMatrix, Zm3DMultiplyMatrix4}) {
            const ZmMatrix a = random.Affine(), b = random.Affine();
            ZmMatrix product, square, toA = a, toB = b, toItself = a;
            multiply(product, a, b);
            multiply(square, a, a);
            multiply(toA, toA, b);
            multiply(toB, a, toB);
            multiply(toItself, toItself, toItself);
            EXPECT_TRUE(SameBits(toA, product));
            EXPECT_TRUE(SameBits(toB, product));
            EXPECT_TRUE(SameBits(toItself, square));
        }
    });
}

TEST(ZmMatrixTest, AffineFunctionsDoNotReadTheFourthColumn)
{
    OnEachPath(1, [](Random& random) {
        const ZmMatrix a = random.Affine(), b = random.Affine();
        ZmMatrix product, inverse;
        Zm3DMultiplyMatrix(product, a, b);
        Zm3DInverseMatrix(inverse, a);
        for (int i = 0; i < 12; ++i) {
            const float strange[] = {7, INFINITY, NAN};
            SCOPED_TRACE(testing::Message() << strange[i % 3] << " in row " << i / 3);
            ZmMatrix strangeA = a, strangeB = b, productOfA, productOfB, inverseOfA = ZmMatrix::Identity();
            strangeA[i / 3][3] = strangeB[i / 3][3] = strange[i % 3];
            Zm3DMultiplyMatrix(productOfA, strangeA, b);
            Zm3DMultiplyMatrix(productOfB, a, strangeB);
            Zm3DInverseMatrix(inverseOfA, strangeA);
            EXPECT_TRUE(SameBits(productOfA, product));
            EXPECT_TRUE(SameBits(productOfB, product));
            EXPECT_TRUE(SameBits(inverseOfA, inverse));
            EXPECT_EQ(Zm3DMatrixDeterminant(strangeA), Zm3DMatrixDeterminant(a));
        }
    });
}

TEST(ZmMatrixTest, TransposesMayStayInPlace)
{
    OnEachPath(1, [](Random& random) {
        const ZmMatrix m = random.Matrix();
        ZmMatrix res, inPlace = m;
        Zm3DTransposeMatrix(res, m);
        Zm3DTransposeMatrix(inPlace, inPlace);
        ExpectClose(res, Matrix44d(m).Transposed(), 0);
        EXPECT_TRUE(SameBits(inPlace, res));
    });
}

TEST(ZmMatrixTest, IdentityIsExact)
{
    ZmMatrix m({2, 2, 2}, {2, 2, 2}, {2, 2, 2}, {2, 2, 2});
    Zm3DMatrixIdentity(m);
    ExpectClose(m, Matrix44d(), 0);
    EXPECT_TRUE(SameBits(m, ZmMatrix::Identity()));
}

const struct {
    const char* name;
    float a, b;
    int equal;
} kComparisons[] = {
    {"1e-7 apart", 0, 1e-7f, 1},
    {"2e-7 apart", 0, 2e-7f, 0},
    {"2e-7 the other way", 2e-7f, 0, 0},
    {"just at the tolerance", 0, 0x1p-23f, 1},
    {"just beyond it", 0, 0x1.000002p-23f, 0},
    {"the tolerance does not grow with the values", 1e6f, 1000000.0625f, 0},
};

TEST(ZmMatrixTest, CompareLooksAtEveryElement)
{
    for (const auto& row : kComparisons) {
        for (int i = 0; i < 16; ++i) {
            ZmMatrix a = ZmMatrix::Identity(), b = a;
            a[i / 4][i % 4] = row.a;
            b[i / 4][i % 4] = row.b;
            EXPECT_EQ(a.Compare(b), row.equal) << row.name << ", element " << i;
        }
    }
}

// --- Determinant and inverse -----------------------------------------------------------

TEST(ZmMatrixTest, DeterminantIsThatOfTheBlock)
{
    OnEachPath(100, [](Random& random) {
        const ZmMatrix m = random.Matrix();
        ExpectClose(Zm3DMatrixDeterminant(m), Determinant3(m), 6);
    });
}

/// The adjugate over the determinant, and the translation through it.
Matrix44d Inverse(const Matrix44d& m)
{
    const double det = Determinant3(m).value;
    Matrix44d r;
    for (int i = 0; i < 9; ++i) {
        const int row = i / 3, column = i % 3, a = (column + 1) % 3, b = (column + 2) % 3, c = (row + 1) % 3,
                  d = (row + 2) % 3;
        r[row][column] = (m[a][c] * m[b][d] - m[a][d] * m[b][c]) / det;
    }
    r[3] = Row4(-m[3][0], -m[3][1], -m[3][2], 1) * r;
    return r;
}

TEST(ZmMatrixTest, InverseUndoesAnyAffineMatrix)
{
    OnEachPath(200, [](Random& random) {
        ZmMatrix m = random.Affine(), res;
        const int scales = random.Int(0, 7);
        for (int i = 0; i < 9; ++i) {
            m[i / 3][i % 3] *= scales >> i / 3 & 1 ? 1e5f : 1e-5f;
        }
        Zm3DInverseMatrix(res, m);
        ExpectClose(res, Inverse(m), 8);
        ExpectAffineColumn(res);
    });
}

TEST(ZmMatrixTest, InverseOfANearlySingularBlockKeepsItsDigits)
{
    OnEachPath(2000, [](Random& random) {
        // Next to rank two or to rank one.
        constexpr float tilts[] = {1, 1e-1f, 1e-2f, 1e-3f, 1e-4f};
        const ZmVector x = random.Vector(), near = x * random.Float(2) + random.Vector(tilts[random.Int(0, 4)]);
        const ZmVector y = random.Int(0, 1) ? random.Vector() : near;
        const ZmMatrix m(x, x * random.Float(2) + y * random.Float(2) + random.Vector(tilts[random.Int(0, 4)]), y,
                         random.Vector());
        ZmMatrix res;
        Zm3DInverseMatrix(res, m);
        const Matrix44d expected = Inverse(m);
        for (int i = 0; i < 12; ++i) {
            const Num value = expected[i / 3][i % 3];
            double translation = 0;  // of which the rounded block leaves an error, as do the products and sums
            for (int k = 0; k < 3; ++k) {
                translation += fabs(m[3][k] * expected[k][i % 3].value);
            }
            EXPECT_NEAR(res[i / 3][i % 3], value.value,
                        i < 9 ? 1.1 * kRounding * fabs(value.value) + 1e-40 : 4.1 * kRounding * translation)
                << i;
        }
    });
}

constexpr float kStep = 0x1p-23f;

const struct {
    const char* name;
    ZmVector rows[3];
    bool singular;
} kSingular[] = {
    {"zero block", {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}}, true},
    {"dependent rows", {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}, true},
    {"small but regular", {{1e-12f, 0, 0}, {0, 1e-12f, 0}, {0, 0, 1e-12f}}, false},
    {"determinant rounds to 0 in float", {{1e-16f, 0, 0}, {0, 1e-16f, 0}, {0, 0, 1e-16f}}, true},
    // 1 - (1 - 2^-46) - (2^-46 - remainder): the remainder is all that is left of terms of magnitude 2.
    {"2^-53 of its terms", {{1, 1 + kStep, kStep}, {1 - kStep, 1, 0}, {kStep * (1 - 0x1p-6f), 0, 1}}, true},
    {"2^-49 of its terms", {{1, 1 + kStep, kStep}, {1 - kStep, 1, 0}, {kStep * (1 - 0x1p-2f), 0, 1}}, false},
};

TEST(ZmMatrixTest, InverseOfASingularBlockLeavesTheDestinationAlone)
{
    OnEachPath(1, [](Random& random) {
        for (const auto& row : kSingular) {
            const ZmMatrix before = random.Matrix(), m(row.rows[0], row.rows[1], row.rows[2], {1, 2, 3});
            ZmMatrix res = before;
            Zm3DInverseMatrix(res, m);
            EXPECT_EQ(SameBits(res, before), row.singular) << row.name;
        }
    });
}

// --- Rotations about an axis -------------------------------------------------------------

/// Angles turn Y towards minus Z about X.
Matrix44d AxisRotation(const ZmVector& axis, double angle)
{
    const double length = sqrt(double(axis.x) * axis.x + double(axis.y) * axis.y + double(axis.z) * axis.z);
    const double s = sin(angle / 2) / length;
    return RotationOf(axis.x * s, axis.y * s, axis.z * s, cos(angle / 2));
}

double AxisTolerance()
{
    return OnVectorPath() ? 6 * kRsqrtError : 12 * kRounding;
}

TEST(ZmMatrixTest, RotationsTurnAboutTheirAxisAndKeepTheirOrigin)
{
    OnEachPath(100, [](Random& random) {
        const ZmVector axis = random.Vector(), origin = random.Vector();
        const float angle = random.Float(7);
        ZmMatrix rotation = random.Matrix(), moved = random.Matrix();
        Zm3DMatrixFromRotation(rotation, axis, angle);
        ExpectNear(rotation, AxisRotation(axis, angle), AxisTolerance());
        Zm3DMatrixFromRotationAndOrigin(moved, axis, origin, angle);
        EXPECT_EQ(memcmp(moved[0], rotation[0], 48), 0);
        ExpectNear(Row(moved, 3) + Rotate(moved, origin), Row4(origin, 0), 1e-5);
        ExpectAffineColumn(rotation);
        ExpectAffineColumn(moved);
    });
}

TEST(ZmMatrixTest, VectorsTurnExactlyOnEveryPath)
{
    OnEachPath(100, [](Random& random) {
        const ZmVector axis = random.Vector(), v = random.Vector();
        const float angle = random.Float(7);
        ExpectNear(Rotate(v, axis, angle), Row4(v, 0) * AxisRotation(axis, angle), 240 * kRounding);
    });
}

TEST(ZmMatrixTest, TheTwoBuildersTurnInOppositeSenses)
{
    OnEachPath(1, [](Random&) {
        ZmMatrix axis, euler;
        Zm3DMatrixFromRotation(axis, {1, 0, 0}, 0.5f);
        Zm3DMatrixFromEulerAngles(euler, 0.5f, 0, 0);
        ExpectNear(Rotate(axis, {0, 1, 0}), {0, cos(0.5), -sin(0.5), 0}, AxisTolerance());
        ExpectNear(Rotate(euler, {0, 1, 0}), {0, cos(0.5), sin(0.5), 0}, 2 * kRounding);
    });
}

// --- Euler angles --------------------------------------------------------------------------

TEST(ZmMatrixTest, EulerAnglesTurnAboutXThenYThenZ)
{
    OnEachPath(100, [](Random& random) {
        for (const float range : {4.0f, 50000.0f, 1e6f}) {
            const ZmVector a = random.Vector(range);
            ZmMatrix m = random.Matrix();
            Zm3DMatrixFromEulerAngles(m, a.x, a.y, a.z);
            ExpectNear(m, PlaneTurn(1, 2, a.x) * PlaneTurn(2, 0, a.y) * PlaneTurn(0, 1, a.z), 6 * kRounding);
            ExpectAffineColumn(m);
        }
    });
}

TEST(ZmMatrixTest, EulerAnglesNextToNothingCountAsNothing)
{
    OnEachPath(1, [](Random&) {
        const float limit = 1e-8f, beyond = 1.01e-8f;
        ZmMatrix m;
        Zm3DMatrixFromEulerAngles(m, limit, -limit, 1e-9f);
        ExpectClose(m, Matrix44d(), 0);
        Zm3DMatrixFromEulerAngles(m, beyond, -beyond, beyond);
        EXPECT_NEAR(m[1][2], 1.01e-8, 1e-15);
        EXPECT_NEAR(m[0][2], 1.01e-8, 1e-15);
        EXPECT_NEAR(m[0][1], 1.01e-8, 1e-15);
    });
}

TEST(ZmMatrixTest, EulerAnglesComeBackFromScaledMatrices)
{
    OnEachPath(200, [](Random& random) {
        const ZmVector angles = {random.Float(3.1f), random.Float(1.5f), random.Float(3.1f)};
        ZmMatrix m;
        Zm3DMatrixFromEulerAngles(m, angles.x, angles.y, angles.z);
        for (int i = 0; i < 9; ++i) {
            m[i / 3][i % 3] *= float(1 + 10 * (i / 3));
        }
        ZmVector found;
        Zm3DMatrixToEulerAngles(m, &found.x, &found.y, &found.z);
        // Towards a quarter turn about Y the two others are lost in the rounding of the cosine.
        ExpectNear(found, Row4(angles, 0), 8 * kRounding / cos(angles.y));
    });
}

TEST(ZmMatrixTest, AtAQuarterTurnAboutYAllOfTheTurnGoesToX)
{
    for (const float quarter : {1.57079633f, -1.57079633f}) {
        ZmMatrix m, again;
        ZmVector angles;
        Zm3DMatrixFromEulerAngles(m, 0.3f, quarter, 0.4f);
        Zm3DMatrixToEulerAngles(m, &angles.x, &angles.y, &angles.z);
        EXPECT_EQ(angles.z, 0);
        EXPECT_NEAR(angles.x, quarter > 0 ? -0.1 : 0.7, 4 * kRounding);
        Zm3DMatrixFromEulerAngles(again, angles.x, angles.y, angles.z);
        ExpectNear(again, m, 4 * kRounding);
    }
}

TEST(ZmMatrixTest, TheQuarterTurnBeginsAtTwoToTheMinus19)
{
    for (const bool beyond : {false, true}) {
        const float cosine = beyond ? 0x1.00001p-19f : 0x1p-19f;
        const ZmMatrix m({0, cosine, -1}, {0, 1, cosine}, {1, 0, 0}, {0, 0, 0});
        float eax, eay, eaz;
        Zm3DMatrixToEulerAngles(m, &eax, &eay, &eaz);
        EXPECT_NEAR(eaz, beyond ? 1.57079633 : 0, kRounding) << beyond;
        EXPECT_NEAR(eay, 1.57079633, 0x1p-18) << beyond;
    }
}

// --- Projection ------------------------------------------------------------------------------

TEST(ZmMatrixTest, InverseProjectFindsThePointOfACentredSquareProjection)
{
    OnEachPath(100, [](Random& random) {
        ZmMatrix m = random.Matrix(1);
        m[0][0] = m[1][1] = random.Float(1, 3);
        m[0][1] = m[2][0] = m[3][0] = 0;
        if (random.Int(0, 1)) {
            m[1][0] = 0;  // off the centre in y
        } else {
            m[2][1] = m[3][1] = 0;  // skewed
        }
        const ZmVector point = {random.Float(5), random.Float(5), random.Float(1, 10)};
        const Row4 p = Row4(point, 1) * m;
        ZmVector res;
        ZmInverseProject(m, {float(p[0].value / point.z), float(p[1].value / point.z)}, point.z, &res);
        ExpectNear(res, Row4(point, 0), 1e-5);
        EXPECT_EQ(res.z, point.z);
    });
}

// The sign of the horizontal offsets is the one callers depend on, not that of the projection.
TEST(ZmMatrixTest, InverseProjectKeepsTheSignOfItsOffsets)
{
    OnEachPath(100, [](Random& random) {
        ZmMatrix source = random.Matrix(1);
        source[0][0] = random.Float(2, 3);
        source[1][1] = random.Float(2, 3);
        const Matrix44d m(source);
        const Zm2DVector p = {random.Float(1), random.Float(1)};
        const Num x = ((m[2][1] * m[1][0] - m[2][0] * m[1][1] + p.y * m[1][0] - p.x * m[1][1]) * 5 +
                       (m[3][1] * m[1][0] - m[3][0] * m[1][1])) /
                      (m[0][1] * m[1][0] - m[0][0] * m[1][1]).value;
        const Num y = ((p.y - m[2][1]) * 5 - x * m[0][1] - m[3][1]) / m[0][0].value;
        ZmVector res;
        ZmInverseProject(source, p, 5, &res);
        ExpectClose(res, {x, y, 5, 0}, 10);
    });
}

TEST(ZmMatrixTest, InverseProjectDividesByTheFirstScale)
{
    ZmMatrix m = ZmMatrix::Identity();
    m[0][0] = 2;
    m[1][1] = 3;
    ZmVector res;
    ZmInverseProject(m, {0.5f, 1.5f}, 4, &res);
    EXPECT_EQ(res, ZmVector(1, 3, 4));  // and not (1, 2, 4)
}

}  // namespace

#include "Support/Blocks.h"
#include "Support/Paths.h"
#include "Support/Reference.h"

namespace {

const double kFourTerms = 4 * kRounding;

void ExpectProduct(const ZmMatrix& got, const Matrix44d& first, const Matrix44d& second)
{
    const Matrix44d expected = first * second, magnitudes = first.Magnitudes() * second.Magnitudes();
    for (int i = 0; i < 16; ++i) {
        EXPECT_NEAR(got[i / 4][i % 4], expected[i / 4][i % 4], kFourTerms * magnitudes[i / 4][i % 4]) << i;
    }
}

// --- Products ------------------------------------------------------------------------

TEST(MatrixTest, ProductsApplyTheSecondFactorFirst)
{
    OnEachPath([] {
        Random random(1);
        for (int round = 0; round < 100; ++round) {
            const ZmMatrix a = random.Matrix(), b = random.Matrix();
            ZmMatrix full, affine;
            Zm3DMultiplyMatrix4(full, a, b);
            ExpectProduct(full, Matrix44d(b), Matrix44d(a));
            Zm3DMultiplyMatrix(affine, a, b);
            ExpectProduct(affine, Matrix44d::Affine(b), Matrix44d::Affine(a));
        }
    });
}

TEST(MatrixTest, AffineProductsDoNotReadTheFourthColumns)
{
    OnEachPath([] {
        Random random(2);
        const ZmMatrix a = random.Affine(), b = random.Affine();
        ZmMatrix strangeA = a, strangeB = b, expected, got;
        for (int i = 0; i < 4; ++i) {
            strangeA[i][3] = i == 1 ? NAN : 3.0f;
            strangeB[i][3] = i == 2 ? INFINITY : -7.0f;
        }
        Zm3DMultiplyMatrix(expected, a, b);
        Zm3DMultiplyMatrix(got, strangeA, strangeB);
        EXPECT_TRUE(SameBits(got, expected));
    });
}

TEST(MatrixTest, ProductsMayGoToTheirFactors)
{
    OnEachPath([] {
        for (const auto multiply : {Zm3DMultiplyMatrix, Zm3DMultiplyMatrix4}) {
            Random random(3);
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

// --- Transpose, identity, comparison ---------------------------------------------------

TEST(MatrixTest, TransposesMayStayInPlace)
{
    Random random(4);
    const ZmMatrix m = random.Matrix();
    ZmMatrix res, inPlace = m;
    Zm3DTransposeMatrix(res, m);
    Zm3DTransposeMatrix(inPlace, inPlace);
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(res[i / 4][i % 4], m[i % 4][i / 4]);
    }
    EXPECT_TRUE(SameBits(inPlace, res));
}

TEST(MatrixTest, IdentityIsExact)
{
    Random random(5);
    ZmMatrix m = random.Matrix();
    Zm3DMatrixIdentity(m);
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(m[i / 4][i % 4], i % 5 == 0 ? 1 : 0);
    }
    EXPECT_TRUE(SameBits(m, ZmMatrix::Identity()));
}

const struct {
    const char* name;
    float a, b;
    int equal;
} kComparisons[] = {
    {"equal", 0.5f, 0.5f, 1},
    {"1e-7 apart", 0, 1e-7f, 1},
    {"2e-7 apart", 0, 2e-7f, 0},
    {"2e-7 the other way", 2e-7f, 0, 0},
    {"just at the tolerance", 0, 0x1p-23f, 1},
    {"just beyond it", 0, 0x1.000002p-23f, 0},
    {"the tolerance does not grow with the values", 1e6f, 1000000.0625f, 0},
};

TEST(MatrixTest, CompareLooksAtEveryElement)
{
    for (const auto& row : kComparisons) {
        SCOPED_TRACE(row.name);
        for (int i = 0; i < 16; ++i) {
            ZmMatrix a = ZmMatrix::Identity(), b = a;
            a[i / 4][i % 4] = row.a;
            b[i / 4][i % 4] = row.b;
            EXPECT_EQ(a.Compare(b), row.equal) << "element " << i;
        }
    }
}

// --- Determinant and inverse -----------------------------------------------------------

TEST(MatrixTest, DeterminantIsThatOfTheBlock)
{
    Random random(6);
    for (int round = 0; round < 100; ++round) {
        const ZmMatrix m = random.Matrix();
        EXPECT_NEAR(Zm3DMatrixDeterminant(m), Determinant3(Matrix44d(m)), 6 * 1000 * 6 * kRounding);
    }
    EXPECT_EQ(Zm3DMatrixDeterminant(ZmMatrix({0, 2, 0}, {0, 0, 3}, {5, 0, 0}, {7, 7, 7})), 30);
}

/// Gauss's elimination with the largest pivot.
Matrix44d Inverse(Matrix44d m)
{
    Matrix44d inverse;
    for (int c = 0; c < 4; ++c) {
        int pivot = c;
        for (int i = c + 1; i < 4; ++i) {
            pivot = fabs(m[i][c]) > fabs(m[pivot][c]) ? i : pivot;
        }
        std::swap(m.m[c], m.m[pivot]);
        std::swap(inverse.m[c], inverse.m[pivot]);
        for (int i = 0; i < 4; ++i) {
            const double f = i == c ? 1 - 1 / m[c][c] : m[i][c] / m[c][c];
            for (int j = 0; j < 4; ++j) {
                inverse[i][j] -= f * inverse[c][j];
                m[i][j] -= f * m[c][j];
            }
        }
    }
    return inverse;
}

/// How large the elements of the inverse were if nothing cancelled out.
Matrix44d InverseMagnitudes(const Matrix44d& m)
{
    const double det = fabs(Determinant3(m));
    Matrix44d r;
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            const int a = (j + 1) % 3, b = (j + 2) % 3, c = (i + 1) % 3, d = (i + 2) % 3;
            r[i][j] = (fabs(m[a][c] * m[b][d]) + fabs(m[a][d] * m[b][c])) / det;
        }
    }
    const Vector4d translation = Vector4d(m[3][0], m[3][1], m[3][2], 0).Magnitudes() * r;
    for (int j = 0; j < 3; ++j) {
        r[3][j] = translation[j];
    }
    return r;
}

void ExpectInverse(const ZmMatrix& m)
{
    ZmMatrix res;
    Zm3DInverseMatrix(res, m);
    const Matrix44d affine = Matrix44d::Affine(m), expected = Inverse(affine), magnitudes = InverseMagnitudes(affine);
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 3; ++j) {
            EXPECT_NEAR(res[i][j], expected[i][j], 8 * kRounding * magnitudes[i][j]) << i << j;
        }
        EXPECT_EQ(res[i][3], i == 3 ? 1 : 0);
    }
}

TEST(MatrixTest, InverseUndoesAnyAffineMatrix)
{
    OnEachPath([] {
        Random random(7);
        for (int round = 0; round < 100; ++round) {
            SCOPED_TRACE(round);
            ExpectInverse(random.Affine());
        }
    });
}

TEST(MatrixTest, InverseStandsBadScales)
{
    OnEachPath([] {
        Random random(8);
        for (int round = 0; round < 100; ++round) {
            SCOPED_TRACE(round);
            ZmMatrix m = random.Affine(1);
            for (int i = 0; i < 9; ++i) {
                m[i / 3][i % 3] *= (round >> i / 3 & 1) ? 1e5f : 1e-5f;
            }
            ExpectInverse(m);
        }
    });
}

TEST(MatrixTest, InverseAndDeterminantDoNotReadTheFourthColumn)
{
    OnEachPath([] {
        for (const float strange : {7.0f, INFINITY, NAN}) {
            Random random(17);
            const ZmMatrix m = random.Affine();
            for (int row = 0; row < 4; ++row) {
                ZmMatrix filled = m, expected, got = ZmMatrix::Identity();
                filled[row][3] = strange;
                Zm3DInverseMatrix(expected, m);
                Zm3DInverseMatrix(got, filled);
                EXPECT_TRUE(SameBits(got, expected)) << strange << " in row " << row;
                EXPECT_EQ(Zm3DMatrixDeterminant(filled), Zm3DMatrixDeterminant(m)) << strange << " in row " << row;
            }
        }
    });
}

const float kStep = 0x1p-23f;

const struct {
    const char* name;
    ZmVector rows[3];
    bool singular;
} kSingular[] = {
    {"zero block", {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}}, true},
    {"dependent rows", {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}, true},
    {"a row of zeros", {{1, 2, 3}, {0, 0, 0}, {7, 8, 9}}, true},
    {"small but regular", {{1e-12f, 0, 0}, {0, 1e-12f, 0}, {0, 0, 1e-12f}}, false},
    {"determinant rounds to 0 in float", {{1e-16f, 0, 0}, {0, 1e-16f, 0}, {0, 0, 1e-16f}}, true},
    // 1 - (1 - 2^-46) - (2^-46 - remainder): the remainder is all that is left of terms of magnitude 2.
    {"2^-53 of its terms", {{1, 1 + kStep, kStep}, {1 - kStep, 1, 0}, {kStep * (1 - 0x1p-6f), 0, 1}}, true},
    {"2^-49 of its terms", {{1, 1 + kStep, kStep}, {1 - kStep, 1, 0}, {kStep * (1 - 0x1p-2f), 0, 1}}, false},
};

TEST(MatrixTest, InverseOfASingularBlockLeavesTheDestinationAlone)
{
    OnEachPath([] {
        for (const auto& row : kSingular) {
            Random random(9);
            const ZmMatrix before = random.Matrix(), m(row.rows[0], row.rows[1], row.rows[2], {1, 2, 3});
            ZmMatrix res = before;
            Zm3DInverseMatrix(res, m);
            EXPECT_EQ(SameBits(res, before), row.singular) << row.name;
        }
    });
}

// --- Rotations about an axis -------------------------------------------------------------

/// The rotation about a unit axis; angles turn Y towards minus Z about X.
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

TEST(MatrixTest, RotationsTurnAboutTheirAxis)
{
    OnEachPath([] {
        Random random(10);
        for (int round = 0; round < 100; ++round) {
            const ZmVector axis = random.Vector();
            const float angle = random.Float(-7, 7);
            ZmMatrix m = random.Matrix();
            Zm3DMatrixFromRotation(m, axis, angle);
            ExpectNear(m, AxisRotation(axis, angle), AxisTolerance());
            EXPECT_TRUE(m[0][3] == 0 && m[1][3] == 0 && m[2][3] == 0 && m[3][3] == 1);
        }
    });
}

TEST(MatrixTest, RotationsAboutAnOriginKeepIt)
{
    OnEachPath([] {
        Random random(11);
        for (int round = 0; round < 100; ++round) {
            const ZmVector axis = random.Vector(), origin = random.Vector();
            const float angle = random.Float(-7, 7);
            ZmMatrix m = random.Matrix(), rotation;
            Zm3DMatrixFromRotationAndOrigin(m, axis, origin, angle);
            Zm3DMatrixFromRotation(rotation, axis, angle);
            EXPECT_EQ(memcmp(m[0], rotation[0], 48), 0);
            EXPECT_EQ(m[3][3], 1);
            ExpectNear(ZmVector(m[3][0], m[3][1], m[3][2]) + Rotate(m, origin), Vector4d(origin, 0), 1e-5);
        }
    });
}

TEST(MatrixTest, VectorsTurnExactlyOnEveryPath)
{
    OnEachPath([] {
        Random random(12);
        for (int round = 0; round < 100; ++round) {
            const ZmVector axis = random.Vector(), v = random.Vector();
            const float angle = random.Float(-7, 7);
            ExpectNear(Rotate(v, axis, angle), Rotated(v, AxisRotation(axis, angle)), 10 * 24 * kRounding);
        }
    });
}

TEST(MatrixTest, TheTwoBuildersTurnInOppositeSenses)
{
    OnEachPath([] {
        ZmMatrix axis, euler;
        Zm3DMatrixFromRotation(axis, {1, 0, 0}, 0.5f);
        Zm3DMatrixFromEulerAngles(euler, 0.5f, 0, 0);
        ExpectNear(Rotate(axis, {0, 1, 0}), {0, cos(0.5), -sin(0.5), 0}, AxisTolerance());
        ExpectNear(Rotate(euler, {0, 1, 0}), {0, cos(0.5), sin(0.5), 0}, 2 * kRounding);
    });
}

// --- Euler angles --------------------------------------------------------------------------

TEST(MatrixTest, EulerAnglesTurnAboutXThenYThenZ)
{
    OnEachPath([] {
        Random random(13);
        for (int round = 0; round < 300; ++round) {
            const ZmVector a = random.Vector(round < 100 ? 4.0f : round < 200 ? 50000.0f : 1e6f);
            ZmMatrix m = random.Matrix();
            Zm3DMatrixFromEulerAngles(m, a.x, a.y, a.z);
            ExpectNear(m, PlaneTurn(1, 2, a.x) * PlaneTurn(2, 0, a.y) * PlaneTurn(0, 1, a.z), 6 * kRounding);
        }
    });
}

TEST(MatrixTest, EulerAnglesNextToNothingCountAsNothing)
{
    OnEachPath([] {
        const float limit = 1e-8f, beyond = 1.01e-8f;
        ZmMatrix m;
        Zm3DMatrixFromEulerAngles(m, limit, -limit, 1e-9f);
        for (int i = 0; i < 16; ++i) {
            EXPECT_EQ(m[i / 4][i % 4], i % 5 == 0 ? 1 : 0);
        }
        Zm3DMatrixFromEulerAngles(m, beyond, -beyond, beyond);
        EXPECT_NEAR(m[1][2], 1.01e-8, 1e-15);
        EXPECT_NEAR(m[0][2], 1.01e-8, 1e-15);
        EXPECT_NEAR(m[0][1], 1.01e-8, 1e-15);
    });
}

TEST(MatrixTest, EulerAnglesComeBackFromScaledMatrices)
{
    Random random(14);
    for (int round = 0; round < 200; ++round) {
        const ZmVector angles = {random.Float(-3.1f, 3.1f), random.Float(-1.5f, 1.5f), random.Float(-3.1f, 3.1f)};
        ZmMatrix m;
        Zm3DMatrixFromEulerAngles(m, angles.x, angles.y, angles.z);
        for (int i = 0; i < 9; ++i) {
            m[i / 3][i % 3] *= float(1 + 10 * (i / 3));
        }
        ZmVector found;
        Zm3DMatrixToEulerAngles(m, &found.x, &found.y, &found.z);
        // Towards a quarter turn about Y the two others are lost in the rounding of the cosine.
        ExpectNear(found, Vector4d(angles, 0), 8 * kRounding / cos(angles.y));
    }
}

TEST(MatrixTest, AtAQuarterTurnAboutYAllOfTheTurnGoesToX)
{
    for (const float quarter : {1.57079633f, -1.57079633f}) {
        ZmMatrix m, again;
        ZmVector angles;
        Zm3DMatrixFromEulerAngles(m, 0.3f, quarter, 0.4f);
        Zm3DMatrixToEulerAngles(m, &angles.x, &angles.y, &angles.z);
        EXPECT_EQ(angles.z, 0);
        EXPECT_NEAR(angles.x, quarter > 0 ? 0.3f - 0.4f : 0.3f + 0.4f, 4 * kRounding);
        Zm3DMatrixFromEulerAngles(again, angles.x, angles.y, angles.z);
        ExpectNear(again, Matrix44d(m), 4 * kRounding);
    }
}

TEST(MatrixTest, TheQuarterTurnBeginsAtTwoToTheMinus19)
{
    const struct {
        float cosine, eaz;
    } rows[] = {{0x1p-19f, 0}, {0x1.00001p-19f, 1.57079633f}};
    for (const auto& row : rows) {
        const ZmMatrix m({0, row.cosine, -1}, {0, 1, row.cosine}, {1, 0, 0}, {0, 0, 0});
        float eax, eay, eaz;
        Zm3DMatrixToEulerAngles(m, &eax, &eay, &eaz);
        EXPECT_NEAR(eaz, row.eaz, kRounding) << row.cosine;
        EXPECT_NEAR(eay, 1.57079633f, 0x1p-18) << row.cosine;
    }
}

// --- Projection ------------------------------------------------------------------------------

/// What m makes of v, divided by the depth of v.
Zm2DVector Projected(const Matrix44d& m, const ZmVector& v)
{
    const Vector4d p = Vector4d(v, 1) * m;
    return {float(p[0] / v.z), float(p[1] / v.z)};
}

TEST(MatrixTest, InverseProjectFindsThePointOfACentredSquareProjection)
{
    Random random(15);
    for (int round = 0; round < 100; ++round) {
        ZmMatrix m = random.Matrix(1);
        m[0][0] = m[1][1] = random.Float(1, 3);
        m[0][1] = m[2][0] = m[3][0] = 0;
        if (round % 2) {
            m[1][0] = 0;  // off the centre in y
        } else {
            m[2][1] = m[3][1] = 0;  // skewed
        }
        const ZmVector point = {random.Float(-5, 5), random.Float(-5, 5), random.Float(1, 10)};
        ZmVector res;
        ZmInverseProject(m, Projected(Matrix44d(m), point), point.z, &res);
        ExpectNear(res, Vector4d(point, 0), 1e-5);
        EXPECT_EQ(res.z, point.z);
    }
}

// The horizontal offset enters with the sign that callers know, which is not that of the projection.
TEST(MatrixTest, InverseProjectKeepsTheSignOfItsOffsets)
{
    Random random(16);
    for (int round = 0; round < 100; ++round) {
        ZmMatrix source = random.Matrix(1);
        source[0][0] = random.Float(2, 3);
        source[1][1] = random.Float(2, 3);
        const Matrix44d m(source);
        const Zm2DVector p = {random.Float(-1, 1), random.Float(-1, 1)};
        const double x = ((m[2][1] * m[1][0] - m[2][0] * m[1][1] + p.y * m[1][0] - p.x * m[1][1]) * 5 +
                          (m[3][1] * m[1][0] - m[3][0] * m[1][1])) /
                         (m[0][1] * m[1][0] - m[0][0] * m[1][1]);
        ZmVector res;
        ZmInverseProject(source, p, 5, &res);
        ExpectNear(res, {x, ((p.y - m[2][1]) * 5 - x * m[0][1] - m[3][1]) / m[0][0], 5, 0}, 1e-5);
    }
}

TEST(MatrixTest, InverseProjectDividesByTheFirstScale)
{
    ZmMatrix m = ZmMatrix::Identity();
    m[0][0] = 2;
    m[1][1] = 3;
    ZmVector res;
    ZmInverseProject(m, {0.5f, 1.5f}, 4, &res);
    EXPECT_EQ(res, ZmVector(1, 3, 4));  // and not (1, 2, 4)
}

}  // namespace

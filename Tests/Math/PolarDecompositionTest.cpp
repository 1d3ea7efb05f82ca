#include "Math/PolarDecomposition.h"

#include "Support/Paths.h"
#include "Support/Reference.h"

namespace {

constexpr double kFactorError = 1e-8;  // the factors are rounded to float afterwards, which costs 6e-8

Matrix44d Widened(const zm::Matrix3& m)
{
    Matrix44d r;
    for (int i = 0; i < 9; ++i) {
        r[i / 3][i % 3] = m.m[i / 3][i % 3];
    }
    return r;
}

void ExpectEqual(const Matrix44d& a, const Matrix44d& b, double tolerance)
{
    for (int i = 0; i < 9; ++i) {
        EXPECT_NEAR(a[i / 3][i % 3].value, b[i / 3][i % 3].value, tolerance) << i;
    }
}

/// Magnitudes from 1e-6 to 1e6, and the largest of them.
zm::Matrix3 RandomBlock(Random& random, double& largest)
{
    constexpr double scales[] = {1e-6, 1e-3, 1, 1, 1e3, 1e6};
    const int range = random.Int(0, 2);
    zm::Matrix3 m;
    largest = 0;
    for (double(&row)[3] : m.m) {
        for (double& element : row) {
            element = random.Float(1) * scales[random.Int(2 - range, 3 + range)];
            largest = fmax(largest, fabs(element));
        }
    }
    return m;
}

TEST(PolarDecompositionTest, TheRotationIsOrthogonalAndTheStretchBringsTheMatrixBack)
{
    OnEachPath(500, [](Random& random) {
        double largest;
        const zm::Matrix3 m = RandomBlock(random, largest);
        const zm::PolarFactors factors = zm::DecomposePolar(m);
        const Matrix44d q = Widened(factors.rotation), s = Widened(zm::StretchOf(m, factors.rotation));
        ExpectEqual(q * q.Transposed(), Matrix44d(), kFactorError);
        EXPECT_EQ(factors.mirrored, Determinant3(q).value < 0);
        EXPECT_EQ(factors.mirrored, Determinant3(Widened(m)).value < 0);
        ExpectEqual(s * q, Widened(m), kFactorError * largest);
        ExpectEqual(s, s.Transposed(), 0);
    });
}

TEST(PolarDecompositionTest, SymmetricMatricesAreTheirAxesAndValues)
{
    OnEachPath(500, [](Random& random) {
        double largest;
        zm::Matrix3 s = RandomBlock(random, largest);
        for (int i = 0; i < 9; ++i) {
            s.m[i / 3][i % 3] = s.m[i % 3][i / 3];
        }
        const zm::SpectralFactors factors = zm::DecomposeSymmetric(s);
        const Matrix44d axes = Widened(factors.axes);
        Matrix44d values;
        for (int i = 0; i < 3; ++i) {
            values[i][i] = factors.values[i];
        }
        ExpectEqual(axes * axes.Transposed(), Matrix44d(), kFactorError);
        EXPECT_GT(Determinant3(axes).value, 0);
        ExpectEqual(axes * values * axes.Transposed(), Widened(s), kFactorError * largest);
    });
}

}  // namespace

#include "Math/PolarDecomposition.h"

#include "Support/Random.h"
#include "Support/Reference.h"

#include <algorithm>

using namespace zm;

namespace {

// The factors are rounded to float afterwards, which costs 6e-8.
const double kFactorError = 1e-8;

Matrix44d Widened(const Matrix3& m)
{
    Matrix44d r;
    for (int i = 0; i < 9; ++i) {
        r[i / 3][i % 3] = m.m[i / 3][i % 3];
    }
    return r;
}

/// That every element of a and b is the same but for kFactorError of `size`.
void ExpectEqual(const Matrix44d& a, const Matrix44d& b, double size = 1)
{
    for (int i = 0; i < 9; ++i) {
        EXPECT_NEAR(a[i / 3][i % 3], b[i / 3][i % 3], kFactorError * size) << i;
    }
}

Matrix3 RandomBlock(Random& random, int smallestPower, int largestPower)
{
    Matrix3 m;
    for (int i = 0; i < 9; ++i) {
        double scale = 1;
        for (int power = random.Int(smallestPower, largestPower); power != 0; power += power < 0 ? 1 : -1) {
            scale *= power < 0 ? 0.1 : 10;
        }
        m.m[i / 3][i % 3] = random.Float(-1, 1) * scale;
    }
    return m;
}

double LargestOf(const Matrix3& m)
{
    double largest = 0;
    for (int i = 0; i < 9; ++i) {
        largest = std::max(largest, fabs(m.m[i / 3][i % 3]));
    }
    return largest;
}

TEST(PolarDecompositionTest, TheRotationIsOrthogonalAndTheStretchBringsTheMatrixBack)
{
    Random random(1);
    for (int round = 0; round < 1000; ++round) {
        SCOPED_TRACE(round);
        const Matrix3 m = round % 2 ? RandomBlock(random, -6, 6) : RandomBlock(random, 0, 0);
        const PolarFactors factors = DecomposePolar(m);
        const Matrix44d q = Widened(factors.rotation), s = Widened(StretchOf(m, factors.rotation));
        ExpectEqual(q * q.Transposed(), Matrix44d());
        EXPECT_EQ(factors.mirrored, Determinant3(q) < 0);
        EXPECT_EQ(factors.mirrored, Determinant3(Widened(m)) < 0);
        ExpectEqual(s * q, Widened(m), LargestOf(m));
        ExpectEqual(s, s.Transposed(), 0);
    }
}

TEST(PolarDecompositionTest, SymmetricMatricesAreTheirAxesAndValues)
{
    Random random(2);
    for (int round = 0; round < 1000; ++round) {
        SCOPED_TRACE(round);
        Matrix3 s = round % 2 ? RandomBlock(random, -6, 6) : RandomBlock(random, 0, 0);
        for (int i = 0; i < 9; ++i) {
            s.m[i / 3][i % 3] = s.m[i % 3][i / 3];
        }
        const SpectralFactors factors = DecomposeSymmetric(s);
        const Matrix44d axes = Widened(factors.axes);
        Matrix44d values;
        for (int i = 0; i < 3; ++i) {
            values[i][i] = factors.values[i];
        }
        ExpectEqual(axes * axes.Transposed(), Matrix44d());
        EXPECT_GT(Determinant3(axes), 0);
        ExpectEqual(axes * values * axes.Transposed(), Widened(s), LargestOf(s));
    }
}

}  // namespace

#include "Math/PolarDecomposition.h"

#include "Support/Paths.h"
#include "Support/Reference.h"

namespace {

constexpr double kFactorError = 1e-8;  // the factors are rounded to float afterwards, which costs 6e-8

Matrix44d Widened(const zm::Triple (&rows)[3])
{
    Matrix44d r;
    for (int i = 0; i < 3; ++i) {
        r[i][0] = rows[i].x;
        r[i][1] = rows[i].y;
        r[i][2] = rows[i].z;
    }
    return r;
}

void ExpectEqual(const Matrix44d& a, const Matrix44d& b, double tolerance)
{
    for (int i = 0; i < 9; ++i) {
        EXPECT_NEAR(a[i / 3][i % 3].value, b[i / 3][i % 3].value, tolerance) << i;
    }
}

TEST(PolarDecompositionTest, AxesStretchesAndRotationAreTheMatrix)
{
    constexpr double scales[] = {1e-6, 1e-3, 1, 1, 1e3, 1e6};
    OnEachPath(1000, [&](Random& random) {
        const int range = random.Int(0, 2);
        const auto element = [&] { return random.Float(1) * scales[random.Int(2 - range, 3 + range)]; };
        const auto row = [&] { return zm::Triple{float(element()), float(element()), float(element())}; };
        const zm::Triple m[3] = {row(), row(), row()};
        const zm::PolarFactors factors = zm::DecomposePolar(m[0], m[1], m[2]);

        const Matrix44d block = Widened(m), rotation = Widened(factors.rotation), axes = Widened(factors.axes);
        Matrix44d stretches;
        double largest = 0;
        for (int i = 0; i < 3; ++i) {
            stretches[i][i] = factors.stretches[i];
            EXPECT_GE(factors.stretches[i], 0);
            largest = fmax(largest, factors.stretches[i]);
        }
        ExpectEqual(rotation * rotation.Transposed(), Matrix44d(), kFactorError);
        ExpectEqual(axes * axes.Transposed(), Matrix44d(), kFactorError);
        EXPECT_GT(Determinant3(axes).value, 0);
        EXPECT_EQ(factors.mirrored, Determinant3(rotation).value < 0);
        EXPECT_EQ(factors.mirrored, Determinant3(block).value < 0);
        ExpectEqual(axes.Transposed() * stretches * axes * rotation, block, kFactorError * largest);
    });
}

}  // namespace

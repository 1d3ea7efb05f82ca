#include "Support/Random.h"
#include "Support/Reference.h"

#include <cstring>

namespace {

void ExpectDecomposed(const float (&matrix)[3][3], const ZmEigenMatrix& eigen)
{
    double largest = 0;
    for (const float value : eigen.EigenValues) {
        largest = fmax(largest, fabs(double(value)));
    }
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            double again = 0, product = 0;
            for (int k = 0; k < 3; ++k) {
                again += double(eigen.Matrix[i][k]) * eigen.EigenValues[k] * eigen.Matrix[j][k];
                product += double(eigen.Matrix[k][i]) * eigen.Matrix[k][j];
            }
            EXPECT_NEAR(again, matrix[i][j], 16 * kRounding * largest) << i << j;
            EXPECT_NEAR(product, i == j, 16 * kRounding) << i << j;
        }
    }
}

ZmEigenMatrix Decompose(const float (&matrix)[3][3])
{
    ZmEigenMatrix eigen;
    std::memcpy(eigen.Matrix, matrix, sizeof(matrix));
    eigen.EigenStuff3();
    return eigen;
}

TEST(ZmEigenMatrixTest, TheColumnsAndValuesGiveTheMatrixBack)
{
    Random random(2);
    for (int round = 0; round < 4000; ++round) {
        SCOPED_TRACE(round);
        const float scales[] = {1e-30f, 1e-20f, 1e-6f, 1, 1e6f, 1e15f}, scale = scales[random.Int(0, 5)];
        const int zeros = random.Int(0, 63);  // some elements are 0: diagonal, tridiagonal and empty matrices too
        float m[3][3];
        for (int i = 0, element = 0; i < 3; ++i) {
            for (int j = i; j < 3; ++j, ++element) {
                m[i][j] = m[j][i] = zeros >> element & 1 ? 0 : scale * random.Float(1);
            }
        }
        const ZmEigenMatrix eigen = Decompose(m);
        EXPECT_TRUE(eigen.Converged);
        ExpectDecomposed(m, eigen);
    }
}

TEST(ZmEigenMatrixTest, MatricesOfLowRankAndRepeatedValues)
{
    const struct {
        const char* name;
        float m[3][3];
    } rows[] = {
        {"zero", {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}}},
        {"identity", {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}},
        {"rank one", {{1, 2, 3}, {2, 4, 6}, {3, 6, 9}}},
        {"all ones", {{1, 1, 1}, {1, 1, 1}, {1, 1, 1}}},
        {"two equal", {{2, 1, 1}, {1, 2, 1}, {1, 1, 2}}},
        {"trace zero", {{0, 1, 0}, {1, 0, 1}, {0, 1, 0}}},
        {"sizes far apart", {{1e6f, 1, 1e-3f}, {1, 1, 1e-6f}, {1e-3f, 1e-6f, 1e-6f}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const ZmEigenMatrix eigen = Decompose(row.m);
        EXPECT_TRUE(eigen.Converged);
        ExpectDecomposed(row.m, eigen);
    }
}

TEST(ZmEigenMatrixTest, TheReductionIsTridiagonalAndOrthogonal)
{
    constexpr float m[3][3] = {{4, 3, -4}, {3, 2, 5}, {-4, 5, 1}};
    ZmEigenMatrix eigen;
    std::memcpy(eigen.Matrix, m, sizeof(m));
    float diagonal[3], sub[3] = {9, 9, 9};
    eigen.Tridiagonal(diagonal, sub);
    EXPECT_EQ(sub[2], 0);
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            double element = 0;
            for (int k = 0; k < 9; ++k) {
                element += double(eigen.Matrix[k / 3][i]) * m[k / 3][k % 3] * eigen.Matrix[k % 3][j];
            }
            const double expected = i == j ? diagonal[i] : i + j == 1 ? sub[0] : i + j == 3 ? sub[1] : 0;
            EXPECT_NEAR(element, expected, 1e-5) << i << j;
        }
    }
}

TEST(ZmEigenMatrixTest, NonNumbersEndWithoutConvergence)
{
    const float nan = nanf("");
    EXPECT_FALSE(Decompose({{1, nan, 0}, {nan, 1, 0}, {0, 0, 1}}).Converged);
    EXPECT_FALSE(Decompose({{INFINITY, 1, 2}, {1, INFINITY, 3}, {2, 3, 1}}).Converged);
}

}  // namespace

#include "Queries/EigenLanes.h"

#include "Platform/FeatureWord.h"
#include "Support/Blocks.h"
#include "Support/Paths.h"

namespace {

/// Matrices of any scale in which some elements are 0: diagonal, tridiagonal and empty ones too.
ZmEigenMatrix RandomSymmetric(Random& random)
{
    const float scales[] = {1e-30f, 1e-20f, 1e-6f, 1, 1e6f, 1e15f}, scale = scales[random.Int(0, 5)];
    const int zeros = random.Int(0, 63), ones = random.Int(0, 63);
    ZmEigenMatrix res;
    for (int i = 0, element = 0; i < 3; ++i) {
        for (int j = i; j < 3; ++j, ++element) {
            const float value = ones >> element & 1 ? 1 : scale * random.Float(1);
            res.Matrix[i][j] = res.Matrix[j][i] = zeros >> element & 1 ? 0 : value;
        }
    }
    return res;
}

TEST(EigenLanesTest, EachLaneHasTheBitsOfASingleMatrix)
{
    OnEachPath(2000, [](Random& random) {
        zm::EigenBlock block;
        ZmEigenMatrix singles[zm::EigenBlock::kCount];
        for (int k = 0; k < zm::EigenBlock::kCount; ++k) {
            singles[k] = RandomSymmetric(random);
            for (int i = 0, element = 0; i < 3; ++i) {
                for (int j = i; j < 3; ++j, ++element) {
                    block.symmetric[element][k] = singles[k].Matrix[i][j];
                }
            }
            singles[k].EigenStuff3();
        }
        zm::DispatchAvx2(zm::avx2::FindEigenvectors, zm::FindEigenvectors<zm::SseLanes>, block);
        for (int k = 0; k < zm::EigenBlock::kCount; ++k) {
            for (int i = 0; i < 9; ++i) {
                ASSERT_TRUE(SameBits(block.vectors[i / 3][i % 3][k], singles[k].Matrix[i / 3][i % 3]))
                    << k << ", " << i;
            }
        }
    });
}

}  // namespace

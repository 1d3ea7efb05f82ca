#include "Support/Blocks.h"
#include "Support/Paths.h"

#include <atomic>
#include <thread>

namespace {

const int kCount = 100;

/// Transforms again and again; counts results that are not the expected bytes.
void TransformUntil(const std::atomic<bool>& stop, const ZmMatrix& m, Block src, const Block& expected, int& wrong,
                    int& done)
{
    Block res(expected.size());
    const ZmStridedData from(src.data(), 12), to(res.data(), 12);
    do {
        Zm3DMultiplyMatrixVectorStrided(&to, &from, m, kCount);
        wrong += res != expected;
        ++done;
    } while (!stop);
}

TEST(PathChangeThreadTest, OtherThreadsStayRightWhileTheFeatureWordChanges)
{
    Random random(1);
    const ZmMatrix m = random.Affine();
    Block src = RandomArray(random, kCount, 12, 0, 3), expected(src.size());
    const ZmStridedData from(src.data(), 12), to(expected.data(), 12);
    Zm3DMultiplyMatrixVectorStrided(&to, &from, m, kCount);

    std::atomic<bool> stop{false};
    int wrong[2] = {}, done[2] = {};
    std::thread first([&] { TransformUntil(stop, m, src, expected, wrong[0], done[0]); });
    std::thread second([&] { TransformUntil(stop, m, src, expected, wrong[1], done[1]); });
    {
        const PathGuard guard(AllPaths().back());
        for (int i = 0; i < 2000; ++i) {
            ChooseVectorPath(i % 2 != 0);
            std::this_thread::yield();
        }
    }
    stop = true;
    first.join();
    second.join();
    EXPECT_EQ(wrong[0] + wrong[1], 0);
    EXPECT_TRUE(done[0] > 0 && done[1] > 0);
}

}  // namespace

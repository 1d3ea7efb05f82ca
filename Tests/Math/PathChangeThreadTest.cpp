#include "Support/Blocks.h"
#include "Support/Paths.h"

#include <atomic>
#include <thread>

namespace {

TEST(PathChangeThreadTest, OtherThreadsStayRightWhileTheFeatureWordChanges)
{
    constexpr int count = 100;
    Random random(1);
    const ZmMatrix m = random.Affine();
    Block src = RandomArray(random, count, 12, 0, 3), expected(src.size());
    const ZmStridedData from(src.data(), 12), toExpected(expected.data(), 12);
    Zm3DMultiplyMatrixVectorStrided(&toExpected, &from, m, count);

    std::atomic<bool> stop{false};
    std::atomic<int> done{0}, wrong{0};
    const auto transform = [&] {
        Block res(expected.size());
        const ZmStridedData to(res.data(), 12);
        while (!stop) {
            Zm3DMultiplyMatrixVectorStrided(&to, &from, m, count);
            wrong += res != expected;
            ++done;
        }
    };
    std::thread first(transform), second(transform);
    {
        const PathGuard guard(AllPaths().back());
        for (int i = 0; i < 2000 || done < 100; ++i) {
            ChooseVectorPath(i % 2 != 0);
            std::this_thread::yield();
        }
    }
    stop = true;
    first.join();
    second.join();
    EXPECT_EQ(wrong, 0);
}

}  // namespace

#include "Support/Blocks.h"
#include "Support/Paths.h"

namespace {

const struct {
    const char* name;
    int count;
    bool dst, src;
    unsigned long dstStride, size, srcStride;
    int filled, copied;
} kArguments[] = {
    {"all right", 3, true, true, 16, 8, 16, 1, 1},       {"no destination", 3, false, true, 16, 8, 16, 0, 0},
    {"no source", 3, true, false, 16, 8, 16, 0, 0},      {"count 0", 0, true, true, 16, 8, 16, 0, 0},
    {"negative count", -1, true, true, 16, 8, 16, 0, 0}, {"no destination stride", 3, true, true, 0, 8, 16, 0, 0},
    {"no source stride", 3, true, true, 16, 8, 0, 1, 0}, {"size 0", 3, true, true, 16, 0, 16, 0, 0},
    {"size 6", 3, true, true, 16, 6, 16, 0, 0},
};

TEST(ZmStridedDataTest, BadArgumentsGiveZeroAndWriteNothing)
{
    for (const auto& row : kArguments) {
        SCOPED_TRACE(row.name);
        const Block before(64, 0x55), src(64, 0xAA);
        Block filled = before, copied = before;
        const void* const value = row.src ? src.data() : nullptr;
        void *const toFill = row.dst ? filled.data() : nullptr, *const toCopy = row.dst ? copied.data() : nullptr;
        EXPECT_EQ(ZmFillStructure(row.count, toFill, row.dstStride, row.size, value), row.filled);
        EXPECT_EQ(ZmCopyStructure(row.count, toCopy, row.dstStride, row.size, value, row.srcStride), row.copied);
        EXPECT_EQ(filled != before, row.filled == 1);
        EXPECT_EQ(copied != before, row.copied == 1);
    }
    Block src(64, 0xAA), dst(64, 0x55);
    constexpr int indices[] = {1, 0};
    EXPECT_EQ(ZmIndexedCopy({dst.data(), 16}, {src.data(), 16}, 6, indices, 2), 0);
    EXPECT_EQ(dst, Block(64, 0x55));
}

// --- Fill, copy and gather against memcpy -------------------------------------------------

struct Arrays {
    Block src, dst;
    unsigned long size;
    unsigned srcStride, dstStride;
    size_t srcOffset, dstOffset;
    int count;

    ZmStridedData To() { return {&dst[dstOffset], dstStride}; }
    ZmStridedData From(int i = 0) { return {&src[srcOffset + size_t(i) * srcStride], srcStride}; }

    /// The expected dst if its element i is element index(i) of src.
    template <class Index>
    Block Expected(Index index)
    {
        Block expected = dst;
        for (int i = 0; i < count; ++i) {
            memcpy(&expected[dstOffset + size_t(i) * dstStride], From(index(i)).Ptr, size);
        }
        return expected;
    }
};

/// Runs move(random, arrays), which returns the block expected in dst, over every kind of arrays.
template <class Move>
void OnAllArrays(Move move)
{
    constexpr unsigned gaps[][2] = {{0, 0}, {4, 4}, {20, 0}, {0, 20}, {0, 4}, {3, 1}, {1, 25}};
    OnEachPath(1, [&](Random& random) {
        for (unsigned size = 4; size <= 80; size += 4) {
            for (const auto& gap : gaps) {
                for (const int count : {1, 2, 3, 4, 5, 8, 13, 45, 130}) {
                    Arrays a = {{},
                                {},
                                size,
                                size + gap[1],
                                size + gap[0],
                                size_t(random.Int(0, 31)),
                                kMargin + size_t(random.Int(0, 31)),
                                count};
                    a.src = RandomBytes(random, a.srcOffset + SpanOf(count, a.srcStride, size));
                    a.dst = RandomBytes(random, a.dstOffset + SpanOf(count, a.dstStride, size) + kMargin);
                    const Block expected = move(random, a);
                    ASSERT_EQ(FirstDifference(a.dst, expected), -1)
                        << "size " << size << " at " << a.dstOffset << ", strides " << a.dstStride << " " << a.srcStride
                        << ", count " << count;
                }
            }
        }
    });
}

TEST(ZmStridedDataTest, FillsWriteTheValueAndKeepEveryOtherByte)
{
    OnAllArrays([](Random&, Arrays& a) {
        const Block expected = a.Expected([&](int) { return a.count - 1; });
        EXPECT_EQ(ZmFillStructure(a.count, a.To(), a.size, a.From(a.count - 1).Ptr), 1);
        return expected;
    });
}

TEST(ZmStridedDataTest, CopiesMoveElementByElementAndKeepEveryOtherByte)
{
    OnAllArrays([](Random&, Arrays& a) {
        const Block expected = a.Expected([](int i) { return i; });
        EXPECT_EQ(ZmCopyStructure(a.count, a.To(), a.size, a.From()), 1);
        return expected;
    });
}

template <class Index>
Block Gather(Random& random, Arrays& a)
{
    std::vector<Index> indices;
    for (int i = 0; i < a.count; ++i) {
        indices.push_back(Index(random.Int(0, a.count - 1)));
    }
    const Block expected = a.Expected([&](int i) { return int(indices[size_t(i)]); });
    EXPECT_EQ(ZmIndexedCopy(a.To(), a.From(), a.size, indices.data(), a.count), 1);
    return expected;
}

TEST(ZmStridedDataTest, GathersTakeTheIndexedElements)
{
    OnAllArrays(Gather<int>);
    OnAllArrays(Gather<unsigned short>);
}

TEST(ZmStridedDataTest, GathersReachFarAndBackwards)
{
    Random random(1);
    constexpr int count = 65536;  // a source larger than the caches
    Arrays a = {RandomBytes(random, 32 * count), Block(16 * count), 12, 32, 16, 0, 0, count};
    EXPECT_EQ(FirstDifference(Gather<int>(random, a), a.dst), -1);
    EXPECT_EQ(FirstDifference(Gather<unsigned short>(random, a), a.dst), -1);
    constexpr int back[] = {-100};
    EXPECT_EQ(ZmIndexedCopy(a.To(), a.From(150), 12, back, 1), 1);
    EXPECT_EQ(memcmp(&a.dst[0], &a.src[50 * 32], 12), 0);
}

TEST(ZmStridedDataTest, TheValueMayLieInTheFilledArray)
{
    OnEachPath(1, [](Random& random) {
        for (const unsigned long size : {4ul, 8ul, 12ul, 16ul}) {
            for (const unsigned long stride : {size, size + 5}) {
                for (const unsigned long at : {0ul, stride * 3, stride * 3 + 2, stride * 79}) {
                    Block dst = RandomBytes(random, SpanOf(80, stride, size)), expected = dst;
                    for (size_t i = 0; i < 80; ++i) {
                        memcpy(&expected[i * stride], Block(&dst[at], &dst[at] + size).data(), size);
                    }
                    EXPECT_EQ(ZmFillStructure(80, dst.data(), stride, size, &dst[at]), 1);
                    EXPECT_EQ(FirstDifference(dst, expected), -1) << "size " << size << ", value at " << at;
                }
            }
        }
    });
}

// --- Arrays larger than the caches, for which some moves bypass them ------------------------

constexpr int kLargeCount = (24 << 20) / 12 + 41;

TEST(ZmStridedDataTest, LargeFillsRepeatTheValueToTheLastByte)
{
    Block block(12 * kLargeCount + 96);
    OnEachPath(1, [&](Random& random) {
        const Block value = RandomBytes(random, 48);
        for (const unsigned long size : {4ul, 12ul, 48ul}) {
            for (const size_t offset : {0, 4, 9}) {
                unsigned char* const start = AlignedStart(block, offset);
                const size_t bytes = 12 * kLargeCount / size * size;
                memset(start, 0, size);
                start[bytes] = 0x5A;
                EXPECT_EQ(ZmFillStructure(int(bytes / size), start, size, size, value.data()), 1);
                // The first element is right, and every other equals the one before it.
                EXPECT_EQ(memcmp(start, value.data(), size), 0);
                EXPECT_EQ(memcmp(start + size, start, bytes - size), 0) << "size " << size << " at " << offset;
                EXPECT_EQ(start[bytes], 0x5A);
            }
        }
    });
}

TEST(ZmStridedDataTest, LargeCopiesToTightVectorsEqualTheSource)
{
    OnEachPath(1, [](Random& random) {
        Arrays a = {
            RandomBytes(random, SpanOf(kLargeCount, 16, 12)), Block(12 * kLargeCount), 12, 16, 12, 0, 0, kLargeCount};
        const Block expected = a.Expected([](int i) { return i; });
        Block block(expected.size() + 96);
        for (const size_t offset : {0, 4, 8, 12, 6}) {
            unsigned char* const start = AlignedStart(block, offset);
            start[expected.size()] = 0x5A;
            EXPECT_EQ(ZmCopyStructure(kLargeCount, start, 12, 12, a.src.data(), 16), 1);
            EXPECT_EQ(memcmp(start, expected.data(), expected.size()), 0) << "start at " << offset;
            EXPECT_EQ(start[expected.size()], 0x5A) << "start at " << offset;
        }
    });
}

}  // namespace

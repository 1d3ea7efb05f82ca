#include "Support/Blocks.h"
#include "Support/Paths.h"

namespace {

// --- Arguments ---------------------------------------------------------------------------

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
    {"size 6", 3, true, true, 16, 6, 16, 0, 0},          {"size 4", 3, true, true, 16, 4, 16, 1, 1},
};

TEST(StridedDataTest, BadArgumentsGiveZeroAndWriteNothing)
{
    for (const auto& row : kArguments) {
        SCOPED_TRACE(row.name);
        const Block before(64, 0x55);
        Block src(64, 0xAA), filled = before, copied = before;
        void* const value = row.src ? src.data() : nullptr;
        EXPECT_EQ(ZmFillStructure(row.count, row.dst ? filled.data() : nullptr, row.dstStride, row.size, value),
                  row.filled);
        EXPECT_EQ(ZmCopyStructure(row.count, row.dst ? copied.data() : nullptr, row.dstStride, row.size, value,
                                  row.srcStride),
                  row.copied);
        EXPECT_EQ(filled != before, row.filled == 1);
        EXPECT_EQ(copied != before, row.copied == 1);
    }
}

TEST(StridedDataTest, GathersRefuseOddSizes)
{
    Block src(64, 0xAA), dst(64, 0x55);
    const int indices[] = {1, 0};
    const unsigned short shorts[] = {1, 0};
    const ZmStridedData from(src.data(), 16), to(dst.data(), 16);
    EXPECT_EQ(ZmIndexedCopy(to, from, 6, indices, 2), 0);
    EXPECT_EQ(ZmIndexedCopy(to, from, 7, shorts, 2), 0);
    EXPECT_EQ(dst, Block(64, 0x55));
}

// --- Fill, copy and gather against memcpy -------------------------------------------------

struct Shape {
    size_t dstGap, srcGap;  // bytes between elements
    size_t dstOffset, srcOffset;
};

const Shape kShapes[] = {
    {0, 0, 0, 0},  {0, 0, 4, 8},  {0, 0, 3, 5}, {4, 4, 0, 0},  {20, 0, 4, 0},
    {0, 20, 4, 0}, {0, 4, 12, 1}, {3, 1, 1, 2}, {1, 25, 0, 7},
};

const int kCounts[] = {1, 2, 3, 4, 5, 8, 13, 45, 130};

struct Arrays {
    Block src, dst;
    unsigned long size;
    size_t srcStride, dstStride;
    Shape shape;

    Arrays(Random& random, unsigned long elementSize, const Shape& s, int count)
        : size(elementSize), srcStride(elementSize + s.srcGap), dstStride(elementSize + s.dstGap), shape(s)
    {
        src = RandomBytes(random, s.srcOffset + SpanOf(count, srcStride, size));
        dst = RandomBytes(random, kMargin + s.dstOffset + SpanOf(count, dstStride, size) + kMargin);
    }
    size_t At(int i) const { return kMargin + shape.dstOffset + size_t(i) * dstStride; }
    unsigned char* Source(int i) { return &src[shape.srcOffset + size_t(i) * srcStride]; }
    ZmStridedData To() { return {&dst[At(0)], unsigned(dstStride)}; }
    ZmStridedData From() { return {Source(0), unsigned(srcStride)}; }
};

template <class Check>
void ForEveryArray(uint64_t seed, Check check)
{
    OnEachPath([&] {
        Random random(seed);
        for (unsigned long size = 4; size <= 80; size += 4) {
            for (const Shape& shape : kShapes) {
                for (const int count : kCounts) {
                    Arrays arrays(random, size, shape, count);
                    const long difference = check(random, arrays, count);
                    ASSERT_EQ(difference, -1) << "size " << size << ", gaps " << shape.dstGap << " and " << shape.srcGap
                                              << ", offset " << shape.dstOffset << ", count " << count;
                }
            }
        }
    });
}

TEST(StridedDataTest, FillsWriteTheValueAndKeepEveryOtherByte)
{
    ForEveryArray(1, [](Random&, Arrays& a, int count) {
        Block expected = a.dst;
        for (int i = 0; i < count; ++i) {
            memcpy(&expected[a.At(i)], a.Source(count - 1), a.size);
        }
        EXPECT_EQ(ZmFillStructure(count, a.To(), a.size, a.Source(count - 1)), 1);
        return FirstDifference(a.dst, expected);
    });
}

TEST(StridedDataTest, TightFillsMayStartAtAnyAddress)
{
    OnEachPath([] {
        Random random(10);
        for (const unsigned long size : {4ul, 8ul, 12ul, 16ul, 20ul, 24ul, 48ul}) {
            for (size_t offset = 0; offset < 32; ++offset) {
                Arrays a(random, size, {0, 0, offset, 0}, 70);
                Block expected = a.dst;
                for (int i = 0; i < 70; ++i) {
                    memcpy(&expected[a.At(i)], a.Source(0), size);
                }
                EXPECT_EQ(ZmFillStructure(70, a.To(), size, a.Source(0)), 1);
                EXPECT_EQ(FirstDifference(a.dst, expected), -1) << "size " << size << ", offset " << offset;
            }
        }
    });
}

TEST(StridedDataTest, CopiesMoveElementByElementAndKeepEveryOtherByte)
{
    ForEveryArray(2, [](Random&, Arrays& a, int count) {
        Block expected = a.dst;
        for (int i = 0; i < count; ++i) {
            memcpy(&expected[a.At(i)], a.Source(i), a.size);
        }
        EXPECT_EQ(ZmCopyStructure(count, a.To(), a.size, a.From()), 1);
        return FirstDifference(a.dst, expected);
    });
}

template <class Index>
long GatherAtRandom(Random& random, Arrays& a, int count)
{
    std::vector<Index> indices(static_cast<size_t>(count));
    Block expected = a.dst;
    for (int i = 0; i < count; ++i) {
        const int index = random.Int(0, count - 1);
        indices[size_t(i)] = Index(index);
        memcpy(&expected[a.At(i)], a.Source(index), a.size);
    }
    EXPECT_EQ(ZmIndexedCopy(a.To(), a.From(), a.size, indices.data(), count), 1);
    return FirstDifference(a.dst, expected);
}

TEST(StridedDataTest, GathersTakeTheIndexedElements)
{
    ForEveryArray(3, GatherAtRandom<int>);
    ForEveryArray(4, GatherAtRandom<unsigned short>);
}

TEST(StridedDataTest, GathersReachBackwardsAndBeyondTheSignOfAShort)
{
    const int kElements = 65536;
    Random random(5);
    Block src = RandomBytes(random, 12 * kElements), dst(24);
    const ZmStridedData from(src.data(), 12), middle(&src[12 * 100], 12), to(dst.data(), 12);
    const unsigned short shorts[] = {65535, 32768};
    EXPECT_EQ(ZmIndexedCopy(to, from, 12, shorts, 2), 1);
    EXPECT_EQ(memcmp(&dst[0], &src[12 * 65535], 12), 0);
    EXPECT_EQ(memcmp(&dst[12], &src[12 * 32768], 12), 0);
    const int indices[] = {-100, 5};
    EXPECT_EQ(ZmIndexedCopy(to, middle, 12, indices, 2), 1);
    EXPECT_EQ(memcmp(&dst[0], &src[0], 12), 0);
    EXPECT_EQ(memcmp(&dst[12], &src[12 * 105], 12), 0);
}

TEST(StridedDataTest, LongGathersFromMemoryTakeTheIndexedElements)
{
    const int count = 50000;  // more than a megabyte of source
    Random random(6);
    Arrays a(random, 12, {4, 20, 0, 0}, count);
    EXPECT_EQ(GatherAtRandom<int>(random, a, count), -1);
}

// --- The value in the array ------------------------------------------------------------------

TEST(StridedDataTest, TheValueMayLieInTheFilledArray)
{
    OnEachPath([] {
        Random random(7);
        for (const unsigned long size : {4ul, 8ul, 12ul, 16ul}) {
            for (const unsigned long stride : {size, size + 5}) {
                for (const unsigned long offset : {0ul, stride * 3, stride * 3 + 2, stride * 79}) {
                    Block dst = RandomBytes(random, SpanOf(80, stride, size));
                    const Block value(dst.begin() + long(offset), dst.begin() + long(offset + size));
                    Block expected = dst;
                    for (size_t i = 0; i < 80; ++i) {
                        memcpy(&expected[i * stride], value.data(), size);
                    }
                    EXPECT_EQ(ZmFillStructure(80, dst.data(), stride, size, &dst[offset]), 1);
                    EXPECT_EQ(FirstDifference(dst, expected), -1) << "size " << size << ", value at " << offset;
                }
            }
        }
    });
}

// --- Arrays larger than the caches --------------------------------------------------------------

const size_t kLarge = (24 << 20) + 12 * 48 + 48;

unsigned char* StartOf(Block& block, size_t offset)
{
    return block.data() + (16 - uintptr_t(block.data()) % 16) % 16 + offset;
}

TEST(StridedDataTest, LargeFillsRepeatTheValueToTheLastByte)
{
    Random random(8);
    const Block value = RandomBytes(random, 48);
    Block block(kLarge + 64);
    for (const unsigned long size : {4ul, 12ul, 48ul}) {
        for (const size_t offset : {0, 4, 9}) {
            OnEachPath([&] {
                unsigned char* const start = StartOf(block, offset);
                const int count = int(kLarge / size);
                memset(start, 0, 16);
                start[count * int(size)] = 0x5A;
                EXPECT_EQ(ZmFillStructure(count, start, size, size, value.data()), 1);
                // The first element is right, and every other equals the one before it.
                EXPECT_EQ(memcmp(start, value.data(), size), 0);
                EXPECT_EQ(memcmp(start + size, start, size_t(count - 1) * size), 0)
                    << "size " << size << " at " << offset;
                EXPECT_EQ(start[count * int(size)], 0x5A);
            });
        }
    }
}

TEST(StridedDataTest, LargeCopiesToTightVectorsEqualTheSource)
{
    const int count = int(kLarge / 12);
    Random random(9);
    Block src = RandomBytes(random, SpanOf(count, 16, 12));
    Block expected(size_t(count) * 12), block(kLarge + 64);
    for (int i = 0; i < count; ++i) {
        memcpy(&expected[size_t(i) * 12], &src[size_t(i) * 16], 12);
    }
    for (const size_t offset : {0, 4, 8, 12, 6}) {
        OnEachPath([&] {
            unsigned char* const start = StartOf(block, offset);
            start[expected.size()] = 0x5A;
            EXPECT_EQ(ZmCopyStructure(count, start, 12, 12, src.data(), 16), 1);
            EXPECT_EQ(memcmp(start, expected.data(), expected.size()), 0) << "start at " << offset;
            EXPECT_EQ(start[expected.size()], 0x5A) << "start at " << offset;
        });
    }
}

}  // namespace

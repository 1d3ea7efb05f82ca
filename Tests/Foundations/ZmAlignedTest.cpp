#include "ZmAligned.h"

#include <gtest/gtest.h>
#include <limits.h>
#include <stdint.h>
#include <string.h>

namespace {

TEST(ZmAlignedTest, BlocksAreAlignedAndWritable)
{
    for (int alignment = 1; alignment <= 4096; alignment *= 2) {
        for (int size = 0; size <= 100; ++size) {
            void* block = ZmNewAligned(size, alignment);
            ASSERT_NE(block, nullptr);
            EXPECT_EQ(reinterpret_cast<uintptr_t>(block) % uintptr_t(alignment), 0u) << alignment;
            memset(block, 0xFF, size_t(size));
            EXPECT_EQ(ZmIsAllocatedByNewAligned(block, alignment), 1) << alignment << ", " << size;
            ZmDeleteAligned(block);
        }
    }
}

TEST(ZmAlignedTest, SizesAndAlignmentsThatMakeNoSenseAreRefused)
{
    for (const int size : {-1, -16, INT_MIN}) {
        EXPECT_EQ(ZmNewAligned(size, 16), nullptr) << size;
    }
    for (const int alignment : {0, -1, -16, INT_MIN, 3, 24, 4097, INT_MAX}) {
        EXPECT_EQ(ZmNewAligned(10, alignment), nullptr) << alignment;
    }
    ZmDeleteAligned(nullptr);
}

TEST(ZmAlignedTest, BlocksOfAnotherOriginAreToldApart)
{
    EXPECT_EQ(ZmIsAllocatedByNewAligned(nullptr, 16), 0);
    char* words[9] = {};
    for (const int distance : {0, 15, 16, 100}) {
        words[7] = reinterpret_cast<char*>(words + 7) - distance;  // as if this many bytes had been skipped
        EXPECT_EQ(ZmIsAllocatedByNewAligned(words + 8, 16), int(distance < 16)) << distance;
    }
    words[7] = reinterpret_cast<char*>(words + 8);
    EXPECT_EQ(ZmIsAllocatedByNewAligned(words + 8, 16), 0);
    EXPECT_EQ(ZmIsAllocatedByNewAligned(words + 8, 0), 0);
}

}  // namespace

#include "Foundations/SmallBlocks.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

TEST(SmallBlocksTest, WhatIsGivenBackIsNoLongerInUse)
{
    for (const size_t size : {size_t(16), size_t(48), zm::SmallBlocks::kLargest}) {
        zm::SmallBlocks blocks;
        std::vector<void*> taken;
        while (blocks.PageCount() < 3) {
            taken.push_back(blocks.Take(size));
        }
        for (void* block : taken) {
            blocks.GiveBack(block, size);
        }
        EXPECT_EQ(blocks.BytesInUse(), 0u) << "nor are the rests of the pages";
        blocks.FreePages();
        EXPECT_EQ(blocks.PageCount(), 0u);
    }
}

}  // namespace

#include "Platform/OsFault.h"

#include <gtest/gtest.h>

namespace {

void SetFlag(void* flag)
{
    *static_cast<bool*>(flag) = true;
}

void RunUnknownInstruction(void* flag)
{
    SetFlag(flag);
    asm volatile("ud2");
}

void ReadAddressZero(void* flag)
{
    SetFlag(flag);
    asm volatile("movl (%0), %%eax" : : "r"(nullptr) : "eax");
}

TEST(OsFaultTest, FaultsEndTheWorkAgainAndAgain)
{
    for (int round = 0; round < 3; ++round) {
        for (const auto work : {RunUnknownInstruction, ReadAddressZero}) {
            bool ran = false, ranAfterwards = false;
            EXPECT_FALSE(zm::RunCatchingFaults(work, &ran));
            EXPECT_TRUE(ran);
            EXPECT_TRUE(zm::RunCatchingFaults(SetFlag, &ranAfterwards));
            EXPECT_TRUE(ranAfterwards);
        }
    }
}

}  // namespace

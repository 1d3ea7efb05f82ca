#include "ZmFPU.h"

#include <gtest/gtest.h>

namespace {

TEST(BaseModeTest, LoadingTheLibrarySetsTheBaseMode)
{
    EXPECT_EQ(ZmGetFPUControlWord() & 0x0F3F, 0x003F);
}

}  // namespace

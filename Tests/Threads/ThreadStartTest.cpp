#include "Threads/ThreadStart.h"

#include <gtest/gtest.h>

TEST(ThreadStartTest, WithoutItsObjectAThreadSaysSo)
{
    EXPECT_EQ(ZmThreadStart::Run(nullptr), 50u);
}

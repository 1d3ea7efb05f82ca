// Compiled as C++20, where records are spans, too.
#include "ZmInterop.h"
#include "ZmPrint.h"

#include <gtest/gtest.h>

#include <numeric>

namespace {

float Sum(std::span<const float> floats)
{
    return std::accumulate(floats.begin(), floats.end(), 0.0f);
}

TEST(SpanTest, SeesAndWritesTheFloatsOfARecord)
{
    ZmQuaternion q(1, 2, 3, 4);
    const ZmMatrix m = ZmMatrix::Identity();
    static_assert(decltype(ZmSpan(q))::extent == 4 && decltype(ZmSpan(m))::extent == 16);
    EXPECT_EQ(Sum(ZmSpan(m)), 4);
    EXPECT_EQ(Sum(ZmFloats(q)), 10);
    ZmSpan(q)[0] = 5;
    EXPECT_TRUE(q == ZmQuaternion(5, 2, 3, 4));
    EXPECT_FALSE(q != ZmQuaternion(5, 2, 3, 4));
}

}  // namespace

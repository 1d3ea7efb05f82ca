#include "Imaging/FilterAxis.h"

#include <gtest/gtest.h>
#include <limits.h>

#include <numeric>

namespace {

TEST(FilterAxisTest, WeightsAddUpToOne)
{
    constexpr double kHalfBit = 1.0 / (1 << 25);  // of the largest weight
    for (const int from : {1, 2, 5, 64, 100003}) {
        for (const int to : {1, 3, 64, 77}) {
            for (uint32_t filter = ZMFILTER_DEFAULT; filter <= ZMFILTER_KAISER; ++filter) {
                SCOPED_TRACE(testing::Message() << from << " to " << to << ", filter " << filter);
                zm::FilterAxis axis;
                ASSERT_TRUE(axis.Prepare(from, to, ZMFILTER(filter), ZMEDGES_WRAP));
                const zm::FilterTable table = axis.Table();
                for (int i = 0; i < to; ++i) {
                    const float* const weights = table.weights + ptrdiff_t(i) * table.count;
                    ASSERT_NEAR(std::accumulate(weights, weights + table.count, 0.0), 1, kHalfBit);
                    ASSERT_LE(table.first[i] + table.count, axis.Places());
                }
            }
        }
    }
}

TEST(FilterAxisTest, MorePlacesThanCanBeCountedAreRefused)
{
    zm::FilterAxis axis;
    EXPECT_FALSE(axis.Prepare(INT_MAX, 2, ZMFILTER_BILINEAR, ZMEDGES_WRAP));
}

}  // namespace

#include "ZmTrigonometry.h"

#include "Support/Reference.h"

#include <limits.h>

namespace {

constexpr double kStep = 0.00038349521f;  // the table's own step, a float
constexpr double kTableError = 0x1p-24;   // of one float near 1: half its last place, and a little for near-ties
constexpr double kStepError = 4e-7;       // of a whole turn of steps against the true angle

TEST(ZmTrigonometryTest, TheTableHoldsTheSinesOfItsSteps)
{
    if (!SystemSinesAreExact()) {
        GTEST_SKIP() << "the C library's sines are inexact here";
    }
    for (int i = 0; i < 16384; ++i) {
        ASSERT_NEAR(Tsin(i), sin(i * kStep), kTableError) << i;
        ASSERT_NEAR(Tcos(i), cos(i * 3.14159265358979 / 8192), kStepError) << i;
        ASSERT_EQ(Tcos(i), Tsin(i + 4096)) << i;
    }
    EXPECT_TRUE(Tcos(0) == 1 && Tsin(4096) == 1 && Tsin(0) == 0);
}

TEST(ZmTrigonometryTest, WholeTurnsDropOut)
{
    for (const int i : {0, 1, 4095, 4096, 10000, 16383}) {
        for (const int turns : {-3, -1, 1, 50}) {
            EXPECT_EQ(Tsin(i + turns * 16384), Tsin(i)) << i;
            EXPECT_EQ(Tcos(i + turns * 16384), Tcos(i)) << i;
        }
    }
    EXPECT_EQ(Tsin(INT_MAX), Tsin(16383));
    EXPECT_EQ(Tcos(INT_MIN), Tcos(0));
}

const struct {
    float radians;
    int angle;
} kAngles[] = {
    {0, 0},           {1.57079633f, 4096}, {-1.57079633f, -4096}, {62.8318531f, 163840},  // not wrapped
    {0.00019f, 0},                                                                        // 0.4954
    {0.000192f, 1},                                                                       // 0.5007
    {-0.000192f, -1}, {1e30f, INT_MIN},
};

TEST(ZmTrigonometryTest, RadiansBecomeTheNearestAngle)
{
    for (const auto& row : kAngles) {
        EXPECT_EQ(radToAngle(row.radians), row.angle) << row.radians;
    }
}

}  // namespace

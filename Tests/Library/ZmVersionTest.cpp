#include "ZmVersion.h"

#include <gtest/gtest.h>

#include <string>

TEST(ZmVersionTest, TextJoinsTheThreeNumbers)
{
    const std::string expected = std::to_string(ZMMATH_VERSION_MAJOR) + "." + std::to_string(ZMMATH_VERSION_MINOR) +
                                 "." + std::to_string(ZMMATH_VERSION_PATCH);
    EXPECT_EQ(expected, ZMMATH_VERSION_STRING);
}

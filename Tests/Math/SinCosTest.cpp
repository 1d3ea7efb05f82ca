#include "Math/SinCos.h"

#include "Support/Paths.h"
#include "Support/Reference.h"

#include <algorithm>

namespace {

constexpr double kSinCosError = 0x1p-52;  // absolute: of the polynomials, and of the C library
class SinCosTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!SystemSinesAreExact()) {
            GTEST_SKIP() << "the C library's sines are inexact here";
        }
    }
};

double ErrorAt(double x)
{
    const zm::SinCos turn(x);
    return std::max(fabs(turn.sine - sin(x)), fabs(turn.cosine - cos(x)));
}

TEST_F(SinCosTest, AnglesAreRightInEveryQuadrant)
{
    Random random(1);
    double worst = 0;
    for (int round = 0; round < 50000; ++round) {
        const float range = random.Int(0, 1) ? 7.0f : 99999.0f;
        worst = std::max(worst, ErrorAt(random.Float(range)));
    }
    for (int eighth = -33; eighth <= 33; ++eighth) {
        for (const double step : {-1e-6, -1e-15, 0.0, 1e-15, 1e-6}) {
            worst = std::max(worst, ErrorAt(eighth * 0.78539816339744831 + step));
        }
    }
    EXPECT_LE(worst, kSinCosError);
}

TEST_F(SinCosTest, AnglesNextToQuartersAreRightInTheLastPlaceOfAFloat)
{
    for (int quarter = -60000; quarter <= 60000; quarter += quarter > -40 && quarter < 40 ? 1 : 97) {
        const float nearest = float(quarter * 1.5707963267948966);
        for (const float x : {nearest, nextafterf(nearest, -1e9f), nextafterf(nearest, 1e9f)}) {
            const zm::SinCos turn(x);
            EXPECT_NEAR(turn.sine, sin(double(x)), kRounding * fabs(sin(double(x)))) << x;
            EXPECT_NEAR(turn.cosine, cos(double(x)), kRounding * fabs(cos(double(x)))) << x;
        }
    }
}

TEST_F(SinCosTest, HugeAnglesAreStillAngles)
{
    for (const double x : {8191.999, 8192.0, -8192.001, 99999.99, -123456789.0, 1e10, 1e15, -3e38, 0x1.fffp128}) {
        if (fabs(x) < 1e5 || SystemSinesAreExactForAll()) {
            EXPECT_LE(ErrorAt(x), kSinCosError) << x;
        }
        zm::SineCosine turn(x);
        EXPECT_EQ(turn.sine, zm::SinCos(x).sine) << x;
        EXPECT_EQ(turn.cosine, zm::SinCos(x).cosine) << x;
    }
    EXPECT_TRUE(isnan(zm::SinCos(INFINITY).sine) && isnan(zm::SinCos(NAN).cosine));
}

}  // namespace

#include "Math/SinCos.h"

#include "Support/Random.h"

#include <gtest/gtest.h>

#include <math.h>

#include <algorithm>

namespace {

const double kClaimedError = 0x1p-34;

double ErrorAt(double x)
{
    const zm::SinCos turn(x);
    return std::max(fabs(turn.sine - sin(x)), fabs(turn.cosine - cos(x)));
}

TEST(SinCosTest, RandomAnglesAreRightInEveryQuadrant)
{
    Random random(1);
    for (const float range : {1e-3f, 1.0f, 7.0f, 1000.0f, 99999.0f}) {
        double worst = 0;
        for (int round = 0; round < 20000; ++round) {
            worst = std::max(worst, ErrorAt(random.Float(-range, range)));
        }
        EXPECT_LE(worst, kClaimedError) << "up to " << range;
    }
}

TEST(SinCosTest, AnglesNextToQuartersAreRightInTheLastPlaceOfAFloat)
{
    for (int quarter = -60000; quarter <= 60000; quarter += quarter > -40 && quarter < 40 ? 1 : 97) {
        const float nearest = float(quarter * 1.5707963267948966);
        for (const float x : {nearest, nextafterf(nearest, -1e9f), nextafterf(nearest, 1e9f)}) {
            const zm::SinCos turn(x);
            EXPECT_NEAR(turn.sine, sin(double(x)), 0x1p-24 * fabs(sin(double(x)))) << x;
            EXPECT_NEAR(turn.cosine, cos(double(x)), 0x1p-24 * fabs(cos(double(x)))) << x;
        }
    }
}

TEST(SinCosTest, AnglesBetweenEighthsChooseTheRightPolynomial)
{
    double worst = 0;
    for (int eighth = -33; eighth <= 33; eighth += 2) {
        for (const double step : {-1e-6, -1e-15, 0.0, 1e-15, 1e-6}) {
            worst = std::max(worst, ErrorAt(eighth * 0.78539816339744831 + step));
        }
    }
    EXPECT_LE(worst, kClaimedError);
}

TEST(SinCosTest, HugeAnglesAreStillAngles)
{
    for (const double x : {99999.99, 1e5, 100000.01, 1e6, -123456789.0, 1e10, 1e15}) {
        EXPECT_LE(ErrorAt(x), kClaimedError) << x;
    }
    for (const float x : {1e20f, -3e38f}) {
        const zm::SinCos turn(x);
        EXPECT_NEAR(turn.sine * turn.sine + turn.cosine * turn.cosine, 1, 1e-12) << x;
    }
    EXPECT_TRUE(isnan(zm::SinCos(INFINITY).sine));
    EXPECT_TRUE(isnan(zm::SinCos(NAN).cosine));
}

}  // namespace

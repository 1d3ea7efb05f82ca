#include "Support/Paths.h"
#include "Support/Reference.h"

namespace {

TEST(ZmPlaneTest, ANormalIsTakenAsItIs)
{
    ZmPlane plane;
    plane.Create({0, 3, 4}, {1, 2, -5});
    EXPECT_EQ(plane.Normal, ZmVector(0, 3, 4));
    EXPECT_EQ(plane.D, 14);
}

TEST(ZmPlaneTest, TheOrderOfThreePointsChoosesTheSide)
{
    ZmPlane plane;
    plane.Create({0, 0, 0}, {1, 0, 0}, {0, 1, 0});
    EXPECT_EQ(plane.Normal, ZmVector(0, 0, 1));
    EXPECT_EQ(plane.D, 0);
    plane.Create({0, 0, 0}, {0, 1, 0}, {1, 0, 0});
    EXPECT_EQ(plane.Normal, ZmVector(0, 0, -1));
    plane.Create({0, 0, 0}, {1, 1, 1}, {2, 2, 2});
    EXPECT_TRUE(isnan(plane.Normal.x) && isnan(plane.D));
}

TEST(ZmPlaneTest, ThreePointsLieOnTheirUnitPlane)
{
    OnEachPath(100, [](Random& random) {
        const ZmVector a = random.Vector(), b = random.Vector(), c = random.Vector();
        ZmPlane plane;
        plane.Create(a, b, c);
        EXPECT_NEAR(Length(plane.Normal), 1, 4 * kRounding);
        for (const ZmVector& p : {a, b, c}) {
            EXPECT_NEAR(Dot(plane.Normal, p) + plane.D, 0, 1e-4);
        }
    });
}

}  // namespace

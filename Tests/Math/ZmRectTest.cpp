#include "ZmRect.h"

#include <gtest/gtest.h>

namespace {

void ExpectRect(const ZmRect& got, const ZmRect& expected)
{
    EXPECT_FLOAT_EQ(got.left, expected.left);
    EXPECT_FLOAT_EQ(got.top, expected.top);
    EXPECT_FLOAT_EQ(got.right, expected.right);
    EXPECT_FLOAT_EQ(got.bottom, expected.bottom);
}

TEST(ZmRectTest, TransformKeepsThePlaceRelativeToTheScreen)
{
    ZmRect rect(60, 30, 110, 50);
    rect.Transform(ZmRect(0, 100, 20, 500), ZmRect(10, 20, 110, 60));
    ExpectRect(rect, {10, 200, 20, 400});
    rect.Transform(Zm2DVector(10, 3), Zm2DVector(5, 6));
    ExpectRect(rect, {20, 100, 40, 200});
}

TEST(ZmRectTest, HomogeneousCoordinatesComeBack)
{
    const ZmRect screen(10, 20, 110, 60);
    ZmRect rect(60, 30, 80, 70);
    rect.TransformToHomogeneous(screen);
    ExpectRect(rect, {0.5f, 0.25f, 0.7f, 1.25f});
    rect.TransformFromHomogeneous(screen);
    ExpectRect(rect, {60, 30, 80, 70});
}

TEST(ZmRectTest, TheScreenMayBeTheRectangle)
{
    ZmRect first(2, 4, 8, 16), second = first;
    first.TransformToHomogeneous(first);
    ExpectRect(first, {0, 0, 1, 1});
    second.Transform(ZmRect(0, 0, 1, 1), second);
    ExpectRect(second, {0, 0, 1, 1});
}

TEST(ZmRectTest, AllFourEdgesOfARectangleOfPixelsAreInside)
{
    const RKRECT rect = {-3, -2, 4, 5};
    for (int x = -5; x <= 6; ++x) {
        for (int y = -4; y <= 7; ++y) {
            const RKPOINT pt = {x, y};
            const bool outside = x == -5 || x == -4 || x == 5 || x == 6 || y == -4 || y == -3 || y == 6 || y == 7;
            EXPECT_EQ(ZmPtInRect(&rect, &pt), outside ? 0 : 1) << x << ' ' << y;
        }
    }
}

}  // namespace

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

TEST(RectTest, TransformKeepsThePlaceRelativeToTheScreen)
{
    ZmRect rect(60, 30, 110, 50);
    rect.Transform(ZmRect(0, 100, 20, 500), ZmRect(10, 20, 110, 60));
    ExpectRect(rect, {10, 200, 20, 400});
}

TEST(RectTest, TransformBySizesScales)
{
    ZmRect rect(1, 2, 3, 4);
    rect.Transform(Zm2DVector(10, 3), Zm2DVector(5, 6));
    ExpectRect(rect, {2, 1, 6, 2});
}

TEST(RectTest, HomogeneousCoordinatesComeBack)
{
    const ZmRect screen(10, 20, 110, 60);
    ZmRect rect(60, 30, 80, 70);
    rect.TransformToHomogeneous(screen);
    ExpectRect(rect, {0.5f, 0.25f, 0.7f, 1.25f});
    rect.TransformFromHomogeneous(screen);
    ExpectRect(rect, {60, 30, 80, 70});
}

TEST(RectTest, TheScreenMayBeTheRectangle)
{
    ZmRect rect(2, 4, 8, 16);
    rect.TransformToHomogeneous(rect);
    ExpectRect(rect, {0, 0, 1, 1});
    rect = ZmRect(2, 4, 8, 16);
    rect.Transform(ZmRect(0, 0, 1, 1), rect);
    ExpectRect(rect, {0, 0, 1, 1});
}

const struct {
    const char* name;
    RKPOINT pt;
    int inside;
} kPoints[] = {
    {"middle", {0, 0}, 1},      {"left top corner", {-3, -2}, 1}, {"right bottom corner", {4, 5}, 1},
    {"left of it", {-4, 0}, 0}, {"right of it", {5, 0}, 0},       {"above it", {0, -3}, 0},
    {"below it", {0, 6}, 0},
};

TEST(RectTest, AllFourEdgesOfARectangleOfPixelsAreInside)
{
    const RKRECT rect = {-3, -2, 4, 5};
    for (const auto& row : kPoints) {
        EXPECT_EQ(ZmPtInRect(&rect, &row.pt), row.inside) << row.name;
    }
}

}  // namespace

#include "Imaging/ReferencePixels.h"
#include "Imaging/TestImage.h"
#include "Support/Paths.h"

#include <limits.h>

#include <algorithm>

namespace {

/// Sums the weights of all source pixels directly, without separating the two directions.
void Reference(double (&res)[4], const TestImage& src, int x, int y, int width, int height)
{
    double sum[4] = {};
    for (int v = 0; v < src.desc.Height; ++v) {
        for (int u = 0; u < src.desc.Width; ++u) {
            const Fields pixel = FieldsOf(src.desc, src.Get(u, v));
            const double alpha = pixel.bits[3] ? pixel.value[3] : 255;
            const double share =
                ReferenceWeight(x, u, src.desc.Width, width) * ReferenceWeight(y, v, src.desc.Height, height);
            for (int c = 0; c < 3; ++c) {
                sum[c] += share * alpha * pixel.value[c];
            }
            sum[3] += share * alpha;
        }
    }
    for (int c = 0; c < 3; ++c) {
        res[c] = sum[3] > 0 ? sum[c] / sum[3] : 0;
    }
    res[3] = sum[3];
}

/// Rounding to nearest, plus what seven fraction bits and 15-bit weights can lose.
constexpr double kRounding = 0.525;

void ExpectResized(const TestImage& src, const TestImage& dst)
{
    double worst = 0;
    for (int y = 0; y < dst.desc.Height; ++y) {
        for (int x = 0; x < dst.desc.Width; ++x) {
            double expected[4];
            Reference(expected, src, x, y, dst.desc.Width, dst.desc.Height);
            const Fields pixel = FieldsOf(dst.desc, dst.Get(x, y));
            for (int c = 0; c < 4; ++c) {
                worst = pixel.bits[c] ? std::max(worst, fabs(pixel.value[c] - expected[c])) : worst;
            }
        }
    }
    EXPECT_LE(worst, kRounding);
    EXPECT_TRUE(dst.MarginsUntouched());
}

void FillWithHoles(TestImage& image, Random& random)
{
    image.Fill(random);
    for (int i = 0; i < image.desc.Width * image.desc.Height; ++i) {
        const int x = i % image.desc.Width, y = i / image.desc.Width;
        const uint32_t alpha = image.desc.AlphaMask;
        image.Put(x, y, random.Int(0, 2) ? image.Get(x, y) | alpha : image.Get(x, y) & ~alpha);
    }
}

TEST(ZmResizeTest, AllSizesAgreeWithTheReference)
{
    const struct {
        int width, height, newWidth, newHeight;
    } rows[] = {{16, 12, 8, 6}, {16, 12, 7, 5}, {5, 7, 13, 9},  {9, 4, 4, 11},   {4, 9, 11, 4},     {1, 1, 5, 3},
                {20, 17, 1, 1}, {2, 3, 3, 2},   {31, 1, 30, 1}, {30, 2, 31, 2},  {8, 8, 8, 4},      {3, 100, 4, 33},
                {6, 6, 12, 12}, {70, 9, 9, 5},  {33, 5, 70, 2}, {3, 300, 20, 1}, {3, 100003, 2, 1}, {100003, 3, 1, 2}};
    OnEachPath(1, [&](Random& random) {
        for (const auto& row : rows) {
            for (const uint32_t format : {1u, 2u, 11u, 13u}) {
                SCOPED_TRACE(testing::Message() << row.width << " x " << row.height << " to " << row.newWidth << " x "
                                                << row.newHeight << ", format " << format);
                TestImage src(format, row.width, row.height, 3, true), dst(format, row.newWidth, row.newHeight);
                FillWithHoles(src, random);
                ASSERT_EQ(ZmResizeImage32(src.desc, dst.desc), 1);
                ExpectResized(src, dst);
            }
        }
    });
}

/// Pictures without alpha, which take the integer paths.
TEST(ZmResizeTest, AllPathsGiveTheSamePixels)
{
    const struct {
        int width, height, newWidth, newHeight;
    } rows[] = {
        {402, 270, 201, 135}, {402, 270, 149, 101}, {402, 270, 50, 20}, {200, 90, 267, 121}, {90, 200, 121, 77}};
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.width << " to " << row.newWidth);
        TestImage src(2, row.width, row.height), expected(1, row.newWidth, row.newHeight);
        Random random(1);
        src.Fill(random);
        {
            const PathGuard guard(AllPaths().front());
            ASSERT_EQ(ZmResizeImage32(src.desc, expected.desc), 1);
        }
        OnEachPath(1, [&](Random&) {
            TestImage dst(1, row.newWidth, row.newHeight);
            ASSERT_EQ(ZmResizeImage32(src.desc, dst.desc), 1);
            EXPECT_TRUE(dst.SameBytes(expected));
        });
    }
}

TEST(ZmResizeTest, EqualSizesAreCopiedWithTheirTransparentColours)
{
    Random random(1);
    TestImage src(1, 7, 5), dst(10, 7, 5), mip(10, 1, 1), pixel(1, 1, 1);
    src.Fill(random);
    pixel.Put(0, 0, 0x00123456);
    EXPECT_EQ(ZmResizeImage32(src.desc, dst.desc), 1);
    for (int i = 0; i < 35; ++i) {
        EXPECT_EQ(dst.Get(i % 7, i / 7), Converted(src.desc, src.Get(i % 7, i / 7), dst.desc));
    }
    EXPECT_EQ(ZmGenerateMipMap(pixel.desc, mip.desc), 1);
    EXPECT_EQ(mip.Get(0, 0), 0x00563412u);
}

TEST(ZmResizeTest, TransparentColoursDoNotBleed)
{
    TestImage src(1, 4, 4), half(1, 2, 2), twice(1, 8, 8);
    for (int i = 0; i < 16; ++i) {
        src.Put(i % 4, i / 4, i % 4 < 2 ? 0xFF204060 : 0x00FFFFFF);
    }
    src.Put(0, 0, 0x00FFFFFF);
    ASSERT_EQ(ZmGenerateMipMap(src.desc, half.desc), 1);
    ASSERT_EQ(ZmResizeImage32(src.desc, twice.desc), 1);
    EXPECT_EQ(half.Get(0, 0), 0xBF204060u);
    EXPECT_EQ(half.Get(1, 0), 0u);
    EXPECT_EQ(twice.Get(4, 6) & 0xFFFFFF, 0x204060u);
}

TEST(ZmResizeTest, LevelsGoDownToOnePixelWithoutAShift)
{
    OnEachPath(1, [](Random& random) {
        for (const int size : {1, 2, 3, 5, 7, 8, 17}) {
            for (const int other : {1, 2, 9, 16}) {
                SCOPED_TRACE(testing::Message() << size << " x " << other);
                TestImage src(1, size, other), dst(1, std::max(1, size / 2), std::max(1, other / 2));
                FillWithHoles(src, random);
                src.Put(0, 0, 0xFF0000FF);
                ASSERT_EQ(ZmGenerateMipMap(src.desc, dst.desc), 1);
                ExpectResized(src, dst);
            }
        }
    });
    TestImage rgb(4, 4, 4), level(4, 2, 2);
    for (int i = 0; i < 16; ++i) {
        rgb.Put(i % 4, i / 4, 0xF81F);
    }
    EXPECT_EQ(ZmGenerateMipMap(rgb.desc, level.desc), 1);
    EXPECT_EQ(level.Get(1, 1), 0xF81Fu);
}

std::string WhyNotResized(const TestImage& src, const TestImage& dst)
{
    XString why;
    EXPECT_EQ(ZmResizeImage32(src.desc, dst.desc) + ZmCanResizeImage32(src.desc, dst.desc, why), 0);
    return why.Text();
}

std::string WhyNoMipMap(const TestImage& src, const TestImage& dst)
{
    XString why;
    EXPECT_EQ(ZmGenerateMipMap(src.desc, dst.desc) + ZmCanGenerateMipMap(src.desc, dst.desc, why), 0);
    return why.Text();
}

TEST(ZmResizeTest, WhatDoesNotFitGivesZero)
{
    TestImage src(1, 8, 8), same(1, 8, 8), half(1, 4, 4), narrow(3, 4, 4), indexed(28, 4, 4), wide(1, 4, 4);
    indexed.SetPalette(256, 4);
    XString why;
    EXPECT_EQ(ZmCanResizeImage32(src.desc, half.desc, why) + ZmCanGenerateMipMap(src.desc, half.desc, why), 2);
    EXPECT_EQ(WhyNotResized(src, narrow), "both images need 32 bits per pixel");
    EXPECT_EQ(WhyNotResized(narrow, half), "both images need 32 bits per pixel");
    EXPECT_EQ(WhyNotResized(indexed, half), "source: the image is indexed or compressed");
    EXPECT_EQ(WhyNoMipMap(src, indexed), "destination: the image is indexed or compressed");
    EXPECT_EQ(WhyNoMipMap(src, same), "the destination is not half the source, rounded down, at least 1");
    EXPECT_EQ(WhyNoMipMap(half, same), "the destination is not half the source, rounded down, at least 1");
    wide.desc.Width = INT_MAX;
    EXPECT_EQ(WhyNotResized(src, wide), "destination: the pitch is shorter than a line");
    EXPECT_EQ(WhyNotResized(wide, half), "source: the pitch is shorter than a line");
    half.desc.Pixels = nullptr;
    EXPECT_EQ(WhyNotResized(src, half), "destination: the pixels are null");
    EXPECT_EQ(WhyNoMipMap(src, half), "destination: the pixels are null");
    EXPECT_TRUE(same.Untouched() && narrow.Untouched() && indexed.Untouched());
}

}  // namespace

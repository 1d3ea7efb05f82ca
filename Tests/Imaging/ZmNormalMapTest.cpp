#include "Imaging/ReferencePixels.h"
#include "Imaging/TestImage.h"
#include "ZmMath.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

/// Heights and slopes by definition, with indices wrapped by modulo.
struct HeightsOf {
    const TestImage& image;
    uint32_t mask;
    double scale;

    double At(int x, int y) const
    {
        const int width = image.desc.Width, height = image.desc.Height;
        return double(image.Get((x + width) % width, (y + height) % height) & mask) / mask;
    }
    double U(int x, int y) const { return (At(x + 1, y) - At(x - 1, y)) / 2 * scale; }
    double V(int x, int y) const { return (At(x, y + 1) - At(x, y - 1)) / 2 * scale; }
};

const struct {
    uint32_t format, heightMask;
    int width, height;
    float scale;
} kRows[] = {{1, 0xFF0000, 9, 7, 1},   {1, 0xFF00, 8, 8, 20},   {3, 0xFF, 5, 6, -3}, {4, 0x7E0, 6, 5, 2},
             {25, 0xFFFF, 4, 4, 0.5f}, {9, 0xC0, 3, 1, 100},    {2, 0xFF, 1, 1, 4},  {1, 0x0FF0, 2, 2, 1},
             {1, 0xFF000000, 7, 3, 0}, {3, 0xFF00, 4, 9, 1e30f}};

TEST(ZmNormalMapTest, NormalsHaveUnitLengthInEveryFormat)
{
    Random random(1);
    for (const auto& row : kRows) {
        for (const uint32_t format : {1u, 3u, 4u, 7u, 12u, 24u, 25u}) {
            SCOPED_TRACE(testing::Message() << row.format << " to " << format << " at scale " << row.scale);
            TestImage src(row.format, row.width, row.height, 3, true), dst(format, row.width, row.height);
            src.Fill(random);
            ASSERT_EQ(ZmConvertToNormalMap(src.desc, dst.desc, row.heightMask, row.scale), 1);
            const HeightsOf heights = {src, row.heightMask, row.scale};
            double worst = 0;
            for (int i = 0; i < row.width * row.height; ++i) {
                const int x = i % row.width, y = i / row.width;
                const double u = -heights.U(x, y), v = -heights.V(x, y), length = std::hypot(u, v, 1.0);
                const double expected[4] = {(u / length + 1) / 2, (v / length + 1) / 2, (1 / length + 1) / 2,
                                            heights.At(x, y)};
                const Fields fields = FieldsOf(dst.desc, dst.Get(x, y));
                for (int c = 0; c < 4; ++c) {
                    const double most = pow(2, fields.bits[c]) - 1;
                    worst = std::max(worst, fabs(fields.value[c] - expected[c] * most));
                }
            }
            EXPECT_LE(worst, 0.5 + 1e-9);
            EXPECT_TRUE(dst.MarginsUntouched());
        }
    }
}

TEST(ZmNormalMapTest, BumpMapsHoldSignedSlopesAndTheHeight)
{
    Random random(2);
    for (const auto& row : kRows) {
        for (const uint32_t format : {24u, 25u, 26u, 27u, 1u}) {
            SCOPED_TRACE(testing::Message() << row.format << " to " << format << " at scale " << row.scale);
            TestImage src(row.format, row.width, row.height), dst(format, row.width, row.height);
            src.Fill(random);
            ASSERT_EQ(ZmConvertToBumpMap(src.desc, dst.desc, row.heightMask, row.scale), 1);
            const HeightsOf heights = {src, row.heightMask, row.scale};
            double worst = 0;
            for (int i = 0; i < row.width * row.height; ++i) {
                const int x = i % row.width, y = i / row.width;
                const double slopes[2] = {heights.U(x, y), heights.V(x, y)};
                const Fields fields = FieldsOf(dst.desc, dst.Get(x, y));
                for (int c = 0; c < 4; ++c) {
                    const double all = pow(2, fields.bits[c]), most = c < 2 ? all / 2 - 1 : all - 1;
                    const double value = c < 2 && fields.value[c] > most ? fields.value[c] - all : fields.value[c];
                    const double expected = c < 2 ? std::min(1.0, std::max(-1.0, slopes[c])) : heights.At(x, y);
                    worst = std::max(worst, fabs(value - expected * most));
                }
            }
            EXPECT_LE(worst, 0.5 + 1e-9);
        }
    }
}

std::string WhyNot(const TestImage& src, const TestImage& dst, uint32_t mask, float scale = 1)
{
    XString why;
    EXPECT_EQ(ZmConvertToNormalMap(src.desc, dst.desc, mask, scale), 0);
    EXPECT_EQ(ZmConvertToBumpMap(src.desc, dst.desc, mask, scale), 0);
    EXPECT_EQ(ZmCanConvertHeights(src.desc, dst.desc, mask, scale, why), 0);
    return why.Text();
}

TEST(ZmNormalMapTest, WhatMakesNoSenseGivesZero)
{
    TestImage src(1, 4, 4), dst(1, 4, 4), other(1, 4, 5), indexed(28, 4, 4), twentyFour(3, 4, 4);
    indexed.SetPalette(256, 4);
    const std::string mask =
        "source: the height mask is empty, or has a gap, more than 16 bits, or bits outside the pixel";
    EXPECT_EQ(WhyNot(src, dst, 0), mask);
    EXPECT_EQ(WhyNot(src, dst, 0x5), mask);
    EXPECT_EQ(WhyNot(src, dst, 0x1FFFF), mask);
    EXPECT_EQ(WhyNot(twentyFour, dst, 0xFF000000), mask);
    EXPECT_EQ(WhyNot(src, other, 0xFF), "the sizes differ");
    EXPECT_EQ(WhyNot(src, indexed, 0xFF), "destination: the image is indexed or compressed");
    EXPECT_EQ(WhyNot(indexed, dst, 0xFF), "source: the image is indexed or compressed");
    EXPECT_EQ(WhyNot(src, dst, 0xFF, std::numeric_limits<float>::infinity()), "the scale is not finite");
    XString why;
    EXPECT_EQ(ZmCanConvertHeights(src.desc, dst.desc, 0xFF, 1, why), 1);
    dst.desc.GreenMask = 0;
    EXPECT_EQ(WhyNot(src, dst, 0xFF), "destination: slopes need red and green");
    EXPECT_TRUE(dst.Untouched() && other.Untouched() && indexed.Untouched());
}

}  // namespace

#include "Imaging/ReferencePixels.h"
#include "Imaging/TestImage.h"
#include "Support/Paths.h"

#include <limits.h>

#include <algorithm>
#include <functional>

namespace {

/// A pixel as ARGB8888.
uint32_t ArgbAt(const TestImage& image, int x, int y)
{
    const uint32_t format = image.desc.CompressedFormat;
    if (format >= ZM_PF_DXT1 && format <= ZM_PF_DXT5) {
        return Decoded(image.Line(y / 4) + x / 4 * (format == ZM_PF_DXT1 ? 8 : 16), format, y % 4 * 4 + x % 4);
    }
    static const TestImage argb(ZM_PF_32_ARGB8888, 1, 1);
    return Converted(image.desc, image.Get(x, y), argb.desc);
}

int DifferentPixels(const TestImage& src, const TestImage& dst)
{
    int res = 0;
    for (int y = 0; y < src.desc.Height; ++y) {
        for (int x = 0; x < src.desc.Width; ++x) {
            res += dst.Get(x, y) != Converted(src.desc, src.Get(x, y), dst.desc);
        }
    }
    return res;
}

TEST(ZmBlitTest, EveryPairOfFormatsAgreesWithTheReference)
{
    OnEachPath(1, [](Random& random) {
        for (const uint32_t from : kWithMasks) {
            for (const uint32_t to : kWithMasks) {
                SCOPED_TRACE(testing::Message() << from << " to " << to);
                const int width = random.Int(1, 40), padding = random.Int(0, 7);
                TestImage src(from, width, 3, padding, from % 3 == 0), dst(to, width, 3, 7 - padding, to % 3 == 1);
                src.Fill(random);
                ASSERT_EQ(ZmDoBlit(src.desc, dst.desc), 1);
                EXPECT_EQ(DifferentPixels(src, dst), 0);
                EXPECT_TRUE(dst.MarginsUntouched());
            }
        }
    });
}

TEST(ZmBlitTest, AllPixelsOf16BitsConvert)
{
    OnEachPath(1, [](Random&) {
        for (const uint32_t from : {4u, 7u, 26u}) {
            TestImage src(from, 256, 256);
            for (int i = 0; i < 65536; ++i) {
                src.Put(i % 256, i / 256, uint32_t(i));
            }
            for (const uint32_t to : {1u, 4u, 8u, 17u, 25u}) {
                TestImage dst(to, 256, 256);
                ASSERT_EQ(ZmDoBlit(src.desc, dst.desc), 1);
                EXPECT_EQ(DifferentPixels(src, dst), 0) << from << " to " << to;
            }
        }
    });
}

TEST(ZmBlitTest, ChannelsOfAllWidthsConvert)
{
    OnEachPath(1, [](Random&) {
        for (int from = 1; from <= 16; ++from) {
            TestImage src(1, 1 << (from < 10 ? from : 10), 1);
            ZmImageDescEx& desc = src.desc;
            desc.RedMask = ((1u << from) - 1) << (32 - from);
            desc.GreenMask = desc.BlueMask = desc.AlphaMask = 0;
            for (int x = 0; x < desc.Width; ++x) {
                src.Put(x, 0, uint32_t(x) << (32 - from) | uint32_t(x) << 21);
            }
            for (int to = 1; to <= 16; ++to) {
                TestImage dst(1, desc.Width, 1);
                dst.desc.RedMask = ((1u << to) - 1) << 3;
                dst.desc.GreenMask = dst.desc.BlueMask = 0;
                ASSERT_EQ(ZmDoBlit(desc, dst.desc), 1);
                EXPECT_EQ(DifferentPixels(src, dst), 0) << from << " to " << to;
            }
        }
    });
}

/// Sets channels of random widths, in random order and with gaps.
void SetRandomMasks(ZmImageDescEx& desc, Random& random)
{
    uint32_t* const masks[] = {&desc.RedMask, &desc.GreenMask, &desc.BlueMask, &desc.AlphaMask};
    const int turn = random.Int(0, 3), least = random.Int(0, 1) * 4;
    int place = 0;
    for (int i = 0; i < 4; ++i) {
        const int gap = random.Int(0, 9) ? 0 : 1, left = desc.BitsPerPixel - place - gap;
        const int bits = std::max(0, std::min({random.Int(least, 8), left}));
        *masks[(i + turn) % 4] = bits ? ((1u << bits) - 1) << (place + gap) : 0;
        place += bits ? gap + bits : 0;
    }
}

TEST(ZmBlitTest, AnyMasksConvert)
{
    OnEachPath(3000, [](Random& random) {
        constexpr uint32_t formats[] = {8, 4, 3, 1};
        TestImage src(formats[random.Int(0, 3)], 19, 2), dst(formats[random.Int(0, 3)], 19, 2, random.Int(0, 1) * 4);
        // Channels of whole bytes, like those of the formats, take separate code paths.
        const int keep = random.Int(0, 2);
        if (keep != 0) {
            SetRandomMasks(src.desc, random);
        }
        if (keep != 1) {
            SetRandomMasks(dst.desc, random);
        }
        src.Fill(random);
        const auto any = [](const ZmImageDescEx& d) { return d.RedMask | d.GreenMask | d.BlueMask | d.AlphaMask; };
        ASSERT_EQ(ZmDoBlit(src.desc, dst.desc), any(src.desc) && any(dst.desc));
        if (any(src.desc) && any(dst.desc)) {
            ASSERT_EQ(DifferentPixels(src, dst), 0);
        }
        EXPECT_TRUE(dst.MarginsUntouched());
    });
}

TEST(ZmBlitTest, LinesAreReversedUpsideDown)
{
    OnEachPath(20, [](Random& random) {
        const int width = random.Int(1, 30), height = random.Int(1, 9);
        TestImage src(1, width, height), straight(4, width, height), reversed(4, width, height, 3, true);
        src.Fill(random);
        ASSERT_EQ(ZmDoBlit(src.desc, straight.desc), 1);
        ASSERT_EQ(ZmDoBlitUpsideDown(src.desc, reversed.desc), 1);
        for (int y = 0; y < height; ++y) {
            EXPECT_EQ(memcmp(straight.Line(y), reversed.Line(height - 1 - y), size_t(width) * 2), 0);
        }
        EXPECT_TRUE(reversed.MarginsUntouched());
    });
}

TEST(ZmBlitTest, IndicesAreLookedUp)
{
    const struct {
        uint32_t format;
        int entries, entrySize;
    } rows[] = {{28, 256, 3}, {28, 256, 4}, {29, 100, 6}, {30, 16, 4}, {31, 7, 3}, {28, 65535, 4}};
    OnEachPath(1, [&](Random& random) {
        for (const auto& row : rows) {
            SCOPED_TRACE(testing::Message() << row.format << ", " << row.entries << " of " << row.entrySize);
            TestImage src(row.format, 61, 4);
            src.Fill(random);
            src.SetPalette(row.entries, row.entrySize);
            for (uint8_t& byte : src.palette) {
                byte = uint8_t(random.Bits());
            }
            for (const uint32_t to : {1u, 4u, 8u, 14u}) {
                TestImage argb(1, 1, 1), dst(to, 61, 4);
                ASSERT_EQ(ZmDoBlit(src.desc, dst.desc), 1);
                for (int i = 0; i < 61 * 4; ++i) {
                    const int x = i % 61, y = i / 61;
                    const int pair = src.Line(y)[row.format < 30 ? x : x / 2];
                    const int index = row.format < 30 ? pair : x % 2 ? pair % 16 : pair / 16;
                    uint8_t entry[4] = {0, 0, 0, 255};
                    if (index < row.entries) {
                        memcpy(entry, &src.palette[size_t(index * row.entrySize)], 3);
                    }
                    uint32_t colour;
                    memcpy(&colour, entry, 4);
                    ASSERT_EQ(dst.Get(x, y), Converted(argb.desc, colour, dst.desc)) << x << ", " << y;
                }
                EXPECT_TRUE(dst.MarginsUntouched());
            }
        }
    });
}

TEST(ZmBlitTest, CompressedBlocksAreDecodedAndCut)
{
    OnEachPath(12, [](Random& random) {
        for (uint32_t format = ZM_PF_DXT1; format <= ZM_PF_DXT5; ++format) {
            const int width = random.Int(1, 13), height = random.Int(1, 9);
            SCOPED_TRACE(testing::Message() << format << ": " << width << " x " << height);
            TestImage src(format, width, height, 3, random.Int(0, 1) == 1), argb(1, width, height),
                rgb(4, width, height);
            src.Fill(random);
            uint8_t* const ends = src.Line(0) + (format == ZM_PF_DXT1 ? 0 : 8);
            memcpy(ends + 2, ends, 2);  // equal, as random ones seldom are
            ASSERT_EQ(ZmDoBlit(src.desc, argb.desc), 1);
            ASSERT_EQ(ZmDoBlit(src.desc, rgb.desc), 1);
            for (int i = 0; i < width * height; ++i) {
                const int x = i % width, y = i / width;
                ASSERT_EQ(argb.Get(x, y), ArgbAt(src, x, y)) << x << ", " << y;
            }
            EXPECT_EQ(DifferentPixels(argb, rgb), 0);
            EXPECT_TRUE(argb.MarginsUntouched() && rgb.MarginsUntouched());
        }
    });
}

struct SilentErrors {
    SilentErrors() { testing::internal::CaptureStderr(); }
    ~SilentErrors() { testing::internal::GetCapturedStderr(); }
};

void FillSoftly(TestImage& image)
{
    for (int i = 0; i < image.desc.Width * image.desc.Height; ++i) {
        const int x = i % image.desc.Width, y = i / image.desc.Width;
        image.Put(x, y, uint32_t((x * 5 & 255) << 16 | (y * 6 & 255) << 8 | ((x + y) * 3 & 255)));
    }
}

TEST(ZmBlitTest, PalettesAreMadeOfTrueColoursWhateverTheMasks)
{
    const SilentErrors silent;
    SetQuantizationSamplingFactor(1);
    TestImage rgb(3, 50, 40), first(28, 50, 40);
    FillSoftly(rgb);
    first.SetPalette(256, 3);
    ASSERT_EQ(ZmDoBlit(rgb.desc, first.desc), 1);
    int sum = 0;
    for (int i = 0; i < 50 * 40; ++i) {
        const uint32_t pixel = rgb.Get(i % 50, i / 50);
        const uint8_t* const chosen = &first.palette[first.Line(i / 50)[i % 50] * 3u];
        const auto distance = [&](const uint8_t* bgr) {
            return abs(bgr[0] - int(pixel & 255)) + abs(bgr[1] - int(pixel >> 8 & 255)) +
                   abs(bgr[2] - int(pixel >> 16));
        };
        int least = 1000;
        for (int entry = 0; entry < 256; ++entry) {
            least = std::min(least, distance(&first.palette[size_t(entry) * 3]));
        }
        ASSERT_EQ(distance(chosen), least) << i;
        sum += least;
    }
    EXPECT_LT(sum, 50 * 40 * 24);
    for (const uint32_t format : {1u, 11u, 12u, 14u}) {
        TestImage other(format, 50, 40), indexed(29, 50, 40, 0, true);
        ASSERT_EQ(ZmDoBlit(rgb.desc, other.desc), 1);
        const size_t size = format == 1 ? 4 : 5;
        indexed.SetPalette(256, int(size));
        ASSERT_EQ(ZmDoBlitUpsideDown(other.desc, indexed.desc), 1);
        for (size_t i = 0; i < 256; ++i) {
            const uint8_t* const entry = &indexed.palette[i * size];
            EXPECT_EQ(memcmp(entry, &first.palette[i * 3], 3), 0);
            EXPECT_TRUE(entry[3] == 255 && (size == 4 || entry[4] == 0xA5));
        }
        for (int y = 0; y < 40; ++y) {
            EXPECT_EQ(memcmp(indexed.Line(39 - y), first.Line(y), 50), 0);
        }
        EXPECT_TRUE(indexed.MarginsUntouched());
    }
    SetQuantizationSamplingFactor(15);
}

TEST(ZmBlitTest, TheSamplingFactorIsHandedOn)
{
    TestImage rgb(3, 10, 5), indexed(28, 10, 5);
    FillSoftly(rgb);
    indexed.SetPalette(256, 3);
    const struct {
        int factor;
        const char* lastAlpha;
    } rows[] = {{1, "0.19"}, {0, "0.19"}, {-3, "0.19"}, {51, "1.000000"}};
    for (const auto& row : rows) {
        SetQuantizationSamplingFactor(row.factor);
        testing::internal::CaptureStderr();
        EXPECT_EQ(ZmDoBlit(rgb.desc, indexed.desc), 1);
        const std::string messages = testing::internal::GetCapturedStderr();
        EXPECT_NE(messages.find(std::string("final alpha=") + row.lastAlpha), std::string::npos) << messages;
    }
    SetQuantizationSamplingFactor(15);
}

using Change = std::function<void(ZmImageDescEx& src, ZmImageDescEx& dst)>;
const struct {
    const char *name, *why;
    uint32_t to;
    Change change;
} kRefused[] = {
    {"no source pixels", "source: the pixels are null", 4, [](auto& src, auto&) { src.Pixels = nullptr; }},
    {"no destination pixels", "destination: the pixels are null", 4, [](auto&, auto& dst) { dst.Pixels = nullptr; }},
    {"no width", "source: the size is not positive", 4, [](auto& src, auto& dst) { src.Width = dst.Width = 0; }},
    {"negative height", "source: the size is not positive", 4,
     [](auto& src, auto& dst) { src.Height = dst.Height = -1; }},
    {"different widths", "the sizes differ", 4, [](auto&, auto& dst) { --dst.Width; }},
    {"different heights", "the sizes differ", 4, [](auto& src, auto&) { --src.Height; }},
    {"a pitch below the line", "source: the pitch is shorter than a line", 4,
     [](auto& src, auto&) { src.BytesPerLine = 4 * 9 - 1; }},
    {"a negative one", "destination: the pitch is shorter than a line", 4,
     [](auto&, auto& dst) { dst.BytesPerLine = -(2 * 9 - 1); }},
    {"no pitch", "destination: the pitch is shorter than a line", 4, [](auto&, auto& dst) { dst.BytesPerLine = 0; }},
    {"a width that overflows", "source: the pitch is shorter than a line", 4,
     [](auto& src, auto& dst) { src.Width = dst.Width = INT_MAX; }},
    {"overlapping masks", "source: masks overlap", 4, [](auto& src, auto&) { src.GreenMask = src.BlueMask; }},
    {"a mask with a gap", "destination: a mask has a gap, more than 16 bits, or bits outside the pixel", 4,
     [](auto&, auto& dst) { dst.RedMask = 0xA000; }},
    {"a mask beyond the pixel", "destination: a mask has a gap, more than 16 bits, or bits outside the pixel", 4,
     [](auto&, auto& dst) { dst.AlphaMask = 0x10000; }},
    {"a mask of 17 bits", "source: a mask has a gap, more than 16 bits, or bits outside the pixel", 4,
     [](auto& src, auto&) { src.RedMask = 0x1FFFF00, src.GreenMask = src.AlphaMask = 0; }},
    {"no masks", "destination: there are no masks, no palette and no compressed format", 4,
     [](auto&, auto& dst) { dst.RedMask = dst.GreenMask = dst.BlueMask = 0; }},
    {"a strange depth", "source: pixels with masks have 8, 16, 24 or 32 bits", 4,
     [](auto& src, auto&) { src.BitsPerPixel = 31; }},
    {"a depth of zero", "destination: pixels with masks have 8, 16, 24 or 32 bits", 4,
     [](auto&, auto& dst) { dst.BitsPerPixel = 0; }},
    {"a huge depth", "destination: pixels with masks have 8, 16, 24 or 32 bits", 4,
     [](auto&, auto& dst) { dst.BitsPerPixel = 0x10010; }},
    {"a compressed destination", "destination: the image is compressed", 19,
     [](auto&, auto& dst) { dst.BytesPerLine = 100; }},
    {"a pitch without the last block", "source: the pitch is shorter than a line", 4,
     [](auto& src, auto&) { ZmPixelFormat2ImageDesc(ZM_PF_DXT1, src), src.BytesPerLine = 2 * 8; }},
    {"a pitch without the last half of a byte", "source: the pitch is shorter than a line", 4,
     [](auto& src, auto& dst) {
         ZmPixelFormat2ImageDesc(ZM_PF_INDEXED4, src);
         src.Palette = dst.Pixels, src.PaletteCount = 16, src.PaletteEntrySize = 4, src.BytesPerLine = 4;
     }},
    {"16 entries", "destination: a palette to be made has 256 entries, and pixels of 8 bits", 28,
     [](auto&, auto& dst) { dst.PaletteCount = 16; }},
    {"257 entries", "destination: a palette to be made has 256 entries, and pixels of 8 bits", 28,
     [](auto&, auto& dst) { dst.PaletteCount = 257; }},
    {"entries of two bytes", "destination: palette entries have fewer than three bytes", 28,
     [](auto&, auto& dst) { dst.PaletteEntrySize = 2; }},
    {"no colour map", "destination: the palette is null", 28, [](auto&, auto& dst) { dst.Palette = nullptr; }},
    {"indices of four bits", "destination: a palette to be made has 256 entries, and pixels of 8 bits", 30,
     [](auto&, auto&) {}},
    {"a palette from 16 bits", "source: a palette is made of pixels with masks and 24 or 32 bits", 28,
     [](auto& src, auto&) { ZmPixelFormat2ImageDesc(ZM_PF_16_RGB565, src); }},
    {"a palette from indices", "source: a palette is made of pixels with masks and 24 or 32 bits", 28,
     [](auto& src, auto& dst) {
         ZmPixelFormat2ImageDesc(ZM_PF_INDEXED8, src);
         src.Palette = dst.Palette, src.PaletteCount = 256, src.PaletteEntrySize = 4;
     }},
};

TEST(ZmBlitTest, DescriptorsWithoutSenseGiveZeroAndNothingIsWritten)
{
    for (const auto& row : kRefused) {
        for (auto* function : {ZmDoBlit, ZmDoBlitUpsideDown, ZmDoAlphaBlit}) {
            SCOPED_TRACE(row.name);
            TestImage src(1, 9, 5), dst(row.to, 9, 5);
            if (row.to >= ZM_PF_INDEXED8) {
                dst.SetPalette(256, 4);
            }
            const std::vector<uint8_t> palette = dst.palette;
            row.change(src.desc, dst.desc);
            EXPECT_EQ(function(src.desc, dst.desc), 0);
            EXPECT_TRUE(dst.Untouched() && dst.palette == palette);
            XString why;
            EXPECT_EQ(ZmCanBlit(src.desc, dst.desc, why), 0);
            EXPECT_STREQ(why.Text(), row.why);
        }
    }
    XString why;
    TestImage src(1, 9, 5), dst(28, 9, 5);
    dst.SetPalette(256, 4);
    EXPECT_EQ(ZmDoAlphaBlit(src.desc, dst.desc), 0);
    EXPECT_EQ(ZmCanAlphaBlit(src.desc, dst.desc, why), 0);
    EXPECT_STREQ(why.Text(), "destination: the image is indexed");
    EXPECT_EQ(ZmCanBlit(src.desc, dst.desc, why), 1);
    EXPECT_STREQ(why.Text(), "");
}

TEST(ZmBlitTest, SourcesAreComposedByTheirAlpha)
{
    OnEachPath(1, [](Random& random) {
        for (const uint32_t from : {1u, 7u, 11u, uint32_t(ZM_PF_DXT1), uint32_t(ZM_PF_DXT5)}) {
            for (const uint32_t to : {1u, 2u, 4u, 7u, 12u}) {
                SCOPED_TRACE(testing::Message() << from << " onto " << to);
                TestImage src(from, 67, 21, 1), dst(to, 67, 21, 2, true), before(to, 67, 21), argb(1, 1, 1);
                src.Fill(random);
                before.Fill(random);
                for (int x = 0; x < 67; ++x) {
                    // Opaque destinations take a separate code path; some lines are entirely opaque.
                    before.Put(x, 3, before.Get(x, 3) | before.desc.AlphaMask);
                    before.Put(x, 20, before.Get(x, 20) | before.desc.AlphaMask);
                    before.Put(x, 5, before.Get(x, 5) & ~before.desc.AlphaMask);
                }
                ASSERT_EQ(ZmDoBlit(before.desc, dst.desc), 1);
                ASSERT_EQ(ZmDoAlphaBlit(src.desc, dst.desc), 1);
                for (int i = 0; i < 67 * 21; ++i) {
                    const int x = i % 67, y = i / 67;
                    const uint32_t expected = Composed(ArgbAt(src, x, y), ArgbAt(before, x, y));
                    ASSERT_EQ(dst.Get(x, y), Converted(argb.desc, expected, dst.desc)) << x << ", " << y;
                }
                EXPECT_TRUE(dst.MarginsUntouched());
            }
        }
    });
}

TEST(ZmBlitTest, SourcesWithoutAlphaAreCopied)
{
    Random random(3);
    TestImage src(4, 20, 3), dst(10, 20, 3);
    src.Fill(random);
    EXPECT_EQ(ZmDoAlphaBlit(src.desc, dst.desc), 1);
    EXPECT_EQ(DifferentPixels(src, dst), 0);
}

}  // namespace

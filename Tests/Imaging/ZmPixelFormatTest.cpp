#include "ZmMath.h"

#include <gtest/gtest.h>

#include <stddef.h>
#include <string.h>

namespace {

// Engine modules share the record in memory.
static_assert(offsetof(ZmImageDescEx, BytesPerLine) == 16 && offsetof(ZmImageDescEx, AlphaMask) == 36);
static_assert(offsetof(ZmImageDescEx, PaletteCount) == 42);
static_assert(offsetof(ZmImageDescEx, Palette) == (sizeof(void*) == 4 ? 44 : 48));
static_assert(sizeof(ZmImageDescEx) == (sizeof(void*) == 4 ? 52 : 64) && sizeof(ZM_PIXELFORMAT) == 4);

struct Layout {
    int32_t bits;
    uint32_t red, green, blue, alpha;
};

/// Deliberately a second copy: files contain these numbers.
const struct {
    const char* name;
    uint32_t format;
    Layout layout;
    uint32_t compressed, readsBackAs;
} kFormats[] = {
    {"32 bits ARGB 8888", 1, {32, 0xFF0000, 0xFF00, 0xFF, 0xFF000000}, 0, 1},
    {"32 bits RGB  888", 2, {32, 0xFF0000, 0xFF00, 0xFF, 0}, 0, 2},
    {"24 bits RGB  888", 3, {24, 0xFF0000, 0xFF00, 0xFF, 0}, 0, 3},
    {"16 bits RGB  565", 4, {16, 0xF800, 0x7E0, 0x1F, 0}, 0, 4},
    {"16 bits RGB  555", 5, {16, 0x7C00, 0x3E0, 0x1F, 0}, 0, 5},
    {"16 bits ARGB 1555", 6, {16, 0x7C00, 0x3E0, 0x1F, 0x8000}, 0, 6},
    {"16 bits ARGB 4444", 7, {16, 0xF00, 0xF0, 0xF, 0xF000}, 0, 7},
    {"8 bits RGB  332", 8, {8, 0xE0, 0x1C, 0x03, 0}, 0, 8},
    {"8 bits ARGB 2222", 9, {8, 0x30, 0x0C, 0x03, 0xC0}, 0, 9},
    {"32 bits ABGR 8888", 10, {32, 0xFF, 0xFF00, 0xFF0000, 0xFF000000}, 0, 10},
    {"32 bits RGBA 8888", 11, {32, 0xFF000000, 0xFF0000, 0xFF00, 0xFF}, 0, 11},
    {"32 bits BGRA 8888", 12, {32, 0xFF00, 0xFF0000, 0xFF000000, 0xFF}, 0, 12},
    {"32 bits BGR  888", 13, {32, 0xFF, 0xFF00, 0xFF0000, 0}, 0, 13},
    {"24 bits BGR  888", 14, {24, 0xFF, 0xFF00, 0xFF0000, 0}, 0, 14},
    {"16 bits BGR  565", 15, {16, 0x1F, 0x7E0, 0xF800, 0}, 0, 15},
    {"16 bits BGR  555", 16, {16, 0x1F, 0x3E0, 0x7C00, 0}, 0, 16},
    {"16 bits ABGR 1555", 17, {16, 0x1F, 0x3E0, 0x7C00, 0x8000}, 0, 17},
    {"16 bits ABGR 4444", 18, {16, 0xF, 0xF0, 0xF00, 0xF000}, 0, 18},
    {"Compressed DXT1", 19, {0, 0, 0, 0, 0}, 19, 19},
    {"Compressed DXT2", 20, {0, 0, 0, 0, 0}, 20, 20},
    {"Compressed DXT3", 21, {0, 0, 0, 0, 0}, 21, 21},
    {"Compressed DXT4", 22, {0, 0, 0, 0, 0}, 22, 22},
    {"Compressed DXT5", 23, {0, 0, 0, 0, 0}, 23, 23},
    {"V8U8 BumpMap", 24, {16, 0xFF, 0xFF00, 0, 0}, 24, 24},
    {"V16U16 BumpMap", 25, {32, 0xFFFF, 0xFFFF0000, 0, 0}, 25, 25},
    {"L6V5U5 BumpMap", 26, {16, 0x1F, 0x3E0, 0xFC00, 0}, 26, 26},
    {"L8V8U8 BumpMap", 27, {32, 0xFF, 0xFF00, 0xFF0000, 0}, 27, 13},
    {"", 28, {8, 0, 0, 0, 0}, 0, 0},
    {"", 29, {8, 0, 0, 0, 0}, 0, 0},
    {"", 30, {4, 0, 0, 0, 0}, 0, 0},
    {"", 31, {4, 0, 0, 0, 0}, 0, 0},
};

ZmImageDescEx Filled()
{
    ZmImageDescEx desc;
    memset(static_cast<void*>(&desc), 0x5A, sizeof(desc));
    return desc;
}

void Set(ZmImageDescEx& desc, const Layout& layout, uint32_t compressed)
{
    desc.CompressedFormat = compressed;
    desc.BitsPerPixel = layout.bits;
    desc.RedMask = layout.red;
    desc.GreenMask = layout.green;
    desc.BlueMask = layout.blue;
    desc.AlphaMask = layout.alpha;
}

bool Same(const ZmImageDescEx& a, const ZmImageDescEx& b)
{
    return memcmp(&a, &b, sizeof(a)) == 0;
}

TEST(ZmPixelFormatTest, FormatsGiveTheirLayoutAndReadBack)
{
    for (const auto& row : kFormats) {
        SCOPED_TRACE(testing::Message() << row.format << " " << row.name);
        const ZM_PIXELFORMAT format = ZM_PIXELFORMAT(row.format);
        ZmImageDescEx desc = Filled(), expected = Filled();
        Set(expected, row.layout, row.compressed);
        ZmPixelFormat2ImageDesc(format, desc);
        EXPECT_TRUE(Same(desc, expected));
        EXPECT_EQ(ZmImageDesc2PixelFormat(desc), row.readsBackAs);
        EXPECT_STREQ(ZmPixelFormat2String(format), row.name);
    }
    EXPECT_EQ(ZM_PF_16_ABGR4444, 18u);
    EXPECT_EQ(ZM_PF_BUMP_L8V8U8, 27u);
    EXPECT_EQ(ZM_PF_INDEXED4_B, 31u);
}

TEST(ZmPixelFormatTest, FormatsWithoutRecordHaveNoName)
{
    EXPECT_STREQ(ZmPixelFormat2String(ZM_PF_UNKNOWN), "");
    EXPECT_STREQ(ZmPixelFormat2String(ZM_PIXELFORMAT(32)), "");
    EXPECT_STREQ(ZmPixelFormat2String(ZM_PIXELFORMAT(0xFFFFFFFF)), "");
}

TEST(ZmPixelFormatTest, UnknownChangesNothingAndLargerValuesOnlyTheCompressedFormat)
{
    ZmImageDescEx desc = Filled(), expected = Filled();
    ZmPixelFormat2ImageDesc(ZM_PF_UNKNOWN, desc);
    EXPECT_TRUE(Same(desc, expected));
    expected.CompressedFormat = 0;
    for (const uint32_t format : {32u, 0x80000001u, 0xFFFFFFFFu}) {
        desc = Filled();
        ZmPixelFormat2ImageDesc(ZM_PIXELFORMAT(format), desc);
        EXPECT_TRUE(Same(desc, expected)) << format;
    }
}

const struct {
    const char* name;
    Layout layout;
    uint32_t compressed, expected;
} kSearches[] = {
    {"alpha tells ARGB", {32, 0xFF0000, 0xFF00, 0xFF, 0xFF000000}, 0, 1},
    {"a strange alpha is no colour format", {32, 0xFF0000, 0xFF00, 0xFF, 0x0F000000}, 0, 0},
    {"bump maps ignore alpha", {16, 0xFF, 0xFF00, 0, 0x1234}, 0, 24},
    {"the fifth bump channel too", {32, 0xFF, 0xFF00, 0xFF0000, 0x01000000}, 0, 27},
    {"masks come before the compressed format", {16, 0xF800, 0x7E0, 0x1F, 0}, 21, 4},
    {"bump masks come before it", {16, 0xFF, 0xFF00, 0, 0}, 19, 24},
    {"compressed format beside other masks", {16, 1, 2, 4, 8}, 21, 21},
    {"bump format beside other masks", {16, 1, 2, 4, 8}, 27, 27},
    {"a colour format is no compressed one", {0, 0, 0, 0, 0}, 18, 0},
    {"nor is an indexed one", {8, 0, 0, 0, 0}, 28, 0},
    {"the low 16 bits of the depth count", {0x10000 + 24, 0xFF0000, 0xFF00, 0xFF, 0}, 0, 3},
    {"a negative depth with the same low bits", {int32_t(0xFFFF0020), 0xFF, 0xFF00, 0xFF0000, 0}, 0, 13},
    {"not the low 8 bits", {0x100 + 24, 0xFF0000, 0xFF00, 0xFF, 0}, 0, 0},
    {"the record of the unknown format is not searched", {0, 0, 0, 0, 0}, 0, 0},
};

TEST(ZmPixelFormatTest, SearchComparesDepthAndMasksInOrder)
{
    for (const auto& row : kSearches) {
        SCOPED_TRACE(row.name);
        ZmImageDescEx desc = Filled();
        Set(desc, row.layout, row.compressed);
        EXPECT_EQ(ZmImageDesc2PixelFormat(desc), row.expected);
    }
}

TEST(ZmPixelFormatTest, DepthsHaveUsualMasks)
{
    const Layout untouched = {0, 1, 2, 4, 8};
    const struct {
        int32_t bits;
        Layout masks;
    } rows[] = {
        {15, {0, 0x7C00, 0x03E0, 0x001F, 0}},
        {16, {0, 0x7C00, 0x03E0, 0x001F, 0}},
        {24, {0, 0xFF0000, 0xFF00, 0xFF, 0}},
        {32, {0, 0xFF0000, 0xFF00, 0xFF, 0xFF000000}},
        {8, untouched},
        {0, untouched},
        {-16, untouched},
    };
    for (const auto& row : rows) {
        ZmImageDescEx desc = Filled(), expected = Filled();
        Set(desc, untouched, 7);
        Set(expected, row.masks, 7);
        desc.BitsPerPixel = expected.BitsPerPixel = row.bits;
        ZmBppToMask(desc);
        EXPECT_TRUE(Same(desc, expected)) << row.bits;
    }
}

TEST(ZmPixelFormatTest, MasksAreTakenApart)
{
    const struct {
        unsigned long mask, count, shift;
    } rows[] = {
        {0, 0, 0},           {1, 1, 0},           {0x0F0F, 4, 0}, {0x0F00, 4, 8},
        {0x80000000, 1, 31}, {0xFFFFFFFF, 32, 0}, {0xB0, 2, 4},   {~0ul, 8 * sizeof(long), 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(GetBitCount(row.mask), row.count) << row.mask;
        EXPECT_EQ(GetBitShift(row.mask), row.shift) << row.mask;
    }
    ZmImageDescEx desc = Filled();
    Set(desc, {16, 0x7C00, 0x03C0, 0x0007, 0x8000}, 0);
    unsigned long r, g, b, a;
    ZmGetBitCounts(desc, r, g, b, a);
    EXPECT_TRUE(r == 5 && g == 4 && b == 3 && a == 1);
    ZmGetBitShifts(desc, r, g, b, a);
    EXPECT_TRUE(r == 10 && g == 6 && b == 0 && a == 15);
}

TEST(ZmPixelFormatTest, TheSamplingFactorStartsAtFifteenAndIsKept)
{
    EXPECT_EQ(GetQuantizationSamplingFactor(), 15);
    for (const int factor : {1, 30, 0, -7}) {
        SetQuantizationSamplingFactor(factor);
        EXPECT_EQ(GetQuantizationSamplingFactor(), factor);
    }
    SetQuantizationSamplingFactor(15);
}

}  // namespace

#include "ZmImageOptions.h"

#include "Imaging/ReferenceFilter.h"
#include "Imaging/TestImage.h"
#include "Support/Paths.h"
#include "ZmNormalMap.h"
#include "ZmResize.h"

namespace {

/// One way to average; the tests pair them with filters, edges and sizes.
struct Meaning {
    const char* name;
    ZMCHANNELS channels;
    ZMLIGHT light;
    uint32_t from, to;
};

const Meaning kMeanings[] = {
    {"colour", ZMCHANNELS_COLOR, ZMLIGHT_STORED, 1, 10},
    {"colour without alpha", ZMCHANNELS_COLOR, ZMLIGHT_STORED, 13, 1},
    {"colour in linear light", ZMCHANNELS_COLOR, ZMLIGHT_LINEAR, 1, 1},
    {"premultiplied", ZMCHANNELS_PREMULTIPLIED, ZMLIGHT_STORED, 1, 11},
    {"premultiplied in linear light", ZMCHANNELS_PREMULTIPLIED, ZMLIGHT_LINEAR, 12, 1},
    {"data", ZMCHANNELS_DATA, ZMLIGHT_STORED, 1, 1},
    {"data in linear light", ZMCHANNELS_DATA, ZMLIGHT_LINEAR, 1, 2},
    {"normals, which are no light", ZMCHANNELS_NORMALS, ZMLIGHT_LINEAR, 1, 10},
    {"slopes of 16 bits", ZMCHANNELS_COLOR, ZMLIGHT_STORED, 25, 25},
    {"slopes of 8 bits with luminance", ZMCHANNELS_NORMALS, ZMLIGHT_LINEAR, 27, 27},
};

constexpr ZMFILTER kFilters[] = {ZMFILTER_DEFAULT,     ZMFILTER_BOX,      ZMFILTER_BILINEAR, ZMFILTER_MITCHELL,
                                 ZMFILTER_CATMULL_ROM, ZMFILTER_LANCZOS3, ZMFILTER_KAISER};
constexpr ZMEDGES kEdges[] = {ZMEDGES_CLAMP, ZMEDGES_WRAP, ZMEDGES_MIRROR};

/// Alpha that is often none or full, and vectors that are never short.
void FillFor(const Meaning& meaning, TestImage& image, Random& random)
{
    image.Fill(random);
    for (int i = 0; i < image.desc.Width * image.desc.Height; ++i) {
        const int x = i % image.desc.Width, y = i / image.desc.Width, alpha = random.Int(0, 3);
        const uint32_t mask = image.desc.AlphaMask, pixel = image.Get(x, y);
        uint32_t changed = alpha == 0 ? pixel & ~mask : alpha == 1 ? pixel | mask : pixel;
        if (meaning.channels == ZMCHANNELS_NORMALS && meaning.from != 27) {
            changed |= image.desc.BlueMask;
        }
        image.Put(x, y, changed);
    }
}

TEST(ZmImageOptionsTest, AllFiltersAgreeWithTheReference)
{
    const struct {
        int width, height, newWidth, newHeight;
    } rows[] = {{7, 5, 3, 9}, {8, 6, 4, 3}, {1, 9, 4, 2}, {13, 2, 5, 2}, {3, 3, 19, 1}, {40, 1, 1, 3}, {2, 700, 3, 1}};
    OnEachPath(1, [&](Random& random) {
        for (const auto& row : rows) {
            for (const Meaning& meaning : kMeanings) {
                TestImage src(meaning.from, row.width, row.height, 3, true);
                FillFor(meaning, src, random);
                for (const ZMFILTER filter : kFilters) {
                    for (const ZMEDGES edges : kEdges) {
                        SCOPED_TRACE(testing::Message() << meaning.name << ", filter " << filter << ", edges " << edges
                                                        << ", " << row.width << " x " << row.height << " to "
                                                        << row.newWidth << " x " << row.newHeight);
                        const ZmImageOptions options = {meaning.channels, meaning.light, filter, edges};
                        TestImage dst(meaning.to, row.newWidth, row.newHeight);
                        ASSERT_EQ(ZmResizeImage32(src.desc, dst.desc, options), 1);
                        ASSERT_LE(WorstError(src, dst, options), kFilterRounding);
                        EXPECT_TRUE(dst.MarginsUntouched());
                    }
                }
            }
        }
    });
}

TEST(ZmImageOptionsTest, AllPathsGiveTheSamePixels)
{
    const struct {
        int width, height, newWidth, newHeight;
    } rows[] = {{61, 33, 29, 15}, {30, 20, 77, 41}, {1200, 3, 5, 700}, {3, 1200, 9, 4}};
    for (const auto& row : rows) {
        for (const Meaning& meaning : kMeanings) {
            for (const ZMFILTER filter : kFilters) {
                SCOPED_TRACE(testing::Message()
                             << meaning.name << ", filter " << filter << ", " << row.width << " to " << row.newWidth);
                const ZmImageOptions options = {meaning.channels, meaning.light, filter, ZMEDGES_WRAP};
                TestImage src(meaning.from, row.width, row.height), expected(meaning.to, row.newWidth, row.newHeight);
                Random random(1);
                FillFor(meaning, src, random);
                {
                    const PathGuard guard(AllPaths().front());
                    ASSERT_EQ(ZmResizeImage32(src.desc, expected.desc, options), 1);
                }
                OnEachPath(1, [&](Random&) {
                    TestImage dst(meaning.to, row.newWidth, row.newHeight);
                    ASSERT_EQ(ZmResizeImage32(src.desc, dst.desc, options), 1);
                    EXPECT_TRUE(dst.SameBytes(expected));
                });
            }
        }
    }
}

/// Any weights that do not add up to 1 would show in channels of 16 bits.
TEST(ZmImageOptionsTest, FlatColoursStayFlat)
{
    for (const uint32_t format : {1u, 13u, 25u, 27u}) {
        for (const uint32_t pixel : {0xFFFFFFFFu, 0x80017FFEu, 0x01FE8081u, 0xFFFF8000u}) {
            for (const ZMFILTER filter : kFilters) {
                for (const int size : {1, 3, 50, 301, 2000}) {
                    SCOPED_TRACE(testing::Message() << std::hex << pixel << std::dec << ", format " << format
                                                    << ", filter " << filter << ", to " << size);
                    TestImage src(format, 301, 3), dst(format, size, 2);
                    for (int i = 0; i < 903; ++i) {
                        src.Put(i % 301, i / 301, pixel);
                    }
                    const ZmImageOptions options = {ZMCHANNELS_COLOR, ZMLIGHT_LINEAR, filter, ZMEDGES_MIRROR};
                    ASSERT_EQ(ZmResizeImage32(src.desc, dst.desc, options), 1);
                    const uint32_t masks =
                        dst.desc.RedMask | dst.desc.GreenMask | dst.desc.BlueMask | dst.desc.AlphaMask;
                    for (int x = 0; x < size; ++x) {
                        ASSERT_EQ(dst.Get(x, x % 2), pixel & masks);
                    }
                }
            }
        }
    }
}

TEST(ZmImageOptionsTest, LevelsOfNormalMapsPointWhereTheirPixelsDo)
{
    TestImage heights(1, 4, 4), normals(1, 4, 4), level(1, 2, 2);
    for (int i = 0; i < 16; ++i) {
        heights.Put(i % 4, i / 4, 0);
    }
    ASSERT_EQ(ZmConvertToNormalMap(heights.desc, normals.desc, 0xFF), 1);
    ASSERT_EQ(normals.Get(0, 0), 0x008080FFu);
    ZmImageOptions options;
    options.Channels = ZMCHANNELS_NORMALS;
    ASSERT_EQ(ZmGenerateMipMap(normals.desc, level.desc, options), 1);
    EXPECT_EQ(level.Get(1, 1), 0x008080FFu);

    // Two slopes of 45 degrees meet in the middle, and opposite vectors point upwards.
    const uint32_t meeting[4] = {0xFFDA80DA, 0x7FDA80DA, 0xFF2680DA, 0x7F2680DA};
    const uint32_t opposite[4] = {0xFFFF7FFF, 0xFF008000, 0xFF00FF80, 0xFFFF007F};
    TestImage four(1, 2, 2), one(1, 1, 1);
    for (int i = 0; i < 4; ++i) {
        four.Put(i % 2, i / 2, meeting[i]);
    }
    ASSERT_EQ(ZmGenerateMipMap(four.desc, one.desc, options), 1);
    EXPECT_EQ(one.Get(0, 0), 0xBF8080FFu);
    for (int i = 0; i < 4; ++i) {
        four.Put(i % 2, i / 2, opposite[i]);
    }
    ASSERT_EQ(ZmGenerateMipMap(four.desc, one.desc, options), 1);
    EXPECT_EQ(one.Get(0, 0), 0xFF8080FFu);
}

TEST(ZmImageOptionsTest, NormalsWithoutBlueGetTheirThirdCoordinate)
{
    TestImage src(1, 2, 2), dst(1, 1, 1);
    src.desc.BlueMask = 0;
    for (int i = 0; i < 4; ++i) {
        src.Put(i % 2, i / 2, 0xFF8080FF);
    }
    const ZmImageOptions options = {ZMCHANNELS_NORMALS, ZMLIGHT_STORED, ZMFILTER_DEFAULT, ZMEDGES_CLAMP};
    ASSERT_EQ(ZmGenerateMipMap(src.desc, dst.desc, options), 1);
    EXPECT_EQ(dst.Get(0, 0), 0xFF8080FFu);
    src.desc.GreenMask = 0;
    EXPECT_EQ(ZmGenerateMipMap(src.desc, dst.desc, options), 0);
}

TEST(ZmImageOptionsTest, SlopesAreSignedWithoutOptions)
{
    const struct {
        const char* name;
        uint32_t format, pixels[4], expected;
    } rows[] = {
        {"V8U8, +1 and -1", 24, {0x7F7F, 0x7F81, 0x8181, 0x817F}, 0x0000},
        {"V8U8, -1 to -4 units", 24, {0xFFFF, 0xFEFE, 0xFDFD, 0xFCFC}, 0xFEFE},
        {"V8U8, lowest", 24, {0x8080, 0x8080, 0x8080, 0x8080}, 0x8080},
        {"V16U16", 25, {0x7FFF0001, 0x8001FFFF, 0x7FFF0003, 0x8001FFFD}, 0x00000000},
        {"L6V5U5, luminance is unsigned", 26, {0xFC2F, 0xFFF1, 0x0020, 0x03E0}, 0x8000},
        {"L8V8U8", 27, {0xFF7F01, 0xFF81FF, 0x017F01, 0x0181FF}, 0x800000},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        TestImage src(row.format, 2, 2), dst(row.format, 1, 1);
        for (int i = 0; i < 4; ++i) {
            src.Put(i % 2, i / 2, row.pixels[i]);
        }
        ASSERT_EQ(ZmGenerateMipMap(src.desc, dst.desc), 1);
        EXPECT_EQ(dst.Get(0, 0), row.expected);
    }
}

TEST(ZmImageOptionsTest, WideChannelsKeepTheirBits)
{
    const struct {
        const char* name;
        ZMCHANNELS channels;
        uint32_t pixels[4], expected;  ///< two bits of alpha above three channels of ten
    } rows[] = {
        {"data", ZMCHANNELS_DATA, {0xFFF00001, 0xBFF00001, 0x7FF00003, 0x7FC00003}, 0xBFE00002},
        {"colour", ZMCHANNELS_COLOR, {0xC0100401, 0xC0300403, 0x3FFFFFFF, 0x3FFFFFFF}, 0x80200402},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        TestImage src(1, 2, 2), dst(1, 1, 1);
        for (TestImage* image : {&src, &dst}) {
            image->desc.AlphaMask = 0xC0000000;
            image->desc.RedMask = 0x3FF00000;
            image->desc.GreenMask = 0x000FFC00;
            image->desc.BlueMask = 0x000003FF;
        }
        for (int i = 0; i < 4; ++i) {
            src.Put(i % 2, i / 2, row.pixels[i]);
        }
        const ZmImageOptions options = {row.channels, ZMLIGHT_STORED, ZMFILTER_BILINEAR, ZMEDGES_CLAMP};
        ASSERT_EQ(ZmResizeImage32(src.desc, dst.desc, options), 1);
        EXPECT_EQ(dst.Get(0, 0), row.expected);
    }
}

TEST(ZmImageOptionsTest, ACheckerHasHalfTheLight)
{
    TestImage src(1, 6, 4), dst(1, 3, 2), rgb(4, 2, 2), level(4, 1, 1);
    for (int i = 0; i < 24; ++i) {
        src.Put(i % 6, i / 6, (i + i / 6) % 2 ? 0xFFFFFFFF : 0xFF000000);
    }
    for (int i = 0; i < 4; ++i) {
        rgb.Put(i % 2, i / 2, i % 3 ? 0xFFFF : 0);
    }
    ZmImageOptions options;
    options.Light = ZMLIGHT_LINEAR;
    ASSERT_EQ(ZmGenerateMipMap(src.desc, dst.desc, options), 1);
    EXPECT_EQ(dst.Get(2, 1), 0xFFBCBCBCu);
    ASSERT_EQ(ZmGenerateMipMap(rgb.desc, level.desc, options), 1);
    EXPECT_EQ(level.Get(0, 0), 0xBDD7u);  // bc in five and six bits
}

/// The light of one byte beside black, in parts of the whole width: every byte is read and every one is written.
TEST(ZmImageOptionsTest, LightIsExactToRounding)
{
    for (int byte = 0; byte < 256; ++byte) {
        TestImage src(1, 1, 2), dst(1, 1, 397);
        src.Put(0, 0, 0xFF000000);
        src.Put(0, 1, 0xFF000000 | uint32_t(byte) * 0x010101);
        const ZmImageOptions options = {ZMCHANNELS_COLOR, ZMLIGHT_LINEAR, ZMFILTER_BILINEAR, ZMEDGES_CLAMP};
        ASSERT_EQ(ZmResizeImage32(src.desc, dst.desc, options), 1);
        ASSERT_LE(WorstError(src, dst, options), kExactRounding) << byte;
    }
}

TEST(ZmImageOptionsTest, DefaultsAreThoseWithoutOptions)
{
    Random random(1);
    for (const uint32_t format : {1u, 2u, 25u}) {
        for (const int size : {3, 7, 20}) {
            TestImage src(format, 7, 8), plain(format, size, 4), optional(format, size, 4);
            src.Fill(random);
            ASSERT_EQ(ZmResizeImage32(src.desc, plain.desc), 1);
            ASSERT_EQ(ZmResizeImage32(src.desc, optional.desc, ZmImageOptions()), 1);
            EXPECT_TRUE(plain.SameBytes(optional));
        }
    }
}

TEST(ZmImageOptionsTest, OnlyMitchellSmoothsEqualSizes)
{
    Random random(1);
    TestImage src(1, 5, 4);
    src.Fill(random);
    for (const ZMFILTER filter : kFilters) {
        SCOPED_TRACE(testing::Message() << "filter " << filter);
        const ZmImageOptions options = {ZMCHANNELS_DATA, ZMLIGHT_STORED, filter, ZMEDGES_WRAP};
        TestImage dst(1, 5, 4);
        ASSERT_EQ(ZmResizeImage32(src.desc, dst.desc, options), 1);
        EXPECT_LE(WorstError(src, dst, options), kFilterRounding);
        EXPECT_EQ(dst.SameBytes(src), filter != ZMFILTER_MITCHELL);
    }
}

TEST(ZmImageOptionsTest, UnknownOptionsGiveZero)
{
    TestImage src(1, 2, 2), dst(1, 1, 1), same(1, 2, 2);
    ZmImageOptions options[4];
    options[0].Channels = ZMCHANNELS(4);
    options[1].Light = ZMLIGHT(2);
    options[2].Filter = ZMFILTER(7);
    options[3].Edges = ZMEDGES(3);
    for (const ZmImageOptions& wrong : options) {
        EXPECT_EQ(ZmResizeImage32(src.desc, dst.desc, wrong), 0);
        EXPECT_EQ(ZmResizeImage32(src.desc, same.desc, wrong), 0);
        EXPECT_EQ(ZmGenerateMipMap(src.desc, dst.desc, wrong), 0);
    }
    EXPECT_TRUE(dst.Untouched() && same.Untouched());
}

}  // namespace

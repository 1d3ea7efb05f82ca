#include "Support/Paths.h"
#include "Support/Strided.h"

#include <algorithm>

namespace {

TEST(ZmColorTest, HalfRoundsByPlace)
{
    EXPECT_EQ(RGBAFTOCOLOR(1, 1, 1, 1), 0xFFFFFFFFu);
    EXPECT_EQ(RGBAFTOCOLOR(0.5f, 0, 0.5f, 0), 0x007F0080u);
    EXPECT_EQ(RGBAFTOCOLOR(0, 0.5f, 0, 0.5f), 0x80007F00u);
}

/// numerator / 256, rounded to nearest, ties to even.
int64_t RoundedQuotient(int64_t numerator)
{
    const int64_t floor = numerator >> 8, rest = numerator & 0xFF;
    return floor + (rest > 128 || (rest == 128 && (floor & 1)));
}

TEST(ZmColorTest, FloatsWrapOutsideOfZeroToOne)
{
    for (int i = -700; i <= 900; ++i) {
        const float f = float(i) / 256;  // every product is exact
        const uint32_t byte = uint32_t(RoundedQuotient(i * 255)) & 0xFF;
        const uint32_t red = uint32_t(RoundedQuotient(i * int64_t(0xFF0000))) & 0xFF0000;
        const uint32_t green = uint32_t(RoundedQuotient(i * int64_t(0xFF00))) & 0xFF00;
        EXPECT_EQ(RGBAFTOCOLOR(f, 0, 0, f), byte << 24 | red) << f;
        EXPECT_EQ(RGBAFTOCOLOR(0, f, f, 0), green | byte) << f;
    }
}

TEST(ZmColorTest, RecordsAreRoundedAndClampedAboveOnEveryPath)
{
    OnEachPath(1, [](Random&) {
        for (int i = 0; i <= 600; ++i) {
            const float f = float(i) / 256;
            const uint32_t byte = uint32_t(std::min<int64_t>(RoundedQuotient(i * 255), 255));
            const ZmColor redAndBlue(f, 0, f, 0), greenAndAlpha(0, f, 0, f);
            EXPECT_EQ(RGBAFTOCOLOR(&redAndBlue), byte << 16 | byte) << f;
            EXPECT_EQ(RGBAFTOCOLOR(&greenAndAlpha), byte << 24 | byte << 8) << f;
        }
        const ZmColor large(1e9f, 1e30f, INFINITY, 1.002f);
        EXPECT_EQ(RGBAFTOCOLOR(&large), 0xFFFFFFFFu);
    });
}

TEST(ZmColorTest, NegativeComponentsDifferByPath)
{
    OnEachPath(1, [](Random&) {
        const ZmColor negative(-1, -0.01f, -1e9f, -1e30f), nearZero(-0.001f, -0.0f, 0, -0.0019f);
        EXPECT_EQ(RGBAFTOCOLOR(&negative), OnVectorPath() ? 0u : 0xFFFFFFFFu);
        EXPECT_EQ(RGBAFTOCOLOR(&nearZero), 0u);
    });
}

TEST(ZmColorTest, BytesComeBackFromColours)
{
    for (uint32_t byte = 0; byte < 256; ++byte) {
        const uint32_t packed = byte | (byte ^ 0x55) << 8 | (255 - byte) << 16 | (byte * 7 & 0xFF) << 24;
        const ZmColor colour = ZmUnpackedColor(packed);
        EXPECT_EQ(colour.b, float(double(byte) / 255));
        EXPECT_EQ(colour.a, float(double(packed >> 24) / 255));
        EXPECT_EQ(RGBAFTOCOLOR(&colour), packed);
    }
}

TEST(ZmColorTest, ArraysAreThoseOfSingleColours)
{
    constexpr float kOdd[] = {-1, -0.001f, 0.5f, 1.5f, 1e30f, -1e30f, NAN, INFINITY};
    OnEachPath(2, [&](Random& random) {
        const auto component = [&] { return random.Int(0, 2) ? random.Float(1.2f) : kOdd[random.Int(0, 7)]; };
        for (size_t count = 0; count < 20; ++count) {
            std::vector<ZmColor> colours(count);
            std::vector<uint32_t> packed(count);
            for (size_t i = 0; i < count; ++i) {
                const float r = component(), g = component(), b = component(), a = component();
                colours[i] = ZmColor(r, g, b, a);
                packed[i] = RGBAFTOCOLOR(&colours[i]);
            }
            for (const unsigned gap : {0u, 3u}) {
                Strided<ZmColor> source(colours, 16 + gap), back(colours, 16 + 2 * gap);
                Strided<uint32_t> res(std::vector<uint32_t>(count, 1), 4 + gap);
                ZmPackColorsStrided(res.Data(), source.Data(), int(count));
                ZmUnpackColorsStrided(back.Data(), res.Data(), int(count));
                for (size_t i = 0; i < count; ++i) {
                    EXPECT_EQ(res[i], packed[i]) << i << " of " << count;
                    const ZmColor expected = ZmUnpackedColor(packed[i]), found = back[i];
                    EXPECT_EQ(memcmp(&found, &expected, sizeof(found)), 0) << i << " of " << count;
                }
                EXPECT_TRUE(res.GapsAreIntact() && back.GapsAreIntact());
            }
        }
    });
}

}  // namespace

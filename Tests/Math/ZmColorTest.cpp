#include "Support/Paths.h"

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

}  // namespace

#include "ZmColor.h"

#include "Math/ColorKernels.h"
#include "Platform/FeatureWord.h"

#include <math.h>

namespace {

// Goes through 64 bits, so that values far outside 0 to 1 wrap in the same way as nearby ones.
uint32_t RoundedBits(float scaled)
{
    return uint32_t(llrintf(scaled));
}

}  // namespace

uint32_t RGBAFTOCOLOR(float r, float g, float b, float a)
{
    // Red and green are rounded at their position in the word and then masked, which loses the rounding: 0.5 gives 0x7F
    // there but 0x80 in blue. Callers depend on it, so keep it (ZmColorTest, HalfRoundsByPlace).
    return RoundedBits(a * 255.0f) << 24 | (RoundedBits(r * 16711680.0f) & 0xFF0000u) |
           (RoundedBits(g * 65280.0f) & 0xFF00u) | (RoundedBits(b * 255.0f) & 0xFFu);
}

uint32_t RGBAFTOCOLOR(const ZmColor* c)
{
    return zm::Dispatch(zm::PackSse, zm::PackScalar, *c);
}

void ZmPackColorsStrided(const ZmStridedData& res, const ZmStridedData& colours, int count)
{
    zm::DispatchWide(zm::avx2::PackColors, zm::PackColors<zm::SseLanes>, zm::PackColors<zm::ScalarLanes>,
                     zm::PairOf(res, colours, count));
}

void ZmUnpackColorsStrided(const ZmStridedData& res, const ZmStridedData& packed, int count)
{
    zm::DispatchWide(zm::avx2::UnpackColors, zm::UnpackColors<zm::SseLanes>, zm::UnpackColors<zm::ScalarLanes>,
                     zm::PairOf(res, packed, count));
}

#include "ZmColor.h"

#include "Platform/FeatureWord.h"

#include <emmintrin.h>
#include <math.h>

namespace {

uint32_t Packed(uint32_t a, uint32_t r, uint32_t g, uint32_t b)
{
    return a << 24 | r << 16 | g << 8 | b;
}

// Goes through 64 bits, so that values far outside 0 to 1 wrap in the same way as nearby ones.
uint32_t RoundedBits(float scaled)
{
    return uint32_t(llrintf(scaled));
}

// The comparison is unsigned, so negative components become 255. Existing images made without the vector path depend on
// this (ZmColorTest, NegativeComponentsDifferByPath).
uint32_t ClampedByte(float component)
{
    const uint32_t rounded = uint32_t(_mm_cvtss_si32(_mm_set_ss(component * 255.0f)));
    return rounded > 255 ? 255 : rounded;
}

uint32_t PackScalar(const ZmColor& c)
{
    return Packed(ClampedByte(c.a), ClampedByte(c.r), ClampedByte(c.g), ClampedByte(c.b));
}

uint32_t PackSse(const ZmColor& c)
{
    // Clamped from above before rounding, since the conversion cannot represent large values; packing saturates those
    // below 0.
    const __m128 scaled = _mm_mul_ps(_mm_loadu_ps(&c.r), _mm_set1_ps(255.0f));
    const __m128i rgba = _mm_cvtps_epi32(_mm_min_ps(scaled, _mm_set1_ps(255.0f)));
    const __m128i bgra = _mm_shuffle_epi32(rgba, _MM_SHUFFLE(3, 0, 1, 2));
    const __m128i words = _mm_packs_epi32(bgra, bgra);
    return uint32_t(_mm_cvtsi128_si32(_mm_packus_epi16(words, words)));
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
    return zm::Dispatch(PackSse, PackScalar, *c);
}

#include "Imaging/Compose.h"

#include "Platform/FeatureWord.h"

#include <emmintrin.h>
#include <string.h>

namespace zm {
namespace {

/// n / 255, rounded to nearest; exact for all n up to 255 * 255.
uint32_t Over255(uint32_t n)
{
    return (n + 128 + ((n + 128) >> 8)) >> 8;
}

uint32_t ByteOf(uint32_t pixel, int shift)
{
    return pixel >> shift & 255;
}

uint32_t OverOpaque(uint32_t under, uint32_t over)
{
    const uint32_t alpha = over >> 24, rest = 255 - alpha;
    uint32_t res = 0xFF000000;
    for (int shift = 0; shift < 24; shift += 8) {
        res |= Over255(ByteOf(over, shift) * alpha + ByteOf(under, shift) * rest) << shift;
    }
    return res;
}

/// Weights are fractions of 255 * 255, so that nothing is rounded before the final division.
uint32_t OverTranslucent(uint32_t under, uint32_t over)
{
    const uint32_t weight = (over >> 24) * 255, rest = (under >> 24) * (255 - (over >> 24)), sum = weight + rest;
    if (sum == 0) {
        return under;
    }
    uint32_t res = Over255(sum) << 24;
    for (int shift = 0; shift < 24; shift += 8) {
        const uint32_t colour = ByteOf(over, shift) * weight + ByteOf(under, shift) * rest;
        res |= (2 * colour + sum) / (2 * sum) << shift;
    }
    return res;
}

/// Two pixels, widened to 16 bits per channel.
__m128i MixOpaque(__m128i under, __m128i over)
{
    const __m128i whole = _mm_set1_epi16(255), alphaLanes = _mm_setr_epi16(0, 0, 0, 255, 0, 0, 0, 255);
    const __m128i alpha = _mm_shufflehi_epi16(_mm_shufflelo_epi16(over, 0xFF), 0xFF);
    // In the alpha lane this is 255 * alpha + 255 * (255 - alpha), so the result is opaque.
    const __m128i products = _mm_add_epi16(_mm_mullo_epi16(_mm_or_si128(over, alphaLanes), alpha),
                                           _mm_mullo_epi16(under, _mm_sub_epi16(whole, alpha)));
    const __m128i n = _mm_add_epi16(products, _mm_set1_epi16(128));
    return _mm_srli_epi16(_mm_add_epi16(n, _mm_srli_epi16(n, 8)), 8);
}

/// Four pixels at a time. The destination must be opaque.
void ComposeSse(uint8_t* res, const uint8_t* over, int count, bool alpha)
{
    const __m128i zero = _mm_setzero_si128(), opaque = _mm_set1_epi32(int(0xFF000000));
    const __m128i kept = alpha ? _mm_set1_epi32(-1) : _mm_set1_epi32(0x00FFFFFF);
    int i = 0;
    for (; i + 4 <= count; i += 4, res += 16, over += 16) {
        const __m128i under = _mm_loadu_si128(reinterpret_cast<const __m128i*>(res));
        const __m128i top = _mm_loadu_si128(reinterpret_cast<const __m128i*>(over));
        const __m128i solid = _mm_or_si128(under, opaque);
        if (alpha && _mm_movemask_epi8(_mm_cmpeq_epi32(under, solid)) != 0xFFFF) {
            ComposeScalar(res, over, 4, true);
            continue;
        }
        const __m128i low = MixOpaque(_mm_unpacklo_epi8(solid, zero), _mm_unpacklo_epi8(top, zero));
        const __m128i high = MixOpaque(_mm_unpackhi_epi8(solid, zero), _mm_unpackhi_epi8(top, zero));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(res), _mm_and_si128(_mm_packus_epi16(low, high), kept));
    }
    ComposeScalar(res, over, count - i, alpha);
}

}  // namespace

void ComposeScalar(uint8_t* res, const uint8_t* over, int count, bool alpha)
{
    const uint32_t opaque = alpha ? 0 : 0xFF000000;
    for (int i = 0; i < count; ++i, res += 4, over += 4) {
        uint32_t under, top;
        memcpy(&under, res, 4);
        memcpy(&top, over, 4);
        under |= opaque;
        under = (under >> 24 == 255 ? OverOpaque(under, top) : OverTranslucent(under, top)) & ~opaque;
        memcpy(res, &under, 4);
    }
}

void ComposeOver(uint8_t* res, const uint8_t* over, int count, bool alpha)
{
    DispatchWide(avx2::ComposeOver, ComposeSse, ComposeScalar, res, over, count, alpha);
}

}  // namespace zm

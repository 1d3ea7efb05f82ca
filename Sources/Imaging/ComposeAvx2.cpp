#include "Imaging/Compose.h"

#include <immintrin.h>

// Compiled for AVX2; nothing but ComposeOver() may be visible outside this file.

namespace zm {
namespace {

/// over * alpha + under * (255 - alpha), divided by 255 and rounded to nearest; for bytes side by side with each
/// other, and alpha with its rest.
__m256i Mix(__m256i overUnder, __m256i alphaRest)
{
    // The products of signed bytes fit in 16 bits: 128 is taken off each byte, and 128 * 255 added to the sum.
    const __m256i sum = _mm256_maddubs_epi16(alphaRest, _mm256_xor_si256(overUnder, _mm256_set1_epi8(-128)));
    const __m256i n = _mm256_add_epi16(sum, _mm256_set1_epi16(int16_t(128 * 255 + 128)));
    return _mm256_mulhi_epu16(n, _mm256_set1_epi16(257));  // (n + n / 256) / 256
}

__m256i MixOpaque(__m256i under, __m256i over, __m256i opaque)
{
    const __m256i alphaBytes = _mm256_setr_epi8(3, 3, 3, 3, 7, 7, 7, 7, 11, 11, 11, 11, 15, 15, 15, 15, 3, 3, 3, 3, 7,
                                                7, 7, 7, 11, 11, 11, 11, 15, 15, 15, 15);
    const __m256i alpha = _mm256_shuffle_epi8(over, alphaBytes), rest = _mm256_xor_si256(alpha, _mm256_set1_epi8(-1));
    const __m256i colour = _mm256_or_si256(over, opaque);
    return _mm256_packus_epi16(Mix(_mm256_unpacklo_epi8(colour, under), _mm256_unpacklo_epi8(alpha, rest)),
                               Mix(_mm256_unpackhi_epi8(colour, under), _mm256_unpackhi_epi8(alpha, rest)));
}

}  // namespace

namespace avx2 {

void ComposeOver(uint8_t* res, const uint8_t* over, int count, bool alpha)
{
    const __m256i opaque = _mm256_set1_epi32(int(0xFF000000));
    const __m256i kept = alpha ? _mm256_set1_epi32(-1) : _mm256_set1_epi32(0x00FFFFFF);
    int i = 0;
    for (; i + 8 <= count; i += 8, res += 32, over += 32) {
        const __m256i under = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(res));
        const __m256i top = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(over));
        const __m256i solid = _mm256_or_si256(under, opaque);
        if (alpha && _mm256_movemask_epi8(_mm256_cmpeq_epi32(under, solid)) != -1) {
            ComposeScalar(res, over, 8, true);
            continue;
        }
        const __m256i mixed = MixOpaque(solid, top, opaque);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(res), _mm256_and_si256(mixed, kept));
    }
    ComposeScalar(res, over, count - i, alpha);
}

}  // namespace avx2
}  // namespace zm

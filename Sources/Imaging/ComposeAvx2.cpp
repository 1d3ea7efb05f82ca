#include "Imaging/Compose.h"

#include <immintrin.h>

// Compiled for AVX2. Only ComposeOver() may be visible outside this file.

namespace zm {
namespace {

/// (over * alpha + under * (255 - alpha)) / 255, rounded to nearest. `overUnder` interleaves the bytes of both,
/// `alphaRest` those of alpha and 255 - alpha. Where these two are 0, the result depends on the bias only.
__m256i Mix(__m256i overUnder, __m256i alphaRest, __m256i bias)
{
    // Products of signed bytes fit in 16 bits: 128 is subtracted from each byte, and the bias includes 128 * 255.
    const __m256i sum = _mm256_maddubs_epi16(alphaRest, _mm256_xor_si256(overUnder, _mm256_set1_epi8(-128)));
    return _mm256_mulhi_epu16(_mm256_add_epi16(sum, bias), _mm256_set1_epi16(257));  // (n + n / 256) / 256
}

/// Mixes the colours; the resulting alpha depends on the bias only.
__m256i MixOpaque(__m256i under, __m256i over, __m256i bias)
{
    const __m256i alphaBytes =
        _mm256_broadcastsi128_si256(_mm_setr_epi8(3, 3, 3, -128, 7, 7, 7, -128, 11, 11, 11, -128, 15, 15, 15, -128));
    const __m256i alpha = _mm256_shuffle_epi8(over, alphaBytes),
                  rest = _mm256_xor_si256(alpha, _mm256_set1_epi32(0xFFFFFF));
    return _mm256_packus_epi16(Mix(_mm256_unpacklo_epi8(over, under), _mm256_unpacklo_epi8(alpha, rest), bias),
                               Mix(_mm256_unpackhi_epi8(over, under), _mm256_unpackhi_epi8(alpha, rest), bias));
}

}  // namespace

namespace avx2 {

void ComposeOver(uint8_t* res, const uint8_t* over, int count, bool alpha)
{
    const __m256i opaque = _mm256_set1_epi32(int(0xFF000000));
    const int16_t half = int16_t(128 * 255 + 128), highest = int16_t(alpha ? 255 << 8 : 0);
    const __m256i bias =
        _mm256_broadcastsi128_si256(_mm_setr_epi16(half, half, half, highest, half, half, half, highest));
    int i = 0;
    for (; i + 8 <= count; i += 8, res += 32, over += 32) {
        const __m256i under = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(res));
        const __m256i top = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(over));
        if (alpha && _mm256_movemask_epi8(_mm256_cmpeq_epi32(under, _mm256_or_si256(under, opaque))) != -1) {
            ComposeScalar(res, over, 8, true);
            continue;
        }
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(res), MixOpaque(under, top, bias));
    }
    ComposeScalar(res, over, count - i, alpha);
}

}  // namespace avx2
}  // namespace zm

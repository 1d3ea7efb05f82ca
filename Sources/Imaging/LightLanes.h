#pragma once

#include "Imaging/LinearLight.h"
#include "Imaging/ResizeLanes.h"

// sRGB bytes to linear light and back, over the lanes of ResizeLanes.h. Alpha stays as it is.

namespace zm {
namespace {

inline void LoadLight(ScalarPixelFloats& res, const uint8_t* p, const LightTables& tables)
{
    res = {{tables.light[p[0]], tables.light[p[1]], tables.light[p[2]], tables.light[256 + p[3]]}};
}

inline void LoadLight(SsePixelFloats& res, const uint8_t* p, const LightTables& tables)
{
    res.v = _mm_setr_ps(tables.light[p[0]], tables.light[p[1]], tables.light[p[2]], tables.light[256 + p[3]]);
}

/// Rounds as the table does, alpha to nearest. Not for negative numbers.
inline void StoreLight(ScalarPixelFloats light, uint8_t* p, const LightTables& tables)
{
    for (int c = 0; c < 3; ++c) {
        const uint32_t all = uint32_t((light.f[c] < 255 ? light.f[c] : 255) * (1 << LightTables::kBits));
        const uint32_t rest = all & ((1u << LightTables::kRestBits) - 1);
        p[c] = uint8_t((tables.byte[all >> LightTables::kRestBits] + rest) >> LightTables::kRestBits);
    }
    // Never negative, and identical to the vector forms: NOLINTNEXTLINE(bugprone-incorrect-roundings)
    p[3] = uint8_t((light.f[3] < 255 ? light.f[3] : 255) + 0.5f);
}

inline __m128i PartsOf(__m128i parts, const LightTables& tables)
{
    return _mm_setr_epi32(int(tables.byte[_mm_cvtsi128_si32(parts)]), int(tables.byte[_mm_extract_epi16(parts, 2)]),
                          int(tables.byte[_mm_extract_epi16(parts, 4)]), 0);
}

inline void StoreLight(SsePixelFloats light, uint8_t* p, const LightTables& tables)
{
    const __m128 most = _mm_min_ps(light.v, _mm_set1_ps(255));
    const __m128i all = _mm_cvttps_epi32(_mm_mul_ps(most, _mm_set1_ps(1 << LightTables::kBits)));
    const __m128i parts = _mm_srli_epi32(all, LightTables::kRestBits);
    const __m128i rest = _mm_and_si128(all, _mm_set1_epi32((1 << LightTables::kRestBits) - 1));
    const __m128i part =
        _mm_setr_epi32(int(tables.byte[_mm_cvtsi128_si32(parts)]), int(tables.byte[_mm_extract_epi16(parts, 2)]),
                       int(tables.byte[_mm_extract_epi16(parts, 4)]), 0);
    const __m128i bytes = _mm_srli_epi32(_mm_add_epi32(part, rest), LightTables::kRestBits);
    const __m128i alpha = _mm_cvttps_epi32(_mm_add_ps(most, _mm_set1_ps(0.5f)));
    const __m128i isAlpha = _mm_setr_epi32(0, 0, 0, -1);
    const __m128i whole = _mm_or_si128(_mm_andnot_si128(isAlpha, bytes), _mm_and_si128(isAlpha, alpha));
    const __m128i words = _mm_packs_epi32(whole, whole);
    const int pixel = _mm_cvtsi128_si32(_mm_packus_epi16(words, words));
    memcpy(p, &pixel, 4);
}

#ifdef __AVX2__

inline void LoadLight(Avx2PixelFloats& res, const uint8_t* p, const LightTables& tables)
{
    const float* const light = tables.light;
    const __m256 colours =
        _mm256_setr_ps(light[p[0]], light[p[1]], light[p[2]], 0, light[p[4]], light[p[5]], light[p[6]], 0);
    res.v = _mm256_blend_ps(colours, Avx2PixelFloats::FromBytes(p).v, 0x88);
}

inline void StoreLight(Avx2PixelFloats light, uint8_t* p, const LightTables& tables)
{
    const __m256 most = _mm256_min_ps(light.v, _mm256_set1_ps(255));
    const __m256i all = _mm256_cvttps_epi32(_mm256_mul_ps(most, _mm256_set1_ps(1 << LightTables::kBits)));
    const __m256i rest = _mm256_and_si256(all, _mm256_set1_epi32((1 << LightTables::kRestBits) - 1));
    int part[8];
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(part), _mm256_srli_epi32(all, LightTables::kRestBits));
    const __m256i from =
        _mm256_setr_epi32(int(tables.byte[part[0]]), int(tables.byte[part[1]]), int(tables.byte[part[2]]), 0,
                          int(tables.byte[part[4]]), int(tables.byte[part[5]]), int(tables.byte[part[6]]), 0);
    const __m256i bytes = _mm256_srli_epi32(_mm256_add_epi32(from, rest), LightTables::kRestBits);
    const __m256i alpha = _mm256_cvttps_epi32(_mm256_add_ps(most, _mm256_set1_ps(0.5f)));
    const __m256i whole = _mm256_blend_epi32(bytes, alpha, 0x88);
    const __m128i words = _mm_packs_epi32(_mm256_castsi256_si128(whole), _mm256_extracti128_si256(whole, 1));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(p), _mm_packus_epi16(words, words));
}

#endif

}  // namespace
}  // namespace zm

#pragma once

#include "Math/StridedLanes.h"
#include "ZmColor.h"

#include <stdint.h>

// Colours of four floats and packed ones. The order of components in memory is r, g, b, a in the former and b, g, r, a
// in the latter.

namespace zm {
namespace {

inline uint32_t Packed(uint32_t a, uint32_t r, uint32_t g, uint32_t b)
{
    return a << 24 | r << 16 | g << 8 | b;
}

// The comparison is unsigned, so negative components become 255. Existing images made without the vector path depend on
// this (ZmColorTest, NegativeComponentsDifferByPath).
inline uint32_t ClampedByte(float component)
{
    const uint32_t rounded = uint32_t(_mm_cvtss_si32(_mm_set_ss(component * 255.0f)));
    return rounded > 255 ? 255 : rounded;
}

inline uint32_t PackScalar(const ZmColor& c)
{
    return Packed(ClampedByte(c.a), ClampedByte(c.r), ClampedByte(c.g), ClampedByte(c.b));
}

/// The components of a colour times 255, rounded, in the order of packed ones. They are clamped from above before
/// rounding, since the conversion cannot represent large values; packing saturates those below 0.
inline __m128i Rounded(SseLanes colour)
{
    const __m128 scaled = _mm_mul_ps(colour.v, _mm_set1_ps(255.0f));
    const __m128i rgba = _mm_cvtps_epi32(_mm_min_ps(scaled, _mm_set1_ps(255.0f)));
    return _mm_shuffle_epi32(rgba, _MM_SHUFFLE(3, 0, 1, 2));
}

inline uint32_t PackSse(const ZmColor& c)
{
    const __m128i bgra = Rounded(SseLanes::Load4(&c)), words = _mm_packs_epi32(bgra, bgra);
    return uint32_t(_mm_cvtsi128_si32(_mm_packus_epi16(words, words)));
}

/// L::kCount colours at once.
template <class L>
struct ColorGroup {
    static void Pack(char* res, const char* src, ptrdiff_t stride)
    {
        for (int i = 0; i < L::kCount; ++i) {
            ZmColor colour;
            memcpy(&colour, src + i * stride, sizeof(colour));
            const uint32_t packed = PackScalar(colour);
            memcpy(res + 4 * i, &packed, 4);
        }
    }
    static void Unpack(char* res, ptrdiff_t stride, const char* src)
    {
        for (int i = 0; i < L::kCount; ++i) {
            uint32_t packed;
            memcpy(&packed, src + 4 * i, 4);
            const ZmColor colour = ZmUnpackedColor(packed);
            memcpy(res + i * stride, &colour, sizeof(colour));
        }
    }
};

template <>
struct ColorGroup<SseLanes> {
    static void Pack(char* res, const char* src, ptrdiff_t stride)
    {
        const auto at = [=](int i) { return Rounded(SseLanes::Load4(src + i * stride)); };
        const __m128i words = _mm_packs_epi32(at(0), at(1)), more = _mm_packs_epi32(at(2), at(3));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(res), _mm_packus_epi16(words, more));
    }
    static void Unpack(char* res, ptrdiff_t stride, const char* src)
    {
        const __m128i none = _mm_setzero_si128(), packed = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src));
        const __m128i halves[] = {_mm_unpacklo_epi8(packed, none), _mm_unpackhi_epi8(packed, none)};
        for (int i = 0; i < 4; ++i) {
            const __m128i half = halves[i / 2];
            const __m128i bgra = i % 2 == 0 ? _mm_unpacklo_epi16(half, none) : _mm_unpackhi_epi16(half, none);
            const __m128 rgba = _mm_cvtepi32_ps(_mm_shuffle_epi32(bgra, _MM_SHUFFLE(3, 0, 1, 2)));
            _mm_storeu_ps(reinterpret_cast<float*>(res + i * stride), _mm_div_ps(rgba, _mm_set1_ps(255.0f)));
        }
    }
};

#ifdef __AVX2__
template <>
struct ColorGroup<Avx2Lanes> {
    /// Rounded() of two colours.
    static __m256i RoundedTwo(const char* src, ptrdiff_t stride)
    {
        const Avx2Lanes colours = Avx2Lanes::Halves(SseLanes::Load4(src), SseLanes::Load4(src + stride));
        const __m256 scaled = _mm256_mul_ps(colours.v, _mm256_set1_ps(255.0f));
        const __m256i rgba = _mm256_cvtps_epi32(_mm256_min_ps(scaled, _mm256_set1_ps(255.0f)));
        return _mm256_shuffle_epi32(rgba, _MM_SHUFFLE(3, 0, 1, 2));
    }
    static void Pack(char* res, const char* src, ptrdiff_t stride)
    {
        const auto at = [=](int i) { return RoundedTwo(src + 2 * i * stride, stride); };
        const __m256i words = _mm256_packs_epi32(at(0), at(1)), more = _mm256_packs_epi32(at(2), at(3));
        // Each half of a register was packed by itself: the even colours come first.
        const __m256i order = _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7);
        const __m256i packed = _mm256_permutevar8x32_epi32(_mm256_packus_epi16(words, more), order);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(res), packed);
    }
    static void Unpack(char* res, ptrdiff_t stride, const char* src)
    {
        for (int i = 0; i < Avx2Lanes::kCount; i += 2) {
            const __m256i bgra = _mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(src + 4 * i)));
            const __m256 rgba = _mm256_cvtepi32_ps(_mm256_shuffle_epi32(bgra, _MM_SHUFFLE(3, 0, 1, 2)));
            const Avx2Lanes colours = {_mm256_div_ps(rgba, _mm256_set1_ps(255.0f))};
            colours.Low().Store4(res + i * stride);
            colours.High().Store4(res + (i + 1) * stride);
        }
    }
};
#endif

template <class L>
void PackColors(const StridedPair& pair)
{
    const auto group = [](char* res, ptrdiff_t resStride, const char* src, ptrdiff_t srcStride) {
        char packed[4 * L::kCount];
        ColorGroup<L>::Pack(packed, src, srcStride);
        Unpack<4>(res, resStride, packed, L::kCount);
    };
    const auto tight = [](char* res, ptrdiff_t, const char* src, ptrdiff_t srcStride) {
        ColorGroup<L>::Pack(res, src, srcStride);
    };
    pair.resStride == 4 ? ForGroups<L, 4, sizeof(ZmColor)>(pair, tight) : ForGroups<L, 4, sizeof(ZmColor)>(pair, group);
}

template <class L>
void UnpackColors(const StridedPair& pair)
{
    const auto group = [](char* res, ptrdiff_t resStride, const char* src, ptrdiff_t srcStride) {
        char packed[4 * L::kCount];
        Pack<4>(packed, src, srcStride, L::kCount);
        ColorGroup<L>::Unpack(res, resStride, packed);
    };
    const auto tight = [](char* res, ptrdiff_t resStride, const char* src, ptrdiff_t) {
        ColorGroup<L>::Unpack(res, resStride, src);
    };
    pair.srcStride == 4 ? ForGroups<L, sizeof(ZmColor), 4>(pair, tight) : ForGroups<L, sizeof(ZmColor), 4>(pair, group);
}

}  // namespace

/// Kernels for processors with AVX2.
namespace avx2 {

void PackColors(const StridedPair& pair);
void UnpackColors(const StridedPair& pair);

}  // namespace avx2
}  // namespace zm

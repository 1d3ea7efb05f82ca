#pragma once

#include <emmintrin.h>
#include <stdint.h>
#include <string.h>
#ifdef __AVX2__
#include <immintrin.h>
#endif

// Lanes of 32-bit numbers that hold one pixel each, loaded from and stored to pixels of one to four bytes. Loads and
// stores touch no byte outside their pixels. ScaleAdd() requires values and results below 2^16 and a factor that is the
// same in all lanes; ScaleAddWide() is the same with results below 2^32. As in Math/Lanes.h, all lane types give the
// same results, and everything has internal linkage.

namespace zm {
namespace {

struct ScalarPixel {
    uint32_t v;

    static constexpr int kCount = 1;

    template <int Bytes>
    static ScalarPixel Load(const uint8_t* p)
    {
        ScalarPixel res = {0};
        memcpy(&res.v, p, Bytes);
        return res;
    }
    template <int Bytes>
    void Store(uint8_t* p) const
    {
        memcpy(p, &v, Bytes);
    }
    static ScalarPixel Splat(uint32_t value) { return {value}; }

    ScalarPixel operator&(ScalarPixel o) const { return {v & o.v}; }
    ScalarPixel operator|(ScalarPixel o) const { return {v | o.v}; }
    ScalarPixel operator>>(int bits) const { return {v >> bits}; }
    ScalarPixel operator<<(int bits) const { return {v << bits}; }
    ScalarPixel Plus(ScalarPixel o) const { return {v + o.v}; }
    ScalarPixel ScaleAdd(ScalarPixel factor, ScalarPixel bias) const { return {v * factor.v + bias.v}; }
    ScalarPixel Scale(ScalarPixel factor) const { return {v * factor.v}; }
    ScalarPixel ScaleAddWide(ScalarPixel factor, ScalarPixel bias) const { return {v * factor.v + bias.v}; }
};

inline uint32_t LoadBytes(const uint8_t* p)
{
    uint32_t res;
    memcpy(&res, p, 4);
    return res;
}

struct SsePixels {
    __m128i v;

    static constexpr int kCount = 4;

    template <int Bytes>
    static SsePixels Load(const uint8_t* p)
    {
        const __m128i zero = _mm_setzero_si128();
        if constexpr (Bytes == 1) {
            const __m128i words = _mm_unpacklo_epi8(_mm_cvtsi32_si128(int(LoadBytes(p))), zero);
            return {_mm_unpacklo_epi16(words, zero)};
        } else if constexpr (Bytes == 2) {
            return {_mm_unpacklo_epi16(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)), zero)};
        } else if constexpr (Bytes == 3) {
            const uint32_t last = LoadBytes(p + 8);
            return {_mm_setr_epi32(int(LoadBytes(p)), int(LoadBytes(p + 3)), int(LoadBytes(p + 6)), int(last >> 8))};
        } else {
            return {_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))};
        }
    }
    template <int Bytes>
    void Store(uint8_t* p) const
    {
        if constexpr (Bytes == 1) {
            const __m128i words = _mm_packs_epi32(v, v);
            StoreFour(p, _mm_packus_epi16(words, words));
        } else if constexpr (Bytes == 2) {
            // Packing saturates signed numbers, so the sign is extended to fit.
            const __m128i extended = _mm_srai_epi32(_mm_slli_epi32(v, 16), 16);
            _mm_storel_epi64(reinterpret_cast<__m128i*>(p), _mm_packs_epi32(extended, extended));
        } else if constexpr (Bytes == 3) {
            // Six bytes per half.
            const __m128i low = _mm_and_si128(v, _mm_setr_epi32(0xFFFFFF, 0, 0xFFFFFF, 0));
            const __m128i pairs =
                _mm_or_si128(low, _mm_srli_epi64(_mm_andnot_si128(_mm_setr_epi32(-1, 0, -1, 0), v), 8));
            const __m128i second = _mm_srli_si128(pairs, 8);
            _mm_storel_epi64(reinterpret_cast<__m128i*>(p), pairs);
            StoreFour(p + 6, second);
            const int last = _mm_extract_epi16(second, 2);
            memcpy(p + 10, &last, 2);
        } else {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v);
        }
    }
    static SsePixels Splat(uint32_t value) { return {_mm_set1_epi32(int(value))}; }

    SsePixels operator&(SsePixels o) const { return {_mm_and_si128(v, o.v)}; }
    SsePixels operator|(SsePixels o) const { return {_mm_or_si128(v, o.v)}; }
    SsePixels operator>>(int bits) const { return {_mm_srl_epi32(v, _mm_cvtsi32_si128(bits))}; }
    SsePixels operator<<(int bits) const { return {_mm_sll_epi32(v, _mm_cvtsi32_si128(bits))}; }
    SsePixels Plus(SsePixels o) const { return {_mm_add_epi32(v, o.v)}; }
    SsePixels ScaleAdd(SsePixels factor, SsePixels bias) const
    {
        return {_mm_add_epi16(_mm_mullo_epi16(v, factor.v), bias.v)};
    }
    SsePixels ScaleAddWide(SsePixels factor, SsePixels bias) const
    {
        const __m128i even = _mm_mul_epu32(v, factor.v), odd = _mm_mul_epu32(_mm_srli_epi64(v, 32), factor.v);
        const __m128i low = _mm_and_si128(even, _mm_setr_epi32(-1, 0, -1, 0));
        return {_mm_add_epi32(_mm_or_si128(low, _mm_slli_epi64(odd, 32)), bias.v)};
    }

private:
    static void StoreFour(uint8_t* p, __m128i bytes)
    {
        const int four = _mm_cvtsi128_si32(bytes);
        memcpy(p, &four, 4);
    }
};

#ifdef __AVX2__

struct Avx2Pixels {
    __m256i v;

    static constexpr int kCount = 8;

    template <int Bytes>
    static Avx2Pixels Load(const uint8_t* p)
    {
        const __m128i* const from = reinterpret_cast<const __m128i*>(p);
        if constexpr (Bytes == 1) {
            return {_mm256_cvtepu8_epi32(_mm_loadl_epi64(from))};
        } else if constexpr (Bytes == 2) {
            return {_mm256_cvtepu16_epi32(_mm_loadu_si128(from))};
        } else if constexpr (Bytes == 3) {
            const __m128i low = _mm_loadu_si128(from), high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 8));
            return {_mm256_shuffle_epi8(_mm256_set_m128i(high, low), Spread())};
        } else {
            return {_mm256_loadu_si256(reinterpret_cast<const __m256i*>(p))};
        }
    }
    template <int Bytes>
    void Store(uint8_t* p) const
    {
        __m128i* const to = reinterpret_cast<__m128i*>(p);
        if constexpr (Bytes == 1) {
            const __m128i words = Words();
            _mm_storel_epi64(to, _mm_packus_epi16(words, words));
        } else if constexpr (Bytes == 2) {
            _mm_storeu_si128(to, Words());
        } else if constexpr (Bytes == 3) {
            const __m256i twelve = _mm256_shuffle_epi8(v, Squeeze());
            const __m128i second = _mm256_extracti128_si256(twelve, 1);
            _mm_storeu_si128(to, _mm256_castsi256_si128(twelve));
            _mm_storel_epi64(reinterpret_cast<__m128i*>(p + 12), second);
            const int last = _mm_extract_epi32(second, 2);
            memcpy(p + 20, &last, 4);
        } else {
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v);
        }
    }
    static Avx2Pixels Splat(uint32_t value) { return {_mm256_set1_epi32(int(value))}; }

    Avx2Pixels operator&(Avx2Pixels o) const { return {_mm256_and_si256(v, o.v)}; }
    Avx2Pixels operator|(Avx2Pixels o) const { return {_mm256_or_si256(v, o.v)}; }
    Avx2Pixels operator>>(int bits) const { return {_mm256_srl_epi32(v, _mm_cvtsi32_si128(bits))}; }
    Avx2Pixels operator<<(int bits) const { return {_mm256_sll_epi32(v, _mm_cvtsi32_si128(bits))}; }
    Avx2Pixels Plus(Avx2Pixels o) const { return {_mm256_add_epi32(v, o.v)}; }
    Avx2Pixels ScaleAddWide(Avx2Pixels factor, Avx2Pixels bias) const
    {
        return {_mm256_add_epi32(_mm256_mullo_epi32(v, factor.v), bias.v)};
    }
    Avx2Pixels ScaleAdd(Avx2Pixels factor, Avx2Pixels bias) const
    {
        return {_mm256_add_epi16(_mm256_mullo_epi16(v, factor.v), bias.v)};
    }
    /// Byte i of each pixel becomes its byte order[i]; 0 where that is negative.
    Avx2Pixels Bytes(Avx2Pixels order) const { return {_mm256_shuffle_epi8(v, order.v)}; }

    /// The low three bytes of each pixel, 24 contiguous bytes in all, rotated to begin Turns * 8 bytes before the end
    /// of the register.
    template <int Turns>
    Avx2Pixels Threes() const
    {
        constexpr int kPlaces[6] = {0, 1, 2, 4, 5, 6};
        int order[8] = {};
        for (int i = 0; i < 6; ++i) {
            order[(i + 8 - 2 * Turns) % 8] = kPlaces[i];
        }
        const __m256i twelve = _mm256_shuffle_epi8(v, Squeeze());
        return {_mm256_permutevar8x32_epi32(twelve, _mm256_loadu_si256(reinterpret_cast<const __m256i*>(order)))};
    }
    /// The 32-bit words of this register before number `Word`, and those of the other from there on.
    template <int Word>
    Avx2Pixels JoinedAt(Avx2Pixels o) const
    {
        return {_mm256_blend_epi32(v, o.v, 0xFF << Word & 0xFF)};
    }

    // Two channels at once, in the two halves of each pixel's 32 bits.

    Avx2Pixels HalvesPlus(Avx2Pixels o) const { return {_mm256_add_epi16(v, o.v)}; }
    /// The low 16 bits of each product.
    Avx2Pixels HalvesTimes(Avx2Pixels o) const { return {_mm256_mullo_epi16(v, o.v)}; }
    /// The high 16 bits of each product.
    Avx2Pixels HalvesScaled(Avx2Pixels o) const { return {_mm256_mulhi_epu16(v, o.v)}; }
    /// The products divided by 65535, rounded to nearest; the values of `o` must be at most 255.
    Avx2Pixels HalvesNarrowed(Avx2Pixels o) const
    {
        // n / 65535 is about (n + n / 65536) / 65536: the low word gets the high word added, and its top bit rounds.
        const __m256i whole = _mm256_mulhi_epu16(v, o.v), rest = _mm256_mullo_epi16(v, o.v);
        return {_mm256_add_epi16(whole, _mm256_srli_epi16(_mm256_adds_epu16(rest, whole), 15))};
    }
    /// low * o.low + high * o.high
    Avx2Pixels HalvesJoined(Avx2Pixels o) const { return {_mm256_madd_epi16(v, o.v)}; }

private:
    __m128i Words() const
    {
        const __m256i low = _mm256_and_si256(v, _mm256_set1_epi32(0xFFFF)), packed = _mm256_packus_epi32(low, low);
        return _mm256_castsi256_si128(_mm256_permute4x64_epi64(packed, _MM_SHUFFLE(3, 1, 2, 0)));
    }
    static __m256i Spread()
    {
        return _mm256_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1, 4, 5, 6, -1, 7, 8, 9, -1, 10, 11,
                                12, -1, 13, 14, 15, -1);
    }
    static __m256i Squeeze()
    {
        return _mm256_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1, 0, 1, 2, 4, 5, 6, 8, 9, 10, 12,
                                13, 14, -1, -1, -1, -1);
    }
};

/// Sixteen pixels of two bytes, in 16-bit lanes.
struct Avx2ShortPixels {
    __m256i v;

    static constexpr int kCount = 16;

    template <int Bytes>
    static Avx2ShortPixels Load(const uint8_t* p)
    {
        static_assert(Bytes == 2, "lanes of 16 bits");
        return {_mm256_loadu_si256(reinterpret_cast<const __m256i*>(p))};
    }
    template <int Bytes>
    void Store(uint8_t* p) const
    {
        static_assert(Bytes == 2, "lanes of 16 bits");
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v);
    }
    static Avx2ShortPixels Splat(uint32_t value) { return {_mm256_set1_epi16(int16_t(value))}; }

    Avx2ShortPixels operator&(Avx2ShortPixels o) const { return {_mm256_and_si256(v, o.v)}; }
    Avx2ShortPixels operator|(Avx2ShortPixels o) const { return {_mm256_or_si256(v, o.v)}; }
    Avx2ShortPixels operator>>(int bits) const { return {_mm256_srl_epi16(v, _mm_cvtsi32_si128(bits))}; }
    Avx2ShortPixels operator<<(int bits) const { return {_mm256_sll_epi16(v, _mm_cvtsi32_si128(bits))}; }
    Avx2ShortPixels Scale(Avx2ShortPixels factor) const { return {_mm256_mullo_epi16(v, factor.v)}; }
    Avx2ShortPixels ScaleAdd(Avx2ShortPixels factor, Avx2ShortPixels bias) const
    {
        return {_mm256_add_epi16(_mm256_mullo_epi16(v, factor.v), bias.v)};
    }
};

#endif

}  // namespace
}  // namespace zm

#pragma once

#include <emmintrin.h>
#include <stdint.h>
#ifdef __AVX2__
#include <immintrin.h>
#endif

// Lanes of 16-bit integers for the palette quantiser. AbsDiff, Min and KeepLower require values below 2^15; Average
// takes any. As in Math/Lanes.h, all lane types give the same results, and everything has internal linkage.

namespace zm {
namespace {

/// Weights of up to 2^18, split as 8 * eighths + rest, so that two 16-bit products add up to the whole product.
struct SplitWeights {
    const int16_t* eighths;
    const int16_t* rest;
};

/// One lane.
struct ScalarWord {
    int i;

    static constexpr int kCount = 1;
    static constexpr int kRankBits = 1;  ///< bits that number the lanes of two registers

    static ScalarWord Load(const uint16_t* p) { return {*p}; }
    void Store(uint16_t* p) const { *p = uint16_t(i); }
    static ScalarWord Splat(int value) { return {value}; }
    /// 0, 1, 2 ...
    static ScalarWord Numbers() { return {0}; }

    ScalarWord operator+(ScalarWord o) const { return {i + o.i}; }
    ScalarWord operator-(ScalarWord o) const { return {i - o.i}; }
    template <int Bits>
    ScalarWord ShiftLeft() const
    {
        return {i << Bits};
    }
    template <int Bits>
    ScalarWord ShiftRight() const
    {
        return {i >> Bits};
    }

    static ScalarWord Min(ScalarWord a, ScalarWord b) { return a.i < b.i ? a : b; }
    /// Keeps the lower value and its number. Numbers increase from call to call, from 0.
    static void KeepLower(ScalarWord& value, ScalarWord& number, ScalarWord newValue, ScalarWord newNumber)
    {
        if (newValue.i < value.i) {
            value = newValue;
            number = newNumber;
        }
    }
    /// (a + b + 1) / 2
    static ScalarWord Average(ScalarWord a, ScalarWord b) { return {(a.i + b.i + 1) >> 1}; }
    static ScalarWord AbsDiff(ScalarWord a, ScalarWord b) { return {a.i > b.i ? a.i - b.i : b.i - a.i}; }

    struct Weights {
        int whole;
    };
    static Weights LoadWeights(const SplitWeights& from, int at) { return {8 * from.eighths[at] + from.rest[at]}; }
    /// difference * weight / 2^18, truncated towards zero. The difference must be below 2^12.
    static ScalarWord Weighted(ScalarWord difference, const Weights& w) { return {difference.i * w.whole / (1 << 18)}; }

    int Lowest() const { return i; }
    /// For lanes that come in blocks: block * kCount + lane of the lowest value; on ties the lowest such number.
    static int PlaceOfLowest(ScalarWord, ScalarWord block) { return block.i; }
};

/// Eight lanes of SSE2.
struct SseWords {
    __m128i v;

    static constexpr int kCount = 8;
    static constexpr int kRankBits = 4;

    static SseWords Load(const uint16_t* p) { return {_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))}; }
    void Store(uint16_t* p) const { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }
    static SseWords Splat(int value) { return {_mm_set1_epi16(int16_t(value))}; }
    static SseWords Numbers() { return {_mm_setr_epi16(0, 1, 2, 3, 4, 5, 6, 7)}; }

    SseWords operator+(SseWords o) const { return {_mm_add_epi16(v, o.v)}; }
    SseWords operator-(SseWords o) const { return {_mm_sub_epi16(v, o.v)}; }
    SseWords operator&(SseWords o) const { return {_mm_and_si128(v, o.v)}; }
    template <int Bits>
    SseWords ShiftLeft() const
    {
        return {_mm_slli_epi16(v, Bits)};
    }
    template <int Bits>
    SseWords ShiftRight() const
    {
        return {_mm_srli_epi16(v, Bits)};
    }

    static SseWords Min(SseWords a, SseWords b) { return {_mm_min_epi16(a.v, b.v)}; }
    static void KeepLower(SseWords& value, SseWords& number, SseWords newValue, SseWords newNumber)
    {
        // Numbers increase, so the maximum is the last one with a lower value; no blend is needed.
        number = Max(number, Greater(value, newValue) & newNumber);
        value = Min(value, newValue);
    }
    static SseWords Average(SseWords a, SseWords b) { return {_mm_avg_epu16(a.v, b.v)}; }
    static SseWords AbsDiff(SseWords a, SseWords b) { return Max(a - b, b - a); }

    struct Weights {
        __m128i low, high;
    };
    static Weights LoadWeights(const SplitWeights& from, int at)
    {
        const __m128i eighths = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from.eighths + at));
        const __m128i rest = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from.rest + at));
        return {_mm_unpacklo_epi16(eighths, rest), _mm_unpackhi_epi16(eighths, rest)};
    }
    static SseWords Weighted(SseWords difference, const Weights& w)
    {
        const __m128i sign = _mm_srai_epi16(difference.v, 15);
        const __m128i size = _mm_sub_epi16(_mm_xor_si128(difference.v, sign), sign), eight = _mm_slli_epi16(size, 3);
        const __m128i low = _mm_madd_epi16(_mm_unpacklo_epi16(eight, size), w.low);
        const __m128i high = _mm_madd_epi16(_mm_unpackhi_epi16(eight, size), w.high);
        const __m128i quotient = _mm_packs_epi32(_mm_srli_epi32(low, 18), _mm_srli_epi32(high, 18));
        return {_mm_sub_epi16(_mm_xor_si128(quotient, sign), sign)};
    }

    int Lowest() const { return _mm_cvtsi128_si32(LowestInFirst(v)) & 0xFFFF; }
    static int PlaceOfLowest(SseWords value, SseWords block)
    {
        const SseWords lowest = Splat(value.Lowest()), place = block.ShiftLeft<3>() + Numbers();
        const SseWords higher = Greater(value, lowest).ShiftRight<1>();  // the largest number in lanes above the lowest
        return SseWords{_mm_or_si128(place.v, higher.v)}.Lowest();
    }

private:
    static SseWords Max(SseWords a, SseWords b) { return {_mm_max_epi16(a.v, b.v)}; }
    static SseWords Greater(SseWords a, SseWords b) { return {_mm_cmpgt_epi16(a.v, b.v)}; }
    static __m128i LowestInFirst(__m128i a)
    {
        a = _mm_min_epi16(a, _mm_shuffle_epi32(a, _MM_SHUFFLE(1, 0, 3, 2)));
        a = _mm_min_epi16(a, _mm_shuffle_epi32(a, _MM_SHUFFLE(2, 3, 0, 1)));
        return _mm_min_epi16(a, _mm_shufflelo_epi16(a, _MM_SHUFFLE(2, 3, 0, 1)));
    }
};

#ifdef __AVX2__

/// Sixteen lanes. Min and Lowest take values of all 16 bits.
struct Avx2Words {
    __m256i v;

    static constexpr int kCount = 16;
    static constexpr int kRankBits = 5;

    static Avx2Words Load(const uint16_t* p) { return {_mm256_loadu_si256(reinterpret_cast<const __m256i*>(p))}; }
    void Store(uint16_t* p) const { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }
    static Avx2Words Splat(int value) { return {_mm256_set1_epi16(int16_t(value))}; }
    static Avx2Words Numbers() { return {_mm256_setr_epi16(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15)}; }

    Avx2Words operator+(Avx2Words o) const { return {_mm256_add_epi16(v, o.v)}; }
    Avx2Words operator-(Avx2Words o) const { return {_mm256_sub_epi16(v, o.v)}; }
    Avx2Words operator&(Avx2Words o) const { return {_mm256_and_si256(v, o.v)}; }
    template <int Bits>
    Avx2Words ShiftLeft() const
    {
        return {_mm256_slli_epi16(v, Bits)};
    }
    template <int Bits>
    Avx2Words ShiftRight() const
    {
        return {_mm256_srli_epi16(v, Bits)};
    }

    static Avx2Words Min(Avx2Words a, Avx2Words b) { return {_mm256_min_epu16(a.v, b.v)}; }
    static void KeepLower(Avx2Words& value, Avx2Words& number, Avx2Words newValue, Avx2Words newNumber)
    {
        // Numbers increase, so the maximum is the last one with a lower value; no blend is needed.
        number = Max(number, Greater(value, newValue) & newNumber);
        value = Min(value, newValue);
    }
    static Avx2Words Average(Avx2Words a, Avx2Words b) { return {_mm256_avg_epu16(a.v, b.v)}; }
    static Avx2Words AbsDiff(Avx2Words a, Avx2Words b) { return {_mm256_abs_epi16((a - b).v)}; }

    struct Weights {
        __m256i low, high;
    };
    static Weights LoadWeights(const SplitWeights& from, int at)
    {
        const __m256i eighths = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from.eighths + at));
        const __m256i rest = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from.rest + at));
        return {_mm256_unpacklo_epi16(eighths, rest), _mm256_unpackhi_epi16(eighths, rest)};
    }
    static Avx2Words Weighted(Avx2Words difference, const Weights& w)
    {
        const __m256i size = _mm256_abs_epi16(difference.v), eight = _mm256_slli_epi16(size, 3);
        const __m256i low = _mm256_madd_epi16(_mm256_unpacklo_epi16(eight, size), w.low);
        const __m256i high = _mm256_madd_epi16(_mm256_unpackhi_epi16(eight, size), w.high);
        const __m256i quotient = _mm256_packs_epi32(_mm256_srli_epi32(low, 18), _mm256_srli_epi32(high, 18));
        return {_mm256_sign_epi16(quotient, difference.v)};
    }

    int Lowest() const
    {
        const __m128i eight = _mm_min_epu16(_mm256_castsi256_si128(v), _mm256_extracti128_si256(v, 1));
        return _mm_cvtsi128_si32(_mm_minpos_epu16(eight)) & 0xFFFF;
    }
    static int PlaceOfLowest(Avx2Words value, Avx2Words block)
    {
        const Avx2Words lowest = Splat(value.Lowest()), place = block.ShiftLeft<4>() + Numbers();
        return Avx2Words{_mm256_or_si256(place.v, Greater(value, lowest).v)}.Lowest();
    }

private:
    static Avx2Words Max(Avx2Words a, Avx2Words b) { return {_mm256_max_epi16(a.v, b.v)}; }
    static Avx2Words Greater(Avx2Words a, Avx2Words b) { return {_mm256_cmpgt_epi16(a.v, b.v)}; }
};

#endif

}  // namespace
}  // namespace zm

#pragma once

#include "Imaging/ResizeLines.h"

#include <emmintrin.h>
#include <stddef.h>
#include <stdint.h>
#include <string.h>
#ifdef __AVX2__
#include <immintrin.h>
#endif

// Lanes for scaling pictures: the channels of kPixels whole pixels, in the byte order of ARGB8888 (blue, green, red,
// alpha), as floats or as 16-bit words. As in Math/Lanes.h, all lane types give the same results, and everything has
// internal linkage.

namespace zm {
namespace {

struct ScalarPixelFloats {
    float f[4];

    static constexpr int kPixels = 1;

    static ScalarPixelFloats Zero() { return {{0, 0, 0, 0}}; }
    static ScalarPixelFloats Load(const float* p) { return {{p[0], p[1], p[2], p[3]}}; }
    static ScalarPixelFloats FromBytes(const uint8_t* p)
    {
        return {{float(p[0]), float(p[1]), float(p[2]), float(p[3])}};
    }
    void Store(float* p) const { memcpy(p, f, sizeof(f)); }

    ScalarPixelFloats operator+(ScalarPixelFloats o) const
    {
        return {{f[0] + o.f[0], f[1] + o.f[1], f[2] + o.f[2], f[3] + o.f[3]}};
    }
    ScalarPixelFloats operator*(float s) const { return {{f[0] * s, f[1] * s, f[2] * s, f[3] * s}}; }
    ScalarPixelFloats Premultiplied() const { return {{f[0] * f[3], f[1] * f[3], f[2] * f[3], f[3]}}; }
    /// Converts premultiplied colours to straight ones; transparent black if alpha is 0.
    ScalarPixelFloats Straight() const
    {
        return f[3] > 0 ? ScalarPixelFloats{{f[0] / f[3], f[1] / f[3], f[2] / f[3], f[3]}} : Zero();
    }
    ScalarPixelFloats AtLeastZero() const
    {
        ScalarPixelFloats res;
        for (int c = 0; c < 4; ++c) {
            res.f[c] = f[c] > 0 ? f[c] : 0;
        }
        return res;
    }
    /// Rounds to nearest. Not for negative numbers.
    void ToBytes(uint8_t* p) const
    {
        for (int c = 0; c < 4; ++c) {
            // Never negative, and identical to the vector forms: NOLINTNEXTLINE(bugprone-incorrect-roundings)
            p[c] = uint8_t((f[c] < 255 ? f[c] : 255) + 0.5f);
        }
    }
};

inline __m128i LoadRegister(const void* p)
{
    return _mm_loadu_si128(static_cast<const __m128i*>(p));
}

struct SsePixelFloats {
    __m128 v;

    static constexpr int kPixels = 1;

    static SsePixelFloats Zero() { return {_mm_setzero_ps()}; }
    static SsePixelFloats Load(const float* p) { return {_mm_loadu_ps(p)}; }
    static SsePixelFloats FromBytes(const uint8_t* p)
    {
        int pixel;
        memcpy(&pixel, p, 4);
        const __m128i zero = _mm_setzero_si128(), words = _mm_unpacklo_epi8(_mm_cvtsi32_si128(pixel), zero);
        return {_mm_cvtepi32_ps(_mm_unpacklo_epi16(words, zero))};
    }
    void Store(float* p) const { _mm_storeu_ps(p, v); }

    SsePixelFloats operator+(SsePixelFloats o) const { return {_mm_add_ps(v, o.v)}; }
    SsePixelFloats operator*(float s) const { return {_mm_mul_ps(v, _mm_set1_ps(s))}; }
    SsePixelFloats Premultiplied() const { return {_mm_mul_ps(v, AlphaAndOne())}; }
    SsePixelFloats Straight() const
    {
        const __m128 alpha = _mm_shuffle_ps(v, v, _MM_SHUFFLE(3, 3, 3, 3));
        return {_mm_and_ps(_mm_div_ps(v, AlphaAndOne()), _mm_cmpgt_ps(alpha, _mm_setzero_ps()))};
    }
    SsePixelFloats AtLeastZero() const { return {_mm_max_ps(v, _mm_setzero_ps())}; }
    void ToBytes(uint8_t* p) const
    {
        const __m128 rounded = _mm_add_ps(_mm_min_ps(v, _mm_set1_ps(255)), _mm_set1_ps(0.5f));
        const __m128i words = _mm_packs_epi32(_mm_cvttps_epi32(rounded), _mm_setzero_si128());
        const int pixel = _mm_cvtsi128_si32(_mm_packus_epi16(words, words));
        memcpy(p, &pixel, 4);
    }

private:
    __m128 AlphaAndOne() const
    {
        const __m128 high = _mm_shuffle_ps(v, _mm_set1_ps(1), _MM_SHUFFLE(0, 0, 3, 3));
        return _mm_shuffle_ps(high, high, _MM_SHUFFLE(2, 0, 0, 0));
    }
};

/// Sums of a few bytes, as 16-bit words.
struct ScalarPixelWords {
    int16_t w[4];

    static constexpr int kPixels = 1;

    /// The sums of 2x2 blocks of pixels.
    static ScalarPixelWords SumOfFour(const uint8_t* upper, const uint8_t* lower)
    {
        ScalarPixelWords res;
        for (int c = 0; c < 4; ++c) {
            res.w[c] = int16_t(upper[c] + upper[c + 4] + lower[c] + lower[c + 4]);
        }
        return res;
    }
    /// Shifts out `Bits` bits, rounding to nearest, and stores `alpha` as the fourth byte.
    template <int Bits>
    void ToBytes(uint8_t* p, uint8_t alpha) const
    {
        for (int c = 0; c < 3; ++c) {
            p[c] = uint8_t((w[c] + (1 << (Bits - 1))) >> Bits);
        }
        p[3] = alpha;
    }
};

struct SsePixelWords {
    __m128i v[2];

    static constexpr int kPixels = 4;

    static SsePixelWords SumOfFour(const uint8_t* upper, const uint8_t* lower)
    {
        return {{SumOfEight(upper, lower), SumOfEight(upper + 16, lower + 16)}};
    }
    template <int Bits>
    void ToBytes(uint8_t* p, uint8_t alpha) const
    {
        const __m128i bytes = _mm_packus_epi16(Rounded<Bits>(v[0]), Rounded<Bits>(v[1]));
        const __m128i colours = _mm_and_si128(bytes, _mm_set1_epi32(0xFFFFFF));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p),
                         _mm_or_si128(colours, _mm_slli_epi32(_mm_set1_epi32(alpha), 24)));
    }

private:
    static __m128i SumOfEight(const uint8_t* upper, const uint8_t* lower)
    {
        const __m128i zero = _mm_setzero_si128(), a = LoadRegister(upper), b = LoadRegister(lower);
        const __m128i low = _mm_add_epi16(_mm_unpacklo_epi8(a, zero), _mm_unpacklo_epi8(b, zero));
        const __m128i high = _mm_add_epi16(_mm_unpackhi_epi8(a, zero), _mm_unpackhi_epi8(b, zero));
        return _mm_add_epi16(_mm_unpacklo_epi64(low, high), _mm_unpackhi_epi64(low, high));
    }
    template <int Bits>
    static __m128i Rounded(__m128i v)
    {
        return _mm_srai_epi16(_mm_add_epi16(v, _mm_set1_epi16(1 << (Bits - 1))), Bits);
    }
};

/// Columns of unsigned 16-bit numbers; sums wrap around. Blue and red of all pixels are stored together, and green and
/// alpha in a second array, so that masks and shifts extract them from bytes without shuffling.
struct ScalarColumns {
    uint16_t w[4];

    static constexpr int kPixels = 1;

    static ScalarColumns Splat(int value)
    {
        return {{uint16_t(value), uint16_t(value), uint16_t(value), uint16_t(value)}};
    }
    static ScalarColumns Load(const Columns& p, int x)
    {
        const uint16_t *const first = p.blueRed + ptrdiff_t(x) * 2, *const second = p.greenAlpha + ptrdiff_t(x) * 2;
        return {{first[0], first[1], second[0], second[1]}};
    }
    static ScalarColumns FromBytes(const uint8_t* p) { return {{p[0], p[2], p[1], p[3]}}; }
    /// The bytes times 256.
    static ScalarColumns FromHighBytes(const uint8_t* p) { return FromBytes(p) << 8; }
    /// The pixels of a line at these indices, and the pixels after them, times 256.
    static void LoadNeighbours(ScalarColumns& left, ScalarColumns& right, const uint8_t* line, const int* numbers)
    {
        left = FromHighBytes(line + ptrdiff_t(numbers[0]) * 4);
        right = FromHighBytes(line + ptrdiff_t(numbers[0]) * 4 + 4);
    }
    /// One weight per pixel, stored twice.
    static ScalarColumns LoadWeights(const uint16_t* p) { return {{p[0], p[0], p[0], p[0]}}; }
    void Store(const Columns& p, int x) const
    {
        memcpy(p.blueRed + ptrdiff_t(x) * 2, w, 4);
        memcpy(p.greenAlpha + ptrdiff_t(x) * 2, w + 2, 4);
    }
    /// Stores the high bytes, and `alpha` as the fourth byte.
    void HighToBytes(uint8_t* p, uint8_t alpha) const
    {
        p[0] = uint8_t(w[0] >> 8);
        p[1] = uint8_t(w[2] >> 8);
        p[2] = uint8_t(w[1] >> 8);
        p[3] = alpha;
    }

    ScalarColumns operator+(ScalarColumns o) const
    {
        return {{uint16_t(w[0] + o.w[0]), uint16_t(w[1] + o.w[1]), uint16_t(w[2] + o.w[2]), uint16_t(w[3] + o.w[3])}};
    }
    ScalarColumns operator-() const { return {{uint16_t(-w[0]), uint16_t(-w[1]), uint16_t(-w[2]), uint16_t(-w[3])}}; }
    ScalarColumns operator<<(int bits) const
    {
        return {{uint16_t(w[0] << bits), uint16_t(w[1] << bits), uint16_t(w[2] << bits), uint16_t(w[3] << bits)}};
    }
    /// The products divided by 2^16, rounded down.
    ScalarColumns Share(ScalarColumns o) const
    {
        ScalarColumns res;
        for (int c = 0; c < 4; ++c) {
            res.w[c] = uint16_t(uint32_t(w[c]) * o.w[c] >> 16);
        }
        return res;
    }
};

struct SseColumns {
    __m128i v[2];

    static constexpr int kPixels = 4;

    static SseColumns Splat(int value) { return {{_mm_set1_epi16(int16_t(value)), _mm_set1_epi16(int16_t(value))}}; }
    static SseColumns Load(const Columns& p, int x)
    {
        return {{LoadRegister(p.blueRed + ptrdiff_t(x) * 2), LoadRegister(p.greenAlpha + ptrdiff_t(x) * 2)}};
    }
    static SseColumns FromBytes(const uint8_t* p)
    {
        const __m128i bytes = LoadRegister(p);
        return {{_mm_and_si128(bytes, _mm_set1_epi16(0xFF)), _mm_srli_epi16(bytes, 8)}};
    }
    static SseColumns FromHighBytes(const uint8_t* p) { return High(LoadRegister(p)); }
    static void LoadNeighbours(SseColumns& left, SseColumns& right, const uint8_t* line, const int* numbers)
    {
        const __m128i first = _mm_unpacklo_epi32(LoadTwo(line, numbers[0]), LoadTwo(line, numbers[1]));
        const __m128i second = _mm_unpacklo_epi32(LoadTwo(line, numbers[2]), LoadTwo(line, numbers[3]));
        left = High(_mm_unpacklo_epi64(first, second));
        right = High(_mm_unpackhi_epi64(first, second));
    }
    static SseColumns LoadWeights(const uint16_t* p) { return {{LoadRegister(p), LoadRegister(p)}}; }
    void Store(const Columns& p, int x) const
    {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p.blueRed + ptrdiff_t(x) * 2), v[0]);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p.greenAlpha + ptrdiff_t(x) * 2), v[1]);
    }
    void HighToBytes(uint8_t* p, uint8_t alpha) const
    {
        const __m128i green = _mm_and_si128(v[1], _mm_set1_epi32(0xFF00));
        const __m128i highest = _mm_slli_epi32(_mm_set1_epi32(alpha), 24);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p),
                         _mm_or_si128(_mm_or_si128(_mm_srli_epi16(v[0], 8), highest), green));
    }

    SseColumns operator+(SseColumns o) const { return {{_mm_add_epi16(v[0], o.v[0]), _mm_add_epi16(v[1], o.v[1])}}; }
    SseColumns operator-() const
    {
        const __m128i zero = _mm_setzero_si128();
        return {{_mm_sub_epi16(zero, v[0]), _mm_sub_epi16(zero, v[1])}};
    }
    SseColumns operator<<(int bits) const
    {
        const __m128i count = _mm_cvtsi32_si128(bits);
        return {{_mm_sll_epi16(v[0], count), _mm_sll_epi16(v[1], count)}};
    }
    SseColumns Share(SseColumns o) const { return {{_mm_mulhi_epu16(v[0], o.v[0]), _mm_mulhi_epu16(v[1], o.v[1])}}; }

private:
    static __m128i LoadTwo(const uint8_t* line, int number)
    {
        return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(line + ptrdiff_t(number) * 4));
    }
    static SseColumns High(__m128i bytes)
    {
        return {{_mm_slli_epi16(bytes, 8), _mm_andnot_si128(_mm_set1_epi16(0xFF), bytes)}};
    }
};

/// Weighted sums of columns; the weights are below 2^15.
struct ScalarSums {
    int32_t s[4];

    static constexpr int kPixels = 1;

    template <int Fours>
    static ScalarSums Of(const Columns& columns, const WeightTable& table, int x)
    {
        ScalarSums res = {};
        const int fours = Fours > 0 ? Fours : table.fours;
        const int16_t* const weights = table.weights + ptrdiff_t(x) * fours * 8;
        for (int i = 0; i < fours * 4; ++i) {
            const ScalarColumns column = ScalarColumns::Load(columns, table.first[x] + i);
            for (int c = 0; c < 4; ++c) {
                res.s[c] += column.w[c] * weights[i / 2 * 4 + i % 2];
            }
        }
        return res;
    }
    void ToBytes(uint8_t* p, float scale, float bias, uint8_t alpha) const
    {
        constexpr int kPlaces[3] = {0, 2, 1};
        for (int c = 0; c < 3; ++c) {
            p[kPlaces[c]] = uint8_t(float(s[c]) * scale + bias);
        }
        p[3] = alpha;
    }
};

/// Stores four pixels whose bytes are in the halves of 32 bits.
inline void StoreFour(uint8_t* p, __m128i blueRed, __m128i greenAlpha, uint8_t alpha)
{
    const __m128i green = _mm_and_si128(_mm_slli_epi16(greenAlpha, 8), _mm_set1_epi32(0xFFFF));
    const __m128i highest = _mm_slli_epi32(_mm_set1_epi32(alpha), 24);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(p), _mm_or_si128(_mm_or_si128(blueRed, green), highest));
}

struct SseSums {
    __m128i blueRed[4], greenAlpha[4];  ///< per pixel the sums of the first two and the last two of each four columns

    static constexpr int kPixels = 4;

    template <int Fours>
    static SseSums Of(const Columns& columns, const WeightTable& table, int x)
    {
        SseSums res;
        const int fours = Fours > 0 ? Fours : table.fours;
        for (int i = 0; i < kPixels; ++i) {
            res.blueRed[i] = res.greenAlpha[i] = _mm_setzero_si128();
            for (int k = 0; k < fours; ++k) {
                const ptrdiff_t from = (ptrdiff_t(table.first[x + i]) + k * 4) * 2;
                const __m128i weights = LoadRegister(table.weights + (ptrdiff_t(x + i) * fours + k) * 8);
                res.blueRed[i] = PlusProducts(res.blueRed[i], columns.blueRed + from, weights);
                res.greenAlpha[i] = PlusProducts(res.greenAlpha[i], columns.greenAlpha + from, weights);
            }
        }
        return res;
    }
    void ToBytes(uint8_t* p, float scale, float bias, uint8_t alpha) const
    {
        StoreFour(p, Scaled(blueRed, scale, bias), Scaled(greenAlpha, scale, bias), alpha);
    }

private:
    static __m128i PlusProducts(__m128i sum, const uint16_t* four, __m128i weights)
    {
        const __m128i low = _mm_shufflelo_epi16(LoadRegister(four), _MM_SHUFFLE(3, 1, 2, 0));
        return _mm_add_epi32(sum, _mm_madd_epi16(_mm_shufflehi_epi16(low, _MM_SHUFFLE(3, 1, 2, 0)), weights));
    }
    static __m128i Scaled(__m128i first, __m128i second, float scale, float bias)
    {
        const __m128i sums = _mm_add_epi32(_mm_unpacklo_epi64(first, second), _mm_unpackhi_epi64(first, second));
        const __m128 scaled = _mm_mul_ps(_mm_cvtepi32_ps(sums), _mm_set1_ps(scale));
        return _mm_cvttps_epi32(_mm_add_ps(scaled, _mm_set1_ps(bias)));
    }
    static __m128i Scaled(const __m128i (&of)[4], float scale, float bias)
    {
        return _mm_packs_epi32(Scaled(of[0], of[1], scale, bias), Scaled(of[2], of[3], scale, bias));
    }
};

#ifdef __AVX2__

struct Avx2PixelFloats {
    __m256 v;

    static constexpr int kPixels = 2;

    static Avx2PixelFloats Zero() { return {_mm256_setzero_ps()}; }
    static Avx2PixelFloats Load(const float* p) { return {_mm256_loadu_ps(p)}; }
    static Avx2PixelFloats FromBytes(const uint8_t* p)
    {
        return {_mm256_cvtepi32_ps(_mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p))))};
    }
    static Avx2PixelFloats Both(SsePixelFloats first, SsePixelFloats second)
    {
        return {_mm256_set_m128(second.v, first.v)};
    }
    void Store(float* p) const { _mm256_storeu_ps(p, v); }

    Avx2PixelFloats operator+(Avx2PixelFloats o) const { return {_mm256_add_ps(v, o.v)}; }
    Avx2PixelFloats operator*(float s) const { return {_mm256_mul_ps(v, _mm256_set1_ps(s))}; }
    Avx2PixelFloats Premultiplied() const { return {_mm256_mul_ps(v, AlphaAndOne())}; }
    Avx2PixelFloats Straight() const
    {
        const __m256 some = _mm256_cmp_ps(_mm256_permute_ps(v, 0xFF), _mm256_setzero_ps(), _CMP_GT_OQ);
        return {_mm256_and_ps(_mm256_div_ps(v, AlphaAndOne()), some)};
    }
    Avx2PixelFloats AtLeastZero() const { return {_mm256_max_ps(v, _mm256_setzero_ps())}; }
    void ToBytes(uint8_t* p) const
    {
        const __m256 rounded = _mm256_add_ps(_mm256_min_ps(v, _mm256_set1_ps(255)), _mm256_set1_ps(0.5f));
        const __m256i whole = _mm256_cvttps_epi32(rounded);
        const __m128i words = _mm_packs_epi32(_mm256_castsi256_si128(whole), _mm256_extracti128_si256(whole, 1));
        _mm_storel_epi64(reinterpret_cast<__m128i*>(p), _mm_packus_epi16(words, words));
    }

private:
    __m256 AlphaAndOne() const { return _mm256_blend_ps(_mm256_permute_ps(v, 0xFF), _mm256_set1_ps(1), 0x88); }
};

struct Avx2PixelWords {
    __m256i v[2];

    static constexpr int kPixels = 8;

    static Avx2PixelWords SumOfFour(const uint8_t* upper, const uint8_t* lower)
    {
        return {{_mm256_add_epi16(SumOfTwo(upper), SumOfTwo(lower)),
                 _mm256_add_epi16(SumOfTwo(upper + 32), SumOfTwo(lower + 32))}};
    }
    template <int Bits>
    void ToBytes(uint8_t* p, uint8_t alpha) const
    {
        const __m256i scale = _mm256_set1_epi16(1 << (15 - Bits));
        const __m256i whole[2] = {_mm256_mulhrs_epi16(v[0], scale), _mm256_mulhrs_epi16(v[1], scale)};
        const __m256i bytes =
            _mm256_permute4x64_epi64(_mm256_packus_epi16(whole[0], whole[1]), _MM_SHUFFLE(3, 1, 2, 0));
        const __m256i colours = _mm256_and_si256(bytes, _mm256_set1_epi32(0xFFFFFF));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(p),
                            _mm256_or_si256(colours, _mm256_slli_epi32(_mm256_set1_epi32(alpha), 24)));
    }

private:
    static __m256i SumOfTwo(const uint8_t* p)
    {
        const __m256i pairs =
            _mm256_broadcastsi128_si256(_mm_setr_epi8(0, 4, 1, 5, 2, 6, 3, 7, 8, 12, 9, 13, 10, 14, 11, 15));
        const __m256i eight = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
        return _mm256_maddubs_epi16(_mm256_shuffle_epi8(eight, pairs), _mm256_set1_epi8(1));
    }
};

struct Avx2Columns {
    __m256i v[2];

    static constexpr int kPixels = 8;

    static Avx2Columns Splat(int value)
    {
        return {{_mm256_set1_epi16(int16_t(value)), _mm256_set1_epi16(int16_t(value))}};
    }
    static Avx2Columns Load(const Columns& p, int x)
    {
        return {{LoadSixteen(p.blueRed + ptrdiff_t(x) * 2), LoadSixteen(p.greenAlpha + ptrdiff_t(x) * 2)}};
    }
    static Avx2Columns FromBytes(const uint8_t* p)
    {
        const __m256i bytes = LoadSixteen(p);
        return {{_mm256_and_si256(bytes, _mm256_set1_epi16(0xFF)), _mm256_srli_epi16(bytes, 8)}};
    }
    static Avx2Columns FromHighBytes(const uint8_t* p) { return High(LoadSixteen(p)); }
    /// All indices must be at most seven above the first, and nine pixels from there on must be readable.
    static void LoadNeighbours(Avx2Columns& left, Avx2Columns& right, const uint8_t* line, const int* numbers)
    {
        const uint8_t* const p = line + ptrdiff_t(numbers[0]) * 4;
        const __m256i places = _mm256_sub_epi32(LoadSixteen(numbers), _mm256_set1_epi32(numbers[0]));
        left = High(_mm256_permutevar8x32_epi32(LoadSixteen(p), places));
        right = High(_mm256_permutevar8x32_epi32(LoadSixteen(p + 4), places));
    }
    static Avx2Columns LoadWeights(const uint16_t* p) { return {{LoadSixteen(p), LoadSixteen(p)}}; }
    void Store(const Columns& p, int x) const
    {
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(p.blueRed + ptrdiff_t(x) * 2), v[0]);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(p.greenAlpha + ptrdiff_t(x) * 2), v[1]);
    }
    void HighToBytes(uint8_t* p, uint8_t alpha) const
    {
        const __m256i green = _mm256_and_si256(v[1], _mm256_set1_epi32(0xFF00));
        const __m256i highest = _mm256_slli_epi32(_mm256_set1_epi32(alpha), 24);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(p),
                            _mm256_or_si256(_mm256_or_si256(_mm256_srli_epi16(v[0], 8), highest), green));
    }

    Avx2Columns operator+(Avx2Columns o) const
    {
        return {{_mm256_add_epi16(v[0], o.v[0]), _mm256_add_epi16(v[1], o.v[1])}};
    }
    Avx2Columns operator-() const
    {
        const __m256i zero = _mm256_setzero_si256();
        return {{_mm256_sub_epi16(zero, v[0]), _mm256_sub_epi16(zero, v[1])}};
    }
    Avx2Columns operator<<(int bits) const
    {
        const __m128i count = _mm_cvtsi32_si128(bits);
        return {{_mm256_sll_epi16(v[0], count), _mm256_sll_epi16(v[1], count)}};
    }
    Avx2Columns Share(Avx2Columns o) const
    {
        return {{_mm256_mulhi_epu16(v[0], o.v[0]), _mm256_mulhi_epu16(v[1], o.v[1])}};
    }

private:
    static __m256i LoadSixteen(const void* p) { return _mm256_loadu_si256(static_cast<const __m256i*>(p)); }
    static Avx2Columns High(__m256i bytes)
    {
        return {{_mm256_slli_epi16(bytes, 8), _mm256_andnot_si256(_mm256_set1_epi16(0xFF), bytes)}};
    }
};

struct Avx2Sums {
    __m256i s[4];  ///< like SseSums, with blue and red in the lower half

    static constexpr int kPixels = 4;

    template <int Fours>
    static Avx2Sums Of(const Columns& columns, const WeightTable& table, int x)
    {
        const int fours = Fours > 0 ? Fours : table.fours;
        const __m256i pairs =
            _mm256_broadcastsi128_si256(_mm_setr_epi8(0, 1, 4, 5, 2, 3, 6, 7, 8, 9, 12, 13, 10, 11, 14, 15));
        Avx2Sums res;
        for (int i = 0; i < kPixels; ++i) {
            res.s[i] = _mm256_setzero_si256();
            for (int k = 0; k < fours; ++k) {
                const ptrdiff_t from = (ptrdiff_t(table.first[x + i]) + k * 4) * 2;
                const __m128i weights = LoadRegister(table.weights + (ptrdiff_t(x + i) * fours + k) * 8);
                const __m256i four =
                    _mm256_set_m128i(LoadRegister(columns.greenAlpha + from), LoadRegister(columns.blueRed + from));
                const __m256i products =
                    _mm256_madd_epi16(_mm256_shuffle_epi8(four, pairs), _mm256_broadcastsi128_si256(weights));
                res.s[i] = _mm256_add_epi32(res.s[i], products);
            }
        }
        return res;
    }
    void ToBytes(uint8_t* p, float scale, float bias, uint8_t alpha) const
    {
        const __m256i words = _mm256_packs_epi32(Scaled(s[0], s[1], scale, bias), Scaled(s[2], s[3], scale, bias));
        StoreFour(p, _mm256_castsi256_si128(words), _mm256_extracti128_si256(words, 1), alpha);
    }

private:
    static __m256i Scaled(__m256i first, __m256i second, float scale, float bias)
    {
        const __m256i sums =
            _mm256_add_epi32(_mm256_unpacklo_epi64(first, second), _mm256_unpackhi_epi64(first, second));
        const __m256 scaled = _mm256_mul_ps(_mm256_cvtepi32_ps(sums), _mm256_set1_ps(scale));
        return _mm256_cvttps_epi32(_mm256_add_ps(scaled, _mm256_set1_ps(bias)));
    }
};

#endif

}  // namespace
}  // namespace zm

#pragma once

#include <emmintrin.h>
#include <math.h>
#include <stddef.h>
#include <string.h>
#ifdef __AVX2__
#include <immintrin.h>
#endif

// Lane types: vectors of floats over which each kernel is written once. All of them perform the same operations in the
// same order, so every path gives the same bits.
//
// Everything here has internal linkage, and so has every kernel instantiated from it: otherwise the linker could pick
// the copy of a function that was compiled for a wider instruction set and use it everywhere.

namespace zm {
namespace {

/// Four lanes in plain floats.
struct ScalarLanes {
    float f[4];

    static constexpr int kCount = 4;

    static ScalarLanes Splat(float s) { return {{s, s, s, s}}; }
    /// Float number `i` at p, in all lanes.
    static ScalarLanes SplatAt(const void* p, int i)
    {
        float s;
        memcpy(&s, static_cast<const char*>(p) + 4 * i, 4);
        return Splat(s);
    }
    static ScalarLanes Set(float x, float y, float z, float w) { return {{x, y, z, w}}; }
    static ScalarLanes Load4(const void* p)
    {
        ScalarLanes r;
        memcpy(r.f, p, 16);
        return r;
    }
    /// Three floats and a zero; reads 12 bytes only.
    static ScalarLanes Load3(const void* p)
    {
        ScalarLanes r;
        memcpy(r.f, p, 12);
        r.f[3] = 0;
        return r;
    }
    static ScalarLanes Load2(const void* p)
    {
        ScalarLanes r = {};
        memcpy(r.f, p, 8);
        return r;
    }
    void Store4(void* p) const { memcpy(p, f, 16); }
    void Store3(void* p) const { memcpy(p, f, 12); }
    void Store2(void* p) const { memcpy(p, f, 8); }

    ScalarLanes operator+(ScalarLanes o) const
    {
        return {{f[0] + o.f[0], f[1] + o.f[1], f[2] + o.f[2], f[3] + o.f[3]}};
    }
    ScalarLanes operator-(ScalarLanes o) const
    {
        return {{f[0] - o.f[0], f[1] - o.f[1], f[2] - o.f[2], f[3] - o.f[3]}};
    }
    ScalarLanes operator*(ScalarLanes o) const
    {
        return {{f[0] * o.f[0], f[1] * o.f[1], f[2] * o.f[2], f[3] * o.f[3]}};
    }
    ScalarLanes operator/(ScalarLanes o) const
    {
        return {{f[0] / o.f[0], f[1] / o.f[1], f[2] / o.f[2], f[3] / o.f[3]}};
    }

    /// a < b ? a : b in each lane, like the processor's instruction: the second operand if either is NaN.
    static ScalarLanes Min(ScalarLanes a, ScalarLanes b)
    {
        ScalarLanes r;
        for (int i = 0; i < 4; ++i) {
            r.f[i] = a.f[i] < b.f[i] ? a.f[i] : b.f[i];
        }
        return r;
    }
    static ScalarLanes Max(ScalarLanes a, ScalarLanes b)
    {
        ScalarLanes r;
        for (int i = 0; i < 4; ++i) {
            r.f[i] = a.f[i] > b.f[i] ? a.f[i] : b.f[i];
        }
        return r;
    }
    /// Bit i is set if a < b in lane i; not set if either is NaN.
    static unsigned LessMask(ScalarLanes a, ScalarLanes b)
    {
        return unsigned(a.f[0] < b.f[0]) | unsigned(a.f[1] < b.f[1]) << 1 | unsigned(a.f[2] < b.f[2]) << 2 |
               unsigned(a.f[3] < b.f[3]) << 3;
    }
    static unsigned LessEqualMask(ScalarLanes a, ScalarLanes b)
    {
        return unsigned(a.f[0] <= b.f[0]) | unsigned(a.f[1] <= b.f[1]) << 1 | unsigned(a.f[2] <= b.f[2]) << 2 |
               unsigned(a.f[3] <= b.f[3]) << 3;
    }
    ScalarLanes Abs() const { return {{fabsf(f[0]), fabsf(f[1]), fabsf(f[2]), fabsf(f[3])}}; }

    ScalarLanes ClearW() const { return {{f[0], f[1], f[2], 0.0f}}; }
    ScalarLanes WithW1() const { return {{f[0], f[1], f[2], 1.0f}}; }

    // --- As a row of a matrix ---

    static ScalarLanes Row(const float* p) { return Load4(p); }
    static ScalarLanes Load(const float* p) { return Load4(p); }
    void Store(float* p) const { Store4(p); }
    template <int i>
    ScalarLanes SplatInRows() const
    {
        return Splat(f[i]);
    }
    static ScalarLanes LastRow(const float* p, int row) { return row == 3 ? Load4(p) : Splat(0); }
    ScalarLanes WithAffineColumn(int row) const { return row == 3 ? WithW1() : ClearW(); }

    template <int i, int j, int k>
    ScalarLanes Pick() const
    {
        return {{f[i], f[j], f[k], f[3]}};
    }
    template <int i, int j, int k, int l>
    ScalarLanes Spread() const
    {
        return {{f[i], f[j], f[k], f[l]}};
    }

    /// Lanes i and j of a, then k and l of b.
    template <int i, int j, int k, int l>
    static ScalarLanes Shuffle(ScalarLanes a, ScalarLanes b)
    {
        return {{a.f[i], a.f[j], b.f[k], b.f[l]}};
    }
    static void Transpose(ScalarLanes& a, ScalarLanes& b, ScalarLanes& c, ScalarLanes& d)
    {
        const ScalarLanes rows[4] = {a, b, c, d};
        ScalarLanes* const columns[4] = {&a, &b, &c, &d};
        for (int i = 0; i < 16; ++i) {
            columns[i % 4]->f[i / 4] = rows[i / 4].f[i % 4];
        }
    }
};

/// Four lanes in one SSE register.
struct SseLanes {
    __m128 v;

    static constexpr int kCount = 4;

    static SseLanes Splat(float s) { return {_mm_set1_ps(s)}; }
    static SseLanes SplatAt(const void* p, int i)
    {
        float s;
        memcpy(&s, static_cast<const char*>(p) + 4 * i, 4);
        return Splat(s);
    }
    static SseLanes Set(float x, float y, float z, float w) { return {_mm_setr_ps(x, y, z, w)}; }
    static SseLanes Load4(const void* p) { return {_mm_loadu_ps(static_cast<const float*>(p))}; }
    static SseLanes Load3(const void* p)
    {
        float z;
        memcpy(&z, static_cast<const char*>(p) + 8, 4);
        return {_mm_movelh_ps(Load2(p).v, _mm_set_ss(z))};
    }
    static SseLanes Load2(const void* p) { return {_mm_castsi128_ps(_mm_loadl_epi64(static_cast<const __m128i*>(p)))}; }
    void Store4(void* p) const { _mm_storeu_ps(static_cast<float*>(p), v); }
    void Store3(void* p) const
    {
        const float z = _mm_cvtss_f32(_mm_movehl_ps(v, v));
        Store2(p);
        memcpy(static_cast<char*>(p) + 8, &z, 4);
    }
    void Store2(void* p) const { _mm_storel_epi64(static_cast<__m128i*>(p), _mm_castps_si128(v)); }

    SseLanes operator+(SseLanes o) const { return {_mm_add_ps(v, o.v)}; }
    SseLanes operator-(SseLanes o) const { return {_mm_sub_ps(v, o.v)}; }
    SseLanes operator*(SseLanes o) const { return {_mm_mul_ps(v, o.v)}; }
    SseLanes operator/(SseLanes o) const { return {_mm_div_ps(v, o.v)}; }
    static SseLanes Min(SseLanes a, SseLanes b) { return {_mm_min_ps(a.v, b.v)}; }
    static SseLanes Max(SseLanes a, SseLanes b) { return {_mm_max_ps(a.v, b.v)}; }
    static unsigned LessMask(SseLanes a, SseLanes b) { return unsigned(_mm_movemask_ps(_mm_cmplt_ps(a.v, b.v))); }
    static unsigned LessEqualMask(SseLanes a, SseLanes b) { return unsigned(_mm_movemask_ps(_mm_cmple_ps(a.v, b.v))); }
    SseLanes Abs() const { return {_mm_andnot_ps(_mm_set1_ps(-0.0f), v)}; }

    SseLanes ClearW() const { return {_mm_and_ps(v, _mm_castsi128_ps(_mm_setr_epi32(-1, -1, -1, 0)))}; }
    SseLanes WithW1() const { return {_mm_or_ps(ClearW().v, _mm_setr_ps(0, 0, 0, 1))}; }

    /// Lanes i, j and k, then the fourth unchanged.
    template <int i, int j, int k>
    SseLanes Pick() const
    {
        return {_mm_shuffle_ps(v, v, _MM_SHUFFLE(3, k, j, i))};
    }

    template <int i, int j, int k, int l>
    static SseLanes Shuffle(SseLanes a, SseLanes b)
    {
        return {_mm_shuffle_ps(a.v, b.v, _MM_SHUFFLE(l, k, j, i))};
    }
    /// Transposes four registers, the rows of a 4x4 block.
    static void Transpose(SseLanes& a, SseLanes& b, SseLanes& c, SseLanes& d) { _MM_TRANSPOSE4_PS(a.v, b.v, c.v, d.v); }

    // --- As a row of a matrix ---

    static SseLanes Row(const float* p) { return Load4(p); }
    static SseLanes Load(const float* p) { return Load4(p); }
    void Store(float* p) const { Store4(p); }
    template <int i>
    SseLanes SplatInRows() const
    {
        return Spread<i, i, i, i>();
    }
    /// `p` for row 3, zero for the others.
    static SseLanes LastRow(const float* p, int row) { return row == 3 ? Load4(p) : Splat(0); }
    /// With the fourth column of an affine matrix.
    SseLanes WithAffineColumn(int row) const { return row == 3 ? WithW1() : ClearW(); }

    // --- As a third of four contiguous points: x y z x, y z x y, z x y z ---

    /// The three elements of a matrix row, repeated to line up with the floats of register `part`.
    static SseLanes Repeat(const float* row, int part)
    {
        const SseLanes r = Load4(row);
        return part == 0 ? r.Spread<0, 1, 2, 0>() : part == 1 ? r.Spread<1, 2, 0, 1>() : r.Spread<2, 0, 1, 2>();
    }

    /// For each float of four points (48 bytes), the x, y and z of its point.
    static void SpreadPoints(const char* p, SseLanes (&x)[3], SseLanes (&y)[3], SseLanes (&z)[3])
    {
        const SseLanes a = Load4(p), b = Load4(p + 16), c = Load4(p + 32);
        // Where one register does not hold both points, an unaligned load does.
        x[0] = a.Spread<0, 0, 0, 3>();
        y[0] = Load4(p + 4).Spread<0, 0, 0, 3>();
        z[0] = Load4(p + 8).Spread<0, 0, 0, 3>();
        x[1].v = _mm_shuffle_ps(a.v, b.v, _MM_SHUFFLE(2, 2, 3, 3));
        y[1] = b.Spread<0, 0, 3, 3>();
        z[1].v = _mm_shuffle_ps(b.v, c.v, _MM_SHUFFLE(0, 0, 1, 1));
        x[2] = Load4(p + 24).Spread<0, 3, 3, 3>();
        y[2] = Load4(p + 28).Spread<0, 3, 3, 3>();
        z[2] = c.Spread<0, 3, 3, 3>();
    }

    template <int i, int j, int k, int l>
    SseLanes Spread() const
    {
        return {_mm_shuffle_ps(v, v, _MM_SHUFFLE(l, k, j, i))};
    }

    /// With `stream`, the store bypasses the caches and `p` must be a multiple of 16.
    template <bool stream>
    void Put(char* p) const
    {
        if (stream) {
            _mm_stream_ps(reinterpret_cast<float*>(p), v);
        } else {
            Store4(p);
        }
    }
};

/// One float: the reference for the wide types. A point takes three of them, at any stride.
struct SingleLane {
    float v;

    static constexpr int kCount = 1;

    SingleLane operator+(SingleLane o) const { return {v + o.v}; }
    SingleLane operator-(SingleLane o) const { return {v - o.v}; }
    SingleLane operator*(SingleLane o) const { return {v * o.v}; }

    static SingleLane Splat(float s) { return {s}; }
    static SingleLane At(const char* p)
    {
        SingleLane r;
        memcpy(&r.v, p, 4);
        return r;
    }
    static SingleLane Repeat(const float* row, int part) { return {row[part]}; }

    static void SpreadPoints(const char* p, SingleLane (&x)[3], SingleLane (&y)[3], SingleLane (&z)[3])
    {
        for (int part = 0; part < 3; ++part) {
            x[part] = At(p);
            y[part] = At(p + 4);
            z[part] = At(p + 8);
        }
    }

    template <bool stream>
    void Put(char* p) const
    {
        memcpy(p, &v, 4);
    }
};

#ifdef __AVX2__

/// Eight lanes in one AVX register.
struct Avx2Lanes {
    __m256 v;

    static constexpr int kCount = 8;

    static Avx2Lanes Load8(const char* p) { return {_mm256_loadu_ps(reinterpret_cast<const float*>(p))}; }
    static Avx2Lanes Splat(float s) { return {_mm256_set1_ps(s)}; }
    static Avx2Lanes SplatAt(const void* p, int i)
    {
        float s;
        memcpy(&s, static_cast<const char*>(p) + 4 * i, 4);
        return Splat(s);
    }
    static Avx2Lanes Halves(SseLanes low, SseLanes high)
    {
        return {_mm256_insertf128_ps(_mm256_castps128_ps256(low.v), high.v, 1)};
    }
    /// Float i at `low` in the lower half, and at `high` in the upper one.
    static Avx2Lanes SplatHalves(const char* low, const char* high, int i)
    {
        return SplatAt(low, i).From<0xF0>(SplatAt(high, i));
    }
    SseLanes Low() const { return {_mm256_castps256_ps128(v)}; }
    SseLanes High() const { return {_mm256_extractf128_ps(v, 1)}; }
    Avx2Lanes LowTwice() const { return {_mm256_permute2f128_ps(v, v, 0x00)}; }
    Avx2Lanes HighTwice() const { return {_mm256_permute2f128_ps(v, v, 0x11)}; }
    /// The upper half, moved down, and another.
    Avx2Lanes HighAnd(SseLanes high) const { return {_mm256_permute2f128_ps(v, _mm256_castps128_ps256(high.v), 0x21)}; }
    Avx2Lanes operator+(Avx2Lanes o) const { return {_mm256_add_ps(v, o.v)}; }
    Avx2Lanes operator-(Avx2Lanes o) const { return {_mm256_sub_ps(v, o.v)}; }
    Avx2Lanes operator*(Avx2Lanes o) const { return {_mm256_mul_ps(v, o.v)}; }
    Avx2Lanes operator/(Avx2Lanes o) const { return {_mm256_div_ps(v, o.v)}; }
    static Avx2Lanes Min(Avx2Lanes a, Avx2Lanes b) { return {_mm256_min_ps(a.v, b.v)}; }
    static Avx2Lanes Max(Avx2Lanes a, Avx2Lanes b) { return {_mm256_max_ps(a.v, b.v)}; }
    static unsigned LessMask(Avx2Lanes a, Avx2Lanes b)
    {
        return unsigned(_mm256_movemask_ps(_mm256_cmp_ps(a.v, b.v, _CMP_LT_OS)));
    }
    static unsigned LessEqualMask(Avx2Lanes a, Avx2Lanes b)
    {
        return unsigned(_mm256_movemask_ps(_mm256_cmp_ps(a.v, b.v, _CMP_LE_OS)));
    }
    Avx2Lanes Abs() const { return {_mm256_andnot_ps(_mm256_set1_ps(-0.0f), v)}; }
    /// Shuffle and transpose within each half.
    template <int i, int j, int k, int l>
    static Avx2Lanes Shuffle(Avx2Lanes a, Avx2Lanes b)
    {
        return {_mm256_shuffle_ps(a.v, b.v, _MM_SHUFFLE(l, k, j, i))};
    }
    static void Transpose(Avx2Lanes& a, Avx2Lanes& b, Avx2Lanes& c, Avx2Lanes& d)
    {
        const Avx2Lanes ab = {_mm256_unpacklo_ps(a.v, b.v)}, cd = {_mm256_unpacklo_ps(c.v, d.v)};
        const Avx2Lanes abHigh = {_mm256_unpackhi_ps(a.v, b.v)}, cdHigh = {_mm256_unpackhi_ps(c.v, d.v)};
        a = Shuffle<0, 1, 0, 1>(ab, cd);
        b = Shuffle<2, 3, 2, 3>(ab, cd);
        c = Shuffle<0, 1, 0, 1>(abHigh, cdHigh);
        d = Shuffle<2, 3, 2, 3>(abHigh, cdHigh);
    }

    // --- As two rows of a matrix, `pair` 0 or 1 ---

    static Avx2Lanes Row(const float* p) { return {_mm256_broadcast_ps(reinterpret_cast<const __m128*>(p))}; }
    static Avx2Lanes Load(const float* p) { return {_mm256_loadu_ps(p)}; }
    void Store(float* p) const { _mm256_storeu_ps(p, v); }
    template <int i>
    Avx2Lanes SplatInRows() const
    {
        return {_mm256_permute_ps(v, _MM_SHUFFLE(i, i, i, i))};
    }
    static Avx2Lanes LastRow(const float* p, int pair)
    {
        return {pair == 1 ? _mm256_insertf128_ps(_mm256_setzero_ps(), _mm_loadu_ps(p), 1) : _mm256_setzero_ps()};
    }
    Avx2Lanes WithAffineColumn(int pair) const
    {
        const float last = pair == 1 ? 1.0f : 0.0f;
        return {_mm256_blend_ps(v, _mm256_setr_ps(0, 0, 0, 0, 0, 0, 0, last), 0x88)};
    }

    // --- As a third of eight contiguous points ---

    static Avx2Lanes Repeat(const float* row, int part)
    {
        const Avx2Lanes r = Row(row);
        return part == 0   ? r.Spread<0, 1, 2, 0, 1, 2, 0, 1>()
               : part == 1 ? r.Spread<2, 0, 1, 2, 0, 1, 2, 0>()
                           : r.Spread<1, 2, 0, 1, 2, 0, 1, 2>();
    }

    /// For each float of eight points (96 bytes), the x, y and z of its point. Each takes one permutation of a whole
    /// register; floats from the neighbouring register are first blended into a lane that is not needed. (Staying
    /// within register halves would need split loads and stores, which cost more.)
    static void SpreadPoints(const char* p, Avx2Lanes (&x)[3], Avx2Lanes (&y)[3], Avx2Lanes (&z)[3])
    {
        const Avx2Lanes a = Load8(p), b = Load8(p + 32), c = Load8(p + 64);
        x[0] = a.Spread<0, 0, 0, 3, 3, 3, 6, 6>();
        y[0] = a.Spread<1, 1, 1, 4, 4, 4, 7, 7>();
        z[0] = a.From<0x01>(b).Spread<2, 2, 2, 5, 5, 5, 0, 0>();
        x[1] = b.From<0x40>(a).Spread<6, 1, 1, 1, 4, 4, 4, 7>();
        y[1] = b.From<0x80>(a).From<0x01>(c).Spread<7, 2, 2, 2, 5, 5, 5, 0>();
        z[1] = b.From<0x02>(c).Spread<0, 3, 3, 3, 6, 6, 6, 1>();
        x[2] = c.From<0x80>(b).Spread<7, 7, 2, 2, 2, 5, 5, 5>();
        y[2] = c.Spread<0, 0, 3, 3, 3, 6, 6, 6>();
        z[2] = c.Spread<1, 1, 4, 4, 4, 7, 7, 7>();
    }

    template <int a, int b, int c, int d, int e, int f, int g, int h>
    Avx2Lanes Spread() const
    {
        return {_mm256_permutevar8x32_ps(v, _mm256_setr_epi32(a, b, c, d, e, f, g, h))};
    }

    /// This register with the lanes of `mask` replaced by those of `other`.
    template <int mask>
    Avx2Lanes From(Avx2Lanes other) const
    {
        return {_mm256_blend_ps(v, other.v, mask)};
    }

    /// With `stream`, the store bypasses the caches and `p` must be a multiple of 32.
    template <bool stream>
    void Put(char* p) const
    {
        if (stream) {
            _mm256_stream_ps(reinterpret_cast<float*>(p), v);
        } else {
            _mm256_storeu_ps(reinterpret_cast<float*>(p), v);
        }
    }
};

#endif

}  // namespace
}  // namespace zm

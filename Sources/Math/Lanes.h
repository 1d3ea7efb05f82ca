#pragma once

#include <emmintrin.h>
#include <stddef.h>
#include <string.h>
#ifdef __AVX2__
#include <immintrin.h>
#endif

// Lane types: floats side by side on which the kernels are written once. All of them do the same
// operations in the same order, so every path gives the same bits.
//
// Everything here has internal linkage, and so has every kernel made from it: a file compiled for a
// wider instruction set must not lend its copy of a function to the rest of the library.

namespace zm {
namespace {

/// Four lanes in plain floats.
struct ScalarLanes {
    float f[4];

    static ScalarLanes Splat(float s) { return {{s, s, s, s}}; }
    static ScalarLanes Set(float x, float y, float z, float w) { return {{x, y, z, w}}; }
    static ScalarLanes Load4(const void* p)
    {
        ScalarLanes r;
        memcpy(r.f, p, 16);
        return r;
    }
    /// Three floats and a zero, reading 12 bytes.
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

    /// a < b ? a : b, lane by lane: the second operand where a non-number is met, as the processor
    /// does it.
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
    /// Bit i tells whether a < b in lane i; false where a non-number is met.
    static unsigned LessMask(ScalarLanes a, ScalarLanes b)
    {
        return unsigned(a.f[0] < b.f[0]) | unsigned(a.f[1] < b.f[1]) << 1 | unsigned(a.f[2] < b.f[2]) << 2 |
               unsigned(a.f[3] < b.f[3]) << 3;
    }

    ScalarLanes ClearW() const { return {{f[0], f[1], f[2], 0.0f}}; }
    ScalarLanes WithW1() const { return {{f[0], f[1], f[2], 1.0f}}; }

    template <int i, int j, int k>
    ScalarLanes Pick() const
    {
        return {{f[i], f[j], f[k], f[3]}};
    }
};

/// Four lanes in one SSE register.
struct SseLanes {
    __m128 v;

    static const int kCount = 4;

    static SseLanes Splat(float s) { return {_mm_set1_ps(s)}; }
    static SseLanes Set(float x, float y, float z, float w) { return {_mm_setr_ps(x, y, z, w)}; }
    static SseLanes Load4(const void* p) { return {_mm_loadu_ps(static_cast<const float*>(p))}; }
    static SseLanes Load3(const void* p)
    {
        float z;
        memcpy(&z, static_cast<const char*>(p) + 8, 4);
        return {_mm_movelh_ps(Load2(p).v, _mm_set_ss(z))};
    }
    static SseLanes Load2(const void* p)
    {
        return {_mm_castsi128_ps(_mm_loadl_epi64(static_cast<const __m128i*>(p)))};
    }
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
    static SseLanes Min(SseLanes a, SseLanes b) { return {_mm_min_ps(a.v, b.v)}; }
    static SseLanes Max(SseLanes a, SseLanes b) { return {_mm_max_ps(a.v, b.v)}; }
    static unsigned LessMask(SseLanes a, SseLanes b) { return unsigned(_mm_movemask_ps(_mm_cmplt_ps(a.v, b.v))); }

    SseLanes ClearW() const { return {_mm_and_ps(v, _mm_castsi128_ps(_mm_setr_epi32(-1, -1, -1, 0)))}; }
    SseLanes WithW1() const { return {_mm_or_ps(ClearW().v, _mm_setr_ps(0, 0, 0, 1))}; }

    /// Lanes i, j, k, then the fourth as it is.
    template <int i, int j, int k>
    SseLanes Pick() const
    {
        return {_mm_shuffle_ps(v, v, _MM_SHUFFLE(3, k, j, i))};
    }

    // --- As four points side by side ---

    /// x, y and z of four points from 48 bytes.
    static void LoadPoints(const char* p, SseLanes& x, SseLanes& y, SseLanes& z)
    {
        const __m128 a = Load4(p).v, b = Load4(p + 16).v, c = Load4(p + 32).v;
        const __m128 xy = _mm_shuffle_ps(b, c, _MM_SHUFFLE(2, 1, 3, 2));
        const __m128 yz = _mm_shuffle_ps(a, b, _MM_SHUFFLE(1, 0, 2, 1));
        x.v = _mm_shuffle_ps(a, xy, _MM_SHUFFLE(2, 0, 3, 0));
        y.v = _mm_shuffle_ps(yz, xy, _MM_SHUFFLE(3, 1, 2, 0));
        z.v = _mm_shuffle_ps(yz, c, _MM_SHUFFLE(3, 0, 3, 1));
    }

    /// The inverse of LoadPoints. With `Stream` the stores bypass the caches and `p` must be a multiple
    /// of 16.
    template <bool Stream>
    static void StorePoints(char* p, SseLanes x, SseLanes y, SseLanes z)
    {
        const __m128 xy = _mm_shuffle_ps(x.v, y.v, _MM_SHUFFLE(2, 0, 2, 0));
        const __m128 yz = _mm_shuffle_ps(y.v, z.v, _MM_SHUFFLE(3, 1, 3, 1));
        const __m128 zx = _mm_shuffle_ps(z.v, x.v, _MM_SHUFFLE(3, 1, 2, 0));
        Put<Stream>(p, _mm_shuffle_ps(xy, zx, _MM_SHUFFLE(2, 0, 2, 0)));
        Put<Stream>(p + 16, _mm_shuffle_ps(yz, xy, _MM_SHUFFLE(3, 1, 2, 0)));
        Put<Stream>(p + 32, _mm_shuffle_ps(zx, yz, _MM_SHUFFLE(3, 1, 3, 1)));
    }

    template <bool Stream>
    static void Put(char* p, __m128 r)
    {
        if (Stream) {
            _mm_stream_ps(reinterpret_cast<float*>(p), r);
        } else {
            _mm_storeu_ps(reinterpret_cast<float*>(p), r);
        }
    }
};

/// One point in plain floats: the reference of the wide forms, at any stride.
struct SingleLane {
    float v;

    static const int kCount = 1;

    static SingleLane Splat(float s) { return {s}; }
    SingleLane operator+(SingleLane o) const { return {v + o.v}; }
    SingleLane operator-(SingleLane o) const { return {v - o.v}; }
    SingleLane operator*(SingleLane o) const { return {v * o.v}; }

    static void LoadPoints(const char* p, SingleLane& x, SingleLane& y, SingleLane& z)
    {
        memcpy(&x.v, p, 4);
        memcpy(&y.v, p + 4, 4);
        memcpy(&z.v, p + 8, 4);
    }
    template <bool Stream>
    static void StorePoints(char* p, SingleLane x, SingleLane y, SingleLane z)
    {
        memcpy(p, &x.v, 4);
        memcpy(p + 4, &y.v, 4);
        memcpy(p + 8, &z.v, 4);
    }
};

#ifdef __AVX2__

/// Eight points side by side; four of them in each half of the registers, so that every shuffle stays
/// within its half (shuffles across halves cost more than the split loads and stores).
struct Avx2Lanes {
    __m256 v;

    static const int kCount = 8;

    static Avx2Lanes Splat(float s) { return {_mm256_set1_ps(s)}; }
    Avx2Lanes operator+(Avx2Lanes o) const { return {_mm256_add_ps(v, o.v)}; }
    Avx2Lanes operator-(Avx2Lanes o) const { return {_mm256_sub_ps(v, o.v)}; }
    Avx2Lanes operator*(Avx2Lanes o) const { return {_mm256_mul_ps(v, o.v)}; }

    static __m256 Halves(const char* low, const char* high)
    {
        return _mm256_insertf128_ps(_mm256_castps128_ps256(_mm_loadu_ps(reinterpret_cast<const float*>(low))),
                                    _mm_loadu_ps(reinterpret_cast<const float*>(high)), 1);
    }

    static void LoadPoints(const char* p, Avx2Lanes& x, Avx2Lanes& y, Avx2Lanes& z)
    {
        const __m256 a = Halves(p, p + 48), b = Halves(p + 16, p + 64), c = Halves(p + 32, p + 80);
        const __m256 xy = _mm256_shuffle_ps(b, c, _MM_SHUFFLE(2, 1, 3, 2));
        const __m256 yz = _mm256_shuffle_ps(a, b, _MM_SHUFFLE(1, 0, 2, 1));
        x.v = _mm256_shuffle_ps(a, xy, _MM_SHUFFLE(2, 0, 3, 0));
        y.v = _mm256_shuffle_ps(yz, xy, _MM_SHUFFLE(3, 1, 2, 0));
        z.v = _mm256_shuffle_ps(yz, c, _MM_SHUFFLE(3, 0, 3, 1));
    }

    template <bool Stream>
    static void StorePoints(char* p, Avx2Lanes x, Avx2Lanes y, Avx2Lanes z)
    {
        const __m256 xy = _mm256_shuffle_ps(x.v, y.v, _MM_SHUFFLE(2, 0, 2, 0));
        const __m256 yz = _mm256_shuffle_ps(y.v, z.v, _MM_SHUFFLE(3, 1, 3, 1));
        const __m256 zx = _mm256_shuffle_ps(z.v, x.v, _MM_SHUFFLE(3, 1, 2, 0));
        PutHalves<Stream>(p, p + 48, _mm256_shuffle_ps(xy, zx, _MM_SHUFFLE(2, 0, 2, 0)));
        PutHalves<Stream>(p + 16, p + 64, _mm256_shuffle_ps(yz, xy, _MM_SHUFFLE(3, 1, 2, 0)));
        PutHalves<Stream>(p + 32, p + 80, _mm256_shuffle_ps(zx, yz, _MM_SHUFFLE(3, 1, 3, 1)));
    }

    template <bool Stream>
    static void PutHalves(char* low, char* high, __m256 r)
    {
        SseLanes::Put<Stream>(low, _mm256_castps256_ps128(r));
        SseLanes::Put<Stream>(high, _mm256_extractf128_ps(r, 1));
    }
};

#endif

}  // namespace
}  // namespace zm

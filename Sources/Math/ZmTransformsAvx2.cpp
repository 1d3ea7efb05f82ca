#include "Math/TransformKernels.h"

// Compiled for AVX2 (without fused multiply-add, which would change the results). Only the three kernels at the end may
// be visible outside this file.

namespace zm {
namespace {

/// Two vectors in a register, at any strides.
template <Kind kind>
inline void TransformPairs(StridedPair pair, const float* m)
{
    const RowMatrix<Avx2Lanes> matrix(m);
    const auto transform = [&](ptrdiff_t i) {
        const char *p = pair.src + i * pair.srcStride, *q = p + pair.srcStride;
        char* const res = pair.res + i * pair.resStride;
        const auto at = [=](int k) { return Avx2Lanes::SplatHalves(p, q, k); };
        const Avx2Lanes both = matrix.Apply<kind>(at(0), at(1), at(2));
        both.Low().Store3(res);
        both.High().Store3(res + pair.resStride);
    };
    for (; pair.count >= 4; Advance(pair, 4)) {
        transform(0);
        transform(2);
    }
    TransformRows<SseLanes, kind, 3>(pair, m);
}

template <Kind kind>
inline void Transform(const StridedPair& pair, const float* m)
{
    if (IsTight(pair)) {
        TransformTight<Avx2Lanes, kind>(pair, m);
    } else {
        TransformPairs<kind>(pair, m);
    }
}

// Loads two neighbouring vectors as x, y and z, each broadcast within its half. Reads beyond the vectors: 32 bytes from
// the first on, or 16 of each.

inline void SplatHalves(Avx2Lanes v, Avx2Lanes& x, Avx2Lanes& y, Avx2Lanes& z)
{
    x = v.SplatInRows<0>();
    y = v.SplatInRows<1>();
    z = v.SplatInRows<2>();
}

template <ptrdiff_t stride>
struct Pairs {
    static constexpr int kAtOnce = 2;

    static void Load(const char* p, ptrdiff_t anyStride, Avx2Lanes& x, Avx2Lanes& y, Avx2Lanes& z)
    {
        const __m256 first = _mm256_castps128_ps256(SseLanes::Load4(p).v);
        SplatHalves({_mm256_insertf128_ps(first, SseLanes::Load4(p + anyStride).v, 1)}, x, y, z);
    }
};

template <>
struct Pairs<12> {
    static constexpr int kAtOnce = 2;

    static void Load(const char* p, ptrdiff_t, Avx2Lanes& x, Avx2Lanes& y, Avx2Lanes& z)
    {
        const Avx2Lanes v = Avx2Lanes::Load8(p);
        x = v.Spread<0, 0, 0, 0, 3, 3, 3, 3>();
        y = v.Spread<1, 1, 1, 1, 4, 4, 4, 4>();
        z = v.Spread<2, 2, 2, 2, 5, 5, 5, 5>();
    }
};

template <>
struct Pairs<16> {
    static constexpr int kAtOnce = 4;

    static void Load(const char* p, ptrdiff_t, Avx2Lanes& x, Avx2Lanes& y, Avx2Lanes& z)
    {
        SplatHalves(Avx2Lanes::Load8(p), x, y, z);
        // Loads and blends have capacity to spare where shuffles are the bottleneck.
        x.v = _mm256_blend_ps(SplatFloat(p), SplatFloat(p + 16), 0xF0);
    }

    static __m256 SplatFloat(const char* p) { return _mm256_set1_ps(SingleLane::At(p).v); }
};

/// Several pairs per step. Reads up to 8 bytes of the element after its own, so the last elements are left to the
/// caller.
template <ptrdiff_t stride, bool stream>
inline StridedPair TransformPairs4(StridedPair pair, const float* m)
{
    const RowMatrix<Avx2Lanes> matrix(m);
    const int n = Pairs<stride>::kAtOnce;
    for (; pair.count > 2 * n; Advance(pair, 2 * n)) {
        Avx2Lanes x[n], y[n], z[n];
        for (int i = 0; i < n; ++i) {
            Pairs<stride>::Load(pair.src + 2 * i * pair.srcStride, pair.srcStride, x[i], y[i], z[i]);
        }
        for (int i = 0; i < n; ++i) {
            matrix.template Apply<POINT>(x[i], y[i], z[i]).template Put<stream>(pair.res + i * 32);
        }
    }
    return pair;
}

template <bool stream>
inline StridedPair TransformTight4(const StridedPair& pair, const float* m)
{
    return pair.srcStride == 12   ? TransformPairs4<12, stream>(pair, m)
           : pair.srcStride == 16 ? TransformPairs4<16, stream>(pair, m)
                                  : TransformPairs4<0, stream>(pair, m);
}

}  // namespace

namespace avx2 {

void TransformPoints(StridedPair pair, const float* m)
{
    Transform<POINT>(pair, m);
}

void RotateVectors(StridedPair pair, const float* m)
{
    Transform<ROTATE>(pair, m);
}

void TransformPoints4(StridedPair pair, const float* m)
{
    if (pair.resStride == 16 && pair.srcStride >= 12) {
        if (uintptr_t(pair.res) % 32 == 16 && pair.count > 0) {
            TransformRows<SseLanes, POINT, 4>({pair.res, 16, pair.src, pair.srcStride, 1}, m);
            Advance(pair, 1);
        }
        if (WorthStreaming(pair) && uintptr_t(pair.res) % 32 == 0) {
            pair = TransformTight4<true>(pair, m);
            _mm_sfence();
        } else {
            pair = TransformTight4<false>(pair, m);
        }
    }
    TransformRows<SseLanes, POINT, 4>(pair, m);
}

}  // namespace avx2
}  // namespace zm

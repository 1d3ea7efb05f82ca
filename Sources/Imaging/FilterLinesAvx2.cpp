#include "Imaging/FilterKernels.h"

// Compiled for AVX2. Only the function of zm::avx2 may be visible outside this file.

namespace zm {
namespace {

/// Two adjacent pixels in one register.
struct Avx2PixelPair {
    using Pixel = SsePixelFloats;

    Avx2PixelFloats both;

    static Avx2PixelPair Product(const float* pixels, const float* weights)
    {
        double two;
        memcpy(&two, weights, sizeof(two));
        const __m256 pairs = _mm256_castpd_ps(_mm256_set1_pd(two));
        const __m256 each = _mm256_permutevar_ps(pairs, _mm256_setr_epi32(0, 0, 0, 0, 1, 1, 1, 1));
        return {{_mm256_mul_ps(_mm256_loadu_ps(pixels), each)}};
    }
    Avx2PixelPair operator+(Avx2PixelPair o) const { return {both + o.both}; }
    Pixel Total() const { return {_mm_add_ps(_mm256_castps256_ps128(both.v), _mm256_extractf128_ps(both.v, 1))}; }
};

constexpr FilterKernels kKernels = {WidenBy<Avx2PixelFloats, SsePixelFloats, false>,
                                    WidenBy<Avx2PixelFloats, SsePixelFloats, true>,
                                    FilterLineBy<Avx2PixelPair>,
                                    MixLinesOf<Avx2PixelFloats>,
                                    NarrowBy<Avx2PixelFloats, SsePixelFloats, false>,
                                    NarrowBy<Avx2PixelFloats, SsePixelFloats, true>};

}  // namespace

namespace avx2 {

const FilterKernels& KernelsForFilters()
{
    return kKernels;
}

}  // namespace avx2
}  // namespace zm

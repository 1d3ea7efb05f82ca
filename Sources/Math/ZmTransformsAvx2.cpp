#include "Math/TransformKernels.h"

// Compiled for AVX2 (without fused multiply-add, which would change the results). Nothing but the
// three kernels at the end may be visible outside this file.

namespace zm {
namespace {

template <Kind kind>
inline void Transform(const Span& span, const float* m)
{
    if (IsTight(span)) {
        TransformTight<Avx2Lanes, kind>(span, m);
    } else {
        TransformRows<SseLanes, kind>(span, m);
    }
}

/// A matrix with each row in both halves, for two vectors at a time.
struct PairMatrix {
    __m256 row[4];

    explicit PairMatrix(const float* m)
    {
        for (int i = 0; i < 4; ++i) {
            row[i] = _mm256_broadcast_ps(reinterpret_cast<const __m128*>(m + 4 * i));
        }
    }

    /// The points at `a` and `b`, of which 16 bytes are read.
    __m256 Apply(const char* a, const char* b) const
    {
        const __m256 v = Avx2Lanes::Halves(a, b);
        const Avx2Lanes x = {_mm256_shuffle_ps(v, v, 0x00)}, y = {_mm256_shuffle_ps(v, v, 0x55)},
                        z = {_mm256_shuffle_ps(v, v, 0xAA)};
        return Blend(x, {row[0]}, y, {row[1]}, z, {row[2]}, {row[3]}).v;
    }
};

/// Results of 16 bytes that lie tight. Each step reads 16 bytes of two elements, so the last element
/// stays for the caller.
template <bool Stream>
inline void TransformPairs4(Span& span, const float* m)
{
    const PairMatrix matrix(m);
    for (; span.count > 2; Advance(span, 2)) {
        Avx2Lanes::PutHalves<Stream>(span.out, span.out + 16, matrix.Apply(span.in, span.in + span.inStride));
    }
}

}  // namespace

namespace avx2 {

void TransformPoints(Span span, const float* m)
{
    Transform<kPoint>(span, m);
}

void RotateVectors(Span span, const float* m)
{
    Transform<kRotate>(span, m);
}

void TransformPoints4(Span span, const float* m)
{
    if (span.outStride == 16 && span.inStride >= 12) {
        if (WorthStreaming(span) && uintptr_t(span.out) % 16 == 0) {
            TransformPairs4<true>(span, m);
            _mm_sfence();
        } else {
            TransformPairs4<false>(span, m);
        }
    }
    TransformRows4<SseLanes>(span, m);
}

}  // namespace avx2
}  // namespace zm

#include "Math/FillKernels.h"

#include <immintrin.h>

// Compiled for AVX2. Nothing but the kernel at the end may be visible outside this file.

namespace zm {
namespace {

template <bool stream>
inline void Fill(char* dst, size_t bytes, const char* pattern)
{
    __m256 parts[3];
    for (int i = 0; i < 3; ++i) {
        parts[i] = _mm256_loadu_ps(reinterpret_cast<const float*>(pattern + 32 * i));
    }
    for (; bytes >= kPatternBytes; bytes -= kPatternBytes, dst += kPatternBytes) {
        for (int i = 0; i < 3; ++i) {
            float* const p = reinterpret_cast<float*>(dst + 32 * i);
            if (stream) {
                _mm_stream_ps(p, _mm256_castps256_ps128(parts[i]));
                _mm_stream_ps(p + 4, _mm256_extractf128_ps(parts[i], 1));
            } else {
                _mm256_storeu_ps(p, parts[i]);
            }
        }
    }
}

}  // namespace

namespace avx2 {

void FillPatterns(char* dst, size_t bytes, const char* pattern, bool stream)
{
    (stream ? Fill<true> : Fill<false>)(dst, bytes, pattern);
}

}  // namespace avx2
}  // namespace zm

#include "Math/FillKernels.h"
#include "Math/Lanes.h"

// Compiled for AVX2. Only the kernel at the end may be visible outside this file.

namespace zm {
namespace avx2 {

void FillPatterns(char* dst, size_t bytes, const char* pattern)
{
    const __m128 a = SseLanes::Load4(pattern).v, b = SseLanes::Load4(pattern + 16).v,
                 c = SseLanes::Load4(pattern + 32).v;
    const Avx2Lanes ab = {_mm256_insertf128_ps(_mm256_castps128_ps256(a), b, 1)},
                    ca = {_mm256_insertf128_ps(_mm256_castps128_ps256(c), a, 1)},
                    bc = {_mm256_insertf128_ps(_mm256_castps128_ps256(b), c, 1)};
    for (char* const end = dst + bytes; dst != end; dst += 2 * kPatternBytes) {
        ab.Put<false>(dst);
        ca.Put<false>(dst + 32);
        bc.Put<false>(dst + 64);
    }
}

}  // namespace avx2
}  // namespace zm

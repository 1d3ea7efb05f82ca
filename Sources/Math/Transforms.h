#pragma once

#include <stddef.h>
#include <stdint.h>

namespace zm {

/// A bulk operation from one strided array to another.
struct Span {
    char* out;
    ptrdiff_t outStride;
    const char* in;
    ptrdiff_t inStride;
    ptrdiff_t count;
};

/// Kernels for processors with AVX2. `m` is sixteen floats, row by row.
namespace avx2 {

void TransformPoints(Span span, const float* m);
void RotateVectors(Span span, const float* m);
void TransformPoints4(Span span, const float* m);

}  // namespace avx2
}  // namespace zm

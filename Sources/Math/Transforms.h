#pragma once

#include "Math/StridedPair.h"

/// Kernels for processors with AVX2. `m` is sixteen floats, row by row.
namespace zm {
namespace avx2 {

void TransformPoints(StridedPair pair, const float* m);
void RotateVectors(StridedPair pair, const float* m);
void TransformPoints4(StridedPair pair, const float* m);

}  // namespace avx2
}  // namespace zm

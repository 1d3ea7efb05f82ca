#include "Math/MatrixKernels.h"

// Compiled for AVX2 (without fused multiply-add, which would change the results). Only the kernels below may be visible
// outside this file.

namespace zm {
namespace avx2 {

void FullProduct(float* res, const float* a, const float* b)
{
    zm::FullProduct<Avx2Lanes>(res, a, b);
}

void AffineProduct(float* res, const float* a, const float* b)
{
    zm::AffineProduct<Avx2Lanes>(res, a, b);
}

void AffineInverse(float* res, const float* m)
{
    zm::AffineInverse(res, m);
}

void FromEulerAngles(float* res, float eax, float eay, float eaz)
{
    zm::FromEulerAngles(res, SseLanes::Set(eax, eay, eaz, 0));
}

}  // namespace avx2
}  // namespace zm

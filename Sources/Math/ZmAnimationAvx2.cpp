#include "Math/AnimationKernels.h"

// Compiled for AVX2. Only these functions may be visible outside this file.

namespace zm {
namespace avx2 {

void MultiplyMany(const StridedPair& pair, const char* a, ptrdiff_t aStride)
{
    zm::MultiplyMany<Avx2Lanes>(pair, a, aStride);
}

void PlaceNodes(const StridedPair& pair, const int* parents)
{
    zm::PlaceNodes<Avx2Lanes>(pair, parents);
}

void InvertMany(const StridedPair& pair)
{
    zm::InvertMany<Avx2Lanes>(pair);
}

void QuaternionsToMatrices(const StridedPair& pair)
{
    zm::QuaternionsToMatrices<Avx2Lanes>(pair);
}

void Skin(const ZmSkin& skin, const Vertices& vertices)
{
    zm::Skin<Avx2Lanes>(skin, vertices);
}

}  // namespace avx2
}  // namespace zm

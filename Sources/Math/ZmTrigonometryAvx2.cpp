#include "Math/TrigonometryKernels.h"

// Compiled for AVX2. Only these functions may be visible outside this file.

namespace zm {
namespace avx2 {

void Sines(const StridedPair& pair)
{
    OfMany<SineOf, DoubleLanes>(pair);
}

void Cosines(const StridedPair& pair)
{
    OfMany<CosineOf, DoubleLanes>(pair);
}

void Tangents(const StridedPair& pair)
{
    OfMany<TangentOf, DoubleLanes>(pair);
}

void Arcsines(const StridedPair& pair)
{
    OfMany<ArcsineOf, DoubleLanes>(pair);
}

void Arccosines(const StridedPair& pair)
{
    OfMany<ArccosineOf, DoubleLanes>(pair);
}

void Arctangents(const StridedPair& pair)
{
    OfMany<ArctangentOf, DoubleLanes>(pair);
}

void SinesAndCosines(const StridedPair& pair, const StridedOther& cosines)
{
    SinCosOfMany<DoubleLanes>(pair, cosines);
}

void DirectionAngles(const StridedPair& pair, const StridedOther& x)
{
    ArctangentsOfMany<DoubleLanes>(pair, x);
}

}  // namespace avx2
}  // namespace zm

#include "Math/TrigonometryKernels.h"

// Compiled for AVX2. Only these functions may be visible outside this file.

namespace zm {
namespace avx2 {

float Sine(float x)
{
    return OfOne<SineOf>(x);
}

float Cosine(float x)
{
    return OfOne<CosineOf>(x);
}

float Tangent(float x)
{
    return OfOne<TangentOf>(x);
}

float Arcsine(float x)
{
    return OfOne<ArcsineOf>(x);
}

float Arccosine(float x)
{
    return OfOne<ArccosineOf>(x);
}

float Arctangent(float x)
{
    return OfOne<ArctangentOf>(x);
}

float DirectionAngle(float y, float x)
{
    return ArctangentOfOne(y, x);
}

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

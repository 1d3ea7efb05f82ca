#pragma once

#include "Math/ArcFunctions.h"
#include "Math/NearestArctangent.h"
#include "Math/StridedPair.h"

// The functions of ZmTrigonometry.h over arrays of floats. A group of D::kCount elements passes through lanes of
// double, the last elements one by one: they have the same bits.

namespace zm {

/// The second destination or source of an operation.
struct StridedOther {
    char* data;
    ptrdiff_t stride;
};

namespace {

/// Loads and stores D::kCount floats of a strided array.
template <class D>
struct FloatsAt;

template <>
struct FloatsAt<SingleDouble> {
    static SingleDouble Load(const char* p, ptrdiff_t) { return SingleDouble::Splat(double(SingleLane::At(p).v)); }
    static void Store(char* p, ptrdiff_t, SingleDouble v) { SingleLane{float(v.First())}.Put<false>(p); }
};

template <>
struct FloatsAt<DoubleLanes> {
    static DoubleLanes Load(const char* p, ptrdiff_t stride)
    {
        if (stride == sizeof(float)) {
            return DoubleLanes(SseLanes::Load4(p));
        }
        return DoubleLanes(SseLanes::Set(SingleLane::At(p).v, SingleLane::At(p + stride).v,
                                         SingleLane::At(p + 2 * stride).v, SingleLane::At(p + 3 * stride).v));
    }
    static void Store(char* p, ptrdiff_t stride, const DoubleLanes& v)
    {
        const SseLanes floats = v.ToFloats();
        if (stride == sizeof(float)) {
            floats.Store4(p);
            return;
        }
        float each[4];
        floats.Store4(each);
        for (int i = 0; i < 4; ++i) {
            memcpy(p + i * stride, &each[i], sizeof(float));
        }
    }
};

struct SineOf {
    template <class D>
    D operator()(D x) const
    {
        return SineLanes(x);
    }
};
struct CosineOf {
    template <class D>
    D operator()(D x) const
    {
        return CosineLanes(x);
    }
};
struct TangentOf {
    template <class D>
    D operator()(D x) const
    {
        return TangentLanes(x);
    }
};
struct ArcsineOf {
    template <class D>
    D operator()(D x) const
    {
        return ArcsineLanes(x);
    }
};
struct ArccosineOf {
    template <class D>
    D operator()(D x) const
    {
        return ArccosineLanes(x);
    }
};
struct ArctangentOf {
    template <class D>
    D operator()(D x) const
    {
        return ArctangentLanes(x);
    }
};

template <class F>
float OfOne(float x)
{
    return float(F()(SingleDouble::Splat(double(x))).First());
}

/// res[i] = F(src[i]) for as many whole groups as there are.
template <class F, class D>
void OfGroups(StridedPair& pair)
{
    for (; pair.count >= D::kCount; Advance(pair, D::kCount)) {
        const D x = FloatsAt<D>::Load(pair.src, pair.srcStride);
        FloatsAt<D>::Store(pair.res, pair.resStride, F()(x));
    }
}

template <class F, class D>
void OfMany(StridedPair pair)
{
    OfGroups<F, D>(pair);
    OfGroups<F, SingleDouble>(pair);
}

template <class D>
void SinCosGroups(StridedPair& pair, StridedOther& cosines)
{
    for (; pair.count >= D::kCount; Advance(pair, D::kCount), cosines.data += D::kCount * cosines.stride) {
        const SinCosLanes<D> turn(FloatsAt<D>::Load(pair.src, pair.srcStride));
        FloatsAt<D>::Store(pair.res, pair.resStride, turn.sine);
        FloatsAt<D>::Store(cosines.data, cosines.stride, turn.cosine);
    }
}

/// Sines to the pair's destination, cosines to the other one.
template <class D>
void SinCosOfMany(StridedPair pair, StridedOther cosines)
{
    SinCosGroups<D>(pair, cosines);
    SinCosGroups<SingleDouble>(pair, cosines);
}

/// The float nearest to the angle of the direction (x, y), by the bounds of a double.
inline float ArctangentOfOne(float y, float x)
{
    const ArctangentBounds<SingleDouble> bounds(SingleDouble::Splat(double(y)), SingleDouble::Splat(double(x)));
    const float low = float(bounds.low.First()), high = float(bounds.high.First());
    return __builtin_expect(low < high || low > high, 0) ? NearestArctangent(y, x, low, high) : low;
}

template <class D>
struct ArctangentGroup {
    static void Run(char* res, ptrdiff_t resStride, const char* y, ptrdiff_t yStride, const char* x, ptrdiff_t xStride)
    {
        const ArctangentBounds<D> bounds(FloatsAt<D>::Load(y, yStride), FloatsAt<D>::Load(x, xStride));
        const SseLanes low = bounds.low.ToFloats(), high = bounds.high.ToFloats();
        if (__builtin_expect((SseLanes::LessMask(low, high) | SseLanes::LessMask(high, low)) != 0, 0)) {
            for (int i = 0; i < D::kCount; ++i) {
                SingleLane{ArctangentOfOne(SingleLane::At(y + i * yStride).v, SingleLane::At(x + i * xStride).v)}
                    .Put<false>(res + i * resStride);
            }
            return;
        }
        FloatsAt<D>::Store(res, resStride, bounds.low);
    }
};

template <>
struct ArctangentGroup<SingleDouble> {
    static void Run(char* res, ptrdiff_t, const char* y, ptrdiff_t, const char* x, ptrdiff_t)
    {
        SingleLane{ArctangentOfOne(SingleLane::At(y).v, SingleLane::At(x).v)}.Put<false>(res);
    }
};

template <class D>
void ArctangentGroups(StridedPair& pair, StridedOther& x)
{
    for (; pair.count >= D::kCount; Advance(pair, D::kCount), x.data += D::kCount * x.stride) {
        ArctangentGroup<D>::Run(pair.res, pair.resStride, pair.src, pair.srcStride, x.data, x.stride);
    }
}

/// The arc tangents of the pair's source over the other one.
template <class D>
void ArctangentsOfMany(StridedPair pair, StridedOther x)
{
    ArctangentGroups<D>(pair, x);
    ArctangentGroups<SingleDouble>(pair, x);
}

}  // namespace

namespace avx2 {

float Sine(float x);
float Cosine(float x);
float Tangent(float x);
float Arcsine(float x);
float Arccosine(float x);
float Arctangent(float x);
float DirectionAngle(float y, float x);
void Sines(const StridedPair& pair);
void Cosines(const StridedPair& pair);
void Tangents(const StridedPair& pair);
void Arcsines(const StridedPair& pair);
void Arccosines(const StridedPair& pair);
void Arctangents(const StridedPair& pair);
void SinesAndCosines(const StridedPair& pair, const StridedOther& cosines);
void DirectionAngles(const StridedPair& pair, const StridedOther& x);

}  // namespace avx2
}  // namespace zm

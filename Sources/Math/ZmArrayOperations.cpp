#include "Math/Lanes.h"
#include "Math/StridedPair.h"
#include "Platform/FeatureWord.h"
#include "ZmStridedData.h"

namespace zm {
namespace {

template <class L, int kComponents>
L Load(const char* p)
{
    return kComponents == 2 ? L::Load2(p) : kComponents == 3 ? L::Load3(p) : L::Load4(p);
}

template <int kComponents, class L>
void Store(char* p, L v)
{
    if (kComponents == 2) {
        v.Store2(p);
    } else if (kComponents == 3) {
        v.Store3(p);
    } else {
        v.Store4(p);
    }
}

template <class L, int kComponents>
void Multiply(StridedPair pair, const ZmVector4& vector)
{
    const L v = L::Load4(&vector);
    for (; pair.count > 0; Advance(pair, 1)) {
        Store<kComponents>(pair.res, Load<L, kComponents>(pair.src) * v);
    }
}

template <class L, int kComponents>
void MultiplyAdd(StridedPair pair, const ZmVector4& factor, const ZmVector4& summand)
{
    const L mul = L::Load4(&factor), add = L::Load4(&summand);
    for (; pair.count > 0; Advance(pair, 1)) {
        Store<kComponents>(pair.res, Load<L, kComponents>(pair.src) * mul + add);
    }
}

template <int kComponents>
void DispatchMultiply(const StridedPair& pair, const ZmVector4& v)
{
    Dispatch(Multiply<SseLanes, kComponents>, Multiply<ScalarLanes, kComponents>, pair, v);
}

template <int kComponents>
void DispatchMultiplyAdd(const StridedPair& pair, const ZmVector4& mul, const ZmVector4& add)
{
    Dispatch(MultiplyAdd<SseLanes, kComponents>, MultiplyAdd<ScalarLanes, kComponents>, pair, mul, add);
}

template <class L>
L Interpolated(L a, L b, L t)
{
    return a + (b - a) * t;
}

template <class L>
void InterpolateFloats(char* res, const char* a, const char* b, float t, ptrdiff_t count)
{
    const L weight = L::Splat(t);
    for (; count >= 4; count -= 4, res += 16, a += 16, b += 16) {
        Interpolated(L::Load4(a), L::Load4(b), weight).Store4(res);
    }
    for (; count > 0; --count, res += 4, a += 4, b += 4) {
        Interpolated(SingleLane::At(a), SingleLane::At(b), SingleLane{t}).Put<false>(res);
    }
}

template <class L>
void InterpolateVectors(StridedPair pair, const char* b, float t)
{
    const L weight = L::Splat(t);
    for (; pair.count > 0; b += pair.srcStride, Advance(pair, 1)) {
        Interpolated(L::Load3(pair.src), L::Load3(b), weight).Store3(pair.res);
    }
}

void InterpolateTight(void* res, const void* a, const void* b, float t, ptrdiff_t count)
{
    Dispatch(InterpolateFloats<SseLanes>, InterpolateFloats<ScalarLanes>, static_cast<char*>(res),
             static_cast<const char*>(a), static_cast<const char*>(b), t, count);
}

}  // namespace
}  // namespace zm

void InterpolateFloatArray(void* res, const void* a, const void* b, float t, int count)
{
    zm::InterpolateTight(res, a, b, t, count);
}

void InterpolateVectorArray(void* res, const void* a, const void* b, float t, int count, unsigned long resStride,
                            unsigned long srcStride)
{
    if (resStride == 12 && srcStride == 12) {
        zm::InterpolateTight(res, a, b, t, ptrdiff_t(count) * 3);
    } else {
        zm::Dispatch(zm::InterpolateVectors<zm::SseLanes>, zm::InterpolateVectors<zm::ScalarLanes>,
                     zm::PairOf(res, resStride, a, srcStride, count), static_cast<const char*>(b), t);
    }
}

void MultiplyVectorArray(void* res, const void* src, const ZmVector& v, int count, unsigned long resStride,
                         unsigned long srcStride)
{
    zm::DispatchMultiply<3>(zm::PairOf(res, resStride, src, srcStride, count), {v.x, v.y, v.z, 0});
}

void MultiplyVector2Array(void* res, const void* src, const Zm2DVector& v, int count, unsigned long resStride,
                          unsigned long srcStride)
{
    zm::DispatchMultiply<2>(zm::PairOf(res, resStride, src, srcStride, count), {v.x, v.y, 0, 0});
}

void MultiplyVector4Array(void* res, const void* src, const ZmVector4& v, int count, unsigned long resStride,
                          unsigned long srcStride)
{
    zm::DispatchMultiply<4>(zm::PairOf(res, resStride, src, srcStride, count), v);
}

void MultiplyAddVectorArray(void* res, const void* src, const ZmVector& mul, const ZmVector& add, int count,
                            unsigned long resStride, unsigned long srcStride)
{
    zm::DispatchMultiplyAdd<3>(zm::PairOf(res, resStride, src, srcStride, count), {mul.x, mul.y, mul.z, 0},
                               {add.x, add.y, add.z, 0});
}

void MultiplyAddVector4Array(void* res, const void* src, const ZmVector4& mul, const ZmVector4& add, int count,
                             unsigned long resStride, unsigned long srcStride)
{
    zm::DispatchMultiplyAdd<4>(zm::PairOf(res, resStride, src, srcStride, count), mul, add);
}

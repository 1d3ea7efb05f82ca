#include "Math/Lanes.h"
#include "Platform/FeatureWord.h"
#include "ZmStridedData.h"

using namespace zm;

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

/// The input and output of a bulk operation.
struct Arrays {
    char* res;
    size_t resStride;
    const char* src;
    size_t srcStride;
    int count;
};

Arrays MakeArrays(void* res, const void* src, int count, unsigned long resStride, unsigned long srcStride)
{
    return {static_cast<char*>(res), resStride, static_cast<const char*>(src), srcStride, count};
}

template <class L, int kComponents>
void Multiply(Arrays a, const ZmVector4& vector)
{
    const L v = L::Load4(&vector);
    for (; a.count > 0; --a.count, a.res += a.resStride, a.src += a.srcStride) {
        Store<kComponents>(a.res, Load<L, kComponents>(a.src) * v);
    }
}

template <class L, int kComponents>
void MultiplyAdd(Arrays a, const ZmVector4& factor, const ZmVector4& summand)
{
    const L mul = L::Load4(&factor), add = L::Load4(&summand);
    for (; a.count > 0; --a.count, a.res += a.resStride, a.src += a.srcStride) {
        Store<kComponents>(a.res, Load<L, kComponents>(a.src) * mul + add);
    }
}

template <int kComponents>
void DispatchMultiply(const Arrays& a, const ZmVector4& v)
{
    Dispatch(Multiply<SseLanes, kComponents>, Multiply<ScalarLanes, kComponents>, a, v);
}

template <int kComponents>
void DispatchMultiplyAdd(const Arrays& a, const ZmVector4& mul, const ZmVector4& add)
{
    Dispatch(MultiplyAdd<SseLanes, kComponents>, MultiplyAdd<ScalarLanes, kComponents>, a, mul, add);
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
void InterpolateVectors(const Arrays& arrays, const char* b, float t)
{
    const L weight = L::Splat(t);
    char* res = arrays.res;
    const char* a = arrays.src;
    for (int i = 0; i < arrays.count; ++i, res += arrays.resStride, a += arrays.srcStride, b += arrays.srcStride) {
        Interpolated(L::Load3(a), L::Load3(b), weight).Store3(res);
    }
}

void InterpolateTight(void* res, const void* a, const void* b, float t, ptrdiff_t count)
{
    Dispatch(InterpolateFloats<SseLanes>, InterpolateFloats<ScalarLanes>, static_cast<char*>(res),
             static_cast<const char*>(a), static_cast<const char*>(b), t, count);
}

}  // namespace

void InterpolateFloatArray(void* res, const void* a, const void* b, float t, int count)
{
    InterpolateTight(res, a, b, t, count);
}

void InterpolateVectorArray(void* res, const void* a, const void* b, float t, int count, unsigned long resStride,
                            unsigned long srcStride)
{
    if (resStride == 12 && srcStride == 12) {
        InterpolateTight(res, a, b, t, ptrdiff_t(count) * 3);
    } else {
        Dispatch(InterpolateVectors<SseLanes>, InterpolateVectors<ScalarLanes>,
                 MakeArrays(res, a, count, resStride, srcStride), static_cast<const char*>(b), t);
    }
}

void MultiplyVectorArray(void* res, const void* src, const ZmVector& v, int count, unsigned long resStride,
                         unsigned long srcStride)
{
    DispatchMultiply<3>(MakeArrays(res, src, count, resStride, srcStride), {v.x, v.y, v.z, 0});
}

void MultiplyVector2Array(void* res, const void* src, const Zm2DVector& v, int count, unsigned long resStride,
                          unsigned long srcStride)
{
    DispatchMultiply<2>(MakeArrays(res, src, count, resStride, srcStride), {v.x, v.y, 0, 0});
}

void MultiplyVector4Array(void* res, const void* src, const ZmVector4& v, int count, unsigned long resStride,
                          unsigned long srcStride)
{
    DispatchMultiply<4>(MakeArrays(res, src, count, resStride, srcStride), v);
}

void MultiplyAddVectorArray(void* res, const void* src, const ZmVector& mul, const ZmVector& add, int count,
                            unsigned long resStride, unsigned long srcStride)
{
    DispatchMultiplyAdd<3>(MakeArrays(res, src, count, resStride, srcStride), {mul.x, mul.y, mul.z, 0},
                           {add.x, add.y, add.z, 0});
}

void MultiplyAddVector4Array(void* res, const void* src, const ZmVector4& mul, const ZmVector4& add, int count,
                             unsigned long resStride, unsigned long srcStride)
{
    DispatchMultiplyAdd<4>(MakeArrays(res, src, count, resStride, srcStride), mul, add);
}

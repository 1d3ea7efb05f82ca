#pragma once

#include "Math/Lanes.h"
#include "Math/StridedPair.h"

namespace zm {
namespace {

/// Two to four floats at p and, in eight lanes, of the element four further on.
template <class L>
struct LoadAt {
    static L Four(const char* p, ptrdiff_t) { return L::Load4(p); }
    static L Three(const char* p, ptrdiff_t) { return L::Load3(p); }
    static L Two(const char* p, ptrdiff_t) { return L::Load2(p); }
    static void StoreFour(L v, char* p, ptrdiff_t) { v.Store4(p); }
    static void StoreTwo(L v, char* p, ptrdiff_t) { v.Store2(p); }
};

#ifdef __AVX2__
template <>
struct LoadAt<Avx2Lanes> {
    static Avx2Lanes Four(const char* p, ptrdiff_t stride)
    {
        return Avx2Lanes::Halves(SseLanes::Load4(p), SseLanes::Load4(p + 4 * stride));
    }
    static Avx2Lanes Three(const char* p, ptrdiff_t stride)
    {
        return Avx2Lanes::Halves(SseLanes::Load3(p), SseLanes::Load3(p + 4 * stride));
    }
    static Avx2Lanes Two(const char* p, ptrdiff_t stride)
    {
        return Avx2Lanes::Halves(SseLanes::Load2(p), SseLanes::Load2(p + 4 * stride));
    }
    static void StoreFour(Avx2Lanes v, char* p, ptrdiff_t stride)
    {
        v.Low().Store4(p);
        v.High().Store4(p + 4 * stride);
    }
    static void StoreTwo(Avx2Lanes v, char* p, ptrdiff_t stride)
    {
        v.Low().Store2(p);
        v.High().Store2(p + 4 * stride);
    }
};
#endif

/// Copies `count` elements of `Bytes` bytes next to each other, and back.
template <int Bytes>
void Pack(char* res, const char* p, ptrdiff_t stride, ptrdiff_t count)
{
    for (ptrdiff_t i = 0; i < count; ++i, p += stride) {
        memcpy(res + i * Bytes, p, Bytes);
    }
}

template <int Bytes>
void Unpack(char* p, ptrdiff_t stride, const char* packed, ptrdiff_t count)
{
    for (ptrdiff_t i = 0; i < count; ++i, p += stride) {
        memcpy(p, packed + i * Bytes, Bytes);
    }
}

/// Calls group(res, resStride, src, srcStride) for each L::kCount elements of `OutBytes` and `InBytes` bytes. The last
/// ones pass through memory of their own.
template <class L, int OutBytes, int InBytes, class Group>
void ForGroups(StridedPair pair, Group group)
{
    for (; pair.count >= L::kCount; Advance(pair, L::kCount)) {
        group(pair.res, pair.resStride, pair.src, pair.srcStride);
    }
    if (pair.count > 0) {
        char in[L::kCount * InBytes] = {}, out[L::kCount * OutBytes];
        Pack<InBytes>(in, pair.src, pair.srcStride, pair.count);
        group(out, ptrdiff_t(OutBytes), static_cast<const char*>(in), ptrdiff_t(InBytes));
        Unpack<OutBytes>(pair.res, pair.resStride, out, pair.count);
    }
}

}  // namespace
}  // namespace zm

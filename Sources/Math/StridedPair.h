#pragma once

#include "ZmStridedData.h"

#include <stddef.h>

namespace zm {

/// A bulk operation's destination and source: two strided arrays of the same length.
struct StridedPair {
    char* res;
    ptrdiff_t resStride;
    const char* src;
    ptrdiff_t srcStride;
    ptrdiff_t count;
};

namespace {

inline StridedPair PairOf(void* res, ptrdiff_t resStride, const void* src, ptrdiff_t srcStride, ptrdiff_t count)
{
    return {static_cast<char*>(res), resStride, static_cast<const char*>(src), srcStride, count};
}

inline StridedPair PairOf(const ZmStridedData& res, const ZmStridedData& src, int count)
{
    return PairOf(res.Ptr, res.Stride, src.Ptr, src.Stride, count);
}

/// Leaves the first n elements behind.
inline void Advance(StridedPair& pair, ptrdiff_t n)
{
    pair.res += n * pair.resStride;
    pair.src += n * pair.srcStride;
    pair.count -= n;
}

}  // namespace
}  // namespace zm

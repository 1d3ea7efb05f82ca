#pragma once

#include "ZmVector.h"

/// An array whose elements start `Stride` bytes apart, for example one component of an interleaved vertex buffer. Any
/// stride is allowed, and elements need no alignment.
struct ZmStridedData {
    void* Ptr;            ///< first element
    unsigned int Stride;  ///< bytes from one element to the next

    /// Leaves both members undefined; sets them.
    ZmStridedData() = default;
    constexpr ZmStridedData(void* ptr, unsigned int strideBytes) : Ptr(ptr), Stride(strideBytes) {}
};

// The functions that fill and copy return 1, or 0 without writing anything for invalid arguments: a null pointer, a
// stride or size of 0, a size that is not a multiple of 4, a count below 1. They touch only the elements' own bytes.
// Source and destination must not overlap. Sizes of 4, 8, 12 and 16 bytes are the fastest. Any thread may call.

/// Writes `value`, which has `size` bytes, to each of `count` elements.
ZM_API int ZmFillStructure(int count, void* dst, unsigned long dstStride, unsigned long size, const void* value);
ZM_API int ZmFillStructure(int count, const ZmStridedData& dst, unsigned long size, const void* value);

/// Copies element i of src to element i of dst.
ZM_API int ZmCopyStructure(int count, void* dst, unsigned long dstStride, unsigned long size, const void* src,
                           unsigned long srcStride);
ZM_API int ZmCopyStructure(int count, const ZmStridedData& dst, unsigned long size, const ZmStridedData& src);

/// Gathers: copies element indices[k] of src to element k of dst. Strides of 0 are allowed here; indices are not
/// checked. Sizes of 20 and 24 bytes are fast as well.
ZM_API int ZmIndexedCopy(const ZmStridedData& dst, const ZmStridedData& src, unsigned long size, const int* indices,
                         int count);
ZM_API int ZmIndexedCopy(const ZmStridedData& dst, const ZmStridedData& src, unsigned long size,
                         const unsigned short* indices, int count);

// Arithmetic over arrays of float components. Strides are in bytes, elements need no alignment, and no other bytes are
// touched. No pointer may be null. `res` may equal a source if the strides are equal; other overlaps are not supported.
// A count below 1 does nothing. No static storage is used, so any thread may call.

/// res[i] = a[i] + (b[i] - a[i]) * t over tight arrays of float.
ZM_API void InterpolateFloatArray(void* res, const void* a, const void* b, float t, int count);

/// The same over three-component vectors; a and b share the source stride.
ZM_API void InterpolateVectorArray(void* res, const void* a, const void* b, float t, int count, unsigned long resStride,
                                   unsigned long srcStride);

/// res[i] = src[i] * v, component by component, for 3, 2 and 4 components.
ZM_API void MultiplyVectorArray(void* res, const void* src, const ZmVector& v, int count, unsigned long resStride,
                                unsigned long srcStride);
ZM_API void MultiplyVector2Array(void* res, const void* src, const Zm2DVector& v, int count, unsigned long resStride,
                                 unsigned long srcStride);
ZM_API void MultiplyVector4Array(void* res, const void* src, const ZmVector4& v, int count, unsigned long resStride,
                                 unsigned long srcStride);

/// res[i] = src[i] * mul + add, component by component, for 3 and 4 components.
ZM_API void MultiplyAddVectorArray(void* res, const void* src, const ZmVector& mul, const ZmVector& add, int count,
                                   unsigned long resStride, unsigned long srcStride);
ZM_API void MultiplyAddVector4Array(void* res, const void* src, const ZmVector4& mul, const ZmVector4& add, int count,
                                    unsigned long resStride, unsigned long srcStride);

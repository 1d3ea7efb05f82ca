#pragma once

#include "ZmMatrix.h"
#include "ZmQuaternion.h"
#include "ZmStridedData.h"

#include <stdint.h>

// The mathematics of scenes and skeletons for many elements in one call.
//
// Elements are ZmMatrix, ZmQuaternion and ZmVector records at any stride and alignment; nothing but their own bytes is
// read and written. Results may lie where sources do if the strides are equal; other overlaps are not supported. A
// count below 1 does nothing. Each element has the bits of the function that is named, on every path of the feature
// word. Any thread may call.

/// res[i] = a[i] * b[i] as Zm3DMultiplyMatrix defines it: affine, b first, then a. A stride of 0 gives all elements the
/// same `a` or the same `b`.
ZM_API void Zm3DMultiplyMatrixManyStrided(const ZmStridedData& res, const ZmStridedData& a, const ZmStridedData& b,
                                          int count);

/// The matrices of a hierarchy in the world: world[i] = world[parents[i]] * local[i], by Zm3DMultiplyMatrix. Parents
/// stand before their children. A parent's number that is negative, or not below i, is none: world[i] is then local[i].
ZM_API void ZmHierarchyStrided(const ZmStridedData& world, const ZmStridedData& local, const int* parents, int count);

/// Zm3DInverseMatrix of each matrix: affine. Results for singular matrices are not written.
ZM_API void Zm3DInverseMatrixStrided(const ZmStridedData& res, const ZmStridedData& src, int count);

/// ZmQuaternion::ToMatrix of each quaternion, of any length but 0.
ZM_API void ZmQuaternionToMatrixStrided(const ZmStridedData& res, const ZmStridedData& src, int count);

/// ZmTransform(position, rotation, scale) of each element: scale, then rotation, then translation. Null pointers stand
/// for positions of 0, for no rotation and for scales of 1; a stride of 0 gives all elements the same.
ZM_API void ZmTransformMatrixStrided(const ZmStridedData& res, const ZmStridedData& positions,
                                     const ZmStridedData& rotations, const ZmStridedData& scales, int count);

/// Zm3DQuaternionMultiply(a[i], b[i]): the rotation a[i], then b[i]. A stride of 0 gives all elements the same `a` or
/// the same `b`.
ZM_API void Zm3DQuaternionMultiplyStrided(const ZmStridedData& res, const ZmStridedData& a, const ZmStridedData& b,
                                          int count);

/// Normalized() of each vector of three components: exact to rounding. Zero vectors give NaNs.
ZM_API void ZmNormalizeVectorStrided(const ZmStridedData& res, const ZmStridedData& src, int count);
/// The same for quaternions; the zero quaternion gives the identity.
ZM_API void ZmNormalizeQuaternionStrided(const ZmStridedData& res, const ZmStridedData& src, int count);

/// SlerpExact(a[i], b[i], t[i]) of ZmInterpolation.h: exact at both ends, and of unit length. t holds floats; a stride
/// of 0 gives all elements the same `a`, `b` or `t`. Quaternions whose length is off by more than 2^-16, and values of
/// t outside of 0 to 1, take longer.
ZM_API void ZmSlerpStrided(const ZmStridedData& res, const ZmStridedData& a, const ZmStridedData& b,
                           const ZmStridedData& t, int count);

/// Nlerp(a[i], b[i], t[i]): the same path at a speed that is not quite even.
ZM_API void ZmNlerpStrided(const ZmStridedData& res, const ZmStridedData& a, const ZmStridedData& b,
                           const ZmStridedData& t, int count);

/// ZmSlerpStrided() with one t for all elements.
inline void ZmSlerpStrided(const ZmStridedData& res, const ZmStridedData& a, const ZmStridedData& b, float t, int count)
{
    ZmSlerpStrided(res, a, b, ZmStridedData(&t, 0), count);
}
/// ZmNlerpStrided() with one t for all elements.
inline void ZmNlerpStrided(const ZmStridedData& res, const ZmStridedData& a, const ZmStridedData& b, float t, int count)
{
    ZmNlerpStrided(res, a, b, ZmStridedData(&t, 0), count);
}

/// Arrays of ZmSkinVertices().
struct ZmSkin {
    const ZmMatrix* palette;  ///< affine matrices, from the pose of rest to the present one
    int paletteSize;          ///< an index beyond it counts as the last; below 1, nothing is done
    int influences;           ///< matrices for each vertex, 1 to 4; other values count as the nearest
    ZmStridedData indices;    ///< for each vertex `influences` bytes, or words of 16 bits if there are `wideIndices`
    bool wideIndices;         ///< whether indices are words of 16 bits
    ZmStridedData weights;    ///< for each vertex `influences` floats, which should add up to 1
};

/// Moves vertices with the bones of a skeleton (linear blend skinning). For each vertex the matrices are blended by
/// their weights, (w0 * m0 + w1 * m1) + (w2 * m2 + w3 * m3) element by element as far as there are influences, and
/// transform the position as Zm3DMultiplyMatrixVector does and the normal as Zm3DRotateVector does: normals are not
/// normalised, and follow scaling like directions. Arrays of sources with null pointers are left out.
ZM_API void ZmSkinVertices(const ZmSkin& skin, const ZmStridedData& resPositions, const ZmStridedData& positions,
                           const ZmStridedData& resNormals, const ZmStridedData& normals, int count);

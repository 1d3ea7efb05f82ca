#pragma once

#include "ZmVector.h"

struct ZmQuaternion;
struct ZmStridedData;

/// 4x4 matrix of float, stored row by row: m[i][j] is float number 4*i + j.
///
/// Vectors are rows and multiply from the left: v' = v * M. Rows 0 to 2 are the images of the X, Y and Z axes, row 3 is
/// the translation. An affine matrix has (0, 0, 0, 1) in its fourth column; every builder here writes exactly that.
/// (Read column by column, the same memory is the usual column-vector matrix.)
///
/// 64 bytes, aligned like float, not initialised. Functions touch only their arguments and may be called from any
/// thread. They report no errors: degenerate input gives NaNs or, where stated, leaves the result unchanged.
class ZmMatrix {
public:
    ZmMatrix() = default;

    /// The affine matrix that maps the axes to x, y and z and the origin to `translation`.
    constexpr ZmMatrix(const ZmVector& x, const ZmVector& y, const ZmVector& z, const ZmVector& translation)
        : m_Rows{{x.x, x.y, x.z, 0},
                 {y.x, y.y, y.z, 0},
                 {z.x, z.y, z.z, 0},
                 {translation.x, translation.y, translation.z, 1}}
    {
    }

    /// The identity. Valid even during static initialisation.
    ZM_API static const ZmMatrix& Identity();

    /// Row by index, 0 to 3, as four elements; the index is not checked.
    constexpr float* operator[](int row) { return m_Rows[row]; }
    constexpr const float* operator[](int row) const { return m_Rows[row]; }

    /// Returns 1 if no element differs from the other's by more than 2^-23, else 0.
    /// The tolerance is absolute. NaNs compare as equal to anything.
    ZM_API int Compare(const ZmMatrix& other) const;

    /// Overwrites this matrix with scale, then rotation, then translation, from the outputs of Zm3DDecomposeMatrix. No
    /// pointer may be null.
    ZM_API void RecomposeMatrix(const ZmVector* pos, const ZmVector* scale, const ZmQuaternion* quat);

    /// Overwrites this matrix from the outputs of Zm3DDecomposeMatrixTotal: the symmetric stretch U * diag(scale) * U^T
    /// first, then the rotation `quat`. `sign` is not used: a mirrored matrix is rebuilt without its mirroring, which
    /// the caller must apply if needed. No pointer may be null.
    ZM_API void RecomposeMatrixEx(const ZmVector* pos, const ZmVector* scale, const ZmQuaternion* quat,
                                  const ZmQuaternion* uRot, float sign);

private:
    float m_Rows[4][4];
};

// --- Vectors through matrices ------------------------------------------------
//
// Point forms add the translation, rotate forms do not. Each call takes the four-wide path when the SSE bit of
// GetProcessorFeatures() is set and the scalar path when it is clear; both give the same bits. `res` and `v` may be the
// same element. Bulk forms accept any byte stride and alignment, read and write only the elements' own bytes, allow
// res == src with equal strides (other overlaps are not supported), and do nothing for a count below 1. Strides of 12
// and 16 bytes take the fastest kernels.

/// res = v * M with w = 1; res may be v.
ZM_API void Zm3DMultiplyMatrixVector(ZmVector* res, const ZmMatrix& m, const ZmVector* v);
/// The same for `count` vectors; `stride`, in bytes, applies to both arrays and may be negative.
ZM_API void Zm3DMultiplyMatrixVectorMany(ZmVector* res, const ZmMatrix& m, const ZmVector* v, int count, int stride);
/// The same with a separate stride for each array.
ZM_API void Zm3DMultiplyMatrixVectorStrided(const ZmStridedData* res, const ZmStridedData* src, const ZmMatrix& m,
                                            int count);

/// Full four-component product.
ZM_API void Zm3DMultiplyMatrixVector4(ZmVector4* res, const ZmMatrix& m, const ZmVector4* v);
/// Full product with w = 1; for a projection matrix res->w is the divisor.
ZM_API void Zm3DMultiplyMatrixVector4(ZmVector4* res, const ZmMatrix& m, const ZmVector* v);
/// The same for `count` vectors, from three-component sources to four-component results.
ZM_API void Zm3DMultiplyMatrixVector4Strided(const ZmStridedData* res, const ZmStridedData* src, const ZmMatrix& m,
                                             int count);

/// res = v * M, using only the linear part of M; res may be v.
ZM_API void Zm3DRotateVector(ZmVector* res, const ZmMatrix& m, const ZmVector* v);
ZM_API void Zm3DRotateVectorMany(ZmVector* res, const ZmMatrix& m, const ZmVector* v, int count, int stride);
ZM_API void Zm3DRotateVectorStrided(const ZmStridedData* res, const ZmStridedData* src, const ZmMatrix& m, int count);

/// Returns v multiplied by the linear part of m.
ZM_API ZmVector Rotate(const ZmMatrix& m, const ZmVector& v);
/// Returns v rotated about `axis` through the origin, in the sense of Zm3DMatrixFromRotation. The axis need not be of
/// unit length; a zero axis gives NaNs.
ZM_API ZmVector Rotate(const ZmVector& v, const ZmVector& axis, float angle);

// --- Products, transposes, inverses ------------------------------------------

/// Affine product: transforming by `res` means transforming by `b`, then by `a`. The fourth columns of `a` and `b` are
/// assumed to be (0, 0, 0, 1), and that of the result is exactly that. `res` may be `a` or `b`.
ZM_API void Zm3DMultiplyMatrix(ZmMatrix& res, const ZmMatrix& a, const ZmMatrix& b);

/// Full product in the same order. `res` may be `a` or `b`.
ZM_API void Zm3DMultiplyMatrix4(ZmMatrix& res, const ZmMatrix& a, const ZmMatrix& b);

/// res[i][j] = src[j][i]; `res` may be `src`.
ZM_API void Zm3DTransposeMatrix(ZmMatrix& res, const ZmMatrix& src);

/// Sets m to the identity.
ZM_API void Zm3DMatrixIdentity(ZmMatrix& m);

/// Determinant of the upper-left 3x3 block.
ZM_API float Zm3DMatrixDeterminant(const ZmMatrix& m);

/// Inverse of an affine matrix (the fourth column of `src` is assumed to be 0, 0, 0, 1). `res` and `src` must be
/// different objects. If the 3x3 block is singular (its determinant rounds to 0 in float, or is below 1e-15 times the
/// sum of the magnitudes of its terms), `res` stays unchanged and no error is reported: test Zm3DMatrixDeterminant()
/// first where that matters. Computed in double, so that even for a nearly singular block the 3x3 block of the result
/// is accurate to float rounding.
ZM_API void Zm3DInverseMatrix(ZmMatrix& res, const ZmMatrix& src);

// --- Builders -----------------------------------------------------------------

/// Rotation by `angle` radians about `axis`, which is normalised with ZmVector::Normalize (so its precision depends on
/// the SSE feature bit, and a zero axis gives NaNs). A positive angle about X takes Y to (0, cos, MINUS sin), the
/// opposite sense of Zm3DMatrixFromEulerAngles. Callers rely on both senses.
ZM_API void Zm3DMatrixFromRotation(ZmMatrix& res, const ZmVector& axis, float angle);

/// The same rotation about an axis through `origin`, which stays fixed.
ZM_API void Zm3DMatrixFromRotationAndOrigin(ZmMatrix& res, const ZmVector& axis, const ZmVector& origin, float angle);

/// Rotation about X by `eax`, then Y by `eay`, then Z by `eaz`, in radians. A positive angle about X takes Y to
/// (0, cos, PLUS sin). Angles of magnitude up to 1e-8 count as exactly 0; without a rotation about Y, element [0][2]
/// is then -0, which compares equal to 0.
ZM_API void Zm3DMatrixFromEulerAngles(ZmMatrix& res, float eax, float eay, float eaz);

/// Extracts the angles that Zm3DMatrixFromEulerAngles takes. The scale is removed from the rows first (a zero row gives
/// NaNs). When Y is at a quarter turn, X and Z rotate about the same axis, and the whole rotation is assigned to X
/// (*eaz = 0). No pointer may be null.
ZM_API void Zm3DMatrixToEulerAngles(const ZmMatrix& m, float* eax, float* eay, float* eaz);

/// Finds the camera-space point at depth `z` whose projection through `m`, divided by its depth, is `p`. Exact for
/// centred projections with square pixels: diagonal apart from depth, with m[0][0] = m[1][1]. For other projections
/// callers rely on the same formula: y is divided by m[0][0], and centre offsets keep their sign. A degenerate
/// projection gives infinities.
ZM_API void ZmInverseProject(const ZmMatrix& m, const Zm2DVector& p, float z, ZmVector* res);

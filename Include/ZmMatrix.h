#pragma once

#include "ZmVector.h"

struct ZmQuaternion;
struct ZmStridedData;

/// 4x4 matrix of float, row by row: m[i][j] is float number 4*i + j.
///
/// Vectors are rows and stand on the left, v' = v * M. Rows 0 to 2 are the
/// images of the X, Y and Z axes, row 3 is the translation; an affine matrix has
/// (0, 0, 0, 1) in its fourth column, and every builder here writes exactly that.
/// (Read column by column the same memory is the usual column-vector matrix.)
///
/// 64 bytes, alignment of float, no initialisation. Functions touch only their
/// arguments and may be called from any thread. They report nothing: degenerate
/// input gives non-numbers or, where said, leaves the result as it was.
class ZmMatrix {
public:
    ZmMatrix() = default;

    /// The affine matrix whose axes are carried to x, y and z and the origin to `translation`.
    constexpr ZmMatrix(const ZmVector& x, const ZmVector& y, const ZmVector& z, const ZmVector& translation)
        : m_Rows{{x.x, x.y, x.z, 0},
                 {y.x, y.y, y.z, 0},
                 {z.x, z.y, z.z, 0},
                 {translation.x, translation.y, translation.z, 1}}
    {
    }

    /// The identity, valid before any code of the program runs.
    ZM_API static const ZmMatrix& Identity();

    /// A row of four elements, 0 to 3; the index is not checked.
    constexpr float* operator[](int row) { return m_Rows[row]; }
    constexpr const float* operator[](int row) const { return m_Rows[row]; }

    /// 1 when no element differs from the other's by more than 2^-23, else 0.
    /// The tolerance is absolute. Non-numbers compare as equal to anything.
    ZM_API int Compare(const ZmMatrix& other) const;

    /// Overwrites this matrix with scale, then rotation, then translation, from
    /// the outputs of Zm3DDecomposeMatrix. No argument may be null.
    ZM_API void RecomposeMatrix(const ZmVector* pos, const ZmVector* scale, const ZmQuaternion* quat);

    /// Overwrites this matrix from the outputs of Zm3DDecomposeMatrixTotal: the
    /// symmetric stretch U * diag(scale) * U^T first, then the rotation `quat`.
    /// `sign` is not used: a mirrored matrix comes back without its mirroring,
    /// and callers that need it apply it. No pointer may be null.
    ZM_API void RecomposeMatrixEx(const ZmVector* pos, const ZmVector* scale, const ZmQuaternion* quat,
                                  const ZmQuaternion* uRot, float sign);

private:
    float m_Rows[4][4];
};

// --- Vectors through matrices ------------------------------------------------
//
// Point forms add the translation, rotate forms do not. Each call takes the
// four-wide path when the SSE bit of GetProcessorFeatures() is set and the
// scalar path when it is clear; both give the same bits. `res` and `v` may be the
// same element. Bulk forms take any byte stride and any alignment, read and write
// only the elements' own bytes, allow res == src with equal strides (other
// overlaps are not supported), and do nothing for a count below 1. Arrays of 12-
// and 16-byte strides take the fastest kernels.

/// res = v * M with w = 1; res may be v.
ZM_API void Zm3DMultiplyMatrixVector(ZmVector* res, const ZmMatrix& m, const ZmVector* v);
/// The same for `count` vectors; `stride`, in bytes, is that of both arrays and may be negative.
ZM_API void Zm3DMultiplyMatrixVectorMany(ZmVector* res, const ZmMatrix& m, const ZmVector* v, int count, int stride);
/// The same with a stride for each array.
ZM_API void Zm3DMultiplyMatrixVectorStrided(const ZmStridedData* res, const ZmStridedData* src, const ZmMatrix& m,
                                            int count);

/// Full product of four components.
ZM_API void Zm3DMultiplyMatrixVector4(ZmVector4* res, const ZmMatrix& m, const ZmVector4* v);
/// Full product with w = 1; projection matrices give the divisor in res->w.
ZM_API void Zm3DMultiplyMatrixVector4(ZmVector4* res, const ZmMatrix& m, const ZmVector* v);
/// The same for `count` vectors: three-component sources, four-component results.
ZM_API void Zm3DMultiplyMatrixVector4Strided(const ZmStridedData* res, const ZmStridedData* src, const ZmMatrix& m,
                                             int count);

/// res = v * M by the linear part only; res may be v.
ZM_API void Zm3DRotateVector(ZmVector* res, const ZmMatrix& m, const ZmVector* v);
ZM_API void Zm3DRotateVectorMany(ZmVector* res, const ZmMatrix& m, const ZmVector* v, int count, int stride);
ZM_API void Zm3DRotateVectorStrided(const ZmStridedData* res, const ZmStridedData* src, const ZmMatrix& m, int count);

/// v by the linear part of m.
ZM_API ZmVector Rotate(const ZmMatrix& m, const ZmVector& v);
/// v turned about `axis` through the origin, in the sense of
/// Zm3DMatrixFromRotation. The axis need not be of unit length; a zero axis
/// gives non-numbers.
ZM_API ZmVector Rotate(const ZmVector& v, const ZmVector& axis, float angle);

// --- Products, transposes, inverses ------------------------------------------

/// Affine product: transforming by `res` is transforming by `b`, then by `a`.
/// The fourth columns of `a` and `b` are taken as (0, 0, 0, 1), and that of the
/// result is exactly so. `res` may be `a` or `b`.
ZM_API void Zm3DMultiplyMatrix(ZmMatrix& res, const ZmMatrix& a, const ZmMatrix& b);

/// Full product in the same order. `res` may be `a` or `b`.
ZM_API void Zm3DMultiplyMatrix4(ZmMatrix& res, const ZmMatrix& a, const ZmMatrix& b);

/// res[i][j] = src[j][i]; `res` may be `src`.
ZM_API void Zm3DTransposeMatrix(ZmMatrix& res, const ZmMatrix& src);

/// Makes m the identity.
ZM_API void Zm3DMatrixIdentity(ZmMatrix& m);

/// Determinant of the upper left 3x3 block.
ZM_API float Zm3DMatrixDeterminant(const ZmMatrix& m);

/// Inverse of an affine matrix (fourth column of `src` taken as 0, 0, 0, 1).
/// `res` and `src` must be different objects. If the 3x3 block is singular (its
/// determinant rounds to 0 in float, or is below 1e-15 of the sum of its terms'
/// magnitudes) `res` keeps its old value and nothing tells you: test
/// Zm3DMatrixDeterminant() first where that matters. Computed in double: the block is
/// right to a rounding of float also where it is nearly singular.
ZM_API void Zm3DInverseMatrix(ZmMatrix& res, const ZmMatrix& src);

// --- Builders -----------------------------------------------------------------

/// Rotation by `angle` radians about `axis`, which is normalised with
/// ZmVector::Normalize (so its precision follows the SSE feature bit; a zero
/// axis gives non-numbers). A positive angle about X takes Y to
/// (0, cos, MINUS sin): the opposite sense of Zm3DMatrixFromEulerAngles. Both
/// senses are relied upon; do not reconcile them.
ZM_API void Zm3DMatrixFromRotation(ZmMatrix& res, const ZmVector& axis, float angle);

/// The same rotation about an axis through `origin`, which stays where it is.
ZM_API void Zm3DMatrixFromRotationAndOrigin(ZmMatrix& res, const ZmVector& axis, const ZmVector& origin, float angle);

/// Rotation about X by `eax`, then Y by `eay`, then Z by `eaz`, in radians. A
/// positive angle about X takes Y to (0, cos, PLUS sin). Angles of a magnitude up
/// to 1e-8 count as exactly 0; without a turn about Y element [0][2] is then -0, which
/// compares as 0.
ZM_API void Zm3DMatrixFromEulerAngles(ZmMatrix& res, float eax, float eay, float eaz);

/// The angles that Zm3DMatrixFromEulerAngles would take, scale stripped from the
/// rows first (a zero row gives non-numbers). Where Y is at a quarter turn X and Z
/// turn about one axis, and all of the turn is given to X (*eaz = 0). No pointer
/// may be null.
ZM_API void Zm3DMatrixToEulerAngles(const ZmMatrix& m, float* eax, float* eay, float* eaz);

/// The camera-space point at depth `z` whose projection through `m`, divided by
/// its depth, is `p`. It is exact for the usual projections, centred and with square
/// pixels: diagonal but for depth, with m[0][0] = m[1][1]. Elsewhere callers rely on the
/// formula as it is: y is divided by m[0][0], and offsets of the centre keep their sign.
/// A degenerate projection gives infinities.
ZM_API void ZmInverseProject(const ZmMatrix& m, const Zm2DVector& p, float z, ZmVector* res);

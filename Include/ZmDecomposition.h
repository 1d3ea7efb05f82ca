#pragma once

#include "ZmQuaternion.h"

// Decomposition and interpolation of affine matrices; ZmMatrix::RecomposeMatrix and RecomposeMatrixEx are the inverse.
// All functions are reentrant.

/// Fast form for matrices without shear: translation, rotation and the scales of the rows. A mirrored matrix gives a
/// proper rotation and a negative scale.z. A zero row gives NaNs. The precision is that of ZmVector::Normalize.
ZM_API void Zm3DDecomposeMatrix(const ZmMatrix& m, ZmQuaternion& quat, ZmVector& pos, ZmVector& scale);

/// Full form: m = stretch, then rotation, then translation, times the sign of its determinant, which is returned (-1
/// for a mirrored matrix, else 1). The stretch is U * diag(scale) * U^T, where U is the rotation `uRot`, chosen as
/// close to the identity as possible; the scales are never negative.
/// For a positive determinant, RecomposeMatrixEx of the outputs gives m again; for a negative one it gives the 3x3
/// block negated. Singular blocks are decomposed as well (missing axes are completed to a proper rotation). Magnitudes
/// from 1e-20 to 1e6 may be mixed freely: the block is reproduced to 16 * 2^-24 of its longest row. The sign is that of
/// the determinant as far as double can resolve it. Stretches that differ by rounding only (12 * 2^-24 of themselves)
/// are made equal, so that rounding noise does not give a pure rotation a `uRot`. Non-finite input gives NaNs.
///
/// A singular value decomposition in double by one-sided Jacobi rotations (M. Hestenes, 1958) that start from axes in
/// closed form (O. Smith, 1961) and end when what remains is below the resolution of float, after 12 sweeps at most.
/// The factors and the choice of axes are those of K. Shoemake and T. Duff, "Matrix Animation and Polar Decomposition",
/// Graphics Interface 1992.
ZM_API float Zm3DDecomposeMatrixTotal(const ZmMatrix& m, ZmQuaternion& quat, ZmVector& pos, ZmVector& scale,
                                      ZmQuaternion& uRot);

/// The same with optional outputs, which may be null. If quat, scale and uRot are all null, the sign is not computed
/// and 1 is returned.
ZM_API float Zm3DDecomposeMatrixTotalPtr(const ZmMatrix& m, ZmQuaternion* quat, ZmVector* pos, ZmVector* scale,
                                         ZmQuaternion* uRot);

/// Reorders the stretch axes so that the stretch rotation becomes as small as possible: returns p such that q (x) p is
/// the new rotation, and permutes `k` to match (only its order changes). `q` is only read. Exactly equal stretches
/// leave their axes free: with three equal ones q (x) p becomes the identity, with two it is the smallest rotation that
/// brings the third axis into place.
ZM_API ZmQuaternion Zm3DQuaternionSnuggle(ZmQuaternion* q, ZmVector* k);

/// Interpolates between a (t = 0) and b (t = 1): fast decomposition of both, linear translation and scale, spherical
/// rotation. `res` may be `a` or `b`. The rows go through ZmVector::Normalize: on the vector path the result has a
/// precision of only 12 bits, even at t = 0 and t = 1, where it is not exactly `a` or `b`.
ZM_API void Zm3DInterpolateMatrix(float t, ZmMatrix& res, const ZmMatrix& a, const ZmMatrix& b);

/// The same function under the name that older callers use: it interpolates the scale as well.
ZM_API void Zm3DInterpolateMatrixNoScale(float t, ZmMatrix& res, const ZmMatrix& a, const ZmMatrix& b);

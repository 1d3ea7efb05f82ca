#pragma once

#include "ZmQuaternion.h"

// Affine matrices taken apart, put together again (ZmMatrix::RecomposeMatrix and
// RecomposeMatrixEx) and interpolated. All functions are reentrant.

/// Quick form, for matrices without shear: translation, rotation and the scales
/// of the rows. A mirrored matrix gives a proper rotation and a negative scale.z.
/// A zero row gives non-numbers. The precision is that of ZmVector::Normalize.
ZM_API void Zm3DDecomposeMatrix(const ZmMatrix& m, ZmQuaternion& quat, ZmVector& pos, ZmVector& scale);

/// Full form: m = stretch, then rotation, then translation, times the sign of its
/// determinant, which is returned (-1 for a mirrored matrix, else 1). The stretch
/// is U * diag(scale) * U^T with U the rotation `uRot`, turned so that `uRot` is as
/// close to the identity as it can be; the scales are never negative.
/// For a positive determinant RecomposeMatrixEx of the outputs gives m back, for a
/// negative one its 3x3 block negated. Singular blocks are decomposed too (missing
/// axes are completed to a proper rotation); magnitudes from 1e-20 to 1e6 may be mixed
/// freely: the block comes back to 16 * 2^-24 of its longest row. The sign is that of the
/// determinant as far as double can tell. Stretches that differ by no more than rounding
/// (12 * 2^-24 of themselves) are made equal, so that a rotation gets no `uRot` from noise.
/// Non-finite input gives non-numbers.
///
/// Higham's polar decomposition with norm scaling, then Jacobi rotations, in the
/// arrangement of K. Shoemake and T. Duff, "Matrix Animation and Polar
/// Decomposition", Graphics Interface 1992. The iterations run in double and end when
/// less than a float can tell is left, after 30 steps or 12 sweeps at most.
ZM_API float Zm3DDecomposeMatrixTotal(const ZmMatrix& m, ZmQuaternion& quat, ZmVector& pos, ZmVector& scale,
                                      ZmQuaternion& uRot);

/// The same with optional outputs: null means not wanted. When quat, scale and uRot
/// are all null the sign is not computed and 1 is returned.
ZM_API float Zm3DDecomposeMatrixTotalPtr(const ZmMatrix& m, ZmQuaternion* quat, ZmVector* pos, ZmVector* scale,
                                         ZmQuaternion* uRot);

/// Renames the stretch axes so that the stretch rotation becomes as small as
/// possible: returns p such that q (x) p is the new rotation, and permutes `k` to
/// match (only its order changes). `q` is only read. Exactly equal stretches leave
/// their axes free, and the freedom is used: three equal ones turn q (x) p into the
/// identity, two leave the shortest turn that brings the third axis into place.
ZM_API ZmQuaternion Zm3DQuaternionSnuggle(ZmQuaternion* q, ZmVector* k);

/// Matrix between a (t = 0) and b (t = 1): quick decomposition of both, linear
/// translation and scale, spherical rotation. `res` may be `a` or `b`. The rows go through
/// ZmVector::Normalize: on the vector path the result is good to 12 bits only, at t = 0 and
/// t = 1 as well, where it is not quite `a` or `b`.
ZM_API void Zm3DInterpolateMatrix(float t, ZmMatrix& res, const ZmMatrix& a, const ZmMatrix& b);

/// The same function under the name that older callers use: it interpolates the
/// scale too.
ZM_API void Zm3DInterpolateMatrixNoScale(float t, ZmMatrix& res, const ZmMatrix& a, const ZmMatrix& b);

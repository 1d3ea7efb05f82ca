#pragma once

#include "ZmMatrix.h"

/// Rotation quaternion: (x, y, z) is the vector part, w the scalar part.
///
/// Default-constructed as the identity. Some operations require unit length, as documented; none of them reports
/// errors. All are reentrant, and only FromMatrix can write to its argument.
struct ZmQuaternion {
    /// Vector part and scalar part.
    float x = 0, y = 0, z = 0, w = 1;

    /// The identity; the given values.
    constexpr ZmQuaternion() = default;
    constexpr ZmQuaternion(float qx, float qy, float qz, float qw) : x(qx), y(qy), z(qz), w(qw) {}

    /// Sets this to the rotation of m's 3x3 block.
    /// `matIsUnit` 1: the block is orthonormal and is used unchanged.
    /// `matIsUnit` 0: the rows are orthonormalised first (rows 0 and 1 normalised with ZmVector::Normalize, row 2 set
    /// to their vector product). With `restoreMat` non-zero the matrix stays unchanged; with 0 the orthonormal block is
    /// written TO THE CALLER'S MATRIX, const or not: the matrix must then not be a real constant, such as
    /// ZmMatrix::Identity(), nor be converted by two threads at once. A zero row gives NaNs.
    ZM_API void FromMatrix(const ZmMatrix& m, int matIsUnit, int restoreMat);

    /// Writes the rotation matrix. Any non-zero length gives a pure rotation; the zero quaternion gives NaNs. The sense
    /// is that of Zm3DMatrixFromRotation.
    ZM_API void ToMatrix(ZmMatrix& m) const;

    /// Half-angle form. The axis is used as given and should be of unit length.
    ZM_API void FromRotation(const ZmVector& axis, float angle);

    /// angle = 2 acos w; axis = (x, y, z) / sqrt(1 - w). The axis is generally NOT of unit length (callers normalise);
    /// the identity divides by zero.
    ZM_API void ToRotation(ZmVector& axis, float& angle) const;

    /// Convert through Zm3DMatrixFromEulerAngles and Zm3DMatrixToEulerAngles.
    ZM_API void FromEulerAngles(float eax, float eay, float eaz);
    ZM_API void ToEulerAngles(float* eax, float* eay, float* eaz) const;

    /// this = this (x) q, Hamilton's product; q may be this quaternion.
    ZM_API void Multiply(const ZmQuaternion& q);

    /// Scales to unit length; the zero quaternion becomes the identity.
    ZM_API void Normalize();
};

/// FromMatrix for an orthonormal block.
ZM_API ZmQuaternion Zm3DQuaternionFromMatrix(const ZmMatrix& m);

/// (-x, -y, -z, w).
ZM_API ZmQuaternion Zm3DQuaternionConjugate(const ZmQuaternion& q);

/// a (x) b, Hamilton's product.
ZM_API ZmQuaternion Zm3DQuaternionMultiply(const ZmQuaternion& a, const ZmQuaternion& b);

/// conj(b) (x) a. b must be of unit length: the result is not divided by its norm.
ZM_API ZmQuaternion Zm3DQuaternionDivide(const ZmQuaternion& a, const ZmQuaternion& b);

/// Logarithm of a unit quaternion; w of the result is 0.
ZM_API ZmQuaternion Ln(const ZmQuaternion& q);

/// Exponential of a quaternion with w = 0 (w is ignored).
ZM_API ZmQuaternion Exp(const ZmQuaternion& q);

/// Ln(Zm3DQuaternionDivide(b, a)).
ZM_API ZmQuaternion LnDif(const ZmQuaternion& a, const ZmQuaternion& b);

/// Spherical interpolation along the shorter arc, from a (t = 0) to b or -b (t = 1), both of unit length. Below about
/// 8 degrees the weights are linear and the result is not renormalised.
ZM_API ZmQuaternion Slerp(float t, const ZmQuaternion& a, const ZmQuaternion& b);

/// Slerp(2t(1 - t), Slerp(t, q1, q2), Slerp(t, s1, s2)).
ZM_API ZmQuaternion Squad(float t, const ZmQuaternion& q1, const ZmQuaternion& s1, const ZmQuaternion& s2,
                          const ZmQuaternion& q2);

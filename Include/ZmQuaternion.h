#pragma once

#include "ZmMatrix.h"

/// Rotation quaternion: (x, y, z) is the vector part, w the scalar part.
///
/// The identity when default-built. Operations expect unit length where they say
/// so and report nothing; everything is reentrant, and only FromMatrix can write
/// to its argument.
struct ZmQuaternion {
    /// Vector part and scalar part.
    float x = 0, y = 0, z = 0, w = 1;

    /// The identity; the four values.
    constexpr ZmQuaternion() = default;
    constexpr ZmQuaternion(float qx, float qy, float qz, float qw) : x(qx), y(qy), z(qz), w(qw) {}

    /// This = the rotation of m's 3x3 block.
    /// `matIsUnit` 1: the block is orthonormal and is taken as it is.
    /// `matIsUnit` 0: its rows are made orthonormal first (rows 0 and 1 normalised with
    /// ZmVector::Normalize, row 2 their vector product). `restoreMat` non-zero leaves the matrix as it
    /// was; 0 leaves the orthonormal block IN THE CALLER'S MATRIX, const or not: a matrix that is really
    /// constant, such as ZmMatrix::Identity(), must not be passed so, and two threads must not convert one
    /// matrix at once. A zero row gives non-numbers.
    ZM_API void FromMatrix(const ZmMatrix& m, int matIsUnit, int restoreMat);

    /// Writes the rotation matrix, any length but zero giving a pure rotation
    /// (zero gives non-numbers). Agrees in sense with Zm3DMatrixFromRotation.
    ZM_API void ToMatrix(ZmMatrix& m) const;

    /// Half-angle form; the axis is used as given and should be of unit length.
    ZM_API void FromRotation(const ZmVector& axis, float angle);

    /// angle = 2 acos w; axis = (x, y, z) / sqrt(1 - w). The axis is NOT of unit
    /// length in general (callers normalise); the identity divides by zero.
    ZM_API void ToRotation(ZmVector& axis, float& angle) const;

    /// By way of Zm3DMatrixFromEulerAngles and Zm3DMatrixToEulerAngles.
    ZM_API void FromEulerAngles(float eax, float eay, float eaz);
    ZM_API void ToEulerAngles(float* eax, float* eay, float* eaz) const;

    /// This = this (x) q, Hamilton's product; q may be this quaternion.
    ZM_API void Multiply(const ZmQuaternion& q);

    /// Scales to unit length; the zero quaternion becomes the identity.
    ZM_API void Normalize();
};

/// FromMatrix with an orthonormal block.
ZM_API ZmQuaternion Zm3DQuaternionFromMatrix(const ZmMatrix& m);

/// (-x, -y, -z, w).
ZM_API ZmQuaternion Zm3DQuaternionConjugate(const ZmQuaternion& q);

/// a (x) b, Hamilton's product.
ZM_API ZmQuaternion Zm3DQuaternionMultiply(const ZmQuaternion& a, const ZmQuaternion& b);

/// conj(b) (x) a. b must be of unit length: nothing is divided.
ZM_API ZmQuaternion Zm3DQuaternionDivide(const ZmQuaternion& a, const ZmQuaternion& b);

/// Logarithm of a unit quaternion; w of the result is 0.
ZM_API ZmQuaternion Ln(const ZmQuaternion& q);

/// Exponential of a quaternion with w = 0 (w is not read).
ZM_API ZmQuaternion Exp(const ZmQuaternion& q);

/// Ln(Zm3DQuaternionDivide(b, a)).
ZM_API ZmQuaternion LnDif(const ZmQuaternion& a, const ZmQuaternion& b);

/// Spherical interpolation along the shorter arc, from a (t = 0) to b or -b
/// (t = 1), both of unit length. Within about 8 degrees the weights are linear
/// and the result is not renormalised.
ZM_API ZmQuaternion Slerp(float t, const ZmQuaternion& a, const ZmQuaternion& b);

/// Slerp(2t(1 - t), Slerp(t, q1, q2), Slerp(t, s1, s2)).
ZM_API ZmQuaternion Squad(float t, const ZmQuaternion& q1, const ZmQuaternion& s1, const ZmQuaternion& s2,
                          const ZmQuaternion& q2);

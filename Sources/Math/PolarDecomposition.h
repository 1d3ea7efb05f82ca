#pragma once

namespace zm {

/// A 3x3 matrix in double, row by row.
struct Matrix3 {
    double m[3][3];
};

/// M = stretch * rotation on the stored rows, with an orthogonal rotation and a symmetric stretch whose eigenvalues are
/// not negative. The rotation is proper unless the determinant of M is negative.
struct PolarFactors {
    Matrix3 rotation;
    bool mirrored;  ///< the rotation has determinant -1
};

/// The orthogonal factor of a matrix of floats, by Newton's iteration with norm scaling (N. Higham, "Computing the
/// Polar Decomposition - with Applications", 1986).
PolarFactors DecomposePolar(const Matrix3& m);

/// The stretch for a given orthogonal factor: m * rotation^T, made exactly symmetric.
Matrix3 StretchOf(const Matrix3& m, const Matrix3& rotation);

/// S = axes * diag(values) * axes^T for a symmetric S; the columns of `axes` are a rotation.
struct SpectralFactors {
    Matrix3 axes;
    double values[3];
};

/// Decomposes a symmetric matrix by Jacobi rotations.
SpectralFactors DecomposeSymmetric(const Matrix3& s);

}  // namespace zm

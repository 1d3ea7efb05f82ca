#pragma once

#include "ZmApi.h"

/// Eigenvalues and eigenvectors of a symmetric 3x3 matrix: Householder's reduction to tridiagonal form, then the
/// QL method with implicit shifts (Bowdler, Martin, Reinsch and Wilkinson, Numerische Mathematik 11,
/// 1968). Fill Matrix, by Covariance() or by hand, and call EigenStuff3().
///
/// No initialisation. One object is for one thread at a time.
class ZmEigenMatrix {
public:
    /// Matrix = the covariance of a cloud, divided by the number of points. A point is three floats at the start of
    /// its element; elements start `stride` bytes apart at any alignment. The sums are taken in double from the first
    /// point on, so neither the number of points nor their distance from the origin costs digits.
    /// Distances below 1e-19 have squares that no float holds (ZmComputeBestFitBBox scales first).
    /// Without points (count < 1 or a null pointer) Matrix is zero.
    ZM_API void Covariance(const unsigned char* points, unsigned long stride, int count);

    /// Reduces Matrix to tridiagonal form. `diagonal` and `subDiagonal` are of three floats each; the third one
    /// of `subDiagonal` is set to 0. Matrix becomes the orthogonal transform.
    ZM_API void Tridiagonal(float* diagonal, float* subDiagonal);

    /// After Tridiagonal(): turns `diagonal` into the eigenvalues, in no order, and the columns of Matrix into
    /// the eigenvectors. False when one of them has not converged in 32 iterations, which takes non-numbers or
    /// numbers near the ends of the range; everything is then as far as it came.
    ZM_API bool QLAlgorithm(float* diagonal, float* subDiagonal);

    /// Both, with the eigenvalues in EigenValues and the answer in Converged.
    ZM_API void EigenStuff3();

    float Matrix[3][3];    ///< the symmetric matrix; after EigenStuff3() its columns are the eigenvectors
    float EigenValues[3];  ///< that of column i at place i, in no order
    bool Converged;        ///< what QLAlgorithm() returned
};

#pragma once

#include "ZmApi.h"

/// Eigenvalues and eigenvectors of a symmetric 3x3 matrix: Householder's reduction to tridiagonal form, then the
/// QL method with implicit shifts (Bowdler, Martin, Reinsch and Wilkinson, Numerische Mathematik 11,
/// 1968). Fill Matrix directly or with Covariance(), then call EigenStuff3().
///
/// Not initialised. Not thread-safe: only one thread at a time may use an object.
class ZmEigenMatrix {
public:
    /// Sets Matrix to the covariance of a point cloud, divided by the number of points. A point is three floats at the
    /// start of its element; elements start `stride` bytes apart at any alignment. The sums are taken in double
    /// relative to the first point, so neither the number of points nor their distance from the origin costs precision.
    /// Distances below 1e-19 have squares too small for float (ZmComputeBestFitBBox scales first). Without points
    /// (count < 1 or a null pointer) Matrix is zero.
    ZM_API void Covariance(const unsigned char* points, unsigned long stride, int count);

    /// Reduces Matrix to tridiagonal form. `diagonal` and `subDiagonal` have three floats each; the third one of
    /// `subDiagonal` is set to 0. Matrix becomes the orthogonal transform.
    ZM_API void Tridiagonal(float* diagonal, float* subDiagonal);

    /// Call after Tridiagonal(). Turns `diagonal` into the eigenvalues, in no order, and the columns of Matrix into the
    /// eigenvectors. Returns false if one of them has not converged after 32 iterations, which happens only with NaNs
    /// or numbers near the limits of float; the outputs then hold the state reached so far.
    ZM_API bool QLAlgorithm(float* diagonal, float* subDiagonal);

    /// Runs both steps. The eigenvalues are stored in EigenValues, the result of QLAlgorithm() in Converged.
    ZM_API void EigenStuff3();

    float Matrix[3][3];    ///< the symmetric matrix; after EigenStuff3() its columns are the eigenvectors
    float EigenValues[3];  ///< element i belongs to column i; in no order
    bool Converged;        ///< the result of QLAlgorithm()
};

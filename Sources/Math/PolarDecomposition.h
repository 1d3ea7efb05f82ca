#pragma once

#include "ZmInline.h"

namespace zm {

/// A 3x3 matrix m as the product of a stretch and a rotation on the stored rows: with the axes as the rows of a matrix
/// U, m = U^T * diag(stretches) * U * rotation.
struct PolarFactors {
    Triple axes[3];       ///< right-handed and orthonormal
    double stretches[3];  ///< not negative, in no order
    Triple rotation[3];   ///< orthogonal, and proper unless the determinant of m is negative
    bool mirrored;        ///< the rotation has determinant -1
};

/// Decomposes the rows m0, m1 and m2 of a matrix of floats by one-sided Jacobi rotations (M. Hestenes, "Inversion of
/// Matrices by Biorthogonalization and Related Results", 1958) that start from an axis in closed form (O. Smith,
/// "Eigenvalues of a Symmetric 3 x 3 Matrix", 1961).
PolarFactors DecomposePolar(const Triple& m0, const Triple& m1, const Triple& m2);

}  // namespace zm

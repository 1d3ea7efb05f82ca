#pragma once

#include "Math/Normalize.h"
#include "ZmQuaternion.h"

#include <math.h>

namespace zm {

/// Three rows of a matrix.
struct RotationRows {
    ZmVector row0, row1, row2;
};

/// Orthonormal rows of a matrix with scale: the third is the cross product of the other two.
inline RotationRows OrthonormalRows(const RotationRows& m)
{
    const ZmVector row0 = NormalizedApproximately(m.row0), row1 = NormalizedApproximately(m.row1);
    return {row0, row1, Cross(row0, row1)};
}

/// The case in which x, y or z is the largest component: `i` is that one, `j` and `k` are the next in cyclic order. The
/// arguments are the diagonal elements, then sums and differences of the off-diagonal ones.
inline void QuaternionFromLargest(float ii, float jj, float kk, float sumIJ, float sumIK, float difference, float& qi,
                                  float& qj, float& qk, float& qw)
{
    const float r = sqrtf(ii - (jj + kk) + 1), f = 0.5f / r;
    qi = 0.5f * r;
    qj = sumIJ * f;
    qk = sumIK * f;
    qw = difference * f;
}

/// The quaternion of a rotation matrix.
inline ZmQuaternion QuaternionFromRows(const RotationRows& m)
{
    const ZmVector &a = m.row0, &b = m.row1, &c = m.row2;
    const float trace = a.x + b.y + c.z;
    ZmQuaternion q;
    if (trace >= 0) {
        const float r = sqrtf(trace + 1), f = 0.5f / r;
        return {(c.y - b.z) * f, (a.z - c.x) * f, (b.x - a.y) * f, 0.5f * r};
    }
    // On ties the lower index wins.
    const bool yOverX = b.y > a.x;
    if (c.z > (yOverX ? b.y : a.x)) {
        QuaternionFromLargest(c.z, a.x, b.y, c.x + a.z, b.z + c.y, b.x - a.y, q.z, q.x, q.y, q.w);
    } else if (yOverX) {
        QuaternionFromLargest(b.y, c.z, a.x, b.z + c.y, a.y + b.x, a.z - c.x, q.y, q.z, q.x, q.w);
    } else {
        QuaternionFromLargest(a.x, b.y, c.z, a.y + b.x, c.x + a.z, c.y - b.z, q.x, q.y, q.z, q.w);
    }
    return q;
}

}  // namespace zm

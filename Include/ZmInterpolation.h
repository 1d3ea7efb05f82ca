#pragma once

// Between two rotations or matrices, inline and exact: the keys of an animation come back with their bits, and all
// other results carry one rounding. t runs from 0 to 1 and comes last, as in Lerp (the exported Slerp and
// Zm3DInterpolateMatrix take it first). Everything is computed in double, reentrant and free of errors.

#include "ZmOperators.h"

namespace zm {

/// A quaternion in double.
struct Turn {
    double x, y, z, w;

    constexpr Turn(double qx, double qy, double qz, double qw) : x(qx), y(qy), z(qz), w(qw) {}
    constexpr explicit Turn(const ZmQuaternion& q) : x(q.x), y(q.y), z(q.z), w(q.w) {}
    Turn Unit() const { return *this * (1 / Sqrt(Dot(*this, *this))); }
    constexpr ZmQuaternion ToFloats() const { return {float(x), float(y), float(z), float(w)}; }

    constexpr friend Turn operator+(const Turn& a, const Turn& b)
    {
        return {a.x + b.x, a.y + b.y, a.z + b.z, a.w + b.w};
    }
    constexpr friend Turn operator*(const Turn& q, double s) { return {q.x * s, q.y * s, q.z * s, q.w * s}; }
    constexpr friend double Dot(const Turn& a, const Turn& b)
    {
        return (a.x * b.x + a.y * b.y) + (a.z * b.z + a.w * b.w);
    }
};

/// Spherical interpolation along the shorter arc between two units.
inline Turn SlerpOf(const Turn& a, const Turn& b, double t)
{
    const double dot = Dot(a, b), c = dot < 0 ? -dot : dot;
    double ka = 1 - t, kb = t;
    constexpr double kNearlyStraight = 1e-9;  // the weights are then linear to 2^-30
    if (1 - c > kNearlyStraight) {
        const double root = Sqrt(1 - c), sine = root * Sqrt(1 + c);
        const SineCosine part(t * AcosFromRoot(c, root));
        kb = part.sine / sine;
        ka = part.cosine - c * kb;
    }
    return (a * ka + b * (dot < 0 ? -kb : kb)).Unit();
}

/// A 3x3 block as M = shape * rotation: the rotation's rows are those of M made orthonormal in turn, and the shape,
/// which holds scale, shear and mirroring, has zeros above its diagonal.
struct ShapeAndRotation {
    Triple row0, row1, row2;  // of the rotation
    Triple shape0, shape1, shape2;

    explicit ShapeAndRotation(const ZmMatrix& m)
        : ShapeAndRotation(Triple(m[0]), Triple(m[1]), Triple(m[2]), Triple(m[0]).Unit())
    {
    }

    /// The rotation's quaternion: starts from the largest component, so that no digits are lost.
    Turn Rotation() const
    {
        const Triple &a = row0, &b = row1, &c = row2;
        if (a.x + b.y + c.z >= 0) {
            return Turn(c.y - b.z, a.z - c.x, b.x - a.y, 1 + (a.x + b.y + c.z)).Unit();
        }
        if (a.x >= b.y && a.x >= c.z) {
            return Turn(1 + a.x - b.y - c.z, a.y + b.x, a.z + c.x, c.y - b.z).Unit();
        }
        if (b.y >= c.z) {
            return Turn(a.y + b.x, 1 + b.y - a.x - c.z, b.z + c.y, a.z - c.x).Unit();
        }
        return Turn(a.z + c.x, b.z + c.y, 1 + c.z - a.x - b.y, b.x - a.y).Unit();
    }

private:
    ShapeAndRotation(const Triple& a, const Triple& b, const Triple& c, const Triple& unit0)
        : ShapeAndRotation(a, b, c, unit0, (b - unit0 * Dot(b, unit0)).Unit())
    {
    }
    ShapeAndRotation(const Triple& a, const Triple& b, const Triple& c, const Triple& unit0, const Triple& unit1)
        : row0(unit0), row1(unit1), row2(Cross(unit0, unit1)), shape0(Dot(a, unit0), 0, 0),
          shape1(Dot(b, unit0), Dot(b, unit1), 0), shape2(Dot(c, unit0), Dot(c, unit1), Dot(c, row2))
    {
    }
};

inline Triple Between(const Triple& a, const Triple& b, double t)
{
    return a * (1 - t) + b * t;
}

}  // namespace zm

/// m with its 3x3 block made a rotation: row 0 keeps its direction, row 1 is made perpendicular to it in their common
/// plane, and row 2 is their vector product, so that mirroring is removed. Translation and fourth column stay. A zero
/// row 0, or a row 1 parallel to it, gives NaNs.
inline ZmMatrix Orthonormalized(const ZmMatrix& m)
{
    const zm::ShapeAndRotation parts(m);
    ZmMatrix res = m;
    const zm::Triple* const rows[] = {&parts.row0, &parts.row1, &parts.row2};
    for (int i = 0; i < 3; ++i) {
        res[i][0] = float(rows[i]->x);
        res[i][1] = float(rows[i]->y);
        res[i][2] = float(rows[i]->z);
    }
    return res;
}

/// From a to b, or to -b if that is nearer, along the chord and scaled to unit length: the path of SlerpExact at a
/// speed that is not quite even, for less work. Exactly a at t = 0 and b or -b at t = 1.
inline ZmQuaternion Nlerp(const ZmQuaternion& a, const ZmQuaternion& b, float t)
{
    const zm::Turn from(a), to(b);
    const bool away = Dot(from, to) < 0;
    if (t == 0 || t == 1) {
        return t == 0 ? a : away ? -b : b;
    }
    return (from * (1 - double(t)) + to * (away ? -double(t) : double(t))).Unit().ToFloats();
}

/// Spherical interpolation along the shorter arc, of unit length to rounding: a at t = 0, b or -b at t = 1, both with
/// their bits. The keys need not be of unit length exactly.
inline ZmQuaternion SlerpExact(const ZmQuaternion& a, const ZmQuaternion& b, float t)
{
    const zm::Turn from(a), to(b);
    if (t == 0 || t == 1) {
        return t == 0 ? a : Dot(from, to) < 0 ? -b : b;
    }
    return zm::SlerpOf(from.Unit(), to.Unit(), t).ToFloats();
}

/// Between two affine matrices: the translation is linear, the rotation spherical along the shorter arc, and what
/// scale, shear and mirroring the rows have is linear. Exactly a at t = 0 and b at t = 1, all sixteen elements; in
/// between the fourth column is (0, 0, 0, 1). A block without rotation, whose first two rows are zero or parallel,
/// gives NaNs. Unlike Zm3DInterpolateMatrix it keeps shear, and its precision does not depend on the processor.
inline ZmMatrix ZmInterpolate(const ZmMatrix& a, const ZmMatrix& b, float t)
{
    if (t == 0 || t == 1) {
        return t == 0 ? a : b;
    }
    const zm::ShapeAndRotation from(a), to(b);
    const zm::Turn q = zm::SlerpOf(from.Rotation(), to.Rotation(), t);
    const zm::Triple row0(1 - 2 * (q.y * q.y + q.z * q.z), 2 * (q.x * q.y - q.w * q.z), 2 * (q.x * q.z + q.w * q.y));
    const zm::Triple row1(2 * (q.x * q.y + q.w * q.z), 1 - 2 * (q.x * q.x + q.z * q.z), 2 * (q.y * q.z - q.w * q.x));
    const zm::Triple row2(2 * (q.x * q.z - q.w * q.y), 2 * (q.y * q.z + q.w * q.x), 1 - 2 * (q.x * q.x + q.y * q.y));
    const zm::Triple shape0 = zm::Between(from.shape0, to.shape0, t), shape1 = zm::Between(from.shape1, to.shape1, t),
                     shape2 = zm::Between(from.shape2, to.shape2, t);
    return {(row0 * shape0.x).ToFloats(), (row0 * shape1.x + row1 * shape1.y).ToFloats(),
            (row0 * shape2.x + row1 * shape2.y + row2 * shape2.z).ToFloats(),
            zm::Between(zm::Triple(a[3]), zm::Triple(b[3]), t).ToFloats()};
}

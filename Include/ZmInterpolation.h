#pragma once

// Between two rotations or matrices, inline and exact: the keys of an animation come back with their bits, and all
// other results carry one rounding. t runs from 0 to 1 and comes last, as in Lerp (the exported Slerp and
// Zm3DInterpolateMatrix take it first). Everything is computed in double, reentrant and free of errors.

#include "ZmOperators.h"

namespace zm {

/// A quaternion in double.
struct Turn {
    TwoDoubles xy, zw;

    Turn(double x, double y, double z, double w) : xy(x, y), zw(z, w) {}
    Turn(const TwoDoubles& first, const TwoDoubles& second) : xy(first), zw(second) {}
    explicit Turn(const ZmQuaternion& q) : xy(q.x, q.y), zw(q.z, q.w) {}
    Turn Unit() const { return *this * (1 / Sqrt(Dot(*this, *this))); }
    ZmQuaternion ToFloats() const
    {
        return {float(xy.First()), float(xy.Second()), float(zw.First()), float(zw.Second())};
    }

    friend Turn operator+(const Turn& a, const Turn& b) { return {a.xy + b.xy, a.zw + b.zw}; }
    friend Turn operator*(const Turn& q, double s) { return {q.xy * TwoDoubles(s, s), q.zw * TwoDoubles(s, s)}; }
    friend double Dot(const Turn& a, const Turn& b)
    {
        const TwoDoubles low = a.xy * b.xy, high = a.zw * b.zw;
        return (low.First() + low.Second()) + (high.First() + high.Second());
    }
    /// Dot(a, a) and Dot(b, b).
    friend TwoDoubles SquareLengths(const Turn& a, const Turn& b)
    {
        const TwoDoubles aXY = a.xy * a.xy, aZW = a.zw * a.zw, bXY = b.xy * b.xy, bZW = b.zw * b.zw;
        return (TwoDoubles(aXY.First(), bXY.First()) + TwoDoubles(aXY.Second(), bXY.Second())) +
               (TwoDoubles(aZW.First(), bZW.First()) + TwoDoubles(aZW.Second(), bZW.Second()));
    }
};

/// Spherical interpolation along the shorter arc, for t from 0 to 1. The lengths of a and b are 1, or that times the
/// inverse of `factors`.
__attribute__((always_inline)) inline Turn SlerpOf(const Turn& a, const Turn& b, double t,
                                                   const TwoDoubles& factors = TwoDoubles(1, 1))
{
    const double dot = Dot(a, b), c = __builtin_fabs(dot) * (factors.First() * factors.Second());
    const TwoDoubles nearer(1, __builtin_copysign(1, 0 + dot));  // the sum is never -0, whose sign would count
    const TwoDoubles weights = SlerpWeights(c, TwoDoubles(1 - t, t), factors * nearer);
    return a * weights.First() + b * weights.Second();
}

/// SlerpOf for any t, and lengths of 1. Kept out of the code of its callers, which seldom need it.
__attribute__((noinline, cold)) inline Turn SlerpBeyond(const Turn& a, const Turn& b, double t)
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

/// SlerpExact at the keys and beyond them.
__attribute__((noinline, cold)) inline ZmQuaternion SlerpAtKeys(const ZmQuaternion& a, const ZmQuaternion& b, float t)
{
    const Turn from(a), to(b);
    if (t == 0 || t == 1) {
        return t == 0 ? a : Dot(from, to) < 0 ? -b : b;
    }
    return SlerpBeyond(from.Unit(), to.Unit(), t).ToFloats();
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
    const double nearer = __builtin_copysign(1, 0 + Dot(from, to));
    if (t == 0 || t == 1) {
        return t == 0 ? a : nearer < 0 ? -b : b;
    }
    return (from * (1 - double(t)) + to * (t * nearer)).Unit().ToFloats();
}

/// Spherical interpolation along the shorter arc, of unit length to rounding: a at t = 0, b or -b at t = 1, both with
/// their bits. The keys need not be of unit length exactly.
inline ZmQuaternion SlerpExact(const ZmQuaternion& a, const ZmQuaternion& b, float t)
{
    const zm::Turn from(a), to(b);
    return __builtin_expect(t > 0 && t < 1, 1)
               ? zm::SlerpOf(from, to, t, InverseRoots(SquareLengths(from, to))).ToFloats()
               : zm::SlerpAtKeys(a, b, t);
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
    const zm::Turn q0 = from.Rotation(), q1 = to.Rotation();
    const zm::Turn turn = t > 0 && t < 1 ? zm::SlerpOf(q0, q1, t) : zm::SlerpBeyond(q0, q1, t);
    const double x = turn.xy.First(), y = turn.xy.Second(), z = turn.zw.First(), w = turn.zw.Second();
    const zm::Triple row0(1 - 2 * (y * y + z * z), 2 * (x * y - w * z), 2 * (x * z + w * y));
    const zm::Triple row1(2 * (x * y + w * z), 1 - 2 * (x * x + z * z), 2 * (y * z - w * x));
    const zm::Triple row2(2 * (x * z - w * y), 2 * (y * z + w * x), 1 - 2 * (x * x + y * y));
    const zm::Triple shape0 = zm::Between(from.shape0, to.shape0, t), shape1 = zm::Between(from.shape1, to.shape1, t),
                     shape2 = zm::Between(from.shape2, to.shape2, t);
    return {(row0 * shape0.x).ToFloats(), (row0 * shape1.x + row1 * shape1.y).ToFloats(),
            (row0 * shape2.x + row1 * shape2.y + row2 * shape2.z).ToFloats(),
            zm::Between(zm::Triple(a[3]), zm::Triple(b[3]), t).ToFloats()};
}

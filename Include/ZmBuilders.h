#pragma once

// Builders, inline: matrices for objects and cameras, inverses, boxes and spheres. They return their result. Those that
// name an exported function compute its bits; the others compute in double and round once, unless they only copy and
// compare floats. constexpr where no square root is needed. All are reentrant and report no errors: input without
// sense, such as equal planes, a field of view of 0 or a target at the eye, gives infinities and NaNs.
//
//     const ZmMatrix world = ZmTransform(position, rotation, {1, 1, 1});
//     const ZmMatrix camera = ZmLookAt(eye, target) * ZmPerspective(kFieldOfView, width / height, 0.1f, 100);
//
// SENSE OF ROTATION. A positive angle turns Y to +Z about X, Z to +X about Y, and X to +Y about Z: the sense of
// Zm3DMatrixFromEulerAngles, and of the textbooks. THE OLDER FUNCTIONS WITH AN AXIS TURN THE OTHER WAY
// (Zm3DMatrixFromRotation, ZmQuaternion::FromRotation, Rotate(v, axis, angle)): to replace one of them by a builder of
// this header, negate the angle.
//
// CAMERAS look along +Z with X to the right and Y up (left-handed), and depth runs from 0 at the near plane to 1 at the
// far plane, as ZMCLIP_FLAGS, ZmTransformBox2D and ZmFrustum expect. ZMVIEW_FLAGS choose other conventions: pass the
// same flags to the look-at and to the projection.

#include "ZmBbox.h"
#include "ZmFrustum.h"
#include "ZmOperators.h"
#include "ZmSphere.h"
#include "ZmStridedData.h"

#include <stddef.h>
#include <stdint.h>

// --- Translation, scale, rotation ------------------------------------------------------

/// Moves by v.
constexpr ZmMatrix ZmTranslation(const ZmVector& v)
{
    return {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, v};
}

/// Scales along the axes, or evenly.
constexpr ZmMatrix ZmScaling(const ZmVector& scale)
{
    return {{scale.x, 0, 0}, {0, scale.y, 0}, {0, 0, scale.z}, {0, 0, 0}};
}
constexpr ZmMatrix ZmScaling(float scale)
{
    return ZmScaling({scale, scale, scale});
}

/// Rotates about one axis, in radians: Y to +Z, Z to +X, X to +Y. Multiplied in this order they are
/// Zm3DMatrixFromEulerAngles.
constexpr ZmMatrix ZmRotationX(float angle)
{
    const zm::SineCosine turn(angle);
    const float s = float(turn.sine), c = float(turn.cosine);
    return {{1, 0, 0}, {0, c, s}, {0, -s, c}, {0, 0, 0}};
}
constexpr ZmMatrix ZmRotationY(float angle)
{
    const zm::SineCosine turn(angle);
    const float s = float(turn.sine), c = float(turn.cosine);
    return {{c, 0, -s}, {0, 1, 0}, {s, 0, c}, {0, 0, 0}};
}
constexpr ZmMatrix ZmRotationZ(float angle)
{
    const zm::SineCosine turn(angle);
    const float s = float(turn.sine), c = float(turn.cosine);
    return {{c, s, 0}, {-s, c, 0}, {0, 0, 1}, {0, 0, 0}};
}

/// Rotates about any axis through the origin, in the sense of the three above: about (0, 0, 1) it is ZmRotationZ. The
/// exact form of Zm3DMatrixFromRotation(res, axis, MINUS angle). The axis may have any length; a zero axis gives NaNs.
inline ZmMatrix ZmRotation(const ZmVector& axis, float angle)
{
    const zm::SineCosine turn(angle);
    const zm::Triple u = zm::Triple(axis).Unit(), s = u * turn.sine, t = u * (1 - turn.cosine);
    const double c = turn.cosine, xy = t.x * u.y, xz = t.x * u.z, yz = t.y * u.z;
    return {zm::Triple(c + t.x * u.x, xy + s.z, xz - s.y).ToFloats(),
            zm::Triple(xy - s.z, c + t.y * u.y, yz + s.x).ToFloats(),
            zm::Triple(xz + s.y, yz - s.x, c + t.z * u.z).ToFloats(),
            {0, 0, 0}};
}

/// The same rotation as a quaternion. ZmQuaternion::FromRotation turns the other way.
inline ZmQuaternion ZmRotationQuaternion(const ZmVector& axis, float angle)
{
    const zm::SineCosine half(0.5 * angle);
    const zm::Triple v = zm::Triple(axis).Unit() * -half.sine;
    return {float(v.x), float(v.y), float(v.z), float(half.cosine)};
}

namespace zm {

/// The case in which the component of `ii` is the largest. The arguments are the diagonal elements, then sums and the
/// difference of the others; the results are that component, the next two and w.
inline ZmVector4 FromLargest(float ii, float jj, float kk, float sumIJ, float sumIK, float difference)
{
    const float r = Sqrt(ii - (jj + kk) + 1), f = 0.5f / r;
    return {0.5f * r, sumIJ * f, sumIK * f, difference * f};
}

}  // namespace zm

/// The quaternion of a matrix whose 3x3 block is a rotation: the bits of Zm3DQuaternionFromMatrix.
inline ZmQuaternion ZmRotationQuaternion(const ZmMatrix& m)
{
    const float xx = m[0][0], yy = m[1][1], zz = m[2][2], trace = xx + yy + zz;
    const float xy = m[1][0] + m[0][1], xz = m[2][0] + m[0][2], yz = m[1][2] + m[2][1];
    const float wx = m[2][1] - m[1][2], wy = m[0][2] - m[2][0], wz = m[1][0] - m[0][1];
    if (trace >= 0) {
        const float r = zm::Sqrt(trace + 1), f = 0.5f / r;
        return {wx * f, wy * f, wz * f, 0.5f * r};
    }
    const bool yOverX = yy > xx;
    if (zz > (yOverX ? yy : xx)) {
        const ZmVector4 q = zm::FromLargest(zz, xx, yy, xz, yz, wz);
        return {q.y, q.z, q.x, q.w};
    }
    if (yOverX) {
        const ZmVector4 q = zm::FromLargest(yy, zz, xx, yz, xy, wy);
        return {q.z, q.x, q.y, q.w};
    }
    const ZmVector4 q = zm::FromLargest(xx, yy, zz, xy, xz, wx);
    return {q.x, q.y, q.z, q.w};
}

/// The rotation of a quaternion of any length but 0: the bits of ZmQuaternion::ToMatrix.
constexpr ZmMatrix ZmRotation(const ZmQuaternion& q)
{
    const float xx = q.x * q.x, yy = q.y * q.y, zz = q.z * q.z, xy = q.x * q.y, xz = q.x * q.z, yz = q.y * q.z;
    const float wx = q.w * q.x, wy = q.w * q.y, wz = q.w * q.z;
    const float s = 2.0f / ((xx + yy) + (zz + q.w * q.w));
    // The zeros turn a product of -0 into 0, as the four-wide form does.
    return {{1 - s * (yy + zz), 0 + s * (xy - wz), 0 + s * (xz + wy)},
            {0 + s * (xy + wz), 1 - s * (xx + zz), 0 + s * (yz - wx)},
            {0 + s * (xz - wy), 0 + s * (yz + wx), 1 - s * (yy + xx)},
            {0, 0, 0}};
}

/// The same for a quaternion of unit length, without the division: for rotations that come from this library's
/// functions or have been normalised. If the length is off by a part e, the elements are off by up to 4 e.
constexpr ZmMatrix ZmRotationOfUnit(const ZmQuaternion& q)
{
    const float x2 = q.x + q.x, y2 = q.y + q.y, z2 = q.z + q.z;
    const float xx = q.x * x2, yy = q.y * y2, zz = q.z * z2, xy = q.x * y2, xz = q.x * z2, yz = q.y * z2;
    const float wx = q.w * x2, wy = q.w * y2, wz = q.w * z2;
    return {{1 - (yy + zz), xy - wz, xz + wy},
            {xy + wz, 1 - (xx + zz), yz - wx},
            {xz - wy, yz + wx, 1 - (xx + yy)},
            {0, 0, 0}};
}

/// Scale, then rotation, then translation: the bits of ZmMatrix::RecomposeMatrix.
constexpr ZmMatrix ZmTransform(const ZmVector& position, const ZmQuaternion& rotation,
                               const ZmVector& scale = ZmVector(1, 1, 1))
{
    ZmMatrix res = ZmRotation(rotation);
    const float factors[] = {scale.x, scale.y, scale.z}, origin[] = {position.x, position.y, position.z};
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            res[i][j] *= factors[i];
        }
        res[3][i] = origin[i];
    }
    return res;
}

// --- Cameras ---------------------------------------------------------------------------

/// Conventions of a camera, to be combined with |.
enum ZMVIEW_FLAGS : uint32_t {
    ZMVIEW_DEFAULT = 0,           ///< left-handed, depth 0 (near) to 1 (far)
    ZMVIEW_RIGHT_HANDED = 1,      ///< the camera looks along -Z; X is to the right and Y up as ever
    ZMVIEW_DEPTH_FROM_MINUS = 2,  ///< depth from -1 instead of 0
    ZMVIEW_DEPTH_REVERSED = 4     ///< the near plane has depth 1, the far plane the smallest
};

namespace zm {

/// A linear function of the distance from the eye: what a projection writes to z before the division.
struct DepthLine {
    double slope, offset;
};

/// The depths of the near and the far plane.
constexpr double NearDepth(uint32_t flags)
{
    return (flags & ZMVIEW_DEPTH_REVERSED) != 0 ? 1 : (flags & ZMVIEW_DEPTH_FROM_MINUS) != 0 ? -1 : 0;
}
constexpr double FarDepth(uint32_t flags)
{
    return (flags & ZMVIEW_DEPTH_REVERSED) == 0 ? 1 : (flags & ZMVIEW_DEPTH_FROM_MINUS) != 0 ? -1 : 0;
}

/// The line through (near, depth * near) and (far, depth * far); an infinite far plane has a ratio of 0.
constexpr DepthLine PerspectiveDepth(double nearPlane, double farPlane, uint32_t flags)
{
    const double ratio = nearPlane / farPlane;
    const double slope = (FarDepth(flags) - NearDepth(flags) * ratio) / (1 - ratio);
    return {slope, nearPlane * (NearDepth(flags) - slope)};
}

constexpr ZmMatrix PerspectiveOf(double xScale, double yScale, const DepthLine& depth, uint32_t flags)
{
    const float ahead = (flags & ZMVIEW_RIGHT_HANDED) != 0 ? -1.0f : 1.0f;  // along which Z the camera looks
    ZmMatrix res({float(xScale), 0, 0}, {0, float(yScale), 0}, {0, 0, ahead * float(depth.slope)},
                 {0, 0, float(depth.offset)});
    res[2][3] = ahead;
    res[3][3] = 0;
    return res;
}

}  // namespace zm

/// From world space to the space of a camera at `eye` that looks at `target`; `up` leans to the top of the picture and
/// need not be perpendicular. An `up` along the line of sight gives NaNs. Of the flags only the handedness counts. The
/// camera's own place in the world is Zm3DInverseRigid() of the result.
inline ZmMatrix ZmLookAt(const ZmVector& eye, const ZmVector& target, const ZmVector& up = ZmVector(0, 1, 0),
                         uint32_t flags = ZMVIEW_DEFAULT)
{
    const zm::Triple origin(eye), sight = zm::Triple(target) - origin;
    const zm::Triple z = (flags & ZMVIEW_RIGHT_HANDED) != 0 ? (sight * -1).Unit() : sight.Unit();
    const zm::Triple x = Cross(zm::Triple(up), z).Unit(), y = Cross(z, x);
    return {zm::Triple(x.x, y.x, z.x).ToFloats(), zm::Triple(x.y, y.y, z.y).ToFloats(),
            zm::Triple(x.z, y.z, z.z).ToFloats(),
            zm::Triple(-Dot(x, origin), -Dot(y, origin), -Dot(z, origin)).ToFloats()};
}

/// Perspective projection. `verticalFov` is the full VERTICAL angle in radians and `aspectRatio` is WIDTH divided by
/// height, as in most engines; the constructor of ZmFrustum takes the horizontal angle and the inverse ratio. Both
/// distances are positive, in front of the eye; an infinite farPlane (INFINITY) is allowed.
constexpr ZmMatrix ZmPerspective(float verticalFov, float aspectRatio, float nearPlane, float farPlane,
                                 uint32_t flags = ZMVIEW_DEFAULT)
{
    const zm::SineCosine half(0.5 * verticalFov);
    const double yScale = half.cosine / half.sine;
    return zm::PerspectiveOf(yScale / aspectRatio, yScale, zm::PerspectiveDepth(nearPlane, farPlane, flags), flags);
}

/// The projection whose view pyramid has the sizes and distances of the frustum, so that drawing and culling agree. Its
/// camera is ZmLookAt(frustum.Origin, frustum.Origin + frustum.Direction, frustum.Up).
inline ZmMatrix ZmPerspective(const ZmFrustum& frustum, uint32_t flags = ZMVIEW_DEFAULT)
{
    const double distance = frustum.NearDistance;
    return zm::PerspectiveOf(distance / frustum.HalfWidth, distance / frustum.HalfHeight,
                             zm::PerspectiveDepth(distance, frustum.FarDistance, flags), flags);
}

/// Parallel projection of the box with these sides, in the camera's space, to clip space; w stays 1. `nearPlane` and
/// `farPlane` are distances in front of the eye, of any sign.
constexpr ZmMatrix ZmOrthographic(float left, float right, float bottom, float top, float nearPlane, float farPlane,
                                  uint32_t flags = ZMVIEW_DEFAULT)
{
    const double width = double(right) - left, height = double(top) - bottom, depth = double(farPlane) - nearPlane;
    const double slope = (zm::FarDepth(flags) - zm::NearDepth(flags)) / depth;
    const double ahead = (flags & ZMVIEW_RIGHT_HANDED) != 0 ? -1 : 1;
    return {{float(2 / width), 0, 0},
            {0, float(2 / height), 0},
            {0, 0, float(ahead * slope)},
            {float(-(double(right) + left) / width), float(-(double(top) + bottom) / height),
             float(zm::NearDepth(flags) - slope * nearPlane)}};
}

/// The same, centred on the line of sight.
constexpr ZmMatrix ZmOrthographic(float width, float height, float nearPlane, float farPlane,
                                  uint32_t flags = ZMVIEW_DEFAULT)
{
    return ZmOrthographic(-width / 2, width / 2, -height / 2, height / 2, nearPlane, farPlane, flags);
}

// --- Inverses --------------------------------------------------------------------------

namespace zm {

constexpr double Magnitude(double x)
{
    return __builtin_fabs(x);
}

/// A 2x2 minor of rows `row` and `row` + 1, by its columns.
constexpr double Minor(const ZmMatrix& m, int row, int i, int j)
{
    return double(m[row][i]) * m[row + 1][j] - double(m[row + 1][i]) * m[row][j];
}

/// Expands a row of the inverse by columns i, j and k of the matrix and the minors of the other pair of rows: `low` of
/// rows 2 and 3, `high` of rows 0 and 1.
constexpr void SetInverseRow(float* res, const ZmMatrix& m, int i, int j, int k, const Triple& low, const Triple& high,
                             double f)
{
    res[0] = float((m[1][i] * low.x - m[1][j] * low.y + m[1][k] * low.z) * f);
    res[1] = float((m[0][i] * low.x - m[0][j] * low.y + m[0][k] * low.z) * -f);
    res[2] = float((m[3][i] * high.x - m[3][j] * high.y + m[3][k] * high.z) * f);
    res[3] = float((m[2][i] * high.x - m[2][j] * high.y + m[2][k] * high.z) * -f);
}

constexpr ZmMatrix NotAMatrix()
{
    const float nan = __builtin_nanf("");
    ZmMatrix res({nan, nan, nan}, {nan, nan, nan}, {nan, nan, nan}, {nan, nan, nan});
    res[0][3] = res[1][3] = res[2][3] = res[3][3] = nan;
    return res;
}

}  // namespace zm

/// Inverse of a rotation with a translation (such as a camera's), by transposing, in floats: the fastest form. Scale is
/// not undone.
constexpr ZmMatrix Zm3DInverseRigid(const ZmMatrix& m)
{
    const ZmVector a(m[0][0], m[0][1], m[0][2]), b(m[1][0], m[1][1], m[1][2]), c(m[2][0], m[2][1], m[2][2]),
        origin(m[3][0], m[3][1], m[3][2]);
    return {{a.x, b.x, c.x}, {a.y, b.y, c.y}, {a.z, b.z, c.z}, {-Dot(origin, a), -Dot(origin, b), -Dot(origin, c)}};
}

namespace zm {

constexpr ZmMatrix ConstantInverseAffine(const ZmMatrix& m)
{
    const Triple a(m[0]), b(m[1]), c(m[2]), bc = Cross(b, c), ca = Cross(c, a), ab = Cross(a, b);
    const double det = (a.z * bc.z + a.y * bc.y) + a.x * bc.x;
    const double size = (Magnitude(a.z) * (Magnitude(b.x * c.y) + Magnitude(b.y * c.x)) +
                         Magnitude(a.y) * (Magnitude(b.z * c.x) + Magnitude(b.x * c.z))) +
                        Magnitude(a.x) * (Magnitude(b.y * c.z) + Magnitude(b.z * c.y));
    constexpr double kRoundsToZero = 0x1p-150;
    if (Magnitude(det) <= kRoundsToZero || Magnitude(det) < 1e-15 * size) {
        return NotAMatrix();
    }
    const double f = 1 / det;
    const ZmVector x(float(bc.x * f), float(ca.x * f), float(ab.x * f));
    const ZmVector y(float(bc.y * f), float(ca.y * f), float(ab.y * f));
    const ZmVector z(float(bc.z * f), float(ca.z * f), float(ab.z * f));
    const float ox = m[3][0], oy = m[3][1], oz = m[3][2];
    return {x,
            y,
            z,
            {0 - ((ox * x.x + oy * y.x) + oz * z.x), 0 - ((ox * x.y + oy * y.y) + oz * z.y),
             0 - ((ox * x.z + oy * y.z) + oz * z.z)}};
}

#if defined(ZM_WIDE)

inline ZmMatrix InverseOfAffine(const ZmMatrix& m)
{
    ZmMatrix res;
    InverseAffine(m[0]).Store(res[0]);
    return res;
}

#else

inline ZmMatrix InverseOfAffine(const ZmMatrix& m)
{
    return ConstantInverseAffine(m);
}

#endif

}  // namespace zm

/// Inverse of an affine matrix: the bits of Zm3DInverseMatrix, with the same test for singular blocks, which here give
/// a matrix of NaNs.
constexpr ZmMatrix Zm3DInverseAffine(const ZmMatrix& m)
{
    return zm::InConstant() ? zm::ConstantInverseAffine(m) : zm::InverseOfAffine(m);
}

/// Inverse of any 4x4 matrix, such as a projection. A determinant of 0 gives a matrix of NaNs.
constexpr ZmMatrix Zm3DInverse4(const ZmMatrix& m)
{
    const double s01 = zm::Minor(m, 0, 0, 1), s02 = zm::Minor(m, 0, 0, 2), s03 = zm::Minor(m, 0, 0, 3),
                 s12 = zm::Minor(m, 0, 1, 2), s13 = zm::Minor(m, 0, 1, 3), s23 = zm::Minor(m, 0, 2, 3);
    const double c01 = zm::Minor(m, 2, 0, 1), c02 = zm::Minor(m, 2, 0, 2), c03 = zm::Minor(m, 2, 0, 3),
                 c12 = zm::Minor(m, 2, 1, 2), c13 = zm::Minor(m, 2, 1, 3), c23 = zm::Minor(m, 2, 2, 3);
    const double det = s01 * c23 - s02 * c13 + s03 * c12 + s12 * c03 - s13 * c02 + s23 * c01;
    ZmMatrix res = zm::NotAMatrix();
    if (det != 0) {
        const double f = 1 / det;
        zm::SetInverseRow(res[0], m, 1, 2, 3, {c23, c13, c12}, {s23, s13, s12}, f);
        zm::SetInverseRow(res[1], m, 0, 2, 3, {c23, c03, c02}, {s23, s03, s02}, -f);
        zm::SetInverseRow(res[2], m, 0, 1, 3, {c13, c03, c01}, {s13, s03, s01}, f);
        zm::SetInverseRow(res[3], m, 0, 1, 2, {c12, c02, c01}, {s12, s02, s01}, -f);
    }
    return res;
}

// --- Boxes and spheres -----------------------------------------------------------------
//
// ZmBbox stores its LARGEST corner first: {Max, Min}. Boundaries belong to boxes and spheres. NaNs among points are
// ignored.

/// The box of no points: it contains nothing, and extending it by a point gives the box of that point.
constexpr ZmBbox ZmEmptyBox()
{
    const float inf = __builtin_inff();
    return {{-inf, -inf, -inf}, {inf, inf, inf}};
}

/// Whether a box contains no point: Min above Max on some axis.
constexpr bool IsEmpty(const ZmBbox& box)
{
    return box.Min.x > box.Max.x || box.Min.y > box.Max.y || box.Min.z > box.Max.z;
}

/// Enlarges a box in place, so that it contains the point or the other box.
constexpr void Extend(ZmBbox& box, const ZmVector& point)
{
    box = {Max(point, box.Max), Min(point, box.Min)};
}
constexpr void Extend(ZmBbox& box, const ZmBbox& other)
{
    box = {Max(other.Max, box.Max), Min(other.Min, box.Min)};
}

/// The smallest box that contains both.
constexpr ZmBbox Union(const ZmBbox& a, const ZmBbox& b)
{
    return {Max(a.Max, b.Max), Min(a.Min, b.Min)};
}

/// What both contain; IsEmpty() if that is nothing.
constexpr ZmBbox Intersection(const ZmBbox& a, const ZmBbox& b)
{
    return {Min(a.Max, b.Max), Max(a.Min, b.Min)};
}

/// Whether a box contains a point, and whether it contains all of another box that is not empty.
constexpr bool Contains(const ZmBbox& box, const ZmVector& point)
{
    return point.x >= box.Min.x && point.x <= box.Max.x && point.y >= box.Min.y && point.y <= box.Max.y &&
           point.z >= box.Min.z && point.z <= box.Max.z;
}
constexpr bool Contains(const ZmBbox& outer, const ZmBbox& inner)
{
    return Contains(outer, inner.Min) && Contains(outer, inner.Max);
}

namespace zm {

constexpr double SquareDistanceOf(const ZmVector& a, const ZmVector& b)
{
    const Triple apart = Triple(a) - Triple(b);
    return Dot(apart, apart);
}

/// Element i, which may be unaligned.
inline ZmVector PointAt(const ZmStridedData& points, int i)
{
    float v[3];
    __builtin_memcpy(v, static_cast<const char*>(points.Ptr) + size_t(i) * points.Stride, sizeof(v));
    return {v[0], v[1], v[2]};
}

inline ZmVector MiddleOf(const ZmBbox& box)
{
    return box.Min * 0.5f + box.Max * 0.5f;
}

/// The radius of a sphere that reaches a point at this square of a distance: rounding down would leave it outside.
inline float RadiusOf(double square)
{
    const float radius = float(Sqrt(square));
    return double(radius) * radius < square ? __builtin_nextafterf(radius, __builtin_inff()) : radius;
}

/// Describes a tight array, which is only read.
inline ZmStridedData Tight(const ZmVector* points)
{
    return {const_cast<ZmVector*>(points), sizeof(ZmVector)};
}

}  // namespace zm

/// Whether a sphere contains a point, computed in double.
constexpr bool Contains(const ZmSphere& sphere, const ZmVector& point)
{
    return zm::SquareDistanceOf(point, sphere.Center) <= double(sphere.Radius) * sphere.Radius;
}

/// The smallest box around points, at any stride or tight; ZmEmptyBox() if `count` is below 1. For more than a handful
/// of points ZmBoxOfPoints() and ZmSphereOfPoints() of ZmCulling.h are faster.
inline ZmBbox ZmBoxFromPoints(const ZmStridedData& points, int count)
{
    ZmBbox box = ZmEmptyBox();
    for (int i = 0; i < count; ++i) {
        Extend(box, zm::PointAt(points, i));
    }
    return box;
}
inline ZmBbox ZmBoxFromPoints(const ZmVector* points, int count)
{
    return ZmBoxFromPoints(zm::Tight(points), count);
}

/// A sphere around points, at any stride: its centre is that of their box, and it reaches the farthest point. It
/// Contains() all of them but is seldom the smallest. No points give a radius of 0 at the origin.
inline ZmSphere ZmSphereFromPoints(const ZmStridedData& points, int count)
{
    const ZmBbox box = ZmBoxFromPoints(points, count);
    if (IsEmpty(box)) {
        return {{0, 0, 0}, 0};
    }
    const ZmVector centre = zm::MiddleOf(box);
    double farthest = 0;
    for (int i = 0; i < count; ++i) {
        const double square = zm::SquareDistanceOf(zm::PointAt(points, i), centre);
        farthest = square > farthest ? square : farthest;
    }
    return {centre, zm::RadiusOf(farthest)};
}
/// The same for a tight array.
inline ZmSphere ZmSphereFromPoints(const ZmVector* points, int count)
{
    return ZmSphereFromPoints(zm::Tight(points), count);
}

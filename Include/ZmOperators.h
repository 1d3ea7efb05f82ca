#pragma once

// Everyday mathematics on the records, inline: operators and short functions. Nothing here calls the library; the
// arrays of a mesh belong to its bulk functions (ZmMatrix.h, ZmStridedData.h).
//
//     const ZmMatrix world = ZmRotationY(0.5f) * ZmTranslation({0, 0, 5});   // turned first, then moved
//     const ZmVector there = TransformPoint(here, world);
//
// ORDER. Products read from left to right, as the algebra of row vectors has it: (v * A) * B == v * (A * B), so A * B
// applies A first, then B. The same holds for quaternions: Rotate(a * b, v) == Rotate(b, Rotate(a, v)). Beside the
// functions with names:
//
//     A * B   is   Zm3DMultiplyMatrix4(res, B, A), whose SECOND operand acts first
//     a * b   is   Zm3DQuaternionMultiply(a, b) and a.Multiply(b), whose FIRST operand acts first
//
// BITS. Forms that have an exported counterpart of full precision compute the same bits, in the same order of
// operations. A compiler that contracts a * b + c to one operation computes others, more precise but not the library's:
// g++ does so by default once -mfma or -march=native is given. The option -ffp-contract=off prevents it
// (Documentation/Conventions.md). 32-bit programs need -msse2 -mfpmath=sse for the same bits.
//
// Everything is reentrant and reports no errors: degenerate input gives infinities and NaNs. What works component by
// component (+, -, ==, Lerp, Min, Clamp ...) is in ZmArithmetic.h, which this header includes.

#include "ZmArithmetic.h"
#include "ZmInline.h"

// --- ZmQuaternion ------------------------------------------------------------------

/// Hamilton's product: the rotation a, then b. The bits of Zm3DQuaternionMultiply(a, b).
constexpr ZmQuaternion operator*(const ZmQuaternion& a, const ZmQuaternion& b)
{
    return {a.w * b.x + a.x * b.w + a.y * b.z - a.z * b.y, a.w * b.y + a.y * b.w + a.z * b.x - a.x * b.z,
            a.w * b.z + a.z * b.w + a.x * b.y - a.y * b.x, a.w * b.w - a.x * b.x - a.y * b.y - a.z * b.z};
}
constexpr ZmQuaternion& operator*=(ZmQuaternion& a, const ZmQuaternion& b)
{
    return a = a * b;
}

/// (-x, -y, -z, w): the opposite rotation if q is of unit length.
constexpr ZmQuaternion Conjugate(const ZmQuaternion& q)
{
    return {-q.x, -q.y, -q.z, q.w};
}

// --- ZmMatrix ------------------------------------------------------------------------

namespace zm {

/// One element of the row (x, y, z, w) times the matrix; the grouping is that of the library's kernels.
constexpr float ElementOfProduct(float x, float y, float z, float w, const ZmMatrix& m, int j)
{
    return (x * m[0][j] + y * m[1][j]) + (z * m[2][j] + w * m[3][j]);
}

constexpr ZmMatrix ConstantProduct(const ZmMatrix& a, const ZmMatrix& b)
{
    ZmMatrix res({0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0});
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            res[i][j] = ElementOfProduct(a[i][0], a[i][1], a[i][2], a[i][3], b, j);
        }
    }
    return res;
}

inline Float4 RowTimes(const Float4& row, const Float4& m0, const Float4& m1, const Float4& m2, const Float4& m3)
{
    return (row.AllX() * m0 + row.AllY() * m1) + (row.AllZ() * m2 + row.AllW() * m3);
}

#if defined(ZM_WIDE)

inline ZmMatrix Product(const ZmMatrix& a, const ZmMatrix& b)
{
    const Float8 b0 = Float8::Twice(b[0]), b1 = Float8::Twice(b[1]), b2 = Float8::Twice(b[2]), b3 = Float8::Twice(b[3]);
    const Float8 upper = Float8::Load(a[0]), lower = Float8::Load(a[2]);
    ZmMatrix res;
    ((upper.AllX() * b0 + upper.AllY() * b1) + (upper.AllZ() * b2 + upper.AllW() * b3)).Store(res[0]);
    ((lower.AllX() * b0 + lower.AllY() * b1) + (lower.AllZ() * b2 + lower.AllW() * b3)).Store(res[2]);
    return res;
}

#else

inline ZmMatrix Product(const ZmMatrix& a, const ZmMatrix& b)
{
    const Float4 b0 = Float4::Load(b[0]), b1 = Float4::Load(b[1]), b2 = Float4::Load(b[2]), b3 = Float4::Load(b[3]);
    ZmMatrix res;
    RowTimes(Float4::Load(a[0]), b0, b1, b2, b3).Store(res[0]);
    RowTimes(Float4::Load(a[1]), b0, b1, b2, b3).Store(res[1]);
    RowTimes(Float4::Load(a[2]), b0, b1, b2, b3).Store(res[2]);
    RowTimes(Float4::Load(a[3]), b0, b1, b2, b3).Store(res[3]);
    return res;
}

#endif

constexpr ZmMatrix ConstantTranspose(const ZmMatrix& m)
{
    ZmMatrix res({0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0});
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            res[i][j] = m[j][i];
        }
    }
    return res;
}

inline ZmMatrix Transpose(const ZmMatrix& m)
{
    ZmMatrix res;
    Transpose(res[0], m[0]);
    return res;
}

/// A row of an affine product: `last` is 0, or the translation of the second matrix.
inline Float4 AffineRowTimes(const Float4& row, const Float4& m0, const Float4& m1, const Float4& m2,
                             const Float4& last)
{
    return (row.AllX() * m0 + row.AllY() * m1) + (row.AllZ() * m2 + last);
}

inline ZmMatrix ProductOfAffine(const ZmMatrix& a, const ZmMatrix& b)
{
    const Float4 b0 = Float4::Load(b[0]), b1 = Float4::Load(b[1]), b2 = Float4::Load(b[2]), b3 = Float4::Load(b[3]);
    const Float4 none = Float4::Splat(0);
    ZmMatrix res;
    AffineRowTimes(Float4::Load(a[0]), b0, b1, b2, none).WithW0().Store(res[0]);
    AffineRowTimes(Float4::Load(a[1]), b0, b1, b2, none).WithW0().Store(res[1]);
    AffineRowTimes(Float4::Load(a[2]), b0, b1, b2, none).WithW0().Store(res[2]);
    AffineRowTimes(Float4::Load(a[3]), b0, b1, b2, b3).WithW1().Store(res[3]);
    return res;
}

constexpr ZmMatrix ConstantProductOfAffine(const ZmMatrix& a, const ZmMatrix& b)
{
    ZmMatrix res({0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0});
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 3; ++j) {
            res[i][j] = (a[i][0] * b[0][j] + a[i][1] * b[1][j]) + (a[i][2] * b[2][j] + (i == 3 ? b[3][j] : 0));
        }
    }
    return res;
}

inline Float4 PointTimes(const ZmVector& v, const ZmMatrix& m)
{
    return (Float4::Splat(v.x) * Float4::Load(m[0]) + Float4::Splat(v.y) * Float4::Load(m[1])) +
           (Float4::Splat(v.z) * Float4::Load(m[2]) + Float4::Load(m[3]));
}

inline Float4 DirectionTimes(const ZmVector& v, const ZmMatrix& m)
{
    return (Float4::Splat(v.x) * Float4::Load(m[0]) + Float4::Splat(v.y) * Float4::Load(m[1])) +
           Float4::Splat(v.z) * Float4::Load(m[2]);
}

inline Float4 RowTimes(const ZmVector4& v, const ZmMatrix& m)
{
    return RowTimes(Float4::Load(&v.x), Float4::Load(m[0]), Float4::Load(m[1]), Float4::Load(m[2]), Float4::Load(m[3]));
}

inline ZmVector FirstThree(const Float4& v)
{
    return {v.X(), v.Y(), v.Z()};
}

inline ZmVector4 AllFour(const Float4& v)
{
    return {v.X(), v.Y(), v.Z(), v.W()};
}

}  // namespace zm

/// The full product: a, then b. The bits of Zm3DMultiplyMatrix4(res, b, a).
constexpr ZmMatrix operator*(const ZmMatrix& a, const ZmMatrix& b)
{
    return zm::InConstant() ? zm::ConstantProduct(a, b) : zm::Product(a, b);
}
constexpr ZmMatrix& operator*=(ZmMatrix& a, const ZmMatrix& b)
{
    return a = a * b;
}

/// The product of two affine matrices: a, then b. Their fourth columns are not read, and that of the result is
/// (0, 0, 0, 1). The bits of Zm3DMultiplyMatrix(res, b, a).
constexpr ZmMatrix AffineProduct(const ZmMatrix& a, const ZmMatrix& b)
{
    return zm::InConstant() ? zm::ConstantProductOfAffine(a, b) : zm::ProductOfAffine(a, b);
}

/// The row v times the matrix, all four components. The bits of Zm3DMultiplyMatrixVector4.
constexpr ZmVector4 operator*(const ZmVector4& v, const ZmMatrix& m)
{
    return zm::InConstant() ? ZmVector4(zm::ElementOfProduct(v.x, v.y, v.z, v.w, m, 0),
                                        zm::ElementOfProduct(v.x, v.y, v.z, v.w, m, 1),
                                        zm::ElementOfProduct(v.x, v.y, v.z, v.w, m, 2),
                                        zm::ElementOfProduct(v.x, v.y, v.z, v.w, m, 3))
                            : zm::AllFour(zm::RowTimes(v, m));
}

/// Rows exchanged for columns. The bits of Zm3DTransposeMatrix.
constexpr ZmMatrix Transposed(const ZmMatrix& m)
{
    return zm::InConstant() ? zm::ConstantTranspose(m) : zm::Transpose(m);
}

/// The determinant of the upper-left 3x3 block. The bits of Zm3DMatrixDeterminant.
constexpr float Determinant(const ZmMatrix& m)
{
    return m[0][0] * (m[1][1] * m[2][2] - m[2][1] * m[1][2]) - m[0][1] * (m[1][0] * m[2][2] - m[2][0] * m[1][2]) +
           m[0][2] * (m[2][1] * m[1][0] - m[2][0] * m[1][1]);
}

// --- Vectors through matrices and quaternions ----------------------------------------

/// v * m with w = 1, without a division: for affine matrices. The bits of Zm3DMultiplyMatrixVector.
constexpr ZmVector TransformPoint(const ZmVector& v, const ZmMatrix& m)
{
    return zm::InConstant() ? ZmVector((v.x * m[0][0] + v.y * m[1][0]) + (v.z * m[2][0] + m[3][0]),
                                       (v.x * m[0][1] + v.y * m[1][1]) + (v.z * m[2][1] + m[3][1]),
                                       (v.x * m[0][2] + v.y * m[1][2]) + (v.z * m[2][2] + m[3][2]))
                            : zm::FirstThree(zm::PointTimes(v, m));
}

/// v times the linear part of m. The bits of Zm3DRotateVector.
constexpr ZmVector TransformDirection(const ZmVector& v, const ZmMatrix& m)
{
    return zm::InConstant() ? ZmVector((v.x * m[0][0] + v.y * m[1][0]) + v.z * m[2][0],
                                       (v.x * m[0][1] + v.y * m[1][1]) + v.z * m[2][1],
                                       (v.x * m[0][2] + v.y * m[1][2]) + v.z * m[2][2])
                            : zm::FirstThree(zm::DirectionTimes(v, m));
}

/// The normal n of a surface that m transforms: n times the transposed inverse of the linear part, so that it stays
/// perpendicular. m is the surface's own matrix, not an inverse. Computed in double. The length is not kept; a singular
/// m gives infinities or NaNs. For many normals transform by the transposed inverse in one call
/// (Zm3DRotateVectorStrided).
constexpr ZmVector TransformNormal(const ZmVector& n, const ZmMatrix& m)
{
    // The rows of the transposed inverse are the vector products of the rows, over the determinant.
    const zm::Triple a(m[0]), b(m[1]), c(m[2]), bc = Cross(b, c);
    return ((bc * n.x + Cross(c, a) * n.y + Cross(a, b) * n.z) * (1 / Dot(a, bc))).ToFloats();
}

/// The product of two vectors, in the plane: a.x * b.y - a.y * b.x, positive if b lies on the side of +Y seen from
/// a = +X.
constexpr float Cross(const Zm2DVector& a, const Zm2DVector& b)
{
    return a.x * b.y - a.y * b.x;
}

/// v rotated by q, which must be of unit length, in the sense of q.ToMatrix().
constexpr ZmVector Rotate(const ZmQuaternion& q, const ZmVector& v)
{
    const ZmVector axis(q.x, q.y, q.z), t = Cross(v, axis) * 2.0f;
    return v + t * q.w + Cross(t, axis);
}

// --- Products and lengths ------------------------------------------------------------
//
// Dot, Cross, SquareLength and Length of ZmVector are in ZmVector.h.

/// Scalar product, summed from the first component to the last.
constexpr float Dot(const Zm2DVector& a, const Zm2DVector& b)
{
    return a.x * b.x + a.y * b.y;
}
constexpr float Dot(const ZmVector4& a, const ZmVector4& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z + a.w * b.w;
}
constexpr float Dot(const ZmQuaternion& a, const ZmQuaternion& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z + a.w * b.w;
}

/// Dot(v, v).
constexpr float SquareLength(const Zm2DVector& v)
{
    return Dot(v, v);
}
constexpr float SquareLength(const ZmVector4& v)
{
    return Dot(v, v);
}
constexpr float SquareLength(const ZmQuaternion& q)
{
    return Dot(q, q);
}

/// The root of SquareLength().
inline float Length(const Zm2DVector& v)
{
    return zm::Sqrt(SquareLength(v));
}
inline float Length(const ZmVector4& v)
{
    return zm::Sqrt(SquareLength(v));
}
inline float Length(const ZmQuaternion& q)
{
    return zm::Sqrt(SquareLength(q));
}

/// The distance between two points, and its square.
constexpr float SquareDistance(const ZmVector& a, const ZmVector& b)
{
    return SquareLength(a - b);
}
constexpr float SquareDistance(const Zm2DVector& a, const Zm2DVector& b)
{
    return SquareLength(a - b);
}
inline float Distance(const ZmVector& a, const ZmVector& b)
{
    return zm::Sqrt(SquareDistance(a, b));
}
inline float Distance(const Zm2DVector& a, const Zm2DVector& b)
{
    return zm::Sqrt(SquareDistance(a, b));
}

/// v reflected at the plane or line with the unit normal n: an incoming direction becomes the outgoing one.
constexpr Zm2DVector Reflect(const Zm2DVector& v, const Zm2DVector& n)
{
    return v - n * (2.0f * Dot(v, n));
}
constexpr ZmVector Reflect(const ZmVector& v, const ZmVector& n)
{
    return v - n * (2.0f * Dot(v, n));
}

// --- Unit length, exact ---------------------------------------------------------------

/// v scaled to unit length, computed in double: each component is within one rounding, whatever the length.
/// ZmVector::Normalize() is its fast form of 12 bits. A zero vector gives NaNs, the zero quaternion the identity.
inline Zm2DVector Normalized(const Zm2DVector& v)
{
    const double x = v.x, y = v.y, f = 1 / zm::Sqrt(x * x + y * y);
    return {float(x * f), float(y * f)};
}
inline ZmVector Normalized(const ZmVector& v)
{
    const double x = v.x, y = v.y, z = v.z, f = 1 / zm::Sqrt(x * x + y * y + z * z);
    return {float(x * f), float(y * f), float(z * f)};
}
inline ZmVector4 Normalized(const ZmVector4& v)
{
    const double x = v.x, y = v.y, z = v.z, w = v.w, f = 1 / zm::Sqrt(x * x + y * y + z * z + w * w);
    return {float(x * f), float(y * f), float(z * f), float(w * f)};
}
inline ZmQuaternion Normalized(const ZmQuaternion& q)
{
    const double x = q.x, y = q.y, z = q.z, w = q.w, square = x * x + y * y + z * z + w * w, f = 1 / zm::Sqrt(square);
    return square == 0 ? ZmQuaternion() : ZmQuaternion(float(x * f), float(y * f), float(z * f), float(w * f));
}

/// The same in place.
inline void NormalizeExact(Zm2DVector& v)
{
    v = Normalized(v);
}
inline void NormalizeExact(ZmVector& v)
{
    v = Normalized(v);
}
inline void NormalizeExact(ZmVector4& v)
{
    v = Normalized(v);
}
inline void NormalizeExact(ZmQuaternion& q)
{
    q = Normalized(q);
}

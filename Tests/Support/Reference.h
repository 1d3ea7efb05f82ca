#pragma once

#include "ZmMath.h"

#include <gtest/gtest.h>

#include <math.h>

// Plain formulas in double against which the library's floats are held.

/// Half a unit in the last place of a float near 1: the error of one rounding.
const double kRounding = 0x1p-24;

/// Relative error of the processor's approximate reciprocal square root.
const double kRsqrtError = 1.5 * 0x1p-12;

struct Vector4d {
    double at[4];

    Vector4d(double x, double y, double z, double w) : at{x, y, z, w} {}
    Vector4d(const ZmVector& v, double w) : at{v.x, v.y, v.z, w} {}
    explicit Vector4d(const ZmVector4& v) : at{v.x, v.y, v.z, v.w} {}
    double operator[](int i) const { return at[i]; }
    Vector4d Magnitudes() const { return {fabs(at[0]), fabs(at[1]), fabs(at[2]), fabs(at[3])}; }
};

struct Matrix44d {
    double m[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};

    Matrix44d() = default;
    explicit Matrix44d(const ZmMatrix& source)
    {
        for (int i = 0; i < 16; ++i) {
            m[i / 4][i % 4] = source[i / 4][i % 4];
        }
    }
    /// With the fourth column of an affine matrix.
    static Matrix44d Affine(const ZmMatrix& source)
    {
        Matrix44d r(source);
        for (int i = 0; i < 4; ++i) {
            r.m[i][3] = i == 3;
        }
        return r;
    }
    double* operator[](int i) { return m[i]; }
    const double* operator[](int i) const { return m[i]; }

    Matrix44d Magnitudes() const
    {
        Matrix44d r;
        for (int i = 0; i < 16; ++i) {
            r[i / 4][i % 4] = fabs(m[i / 4][i % 4]);
        }
        return r;
    }
    Matrix44d Transposed() const
    {
        Matrix44d r;
        for (int i = 0; i < 16; ++i) {
            r[i / 4][i % 4] = m[i % 4][i / 4];
        }
        return r;
    }
};

/// v * m, the vector as a row.
inline Vector4d operator*(const Vector4d& v, const Matrix44d& m)
{
    Vector4d r(0, 0, 0, 0);
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            r.at[j] += v[i] * m[i][j];
        }
    }
    return r;
}

/// First a, then b, for vectors that are rows.
inline Matrix44d operator*(const Matrix44d& a, const Matrix44d& b)
{
    Matrix44d r;
    for (int i = 0; i < 4; ++i) {
        const Vector4d row = Vector4d(a[i][0], a[i][1], a[i][2], a[i][3]) * b;
        for (int j = 0; j < 4; ++j) {
            r[i][j] = row[j];
        }
    }
    return r;
}

/// What v becomes by the linear part of m.
inline Vector4d Rotated(const ZmVector& v, const Matrix44d& m)
{
    return Vector4d(v, 0) * m;
}

/// Turn by `angle` in the plane from axis `from` to axis `to`.
inline Matrix44d PlaneTurn(int from, int to, double angle)
{
    Matrix44d r;
    r[from][from] = r[to][to] = cos(angle);
    r[from][to] = sin(angle);
    r[to][from] = -sin(angle);
    return r;
}

/// The rotation of a unit quaternion: q * v * conj(q) turns the other way for rows.
inline Matrix44d RotationOf(double x, double y, double z, double w)
{
    const double s = 2 / (x * x + y * y + z * z + w * w);
    const double rows[3][3] = {{1 - s * (y * y + z * z), s * (x * y - w * z), s * (x * z + w * y)},
                               {s * (x * y + w * z), 1 - s * (x * x + z * z), s * (y * z - w * x)},
                               {s * (x * z - w * y), s * (y * z + w * x), 1 - s * (x * x + y * y)}};
    Matrix44d r;
    for (int i = 0; i < 9; ++i) {
        r[i / 3][i % 3] = rows[i / 3][i % 3];
    }
    return r;
}

inline Matrix44d RotationOf(const ZmQuaternion& q)
{
    return RotationOf(q.x, q.y, q.z, q.w);
}

inline double Determinant3(const Matrix44d& m)
{
    double sum = 0;
    for (int j = 0; j < 3; ++j) {
        const int k = (j + 1) % 3, l = (j + 2) % 3;
        sum += m[0][j] * (m[1][k] * m[2][l] - m[1][l] * m[2][k]);
    }
    return sum;
}

/// Every element of `got` lies within `tolerance` of the reference.
inline void ExpectNear(const ZmMatrix& got, const Matrix44d& expected, double tolerance)
{
    for (int i = 0; i < 16; ++i) {
        EXPECT_NEAR(got[i / 4][i % 4], expected[i / 4][i % 4], tolerance) << "row " << i / 4 << " column " << i % 4;
    }
}

inline void ExpectNear(const ZmVector& got, const Vector4d& expected, double tolerance)
{
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(got[i], expected[i], tolerance) << "component " << i;
    }
}

/// The same rotation: equal components, or all of the opposite sign.
inline void ExpectSameRotation(const ZmQuaternion& got, const ZmQuaternion& expected, double tolerance)
{
    const double dot = double(got.x) * expected.x + double(got.y) * expected.y + double(got.z) * expected.z +
                       double(got.w) * expected.w;
    const float sign = dot < 0 ? -1.0f : 1.0f;
    EXPECT_NEAR(got.x, sign * expected.x, tolerance);
    EXPECT_NEAR(got.y, sign * expected.y, tolerance);
    EXPECT_NEAR(got.z, sign * expected.z, tolerance);
    EXPECT_NEAR(got.w, sign * expected.w, tolerance);
}

inline ZmVector Row(const ZmMatrix& m, int i)
{
    return {m[i][0], m[i][1], m[i][2]};
}

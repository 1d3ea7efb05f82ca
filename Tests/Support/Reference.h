#pragma once

#include "ZmMath.h"

#include <gtest/gtest.h>

#include <math.h>

// Plain formulas in double as references for the library's floats.

/// The relative error of one rounding, and that of the processor's approximate reciprocal square root.
constexpr double kRounding = 0x1p-24;
constexpr double kRsqrtError = 1.5 * 0x1p-12;

/// False if the C library's sines and cosines of doubles are no reference: an emulator may round each double that
/// passes through the x87 unit to 24 bits, the precision of the library's base mode.
inline bool SystemSinesAreExact()
{
    const volatile double angle = 99999.99;
    return fabs(sin(angle) - 0.04574045205686034) < 1e-14;
}

/// Whether it is so for angles of any size: processors' own sines know too few digits of pi.
inline bool SystemSinesAreExactForAll()
{
    const volatile double angle = 1e22;
    return SystemSinesAreExact() && fabs(sin(angle) + 0.8522008497671888) < 1e-14;
}

/// A number and the magnitude that it would have without cancellation, which determines the rounding error.
struct Num {
    double value, size;

    Num(double v = 0) : value(v), size(fabs(v)) {}
    Num(double v, double s) : value(v), size(s) {}
    Num operator-() const { return {-value, size}; }
};

inline Num operator+(Num a, Num b)
{
    return {a.value + b.value, a.size + b.size};
}
inline Num operator-(Num a, Num b)
{
    return {a.value - b.value, a.size + b.size};
}
inline Num operator*(Num a, Num b)
{
    return {a.value * b.value, a.size * b.size};
}
inline Num operator/(Num a, double b)
{
    return {a.value / b, a.size / fabs(b)};
}

/// A row of four.
struct Row4 {
    Num at[4];

    Row4() = default;
    Row4(Num x, Num y, Num z, Num w) : at{x, y, z, w} {}
    Row4(const ZmVector& v, double w) : at{v.x, v.y, v.z, w} {}
    Num& operator[](int i) { return at[i]; }
    const Num& operator[](int i) const { return at[i]; }
};

struct Matrix44d {
    Row4 row[4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};

    Matrix44d() = default;
    Matrix44d(const ZmMatrix& m)
    {
        for (int i = 0; i < 4; ++i) {
            row[i] = Row4(m[i][0], m[i][1], m[i][2], m[i][3]);
        }
    }
    /// With the fourth column of an affine matrix.
    Matrix44d Affine() const
    {
        Matrix44d r = *this;
        for (int i = 0; i < 4; ++i) {
            r[i][3] = i == 3;
        }
        return r;
    }
    Matrix44d Transposed() const
    {
        Matrix44d r;
        for (int i = 0; i < 16; ++i) {
            r[i / 4][i % 4] = row[i % 4][i / 4];
        }
        return r;
    }
    Row4& operator[](int i) { return row[i]; }
    const Row4& operator[](int i) const { return row[i]; }
};

inline Row4 operator*(const Row4& v, const Matrix44d& m)
{
    Row4 r;
    for (int j = 0; j < 4; ++j) {
        r[j] = v[0] * m[0][j] + v[1] * m[1][j] + v[2] * m[2][j] + v[3] * m[3][j];
    }
    return r;
}

/// First a, then b, for row vectors.
inline Matrix44d operator*(const Matrix44d& a, const Matrix44d& b)
{
    Matrix44d r;
    for (int i = 0; i < 4; ++i) {
        r[i] = a[i] * b;
    }
    return r;
}

inline Num Determinant3(const Matrix44d& m)
{
    Num sum;
    for (int j = 0; j < 3; ++j) {
        const int k = (j + 1) % 3, l = (j + 2) % 3;
        sum = sum + m[0][j] * (m[1][k] * m[2][l] - m[1][l] * m[2][k]);
    }
    return sum;
}

/// The rotation by `angle` in the plane from axis `from` to axis `to`.
inline Matrix44d PlaneTurn(int from, int to, double angle)
{
    Matrix44d r;
    r[from][from] = r[to][to] = cos(angle);
    r[from][to] = sin(angle);
    r[to][from] = -sin(angle);
    return r;
}

/// The rotation of a quaternion of any length.
inline Matrix44d RotationOf(double x, double y, double z, double w)
{
    const double s = 2 / (x * x + y * y + z * z + w * w);
    Matrix44d r;
    r[0] = Row4(1 - s * (y * y + z * z), s * (x * y - w * z), s * (x * z + w * y), 0);
    r[1] = Row4(s * (x * y + w * z), 1 - s * (x * x + z * z), s * (y * z - w * x), 0);
    r[2] = Row4(s * (x * z - w * y), s * (y * z + w * x), 1 - s * (x * x + y * y), 0);
    return r;
}

inline Matrix44d RotationOf(const ZmQuaternion& q)
{
    return RotationOf(q.x, q.y, q.z, q.w);
}

inline ZmVector Row(const ZmMatrix& m, int i)
{
    return {m[i][0], m[i][1], m[i][2]};
}

/// Expects the value within `roundings` rounding errors of the magnitudes involved.
inline void ExpectClose(float got, Num expected, double roundings = 4)
{
    EXPECT_NEAR(got, expected.value, roundings * kRounding * expected.size);
}

inline void ExpectClose(const ZmVector& got, const Row4& expected, double roundings = 4)
{
    for (int i = 0; i < 3; ++i) {
        ExpectClose(got[i], expected[i], roundings);
    }
}

inline void ExpectClose(const ZmMatrix& got, const Matrix44d& expected, double roundings = 4)
{
    for (int i = 0; i < 16; ++i) {
        SCOPED_TRACE(testing::Message() << "row " << i / 4 << " column " << i % 4);
        ExpectClose(got[i / 4][i % 4], expected[i / 4][i % 4], roundings);
    }
}

/// Expects the value within an absolute tolerance.
inline void ExpectNear(const ZmVector& got, const Row4& expected, double tolerance)
{
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(got[i], expected[i].value, tolerance) << "component " << i;
    }
}

inline void ExpectNear(const ZmMatrix& got, const Matrix44d& expected, double tolerance)
{
    for (int i = 0; i < 16; ++i) {
        EXPECT_NEAR(got[i / 4][i % 4], expected[i / 4][i % 4].value, tolerance)
            << "row " << i / 4 << " column " << i % 4;
    }
}

inline void ExpectNear(const ZmQuaternion& got, double x, double y, double z, double w, double tolerance)
{
    EXPECT_NEAR(got.x, x, tolerance);
    EXPECT_NEAR(got.y, y, tolerance);
    EXPECT_NEAR(got.z, z, tolerance);
    EXPECT_NEAR(got.w, w, tolerance);
}

/// Expects the same rotation: equal components, or all of opposite sign.
inline void ExpectSameRotation(const ZmQuaternion& got, const ZmQuaternion& q, double tolerance)
{
    const double sign = got.x * q.x + got.y * q.y + got.z * q.z + got.w * q.w < 0 ? -1 : 1;
    ExpectNear(got, sign * q.x, sign * q.y, sign * q.z, sign * q.w, tolerance);
}

#pragma once

// Arithmetic and comparison of the records, component by component, inline. Part of ZmOperators.h.
//
// Everything is reentrant and reports no errors: a division by 0 gives infinities and NaNs. Comparisons are exact, and
// true for 0 and -0; a NaN is unequal to everything.

#include "ZmColor.h"
#include "ZmQuaternion.h"

// --- ZmVector: what ZmVector.h does not have -----------------------------------

/// Component by component.
constexpr ZmVector operator*(const ZmVector& a, const ZmVector& b)
{
    return {a.x * b.x, a.y * b.y, a.z * b.z};
}
constexpr ZmVector operator/(const ZmVector& a, const ZmVector& b)
{
    return {a.x / b.x, a.y / b.y, a.z / b.z};
}

/// Each component divided by s.
constexpr ZmVector operator/(const ZmVector& v, float s)
{
    return {v.x / s, v.y / s, v.z / s};
}
constexpr ZmVector& operator/=(ZmVector& v, float s)
{
    v.x /= s;
    v.y /= s;
    v.z /= s;
    return v;
}
constexpr ZmVector& operator*=(ZmVector& a, const ZmVector& b)
{
    a.x *= b.x;
    a.y *= b.y;
    a.z *= b.z;
    return a;
}

// --- Zm2DVector ------------------------------------------------------------------

/// Component by component.
constexpr Zm2DVector operator-(const Zm2DVector& v)
{
    return {-v.x, -v.y};
}
constexpr Zm2DVector operator+(const Zm2DVector& a, const Zm2DVector& b)
{
    return {a.x + b.x, a.y + b.y};
}
constexpr Zm2DVector operator-(const Zm2DVector& a, const Zm2DVector& b)
{
    return {a.x - b.x, a.y - b.y};
}
constexpr Zm2DVector operator*(const Zm2DVector& a, const Zm2DVector& b)
{
    return {a.x * b.x, a.y * b.y};
}
constexpr Zm2DVector operator/(const Zm2DVector& a, const Zm2DVector& b)
{
    return {a.x / b.x, a.y / b.y};
}

/// Each component times s; divided by s.
constexpr Zm2DVector operator*(const Zm2DVector& v, float s)
{
    return {v.x * s, v.y * s};
}
constexpr Zm2DVector operator*(float s, const Zm2DVector& v)
{
    return {v.x * s, v.y * s};
}
constexpr Zm2DVector operator/(const Zm2DVector& v, float s)
{
    return {v.x / s, v.y / s};
}

/// The same in place.
constexpr Zm2DVector& operator+=(Zm2DVector& a, const Zm2DVector& b)
{
    a.x += b.x;
    a.y += b.y;
    return a;
}
constexpr Zm2DVector& operator-=(Zm2DVector& a, const Zm2DVector& b)
{
    a.x -= b.x;
    a.y -= b.y;
    return a;
}
constexpr Zm2DVector& operator*=(Zm2DVector& v, float s)
{
    v.x *= s;
    v.y *= s;
    return v;
}
constexpr Zm2DVector& operator/=(Zm2DVector& v, float s)
{
    v.x /= s;
    v.y /= s;
    return v;
}

/// Compares all components.
constexpr bool operator==(const Zm2DVector& a, const Zm2DVector& b)
{
    return a.x == b.x && a.y == b.y;
}
constexpr bool operator!=(const Zm2DVector& a, const Zm2DVector& b)
{
    return !(a == b);
}

// --- ZmVector4 ---------------------------------------------------------------------

/// Component by component.
constexpr ZmVector4 operator-(const ZmVector4& v)
{
    return {-v.x, -v.y, -v.z, -v.w};
}
constexpr ZmVector4 operator+(const ZmVector4& a, const ZmVector4& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z, a.w + b.w};
}
constexpr ZmVector4 operator-(const ZmVector4& a, const ZmVector4& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z, a.w - b.w};
}
constexpr ZmVector4 operator*(const ZmVector4& a, const ZmVector4& b)
{
    return {a.x * b.x, a.y * b.y, a.z * b.z, a.w * b.w};
}
constexpr ZmVector4 operator/(const ZmVector4& a, const ZmVector4& b)
{
    return {a.x / b.x, a.y / b.y, a.z / b.z, a.w / b.w};
}

/// Each component times s; divided by s.
constexpr ZmVector4 operator*(const ZmVector4& v, float s)
{
    return {v.x * s, v.y * s, v.z * s, v.w * s};
}
constexpr ZmVector4 operator*(float s, const ZmVector4& v)
{
    return {v.x * s, v.y * s, v.z * s, v.w * s};
}
constexpr ZmVector4 operator/(const ZmVector4& v, float s)
{
    return {v.x / s, v.y / s, v.z / s, v.w / s};
}

/// The same in place.
constexpr ZmVector4& operator+=(ZmVector4& a, const ZmVector4& b)
{
    a.x += b.x;
    a.y += b.y;
    a.z += b.z;
    a.w += b.w;
    return a;
}
constexpr ZmVector4& operator-=(ZmVector4& a, const ZmVector4& b)
{
    a.x -= b.x;
    a.y -= b.y;
    a.z -= b.z;
    a.w -= b.w;
    return a;
}
constexpr ZmVector4& operator*=(ZmVector4& v, float s)
{
    v.x *= s;
    v.y *= s;
    v.z *= s;
    v.w *= s;
    return v;
}
constexpr ZmVector4& operator/=(ZmVector4& v, float s)
{
    v.x /= s;
    v.y /= s;
    v.z /= s;
    v.w /= s;
    return v;
}

/// Compares all components.
constexpr bool operator==(const ZmVector4& a, const ZmVector4& b)
{
    return a.x == b.x && a.y == b.y && a.z == b.z && a.w == b.w;
}
constexpr bool operator!=(const ZmVector4& a, const ZmVector4& b)
{
    return !(a == b);
}

// --- ZmColor -------------------------------------------------------------------------

/// Component by component, alpha included; nothing is clamped.
constexpr ZmColor operator+(const ZmColor& a, const ZmColor& b)
{
    return {a.r + b.r, a.g + b.g, a.b + b.b, a.a + b.a};
}
constexpr ZmColor operator-(const ZmColor& a, const ZmColor& b)
{
    return {a.r - b.r, a.g - b.g, a.b - b.b, a.a - b.a};
}
constexpr ZmColor operator*(const ZmColor& a, const ZmColor& b)
{
    return {a.r * b.r, a.g * b.g, a.b * b.b, a.a * b.a};
}

/// Each component times s; divided by s.
constexpr ZmColor operator*(const ZmColor& c, float s)
{
    return {c.r * s, c.g * s, c.b * s, c.a * s};
}
constexpr ZmColor operator*(float s, const ZmColor& c)
{
    return {c.r * s, c.g * s, c.b * s, c.a * s};
}
constexpr ZmColor operator/(const ZmColor& c, float s)
{
    return {c.r / s, c.g / s, c.b / s, c.a / s};
}

/// The same in place.
constexpr ZmColor& operator+=(ZmColor& a, const ZmColor& b)
{
    a.r += b.r;
    a.g += b.g;
    a.b += b.b;
    a.a += b.a;
    return a;
}
constexpr ZmColor& operator-=(ZmColor& a, const ZmColor& b)
{
    a.r -= b.r;
    a.g -= b.g;
    a.b -= b.b;
    a.a -= b.a;
    return a;
}
constexpr ZmColor& operator*=(ZmColor& c, float s)
{
    c.r *= s;
    c.g *= s;
    c.b *= s;
    c.a *= s;
    return c;
}
constexpr ZmColor& operator/=(ZmColor& c, float s)
{
    c.r /= s;
    c.g /= s;
    c.b /= s;
    c.a /= s;
    return c;
}

/// Compares all components.
constexpr bool operator==(const ZmColor& a, const ZmColor& b)
{
    return a.r == b.r && a.g == b.g && a.b == b.b && a.a == b.a;
}
constexpr bool operator!=(const ZmColor& a, const ZmColor& b)
{
    return !(a == b);
}

// --- ZmQuaternion ------------------------------------------------------------------

/// Component by component. -q is the same rotation as q.
constexpr ZmQuaternion operator-(const ZmQuaternion& q)
{
    return {-q.x, -q.y, -q.z, -q.w};
}
constexpr ZmQuaternion operator+(const ZmQuaternion& a, const ZmQuaternion& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z, a.w + b.w};
}
constexpr ZmQuaternion operator-(const ZmQuaternion& a, const ZmQuaternion& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z, a.w - b.w};
}

/// Each component times s; divided by s.
constexpr ZmQuaternion operator*(const ZmQuaternion& q, float s)
{
    return {q.x * s, q.y * s, q.z * s, q.w * s};
}
constexpr ZmQuaternion operator*(float s, const ZmQuaternion& q)
{
    return {q.x * s, q.y * s, q.z * s, q.w * s};
}
constexpr ZmQuaternion operator/(const ZmQuaternion& q, float s)
{
    return {q.x / s, q.y / s, q.z / s, q.w / s};
}

/// Compares all components: q and -q are unequal.
constexpr bool operator==(const ZmQuaternion& a, const ZmQuaternion& b)
{
    return a.x == b.x && a.y == b.y && a.z == b.z && a.w == b.w;
}
constexpr bool operator!=(const ZmQuaternion& a, const ZmQuaternion& b)
{
    return !(a == b);
}

// --- ZmMatrix ------------------------------------------------------------------------

/// Compares all elements; see ZmMatrix::Compare for a tolerance.
constexpr bool operator==(const ZmMatrix& a, const ZmMatrix& b)
{
    for (int i = 0; i < 16; ++i) {
        if (!(a[i / 4][i % 4] == b[i / 4][i % 4])) {
            return false;
        }
    }
    return true;
}
constexpr bool operator!=(const ZmMatrix& a, const ZmMatrix& b)
{
    return !(a == b);
}

// --- Between two values, and limits --------------------------------------------------

/// a + (b - a) * t, the bits of the array functions: exactly a at t = 0, and b to rounding at t = 1. t may lie outside
/// 0 to 1. Rotations have Nlerp and SlerpExact.
constexpr Zm2DVector Lerp(const Zm2DVector& a, const Zm2DVector& b, float t)
{
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}
constexpr ZmVector Lerp(const ZmVector& a, const ZmVector& b, float t)
{
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t, a.z + (b.z - a.z) * t};
}
constexpr ZmVector4 Lerp(const ZmVector4& a, const ZmVector4& b, float t)
{
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t, a.z + (b.z - a.z) * t, a.w + (b.w - a.w) * t};
}
constexpr ZmColor Lerp(const ZmColor& a, const ZmColor& b, float t)
{
    return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t, a.a + (b.a - a.a) * t};
}

namespace zm {

constexpr float Smaller(float a, float b)
{
    return a < b ? a : b;
}
constexpr float Larger(float a, float b)
{
    return a > b ? a : b;
}
constexpr float Magnitude(float x)
{
    return __builtin_fabsf(x);
}

}  // namespace zm

/// The smaller and the larger of each pair of components; b's if either is NaN.
constexpr Zm2DVector Min(const Zm2DVector& a, const Zm2DVector& b)
{
    return {zm::Smaller(a.x, b.x), zm::Smaller(a.y, b.y)};
}
constexpr ZmVector Min(const ZmVector& a, const ZmVector& b)
{
    return {zm::Smaller(a.x, b.x), zm::Smaller(a.y, b.y), zm::Smaller(a.z, b.z)};
}
constexpr ZmVector4 Min(const ZmVector4& a, const ZmVector4& b)
{
    return {zm::Smaller(a.x, b.x), zm::Smaller(a.y, b.y), zm::Smaller(a.z, b.z), zm::Smaller(a.w, b.w)};
}
constexpr ZmColor Min(const ZmColor& a, const ZmColor& b)
{
    return {zm::Smaller(a.r, b.r), zm::Smaller(a.g, b.g), zm::Smaller(a.b, b.b), zm::Smaller(a.a, b.a)};
}
constexpr Zm2DVector Max(const Zm2DVector& a, const Zm2DVector& b)
{
    return {zm::Larger(a.x, b.x), zm::Larger(a.y, b.y)};
}
constexpr ZmVector Max(const ZmVector& a, const ZmVector& b)
{
    return {zm::Larger(a.x, b.x), zm::Larger(a.y, b.y), zm::Larger(a.z, b.z)};
}
constexpr ZmVector4 Max(const ZmVector4& a, const ZmVector4& b)
{
    return {zm::Larger(a.x, b.x), zm::Larger(a.y, b.y), zm::Larger(a.z, b.z), zm::Larger(a.w, b.w)};
}
constexpr ZmColor Max(const ZmColor& a, const ZmColor& b)
{
    return {zm::Larger(a.r, b.r), zm::Larger(a.g, b.g), zm::Larger(a.b, b.b), zm::Larger(a.a, b.a)};
}

/// Each component of v, but not below that of `low` nor above that of `high`; a NaN becomes `low`.
constexpr Zm2DVector Clamp(const Zm2DVector& v, const Zm2DVector& low, const Zm2DVector& high)
{
    return Min(Max(v, low), high);
}
constexpr ZmVector Clamp(const ZmVector& v, const ZmVector& low, const ZmVector& high)
{
    return Min(Max(v, low), high);
}
constexpr ZmVector4 Clamp(const ZmVector4& v, const ZmVector4& low, const ZmVector4& high)
{
    return Min(Max(v, low), high);
}
constexpr ZmColor Clamp(const ZmColor& c, const ZmColor& low, const ZmColor& high)
{
    return Min(Max(c, low), high);
}

/// Each component clamped to 0 to 1; a NaN becomes 0.
constexpr Zm2DVector Saturate(const Zm2DVector& v)
{
    return Clamp(v, Zm2DVector(0, 0), Zm2DVector(1, 1));
}
constexpr ZmVector Saturate(const ZmVector& v)
{
    return Clamp(v, ZmVector(0, 0, 0), ZmVector(1, 1, 1));
}
constexpr ZmVector4 Saturate(const ZmVector4& v)
{
    return Clamp(v, ZmVector4(0, 0, 0, 0), ZmVector4(1, 1, 1, 1));
}
constexpr ZmColor Saturate(const ZmColor& c)
{
    return Clamp(c, ZmColor(0, 0, 0, 0), ZmColor(1, 1, 1, 1));
}

/// The magnitude of each component.
constexpr Zm2DVector Abs(const Zm2DVector& v)
{
    return {zm::Magnitude(v.x), zm::Magnitude(v.y)};
}
constexpr ZmVector Abs(const ZmVector& v)
{
    return {zm::Magnitude(v.x), zm::Magnitude(v.y), zm::Magnitude(v.z)};
}
constexpr ZmVector4 Abs(const ZmVector4& v)
{
    return {zm::Magnitude(v.x), zm::Magnitude(v.y), zm::Magnitude(v.z), zm::Magnitude(v.w)};
}

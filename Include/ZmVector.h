#pragma once

#include "ZmApi.h"

struct ZmCompressedVector;
class ZmMatrix;

/// Three-component vector: a point, a direction or three packed values.
///
/// A plain value of 12 bytes, aligned like float and not initialised: `ZmVector v;` is undefined until assigned,
/// `ZmVector v{};` is zero. All functions may be called from any thread.
struct ZmVector {
    /// The components.
    float x, y, z;

    /// Leaves the components undefined; sets them to (vx, vy, vz).
    ZmVector() = default;
    constexpr ZmVector(float vx, float vy, float vz) : x(vx), y(vy), z(vz) {}

    /// Constants. Valid even during static initialisation.
    ZM_API static const ZmVector& axisX();  ///< (1, 0, 0)
    ZM_API static const ZmVector& axisY();  ///< (0, 1, 0)
    ZM_API static const ZmVector& axisZ();  ///< (0, 0, 1)
    ZM_API static const ZmVector& axis0();  ///< (0, 0, 0)
    ZM_API static const ZmVector& axis1();  ///< (1, 1, 1)

    /// Scales to unit length in place. With the SSE feature bit set, it deliberately uses the processor's approximate
    /// reciprocal square root: the relative error of the length is up to 1.5 * 2^-12. With the bit clear, and for
    /// lengths below 1.1e-19 (whose squares the approximation treats as 0), it multiplies by 1/sqrt, exact to rounding.
    /// A zero vector becomes three NaNs: test the length first.
    ZM_API void Normalize();

    /// Applies the linear part of `m` (no translation) in place.
    ZM_API void Rotate(const ZmMatrix& m);

    /// Expands a compressed direction (see ZmCompressedVector).
    ZM_API ZmVector& operator=(const ZmCompressedVector& c);

    /// Component by index, 0 to 2; the index is not checked.
    float& operator[](int i) { return (&x)[i]; }
    const float& operator[](int i) const { return (&x)[i]; }

    /// Component by component.
    constexpr ZmVector operator-() const { return {-x, -y, -z}; }
    constexpr ZmVector& operator+=(const ZmVector& v) { return *this = ZmVector(x + v.x, y + v.y, z + v.z); }
    constexpr ZmVector& operator-=(const ZmVector& v) { return *this = ZmVector(x - v.x, y - v.y, z - v.z); }
    constexpr ZmVector& operator*=(float s) { return *this = ZmVector(x * s, y * s, z * s); }
};

/// Component by component.
constexpr ZmVector operator+(const ZmVector& a, const ZmVector& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
/// Component by component.
constexpr ZmVector operator-(const ZmVector& a, const ZmVector& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
/// Each component times s.
constexpr ZmVector operator*(const ZmVector& v, float s)
{
    return {v.x * s, v.y * s, v.z * s};
}
/// Each component times s.
constexpr ZmVector operator*(float s, const ZmVector& v)
{
    return v * s;
}

/// Exact comparison of the components; see ZmMatrix::Compare for tolerances.
constexpr bool operator==(const ZmVector& a, const ZmVector& b)
{
    return a.x == b.x && a.y == b.y && a.z == b.z;
}
/// Negation of ==; true if a component is NaN.
constexpr bool operator!=(const ZmVector& a, const ZmVector& b)
{
    return !(a == b);
}

/// Scalar product, summed from x to z.
constexpr float Dot(const ZmVector& a, const ZmVector& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// Vector product: axisX x axisY = axisZ.
constexpr ZmVector Cross(const ZmVector& a, const ZmVector& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

/// Squared length.
constexpr float SquareLength(const ZmVector& v)
{
    return Dot(v, v);
}
#if defined(ZMMATH_BUILDING)
ZM_API float Length(const ZmVector& v);  // exported for programs built when it was a call
#else
/// Length.
inline float Length(const ZmVector& v)
{
    return __builtin_sqrtf(Dot(v, v));
}
#endif

/// Four-component vector for homogeneous coordinates and colours. 16 bytes, aligned like float.
class ZmVector4 {
public:
    /// The components.
    float x, y, z, w;

    /// Leaves the components undefined; sets them.
    ZmVector4() = default;
    constexpr ZmVector4(float vx, float vy, float vz, float vw) : x(vx), y(vy), z(vz), w(vw) {}
};

/// Two-component vector for texture and screen coordinates.
struct Zm2DVector {
    /// The components.
    float x, y;

    /// Leaves the components undefined; sets them.
    Zm2DVector() = default;
    constexpr Zm2DVector(float vx, float vy) : x(vx), y(vy) {}
};

/// Unit direction in four bytes: two angles in the units of ZmTrigonometry.h, 16384 to the turn. Only the low 14 bits
/// of each count. Represents (sin ya * cos xa, -sin xa, cos ya * cos xa): (0, 0) points along axisZ, and an elevation
/// of a quarter turn points along MINUS axisY.
struct ZmCompressedVector {
    short xa;  ///< elevation
    short ya;  ///< heading
};

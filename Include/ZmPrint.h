#pragma once

// Equality and stream output for the mathematical types, for tests and logs. ZmMath.h does not include this header,
// because of the headers it needs.
//
//     std::cout << box << '\n';   // [(-1, -1, -1) to (1, 1, 1)]
//
// Records are equal if all their floats are equal: exactly, 0 and -0 alike, NaN unequal to everything. For tolerances
// use ZmMatrix::Compare(). Floats are written with the stream's settings, by default with six digits. Any thread may
// call, but only one thread at a time may write to a stream.

#include "ZmArithmetic.h"
#include "ZmBbox.h"
#include "ZmInterop.h"
#include "ZmOBB.h"
#include "ZmPlane.h"
#include "ZmRay.h"
#include "ZmRect.h"
#include "ZmSphere.h"

#include <ostream>

/// Returns whether all fields are equal. Those of vectors, quaternions, colours and matrices are in ZmArithmetic.h.
/// @{
constexpr bool operator==(const ZmBbox& a, const ZmBbox& b)
{
    return a.Max == b.Max && a.Min == b.Min;
}
constexpr bool operator==(const ZmOBB& a, const ZmOBB& b)
{
    for (int i = 0; i < 3; ++i) {
        if (!(a.Axis[i] == b.Axis[i] && a.Extent[i] == b.Extent[i])) {
            return false;
        }
    }
    return a.Center == b.Center;
}
constexpr bool operator==(const ZmPlane& a, const ZmPlane& b)
{
    return a.Normal == b.Normal && a.D == b.D;
}
constexpr bool operator==(const ZmRay& a, const ZmRay& b)
{
    return a.Origin == b.Origin && a.Direction == b.Direction;
}
constexpr bool operator==(const ZmSphere& a, const ZmSphere& b)
{
    return a.Center == b.Center && a.Radius == b.Radius;
}
constexpr bool operator==(const ZmRect& a, const ZmRect& b)
{
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}
constexpr bool operator==(const RKRECT& a, const RKRECT& b)
{
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}
constexpr bool operator==(const RKPOINT& a, const RKPOINT& b)
{
    return a.x == b.x && a.y == b.y;
}
/// @}

/// Returns whether any field differs.
/// @{
constexpr bool operator!=(const ZmBbox& a, const ZmBbox& b)
{
    return !(a == b);
}
constexpr bool operator!=(const ZmOBB& a, const ZmOBB& b)
{
    return !(a == b);
}
constexpr bool operator!=(const ZmPlane& a, const ZmPlane& b)
{
    return !(a == b);
}
constexpr bool operator!=(const ZmRay& a, const ZmRay& b)
{
    return !(a == b);
}
constexpr bool operator!=(const ZmSphere& a, const ZmSphere& b)
{
    return !(a == b);
}
constexpr bool operator!=(const ZmRect& a, const ZmRect& b)
{
    return !(a == b);
}
constexpr bool operator!=(const RKRECT& a, const RKRECT& b)
{
    return !(a == b);
}
constexpr bool operator!=(const RKPOINT& a, const RKPOINT& b)
{
    return !(a == b);
}
/// @}

namespace zm {

template <class F>
std::ostream& PrintFloats(std::ostream& stream, const F* floats, size_t count)
{
    stream << '(';
    for (size_t i = 0; i < count; ++i) {
        stream << (i != 0 ? ", " : "") << floats[i];
    }
    return stream << ')';
}

template <class T>
std::ostream& PrintRecord(std::ostream& stream, const T& record)
{
    return PrintFloats(stream, ZmFloats(record).data(), ZmFloats(record).size());
}

}  // namespace zm

/// (x, y, z), likewise with two or four components; colours as (r, g, b, a).
/// @{
inline std::ostream& operator<<(std::ostream& stream, const Zm2DVector& v)
{
    return zm::PrintRecord(stream, v);
}
inline std::ostream& operator<<(std::ostream& stream, const ZmVector& v)
{
    return zm::PrintRecord(stream, v);
}
inline std::ostream& operator<<(std::ostream& stream, const ZmVector4& v)
{
    return zm::PrintRecord(stream, v);
}
inline std::ostream& operator<<(std::ostream& stream, const ZmQuaternion& q)
{
    return zm::PrintRecord(stream, q);
}
inline std::ostream& operator<<(std::ostream& stream, const ZmColor& c)
{
    return zm::PrintRecord(stream, c);
}
/// @}

/// Four rows in brackets.
inline std::ostream& operator<<(std::ostream& stream, const ZmMatrix& m)
{
    stream << '(';
    for (int row = 0; row < 4; ++row) {
        zm::PrintFloats(stream << (row != 0 ? ", " : ""), m[row], 4);
    }
    return stream << ')';
}

/// [smallest corner to largest corner]
inline std::ostream& operator<<(std::ostream& stream, const ZmBbox& box)
{
    return stream << '[' << box.Min << " to " << box.Max << ']';
}

/// [centre, three axes with the extent along each]
inline std::ostream& operator<<(std::ostream& stream, const ZmOBB& box)
{
    stream << '[' << box.Center;
    for (int i = 0; i < 3; ++i) {
        stream << ", " << box.Axis[i] << " x " << box.Extent[i];
    }
    return stream << ']';
}

/// normal . p + D = 0
inline std::ostream& operator<<(std::ostream& stream, const ZmPlane& plane)
{
    return stream << plane.Normal << " . p + " << plane.D << " = 0";
}

/// origin + t direction
inline std::ostream& operator<<(std::ostream& stream, const ZmRay& ray)
{
    return stream << ray.Origin << " + t " << ray.Direction;
}

/// centre and radius
inline std::ostream& operator<<(std::ostream& stream, const ZmSphere& sphere)
{
    return stream << '[' << sphere.Center << ", " << sphere.Radius << ']';
}

/// [(left, top) to (right, bottom)]
/// @{
inline std::ostream& operator<<(std::ostream& stream, const ZmRect& rect)
{
    return stream << "[(" << rect.left << ", " << rect.top << ") to (" << rect.right << ", " << rect.bottom << ")]";
}
inline std::ostream& operator<<(std::ostream& stream, const RKRECT& rect)
{
    return stream << "[(" << rect.left << ", " << rect.top << ") to (" << rect.right << ", " << rect.bottom << ")]";
}
/// @}

/// (column, line)
inline std::ostream& operator<<(std::ostream& stream, const RKPOINT& point)
{
    return stream << '(' << point.x << ", " << point.y << ')';
}

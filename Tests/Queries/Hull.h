#pragma once

#include "Support/Random.h"

#include <algorithm>
#include <initializer_list>
#include <vector>

// Convex bodies in double, and their distance along every axis that can separate them: the brute-force reference for
// the overlap tests.

struct Double3 {
    double x, y, z;

    Double3(double a, double b, double c) : x(a), y(b), z(c) {}
    Double3(const ZmVector& v) : x(v.x), y(v.y), z(v.z) {}
};

inline Double3 operator+(const Double3& a, const Double3& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Double3 operator-(const Double3& a, const Double3& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Double3 operator*(const Double3& v, double s)
{
    return {v.x * s, v.y * s, v.z * s};
}
inline double Dot(const Double3& a, const Double3& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Double3 Cross(const Double3& a, const Double3& b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

struct Hull {
    std::vector<Double3> corners, edges, normals;

    /// A parallelepiped. The corners are computed here, without the library's own arithmetic.
    static Hull Box(const Double3& centre, const Double3& a, const Double3& b, const Double3& c)
    {
        Hull hull = {{}, {a, b, c}, {Cross(a, b), Cross(b, c), Cross(c, a)}};
        for (int i = 0; i < 8; ++i) {
            hull.corners.push_back(centre + a * (i & 1 ? 1 : -1) + b * (i & 2 ? 1 : -1) + c * (i & 4 ? 1 : -1));
        }
        return hull;
    }
    static Hull Box(const ZmBbox& box)
    {
        const Double3 max = box.Max, min = box.Min, half = (max - min) * 0.5;
        return Box((max + min) * 0.5, {half.x, 0, 0}, {0, half.y, 0}, {0, 0, half.z});
    }
    static Hull Box(const ZmBbox& box, const ZmMatrix& m)
    {
        const Double3 max = box.Max, min = box.Min, half = (max - min) * 0.5, middle = (max + min) * 0.5;
        const auto row = [&](int i) { return Double3(m[i][0], m[i][1], m[i][2]); };
        const Double3 centre = row(0) * middle.x + row(1) * middle.y + row(2) * middle.z + row(3);
        return Box(centre, row(0) * half.x, row(1) * half.y, row(2) * half.z);
    }
    static Hull Box(const ZmOBB& box)
    {
        const auto axis = [&](int i) { return Double3(box.Axis[i]) * box.Extent[i]; };
        return Box(box.Center, axis(0), axis(1), axis(2));
    }
    static Hull Triangle(const ZmVector& a, const ZmVector& b, const ZmVector& c)
    {
        const Double3 ab = Double3(b) - a, bc = Double3(c) - b, ca = Double3(a) - c, n = Cross(ab, bc);
        return {{a, b, c}, {ab, bc, ca}, {n, Cross(n, ab), Cross(n, bc), Cross(n, ca)}};
    }
    static Hull Segment(const Double3& from, const Double3& to) { return {{from, to}, {to - from}, {}}; }
    static Hull Frustum(const ZmFrustum& f)
    {
        const Double3 eye = f.Origin, ahead = f.Direction, aside = Double3(f.Right) * f.HalfWidth;
        const Double3 above = Double3(f.Up) * f.HalfHeight, near = ahead * f.NearDistance;
        const Double3 slant[4] = {near - aside - above, near + aside - above, near + aside + above,
                                  near - aside + above};
        const double ratio = double(f.FarDistance) / f.NearDistance;
        Hull hull = {{}, {aside, above}, {Cross(aside, above)}};
        for (int i = 0; i < 4; ++i) {
            hull.corners.push_back(eye + slant[i]);
            hull.corners.push_back(eye + slant[i] * ratio);
            hull.edges.push_back(slant[i]);
            hull.normals.push_back(Cross(slant[i], slant[(i + 1) % 4]));
        }
        return hull;
    }
};

/// The gap between two bodies along an axis of unit length; negative values are the depth of the overlap.
inline double GapAlong(const Hull& a, const Hull& b, const Double3& axis)
{
    const auto range = [&](const Hull& hull) {
        std::vector<double> along;
        for (const Double3& corner : hull.corners) {
            along.push_back(Dot(corner, axis));
        }
        return std::minmax(
            {*std::min_element(along.begin(), along.end()), *std::max_element(along.begin(), along.end())});
    };
    const auto ra = range(a), rb = range(b);
    return std::max(rb.first - ra.second, ra.first - rb.second);
}

/// The largest gap along any axis that can separate the bodies; they are apart if it is above 0.
inline double Gap(const Hull& a, const Hull& b)
{
    std::vector<Double3> axes = a.normals;
    axes.insert(axes.end(), b.normals.begin(), b.normals.end());
    for (const Double3& edgeA : a.edges) {
        for (const Double3& edgeB : b.edges) {
            axes.push_back(Cross(edgeA, edgeB));
        }
    }
    double gap = -1e300;
    for (const Double3& axis : axes) {
        const double length = sqrt(Dot(axis, axis));
        if (length > 1e-12) {
            gap = std::max(gap, GapAlong(a, b, axis * (1 / length)));
        }
    }
    return gap;
}

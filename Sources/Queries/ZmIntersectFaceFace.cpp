#include "Queries/FaceCrossing.h"
#include "ZmIntersect.h"

// Two triangles: T. Moeller, "A fast triangle-triangle intersection test", Journal of Graphics Tools 2(2), 1997.

namespace zm {
namespace {

struct Triangle {
    const ZmVector* corner[3];
};

/// Signed distances of a triangle's corners from a plane; those below the tolerance are 0.
struct Distances {
    float at[3];

    Distances(const Triangle& triangle, const ZmVector& normal, const ZmVector& planePoint)
    {
        const float d = -Dot(normal, planePoint);
        for (int i = 0; i < 3; ++i) {
            const float distance = Dot(normal, *triangle.corner[i]) + d;
            at[i] = fabsf(distance) < kEpsilon ? 0 : distance;
        }
    }
    bool OnOneSide() const { return (at[0] > 0 && at[1] > 0 && at[2] > 0) || (at[0] < 0 && at[1] < 0 && at[2] < 0); }
    bool AllZero() const { return at[0] == 0 && at[1] == 0 && at[2] == 0; }
};

/// The part of the line common to both planes that a triangle covers, along one coordinate.
struct Interval {
    float low, high;

    Interval(float a, float b) : low(a < b ? a : b), high(a < b ? b : a) {}
};

/// Where an edge crosses the other plane. An end that lies in the plane is used unchanged, so shared corners touch.
float CrossingOf(float at0, float distance0, float at1, float distance1)
{
    return distance1 == 0 ? at1 : at0 + (at1 - at0) * (distance0 / (distance0 - distance1));
}

/// The corner that is alone on its side of the other plane, or the one in the plane if the other two lie on different
/// sides or in the plane as well. At least one distance must not be 0.
int LoneCorner(const Distances& d)
{
    if (d.at[0] * d.at[1] > 0) {
        return 2;
    }
    if (d.at[0] * d.at[2] > 0) {
        return 1;
    }
    if (d.at[1] * d.at[2] > 0 || d.at[0] != 0) {
        return 0;
    }
    return d.at[1] != 0 ? 1 : 2;
}

Interval Covered(const Triangle& triangle, const Distances& d, int axis)
{
    const int lone = LoneCorner(d), next = (lone + 1) % 3, last = (lone + 2) % 3;
    const float at = (*triangle.corner[lone])[axis];
    return {CrossingOf(at, d.at[lone], (*triangle.corner[next])[axis], d.at[next]),
            CrossingOf(at, d.at[lone], (*triangle.corner[last])[axis], d.at[last])};
}

// --- Coplanar triangles ---

/// A triangle projected along the dropped axis. In double, where products of float differences are exact.
struct FlatTriangle {
    double u[3], v[3];

    FlatTriangle(const Triangle& triangle, KeptAxes kept)
    {
        for (int i = 0; i < 3; ++i) {
            u[i] = (*triangle.corner[i])[kept.i1];
            v[i] = (*triangle.corner[i])[kept.i2];
        }
    }
};

/// The side of the line through corners i and j of `t` on which corner k of `other` lies: -1, 0 or 1.
int Side(const FlatTriangle& t, int i, int j, const FlatTriangle& other, int k)
{
    const double area = (t.u[j] - t.u[i]) * (other.v[k] - t.v[i]) - (t.v[j] - t.v[i]) * (other.u[k] - t.u[i]);
    return (area > 0) - (area < 0);
}

/// Whether corner k, known to lie on the line through corners i and j, lies between them.
bool Between(const FlatTriangle& t, int i, int j, const FlatTriangle& other, int k)
{
    const double u = (other.u[k] - t.u[i]) * (other.u[k] - t.u[j]), v = (other.v[k] - t.v[i]) * (other.v[k] - t.v[j]);
    return u <= 0 && v <= 0;
}

bool EdgesMeet(const FlatTriangle& a, int a0, int a1, const FlatTriangle& b, int b0, int b1)
{
    const int sideB0 = Side(a, a0, a1, b, b0), sideB1 = Side(a, a0, a1, b, b1);
    const int sideA0 = Side(b, b0, b1, a, a0), sideA1 = Side(b, b0, b1, a, a1);
    return (sideB0 * sideB1 < 0 && sideA0 * sideA1 < 0) || (sideB0 == 0 && Between(a, a0, a1, b, b0)) ||
           (sideB1 == 0 && Between(a, a0, a1, b, b1)) || (sideA0 == 0 && Between(b, b0, b1, a, a0)) ||
           (sideA1 == 0 && Between(b, b0, b1, a, a1));
}

/// Whether corner 0 of `inner` lies inside `outer`. If no edges meet, this decides for all of `inner`.
bool Contains(const FlatTriangle& outer, const FlatTriangle& inner)
{
    const int side = Side(outer, 0, 1, inner, 0);
    return side != 0 && side == Side(outer, 1, 2, inner, 0) && side == Side(outer, 2, 0, inner, 0);
}

int MeetInPlane(const FlatTriangle& a, const FlatTriangle& b)
{
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            if (EdgesMeet(a, i, (i + 1) % 3, b, j, (j + 1) % 3)) {
                return 1;
            }
        }
    }
    return Contains(a, b) || Contains(b, a);
}

int LargestComponent(const ZmVector& v)
{
    const float x = fabsf(v.x), y = fabsf(v.y), z = fabsf(v.z);
    return x < y ? (y < z ? 2 : 1) : (x < z ? 2 : 0);
}

}  // namespace
}  // namespace zm

int ZmIntersect::FaceFace(const ZmVector& a0, const ZmVector& a1, const ZmVector& a2, const ZmVector& aNormal,
                          const ZmVector& b0, const ZmVector& b1, const ZmVector& b2, const ZmVector& bNormal)
{
    const zm::Triangle a = {{&a0, &a1, &a2}}, b = {{&b0, &b1, &b2}};
    const zm::Distances distancesB(b, aNormal, a0);
    if (distancesB.OnOneSide()) {
        return 0;
    }
    const zm::Distances distancesA(a, bNormal, b0);
    if (distancesA.OnOneSide()) {
        return 0;
    }
    // If the direction is 0, the planes coincide up to rounding, though the distances may not be 0.
    const ZmVector direction = Cross(aNormal, bNormal);
    if (distancesA.AllZero() || distancesB.AllZero() || direction == ZmVector(0, 0, 0)) {
        const zm::KeptAxes kept(aNormal);
        return zm::MeetInPlane(zm::FlatTriangle(a, kept), zm::FlatTriangle(b, kept));
    }
    const int axis = zm::LargestComponent(direction);
    const zm::Interval coveredA = zm::Covered(a, distancesA, axis), coveredB = zm::Covered(b, distancesB, axis);
    return coveredA.low <= coveredB.high && coveredB.low <= coveredA.high;
}

#include "ZmDistance.h"

#include "Queries/DoubleVector.h"
#include "Queries/SixFloats.h"
#include "Queries/Tolerances.h"

namespace zm {
namespace {

// Everything in double, where differences and products of floats are exact, and branch-free: on which bound a closest
// point comes to lie cannot be predicted.
using Pair = DoublePair;

/// Two vectors side by side.
struct VectorPair {
    Pair x, y, z;

    VectorPair(const DoubleVector& a, const DoubleVector& b)
        : x(Pair::Firsts(a.xy, b.xy)), y(Pair::Seconds(a.xy, b.xy)), z(Pair::Firsts(a.z, b.z))
    {
    }
    VectorPair(Pair vx, Pair vy, Pair vz) : x(vx), y(vy), z(vz) {}

    /// The first vector twice.
    VectorPair First() const { return {Pair::Firsts(x, x), Pair::Firsts(y, y), Pair::Firsts(z, z)}; }
    friend Pair Dot(const VectorPair& a, const VectorPair& b) { return (a.x * b.x + a.y * b.y) + a.z * b.z; }
    friend VectorPair Cross(const VectorPair& a, const VectorPair& b)
    {
        return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
    }
};

/// The parameter clamped to the range of the object.
template <Reach reach>
inline Pair Clamp(Pair t)
{
    if (reach != Reach::LINE) {
        t = Pair::Max(t, Pair::Splat(0));
    }
    return reach == Reach::SEGMENT ? Pair::Min(t, Pair::Splat(1)) : t;
}

inline void Store(float* res, Pair value)
{
    if (res) {
        *res = float(value.First());
    }
}

/// The squared sine of the angle up to which two rays count as parallel. Rounding the directions to floats causes
/// angles of this size, which would put the closest points very far away.
constexpr double kParallelSquare = 0x1p-44;

/// The largest double below kEpsilon; from kEpsilon on nothing is parallel to a line.
constexpr double kBelowEpsilon = kEpsilon * (1 - 0x1p-53);

/// The largest squared cross product of the directions at which two objects count as parallel. Beside a line it is a
/// constant, whatever the lengths of the directions (ZmDistanceTest, ParametersOfParallelAndPointlikePairs).
template <Reach reach0, Reach reach1>
inline Pair ParallelLimit(Pair squares)
{
    if (reach0 == Reach::LINE) {
        return Pair::Splat(kBelowEpsilon);
    }
    if (reach1 == Reach::SEGMENT) {
        return Pair::Splat(0);
    }
    return squares * squares.Swapped() * Pair::Splat(kParallelSquare);
}

/// The squared distance of two objects is |offset + s d0 - t d1|^2, convex in s and t: if its minimum lies outside the
/// range of one parameter, the minimum within the range lies on that bound. So three steps suffice: the best t,
/// clamped; the best s for it, clamped; and, if that changed s, the best t again.
template <Reach reach0, Reach reach1>
inline float SquareDistance(const ZmRay& object0, const ZmRay& object1, float* t0, float* t1)
{
    const SixFloats<SseLanes> floats0(&object0), floats1(&object1);
    const DoubleVector d0(floats0.second), d1(floats1.second);
    const DoubleVector offset = DoubleVector(floats0.first) - DoubleVector(floats1.first);
    const VectorPair directions(d0, d1);
    const Pair squares = Dot(directions, directions), along = Dot(directions, VectorPair(offset, offset));
    const Pair both = Dot(d0, d1);
    // 0 for a direction of zero length.
    const Pair inverses = Pair::Splat(1) / squares & Pair::Less(Pair::Splat(0), squares);

    // The closest points of the lines, from cross products with the first direction: unlike scalar products these keep
    // their digits however small the angle is.
    const VectorPair around = Cross(VectorPair(d0, d0), VectorPair(d1, offset)), normal = around.First();
    const Pair products = Dot(normal, around), crossing = products.Swapped() / products;
    // For parallel objects: the start of the second, or its foot if the first is a point.
    const Pair start = (along * inverses).Swapped() & Pair::Equal(squares, Pair::Splat(0));
    const Pair slanted = Pair::Less(ParallelLimit<reach0, reach1>(squares), products);
    const Pair t = Clamp<reach1>(Pair::Select(slanted, crossing, start));
    const Pair foot = (both * t - along) * inverses, s = Clamp<reach0>(foot);
    const Pair again = Clamp<reach1>((along.Swapped() + both * s) * inverses.Swapped());
    const Pair settled = Pair::Select(Pair::Equal(s, foot), t, again);

    const DoubleVector apart = offset + d0 * s - d1 * settled;
    Store(t0, s);
    Store(t1, settled);
    return float(Dot(apart, apart).First());
}

template <Reach reach>
inline float SquareDistance(const ZmVector& point, const ZmRay& object, float* res)
{
    const SixFloats<SseLanes> floats(&object);
    const DoubleVector direction(floats.second);
    const DoubleVector offset = DoubleVector(SseLanes::Load3(&point)) - DoubleVector(floats.first);
    const Pair t = Clamp<reach>(Dot(offset, direction) / Dot(direction, direction));
    const DoubleVector apart = offset - direction * t;
    Store(res, t);
    return float(Dot(apart, apart).First());
}

}  // namespace
}  // namespace zm

float ZmDistance::LineLineSquareDistance(const ZmRay& line0, const ZmRay& line1, float* t0, float* t1)
{
    return zm::SquareDistance<zm::Reach::LINE, zm::Reach::LINE>(line0, line1, t0, t1);
}

float ZmDistance::LineRaySquareDistance(const ZmRay& line, const ZmRay& ray, float* t0, float* t1)
{
    return zm::SquareDistance<zm::Reach::LINE, zm::Reach::RAY>(line, ray, t0, t1);
}

float ZmDistance::LineSegmentSquareDistance(const ZmRay& line, const ZmRay& segment, float* t0, float* t1)
{
    return zm::SquareDistance<zm::Reach::LINE, zm::Reach::SEGMENT>(line, segment, t0, t1);
}

float ZmDistance::RayRaySquareDistance(const ZmRay& ray0, const ZmRay& ray1, float* t0, float* t1)
{
    return zm::SquareDistance<zm::Reach::RAY, zm::Reach::RAY>(ray0, ray1, t0, t1);
}

float ZmDistance::RaySegmentSquareDistance(const ZmRay& ray, const ZmRay& segment, float* t0, float* t1)
{
    return zm::SquareDistance<zm::Reach::RAY, zm::Reach::SEGMENT>(ray, segment, t0, t1);
}

float ZmDistance::SegmentSegmentSquareDistance(const ZmRay& segment0, const ZmRay& segment1, float* t0, float* t1)
{
    return zm::SquareDistance<zm::Reach::SEGMENT, zm::Reach::SEGMENT>(segment0, segment1, t0, t1);
}

float ZmDistance::PointLineSquareDistance(const ZmVector& point, const ZmRay& line, float* t)
{
    return zm::SquareDistance<zm::Reach::LINE>(point, line, t);
}

float ZmDistance::PointRaySquareDistance(const ZmVector& point, const ZmRay& ray, float* t)
{
    return zm::SquareDistance<zm::Reach::RAY>(point, ray, t);
}

float ZmDistance::PointSegmentSquareDistance(const ZmVector& point, const ZmRay& segment, float* t)
{
    return zm::SquareDistance<zm::Reach::SEGMENT>(point, segment, t);
}

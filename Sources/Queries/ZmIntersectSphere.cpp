#include "Platform/FeatureWord.h"
#include "Queries/DoubleVector.h"
#include "Queries/SixFloats.h"
#include "Queries/StoreIf.h"
#include "ZmIntersect.h"

#include <math.h>

namespace zm {
namespace {

/// A point that moves along a line past a sphere around the origin: the times t with |offset - t * direction| = radius
/// solve square * t^2 - 2 * middle * t + (|offset|^2 - radius^2) = 0.
///
/// Computed in double. The discriminant comes from the cross product, which keeps the line's distance from the centre;
/// middle^2 minus the product of the outer coefficients would lose it if the way to the sphere is long.
struct Approach {
    double square, middle, discriminant;

    Approach(const DoubleVector& offset, const DoubleVector& direction, double radius)
        : square(Dot(direction, direction).First()), middle(Dot(offset, direction).First()),
          discriminant(radius * radius * square - CrossSquare(offset, direction).First())
    {
    }
};

void Store(float* res, bool known, float value)
{
    if (res) {
        StoreIf(known, *res, value);
    }
}

template <class L>
int TouchesBox(const ZmSphere& sphere, const ZmBbox& box)
{
    const SixFloats<L> corners(&box);
    const L centre = L::Load4(&sphere);  // the fourth lane is the radius
    const L outside = L::Max(L::Max(corners.second - centre, centre - corners.first), L::Splat(0));
    const L squares = outside * outside, radii = centre * centre;
    const L distance = (squares + squares.template Spread<1, 1, 1, 1>()) + squares.template Spread<2, 2, 2, 2>();
    return int(L::LessEqualMask(distance, radii.template Spread<3, 3, 3, 3>()) & 1);
}

}  // namespace
}  // namespace zm

int ZmIntersect::RaySphere(const ZmRay& ray, const ZmSphere& sphere, ZmVector* inter1, ZmVector* inter2)
{
    const zm::SixFloats<zm::SseLanes> floats(&ray);
    const zm::DoubleVector origin(floats.first), direction(floats.second);
    const zm::Approach line(zm::DoubleVector(zm::SseLanes::Load4(&sphere)) - origin, direction, sphere.Radius);
    const auto store = [&](ZmVector* res, double t) {
        (origin + direction * zm::DoublePair::Splat(t)).ToFloats().Store3(res);
    };
    if (line.discriminant > 0) {
        const double inverse = 1 / line.square, half = sqrt(line.discriminant);
        store(inter1, (line.middle - half) * inverse);
        store(inter2, (line.middle + half) * inverse);
        return 2;
    }
    if (line.discriminant == 0 && line.square > 0) {
        store(inter1, line.middle / line.square);
        return 1;
    }
    return 0;
}

int ZmIntersect::SphereSphere(const ZmSphere& sphere1, const ZmVector& end1, const ZmSphere& sphere2,
                              const ZmVector& end2, float* t0, float* t1)
{
    const zm::DoubleVector between =
        zm::DoubleVector(zm::SseLanes::Load4(&sphere2)) - zm::DoubleVector(zm::SseLanes::Load4(&sphere1));
    const zm::DoubleVector after =
        zm::DoubleVector(zm::SseLanes::Load3(&end2)) - zm::DoubleVector(zm::SseLanes::Load3(&end1));
    const double reach = double(sphere1.Radius) + sphere2.Radius, gap = Dot(between, between).First() - reach * reach;
    const zm::Approach way(between, between - after, reach);
    const bool touching = gap <= 0, moving = way.square > 0, meeting = way.discriminant >= 0;

    // Both roots have the sign of the middle, so neither is computed as a difference.
    const double sum = way.middle + copysign(sqrt(way.discriminant), way.middle);
    zm::DoublePair roots = zm::DoublePair(_mm_setr_pd(gap, sum)) / zm::DoublePair(_mm_setr_pd(sum, way.square));
    const zm::DoublePair none = zm::DoublePair::Splat(0),
                         single = zm::DoublePair::Equal(zm::DoublePair::Splat(way.discriminant), none);
    roots = zm::DoublePair::Select(single, zm::DoublePair::Seconds(roots, roots), roots);
    roots = roots & zm::DoublePair::Less(none, zm::DoublePair::Splat(gap)) &
            zm::DoublePair::Less(none, zm::DoublePair::Splat(way.square));
    const float first = float(zm::DoublePair::Min(roots, roots.Swapped()).First());
    zm::Store(t0, touching | meeting, first);
    zm::Store(t1, touching | meeting, float(zm::DoublePair::Max(roots, roots.Swapped()).First()));
    return int(touching) | (int(meeting) & int(moving) & int(first >= 0) & int(first <= 1));
}

int ZmIntersect::SphereAABB(const ZmSphere& sphere, const ZmBbox& box)
{
    return zm::Dispatch(zm::TouchesBox<zm::SseLanes>, zm::TouchesBox<zm::ScalarLanes>, sphere, box);
}

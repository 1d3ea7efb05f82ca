#include "Platform/FeatureWord.h"
#include "Queries/SixFloats.h"
#include "Queries/Tolerances.h"
#include "ZmIntersect.h"

// Rays, segments and lines against axis-aligned boxes: the slab test, which finds the points, and separating axes,
// which only decide.

namespace zm {
namespace {

/// One end of the part of a line that lies within all slabs so far.
struct SlabEnd {
    float t;
    int axis;
    float sign;

    ZmVector Point(const ZmRay& ray) const { return ray.Origin + ray.Direction * t; }
    ZmVector Normal() const
    {
        ZmVector normal(0, 0, 0);
        normal[axis] = sign;
        return normal;
    }
};

struct SlabInterval {
    SlabEnd in = {-1e30f, 0, 0}, out = {1e30f, 0, 0};
};

/// The value by which parameters are compared. Lines compare magnitudes: callers expect near and far to be distances
/// from the origin, in either direction.
template <Reach reach>
float Rank(float t)
{
    return reach == Reach::LINE ? fabsf(t) : t;
}

/// Narrows the interval to the slab of one axis, between t1 and t2. The first slab of a line sets both ends, since no
/// magnitude exceeds that of the initial interval.
template <Reach reach>
void Narrow(SlabInterval& interval, float t1, float t2, int axis, float direction, bool first)
{
    const bool swapped = Rank<reach>(t1) > Rank<reach>(t2), set = reach == Reach::LINE && first;
    const float nearer = swapped ? t2 : t1, farther = swapped ? t1 : t2;
    // Opposes the direction of travel at both ends: callers expect this normal at the exit, too.
    const float sign = direction < 0 ? 1.0f : -1.0f;
    if (set || Rank<reach>(nearer) > Rank<reach>(interval.in.t)) {
        interval.in = {nearer, axis, sign};
    }
    if (set || Rank<reach>(farther) < Rank<reach>(interval.out.t)) {
        interval.out = {farther, axis, sign};
    }
}

/// Returns false if the line is parallel to a slab and outside it.
template <Reach reach>
bool ClipToSlabs(SlabInterval& interval, const ZmRay& ray, const ZmBbox& box)
{
    bool first = true;
    for (int i = 0; i < 3; ++i) {
        const float origin = ray.Origin[i], direction = ray.Direction[i];
        if (fabsf(direction) < kEpsilon) {
            if (origin < box.Min[i] || origin > box.Max[i]) {
                return false;
            }
            continue;
        }
        const float inverse = 1 / direction;
        Narrow<reach>(interval, (box.Min[i] - origin) * inverse, (box.Max[i] - origin) * inverse, i, direction, first);
        first = false;
    }
    return true;
}

/// Whether no part of the interval is left within the object. The ends only move towards each other, so one check at
/// the end suffices instead of one after each slab.
template <Reach reach>
bool Misses(const SlabInterval& interval)
{
    const float in = interval.in.t, out = interval.out.t;
    if (Rank<reach>(in) > Rank<reach>(out) || (reach != Reach::LINE && out < kEpsilon)) {
        return true;
    }
    // A segment that lies wholly inside crosses no face.
    return reach == Reach::SEGMENT && (in > kOnePlus || (in < kEpsilon && out > kOnePlus));
}

template <Reach reach>
int CrossBox(const ZmRay& ray, const ZmBbox& box, ZmVector& inPoint, ZmVector* outPoint, ZmVector* inNormal,
             ZmVector* outNormal)
{
    SlabInterval interval;
    if (!ClipToSlabs<reach>(interval, ray, box) || Misses<reach>(interval)) {
        return 0;
    }
    const ZmVector exit = interval.out.Point(ray);
    inPoint = interval.in.Point(ray);
    if (outPoint) {
        *outPoint = exit;
    }
    if (inNormal) {
        *inNormal = interval.in.Normal();
    }
    if (outNormal) {
        *outNormal = interval.out.Normal();
    }
    return reach != Reach::LINE && interval.in.t <= kEpsilon ? -1 : 1;
}

/// Separating axes: those of the box and their cross products with the direction.
template <class L, Reach reach>
int OverlapsBox(const ZmRay& ray, const ZmBbox& box)
{
    const SixFloats<L> corners(&box), line(&ray);
    const L half = L::Splat(0.5f), size = (corners.first - corners.second) * half;
    L direction = line.second, origin = line.first;
    if (reach == Reach::SEGMENT) {
        direction = direction * half;
        origin = origin + direction;
    }
    const L offset = origin - (corners.first + corners.second) * half;
    const L offsetAway = offset.Abs(), reachAway = direction.Abs();

    // Each product has the form y z - z y; component x is shown, the others follow in cyclic order.
    const L product = direction.template Pick<1, 2, 0>() * offset.template Pick<2, 0, 1>() -
                      direction.template Pick<2, 0, 1>() * offset.template Pick<1, 2, 0>();
    const L radius = reachAway.template Pick<1, 2, 0>() * size.template Pick<2, 0, 1>() +
                     reachAway.template Pick<2, 0, 1>() * size.template Pick<1, 2, 0>();
    unsigned apart = L::LessMask(radius, product.Abs());
    if (reach == Reach::RAY) {
        apart |= L::LessMask(size, offsetAway) & L::LessEqualMask(L::Splat(0), offset * direction);
    } else if (reach == Reach::SEGMENT) {
        apart |= L::LessMask(size + reachAway, offsetAway);
    }
    return (apart & kThreeLanes) == 0;
}

}  // namespace
}  // namespace zm

int ZmIntersect::RayBox(const ZmRay& ray, const ZmBbox& box, ZmVector& inPoint, ZmVector* outPoint, ZmVector* inNormal,
                        ZmVector* outNormal)
{
    return zm::CrossBox<zm::Reach::RAY>(ray, box, inPoint, outPoint, inNormal, outNormal);
}

int ZmIntersect::SegmentBox(const ZmRay& segment, const ZmBbox& box, ZmVector& inPoint, ZmVector* outPoint,
                            ZmVector* inNormal, ZmVector* outNormal)
{
    return zm::CrossBox<zm::Reach::SEGMENT>(segment, box, inPoint, outPoint, inNormal, outNormal);
}

int ZmIntersect::LineBox(const ZmRay& line, const ZmBbox& box, ZmVector& inPoint, ZmVector* outPoint,
                         ZmVector* inNormal, ZmVector* outNormal)
{
    return zm::CrossBox<zm::Reach::LINE>(line, box, inPoint, outPoint, inNormal, outNormal);
}

int ZmIntersect::RayBox(const ZmRay& ray, const ZmBbox& box)
{
    return zm::Dispatch(zm::OverlapsBox<zm::SseLanes, zm::Reach::RAY>, zm::OverlapsBox<zm::ScalarLanes, zm::Reach::RAY>,
                        ray, box);
}

int ZmIntersect::SegmentBox(const ZmRay& segment, const ZmBbox& box)
{
    return zm::Dispatch(zm::OverlapsBox<zm::SseLanes, zm::Reach::SEGMENT>,
                        zm::OverlapsBox<zm::ScalarLanes, zm::Reach::SEGMENT>, segment, box);
}

int ZmIntersect::LineBox(const ZmRay& line, const ZmBbox& box)
{
    return zm::Dispatch(zm::OverlapsBox<zm::SseLanes, zm::Reach::LINE>,
                        zm::OverlapsBox<zm::ScalarLanes, zm::Reach::LINE>, line, box);
}

#include "Platform/FeatureWord.h"
#include "Queries/BoxShape.h"
#include "Queries/FaceCrossing.h"
#include "Queries/SixFloats.h"
#include "ZmIntersect.h"

// Boxes against boxes and triangles.

namespace zm {
namespace {

template <class L>
int Overlap(const ZmBbox& box1, const ZmBbox& box2)
{
    const SixFloats<L> a(&box1), b(&box2);  // Max first, then Min
    return ((L::LessMask(b.first, a.second) | L::LessMask(a.first, b.second)) & kThreeLanes) == 0;
}

/// The axes of a box as the columns of a matrix: register i holds component i of all three.
template <class L>
struct AxisColumns {
    L x, y, z;

    /// Loading an axis also reads the float after it.
    explicit AxisColumns(const ZmOBB& obb) : x(Load(obb, 0)), y(Load(obb, 1)), z(Load(obb, 2))
    {
        L unused = z;
        L::Transpose(x, y, z, unused);
    }

private:
    static L Load(const ZmOBB& obb, size_t axis)
    {
        return L::Load4(reinterpret_cast<const char*>(&obb) + offsetof(ZmOBB, Axis) + axis * sizeof(ZmVector));
    }
};

/// Two boxes in the frame of the first: component j of row i is the scalar product of axis i of the first and axis j of
/// the second, and so is component i of column j.
template <class L>
struct BoxPair {
    L rows[3], columns[3];
    L sizes[3];      ///< absolute values of rows
    L offset;        ///< of the second box's centre
    L half1, half2;  ///< half-sizes

    /// Computes columns and sizes from rows.
    void Complete()
    {
        L unused = offset;
        for (int i = 0; i < 3; ++i) {
            columns[i] = rows[i];
            sizes[i] = rows[i].Abs();
        }
        L::Transpose(columns[0], columns[1], columns[2], unused);
    }

    /// Tests the axes of both boxes. A set bit is an axis that separates them.
    unsigned ApartOnFaces() const
    {
        const L h0 = half2.template SplatInRows<0>(), h1 = half2.template SplatInRows<1>();
        const L h2 = half2.template SplatInRows<2>();
        const L radius1 = half1 + Weighted(columns[0].Abs(), h0, columns[1].Abs(), h1, columns[2].Abs(), h2);
        const L g0 = half1.template SplatInRows<0>(), g1 = half1.template SplatInRows<1>();
        const L g2 = half1.template SplatInRows<2>();
        const L radius2 = half2 + Weighted(sizes[0], g0, sizes[1], g1, sizes[2], g2);
        const L distance2 = Weighted(rows[0], offset.template SplatInRows<0>(), rows[1],
                                     offset.template SplatInRows<1>(), rows[2], offset.template SplatInRows<2>());
        return (L::LessMask(radius1, offset.Abs()) | L::LessMask(radius2, distance2.Abs())) & kThreeLanes;
    }

    /// Tests the products of axis i of the first box and each axis of the second.
    template <int i>
    unsigned ApartOnEdges() const
    {
        const int j = (i + 1) % 3, k = (i + 2) % 3;
        const L distance = offset.template SplatInRows<k>() * rows[j] - offset.template SplatInRows<j>() * rows[k];
        const L radius1 = half1.template SplatInRows<j>() * sizes[k] + half1.template SplatInRows<k>() * sizes[j];
        const L radius2 = half2.template Pick<1, 2, 0>() * sizes[i].template Pick<2, 0, 1>() +
                          half2.template Pick<2, 0, 1>() * sizes[i].template Pick<1, 2, 0>();
        return L::LessMask(radius1 + radius2, distance.Abs()) & kThreeLanes;
    }

    /// Does not exit early, not even after the axes that separate most pairs: the mispredicted branches would cost more
    /// than the remaining axes.
    int Overlap() const { return (ApartOnFaces() | ApartOnEdges<0>() | ApartOnEdges<1>() | ApartOnEdges<2>()) == 0; }

    static L Weighted(L a, L wa, L b, L wb, L c, L wc) { return (a * wa + b * wb) + c * wc; }
};

template <class L>
int OverlapOriented(const ZmOBB& obb1, const ZmOBB& obb2)
{
    const AxisColumns<L> axes1(obb1), axes2(obb2);
    const ZmVector between = obb2.Center - obb1.Center;
    BoxPair<L> pair;
    for (int i = 0; i < 3; ++i) {
        const ZmVector& axis = obb1.Axis[i];
        pair.rows[i] =
            BoxPair<L>::Weighted(axes2.x, L::Splat(axis.x), axes2.y, L::Splat(axis.y), axes2.z, L::Splat(axis.z));
    }
    pair.offset =
        BoxPair<L>::Weighted(axes1.x, L::Splat(between.x), axes1.y, L::Splat(between.y), axes1.z, L::Splat(between.z));
    pair.half1 = L::Load3(obb1.Extent);
    pair.half2 = L::Load3(obb2.Extent);
    pair.Complete();
    return pair.Overlap();
}

template <class L>
int OverlapWithOriented(const ZmBbox& box, const ZmOBB& obb)
{
    const SixFloats<L> corners(&box);
    const AxisColumns<L> axes(obb);
    const L half = L::Splat(0.5f);
    BoxPair<L> pair;
    pair.rows[0] = axes.x;
    pair.rows[1] = axes.y;
    pair.rows[2] = axes.z;
    pair.offset = L::Load3(&obb.Center) - (corners.first + corners.second) * half;
    pair.half1 = (corners.first - corners.second) * half;
    pair.half2 = L::Load3(obb.Extent);
    pair.Complete();
    return pair.Overlap();
}

/// A bit for each face of the box that has the point outside.
unsigned OutsideOf(const ZmBbox& box, const ZmVector& p)
{
    unsigned sides = 0;
    for (int i = 0; i < 3; ++i) {
        sides |= unsigned(p[i] < box.Min[i]) << i | unsigned(p[i] > box.Max[i]) << (3 + i);
    }
    return sides;
}

}  // namespace
}  // namespace zm

int ZmIntersect::AABBAABB(const ZmBbox& box1, const ZmBbox& box2)
{
    return zm::Dispatch(zm::Overlap<zm::SseLanes>, zm::Overlap<zm::ScalarLanes>, box1, box2);
}

int ZmIntersect::AABBOBB(const ZmBbox& box, const ZmOBB& obb)
{
    return zm::Dispatch(zm::OverlapWithOriented<zm::SseLanes>, zm::OverlapWithOriented<zm::ScalarLanes>, box, obb);
}

int ZmIntersect::OBBOBB(const ZmOBB& obb1, const ZmOBB& obb2)
{
    return zm::Dispatch(zm::OverlapOriented<zm::SseLanes>, zm::OverlapOriented<zm::ScalarLanes>, obb1, obb2);
}

int ZmIntersect::AABBFace(const ZmBbox& box, const ZmVector& pt0, const ZmVector& pt1, const ZmVector& pt2,
                          const ZmVector& normal)
{
    const unsigned sides0 = zm::OutsideOf(box, pt0), sides1 = zm::OutsideOf(box, pt1), sides2 = zm::OutsideOf(box, pt2);
    if (sides0 == 0 || sides1 == 0 || sides2 == 0) {
        return 1;
    }
    if (sides0 & sides1 & sides2) {
        return 0;
    }
    if (SegmentBox({pt0, pt1 - pt0}, box) || SegmentBox({pt1, pt2 - pt1}, box) || SegmentBox({pt2, pt0 - pt2}, box)) {
        return 1;
    }
    // No edge crosses the box, so only a diagonal of the box can cross the face.
    const zm::Diagonal along(box, normal);
    ZmVector point;
    float dist;
    return SegmentFace({along.first, along.last - along.first}, pt0, pt1, pt2, normal, point, dist) != 0;
}

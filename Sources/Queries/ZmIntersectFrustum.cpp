#include "Math/TransformKernels.h"
#include "Platform/FeatureWord.h"
#include "Queries/BoxShape.h"
#include "ZmIntersect.h"

namespace zm {
namespace {

/// Four vectors, component by component.
template <class L>
struct FourVectors {
    L x, y, z;

    FourVectors(L vx, L vy, L vz) : x(vx), y(vy), z(vz) {}
    explicit FourVectors(const ZmVector& v) : x(L::Splat(v.x)), y(L::Splat(v.y)), z(L::Splat(v.z)) {}
    FourVectors(const ZmVector& a, const ZmVector& b, const ZmVector& c, const ZmVector& d)
        : x(L::Set(a.x, b.x, c.x, d.x)), y(L::Set(a.y, b.y, c.y, d.y)), z(L::Set(a.z, b.z, c.z, d.z))
    {
    }

    /// Each vector replaced by the next one, the last by the first.
    FourVectors Rotated() const
    {
        return {x.template Spread<1, 2, 3, 0>(), y.template Spread<1, 2, 3, 0>(), z.template Spread<1, 2, 3, 0>()};
    }
    friend L Dot(const FourVectors& a, const FourVectors& b) { return (a.x * b.x + a.y * b.y) + a.z * b.z; }
    friend FourVectors Cross(const FourVectors& a, const FourVectors& b)
    {
        return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
    }
};

// --- The six planes ---

/// Four planes, or two of them twice.
template <class L>
struct FourPlanes {
    L x, y, z, d;

    FourPlanes(const ZmPlane& a, const ZmPlane& b, const ZmPlane& c, const ZmPlane& last)
        : x(L::Load4(&a)), y(L::Load4(&b)), z(L::Load4(&c)), d(L::Load4(&last))
    {
        L::Transpose(x, y, z, d);
    }
    L Dot(L vx, L vy, L vz) const { return (x * vx + y * vy) + z * vz; }
};

/// A placed box: its axes, scaled by the half-sizes, and its centre, with each component in all lanes.
template <class L>
struct SplatBox {
    L x[4], y[4], z[4];  ///< three axes, then the centre

    SplatBox(const ZmBbox& box, const ZmMatrix& matrix)
    {
        const ZmVector centre = Center(box), half = HalfSize(box);
        const RowMatrix<L> rows(FloatsOf(matrix));
        Splat(0, rows.row0 * L::Splat(half.x));
        Splat(1, rows.row1 * L::Splat(half.y));
        Splat(2, rows.row2 * L::Splat(half.z));
        Splat(3, rows.template Apply<POINT>(&centre));
    }

private:
    void Splat(int i, L v)
    {
        x[i] = v.template SplatInRows<0>();
        y[i] = v.template SplatInRows<1>();
        z[i] = v.template SplatInRows<2>();
    }
};

/// Bit i stands for plane i. `front`: the box lies wholly in front of it; `back`: wholly behind.
struct PlaneSides {
    unsigned front, back;
};

template <class L>
PlaneSides SidesOf(const FourPlanes<L>& planes, const SplatBox<L>& box)
{
    const L r0 = planes.Dot(box.x[0], box.y[0], box.z[0]).Abs();
    const L r1 = planes.Dot(box.x[1], box.y[1], box.z[1]).Abs();
    const L r2 = planes.Dot(box.x[2], box.y[2], box.z[2]).Abs();
    const L radius = (r0 + r1) + r2, distance = planes.Dot(box.x[3], box.y[3], box.z[3]) + planes.d;
    return {L::LessMask(radius, distance), L::LessMask(distance, L::Splat(0) - radius)};
}

/// The first plane, in this order, that does not have the whole box behind it decides alone, even if a later plane has
/// the box in front. All planes are tested at once, since no branch here can be predicted.
template <class L>
int PassesPlanes(const ZmFrustum& frustum, const ZmBbox& box, const ZmMatrix& matrix)
{
    const ZmPlane* planes = frustum.Planes;
    const SplatBox<L> placed(box, matrix);
    const PlaneSides first = SidesOf(FourPlanes<L>(planes[4], planes[5], planes[0], planes[1]), placed);
    const PlaneSides then = SidesOf(FourPlanes<L>(planes[2], planes[3], planes[2], planes[3]), placed);
    const unsigned front = first.front | then.front << 4, back = first.back | then.back << 4;
    const unsigned decisive = ~back & (back + 1);  // the lowest clear bit of `back`
    return (front & decisive & 0x3F) == 0;
}

// --- The apex description ---

/// The projections of the frustum and a box onto axes. The frustum is the hull of its near and far rectangles.
template <class L>
class FrustumAxes {
public:
    FrustumAxes(const ZmFrustum& frustum, const PlacedBox& box)
        : m_Right(frustum.Right * frustum.HalfWidth), m_Up(frustum.Up * frustum.HalfHeight), m_Ahead(frustum.Direction),
          m_Offset(box.centre - frustum.Origin), m_Axis{FourVectors<L>(box.axis[0]), FourVectors<L>(box.axis[1]),
                                                        FourVectors<L>(box.axis[2])},
          m_Half{L::Splat(box.half.x), L::Splat(box.half.y), L::Splat(box.half.z)},
          m_Near(L::Splat(frustum.NearDistance)), m_Far(L::Splat(frustum.FarDistance)),
          m_Ratio(L::Splat(frustum.FarNearRatio))
    {
    }

    /// Whether one of four axes separates the two. An axis of zero length, from parallel edges, never does.
    bool Part(const FourVectors<L>& axes) const
    {
        const L middle = Dot(axes, m_Offset);
        const L radius = (m_Half[0] * Dot(axes, m_Axis[0]).Abs() + m_Half[1] * Dot(axes, m_Axis[1]).Abs()) +
                         m_Half[2] * Dot(axes, m_Axis[2]).Abs();
        const L ahead = Dot(axes, m_Ahead), side = Dot(axes, m_Right).Abs() + Dot(axes, m_Up).Abs();
        const L nearAhead = ahead * m_Near, farAhead = ahead * m_Far, farSide = side * m_Ratio;
        const L low = L::Min(nearAhead - side, farAhead - farSide), high = L::Max(nearAhead + side, farAhead + farSide);
        return (L::LessMask(high, middle - radius) | L::LessMask(middle + radius, low)) != 0;
    }

private:
    FourVectors<L> m_Right, m_Up, m_Ahead, m_Offset;
    FourVectors<L> m_Axis[3];
    L m_Half[3];
    L m_Near, m_Far, m_Ratio;
};

/// The directions from the eye to the corners of the near rectangle, in cyclic order.
template <class L>
FourVectors<L> SlantEdges(const ZmFrustum& frustum)
{
    const ZmVector ahead = frustum.Direction * frustum.NearDistance;
    const ZmVector aside = frustum.Right * frustum.HalfWidth, above = frustum.Up * frustum.HalfHeight;
    return {ahead - aside - above, ahead + aside - above, ahead + aside + above, ahead - aside + above};
}

/// Tests all face normals and all products of edges. They are used without normalisation, so rounding never separates
/// objects that overlap by more than rounding errors, parallel edges included.
template <class L>
int OverlapsFrustum(const ZmFrustum& frustum, const PlacedBox& box)
{
    using Four = FourVectors<L>;
    const FrustumAxes<L> pair(frustum, box);
    const ZmVector &b0 = box.axis[0], &b1 = box.axis[1], &b2 = box.axis[2];
    const Four edges = SlantEdges<L>(frustum), sides = Cross(edges, edges.Rotated());
    // The edges of the box. The fourth element only fills the group: it gives the near face's normal again, or a zero
    // axis.
    const Four products(b0, b1, b2, frustum.Up);
    if (pair.Part(Four(frustum.Direction, Cross(b1, b2), Cross(b2, b0), Cross(b0, b1))) || pair.Part(sides)) {
        return 0;
    }
    return !(pair.Part(Cross(Four(b0), edges)) || pair.Part(Cross(Four(b1), edges)) ||
             pair.Part(Cross(Four(b2), edges)) || pair.Part(Cross(Four(frustum.Right), products)) ||
             pair.Part(Cross(Four(frustum.Up), products)));
}

int Overlaps(const ZmFrustum& frustum, const PlacedBox& box)
{
    return Dispatch(OverlapsFrustum<SseLanes>, OverlapsFrustum<ScalarLanes>, frustum, box);
}

}  // namespace
}  // namespace zm

int ZmIntersect::FrustumFace(const ZmFrustum& frustum, const ZmVector& pt0, const ZmVector& pt1, const ZmVector& pt2)
{
    for (const ZmPlane& plane : frustum.Planes) {
        if (Dot(plane.Normal, pt0) + plane.D > 0 && Dot(plane.Normal, pt1) + plane.D > 0 &&
            Dot(plane.Normal, pt2) + plane.D > 0) {
            return 0;
        }
    }
    return 1;
}

int ZmIntersect::FrustumBox(const ZmFrustum& frustum, const ZmBbox& box, const ZmMatrix& matrix)
{
    return zm::Dispatch(zm::PassesPlanes<zm::SseLanes>, zm::PassesPlanes<zm::ScalarLanes>, frustum, box, matrix);
}

int ZmIntersect::FrustumAABB(const ZmFrustum& frustum, const ZmBbox& box)
{
    return zm::Overlaps(frustum, zm::PlacedBox(box));
}

int ZmIntersect::FrustumOBB(const ZmFrustum& frustum, const ZmBbox& box, const ZmMatrix& matrix)
{
    return zm::Overlaps(frustum, zm::PlacedBox(box, matrix));
}

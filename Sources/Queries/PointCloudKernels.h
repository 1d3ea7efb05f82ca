#pragma once

#include "Math/DoubleLanes.h"
#include "Queries/PointCloud.h"

// Passes over all points, one group at a time. Sums have four lanes on every path, so all paths give the same bits;
// minima and maxima do not depend on the order.

namespace zm {
namespace {

/// Four doubles in scalar code: the reference form of DoubleLanes.
struct ScalarDoubles {
    double d[4];

    ScalarDoubles() = default;
    ScalarDoubles(double a, double b, double c, double e) : d{a, b, c, e} {}
    explicit ScalarDoubles(ScalarLanes l) : d{l.f[0], l.f[1], l.f[2], l.f[3]} {}
    static ScalarDoubles Splat(double s) { return {s, s, s, s}; }

    ScalarDoubles operator+(const ScalarDoubles& o) const
    {
        return {d[0] + o.d[0], d[1] + o.d[1], d[2] + o.d[2], d[3] + o.d[3]};
    }
    ScalarDoubles operator-(const ScalarDoubles& o) const
    {
        return {d[0] - o.d[0], d[1] - o.d[1], d[2] - o.d[2], d[3] - o.d[3]};
    }
    ScalarDoubles operator*(const ScalarDoubles& o) const
    {
        return {d[0] * o.d[0], d[1] * o.d[1], d[2] * o.d[2], d[3] * o.d[3]};
    }
    double Sum() const { return (d[0] + d[2]) + (d[1] + d[3]); }
};

// Loads the first four points of a group from p and, for groups of eight, the other four from `next` bytes further on.
template <class L>
inline L LoadFour(const unsigned char* p, size_t)
{
    return L::Load4(p);
}
template <class L>
inline L LoadThree(const unsigned char* p, size_t)
{
    return L::Load3(p);
}
#ifdef __AVX2__
template <>
inline Avx2Lanes LoadFour<Avx2Lanes>(const unsigned char* p, size_t next)
{
    return Avx2Lanes::Halves(SseLanes::Load4(p), SseLanes::Load4(p + next));
}
template <>
inline Avx2Lanes LoadThree<Avx2Lanes>(const unsigned char* p, size_t next)
{
    return Avx2Lanes::Halves(SseLanes::Load3(p), SseLanes::Load3(p + next));
}
#endif

/// One point per lane, component by component.
template <class L>
struct Group {
    L x, y, z;

    /// Loads contiguous points of 12 bytes.
    static Group Tight(const unsigned char* p)
    {
        // x0 y0 z0 x1, y1 z1 x2 y2, z2 x3 y3 z3.
        const L a = LoadFour<L>(p, 48), b = LoadFour<L>(p + 16, 48), c = LoadFour<L>(p + 32, 48);
        const L xy = L::template Shuffle<2, 3, 1, 2>(b, c);  // x2 y2 x3 y3
        const L yz = L::template Shuffle<1, 2, 0, 1>(a, b);  // y0 z0 y1 z1
        return {L::template Shuffle<0, 3, 0, 2>(a, xy), L::template Shuffle<0, 2, 1, 3>(yz, xy),
                L::template Shuffle<1, 3, 0, 3>(yz, c)};
    }
    static Group Apart(const unsigned char* p, size_t stride)
    {
        const size_t next = 4 * stride;
        L a = LoadThree<L>(p, next), b = LoadThree<L>(p + stride, next);
        L c = LoadThree<L>(p + 2 * stride, next), d = LoadThree<L>(p + 3 * stride, next);
        L::Transpose(a, b, c, d);
        return {a, b, c};
    }
};

/// Calls take(group) until all points have been taken. The last group is padded with the first point, which contributes
/// nothing, since everything is measured from it.
template <class L, class Take>
inline void ForEachGroup(const PointCloud& cloud, Take&& take)
{
    const int points = L::kCount;
    const unsigned char* p = cloud.points;
    const size_t stride = cloud.stride;
    int left = cloud.count;
    if (stride == 12) {
        for (; left >= points; left -= points, p += 12 * points) {
            take(Group<L>::Tight(p));
        }
    } else {
        for (; left >= points; left -= points, p += points * stride) {
            take(Group<L>::Apart(p, stride));
        }
    }
    if (left > 0) {
        unsigned char last[12 * points];
        for (int i = 0; i < points; ++i) {
            memcpy(last + 12 * i, i < left ? p + size_t(i) * stride : cloud.points, 12);
        }
        take(Group<L>::Tight(last));
    }
}

/// Running sums in the order of CloudSums, four lanes each.
template <class D>
struct LaneSums {
    D of[9] = {D::Splat(0), D::Splat(0), D::Splat(0), D::Splat(0), D::Splat(0),
               D::Splat(0), D::Splat(0), D::Splat(0), D::Splat(0)};

    void Add(D x, D y, D z)
    {
        const D terms[9] = {x, y, z, x * x, y * y, z * z, x * y, x * z, y * z};
        for (int i = 0; i < 9; ++i) {
            of[i] = of[i] + terms[i];
        }
    }
};

template <class L, class D>
inline void SumUp(CloudSums& res, const PointCloud& cloud)
{
    const ZmVector first = FirstPoint(cloud);
    const D x0 = D::Splat(first.x), y0 = D::Splat(first.y), z0 = D::Splat(first.z);
    LaneSums<D> sums;
    ForEachGroup<L>(cloud, [&](const Group<L>& p) { sums.Add(D(p.x) - x0, D(p.y) - y0, D(p.z) - z0); });
    for (int i = 0; i < 9; ++i) {
        res.of[i] = sums.of[i].Sum();
    }
}

/// The smallest and largest values so far, 0 included.
template <class L>
struct Range {
    L min, max;

    void Include(L v)
    {
        min = L::Min(v, min);
        max = L::Max(v, max);
    }
    float Smallest() const
    {
        return Fold(min, [](float a, float b) { return a < b ? a : b; });
    }
    float Largest() const
    {
        return Fold(max, [](float a, float b) { return a > b ? a : b; });
    }

private:
    template <class Choose>
    static float Fold(L v, Choose choose)
    {
        float lanes[L::kCount], res = 0;
        memcpy(lanes, &v, sizeof(lanes));
        for (const float lane : lanes) {
            res = choose(lane, res);
        }
        return res;
    }
};

template <class L>
inline void FindExtents(CloudExtents& res, const PointCloud& cloud, const ZmVector* axes)
{
    const ZmVector first = FirstPoint(cloud);
    const L x0 = L::Splat(first.x), y0 = L::Splat(first.y), z0 = L::Splat(first.z), zero = L::Splat(0);
    L ax[3], ay[3], az[3];
    for (int i = 0; i < 3; ++i) {
        ax[i] = L::Splat(axes[i].x);
        ay[i] = L::Splat(axes[i].y);
        az[i] = L::Splat(axes[i].z);
    }
    Range<L> along0 = {zero, zero}, along1 = along0, along2 = along0;
    ForEachGroup<L>(cloud, [&](const Group<L>& p) {
        const L x = p.x - x0, y = p.y - y0, z = p.z - z0;
        along0.Include((x * ax[0] + y * ay[0]) + z * az[0]);
        along1.Include((x * ax[1] + y * ay[1]) + z * az[1]);
        along2.Include((x * ax[2] + y * ay[2]) + z * az[2]);
    });
    res.min = {along0.Smallest(), along1.Smallest(), along2.Smallest()};
    res.max = {along0.Largest(), along1.Largest(), along2.Largest()};
}

}  // namespace
}  // namespace zm

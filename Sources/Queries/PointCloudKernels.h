#pragma once

#include "Math/DoubleLanes.h"
#include "Queries/PointCloud.h"

// What runs over all points, four at a time. The order of the sums is that of four lanes on every path, which gives
// the same bits; smallest and largest values have no order.

namespace zm {
namespace {

/// Four doubles without vector instructions: the scalar form of DoubleLanes.
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

/// Four points, component by component.
template <class L>
struct FourPoints {
    L x, y, z;

    /// From 48 bytes.
    static FourPoints Tight(const unsigned char* p)
    {
        const L a = L::Load4(p), b = L::Load4(p + 16), c = L::Load4(p + 32);
        // a: x0 y0 z0 x1, b: y1 z1 x2 y2, c: z2 x3 y3 z3.
        const L xy = L::template Shuffle<2, 3, 1, 2>(b, c);  // x2 y2 x3 y3
        const L yz = L::template Shuffle<1, 2, 0, 1>(a, b);  // y0 z0 y1 z1
        return {L::template Shuffle<0, 3, 0, 2>(a, xy), L::template Shuffle<0, 2, 1, 3>(yz, xy),
                L::template Shuffle<1, 3, 0, 3>(yz, c)};
    }
    static FourPoints Apart(const unsigned char* p, size_t stride)
    {
        L a = L::Load3(p), b = L::Load3(p + stride), c = L::Load3(p + 2 * stride), d = L::Load3(p + 3 * stride);
        L::Transpose(a, b, c, d);
        return {a, b, c};
    }
};

/// Calls take(four points) until all points have been taken. The last four are filled up with the first point,
/// which adds nothing to what is measured from it.
template <class L, class Take>
inline void ForEachFour(const PointCloud& cloud, Take&& take)
{
    const unsigned char* p = cloud.points;
    const size_t stride = cloud.stride;
    int left = cloud.count;
    if (stride == 12) {
        for (; left >= 4; left -= 4, p += 48) {
            take(FourPoints<L>::Tight(p));
        }
    } else {
        for (; left >= 4; left -= 4, p += 4 * stride) {
            take(FourPoints<L>::Apart(p, stride));
        }
    }
    if (left > 0) {
        unsigned char last[48];
        for (int i = 0; i < 4; ++i) {
            memcpy(last + 12 * i, i < left ? p + size_t(i) * stride : cloud.points, 12);
        }
        take(FourPoints<L>::Tight(last));
    }
}

template <class L, class D>
inline void SumUp(CloudSums& res, const PointCloud& cloud)
{
    const ZmVector first = FirstPoint(cloud);
    const D x0 = D::Splat(first.x), y0 = D::Splat(first.y), z0 = D::Splat(first.z), zero = D::Splat(0);
    D sx = zero, sy = zero, sz = zero, sxx = zero, syy = zero, szz = zero, sxy = zero, sxz = zero, syz = zero;
    ForEachFour<L>(cloud, [&](const FourPoints<L>& p) {
        const D x = D(p.x) - x0, y = D(p.y) - y0, z = D(p.z) - z0;
        sx = sx + x;
        sy = sy + y;
        sz = sz + z;
        sxx = sxx + x * x;
        syy = syy + y * y;
        szz = szz + z * z;
        sxy = sxy + x * y;
        sxz = sxz + x * z;
        syz = syz + y * z;
    });
    res = {{sx.Sum(), sy.Sum(), sz.Sum(), sxx.Sum(), syy.Sum(), szz.Sum(), sxy.Sum(), sxz.Sum(), syz.Sum()}};
}

/// Smallest and largest of the lanes that it has been given, 0 included.
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
        float lanes[4];
        min.Store4(lanes);
        return Least(Least(lanes[0], lanes[1]), Least(lanes[2], lanes[3]));
    }
    float Largest() const
    {
        float lanes[4];
        max.Store4(lanes);
        return -Least(Least(-lanes[0], -lanes[1]), Least(-lanes[2], -lanes[3]));
    }

private:
    static float Least(float a, float b) { return a < b ? a : b; }
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
    ForEachFour<L>(cloud, [&](const FourPoints<L>& p) {
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

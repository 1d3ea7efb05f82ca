#pragma once

#include "Queries/PointCloudKernels.h"

#include <float.h>

// Boxes and farthest distances of many points. The results are those of one comparison after the other: NaNs never
// count, and of two zeros the first stays.

namespace zm {

/// The largest and the smallest coordinates; infinite the other way round without points.
struct Bounds {
    float max[3], min[3];
};

namespace {

// --- Boxes ----------------------------------------------------------------------------
//
// Extremes do not need the components apart: the points stay in the registers as they were loaded.

/// The extremes so far, float by float, of the registers that hold one group of points.
template <class L, int Registers>
struct Extremes {
    L max[Registers], min[Registers];

    Extremes()
    {
        for (int i = 0; i < Registers; ++i) {
            max[i] = L::Splat(-INFINITY);
            min[i] = L::Splat(INFINITY);
        }
    }
    void Include(int i, L v)
    {
        max[i] = L::Max(v, max[i]);
        min[i] = L::Min(v, min[i]);
    }
    /// Adds the floats to the bounds; component i is every float number `floatsPerPoint` * k + i.
    void AddTo(Bounds& bounds, int floatsPerPoint) const
    {
        constexpr int count = Registers * L::kCount;
        float largest[count], smallest[count];
        memcpy(largest, max, sizeof(largest));
        memcpy(smallest, min, sizeof(smallest));
        for (int i = 0; i < count; ++i) {
            const int axis = i % floatsPerPoint;
            if (axis < 3) {
                bounds.max[axis] = largest[i] > bounds.max[axis] ? largest[i] : bounds.max[axis];
                bounds.min[axis] = smallest[i] < bounds.min[axis] ? smallest[i] : bounds.min[axis];
            }
        }
    }
};

inline void Include(Bounds& bounds, const unsigned char* p)
{
    float point[3];
    memcpy(point, p, sizeof(point));
    for (int i = 0; i < 3; ++i) {
        bounds.max[i] = point[i] > bounds.max[i] ? point[i] : bounds.max[i];
        bounds.min[i] = point[i] < bounds.min[i] ? point[i] : bounds.min[i];
    }
}

/// Takes all points but less than L::kCount, and returns how many. Three registers hold L::kCount tight points.
template <class L>
int BoundTight(Bounds& bounds, const PointCloud& cloud)
{
    Extremes<L, 3> extremes;
    const unsigned char* p = cloud.points;
    int i = 0;
    for (; i <= cloud.count - L::kCount; i += L::kCount, p += 12 * L::kCount) {
        for (int k = 0; k < 3; ++k) {
            extremes.Include(k, L::Load(reinterpret_cast<const float*>(p) + k * L::kCount));
        }
    }
    extremes.AddTo(bounds, 3);
    return i;
}

template <class L>
int BoundApart(Bounds& bounds, const PointCloud& cloud)
{
    Extremes<L, 4> extremes;
    const unsigned char* p = cloud.points;
    const size_t stride = cloud.stride;
    int i = 0;
    for (; i <= cloud.count - L::kCount; i += L::kCount, p += L::kCount * stride) {
        for (size_t k = 0; k < 4; ++k) {
            extremes.Include(int(k), LoadThree<L>(p + k * stride, 4 * stride));
        }
    }
    extremes.AddTo(bounds, 4);
    return i;
}

/// The sign of a zero among the extremes is that of the first zero among the points.
inline void SignZero(float& extreme, const PointCloud& cloud, int axis)
{
    float value = 1;
    for (int i = 0; extreme == 0 && value != 0 && i < cloud.count; ++i) {
        memcpy(&value, cloud.points + size_t(i) * cloud.stride + 4 * axis, 4);
    }
    extreme = extreme == 0 ? value : extreme;
}

template <class L>
void BoundPoints(Bounds& bounds, const PointCloud& cloud)
{
    bounds = {{-INFINITY, -INFINITY, -INFINITY}, {INFINITY, INFINITY, INFINITY}};
    int i = cloud.stride == 12 ? BoundTight<L>(bounds, cloud) : BoundApart<L>(bounds, cloud);
    for (; i < cloud.count; ++i) {
        Include(bounds, cloud.points + size_t(i) * cloud.stride);
    }
    for (int axis = 0; axis < 3; ++axis) {
        SignZero(bounds.max[axis], cloud, axis);
        SignZero(bounds.min[axis], cloud, axis);
    }
}

// --- Spheres --------------------------------------------------------------------------

/// Calls take() for each four points of a group.
template <class L, class Take>
inline void ForFours(const Group<L>& p, Take&& take)
{
    take(p);
}
#ifdef __AVX2__
template <class Take>
inline void ForFours(const Group<Avx2Lanes>& p, Take&& take)
{
    take(Group<SseLanes>{p.x.Low(), p.y.Low(), p.z.Low()});
    take(Group<SseLanes>{p.x.High(), p.y.High(), p.z.High()});
}
#endif

/// The largest square of a distance so far. Floats tell which points can be farther; only those are computed in double.
template <class L, class D>
class FarthestSquare {
public:
    explicit FarthestSquare(const ZmVector& centre)
        : m_Centre{L::Splat(centre.x), L::Splat(centre.y), L::Splat(centre.z)}, m_DoubleCentre{D::Splat(centre.x),
                                                                                               D::Splat(centre.y),
                                                                                               D::Splat(centre.z)},
          m_Limit(L::Splat(-1))
    {
    }

    void Include(const Group<L>& p)
    {
        const L x = p.x - m_Centre[0], y = p.y - m_Centre[1], z = p.z - m_Centre[2];
        constexpr unsigned all = (1u << L::kCount) - 1;
        if (L::LessEqualMask(x * x + y * y + z * z, m_Limit) != all) {
            ForFours(p, [this](const auto& four) { IncludeExactly(D(four.x), D(four.y), D(four.z)); });
            m_Limit = L::Splat(Limit());
        }
    }
    double Square() const { return m_Farthest; }

private:
    void IncludeExactly(D px, D py, D pz)
    {
        const D x = px - m_DoubleCentre[0], y = py - m_DoubleCentre[1], z = pz - m_DoubleCentre[2];
        const D square = x * x + y * y + z * z;
        double squares[4];
        memcpy(squares, &square, sizeof(squares));
        for (const double one : squares) {
            m_Farthest = one > m_Farthest ? one : m_Farthest;
        }
    }
    /// Up to here a square in floats has certainly not been the farthest: its rounding errors are well below 2^-20.
    /// None for squares whose floats may have lost digits.
    float Limit() const
    {
        const double limit = m_Farthest * (1 - 0x1p-20);
        return limit < 1e-30 ? -1 : limit > 0x1p127 ? 0x1p127f : float(limit);
    }

    L m_Centre[3];
    D m_DoubleCentre[3];
    L m_Limit;
    double m_Farthest = 0;
};

/// The result is no return value: 32-bit programs return doubles in a register that emulators round to the precision of
/// the control word.
template <class L, class D>
void FindFarthest(double& square, const PointCloud& cloud, const ZmVector& centre)
{
    FarthestSquare<L, D> farthest(centre);
    ForEachGroup<L>(cloud, [&](const Group<L>& p) { farthest.Include(p); });
    square = farthest.Square();
}

}  // namespace

/// Kernels for processors with AVX2.
namespace avx2 {

void BoundPoints(Bounds& bounds, const PointCloud& cloud);
void FindFarthest(double& square, const PointCloud& cloud, const ZmVector& centre);

}  // namespace avx2
}  // namespace zm

#pragma once

#include "Queries/Hull.h"
#include "Support/Paths.h"

/// Compares results with the reference and counts them: if all pairs overlapped, or none, the comparison would prove
/// nothing.
class OverlapCounts {
public:
    /// `tolerance` is how close to touching rounding may decide.
    explicit OverlapCounts(const char* name, double tolerance = 1e-5) : m_Name(name), m_Tolerance(tolerance) {}

    void Check(int answer, double gap)
    {
        if (fabs(gap) < m_Tolerance) {
            ++m_Touching;
            return;
        }
        EXPECT_EQ(answer, gap < 0 ? 1 : 0) << "gap " << gap;
        ++(gap < 0 ? m_Hits : m_Misses);
    }
    /// Expects at least one in ten of each result, and few undecided ones.
    ~OverlapCounts()
    {
        SCOPED_TRACE(m_Name);
        const int all = m_Hits + m_Misses + m_Touching;
        EXPECT_GT(10 * m_Hits, all);
        EXPECT_GT(10 * m_Misses, all);
        EXPECT_LT(20 * m_Touching, all);
    }

private:
    const char* m_Name;
    double m_Tolerance;
    int m_Hits = 0, m_Misses = 0, m_Touching = 0;
};

inline ZmBbox RandomBox(Random& random, float range, float size)
{
    const ZmVector min = random.Vector(range);
    const ZmVector extent = {random.Float(0, size), random.Float(0, size), random.Float(0, size)};
    return {min + extent, min};
}

/// Every fourth box is axis-aligned, every eighth one flat.
inline ZmOBB RandomOriented(Random& random, float range, float size)
{
    ZmMatrix turn;
    const int kind = random.Int(0, 7);
    (kind < 2 ? ZmQuaternion(0, 0, 0, 1) : random.Rotation()).ToMatrix(turn);
    ZmOBB box;
    box.Center = random.Vector(range);
    for (int i = 0; i < 3; ++i) {
        box.Axis[i] = {turn[i][0], turn[i][1], turn[i][2]};
        box.Extent[i] = random.Float(0, size);
    }
    box.Extent[1] = kind == 7 ? 0 : box.Extent[1];
    return box;
}

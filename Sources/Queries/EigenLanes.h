#pragma once

#include "Math/DoubleLanes.h"

// The eigenvectors of L::kCount symmetric 3x3 matrices at once: ZmEigenMatrix::EigenStuff3, operation by operation, so
// the bits are the same. Each lane takes the steps that its own matrix needs and waits while others take theirs.

namespace zm {

/// Eight matrices, element by element: the upper triangles row by row, then the eigenvectors as columns.
struct EigenBlock {
    static constexpr int kCount = 8;

    float symmetric[6][kCount];
    float vectors[3][3][kCount];
};

namespace {

/// Vectors of floats with masks, and what they need beyond their own operators.
template <class L>
struct MaskedLanes;

template <>
struct MaskedLanes<SseLanes> {
    using L = SseLanes;

    static L Less(L a, L b) { return {_mm_cmplt_ps(a.v, b.v)}; }
    static L Equal(L a, L b) { return {_mm_cmpeq_ps(a.v, b.v)}; }
    static L And(L a, L b) { return {_mm_and_ps(a.v, b.v)}; }
    /// a without b.
    static L Without(L a, L b) { return {_mm_andnot_ps(b.v, a.v)}; }
    static L Select(L mask, L a, L b) { return {_mm_or_ps(_mm_and_ps(mask.v, a.v), _mm_andnot_ps(mask.v, b.v))}; }
    static bool Any(L mask) { return _mm_movemask_ps(mask.v) != 0; }
    static L Sqrt(L a) { return {_mm_sqrt_ps(a.v)}; }
    /// The length of (a, b), with squares in double.
    static L Length(L a, L b)
    {
        const DoubleLanes x(a), y(b);
        return (x * x + y * y).Sqrt().ToFloats();
    }
};

#ifdef __AVX2__
template <>
struct MaskedLanes<Avx2Lanes> {
    using L = Avx2Lanes;

    static L Less(L a, L b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_LT_OS)}; }
    static L Equal(L a, L b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_EQ_OQ)}; }
    static L And(L a, L b) { return {_mm256_and_ps(a.v, b.v)}; }
    static L Without(L a, L b) { return {_mm256_andnot_ps(b.v, a.v)}; }
    static L Select(L mask, L a, L b) { return {_mm256_blendv_ps(b.v, a.v, mask.v)}; }
    static bool Any(L mask) { return _mm256_movemask_ps(mask.v) != 0; }
    static L Sqrt(L a) { return {_mm256_sqrt_ps(a.v)}; }
    static L Length(L a, L b)
    {
        using Half = MaskedLanes<SseLanes>;
        return L::Halves(Half::Length(a.Low(), b.Low()), Half::Length(a.High(), b.High()));
    }
};
#endif

template <class L>
class EigenLanes {
public:
    /// Reduces matrices of the block, those from `first` on, to tridiagonal form: see ZmEigenMatrix::Tridiagonal.
    EigenLanes(const EigenBlock& block, int first)
    {
        const auto element = [&](int i) { return L::Load(block.symmetric[i] + first); };
        const L a = element(0), b = element(1), c = element(2), d = element(3), e = element(4), f = element(5);
        const L zero = L::Splat(0), one = L::Splat(1), length = M::Length(b, c), done = M::Equal(c, zero);
        const L y = M::Select(done, one, b / length), z = M::Select(done, zero, c / length);
        const L q = L::Splat(2) * y * e + z * (f - d);
        m_Diagonal[0] = a;
        m_Diagonal[1] = M::Select(done, d, d + z * q);
        m_Diagonal[2] = M::Select(done, f, f - z * q);
        m_Sub[0] = M::Select(done, b, length);
        m_Sub[1] = M::Select(done, e, e - y * q);
        m_Sub[2] = zero;
        const L last = M::Select(done, one, y * L::Splat(-1));
        const L vectors[3][3] = {{one, zero, zero}, {zero, y, z}, {zero, z, last}};
        memcpy(m_Vectors, vectors, sizeof(vectors));
    }

    /// ZmEigenMatrix::QLAlgorithm. Only NaNs fail to converge; their lanes take the other steps as well.
    void Solve()
    {
        for (int from = 0; from < 2; ++from) {
            L live = M::Equal(L::Splat(0), L::Splat(0));
            for (int iteration = 0; iteration < kMostIterations; ++iteration) {
                live = M::Without(live, IsNegligible(from));
                if (!M::Any(live)) {
                    break;
                }
                Iterate(from, live);
            }
        }
    }

    void Store(EigenBlock& block, int first) const
    {
        for (int i = 0; i < 9; ++i) {
            m_Vectors[i / 3][i % 3].Store(block.vectors[i / 3][i % 3] + first);
        }
    }

private:
    using M = MaskedLanes<L>;

    static constexpr int kMostIterations = 32;

    L IsNegligible(int i) const
    {
        const L sum = m_Diagonal[i].Abs() + m_Diagonal[i + 1].Abs();
        return M::Equal(sum + m_Sub[i].Abs(), sum);
    }
    static void Set(L mask, L& res, L value) { res = M::Select(mask, value, res); }

    /// What a QL iteration hands from step to step.
    struct Chase {
        L g, sine, cosine, p;
    };

    /// One QL iteration in the lanes of `live`, over the rows from `from` to the end of each lane's block.
    void Iterate(int from, L live)
    {
        const L none = L::Splat(0), shortBlocks = from == 0 ? M::And(live, IsNegligible(1)) : none;
        const L longBlocks = M::Without(live, shortBlocks);
        Chase chase = {ShiftedEnd(from, shortBlocks), L::Splat(1), L::Splat(1), none};
        L left = Step(1, longBlocks, chase);
        if (from == 0) {
            left = Step(0, M::Select(shortBlocks, shortBlocks, left), chase);
        }
        Set(left, m_Diagonal[from], m_Diagonal[from] - chase.p);
        Set(left, m_Sub[from], chase.g);
        Set(shortBlocks, m_Sub[1], none);
        Set(longBlocks, m_Sub[2], none);
    }

    L ShiftedEnd(int from, L shortBlocks) const
    {
        const L first = m_Diagonal[from], sub = m_Sub[from], zero = L::Splat(0);
        const L half = (m_Diagonal[from + 1] - first) / (L::Splat(2) * sub);
        const L root = M::Sqrt(half * half + L::Splat(1));
        const L end = M::Select(shortBlocks, m_Diagonal[1], m_Diagonal[2]);
        return end - first + sub / M::Select(M::Less(half, zero), half - root, half + root);
    }

    /// The step at row i in the lanes of `mask`. Returns those whose blocks do not split here.
    L Step(int i, L mask, Chase& chase)
    {
        const L f = chase.sine * m_Sub[i], b = chase.cosine * m_Sub[i], length = M::Length(f, chase.g);
        const L split = M::And(mask, M::Equal(length, L::Splat(0))), left = M::Without(mask, split);
        Set(mask, m_Sub[i + 1], length);
        const L sine = f / length, cosine = chase.g / length, g = m_Diagonal[i + 1] - chase.p;
        const L r = (m_Diagonal[i] - g) * sine + L::Splat(2) * cosine * b, p = sine * r;
        Set(mask, m_Diagonal[i + 1], M::Select(split, g, g + p));
        Set(left, chase.g, cosine * r - b);
        Set(left, chase.sine, sine);
        Set(left, chase.cosine, cosine);
        Set(left, chase.p, p);
        for (L(&row)[3] : m_Vectors) {
            const L first = row[i], second = row[i + 1];
            Set(left, row[i + 1], sine * first + cosine * second);
            Set(left, row[i], cosine * first - sine * second);
        }
        return left;
    }

    L m_Diagonal[3], m_Sub[3], m_Vectors[3][3];
};

/// Fills block.vectors.
template <class L>
void FindEigenvectors(EigenBlock& block)
{
    for (int i = 0; i < EigenBlock::kCount; i += L::kCount) {
        EigenLanes<L> lanes(block, i);
        lanes.Solve();
        lanes.Store(block, i);
    }
}

}  // namespace

/// Kernels for processors with AVX2.
namespace avx2 {

void FindEigenvectors(EigenBlock& block);

}  // namespace avx2
}  // namespace zm

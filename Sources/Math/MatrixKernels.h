#pragma once

#include "Math/DoubleLanes.h"
#include "Math/SinCos.h"

// Operations on whole matrices, over lanes that hold one row or two. A matrix is sixteen floats, row by row. All
// operands are read before the result is written, so the result may be one of them.

namespace zm {
namespace {

/// res = a * b as Zm3DMultiplyMatrix4 defines it: each row of the result combines the rows of a, weighted by a row of
/// b.
template <class L>
inline void FullProduct(float* res, const float* a, const float* b)
{
    const L a0 = L::Row(a), a1 = L::Row(a + 4), a2 = L::Row(a + 8), a3 = L::Row(a + 12);
    const int parts = 16 / L::kCount;
    L rows[parts];
    for (int i = 0; i < parts; ++i) {
        const L v = L::Load(b + i * L::kCount);
        rows[i] = (v.template SplatInRows<0>() * a0 + v.template SplatInRows<1>() * a1) +
                  (v.template SplatInRows<2>() * a2 + v.template SplatInRows<3>() * a3);
    }
    for (int i = 0; i < parts; ++i) {
        rows[i].Store(res + i * L::kCount);
    }
}

/// The left factor of a product of matrices with the fourth column (0, 0, 0, 1), which is not read. Rows without
/// translation add a zero, so the sums are the same whether a register holds one row or two.
template <class L>
struct AffineFactor {
    static constexpr int kParts = 16 / L::kCount;

    L row0, row1, row2, last[kParts];

    explicit AffineFactor(const float* a) : row0(L::Row(a)), row1(L::Row(a + 4)), row2(L::Row(a + 8))
    {
        for (int i = 0; i < kParts; ++i) {
            last[i] = L::LastRow(a + 12, i);
        }
    }

    void Times(float* res, const float* b) const
    {
        L rows[kParts];
        for (int i = 0; i < kParts; ++i) {
            const L v = L::Load(b + i * L::kCount);
            rows[i] = (v.template SplatInRows<0>() * row0 + v.template SplatInRows<1>() * row1) +
                      (v.template SplatInRows<2>() * row2 + last[i]);
        }
        for (int i = 0; i < kParts; ++i) {
            rows[i].WithAffineColumn(i).Store(res + i * L::kCount);
        }
    }
};

/// res = a * b as Zm3DMultiplyMatrix defines it.
template <class L>
inline void AffineProduct(float* res, const float* a, const float* b)
{
    AffineFactor<L>(a).Times(res, b);
}

/// Affine inverse: the adjugate over the determinant. Computed in double, where products of two floats are exact, so
/// cancellation costs no digits. Alongside the determinant, the magnitudes of its terms are summed: if the determinant
/// is negligible against them, or rounds to 0 as a float, nothing is written.
inline void AffineInverse(float* res, const float* m)
{
    // The fourth lanes hold no meaningful values.
    const DoubleLanes a(SseLanes::Load4(m)), b(SseLanes::Load4(m + 4)), c(SseLanes::Load4(m + 8)),
        yzxA = a.Yzx(), yzxB = b.Yzx(), yzxC = c.Yzx();

    // The columns of the adjugate are the cross products of the rows; here each of them begins with its z.
    const DoubleLanes bc = b * yzxC, cb = yzxB * c, crossBC = bc - cb, first = a.Zxy();
    const DoublePair sums = DoubleLanes::SumsOfThree(first * crossBC, first.Abs() * (bc.Abs() + cb.Abs()));
    const double det = sums.First(), size = __builtin_fabs(det), kRoundsToZero = 0x1p-150;
    if (int(size <= kRoundsToZero) | int(size < 1e-15 * sums.Second())) {
        return;
    }

    const DoubleLanes factor = DoubleLanes::Splat(1 / det);
    const SseLanes column0 = (crossBC * factor).ToFloats(), column1 = ((c * yzxA - yzxC * a) * factor).ToFloats(),
                   column2 = ((a * yzxB - yzxA * b) * factor).ToFloats().ClearW();
    const SseLanes zx = {_mm_unpacklo_ps(column0.v, column1.v)}, y = {_mm_unpackhi_ps(column0.v, column1.v)};
    const SseLanes row0 = SseLanes::Shuffle<2, 3, 1, 3>(zx, column2), row1 = SseLanes::Shuffle<0, 1, 2, 3>(y, column2),
                   row2 = SseLanes::Shuffle<0, 1, 0, 3>(zx, column2), origin = SseLanes::Load4(m + 12);
    const SseLanes moved =
        (origin.SplatInRows<0>() * row0 + origin.SplatInRows<1>() * row1) + origin.SplatInRows<2>() * row2;
    row0.Store4(res);
    row1.Store4(res + 4);
    row2.Store4(res + 8);
    (SseLanes::Splat(0) - moved).WithW1().Store4(res + 12);
}

/// Converts Euler angles X, Y, Z (the fourth lane is not used) to a rotation. Negligible angles count as 0, so that a
/// matrix built from rounding errors is exactly the identity.
inline void FromEulerAngles(float* res, SseLanes angles)
{
    const SinCosLanes<DoubleLanes> turns{DoubleLanes(angles)};
    const __m128 size = _mm_andnot_ps(_mm_set1_ps(-0.0f), angles.v), none = _mm_cmple_ps(size, _mm_set1_ps(1e-8f));
    float s[4], c[4];
    SseLanes{_mm_andnot_ps(none, turns.sine.ToFloats().v)}.Store4(s);
    SseLanes{_mm_or_ps(_mm_andnot_ps(none, turns.cosine.ToFloats().v), _mm_and_ps(none, _mm_set1_ps(1)))}.Store4(c);

    const float sasb = s[0] * s[1], casb = c[0] * s[1];
    SseLanes::Set(c[2] * c[1], s[2] * c[1], -s[1], 0).Store4(res);
    SseLanes::Set(c[2] * sasb - s[2] * c[0], s[2] * sasb + c[0] * c[2], s[0] * c[1], 0).Store4(res + 4);
    SseLanes::Set(c[2] * casb + s[2] * s[0], s[2] * casb - s[0] * c[2], c[1] * c[0], 0).Store4(res + 8);
    SseLanes::Set(0, 0, 0, 1).Store4(res + 12);
}

}  // namespace

namespace avx2 {

void FullProduct(float* res, const float* a, const float* b);
void AffineProduct(float* res, const float* a, const float* b);
void AffineInverse(float* res, const float* m);
void FromEulerAngles(float* res, float eax, float eay, float eaz);

}  // namespace avx2
}  // namespace zm

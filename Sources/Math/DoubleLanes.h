#pragma once

#include "Math/Lanes.h"

// Lanes of doubles, for results that single precision would spoil. The rules of Lanes.h apply here too.

namespace zm {
namespace {

/// The bits of a where the mask is set, else those of b; the mask is all ones or all zeros in each lane.
inline __m128d SelectBits(__m128d mask, __m128d a, __m128d b)
{
#ifdef __AVX2__
    return _mm_blendv_pd(b, a, mask);
#else
    return _mm_or_pd(_mm_and_pd(mask, a), _mm_andnot_pd(mask, b));
#endif
}

/// One double.
struct SingleDouble {
    __m128d v;

    static constexpr int kCount = 1;

    SingleDouble() = default;
    SingleDouble(__m128d r) : v(r) {}
    static SingleDouble Splat(double s) { return _mm_set_sd(s); }
    double First() const { return _mm_cvtsd_f64(v); }

    SingleDouble operator+(SingleDouble o) const { return _mm_add_sd(v, o.v); }
    SingleDouble operator-(SingleDouble o) const { return _mm_sub_sd(v, o.v); }
    SingleDouble operator*(SingleDouble o) const { return _mm_mul_sd(v, o.v); }
    SingleDouble operator/(SingleDouble o) const { return _mm_div_sd(v, o.v); }
    SingleDouble operator^(SingleDouble o) const { return _mm_xor_pd(v, o.v); }
    SingleDouble operator&(SingleDouble o) const { return _mm_and_pd(v, o.v); }
    SingleDouble operator|(SingleDouble o) const { return _mm_or_pd(v, o.v); }
    SingleDouble Abs() const { return _mm_andnot_pd(Splat(-0.0).v, v); }
    SingleDouble Sqrt() const { return _mm_sqrt_sd(v, v); }
    /// Whether the magnitudes of all lanes are below a limit.
    bool AllBelow(double limit) const { return First() < limit && First() > -limit; }
    /// Like SseLanes::Min: the second operand if either is NaN.
    static SingleDouble Min(SingleDouble a, SingleDouble b) { return _mm_min_sd(a.v, b.v); }
    /// All ones in the lanes where the comparison holds.
    static SingleDouble Less(SingleDouble a, SingleDouble b) { return _mm_cmplt_sd(a.v, b.v); }
    static SingleDouble Equal(SingleDouble a, SingleDouble b) { return _mm_cmpeq_sd(a.v, b.v); }
    /// a where the mask is set, else b.
    static SingleDouble Select(SingleDouble mask, SingleDouble a, SingleDouble b)
    {
        return SelectBits(mask.v, a.v, b.v);
    }
    static SingleDouble Load(const double* p) { return _mm_load_sd(p); }
    void Store(double* p) const { _mm_store_sd(p, v); }

    // --- Bit operations on the lanes as integers ---

    SingleDouble PlusOneBit() const { return Bits(_mm_add_epi64(_mm_castpd_si128(v), _mm_set_epi32(0, 0, 0, 1))); }
    /// All ones where bit 0 is set, else zero.
    SingleDouble MaskOfBit0() const
    {
        const __m128i bit = _mm_and_si128(_mm_castpd_si128(v), _mm_set_epi32(0, 0, 0, 1));
        return Bits(_mm_sub_epi64(_mm_setzero_si128(), bit));
    }
    /// The sign bit where bit 0 is set, else zero; the same for bit 1.
    SingleDouble SignOfBit0() const { return Bits(_mm_slli_epi64(_mm_castpd_si128(v), 63)); }
    SingleDouble SignOfBit1() const { return Bits(_mm_slli_epi64(_mm_castpd_si128(v), 62)) & Splat(-0.0); }

private:
    static SingleDouble Bits(__m128i r) { return _mm_castsi128_pd(r); }
};

/// Two doubles.
struct DoublePair {
    __m128d v;

    DoublePair() = default;
    DoublePair(__m128d r) : v(r) {}
    static DoublePair Splat(double s) { return _mm_set1_pd(s); }
    double First() const { return _mm_cvtsd_f64(v); }
    double Second() const { return _mm_cvtsd_f64(_mm_unpackhi_pd(v, v)); }

    DoublePair operator+(DoublePair o) const { return _mm_add_pd(v, o.v); }
    DoublePair operator-(DoublePair o) const { return _mm_sub_pd(v, o.v); }
    DoublePair operator*(DoublePair o) const { return _mm_mul_pd(v, o.v); }
    DoublePair operator/(DoublePair o) const { return _mm_div_pd(v, o.v); }
    DoublePair operator^(DoublePair o) const { return _mm_xor_pd(v, o.v); }
    DoublePair operator&(DoublePair o) const { return _mm_and_pd(v, o.v); }
    DoublePair operator|(DoublePair o) const { return _mm_or_pd(v, o.v); }
    DoublePair Sqrt() const { return _mm_sqrt_pd(v); }
    DoublePair Abs() const { return _mm_andnot_pd(_mm_set1_pd(-0.0), v); }
    bool AllBelow(double limit) const { return _mm_movemask_pd(_mm_cmplt_pd(Abs().v, _mm_set1_pd(limit))) == 3; }
    /// Like SseLanes::Min and Max: the second operand if either is NaN.
    static DoublePair Min(DoublePair a, DoublePair b) { return _mm_min_pd(a.v, b.v); }
    static DoublePair Max(DoublePair a, DoublePair b) { return _mm_max_pd(a.v, b.v); }
    /// All ones in the lanes where the comparison holds.
    static DoublePair Less(DoublePair a, DoublePair b) { return _mm_cmplt_pd(a.v, b.v); }
    static DoublePair Equal(DoublePair a, DoublePair b) { return _mm_cmpeq_pd(a.v, b.v); }
    /// a where the mask is set, else b.
    static DoublePair Select(DoublePair mask, DoublePair a, DoublePair b)
    {
        return _mm_or_pd(_mm_and_pd(mask.v, a.v), _mm_andnot_pd(mask.v, b.v));
    }
    /// The first elements of two pairs; the second elements.
    static DoublePair Firsts(DoublePair a, DoublePair b) { return _mm_unpacklo_pd(a.v, b.v); }
    static DoublePair Seconds(DoublePair a, DoublePair b) { return _mm_unpackhi_pd(a.v, b.v); }
    DoublePair Swapped() const { return _mm_shuffle_pd(v, v, 1); }
    static DoublePair Load(const double* p) { return _mm_loadu_pd(p); }
    void Store(double* p) const { _mm_storeu_pd(p, v); }

    DoublePair PlusOneBit() const { return Bits(_mm_add_epi64(_mm_castpd_si128(v), _mm_set_epi32(0, 1, 0, 1))); }
    DoublePair MaskOfBit0() const
    {
        const __m128i bit = _mm_and_si128(_mm_castpd_si128(v), _mm_set_epi32(0, 1, 0, 1));
        return Bits(_mm_sub_epi64(_mm_setzero_si128(), bit));
    }
    DoublePair SignOfBit0() const { return Bits(_mm_slli_epi64(_mm_castpd_si128(v), 63)); }
    DoublePair SignOfBit1() const { return Bits(_mm_slli_epi64(_mm_castpd_si128(v), 62)) & Splat(-0.0); }

private:
    static DoublePair Bits(__m128i r) { return _mm_castsi128_pd(r); }
};

#ifdef __AVX2__

/// Four doubles.
struct DoubleLanes {
    __m256d v;

    static constexpr int kCount = 4;

    DoubleLanes() = default;
    DoubleLanes(__m256d r) : v(r) {}
    explicit DoubleLanes(SseLanes r) : v(_mm256_cvtps_pd(r.v)) {}
    static DoubleLanes Splat(double s) { return _mm256_set1_pd(s); }

    DoubleLanes operator+(DoubleLanes o) const { return _mm256_add_pd(v, o.v); }
    DoubleLanes operator-(DoubleLanes o) const { return _mm256_sub_pd(v, o.v); }
    DoubleLanes operator*(DoubleLanes o) const { return _mm256_mul_pd(v, o.v); }
    DoubleLanes operator/(DoubleLanes o) const { return _mm256_div_pd(v, o.v); }
    DoubleLanes operator^(DoubleLanes o) const { return _mm256_xor_pd(v, o.v); }
    DoubleLanes operator&(DoubleLanes o) const { return _mm256_and_pd(v, o.v); }
    DoubleLanes operator|(DoubleLanes o) const { return _mm256_or_pd(v, o.v); }
    DoubleLanes Abs() const { return _mm256_andnot_pd(_mm256_set1_pd(-0.0), v); }
    bool AllBelow(double limit) const
    {
        return _mm256_movemask_pd(_mm256_cmp_pd(Abs().v, _mm256_set1_pd(limit), _CMP_LT_OQ)) == 15;
    }
    /// Whether all lanes are above a limit and not below those of another.
    static bool AllAbove(DoubleLanes a, double limit, DoubleLanes limits)
    {
        const __m256d above = _mm256_cmp_pd(a.v, _mm256_set1_pd(limit), _CMP_GT_OQ);
        return _mm256_movemask_pd(_mm256_and_pd(above, _mm256_cmp_pd(a.v, limits.v, _CMP_GE_OQ))) == 15;
    }
    static DoubleLanes Min(DoubleLanes a, DoubleLanes b) { return _mm256_min_pd(a.v, b.v); }
    static DoubleLanes Less(DoubleLanes a, DoubleLanes b) { return _mm256_cmp_pd(a.v, b.v, _CMP_LT_OQ); }
    static DoubleLanes Equal(DoubleLanes a, DoubleLanes b) { return _mm256_cmp_pd(a.v, b.v, _CMP_EQ_OQ); }
    static DoubleLanes Select(DoubleLanes mask, DoubleLanes a, DoubleLanes b)
    {
        return _mm256_blendv_pd(b.v, a.v, mask.v);
    }
    static DoubleLanes Load(const double* p) { return _mm256_loadu_pd(p); }
    void Store(double* p) const { _mm256_storeu_pd(p, v); }
    DoubleLanes Sqrt() const { return _mm256_sqrt_pd(v); }
    SseLanes ToFloats() const { return {_mm256_cvtpd_ps(v)}; }
    /// The first three lanes rotated, the fourth unchanged.
    DoubleLanes Yzx() const { return _mm256_permute4x64_pd(v, _MM_SHUFFLE(3, 0, 2, 1)); }
    DoubleLanes Zxy() const { return _mm256_permute4x64_pd(v, _MM_SHUFFLE(3, 1, 0, 2)); }
    /// The sum of all lanes: (0 and 2) plus (1 and 3).
    double Sum() const
    {
        const __m128d halves = _mm_add_pd(_mm256_castpd256_pd128(v), _mm256_extractf128_pd(v, 1));
        return _mm_cvtsd_f64(_mm_add_sd(halves, _mm_unpackhi_pd(halves, halves)));
    }
    /// The sums of the first three lanes of a and of b.
    static DoublePair SumsOfThree(DoubleLanes a, DoubleLanes b)
    {
        const __m256d even = _mm256_unpacklo_pd(a.v, b.v);
        const __m128d odd = _mm_unpackhi_pd(_mm256_castpd256_pd128(a.v), _mm256_castpd256_pd128(b.v));
        return _mm_add_pd(_mm_add_pd(_mm256_castpd256_pd128(even), _mm256_extractf128_pd(even, 1)), odd);
    }
    DoubleLanes PlusOneBit() const { return Bits(_mm256_add_epi64(_mm256_castpd_si256(v), _mm256_set1_epi64x(1))); }
    DoubleLanes MaskOfBit0() const
    {
        const __m256i bit = _mm256_and_si256(_mm256_castpd_si256(v), _mm256_set1_epi64x(1));
        return Bits(_mm256_sub_epi64(_mm256_setzero_si256(), bit));
    }
    DoubleLanes SignOfBit0() const { return Bits(_mm256_slli_epi64(_mm256_castpd_si256(v), 63)); }
    DoubleLanes SignOfBit1() const { return Bits(_mm256_slli_epi64(_mm256_castpd_si256(v), 62)) & Splat(-0.0); }

private:
    static DoubleLanes Bits(__m256i r) { return _mm256_castsi256_pd(r); }
};

#else

/// Four doubles.
struct DoubleLanes {
    DoublePair low, high;

    static constexpr int kCount = 4;

    DoubleLanes() = default;
    DoubleLanes(DoublePair l, DoublePair h) : low(l), high(h) {}
    explicit DoubleLanes(SseLanes r) : low(_mm_cvtps_pd(r.v)), high(_mm_cvtps_pd(_mm_movehl_ps(r.v, r.v))) {}
    static DoubleLanes Splat(double s) { return {DoublePair::Splat(s), DoublePair::Splat(s)}; }

    DoubleLanes operator+(DoubleLanes o) const { return {low + o.low, high + o.high}; }
    DoubleLanes operator-(DoubleLanes o) const { return {low - o.low, high - o.high}; }
    DoubleLanes operator*(DoubleLanes o) const { return {low * o.low, high * o.high}; }
    DoubleLanes operator/(DoubleLanes o) const { return {low / o.low, high / o.high}; }
    DoubleLanes operator^(DoubleLanes o) const { return {low ^ o.low, high ^ o.high}; }
    DoubleLanes operator&(DoubleLanes o) const { return {low & o.low, high & o.high}; }
    DoubleLanes operator|(DoubleLanes o) const { return {low | o.low, high | o.high}; }
    DoubleLanes Abs() const { return {low.Abs(), high.Abs()}; }
    bool AllBelow(double limit) const { return low.AllBelow(limit) && high.AllBelow(limit); }
    static bool AllAbove(DoubleLanes a, double limit, DoubleLanes limits)
    {
        const auto above = [limit](DoublePair p, DoublePair l) {
            return _mm_and_pd(_mm_cmpgt_pd(p.v, _mm_set1_pd(limit)), _mm_cmpge_pd(p.v, l.v));
        };
        return _mm_movemask_pd(_mm_and_pd(above(a.low, limits.low), above(a.high, limits.high))) == 3;
    }
    static DoubleLanes Min(const DoubleLanes& a, const DoubleLanes& b)
    {
        return {DoublePair::Min(a.low, b.low), DoublePair::Min(a.high, b.high)};
    }
    static DoubleLanes Less(const DoubleLanes& a, const DoubleLanes& b)
    {
        return {DoublePair::Less(a.low, b.low), DoublePair::Less(a.high, b.high)};
    }
    static DoubleLanes Equal(const DoubleLanes& a, const DoubleLanes& b)
    {
        return {DoublePair::Equal(a.low, b.low), DoublePair::Equal(a.high, b.high)};
    }
    static DoubleLanes Select(const DoubleLanes& mask, const DoubleLanes& a, const DoubleLanes& b)
    {
        return {DoublePair::Select(mask.low, a.low, b.low), DoublePair::Select(mask.high, a.high, b.high)};
    }
    static DoubleLanes Load(const double* p) { return {DoublePair::Load(p), DoublePair::Load(p + 2)}; }
    void Store(double* p) const
    {
        low.Store(p);
        high.Store(p + 2);
    }
    DoubleLanes Sqrt() const { return {low.Sqrt(), high.Sqrt()}; }
    SseLanes ToFloats() const { return {_mm_movelh_ps(_mm_cvtpd_ps(low.v), _mm_cvtpd_ps(high.v))}; }
    DoubleLanes Yzx() const { return {_mm_shuffle_pd(low.v, high.v, 1), _mm_shuffle_pd(low.v, high.v, 2)}; }
    DoubleLanes Zxy() const { return {_mm_shuffle_pd(high.v, low.v, 0), _mm_shuffle_pd(low.v, high.v, 3)}; }
    double Sum() const
    {
        const DoublePair halves = low + high;
        return halves.First() + halves.Second();
    }
    static DoublePair SumsOfThree(DoubleLanes a, DoubleLanes b)
    {
        return (DoublePair::Firsts(a.low, b.low) + DoublePair::Firsts(a.high, b.high)) +
               DoublePair::Seconds(a.low, b.low);
    }

    DoubleLanes PlusOneBit() const { return {low.PlusOneBit(), high.PlusOneBit()}; }
    DoubleLanes MaskOfBit0() const { return {low.MaskOfBit0(), high.MaskOfBit0()}; }
    DoubleLanes SignOfBit0() const { return {low.SignOfBit0(), high.SignOfBit0()}; }
    DoubleLanes SignOfBit1() const { return {low.SignOfBit1(), high.SignOfBit1()}; }
};

#endif

}  // namespace
}  // namespace zm

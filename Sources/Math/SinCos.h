#pragma once

#include "Math/DoubleLanes.h"
#include "Math/LargeAngles.h"

namespace zm {
namespace {

/// c[0] + c[1] z + ... + c[5] z^5 of a polynomial in z, summed in the order of all such polynomials here: two chains,
/// for the shorter time until the result is there.
template <class D>
D SixTerms(const double (&c)[6], D z)
{
    const D z2 = z * z;
    return (D::Splat(c[0]) + D::Splat(c[1]) * z) +
           ((D::Splat(c[2]) + D::Splat(c[3]) * z) + (D::Splat(c[4]) + D::Splat(c[5]) * z) * z2) * z2;
}

/// An angle as a whole number of quarter turns and a rest within an eighth of a turn.
template <class D>
struct ReducedAngle {
    D rest;
    D quarters;  ///< plus 1.5 * 2^52, which leaves the number in the low bits

    /// Subtracts in two steps (W. J. Cody and W. Waite, "Software Manual for the Elementary Functions", 1980): the
    /// first product is exact for angles below kLargeAngle.
    explicit ReducedAngle(D x)
    {
        const D rounder = D::Splat(kQuarterRounder);
        quarters = x * D::Splat(0.63661977236758134308) + rounder;
        const D count = quarters - rounder;
        rest = (x - count * D::Splat(1.57079632673412561417)) - count * D::Splat(6.07710050650619224932e-11);
        if (__builtin_expect(!x.AllBelow(kLargeAngle), 0)) {
            ReduceLarge(x);
        }
    }

private:
    __attribute__((cold, noinline)) void ReduceLarge(D x)
    {
        double angles[D::kCount], rests[D::kCount], counts[D::kCount];
        x.Store(angles);
        rest.Store(rests);
        quarters.Store(counts);
        for (int i = 0; i < D::kCount; ++i) {
            if (!(angles[i] < kLargeAngle && angles[i] > -kLargeAngle)) {
                ReduceLargeAngle(angles[i], rests[i], counts[i]);
            }
        }
        rest = D::Load(rests);
        quarters = D::Load(counts);
    }
};

/// Sines and cosines of angles up to 2^129 in lanes of double, with an error of about one unit in the last place.
/// Rounded to float they are the floats nearest to the true values for every angle that is a float: the program
/// Trust/Roundings compares them all. Only + - * and bits are used, so the results have the same bits on every
/// platform.
///
/// The coefficients are minimax polynomials in doubles (N. Brisebarre and S. Chevillard, "Efficient polynomial
/// L-infinity approximations", 2007), with relative errors of 4e-18 and 6e-17.
template <class D>
struct SinCosLanes {
    D sine, cosine;

    explicit SinCosLanes(D x)
    {
        const ReducedAngle<D> angle(x);
        const D r = angle.rest, z = r * r;
        // The sum would lose the sign of zero.
        const D s = (r + r * z * SixTerms(kSine, z)) | (r & D::Splat(-0.0)), c = D::Splat(1) + z * SixTerms(kCosine, z);

        // Odd quadrants swap sine and cosine; the sine is negative in quadrants 2 and 3, the cosine in 1 and 2.
        const D swap = (s ^ c) & angle.quarters.MaskOfBit0();
        sine = s ^ swap ^ angle.quarters.SignOfBit1();
        cosine = c ^ swap ^ angle.quarters.PlusOneBit().SignOfBit1();
    }

private:
    static constexpr double kSine[6] = {-0.1666666666666663,   0.008333333333321924,    -0.0001984126982946496,
                                        2.755731358502397e-06, -2.5050742812777328e-08, 1.5895974919456187e-10};
    static constexpr double kCosine[6] = {-0.4999999999999941,    0.04166666666648742,    -0.0013888888870563375,
                                          2.4801578640805042e-05, -2.755524120591199e-07, 2.06305722663503e-09};
};

/// The sine of an angle within a quarter of a turn, by one minimax polynomial with a relative error of 3e-19.
template <class D>
D QuarterSine(D r)
{
    const D z = r * r, z2 = z * z;
    const D low = (D::Splat(-0.16666666666666666) + D::Splat(0.008333333333333208) * z) +
                  (D::Splat(-0.00019841269841213362) + D::Splat(2.7557319211742467e-06) * z) * z2;
    const D high = (D::Splat(-2.5052106921356398e-08) + D::Splat(1.6058941886758937e-10) * z) +
                   (D::Splat(-7.643042946532008e-13) + D::Splat(2.7216717619864208e-15) * z) * z2;
    return r + r * z * (low + high * (z2 * z2));
}

/// Subtracts `count` half turns from an angle; the count may have a fraction.
template <class D>
D LessHalfTurns(D x, D count)
{
    return (x - count * D::Splat(3.1415926534682512)) - count * D::Splat(1.2154201013012384e-10);
}

constexpr double kHalfTurnsPerRadian = 0.3183098861837907;

/// Sines alone, in two thirds of the time. Rounded to float they are those of SinCosLanes.
template <class D>
D SineLanes(D x)
{
    if (__builtin_expect(!x.AllBelow(kLargeAngle), 0)) {
        return SinCosLanes<D>(x).sine;
    }
    const D rounder = D::Splat(kQuarterRounder), turns = x * D::Splat(kHalfTurnsPerRadian) + rounder;
    const D r = LessHalfTurns(x, turns - rounder);
    return (QuarterSine(r) | (r & D::Splat(-0.0))) ^ turns.SignOfBit0();
}

/// Cosines alone: sines of the angle to the nearest place where the cosine vanishes.
template <class D>
D CosineLanes(D x)
{
    if (__builtin_expect(!x.AllBelow(kLargeAngle), 0)) {
        return SinCosLanes<D>(x).cosine;
    }
    const D rounder = D::Splat(kQuarterRounder), half = D::Splat(0.5);
    const D turns = (x * D::Splat(kHalfTurnsPerRadian) + half) + rounder;
    return QuarterSine(LessHalfTurns(x, (turns - rounder) - half)) ^ turns.SignOfBit0();
}

/// SinCosLanes for one angle.
struct SinCos {
    double sine, cosine;

    explicit SinCos(double x)
    {
        const SinCosLanes<SingleDouble> lanes(SingleDouble::Splat(x));
        sine = lanes.sine.First();
        cosine = lanes.cosine.First();
    }
};

}  // namespace
}  // namespace zm

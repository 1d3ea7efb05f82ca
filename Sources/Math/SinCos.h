#pragma once

#include "Math/DoubleLanes.h"

#include <math.h>

namespace zm {
namespace {

__attribute__((cold, noinline)) double LibrarySine(double x)
{
    return ::sin(x);
}

__attribute__((cold, noinline)) double LibraryCosine(double x)
{
    return ::cos(x);
}

/// Sines and cosines of the angles in lanes of double: within 2^-34 of the true values for arguments up to 10^5, so
/// that rounding to float gives the nearest float except in rare near-ties. Uses only + - *, so the results are
/// bit-identical on every platform; beyond 10^5 the C library is used.
///
/// Reduces to an eighth of a turn in two steps (W. J. Cody and W. Waite), then evaluates polynomials with the
/// coefficients of the float functions of FreeBSD's msun library (B. Evans).
template <class D>
struct SinCosLanes {
    D sine, cosine;

    explicit SinCosLanes(D x)
    {
        if (__builtin_expect(!x.AllBelow(1e5), 0)) {
            sine = x.Map(LibrarySine);
            cosine = x.Map(LibraryCosine);
            return;
        }
        // Adding 1.5 * 2^52 rounds to an integer, which is then in the low bits.
        const D rounder = D::Splat(6755399441055744.0);
        const D shifted = x * D::Splat(0.63661977236758134308) + rounder;
        const D quarters = shifted - rounder;
        const D r = (x - quarters * D::Splat(1.57079632673412561417)) - quarters * D::Splat(6.07710050650619224932e-11);
        const D z = r * r;

        D s = z * D::Splat(2.7183114939898219064e-6) + D::Splat(-1.98393348360966317347e-4);
        D c = z * D::Splat(2.43904487962774090654e-5) + D::Splat(-1.38867637746099294692e-3);
        s = z * s + D::Splat(8.3333293858894631756e-3);
        c = z * c + D::Splat(4.16666233237390631894e-2);
        s = z * s + D::Splat(-0.166666666416265235595);
        c = z * c + D::Splat(-0.499999997251031003120);
        s = r + r * z * s;
        c = D::Splat(1) + z * c;

        // Odd quadrants swap sine and cosine; the sine is negative in quadrants 2 and 3, the cosine in 1 and 2.
        const D swap = (s ^ c) & shifted.MaskOfBit0();
        sine = s ^ swap ^ shifted.SignOfBit1();
        cosine = c ^ swap ^ shifted.PlusOneBit().SignOfBit1();
    }
};

/// The same for one angle.
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

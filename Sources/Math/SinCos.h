#pragma once

#include <emmintrin.h>
#include <math.h>

namespace zm {

/// Sine and cosine together, in double: within 2^-36 of the true values for arguments up to 10^5, so
/// that rounding them to float gives the nearest float but for rare near-ties. Made of + - * only, so
/// results are the same bits on every platform; beyond 10^5 the C library answers.
///
/// Reduction to a quarter turn in two steps (W. J. Cody and W. Waite), then polynomials for -pi/4 to
/// pi/4 with the coefficients of the float functions of FreeBSD's msun library (B. Evans). The two
/// polynomials run side by side in one register.
struct SinCos {
    double sine, cosine;

    explicit SinCos(double x)
    {
        if (!(x < 1e5 && x > -1e5)) {
            sine = ::sin(x);
            cosine = ::cos(x);
            return;
        }
        // Adding 1.5 * 2^52 rounds to a whole number, which then stands in the low bits.
        const double shifted = x * 0.63661977236758134308 + 6755399441055744.0;
        const double quarters = shifted - 6755399441055744.0;
        const int quadrant = _mm_cvtsi128_si32(_mm_castpd_si128(_mm_set_sd(shifted)));
        const double r = (x - quarters * 1.57079632673412561417) - quarters * 6.07710050650619224932e-11;

        const __m128d z = _mm_set1_pd(r * r);
        __m128d p = _mm_setr_pd(2.7183114939898219064e-6, 2.43904487962774090654e-5);
        p = _mm_add_pd(_mm_mul_pd(p, z), _mm_setr_pd(-1.98393348360966317347e-4, -1.38867637746099294692e-3));
        p = _mm_add_pd(_mm_mul_pd(p, z), _mm_setr_pd(8.3333293858894631756e-3, 4.16666233237390631894e-2));
        p = _mm_add_pd(_mm_mul_pd(p, z), _mm_setr_pd(-0.166666666416265235595, -0.499999997251031003120));
        const __m128d base = _mm_setr_pd(r, 1.0);
        __m128d both = _mm_add_pd(base, _mm_mul_pd(_mm_mul_pd(base, z), p));

        // Odd quadrants swap the two; the sine changes sign in quadrants 2 and 3, the cosine in 1 and 2.
        if (quadrant & 1) {
            both = _mm_shuffle_pd(both, both, 1);
        }
        const __m128i signs = _mm_slli_epi64(_mm_and_si128(_mm_set_epi32(0, quadrant + 1, 0, quadrant),
                                                           _mm_set_epi32(0, 2, 0, 2)), 62);
        both = _mm_xor_pd(both, _mm_castsi128_pd(signs));
        sine = _mm_cvtsd_f64(both);
        cosine = _mm_cvtsd_f64(_mm_unpackhi_pd(both, both));
    }
};

}  // namespace zm

#pragma once

#include "Math/SinCos.h"

// Tangents and arc functions in lanes of double: like SinCosLanes, they are within about one unit in the last place,
// and rounded to float they are the floats nearest to the true values for every float. Minimax polynomials as there.

namespace zm {
namespace {

template <class D>
D TangentLanes(D x)
{
    const SinCosLanes<D> turn(x);
    return turn.sine / turn.cosine;
}

constexpr double kHalfPi = 1.5707963267948966;
constexpr double kQuarterPi = kHalfPi / 2;          // times 1, 2, 3 and 4 exact
constexpr double kPiRest = 3.8981718325193755e-17;  // pi is so much more of itself than its double

template <class D>
D SignOf(D x)
{
    return x & D::Splat(-0.0);
}

/// The arc sine of a magnitude a up to 1, as factor * part. Above 1/2 it is pi/2 - 2 asin(sqrt((1 - a) / 2)).
template <class D>
struct ArcsineParts {
    D part;   ///< of a, or of the root
    D isBig;  ///< mask of the lanes above 1/2

    explicit ArcsineParts(D a)
    {
        isBig = D::Less(D::Splat(0.5), a);
        const D z = D::Select(isBig, D::Splat(0.5) - a * D::Splat(0.5), a * a);
        const D s = D::Select(isBig, z.Sqrt(), a), z3 = z * z * z, z6 = z3 * z3;
        part = s + s * z * (SixTerms(kLow, z) + SixTerms(kHigh, z) * z6);
    }

private:
    static constexpr double kLow[6] = {0.16666666666665408,  0.07500000000337102,  0.04464285682827013,
                                       0.030381959138981125, 0.022371758008737832, 0.017359705316372515};
    static constexpr double kHigh[6] = {0.013885230602036811, 0.012169240344549827, 0.0065278627078135835,
                                        0.019528546896973968, -0.0162246601671711,  0.03191252891867049};
};

template <class D>
D ArcsineLanes(D x)
{
    const ArcsineParts<D> parts(x.Abs());
    const D start = parts.isBig & D::Splat(kHalfPi), rest = start * D::Splat(kPiRest);
    const D add = D::Select(parts.isBig, parts.part * D::Splat(-2), parts.part);
    return (start + (add + rest)) ^ SignOf(x);
}

template <class D>
D ArccosineLanes(D x)
{
    const ArcsineParts<D> parts(x.Abs());
    const D s = parts.part ^ SignOf(x), isNegative = D::Less(x, D::Splat(0));
    const D start = D::Select(parts.isBig, isNegative & D::Splat(2 * kHalfPi), D::Splat(kHalfPi));
    const D add = s * D::Select(parts.isBig, D::Splat(2), D::Splat(-1));
    // Almost three times kPiRest: two results lie so close above halfway between floats that they need the push.
    return start + (add + start * D::Splat(1.12e-16));
}

/// The angle between the x axis and the direction (x, y) for lanes that are not negative, not both 0 and not both
/// infinite, times the lanes of `sign`, which hold 1 and -1, plus `turn` times pi/4. It is taken from the nearest of
/// the directions at 0, pi/4 and pi/2.
template <class D>
D DirectionLanes(D y, D x, D turn, D sign)
{
    const D isSteep = D::Less(x, y);
    const D less = D::Select(isSteep, x, y), more = D::Select(isSteep, y, x);
    const D isMiddle = D::Less(more * D::Splat(0.41421356237309503), less);
    const D t = D::Select(isMiddle, less - more, less) / D::Select(isMiddle, less + more, more);
    const D z = t * t, z3 = z * z * z, z6 = z3 * z3;
    static constexpr double kLow[6] = {-0.333333333333332,  0.1999999999995369,   -0.14285714280202147,
                                       0.11111110783640755, -0.09090897762034506, 0.07692060292843655};
    static constexpr double kHigh[6] = {-0.06663105046707299, 0.05847897710337764,  -0.0503934849678743,
                                        0.038065833609229535, -0.01790878342619539, 0};
    const D part = t + t * z * (SixTerms(kLow, z) + SixTerms(kHigh, z) * z6);

    const D octants = isMiddle & D::Splat(1);
    const D steepSign = D::Select(isSteep, D::Splat(0) - sign, sign);
    const D eighths = (turn + sign * (isSteep & D::Splat(2))) + steepSign * octants;
    return eighths * D::Splat(kQuarterPi) + (steepSign * part + eighths * D::Splat(kQuarterPi * kPiRest));
}

template <class D>
D ArctangentLanes(D x)
{
    const D a = x.Abs(), angle = DirectionLanes(a, D::Splat(1), D::Splat(0), D::Splat(1));
    // The one result that lies so close above halfway between floats that a double cannot tell: one bit more.
    const D isHalfway = D::Equal(a, D::Splat(0x1.1ad646p-4));
    return (angle | (isHalfway & D::Splat(0x1p-1074))) ^ SignOf(x);
}

/// Arc tangents of y / x in the quadrant of (x, y), between two doubles: the true angle lies between them. Zeros and
/// infinities have the angles of C's atan2.
template <class D>
struct ArctangentBounds {
    D low, high;

    ArctangentBounds(D y, D x)
    {
        // Infinity becomes a number so large that any float divided by it vanishes, but that divides itself.
        const D large = D::Splat(0x1p600), zero = D::Splat(0);
        const D rise = D::Min(large, y.Abs()), run = D::Min(large, x.Abs()), sign = SignOf(x) | D::Splat(1);
        const D isOrigin = D::Equal(rise + run, zero);
        const D angle = DirectionLanes(rise, D::Select(isOrigin, D::Splat(1), run), D::Splat(2) - (sign + sign), sign);
        const D error = angle * D::Splat(0x1p-49);
        low = (angle - error) ^ SignOf(y);
        high = (angle + error) ^ SignOf(y);
    }
};

}  // namespace
}  // namespace zm

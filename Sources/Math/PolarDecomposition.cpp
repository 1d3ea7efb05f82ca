#include "Math/PolarDecomposition.h"

#include <math.h>

#include <algorithm>

namespace zm {
namespace {

// Bound of the rounding error of the determinant, relative to the sum of its terms' magnitudes: four roundings.
constexpr double kUndecided = 0x1p-51;

// A singular matrix with stretches s1 >= s2 >= s3 counts as rank one if (s2 / s1)^2 is at most this: s2 is then lost in
// the rounding of s1 to a float, and the direction that it stretches in that of the rows.
constexpr double kRankOne = 0x1p-48;

constexpr double kOrthogonal = 1e-20;  // squared cosine between rows that counts as 0: a float resolves 6e-8
constexpr double kRightAngle = 1e-24;  // the same for axes, whose angles stay as they are
constexpr double kWellScaled = 1e-8;   // squared ratio of stretches down to which their squares keep enough digits
constexpr double kNoDirection = 1e-3;  // far below the squared length of a direction that belongs to one eigenvalue
constexpr int kMaxSweeps = 12;

constexpr Triple kUnitX(1, 0, 0), kUnitY(0, 1, 0), kUnitZ(0, 0, 1);

/// Orthonormal axes and what a matrix makes of them: rows[i] = axes[i] * m. Orthogonal rows are the rotated and
/// stretched axes.
struct AxesAndRows {
    Triple axes[3], rows[3];
};

/// A right-handed orthonormal basis with the unit vector v (T. Duff et al., "Building an Orthonormal Basis, Revisited",
/// 2017).
void CompleteBasis(const Triple& v, Triple& second, Triple& third)
{
    const double sign = copysign(1.0, v.z), a = -1 / (sign + v.z), b = v.x * v.y * a;
    second = {1 + sign * v.x * v.x * a, sign * b, -sign * v.x};
    third = {b, sign + v.y * v.y * a, -v.y};
}

/// cos(acos(x) / 3) for x from 0 to 1, to 1.6e-9. Chebyshev polynomials here and below.
double CosineOfThird(double x)
{
    const double x2 = x * x, x4 = x2 * x2;
    return (0.8660254053677887 + 0.16666639962375235 * x) + x2 * (-0.048105021730832566 + 0.024608831953335034 * x) +
           x4 * ((-0.015124763184433973 + 0.009420074598752139 * x) +
                 x2 * (-0.004972568181542555 + 0.0017909605628210557 * x) + x4 * -0.00030932018933526706);
}

/// sin(acos(x) / 3) for x from 0 to 1, to 5e-7 of itself.
double SineOfThird(double x)
{
    const double x2 = x * x;
    return Sqrt(1 - x) * ((0.49999978451911 - 0.038658697642528043 * x) +
                          x2 * ((0.015176093741191918 - 0.007644154099616518 * x) +
                                x2 * (0.0032532360587741137 - 0.00072190526727411 * x)));
}

/// A symmetric matrix.
struct Symmetric {
    double xx, yy, zz, xy, yz, zx;

    double Determinant() const
    {
        return xx * (yy * zz - yz * yz) - xy * (xy * zz - yz * zx) + zx * (xy * yz - yy * zx);
    }

    /// The direction that belongs to an eigenvalue known in part. Without the eigenvalue on the diagonal each row of
    /// the adjugate is a multiple of it but for an error in proportion to that of the eigenvalue; another product with
    /// the adjugate squares the error.
    Triple Direction(double eigenvalue) const
    {
        const double x = xx - eigenvalue, y = yy - eigenvalue, z = zz - eigenvalue;
        const double axy = yz * zx - xy * z, ayz = zx * xy - yz * x, azx = xy * yz - zx * y;
        const Triple adjugate[3] = {
            {y * z - yz * yz, axy, azx}, {axy, z * x - zx * zx, ayz}, {azx, ayz, x * y - xy * xy}};
        const double a = fabs(adjugate[0].x), b = fabs(adjugate[1].y), c = fabs(adjugate[2].z);
        const Triple& longest = adjugate[a > b ? (a > c ? 0 : 2) : (b > c ? 1 : 2)];
        return {Dot(adjugate[0], longest), Dot(adjugate[1], longest), Dot(adjugate[2], longest)};
    }
};

/// Orthonormal axes that are those of the stretch, as exactly as double allows if the stretches differ. `axes` stay as
/// they are if all stretches are equal.
void FindAxes(const Triple& m0, const Triple& m1, const Triple& m2, Triple (&axes)[3])
{
    // The square of the stretch, m * m^T, less its mean on the diagonal and scaled such that its eigenvalues are twice
    // the cosines of three angles 120 degrees apart.
    Symmetric s = {Dot(m0, m0), Dot(m1, m1), Dot(m2, m2), Dot(m0, m1), Dot(m1, m2), Dot(m2, m0)};
    const double mean = (s.xx + s.yy + s.zz) * (1.0 / 3), x = s.xx - mean, y = s.yy - mean, z = s.zz - mean;
    const double square = (x * x + y * y + z * z + 2 * (s.xy * s.xy + s.yz * s.yz + s.zx * s.zx)) * (1.0 / 6);
    if (square == 0) {
        return;
    }
    const double f = 1 / Sqrt(square);
    s = {x * f, y * f, z * f, s.xy * f, s.yz * f, s.zx * f};
    const double cosine = 0.5 * s.Determinant(), third = std::min(fabs(cosine), 1.0), sign = copysign(1.0, cosine);
    const double c = CosineOfThird(third), d = SineOfThird(third);

    // First the eigenvalue alone on its side of 0, then the other that is larger in magnitude.
    const Triple first = s.Direction(2 * sign * c), second = s.Direction(-sign * (c + 1.7320508075688772 * d));
    const double first2 = Dot(first, first), second2 = Dot(second, second), both = Dot(first, second);
    axes[0] = first2 < kNoDirection ? kUnitX : first * (1 / Sqrt(first2));
    if (both * both < kRightAngle * first2 * second2) {
        axes[1] = second * (1 / Sqrt(second2));
        axes[2] = Cross(axes[0], axes[1]);
    } else {
        CompleteBasis(axes[0], axes[1], axes[2]);  // the other two stretches are nearly equal
    }
}

bool AreOrthogonal(double pp, double qq, double pq)
{
    return !(pq * pq > kOrthogonal * pp * qq);
}

double Length(const Triple& v)
{
    return Sqrt(Dot(v, v));
}

/// Turns axes p and q such that their rows become orthogonal. Returns false if they are, against their own lengths: a
/// long third row says nothing about short ones.
template <int p, int q>
inline bool Turn(AxesAndRows& f)
{
    const double pp = Dot(f.rows[p], f.rows[p]), qq = Dot(f.rows[q], f.rows[q]), pq = Dot(f.rows[p], f.rows[q]);
    if (AreOrthogonal(pp, qq, pq)) {
        return false;
    }
    // The smaller of the two possible angles.
    const double half = 0.5 * (qq - pp), h = fabs(half) + Sqrt(half * half + pq * pq);
    const double factor = 1 / Sqrt(h * h + pq * pq), cosine = h * factor, sine = copysign(factor, half) * pq;
    for (Triple* side : {f.axes, f.rows}) {
        const Triple a = side[p], b = side[q];
        side[p] = a * cosine - b * sine;
        side[q] = a * sine + b * cosine;
    }
    return true;
}

void Orthogonalize(AxesAndRows& f)
{
    Turn<1, 2>(f);
    for (int sweep = 0; sweep < kMaxSweeps; ++sweep) {
        const bool turned1 = Turn<0, 1>(f), turned2 = Turn<0, 2>(f);
        if (!turned1 && !turned2) {
            break;
        }
        Turn<1, 2>(f);
    }
}

/// The factors, with the lengths and directions of the rows.
inline PolarFactors Factors(const Triple (&axes)[3], const Triple& lengths, const Triple& a, const Triple& b,
                            const Triple& c, bool mirrored)
{
    const Triple &u = axes[0], &v = axes[1], &w = axes[2];
    return {{u, v, w},
            {lengths.x, lengths.y, lengths.z},
            {a * u.x + b * v.x + c * w.x, a * u.y + b * v.y + c * w.y, a * u.z + b * v.z + c * w.z},
            mirrored};
}

/// For any matrix, from the coordinate axes: these keep what small rows say beside large ones, which squares lose.
PolarFactors DecomposeBadlyScaled(const Triple& m0, const Triple& m1, const Triple& m2)
{
    AxesAndRows f = {{kUnitX, kUnitY, kUnitZ}, {m0, m1, m2}};
    Orthogonalize(f);
    const double lengths[3] = {Length(f.rows[0]), Length(f.rows[1]), Length(f.rows[2])};
    const int shortest =
        lengths[0] < lengths[1] ? (lengths[0] < lengths[2] ? 0 : 2) : (lengths[1] < lengths[2] ? 1 : 2);
    const int next = (shortest + 1) % 3, last = (shortest + 2) % 3;
    const int longest = lengths[next] < lengths[last] ? last : next, middle = longest == next ? last : next;
    if (lengths[longest] == 0) {
        return {{kUnitX, kUnitY, kUnitZ}, {0, 0, 0}, {kUnitX, kUnitY, kUnitZ}, false};
    }
    // The cofactors of floats are exact up to one rounding each, however much cancels in them, so few determinants are
    // lost in rounding errors. Matrices without one count as not mirrored.
    const Triple c0 = Cross(m1, m2), c1 = Cross(m2, m0), c2 = Cross(m0, m1);
    const double determinant = Dot(m0, c0), norm = Dot(m0, m0) + Dot(m1, m1) + Dot(m2, m2);
    const double terms = fabs(m0.x * c0.x) + fabs(m0.y * c0.y) + fabs(m0.z * c0.z);
    const bool singular = fabs(determinant) <= kUndecided * terms;
    const bool rankOne = singular && Dot(c0, c0) + Dot(c1, c1) + Dot(c2, c2) <= kRankOne * norm * norm;

    const bool mirrored = !singular && determinant < 0;
    Triple directions[3] = {kUnitX, kUnitY, kUnitZ};
    const Triple& first = directions[longest] = f.rows[longest].Unit();
    if (rankOne) {
        CompleteBasis(first, directions[(longest + 1) % 3], directions[(longest + 2) % 3]);
    } else {
        directions[middle] = (f.rows[middle] - first * Dot(f.rows[middle], first)).Unit();
        directions[shortest] = Cross(directions[next], directions[last]) * (mirrored ? -1.0 : 1.0);
    }
    return Factors(f.axes, {lengths[0], lengths[1], lengths[2]}, directions[0], directions[1], directions[2], mirrored);
}

}  // namespace

PolarFactors DecomposePolar(const Triple& m0, const Triple& m1, const Triple& m2)
{
    AxesAndRows f = {{kUnitX, kUnitY, kUnitZ}, {m0, m1, m2}};
    FindAxes(m0, m1, m2, f.axes);
    for (int i = 0; i < 3; ++i) {
        f.rows[i] = m0 * f.axes[i].x + m1 * f.axes[i].y + m2 * f.axes[i].z;
    }
    double xx = Dot(f.rows[0], f.rows[0]), yy = Dot(f.rows[1], f.rows[1]), zz = Dot(f.rows[2], f.rows[2]);
    if (!AreOrthogonal(xx, yy, Dot(f.rows[0], f.rows[1])) || !AreOrthogonal(yy, zz, Dot(f.rows[1], f.rows[2])) ||
        !AreOrthogonal(zz, xx, Dot(f.rows[2], f.rows[0]))) {
        Orthogonalize(f);
        xx = Dot(f.rows[0], f.rows[0]);
        yy = Dot(f.rows[1], f.rows[1]);
        zz = Dot(f.rows[2], f.rows[2]);
    }
    if (std::min({xx, yy, zz}) <= kWellScaled * std::max({xx, yy, zz})) {
        return DecomposeBadlyScaled(m0, m1, m2);
    }
    const double x = Sqrt(xx), y = Sqrt(yy), z = Sqrt(zz);
    const Triple a = f.rows[0] * (1 / x), b = f.rows[1] * (1 / y), c = f.rows[2] * (1 / z);
    return Factors(f.axes, {x, y, z}, a, b, c, Dot(Cross(a, b), c) < 0);
}

}  // namespace zm

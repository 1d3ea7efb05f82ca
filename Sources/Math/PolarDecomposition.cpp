#include "Math/PolarDecomposition.h"

#include <math.h>
#include <stdint.h>
#include <string.h>

namespace zm {
namespace {

// Bound of the rounding error of the determinant, relative to the sum of its terms' magnitudes: four roundings.
constexpr double kUndecided = 0x1p-51;

// A singular matrix with stretches s1 >= s2 >= s3 counts as rank one if (s2 / s1)^2 is at most this: s2 is then lost in
// the rounding of s1 to a float.
//
// The limit must be above 2 * kUndecided, and is by a factor of four. A determinant s1 * s2 * s3 has terms that add up
// to at most s1^2 * s2, so where it is undecided, s3 is at most 2 * kUndecided * s1 (one kUndecided is that of the
// test, the other the determinant's own error). Completing the missing axes changes s2 by up to s1 * s3 / s2. This must
// not turn its sign, for the rotation would then be another.
constexpr double kRankOne = 0x1p-48;

constexpr int kMaxSteps = 30;
constexpr int kMaxSweeps = 12;

constexpr double kDiagonal = 1e-10;        // stretches are off by the square of what remains off the diagonal
constexpr double kSmallTurn = 1e-3;        // below this, truncated series are exact to double
constexpr double kNoise = 1e-17;           // off-diagonal rounding errors, relative to the whole
constexpr double kNearlyOrthogonal = 0.2;  // within this distance scaling gains nothing

// The squared norm exceeds 3 by at most six times the remaining error. A float resolves 6e-8.
constexpr double kConverged = 3e-9;

void Cross(double (&res)[3], const double (&a)[3], const double (&b)[3])
{
    res[0] = a[1] * b[2] - a[2] * b[1];
    res[1] = a[2] * b[0] - a[0] * b[2];
    res[2] = a[0] * b[1] - a[1] * b[0];
}

double Dot(const double (&a)[3], const double (&b)[3])
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

void MakeUnit(double (&v)[3])
{
    const double f = 1 / sqrt(Dot(v, v));
    for (double& component : v) {
        component *= f;
    }
}

/// Transposed adjugate: the inverse transpose times the determinant.
Matrix3 Cofactors(const Matrix3& m)
{
    Matrix3 c;
    Cross(c.m[0], m.m[1], m.m[2]);
    Cross(c.m[1], m.m[2], m.m[0]);
    Cross(c.m[2], m.m[0], m.m[1]);
    return c;
}

double SquareNorm(const Matrix3& m)
{
    return Dot(m.m[0], m.m[0]) + Dot(m.m[1], m.m[1]) + Dot(m.m[2], m.m[2]);
}

Matrix3 WeightedSum(double ka, const Matrix3& a, double kb, const Matrix3& b)
{
    Matrix3 r;
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            r.m[i][j] = ka * a.m[i][j] + kb * b.m[i][j];
        }
    }
    return r;
}

/// Whether the sign of the determinant is lost in the rounding errors of its terms. The cofactors of floats are exact
/// up to one rounding each, however much cancels in them, so few determinants are lost.
bool IsSingular(const Matrix3& m, const Matrix3& cofactors, double determinant)
{
    double terms = 0;
    for (int j = 0; j < 3; ++j) {
        terms += fabs(m.m[0][j] * cofactors.m[0][j]);
    }
    return fabs(determinant) <= kUndecided * terms;
}

constexpr Matrix3 kUnit = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};

/// Two unit vectors that complete the unit vector `basis.m[0]` to a right-handed basis.
void CompleteBasis(Matrix3& basis)
{
    const double(&v)[3] = basis.m[0];
    const int smallest = fabs(v[0]) <= fabs(v[1]) && fabs(v[0]) <= fabs(v[2]) ? 0 : fabs(v[1]) <= fabs(v[2]) ? 1 : 2;
    Cross(basis.m[1], v, kUnit.m[smallest]);
    MakeUnit(basis.m[1]);
    Cross(basis.m[2], v, basis.m[1]);
}

/// For m = sigma * u * v^T: a rotation that carries u, the only direction that m stretches, to v.
Matrix3 RotationOfRankOne(const Matrix3& m)
{
    int longest = 0;
    for (int i = 1; i < 3; ++i) {
        longest = Dot(m.m[i], m.m[i]) > Dot(m.m[longest], m.m[longest]) ? i : longest;
    }
    const double rowLength = sqrt(Dot(m.m[longest], m.m[longest]));
    Matrix3 from, to;
    for (int j = 0; j < 3; ++j) {
        to.m[0][j] = m.m[longest][j] / rowLength;
    }
    for (int i = 0; i < 3; ++i) {
        from.m[0][i] = Dot(m.m[i], to.m[0]);
    }
    MakeUnit(from.m[0]);
    CompleteBasis(from);
    CompleteBasis(to);
    Matrix3 r;
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            r.m[i][j] = from.m[0][i] * to.m[0][j] + from.m[1][i] * to.m[1][j] + from.m[2][i] * to.m[2][j];
        }
    }
    return r;
}

int64_t Bits(double x)
{
    int64_t bits;
    memcpy(&bits, &x, sizeof(bits));
    return bits;
}

/// The fourth root of cofactorNorm / (norm * det^2), to 6 percent: the factor that gives a matrix and its inverse
/// transpose the same norm. Newton's iteration converges to the same matrix for any positive factor, so this saves two
/// square roots and a division: the bits of a double are roughly its binary logarithm.
double ScaleFactor(double cofactorNorm, double norm, double det)
{
    const int64_t one = Bits(1);
    const int64_t bits = (Bits(cofactorNorm) >> 2) - (Bits(norm) >> 2) - (Bits(fabs(det)) >> 1) + one + (one >> 1);
    double factor;
    memcpy(&factor, &bits, sizeof(factor));
    return factor;
}

/// The orthogonal factor of a matrix that is not singular.
///
/// After a step no singular value is below 1, so the squared norm bounds the excess of the largest and with it the
/// remaining error. The sign is that of the last determinant, which is far from 0 and so not affected by rounding.
PolarFactors NewtonPolar(const Matrix3& m, double norm)
{
    PolarFactors res = {m, false};
    Matrix3& x = res.rotation;
    for (int step = 0; step < kMaxSteps; ++step) {
        const Matrix3 c = Cofactors(x);
        const double det = Dot(x.m[0], c.m[0]);
        // The norm alone does not decide: two large singular values and a tiny one may have the same norm.
        const bool nearlyOrthogonal = fabs(norm - 3) < kNearlyOrthogonal && fabs(det) > 1 - kNearlyOrthogonal;
        const double gamma = nearlyOrthogonal ? 1 : ScaleFactor(SquareNorm(c), norm, det);
        x = WeightedSum(0.5 * gamma, x, 0.5 / (gamma * det), c);
        norm = SquareNorm(x);
        res.mirrored = det < 0;
        if (!(norm - 3 > kConverged)) {
            break;
        }
    }
    return res;
}

/// The rotation that diagonalises a symmetric 2x2 block, by the smaller of the two possible angles.
struct JacobiAngle {
    double tangent, cosine, sine;

    /// `half` is half the difference of the diagonal elements, `off` the off-diagonal element, not 0.
    JacobiAngle(double half, double off)
    {
        if (fabs(off) < kSmallTurn * fabs(half)) {
            const double y = off / half, y2 = y * y;
            tangent = y * (0.5 - y2 * 0.125);
            const double t2 = tangent * tangent;
            cosine = 1 - t2 * (0.5 - t2 * 0.375);
            sine = tangent * cosine;
            return;
        }
        const double h = fabs(half) + sqrt(half * half + off * off), signedOff = half < 0 ? -off : off;
        tangent = signedOff / h;
        const double f = 1 / sqrt(h * h + off * off);
        cosine = h * f;
        sine = signedOff * f;
    }
};

/// One Jacobi rotation in the plane of axes p and q, which clears s[p][q]; r is the third axis. Returns false if that
/// element is negligible: against the two stretches of the plane, since a large third one says nothing about small
/// ones, or against `noise`, the rounding error of the whole matrix.
template <int p, int q, int r>
inline bool Rotate(Matrix3& s, Matrix3& axes, double noise)
{
    const double off = s.m[p][q];
    if (!(off * off > kDiagonal * kDiagonal * fabs(s.m[p][p] * s.m[q][q]) && fabs(off) > noise)) {
        return false;
    }
    const JacobiAngle a(0.5 * (s.m[q][q] - s.m[p][p]), off);
    s.m[p][p] -= a.tangent * off;
    s.m[q][q] += a.tangent * off;
    s.m[p][q] = s.m[q][p] = 0;
    const double rp = s.m[r][p], rq = s.m[r][q];
    s.m[r][p] = s.m[p][r] = a.cosine * rp - a.sine * rq;
    s.m[r][q] = s.m[q][r] = a.sine * rp + a.cosine * rq;
    for (double(&row)[3] : axes.m) {
        const double ap = row[p], aq = row[q];
        row[p] = a.cosine * ap - a.sine * aq;
        row[q] = a.sine * ap + a.cosine * aq;
    }
    return true;
}

}  // namespace

PolarFactors DecomposePolar(const Matrix3& m)
{
    const double norm = SquareNorm(m);
    if (norm == 0) {
        return {kUnit, false};
    }
    const Matrix3 c = Cofactors(m);
    const double det = Dot(m.m[0], c.m[0]);
    if (!IsSingular(m, c, det)) {
        return NewtonPolar(m, norm);
    }
    const double cofactorNorm = SquareNorm(c);
    if (cofactorNorm <= kRankOne * norm * norm) {
        return {RotationOfRankOne(m), false};
    }
    // The cofactors of a matrix of rank two have rank one and span exactly the missing directions. Adding them leaves
    // the other two stretches unchanged and makes the determinant positive.
    const Matrix3 completed = WeightedSum(1, m, sqrt(norm / cofactorNorm), c);
    return NewtonPolar(completed, SquareNorm(completed));
}

Matrix3 StretchOf(const Matrix3& m, const Matrix3& rotation)
{
    Matrix3 s;
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j <= i; ++j) {
            s.m[i][j] = s.m[j][i] = 0.5 * (Dot(m.m[i], rotation.m[j]) + Dot(m.m[j], rotation.m[i]));
        }
    }
    return s;
}

SpectralFactors DecomposeSymmetric(const Matrix3& symmetric)
{
    Matrix3 s = symmetric;
    SpectralFactors factors = {kUnit, {}};
    const double noise = kNoise * (fabs(s.m[0][0]) + fabs(s.m[1][1]) + fabs(s.m[2][2]));
    for (int sweep = 0; sweep < kMaxSweeps; ++sweep) {
        const bool xy = Rotate<0, 1, 2>(s, factors.axes, noise);
        const bool xz = Rotate<0, 2, 1>(s, factors.axes, noise);
        const bool yz = Rotate<1, 2, 0>(s, factors.axes, noise);
        if (!xy && !xz && !yz) {
            break;
        }
    }
    for (int i = 0; i < 3; ++i) {
        factors.values[i] = s.m[i][i];
    }
    return factors;
}

}  // namespace zm

#include "Math/PolarDecomposition.h"

#include <math.h>
#include <stdint.h>
#include <string.h>

namespace zm {
namespace {

// Four roundings of double: what the terms of the determinant and their sum may be off by, of all terms.
const double kUndecided = 0x1p-51;

// The second stretch against the first, both squared, below which a matrix without a third one counts as of rank one.
// A float resolves the square root of it, and from here on a third stretch that is lost in kUndecided is too small to
// turn the second one's sign when the missing axes are completed.
const double kRankOne = 0x1p-48;

const int kMaxSteps = 30;
const int kMaxSweeps = 12;

const double kDiagonal = 1e-10;        // errors of the stretches are the square of what is left beside the diagonal
const double kSmallTurn = 1e-3;        // below, series end before double can tell
const double kNoise = 1e-17;           // of the whole, what stands beside the diagonal by rounding alone
const double kNearlyOrthogonal = 0.2;  // from here on scaling gains nothing

// The square norm exceeds 3 by at most six times the error that is left. A float resolves 6e-8.
const double kConverged = 3e-9;

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

/// Whether the sign of the determinant is lost in the roundings of its terms. The cofactors of floats are exact but
/// for one rounding each, however much cancels out in them, so that few determinants are lost.
bool IsSingular(const Matrix3& m, const Matrix3& cofactors, double determinant)
{
    double terms = 0;
    for (int j = 0; j < 3; ++j) {
        terms += fabs(m.m[0][j] * cofactors.m[0][j]);
    }
    return fabs(determinant) <= kUndecided * terms;
}

const Matrix3 kUnit = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};

/// Two unit vectors that complete the unit vector `basis.m[0]` to a right-handed basis.
void CompleteBasis(Matrix3& basis)
{
    const double(&v)[3] = basis.m[0];
    const int smallest = fabs(v[0]) <= fabs(v[1]) && fabs(v[0]) <= fabs(v[2]) ? 0 : fabs(v[1]) <= fabs(v[2]) ? 1 : 2;
    Cross(basis.m[1], v, kUnit.m[smallest]);
    const double f = 1 / sqrt(Dot(basis.m[1], basis.m[1]));
    for (double& component : basis.m[1]) {
        component *= f;
    }
    Cross(basis.m[2], v, basis.m[1]);
}

/// A rotation that carries the one direction in which m = sigma * u * v^T stretches: u to v.
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
    const double f = 1 / sqrt(Dot(from.m[0], from.m[0]));
    for (double& component : from.m[0]) {
        component *= f;
    }
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
    memcpy(&bits, &x, sizeof bits);
    return bits;
}

/// The fourth root of cofactorNorm / (norm * det^2), to 6 percent: the factor that brings a matrix and the
/// transpose of its inverse to the same norm. Newton's iteration ends at the same matrix whichever positive
/// factor it is given, so two square roots and a division are saved: the bits of a double are its binary
/// logarithm, roughly.
double ScaleFactor(double cofactorNorm, double norm, double det)
{
    const int64_t one = Bits(1);
    const int64_t bits = (Bits(cofactorNorm) >> 2) - (Bits(norm) >> 2) - (Bits(fabs(det)) >> 1) + one + (one >> 1);
    double factor;
    memcpy(&factor, &bits, sizeof factor);
    return factor;
}

/// The orthogonal factor of a matrix that is not singular.
///
/// After a step no singular value is below 1, so the square norm tells by how much the largest exceeds it
/// and with that how near the end is. The sign is that of the last determinant, which no rounding can touch.
PolarFactors NewtonPolar(const Matrix3& m, double norm)
{
    PolarFactors res = {m, false};
    Matrix3& x = res.rotation;
    for (int step = 0; step < kMaxSteps; ++step) {
        const Matrix3 c = Cofactors(x);
        const double det = Dot(x.m[0], c.m[0]);
        // The norm alone is not enough: two large singular values and a tiny one may have it as well.
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

/// The rotation that makes a symmetric 2x2 block diagonal, by the smaller of the two angles.
struct JacobiAngle {
    double tangent, cosine, sine;

    /// `half` is half the difference of the diagonal elements, `off` the one beside them, not 0.
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

/// One Jacobi rotation in the plane of axes p and q, which clears s[p][q]; r is the third axis. Returns false
/// when there was nothing to clear: judged by the two stretches concerned, since a large third one says
/// nothing about small ones, and by `noise`, the rounding errors of the whole.
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
    // The cofactors of a matrix of rank two are one direction on each side, just the missing ones.
    // Adding them leaves the other two alone and makes the determinant positive.
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

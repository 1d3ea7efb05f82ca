#include "ZmMatrix.h"

#include "Math/Lanes.h"
#include "Math/Normalize.h"
#include "Math/SinCos.h"
#include "Platform/FeatureWord.h"

#include <math.h>

using namespace zm;

namespace {

const ZmMatrix kIdentity({1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0, 0});

const float kEpsilon = 1.1920929e-7f;  // 2^-23

// res = a * b in the sense of Zm3DMultiplyMatrix4. Each row of b is read before that row of res is
// written, and a is held in registers, so res may be either.
template <class L>
void FullProduct(float* res, const float* a, const float* b)
{
    const L a0 = L::Load4(a), a1 = L::Load4(a + 4), a2 = L::Load4(a + 8), a3 = L::Load4(a + 12);
    for (int i = 0; i < 16; i += 4) {
        const L x = L::Splat(b[i]), y = L::Splat(b[i + 1]), z = L::Splat(b[i + 2]), w = L::Splat(b[i + 3]);
        ((x * a0 + y * a1) + (z * a2 + w * a3)).Store4(res + i);
    }
}

// The same with fourth columns of (0, 0, 0, 1), whatever the factors hold there.
template <class L>
void AffineProduct(float* res, const float* a, const float* b)
{
    const L a0 = L::Load4(a).ClearW(), a1 = L::Load4(a + 4).ClearW(), a2 = L::Load4(a + 8).ClearW(),
            a3 = L::Load4(a + 12).WithW1();
    for (int i = 0; i < 12; i += 4) {
        const L x = L::Splat(b[i]), y = L::Splat(b[i + 1]), z = L::Splat(b[i + 2]);
        ((x * a0 + y * a1) + z * a2).Store4(res + i);
    }
    const L x = L::Splat(b[12]), y = L::Splat(b[13]), z = L::Splat(b[14]);
    ((x * a0 + y * a1) + (z * a2 + a3)).Store4(res + 12);
}

ZmVector Row(const ZmMatrix& m, int i)
{
    return {m[i][0], m[i][1], m[i][2]};
}

// Writes row i with a fourth column of 0, or 1 in row 3.
void SetRow(ZmMatrix& m, int i, const ZmVector& v)
{
    SseLanes::Set(v.x, v.y, v.z, i == 3 ? 1.0f : 0.0f).Store4(m[i]);
}

/// The 3x3 block of a rotation about a unit axis.
struct AxisRotation {
    ZmVector row0, row1, row2;

    AxisRotation(const ZmVector& axis, float angle)
    {
        const float x = axis.x, y = axis.y, z = axis.z;
        const SinCos turn(angle);
        const float c = float(turn.cosine), s = float(turn.sine), t = 1 - c;
        const float txy = t * x * y, txz = t * x * z, tyz = t * y * z;
        const float sx = s * x, sy = s * y, sz = s * z;
        row0 = {(1 - x * x) * c + x * x, txy - sz, txz + sy};
        row1 = {txy + sz, (1 - y * y) * c + y * y, tyz - sx};
        row2 = {txz - sy, tyz + sx, (1 - z * z) * c + z * z};
    }

    ZmVector Apply(const ZmVector& v) const
    {
        return {v.x * row0.x + v.y * row1.x + v.z * row2.x, v.x * row0.y + v.y * row1.y + v.z * row2.y,
                v.x * row0.z + v.y * row1.z + v.z * row2.z};
    }

    void Store(ZmMatrix& m, const ZmVector& translation) const
    {
        SetRow(m, 0, row0);
        SetRow(m, 1, row1);
        SetRow(m, 2, row2);
        SetRow(m, 3, translation);
    }
};

/// Sine and cosine of an Euler angle; angles next to nothing count as 0, so that a matrix built from
/// rounding errors is exactly the identity.
struct EulerTurn {
    float sine, cosine;

    explicit EulerTurn(float angle)
    {
        const SinCos turn(angle);
        const bool none = fabsf(angle) <= 1e-8f;
        sine = none ? 0.0f : float(turn.sine);
        cosine = none ? 1.0f : float(turn.cosine);
    }
};

}  // namespace

const ZmMatrix& ZmMatrix::Identity()
{
    return kIdentity;
}

int ZmMatrix::Compare(const ZmMatrix& other) const
{
    for (int i = 0; i < 16; ++i) {
        if (fabsf((*this)[i / 4][i % 4] - other[i / 4][i % 4]) > kEpsilon) {
            return 0;
        }
    }
    return 1;
}

void Zm3DMultiplyMatrix(ZmMatrix& res, const ZmMatrix& a, const ZmMatrix& b)
{
    (UseSse() ? AffineProduct<SseLanes> : AffineProduct<ScalarLanes>)(res[0], a[0], b[0]);
}

void Zm3DMultiplyMatrix4(ZmMatrix& res, const ZmMatrix& a, const ZmMatrix& b)
{
    (UseSse() ? FullProduct<SseLanes> : FullProduct<ScalarLanes>)(res[0], a[0], b[0]);
}

void Zm3DTransposeMatrix(ZmMatrix& res, const ZmMatrix& src)
{
    __m128 r0 = _mm_loadu_ps(src[0]), r1 = _mm_loadu_ps(src[1]), r2 = _mm_loadu_ps(src[2]), r3 = _mm_loadu_ps(src[3]);
    _MM_TRANSPOSE4_PS(r0, r1, r2, r3);
    _mm_storeu_ps(res[0], r0);
    _mm_storeu_ps(res[1], r1);
    _mm_storeu_ps(res[2], r2);
    _mm_storeu_ps(res[3], r3);
}

void Zm3DMatrixIdentity(ZmMatrix& m)
{
    m = kIdentity;
}

float Zm3DMatrixDeterminant(const ZmMatrix& m)
{
    return m[0][0] * (m[1][1] * m[2][2] - m[2][1] * m[1][2]) - m[0][1] * (m[1][0] * m[2][2] - m[2][0] * m[1][2]) +
           m[0][2] * (m[2][1] * m[1][0] - m[2][0] * m[1][1]);
}

namespace {

// The terms of the 3x3 determinant, summed by sign in double: their sum tells the determinant, their
// difference the magnitude against which it counts.
struct Determinant {
    double positive, negative;

    explicit Determinant(const ZmMatrix& m) : positive(0), negative(0)
    {
        const double a = m[0][0], b = m[0][1], c = m[0][2];
        Add(a * m[1][1] * m[2][2]);
        Add(b * m[1][2] * m[2][0]);
        Add(c * m[1][0] * m[2][1]);
        Add(-c * m[1][1] * m[2][0]);
        Add(-b * m[1][0] * m[2][2]);
        Add(-a * m[1][2] * m[2][1]);
    }

    void Add(double term)
    {
        positive += term >= 0 ? term : 0;
        negative += term >= 0 ? 0 : term;
    }

    float Value() const { return float(positive + negative); }
    bool IsNegligible() const { return fabs(Value() / (positive - negative)) < 1e-15; }
};

}  // namespace

void Zm3DInverseMatrix(ZmMatrix& res, const ZmMatrix& src)
{
    const Determinant determinant(src);
    const float det = determinant.Value();
    if (det == 0 || determinant.IsNegligible()) {
        return;
    }
    // Columns of the adjugate are the vector products of the rows.
    const ZmVector row0 = Row(src, 0), row1 = Row(src, 1), row2 = Row(src, 2), origin = Row(src, 3);
    const ZmVector col0 = Cross(row1, row2), col1 = Cross(row2, row0), col2 = Cross(row0, row1);
    const ZmVector r0(col0.x / det, col1.x / det, col2.x / det), r1(col0.y / det, col1.y / det, col2.y / det),
        r2(col0.z / det, col1.z / det, col2.z / det);
    SetRow(res, 0, r0);
    SetRow(res, 1, r1);
    SetRow(res, 2, r2);
    SetRow(res, 3, -(r0 * origin.x + r1 * origin.y + r2 * origin.z));
}

void Zm3DMatrixFromRotation(ZmMatrix& res, const ZmVector& axis, float angle)
{
    AxisRotation(Normalized(axis), angle).Store(res, {0, 0, 0});
}

void Zm3DMatrixFromRotationAndOrigin(ZmMatrix& res, const ZmVector& axis, const ZmVector& origin, float angle)
{
    const AxisRotation rotation(Normalized(axis), angle);
    rotation.Store(res, origin - rotation.Apply(origin));
}

ZmVector Rotate(const ZmVector& v, const ZmVector& axis, float angle)
{
    return AxisRotation(NormalizedExactly(axis), angle).Apply(v);
}

void Zm3DMatrixFromEulerAngles(ZmMatrix& res, float eax, float eay, float eaz)
{
    const EulerTurn a(eax), b(eay), c(eaz);
    const float sasb = a.sine * b.sine, casb = a.cosine * b.sine;
    SetRow(res, 0, {c.cosine * b.cosine, c.sine * b.cosine, -b.sine});
    SetRow(res, 1, {c.cosine * sasb - c.sine * a.cosine, c.sine * sasb + a.cosine * c.cosine, a.sine * b.cosine});
    SetRow(res, 2, {c.cosine * casb + c.sine * a.sine, c.sine * casb - a.sine * c.cosine, b.cosine * a.cosine});
    SetRow(res, 3, {0, 0, 0});
}

void Zm3DMatrixToEulerAngles(const ZmMatrix& m, float* eax, float* eay, float* eaz)
{
    const float kGimbal = 1.9073486e-6f;  // 2^-19
    const ZmVector r0 = NormalizedExactly(Row(m, 0)), r1 = NormalizedExactly(Row(m, 1)),
                   r2 = NormalizedExactly(Row(m, 2));
    const float cy = sqrtf(r0.x * r0.x + r0.y * r0.y);
    *eay = atan2f(-r0.z, cy);
    if (cy <= kGimbal) {
        *eax = atan2f(-r2.y, r1.y);
        *eaz = 0;
    } else {
        *eax = atan2f(r1.z, r2.z);
        *eaz = atan2f(r0.y, r0.x);
    }
}

void ZmInverseProject(const ZmMatrix& m, const Zm2DVector& p, float z, ZmVector* res)
{
    const float depthTerm = m[2][1] * m[1][0] - m[2][0] * m[1][1] + p.y * m[1][0] - p.x * m[1][1];
    const float constant = m[3][1] * m[1][0] - m[3][0] * m[1][1];
    const float x = (depthTerm * z + constant) / (m[0][1] * m[1][0] - m[0][0] * m[1][1]);
    // m[0][0] on purpose, not m[1][1]: see the header (MatrixTest, InverseProjectDividesByTheFirstScale).
    const float y = ((p.y - m[2][1]) * z - x * m[0][1] - m[3][1]) / m[0][0];
    *res = ZmVector(x, y, z);
}

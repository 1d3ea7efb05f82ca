#include "ZmMatrix.h"

#include "Math/MatrixFloats.h"
#include "Math/MatrixKernels.h"
#include "Math/Normalize.h"
#include "Platform/FeatureWord.h"
#include "ZmTrigonometry.h"

#include <math.h>

namespace zm {
namespace {

const ZmMatrix kIdentity({1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0, 0});

constexpr float kEqualWithin = 0x1p-23f;

// Writes row i with a fourth element of 0, or 1 in row 3.
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

void FromEulerAnglesSse(float* res, float eax, float eay, float eaz)
{
    FromEulerAngles(res, SseLanes::Set(eax, eay, eaz, 0));
}

}  // namespace
}  // namespace zm

const ZmMatrix& ZmMatrix::Identity()
{
    return zm::kIdentity;
}

int ZmMatrix::Compare(const ZmMatrix& other) const
{
    for (int i = 0; i < 16; ++i) {
        if (fabsf((*this)[i / 4][i % 4] - other[i / 4][i % 4]) > zm::kEqualWithin) {
            return 0;
        }
    }
    return 1;
}

void Zm3DMultiplyMatrix(ZmMatrix& res, const ZmMatrix& a, const ZmMatrix& b)
{
    zm::DispatchWide(zm::avx2::AffineProduct, zm::AffineProduct<zm::SseLanes>, zm::AffineProduct<zm::ScalarLanes>,
                     zm::FloatsOf(res), zm::FloatsOf(a), zm::FloatsOf(b));
}

void Zm3DMultiplyMatrix4(ZmMatrix& res, const ZmMatrix& a, const ZmMatrix& b)
{
    zm::DispatchWide(zm::avx2::FullProduct, zm::FullProduct<zm::SseLanes>, zm::FullProduct<zm::ScalarLanes>,
                     zm::FloatsOf(res), zm::FloatsOf(a), zm::FloatsOf(b));
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
    m = zm::kIdentity;
}

float Zm3DMatrixDeterminant(const ZmMatrix& m)
{
    return m[0][0] * (m[1][1] * m[2][2] - m[2][1] * m[1][2]) - m[0][1] * (m[1][0] * m[2][2] - m[2][0] * m[1][2]) +
           m[0][2] * (m[2][1] * m[1][0] - m[2][0] * m[1][1]);
}

void Zm3DInverseMatrix(ZmMatrix& res, const ZmMatrix& src)
{
    zm::DispatchAvx2(zm::avx2::AffineInverse, zm::AffineInverse, zm::FloatsOf(res), zm::FloatsOf(src));
}

void Zm3DMatrixFromRotation(ZmMatrix& res, const ZmVector& axis, float angle)
{
    zm::AxisRotation(zm::NormalizedApproximately(axis), angle).Store(res, {0, 0, 0});
}

void Zm3DMatrixFromRotationAndOrigin(ZmMatrix& res, const ZmVector& axis, const ZmVector& origin, float angle)
{
    const zm::AxisRotation rotation(zm::NormalizedApproximately(axis), angle);
    rotation.Store(res, origin - rotation.Apply(origin));
}

ZmVector Rotate(const ZmVector& v, const ZmVector& axis, float angle)
{
    return zm::AxisRotation(zm::NormalizedExactly(axis), angle).Apply(v);
}

void Zm3DMatrixFromEulerAngles(ZmMatrix& res, float eax, float eay, float eaz)
{
    zm::DispatchAvx2(zm::avx2::FromEulerAngles, zm::FromEulerAnglesSse, zm::FloatsOf(res), eax, eay, eaz);
}

void Zm3DMatrixToEulerAngles(const ZmMatrix& m, float* eax, float* eay, float* eaz)
{
    constexpr float kGimbal = 1.9073486e-6f;  // 2^-19
    const ZmVector r0 = zm::NormalizedExactly(zm::Row(m, 0)), r1 = zm::NormalizedExactly(zm::Row(m, 1)),
                   r2 = zm::NormalizedExactly(zm::Row(m, 2));
    const float cy = sqrtf(r0.x * r0.x + r0.y * r0.y);
    *eay = ZmAtan2(-r0.z, cy);
    if (cy <= kGimbal) {
        *eax = ZmAtan2(-r2.y, r1.y);
        *eaz = 0;
    } else {
        *eax = ZmAtan2(r1.z, r2.z);
        *eaz = ZmAtan2(r0.y, r0.x);
    }
}

void ZmInverseProject(const ZmMatrix& m, const Zm2DVector& p, float z, ZmVector* res)
{
    const float depthTerm = m[2][1] * m[1][0] - m[2][0] * m[1][1] + p.y * m[1][0] - p.x * m[1][1];
    const float constant = m[3][1] * m[1][0] - m[3][0] * m[1][1];
    const float x = (depthTerm * z + constant) / (m[0][1] * m[1][0] - m[0][0] * m[1][1]);
    // m[0][0] is intended, not m[1][1]: callers depend on it (ZmMatrixTest, InverseProjectDividesByTheFirstScale).
    const float y = ((p.y - m[2][1]) * z - x * m[0][1] - m[3][1]) / m[0][0];
    *res = ZmVector(x, y, z);
}

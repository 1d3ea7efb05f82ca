#include "ZmQuaternion.h"

#include "Math/Lanes.h"
#include "Math/MatrixFloats.h"
#include "Math/QuaternionRules.h"
#include "Math/SinCos.h"
#include "Platform/FeatureWord.h"
#include "ZmInline.h"
#include "ZmTrigonometry.h"

#include <math.h>

namespace zm {
namespace {

constexpr double kSmallestAngle = 0x1p-23;  // below it sin(x) / x is 1

ZmQuaternion Scaled(const ZmQuaternion& q, float s)
{
    return {q.x * s, q.y * s, q.z * s, q.w * s};
}

ZmQuaternion WeightedSum(float ka, const ZmQuaternion& a, float kb, const ZmQuaternion& b)
{
    return {ka * a.x + kb * b.x, ka * a.y + kb * b.y, ka * a.z + kb * b.z, ka * a.w + kb * b.w};
}

// Each row has the form (1 - s(yy + zz), s(xy - wz), s(xz + wy)): a row of the identity plus scale * (a + sign * b),
// where a and b are products of two components.
template <class L>
void QuaternionToMatrix(const ZmQuaternion& quat, float* m)
{
    const float s = 2.0f / ((quat.x * quat.x + quat.y * quat.y) + (quat.z * quat.z + quat.w * quat.w));
    const L q = L::Load4(&quat);

    const L a0 = q.template Pick<1, 0, 0>() * q.template Pick<1, 1, 2>();  // yy xy xz
    const L b0 = q.template Pick<2, 3, 3>() * q.template Pick<2, 2, 1>();  // zz wz wy
    const L a1 = q.template Pick<0, 0, 1>() * q.template Pick<1, 0, 2>();  // xy xx yz
    const L b1 = q.template Pick<3, 2, 3>() * q.template Pick<2, 2, 0>();  // wz zz wx
    const L a2 = q.template Pick<0, 1, 0>() * q.template Pick<2, 2, 0>();  // xz yz xx
    const L b2 = q.template Pick<3, 3, 1>() * q.template Pick<1, 0, 1>();  // wy wx yy

    const L row0 = L::Set(1, 0, 0, 0) + L::Set(-s, s, s, 0) * (a0 + L::Set(1, -1, 1, 0) * b0);
    const L row1 = L::Set(0, 1, 0, 0) + L::Set(s, -s, s, 0) * (a1 + L::Set(1, 1, -1, 0) * b1);
    const L row2 = L::Set(0, 0, 1, 0) + L::Set(s, s, -s, 0) * (a2 + L::Set(-1, 1, 1, 0) * b2);
    row0.ClearW().Store4(m);
    row1.ClearW().Store4(m + 4);
    row2.ClearW().Store4(m + 8);
    L::Set(0, 0, 0, 1).Store4(m + 12);
}

RotationRows ReadRows(const ZmMatrix& m)
{
    return {Row(m, 0), Row(m, 1), Row(m, 2)};
}

void WriteRows(ZmMatrix& m, const RotationRows& rows)
{
    SseLanes::Load3(&rows.row0).Store3(m[0]);
    SseLanes::Load3(&rows.row1).Store3(m[1]);
    SseLanes::Load3(&rows.row2).Store3(m[2]);
}

}  // namespace
}  // namespace zm

void ZmQuaternion::FromMatrix(const ZmMatrix& m, int matIsUnit, int restoreMat)
{
    const zm::RotationRows rows = zm::ReadRows(m);
    if (matIsUnit) {
        *this = zm::QuaternionFromRows(rows);
        return;
    }
    const zm::RotationRows unit = zm::OrthonormalRows(rows);
    if (!restoreMat) {
        // Writes to the caller's matrix although it is passed as const: callers rely on finding the orthonormal block
        // there.
        zm::WriteRows(const_cast<ZmMatrix&>(m), unit);
    }
    *this = zm::QuaternionFromRows(unit);
}

void ZmQuaternion::ToMatrix(ZmMatrix& m) const
{
    zm::Dispatch(zm::QuaternionToMatrix<zm::SseLanes>, zm::QuaternionToMatrix<zm::ScalarLanes>, *this, zm::FloatsOf(m));
}

void ZmQuaternion::FromRotation(const ZmVector& axis, float angle)
{
    const zm::SinCos half(angle * 0.5f);
    const float s = float(half.sine);
    *this = ZmQuaternion(s * axis.x, s * axis.y, s * axis.z, float(half.cosine));
}

void ZmQuaternion::ToRotation(ZmVector& axis, float& angle) const
{
    // 1 - w is intended, not 1 - w * w: callers depend on it (ZmQuaternionTest, ToRotationDividesByTheRootOfOneMinusW).
    const float f = 1.0f / sqrtf(1.0f - w);
    angle = 2.0f * ZmAcos(w);
    axis = ZmVector(x * f, y * f, z * f);
}

void ZmQuaternion::FromEulerAngles(float eax, float eay, float eaz)
{
    ZmMatrix m;
    Zm3DMatrixFromEulerAngles(m, eax, eay, eaz);
    FromMatrix(m, 1, 1);
}

void ZmQuaternion::ToEulerAngles(float* eax, float* eay, float* eaz) const
{
    ZmMatrix m;
    ToMatrix(m);
    Zm3DMatrixToEulerAngles(m, eax, eay, eaz);
}

void ZmQuaternion::Multiply(const ZmQuaternion& q)
{
    *this = Zm3DQuaternionMultiply(*this, q);
}

void ZmQuaternion::Normalize()
{
    const float n = sqrtf(x * x + y * y + z * z + w * w);
    *this = n == 0 ? ZmQuaternion() : zm::Scaled(*this, 1.0f / n);
}

ZmQuaternion Zm3DQuaternionFromMatrix(const ZmMatrix& m)
{
    return zm::QuaternionFromRows(zm::ReadRows(m));
}

ZmQuaternion Zm3DQuaternionConjugate(const ZmQuaternion& q)
{
    return {-q.x, -q.y, -q.z, q.w};
}

ZmQuaternion Zm3DQuaternionMultiply(const ZmQuaternion& a, const ZmQuaternion& b)
{
    return {a.w * b.x + a.x * b.w + a.y * b.z - a.z * b.y, a.w * b.y + a.y * b.w + a.z * b.x - a.x * b.z,
            a.w * b.z + a.z * b.w + a.x * b.y - a.y * b.x, a.w * b.w - a.x * b.x - a.y * b.y - a.z * b.z};
}

ZmQuaternion Zm3DQuaternionDivide(const ZmQuaternion& a, const ZmQuaternion& b)
{
    return Zm3DQuaternionMultiply(Zm3DQuaternionConjugate(b), a);
}

ZmQuaternion Ln(const ZmQuaternion& q)
{
    const float v = sqrtf(q.x * q.x + q.y * q.y + q.z * q.z);
    const float f = v > 0 ? ZmAtan2(v, q.w) / v : v;
    return {f * q.x, f * q.y, f * q.z, 0};
}

ZmQuaternion Exp(const ZmQuaternion& q)
{
    // In double, since the error of a large angle would be that of its sine, too.
    const double x = q.x, y = q.y, z = q.z, theta = sqrt(x * x + y * y + z * z);
    const zm::SinCos turn(theta);
    const float f = theta <= zm::kSmallestAngle ? 1.0f : float(turn.sine / theta);
    return {f * q.x, f * q.y, f * q.z, float(turn.cosine)};
}

ZmQuaternion LnDif(const ZmQuaternion& a, const ZmQuaternion& b)
{
    return Ln(Zm3DQuaternionDivide(b, a));
}

ZmQuaternion Slerp(float t, const ZmQuaternion& a, const ZmQuaternion& b)
{
    const float dot = (a.x * b.x + a.y * b.y) + (a.z * b.z + a.w * b.w);
    const float c = fabsf(dot);
    float ka = 1 - t, kb = t;
    if (1 - c > 0.01f) {
        // sin((1 - t) w) = sin w cos tw - cos w sin tw; w and sin w are computed from cos w.
        const double cosine = c, root = sqrt(1 - cosine), sine = root * sqrt(1 + cosine);
        const zm::SinCos part(t * zm::AcosFromRoot(cosine, root));
        const double ratio = part.sine / sine;
        ka = float(part.cosine - cosine * ratio);
        kb = float(ratio);
    }
    return zm::WeightedSum(ka, a, dot < 0 ? -kb : kb, b);
}

ZmQuaternion Squad(float t, const ZmQuaternion& q1, const ZmQuaternion& s1, const ZmQuaternion& s2,
                   const ZmQuaternion& q2)
{
    return Slerp(2 * t * (1 - t), Slerp(t, q1, q2), Slerp(t, s1, s2));
}

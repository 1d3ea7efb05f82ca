#include "ZmDecomposition.h"

#include "Math/Lanes.h"
#include "Math/MatrixFloats.h"
#include "Math/PolarDecomposition.h"
#include "Math/QuaternionRules.h"

#include <float.h>
#include <math.h>

#include <algorithm>
#include <utility>

namespace zm {
namespace {

ZmQuaternion QuaternionOf(const Triple& row0, const Triple& row1, const Triple& row2)
{
    return QuaternionFromRows({row0.ToFloats(), row1.ToFloats(), row2.ToFloats()});
}

/// The scalar products of the first three lanes of a and b, c and d, e and f.
SseLanes Dots(SseLanes a, SseLanes b, SseLanes c, SseLanes d, SseLanes e, SseLanes f)
{
    const SseLanes ab = a * b, cd = c * d, ef = e * f, xy = SseLanes::Shuffle<0, 1, 0, 1>(ab, cd);
    const SseLanes x = SseLanes::Shuffle<0, 2, 0, 0>(xy, ef), y = SseLanes::Shuffle<1, 3, 1, 1>(xy, ef);
    const SseLanes z = SseLanes::Shuffle<0, 2, 2, 2>(SseLanes::Shuffle<2, 2, 2, 2>(ab, cd), ef);
    return x + y + z;
}

/// OrthonormalRows and the scale in whole rows, with the same bits. Returns false if a row is so short that it would be
/// normalised exactly.
bool DecomposeBlock(const ZmMatrix& m, ZmQuaternion& quat, ZmVector& scale)
{
    const SseLanes row0 = SseLanes::Load4(m[0]), row1 = SseLanes::Load4(m[1]), row2 = SseLanes::Load4(m[2]);
    const SseLanes square0 = row0 * row0, square1 = row1 * row1, xy = SseLanes::Shuffle<0, 1, 0, 1>(square0, square1);
    const SseLanes squares = xy + xy.Spread<1, 0, 3, 2>() + SseLanes::Shuffle<2, 2, 2, 2>(square0, square1);
    if (SseLanes::LessEqualMask(SseLanes::Splat(FLT_MIN), squares) != 15) {
        return false;
    }
    const SseLanes factors = {_mm_rsqrt_ps(squares.v)};
    const SseLanes unit0 = row0 * factors.Spread<0, 0, 0, 0>(), unit1 = row1 * factors.Spread<2, 2, 2, 2>();
    const SseLanes unit2 =
        unit0.Pick<1, 2, 0>() * unit1.Pick<2, 0, 1>() - unit0.Pick<2, 0, 1>() * unit1.Pick<1, 2, 0>();
    Dots(unit0, row0, unit1, row1, unit2, row2).Store3(&scale);
    RotationRows unit;
    unit0.Store3(&unit.row0);
    unit1.Store3(&unit.row1);
    unit2.Store3(&unit.row2);
    quat = QuaternionFromRows(unit);
    return true;
}

ZmVector Lerp(const ZmVector& a, const ZmVector& b, float t)
{
    return a + (b - a) * t;
}

void ScaleRows(ZmMatrix& m, const ZmVector& scale)
{
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            m[i][j] *= scale[i];
        }
    }
}

void SetTranslation(ZmMatrix& m, const ZmVector& pos)
{
    m[3][0] = pos.x;
    m[3][1] = pos.y;
    m[3][2] = pos.z;
}

// Relative to 1, six float steps: the stretch of a rotation built in floats, or of a product of two such rotations.
constexpr double kSameStretch = 12 * 0x1p-24;
// Stretches that are 0 may come out as this, relative to the largest, by rounding in double.
constexpr double kNoStretch = 0x1p-50;

/// Makes stretches equal that differ by rounding only: all three, or the two that are nearest to each other. Otherwise
/// their axes would be noise.
void UniteStretches(double (&k)[3])
{
    const double largest = std::max({k[0], k[1], k[2]}), smallest = std::min({k[0], k[1], k[2]});
    if (largest - smallest <= kSameStretch * largest) {
        k[0] = k[1] = k[2] = 0.5 * (largest + smallest);
        return;
    }
    const double apart[3] = {fabs(k[1] - k[2]), fabs(k[2] - k[0]), fabs(k[0] - k[1])};
    const int odd = apart[0] < apart[1] && apart[0] < apart[2] ? 0 : apart[1] < apart[2] ? 1 : 2;
    double &a = k[(odd + 1) % 3], &b = k[(odd + 2) % 3];
    if (apart[odd] <= std::max(kSameStretch * std::max(a, b), kNoStretch * largest)) {
        a = b = 0.5 * (a + b);
    }
}

/// The shortest rotation from axis `i` to the unit vector d, with d[i] >= 0.
ZmQuaternion ShortestTurn(int i, const ZmVector& d)
{
    ZmVector axis(0, 0, 0);
    axis[i] = 1;
    const ZmVector normal = Cross(axis, d);
    ZmQuaternion q(normal.x, normal.y, normal.z, 1 + d[i]);
    q.Normalize();
    return q;
}

/// With two equal stretches only the axis of the third matters: it is mapped to the nearest coordinate axis, and the
/// third stretch takes that position.
ZmQuaternion SnuggleOneAxis(const ZmQuaternion& q, ZmVector& k, int odd)
{
    ZmMatrix m;
    q.ToMatrix(m);
    ZmVector d(m[0][odd], m[1][odd], m[2][odd]);
    int nearest = 0;
    for (int i = 1; i < 3; ++i) {
        nearest = fabsf(d[i]) > fabsf(d[nearest]) ? i : nearest;
    }
    if (d[nearest] < 0) {
        d = -d;
    }
    const float oddStretch = k[odd], otherStretch = k[(odd + 1) % 3];
    k = ZmVector(otherStretch, otherStretch, otherStretch);
    k[nearest] = oddStretch;
    return Zm3DQuaternionMultiply(Zm3DQuaternionConjugate(q), ShortestTurn(nearest, d));
}

/// The rotation nearest to q among the 24 of the cube: none or a half turn about a coordinate axis, a quarter turn or
/// half turn about a diagonal of a face, or a third of a turn about a diagonal of the cube. The nearest has the largest
/// scalar product with q. `k` goes with the axes.
ZmQuaternion NearestCubeRotation(const ZmQuaternion& q, ZmVector& k)
{
    const float c[4] = {q.x, q.y, q.z, q.w}, size[4] = {fabsf(q.x), fabsf(q.y), fabsf(q.z), fabsf(q.w)};
    // The largest two, the winners of a tournament.
    const int low = size[1] > size[0] ? 1 : 0, high = size[3] > size[2] ? 3 : 2;
    const bool isHigh = size[high] > size[low];
    const int lower = isHigh ? low : 1 - low, higher = isHigh ? 5 - high : high;
    const int first = isHigh ? high : low, second = size[higher] > size[lower] ? higher : lower;

    constexpr float kRootHalf = 0.70710678f;
    const float one = size[first], two = (one + size[second]) * kRootHalf;
    const float all = (size[0] + size[1] + size[2] + size[3]) * 0.5f;
    if (all > one && all > two) {
        const int negative = (c[0] < 0) + (c[1] < 0) + (c[2] < 0) + (c[3] < 0);
        k = negative % 2 == 0 ? ZmVector(k.y, k.z, k.x) : ZmVector(k.z, k.x, k.y);
        return {copysignf(0.5f, c[0]), copysignf(0.5f, c[1]), copysignf(0.5f, c[2]), copysignf(0.5f, c[3])};
    }
    float res[4] = {0, 0, 0, 0};
    if (two > one) {
        // A quarter turn exchanges the two axes about which it does not turn, a half turn those between which it does.
        const bool quarter = first == 3 || second == 3;
        const int axis = first + second - 3;
        std::swap(k[quarter ? (axis + 1) % 3 : first], k[quarter ? (axis + 2) % 3 : second]);
        res[first] = copysignf(kRootHalf, c[first]);
        res[second] = copysignf(kRootHalf, c[second]);
    } else {
        res[first] = copysignf(1.0f, c[first]);
    }
    return {res[0], res[1], res[2], res[3]};
}

}  // namespace
}  // namespace zm

void Zm3DDecomposeMatrix(const ZmMatrix& m, ZmQuaternion& quat, ZmVector& pos, ZmVector& scale)
{
    const zm::SseLanes translation = zm::SseLanes::Load4(m[3]);
    if (!zm::UseSse() || !zm::DecomposeBlock(m, quat, scale)) {
        const zm::RotationRows rows = {zm::Row(m, 0), zm::Row(m, 1), zm::Row(m, 2)}, unit = zm::OrthonormalRows(rows);
        quat = zm::QuaternionFromRows(unit);
        scale = ZmVector(Dot(unit.row0, rows.row0), Dot(unit.row1, rows.row1), Dot(unit.row2, rows.row2));
    }
    translation.Store3(&pos);
}

float Zm3DDecomposeMatrixTotal(const ZmMatrix& m, ZmQuaternion& quat, ZmVector& pos, ZmVector& scale,
                               ZmQuaternion& uRot)
{
    return Zm3DDecomposeMatrixTotalPtr(m, &quat, &pos, &scale, &uRot);
}

float Zm3DDecomposeMatrixTotalPtr(const ZmMatrix& m, ZmQuaternion* quat, ZmVector* pos, ZmVector* scale,
                                  ZmQuaternion* uRot)
{
    if (pos) {
        *pos = zm::Row(m, 3);
    }
    if (!quat && !scale && !uRot) {
        return 1;
    }
    zm::PolarFactors polar = zm::DecomposePolar(zm::Triple(m[0]), zm::Triple(m[1]), zm::Triple(m[2]));
    const float sign = polar.mirrored ? -1.0f : 1.0f;
    if (quat) {
        const zm::Triple(&r)[3] = polar.rotation;
        *quat = zm::QuaternionOf(r[0] * sign, r[1] * sign, r[2] * sign);
    }
    if (scale || uRot) {
        zm::UniteStretches(polar.stretches);
        ZmVector stretch(float(polar.stretches[0]), float(polar.stretches[1]), float(polar.stretches[2]));
        const zm::Triple &a = polar.axes[0], &b = polar.axes[1], &c = polar.axes[2];
        ZmQuaternion axes = zm::QuaternionOf({a.x, b.x, c.x}, {a.y, b.y, c.y}, {a.z, b.z, c.z});
        axes.Multiply(Zm3DQuaternionSnuggle(&axes, &stretch));
        axes.Normalize();
        if (scale) {
            *scale = stretch;
        }
        if (uRot) {
            *uRot = axes;
        }
    }
    return sign;
}

ZmQuaternion Zm3DQuaternionSnuggle(ZmQuaternion* q, ZmVector* k)
{
    if (k->x == k->y && k->y == k->z) {
        return Zm3DQuaternionConjugate(*q);
    }
    if (k->x == k->y || k->y == k->z || k->z == k->x) {
        return zm::SnuggleOneAxis(*q, *k, k->x == k->y ? 2 : k->y == k->z ? 0 : 1);
    }
    return zm::NearestCubeRotation(Zm3DQuaternionConjugate(*q), *k);
}

void ZmMatrix::RecomposeMatrix(const ZmVector* pos, const ZmVector* scale, const ZmQuaternion* quat)
{
    quat->ToMatrix(*this);
    zm::ScaleRows(*this, *scale);
    zm::SetTranslation(*this, *pos);
}

// The sign is left out on purpose: callers that need the reflection apply it themselves.
void ZmMatrix::RecomposeMatrixEx(const ZmVector* pos, const ZmVector* scale, const ZmQuaternion* quat,
                                 const ZmQuaternion* uRot, float)
{
    ZmMatrix rotation, axes, stretch = Identity();
    quat->ToMatrix(rotation);
    uRot->ToMatrix(axes);
    const ZmVector& k = *scale;
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            stretch[i][j] =
                axes[i][0] * k.x * axes[j][0] + axes[i][1] * k.y * axes[j][1] + axes[i][2] * k.z * axes[j][2];
        }
    }
    const ZmVector translation = *pos;  // a copy: `pos` may point into this matrix
    Zm3DMultiplyMatrix(*this, rotation, stretch);
    zm::SetTranslation(*this, translation);
}

void Zm3DInterpolateMatrix(float t, ZmMatrix& res, const ZmMatrix& a, const ZmMatrix& b)
{
    ZmQuaternion qa, qb;
    ZmVector pa, pb, sa, sb;
    Zm3DDecomposeMatrix(a, qa, pa, sa);
    Zm3DDecomposeMatrix(b, qb, pb, sb);
    ZmQuaternion q = Slerp(t, qa, qb);
    q.Normalize();
    const ZmVector pos = zm::Lerp(pa, pb, t), scale = zm::Lerp(sa, sb, t);
    res.RecomposeMatrix(&pos, &scale, &q);
}

void Zm3DInterpolateMatrixNoScale(float t, ZmMatrix& res, const ZmMatrix& a, const ZmMatrix& b)
{
    Zm3DInterpolateMatrix(t, res, a, b);
}

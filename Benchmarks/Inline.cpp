// One operation at a time by inline forms. This file and those of the peers are compiled once more for each column,
// with its flags, into a library of their own: there the linker merges only functions with equal flags.

#include "Columns.h"
#include "Each.h"
#include "Records.h"

#include "ZmBuilders.h"
#include "ZmInterpolation.h"
#include "ZmIntersect.h"

namespace bench {

#define ZM_DECLARE_PEER(name) extern const Contender k##name;
ZM_COLUMN_PEERS(ZM_DECLARE_PEER)

extern const Column ZM_COLUMN __attribute__((visibility("default")));

namespace {

const ZmMatrix& Matrix(const Operands::Matrices& operands, int i)
{
    return As<ZmMatrix>(operands, i);
}

const ZmQuaternion& Quaternion(const Operands::Quaternions& operands, int i)
{
    return As<ZmQuaternion>(operands, i);
}

/// The vectors of a task: the angles and the axis.
const ZmVector& First(const Operands& in, int i)
{
    return As<ZmVector>(in.euler, i);
}
const ZmVector& Second(const Operands& in, int i)
{
    return As<ZmVector>(in.axisAngle[i], 0);
}

void DotProduct(const Work& w)
{
    Each<float>(w, [](float& res, const Operands& in, int i) { res = Dot(First(in, i), Second(in, i)); });
}

void CrossProduct(const Work& w)
{
    Each<ZmVector>(w, [](ZmVector& res, const Operands& in, int i) { res = Cross(First(in, i), Second(in, i)); });
}

void Lengths(const Work& w)
{
    Each<float>(w, [](float& res, const Operands& in, int i) { res = Length(First(in, i)); });
}

void Normalize(const Work& w)
{
    Each<ZmVector>(w, [](ZmVector& res, const Operands& in, int i) { res = Normalized(First(in, i)); });
}

/// A call, since it asks the feature word.
void NormalizeApproximately(const Work& w)
{
    Each<ZmVector>(w, [](ZmVector& res, const Operands& in, int i) {
        res = First(in, i);
        res.Normalize();
    });
}

void Point(const Work& w)
{
    Each<ZmVector>(
        w, [](ZmVector& res, const Operands& in, int i) { res = TransformPoint(First(in, i), Matrix(in.a, i)); });
}

void RotatePoint(const Work& w)
{
    Each<ZmVector>(w,
                   [](ZmVector& res, const Operands& in, int i) { res = Rotate(Quaternion(in.p, i), First(in, i)); });
}

void LookAt(const Work& w)
{
    Each<ZmMatrix>(w, [](ZmMatrix& res, const Operands& in, int i) { res = ZmLookAt(First(in, i), Second(in, i)); });
}

void Perspective(const Work& w)
{
    Each<ZmMatrix>(w,
                   [](ZmMatrix& res, const Operands& in, int i) { res = ZmPerspective(1 + in.t[i], 1.5f, 0.1f, 100); });
}

void Product(const Work& w)
{
    Each<ZmMatrix>(w, [](ZmMatrix& res, const Operands& in, int i) { res = Matrix(in.b, i) * Matrix(in.a, i); });
}

void ProductOfAffine(const Work& w)
{
    Each<ZmMatrix>(
        w, [](ZmMatrix& res, const Operands& in, int i) { res = AffineProduct(Matrix(in.b, i), Matrix(in.a, i)); });
}

void AffineInverse(const Work& w)
{
    Each<ZmMatrix>(w, [](ZmMatrix& res, const Operands& in, int i) { res = Zm3DInverseAffine(Matrix(in.a, i)); });
}

void Determinants(const Work& w)
{
    Each<float>(w, [](float& res, const Operands& in, int i) { res = Determinant(Matrix(in.a, i)); });
}

void Transpose(const Work& w)
{
    EachWhole<ZmMatrix>(w, [](ZmMatrix& res, const Operands& in, int i) { res = Transposed(Matrix(in.a, i)); });
}

/// A call, since it chooses between SSE and AVX2.
void FromEuler(const Work& w)
{
    Each<ZmMatrix>(w, [](ZmMatrix& res, const Operands& in, int i) {
        Zm3DMatrixFromEulerAngles(res, in.euler[i][0], in.euler[i][1], in.euler[i][2]);
    });
}

void FromAxisAngle(const Work& w)
{
    Each<ZmMatrix>(
        w, [](ZmMatrix& res, const Operands& in, int i) { res = ZmRotation(Second(in, i), -in.axisAngle[i][3]); });
}

void Interpolate(const Work& w)
{
    Each<ZmMatrix>(w, [](ZmMatrix& res, const Operands& in, int i) {
        res = ZmInterpolate(Matrix(in.a, i), Matrix(in.b, i), in.t[i]);
    });
}

void FromMatrix(const Work& w)
{
    Each<ZmQuaternion>(
        w, [](ZmQuaternion& res, const Operands& in, int i) { res = ZmRotationQuaternion(Matrix(in.rotation, i)); });
}

void ToMatrix(const Work& w)
{
    Each<ZmMatrix>(w, [](ZmMatrix& res, const Operands& in, int i) { res = ZmRotation(Quaternion(in.p, i)); });
}

void UnitToMatrix(const Work& w)
{
    Each<ZmMatrix>(w, [](ZmMatrix& res, const Operands& in, int i) { res = ZmRotationOfUnit(Quaternion(in.p, i)); });
}

void Slerps(const Work& w)
{
    Each<ZmQuaternion>(w, [](ZmQuaternion& res, const Operands& in, int i) {
        res = SlerpExact(Quaternion(in.p, i), Quaternion(in.q, i), in.t[i]);
    });
}

/// A call.
void FrustumPlanesBox(const Work& w)
{
    const ZmFrustum frustum = FrustumOf(*static_cast<const QueryInputs*>(w.src));
    EachPair(w, [&](const QueryInputs& in, int i, int j) {
        return ZmIntersect::FrustumBox(frustum, Record<ZmBbox>(in.frustumBoxes[j]), Record<ZmMatrix>(in.matrices[i]));
    });
}

constexpr Entry kEntries[] = {
    {"Vectors/dot", DotProduct},
    {"Vectors/cross", CrossProduct},
    {"Vectors/length", Lengths},
    {"Vectors/normalize", Normalize},
    {"Vectors/normalize-approximately", NormalizeApproximately},
    {"Vectors/transform-point", Point},
    {"Vectors/rotate", RotatePoint},
    {"Vectors/look-at", LookAt},
    {"Vectors/perspective", Perspective},
    {"Matrices/product", Product},
    {"Matrices/affine-product", Product, "full"},
    {"Matrices/affine-product", ProductOfAffine},
    {"Matrices/affine-inverse", AffineInverse},
    {"Matrices/determinant", Determinants},
    {"Matrices/transpose", Transpose},
    {"Matrices/from-euler", FromEuler},
    {"Matrices/from-axis-angle", FromAxisAngle},
    {"Matrices/interpolate", Interpolate},
    {"Quaternions/from-matrix", FromMatrix},
    {"Quaternions/to-matrix", ToMatrix, "any length"},
    {"Quaternions/unit-to-matrix", UnitToMatrix},
    {"Quaternions/slerp", Slerps},
    {"Queries/frustum-planes-box", FrustumPlanesBox},
};

constexpr Contender kInline{"inline", Role::OURS, kEntries};

#define ZM_LIST_PEER(name) , &k##name
constexpr const Contender* kContenders[] = {&kInline ZM_COLUMN_PEERS(ZM_LIST_PEER)};

}  // namespace

constexpr Column ZM_COLUMN{ZM_COLUMN_NAME, ZM_COLUMN_GOAL, ZM_COLUMN_IS_WIDE, kContenders,
                           int(sizeof(kContenders) / sizeof(kContenders[0]))};

}  // namespace bench

// Bullet's LinearMath as packaged. Its matrices are rows of 3x3 blocks for column vectors: `aTransform` is the same
// transform as our `a`. Where a block is only decomposed, our rows serve as its rows.

#include "../Each.h"
#include "../QueryInputs.h"
#include "Parts.h"

#include <LinearMath/btAabbUtil2.h>
#include <LinearMath/btImplicitQRSVD.h>
#include <LinearMath/btPolarDecomposition.h>
#include <LinearMath/btTransform.h>

namespace bench {
namespace {

static_assert(sizeof(btTransform) == 64, "a btTransform has the size of our matrix");

inline btTransform TransformOf(const Work& w)
{
    btTransform res;
    res.setFromOpenGLMatrix(static_cast<const float*>(w.extra));
    return res;
}

struct Packed {
    float x, y, z;
};

template <int Bytes>
using Vertex = Slot<Packed, Bytes>;

inline Packed Pack(const btVector3& v)
{
    return {v.x(), v.y(), v.z()};
}

template <int Bytes>
void Points(const Work& w)
{
    const btTransform m = TransformOf(w);
    Transform<Vertex<Bytes>, Vertex<Bytes>>(w, [=](const Packed& v) { return Pack(m * btVector3(v.x, v.y, v.z)); });
}

void PointsInPlace(const Work& w)
{
    const btTransform m = TransformOf(w);
    TransformInPlace<Vertex<12>>(w, [=](const Packed& v) { return Pack(m * btVector3(v.x, v.y, v.z)); });
}

template <int Bytes>
void Rotates(const Work& w)
{
    const btMatrix3x3 m = TransformOf(w).getBasis();
    Transform<Vertex<Bytes>, Vertex<Bytes>>(w, [=](const Packed& v) { return Pack(m * btVector3(v.x, v.y, v.z)); });
}

void RotatesInPlace(const Work& w)
{
    const btMatrix3x3 m = TransformOf(w).getBasis();
    TransformInPlace<Vertex<12>>(w, [=](const Packed& v) { return Pack(m * btVector3(v.x, v.y, v.z)); });
}

void AffineProduct(const Work& w)
{
    Each<btTransform>(w, [](btTransform& res, const Operands& in, int i) {
        res = As<btTransform>(in.aTransform, i) * As<btTransform>(in.bTransform, i);
    });
}

void AffineInverse(const Work& w)
{
    Each<btTransform>(w, [](btTransform& res, const Operands& in, int i) {
        const btTransform& a = As<btTransform>(in.aTransform, i);
        const btMatrix3x3 block = a.getBasis().inverse();
        res = btTransform(block, block * -a.getOrigin());
    });
}

void Determinant(const Work& w)
{
    Each<float>(w,
                [](float& res, const Operands& in, int i) { res = As<btTransform>(in.a, i).getBasis().determinant(); });
}

void FromEuler(const Work& w)
{
    Each<btTransform>(w, [](btTransform& res, const Operands& in, int i) {
        res.getBasis().setEulerZYX(in.euler[i][0], in.euler[i][1], in.euler[i][2]);
        res.getOrigin().setZero();
    });
}

void FromAxisAngle(const Work& w)
{
    Each<btTransform>(w, [](btTransform& res, const Operands& in, int i) {
        const float* axis = in.axisAngle[i];
        res = btTransform(btQuaternion(btVector3(axis[0], axis[1], axis[2]), axis[3]));
    });
}

void FromMatrix(const Work& w)
{
    Each<btQuaternion>(w, [](btQuaternion& res, const Operands& in, int i) {
        As<btTransform>(in.rotation, i).getBasis().getRotation(res);
    });
}

void ToMatrix(const Work& w)
{
    Each<btTransform>(
        w, [](btTransform& res, const Operands& in, int i) { res = btTransform(As<btQuaternion>(in.p, i)); });
}

void Slerp(const Work& w)
{
    Each<btQuaternion>(w, [](btQuaternion& res, const Operands& in, int i) {
        res = As<btQuaternion>(in.p, i).slerp(As<btQuaternion>(in.q, i), in.t[i]);
    });
}

struct TakenApart {
    btVector3 scale;
    btQuaternion rotation;

    explicit TakenApart(const btTransform& m)
    {
        const btMatrix3x3& block = m.getBasis();
        scale = btVector3(block[0].length(), block[1].length(), block[2].length());
        btMatrix3x3 turn;
        for (int i = 0; i < 3; ++i) {
            turn[i] = block[i] / scale[i];
        }
        turn.getRotation(rotation);
    }
};

void Quick(const Work& w)
{
    Each<QuickParts>(w, [](QuickParts& res, const Operands& in, int i) {
        const TakenApart parts(As<btTransform>(in.a, i));
        CopyFloats(res.quat, parts.rotation, 4);
        CopyFloats(res.pos, As<btTransform>(in.a, i).getOrigin(), 3);
        CopyFloats(res.scale, parts.scale, 3);
    });
}

void Interpolate(const Work& w)
{
    Each<btTransform>(w, [](btTransform& res, const Operands& in, int i) {
        const btTransform& a = As<btTransform>(in.a, i);
        const btTransform& b = As<btTransform>(in.b, i);
        const TakenApart from(a), to(b);
        const btVector3 scale = from.scale.lerp(to.scale, in.t[i]);
        btMatrix3x3 block(from.rotation.slerp(to.rotation, in.t[i]));
        for (int row = 0; row < 3; ++row) {
            block[row] *= scale[row];
        }
        res = btTransform(block, a.getOrigin().lerp(b.getOrigin(), in.t[i]));
    });
}

void Polar(const Work& w)
{
    Each<btQuaternion>(w, [](btQuaternion& res, const Operands& in, int i) {
        btMatrix3x3 turn, stretch;
        polarDecompose(As<btTransform>(in.stretched, i).getBasis(), turn, stretch);
        turn.getRotation(res);
    });
}

/// Not counted: stops at errors of 1e-5, where the others reach 5e-7.
void PolarBySvd(const Work& w)
{
    Each<btQuaternion>(w, [](btQuaternion& res, const Operands& in, int i) {
        btMatrix3x3 left, right;
        btVector3 scale;
        singularValueDecomposition(As<btTransform>(in.stretched, i).getBasis(), left, scale, right);
        (left * right.transpose()).getRotation(res);
    });
}

inline void StoreFull(FullParts& res, const btQuaternion& turn, const btVector3& origin, const btVector3& scale,
                      const btQuaternion& axes)
{
    CopyFloats(res.quat, turn, 4);
    CopyFloats(res.pos, origin, 3);
    CopyFloats(res.scale, scale, 3);
    CopyFloats(res.uRot, axes, 4);
}

/// Not counted, for the same reason.
void TotalBySvd(const Work& w)
{
    Each<FullParts>(w, [](FullParts& res, const Operands& in, int i) {
        const btTransform& m = As<btTransform>(in.stretched, i);
        btMatrix3x3 left, right;
        btVector3 scale;
        singularValueDecomposition(m.getBasis(), left, scale, right);
        btQuaternion turn, axes;
        (left * right.transpose()).getRotation(turn);
        left.getRotation(axes);
        StoreFull(res, turn, m.getOrigin(), scale, axes);
    });
}

void Total(const Work& w)
{
    Each<FullParts>(w, [](FullParts& res, const Operands& in, int i) {
        const btTransform& m = As<btTransform>(in.stretched, i);
        btMatrix3x3 turning, stretch, frame;
        polarDecompose(m.getBasis(), turning, stretch);
        stretch.diagonalize(frame, 1e-6f, 20);
        btQuaternion turn, axes;
        turning.getRotation(turn);
        frame.getRotation(axes);
        // Bullet stretches after rotating, we before.
        StoreFull(res, turn, m.getOrigin(), {stretch[0][0], stretch[1][1], stretch[2][2]}, turn * axes);
    });
}

/// Converts our rows in a btTransform: only the fourth column differs from a ZmMatrix.
void FromRows(float* matrix)
{
    matrix[3] = matrix[7] = matrix[11] = 0;
    matrix[15] = 1;
}

void FromTransform(float* matrix)
{
    FromRows(matrix);
    TransposeBlock(matrix);
}

void BoxBox(const Work& w)
{
    EachPair(w, [](const QueryInputs& in, int i, int j) {
        const auto* a = &As<btVector3>(in.wideBoxes[i], 0);
        const auto* b = &As<btVector3>(in.wideOthers[j], 0);
        return TestAabbAgainstAabb2(a[0], a[1], b[0], b[1]);
    });
}

void RayBox(const Work& w)
{
    EachPair(w, [](const QueryInputs& in, int i, int j) {
        const float* ray = in.rays[i];
        const btVector3 inverse(1 / ray[3], 1 / ray[4], 1 / ray[5]);
        const unsigned signs[3] = {inverse.x() < 0, inverse.y() < 0, inverse.z() < 0};
        btScalar t;
        return btRayAabb2({ray[0], ray[1], ray[2]}, inverse, signs, &As<btVector3>(in.wideBoxes[j], 0), t, 0, 1e30f);
    });
}

constexpr Entry kEntries[] = {
    {"Points/12to12", Points<12>},
    {"Points/12to12-in-place", PointsInPlace},
    {"Points/32to32", Points<32>},
    {"Rotates/12to12", Rotates<12>},
    {"Rotates/12to12-in-place", RotatesInPlace},
    {"Rotates/32to32", Rotates<32>},
    {"Matrices/affine-product", AffineProduct, "", FromTransform},
    {"Matrices/affine-inverse", AffineInverse, "", FromTransform},
    {"Matrices/determinant", Determinant},
    {"Matrices/from-euler", FromEuler, "", FromTransform},
    {"Matrices/from-axis-angle", FromAxisAngle, "", FromRows},
    {"Matrices/interpolate", Interpolate, "", FromRows},
    {"Quaternions/from-matrix", FromMatrix},
    {"Quaternions/to-matrix", ToMatrix, "", FromRows},
    {"Quaternions/unit-to-matrix", ToMatrix, "", FromRows},
    {"Quaternions/slerp", Slerp},
    {"Decompose/quick", Quick},
    {"Decompose/polar", Polar},
    {"Decompose/polar", PolarBySvd, "SVD", nullptr, true},
    {"Decompose/total", Total},
    {"Decompose/total", TotalBySvd, "SVD", nullptr, true},
    {"Queries/box-box", BoxBox},
    {"Queries/ray-box", RayBox},
};

}  // namespace

extern const Contender kBullet;
constexpr Contender kBullet{"Bullet", Role::PEER, kEntries};

}  // namespace bench

// Eigen, fixed-size types.

#include "../Each.h"
#include "Parts.h"

#include <Eigen/Dense>

namespace bench {
namespace {

using Eigen::Affine3f;
using Eigen::Matrix3f;
using Eigen::Matrix4f;
using Eigen::Quaternionf;
using Eigen::Vector3f;
using Eigen::Vector4f;

template <int Bytes>
using Vertex = Slot<Vector3f, Bytes>;
using Vertex4 = Slot<Vector4f, 16>;

template <int Bytes>
void Points(const Work& w)
{
    const Affine3f m = As<Affine3f>(w.extra, 0);
    Transform<Vertex<Bytes>, Vertex<Bytes>>(w, [=](const Vector3f& v) -> Vector3f { return m * v; });
}

void PointsInPlace(const Work& w)
{
    const Affine3f m = As<Affine3f>(w.extra, 0);
    TransformInPlace<Vertex<12>>(w, [=](const Vector3f& v) -> Vector3f { return m * v; });
}

template <int Bytes>
void Points4(const Work& w)
{
    const Matrix4f m = As<Matrix4f>(w.extra, 0);
    Transform<Vertex4, Vertex<Bytes>>(w, [=](const Vector3f& v) -> Vector4f { return m * v.homogeneous(); });
}

void FourToFour(const Work& w)
{
    const Matrix4f m = As<Matrix4f>(w.extra, 0);
    Transform<Vertex4, Vertex4>(w, [=](const Vector4f& v) -> Vector4f { return m * v; });
}

template <int Bytes>
void Rotates(const Work& w)
{
    const Matrix3f m = As<Affine3f>(w.extra, 0).linear();
    Transform<Vertex<Bytes>, Vertex<Bytes>>(w, [=](const Vector3f& v) -> Vector3f { return m * v; });
}

void RotatesInPlace(const Work& w)
{
    const Matrix3f m = As<Affine3f>(w.extra, 0).linear();
    TransformInPlace<Vertex<12>>(w, [=](const Vector3f& v) -> Vector3f { return m * v; });
}

/// All points as the columns of one matrix.
template <int Bytes, class T, class Float>
inline auto Columns(T* data, int count)
{
    using Matrix = std::conditional_t<std::is_const_v<T>, const Eigen::Matrix3Xf, Eigen::Matrix3Xf>;
    return Eigen::Map<Matrix, 0, Eigen::OuterStride<Bytes / 4>>(static_cast<Float*>(data), 3, count);
}

template <int Bytes>
void PointColumns(const Work& w)
{
    const Affine3f m = As<Affine3f>(w.extra, 0);
    const auto src = Columns<Bytes, const void, const float>(w.src, w.count);
    auto dst = Columns<Bytes, void, float>(w.dst, w.count);
    dst = m.linear().lazyProduct(src).colwise() + m.translation();
}

template <int Bytes>
void RotateColumns(const Work& w)
{
    const Matrix3f m = As<Affine3f>(w.extra, 0).linear();
    const auto src = Columns<Bytes, const void, const float>(w.src, w.count);
    auto dst = Columns<Bytes, void, float>(w.dst, w.count);
    dst.noalias() = m.lazyProduct(src);
}

/// The angles, and the axes of the rotations.
inline const Vector3f& First(const Operands& in, int i)
{
    return As<Vector3f>(in.euler, i);
}
inline const Vector3f& Second(const Operands& in, int i)
{
    return As<Vector3f>(in.axisAngle[i], 0);
}

void Dot(const Work& w)
{
    Each<float>(w, [](float& res, const Operands& in, int i) { res = First(in, i).dot(Second(in, i)); });
}

void Cross(const Work& w)
{
    Each<Vector3f>(w, [](Vector3f& res, const Operands& in, int i) { res = First(in, i).cross(Second(in, i)); });
}

void Length(const Work& w)
{
    Each<float>(w, [](float& res, const Operands& in, int i) { res = First(in, i).norm(); });
}

void Normalize(const Work& w)
{
    Each<Vector3f>(w, [](Vector3f& res, const Operands& in, int i) { res = First(in, i).normalized(); });
}

void Point(const Work& w)
{
    Each<Vector3f>(w, [](Vector3f& res, const Operands& in, int i) { res = As<Affine3f>(in.a, i) * First(in, i); });
}

void Rotate(const Work& w)
{
    Each<Vector3f>(w, [](Vector3f& res, const Operands& in, int i) {
        res = As<Quaternionf>(in.p, i).conjugate() * First(in, i);  // its sense is the other one
    });
}

void Product(const Work& w)
{
    Each<Matrix4f>(w, [](Matrix4f& res, const Operands& in, int i) {
        res.noalias() = As<Matrix4f>(in.a, i) * As<Matrix4f>(in.b, i);
    });
}

void AffineProduct(const Work& w)
{
    Each<Affine3f>(
        w, [](Affine3f& res, const Operands& in, int i) { res = As<Affine3f>(in.a, i) * As<Affine3f>(in.b, i); });
}

void AffineInverse(const Work& w)
{
    Each<Affine3f>(
        w, [](Affine3f& res, const Operands& in, int i) { res = As<Affine3f>(in.a, i).inverse(Eigen::Affine); });
}

void Inverse(const Work& w)
{
    Each<Matrix4f>(w, [](Matrix4f& res, const Operands& in, int i) { res = As<Matrix4f>(in.a, i).inverse(); });
}

void Determinant(const Work& w)
{
    Each<float>(w, [](float& res, const Operands& in, int i) {
        res = As<Matrix4f>(in.a, i).topLeftCorner<3, 3>().determinant();
    });
}

void Transpose(const Work& w)
{
    EachWhole<Matrix4f>(w, [](Matrix4f& res, const Operands& in, int i) { res = As<Matrix4f>(in.a, i).transpose(); });
}

void FromEuler(const Work& w)
{
    Each<Affine3f>(w, [](Affine3f& res, const Operands& in, int i) {
        res = Eigen::AngleAxisf(in.euler[i][2], Vector3f::UnitZ()) *
              Eigen::AngleAxisf(in.euler[i][1], Vector3f::UnitY()) *
              Eigen::AngleAxisf(in.euler[i][0], Vector3f::UnitX());
    });
}

void FromAxisAngle(const Work& w)
{
    Each<Affine3f>(w, [](Affine3f& res, const Operands& in, int i) {
        res = Eigen::AngleAxisf(in.axisAngle[i][3], As<Vector3f>(in.axisAngle[i], 0));
    });
}

void FromMatrix(const Work& w)
{
    Each<Quaternionf>(w,
                      [](Quaternionf& res, const Operands& in, int i) { res = As<Affine3f>(in.rotation, i).linear(); });
}

void ToMatrix(const Work& w)
{
    Each<Affine3f>(w, [](Affine3f& res, const Operands& in, int i) { res = As<Quaternionf>(in.p, i); });
}

void Slerp(const Work& w)
{
    Each<Quaternionf>(w, [](Quaternionf& res, const Operands& in, int i) {
        res = As<Quaternionf>(in.p, i).slerp(in.t[i], As<Quaternionf>(in.q, i));
    });
}

struct TakenApart {
    Vector3f scale;
    Quaternionf rotation;

    explicit TakenApart(const Affine3f& m)
        : scale(m.linear().colwise().norm()), rotation(Matrix3f(m.linear() * scale.cwiseInverse().asDiagonal()))
    {
    }
};

void Quick(const Work& w)
{
    Each<QuickParts>(w, [](QuickParts& res, const Operands& in, int i) {
        const TakenApart parts(As<Affine3f>(in.a, i));
        CopyFloats(res.quat, parts.rotation.coeffs(), 4);
        CopyFloats(res.pos, As<Affine3f>(in.a, i).translation(), 3);
        CopyFloats(res.scale, parts.scale, 3);
    });
}

void Interpolate(const Work& w)
{
    Each<Affine3f>(w, [](Affine3f& res, const Operands& in, int i) {
        const Affine3f& a = As<Affine3f>(in.a, i);
        const Affine3f& b = As<Affine3f>(in.b, i);
        const TakenApart from(a), to(b);
        const float t = in.t[i];
        const Vector3f scale = from.scale + (to.scale - from.scale) * t;
        res.linear() = from.rotation.slerp(t, to.rotation).toRotationMatrix() * scale.asDiagonal();
        res.translation() = a.translation() + (b.translation() - a.translation()) * t;
        res.makeAffine();
    });
}

/// A block as turn * axes * diag(scale) * axes^T; a reflection is in the sign of the scale.
struct Factors {
    Matrix3f turn, axes;
    Vector3f scale;

    void MakeProper()
    {
        if (axes.determinant() < 0) {
            axes.col(0) = -axes.col(0);
        }
        if (turn.determinant() < 0) {
            turn = -turn;
            scale = -scale;
        }
    }
};

struct BySvd : Factors {
    explicit BySvd(const Matrix3f& m)
    {
        const Eigen::JacobiSVD<Matrix3f> svd(m, Eigen::ComputeFullU | Eigen::ComputeFullV);
        turn = svd.matrixU() * svd.matrixV().transpose();
        axes = svd.matrixV();
        scale = svd.singularValues();
        MakeProper();
    }
};

/// Uses the eigenvectors of the square: faster, but half the digits are lost if the scales differ much. The closed form
/// is not counted: it has errors of 1e-5 for any scales, as its documentation says.
template <bool ClosedForm>
struct BySquare : Factors {
    explicit BySquare(const Matrix3f& m)
    {
        Eigen::SelfAdjointEigenSolver<Matrix3f> solver;
        const Matrix3f square = m.transpose() * m;
        if (ClosedForm) {
            solver.computeDirect(square);
        } else {
            solver.compute(square);
        }
        axes = solver.eigenvectors();
        scale = solver.eigenvalues().cwiseSqrt();
        turn = m * axes * scale.cwiseInverse().asDiagonal() * axes.transpose();
        MakeProper();
    }
};

template <class Method>
void Polar(const Work& w)
{
    Each<Quaternionf>(w, [](Quaternionf& res, const Operands& in, int i) {
        res = Method(As<Affine3f>(in.stretched, i).linear()).turn;
    });
}

template <class Method>
void Total(const Work& w)
{
    Each<FullParts>(w, [](FullParts& res, const Operands& in, int i) {
        const Affine3f& m = As<Affine3f>(in.stretched, i);
        const Method factors(m.linear());
        CopyFloats(res.quat, Quaternionf(factors.turn).coeffs(), 4);
        CopyFloats(res.pos, m.translation(), 3);
        CopyFloats(res.scale, factors.scale, 3);
        CopyFloats(res.uRot, Quaternionf(factors.axes).coeffs(), 4);
    });
}

constexpr Entry kEntries[] = {
    {"Points/12to12", Points<12>},
    {"Points/12to12", PointColumns<12>, "columns"},
    {"Points/12to12-in-place", PointsInPlace},
    {"Points/32to32", Points<32>},
    {"Points/32to32", PointColumns<32>, "columns"},
    {"Points/12to16", Points4<12>},
    {"Points/16to16", Points4<16>},
    {"Points/16to16", FourToFour, "Vector4f"},
    {"Rotates/12to12", Rotates<12>},
    {"Rotates/12to12", RotateColumns<12>, "columns"},
    {"Rotates/12to12-in-place", RotatesInPlace},
    {"Rotates/32to32", Rotates<32>},
    {"Rotates/32to32", RotateColumns<32>, "columns"},
    {"Vectors/dot", Dot},
    {"Vectors/cross", Cross},
    {"Vectors/length", Length},
    {"Vectors/normalize", Normalize},
    {"Vectors/normalize-approximately", Normalize},
    {"Vectors/transform-point", Point},
    {"Vectors/rotate", Rotate},
    {"Matrices/product", Product},
    {"Matrices/affine-product", AffineProduct},
    {"Matrices/affine-inverse", AffineInverse, "Affine3f"},
    {"Matrices/affine-inverse", Inverse, "Matrix4f"},
    {"Matrices/determinant", Determinant},
    {"Matrices/transpose", Transpose},
    {"Matrices/from-euler", FromEuler},
    {"Matrices/from-axis-angle", FromAxisAngle, "", TransposeBlock},
    {"Matrices/interpolate", Interpolate},
    {"Quaternions/from-matrix", FromMatrix, "", Conjugate},
    {"Quaternions/to-matrix", ToMatrix, "", TransposeBlock},
    {"Quaternions/unit-to-matrix", ToMatrix, "", TransposeBlock},
    {"Quaternions/slerp", Slerp},
    {"Decompose/quick", Quick, "", Conjugate},
    {"Decompose/polar", Polar<BySvd>, "JacobiSVD", Conjugate},
    {"Decompose/polar", Polar<BySquare<false>>, "by square", Conjugate},
    {"Decompose/polar", Polar<BySquare<true>>, "closed form", Conjugate, true},
    {"Decompose/total", Total<BySvd>, "JacobiSVD", Conjugate},
    {"Decompose/total", Total<BySquare<false>>, "by square", Conjugate},
    {"Decompose/total", Total<BySquare<true>>, "closed form", Conjugate, true},
};

}  // namespace

extern const Contender kEigen;
constexpr Contender kEigen{"Eigen", Role::PEER, kEntries};

}  // namespace bench

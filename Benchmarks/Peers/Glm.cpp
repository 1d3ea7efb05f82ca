// GLM: packed types, and the aligned ones that use its own intrinsics.

#define GLM_FORCE_INTRINSICS
#define GLM_ENABLE_EXPERIMENTAL
#include "../Each.h"
#include "../QueryInputs.h"
#include "Parts.h"

#include <glm/glm.hpp>
#include <glm/gtc/matrix_inverse.hpp>
#include <glm/gtc/matrix_transform.hpp>
#include <glm/gtc/quaternion.hpp>
#include <glm/gtc/type_aligned.hpp>
#include <glm/gtc/type_ptr.hpp>
#include <glm/gtx/euler_angles.hpp>
#include <glm/gtx/intersect.hpp>
#include <glm/gtx/matrix_interpolation.hpp>

namespace bench {
namespace {

using glm::aligned_mat4;
using glm::aligned_vec4;
using glm::mat3;
using glm::mat4;
using glm::quat;
using glm::vec3;
using glm::vec4;

template <int Bytes>
using Vertex = Slot<vec3, Bytes>;

template <int Bytes>
void Points(const Work& w)
{
    const mat4 m = As<mat4>(w.extra, 0);
    Transform<Vertex<Bytes>, Vertex<Bytes>>(w, [=](const vec3& v) { return vec3(m * vec4(v, 1)); });
}

void PointsInPlace(const Work& w)
{
    const mat4 m = As<mat4>(w.extra, 0);
    TransformInPlace<Vertex<12>>(w, [=](const vec3& v) { return vec3(m * vec4(v, 1)); });
}

template <int Bytes>
void AlignedPoints(const Work& w)
{
    const aligned_mat4 m = As<aligned_mat4>(w.extra, 0);
    Transform<Vertex<Bytes>, Vertex<Bytes>>(w, [=](const vec3& v) { return vec3(m * aligned_vec4(v, 1)); });
}

template <int Bytes>
void Points4(const Work& w)
{
    const mat4 m = As<mat4>(w.extra, 0);
    Transform<Slot<vec4, 16>, Vertex<Bytes>>(w, [=](const vec3& v) { return m * vec4(v, 1); });
}

template <int Bytes>
void AlignedPoints4(const Work& w)
{
    const aligned_mat4 m = As<aligned_mat4>(w.extra, 0);
    Transform<Slot<aligned_vec4, 16>, Vertex<Bytes>>(w, [=](const vec3& v) { return m * aligned_vec4(v, 1); });
}

void FourToFour(const Work& w)
{
    const aligned_mat4 m = As<aligned_mat4>(w.extra, 0);
    Transform<Slot<aligned_vec4, 16>, Slot<aligned_vec4, 16>>(w, [=](const aligned_vec4& v) { return m * v; });
}

template <int Bytes>
void Rotates(const Work& w)
{
    const mat3 m(As<mat4>(w.extra, 0));
    Transform<Vertex<Bytes>, Vertex<Bytes>>(w, [=](const vec3& v) { return m * v; });
}

void RotatesInPlace(const Work& w)
{
    const mat3 m(As<mat4>(w.extra, 0));
    TransformInPlace<Vertex<12>>(w, [=](const vec3& v) { return m * v; });
}

template <class Matrix>
void Product(const Work& w)
{
    Each<Matrix>(w, [](Matrix& res, const Operands& in, int i) { res = As<Matrix>(in.a, i) * As<Matrix>(in.b, i); });
}

template <class Matrix>
void AffineInverse(const Work& w)
{
    Each<Matrix>(w, [](Matrix& res, const Operands& in, int i) { res = glm::affineInverse(As<Matrix>(in.a, i)); });
}

template <class Matrix>
void Inverse(const Work& w)
{
    Each<Matrix>(w, [](Matrix& res, const Operands& in, int i) { res = glm::inverse(As<Matrix>(in.a, i)); });
}

void Determinant(const Work& w)
{
    Each<float>(w, [](float& res, const Operands& in, int i) { res = glm::determinant(mat3(As<mat4>(in.a, i))); });
}

template <class Matrix>
void Transpose(const Work& w)
{
    EachWhole<Matrix>(w, [](Matrix& res, const Operands& in, int i) { res = glm::transpose(As<Matrix>(in.a, i)); });
}

void FromEuler(const Work& w)
{
    Each<mat4>(w, [](mat4& res, const Operands& in, int i) {
        res = glm::eulerAngleZYX(in.euler[i][2], in.euler[i][1], in.euler[i][0]);
    });
}

void FromAxisAngle(const Work& w)
{
    Each<mat4>(w, [](mat4& res, const Operands& in, int i) {
        res = glm::rotate(mat4(1), in.axisAngle[i][3], glm::make_vec3(in.axisAngle[i]));
    });
}

void AxisAngleMatrix(const Work& w)
{
    Each<mat4>(w, [](mat4& res, const Operands& in, int i) {
        res = glm::axisAngleMatrix(glm::make_vec3(in.axisAngle[i]), in.axisAngle[i][3]);
    });
}

void AngleAxisCast(const Work& w)
{
    Each<mat4>(w, [](mat4& res, const Operands& in, int i) {
        res = glm::mat4_cast(glm::angleAxis(in.axisAngle[i][3], glm::make_vec3(in.axisAngle[i])));
    });
}

void FromMatrix(const Work& w)
{
    Each<quat>(w, [](quat& res, const Operands& in, int i) { res = glm::quat_cast(As<mat4>(in.rotation, i)); });
}

void ToMatrix(const Work& w)
{
    Each<mat4>(w, [](mat4& res, const Operands& in, int i) { res = glm::mat4_cast(As<quat>(in.p, i)); });
}

void Slerp(const Work& w)
{
    Each<quat>(w, [](quat& res, const Operands& in, int i) {
        res = glm::slerp(As<quat>(in.p, i), As<quat>(in.q, i), in.t[i]);
    });
}

// Vectors: the angles, and the axes of the rotations.

inline const vec3& First(const Operands& in, int i)
{
    return As<vec3>(in.euler, i);
}
inline const vec3& Second(const Operands& in, int i)
{
    return As<vec3>(in.axisAngle[i], 0);
}

void Dot(const Work& w)
{
    Each<float>(w, [](float& res, const Operands& in, int i) { res = glm::dot(First(in, i), Second(in, i)); });
}

void Cross(const Work& w)
{
    Each<vec3>(w, [](vec3& res, const Operands& in, int i) { res = glm::cross(First(in, i), Second(in, i)); });
}

void Length(const Work& w)
{
    Each<float>(w, [](float& res, const Operands& in, int i) { res = glm::length(First(in, i)); });
}

void Normalize(const Work& w)
{
    Each<vec3>(w, [](vec3& res, const Operands& in, int i) { res = glm::normalize(First(in, i)); });
}

void Point(const Work& w)
{
    Each<vec3>(w, [](vec3& res, const Operands& in, int i) { res = vec3(As<mat4>(in.a, i) * vec4(First(in, i), 1)); });
}

void AlignedPoint(const Work& w)
{
    Each<vec3>(w, [](vec3& res, const Operands& in, int i) {
        res = vec3(As<aligned_mat4>(in.a, i) * aligned_vec4(First(in, i), 1));
    });
}

void Rotate(const Work& w)
{
    Each<vec3>(w, [](vec3& res, const Operands& in, int i) {
        res = glm::conjugate(As<quat>(in.p, i)) * First(in, i);  // its sense is the other one
    });
}

void LookAt(const Work& w)
{
    Each<mat4>(w, [](mat4& res, const Operands& in, int i) {
        res = glm::lookAtLH(First(in, i), Second(in, i), vec3(0, 1, 0));
    });
}

void Perspective(const Work& w)
{
    Each<mat4>(
        w, [](mat4& res, const Operands& in, int i) { res = glm::perspectiveLH_ZO(1 + in.t[i], 1.5f, 0.1f, 100.0f); });
}

struct TakenApart {
    quat rotation;
    vec3 scale;

    explicit TakenApart(const mat4& m)
    {
        scale = {glm::length(vec3(m[0])), glm::length(vec3(m[1])), glm::length(vec3(m[2]))};
        rotation = glm::quat_cast(mat3(vec3(m[0]) / scale.x, vec3(m[1]) / scale.y, vec3(m[2]) / scale.z));
    }
};

void Quick(const Work& w)
{
    Each<QuickParts>(w, [](QuickParts& res, const Operands& in, int i) {
        const TakenApart parts(As<mat4>(in.a, i));
        CopyFloats(res.quat, glm::value_ptr(parts.rotation), 4);
        CopyFloats(res.pos, As<mat4>(in.a, i)[3], 3);
        CopyFloats(res.scale, parts.scale, 3);
    });
}

void Interpolate(const Work& w)
{
    Each<mat4>(w, [](mat4& res, const Operands& in, int i) {
        const mat4& a = As<mat4>(in.a, i);
        const mat4& b = As<mat4>(in.b, i);
        const TakenApart from(a), to(b);
        const float t = in.t[i];
        const mat3 turn = glm::mat3_cast(glm::slerp(from.rotation, to.rotation, t));
        const vec3 scale = glm::mix(from.scale, to.scale, t);
        res = mat4(vec4(turn[0] * scale.x, 0), vec4(turn[1] * scale.y, 0), vec4(turn[2] * scale.z, 0),
                   glm::mix(a[3], b[3], t));
    });
}

void RayTriangle(const Work& w)
{
    EachPair(w, [](const QueryInputs& in, int i, int j) {
        const vec3* ray = &As<vec3>(in.faceRays[i], 0);
        const vec3* triangle = &As<vec3>(in.triangles[j], 0);
        glm::vec2 weights;
        float t;
        return glm::intersectRayTriangle(ray[0], ray[1], triangle[0], triangle[1], triangle[2], weights, t) && t >= 0;
    });
}

constexpr Entry kEntries[] = {
    {"Points/12to12", Points<12>},
    {"Points/12to12-in-place", PointsInPlace},
    {"Points/32to32", Points<32>},
    {"Points/32to32", AlignedPoints<32>, "aligned"},
    {"Points/12to16", Points4<12>},
    {"Points/12to16", AlignedPoints4<12>, "aligned"},
    {"Points/16to16", Points4<16>},
    {"Points/16to16", AlignedPoints4<16>, "aligned"},
    {"Points/16to16", FourToFour, "vec4"},
    {"Rotates/12to12", Rotates<12>},
    {"Rotates/12to12-in-place", RotatesInPlace},
    {"Rotates/32to32", Rotates<32>},
    {"Vectors/dot", Dot},
    {"Vectors/cross", Cross},
    {"Vectors/length", Length},
    {"Vectors/normalize", Normalize},
    {"Vectors/normalize-approximately", Normalize},
    {"Vectors/transform-point", Point},
    {"Vectors/transform-point", AlignedPoint, "aligned"},
    {"Vectors/rotate", Rotate},
    {"Vectors/look-at", LookAt},
    {"Vectors/perspective", Perspective},
    {"Matrices/product", Product<mat4>},
    {"Matrices/product", Product<aligned_mat4>, "aligned"},
    {"Matrices/affine-product", Product<mat4>},
    {"Matrices/affine-product", Product<aligned_mat4>, "aligned"},
    {"Matrices/affine-inverse", AffineInverse<mat4>, "affineInverse"},
    {"Matrices/affine-inverse", Inverse<mat4>, "inverse"},
    {"Matrices/affine-inverse", AffineInverse<aligned_mat4>, "aligned affineInverse"},
    {"Matrices/affine-inverse", Inverse<aligned_mat4>, "aligned inverse"},
    {"Matrices/determinant", Determinant},
    {"Matrices/transpose", Transpose<mat4>},
    {"Matrices/transpose", Transpose<aligned_mat4>, "aligned"},
    {"Matrices/from-euler", FromEuler},
    {"Matrices/from-axis-angle", FromAxisAngle, "rotate", TransposeBlock},
    {"Matrices/from-axis-angle", AxisAngleMatrix, "axisAngleMatrix", TransposeBlock},
    {"Matrices/from-axis-angle", AngleAxisCast, "angleAxis", TransposeBlock},
    {"Matrices/interpolate", Interpolate},
    {"Quaternions/from-matrix", FromMatrix, "", Conjugate},
    {"Quaternions/to-matrix", ToMatrix, "", TransposeBlock},
    {"Quaternions/unit-to-matrix", ToMatrix, "", TransposeBlock},
    {"Quaternions/slerp", Slerp},
    {"Decompose/quick", Quick, "", Conjugate},
    {"Queries/ray-triangle", RayTriangle},
};

}  // namespace

extern const Contender kGlm;
constexpr Contender kGlm{"GLM", Role::PEER, kEntries};

}  // namespace bench

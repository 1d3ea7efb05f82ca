// cglm, inline functions. They take their inputs as non-const but do not change them.

#include "../Each.h"
#include "../QueryInputs.h"
#include "Parts.h"

#include <cglm/cglm.h>

#include <cglm/clipspace/persp_lh_zo.h>
#include <cglm/clipspace/view_lh_zo.h>

namespace bench {
namespace {

// Operands as cglm's types. Not a template: the alignment of these types is lost in template arguments.
inline mat4& Mat4(const void* operands, int i)
{
    return static_cast<mat4*>(const_cast<void*>(operands))[i];
}
inline versor& Quat(const void* operands, int i)
{
    return static_cast<versor*>(const_cast<void*>(operands))[i];
}
inline vec3& Vec3(const void* operands, int i)
{
    return static_cast<vec3*>(const_cast<void*>(operands))[i];
}

struct alignas(32) Matrix {
    mat4 m;
};
struct alignas(16) Quaternion {
    versor q;
};

template <int DstBytes, int SrcBytes, bool Point>
void Transforms(const Work& w)
{
    mat4 m;
    glm_mat4_copy(Mat4(w.extra, 0), m);
    const char* src = static_cast<const char*>(w.src);
    char* dst = static_cast<char*>(w.dst);
    const int count = w.count;
    for (int i = 0; i < count; ++i, src += SrcBytes, dst += DstBytes) {
        glm_mat4_mulv3(m, Vec3(src, 0), Point ? 1.0f : 0.0f, *reinterpret_cast<vec3*>(dst));
    }
}

template <int SrcBytes>
void Points4(const Work& w)
{
    mat4 m;
    glm_mat4_copy(Mat4(w.extra, 0), m);
    const char* src = static_cast<const char*>(w.src);
    char* dst = static_cast<char*>(w.dst);
    const int count = w.count;
    for (int i = 0; i < count; ++i, src += SrcBytes, dst += 16) {
        vec4 v;
        glm_vec4(Vec3(src, 0), 1.0f, v);
        glm_mat4_mulv(m, v, *reinterpret_cast<vec4*>(dst));
    }
}

template <class Op>
inline void EachMatrix(const Work& w, Op op)
{
    Each<Matrix>(w, [=](Matrix& res, const Operands& in, int i) { op(res.m, in, i); });
}

template <class Op>
inline void EachQuaternion(const Work& w, Op op)
{
    Each<Quaternion>(w, [=](Quaternion& res, const Operands& in, int i) { op(res.q, in, i); });
}

void Product(const Work& w)
{
    EachMatrix(w, [](mat4& res, const Operands& in, int i) { glm_mat4_mul(Mat4(in.a, i), Mat4(in.b, i), res); });
}

void AffineProduct(const Work& w)
{
    EachMatrix(w, [](mat4& res, const Operands& in, int i) { glm_mul(Mat4(in.a, i), Mat4(in.b, i), res); });
}

void Inverse(const Work& w)
{
    EachMatrix(w, [](mat4& res, const Operands& in, int i) { glm_mat4_inv(Mat4(in.a, i), res); });
}

void Determinant(const Work& w)
{
    Each<float>(w, [](float& res, const Operands& in, int i) {
        mat3 block;
        glm_mat4_pick3(Mat4(in.a, i), block);
        res = glm_mat3_det(block);
    });
}

void Transpose(const Work& w)
{
    EachWhole<Matrix>(w, [](Matrix& res, const Operands& in, int i) { glm_mat4_transpose_to(Mat4(in.a, i), res.m); });
}

void FromEuler(const Work& w)
{
    EachMatrix(w, [](mat4& res, const Operands& in, int i) { glm_euler_zyx(Vec3(in.euler, i), res); });
}

void FromAxisAngle(const Work& w)
{
    EachMatrix(w, [](mat4& res, const Operands& in, int i) {
        glm_rotate_make(res, in.axisAngle[i][3], Vec3(in.axisAngle[i], 0));
    });
}

void FromMatrix(const Work& w)
{
    EachQuaternion(w, [](versor& res, const Operands& in, int i) { glm_mat4_quat(Mat4(in.rotation, i), res); });
}

void ToMatrix(const Work& w)
{
    EachMatrix(w, [](mat4& res, const Operands& in, int i) { glm_quat_mat4(Quat(in.p, i), res); });
}

void Slerp(const Work& w)
{
    EachQuaternion(
        w, [](versor& res, const Operands& in, int i) { glm_quat_slerp(Quat(in.p, i), Quat(in.q, i), in.t[i], res); });
}

/// The angles, and the axes of the rotations.
inline float* First(const Operands& in, int i)
{
    return Vec3(in.euler, i);
}
inline float* Second(const Operands& in, int i)
{
    return Vec3(in.axisAngle[i], 0);
}

struct Vector {
    vec3 v;
};

template <class Op>
inline void EachVector(const Work& w, Op op)
{
    Each<Vector>(w, [=](Vector& res, const Operands& in, int i) { op(res.v, in, i); });
}

void Dot(const Work& w)
{
    Each<float>(w, [](float& res, const Operands& in, int i) { res = glm_vec3_dot(First(in, i), Second(in, i)); });
}

void Cross(const Work& w)
{
    EachVector(w, [](vec3& res, const Operands& in, int i) { glm_vec3_cross(First(in, i), Second(in, i), res); });
}

void Length(const Work& w)
{
    Each<float>(w, [](float& res, const Operands& in, int i) { res = glm_vec3_norm(First(in, i)); });
}

void Normalize(const Work& w)
{
    EachVector(w, [](vec3& res, const Operands& in, int i) { glm_vec3_normalize_to(First(in, i), res); });
}

void Point(const Work& w)
{
    EachVector(w, [](vec3& res, const Operands& in, int i) { glm_mat4_mulv3(Mat4(in.a, i), First(in, i), 1, res); });
}

void Rotate(const Work& w)
{
    EachVector(w, [](vec3& res, const Operands& in, int i) {
        versor opposite;  // the sense is the other one
        glm_quat_conjugate(Quat(in.p, i), opposite);
        glm_quat_rotatev(opposite, First(in, i), res);
    });
}

void LookAt(const Work& w)
{
    EachMatrix(w, [](mat4& res, const Operands& in, int i) {
        vec3 up = {0, 1, 0};
        glm_lookat_lh(First(in, i), Second(in, i), up, res);
    });
}

void Perspective(const Work& w)
{
    EachMatrix(w,
               [](mat4& res, const Operands& in, int i) { glm_perspective_lh_zo(1 + in.t[i], 1.5f, 0.1f, 100, res); });
}

// No sphere-box test: the one of version 0.8 measures a centre below the box from the wrong face.

/// Two corners as cglm expects them, minimum first.
inline vec3* Box(const float* corners)
{
    return reinterpret_cast<vec3*>(const_cast<float*>(corners));
}

void BoxBox(const Work& w)
{
    EachPair(w, [](const QueryInputs& in, int i, int j) {
        return glm_aabb_aabb(Box(in.boxesMinFirst[i]), Box(in.othersMinFirst[j]));
    });
}

void RayTriangle(const Work& w)
{
    EachPair(w, [](const QueryInputs& in, int i, int j) {
        float* ray = const_cast<float*>(in.faceRays[i]);
        float* triangle = const_cast<float*>(in.triangles[j]);
        float t;
        return glm_ray_triangle(ray, ray + 3, triangle, triangle + 3, triangle + 6, &t);
    });
}

inline bool InFrustum(vec3* box, const QueryInputs& in)
{
    return glm_aabb_frustum(box, reinterpret_cast<vec4*>(const_cast<float(*)[4]>(in.frustumPlanes)));
}

void FrustumPlanesBox(const Work& w)
{
    EachPair(w, [](const QueryInputs& in, int i, int j) {
        vec3 placed[2];
        glm_aabb_transform(Box(in.frustumMinFirst[j]), Mat4(in.matrices, i), placed);
        return InFrustum(placed, in);
    });
}

constexpr Entry kEntries[] = {
    {"Points/12to12", Transforms<12, 12, true>},
    {"Points/12to12-in-place", Transforms<12, 12, true>},
    {"Points/32to32", Transforms<32, 32, true>},
    {"Points/12to16", Points4<12>},
    {"Points/16to16", Points4<16>},
    {"Rotates/12to12", Transforms<12, 12, false>},
    {"Rotates/12to12-in-place", Transforms<12, 12, false>},
    {"Rotates/32to32", Transforms<32, 32, false>},
    {"Vectors/dot", Dot},
    {"Vectors/cross", Cross},
    {"Vectors/length", Length},
    {"Vectors/normalize", Normalize},
    {"Vectors/normalize-approximately", Normalize},
    {"Vectors/transform-point", Point},
    {"Vectors/rotate", Rotate},
    {"Vectors/look-at", LookAt},
    {"Vectors/perspective", Perspective},
    {"Matrices/product", Product},
    {"Matrices/affine-product", AffineProduct},
    {"Matrices/affine-inverse", Inverse},
    {"Matrices/determinant", Determinant},
    {"Matrices/transpose", Transpose},
    {"Matrices/from-euler", FromEuler},
    {"Matrices/from-axis-angle", FromAxisAngle, "", TransposeBlock},
    {"Quaternions/from-matrix", FromMatrix, "", Conjugate},
    {"Quaternions/to-matrix", ToMatrix, "", TransposeBlock},
    {"Quaternions/unit-to-matrix", ToMatrix, "", TransposeBlock},
    {"Quaternions/slerp", Slerp},
    {"Queries/box-box", BoxBox},
    {"Queries/ray-triangle", RayTriangle},
    {"Queries/frustum-planes-box", FrustumPlanesBox},
};

}  // namespace

extern const Contender kCglm;
constexpr Contender kCglm{"cglm", Role::PEER, kEntries};

}  // namespace bench

// Loops over GLM's packed and aligned types, for AVX2 and FMA.

#define GLM_FORCE_INTRINSICS
#include "../Each.h"
#include "../Rig.h"

#include <glm/glm.hpp>
#include <glm/gtc/matrix_inverse.hpp>
#include <glm/gtc/quaternion.hpp>
#include <glm/gtc/type_aligned.hpp>

namespace bench {
namespace {

using glm::vec3;
using glm::vec4;

inline const Rig& RigOf(const Work& w)
{
    return *static_cast<const Rig*>(w.src);
}

// GLM's products apply the right factor first, as ours do.
template <class Matrix>
void Products(const Work& w)
{
    Each<Matrix, Rig>(w, [](Matrix& res, const Rig& rig, int i) { res = As<Matrix>(rig.a[i]) * As<Matrix>(rig.b[i]); });
}

template <class Matrix>
void ProductsByOne(const Work& w)
{
    const Matrix one = As<Matrix>(RigOf(w).a[0]);
    Each<Matrix, Rig>(w, [=](Matrix& res, const Rig& rig, int i) { res = one * As<Matrix>(rig.b[i]); });
}

template <class Matrix>
void Hierarchy(const Work& w)
{
    const Matrix* world = static_cast<const Matrix*>(w.dst);
    Each<Matrix, Rig>(w, [=](Matrix& res, const Rig& rig, int i) {
        const Matrix& local = As<Matrix>(rig.rotations[i]);
        res = rig.parents[i] < 0 ? local : world[rig.parents[i]] * local;
    });
}

template <class Matrix>
void Inverses(const Work& w)
{
    Each<Matrix, Rig>(w, [](Matrix& res, const Rig& rig, int i) { res = glm::affineInverse(As<Matrix>(rig.a[i])); });
}

void QuaternionsToMatrices(const Work& w)
{
    // GLM turns the other way.
    Each<glm::mat4, Rig>(w, [](glm::mat4& res, const Rig& rig, int i) {
        const float* q = rig.quaternions[i];
        res = glm::mat4_cast(glm::quat(q[3], -q[0], -q[1], -q[2]));
    });
}

template <class Matrix, class Vector>
void Skinning(const Work& w)
{
    Each<MovedVertex, Rig>(w, [](MovedVertex& res, const Rig& rig, int i) {
        const unsigned char* bones = rig.bones[i];
        const float* weights = rig.weights[i];
        const auto bone = [&](int k) -> const Matrix& { return As<Matrix>(rig.a[bones[k]]); };
        const Matrix m = weights[0] * bone(0) + weights[1] * bone(1) + weights[2] * bone(2) + weights[3] * bone(3);
        const vec3 position(m * Vector(As<vec3>(rig.positions[i]), 1)), normal(m * Vector(As<vec3>(rig.normals[i]), 0));
        for (int axis = 0; axis < 3; ++axis) {
            res.position[axis] = position[axis];
            res.normal[axis] = normal[axis];
        }
    });
}

using Packed = glm::mat4;
using Aligned = glm::aligned_mat4;

constexpr Entry kEntries[] = {
    {"Animation/products", Products<Packed>, "packed"},
    {"Animation/products", Products<Aligned>, "aligned"},
    {"Animation/products-by-one", ProductsByOne<Packed>, "packed"},
    {"Animation/products-by-one", ProductsByOne<Aligned>, "aligned"},
    {"Animation/hierarchy", Hierarchy<Packed>, "packed"},
    {"Animation/hierarchy", Hierarchy<Aligned>, "aligned"},
    {"Animation/inverses", Inverses<Packed>, "packed"},
    {"Animation/inverses", Inverses<Aligned>, "aligned"},
    {"Animation/quaternions-to-matrices", QuaternionsToMatrices},
    {"Animation/skinning", Skinning<Packed, vec4>, "packed"},
    {"Animation/skinning", Skinning<Aligned, glm::aligned_vec4>, "aligned"},
};

}  // namespace

extern const Contender kAnimationLoops;
constexpr Contender kAnimationLoops{"GLM loop", Role::PEER, kEntries};

}  // namespace bench

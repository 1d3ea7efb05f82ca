// Matrices, quaternions and vertices by the thousand.

#include "Families.h"
#include "Inputs.h"
#include "Rig.h"

#include "ZmAnimation.h"

#include <cstddef>
#include <cstring>
#include <memory>

namespace bench {
namespace {

std::unique_ptr<Rig> NewRig()
{
    auto made = std::make_unique<Rig>();
    Rig& rig = *made;
    const Operands& in = RandomOperands();
    const float* random = RandomFloats(sizeof(float) * 8 * kRigSize);
    unsigned bone = 1;
    for (int i = 0; i < kRigSize; ++i) {
        const int from = i % kOperands;
        std::memcpy(rig.a[i], in.a[from], sizeof(rig.a[i]));
        std::memcpy(rig.b[i], in.b[from], sizeof(rig.b[i]));
        std::memcpy(rig.rotations[i], in.rotation[from], sizeof(rig.rotations[i]));
        std::memcpy(rig.quaternions[i], in.p[from], sizeof(rig.quaternions[i]));
        rig.parents[i] = i % 64 == 0 ? -1 : i - 1 - i % 64 / 2;
        std::memcpy(rig.positions[i], random + 8 * i, sizeof(rig.positions[i]));
        std::memcpy(rig.normals[i], random + 8 * i + 4, sizeof(rig.normals[i]));
        for (int k = 0; k < 4; ++k) {
            bone = bone * 1664525 + 1013904223;
            rig.bones[i][k] = static_cast<unsigned char>(bone >> 26);
            rig.weights[i][k] = 0.1f * float(k + 1);
        }
    }
    return made;
}

void Prepare(Work& w)
{
    static const std::unique_ptr<Rig> rig = NewRig();
    w.src = rig.get();
}

constexpr Task kTasks[] = {
    {"Animation/products", 64, 0, Prepare, {1000, kRigSize}, {0.60, 0.60}},
    {"Animation/products-by-one", 64, 0, Prepare, {1000, kRigSize}, {0.60, 0.60}},
    {"Animation/hierarchy", 64, 0, Prepare, {1000, kRigSize}, {0.60, 0.60}, 1e-3},
    {"Animation/inverses", 64, 0, Prepare, {1000, kRigSize}, {0.50, 0.50}},
    {"Animation/quaternions-to-matrices", 64, 0, Prepare, {1000, kRigSize}, {0.50, 0.50}},
    {"Animation/skinning", 24, 0, Prepare, {1000, kRigSize}, {0.70, 0.70}},
};

const Rig& RigOf(const Work& w)
{
    return *static_cast<const Rig*>(w.src);
}

/// One of the rig's arrays, or the results.
ZmStridedData Array(const void* first, size_t stride)
{
    return {const_cast<void*>(first), unsigned(stride)};
}

void Products(const Work& w)
{
    Zm3DMultiplyMatrixManyStrided(Array(w.dst, 64), Array(RigOf(w).a, 64), Array(RigOf(w).b, 64), w.count);
}

void ProductsByOne(const Work& w)
{
    Zm3DMultiplyMatrixManyStrided(Array(w.dst, 64), Array(RigOf(w).a, 0), Array(RigOf(w).b, 64), w.count);
}

void Hierarchy(const Work& w)
{
    ZmHierarchyStrided(Array(w.dst, 64), Array(RigOf(w).rotations, 64), RigOf(w).parents, w.count);
}

void Inverses(const Work& w)
{
    Zm3DInverseMatrixStrided(Array(w.dst, 64), Array(RigOf(w).a, 64), w.count);
}

void QuaternionsToMatrices(const Work& w)
{
    ZmQuaternionToMatrixStrided(Array(w.dst, 64), Array(RigOf(w).quaternions, 16), w.count);
}

void Skinning(const Work& w)
{
    const Rig& rig = RigOf(w);
    const ZmSkin skin = {
        reinterpret_cast<const ZmMatrix*>(rig.a), kBones, 4, Array(rig.bones, 4), false, Array(rig.weights, 16)};
    MovedVertex* res = static_cast<MovedVertex*>(w.dst);
    ZmSkinVertices(skin, Array(res->position, sizeof(*res)), Array(rig.positions, 12), Array(res->normal, sizeof(*res)),
                   Array(rig.normals, 12), w.count);
}

constexpr Entry kEntries[] = {
    {"Animation/products", Products},   {"Animation/products-by-one", ProductsByOne},
    {"Animation/hierarchy", Hierarchy}, {"Animation/inverses", Inverses},
    {"Animation/skinning", Skinning},   {"Animation/quaternions-to-matrices", QuaternionsToMatrices},
};

// --- Our own single calls in a loop ---

const ZmMatrix& Matrix(const float* floats)
{
    return *reinterpret_cast<const ZmMatrix*>(floats);
}

void ProductsSingly(const Work& w)
{
    for (int i = 0; i < w.count; ++i) {
        Zm3DMultiplyMatrix(static_cast<ZmMatrix*>(w.dst)[i], Matrix(RigOf(w).a[i]), Matrix(RigOf(w).b[i]));
    }
}

void InversesSingly(const Work& w)
{
    for (int i = 0; i < w.count; ++i) {
        Zm3DInverseMatrix(static_cast<ZmMatrix*>(w.dst)[i], Matrix(RigOf(w).a[i]));
    }
}

void QuaternionsSingly(const Work& w)
{
    for (int i = 0; i < w.count; ++i) {
        reinterpret_cast<const ZmQuaternion*>(RigOf(w).quaternions[i])->ToMatrix(static_cast<ZmMatrix*>(w.dst)[i]);
    }
}

constexpr Entry kSingleEntries[] = {
    {"Animation/products", ProductsSingly},
    {"Animation/inverses", InversesSingly},
    {"Animation/quaternions-to-matrices", QuaternionsSingly},
};

}  // namespace

constexpr Tasks kAnimationTasks{kTasks};
constexpr Contender kAnimation{"ZmMath", Role::OURS, kEntries};
constexpr Contender kAnimationSingly{"ZmMath singly", Role::PEER, kSingleEntries};

}  // namespace bench

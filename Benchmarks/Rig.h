#pragma once

// Many matrices, quaternions and vertices. Plain data, for the reason given in Harness.h.
namespace bench {

constexpr int kRigSize = 100000;
constexpr int kBones = 64;

struct alignas(64) Rig {
    float a[kRigSize][16], b[kRigSize][16];  ///< affine
    float rotations[kRigSize][16];           ///< with translations; a chain of them does not grow
    float quaternions[kRigSize][4];
    int parents[kRigSize];  ///< of `rotations`: trees of 64 nodes
    float positions[kRigSize][3], normals[kRigSize][3];
    unsigned char bones[kRigSize][4];
    float weights[kRigSize][4];
};

struct MovedVertex {
    float position[3], normal[3];
};

}  // namespace bench

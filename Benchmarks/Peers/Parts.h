#pragma once

// Results of the decompositions, and conversions from the peers' conventions to ours.
namespace bench {

struct QuickParts {
    float quat[4];
    float pos[3];
    float scale[3];
};

struct FullParts {
    float quat[4];
    float pos[3];
    float scale[3];
    float uRot[4];
};

// Internal to each file, as in Each.h.
namespace {

template <class Source>
inline void CopyFloats(float* res, const Source& source, int count)
{
    for (int i = 0; i < count; ++i) {
        res[i] = source[i];
    }
}

[[maybe_unused]] void Conjugate(float* q)
{
    for (int i = 0; i < 3; ++i) {
        q[i] = -q[i];
    }
}

[[maybe_unused]] void TransposeBlock(float* matrix)
{
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < i; ++j) {
            const float kept = matrix[4 * i + j];
            matrix[4 * i + j] = matrix[4 * j + i];
            matrix[4 * j + i] = kept;
        }
    }
}

}  // namespace
}  // namespace bench

#pragma once

#include "Math/MatrixKernels.h"
#include "Math/StridedLanes.h"
#include "Math/TransformKernels.h"
#include "ZmAnimation.h"

// Kernels over arrays of matrices, quaternions and vertices.

namespace zm {

/// Arrays of ZmSkinVertices(); those that are left out have null pointers.
struct Vertices {
    StridedPair positions, normals;
};

namespace {

inline const float* Floats(const char* p)
{
    return reinterpret_cast<const float*>(p);
}

inline float* Floats(char* p)
{
    return reinterpret_cast<float*>(p);
}

/// res[i] = a[i] * b[i], with the sources of `pair` as b.
template <class L>
void MultiplyMany(const StridedPair& pair, const char* a, ptrdiff_t aStride)
{
    char* res = pair.res;
    const char* b = pair.src;
    if (aStride == 0) {
        const AffineFactor<L> factor(Floats(a));
        for (ptrdiff_t i = 0; i < pair.count; ++i, res += pair.resStride, b += pair.srcStride) {
            factor.Times(Floats(res), Floats(b));
        }
        return;
    }
    for (ptrdiff_t i = 0; i < pair.count; ++i, res += pair.resStride, a += aStride, b += pair.srcStride) {
        AffineProduct<L>(Floats(res), Floats(a), Floats(b));
    }
}

template <class L>
void PlaceNodes(const StridedPair& pair, const int* parents)
{
    char* world = pair.res;
    const char* local = pair.src;
    for (ptrdiff_t i = 0; i < pair.count; ++i, world += pair.resStride, local += pair.srcStride) {
        if (parents[i] >= 0 && parents[i] < i) {
            AffineProduct<L>(Floats(world), Floats(pair.res + parents[i] * pair.resStride), Floats(local));
        } else {
            memmove(world, local, sizeof(ZmMatrix));
        }
    }
}

inline void InvertMany(const StridedPair& pair)
{
    char* res = pair.res;
    const char* src = pair.src;
    for (ptrdiff_t i = 0; i < pair.count; ++i, res += pair.resStride, src += pair.srcStride) {
        AffineInverse(Floats(res), Floats(src));
    }
}

/// Writes row `row` of L::kCount matrices, given by columns.
template <class L>
void StoreRows(char* res, ptrdiff_t stride, int row, L x, L y, L z, L w)
{
    L::Transpose(x, y, z, w);
    const L rows[] = {x, y, z, w};
    for (int i = 0; i < 4; ++i) {
        LoadAt<L>::StoreFour(rows[i], res + i * stride + 16 * row, stride);
    }
}

/// The rotations of L::kCount quaternions: the formula of ZmQuaternion::ToMatrix, component by component.
template <class L>
struct RotationOf {
    L m[3][3];

    RotationOf(const char* src, ptrdiff_t stride)
    {
        const auto load = [&](int i) { return LoadAt<L>::Four(src + i * stride, stride); };
        L x = load(0), y = load(1), z = load(2), w = load(3);
        L::Transpose(x, y, z, w);
        const L xx = x * x, yy = y * y, zz = z * z, xy = x * y, xz = x * z, yz = y * z, wx = w * x, wy = w * y,
                wz = w * z;
        const L none = L::Splat(0), one = L::Splat(1), s = L::Splat(2) / ((xx + yy) + (zz + w * w));
        m[0][0] = one - s * (yy + zz);
        m[0][1] = none + s * (xy - wz);
        m[0][2] = none + s * (xz + wy);
        m[1][0] = none + s * (xy + wz);
        m[1][1] = one - s * (xx + zz);
        m[1][2] = none + s * (yz - wx);
        m[2][0] = none + s * (xz - wy);
        m[2][1] = none + s * (yz + wx);
        m[2][2] = one - s * (xx + yy);
    }
};

template <class L>
void ConvertQuaternions(char* res, ptrdiff_t resStride, const char* src, ptrdiff_t srcStride)
{
    const RotationOf<L> turn(src, srcStride);
    const L none = L::Splat(0);
    for (int i = 0; i < 3; ++i) {
        StoreRows<L>(res, resStride, i, turn.m[i][0], turn.m[i][1], turn.m[i][2], none);
    }
    StoreRows<L>(res, resStride, 3, none, none, none, L::Splat(1));
}

template <class L>
void QuaternionsToMatrices(const StridedPair& pair)
{
    ForGroups<L, sizeof(ZmMatrix), sizeof(ZmQuaternion)>(pair, ConvertQuaternions<L>);
}

// --- Skinning -------------------------------------------------------------------------

/// The matrices of a vertex, blended: one row or two in each register.
template <class L>
struct BlendedRows {
    static constexpr int kParts = 16 / L::kCount;

    L rows[kParts];

    template <int influences>
    void Set(const float* const (&matrices)[influences], const float (&weights)[influences])
    {
        for (int i = 0; i < kParts; ++i) {
            const auto part = [&](int k) { return L::Splat(weights[k]) * L::Load(matrices[k] + i * L::kCount); };
            L first = part(0);
            if constexpr (influences > 1) {
                first = first + part(1);
            }
            if constexpr (influences == 3) {
                first = first + part(2);
            }
            if constexpr (influences == 4) {
                first = first + (part(2) + part(3));
            }
            rows[i] = first;
        }
    }

    template <Kind kind>
    void Transform(char* res, const char* src) const
    {
        const L x = L::SplatAt(src, 0), y = L::SplatAt(src, 1), z = L::SplatAt(src, 2);
        const L moved = kind == POINT ? Blend(x, rows[0], y, rows[1], z, rows[2], rows[3])
                                      : Blend(x, rows[0], y, rows[1], z, rows[2]);
        moved.Store3(res);
    }
};

#ifdef __AVX2__
template <>
template <Kind kind>
void BlendedRows<Avx2Lanes>::Transform(char* res, const char* src) const
{
    const auto at = [&](int i) { return SseLanes::SplatAt(src, i); };
    const Avx2Lanes xy = Avx2Lanes::Halves(at(0), at(1)) * rows[0];
    const Avx2Lanes zw = Avx2Lanes::Halves(at(2), SseLanes::Splat(1)) * rows[1];
    const SseLanes last = kind == POINT ? zw.Low() + zw.High() : zw.Low();
    ((xy.Low() + xy.High()) + last).Store3(res);
}
#endif

template <class L, int influences, class Index>
void SkinVertices(const ZmSkin& skin, const Vertices& vertices)
{
    const char *indices = static_cast<const char*>(skin.indices.Ptr),
               *weights = static_cast<const char*>(skin.weights.Ptr);
    const ptrdiff_t count = vertices.positions.count;
    StridedPair positions = vertices.positions, normals = vertices.normals;
    for (ptrdiff_t i = 0; i < count; ++i, indices += skin.indices.Stride, weights += skin.weights.Stride) {
        Index numbers[influences];
        float shares[influences];
        memcpy(numbers, indices, sizeof(numbers));
        memcpy(shares, weights, sizeof(shares));
        const float* matrices[influences];
        for (int k = 0; k < influences; ++k) {
            const int number = numbers[k] < skin.paletteSize ? numbers[k] : skin.paletteSize - 1;
            matrices[k] = reinterpret_cast<const float*>(skin.palette + number);
        }
        BlendedRows<L> blended;
        blended.template Set<influences>(matrices, shares);
        if (positions.src) {
            blended.template Transform<POINT>(positions.res, positions.src);
            Advance(positions, 1);
        }
        if (normals.src) {
            blended.template Transform<ROTATE>(normals.res, normals.src);
            Advance(normals, 1);
        }
    }
}

template <class L, class Index>
void SkinBy(const ZmSkin& skin, const Vertices& vertices)
{
    switch (skin.influences < 1 ? 1 : skin.influences > 4 ? 4 : skin.influences) {
    case 1: return SkinVertices<L, 1, Index>(skin, vertices);
    case 2: return SkinVertices<L, 2, Index>(skin, vertices);
    case 3: return SkinVertices<L, 3, Index>(skin, vertices);
    default: return SkinVertices<L, 4, Index>(skin, vertices);
    }
}

template <class L>
void Skin(const ZmSkin& skin, const Vertices& vertices)
{
    return skin.wideIndices ? SkinBy<L, uint16_t>(skin, vertices) : SkinBy<L, uint8_t>(skin, vertices);
}

}  // namespace

/// Kernels for processors with AVX2.
namespace avx2 {

void MultiplyMany(const StridedPair& pair, const char* a, ptrdiff_t aStride);
void PlaceNodes(const StridedPair& pair, const int* parents);
void InvertMany(const StridedPair& pair);
void QuaternionsToMatrices(const StridedPair& pair);
void Skin(const ZmSkin& skin, const Vertices& vertices);

}  // namespace avx2
}  // namespace zm

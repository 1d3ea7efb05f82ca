#pragma once

#include "Math/MatrixKernels.h"
#include "Math/StridedLanes.h"
#include "Math/TransformKernels.h"
#include "ZmAnimation.h"

#include <algorithm>
#include <limits>

// Kernels over arrays of matrices, quaternions and vertices.

namespace zm {

/// Arrays of ZmSkinVertices(); those that are left out have null pointers.
struct Vertices {
    StridedPair positions, normals;
};

namespace {

inline const float* AsFloats(const char* p)
{
    return reinterpret_cast<const float*>(p);
}

inline float* AsFloats(char* p)
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
        const AffineFactor<L> factor(AsFloats(a));
        for (ptrdiff_t i = 0; i < pair.count; ++i, res += pair.resStride, b += pair.srcStride) {
            factor.Times(AsFloats(res), AsFloats(b));
        }
        return;
    }
    for (ptrdiff_t i = 0; i < pair.count; ++i, res += pair.resStride, a += aStride, b += pair.srcStride) {
        AffineProduct<L>(AsFloats(res), AsFloats(a), AsFloats(b));
    }
}

template <class L>
void PlaceNodes(const StridedPair& pair, const int* parents)
{
    char* world = pair.res;
    const char* local = pair.src;
    for (ptrdiff_t i = 0; i < pair.count; ++i, world += pair.resStride, local += pair.srcStride) {
        if (parents[i] >= 0 && parents[i] < i) {
            AffineProduct<L>(AsFloats(world), AsFloats(pair.res + parents[i] * pair.resStride), AsFloats(local));
        } else {
            memmove(world, local, sizeof(ZmMatrix));
        }
    }
}

/// The first three of four floats at each of L::kCount places.
template <class L>
void LoadFours(L& x, L& y, L& z, const char* p, ptrdiff_t stride)
{
    const auto load = [&](int i) { return LoadAt<L>::Four(p + i * stride, stride); };
    L unused = load(3);
    x = load(0), y = load(1), z = load(2);
    L::Transpose(x, y, z, unused);
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

/// Vectors in double, component by component.
struct DoubleVectors {
    DoubleLanes x, y, z;

    friend DoubleVectors Cross(const DoubleVectors& a, const DoubleVectors& b)
    {
        return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
    }
};

/// 3x3 blocks of L::kCount matrices, by row, then column.
template <class L>
struct Blocks {
    L at[3][3];
};

/// The lane twin of AffineInverse for four matrices, with the same bits: false if one of them is singular.
inline bool InvertBlocks(Blocks<SseLanes>& res, const DoubleVectors& a, const DoubleVectors& b, const DoubleVectors& c)
{
    const DoubleVectors left = {b.y * c.z, b.z * c.x, b.x * c.y}, right = {b.z * c.y, b.x * c.z, b.y * c.x};
    const DoubleVectors bc = {left.x - right.x, left.y - right.y, left.z - right.z};
    // Summed in the order of DoubleLanes::SumsOfThree.
    const DoubleLanes det = (a.z * bc.z + a.y * bc.y) + a.x * bc.x;
    const DoubleLanes terms =
        (a.z.Abs() * (left.z.Abs() + right.z.Abs()) + a.y.Abs() * (left.y.Abs() + right.y.Abs())) +
        a.x.Abs() * (left.x.Abs() + right.x.Abs());
    if (!DoubleLanes::AllAbove(det.Abs(), 0x1p-150, terms * DoubleLanes::Splat(1e-15))) {
        return false;
    }
    const DoubleLanes factor = DoubleLanes::Splat(1) / det;
    const DoubleVectors columns[] = {bc, Cross(c, a), Cross(a, b)};
    for (int i = 0; i < 3; ++i) {
        res.at[0][i] = (columns[i].x * factor).ToFloats();
        res.at[1][i] = (columns[i].y * factor).ToFloats();
        res.at[2][i] = (columns[i].z * factor).ToFloats();
    }
    return true;
}

inline bool InvertBlocks(Blocks<SseLanes>& res, const Blocks<SseLanes>& blocks)
{
    const auto row = [&](int i) {
        const SseLanes(&r)[3] = blocks.at[i];
        return DoubleVectors{DoubleLanes(r[0]), DoubleLanes(r[1]), DoubleLanes(r[2])};
    };
    return InvertBlocks(res, row(0), row(1), row(2));
}

#ifdef __AVX2__
inline bool InvertBlocks(Blocks<Avx2Lanes>& res, const Blocks<Avx2Lanes>& blocks)
{
    Blocks<SseLanes> halves[2];
    for (int half = 0; half < 2; ++half) {
        const auto row = [&](int i) {
            const auto lanes = [&](int k) {
                const Avx2Lanes both = blocks.at[i][k];
                return DoubleLanes(half == 0 ? both.Low() : both.High());
            };
            return DoubleVectors{lanes(0), lanes(1), lanes(2)};
        };
        if (!InvertBlocks(halves[half], row(0), row(1), row(2))) {
            return false;
        }
    }
    for (int i = 0; i < 3; ++i) {
        for (int k = 0; k < 3; ++k) {
            res.at[i][k] = Avx2Lanes::Halves(halves[0].at[i][k], halves[1].at[i][k]);
        }
    }
    return true;
}
#endif

/// Inverts L::kCount matrices, or returns false and writes nothing if one of them is singular.
template <class L>
bool InvertGroup(const StridedPair& pair)
{
    Blocks<L> blocks, inverse;
    L origin[3];
    for (int row = 0; row < 4; ++row) {
        L(&r)[3] = row < 3 ? blocks.at[row] : origin;
        LoadFours(r[0], r[1], r[2], pair.src + 16 * row, pair.srcStride);
    }
    if (!InvertBlocks(inverse, blocks)) {
        return false;
    }
    const L none = L::Splat(0);
    const L(&m)[3][3] = inverse.at;
    L moved[3];
    for (int i = 0; i < 3; ++i) {
        moved[i] = none - ((origin[0] * m[0][i] + origin[1] * m[1][i]) + origin[2] * m[2][i]);
    }
    for (int i = 0; i < 3; ++i) {
        StoreRows(pair.res, pair.resStride, i, m[i][0], m[i][1], m[i][2], none);
    }
    StoreRows(pair.res, pair.resStride, 3, moved[0], moved[1], moved[2], L::Splat(1));
    return true;
}

template <class L>
void InvertMany(StridedPair pair)
{
    while (pair.count > 0) {
        const int count = pair.count < L::kCount ? int(pair.count) : L::kCount;
        if (count < L::kCount || !InvertGroup<L>(pair)) {
            for (int i = 0; i < count; ++i) {
                AffineInverse(AsFloats(pair.res + i * pair.resStride), AsFloats(pair.src + i * pair.srcStride));
            }
        }
        Advance(pair, count);
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

/// Up to four indices of matrices, none beyond the last.
template <class Index, int influences>
class Bones {
public:
    Bones(const char* p, int paletteSize)
    {
        memcpy(&m_Packed, p, influences * sizeof(Index));
        const int last = paletteSize - 1;
        const __m128i numbers = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(&m_Packed));
        _mm_storel_epi64(reinterpret_cast<__m128i*>(&m_Packed), Least(numbers, last));
    }

    const float* In(const ZmMatrix* palette, int k) const
    {
        return AsFloats(reinterpret_cast<const char*>(palette + Index(m_Packed >> (8 * sizeof(Index) * unsigned(k)))));
    }

private:
    static __m128i Least(__m128i numbers, int last)
    {
        if constexpr (sizeof(Index) == 1) {
            return _mm_min_epu8(numbers, _mm_set1_epi8(char(last < 0xFF ? last : 0xFF)));
        } else {
            const __m128i most = _mm_set1_epi16(short(last < 0xFFFF ? last : 0xFFFF));
            return _mm_sub_epi16(numbers, _mm_subs_epu16(numbers, most));
        }
    }

    uint64_t m_Packed = 0;
};

/// The matrices of a vertex, blended: one row or two in each register.
template <class L>
struct BlendedRows {
    static constexpr int kParts = 16 / L::kCount;

    L rows[kParts];

    template <class Index, int influences>
    BlendedRows(const ZmMatrix* palette, const Bones<Index, influences>& bones, const char* weights)
    {
        const auto part = [&](int k, int i) {
            return L::SplatAt(weights, k) * L::Load(bones.In(palette, k) + i * L::kCount);
        };
        for (int i = 0; i < kParts; ++i) {
            rows[i] = part(0, i);
            if constexpr (influences > 1) {
                rows[i] = rows[i] + part(1, i);
            }
            if constexpr (influences == 3) {
                rows[i] = rows[i] + part(2, i);
            }
            if constexpr (influences == 4) {
                rows[i] = rows[i] + (part(2, i) + part(3, i));
            }
        }
    }

    /// Transforms a position p and rotates a normal n.
    void Move(char* position, const char* p, char* normal, const char* n) const
    {
        const auto at = [](const char* v, int i) { return L::SplatAt(v, i); };
        const L moved = Blend(at(p, 0), rows[0], at(p, 1), rows[1], at(p, 2), rows[2], rows[3]);
        const L turned = Blend(at(n, 0), rows[0], at(n, 1), rows[1], at(n, 2), rows[2]);
        moved.Store3(position);
        turned.Store3(normal);
    }
};

#ifdef __AVX2__
/// The position in the lower half, the normal, to which -0 is added, in the upper one.
template <>
inline void BlendedRows<Avx2Lanes>::Move(char* position, const char* p, char* normal, const char* n) const
{
    const auto at = [=](int i) { return Avx2Lanes::SplatHalves(p, n, i); };
    const Avx2Lanes moved = Blend(at(0), rows[0].LowTwice(), at(1), rows[0].HighTwice(), at(2), rows[1].LowTwice(),
                                  rows[1].HighAnd(SseLanes::Splat(-0.0f)));
    moved.Low().Store3(position);
    moved.High().Store3(normal);
}
#endif

template <class L, int influences, class Index>
void SkinVertices(const ZmSkin& skin, const Vertices& vertices)
{
    const char *indices = static_cast<const char*>(skin.indices.Ptr),
               *weights = static_cast<const char*>(skin.weights.Ptr);
    const ptrdiff_t indexStride = skin.indices.Stride, weightStride = skin.weights.Stride;
    const ZmMatrix* const palette = skin.palette;
    const int paletteSize = skin.paletteSize;
    // An array that is left out follows the other one, to where nobody looks.
    char unused[sizeof(ZmVector)];
    const auto orUnused = [&unused](const StridedPair& pair, const StridedPair& other) {
        return pair.src ? pair : StridedPair{unused, 0, other.src, other.srcStride, other.count};
    };
    const StridedPair positions = orUnused(vertices.positions, vertices.normals),
                      normals = orUnused(vertices.normals, vertices.positions);
    const char *p = positions.src, *n = normals.src;
    char *moved = positions.res, *turned = normals.res;
    for (ptrdiff_t left = p ? positions.count : 0; left > 0; --left) {
        const Bones<Index, influences> bones(indices, paletteSize);
        BlendedRows<L>(palette, bones, weights).Move(moved, p, turned, n);
        indices += indexStride;
        weights += weightStride;
        moved += positions.resStride;
        p += positions.srcStride;
        turned += normals.resStride;
        n += normals.srcStride;
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

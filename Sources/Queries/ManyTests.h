#pragma once

#include "Math/StridedLanes.h"
#include "ZmBbox.h"
#include "ZmFrustum.h"
#include "ZmRay.h"
#include "ZmSphere.h"

#include <stdint.h>

// Tests of one object against L::kCount elements at once, component by component. The formulas and their order are
// those of ZmIntersect, so the results are the same.

namespace zm {

/// Elements to test and where the results go; either of `hits` and `indices` may be null.
struct ManyElements {
    ManyElements(const ZmStridedData& data, int n, uint8_t* h, uint32_t* i)
        : elements(static_cast<const char*>(data.Ptr)), stride(ptrdiff_t(data.Stride)), count(n), hits(h), indices(i)
    {
    }

    const char* elements;
    ptrdiff_t stride;
    int count;
    uint8_t* hits;
    uint32_t* indices;
};

namespace {

constexpr int kAxes = 3;

/// Boxes component by component: Max, then Min.
template <class L>
struct BoxLanes {
    static constexpr int kBytes = 24;

    L max[kAxes], min[kAxes];

    BoxLanes() = default;
    BoxLanes(const char* p, ptrdiff_t stride)
    {
        const auto two = [&](int i) { return LoadAt<L>::Two(p + i * stride + 16, stride); };
        for (int i = 0; i < kAxes; ++i) {
            max[i] = LoadAt<L>::Four(p + i * stride, stride);
        }
        min[0] = LoadAt<L>::Four(p + 3 * stride, stride);
        L::Transpose(max[0], max[1], max[2], min[0]);
        const L low = L::template Shuffle<0, 1, 0, 1>(two(0), two(1));
        const L high = L::template Shuffle<0, 1, 0, 1>(two(2), two(3));
        min[1] = L::template Shuffle<0, 2, 0, 2>(low, high);
        min[2] = L::template Shuffle<1, 3, 1, 3>(low, high);
    }

    void Store(char* p, ptrdiff_t stride) const
    {
        L a = max[0], b = max[1], c = max[2], d = min[0];
        L::Transpose(a, b, c, d);
        const L y = L::template Shuffle<0, 1, 0, 1>(min[1], min[2]),
                z = L::template Shuffle<2, 3, 2, 3>(min[1], min[2]);
        const L rows[] = {a, b, c, d};
        const L rests[] = {L::template Shuffle<0, 2, 0, 2>(y, y), L::template Shuffle<1, 3, 1, 3>(y, y),
                           L::template Shuffle<0, 2, 0, 2>(z, z), L::template Shuffle<1, 3, 1, 3>(z, z)};
        for (int i = 0; i < 4; ++i) {
            LoadAt<L>::StoreFour(rows[i], p + i * stride, stride);
            LoadAt<L>::StoreTwo(rests[i], p + i * stride + 16, stride);
        }
    }
};

template <class L>
struct SphereLanes {
    static constexpr int kBytes = 16;

    L x, y, z, radius;

    SphereLanes(const char* p, ptrdiff_t stride)
        : x(LoadAt<L>::Four(p, stride)), y(LoadAt<L>::Four(p + stride, stride)),
          z(LoadAt<L>::Four(p + 2 * stride, stride)), radius(LoadAt<L>::Four(p + 3 * stride, stride))
    {
        L::Transpose(x, y, z, radius);
    }
};

// --- Tests ----------------------------------------------------------------------------
//
// Each gives a mask of the elements that do NOT pass.

/// Whether the nearest part of an element lies in front of one of the planes.
template <class L>
class FrustumTest {
public:
    explicit FrustumTest(const ZmFrustum& frustum) : m_Planes(frustum.Planes) {}

    unsigned Fails(const BoxLanes<L>& boxes) const
    {
        L farthest = L::Splat(-1);
        for (int i = 0; i < kPlanes; ++i) {
            const ZmVector& normal = m_Planes[i].Normal;
            const L& x = normal.x < 0 ? boxes.max[0] : boxes.min[0];
            const L& y = normal.y < 0 ? boxes.max[1] : boxes.min[1];
            const L& z = normal.z < 0 ? boxes.max[2] : boxes.min[2];
            farthest = L::Max(Distance(m_Planes[i], x, y, z), farthest);
        }
        return L::LessMask(L::Splat(0), farthest);
    }

    unsigned Fails(const SphereLanes<L>& spheres) const
    {
        L farthest = Distance(m_Planes[0], spheres.x, spheres.y, spheres.z);
        for (int i = 1; i < kPlanes; ++i) {
            farthest = L::Max(Distance(m_Planes[i], spheres.x, spheres.y, spheres.z), farthest);
        }
        return L::LessMask(spheres.radius, farthest);
    }

private:
    static constexpr int kPlanes = 6;

    static L Distance(const ZmPlane& plane, L x, L y, L z)
    {
        const L sum = L::Splat(plane.Normal.x) * x + L::Splat(plane.Normal.y) * y + L::Splat(plane.Normal.z) * z;
        return sum + L::Splat(plane.D);
    }

    const ZmPlane* m_Planes;
};

/// The separating axes of ZmIntersect::RayBox: those of the box and their vector products with the direction.
template <class L>
class RayTest {
public:
    explicit RayTest(const ZmRay& ray)
    {
        const float origin[] = {ray.Origin.x, ray.Origin.y, ray.Origin.z};
        const float direction[] = {ray.Direction.x, ray.Direction.y, ray.Direction.z};
        for (int i = 0; i < kAxes; ++i) {
            m_Origin[i] = L::Splat(origin[i]);
            m_Direction[i] = L::Splat(direction[i]);
            m_Reach[i] = m_Direction[i].Abs();
        }
    }

    unsigned Fails(const BoxLanes<L>& boxes) const
    {
        const L half = L::Splat(0.5f);
        L size[kAxes], offset[kAxes];
        for (int i = 0; i < kAxes; ++i) {
            size[i] = (boxes.max[i] - boxes.min[i]) * half;
            offset[i] = m_Origin[i] - (boxes.max[i] + boxes.min[i]) * half;
        }
        unsigned apart = 0;
        for (int i = 0; i < kAxes; ++i) {
            const int j = (i + 1) % kAxes, k = (i + 2) % kAxes;
            const L product = m_Direction[j] * offset[k] - m_Direction[k] * offset[j];
            const L radius = m_Reach[j] * size[k] + m_Reach[k] * size[j];
            apart |= L::LessMask(radius, product.Abs());
            apart |= L::LessMask(size[i], offset[i].Abs()) & L::LessEqualMask(L::Splat(0), offset[i] * m_Direction[i]);
        }
        return apart;
    }

private:
    L m_Origin[kAxes], m_Direction[kAxes], m_Reach[kAxes];
};

template <class L>
class BoxTest {
public:
    explicit BoxTest(const ZmBbox& box)
    {
        const float max[] = {box.Max.x, box.Max.y, box.Max.z}, min[] = {box.Min.x, box.Min.y, box.Min.z};
        for (int i = 0; i < kAxes; ++i) {
            m_Max[i] = L::Splat(max[i]);
            m_Min[i] = L::Splat(min[i]);
        }
    }

    unsigned Fails(const BoxLanes<L>& boxes) const
    {
        unsigned apart = 0;
        for (int i = 0; i < kAxes; ++i) {
            apart |= L::LessMask(boxes.max[i], m_Min[i]) | L::LessMask(m_Max[i], boxes.min[i]);
        }
        return apart;
    }

private:
    L m_Max[kAxes], m_Min[kAxes];
};

template <class L>
class SphereTest {
public:
    explicit SphereTest(const ZmSphere& sphere)
        : m_Centre{L::Splat(sphere.Center.x), L::Splat(sphere.Center.y), L::Splat(sphere.Center.z)},
          m_Square(L::Splat(sphere.Radius * sphere.Radius))
    {
    }

    unsigned Fails(const BoxLanes<L>& boxes) const
    {
        L squares[kAxes];
        for (int i = 0; i < kAxes; ++i) {
            const L outside = L::Max(L::Max(boxes.min[i] - m_Centre[i], m_Centre[i] - boxes.max[i]), L::Splat(0));
            squares[i] = outside * outside;
        }
        return ~L::LessEqualMask((squares[0] + squares[1]) + squares[2], m_Square);
    }

private:
    L m_Centre[kAxes], m_Square;
};

// --- Loops ----------------------------------------------------------------------------

/// Writes the hits of up to eight elements from `first` on, of which the bits of `passed` are set.
inline void WriteHits(const ManyElements& many, int first, int count, unsigned passed)
{
    // Bit i to byte i, as 0 or 1.
    constexpr uint64_t kEachByte = 0x0101010101010101, kLowBits = 0x7F7F7F7F7F7F7F7F;
    const uint64_t bits = (passed * kEachByte) & 0x8040201008040201;
    const uint64_t bytes = ((bits + kLowBits) >> 7) & kEachByte;
    memcpy(many.hits + first, &bytes, size_t(count));
}

/// Lists those of `count` elements from `first` on whose bits are set, and returns the length of the list then.
inline int ListIndices(uint32_t* indices, int found, int first, int count, unsigned passed)
{
    for (int i = 0; i < count; ++i) {
        indices[found] = uint32_t(first + i);
        found += int(passed >> i & 1);
    }
    return found;
}

/// The same for L::kCount elements.
template <class L>
struct AllLanes {
    static int ListIndices(uint32_t* indices, int found, int first, unsigned passed)
    {
        return zm::ListIndices(indices, found, first, L::kCount, passed);
    }
};

#ifdef __AVX2__
/// For each mask of eight, the numbers of its bits, then zeros.
struct BitNumbers {
    uint8_t of[256][8] = {};

    constexpr BitNumbers()
    {
        for (unsigned mask = 0; mask < 256; ++mask) {
            int found = 0;
            for (uint8_t bit = 0; bit < 8; ++bit) {
                of[mask][found] = bit;
                found += int(mask >> bit & 1);
            }
        }
    }
};
constexpr BitNumbers kBitNumbers;

template <>
struct AllLanes<Avx2Lanes> {
    static int ListIndices(uint32_t* indices, int found, int first, unsigned passed)
    {
        const __m128i bits = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(kBitNumbers.of[passed]));
        const __m256i numbers = _mm256_add_epi32(_mm256_cvtepu8_epi32(bits), _mm256_set1_epi32(first));
        // There is room for eight: no more than `first` have been found.
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(indices + found), numbers);
        return found + __builtin_popcount(passed);
    }
};
#endif

/// Writes the results of up to L::kCount elements and returns how many have been found so far.
template <class L>
int WriteResults(const ManyElements& many, int first, int count, unsigned passed, int found)
{
    if (many.hits) {
        WriteHits(many, first, count, passed);
    }
    if (!many.indices) {
        return found + __builtin_popcount(passed);
    }
    return count == L::kCount ? AllLanes<L>::ListIndices(many.indices, found, first, passed)
                              : ListIndices(many.indices, found, first, count, passed);
}

/// A mask of those among the first `count` elements that pass.
template <class Test, class Elements>
unsigned Passed(const Test& test, const Elements& elements, int count)
{
    return ~test.Fails(elements) & ((1u << count) - 1);
}

template <class L, class Elements, class Test>
int TestMany(const Test& test, const ManyElements& many)
{
    int found = 0, i = 0;
    const char* p = many.elements;
    for (; i <= many.count - L::kCount; i += L::kCount, p += L::kCount * many.stride) {
        found = WriteResults<L>(many, i, L::kCount, Passed(test, Elements(p, many.stride), L::kCount), found);
    }
    if (i < many.count) {
        const int count = many.count - i;
        char rest[L::kCount * Elements::kBytes] = {};
        Pack<Elements::kBytes>(rest, p, many.stride, count);
        found = WriteResults<L>(many, i, count, Passed(test, Elements(rest, Elements::kBytes), count), found);
    }
    return found;
}

/// See ZmBbox::TransformFrom: each axis of an old box contributes the smaller and the larger of its two images.
template <class L>
BoxLanes<L> BoxesAround(const BoxLanes<L>& boxes, const float* m)
{
    BoxLanes<L> res;
    for (int i = 0; i < kAxes; ++i) {
        L low[kAxes], high[kAxes];
        for (int axis = 0; axis < kAxes; ++axis) {
            const L scale = L::Splat(m[4 * axis + i]), a = boxes.min[axis] * scale, b = boxes.max[axis] * scale;
            low[axis] = L::Min(a, b);
            high[axis] = L::Max(a, b);
        }
        const L origin = L::Splat(m[12 + i]);
        res.max[i] = (high[0] + high[1]) + (high[2] + origin);
        res.min[i] = (low[0] + low[1]) + (low[2] + origin);
    }
    return res;
}

template <class L>
void TransformMany(StridedPair pair, const float* m)
{
    using Boxes = BoxLanes<L>;
    const auto group = [m](char* res, ptrdiff_t resStride, const char* src, ptrdiff_t srcStride) {
        BoxesAround(Boxes(src, srcStride), m).Store(res, resStride);
    };
    ForGroups<L, Boxes::kBytes, Boxes::kBytes>(pair, group);
}

}  // namespace

/// Kernels for processors with AVX2.
namespace avx2 {

int CullBoxes(const ZmFrustum& frustum, const ManyElements& boxes);
int CullSpheres(const ZmFrustum& frustum, const ManyElements& spheres);
int RayBoxes(const ZmRay& ray, const ManyElements& boxes);
int BoxBoxes(const ZmBbox& box, const ManyElements& boxes);
int SphereBoxes(const ZmSphere& sphere, const ManyElements& boxes);
void TransformBoxes(const StridedPair& pair, const float* m);

}  // namespace avx2
}  // namespace zm

#pragma once

#include "Math/Lanes.h"
#include "ZmPicking.h"

// A ray against L::kCount triangles at once.
//
// A shear turns the ray into an axis of the coordinate system; seen along it, the triangles are flat and the ray is the
// origin. The corners are rounded to floats of that plane, each by itself, so that triangles with a common edge keep
// it. The edges' areas with the origin then never have the wrong sign, since rounding keeps the order of two products:
// areas that are not 0 come out with their sign or as 0. So what has areas of both signs is a miss, and the few other
// triangles are tested once more in double, where the products of two floats are exact.

namespace zm {

/// What a call looks for. `triangles` is the number of those whose indices can be read.
struct MeshQuery {
    const ZmRay* ray;
    const ZmMesh* mesh;
    int triangles;
    float maxDistance;
    uint32_t sides;
    ZmMeshHit* hit;  ///< null: any hit will do
};

namespace {

constexpr unsigned kPositionBytes = 12;

/// The number of the direction's largest component, the first of equals.
inline int AxisOf(const ZmRay& ray)
{
    const float x = fabsf(ray.Direction.x), y = fabsf(ray.Direction.y), z = fabsf(ray.Direction.z);
    return x >= y && x >= z ? 0 : y >= z ? 1 : 2;
}

/// A ray by its axis, which comes last; the other two precede it in the order that keeps the handedness.
struct AxisRay {
    float origin[3], slope[2], along;

    AxisRay(const ZmRay& ray, int axis)
    {
        const float from[] = {ray.Origin.x, ray.Origin.y, ray.Origin.z};
        const float to[] = {ray.Direction.x, ray.Direction.y, ray.Direction.z};
        for (int i = 0; i < 3; ++i) {
            origin[i] = from[(axis + 1 + i) % 3];
        }
        along = to[axis];
        for (int i = 0; i < 2; ++i) {
            slope[i] = to[(axis + 1 + i) % 3] / along;
        }
    }
};

/// A corner as seen along the ray, and how far along the axis it lies.
template <class L>
struct SeenCorner {
    L x, y, depth;
};

/// A ray in all lanes.
template <class L>
class RayLanes {
public:
    explicit RayLanes(const AxisRay& ray)
        : m_Origin{L::Splat(ray.origin[0]), L::Splat(ray.origin[1]), L::Splat(ray.origin[2])},
          m_Slope{L::Splat(ray.slope[0]), L::Splat(ray.slope[1])}
    {
    }

    SeenCorner<L> See(L x, L y, L along) const
    {
        const L depth = along - m_Origin[2];
        return {(x - m_Origin[0]) - m_Slope[0] * depth, (y - m_Origin[1]) - m_Slope[1] * depth, depth};
    }

private:
    L m_Origin[3], m_Slope[2];
};

/// Twice the area of the triangle of two corners and the ray.
template <class L>
L Area(L x0, L y0, L x1, L y1)
{
    return x0 * y1 - y0 * x1;
}

/// The indices of a mesh, by the type of their elements; void: it has none.
template <class Index>
struct Indices {
    const char* first;

    explicit Indices(const ZmMesh& mesh) : first(static_cast<const char*>(mesh.indices)) {}
    uint32_t operator[](size_t i) const
    {
        Index index;
        memcpy(&index, first + i * sizeof(Index), sizeof(Index));
        return index;
    }
#ifdef __AVX2__
    __m256i Eight(size_t i) const
    {
        const char* p = first + i * sizeof(Index);
        return sizeof(Index) == 4 ? _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p))
                                  : _mm256_cvtepu16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)));
    }
#endif
};
template <>
struct Indices<void> {
    explicit Indices(const ZmMesh&) {}
    uint32_t operator[](size_t i) const { return uint32_t(i); }
#ifdef __AVX2__
    /// The greatest of them will do.
    __m256i Eight(size_t i) const
    {
        return _mm256_set1_epi32(int(i + 7));
    }
#endif
};

// --- One triangle, in double ----------------------------------------------------------

/// The hit that has been found so far.
class HitSoFar {
public:
    HitSoFar(const MeshQuery& query, int axis) : m_Query(query), m_Ray(*query.ray, axis), m_Axis(axis) {}

    const AxisRay& Ray() const { return m_Ray; }
    bool Found() const { return m_Found; }
    /// Whether no other triangle matters any more.
    bool Ends() const { return m_Found && !m_Query.hit; }

    /// Takes a triangle if it is hit, and nearer than those before.
    [[gnu::noinline]] void Test(int triangle, uint32_t corner0, uint32_t corner1, uint32_t corner2)
    {
        const uint32_t count = uint32_t(m_Query.mesh->positionCount);
        if (corner0 < count && corner1 < count && corner2 < count) {
            Test(triangle, See(corner0), See(corner1), See(corner2));
        }
    }

private:
    using Corner = SeenCorner<SingleLane>;

    Corner See(uint32_t corner) const
    {
        const ZmStridedData& positions = m_Query.mesh->positions;
        const char* p = static_cast<const char*>(positions.Ptr) + size_t(corner) * positions.Stride;
        const auto component = [&](int axis) { return SingleLane::At(p + 4 * ((m_Axis + axis) % 3)); };
        return RayLanes<SingleLane>(m_Ray).See(component(1), component(2), component(3));
    }
    void Test(int triangle, const Corner& a, const Corner& b, const Corner& c)
    {
        const double u = AreaOf(c, a), v = AreaOf(a, b), w = AreaOf(b, c), area = w + u + v;
        const bool inside = (u >= 0 && v >= 0 && w >= 0) || (u <= 0 && v <= 0 && w <= 0);
        if (inside && (m_Query.sides & SideOf(area)) != 0) {  // without area, all numbers of the hit are NaN
            const double depth = w * a.depth.v + u * b.depth.v + v * c.depth.v;
            Take({triangle, float(depth / (area * m_Ray.along)), float(u / area), float(v / area)});
        }
    }
    static double AreaOf(const Corner& a, const Corner& b) { return Area<double>(a.x.v, a.y.v, b.x.v, b.y.v); }
    uint32_t SideOf(double area) const { return (area < 0) != (m_Ray.along < 0) ? ZMMESH_FRONT : ZMMESH_BACK; }
    void Take(const ZmMeshHit& hit)
    {
        const bool near = m_Found ? hit.distance < m_Nearest : hit.distance <= m_Query.maxDistance;
        if (hit.distance >= 0 && near) {
            m_Found = true;
            m_Nearest = hit.distance;
            if (m_Query.hit) {
                *m_Query.hit = hit;
            }
        }
    }

    const MeshQuery& m_Query;
    AxisRay m_Ray;
    int m_Axis;
    bool m_Found = false;
    float m_Nearest = 0;
};

// --- Many triangles -------------------------------------------------------------------

/// How the corners of a group are read. TIGHT: all indices are below that of the last position, and the positions lie
/// next to each other, so four floats may be read for three. ANY: indices out of range become that of the last
/// position; HitSoFar looks at them again.
enum class Reading {
    TIGHT,
    ANY
};

/// The positions of a mesh by index.
template <class Index>
struct Corners {
    Indices<Index> indices;
    const char* positions;
    uint32_t stride, last;

    explicit Corners(const ZmMesh& mesh)
        : indices(mesh), positions(static_cast<const char*>(mesh.positions.Ptr)), stride(mesh.positions.Stride),
          last(uint32_t(mesh.positionCount - 1))
    {
    }

    uint32_t IndexOf(int triangle, int corner) const { return indices[size_t(triangle) * 3 + size_t(corner)]; }

    template <Reading reading>
    const char* At(int triangle, int corner) const
    {
        const uint32_t index = IndexOf(triangle, corner);
        return reading == Reading::TIGHT ? positions + size_t(index) * kPositionBytes
                                         : positions + size_t(index < last ? index : last) * stride;
    }
};

/// How L::kCount triangles are read.
template <class L>
struct TriangleGroup {
    template <class Index>
    static bool IsTight(const Corners<Index>&, int)
    {
        return false;
    }
    /// A corner of a triangle and, in eight lanes, of the one four further on.
    template <Reading reading, class Index>
    static L Load(const Corners<Index>& corners, int triangle, int corner)
    {
        return L::Load3(corners.template At<reading>(triangle, corner));
    }
};

#ifdef __AVX2__
template <>
struct TriangleGroup<Avx2Lanes> {
    template <class Index>
    static bool IsTight(const Corners<Index>& corners, int triangle)
    {
        const auto eight = [&](int i) { return corners.indices.Eight(size_t(triangle) * 3 + size_t(i) * 8); };
        const __m256i greatest = _mm256_max_epu32(_mm256_max_epu32(eight(0), eight(1)), eight(2));
        const __m256i limited = _mm256_max_epu32(greatest, _mm256_set1_epi32(int(corners.last)));
        return corners.stride == kPositionBytes && _mm256_movemask_epi8(_mm256_cmpeq_epi32(greatest, limited)) == 0;
    }
    template <Reading reading, class Index>
    static Avx2Lanes Load(const Corners<Index>& corners, int triangle, int corner)
    {
        return Avx2Lanes::Halves(Half<reading>(corners.template At<reading>(triangle, corner)),
                                 Half<reading>(corners.template At<reading>(triangle + 4, corner)));
    }

private:
    template <Reading reading>
    static SseLanes Half(const char* p)
    {
        return reading == Reading::TIGHT
                   ? SseLanes::Load4(p)
                   : SseLanes{_mm_maskload_ps(reinterpret_cast<const float*>(p), _mm_setr_epi32(-1, -1, -1, 0))};
    }
};
#endif

/// A mask of the triangles that are not certainly missed.
template <class L>
unsigned Candidates(const SeenCorner<L> (&seen)[3])
{
    const L a = Area(seen[1].x, seen[1].y, seen[2].x, seen[2].y);
    const L b = Area(seen[2].x, seen[2].y, seen[0].x, seen[0].y);
    const L c = Area(seen[0].x, seen[0].y, seen[1].x, seen[1].y);
    // NaNs may hide another area, which only costs a test.
    const L least = L::Min(L::Min(a, b), c), greatest = L::Max(L::Max(a, b), c), zero = L::Splat(0);
    const unsigned missed = L::LessMask(least, zero) & L::LessMask(zero, greatest);
    return ~missed & ((1u << L::kCount) - 1);
}

template <Reading reading, int Axis, class L, class Index>
unsigned Candidates(const RayLanes<L>& ray, const Corners<Index>& corners, int triangle)
{
    SeenCorner<L> seen[3];
    for (int i = 0; i < 3; ++i) {
        L p[4];
        for (int k = 0; k < 4; ++k) {
            p[k] = TriangleGroup<L>::template Load<reading>(corners, triangle + k, i);
        }
        L::Transpose(p[0], p[1], p[2], p[3]);
        seen[i] = ray.See(p[(Axis + 1) % 3], p[(Axis + 2) % 3], p[Axis]);
    }
    return Candidates(seen);
}

/// Kept apart: the compiler would otherwise prepare for both readings before it chooses.
template <int Axis, class L, class Index>
[[gnu::noinline]] unsigned AnyCandidates(const RayLanes<L>& ray, const Corners<Index>& corners, int triangle)
{
    return Candidates<Reading::ANY, Axis>(ray, corners, triangle);
}

template <class L, int Axis, class Index>
bool FindHitIn(const MeshQuery& query)
{
    const Corners<Index> corners(*query.mesh);
    HitSoFar hit(query, Axis);
    const RayLanes<L> ray(hit.Ray());
    const auto test = [&](int triangle) {
        hit.Test(triangle, corners.IndexOf(triangle, 0), corners.IndexOf(triangle, 1), corners.IndexOf(triangle, 2));
    };
    const int lastGroup = query.triangles - L::kCount;
    for (int i = 0; lastGroup < 0 && i < query.triangles && !hit.Ends(); ++i) {
        test(i);
    }
    for (ptrdiff_t i = 0; lastGroup >= 0 && i < query.triangles && !hit.Ends(); i += L::kCount) {
        // The last group may begin with triangles of the one before, which changes nothing.
        const int first = i < lastGroup ? int(i) : lastGroup;
        unsigned candidates = TriangleGroup<L>::IsTight(corners, first)
                                  ? Candidates<Reading::TIGHT, Axis>(ray, corners, first)
                                  : AnyCandidates<Axis>(ray, corners, first);
        for (; candidates != 0 && !hit.Ends(); candidates &= candidates - 1) {
            test(first + __builtin_ctz(candidates));
        }
    }
    return hit.Found();
}

template <class L, int Axis>
bool FindHitAlong(const MeshQuery& query)
{
    return !query.mesh->indices      ? FindHitIn<L, Axis, void>(query)
           : query.mesh->wideIndices ? FindHitIn<L, Axis, uint32_t>(query)
                                     : FindHitIn<L, Axis, uint16_t>(query);
}

template <class L>
bool FindHit(const MeshQuery& query)
{
    const int axis = AxisOf(*query.ray);
    return axis == 0 ? FindHitAlong<L, 0>(query) : axis == 1 ? FindHitAlong<L, 1>(query) : FindHitAlong<L, 2>(query);
}

}  // namespace

/// Kernels for processors with AVX2.
namespace avx2 {

bool FindHit(const MeshQuery& query);

}  // namespace avx2
}  // namespace zm

#pragma once

#include "Math/AnimationKernels.h"
#include "Math/QuaternionLanes.h"
#include "ZmInline.h"

// Kernels over arrays of quaternions, vectors and their transforms.

namespace zm {

/// The sources of a bulk operation.
template <int N>
struct StridedSources {
    const char* p[N];
    ptrdiff_t stride[N];
};

/// An array of results.
struct StridedResults {
    char* p;
    ptrdiff_t stride;
    ptrdiff_t count;
};

/// Elements that a kernel leaves to the inline functions.
void SlerpSingly(char* res, const char* a, const char* b, float t);
void NlerpSingly(char* res, const char* a, const char* b, float t);

namespace {

inline StridedSources<2> SourcesOf(const ZmStridedData& a, const ZmStridedData& b)
{
    return {{static_cast<const char*>(a.Ptr), static_cast<const char*>(b.Ptr)}, {a.Stride, b.Stride}};
}

inline StridedSources<3> SourcesOf(const ZmStridedData& a, const ZmStridedData& b, const ZmStridedData& c)
{
    return {{static_cast<const char*>(a.Ptr), static_cast<const char*>(b.Ptr), static_cast<const char*>(c.Ptr)},
            {a.Stride, b.Stride, c.Stride}};
}

inline StridedResults ResultsOf(const ZmStridedData& res, int count)
{
    return {static_cast<char*>(res.Ptr), res.Stride, count};
}

/// Calls group(res, resStride, from) for each `Lanes` elements; OutBytes and Bytes are the sizes of elements. The last
/// ones pass through memory of their own, which copies of them fill.
template <int Lanes, int OutBytes, int... Bytes, class Group>
void ForGroupsOf(StridedResults res, StridedSources<sizeof...(Bytes)> from, Group group)
{
    constexpr int N = sizeof...(Bytes), bytes[] = {Bytes...}, kLargest = 16;
    for (; res.count >= Lanes; res.count -= Lanes, res.p += Lanes * res.stride) {
        group(res.p, res.stride, from);
        for (int k = 0; k < N; ++k) {
            from.p[k] += Lanes * from.stride[k];
        }
    }
    if (res.count > 0) {
        char in[N][Lanes * kLargest], out[Lanes * OutBytes];
        StridedSources<N> packed;
        for (int k = 0; k < N; ++k) {
            for (ptrdiff_t i = 0; i < Lanes; ++i) {
                const ptrdiff_t last = res.count - 1;
                memcpy(in[k] + i * bytes[k], from.p[k] + (i < last ? i : last) * from.stride[k], size_t(bytes[k]));
            }
            packed.p[k] = in[k];
            packed.stride[k] = bytes[k];
        }
        group(out, ptrdiff_t(OutBytes), packed);
        Unpack<OutBytes>(res.p, res.stride, out, res.count);
    }
}

/// Stores a group, but elements of `special` as single(res, a, b, t) computes them. These are computed first, as the
/// results may lie where the sources do.
template <class L, class Single>
void StoreWithout(unsigned special, Single single, char* res, ptrdiff_t stride, const L (&q)[4],
                  const StridedSources<3>& from)
{
    if (__builtin_expect(special == 0, 1)) {
        return L::Store(res, stride, q);
    }
    char alone[L::kCount][16];
    const auto isSpecial = [=](int i) { return (special >> i & 1) != 0; };
    for (int i = 0; i < L::kCount; ++i) {
        if (isSpecial(i)) {
            single(alone[i], from.p[0] + i * from.stride[0], from.p[1] + i * from.stride[1],
                   FloatAt(from.p[2] + i * from.stride[2]));
        }
    }
    char all[L::kCount][16];
    L::Store(all[0], 16, q);
    for (int i = 0; i < L::kCount; ++i) {
        memcpy(res + i * stride, isSpecial(i) ? alone[i] : all[i], 16);
    }
}

// --- Interpolation ----------------------------------------------------------------------

/// What TwoDoubles is to doubles.
template <class L>
struct TwoOf {
    L a, b;

    TwoOf(double first, double second) : a(first), b(second) {}
    TwoOf(L first, L second) : a(first), b(second) {}
    L First() const { return a; }
    L Second() const { return b; }
    TwoOf operator+(const TwoOf& o) const { return {a + o.a, b + o.b}; }
    TwoOf operator*(const TwoOf& o) const { return {a * o.a, b * o.b}; }
};

template <class L>
L DotOf(const L (&a)[4], const L (&b)[4])
{
    return (a[0] * b[0] + a[1] * b[1]) + (a[2] * b[2] + a[3] * b[3]);
}

template <class L>
void WeightedSum(L (&a)[4], const L (&b)[4], L ka, L kb)
{
    for (int i = 0; i < 4; ++i) {
        a[i] = a[i] * ka + b[i] * kb;
    }
}

/// InverseRoots() in lanes.
template <class L>
TwoOf<L> InverseRootsOf(const TwoOf<L>& squares)
{
    const L one(1), near(0x1p-15);
    const typename L::Mask areNear =
        L::Both(L::Less((squares.a - one).Abs(), near), L::Less((squares.b - one).Abs(), near));
    const TwoOf<L> tangent = TwoOf<L>(1.5, 1.5) + TwoOf<L>(-0.5, -0.5) * squares;
    if (__builtin_expect(L::Bits(areNear) == (1u << L::kCount) - 1, 1)) {
        return tangent;
    }
    return {L::Select(areNear, tangent.a, one / squares.a.Root()),
            L::Select(areNear, tangent.b, one / squares.b.Root())};
}

/// SlerpExact.
template <class L>
void SlerpGroup(char* res, ptrdiff_t stride, const StridedSources<3>& from)
{
    L a[4], b[4];
    L::Load(from.p[0], from.stride[0], a);
    L::Load(from.p[1], from.stride[1], b);
    const L t = L::Load(from.p[2], from.stride[2]), dot = DotOf(a, b), none(0), one(1);
    const TwoOf<L> factors = InverseRootsOf(TwoOf<L>(DotOf(a, a), DotOf(b, b)));
    const L c = dot.Abs() * (factors.a * factors.b);
    const TwoOf<L> nearer(one, (none + dot).Sign());
    const TwoOf<L> weights = SlerpWeights(c, TwoOf<L>(one - t, t), factors * nearer);
    WeightedSum(a, b, weights.a, weights.b);
    const unsigned between = L::Bits(L::Both(L::Less(none, t), L::Less(t, one)));
    StoreWithout(between ^ ((1u << L::kCount) - 1), SlerpSingly, res, stride, a, from);
}

/// Nlerp.
template <class L>
void NlerpGroup(char* res, ptrdiff_t stride, const StridedSources<3>& from)
{
    L a[4], b[4];
    L::Load(from.p[0], from.stride[0], a);
    L::Load(from.p[1], from.stride[1], b);
    const L t = L::Load(from.p[2], from.stride[2]), none(0), one(1);
    WeightedSum(a, b, one - t, t * (none + DotOf(a, b)).Sign());
    const L f = one / DotOf(a, a).Root();
    for (L& component : a) {
        component = component * f;
    }
    const unsigned atKeys = L::Bits(L::Either(L::Equal(t, none), L::Equal(t, one)));
    StoreWithout(atKeys, NlerpSingly, res, stride, a, from);
}

template <class L>
void SlerpMany(const StridedResults& res, const StridedSources<3>& from)
{
    ForGroupsOf<L::kCount, 16, 16, 16, 4>(res, from, SlerpGroup<L>);
}

template <class L>
void NlerpMany(const StridedResults& res, const StridedSources<3>& from)
{
    ForGroupsOf<L::kCount, 16, 16, 16, 4>(res, from, NlerpGroup<L>);
}

// --- Unit length ------------------------------------------------------------------------

/// Normalized() of ZmVector, or of ZmQuaternion.
template <class L, int size>
void NormalizeGroup(char* res, ptrdiff_t stride, const StridedSources<1>& from)
{
    L v[size];
    L::Load(from.p[0], from.stride[0], v);
    L square = v[0] * v[0] + v[1] * v[1] + v[2] * v[2];
    if constexpr (size == 4) {
        square = square + v[3] * v[3];
    }
    const L f = L(1) / square.Root();
    for (int i = 0; i < size; ++i) {
        v[i] = v[i] * f;
        if constexpr (size == 4) {
            v[i] = L::Select(L::Equal(square, L(0)), L(i == 3 ? 1 : 0), v[i]);
        }
    }
    L::Store(res, stride, v);
}

template <class L, int size>
void NormalizeMany(const StridedPair& pair)
{
    ForGroupsOf<L::kCount, 4 * size, 4 * size>({pair.res, pair.resStride, pair.count}, {{pair.src}, {pair.srcStride}},
                                               NormalizeGroup<L, size>);
}

// --- Products -----------------------------------------------------------------------------

/// Zm3DQuaternionMultiply, one or two in each register.
template <class L>
void ProductGroup(char* res, ptrdiff_t stride, const StridedSources<2>& from)
{
    const auto load = [&](int k) {
        if constexpr (L::kCount == 4) {
            return L::Load4(from.p[k]);
        } else {
            return L::Halves(SseLanes::Load4(from.p[k]), SseLanes::Load4(from.p[k] + from.stride[k]));
        }
    };
    constexpr float kSigns[] = {1, 1, 1, -1};
    const L a = load(0), b = load(1), signs = L::Row(kSigns);
    const L first = L::template Shuffle<3, 3, 3, 3>(a, a) * b;
    const L second = L::template Shuffle<0, 1, 2, 0>(a, a) * signs * L::template Shuffle<3, 3, 3, 0>(b, b);
    const L third = L::template Shuffle<1, 2, 0, 1>(a, a) * signs * L::template Shuffle<2, 0, 1, 1>(b, b);
    const L last = L::template Shuffle<2, 0, 1, 2>(a, a) * L::template Shuffle<1, 2, 0, 2>(b, b);
    const L product = first + second + third - last;
    if constexpr (L::kCount == 4) {
        product.Store4(res);
    } else {
        product.Low().Store4(res);
        product.High().Store4(res + stride);
    }
}

template <class L>
void ProductMany(const StridedResults& res, const StridedSources<2>& from)
{
    ForGroupsOf<L::kCount / 4, 16, 16, 16>(res, from, ProductGroup<L>);
}

// --- Transforms ---------------------------------------------------------------------------

/// Three floats of each of L::kCount elements, in lanes.
template <class L>
void LoadThree(const char* p, ptrdiff_t stride, L (&res)[3])
{
    const auto load = [=](int i) {
        if constexpr (L::kCount == 4) {
            return L::Load3(p + i * stride);
        } else {
            return L::Halves(SseLanes::Load3(p + i * stride), SseLanes::Load3(p + (i + 4) * stride));
        }
    };
    L last = load(3);
    res[0] = load(0);
    res[1] = load(1);
    res[2] = load(2);
    L::Transpose(res[0], res[1], res[2], last);
}

/// ZmTransform: positions, rotations, scales.
template <class L>
void TransformGroup(char* res, ptrdiff_t stride, const StridedSources<3>& from)
{
    L position[3], scale[3];
    LoadThree(from.p[0], from.stride[0], position);
    LoadThree(from.p[2], from.stride[2], scale);
    const RotationOf<L> turn(from.p[1], from.stride[1]);
    const L none = L::Splat(0);
    for (int i = 0; i < 3; ++i) {
        StoreRows<L>(res, stride, i, turn.m[i][0] * scale[i], turn.m[i][1] * scale[i], turn.m[i][2] * scale[i], none);
    }
    StoreRows<L>(res, stride, 3, position[0], position[1], position[2], L::Splat(1));
}

template <class L>
void TransformMany(const StridedResults& res, const StridedSources<3>& from)
{
    ForGroupsOf<L::kCount, sizeof(ZmMatrix), 12, 16, 12>(res, from, TransformGroup<L>);
}

}  // namespace

/// Kernels for processors with AVX2.
namespace avx2 {

void SlerpMany(const StridedResults& res, const StridedSources<3>& from);
void NlerpMany(const StridedResults& res, const StridedSources<3>& from);
void NormalizeVectors(const StridedPair& pair);
void NormalizeQuaternions(const StridedPair& pair);
void ProductMany(const StridedResults& res, const StridedSources<2>& from);
void TransformMany(const StridedResults& res, const StridedSources<3>& from);

}  // namespace avx2
}  // namespace zm

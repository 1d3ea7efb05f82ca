#pragma once

#include "Math/AnimationKernels.h"
#include "Math/QuaternionLanes.h"
#include "ZmInline.h"

// Kernels over arrays of quaternions, vectors and their transforms.

namespace zm {

/// An array of sources.
struct StridedSource {
    const char* p;
    ptrdiff_t stride;
};

/// The sources of a bulk operation, up to three. Those that it does not have are null, with a stride of 0.
struct StridedSources {
    StridedSource a, b, c;
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

inline StridedSource SourceOf(const ZmStridedData& data)
{
    return {static_cast<const char*>(data.Ptr), ptrdiff_t(data.Stride)};
}

inline StridedResults ResultsOf(const ZmStridedData& res, int count)
{
    return {static_cast<char*>(res.Ptr), ptrdiff_t(res.Stride), count};
}

/// Sizes in bytes of a result and of the elements of each source, 0 for those that there are not.
template <int res, int a, int b = 0, int c = 0>
struct Sizes {
    static constexpr int kRes = res, kA = a, kB = b, kC = c;
};

/// Copies of `count` elements, fewer than Lanes, and of the last of them in the remaining places.
template <int Lanes, int Bytes>
StridedSource Packed(char (&memory)[Lanes * 16], const StridedSource& from, ptrdiff_t count)
{
    for (ptrdiff_t i = 0; i < Lanes && Bytes > 0; ++i) {
        memcpy(memory + i * Bytes, from.p + (i < count ? i : count - 1) * from.stride, Bytes);
    }
    return {memory, Bytes};
}

/// The last elements of ForGroupsOf(), which pass through memory of their own.
template <int Lanes, class Sizes, class Group>
void ForRestOf(Group group, const StridedResults& res, const StridedSources& from)
{
    char a[Lanes * 16], b[Lanes * 16], c[Lanes * 16], out[Lanes * Sizes::kRes];
    group(out, ptrdiff_t(Sizes::kRes),
          {Packed<Lanes, Sizes::kA>(a, from.a, res.count), Packed<Lanes, Sizes::kB>(b, from.b, res.count),
           Packed<Lanes, Sizes::kC>(c, from.c, res.count)});
    Unpack<Sizes::kRes>(res.p, res.stride, out, res.count);
}

template <int Lanes, class Sizes, class Group>
__attribute__((always_inline)) inline void ForGroupsWith(Group group, StridedResults res, StridedSources from)
{
    for (; res.count >= Lanes; res.count -= Lanes) {
        group(res.p, res.stride, from);
        res.p += Lanes * res.stride;
        from.a.p += Lanes * from.a.stride;
        from.b.p += Lanes * from.b.stride;
        from.c.p += Lanes * from.c.stride;
    }
    if (res.count > 0) {
        ForRestOf<Lanes, Sizes>(group, res, from);
    }
}

/// Calls group(res, resStride, from) for each `Lanes` elements. Strides that are just the sizes become constants.
template <int Lanes, class Sizes, class Group>
void ForGroupsOf(Group group, const StridedResults& res, const StridedSources& from)
{
    if (res.stride == Sizes::kRes && from.a.stride == Sizes::kA && from.b.stride == Sizes::kB &&
        from.c.stride == Sizes::kC) {
        ForGroupsWith<Lanes, Sizes>(group, {res.p, Sizes::kRes, res.count},
                                    {{from.a.p, Sizes::kA}, {from.b.p, Sizes::kB}, {from.c.p, Sizes::kC}});
    } else {
        ForGroupsWith<Lanes, Sizes>(group, res, from);
    }
}

/// Stores a group, but elements of `special` as single(res, a, b, t) computes them. These are computed first, as the
/// results may lie where the sources do.
template <class L, class Single>
void StoreWithout(unsigned special, Single single, char* res, ptrdiff_t stride, const Components<L>& q,
                  const StridedSources& from)
{
    if (__builtin_expect(special == 0, 1)) {
        return L::template Store<4>(res, stride, q);
    }
    char alone[L::kCount][16];
    const auto isSpecial = [=](int i) { return (special >> i & 1) != 0; };
    for (int i = 0; i < L::kCount; ++i) {
        if (isSpecial(i)) {
            single(alone[i], from.a.p + i * from.a.stride, from.b.p + i * from.b.stride,
                   FloatAt(from.c.p + i * from.c.stride));
        }
    }
    char all[L::kCount][16];
    L::template Store<4>(all[0], 16, q);
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
L DotOf(const Components<L>& a, const Components<L>& b)
{
    return (a.x * b.x + a.y * b.y) + (a.z * b.z + a.w * b.w);
}

template <class L>
Components<L> WeightedSum(const Components<L>& a, L ka, const Components<L>& b, L kb)
{
    return {a.x * ka + b.x * kb, a.y * ka + b.y * kb, a.z * ka + b.z * kb, a.w * ka + b.w * kb};
}

template <class L>
Components<L> Scaled(const Components<L>& v, L f)
{
    return {v.x * f, v.y * f, v.z * f, v.w * f};
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
struct SlerpGroup {
    __attribute__((always_inline)) void operator()(char* res, ptrdiff_t stride, const StridedSources& from) const
    {
        const Components<L> a = L::template Load<4>(from.a.p, from.a.stride);
        const Components<L> b = L::template Load<4>(from.b.p, from.b.stride);
        const L t = L::Load(from.c.p, from.c.stride), dot = DotOf(a, b), none(0), one(1);
        const TwoOf<L> factors = InverseRootsOf(TwoOf<L>(DotOf(a, a), DotOf(b, b)));
        const L c = dot.Abs() * (factors.a * factors.b);
        const TwoOf<L> nearer(factors.a, factors.b.WithSignOf(none + dot));
        const TwoOf<L> weights = SlerpWeights(c, TwoOf<L>(one - t, t), nearer);
        const Components<L> q = WeightedSum(a, weights.a, b, weights.b);
        const unsigned between = L::Bits(L::Both(L::Less(none, t), L::Less(t, one)));
        StoreWithout(between ^ ((1u << L::kCount) - 1), SlerpSingly, res, stride, q, from);
    }
};

/// Nlerp.
template <class L>
struct NlerpGroup {
    __attribute__((always_inline)) void operator()(char* res, ptrdiff_t stride, const StridedSources& from) const
    {
        const Components<L> a = L::template Load<4>(from.a.p, from.a.stride);
        const Components<L> b = L::template Load<4>(from.b.p, from.b.stride);
        const L t = L::Load(from.c.p, from.c.stride), none(0), one(1);
        const Components<L> chord = WeightedSum(a, one - t, b, t * one.WithSignOf(none + DotOf(a, b)));
        const Components<L> q = Scaled(chord, one / DotOf(chord, chord).Root());
        const unsigned atKeys = L::Bits(L::Either(L::Equal(t, none), L::Equal(t, one)));
        StoreWithout(atKeys, NlerpSingly, res, stride, q, from);
    }
};

template <class L>
void SlerpMany(const StridedResults& res, const StridedSources& from)
{
    ForGroupsOf<L::kCount, Sizes<16, 16, 16, 4>>(SlerpGroup<L>(), res, from);
}

template <class L>
void NlerpMany(const StridedResults& res, const StridedSources& from)
{
    ForGroupsOf<L::kCount, Sizes<16, 16, 16, 4>>(NlerpGroup<L>(), res, from);
}

// --- Unit length ------------------------------------------------------------------------

/// Normalized() of ZmVector, or of ZmQuaternion.
template <class L, int size>
struct NormalizeGroup {
    __attribute__((always_inline)) void operator()(char* res, ptrdiff_t stride, const StridedSources& from) const
    {
        const Components<L> v = L::template Load<size>(from.a.p, from.a.stride);
        const L three = v.x * v.x + v.y * v.y + v.z * v.z;
        if constexpr (size == 3) {
            L::template Store<3>(res, stride, Scaled(v, L(1) / three.Root()));
        } else {
            const L square = three + v.w * v.w, none(0);
            const Components<L> unit = Scaled(v, L(1) / square.Root());
            const typename L::Mask isZero = L::Equal(square, none);
            L::template Store<4>(res, stride,
                                 {L::Select(isZero, none, unit.x), L::Select(isZero, none, unit.y),
                                  L::Select(isZero, none, unit.z), L::Select(isZero, L(1), unit.w)});
        }
    }
};

template <class L, int size>
void NormalizeMany(const StridedResults& res, const StridedSources& from)
{
    ForGroupsOf<L::kCount, Sizes<4 * size, 4 * size>>(NormalizeGroup<L, size>(), res, from);
}

// --- Products -----------------------------------------------------------------------------

constexpr float kSigns[] = {1, 1, 1, -1};

/// One quaternion or two in each register.
template <class L>
L LoadPair(const StridedSource& from)
{
    if constexpr (L::kCount == 4) {
        return L::Load4(from.p);
    } else {
        return from.stride == 16 ? L::Load8(from.p)
                                 : L::Halves(SseLanes::Load4(from.p), SseLanes::Load4(from.p + from.stride));
    }
}

/// The left factors of Zm3DQuaternionMultiply.
template <class L>
struct LeftFactor {
    L first, second, third, last;

    explicit LeftFactor(L a)
        : first(L::template Shuffle<3, 3, 3, 3>(a, a)), second(L::template Shuffle<0, 1, 2, 0>(a, a) * L::Row(kSigns)),
          third(L::template Shuffle<1, 2, 0, 1>(a, a) * L::Row(kSigns)), last(L::template Shuffle<2, 0, 1, 2>(a, a))
    {
    }
    void Times(L b, char* res, ptrdiff_t stride) const
    {
        const L product = first * b + second * L::template Shuffle<3, 3, 3, 0>(b, b) +
                          third * L::template Shuffle<2, 0, 1, 1>(b, b) - last * L::template Shuffle<1, 2, 0, 2>(b, b);
        if constexpr (L::kCount == 4) {
            product.Store4(res);
        } else {
            product.Low().Store4(res);
            product.High().Store4(res + stride);
        }
    }
};

template <class L>
struct ProductGroup {
    __attribute__((always_inline)) void operator()(char* res, ptrdiff_t stride, const StridedSources& from) const
    {
        LeftFactor<L>(LoadPair<L>(from.a)).Times(LoadPair<L>(from.b), res, stride);
    }
};

/// Products with the same left factor.
template <class L>
struct ProductByOneGroup {
    LeftFactor<L> left;

    __attribute__((always_inline)) void operator()(char* res, ptrdiff_t stride, const StridedSources& from) const
    {
        left.Times(LoadPair<L>(from.a), res, stride);
    }
};

template <class L>
void ProductMany(const StridedResults& res, const StridedSources& from)
{
    constexpr int kLanes = L::kCount / 4;
    if (from.a.stride == 0 && res.count > 0) {
        const LeftFactor<L> left(LoadPair<L>(from.a));
        ForGroupsOf<kLanes, Sizes<16, 16>>(ProductByOneGroup<L>{left}, res, {from.b, {}, {}});
    } else {
        ForGroupsOf<kLanes, Sizes<16, 16, 16>>(ProductGroup<L>(), res, from);
    }
}

// --- Transforms ---------------------------------------------------------------------------

/// Three floats of each of L::kCount elements, in lanes.
template <class L>
void LoadThree(const char* p, ptrdiff_t stride, L (&res)[3])
{
    const auto load = [=](int i) { return LoadAt<L>::Three(p + i * stride, stride); };
    L last = load(3);
    res[0] = load(0);
    res[1] = load(1);
    res[2] = load(2);
    L::Transpose(res[0], res[1], res[2], last);
}

/// ZmTransform: positions, rotations, scales.
template <class L>
struct TransformGroup {
    __attribute__((always_inline)) void operator()(char* res, ptrdiff_t stride, const StridedSources& from) const
    {
        L position[3], scale[3];
        LoadThree(from.a.p, from.a.stride, position);
        LoadThree(from.c.p, from.c.stride, scale);
        const RotationOf<L> turn(from.b.p, from.b.stride);
        const L none = L::Splat(0);
        for (int i = 0; i < 3; ++i) {
            StoreRows<L>(res, stride, i, turn.m[i][0] * scale[i], turn.m[i][1] * scale[i], turn.m[i][2] * scale[i],
                         none);
        }
        StoreRows<L>(res, stride, 3, position[0], position[1], position[2], L::Splat(1));
    }
};

template <class L>
void TransformMany(const StridedResults& res, const StridedSources& from)
{
    ForGroupsOf<L::kCount, Sizes<sizeof(ZmMatrix), 12, 16, 12>>(TransformGroup<L>(), res, from);
}

}  // namespace

/// Kernels for processors with AVX2.
namespace avx2 {

void SlerpMany(const StridedResults& res, const StridedSources& from);
void NlerpMany(const StridedResults& res, const StridedSources& from);
void NormalizeVectors(const StridedResults& res, const StridedSources& from);
void NormalizeQuaternions(const StridedResults& res, const StridedSources& from);
void ProductMany(const StridedResults& res, const StridedSources& from);
void TransformMany(const StridedResults& res, const StridedSources& from);

}  // namespace avx2
}  // namespace zm

#pragma once

#include "Math/StridedLanes.h"

#include <math.h>

// One, two or four quaternions or vectors as lanes of doubles, a register for each component. The rules of Lanes.h
// apply here too.

namespace zm {
namespace {

/// The components of as many elements as L has lanes; those of vectors without w.
template <class L>
struct Components {
    L x, y, z, w;
};

/// One element.
struct OneDouble {
    double v;

    static constexpr int kCount = 1;
    using Mask = bool;

    OneDouble() = default;
    explicit OneDouble(double s) : v(s) {}
    OneDouble operator+(OneDouble o) const { return OneDouble(v + o.v); }
    OneDouble operator-(OneDouble o) const { return OneDouble(v - o.v); }
    OneDouble operator*(OneDouble o) const { return OneDouble(v * o.v); }
    OneDouble operator/(OneDouble o) const { return OneDouble(v / o.v); }
    OneDouble Root() const { return OneDouble(sqrt(v)); }
    OneDouble Abs() const { return OneDouble(fabs(v)); }
    /// The magnitude with another's sign.
    OneDouble WithSignOf(OneDouble o) const { return OneDouble(copysign(v, o.v)); }

    static Mask Less(OneDouble a, OneDouble b) { return a.v < b.v; }
    static Mask Equal(OneDouble a, OneDouble b) { return a.v == b.v; }
    static Mask Both(Mask a, Mask b) { return a && b; }
    static Mask Either(Mask a, Mask b) { return a || b; }
    /// A bit for each lane.
    static unsigned Bits(Mask mask) { return mask; }
    static OneDouble Select(Mask mask, OneDouble a, OneDouble b) { return mask ? a : b; }

    /// One float of each element.
    static OneDouble Load(const char* p, ptrdiff_t)
    {
        float f;
        memcpy(&f, p, sizeof(f));
        return OneDouble(f);
    }
    template <int size>
    static Components<OneDouble> Load(const char* p, ptrdiff_t)
    {
        float f[4] = {};
        memcpy(f, p, 4 * size);
        return {OneDouble(f[0]), OneDouble(f[1]), OneDouble(f[2]), OneDouble(f[3])};
    }
    template <int size>
    static void Store(char* p, ptrdiff_t, const Components<OneDouble>& c)
    {
        const float f[] = {float(c.x.v), float(c.y.v), float(c.z.v), float(c.w.v)};
        memcpy(p, f, 4 * size);
    }
};

/// Loads and stores three or four floats.
template <int size>
SseLanes LoadElement(const char* p)
{
    return size == 3 ? SseLanes::Load3(p) : SseLanes::Load4(p);
}
template <int size>
void StoreElement(SseLanes v, char* p)
{
    if (size == 3) {
        v.Store3(p);
    } else {
        v.Store4(p);
    }
}

inline float FloatAt(const char* p)
{
    float f;
    memcpy(&f, p, sizeof(f));
    return f;
}

/// Two elements.
struct TwoInLanes {
    __m128d v;

    static constexpr int kCount = 2;
    using Mask = __m128d;

    TwoInLanes() = default;
    TwoInLanes(__m128d r) : v(r) {}
    explicit TwoInLanes(double s) : v(_mm_set1_pd(s)) {}
    TwoInLanes operator+(TwoInLanes o) const { return _mm_add_pd(v, o.v); }
    TwoInLanes operator-(TwoInLanes o) const { return _mm_sub_pd(v, o.v); }
    TwoInLanes operator*(TwoInLanes o) const { return _mm_mul_pd(v, o.v); }
    TwoInLanes operator/(TwoInLanes o) const { return _mm_div_pd(v, o.v); }
    TwoInLanes Root() const { return _mm_sqrt_pd(v); }
    TwoInLanes Abs() const { return _mm_andnot_pd(_mm_set1_pd(-0.0), v); }
    TwoInLanes WithSignOf(TwoInLanes o) const
    {
        const __m128d sign = _mm_set1_pd(-0.0);
        return _mm_or_pd(_mm_and_pd(sign, o.v), _mm_andnot_pd(sign, v));
    }

    static Mask Less(TwoInLanes a, TwoInLanes b) { return _mm_cmplt_pd(a.v, b.v); }
    static Mask Equal(TwoInLanes a, TwoInLanes b) { return _mm_cmpeq_pd(a.v, b.v); }
    static Mask Both(Mask a, Mask b) { return _mm_and_pd(a, b); }
    static Mask Either(Mask a, Mask b) { return _mm_or_pd(a, b); }
    static unsigned Bits(Mask mask) { return unsigned(_mm_movemask_pd(mask)); }
    static TwoInLanes Select(Mask mask, TwoInLanes a, TwoInLanes b)
    {
        return _mm_or_pd(_mm_and_pd(mask, a.v), _mm_andnot_pd(mask, b.v));
    }

    static TwoInLanes Load(const char* p, ptrdiff_t stride)
    {
        return _mm_setr_pd(double(FloatAt(p)), double(FloatAt(p + stride)));
    }
    template <int size>
    static Components<TwoInLanes> Load(const char* p, ptrdiff_t stride)
    {
        const __m128 a = LoadElement<size>(p).v, b = LoadElement<size>(p + stride).v;
        const __m128 xy = _mm_unpacklo_ps(a, b), zw = _mm_unpackhi_ps(a, b);
        return {_mm_cvtps_pd(xy), _mm_cvtps_pd(_mm_movehl_ps(xy, xy)), _mm_cvtps_pd(zw),
                _mm_cvtps_pd(_mm_movehl_ps(zw, zw))};
    }
    template <int size>
    static void Store(char* p, ptrdiff_t stride, const Components<TwoInLanes>& c)
    {
        const __m128 xy = _mm_unpacklo_ps(_mm_cvtpd_ps(c.x.v), _mm_cvtpd_ps(c.y.v));
        const __m128 zw = _mm_unpacklo_ps(_mm_cvtpd_ps(c.z.v), _mm_cvtpd_ps(c.w.v));
        StoreElement<size>({_mm_movelh_ps(xy, zw)}, p);
        StoreElement<size>({_mm_movehl_ps(zw, xy)}, p + stride);
    }
};

#ifdef __AVX2__

/// Four elements.
struct FourInLanes {
    __m256d v;

    static constexpr int kCount = 4;
    using Mask = __m256d;

    FourInLanes() = default;
    FourInLanes(__m256d r) : v(r) {}
    explicit FourInLanes(double s) : v(_mm256_set1_pd(s)) {}
    FourInLanes operator+(FourInLanes o) const { return _mm256_add_pd(v, o.v); }
    FourInLanes operator-(FourInLanes o) const { return _mm256_sub_pd(v, o.v); }
    FourInLanes operator*(FourInLanes o) const { return _mm256_mul_pd(v, o.v); }
    FourInLanes operator/(FourInLanes o) const { return _mm256_div_pd(v, o.v); }
    FourInLanes Root() const { return _mm256_sqrt_pd(v); }
    FourInLanes Abs() const { return _mm256_andnot_pd(_mm256_set1_pd(-0.0), v); }
    FourInLanes WithSignOf(FourInLanes o) const
    {
        const __m256d sign = _mm256_set1_pd(-0.0);
        return _mm256_or_pd(_mm256_and_pd(sign, o.v), _mm256_andnot_pd(sign, v));
    }

    static Mask Less(FourInLanes a, FourInLanes b) { return _mm256_cmp_pd(a.v, b.v, _CMP_LT_OQ); }
    static Mask Equal(FourInLanes a, FourInLanes b) { return _mm256_cmp_pd(a.v, b.v, _CMP_EQ_OQ); }
    static Mask Both(Mask a, Mask b) { return _mm256_and_pd(a, b); }
    static Mask Either(Mask a, Mask b) { return _mm256_or_pd(a, b); }
    static unsigned Bits(Mask mask) { return unsigned(_mm256_movemask_pd(mask)); }
    static FourInLanes Select(Mask mask, FourInLanes a, FourInLanes b) { return _mm256_blendv_pd(b.v, a.v, mask); }

    static FourInLanes Load(const char* p, ptrdiff_t stride)
    {
        if (stride == sizeof(float)) {
            return _mm256_cvtps_pd(SseLanes::Load4(p).v);
        }
        return _mm256_cvtps_pd(
            _mm_setr_ps(FloatAt(p), FloatAt(p + stride), FloatAt(p + 2 * stride), FloatAt(p + 3 * stride)));
    }
    template <int size>
    static Components<FourInLanes> Load(const char* p, ptrdiff_t stride)
    {
        SseLanes a = LoadElement<size>(p), b = LoadElement<size>(p + stride), c = LoadElement<size>(p + 2 * stride),
                 d = LoadElement<size>(p + 3 * stride);
        SseLanes::Transpose(a, b, c, d);
        return {_mm256_cvtps_pd(a.v), _mm256_cvtps_pd(b.v), _mm256_cvtps_pd(c.v), _mm256_cvtps_pd(d.v)};
    }
    template <int size>
    static void Store(char* p, ptrdiff_t stride, const Components<FourInLanes>& from)
    {
        SseLanes a = {_mm256_cvtpd_ps(from.x.v)}, b = {_mm256_cvtpd_ps(from.y.v)}, c = {_mm256_cvtpd_ps(from.z.v)},
                 d = {_mm256_cvtpd_ps(from.w.v)};
        SseLanes::Transpose(a, b, c, d);
        StoreElement<size>(a, p);
        StoreElement<size>(b, p + stride);
        StoreElement<size>(c, p + 2 * stride);
        StoreElement<size>(d, p + 3 * stride);
    }
};

#endif

}  // namespace
}  // namespace zm

#pragma once

// An implementation detail of ZmOperators.h, ZmBuilders.h and ZmInterpolation.h: what they share. Programs do not use
// it, and it may change with any version.
//
// The compiler's own vectors need no header; those of the processor's header would cost more time to include than all
// of the mathematics.

#include "ZmQuaternion.h"

namespace zm {

/// Whether the compiler evaluates a constant: then plain floats do what registers cannot.
constexpr bool InConstant()
{
    return __builtin_is_constant_evaluated();
}

inline float Sqrt(float x)
{
    return __builtin_sqrtf(x);
}

inline double Sqrt(double x)
{
    return __builtin_sqrt(x);
}

#if defined(__SSE2__)

typedef int LaneBits __attribute__((vector_size(16)));

// Four lanes of two registers, those of b numbered from 4.
#if defined(__clang__) || __GNUC__ >= 12
#define ZM_SHUFFLE(a, b, i, j, k, l) __builtin_shufflevector(a, b, i, j, k, l)
#else
#define ZM_SHUFFLE(a, b, i, j, k, l) __builtin_shuffle(a, b, LaneBits{i, j, k, l})
#endif

// Registers of 32 bytes.
#if defined(__AVX2__) && (defined(__clang__) || __GNUC__ >= 12)
#define ZM_WIDE
#endif

/// Four floats in one register. The form for other processors performs the same operations in the same order.
struct Float4 {
    typedef float Register __attribute__((vector_size(16)));
    typedef float InMemory __attribute__((vector_size(16), aligned(4), may_alias));
    Register v;

    static Float4 Splat(float s) { return {Register{s, s, s, s}}; }
    static Float4 Load(const float* p) { return {*reinterpret_cast<const InMemory*>(p)}; }
    void Store(float* p) const { *reinterpret_cast<InMemory*>(p) = v; }
    float X() const { return v[0]; }
    float Y() const { return v[1]; }
    float Z() const { return v[2]; }
    float W() const { return v[3]; }

    Float4 operator+(Float4 o) const { return {v + o.v}; }
    Float4 operator-(Float4 o) const { return {v - o.v}; }
    Float4 operator*(Float4 o) const { return {v * o.v}; }

    /// The last lane replaced by 0 or 1.
    Float4 WithW0() const { return {Register(LaneBits(v) & LaneBits{-1, -1, -1, 0})}; }
    Float4 WithW1() const { return {ZM_SHUFFLE(v, (Register{0, 0, 0, 1}), 0, 1, 2, 7)}; }

    /// One lane in all four.
    Float4 AllX() const { return {ZM_SHUFFLE(v, v, 0, 0, 0, 0)}; }
    Float4 AllY() const { return {ZM_SHUFFLE(v, v, 1, 1, 1, 1)}; }
    Float4 AllZ() const { return {ZM_SHUFFLE(v, v, 2, 2, 2, 2)}; }
    Float4 AllW() const { return {ZM_SHUFFLE(v, v, 3, 3, 3, 3)}; }
};

#if defined(ZM_WIDE)

typedef float EightFloats __attribute__((vector_size(32)));
typedef double FourDoubles __attribute__((vector_size(32)));

#if defined(__clang__)
inline EightFloats LoadTwice(const float* p)
{
    const Float4::Register row = Float4::Load(p).v;
    return __builtin_shufflevector(row, row, 0, 1, 2, 3, 0, 1, 2, 3);
}
inline FourDoubles ToDoubles(Float4 f)
{
    return __builtin_convertvector(f.v, FourDoubles);
}
#else
// The general forms become several instructions here.
inline EightFloats LoadTwice(const float* p)
{
    return __builtin_ia32_vbroadcastf128_ps256(reinterpret_cast<const Float4::Register*>(p));
}
inline FourDoubles ToDoubles(Float4 f)
{
    return __builtin_ia32_cvtps2pd256(f.v);
}
#endif

/// Eight floats: two rows.
struct Float8 {
    typedef float InMemory __attribute__((vector_size(32), aligned(4), may_alias));
    EightFloats v;

    static Float8 Load(const float* p) { return {*reinterpret_cast<const InMemory*>(p)}; }
    static Float8 Load(const float* p, const float* q)
    {
        return {__builtin_shufflevector(Float4::Load(p).v, Float4::Load(q).v, 0, 1, 2, 3, 4, 5, 6, 7)};
    }
    static Float8 Twice(const float* p) { return {LoadTwice(p)}; }
    void Store(float* p) const { *reinterpret_cast<InMemory*>(p) = v; }

    Float8 operator+(const Float8& o) const { return {v + o.v}; }
    Float8 operator*(const Float8& o) const { return {v * o.v}; }

    /// One lane of each row in all four.
    Float8 AllX() const { return {__builtin_shufflevector(v, v, 0, 0, 0, 0, 4, 4, 4, 4)}; }
    Float8 AllY() const { return {__builtin_shufflevector(v, v, 1, 1, 1, 1, 5, 5, 5, 5)}; }
    Float8 AllZ() const { return {__builtin_shufflevector(v, v, 2, 2, 2, 2, 6, 6, 6, 6)}; }
    Float8 AllW() const { return {__builtin_shufflevector(v, v, 3, 3, 3, 3, 7, 7, 7, 7)}; }
    /// The two pairs in the middle exchanged.
    Float8 MiddleSwapped() const { return {__builtin_shufflevector(v, v, 0, 1, 4, 5, 2, 3, 6, 7)}; }
};

/// Writes the transpose of sixteen floats.
inline void Transpose(float* res, const float* m)
{
    const EightFloats ac = Float8::Load(m, m + 8).v, bd = Float8::Load(m + 4, m + 12).v;
    const Float8 xy = {__builtin_shufflevector(ac, bd, 0, 8, 1, 9, 4, 12, 5, 13)};
    const Float8 zw = {__builtin_shufflevector(ac, bd, 2, 10, 3, 11, 6, 14, 7, 15)};
    xy.MiddleSwapped().Store(res);
    zw.MiddleSwapped().Store(res + 8);
}

/// Three doubles in lanes; the fourth means nothing.
struct Double4 {
    typedef double Pair __attribute__((vector_size(16)));
    typedef long long Bits __attribute__((vector_size(32)));
    FourDoubles v;

    explicit Double4(FourDoubles r) : v(r) {}
    explicit Double4(Float4 f) : v(ToDoubles(f)) {}

    Double4 operator+(const Double4& o) const { return Double4(v + o.v); }
    Double4 operator-(const Double4& o) const { return Double4(v - o.v); }
    Double4 operator*(const Double4& o) const { return Double4(v * o.v); }
    Double4 operator*(double s) const { return Double4(v * s); }
    Double4 Abs() const { return Double4(FourDoubles(Bits(v) & 0x7fffffffffffffff)); }
    Double4 Yzx() const { return Double4(__builtin_shufflevector(v, v, 1, 2, 0, 3)); }
    Double4 Zxy() const { return Double4(__builtin_shufflevector(v, v, 2, 0, 1, 3)); }
    Float4 ToFloats() const { return {__builtin_convertvector(v, Float4::Register)}; }
    /// The sums (0 + 2) + 1 of a and of b.
    static Pair Sums(const Double4& a, const Double4& b)
    {
        const Pair aLow = __builtin_shufflevector(a.v, a.v, 0, 1), aHigh = __builtin_shufflevector(a.v, a.v, 2, 3);
        const Pair bLow = __builtin_shufflevector(b.v, b.v, 0, 1), bHigh = __builtin_shufflevector(b.v, b.v, 2, 3);
        return (__builtin_shufflevector(aLow, bLow, 0, 2) + __builtin_shufflevector(aHigh, bHigh, 0, 2)) +
               __builtin_shufflevector(aLow, bLow, 1, 3);
    }
};

/// Four rows: compilers keep them in registers where they would take a matrix apart.
struct Rows {
    Float4 row0, row1, row2, row3;

    void Store(float* res) const
    {
        row0.Store(res);
        row1.Store(res + 4);
        row2.Store(res + 8);
        row3.Store(res + 12);
    }
};

/// The affine inverse, of NaNs if the block is singular. The formula is that of the library's AffineInverse.
inline Rows InverseAffine(const float* m)
{
    const Double4 a(Float4::Load(m)), b(Float4::Load(m + 4)), c(Float4::Load(m + 8)), yzxA = a.Yzx(), yzxB = b.Yzx(),
                                                                                      yzxC = c.Yzx();

    // The columns of the adjugate are vector products of the rows; here each of them begins with its z.
    const Double4 bc = b * yzxC, cb = yzxB * c, crossBC = bc - cb, first = a.Zxy();
    const Double4::Pair sums = Double4::Sums(first * crossBC, first.Abs() * (bc.Abs() + cb.Abs()));
    const double det = sums[0], size = __builtin_fabs(det), kRoundsToZero = 0x1p-150;
    if (size <= kRoundsToZero || size < 1e-15 * sums[1]) {
        const Float4 nans = Float4::Splat(__builtin_nanf(""));
        return {nans, nans, nans, nans};
    }

    const double f = 1 / det;
    const Float4::Register column0 = (crossBC * f).ToFloats().v, column1 = ((c * yzxA - yzxC * a) * f).ToFloats().v,
                           column2 = ((a * yzxB - yzxA * b) * f).ToFloats().WithW0().v;
    const Float4::Register zx = ZM_SHUFFLE(column0, column1, 0, 4, 1, 5), y = ZM_SHUFFLE(column0, column1, 2, 6, 3, 7);
    const Float4 row0 = {ZM_SHUFFLE(zx, column2, 2, 3, 5, 7)}, row1 = {ZM_SHUFFLE(y, column2, 0, 1, 6, 7)},
                 row2 = {ZM_SHUFFLE(zx, column2, 0, 1, 4, 7)};
    const Float4 moved = (Float4::Splat(m[12]) * row0 + Float4::Splat(m[13]) * row1) + Float4::Splat(m[14]) * row2;
    return {row0, row1, row2, (Float4::Splat(0) - moved).WithW1()};
}

#else

/// Writes the transpose of sixteen floats.
inline void Transpose(float* res, const float* m)
{
    const Float4::Register a = Float4::Load(m).v, b = Float4::Load(m + 4).v, c = Float4::Load(m + 8).v,
                           d = Float4::Load(m + 12).v;
    const Float4::Register abXY = ZM_SHUFFLE(a, b, 0, 1, 4, 5), abZW = ZM_SHUFFLE(a, b, 2, 3, 6, 7);
    const Float4::Register cdXY = ZM_SHUFFLE(c, d, 0, 1, 4, 5), cdZW = ZM_SHUFFLE(c, d, 2, 3, 6, 7);
    Float4{ZM_SHUFFLE(abXY, cdXY, 0, 2, 4, 6)}.Store(res);
    Float4{ZM_SHUFFLE(abXY, cdXY, 1, 3, 5, 7)}.Store(res + 4);
    Float4{ZM_SHUFFLE(abZW, cdZW, 0, 2, 4, 6)}.Store(res + 8);
    Float4{ZM_SHUFFLE(abZW, cdZW, 1, 3, 5, 7)}.Store(res + 12);
}

#endif

#undef ZM_SHUFFLE

#else

/// Four floats.
struct Float4 {
    float v[4];

    static Float4 Splat(float s) { return {{s, s, s, s}}; }
    static Float4 Load(const float* p) { return {{p[0], p[1], p[2], p[3]}}; }
    void Store(float* p) const
    {
        for (int i = 0; i < 4; ++i) {
            p[i] = v[i];
        }
    }
    float X() const { return v[0]; }
    float Y() const { return v[1]; }
    float Z() const { return v[2]; }
    float W() const { return v[3]; }

    Float4 operator+(const Float4& o) const { return {{v[0] + o.v[0], v[1] + o.v[1], v[2] + o.v[2], v[3] + o.v[3]}}; }
    Float4 operator*(const Float4& o) const { return {{v[0] * o.v[0], v[1] * o.v[1], v[2] * o.v[2], v[3] * o.v[3]}}; }

    Float4 WithW0() const { return {{v[0], v[1], v[2], 0}}; }
    Float4 WithW1() const { return {{v[0], v[1], v[2], 1}}; }

    Float4 AllX() const { return Splat(v[0]); }
    Float4 AllY() const { return Splat(v[1]); }
    Float4 AllZ() const { return Splat(v[2]); }
    Float4 AllW() const { return Splat(v[3]); }
};

inline void Transpose(float* res, const float* m)
{
    for (int i = 0; i < 16; ++i) {
        res[i] = m[i % 4 * 4 + i / 4];
    }
}

#endif

// --- Double precision for exact results ------------------------------------------------

/// The sine and cosine of an angle of any size; it need not be a float.
ZM_API void SineCosineOfLarge(double angle, double* sine, double* cosine);

/// The sine and cosine of an angle: the library's own formula with the same bits, within about one unit in the last
/// place; rounded to float, those of ZmSin and ZmCos. Reduces to an eighth of a turn in two steps (W. J. Cody and
/// W. Waite), then evaluates minimax polynomials.
struct SineCosine {
    double sine = 0, cosine = 1;

    constexpr explicit SineCosine(double x)
    {
        if (!(x < 8192 && x > -8192)) {
            SineCosineOfLarge(x, &sine, &cosine);
            return;
        }
        const double rounder = 6755399441055744.0;  // 1.5 * 2^52: adding it rounds to an integer
        const double quarters = (x * 0.63661977236758134308 + rounder) - rounder;
        const double r = (x - quarters * 1.57079632673412561417) - quarters * 6.07710050650619224932e-11;
        const double z = r * r, z2 = z * z;
        const double s = (-0.1666666666666663 + 0.008333333333321924 * z) +
                         ((-0.0001984126982946496 + 2.755731358502397e-06 * z) +
                          (-2.5050742812777328e-08 + 1.5895974919456187e-10 * z) * z2) *
                             z2;
        const double c = (-0.4999999999999941 + 0.04166666666648742 * z) +
                         ((-0.0013888888870563375 + 2.4801578640805042e-05 * z) +
                          (-2.755524120591199e-07 + 2.06305722663503e-09 * z) * z2) *
                             z2;
        const double ofSine = r == 0 ? r : r + r * z * s, ofCosine = 1 + z * c;
        const int quadrant = int(quarters);
        sine = (quadrant & 1) != 0 ? ofCosine : ofSine;
        cosine = (quadrant & 1) != 0 ? ofSine : ofCosine;
        sine = (quadrant & 2) != 0 ? -sine : sine;
        cosine = ((quadrant + 1) & 2) != 0 ? -cosine : cosine;
    }
};

/// The arc cosine of c, 0 to 1, with a relative error of 3e-9: the square root of 1 - c, which the caller has, times a
/// polynomial in c (interpolated at Chebyshev nodes).
constexpr double AcosFromRoot(double c, double rootOfOneMinusC)
{
    constexpr double p[] = {1.570796322643815,     -0.2146011607317731,   0.08903013694183116,
                            -0.050593573902801836, 0.03257117025372559,   -0.020727665434681814,
                            0.011028380894054458,  -0.003974577851800455, 0.0006845318554648353};
    const double c2 = c * c, c4 = c2 * c2;
    const double low = (p[0] + p[1] * c) + (p[2] + p[3] * c) * c2;
    const double high = (p[4] + p[5] * c) + (p[6] + p[7] * c) * c2;
    return rootOfOneMinusC * (low + (high + p[8] * c4) * c4);
}

#if defined(__SSE2__)

/// Two doubles in one register.
struct TwoDoubles {
    typedef double Register __attribute__((vector_size(16)));
    Register v;

    TwoDoubles(double first, double second) : v(Register{first, second}) {}
    explicit TwoDoubles(Register r) : v(r) {}
    double First() const { return v[0]; }
    double Second() const { return v[1]; }
    TwoDoubles operator+(const TwoDoubles& o) const { return TwoDoubles(v + o.v); }
    TwoDoubles operator*(const TwoDoubles& o) const { return TwoDoubles(v * o.v); }
};

#else

/// Two doubles.
struct TwoDoubles {
    double a, b;

    TwoDoubles(double first, double second) : a(first), b(second) {}
    double First() const { return a; }
    double Second() const { return b; }
    TwoDoubles operator+(const TwoDoubles& o) const { return {a + o.a, b + o.b}; }
    TwoDoubles operator*(const TwoDoubles& o) const { return {a * o.a, b * o.b}; }
};

#endif

/// Kept out of the code of its caller, which seldom needs it.
__attribute__((noinline, cold)) inline TwoDoubles InverseOfAnyRoots(const TwoDoubles& squares)
{
    return {1 / Sqrt(squares.First()), 1 / Sqrt(squares.Second())};
}

/// 1 over the roots of two squares of lengths. Near 1, where those of units are, the tangent is within 4e-10 and saves
/// the roots.
inline TwoDoubles InverseRoots(const TwoDoubles& squares)
{
    constexpr double kNear = 0x1p-15;
    const bool areNear = __builtin_fabs(squares.First() - 1) < kNear && __builtin_fabs(squares.Second() - 1) < kNear;
    return __builtin_expect(areNear, 1) ? TwoDoubles(1.5, 1.5) + TwoDoubles(-0.5, -0.5) * squares
                                        : InverseOfAnyRoots(squares);
}

/// The weights of two units in the slerp between them, from the cosine c of their angle, 0 to 1, and the shares 1 - t
/// and t of the way, each from 0 to 1. They come multiplied by `factors`. Without a root or a division: the square of
/// the angle, and the angle over its sine, are power series of c (D. Eberly, "A Fast and Accurate Algorithm for
/// Computing SLERP", 2011, starts from the cosine, too), and sin(s) / s is one of the square of s. The polynomials
/// interpolate them at Chebyshev nodes, of which one is c = 1 and s = 0; their errors of 9e-10, 4e-9 and 2e-11 leave
/// the weights within 4e-9. The squares are multiplied by -0.0299, which makes a coefficient 1. Sums are grouped for
/// the shortest time until the result is there.
///
/// `Two` is a pair of Numbers: doubles, or lanes.
template <class Two, class Number>
inline Two SlerpWeights(const Number& c, const Two& shares, const Two& factors)
{
    const Number square = c * c, fourth = square * square;
    const Two c1(c, c), c2(square, square), c4(fourth, fourth);
    const Two p0 = Two(-0.07378230866770304, 1.570796323391662) + Two(0.09394254668398043, -0.9999991773876009) * c1;
    const Two p2 = Two(-0.029902582279160247, 0.7853647759509123) + Two(0.015652904115795327, -0.6661289532273728) * c1;
    const Two p4 = Two(-0.00993250499616572, 0.5845112608205483) + Two(0.006869479999721054, -0.5103332323214416) * c1;
    const Two p6 =
        Two(-0.004743059585106375, 0.4149494872629167) + Two(0.002920951551241411, -0.28454343784822983) * c1;
    const Two p8 =
        Two(-0.0013970786715288485, 0.1455707975852505) + Two(0.00043598240086735126, -0.04736374237884686) * c1;
    const Two p10(-6.433055194133669e-05, 0.0071758981522021936);
    const Two angle = (p0 + p2 * c2) + ((p4 + p6 * c2) + (p8 + p10 * c2) * c4) * c4;

    const Number squareAngle = angle.First(), overSine = angle.Second();
    const Two s = shares * shares * Two(squareAngle, squareAngle), s2 = s * s;
    const Two q0 = Two(1, 1) + Two(5.573605964973024, 5.573605964973024) * s;
    const Two q2 = Two(9.319522824761895, 9.319522824761895) + Two(7.420339472308094, 7.420339472308094) * s;
    const Two q4 = Two(3.4427281668238137, 3.4427281668238137) + s;
    return shares * factors * Two(overSine, overSine) * ((q0 + q2 * s2) + q4 * (s2 * s2));
}

/// Three doubles.
struct Triple {
    double x, y, z;

    constexpr Triple(double vx, double vy, double vz) : x(vx), y(vy), z(vz) {}
    constexpr explicit Triple(const ZmVector& v) : x(v.x), y(v.y), z(v.z) {}
    constexpr explicit Triple(const float* row) : x(row[0]), y(row[1]), z(row[2]) {}
    constexpr ZmVector ToFloats() const { return {float(x), float(y), float(z)}; }
    Triple Unit() const { return *this * (1 / Sqrt(Dot(*this, *this))); }

    constexpr friend Triple operator+(const Triple& a, const Triple& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
    constexpr friend Triple operator-(const Triple& a, const Triple& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
    constexpr friend Triple operator*(const Triple& v, double s) { return {v.x * s, v.y * s, v.z * s}; }
    constexpr friend double Dot(const Triple& a, const Triple& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
    constexpr friend Triple Cross(const Triple& a, const Triple& b)
    {
        return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
    }
};

}  // namespace zm

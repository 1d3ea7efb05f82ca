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

// Four lanes of two registers, those of b numbered from 4.
#if defined(__clang__) || __GNUC__ >= 12
#define ZM_SHUFFLE(a, b, i, j, k, l) __builtin_shufflevector(a, b, i, j, k, l)
#else
typedef int ZmLaneNumbers __attribute__((vector_size(16)));
#define ZM_SHUFFLE(a, b, i, j, k, l) __builtin_shuffle(a, b, ZmLaneNumbers{i, j, k, l})
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
    Float4 operator*(Float4 o) const { return {v * o.v}; }

    /// One lane in all four.
    Float4 AllX() const { return {ZM_SHUFFLE(v, v, 0, 0, 0, 0)}; }
    Float4 AllY() const { return {ZM_SHUFFLE(v, v, 1, 1, 1, 1)}; }
    Float4 AllZ() const { return {ZM_SHUFFLE(v, v, 2, 2, 2, 2)}; }
    Float4 AllW() const { return {ZM_SHUFFLE(v, v, 3, 3, 3, 3)}; }

    /// Writes the transpose of sixteen floats.
    static void Transpose(float* res, const float* m)
    {
        const Register a = Load(m).v, b = Load(m + 4).v, c = Load(m + 8).v, d = Load(m + 12).v;
        const Register abXY = ZM_SHUFFLE(a, b, 0, 1, 4, 5), abZW = ZM_SHUFFLE(a, b, 2, 3, 6, 7);
        const Register cdXY = ZM_SHUFFLE(c, d, 0, 1, 4, 5), cdZW = ZM_SHUFFLE(c, d, 2, 3, 6, 7);
        Float4{ZM_SHUFFLE(abXY, cdXY, 0, 2, 4, 6)}.Store(res);
        Float4{ZM_SHUFFLE(abXY, cdXY, 1, 3, 5, 7)}.Store(res + 4);
        Float4{ZM_SHUFFLE(abZW, cdZW, 0, 2, 4, 6)}.Store(res + 8);
        Float4{ZM_SHUFFLE(abZW, cdZW, 1, 3, 5, 7)}.Store(res + 12);
    }
};

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

    Float4 AllX() const { return Splat(v[0]); }
    Float4 AllY() const { return Splat(v[1]); }
    Float4 AllZ() const { return Splat(v[2]); }
    Float4 AllW() const { return Splat(v[3]); }

    static void Transpose(float* res, const float* m)
    {
        for (int i = 0; i < 16; ++i) {
            res[i] = m[i % 4 * 4 + i / 4];
        }
    }
};

#endif

// --- Double precision for exact results ------------------------------------------------

/// The sine and cosine of an angle: the library's own formula with the same bits, within 2^-34 of the true values.
/// Reduces to an eighth of a turn in two steps (W. J. Cody and W. Waite), then evaluates polynomials with the
/// coefficients of the float functions of FreeBSD's msun library (B. Evans).
struct SineCosine {
    double sine = 0, cosine = 1;

    constexpr explicit SineCosine(double x)
    {
        if (!(x < 1e5 && x > -1e5)) {
            SetLarge(float(x));
            return;
        }
        const double rounder = 6755399441055744.0;  // 1.5 * 2^52: adding it rounds to an integer
        const double quarters = (x * 0.63661977236758134308 + rounder) - rounder;
        const double r = (x - quarters * 1.57079632673412561417) - quarters * 6.07710050650619224932e-11, z = r * r;
        double s = z * 2.7183114939898219064e-6 + -1.98393348360966317347e-4;
        double c = z * 2.43904487962774090654e-5 + -1.38867637746099294692e-3;
        s = z * s + 8.3333293858894631756e-3;
        c = z * c + 4.16666233237390631894e-2;
        s = z * s + -0.166666666416265235595;
        c = z * c + -0.499999997251031003120;
        s = r + r * z * s;
        c = 1 + z * c;
        const int quadrant = int(quarters);
        sine = (quadrant & 1) != 0 ? c : s;
        cosine = (quadrant & 1) != 0 ? s : c;
        sine = (quadrant & 2) != 0 ? -sine : sine;
        cosine = ((quadrant + 1) & 2) != 0 ? -cosine : cosine;
    }

private:
    /// Beyond the formula's range the library asks the system's C library.
    void SetLarge(float x)
    {
        ZmMatrix turn;
        Zm3DMatrixFromEulerAngles(turn, 0, 0, x);
        sine = turn[0][1];
        cosine = turn[0][0];
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

#pragma once

#include "Math/DoubleLanes.h"

namespace zm {
namespace {

/// A vector of three doubles: x and y in one pair, z in another. Single numbers are in the first element of a pair; the
/// second element is then meaningless.
struct DoubleVector {
    DoublePair xy, z;

    DoubleVector(DoublePair first, DoublePair last) : xy(first), z(last) {}
    /// From the first three of four floats.
    explicit DoubleVector(SseLanes v) : xy(_mm_cvtps_pd(v.v)), z(_mm_cvtps_pd(_mm_movehl_ps(v.v, v.v))) {}

    DoubleVector operator-(const DoubleVector& o) const { return {xy - o.xy, z - o.z}; }
    DoubleVector operator+(const DoubleVector& o) const { return {xy + o.xy, z + o.z}; }
    DoubleVector operator*(DoublePair s) const { return {xy * DoublePair::Firsts(s, s), z * s}; }
    friend DoublePair Dot(const DoubleVector& a, const DoubleVector& b)
    {
        const DoublePair products = a.xy * b.xy;
        return (products + products.Swapped()) + a.z * b.z;
    }
    /// The squared length of the cross product.
    friend DoublePair CrossSquare(const DoubleVector& a, const DoubleVector& b)
    {
        const DoublePair az = DoublePair::Firsts(a.z, a.z), bz = DoublePair::Firsts(b.z, b.z);
        const DoublePair xyMinors = a.xy * bz - b.xy * az, products = a.xy * b.xy.Swapped();
        const DoublePair zMinor = products - products.Swapped(), squares = xyMinors * xyMinors;
        return (squares + squares.Swapped()) + zMinor * zMinor;
    }
    SseLanes ToFloats() const { return {_mm_movelh_ps(_mm_cvtpd_ps(xy.v), _mm_cvtpd_ps(z.v))}; }
};

}  // namespace
}  // namespace zm

#include "Math/LargeAngles.h"

#include <math.h>
#include <stdint.h>
#include <string.h>

namespace zm {
namespace {

/// The binary digits of 2 / pi behind the point, after 64 zeros.
constexpr uint32_t kTwoOverPi[] = {0,          0,          0xA2F9836E, 0x4E441529, 0xFC2757D1,
                                   0xF534DDC0, 0xDB629599, 0x3C439041, 0xFE5163AB, 0xDEBBC561};
constexpr int kZeros = 64;
constexpr int kLastExponent = 128 - 25;  // of the halves for which these digits suffice

/// A fixed-point number in quarter turns, modulo 4: two bits before the point, 126 behind it; the first word is the
/// highest.
struct Quarters {
    uint32_t word[4] = {};

    /// Adds 2 / pi * mantissa * 2^exponent. Digits that would only add whole turns are left out, as are those too low
    /// to matter (M. H. Payne and R. N. Hanek, "Radian reduction for trigonometric functions", 1983).
    void Add(uint32_t mantissa, int exponent)
    {
        const int first = exponent - 2 + kZeros, shift = first % 32;
        const uint32_t* const digits = kTwoOverPi + first / 32;
        uint64_t carry = 0;
        for (int i = 3; i >= 0; --i) {
            const uint64_t pair = uint64_t(digits[i]) << 32 | digits[i + 1];
            carry += uint64_t(uint32_t(pair << shift >> 32)) * mantissa + word[i];
            word[i] = uint32_t(carry);
            carry >>= 32;
        }
    }

    /// Leaves a fraction from -1/2 to 1/2, and returns the whole number. A negative fraction is replaced by its
    /// magnitude, and `sign` becomes -1.
    unsigned TakeWhole(double& sign)
    {
        const bool roundsUp = (word[0] & 0x20000000) != 0;
        const unsigned whole = (word[0] >> 30) + unsigned(roundsUp);
        word[0] &= 0x3FFFFFFF;
        sign = roundsUp ? -1 : 1;
        if (roundsUp) {
            word[0] |= 0xC0000000;
            uint64_t carry = 1;
            for (int i = 3; i >= 0; --i) {
                carry += uint32_t(~word[i]);
                word[i] = uint32_t(carry);
                carry >>= 32;
            }
        }
        return whole;
    }
};

/// Multiplies a fraction by half pi, to the last place of a double.
void ToAngle(const Quarters& fraction, double sign, double& angle)
{
    uint64_t high = uint64_t(fraction.word[0]) << 32 | fraction.word[1];
    uint64_t low = uint64_t(fraction.word[2]) << 32 | fraction.word[3];
    double unit = 0x1p-62;                    // of the upper word's lowest bit
    for (; (high >> 63) == 0; unit *= 0.5) {  // ends, since no double is so close to a number of quarter turns
        high = high << 1 | low >> 63;
        low <<= 1;
    }
    const double first = double(uint32_t(high >> 32)) * 0x1p32, second = double(uint32_t(high));
    constexpr double kHalfPi[] = {1.57079601287841796875, 3.139164786504813e-07};  // products with the first are exact
    angle = (first * kHalfPi[0] + (first * kHalfPi[1] + second * (kHalfPi[0] + kHalfPi[1]))) * (unit * sign);
}

/// The angles one of whose sine and cosine lies so close to halfway between floats that a double cannot tell, and by
/// which part their rest is moved to the right side. The other function has room.
constexpr struct {
    float angle;
    double factor;
} kHalfway[] = {
    {9830.3984375f, 1 - 0x1p-48},
    {2.86165081e+15f, 1 + 0x1p-48},
    {1.10046776e+19f, 1 + 0x1p-46},
    {1.72699834e+20f, 1 - 0x1p-48},
};

void MoveFromHalfway(double size, double& rest)
{
    for (const auto& row : kHalfway) {
        if (double(row.angle) == size) {
            rest *= row.factor;
        }
    }
}

}  // namespace

void ReduceLargeAngle(double x, double& rest, double& quarters)
{
    uint64_t bits;
    memcpy(&bits, &x, sizeof(bits));
    // The lowest bit of the upper half of the mantissa, which has 26 bits; the lower half has 27.
    const int exponent = int(bits >> 52 & 0x7FF) - 1023 - 25;
    if (exponent > kLastExponent) {
        rest = quarters = NAN;
        return;
    }
    Quarters angle;
    angle.Add(uint32_t(bits >> 27 & 0x1FFFFFF) | 0x2000000, exponent);
    angle.Add(uint32_t(bits & 0x7FFFFFF), exponent - 27);
    double sign;
    const unsigned whole = angle.TakeWhole(sign);
    if (x < 0) {
        ToAngle(angle, -sign, rest);
        quarters = kQuarterRounder - whole;
    } else {
        ToAngle(angle, sign, rest);
        quarters = kQuarterRounder + whole;
    }
    MoveFromHalfway(fabs(x), rest);
}

}  // namespace zm

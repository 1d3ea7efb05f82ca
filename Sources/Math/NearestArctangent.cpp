#include "Math/NearestArctangent.h"

namespace zm {
namespace {

/// A number of twice the digits of a double, as a sum of two (T. J. Dekker, "A floating-point technique for extending
/// the available precision", 1971).
struct DoubleDouble {
    double high, low;

    /// The exact sum of two doubles.
    static DoubleDouble Sum(double a, double b)
    {
        const double sum = a + b, part = sum - a;
        return {sum, (a - (sum - part)) + (b - part)};
    }

    /// The exact product.
    static DoubleDouble Product(double a, double b)
    {
        const double product = a * b, highA = Upper(a), highB = Upper(b), lowA = a - highA, lowB = b - highB;
        return {product, ((highA * highB - product) + highA * lowB + lowA * highB) + lowA * lowB};
    }

    DoubleDouble operator+(const DoubleDouble& o) const
    {
        const DoubleDouble sum = Sum(high, o.high);
        return Sum(sum.high, sum.low + (low + o.low));
    }
    DoubleDouble operator*(double factor) const
    {
        const DoubleDouble product = Product(high, factor);
        return Sum(product.high, product.low + low * factor);
    }
    DoubleDouble operator/(double divisor) const
    {
        const double quotient = high / divisor;
        const DoubleDouble product = Product(quotient, divisor);
        return Sum(quotient, ((high - product.high) - product.low + low) / divisor);
    }

private:
    /// The upper half of the digits.
    static double Upper(double a)
    {
        const double shifted = a * 134217729;  // 2^27 + 1
        return shifted - (shifted - a);
    }
};

/// Whether the angle of the direction (x, y), y > 0, is greater than a number halfway between two floats.
bool IsAngleGreater(double y, double x, double angle)
{
    // Sine and cosine by their power series, whose terms grow to 12 at most: 98 bits remain.
    constexpr int kTerms = 40;
    DoubleDouble cosine = {1, 0}, sine = {angle, 0}, term = {angle, 0};
    for (int i = 2; i < kTerms; i += 2) {
        term = term * -angle / i;
        cosine = cosine + term;
        term = term * angle / (i + 1);
        sine = sine + term;
    }
    // The sine of the difference of the angles times the length of (x, y).
    const DoubleDouble difference = cosine * y + sine * -x;
    return difference.high > 0;
}

}  // namespace

float NearestArctangent(float y, float x, float low, float high)
{
    const double sign = y < 0 ? -1 : 1;
    const double middle = 0.5 * sign * (double(low) + double(high));
    return IsAngleGreater(sign * y, x, middle) ? high : low;
}

}  // namespace zm

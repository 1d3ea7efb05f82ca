#include "Imaging/FilterShape.h"

#include <math.h>

// Only operations that every system rounds in the same way: no functions of the C library but fabs(), floor() and
// sqrt().

namespace zm {
namespace {

constexpr double kPi = 3.14159265358979323846;

/// The sine of pi times x, to about the precision of a double.
double SineOfPi(double x)
{
    const double whole = floor(x + 0.5), y = (x - whole) * kPi, square = y * y;
    double sum = 0;
    for (int i = 23; i > 1; i -= 2) {
        sum = (1 + sum) * -square / (i * (i - 1));
    }
    const bool odd = floor(whole / 2) * 2 != whole;
    return (odd ? -y : y) * (1 + sum);
}

double Sinc(double x)
{
    return x == 0 ? 1 : SineOfPi(x) / (kPi * x);
}

/// The modified Bessel function of the first kind and order 0, for numbers up to 4.
double Bessel(double x)
{
    double sum = 1, term = 1;
    for (int i = 1; i < 24; ++i) {
        term *= x * x / (4.0 * i * i);
        sum += term;
    }
    return sum;
}

double Triangle(double x)
{
    return fabs(x) < 1 ? 1 - fabs(x) : 0;
}

/// The family of cubics by Mitchell and Netravali.
double Cubic(double x, double b, double c)
{
    const double y = fabs(x);
    if (y < 1) {
        return (((12 - 9 * b - 6 * c) * y + (-18 + 12 * b + 6 * c)) * y * y + (6 - 2 * b)) / 6;
    }
    return y < 2 ? (((-b - 6 * c) * y + (6 * b + 30 * c)) * y * y + (-12 * b - 48 * c) * y + (8 * b + 24 * c)) / 6 : 0;
}

double Mitchell(double x)
{
    return Cubic(x, 1.0 / 3, 1.0 / 3);
}

double CatmullRom(double x)
{
    return Cubic(x, 0, 0.5);
}

double Lanczos3(double x)
{
    return fabs(x) < 3 ? Sinc(x) * Sinc(x / 3) : 0;
}

double Kaiser(double x)
{
    return fabs(x) < 3 ? Sinc(x) * Bessel(4 * sqrt(1 - x * x / 9)) / Bessel(4) : 0;
}

}  // namespace

FilterShape ShapeOf(ZMFILTER filter)
{
    switch (filter) {
    case ZMFILTER_MITCHELL: return {2, Mitchell};
    case ZMFILTER_CATMULL_ROM: return {2, CatmullRom};
    case ZMFILTER_LANCZOS3: return {3, Lanczos3};
    case ZMFILTER_KAISER: return {3, Kaiser};
    default: return {1, Triangle};
    }
}

}  // namespace zm

#pragma once

namespace zm {

/// From here on an angle is reduced by ReduceLargeAngle().
constexpr double kLargeAngle = 8192;

/// Adding it rounds a double to an integer, which is then in the low bits.
constexpr double kQuarterRounder = 6755399441055744.0;  // 1.5 * 2^52

/// Reduces an angle from kLargeAngle up to 2^129, or below the negative of these, to a rest within an eighth of a turn
/// and a number of quarter turns, modulo 4, plus kQuarterRounder. Anything beyond gives NaN.
void ReduceLargeAngle(double x, double& rest, double& quarters);

}  // namespace zm

#pragma once

// Arguments of the trigonometric functions. Plain data, for the reason given in Harness.h.
namespace bench {

constexpr int kAngles = 4000;

struct alignas(64) Angles {
    float angles[kAngles];         ///< up to a turn in both directions
    float units[kAngles];          ///< -1 to 1
    float x[kAngles], y[kAngles];  ///< of directions
};

}  // namespace bench

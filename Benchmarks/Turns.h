#pragma once

// Many rotations, and what goes with them. Plain data, for the reason given in Harness.h.
namespace bench {

constexpr int kTurns = 100000;

struct alignas(64) Turns {
    float from[kTurns][4], to[kTurns][4];  ///< unit quaternions
    float times[kTurns];                   ///< 0 to 1
    float positions[kTurns][3], scales[kTurns][3];
};

}  // namespace bench

#pragma once

// Many rotations, and what goes with them. Plain data, for the reason given in Harness.h.
namespace bench {

constexpr int kTurns = 100000;
constexpr int kTrackKeys = 16;  ///< of each of many tracks, which share their times

struct alignas(64) Turns {
    float from[kTurns][4], to[kTurns][4];  ///< unit quaternions
    float times[kTurns];                   ///< 0 to 1
    float positions[kTurns][3], scales[kTurns][3];
    float keyTimes[kTurns];  ///< 0, 1, 2 ...
    float moments[kTurns];   ///< ascending, within the times of the first thousand keys
};

}  // namespace bench

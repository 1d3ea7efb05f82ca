#pragma once

namespace zm {

/// Values below this count as zero: 2^-23.
constexpr float kEpsilon = 0x1p-23f;

/// Upper limit of the parameter of a segment.
constexpr float kOnePlus = 1 + 0x1p-23f;

/// What a ZmRay represents.
enum class Reach {
    LINE,
    RAY,
    SEGMENT
};

}  // namespace zm

#pragma once

namespace zm {

/// What counts as nothing: 2^-23.
const float kEpsilon = 0x1p-23f;

/// How far the parameter of a segment may go.
const float kOnePlus = 1 + 0x1p-23f;

/// What a ZmRay stands for.
enum class Reach {
    Line,
    Ray,
    Segment
};

}  // namespace zm

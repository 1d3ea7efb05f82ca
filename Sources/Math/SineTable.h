#pragma once

namespace zm {

constexpr int kSineUnits = 16384;  ///< per turn
constexpr int kSineQuarter = kSineUnits / 4;

/// One full turn followed by a copy of the first quarter, so that the cosine of angle i (0 to kSineUnits - 1) is at
/// i + kSineQuarter.
extern float g_SineTable[kSineUnits + kSineQuarter];

/// Fills the table. Called at start-up.
void BuildSineTable();

}  // namespace zm

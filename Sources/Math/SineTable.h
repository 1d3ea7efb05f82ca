#pragma once

namespace zm {

const int kSineUnits = 16384;  ///< to the turn
const int kSineQuarter = kSineUnits / 4;

/// One turn and, behind it, a copy of the first quarter: the cosine of angle i (0 to kSineUnits - 1)
/// stands at i + kSineQuarter.
extern float g_SineTable[kSineUnits + kSineQuarter];

/// Fills the table; a step of the start-up.
void BuildSineTable();

}  // namespace zm

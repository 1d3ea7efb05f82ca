#pragma once

#include "ZmVector.h"

#include <vector>

/// A line through points; a single point is a dot. Y counts upwards from the base line.
typedef std::vector<Zm2DVector> Stroke;

/// Height of capitals, and width between letters, in the unit of the strokes.
constexpr int kCapitals = 6, kGap = 2;

/// Characters that have no glyph are blank.
std::vector<Stroke> StrokesOf(char character);

/// From one letter to the next.
int AdvanceOf(char character);

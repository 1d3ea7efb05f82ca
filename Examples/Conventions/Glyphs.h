#pragma once

#include "ZmVector.h"

#include <vector>

/// A line through points; a single point is a dot. Y counts upwards from the base line.
typedef std::vector<Zm2DVector> Stroke;

/// Height of capitals and width of the gap between letters, in the units of the strokes.
constexpr int kCapitals = 6, kGap = 2;

/// Characters that have no glyph are blank.
std::vector<Stroke> StrokesOf(char character);

/// The distance from one letter to the next.
int AdvanceOf(char character);

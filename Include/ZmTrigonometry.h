#pragma once

#include "ZmApi.h"

// Sines from a table over an integer angle: 16384 units to the turn. The table is
// filled when the library is loaded; afterwards any thread may read it.

/// Sine and cosine of an angle in table units; any value, whole turns drop out.
ZM_API float Tsin(int angle);
ZM_API float Tcos(int angle);

/// Radians in table units, rounded in the processor's current rounding mode. The
/// result is not wrapped; it is INT_MIN where an int cannot hold it.
ZM_API int radToAngle(float radians);

#pragma once

#include "ZmApi.h"

// Table-based sine and cosine of an integer angle, 16384 units to the turn. The table is filled when the library is
// loaded; afterwards any thread may read it.

/// Sine and cosine of an angle in table units. Any value is allowed; whole turns are ignored.
ZM_API float Tsin(int angle);
ZM_API float Tcos(int angle);

/// Converts radians to table units, rounded in the processor's current rounding mode. The result is not wrapped; it is
/// INT_MIN if it does not fit an int.
ZM_API int radToAngle(float radians);

#pragma once

#include <stdint.h>
#include <time.h>

namespace zm {

/// Ticks of the system's performance counter, which never runs backwards. Cannot fail.
int64_t ReadCounter();

/// Ticks of that counter in a second; above 0 and the same at every call.
int64_t CounterFrequency();

/// Milliseconds since 1970 in universal time; the user may set that clock.
int64_t ReadWallClock();

/// The local time of a calendar time in seconds; false where the system cannot convert that time.
bool LocalTime(int64_t seconds, tm& parts);

}  // namespace zm

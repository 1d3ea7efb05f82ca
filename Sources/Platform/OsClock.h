#pragma once

#include <stdint.h>
#include <time.h>

namespace zm {

/// Ticks of the system's performance counter, which is monotonic. Cannot fail.
[[nodiscard]] int64_t ReadCounter();

/// Ticks of that counter per second: above 0 and constant.
[[nodiscard]] int64_t CounterFrequency();

/// Milliseconds since 1970 in universal time. Not monotonic: the user may set this clock.
[[nodiscard]] int64_t ReadWallClock();

/// Converts a calendar time in seconds to local time. Returns false if the system cannot convert it.
[[nodiscard]] bool LocalTime(int64_t seconds, tm& parts);

}  // namespace zm

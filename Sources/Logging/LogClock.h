#pragma once

#include <stdint.h>

namespace zm {

/// The clock of log lines, since 1970. Seconds alone are read ten times as fast, some milliseconds late.
struct LogClock {
    int64_t (*seconds)();
    int64_t (*milliseconds)();
};
/// Tests set another.
extern LogClock g_LogClock;

}  // namespace zm

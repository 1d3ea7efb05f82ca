#pragma once

#include <stdint.h>

namespace zm {

/// The clock of log lines, since 1970. `seconds` is ten times as fast as reading milliseconds, but some milliseconds
/// late.
struct LogClock {
    int64_t (*seconds)();
    int64_t (*milliseconds)();
};
/// Tests replace it.
extern LogClock g_LogClock;

}  // namespace zm

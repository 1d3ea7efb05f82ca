#pragma once

#include <stdint.h>

namespace zm {

/// Milliseconds since 1970, by the clock of log lines. Tests set another.
extern int64_t (*g_LogClock)();

}  // namespace zm

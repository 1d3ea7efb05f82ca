#pragma once

#include <stdint.h>

namespace zm {

/// Ticks of the system's performance counter, which never runs backwards. Cannot fail.
int64_t ReadCounter();

/// Ticks of that counter in a second; above 0 and the same at every call.
int64_t CounterFrequency();

}  // namespace zm

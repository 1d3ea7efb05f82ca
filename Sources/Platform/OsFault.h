#pragma once

namespace zm {

/// Runs work(argument) and returns true, or false if the processor raised an exception in it (an unknown, privileged or
/// disabled instruction). The work is then abandoned without clean-up, so it must not own anything. Only one call in
/// the process at a time; meanwhile faults of other threads are handled as usual.
[[nodiscard]] bool RunCatchingFaults(void (*work)(void*), void* argument);

}  // namespace zm

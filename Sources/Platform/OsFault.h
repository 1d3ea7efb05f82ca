#pragma once

namespace zm {

/// Runs work(argument) and returns true, or false when the processor raised an exception in
/// it (an instruction that is unknown, privileged or switched off). The work is abandoned where
/// it stood, so it must own nothing. One caller in the process at a time; faults of other threads
/// meanwhile take their usual way.
bool RunCatchingFaults(void (*work)(void*), void* argument);

}  // namespace zm

#pragma once

#include <atomic>
#include <signal.h>

namespace zm {

// Written only by the owning thread and its signal handler. Every lock of the library uses them, so access must not
// need a function call.
#define ZM_PLAIN_THREAD_LOCAL __thread __attribute__((tls_model("initial-exec"), visibility("hidden")))
extern ZM_PLAIN_THREAD_LOCAL volatile sig_atomic_t t_StopDelays;  ///< number of delays the calling thread has begun
extern ZM_PLAIN_THREAD_LOCAL volatile sig_atomic_t t_StopWaits;   ///< whether to stop it after the last delay

/// Carries out a delayed stop of the calling thread.
void StopAfterDelays();

// Compiler fences keep guarded accesses between begin and end.
inline void BeginStopDelay()
{
    t_StopDelays = t_StopDelays + 1;
    std::atomic_signal_fence(std::memory_order_seq_cst);
}

inline void EndStopDelay()
{
    std::atomic_signal_fence(std::memory_order_seq_cst);
    t_StopDelays = t_StopDelays - 1;
    if (t_StopWaits != 0 && t_StopDelays == 0) {
        StopAfterDelays();
    }
}

}  // namespace zm

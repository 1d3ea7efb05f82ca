#pragma once

#include <atomic>
#include <signal.h>

namespace zm {

// Written by their thread and its signal handler alone. They stand beside every lock of the library, and so are reached
// without a call.
#define ZM_PLAIN_THREAD_LOCAL __thread __attribute__((tls_model("initial-exec"), visibility("hidden")))
extern ZM_PLAIN_THREAD_LOCAL volatile sig_atomic_t t_StopDelays;  ///< that the calling thread has begun
extern ZM_PLAIN_THREAD_LOCAL volatile sig_atomic_t t_StopWaits;   ///< whether it is to be stopped after the last

/// Stops the calling thread, which has been waiting for the end of its delays.
void StopAfterDelays();

// The fences are for the compiler: nothing that is guarded may move out.
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

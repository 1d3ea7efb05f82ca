#pragma once

#include "ZmApi.h"

#include <stdint.h>

/// Measures milliseconds with the system's performance counter. Call Reset() before Current(). Not thread-safe: only
/// one thread at a time may use a profiler.
class ZmTimeProfiler {
public:
    /// Starts the measurement.
    ZM_API void Reset();

    /// Milliseconds since Reset(); never runs backwards.
    ZM_API float Current();

private:
    int64_t m_Start = 0;
    int64_t m_Current = 0;
};

/// Measures milliseconds and cycles with the processor's time-stamp counter. This is cheaper and finer, but on old
/// processors the rate of the counter varies with power saving. Returns 0 ms if the clock could not be measured at
/// load. Processors without that counter raise an exception.
class ZmRDTSCProfiler {
public:
    /// Starts the measurement.
    ZM_API void Reset();

    /// Milliseconds since Reset().
    ZM_API float Current();

    /// Cycles since Reset(), low 32 bits: wraps after about a second.
    ZM_API int CurrentCycleCount() const;

private:
    int64_t m_Start = 0;
    int64_t m_Elapsed = 0;
};

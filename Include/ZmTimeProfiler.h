#pragma once

#include "ZmApi.h"

#include <stdint.h>

/// Milliseconds by the system's performance counter. One profiler belongs to one thread at a
/// time. Call Reset() before Current().
class ZmTimeProfiler {
public:
    /// Starts counting here.
    ZM_API void Reset();

    /// Milliseconds since Reset(); never runs backwards.
    ZM_API float Current();

private:
    int64_t m_Start = 0;
    int64_t m_Current = 0;
};

/// Milliseconds and cycles by the processor's time-stamp counter: cheaper and finer, but on
/// old processors its rate follows power saving, and 0 ms is returned where the clock could not
/// be measured at load. On processors without that counter calling it raises the processor's
/// exception.
class ZmRDTSCProfiler {
public:
    /// Starts counting here.
    ZM_API void Reset();

    /// Milliseconds since Reset().
    ZM_API float Current();

    /// Cycles since Reset(), the low 32 bits: they wrap after about a second.
    ZM_API int CurrentCycleCount() const;

private:
    int64_t m_Start = 0;
    int64_t m_Elapsed = 0;
};

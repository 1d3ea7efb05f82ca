#pragma once

#include "ZmProcessor.h"

#include <atomic>

namespace zm {

/// The feature word as ModifyProcessorFeatures leaves it. Read at every dispatching call.
extern std::atomic<uint32_t> g_FeatureWord;

/// Whether the processor and the system support AVX2; kernels that have a wider form take it
/// where the SSE bit and this both allow it.
extern std::atomic<bool> g_HasAvx2;

inline bool UseSse()
{
    return (g_FeatureWord.load(std::memory_order_relaxed) & ZMPROCESSOR_FEATURE_SSE) != 0;
}

inline bool UseAvx2()
{
    return UseSse() && g_HasAvx2.load(std::memory_order_relaxed);
}

}  // namespace zm

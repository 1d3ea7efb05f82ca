#pragma once

#include "ZmProcessor.h"

#include <atomic>

namespace zm {

/// The feature word as set by ModifyProcessorFeatures. Read at every dispatching call.
extern std::atomic<uint32_t> g_FeatureWord;

/// Whether the processor and the system support AVX2. Kernels use their wider form if both this and the SSE bit are
/// set.
extern std::atomic<bool> g_HasAvx2;

inline bool UseSse()
{
    return (g_FeatureWord.load(std::memory_order_relaxed) & ZMPROCESSOR_FEATURE_SSE) != 0;
}

inline bool UseAvx2()
{
    return UseSse() && g_HasAvx2.load(std::memory_order_relaxed);
}

/// Calls the widest of three forms of a function that may be used, and returns its result. Branches, since an indirect
/// call would cost as much as a small kernel.
template <class Avx2, class Sse, class Scalar, class... Args>
inline auto DispatchWide(Avx2 avx2, Sse sse, Scalar scalar, Args&&... args)
{
    return UseAvx2() ? avx2(args...) : UseSse() ? sse(args...) : scalar(args...);
}

/// The same for functions without an AVX2 form.
template <class Sse, class Scalar, class... Args>
inline auto Dispatch(Sse sse, Scalar scalar, Args&&... args)
{
    return UseSse() ? sse(args...) : scalar(args...);
}

/// The same for functions with one form besides that for AVX2, used whether the SSE bit is set or not.
template <class Avx2, class Base, class... Args>
inline auto DispatchAvx2(Avx2 avx2, Base base, Args&&... args)
{
    return UseAvx2() ? avx2(args...) : base(args...);
}

}  // namespace zm
